// Fonts, pictures, text files, dialogs: what the settings editor's controls stand on.
#include <gmock/gmock.h>

#include <QBuffer>
#include <QFileDialog>
#include <QFontDatabase>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "controls/rkComCtrls.h"
#include "controls/rkControls.h"
#include "controls/rkFileDialogs.h"
#include "controls/rkPictures.h"
#include "controls/rkTextFile.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {
namespace {

using testing::Each;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::ResultOf;

std::string ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Exception& error) {
    return error.Message();
  }
  return {};
}

std::string Picture(const char* format, int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::blue);
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format);
  return buffer.data().toStdString();
}

// A picture whose header promises more than there is: height and width stand behind the marker of
// the frame, its length and the precision.
std::string HugePicture(int width, int height) {
  std::string bytes = Picture("JPEG", 1, 1);
  const std::size_t frame = bytes.find("\xFF\xC0");
  const auto put = [&](std::size_t at, int value) {
    bytes[at] = static_cast<char>(value >> 8);
    bytes[at + 1] = static_cast<char>(value);
  };
  put(frame + 5, height);
  put(frame + 7, width);
  return bytes;
}

TEST(FontList, KeepsWhatEveryOptionKeeps) {
  const auto all = InstalledFonts(fdScreen, {});
  const auto fixed = InstalledFonts(fdScreen, {foFixedPitchOnly});
  ASSERT_FALSE(all.empty());
  EXPECT_THAT(all, IsSupersetOf(fixed));
  const auto isFixed = [](const std::string& family) {
    return QFontDatabase::isFixedPitch(ToQString(family));
  };
  EXPECT_THAT(fixed, Each(ResultOf(isFixed, true)));
  EXPECT_THAT(InstalledFonts(fdScreen, {foNoOEMFonts, foOEMFontsOnly}), testing::IsEmpty());
}

TEST(FontEdit, KeepsTheRestOfTheFontWhenItsNameChanges) {
  TFontEdit edit;
  TFont font;
  font.SetName("No Such Font");
  font.SetSize(17);
  font.SetStyle({fsBold});
  edit.SetUseFonts(true);
  edit.SetSelFont(&font);
  EXPECT_EQ(edit.Text(), "No Such Font");
  QTest::keyClick(&edit, Qt::Key_Down);
  EXPECT_EQ(edit.SelFont()->Name(), edit.Text());
  EXPECT_NE(edit.Text(), "No Such Font");
  EXPECT_EQ(edit.SelFont()->Size(), 17);
  EXPECT_TRUE(edit.SelFont()->Style().Contains(fsBold));
}

// Two by one pixels, black and white; the toolkit reads such files and writes none.
std::string GifPicture() {
  const unsigned char bytes[] = {'G', 'I', 'F', '8', '9', 'a', 2,   0,    1,    0, 0x80, 0,
                                 0,   0,   0,   0,   255, 255, 255, ',',  0,    0, 0,    0,
                                 2,   0,   1,   0,   0,   2,   2,   0x44, 0x0A, 0, ';'};
  return {reinterpret_cast<const char*>(bytes), sizeof bytes};
}

TEST(Pictures, KnowEveryKindAndRefuseWhatIsNone) {
  EXPECT_EQ(ReadPictureInfo(GifPicture()).Format, "GIF");
  EXPECT_EQ(DecodePicture(GifPicture(), "it").size(), QSize(2, 1));
  for (const char* format : {"BMP", "PNG", "JPEG", "ICO"}) {
    const std::string bytes = Picture(format, 20, 10);
    EXPECT_EQ(ReadPictureInfo(bytes).Format, format);
    EXPECT_EQ(DecodePicture(bytes, "it").size(), QSize(20, 10)) << format;
  }
  EXPECT_THAT(ErrorOf([] { DecodePicture("<svg width='1' height='1'/>", "it"); }),
              HasSubstr("no picture of a known kind"));
  const std::string cut = Picture("PNG", 200, 100).substr(0, 60);
  EXPECT_THAT(ErrorOf([&] { DecodePicture(cut, "it"); }), HasSubstr("it"));
}

TEST(Pictures, AreShrunkInTheirShapeAndNeverEnlarged) {
  EXPECT_EQ(DecodePicture(Picture("PNG", 200, 100), "it", {32, 32}).size(), QSize(32, 16));
  EXPECT_EQ(DecodePicture(Picture("PNG", 8, 4), "it", {32, 32}).size(), QSize(8, 4));
}

