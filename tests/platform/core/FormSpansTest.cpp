// Changed text forms: what was not changed keeps its bytes, whatever wrote the file.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/FormSource.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;

std::string Number(std::int64_t value) {
  TByteWriter bytes;
  bytes.WriteIntegerValue(value);
  return bytes.ToString();
}
std::string Text(std::string_view value) {
  TByteWriter bytes;
  bytes.WriteStringValue(value);
  return bytes.ToString();
}
// The value that stands behind "P = " in a form of one property.
std::string ValueOf(const std::string& text) {
  const std::string form = "object T\r\n  P = " + text + "\r\nend\r\n";
  std::size_t position = 0;
  TByteWriter stream;
  ObjectTextToBinary(form, position, stream);
  return std::string(ReadDesignForm(stream.ToString())->FindValue("P"));
}

TDesignComponent& Named(TDesignComponent& root, const char* name) {
  return dynamic_cast<TDesignComponent&>(*root.FindComponent(name));
}

// As left behind by several tools: blanks, a comment, an odd break, no line end at the end.
constexpr std::string_view Odd =
    "\xEF\xBB\xBF\n object  Main : TMain \r\n  Left=1  \r\n\r\n  Caption = 'on' +\n    'e'\n"
    "  Far = \n     'a'\n  Lines.Strings = (\n      'a' \n    'b'\n    )\n"
    "  Columns = <\n    item\n      Title  = 'x'\n      Width = 7 // narrow\n    end>\n"
    "  // by hand\n  object Box: TPanel [1]\n    Tag = 1\n    OBJECT Ok: TButton\n"
    "      Top = 5   \n    end \n  end\n  object Last: TLabel\n  end\nend";

struct TChangeCase {
  const char* Name;
  void (*Change)(TDesignComponent& root);
  const char* Old;  // the only place of the text that differs
  const char* New;
};

class FormSpansTest : public testing::TestWithParam<TChangeCase> {};

const TChangeCase Changes[] = {
    {"Nothing", [](TDesignComponent&) {}, "", ""},
    {"SameValueInAnotherRendering",
     [](TDesignComponent& root) { root.SetValue("Caption", Text("one")); }, "", ""},
    {"Value", [](TDesignComponent& root) { root.SetValue("Left", Number(20)); }, "Left=1  ",
     "Left=20  "},
    {"ValueThatStoodInTheNextLine", [](TDesignComponent& root) { root.SetValue("Far", Text("b")); },
     "Far = \n     'a'", "Far = 'b'"},
    {"BrokenString", [](TDesignComponent& root) { root.SetValue("Caption", Text("two")); },
     "'on' +\n    'e'", "'two'"},
    {"NewValueBehindTheOthers",
     [](TDesignComponent& root) { root.SetValue("Visible", ValueOf("True")); }, "narrow\n    end>",
     "narrow\n    end>\n  Visible = True"},
    {"NewValueWhereThereIsNone",
     [](TDesignComponent& root) {
       Named(root, "Last").SetValue("Items.Strings", ValueOf("('a' 'b')"));
     },
     "TLabel", "TLabel\n    Items.Strings = (\n      'a'\n      'b')"},
    {"RemovedValueWithItsLine", [](TDesignComponent& root) { root.RemoveValue("Left"); },
     "\r\n  Left=1  ", ""},
    {"ValueRemovedAndPutBack",
     [](TDesignComponent& root) {
       root.RemoveValue("Left");
       root.InsertValue(0, "Left", Number(1));
     },
     "", ""},
    {"ElementOfAList",
     [](TDesignComponent& root) { root.SetValue("Lines.Strings", ValueOf("('a' 'c')")); }, "'b'",
     "'c'"},
    {"ElementInFrontOfTheLast",
     [](TDesignComponent& root) { root.SetValue("Lines.Strings", ValueOf("('a' 'n' 'b')")); },
     "'a' ", "'a' \n      'n'"},
    {"ElementRemoved",
     [](TDesignComponent& root) { root.SetValue("Lines.Strings", ValueOf("('b')")); },
     "\n      'a' ", ""},
    {"PropertyOfAnItem",
     [](TDesignComponent& root) {
       root.SetValue("Columns", ValueOf("<item Title = 'x' Width = 8 end>"));
     },
     "7 //", "8 //"},
    {"ItemAdded",
     [](TDesignComponent& root) {
       root.SetValue("Columns", ValueOf("<item Title = 'x' Width = 7 end item A = 1 end>"));
     },
     "narrow\n    end", "narrow\n    end\n    item\n      A = 1\n    end"},
    {"Renamed", [](TDesignComponent& root) { Named(root, "Box").SetName("Frame"); }, "Box",
     "Frame"},
    {"RootRenamed", [](TDesignComponent& root) { root.SetName("Other"); }, "Main ", "Other "},
    {"ClassChanged",
     [](TDesignComponent& root) { Named(root, "Ok").SetStoredClassName("TBitBtn"); }, "TButton",
     "TBitBtn"},
    {"RemovedWithAllInside", [](TDesignComponent& root) { delete &Named(root, "Box"); },
     "\n  object Box: TPanel [1]\n    Tag = 1\n    OBJECT Ok: TButton\n      Top = 5   \n    end "
     "\n  end",
     ""},
    {"MovedOutwards",
     [](TDesignComponent& root) {
       TDesignComponent& moved = Named(root, "Ok");
       moved.SetParentComponent(&root);
       moved.SetChildIndex(1);
       moved.SetValue("Top", Number(6));
     },
     "\n    OBJECT Ok: TButton\n      Top = 5   \n    end \n  end",
     "\n  end\n  OBJECT Ok: TButton\n    Top = 6   \n  end"},
    {"MovedInFrontOfAnotherAndItsComment",
     [](TDesignComponent& root) { Named(root, "Last").SetChildIndex(0); },
     "  // by hand\n  object Box: TPanel [1]\n    Tag = 1\n    OBJECT Ok: TButton\n"
     "      Top = 5   \n    end \n  end\n  object Last: TLabel\n  end",
     "  object Last: TLabel\n  end\n  // by hand\n  object Box: TPanel [1]\n    Tag = 1\n"
     "    OBJECT Ok: TButton\n      Top = 5   \n    end \n  end"},
    {"Pasted",
     [](TDesignComponent& root) {
       const std::string stream = WriteDesignForm(Named(root, "Last"));
       TDesignComponent* copy = AddDesignComponent(stream, root, Named(root, "Box"));
       copy->SetName("Last1");
     },
     "    end \n", "    end \n    object Last1: TLabel\n    end\n"},
    {"DeletedAndMadeAgain",
     [](TDesignComponent& root) {
       const std::string stream = WriteDesignForm(Named(root, "Box"));
       delete &Named(root, "Box");
       AddDesignComponent(stream, root, root)->SetChildIndex(0);
     },
     "", ""},
};

