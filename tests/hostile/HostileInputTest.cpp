// Input made to harm: it ends in an error that tells place and expectation, or is read; memory
// stays a small multiple of its size and time grows in step with it.
#include <gmock/gmock.h>

#include <ctime>
#include <filesystem>
#include <functional>

#include "foundation/rkClasses.h"
#include "fuzz/FuzzObjects.h"
#include "hostile/AllocationMeter.h"
#include "locale/ResourceLibrary.h"
#include "platform/core/model/ClassRegistry.h"
#include "platform/core/system/Files.h"
#include "project/FormFile.h"
#include "project/ProjectSource.h"
#include "project/TextEncoding.h"
#include "project/UnitSource.h"
#include "storage/TestObjects.h"
#include "storage/rkDataBody.h"

using namespace std::string_literals;

namespace wrenfold {
namespace {

// The readers.

void TextToBinary(const std::string& bytes) {
  std::size_t position = 0;
  TByteWriter binary;
  ObjectTextToBinary(bytes, position, binary);
}

void BinaryToText(const std::string& bytes) {
  TByteReader reader(bytes);
  TByteWriter text;
  ObjectBinaryToText(reader, text);
}

void DesignForm(const std::string& bytes) {
  ReadDesignForm(bytes);
}

void TypedRecord(const std::string& bytes, bool ignoreErrors) {
  const TAnswers answers(mbNo);
  TMemoryStream stream(bytes);
  TFitReader reader(stream);
  reader.IgnoreErrors = ignoreErrors;
  TFuzzComponent component;
  reader.ReadAsComponent(component);
}
void TypedRecordStrict(const std::string& bytes) {
  TypedRecord(bytes, false);
}
void TypedRecordGoingOn(const std::string& bytes) {
  TypedRecord(bytes, true);
}

void TypedRoot(const std::string& bytes) {
  RegisterClass(TFuzzComponent::ClassInfo());
  TMemoryStream stream(bytes);
  TReader reader(stream);
  TFuzzComponent component;
  reader.ReadRootComponent(&component);
}

void SkipStored(const std::string& bytes) {
  TMemoryStream stream(bytes);
  TFitReader(stream).SkipObject();
}

void KeyedCollections(const std::string& bytes) {
  TKeyedRoot root;
  for (int i = 0; i < 1000; ++i) root.Fixed.Add(std::to_string(i));
  root.Reorder = true;
  TMemoryStream stream(bytes);
  TFitReader(stream).ReadAsComponent(root);
}

void StoredData(const std::string& bytes) {
  TSample sample;
  TStringStream stream{bytes};
  LoadObjectData({&sample}, stream);
}

void Ini(const std::string& bytes) {
  TStringList lines;
  lines.SetText(bytes);
  TIniStrings ini;
  ini.SetStrings(lines);
  ini.Sort();
  TStringList again;
  ini.GetStrings(again);
}

void PascalProject(const std::string& bytes) {
  ParseProjectSource(bytes, "a.dpr");
}
void CppProject(const std::string& bytes) {
  ParseProjectSource(bytes, "a.cpp");
}
void PascalUnit(const std::string& bytes) {
  ParseUnitSource(bytes, "a.pas");
}
void CppHeader(const std::string& bytes) {
  ParseUnitSource(bytes, "a.h");
}
void Decode(const std::string& bytes) {
  TTextFormat format;
  EncodeText(DecodeText(bytes, 1252, format), format, "a.pas");
}
void SetText(const std::string& bytes) {
  TSample sample;
  SetPropByText(sample, "Grades", bytes);
}
void Path(const std::string& bytes) {
  TSample sample;
  sample.SetInner(&sample);
  SetPropByText(sample, bytes, "5");
}

// The inputs.

std::string Repeat(std::string_view part, std::size_t count) {
  std::string text;
  text.reserve(part.size() * count);
  for (std::size_t i = 0; i < count; ++i) text += part;
  return text;
}

std::string Join(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

// Each part with its number in place of '@'.
std::string Numbered(std::string_view part, std::size_t count) {
  const std::size_t mark = part.find('@');
  std::string text;
  for (std::size_t i = 0; i < count; ++i)
    text.append(part.substr(0, mark)).append(std::to_string(i)).append(part.substr(mark + 1));
  return text;
}

std::string Short(std::string_view text) {
  return std::string(1, static_cast<char>(text.size())).append(text);
}

std::string BinaryOf(std::initializer_list<std::string_view> properties) {
  return Join({"TPF0", Short("TFuzzComponent"), Short("A"), Join(properties)});
}

// A binary property of a numbered name.
std::string NumberedProperties(std::string_view prefix, std::size_t count, std::string_view value) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i)
    bytes.append(Short(Join({prefix, std::to_string(i)}))).append(value);
  return bytes;
}

std::string NumberedComponents(std::size_t count, const std::string& properties) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i)
    bytes += Short("TFuzzComponent") + Short(Join({"C", std::to_string(i)})) + properties + "\0\0"s;
  return bytes;
}

