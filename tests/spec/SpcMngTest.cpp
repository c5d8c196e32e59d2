// Specification files and their versions.
#include <gtest/gtest.h>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "spec/rkSpcMng.h"
#include "storage/TestObjects.h"

namespace wrenfold {
namespace {

// A specification with extra data of both kinds.
class TSpecification : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TSpecification>("TSpecification", TSpcObject::ClassInfo())
                                      .Prop("Value", &TSpecification::Value);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TSpecification() {
    if (Fails) throw EListError("no specification");
    TStorageProc text{"Extra", {}, {}, true};
    Bind<&TSpecification::ReadExtra>(text.ReadData, this);
    Bind<&TSpecification::WriteExtra>(text.WriteData, this);
    AddStorageProc(text);
    EXPECT_TRUE(HasStorageProc(text));
    text.HasData = false;
    EXPECT_FALSE(HasStorageProc(text));
    text.Name = "NeverWritten";
    AddStorageProc(text);
    TBinStorageProc bytes{"Bytes", {}, {}, true};
    Bind<&TSpecification::ReadBytes>(bytes.ReadData, this);
    Bind<&TSpecification::WriteBytes>(bytes.WriteData, this);
    AddBinStorageProc(bytes);
    EXPECT_TRUE(HasBinStorageProc(bytes));
    ++Living;
  }
  ~TSpecification() override { --Living; }

  std::int32_t Value = 1;
  std::string Extra = "extra";
  std::string Bytes = "bytes";
  static inline int Living = 0;
  static inline bool Fails = false;