TEST(Pictures, AHeaderThatPromisesGigabytesIsRefusedByItsNumbers) {
  const std::string bytes = HugePicture(60000, 50000);
  EXPECT_THAT(ErrorOf([&] { DecodePicture(bytes, "it"); }), HasSubstr("60000 x 50000"));
}

TEST(Pictures, SavingConvertsToTheFormatOfTheName) {
  const QTemporaryDir folder;
  const std::string base = FromQString(folder.path()) + "/picture";
  const std::string png = Picture("PNG", 5, 5);
  SavePictureFile(base + ".png", png);
  EXPECT_EQ(ReadWholeFile(base + ".png"), png);
  SavePictureFile(base + ".bmp", png);
  EXPECT_EQ(ReadPictureInfo(LoadPictureFile(base + ".bmp")).Format, "BMP");
  EXPECT_THAT(ErrorOf([&] { SavePictureFile(base + ".gif", png); }), HasSubstr("GIF"));
  EXPECT_FALSE(FileExists(base + ".gif"));
}

TEST(TextFile, ATextOfAHundredMegabytesIsRefusedAndTheLinesStay) {
  const QTemporaryDir folder;
  const std::string name = FromQString(folder.path()) + "/large.txt";
  SafeWriteFile(name, "x");
  ASSERT_TRUE(QFile::resize(ToQString(name), 100 * 1024 * 1024));
  TStringList lines;
  lines.Add("kept");
  EXPECT_THAT(ErrorOf([&] { LoadTextFile(name, lines); }), HasSubstr("100 MB"));
  EXPECT_EQ(lines.Text(), "kept\r\n");
}

TEST(TextFile, IsReadInTheEncodingThatItHas) {
  const QTemporaryDir folder;
  const std::string name = FromQString(folder.path()) + "/text.txt";
  TStringList lines;
  for (const std::string& bytes :
       {std::string("\xC3\xA4"), std::string("\xE4"), std::string("\xEF\xBB\xBF\xC3\xA4"),
        std::string("\xFF\xFE\xE4\x00", 4)}) {
    SafeWriteFile(name, bytes);
    LoadTextFile(name, lines);
    EXPECT_EQ(lines[0], "\xC3\xA4");
  }
}

TEST(FileDialog, FiltersBecomeTheToolkitsAndTheChosenOneComesBack) {
  EXPECT_EQ(ToNameFilters("Text files (*.TXT)|*.TXT|Config files|*.SYS;*.INI|All files(*.*)|*.*"),
            QStringList({"Text files (*.TXT)", "Config files (*.SYS *.INI)", "All files (*)"}));
  const QTemporaryDir folder;
  TSaveDialog dialog;
  dialog.Filter = "Binary|*.sbn|Text|*.stx";
  dialog.InitialDir = FromQString(folder.path());
  QTimer::singleShot(0, [] {
    auto* shown = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(shown, nullptr);
    shown->selectNameFilter("Text (*.stx)");
    shown->selectFile("name");
    static_cast<QDialog*>(shown)->accept();
  });
  ASSERT_TRUE(dialog.Execute(nullptr));
  EXPECT_EQ(dialog.FilterIndex, 2);
  EXPECT_THAT(dialog.FileName, HasSubstr("/name"));
}

TEST(HotKey, KeysThatTypeAreToldApart) {
  for (const char* key : {"A", "Shift+A", "1", "Space", "Enter", "Num 5", ";", "+"})
    EXPECT_TRUE(IsTypingKey(TextToShortCut(key))) << key;
  for (const char* key : {"Ctrl+A", "Alt+1", "F5", "Del", "Ins", "Shift+F1", "Ctrl+Space"})
    EXPECT_FALSE(IsTypingKey(TextToShortCut(key))) << key;
}

TEST(EllipsisLabel, ShortensAtTheEndOrInsideAPath) {
  TEllipsisLabel label;
  label.SetCaption("/a/long/path/to/a/file.txt");
  const int width = label.fontMetrics().horizontalAdvance("/a/long/path");
  EXPECT_EQ(label.ShownText(width), ToQString(label.Caption()));
  label.SetStyle(esEndEllipsis);
  EXPECT_TRUE(label.ShownText(width).startsWith("/a/long"));
  label.SetStyle(esPathEllipsis);
  EXPECT_TRUE(label.ShownText(width).endsWith(".txt"));
}

}  // namespace
}  // namespace wrenfold
