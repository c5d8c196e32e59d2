#include <Forms.hpp>
#pragma hdrstop
USERES("Clock.res");
USEFORM("Main.cpp", MainForm);
USEUNIT("Clock.cpp");
WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int)
{
  return 0;
}