 private:
  void ReadExtra(TReader& reader) { Extra = reader.ReadString(); }
  void WriteExtra(TWriter& writer) { writer.WriteString(Extra); }
  void ReadBytes(TStream& stream) { Bytes = stream.ReadRest(); }
  void WriteBytes(TStream& stream) { stream.WriteText(Bytes); }
};

class SpcFile : public testing::Test {
 protected:
  SpcFile() : FSpc(std::make_unique<TSpecification>()) {}
  ~SpcFile() override { DeleteFile(FFile); }
  TSpecification& Spec() { return static_cast<TSpecification&>(*FSpc); }
  std::string FFile = testing::TempDir() + "test.sbn";
  std::unique_ptr<TSpcObject> FSpc;
};

TEST_F(SpcFile, BothFormsComeBackWithTheirExtraData) {
  for (const TObjectStorageFormat format : {osfBin, osfText, osfExtBin}) {
    Spec().Value = 2;
    Spec().Extra = "other";
    Spec().Bytes = std::string("\0\1", 2);
    SaveSpc(*FSpc, FFile, format);
    EXPECT_EQ(ReadWholeFile(FFile).substr(0, 4), format == osfText ? "obje" : "TPF0");
    EXPECT_EQ(ReadWholeFile(FFile).find("NeverWritten"), std::string::npos);
    RecreateSpc(FSpc);
    EXPECT_EQ(LoadSpc(FSpc, FFile), format == osfText ? osfText : osfBin);
    EXPECT_EQ(Spec().Value, 2);
    EXPECT_EQ(Spec().Extra, "other");
    EXPECT_EQ(Spec().Bytes, std::string("\0\1", 2));
  }
}

TEST_F(SpcFile, FailuresHaveTheirTextsAndLeaveTheObject) {
  Spec().Value = 5;
  EXPECT_EQ(MessageOf<ESpcMngError>([&] { LoadSpc(FSpc, "/none.sbn"); }),
            "Specification file: /none.sbn not found.");
  const TSpcObject* before = FSpc.get();
  for (const char* bytes : {"", "TPF", "noise", "\n object T\nend\n"}) {
    SafeWriteFile(FFile, bytes);
    EXPECT_EQ(MessageOf<ESpcMngError>([&] { LoadSpc(FSpc, FFile, true, true); }),
              "Unknown specification format.");
    EXPECT_EQ(FSpc.get(), before);
  }
  TSpecification::Fails = true;
  EXPECT_THROW(RecreateSpc(FSpc), EListError);
  TSpecification::Fails = false;
  EXPECT_EQ(FSpc.get(), before);
  SafeWriteFile(FFile, "object T\r\n  Value = \r\n");
  EXPECT_TRUE(MessageOf<EFitReaderError>([&] { LoadSpc(FSpc, FFile); }).starts_with(FFile));
  EXPECT_EQ(Spec().Value, 5);
  FSpc.reset();
  EXPECT_EQ(MessageOf<ESpcMngError>([&] { RecreateSpc(FSpc); }), "Specification object not given.");
}

TEST_F(SpcFile, FirstFlagAsksAboutErrorsAndSecondRecreates) {
  SafeWriteFile(FFile, "object T\r\n  Nothing = 1\r\n  Extra = 'read'\r\nend\r\n");
  TAnswers no(mbNo);
  Spec().Value = 5;
  EXPECT_EQ(LoadSpc(FSpc, FFile, false, false), osfText);
  EXPECT_EQ(no.Asked.size(), 0u);
  EXPECT_EQ(Spec().Extra, "read");
  EXPECT_EQ(Spec().Value, 5);
  LoadSpc(FSpc, FFile, false, true);
  EXPECT_EQ(Spec().Value, 1);
  EXPECT_EQ(TSpecification::Living, 1);
  EXPECT_THROW(LoadSpc(FSpc, FFile, true, false), EFitReaderError);
  EXPECT_EQ(no.Asked.size(), 1u);
}

TEST(SpcVersions, TextsDoNotDependOnTheLocale) {
  FormatSettings().DecimalSeparator = ',';
  EXPECT_EQ(MakeVerInfo(osfBin), "1.01 4.00");
  EXPECT_EQ(MakeVerInfo(osfText), "e_ver: 1.01 d_ver: 4.00");
  EXPECT_EQ(MakeVerInfo(osfResBin), "");
  EXPECT_EQ(FormatSettings().DecimalSeparator, ',');
  bool cancel = true;
  // The check reads by the locale, so its own text fails there.
  EXPECT_THROW(CheckVer({osfBin, false}, "1.01 4.00", cancel, {}), EConvertError);
  EXPECT_NO_THROW(CheckVer({osfBin, false}, "1,01 4,00", cancel, {}));
  FormatSettings() = SystemFormatSettings();
}

TEST(SpcVersions, OnlyLaterEditorsAndOneForeignVersionAreAskedAbout) {
  FormatSettings().DecimalSeparator = '.';
  const struct {
    TObjectStorageFormat Format;
    const char* Text;
    std::size_t Questions;
  } cases[] = {
      {osfBin, "1.01 4.00", 0},
      {osfBin, "1.02 4.00", 1},
      {osfBin, "1.0101 4.00", 1},
      {osfBin, "1.01 5.00", 0},
      {osfBin, "1.01 99.99", 1},
      {osfBin, "2 99.99", 2},
      {osfText, " e_ver: 1.01 d_ver: 4.00", 0},
      {osfText, " e_ver: 1.02 d_ver: 99.99", 2},
      {osfResBin, "nothing is parsed", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Text);
    for (const TMsgDlgBtn answer : {mbYes, mbNo}) {
      TAnswers asked(answer);
      bool cancel = true;
      CheckVer({c.Format, false}, c.Text, cancel, {true, "a.sbn"});
      EXPECT_EQ(asked.Asked.size(), c.Questions);
      EXPECT_EQ(cancel, c.Questions > 0 && answer == mbNo);
      CheckVer({c.Format, false}, c.Text, cancel, {false, "a.sbn"});
      EXPECT_EQ(asked.Asked.size(), c.Questions);
      EXPECT_FALSE(cancel);
    }
  }
  TAnswers yes(mbYes);
  bool cancel = false;
  CheckVer({osfBin, false}, "1.02 4.00", cancel, {true, "a.sbn"});
  EXPECT_EQ(yes.Asked.at(0),
            "Specification file a.sbn created with later editor versionCurrent editor version: "
            "1.01 in file version: 1.02.Loading may be incorrect. Continue load file?");
}

TEST(SpcVersions, MalformedTextIsNamed) {
  FormatSettings().DecimalSeparator = '.';
  bool cancel = true;
  const std::pair<TObjectStorageFormat, const char*> cases[] = {
      {osfBin, "1.01"}, {osfBin, ""}, {osfText, "e_ver: 1.01"}, {osfText, "d_ver: 4.00"}};
  for (const auto& [format, text] : cases)
    EXPECT_EQ(MessageOf<ESpcMngError>([&] {
                CheckVer({format, false}, text, cancel, {});
              }),
              "Version information has incorrect format: " + std::string(text) + '.');
  EXPECT_THROW(CheckVer({osfText, false}, "d_ver: 4.00 e_ver: 1.01", cancel, {}), EConvertError);
}

TEST(SpcHooks, MostSpecialClassWins) {
  TSpecification spec;
  TSpcCollection collection(&spec, TSpcItem::ClassInfo());
  TSpcItem* item = collection.Insert(0);
  EXPECT_THROW(TSpcCollection(&spec, TCollectionItem::ClassInfo()), ESpcMngError);
  TComponent component;
  TCollectionItem plainItem;
  TFont font;
  const std::pair<const TPersistent*, TBaseClassIdent> cases[] = {
      {nullptr, ciUnknown}, {&spec, ciSpcObject},        {item, ciSpcItem},
      {&plainItem, ciItem}, {&collection, ciCollection}, {&component, ciComponent},
      {&font, ciObject}};
  for (const auto& [instance, ident] : cases) EXPECT_EQ(ClassifyInstance(instance), ident);
}

}  // namespace
}  // namespace wrenfold
