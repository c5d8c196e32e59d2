// Expressions of Pascal over the values of a stopped program.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "debugger/Backend.h"

namespace wrenfold {

class IPascalObject;

// A value of an expression, in the program or computed.
struct TPascalValue {
  enum TKind { Integer, Real, Boolean, Character, Text, Pointer, Other };
  TKind Kind = Other;
  std::int64_t Number = 0;  // all but Real, Text and Other
  double Float = 0;
  std::string String{};
  // What it is made of, where it stands in the program.
  std::shared_ptr<IPascalObject> Object{};
};

// A variable of the program, or a part of one. Calls that it has no sense for raise EDebugError.
class IPascalObject {
 public:
  virtual ~IPascalObject() = default;
  // A field, its name in any case; of a pointer or class, that of what it points to.
  virtual TPascalValue Field(const std::string& name) = 0;
  virtual TPascalValue Target() = 0;
  virtual TPascalValue Element(std::int64_t index) = 0;
  virtual std::uint64_t Address() = 0;
  virtual TVariable Show() = 0;
};

class IPascalScope {
 public:
  virtual ~IPascalScope() = default;
  // What the name, in any case, stands for at the place where the program is.
  virtual std::optional<TPascalValue> Find(const std::string& name) = 0;
};

// Names, fields, "^", "@", indexes, numbers ($ for hexadecimal), texts, arithmetic, comparisons,
// not, and, or. Raises EDebugError that tells what was expected and where.
TPascalValue EvaluatePascal(std::string_view expression, IPascalScope& scope);

// The value as it is shown, named by the expression.
TVariable ShowPascal(const TPascalValue& value, const std::string& expression);

// A text as Pascal writes it, in quotes; bytes that do not print by number.
std::string PascalQuoted(std::string_view text);

}  // namespace wrenfold