TEST_P(FormSpansTest, ChangesItsOwnPlaceAlone) {
  const TFormSpans spans{std::string(Odd)};
  const auto root = spans.ReadForm();
  GetParam().Change(*root);
  std::string expected(Odd);
  const std::string old = GetParam().Old;
  ASSERT_NE(expected.find(old), expected.npos) << old;
  expected.replace(expected.find(old), old.size(), GetParam().New);
  std::vector<TFormSpans::TPlace> places;
  const std::string text = spans.Render(*root, &places);
  EXPECT_EQ(text, expected);
  EXPECT_EQ(WriteDesignForm(*TFormSpans(text).ReadForm()), WriteDesignForm(*root));
  for (const TFormSpans::TPlace& place : places)
    EXPECT_NE(text.substr(place.Text.Begin, place.Text.End).find(place.Component->Name()),
              text.npos);
}

INSTANTIATE_TEST_SUITE_P(Changes, FormSpansTest, testing::ValuesIn(Changes),
                         [](const auto& row) { return std::string(row.param.Name); });

TEST(FormSpans, BrokenTextIsRefusedWithItsPlace) {
  for (const char* text :
       {"", "object A: T\n", "object A: T\nend\nrest", "object A: T\n P = \nend"})
    EXPECT_THROW(TFormSpans{std::string(text)}, EParserError) << text;
}

std::string Resource(std::string_view header, std::string_view stream) {
  TByteWriter bytes;
  bytes.WriteBytes(header);
  bytes.WriteFixed(static_cast<std::uint32_t>(stream.size()));
  bytes.WriteBytes(stream);
  bytes.WriteBytes("rest");
  return bytes.ToString();
}

TEST(FormSource, OtherFormsDifferInTheChangedValueAlone) {
  // The width of the first value and the header are as other tools write them.
  const std::string header = "\xFF\x0A\0tform1\0\x31\x10"s;
  const std::string before = "TPF0\x01T\x01"s + "A\x01P\x04\1\0\0\0\x01Q\x02\5\0\0"s;
  const std::string after = "TPF0\x01T\x01"s + "A\x01P\x04\1\0\0\0\x01Q\x03\0\1\0\0"s;
  const std::pair<std::string, std::string> forms[] = {
      {before, after}, {Resource(header, before), Resource(header, after)}};
  for (const auto& [bytes, changed] : forms) {
    const TFormSource source(bytes, "a.dfm");
    const auto root = source.ReadForm();
    EXPECT_EQ(source.Render(*root), bytes);
    root->SetValue("Q", Number(256));
    EXPECT_EQ(source.Render(*root), changed);
  }
}

