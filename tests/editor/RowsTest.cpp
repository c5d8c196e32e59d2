// Every kind of row: what it shows, what keys make of it, what it gives back and what it refuses.
#include <gmock/gmock.h>

#include <QClipboard>
#include <QMimeData>
#include <QTest>

#include "controls/rkComCtrls.h"
#include "controls/rkControls.h"
#include "controls/rkPictures.h"
#include "controls/rkStdCtrls.h"
#include "editor/RowSample.h"
#include "editor/rkRowMenus.h"
#include "editor/rkSpcImage.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"
#include "storage/rkDataProps.h"

namespace wrenfold {

using test::TRowSample;

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const TRowRule* RuleOf(const TPropInfo& property, const TRowContext& context = {}) {
  const TRowRule* rule = FindRowRule(ProRowRules(), property, context);
  return rule != nullptr ? rule : FindRowRule(BasicRowRules(), property, context);
}

const TPropInfo& Property(const char* name) {
  return *TRowSample::ClassInfo().FindProperty(name);
}

// A window with the row of one property and a field to leave it for.
class TRowWindow {
 public:
  explicit TRowWindow(const char* property, TRowContext context = {}) {
    Other.setParent(&Form);
    Other.move(0, 200);
    context.Owner = &Form;
    context.Parent = &Form;
    const TRowRule& rule = *RuleOf(Property(property), context);
    Row = rule.Make({Sample, Property(property), rule, context});
    Row->SetLabel(property);
    Widget = Row->Control().Widget();
    QWidget::setTabOrder(Widget, &Other);
    Row->Control().SetWidth(200);
    Form.Show();
    QApplication::setActiveWindow(&Form);
    Row->ShowValue();
    Widget->setFocus();
    Bind<&TRowWindow::Committed>(Row->OnCommit, this);
    Bind<&TRowWindow::Changed>(Row->OnChange, this);
  }
  void Committed(TObject*) {
    ++Commits;
    Row->TakeValue();
  }
  void Changed(TObject*) { ++Changes; }
  void Leave() { QTest::keyClick(Widget, Qt::Key_Tab); }
  std::string Text() const { return PropertyAsShownText(Sample, Row->Property()); }
  // What stands in the control.
  std::string Shown() const {
    TControl* control = &Row->Control();
    if (auto* edit = dynamic_cast<TEdit*>(control)) return edit->Text();
    if (auto* combo = dynamic_cast<QComboBox*>(control)) return FromQString(combo->currentText());
    if (auto* spin = dynamic_cast<QAbstractSpinBox*>(control)) return FromQString(spin->text());
    if (auto* key = dynamic_cast<THotKeyEx*>(control)) return key->Text();
    if (auto* memo = dynamic_cast<TMemo*>(control)) return FromQString(memo->toPlainText());
    if (auto* box = dynamic_cast<TCheckBox*>(control)) return box->Checked() ? "True" : "False";
    if (auto* image = dynamic_cast<TSpcImage*>(control)) return image->Empty() ? "" : "picture";
    std::string checked;
    if (auto* list = dynamic_cast<TCheckListBox*>(control))
      for (int i = 0; i < list->count(); ++i) checked += list->Checked(i) ? 'x' : '-';
    return checked;
  }

