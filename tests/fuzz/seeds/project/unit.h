#ifndef A
#define A
#include <Forms.hpp>
#include "B.h"
class PACKAGE TMain : public Ns::TForm, public I<int>
{
__published:
  void x();
};
struct S;
#endif
