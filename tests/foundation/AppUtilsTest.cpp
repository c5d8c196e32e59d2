// The log and the texts of exceptions.
#include <gmock/gmock.h>

#include "foundation/rkAppUtils.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Files.h"

namespace wrenfold {
namespace {

TEST(AddLogDataTest, AppendsUntilTheLimitThenStartsAfresh) {
  struct TRow {
    const char* Name;
    const char* Before;  // null: no file
    std::uint64_t MaxSize;
    const char* Expected;
  };
  const TRow rows[] = {
      {"new file", nullptr, 100, "entry\r\n"},
      {"below the limit", "123456789", 10, "123456789entry\r\n"},
      {"at the limit", "1234567890", 10, "entry\r\n"},
      {"above the limit", "12345678901", 10, "entry\r\n"},
      {"no limit", "1234567890", 0, "1234567890entry\r\n"},
      {"empty file", "", 1, "entry\r\n"},
  };
  const std::string name = testing::TempDir() + "wrenfold_error.log";
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.Name);
    DeleteFile(name);
    if (row.Before != nullptr) SafeWriteFile(name, row.Before);
    AddLogData(name, "entry", row.MaxSize);
    EXPECT_EQ(ReadWholeFile(name), row.Expected);
  }
  DeleteFile(name);
  EXPECT_THROW(AddLogData(testing::TempDir() + "missing/directory/x.log", "entry", 0),
               EStreamError);
}

struct ECustom : EListError {
  using EListError::EListError;
};

template <class TThrow>
std::string TextOf(TThrow raise) {
  try {
    raise();
  } catch (...) {
    return ExceptionText(std::current_exception());
  }
  return "nothing raised";
}

TEST(ExceptionTextTest, NamesClassAndMessageOfEveryLevel) {
  EXPECT_EQ(TextOf([] { throw ECustom("index 3"); }), "ECustom: index 3");
  EXPECT_EQ(TextOf([] { throw std::out_of_range("far"); }), "out_of_range: far");
  EXPECT_EQ(TextOf([] { throw 5; }), "Unknown exception of type int");
  EXPECT_EQ(ExceptionText(std::exception_ptr()), "No exception");
  const auto nested = [] {
    try {
      throw EReadError("inner");
    } catch (...) {
      std::throw_with_nested(EFilerError("outer"));
    }
  };
  EXPECT_EQ(TextOf(nested), "EFilerError: outer\r\nEReadError: inner");
}

}  // namespace
}  // namespace wrenfold
