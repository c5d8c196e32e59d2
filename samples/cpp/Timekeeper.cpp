//---------------------------------------------------------------------------
#include <Forms.hpp>
#pragma hdrstop
USERES("Timekeeper.res");
USEFORM("Main.cpp", TimeForm);
USEFORM("Tasks.cpp", TaskData); /* TDataModule: File Type */
USEUNIT("Clock.cpp");
//---------------------------------------------------------------------------
WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int)
{
        try
        {
                Application->Initialize();
                Application->Title = "Timekeeper";
                Application->CreateForm(__classid(TTaskData), &TaskData);
                Application->CreateForm(__classid(TTimeForm), &TimeForm);
                Application->Run();
        }
        catch (Exception &exception)
        {
                Application->ShowException(&exception);
        }
        return 0;
}
//---------------------------------------------------------------------------
