// Every property of the fuzzer's objects meets every kind of value: random bytes rarely name one.
#include <gtest/gtest.h>

#include <functional>
#include <ranges>

#include "fuzz/FuzzObjects.h"
#include "fuzz/Targets.h"
#include "platform/core/stream/FormText.h"
#include "storage/TestObjects.h"

namespace wrenfold {
namespace {

// With bars between them. The last is longer than a name may be.
const std::string Values =
    "1|-1|200|40000|70000|5000000000|$FF|1.5|1E300|1E4000|NAN|1.5s|0d|2.25c|"
    "'x'|''|'two'#13#10'lines'|#1046|#0|True|nil|null|Foo|A.B|grHigh|clRed|fpFixed|"
    "[]|[grLow, grHigh]|[fsBold]|[Foo]|{}|{00FF}|{075442697470617000000000}|"
    "(1 2)|('a' 'b')|()|<>|<item end>|<item[2] Rank = 1 end item Title = 'q' end>|'" +
    std::string(MaxName + 1, 'n') + '\'';

using TVisitPath = std::function<void(const std::string& path)>;

// The properties of a class, of its objects and of its plain values, as if these had some.
void EachPath(const TTypeInfo& type, const std::string& prefix, const TVisitPath& visit) {
  visit(prefix + "Nobody");
  for (const TPropInfo* property : type.Properties()) {
    const std::string path = prefix + property->Name;
    visit(path);
    if (property->Kind() != TTypeKind::tkClass) visit(path + ".Nobody");
    else if (prefix.empty()) EachPath(*property->PropType, path + '.', visit);
  }
}

struct TFrame {
  const char* Name;
  void (*Run)(std::string_view bytes);
  const TTypeInfo& (*Type)();
  // Around the name and the value.
  std::string_view Head;
  std::string_view Foot;
};

const TFrame Frames[] = {
    {"Root", FuzzTypedReader, TFuzzComponent::ClassInfo, "object A: TFuzzComponent\r\n", "end\r\n"},
    {"Child", FuzzTypedReader, TFuzzComponent::ClassInfo,
     "object A: TFuzzComponent\r\nPeer = B\r\nobject B: TFuzzComponent\r\n", "end\r\nend\r\n"},
    {"Item", FuzzTypedReader, TFuzzItem::ClassInfo,
     "object TFuzzComponent\r\nItems = <\r\nitem\r\nRank = 1\r\n", "end>\r\nend\r\n"},
    {"Settings", FuzzSettingsFile, TKeyedRoot::ClassInfo, "object TKeyedRoot\r\n", "end\r\n"},
    {"FixedItem", FuzzSettingsFile, TKeyedItem::ClassInfo,
     "object TKeyedRoot\r\nFixed_ = <\r\nitem\r\nKey = 'A'\r\n", "end>\r\nend\r\n"},
    {"FreeItem", FuzzSettingsFile, TWrapperItem::ClassInfo,
     "object TKeyedRoot\r\nFree_ = <\r\nitem\r\nAObjectID = 'First'\r\n", "end>\r\nend\r\n"},
    {"FreeObject", FuzzSettingsFile, TSample::ClassInfo,
     "object TKeyedRoot\r\nFree_ = <\r\nitem\r\nAObjectID = 'First'\r\nNestedObject.",
     "end>\r\nend\r\n"}};

class EachValueTest : public testing::TestWithParam<TFrame> {};

TEST_P(EachValueTest, DoesNoHarmInAnyProperty) {
  const TFrame& frame = GetParam();
  EachPath(frame.Type(), {}, [&](const std::string& path) {
    for (const auto& part : std::views::split(Values, '|')) {
      const std::string_view value(part.begin(), part.end());
      std::string text(frame.Head);
      text.append(path).append(" = ").append(value).append("\r\n").append(frame.Foot);
      // Told before the run: a broken promise aborts.
      std::printf("%s\n", text.c_str());
      TByteWriter binary;
      std::size_t position = 0;
      ObjectTextToBinary(text, position, binary);
      frame.Run(binary.View());
      frame.Run(text);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Frames, EachValueTest, testing::ValuesIn(Frames),
                         [](const auto& row) { return std::string(row.param.Name); });

}  // namespace
}  // namespace wrenfold
