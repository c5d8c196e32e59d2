// The saver: events, recognition, errors, safe loading and saving.
#include <gtest/gtest.h>

#include <fstream>

#include "TestObjects.h"
#include "platform/core/system/Files.h"

namespace wrenfold {
namespace {

using namespace std::string_literals;

// Writes down every event of a saver.
class TEventLog {
 public:
  explicit TEventLog(TObjectSaver& saver) {
    Bind<&TEventLog::BeforeReader>(saver.OnBeforeCreateReader, this);
    Bind<&TEventLog::AfterReader>(saver.OnAfterCreateReader, this);
    Bind<&TEventLog::BeforeWriter>(saver.OnBeforeCreateWriter, this);
    Bind<&TEventLog::AfterWriter>(saver.OnAfterCreateWriter, this);
    Bind<&TEventLog::BeforeRead>(saver.OnBeforeReadObject, this);
    Bind<&TEventLog::AfterRead>(saver.OnAfterReadObject, this);
    Bind<&TEventLog::BeforeWrite>(saver.OnBeforeWriteObject, this);
    Bind<&TEventLog::AfterWrite>(saver.OnAfterWriteObject, this);
  }
  std::string Take() { return std::exchange(FLog, {}); }
  const TPersistent* Refused = nullptr;

 private:
  void BeforeReader(TObjectSaver&, TStream&, std::unique_ptr<TFitReader>&) { FLog += "<reader "; }
  void AfterReader(TObjectSaver&, TFitReader& reader) {
    FLog += reader.IgnoreErrors ? "reader(ignoring)> " : "reader> ";
  }
  void BeforeWriter(TObjectSaver&, TStream&, std::unique_ptr<TFitWriter>&) { FLog += "<writer "; }
  void AfterWriter(TObjectSaver&, TFitWriter&) { FLog += "writer> "; }
  void BeforeRead(TObjectSaver&, TPersistent* object, TFitReader&, bool& allow) {
    FLog += allow ? "<read " : "<skip ";
    if (object == Refused) allow = false;
  }
  void AfterRead(TObjectSaver&, TPersistent*, TFitReader&, const std::string& name) {
    FLog += "read:" + name + "> ";
  }
  void BeforeWrite(TObjectSaver&, TPersistent* object, const std::string& name, TFitWriter&,
                   bool& allow) {
    FLog += "<write:" + name + ' ';
    if (object == Refused) allow = false;
  }
  void AfterWrite(TObjectSaver&, TPersistent*, const std::string&, TFitWriter&) {
    FLog += "write> ";
  }
  std::string FLog;
};

TEST(ObjectSaver, EventsComeInOrderAndSkippedObjectsAreReadOver) {
  for (const TStreamOriginalFormat form : {sofBinary, sofText}) {
    TObjectSaver saver;
    saver.OriginalFormat = form;
    saver.IgnoreErrors = true;
    TEventLog log(saver);
    TSample first, second, third;
    first.Number = 1;
    third.Number = 3;
    TStringStream stream;
    saver.SaveObjects({&first, &second, &third}, {"One", "", "Three"}, stream);
    EXPECT_EQ(log.Take(), "<writer writer> <write:One write> <write: write> <write:Three write> ");
    stream.SetPosition(0);
    TSample firstBack, thirdBack;
    log.Refused = &firstBack;
    saver.LoadObjects({&firstBack, nullptr, &thirdBack}, stream);
    EXPECT_EQ(log.Take(), "<reader reader(ignoring)> <read read:> <skip read:> <read read:Three> ");
    EXPECT_EQ(firstBack.Number, 7);  // refused
    EXPECT_EQ(thirdBack.Number, 3);
  }
}

TEST(ObjectSaver, ObjectRefusedInWritingLeavesNoRecord) {
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  TEventLog log(saver);
  TSample first, second;
  log.Refused = &first;
  const std::string text = saver.GetObjectProps({&first, &second});
  EXPECT_EQ(text.find("object"), text.rfind("object"));
}

TEST(ObjectSaver, ComponentsAreNamedByTheirOwnersBelowTheRoot) {
  TComponent form;
  form.SetName("Form");
  auto* panel = new TComponent(&form);
  panel->SetName("Panel");
  auto* button = new TComponent(panel);
  button->SetName("Button");
  TObjectSaver saver;
  TEventLog log(saver);
  TStringStream stream;
  saver.SaveObjects({&form, panel, button}, {}, stream);
  EXPECT_EQ(log.Take(),
            "<writer writer> <write:Form write> <write:Panel write> <write:Panel.Button write> ");
}

TEST(ObjectSaver, DefaultsAreWrittenSoThatAnEmptiedTextStaysEmpty) {
  TSample sample, back;
  sample.Text = "";
  sample.Number = 0;
  sample.Ratio = 0;
  sample.Grades = {};
  CopyStoredProps(back, sample);
  EXPECT_EQ(back.Text, "");
  EXPECT_EQ(back.Number, 0);
  EXPECT_EQ(back.Ratio, 0);
  EXPECT_TRUE(back.Grades.Empty());
}

TEST(ObjectSaver, FormIsRecognisedByItsFirstBytes) {
  const std::pair<const char*, TStreamOriginalFormat> cases[] = {
      {"\xFF", sofBinary}, {"TPF0", sofBinary}, {"\n", sofUnknown}, {"\t", sofText}};
  for (const auto& [bytes, form] : cases) EXPECT_EQ(RecognizeFormat(bytes), form) << bytes;
  TObjectSaver saver;
  saver.OriginalFormat = sofUnknown;
  TSample sample;
  EXPECT_THROW(saver.GetObjectProps({&sample}), EFitWriterError);
  saver.RecognitionOn = true;
  EXPECT_THROW(saver.SetObjectProps({&sample}, "noise"), EFitReaderError);
  saver.SetObjectProps({&sample}, " object X: TSample\r\n  Number = 9\r\nend\r\n");
  EXPECT_EQ(saver.OriginalFormat, sofText);
  EXPECT_EQ(sample.Number, 9);
}

constexpr const char* TwoErrors =
    "object TSample\r\n  Nothing = 1\r\n  Number = 'x'\r\n  Grade = grHigh\r\nend\r\n";

TEST(ReaderErrors, EachIsAskedOnceAndYesGoesOn) {
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  TSample sample;
  TAnswers yes(mbYes);
  saver.SetObjectProps({&sample}, TwoErrors);
  ASSERT_EQ(yes.Asked.size(), 2u);
  EXPECT_TRUE(yes.Warnings);
  EXPECT_TRUE(yes.Asked[0].starts_with("Load error.\r\n")) << yes.Asked[0];
  EXPECT_TRUE(yes.Asked[0].ends_with(".\r\nContinue loading?")) << yes.Asked[0];
  EXPECT_EQ(sample.Number, 7);
  EXPECT_EQ(sample.Grade, grHigh);
}

TEST(ReaderErrors, NoEndsTheLoadWithoutASecondQuestion) {
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  TKeyedRoot root;
  root.Fixed.AddValue("A", 1);
  TAnswers no(mbNo);
  // The error is inside a collection, and passes the property that holds it on its way up.
  EXPECT_THROW(saver.SetObjectProps({&root},
                                    "object T\r\n  Fixed_ = <\r\n    item\r\n"
                                    "      Key = 'A'\r\n      Wrong = 1\r\n    end>\r\nend\r\n"),
               EReadError);
  EXPECT_EQ(no.Asked.size(), 1u);
}

TEST(ReaderErrors, IgnoringAsksNothing) {
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  saver.IgnoreErrors = true;
  TSample sample;
  TAnswers no(mbNo);
  saver.SetObjectProps({&sample}, TwoErrors);
  EXPECT_EQ(no.Asked.size(), 0u);
  EXPECT_EQ(sample.Grade, grHigh);
}

// References by name wait until all is read; the items that wait may be gone by then.
TEST(ReaderErrors, ReferenceOfAnItemThatIsReplacedDoesNoHarm) {
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  saver.IgnoreErrors = true;
  TKeyedRoot root;
  root.Fixed.AddValue("A", 1);
  saver.SetObjectProps({&root},
                       "object T\r\n"
                       "  Plain = <\r\n    item\r\n      Target = Gone\r\n    end>\r\n"
                       "  Plain = <\r\n    item\r\n      Value = 2\r\n    end>\r\n"
                       "  Fixed_ = <\r\n    item\r\n      Key = 'A'\r\n"
                       "      Target = Gone\r\n    end>\r\nend\r\n");
  // The second item's order is too large a number, so reading goes on behind the collection.
  const std::string broken =
      "TPF0\1T\0\6Fixed_\x0E\1\6Target\7\4Gone\0"
      "\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F\1\0\0\0\0"s;
  saver.OriginalFormat = sofBinary;
  EXPECT_NO_THROW(saver.SetObjectProps({&root}, broken));
  EXPECT_EQ(root.Plain()->Describe(), "=2");
  EXPECT_EQ(root.Fixed.At(0).Target, nullptr);
}

// A file in the test's own directory, removed at the end.
class SettingsFile : public testing::Test {
 protected:
  void TearDown() override { DeleteFile(FFile); }
  // A new file without a sync: thousands come and go here, and overwriting one would wait for the
  // disk.
  void Write(const std::string& bytes) {
    DeleteFile(FFile);
    std::ofstream(FFile, std::ios::binary) << bytes;
  }
  static void Fill(TKeyedRoot& root, TSample& held) {
    root.Fixed.AddValue("A", 1);
    root.Fixed.AddValue("B", 2);
    root.Free.Add(&held, "Held");
  }
  std::string FFile = testing::TempDir() + "settings.spc";
};

TEST_F(SettingsFile, MissingAndEmptyFilesAreNoSettings) {
  TSample sample;
  TObjectSaver saver;
  EXPECT_FALSE(saver.SafeLoadObjects({&sample}, FFile));
  Write("");
  EXPECT_FALSE(saver.SafeLoadObjects({&sample}, FFile));
  EXPECT_THROW(saver.LoadObjects({&sample}, FFile + ".none"), EFOpenError);
}

TEST_F(SettingsFile, BrokenAtAnyByteChangesNeitherObjectsNorFile) {
  TKeyedRoot root, back;
  TSample held, heldBack;
  Fill(root, held);
  Fill(back, heldBack);
  root.Title = "stored";
  root.Fixed.At(0).Value = 100;
  held.Number = 100;
  TObjectSaver saver;
  saver.RecognitionOn = true;
  const std::string before = TObjectSaver().GetObjectProps({&back});
  TAnswers no(mbNo);
  for (const TStreamOriginalFormat form : {sofBinary, sofText}) {
    saver.OriginalFormat = form;
    const std::string whole = saver.GetObjectProps({&root});
    const std::size_t needed = form == sofText ? whole.size() - 2 : whole.size();  // line end
    for (std::size_t length = 1; length < needed; ++length) {
      const std::string bytes = whole.substr(0, length);
      Write(bytes);
      const std::string message =
          MessageOf<EFitReaderError>([&] { saver.SafeLoadObjects({&back}, FFile); });
      ASSERT_TRUE(message.starts_with(FFile + ": ")) << length << ": " << message;
      ASSERT_EQ(ReadWholeFile(FFile), bytes);
    }
  }
  EXPECT_EQ(TObjectSaver().GetObjectProps({&back}), before);
}

TEST_F(SettingsFile, RefusedLoadGivesBackWhatWasEmpty) {
  TKeyedRoot root;
  Write("object T\r\n  Title = 'new'\r\n  Lines.Strings = (\r\n    'a')\r\n  Wrong = 1\r\nend\r\n");
  TObjectSaver saver;
  saver.RecognitionOn = true;
  TAnswers no(mbNo);
  EXPECT_THROW(saver.SafeLoadObjects({&root}, FFile), EFitReaderError);
  EXPECT_NE(no.Asked.at(0).find("TKeyedRoot.Wrong at line 5, column 3:"), std::string::npos)
      << no.Asked[0];
  EXPECT_EQ(root.Title, "untitled");
  EXPECT_EQ(root.Lines->Count(), 0);
}

TEST_F(SettingsFile, FailedSaveLeavesTheOldFile) {
  TSample sample;
  TObjectSaver saver;
  saver.SaveObjects({&sample}, {"Old"}, FFile);
  const std::string old = ReadWholeFile(FFile);
  sample.Grade = static_cast<TGrade>(9);  // cannot be written
  EXPECT_THROW(saver.SaveObjects({&sample}, {"New"}, FFile), Exception);
  EXPECT_EQ(ReadWholeFile(FFile), old);
}

}  // namespace
}  // namespace wrenfold
