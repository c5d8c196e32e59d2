// A package on disk and in memory: checked before it is mapped, entered by its "Register".
#pragma once

#include <string>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// A package that cannot be loaded. The message names the file and what was expected.
class EPackageError : public Exception {
 public:
  using Exception::Exception;
};

// Raises EPackageError unless the file is a whole shared library for this machine. A library that
// ends too early would end the process when its missing part is touched, so the loader is not asked
// before this answered.
void CheckPackageFile(const std::string& fileName);

// A loaded package. Its code is given back with the object: everything that it made must be gone.
class TPackage {
 public:
  using TRegister = void (*)();

  // Raises EPackageError for what is no library, lacks parts or has no "Register".
  explicit TPackage(const std::string& fileName);
  ~TPackage();
  TPackage(const TPackage&) = delete;
  TPackage& operator=(const TPackage&) = delete;

  const std::string& FileName() const { return FFileName; }
  // Lets the package register itself. What it raises passes through.
  void Register() const { FRegister(); }

 private:
  std::string FFileName;
  void* FHandle = nullptr;
  TRegister FRegister = nullptr;
};

}  // namespace wrenfold