  TRowSample Sample;
  TForm Form;
  QLineEdit Other;
  std::unique_ptr<TPropertyRow> Row;
  QWidget* Widget;
  int Commits = 0, Changes = 0;
};

using TKeys = void (*)(QWidget& widget);

template <std::size_t Size>
struct TText {
  constexpr TText(const char (&text)[Size]) { std::copy_n(text, Size, Value); }
  char Value[Size];
};
// Types over what stands in the control.
template <TText Text>
void Type(QWidget& widget) {
  QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
  if (Text.Value[0] == '\0') QTest::keyClick(&widget, Qt::Key_Delete);
  else
    for (const QChar letter : QString::fromUtf8(Text.Value))
      QTest::sendKeyEvent(QTest::Click, &widget, Qt::Key_unknown, letter, Qt::NoModifier);
}
template <Qt::Key Key, Qt::KeyboardModifier Modifier = Qt::NoModifier>
void Press(QWidget& widget) {
  QTest::keyClick(&widget, Key, Modifier);
}
void TypeLines(QWidget& widget) {
  QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&widget, "one");
  QTest::keyClick(&widget, Qt::Key_Return);
  QTest::keyClicks(&widget, "two");
}
void TypeTooLong(QWidget& widget) {
  QTest::keyClicks(&widget, QString(256, 'x'));
}
void TypeInstalledFont(QWidget& widget) {
  QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&widget, ToQString(InstalledFonts(fdScreen, {}).front()));
}
void PastePicture(QWidget& widget) {
  QImage image(3, 2, QImage::Format_RGB32);
  image.fill(Qt::red);
  QGuiApplication::clipboard()->setImage(image);
  QTest::keyClick(&widget, Qt::Key_V, Qt::ControlModifier);
}
void PasteNoPicture(QWidget& widget) {
  QGuiApplication::clipboard()->setText("no picture");
  QTest::keyClick(&widget, Qt::Key_V, Qt::ControlModifier);
}

// The table is made before there are fonts.
std::string WithFirstFont(std::string text) {
  constexpr std::string_view Mark = "(the first font)";
  const std::size_t at = text.find(Mark);
  return at == std::string::npos
             ? text
             : text.replace(at, Mark.size(), InstalledFonts(fdScreen, {}).front());
}
struct TRowCase {
  const char* Property;
  const char* Kind;
  std::string Shown;
  TKeys Edit;
  std::string After;  // as text, once the row is left
  TKeys Bad = nullptr;
  const char* Refusal = "";
};

std::ostream& operator<<(std::ostream& stream, const TRowCase& row) {
  return stream << row.Property;
}

const std::vector<TRowCase>& RowCases() {
  static const std::vector<TRowCase> cases = {
      {"Number", "Integer", "7", Type<"4x2">, "42", Type<"-">, "no whole number"},
      {"Small", "Integer", "8", Type<"255">, "255", Type<"256">, "not between 0 and 255"},
      {"Wide", "Integer", "5000000000", Type<"-9000000000">, "-9000000000",
       Type<"99999999999999999999">, "not between"},
      {"Letter", "Char", "x", Type<"ä">, "ä", Type<"€">, "no single character"},
      {"WideLetter", "Char", "w", Type<"€">, "€"},
      {"Ratio", "Float", "0.5", Type<"2.25">, "2.25", Type<"1-2">, "no number"},
      {"Title", "String", "Title", Type<"Тест">, "Тест"},
      {"ShortTitle", "String", "Short", Type<"s">, "s", TypeTooLong, "At most 255"},
      {"Pitch", "Enum", "fpDefault", Press<Qt::Key_Down>, "fpVariable"},
      {"Active", "Boolean", "False", Press<Qt::Key_Space>, "True"},
      {"Styles", "Set", "-x--", Press<Qt::Key_Space>, "[fsBold, fsItalic]"},
      {"Friend", "Component", "(none)", Press<Qt::Key_Down>, "Sample"},
      {"Count", "SpinInt", "3", Press<Qt::Key_Up>, "4", Type<"">, "no whole number"},
      {"Colour", "Color", "Black", Type<"red">, "Red", Type<"reddish">, "is no colour"},
      {"Day", "Date", "2023-03-15", Type<"2024-02-29">, "2024-02-29 18:00:00", Type<"2023-02-31">,
       "is no date"},
      {"Moment", "Date", "2023-03-15", Type<"2024-02-29">, "2024-02-29 18:00:00"},
      {"Clock", "Time", "12:00:00", Type<"18:00:00">, "18:00:00", Type<"18:61:00">, "is no time"},
      {"Face", "Font", "MS Sans Serif", TypeInstalledFont, "(the first font), 8 pt",
       Type<"No Such Font">, "no installed font"},
      {"Picture", "Picture", "", PastePicture, "PNG, 3 x 2", PasteNoPicture, "no picture of a"},
      {"Glyph", "Picture", "", PastePicture, "BMP, 3 x 2", PasteNoPicture, "no picture of a"},
      {"Notes", "Strings", "first", TypeLines, "2 lines"},
      {"Checks", "CheckStrings", "-x-", Press<Qt::Key_Space>, "[red, green]"},
      {"Choice", "SelectStrings", "low", Press<Qt::Key_Down>, "middle"},
      {"Key", "ShortCut", "", Press<Qt::Key_K, Qt::ControlModifier>, "Ctrl+K", Press<Qt::Key_K>,
       "types a character"},
      {"KeyText", "ShortCutString", "Ctrl+S", Press<Qt::Key_F5>, "F5", Press<Qt::Key_1>,
       "types a character"},
      {"Guarded", "String", "good", Type<"better">, "better", Type<"bad">, "The setter refuses"},
  };
  return cases;
}

