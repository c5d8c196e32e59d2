// Exceptions that a program raises: where it can be stopped, and what is raised there.
#pragma once

#include <span>
#include <string>

#include "debugger/Code.h"
#include "debugger/Snapshot.h"

namespace wrenfold {

// The function of a language's run-time library that every exception passes.
struct TRaiseFunction {
  const char* Name;
  // Class and message of what is raised, when the program has stopped at the function's beginning.
  std::string (*Describe)(TCodeSource& memory, const TProcessor& processor,
                          const TRegisterValues& registers);
};

// Those of free Pascal and of C++; null for another function.
const TRaiseFunction* FindRaiseFunction(const std::string& name);
std::span<const TRaiseFunction> RaiseFunctions();

}  // namespace wrenfold
