// The byte cursors: bounds, tags, and skipping of nested values.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>

#include "platform/core/stream/Bytes.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;

struct TSkipCase {
  const char* Name;
  std::string Value;
};

class SkipValueTest : public testing::TestWithParam<TSkipCase> {};

TEST_P(SkipValueTest, StopsRightBehindTheValue) {
  const std::string bytes = GetParam().Value + "rest";
  TByteReader reader(bytes);
  reader.SkipValue();
  EXPECT_EQ(reader.ReadView(reader.Left(), "the rest"), "rest");
}

TEST_P(SkipValueTest, RefusesEachCutOffValue) {
  const std::string& bytes = GetParam().Value;
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    TByteReader reader(std::string_view(bytes).substr(0, size));
    EXPECT_THROW(reader.SkipValue(), EReadError) << size;
  }
}

INSTANTIATE_TEST_SUITE_P(Values, SkipValueTest,
                         testing::Values(TSkipCase{"Int8", "\x02\x01"s},
                                         TSkipCase{"Int64", "\x13"s + std::string(8, 'x')},
                                         TSkipCase{"Extended", "\x05"s + std::string(10, 'x')},
                                         TSkipCase{"String", "\x06\x03"s + "abc"},
                                         TSkipCase{"LongString", "\x0C\x03\0\0\0abc"s},
                                         TSkipCase{"WideString", "\x12\x02\0\0\0abcd"s},
                                         TSkipCase{"Binary", "\x0A\x02\0\0\0\0\0"s},
                                         TSkipCase{"Set", "\x0B\x01"s + "a\x02" + "bc\0"s},
                                         TSkipCase{"NestedList", "\x01\x01\x02\x07\0\x09\0"s},
                                         TSkipCase{"EmptyCollection", "\x0E\0"s},
                                         TSkipCase{"CollectionInAnItem",
                                                   "\x0E\x02\x05\x01\x01P\x0E\x01\0\0\0\x01\0\0"s}),
                         [](const auto& row) { return row.param.Name; });

struct TErrorCase {
  const char* Name;
  std::string Bytes;
  std::function<void(TByteReader&)> Read;
  const char* Message;
};

class ByteReaderErrorTest : public testing::TestWithParam<TErrorCase> {};

TEST_P(ByteReaderErrorTest, NamesTheOffsetAndWhatWasExpected) {
  TByteReader reader(GetParam().Bytes);
  try {
    GetParam().Read(reader);
    FAIL() << "no error";
  } catch (const EReadError& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr(GetParam().Message));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Errors, ByteReaderErrorTest,
    testing::Values(
        TErrorCase{"FourGigabytesInTwentyBytes", "\x0A\xFF\xFF\xFF\xFF"s + std::string(15, 'x'),
                   [](TByteReader& r) { r.SkipValue(); },
                   "offset 5 ($5): expected binary data: 4294967295 bytes needed, 15 left"},
        TErrorCase{"WideCountThatOverflowsInBytes", "\x12\xFF\xFF\xFF\xFFxx",
                   [](TByteReader& r) { r.SkipValue(); }, "8589934590 bytes needed, 2 left"},
        TErrorCase{"UnknownTag", "\x01\x7F"s, [](TByteReader& r) { r.SkipValue(); },
                   "offset 1 ($1): expected a value tag"},
        TErrorCase{"NoSignature", "TPF", [](TByteReader& r) { r.ReadSignature(); },
                   "offset 0 ($0): expected the signature \"TPF0\""},
        TErrorCase{"StringForAnInteger", "\x06\x01x", [](TByteReader& r) { r.ReadIntegerValue(); },
                   "offset 0 ($0): expected an integer value"},
        TErrorCase{"ResourceNameWithoutEnd", "\xFF\x0A\0TFORM"s,
                   [](TByteReader& r) {
                     std::string_view name;
                     std::uint32_t size = 0;
                     r.ReadResourceHeader(name, size);
                   },
                   "offset 3 ($3): expected a resource name that ends with a zero byte"}),
    [](const auto& row) { return row.param.Name; });

TEST(ByteReader, SkipsAComponentWithChildren) {
  const std::string bytes =
      "\xF2\x02\x07\x02TA\x01"s + "a" + "\x01P\x02\x01\0"s + "\x02TB\x01"s + "b\0\0"s + "\0"s;
  TByteReader reader(bytes);
  reader.SkipComponent();
  EXPECT_TRUE(reader.AtEnd());
}

TEST(ByteWriter, IntegersTakeTheSmallestTag) {
  const std::pair<std::int64_t, std::size_t> rows[] = {
      {0, 2},          {-128, 2},
      {127, 2},        {128, 3},
      {-129, 3},       {-32768, 3},
      {32768, 5},      {-2147483648, 5},
      {2147483648, 9}, {std::numeric_limits<std::int64_t>::min(), 9}};
  for (const auto& [value, size] : rows) {
    TByteWriter writer;
    writer.WriteIntegerValue(value);
    EXPECT_EQ(writer.Size(), size) << value;
    TByteReader reader(writer.View());
    EXPECT_EQ(reader.ReadIntegerValue(), value);
  }
}

TEST(ByteWriter, StringsOfMoreThan255BytesAreLong) {
  TByteWriter writer;
  writer.WriteStringValue(std::string(255, 'x'));
  writer.WriteStringValue(std::string(256, 'x'));
  EXPECT_EQ(writer.Size(), 2 + 255 + 5 + 256u);
  EXPECT_THROW(writer.WriteShortString(std::string(256, 'x')), EWriteError);
}

}  // namespace
}  // namespace wrenfold
