// Data headers and the four forms of stored bodies.
#include <gtest/gtest.h>

#include <cstdio>

#include "TestObjects.h"
#include "platform/core/model/NamePath.h"
#include "storage/rkPropTypes.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;

struct THeader {
  TObjectStorageFormat Format = osfExtBin;
  bool IsRes = true;
  std::string Description = "untouched";
  std::string Rest;
};

THeader ReadHeader(const std::string& bytes) {
  TStringStream stream(bytes);
  THeader header;
  ReadDataHeader(stream, header.Format, header.IsRes, header.Description);
  header.Rest = stream.ReadRest();
  return header;
}

TEST(DataHeader, BinaryIsReadBackAndLeavesTheBody) {
  TStringStream stream;
  WriteBinDataHeader(stream, true, std::string(300, 'x'));
  stream.WriteText("body");
  EXPECT_EQ(stream.DataString().substr(0, 9), "sys_bin\x01\xFF"s);
  const THeader header = ReadHeader(stream.DataString());
  EXPECT_EQ(header.Format, osfBin);
  EXPECT_TRUE(header.IsRes);
  EXPECT_EQ(header.Description, std::string(255, 'x'));
  EXPECT_EQ(header.Rest, "body");
}

TEST(DataHeader, TextUnderlinesItsFirstLine) {
  const struct {
    const char* Description;
    std::string Written;
    const char* ReadBack;
  } cases[] = {
      {"", "sys_txt\r\n-------\r\n", ""},
      {"a\r\nb", "sys_txt a b\r\n-----------\r\n", " a b"},
      {"a\rb\nc", "sys_txt a b c\r\n-------------\r\n", " a b c"},
  };
  for (const auto& c : cases) {
    TStringStream stream;
    WriteTextDataHeader(stream, c.Description);
    EXPECT_EQ(stream.DataString(), c.Written);
    const THeader header = ReadHeader(stream.DataString() + "body");
    EXPECT_EQ(header.Format, osfText);
    EXPECT_TRUE(header.IsRes);  // as it was
    EXPECT_EQ(header.Description, c.ReadBack);
    EXPECT_EQ(header.Rest, "body");
  }
}

TEST(DataHeader, BrokenHeadersAreRefused) {
  const struct {
    std::string Bytes;
    const char* Message;
  } cases[] = {
      {"sys_biN\0\0"s, "Required label not found"},
      {"sys_bin\2\0"s, "Required label not found"},
      {"TPF0\5TForm"s, "Required label not found"},
      {"", "read"},
      {"sys_bin", "read"},
      {"sys_bin\0\5abc"s, "read"},
      {"sys_txt desc", "expected the line end"},
      {"sys_txt\r\n----", "underline"},
  };
  for (const auto& c : cases) {
    const std::string message = MessageOf([&] { ReadHeader(c.Bytes); });
    EXPECT_NE(message.find(c.Message), message.npos) << c.Bytes << ": " << message;
  }
}

// Every value differs from its default.
void Fill(TSample& sample) {
  sample.Number = -70000;
  sample.Size = 0xFFFFFFFF;
  sample.Letter = '\xFF';
  sample.Grade = grLow;
  sample.Active = false;
  sample.Grades = {grMiddle, grHigh};
  sample.Color = 0x123456;
  sample.Ratio = -0.1;
  sample.Text = "line\r\nquote' \x01 \xE4";
  sample.Short = "short";
  sample.Wide = u"\u00E9\u20AC";
  sample.Big = std::int64_t{1} << 40;
  sample.Font->SetStyle({fsBold});
  sample.Font->SetPitch(fpFixed);
}

TEST(DataBody, EveryFormatReadsBackWhatItWrote) {
  for (const TObjectStorageFormat format : {osfBin, osfResBin, osfExtBin, osfText}) {
    SCOPED_TRACE(format);
    TSample first, second, firstBack, secondBack;
    TComponent component, componentBack;
    component.Tag = 3;
    Fill(first);
    TStringStream stream;
    TPersistent* const all[] = {&first, nullptr, &component, &second};
    if (format == osfExtBin) SaveObjectBinaryEx(all, stream);
    else if (format == osfText) SaveObjectText(all, stream);
    else SaveObjectBinary(all, stream, format == osfResBin);
    stream.SetPosition(0);
    SafeLoadObjects({&firstBack, nullptr, &componentBack, &secondBack}, stream, format);
    EXPECT_EQ(stream.ReadRest(), "");
    EXPECT_EQ(GetProps({&firstBack}, osfBin), GetProps({&first}, osfBin));
    EXPECT_EQ(componentBack.Tag, 3);
    EXPECT_EQ(secondBack.Text, "default");
  }
}