TEST(FormSource, NewValuesAreInTheStyleOfTheFile) {
  const struct {
    const char* File;
    const char* Text;
    const char* Style;
  } rows[] = {{"a.dfm", "object A: T\nend", "plain"},
              {"a.LFM", "object A: T\nend", "lfm"},
              {"a.dfm", "object A: T\n  object B: T[0]\n  end\nend\n", "lfm"},
              {"a.lfm", "object A: T\n  object B: T [0]\n  end\nend\n", "plain"},
              {"a.dfm", "object A: T\n  P = 1.500000000000000000\n  Q =  1\nend\n", "fixed"}};
  for (const auto& row : rows)
    EXPECT_EQ(TFormSource(row.Text, row.File).Style().Name, row.Style) << row.Text;
}

// Another value of the same kind on one line; empty for what is no plain value.
std::string Another(std::string_view value) {
  switch (value.empty() ? TValueType::vaNull : static_cast<TValueType>(value[0])) {
    case TValueType::vaInt8:
    case TValueType::vaInt16:
    case TValueType::vaInt32:
      return Number(77777);
    case TValueType::vaString:
    case TValueType::vaWString:
      return Text("another");
    case TValueType::vaIdent:
    case TValueType::vaTrue:
    case TValueType::vaFalse:
      return ValueOf("another");
    case TValueType::vaSet:
      return ValueOf("[another]");
    default:
      return {};
  }
}

std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return lines;
}

// A value that stands on one line differs in that line, a longer one in its own lines.
void ExpectOneLine(std::string_view before, std::string_view after, std::string_view path,
                   const std::string& file) {
  const auto left = LinesOf(before);
  const auto right = LinesOf(after);
  std::size_t front = 0, back = 0;
  while (front < right.size() && left[front] == right[front]) ++front;
  while (back < right.size() - front &&
         left[left.size() - 1 - back] == right[right.size() - 1 - back])
    ++back;
  EXPECT_EQ(right.size() - front - back, 1u) << file << ": " << path;
  EXPECT_NE(right[front].find(std::string(path) + " = "), std::string_view::npos) << file;
}

void ChangeSomeValues(const std::string& file, std::string text) {
  const TFormSpans spans(std::move(text));
  const auto root = spans.ReadForm();
  ASSERT_EQ(spans.Render(*root), spans.Text()) << file;
  std::vector<TDesignComponent*> all{root.get()};
  for (std::size_t i = 0; i < all.size(); ++i)
    all.insert(all.end(), all[i]->Children().begin(), all[i]->Children().end());
  constexpr std::size_t wanted = 12;
  const std::size_t step = all.size() / wanted + 1;
  for (std::size_t i = 0; i < all.size(); i += step) {
    TDesignComponent& component = *all[i];
    if (component.Properties().empty()) continue;
    const TDesignProperty property = component.Properties()[i % component.Properties().size()];
    const std::string value = Another(property.Value);
    if (value.empty()) continue;
    component.SetValue(property.Path, value);
    ExpectOneLine(spans.Text(), spans.Render(*root), property.Path, file);
    component.SetValue(property.Path, property.Value);
  }
  EXPECT_EQ(spans.Render(*root), spans.Text()) << file;
}

std::size_t ChangeAllUnder(const std::filesystem::path& folder) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const auto extension = entry.path().extension();
    if (extension != ".dfm" && extension != ".lfm") continue;
    std::ifstream stream(entry.path(), std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (TestFormFormat(bytes) != TFormFormat::Text) continue;
    ChangeSomeValues(entry.path().string(), std::move(bytes));
    ++count;
  }
  return count;
}

TEST(FormSpans, OneValueChangesOneLineOfTheSamples) {
  EXPECT_GT(ChangeAllUnder(WRENFOLD_SOURCE_DIR "/samples"), 8u);
}

TEST(FormSpans, OneValueChangesOneLineOfRealForms) {
  const char* folder = std::getenv("WRENFOLD_FORMS");
  if (folder == nullptr) GTEST_SKIP() << "WRENFOLD_FORMS names no folder of real form files";
  EXPECT_GT(ChangeAllUnder(folder), 0u);
  const std::filesystem::path other = std::string(folder) + "-lfm";
  if (std::filesystem::exists(other)) {
    EXPECT_GT(ChangeAllUnder(other), 0u);
  }
}

}  // namespace
}  // namespace wrenfold