struct THostileCase {
  const char* Name;
  void (*Read)(const std::string& bytes);
  std::size_t Count;
  std::function<std::string(std::size_t count)> Make;
  // Part of the error; null where the input is read.
  const char* Error = nullptr;
  // The most memory for each byte of input. Objects of compiled classes are larger than their
  // names.
  std::size_t Growth = 12;
};

void PrintTo(const THostileCase& row, std::ostream* stream) {
  *stream << row.Name;
}

const auto TextWith(std::string before, std::string part, std::string after = {}) {
  return [=](std::size_t count) {
    return Join({"object A: T\r\n", before, Repeat(part, count), after});
  };
}

const auto BinaryWith(std::string before, std::string part, std::string after = {}) {
  return [=](std::size_t count) { return BinaryOf({before, Repeat(part, count), after}); };
}

const std::string Item = "\x01\0"s;
const std::string NestedItem = "\x05Items\x0E\x01"s;
constexpr std::size_t LargeObjects = 400;

const THostileCase Cases[] = {
    // Nesting of a million levels.
    {"TextLists", TextToBinary, 1'000'000, TextWith("P = ", "("),
     "Line 2, column 517: expected at most 512 nested"},
    {"TextCollections", TextToBinary, 1'000'000, TextWith("P = ", "<item P = "),
     "expected at most 512 nested"},
    {"TextComponents", TextToBinary, 1'000'000, TextWith("", "object A: T\r\n"),
     "Line 513, column 8: expected at most 512 nested"},
    {"BinaryLists", BinaryToText, 1'000'000, BinaryWith("\x01P", "\x01"),
     "expected at most 512 nested"},
    {"BinaryComponents", BinaryToText, 1'000'000, BinaryWith("\0"s, "\x01T\0\0"s),
     "expected at most 512 nested"},
    {"DesignLists", DesignForm, 1'000'000, BinaryWith("\x01P", "\x01"), "offset 1000023"},
    {"DesignComponents", DesignForm, 1'000'000, BinaryWith("\0"s, "\x01T\0\0"s),
     "offset 4000022 ($3D0916): expected a component", LargeObjects},
    {"TypedComponents", TypedRoot, 1'000'000, BinaryWith("\0"s, "\x0ETFuzzComponent\0\0"s),
     "Objects nest deeper than 1000 levels at offset ", LargeObjects},
    {"TypedCollections", TypedRecordStrict, 1'000'000, BinaryWith("\x05Items\x0E\x01", NestedItem),
     "offset ", LargeObjects},
    {"TypedCollectionsGoingOn", TypedRecordGoingOn, 1'000'000,
     BinaryWith("\x05Items\x0E\x01", NestedItem), "offset ", LargeObjects},
    {"TypedLists", TypedRecordGoingOn, 1'000'000, BinaryWith("\x06Number", "\x01"), "offset "},
    {"SkippedLists", SkipStored, 1'000'000, BinaryWith("\x06Number", "\x01"), "offset 1000028"},
    {"Conditionals", PascalProject, 200'000,
     [](std::size_t count) {
       return Join({"program A; uses B;\n", Repeat("{$IFDEF X}\n", count)});
     },
     nullptr, 40},
    {"CppConditionals", CppHeader, 200'000,
     [](std::size_t count) { return Repeat("#if X\n", count); }, nullptr, 40},
    {"Conditions", PascalProject, 1'000'000,
     [](std::size_t count) {
       return Join({"program A; uses B;\n{$IF ", Repeat("(", count), "}"});
     }},
    {"Path", Path, 200'000,
     [](std::size_t count) {
       return Join({Repeat("Inner.", count), "Number"});
     }},

    // Lengths that the input does not have.
    {"PictureOfFourGigabytes", TypedRecordGoingOn, 1,
     [](std::size_t) {
       return BinaryOf({"\x0CPicture.Data\x0A\x0C\0\0\0\x07TBitmap\xFF\xFF\xFF\xFF\0\0"s});
     },
     nullptr, 4096},

    // What has no end.
    {"TextString", TextToBinary, 2'000'000, TextWith("P = '", "x"),
     "Line 2, column 5: expected a string that ends with a quote"},
    {"TextCollection", TextToBinary, 100'000, TextWith("P = <", "item\r\nend\r\n"),
     "expected \"item\" or \">\", found the end"},
    {"TextBinary", TextToBinary, 1'000'000, TextWith("P = {", "00"), "expected binary data"},
    {"TextList", TextToBinary, 300'000, TextWith("P = (", "1 "), "found the end"},
    {"BinaryCollection", TypedRecordStrict, 300'000, BinaryWith("\x05Items\x0E", "\x01\0"s),
     "offset ", LargeObjects},
    {"BinarySet", TypedRecordGoingOn, 300'000,
     BinaryWith("\x06Styles\x0B",
                "\x06"
                "fsBold"),
     "offset "},
    {"Comment", PascalProject, 1'000'000,
     [](std::size_t count) {
       return Join({"program A; uses B; (*", Repeat("(*", count)});
     }},
    {"Comments", CppHeader, 500'000, [](std::size_t count) { return Repeat("/* ", count); }},
    {"Quotes", CppHeader, 300'000, [](std::size_t count) { return Repeat("\"\n", count); }},
    {"RawTexts", CppHeader, 200'000, [](std::size_t count) { return Repeat("R\"(\n", count); }},
    {"TypeParameters", CppHeader, 200'000,
     [](std::size_t count) { return Repeat("class A: B<\n", count); }, nullptr, 40},
    {"ClassHeads", PascalUnit, 100'000,
     [](std::size_t count) {
       return Join({"interface type\n", Repeat("A = class(B<\n", count)});
     },
     nullptr, 80},
    {"HeaderLine", StoredData, 1'000'000,
     [](std::size_t count) {
       return Join({"sys_txt", Repeat("x", count)});
     },
     "offset 7: expected the line end of the data header"},

    // Many of a kind.
    {"TextProperties", TextToBinary, 100'000,
     [](std::size_t count) {
       return Join({"object A: T\r\n", Numbered("P@ = 1\r\n", count), "end\r\n"});
     }},
    {"DesignProperties", DesignForm, 100'000,
     [](std::size_t count) {
       return BinaryOf({NumberedProperties("P", count, "\x09"), "\0\0"s});
     },
     nullptr, 24},
    {"UnknownProperties", TypedRecordGoingOn, 100'000,
     [](std::size_t count) {
       return BinaryOf({NumberedProperties("P", count, "\x09"), "\0\0"s});
     }},
    {"RepeatedCollections", TypedRecordGoingOn, 50'000,
     BinaryWith("",
                "\x05Items\x0E\x01\x04Peer\x07\x01"
                "A\0\0"s,
                "\0\0"s),
     nullptr, 40},
    {"References", TypedRecordGoingOn, 50'000,
     BinaryWith("\x05Items\x0E", "\x01\x04Peer\x07\x07Missing\0"s, "\0\0\0"s), nullptr,
     LargeObjects},
    {"Components", TypedRoot, 10'000,
     [](std::size_t count) {
       return BinaryOf({"\0"s, NumberedComponents(count, ""), "\0"s});
     },
     nullptr, LargeObjects},
    {"ReferencesToComponents", TypedRoot, 10'000,
     [](std::size_t count) {
       return BinaryOf({"\0"s,
                        NumberedComponents(count,
                                           "\x04Peer\x07\x05"
                                           "C9999"),
                        "\0"s});
     },
     nullptr, LargeObjects},
    {"KeyedItems", KeyedCollections, 5'000,
     [](std::size_t count) {
       return BinaryOf(
           {"\x06"
            "Fixed_\x0E"s,
            Repeat("\x01\x03Key\x06\x01"
                   "7\0"s,
                   count),
            "\0\0\0"s});
     },
     nullptr, 60},
    {"IniSections", Ini, 50'000, [](std::size_t count) { return Numbered("[S@]\n", count); },
     nullptr, 100},
    {"IniKeys", Ini, 50'000,
     [](std::size_t count) {
       return Join({"[S]\n", Numbered("K@=1\n", count)});
     },
     nullptr, 100},
    {"Units", PascalProject, 20'000,
     [](std::size_t count) {
       return Join({"program A; uses B", Numbered(", U@ in 'U.pas'\n", count), ";"});
     },
     nullptr, 40},
    {"FormMacros", CppProject, 20'000,
     [](std::size_t count) { return Numbered("USEFORM(\"U@.cpp\", F);\n", count); }, nullptr, 40},
    {"Problems", PascalProject, 50'000,
     [](std::size_t count) {
       return Join({"program A; uses B", Repeat(", 1\n", count), ";"});
     },
     nullptr, 80},
    {"SetElements", SetText, 100'000,
     [](std::size_t count) {
       return Join({"[", Repeat("grLow, ", count), "]"});
     }},
    {"JoinedStrings", TextToBinary, 100'000, TextWith("P = 'a'", " +\r\n'a'", "\r\nend\r\n")},
    {"CharacterCodes", TextToBinary, 200'000, TextWith("P = ", "#1074", "\r\nend\r\n")},

    // Numbers and characters.
    {"LongInteger", TextToBinary, 500'000, TextWith("P = ", "9"), "expected an integer of 64 bits"},
    {"LongFraction", TextToBinary, 500'000, TextWith("P = 0.", "0", "1\r\nend\r\n")},
    {"LongExponent", TextToBinary, 500'000, TextWith("P = 1e", "9"),
     "Line 2, column 5: expected a float that fits"},
    {"InvalidUtf8InSources", Decode, 1'000'000,
     [](std::size_t count) { return Repeat("\xC3(", count); }},
};

struct TFileCase {
  const char* Name;
  void (*Load)(const std::string& fileName);
  std::string Bytes;
  const char* Error;  // behind the name of the file
};

void LoadSettings(const std::string& fileName) {
  TKeyedRoot root;
  TObjectSaver saver;
  saver.RecognitionOn = true;
  saver.SafeLoadObjects({&root}, fileName);
}
void LoadData(const std::string& fileName) {
  TSample sample;
  LoadObjectData({&sample}, fileName);
}

const std::string Gigabytes = BinaryOf({"\x01P\x0A\xFF\xFF\xFF\xFF"});

const TFileCase FileCases[] = {
    {"BinarySettings", LoadSettings, Gigabytes, "offset 28 ($1C): expected binary data"},
    {"TextSettings", LoadSettings, "object T\r\n  Title = 'x\r\nend",
     "Line 2, column 11: expected"},
    {"NoSettings", LoadSettings, "[Main]\r\n", "offset 0: expected a stored object"},
    {"Data", LoadData, Join({"sys_bin\0\0"s, Gigabytes}), "offset "},
    {"TextData", LoadData, "sys_txt\r\n---\r\nline\r\nobject T\r\n", "Line 5, column 1: expected"},
    {"BinaryForm", [](const std::string& fileName) { LoadFormFile(fileName); }, Gigabytes,
     "offset 28 ($1C): expected binary data"},
    {"TextForm", [](const std::string& fileName) { LoadFormFile(fileName); },
     "object A: T\n  P = <\nend", "Line 3, column 1: expected \"item\""},
    {"LanguageModule", [](const std::string& fileName) { TResourceLibrary library(fileName); },
     "MZ" + std::string(18, '\xFF'), "offset "},
};

class HostileFileTest : public testing::TestWithParam<TFileCase> {};

TEST_P(HostileFileTest, ErrorTellsTheFileAndLeavesIt) {
  const TFileCase& row = GetParam();
  const std::string name =
      std::filesystem::path(testing::TempDir()) / (std::string("hostile-") + row.Name);
  SafeWriteFile(name, row.Bytes);
  const std::string message = MessageOf([&] { row.Load(name); });
  EXPECT_THAT(message, testing::HasSubstr(name));
  EXPECT_THAT(message, testing::HasSubstr(row.Error));
  EXPECT_EQ(ReadWholeFile(name), row.Bytes);
  std::filesystem::remove(name);
}

INSTANTIATE_TEST_SUITE_P(Files, HostileFileTest, testing::ValuesIn(FileCases),
                         [](const auto& row) { return row.param.Name; });

double Seconds() {
  timespec time;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// The message of the error; empty when the input is read.
std::string Read(const THostileCase& row, const std::string& bytes, double& seconds) {
  std::string message;
  const double start = Seconds();
  try {
    row.Read(bytes);
  } catch (const Exception& error) {
    message = error.Message();
  }
  seconds = Seconds() - start;
  return message;
}

class HostileInputTest : public testing::TestWithParam<THostileCase> {};

TEST_P(HostileInputTest, EndsInAnErrorThatTellsItsPlaceWithinMemory) {
  const THostileCase& row = GetParam();
  const std::string bytes = row.Make(row.Count);
  double seconds = 0;
  const TAllocationMeter meter;
  const std::string message = Read(row, bytes, seconds);
  constexpr std::size_t free = 16 << 10;
  EXPECT_LE(meter.PeakBytes(), bytes.size() * row.Growth + free) << bytes.size() << " bytes";
  if (row.Error == nullptr) EXPECT_EQ(message, "");
  else EXPECT_THAT(message, testing::HasSubstr(row.Error));
}

// Twice the input takes about twice the time, not four times; a busy machine gets several tries.
TEST_P(HostileInputTest, TakesTimeInStepWithItsSize) {
  const THostileCase& row = GetParam();
  if (row.Count == 1) GTEST_SKIP() << "a single value";
  constexpr double most = 3.0;
  constexpr double unmeasurable = 0.005;
  const std::string half = row.Make(row.Count / 2);
  const std::string whole = row.Make(row.Count);
  double halfTime = 0, wholeTime = 0;
  for (int attempt = 0; attempt < 5; ++attempt) {
    Read(row, half, halfTime);
    Read(row, whole, wholeTime);
    if (wholeTime <= most * halfTime + unmeasurable) return;
  }
  ADD_FAILURE() << half.size() << " bytes take " << halfTime << " s, " << whole.size() << " take "
                << wholeTime << " s";
}

INSTANTIATE_TEST_SUITE_P(Inputs, HostileInputTest, testing::ValuesIn(Cases),
                         [](const auto& row) { return row.param.Name; });

}  // namespace
}  // namespace wrenfold