TEST(DataBody, OnlyObjectsThatAreNoComponentsHaveDescriptionLines) {
  TSample first, second;
  TComponent component;
  TStringStream stream;
  SaveObjectText({&first, &component, &second}, stream, {"", "unused", "the second"});
  const std::string& text = stream.DataString();
  EXPECT_TRUE(text.starts_with("stored Instance --> TSample\r\nobject TWrapper\r\n")) << text;
  EXPECT_NE(text.find("end\r\nobject TComponent\r\n"), text.npos);
  EXPECT_NE(text.find("end\r\nthe second\r\nobject TWrapper\r\n"), text.npos);
  EXPECT_EQ(text.find("unused"), text.npos);
}

TEST(DataBody, HandlerSeesTheHeaderAndCancels) {
  TSample sample, back;
  sample.Number = 1;
  TStringStream stream;
  SaveObjectDataBinary({&sample}, stream, "1.01 4.00", true);
  for (const bool refuse : {true, false}) {
    stream.SetPosition(0);
    back.Number = 7;
    const auto format = LoadObjectData(
        {&back}, stream, [&](const TObjDataDscr& dscr, const std::string& text, bool& cancel) {
          EXPECT_TRUE(dscr.IsRes);
          EXPECT_EQ(text, "1.01 4.00");
          EXPECT_FALSE(std::exchange(cancel, refuse));
        });
    EXPECT_EQ(format, osfBin);
    EXPECT_EQ(back.Number, refuse ? 7 : 1);
  }
}

TEST(DataBody, StringsCarryOnlyTheTwoPlainFormats) {
  TSample sample, back;
  EXPECT_EQ(GetProps({&sample}, osfResBin), "");
  EXPECT_EQ(GetProps({&sample}, osfExtBin), "");
  sample.Number = 1;
  SetPropsEx({&back}, GetProps({&sample}, osfText), osfText);
  EXPECT_EQ(back.Number, 1);
  TFont font;
  font.SetName("Mono");
  SetProps2(sample, GetProps2(font));  // what the target lacks is left out
  EXPECT_EQ(sample.Number, 1);
}

TEST(DataBody, BrokenTailChangesNoObjectWhenLoadedSafely) {
  TSample sample, back;
  sample.Number = 1;
  const std::string whole = GetProps({&sample}, osfBin);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_THROW(SetPropsEx({&back}, whole.substr(0, length), osfBin), EReadError) << length;
    EXPECT_EQ(back.Number, 7);
  }
}

TEST(DataBody, ErrorsArePlacedInTheWholeStream) {
  const std::string wrapper = "\x08TWrapper\0"s;
  const std::string line = "stored Instance --> TSample\r\n";
  const std::string object = "object TWrapper\r\n  I.Number = 1\r\nend\r\n";
  const struct {
    const char* Name;
    std::string Bytes;
    const char* Place;
  } cases[] = {
      {"TagBehindABinaryHeader", "sys_bin\0\1vTPF0"s + wrapper + "\1I\x63", "offset 26 ($1A)"},
      {"PropertyBehindABinaryHeader", "sys_bin\0\1vTPF0"s + wrapper + "\1X\2\1\0\0"s + "TPF0",
       "TWrapper.X at offset 26:"},
      {"WordOfTheSecondObject", "sys_txt\r\n-------\r\n" + line + object + line + "abject",
       "Line 8, column 1:"},
      {"PropertyOfTheSecondObject",
       "sys_txt\r\n-------\r\n" + line + object + line +
           "object TWrapper\r\n  I.Number = 1 I.Nothing =\r\n 2\r\nend\r\n",
       "TWrapper.I.Nothing at line 9, column 16:"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Name);
    TSample first, second;
    TStringStream stream(c.Bytes);
    TAnswers no(mbNo);
    const std::string message = MessageOf([&] { LoadObjectData({&first, &second}, stream); });
    EXPECT_NE(message.find(c.Place), message.npos) << message;
  }
}

TEST(DataBody, FailedFileLoadNamesTheFile) {
  const std::string file = testing::TempDir() + "body.dat";
  TSample sample;
  SaveObjectDataText({&sample}, file, {}, "v");
  sample.Number = 1;
  EXPECT_EQ(LoadObjectData({&sample}, file), osfText);
  EXPECT_EQ(sample.Number, 7);
  EXPECT_TRUE(MessageOf<EDataHandlingError>([&] {
                LoadObjectBinaryEx({&sample}, file);
              }).starts_with(file + ": "));
  std::remove(file.c_str());
}

TEST(FieldClasses, PathsOfComponentsStopWhereANameIsUnknown) {
  TComponent root;
  root.SetName("Root");
  auto* panel = new TComponent(&root);
  panel->SetName("Panel");
  auto* button = new TComponent(panel);
  button->SetName("Button");
  EXPECT_EQ(FindComponentEx(&root, "panel.button"), button);
  EXPECT_EQ(FindComponentEx(&root, "Root.Panel"), panel);
  EXPECT_EQ(FindComponentEx(&root, "Panel.None"), nullptr);
  const TAnalysisFindings findings = AnalyseNamePath(&root, "Panel.Button.Font.Size");
  EXPECT_EQ(findings.Component, button);
  EXPECT_EQ(findings.Rest, "Font.Size");
  EXPECT_EQ(GetFieldClass(TSample(), "Font"), &TFont::ClassInfo());
  EXPECT_EQ(GetFieldClass(TSample(), "Number"), nullptr);
}