// Dates as the cases write them, whatever the system's locale.
struct TDatesOfTheCases {
  TDatesOfTheCases() { FormatSettings() = TFormatSettings{.DateSeparator = '-'}; }
  ~TDatesOfTheCases() { FormatSettings() = SystemFormatSettings(); }
};

class RowKinds : public testing::TestWithParam<TRowCase> {
  TDatesOfTheCases Dates;
};

TEST_P(RowKinds, ShowsTakesAndRefuses) {
  const TRowCase& row = GetParam();
  TRowWindow window(row.Property);
  if (auto* list = dynamic_cast<QListWidget*>(window.Widget)) list->setCurrentRow(0);
  EXPECT_EQ(window.Row->Rule().Name, std::string(row.Kind));
  EXPECT_EQ(window.Shown(), row.Shown);
  EXPECT_FALSE(window.Row->Modified());
  EXPECT_EQ(window.Widget->accessibleName(), row.Property);
  const std::string before = window.Text();

  if (row.Bad != nullptr) {
    row.Bad(*window.Widget);
    window.Leave();
    EXPECT_EQ(window.Row->Message().Kind, rmRefusal);
    EXPECT_THAT(window.Row->Message().Text, HasSubstr(row.Refusal));
    EXPECT_EQ(window.Text(), before);
    window.Widget->setFocus();
    window.Row->ShowValue();
    EXPECT_EQ(window.Row->Message(), TRowMessage());
  }

  window.Commits = 0;
  row.Edit(*window.Widget);
  EXPECT_GE(window.Changes, 1);
  window.Leave();
  EXPECT_EQ(window.Commits, 1);
  EXPECT_EQ(window.Text(), WithFirstFont(row.After));
  EXPECT_FALSE(window.Row->Modified());
}

INSTANTIATE_TEST_SUITE_P(All, RowKinds, testing::ValuesIn(RowCases()),
                         [](const auto& row) { return std::string(row.param.Property); });

TEST(Rows, AnUntouchedRowWritesNothing) {
  for (const TRowCase& row : RowCases()) {
    TRowWindow window(row.Property);
    window.Leave();
    EXPECT_TRUE(window.Row->TakeValue()) << row.Property;
    EXPECT_EQ(window.Commits + window.Changes, 0) << row.Property;
  }
}

TEST(Rows, EscapeGivesBackWhatWasThereAndEnterConfirms) {
  TRowWindow window("Title");
  Type<"other">(*window.Widget);
  QTest::keyClick(window.Widget, Qt::Key_Escape);
  EXPECT_EQ(window.Shown(), "Title");
  EXPECT_FALSE(window.Row->Modified());
  Type<"kept">(*window.Widget);
  QTest::keyClick(window.Widget, Qt::Key_Return);
  EXPECT_EQ(window.Sample.Title, "kept");
  window.Leave();
  EXPECT_EQ(window.Commits, 1);
}

