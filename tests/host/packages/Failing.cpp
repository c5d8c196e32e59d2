// A package whose entry fails.
#include "platform/core/Exceptions.h"

extern "C" void Register() {
  throw wrenfold::Exception("no luck today");
}
