#ifndef A
#define A
#include <vcl.h>
#include "B.h"
class PACKAGE TMain : public Ns::TForm, public I<int>
{
__published:
  void x();
};
struct S;
#endif