TEST(FieldClasses, AChildOfAHeldClassIsMade) {
  class TLabel : public TComponent {
   public:
    using TComponent::TComponent;
    static const TTypeInfo& ClassInfo() {
      static const TTypeInfo info = Publish<TLabel>("TLabel", TComponent::ClassInfo());
      return info;
    }
    const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  };
  class TDialog : public TComponent {
   public:
    static const TTypeInfo& ClassInfo() {
      static const TTypeInfo info =
          Publish<TDialog>("TDialog", TComponent::ClassInfo()).Prop("Title", &TDialog::Title);
      return info;
    }
    const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
    TLabel* Title = nullptr;
  } dialog;
  const std::string text =
      "object TDialog\r\n  Title = Label\r\n  object Label: TLabel\r\n  end\r\nend\r\n";
  SetProps({&dialog}, text, osfText);
  EXPECT_EQ(dialog.Title, dialog.FindComponent("Label"));
  EXPECT_NE(dialog.Title, nullptr);
  EXPECT_EQ(GetClass("TLabel"), nullptr);
}

TEST(PropTypes, MostSpecialClassWins) {
  TCheckStrings check;
  TSelectStrings select;
  TMemoStrings memo;
  TFontEx font;
  TPictureEx picture;
  TBitmap bitmap;
  TSample other;
  const std::pair<const TPersistent*, TPropTypeIdent> cases[] = {
      {&check, tiChkStrings}, {&select, tiSelStrings}, {&memo, tiStrings},  {&font, tiFont},
      {&picture, tiPicture},  {&bitmap, tiGraphic},    {&other, tiUnknown}, {nullptr, tiUnknown}};
  for (const auto& [value, ident] : cases) EXPECT_EQ(ClassifyPropValue(value), ident);
}

TEST(PropTypes, SelectionIsReportedOnceItIsThere) {
  struct TWatch {
    void Changed(TObject* sender) {
      if (const auto* check = dynamic_cast<TCheckStrings*>(sender))
        Log += check->Text() + check->CheckedInds() + ';';
      if (const auto* select = dynamic_cast<TSelectStrings*>(sender))
        Log += select->Text() + std::to_string(select->ItemIndex()) + ';';
    }
    std::string Log;
  } watch;
  TCheckStrings check, checkSource;
  checkSource.Add("a");
  checkSource.SetCheckedInds("0");
  Bind<&TWatch::Changed>(check.OnChange, &watch);
  check.Assign(&checkSource);
  check.SetCheckedInds("");
  TSelectStrings select, selectSource;
  selectSource.Add("b");
  selectSource.SetItemIndex(0);
  Bind<&TWatch::Changed>(select.OnChange, &watch);
  select.Assign(&selectSource);
  select.SetItemIndex(-1);
  select.SetItemIndex(-1);
  EXPECT_EQ(watch.Log, "a\r\n0;a\r\n;b\r\n0;b\r\n-1;");
}

TEST(PropTypes, EntryPointsConvertBothWays) {
  SetInitData({});
  InitPropTypes();
  const auto* block = GetUserData(GetInitData(), TPropTypesData::BlockName);
  const auto& entries = dynamic_cast<const TPropTypesData&>(*block);
  TFont font;
  font.SetName("Mono");
  std::string text;
  entries.FontToText(font, text);
  font.SetPitch(fpFixed);
  font.SetName("Other");
  entries.TextToFont(font, text);
  EXPECT_EQ(font.Name(), "Mono");
  EXPECT_EQ(font.Pitch(), fpDefault);  // the text leaves it out
  TPicture picture;
  TBitmap bitmap;
  bitmap.SetData("BM-data");
  picture.SetGraphic(&bitmap);
  entries.PictureToText(picture, text);
  entries.TextToPicture(picture, text);
  EXPECT_EQ(picture.Graphic()->Data(), "BM-data");
  TSelectStrings select;
  entries.TextToSelectStrings(select, "a\r\nb\r\n", 1);
  std::int32_t index = -1;
  entries.SelectStringsToText(select, text, index);
  EXPECT_EQ(text, "a\r\nb\r\n");
  EXPECT_EQ(index, 1);
  EXPECT_THROW(entries.CheckStringsToText(select, text, text), EDataHandlingError);
  SetInitData({});  // of another part of the system
  EXPECT_NE(GetUserData(GetInitData(), TPropTypesData::BlockName), nullptr);
  EXPECT_THROW(GetInitData().RecreateSpc(*std::make_unique<std::unique_ptr<TSpcObject>>()),
               ESpcMngError);
  DonePropTypes();
  EXPECT_EQ(GetUserData(GetInitData(), TPropTypesData::BlockName), nullptr);
  ClearInitData();
  EXPECT_THROW(GetInitData(), ESpcMngError);
}

}  // namespace
}  // namespace wrenfold
