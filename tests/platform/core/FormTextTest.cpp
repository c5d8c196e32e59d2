// The form converter: the same bytes both ways, clear errors for everything else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/core/stream/FormText.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

std::string ToBinary(std::string_view text, const TFormTextStyle& style = DefaultFormTextStyle()) {
  TByteWriter binary;
  std::size_t position = 0;
  ObjectTextToBinary(text, position, binary, style);
  return binary.ToString();
}

std::string ToText(std::string_view bytes, const TFormTextStyle& style = DefaultFormTextStyle()) {
  TByteReader binary(bytes);
  TByteWriter text;
  ObjectBinaryToText(binary, text, style);
  return text.ToString();
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// One property "P" of one object, as text and as the bytes of its value.
std::string TextOf(const std::string& value) {
  return "object A: T\r\n  P = " + value + "\r\nend\r\n";
}
std::string BinaryOf(const std::string& value) {
  return "TPF0\x01T\x01"s + "A\x01P"s + value + "\0\0"s;
}

struct TValueCase {
  const char* Name;
  std::string Text;
  std::string Binary;
};

class FormValueTest : public testing::TestWithParam<TValueCase> {};

// Lines are read as a whole where enough text follows, else word by word.
const std::string Behind(400, ' ');

TEST_P(FormValueTest, TextGivesTheseBytes) {
  EXPECT_EQ(ToBinary(TextOf(GetParam().Text)), BinaryOf(GetParam().Binary));
  EXPECT_EQ(ToBinary(TextOf(GetParam().Text) + Behind), BinaryOf(GetParam().Binary));
}
TEST_P(FormValueTest, BytesGiveThisText) {
  EXPECT_EQ(ToText(BinaryOf(GetParam().Binary)), TextOf(GetParam().Text));
}

const std::string Sixty(60, 'x');

INSTANTIATE_TEST_SUITE_P(
    Values, FormValueTest,
    testing::Values(
        TValueCase{"SmallestInteger", "-128", "\x02\x80"},
        TValueCase{"Integer16", "32767", "\x03\xFF\x7F"},
        TValueCase{"Integer32", "-2147483648", "\x04\0\0\0\x80"s},
        TValueCase{"Integer64", "-9223372036854775808", "\x13\0\0\0\0\0\0\0\x80"s},
        TValueCase{"Float", "-1.5", "\x05\0\0\0\0\0\0\0\xC0\xFF\xBF"s},
        TValueCase{"LargeFloatHasAnExponent", "1E16", "\x05\0\0\0\x04\xBF\xC9\x1B\x8E\x34\x40"s},
        TValueCase{"Single", "0.5s", "\x0F\0\0\0\x3F"s},
        TValueCase{"CurrencyCountsTenThousandths", "9223372036854775807c",
                   "\x10\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F"},
        TValueCase{"Date", "2d", "\x11\0\0\0\0\0\0\0\x40"s},
        TValueCase{"Infinity", "-INF", "\x05\0\0\0\0\0\0\0\x80\xFF\xFF"s},
        TValueCase{"InfiniteDate", "INFd", "\x11\0\0\0\0\0\0\xF0\x7F"s},
        TValueCase{"False", "False", "\x08"}, TValueCase{"Nil", "nil", "\x0D"},
        TValueCase{"DottedIdentifier", "Main.List", "\x07\x09Main.List"},
        TValueCase{"EmptyString", "''", "\x06\0"s},
        TValueCase{"QuoteAndControlCodes", "'a'#39#13#10'b'", "\x06\x05"s + "a'\r\nb"},
        TValueCase{"HighBytesStayBytes", "'\xFC\x80'", "\x06\x02\xFC\x80"},
        TValueCase{"CodesAbove127AreWide", "'a'#252#1055", "\x12\x03\0\0\0a\0\xFC\0\x1F\x04"s},
        TValueCase{"SixtyFourCharactersStayOnTheLine", "'" + Sixty + "abcd'",
                   "\x06\x40" + Sixty + "abcd"},
        TValueCase{"LongerStringsBreakAtSixtyFour", "\r\n    '" + Sixty + "'#39'abc' +\r\n    'd'",
                   "\x06\x41" + Sixty + "'abcd"},
        TValueCase{"LongString",
                   "\r\n    '" + Sixty + "xxxx' +\r\n    '" + Sixty + "xxxx' +\r\n    '" + Sixty +
                       "xxxx' +\r\n    '" + Sixty + "xxxx'",
                   "\x0C\0\x01\0\0"s + std::string(256, 'x')},
        TValueCase{"EmptySet", "[]", "\x0B\0"s},
        TValueCase{"Set", "[a, bc]", "\x0B\x01"s + "a\x02" + "bc\0"s},
        TValueCase{"EmptyList", "()", "\x01\0"s},
        TValueCase{"NestedList", "(\r\n    1\r\n    (\r\n      'x'))",
                   "\x01\x02\x01\x01\x06\x01x\0\0"s},
        TValueCase{"ShortBinaryStaysOnTheLine", "{00FF}", "\x0A\x02\0\0\0\0\xFF"s},
        TValueCase{"BinaryOfOneLine", "{\r\n    " + std::string(64, 'A') + "}",
                   "\x0A\x20\0\0\0"s + std::string(32, '\xAA')},
        TValueCase{"PropertiesNamedLikeKeywords", "1\r\n  End = 2\r\n  object = 3",
                   "\x02\x01\x03"
                   "End\x02\x02\x06object\x02\x03"},
        TValueCase{"EmptyCollection", "<>", "\x0E\0"s},
        TValueCase{"ItemsWithAndWithoutOrder",
                   "<\r\n    item\r\n      Q = 1\r\n    end\r\n    item [7]\r\n    end>",
                   "\x0E\x01\x01Q\x02\x01\0\x02\x07\x01\0\0"s}),
    [](const auto& row) { return row.param.Name; });

struct TOneWayCase {
  const char* Name;
  std::string Text;
  std::string Binary;
};

class FormTextInputTest : public testing::TestWithParam<TOneWayCase> {};

TEST_P(FormTextInputTest, IsReadAsTheSameValue) {
  EXPECT_EQ(ToBinary(TextOf(GetParam().Text)), BinaryOf(GetParam().Binary));
  EXPECT_EQ(ToBinary(TextOf(GetParam().Text) + Behind), BinaryOf(GetParam().Binary));
}

INSTANTIATE_TEST_SUITE_P(
    Values, FormTextInputTest,
    testing::Values(TOneWayCase{"FalseInLowerCase", "false", "\x08"},
                    TOneWayCase{"TrueInUpperCase", "TRUE", "\x09"},
                    TOneWayCase{"NilInAnyCase", "NIL", "\x0D"},
                    TOneWayCase{"NullInAnyCase", "null", "\0"s},
                    TOneWayCase{"HexInteger", "$fF", "\x03\xFF\0"s},
                    TOneWayCase{"DoubledQuote", "'it''s'", "\x06\x04it's"},
                    TOneWayCase{"JoinedOnOneLine", "'a' + #39 + 'b'",
                                "\x06\x03"
                                "a'b"},
                    TOneWayCase{"LowerCaseBinaryWithBlanks", "{ 0a\n ff }",
                                "\x0A\x02\0\0\0\x0A\xFF"s},
                    TOneWayCase{"TabBetweenTokens", "\t[ a ,b ]", "\x0B\x01"s + "a\x01" + "b\0"s},
                    TOneWayCase{"ExponentWithSign", "15e-1", "\x05\0\0\0\0\0\0\0\xC0\xFF\x3F"s}),
    [](const auto& row) { return row.param.Name; });

struct TTextErrorCase {
  const char* Name;
  std::string Text;
  const char* Message;
};

class FormTextErrorTest : public testing::TestWithParam<TTextErrorCase> {};

TEST_P(FormTextErrorTest, NamesLineColumnAndWhatWasExpected) {
  TByteWriter binary;
  binary.WriteBytes("before");
  std::size_t position = 0;
  try {
    ObjectTextToBinary(GetParam().Text, position, binary);
    FAIL() << "no error";
  } catch (const EParserError& error) {
    EXPECT_THAT(error.what(), HasSubstr(GetParam().Message));
  }
  EXPECT_EQ(binary.View(), "before");
  EXPECT_EQ(position, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Errors, FormTextErrorTest,
    testing::Values(
        TTextErrorCase{"NoObject", "unit A;", "Line 1, column 1: expected \"object\""},
        TTextErrorCase{
            "EndMissing", "object A: T\r\n  P = 1\r\n",
            "Line 3, column 1: expected a property, a component or \"end\", found the end"},
        TTextErrorCase{"WrongTokenBehindBlanks", "object A: T\r\n  P  5\r\nend\r\n",
                       "Line 2, column 6: expected \"=\", found \"5\""},
        TTextErrorCase{"CollectionWithoutAnEnd", TextOf("<\r\n item\r\n end"),
                       "Line 5, column 1: expected \"item\" or \">\", found \"end\""},
        TTextErrorCase{"HalfAByte", TextOf("{001}"), "Line 2, column 10: expected pairs"},
        TTextErrorCase{"FloatTooLarge", TextOf("1e999999"),
                       "Line 2, column 7: expected a float that fits ten bytes"},
        TTextErrorCase{"NullWouldEndItsList", TextOf("(NULL)"),
                       "Line 2, column 8: expected a value that a list can hold, found \"NULL\""},
        TTextErrorCase{"DateTooLarge", TextOf("1e999d"),
                       "Line 2, column 7: expected a float that fits its kind"},
        TTextErrorCase{"NulInAName", "object A"s + '\0' + "B: T\r\nend", "column 9: expected "},
        TTextErrorCase{"CodeOutOfRange", TextOf("#65536"), "at most 65535"},
        TTextErrorCase{"NameTooLong", TextOf("1\r\n  " + std::string(256, 'n') + " = 1"),
                       "Line 3, column 3: expected a name of at most 255 bytes"},
        TTextErrorCase{"PropertyBehindAChild", "object A: T\nobject B: T\nend\nP = 1\nend",
                       "Line 4, column 1: expected a component or \"end\", found \"P\""},
        TTextErrorCase{"JoinWithoutAString", TextOf("'a' +"),
                       "Line 3, column 1: expected a string"}),
    [](const auto& row) { return row.param.Name; });

struct TBinaryErrorCase {
  const char* Name;
  std::string Bytes;
  const char* Message;
};

class FormBinaryErrorTest : public testing::TestWithParam<TBinaryErrorCase> {};

TEST_P(FormBinaryErrorTest, NamesTheOffsetAndWhatWasExpected) {
  TByteWriter text;
  text.WriteBytes("before");
  TByteReader binary(GetParam().Bytes);
  try {
    ObjectBinaryToText(binary, text);
    FAIL() << "no error";
  } catch (const EReadError& error) {
    EXPECT_THAT(error.what(), HasSubstr(GetParam().Message));
  }
  EXPECT_EQ(text.View(), "before");
}

INSTANTIATE_TEST_SUITE_P(
    Errors, FormBinaryErrorTest,
    testing::Values(
        TBinaryErrorCase{"NoSignature", "TPF1", "offset 0 ($0): expected the signature"},
        TBinaryErrorCase{"NulInAName", "TPF0\x03T\0X\x01"s + "A\0\0"s,
                         "offset 6 ($6): expected a class name"},
        TBinaryErrorCase{"BlankInAnIdentifier", BinaryOf("\x07\x03"s + "a b"),
                         "expected an identifier"},
        TBinaryErrorCase{"IdentifierThatWouldEndItsList", BinaryOf("\x01\x07\x04NULL\0"s),
                         "a value that a list can hold"},
        TBinaryErrorCase{"InvalidUtf8", BinaryOf("\x14\x02\0\0\0\xC3("s),
                         "offset 15 ($F): expected valid UTF-8"},
        TBinaryErrorCase{"UnknownTag", BinaryOf("\x63"), "expected a value tag"},
        TBinaryErrorCase{"CollectionWithoutAnEnd", BinaryOf("\x0E\x01").substr(0, 13),
                         "expected "}),
    [](const auto& row) { return row.param.Name; });

TEST(FormBinary, TextOfDeepSmallValuesStaysASmallMultiple) {
  // Each byte would become a line indented by a thousand blanks.
  const std::string deep = BinaryOf(std::string(500, '\x01') + std::string(1'000'000, '\x09'));
  TByteReader binary(deep);
  TByteWriter text;
  EXPECT_THROW(ObjectBinaryToText(binary, text), EReadError);
}

// The stream, or the error.
std::string Outcome(const std::string& text, const char* style) {
  try {
    return ToBinary(text, *FindFormTextStyle(style));
  } catch (const EParserError& error) {
    return error.Message();
  }
}

TEST(FormText, WholeLinesAreReadLikeWords) {
  std::vector<std::string> lines = {
      "P = 'a'\r\n  + 'b'",
      "P = 'a' 'b'",
      "P = 'it''s'",
      "P = 'a'#13",
      "P = 'open",
      "P = '\x07'",
      "P = -",
      "P = -7",
      "P = 12345678",
      "P = 123456789",
      "P = 1.5",
      "P = 5x",
      "P = nil",
      "P = Null",
      "P = INF",
      "P = Trues",
      "P = clRed",
      "P = a.b",
      "P =\r\n  5",
      "P = 5 Q = 6",
      "P=5",
      "P = ",
      " = 5",
      "\tP = 5",
      "P = 5 ",
      "end\r\n  = 5",
      "END\r\n  object C: D\r\n  end",
      "end = 5",
      "object = 5",
      "Object B: C\r\n  end",
      "object B: C\r\n  [3]\r\n  end",
      "object B: C [3]\r\n  end",
      "object B: C\r\n  Q = 1\r\n  end\r\n  R = 2",
      "object B:C\r\n  end",
      "object C\r\n  end",
      "object : C\r\n  end",
      "P = <\r\n    item\r\n      Q = 1\r\n    end\r\n    item\r\n      object B: C\r\n    end>"};
  for (const std::size_t size : {15, 16, 17, 31, 32, 33, 62, 63, 64, 65}) {
    const std::string word(size, 'w');
    lines.push_back(word + " = 1");
    lines.push_back("P = " + word);
    lines.push_back("P = '" + word + "'");
    lines.push_back("object " + word + ": C\r\n  end");
    lines.push_back("object B: " + word + "\r\n  end");
  }
  std::string nested;
  for (std::string indent = "  "; indent.size() < 24; indent += "  ")
    nested += indent + "object B: C\r\n";
  lines.push_back(nested);
  for (const std::string& line : lines) {
    const std::string text = "object A: T\r\n  " + line + "\r\n  Z = 0\r\nend\r\n" + Behind;
    // The second style reads word by word.
    EXPECT_EQ(Outcome(text, "plain"), Outcome(text, "edited")) << line;
  }
}

TEST(FormText, ObjectsAreReadOneAtATime) {
  const std::string text = "object A: T\r\nend\r\nsome words\r\nobject B: T\r\nend\r\n\r\n";
  std::size_t position = 0;
  TByteWriter binary;
  ObjectTextToBinary(text, position, binary);
  EXPECT_EQ(text.substr(position, 10), "some words");
  position += 12;
  ObjectTextToBinary(text, position, binary);
  EXPECT_TRUE(AtTextEnd(text, position));
  TByteReader reader(binary.View());
  TByteWriter back;
  ObjectBinaryToText(reader, back);
  EXPECT_EQ(back.View(), "object A: T\r\nend\r\n");
  ObjectBinaryToText(reader, back);
  EXPECT_TRUE(reader.AtEnd());
}

struct THeaderCase {
  const char* Name;
  std::string Header;
  std::string Binary;  // up to the property list
};

class FormHeaderTest : public testing::TestWithParam<THeaderCase> {};

TEST_P(FormHeaderTest, GoesThereAndBack) {
  const std::string text = GetParam().Header + "\r\nend\r\n";
  const std::string binary = "TPF0" + GetParam().Binary + "\0\0"s;
  EXPECT_EQ(ToBinary(text), binary);
  EXPECT_EQ(ToText(binary), text);
}

INSTANTIATE_TEST_SUITE_P(
    Headers, FormHeaderTest,
    testing::Values(THeaderCase{"Nameless", "object T", "\x01T\0"s},
                    THeaderCase{"Inherited", "inherited A: T", "\xF1\x01T\x01"s + "A"},
                    THeaderCase{"InlineAtAPosition", "inline A: T [300]",
                                "\xF6\x03\x2C\x01\x01T\x01"s + "A"},
                    THeaderCase{"LengthByteThatLooksLikeAPrefix", "object " + std::string(241, 'T'),
                                "\xF0\xF1" + std::string(241, 'T') + '\0'}),
    [](const auto& row) { return row.param.Name; });

struct TStyleCase {
  const char* Name;
  const char* Style;
  std::string Value;
};

class FormStyleTest : public testing::TestWithParam<TStyleCase> {};

TEST_P(FormStyleTest, TextOfThisStyleComesBack) {
  const TFormTextStyle* style = FindFormTextStyle(GetParam().Style);
  ASSERT_NE(style, nullptr);
  const std::string text = TextOf(GetParam().Value);
  EXPECT_EQ(ToText(ToBinary(text, *style), *style), text);
  EXPECT_NE(ToText(ToBinary(text)), text) << "the default style would do";
}

INSTANTIATE_TEST_SUITE_P(
    Styles, FormStyleTest,
    testing::Values(TStyleCase{"FixedWhole", "fixed", "37400.000000000000000000"},
                    TStyleCase{"FixedSixteenDigits", "fixed", "38114.956064340280000000"},
                    TStyleCase{"FixedBelowOne", "fixed", "0.000000000000000123"},
                    TStyleCase{"LeadByteStaysWithItsTrailByte", "double-byte",
                               "\r\n    '" + Sixty + "abc' +\r\n    '\xB7\xBD\xD1'"},
                    TStyleCase{"ExactDigits", "exact", "0.10000000000000000001"},
                    TStyleCase{"ExactWhole", "exact", "2.0"},
                    TStyleCase{"LetterCaseOfWords", "edited", "TRUE"},
                    TStyleCase{"BlankLine", "edited", "1\r\n  \r\n  Q = 2"},
                    TStyleCase{"BlankBehindAClassName", "edited", "1\r\n  object B: T \r\n  end"},
                    TStyleCase{"LongString", "lfm", "'" + Sixty + "abcdefghijklm'#13#10'''x'''"},
                    TStyleCase{"LongWideString", "lfm", "'it''s '#8364'" + Sixty + "abcdefgh'"},
                    TStyleCase{"ListClosedOnItsOwn", "lfm", "(\r\n    'a'\r\n    1\r\n  )"},
                    TStyleCase{"DataClosedOnItsOwn", "lfm", "{\r\n    0102\r\n  }"},
                    TStyleCase{"PositionBehindTheClass", "lfm", "1\r\n  object B: T[2]\r\n  end"},
                    TStyleCase{"IndentInFrontOfItems", "lfm-older",
                               "<  \r\n    item\r\n    end  \r\n    item\r\n    end>"}),
    [](const auto& row) { return row.param.Name; });

TEST(FormStyle, NewerStyleKeepsDoublesAndUtf8) {
  const TFormTextStyle& newer = *FindFormTextStyle("newer");
  for (const std::string& value : {"\x15\x9A\x99\x99\x99\x99\x99\xB9\x3F"s,
                                   "\x14\x03\0\0\0a\xC3\xBC"s, "\x0F\xCD\xCC\xCC\x3D"s})
    EXPECT_EQ(ToBinary(ToText(BinaryOf(value), newer), newer), BinaryOf(value));
}

struct TFormatCase {
  std::string Bytes;
  TFormFormat Format;
};

TEST(TestFormFormat, LooksAtTheFirstBytes) {
  const TFormatCase rows[] = {{"TPF0", TFormFormat::Binary},      {"TPF", TFormFormat::Unknown},
                              {"\xFF", TFormFormat::Resource},    {"object", TFormFormat::Text},
                              {"Inherited", TFormFormat::Text},   {"\x0Bx", TFormFormat::Text},
                              {"\nobject", TFormFormat::Unknown}, {"", TFormFormat::Unknown}};
  for (const TFormatCase& row : rows) EXPECT_EQ(TestFormFormat(row.Bytes), row.Format) << row.Bytes;
}

TEST(FormResource, CarriesTheClassNameAndTheSize) {
  const std::string text = "object A: TFoo_1\r\nend\r\n";
  TByteWriter resource;
  std::size_t position = 0;
  ObjectTextToResource(text, position, resource);
  EXPECT_EQ(resource.View(), "\xFF\x0A\0TFOO_1\0\x30\x10\x0F\0\0\0TPF0\x06TFoo_1\x01"s + "A\0\0"s);
  TByteReader reader(resource.View());
  TByteWriter back;
  ObjectResourceToText(reader, back);
  EXPECT_EQ(back.View(), text);
}

TEST(FormResource, WrongSizeIsRefused) {
  for (const char size : {'\x0E', '\x10'}) {
    const std::string bytes =
        "\xFF\x0A\0T\0\x30\x10"s + size + "\0\0\0TPF0\x06TFoo_1\x01"s + "A\0\0x"s;
    TByteReader reader(bytes);
    TByteWriter text;
    EXPECT_THROW(ObjectResourceToText(reader, text), EReadError);
    EXPECT_EQ(text.Size(), 0u);
  }
}

// Whole files.

std::string WithCrLf(const std::string& text) {
  if (text.find("\r\n") != std::string::npos) return text;
  std::string result;
  for (const char character : text) {
    if (character == '\n') result += '\r';
    result += character;
  }
  return result.ends_with('\n') ? result : result + "\r\n";
}

bool TextComesBack(const std::string& text) {
  for (const TFormTextStyle& style : FormTextStyles())
    if (ToText(ToBinary(text, style), style) == text) return true;
  return false;
}

bool ResourceComesBack(const std::string& bytes) {
  TByteReader reader(bytes);
  TByteWriter text;
  ObjectResourceToText(reader, text);
  TByteWriter back;
  std::size_t position = 0;
  ObjectTextToResource(text.View(), position, back);
  return back.View() == bytes;
}

void CheckFolder(const std::filesystem::path& folder, double atLeast) {
  int count = 0;
  int identical = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.path().extension().string().ends_with("fm")) continue;
    const std::string bytes = ReadFile(entry.path());
    if (TestFormFormat(bytes) == TFormFormat::Resource) {
      EXPECT_TRUE(ResourceComesBack(bytes)) << entry.path();
      continue;
    }
    ++count;
    if (TextComesBack(WithCrLf(bytes))) ++identical;
  }
  EXPECT_GT(count, 0);
  EXPECT_GE(identical, count * atLeast) << identical << " of " << count;
}

TEST(FormFiles, OwnSamplesComeBackByteForByte) {
  CheckFolder(std::filesystem::path(WRENFOLD_SOURCE_DIR) / "tests/data/forms", 1.0);
}

TEST(FormFiles, RealFilesComeBackByteForByte) {
  const char* folder = std::getenv("WRENFOLD_FORMS");
  if (folder == nullptr) GTEST_SKIP() << "WRENFOLD_FORMS names no folder of real form files";
  CheckFolder(folder, 0.99);
  const std::string other = std::string(folder) + "-lfm";
  if (std::filesystem::exists(other)) CheckFolder(other, 0.99);
}

}  // namespace
}  // namespace wrenfold
