// Property values as text and back, by name and path.
#include <gtest/gtest.h>

#include <cmath>

#include "TestObjects.h"
#include "platform/core/text/SysUtils.h"
#include "storage/rkD4Add.h"

namespace wrenfold {
namespace {

// A locale that tells texts written for another one apart.
class PropText : public testing::Test {
 protected:
  void SetUp() override {
    TFormatSettings& settings = FormatSettings();
    settings = TFormatSettings();
    settings.DecimalSeparator = ',';
    settings.DateSeparator = '.';
    settings.ShortDateFormat = "dd.mm.yyyy";
    settings.LongTimeFormat = "hh:nn:ss";
  }
  void TearDown() override { FormatSettings() = SystemFormatSettings(); }
  TSample Sample;
};

struct TTextCase {
  const char* Name;
  const char* Path;
  const char* Initial;
  const char* Written;
  const char* ReadBack;
};

TEST_F(PropText, EveryKindReadsAndWritesItsOwnText) {
  TSample inner;
  Sample.SetInner(&inner);
  const TTextCase cases[] = {
      {"Integer", "Number", "7", "$FF", "255"},
      {"NegativeInteger", "Number", "255", "-12", "-12"},
      {"FullUnsignedRange", "Size", "50", "4294967295", "4294967295"},
      {"FirstLetterOnly", "Letter", "a", "xyz", "x"},
      {"EnumIgnoresCase", "Grade", "grMiddle", "GRHIGH", "grHigh"},
      {"Boolean", "Active", "True", "false", "False"},
      {"SetSpaced", "Grades", "[grLow]", "[ grHigh , grLow ]", "[grLow,grHigh]"},
      {"ColorName", "Color", "clRed", "clwindow", "clWindow"},
      {"FloatOfLocale", "Ratio", "1,5", "2,25", "2,25"},
      {"MomentWithTime", "Moment", "01.01.1900 12:00:00", "02.03.2004 05:06:07",
       "02.03.2004 05:06:07"},
      {"DateShowsItsTime", "Day", "01.01.1900", "02.03.2004 05:06:07", "02.03.2004 05:06:07"},
      {"TimeOnly", "Clock", "06:00:00", "23:59:58", "23:59:58"},
      {"TextAsItIs", "Text", "default", "", ""},
      {"WideText", "Wide", "", "\xC3\xA9", "\xC3\xA9"},
      {"PathOverTwoObjects", "inner.font.size", "8", "12", "12"},
  };
  for (const TTextCase& c : cases) {
    SCOPED_TRACE(c.Name);
    EXPECT_EQ(GetPropAsText(Sample, c.Path), c.Initial);
    SetPropByText(Sample, c.Path, c.Written);
    EXPECT_EQ(GetPropAsText(Sample, c.Path), c.ReadBack);
  }
}

struct TBadTextCase {
  const char* Name;
  const char* Path;
  const char* Text;
  const char* Message;
};

TEST_F(PropText, RejectedTextNamesItselfAndChangesNothing) {
  const std::string before = GetProps({&Sample}, osfBin);
  const TBadTextCase cases[] = {
      {"UnknownProperty", "Nothing", "1", "Property by name 'Nothing' does not exist."},
      {"NilOnPath", "Inner.Number", "1", "Property by name 'Inner.Number' does not exist."},
      {"NoObjectOnPath", "Number.Size", "1", "Property by name 'Number.Size' does not exist."},
      {"UnknownValueName", "Grade", "grNone", "grNone is unacceptable value for type."},
      {"UnknownElement", "Grades", "[zz]", "zz is unacceptable value for type."},
      {"SetWithoutBracket", "Grades", "grLow", "grLow is incorrect value for set."},
      {"NumberAsColor", "Color", "255", "255 is unacceptable value for TColor."},
      {"EmptyColor", "Color", "", " is unacceptable value for TColor."},
      {"Event", "OnClick", "Run", "Unsupported variable type."},
      {"Object", "Font", "x", "Unsupported variable type."},
      {"Int64", "Big", "1", "Unsupported variable type."},
      {"BeyondAByte", "Small", "300", "300 is unacceptable value for type."},
      {"BelowAByte", "Small", "-1", "-1 is unacceptable value for type."},
  };
  for (const TBadTextCase& c : cases) {
    SCOPED_TRACE(c.Name);
    EXPECT_EQ(MessageOf<EDataHandlingError>([&] { SetPropByText(Sample, c.Path, c.Text); }),
              c.Message);
  }
  EXPECT_THROW(SetPropByText(Sample, "Number", "12a"), EConvertError);
  EXPECT_THROW(SetPropByText(Sample, "Ratio", "1.5"), EConvertError);  // the locale has ","
  EXPECT_THROW(SetPropByText(Sample, "Moment", "31.02.2004"), EConvertError);
  EXPECT_EQ(GetProps({&Sample}, osfBin), before);
}

TEST_F(PropText, InfiniteDateReadsAsADate) {
  Sample.Moment = -HUGE_VAL;
  EXPECT_EQ(GetPropAsText(Sample, "Moment"), "30.12.1899");
}

TEST_F(PropText, ColorWithoutNameIsEmpty) {
  Sample.Color = 0x123456;
  EXPECT_EQ(GetPropAsText(Sample, "Color"), "");
}

TEST_F(PropText, TypeInfoHookPresentsAnotherPropertyList) {
  const TGetTypeInfo hook = [](const TPersistent&) { return &TFont::ClassInfo(); };
  TFont font;
  EXPECT_EQ(GetPropAsText(font, "Size", hook), "8");
  const TGetTypeInfo none = [](const TPersistent&) { return nullptr; };
  EXPECT_THROW(GetPropAsText(font, "Size", none), EDataHandlingError);
}

TEST(SetText, ScanFollowsBracketsAndCommas) {
  const TTypeInfo& set = TypeInfoOf<TSet<TGrade>>();
  struct {
    const char* Text;
    int Bits;  // -1: incorrect value, -2: unknown element
  } const cases[] = {
      {"[]", 0},
      {"[ ]", 0},
      {"[ grLow , grHigh ]", 5},
      {"x[grLow]", 1},
      {"[grLow,grHigh", 1},
      {"[grLow", -1},
      {"grLow,grHigh", -1},
      {"", -1},
      {"[", -1},
      {"[grLow]grHigh]", 5},
      {"[grLow]]", 1},
      {"[zz]", -2},
      {"[grLow grHigh]", -2},
      {"[,,]", 0},
      {"]", -1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Text);
    const std::string message =
        MessageOf([&] { EXPECT_EQ(StrToSet(set, c.Text), static_cast<std::uint32_t>(c.Bits)); });
    const char* expected = c.Bits >= 0    ? "no error"
                           : c.Bits == -1 ? "incorrect value for set"
                                          : "unacceptable value for type";
    EXPECT_NE(message.find(expected), message.npos) << message;
  }
  EXPECT_EQ(SetToStr(set, 0), "[]");
  EXPECT_THROW(SetToStr(set, 8), EDataHandlingError);  // an element without a name
}

TEST(SetText, SubrangeListsOnlyItsOwnNames) {
  const auto subrange = TTypeInfo::MakeEnumeration("TSub", {"a", "b", "c"}, 1);
  TStringList names;
  names.Add("old");
  FillEnumNames(*subrange, names);
  EXPECT_EQ(names.CommaText(), "b,c");
  EXPECT_TRUE(ContainsIn(*subrange, "B"));
  EXPECT_FALSE(ContainsIn(*subrange, "d"));
  EXPECT_THROW(FillEnumNames(TypeInfoOf<std::int32_t>(), names), EDataHandlingError);
}

TEST(TypedAccess, MissingPropertyAndBadValueAreToldApart) {
  TSample sample;
  SetSetProp(sample, "Grades", "[ grHigh,, grMiddle]");
  EXPECT_EQ(GetSetProp(sample, "Grades", true), "[grMiddle,grHigh]");
  EXPECT_EQ(GetSetProp(sample, "Grades"), "grMiddle,grHigh");
  SetSetProp(sample, "Grades", "");
  EXPECT_EQ(GetSetProp(sample, "Grades", true), "[]");
  EXPECT_EQ(MessageOf<EPropertyConvertError>([&] { SetSetProp(sample, "Grades", "grLow zz"); }),
            "Invalid property element: zz");
  EXPECT_THROW(SetEnumProp(sample, "Grade", "zz"), EPropertyConvertError);
  EXPECT_THROW(GetOrdProp(sample, "Nothing"), EPropertyError);
  EXPECT_THROW(GetObjectPropClass(sample, "Number"), EPropertyError);
  EXPECT_EQ(GetObjectProp(sample, "Font", &TSample::ClassInfo()), nullptr);
  EXPECT_EQ(GetObjectProp(sample, "Font", &TFont::ClassInfo()), sample.Font.get());
  EXPECT_EQ(GetPropInfo(sample, "Font", {tkInteger}), nullptr);
}

TEST(VariantAccess, NumbersOutsideTheTypeAreRefused) {
  TSample sample;
  SetPropByVariant(sample, "Number", std::int64_t{-5});
  SetPropByVariant(sample, "Active", false);
  SetPropByVariant(sample, "Grade", std::string("grHigh"));
  SetPropByVariant(sample, "Big", std::int64_t{1} << 40);
  EXPECT_EQ(GetPropAsVariant(sample, "Number"), TVariant(-5));
  EXPECT_EQ(GetPropAsVariant(sample, "Active"), TVariant(false));
  EXPECT_EQ(GetPropAsVariant(sample, "Grade"), TVariant(std::string("grHigh")));
  EXPECT_EQ(GetPropAsVariant(sample, "Big"), TVariant(std::int64_t{1} << 40));
  EXPECT_THROW(SetPropByVariant(sample, "Number", 1e12), EDataHandlingError);
  EXPECT_THROW(SetPropByVariant(sample, "Grade", 3), EDataHandlingError);
  EXPECT_THROW(SetPropByVariant(sample, "Size", -1), EDataHandlingError);
  EXPECT_THROW(SetPropByVariant(sample, "Small", 256), EDataHandlingError);
  EXPECT_THROW(SetPropByPtr(sample, "Small", 256), Exception);
  EXPECT_THROW(SetOrdProp(sample, "Grade", 3), Exception);
  EXPECT_THROW(SetPropByVariant(sample, "Font", 1), EDataHandlingError);
  TRawValue raw;
  EXPECT_THROW(GetPropAsPtr(sample, "Big", raw), EDataHandlingError);
  GetPropAsPtr(sample, "Font", raw);
  EXPECT_EQ(std::get<TPersistent*>(raw), sample.Font.get());
  EXPECT_THROW(SetPropByPtr(sample, "Number", std::string("1")), EDataHandlingError);
}

}  // namespace
}  // namespace wrenfold