TEST(Rows, TheWheelChangesOnlyTheFieldWithTheFocus) {
  for (const TRowCase& row : RowCases()) {
    const char* name = row.Property;
    TRowWindow window(name);
    window.Leave();
    const std::string before = window.Shown();
    const QPointF at(5, 5);
    QWidget* target = window.Widget->childAt(5, 5) ? window.Widget->childAt(5, 5) : window.Widget;
    QWheelEvent wheel(at, target->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &wheel);
    EXPECT_EQ(window.Shown(), before) << name;
    EXPECT_FALSE(window.Row->Modified()) << name;
    EXPECT_FALSE(window.Widget->hasFocus()) << name;
  }
}

TEST(Rows, ALongTextOfSeveralLinesIsKeptWholeWhenItsEndIsEdited) {
  TRowWindow window("Title");
  const std::string text = std::string(40000, 'x') + "\nsecond";
  window.Sample.Title = text;
  window.Row->ShowValue();
  QTest::keyClick(window.Widget, Qt::Key_End);
  QTest::keyClicks(window.Widget, "!");
  window.Leave();
  EXPECT_EQ(window.Sample.Title, text + '!');
}

TEST(Rows, APasteWithAForeignCharacterIsRefusedWhole) {
  TRowWindow window("Number");
  QGuiApplication::clipboard()->setText("12a");
  QTest::keyClick(window.Widget, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(window.Widget, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(window.Shown(), "7");
  QGuiApplication::clipboard()->setText("12");
  QTest::keyClick(window.Widget, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(window.Shown(), "12");
}

TEST(Rows, AnIntegerGetsASpinOnlyOnRequestAndNeverBeyondTheSpinsRange) {
  TRowContext overuse;
  overuse.SpinOveruse = true;
  EXPECT_STREQ(RuleOf(Property("Number"))->Name, "Integer");
  EXPECT_STREQ(RuleOf(Property("Number"), overuse)->Name, "SpinInt");
  EXPECT_STREQ(RuleOf(Property("Wide"), overuse)->Name, "Integer");
}

TEST(Rows, AReadOnlyPropertyShowsAndCannotBeChanged) {
  TRowWindow window("Locked");
  EXPECT_EQ(window.Shown(), "as it is");
  EXPECT_FALSE(window.Widget->isEnabled());
}

TEST(Rows, ADateKeepsTheTimeOfDayToTheLastBit) {
  TRowWindow window("Day");
  window.Sample.Day = 45000.123456789;
  window.Row->ShowValue();
  QTest::keyClick(window.Widget, Qt::Key_Up);
  window.Leave();
  EXPECT_EQ(std::fmod(window.Sample.Day, 1.0), std::fmod(45000.123456789, 1.0));
  EXPECT_NE(std::trunc(window.Sample.Day), 45000);
}

TEST(Rows, AMomentThatNoCalendarHasIsToldAndStays) {
  TRowWindow window("Day");
  window.Sample.Day = 1e300;
  window.Row->ShowValue();
  EXPECT_EQ(window.Row->Message().Kind, rmRemark);
  window.Leave();
  EXPECT_EQ(window.Sample.Day, 1e300);
}

TEST(Rows, TranslatedNamesShowAndTheValueKeepsItsOrdinal) {
  TRowContext context;
  context.TranslateNames = [](TStrings& names, const TTypeInfo& type) {
    if (type.Name() == "TFontPitch") names.Put(1, "variabel");
  };
  TRowWindow window("Pitch", context);
  QTest::keyClick(window.Widget, Qt::Key_Down);
  EXPECT_EQ(window.Shown(), "variabel");
  EXPECT_EQ(window.Sample.Pitch, fpVariable);
  EXPECT_EQ(PropertyAsShownText(window.Sample, Property("Pitch"), context), "variabel");
}

TEST(HotKeyRow, TakesEveryKeyButThoseThatLeaveIt) {
  TRowWindow window("Key");
  const auto claimed = [&](int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    return window.Row->ClaimsKey(QKeyEvent(QEvent::KeyPress, key, modifiers));
  };
  EXPECT_TRUE(claimed(Qt::Key_S, Qt::ControlModifier));
  EXPECT_TRUE(claimed(Qt::Key_Return));
  EXPECT_TRUE(claimed(Qt::Key_Backspace));
  EXPECT_FALSE(claimed(Qt::Key_Tab));
  EXPECT_FALSE(claimed(Qt::Key_Backtab, Qt::ShiftModifier));
  EXPECT_FALSE(claimed(Qt::Key_Escape));
  QTest::keyClick(window.Widget, Qt::Key_Escape);
  EXPECT_FALSE(window.Widget->hasFocus());
}

TEST(HotKeyRow, BackspaceClearsAndAConflictIsToldByName) {
  TRowContext context;
  context.HotKeyConflict = [](TShortCut key, const TPersistent&, const TPropInfo&) {
    return key == TextToShortCut("Ctrl+O") ? std::string("Open") : std::string();
  };
  TRowWindow window("KeyText", context);
  QTest::keyClick(window.Widget, Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(window.Row->Message().Kind, rmRemark);
  EXPECT_THAT(window.Row->Message().Text, HasSubstr("Open"));
  window.Row->TakeValue();
  EXPECT_EQ(window.Sample.KeyText, "Ctrl+O");
  QTest::keyClick(window.Widget, Qt::Key_Backspace);
  window.Leave();
  EXPECT_THAT(window.Sample.KeyText, IsEmpty());
  EXPECT_EQ(window.Row->Message(), TRowMessage());
}

TEST(HotKeyRow, ATextThatNamesNoKeyShowsAsItStands) {
  TRowWindow window("KeyText");
  window.Sample.KeyText = "Ctrl+Nowhere";
  window.Row->ShowValue();
  EXPECT_EQ(window.Shown(), "Ctrl+Nowhere");
  EXPECT_EQ(window.Row->Message().Kind, rmRemark);
}

TEST(PictureRow, AStoredPictureThatCannotBeShownIsToldAndStays) {
  TRowWindow window("Picture");
  TImageFile graphic;
  graphic.SetData("GIF89a, and then nothing of the kind");
  window.Sample.Picture->SetGraphic(&graphic);
  window.Row->ShowValue();
  EXPECT_EQ(window.Row->Message().Kind, rmRemark);
  window.Leave();
  EXPECT_EQ(window.Sample.Picture->Graphic()->Data(), graphic.Data());
}

TEST(LinesMenu, OffersWhatNeedsALineOnlyWhenOneIsSelected) {
  TForm owner;
  TLinesMenu menu(&owner);
  TCheckListBox list(&owner, &owner);
  TStringList lines;
  lines.SetText("one\ntwo");
  list.SetLines(lines);
  menu.SetPopupComponent(&list);
  const auto enabled = [&] {
    menu.UpdateItems();
    std::string text;
    for (const TMenuItem* item : menu.Items()->Items()) text += item->Enabled() ? 'x' : '-';
    return text;
  };
  EXPECT_EQ(enabled(), "x--x-xx");
  list.SetItemIndex(1);
  EXPECT_EQ(enabled(), "xxxxxxx");
  menu.Items()->Items(2)->Click();
  EXPECT_EQ(list.count(), 1);
  EXPECT_EQ(list.SelectedLine(), 0);
}

TEST(RowRules, DefaultLayoutHasASectionForEveryKindOnce) {
  TStringList lines;
  AddLayoutDefaults(BasicRowRules(), "-- SpcEditor --", lines);
  AddLayoutDefaults(ProRowRules(), "-- SpcEditorPro --", lines);
  int sections = 0;
  for (int i = 0; i < lines.Count(); ++i) sections += lines[i].starts_with("[") ? 1 : 0;
  EXPECT_EQ(sections, 19);
  const int date = lines.IndexOf("[DateControl]");
  ASSERT_GE(date, 0);
  EXPECT_EQ(lines[date + 1], "Width=80%");
}

}  // namespace
}  // namespace wrenfold
