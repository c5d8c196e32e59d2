// The exception classes of the object model.
#pragma once

#include <stdexcept>
#include <string>
#include <typeinfo>

namespace wrenfold {

// The name of a class without its namespace, also of one that the library wrapped to nest it.
std::string ClassNameOf(const std::type_info& type);

// Base of all exceptions raised by the platform and the suite. The message is a byte string, UTF-8
// for our own texts. Zero bytes in it, which would end it for who asks what(), stand as "\0".
class Exception : public std::runtime_error {
 public:
  explicit Exception(const std::string& message) : std::runtime_error(WithoutZeros(message)) {}

  std::string Message() const { return what(); }
  // The class name without its namespace, such as "EReadError".
  std::string ClassName() const { return ClassNameOf(typeid(*this)); }

 private:
  static std::string WithoutZeros(std::string message);
};

// Ends the current command without a message.
class EAbort : public Exception {
 public:
  using Exception::Exception;
};
// A text does not convert to the wanted type.
class EConvertError : public Exception {
 public:
  using Exception::Exception;
};
// An index or a list operation out of range.
class EListError : public Exception {
 public:
  using Exception::Exception;
};
// Format() got a pattern that does not fit its arguments.
class EFormatError : public EConvertError {
 public:
  using EConvertError::EConvertError;
};

class EStreamError : public Exception {
 public:
  using Exception::Exception;
};
// A file cannot be opened or created.
class EFOpenError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};
class EFCreateError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};

// Errors of reading and writing streams of objects.
class EFilerError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};
class EReadError : public EFilerError {
 public:
  using EFilerError::EFilerError;
};
class EWriteError : public EFilerError {
 public:
  using EFilerError::EFilerError;
};
class EClassNotFound : public EFilerError {
 public:
  using EFilerError::EFilerError;
};

// A text form that does not parse; the message names line and column.
class EParserError : public Exception {
 public:
  using Exception::Exception;
};

// A component name that is no identifier or is taken.
class EComponentError : public Exception {
 public:
  using Exception::Exception;
};

// A published property that does not exist or does not offer the asked access.
class EPropertyAccessError : public Exception {
 public:
  using Exception::Exception;
};

}  // namespace wrenfold
