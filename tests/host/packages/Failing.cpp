// A package whose entry fails.
#include "platform/core/system/Exceptions.h"

extern "C" void Register() {
  throw wrenfold::Exception("no luck today");
}
