// Tests the suite's windows in every language: no text is cut, and open ones follow a switch.
#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QHeaderView>
#include <QLabel>
#include <QSettings>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTimer>

#include "FakeEnvironment.h"
#include "controls/rkInfoForm.h"
#include "controls/rkInputDlgs.h"
#include "editor/rkSpcForm.h"
#include "editor/rkStrEdit.h"
#include "experts/rkCPUForm.h"
#include "experts/rkExpStrCount.h"
#include "experts/rkInspView.h"
#include "experts/rkUnitForm.h"
#include "experts/rkViewForm.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"
#include "manager/rkExpertEditor.h"
#include "manager/rkLocaleSet.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/MessageDialogs.h"
#include "platform/widgets/Text.h"

namespace wrenfold {
namespace {

class Language : public testing::Test {
 protected:
  Language() {
    QSettings(QSettings::IniFormat, QSettings::UserScope, "Wrenfold", "Registry").clear();
    for (const char* name : {"wren_ger.dll", "wren_rus.dll"})
      SafeWriteFile(Path(name), ReadWholeFile(std::string(WRENFOLD_BIN_DIR "/") + name));
    InitExpManager(Path(""));
    RegisterFormView();
    RegisterCPUView();
    RegisterUnitManager();
    RegisterInspectorView();
    RegisterExpManager();
    Settle();
    for (const char* unit : {"Alpha", "Beta", "Gamma", "Alphabet"}) Environment.AddPage(unit);
  }
  ~Language() override {
    TFakeEnvironment::Wizard = nullptr;
    DoneExpManager();
    FreeLocale();
  }
  std::string Path(const char* name) const { return FDirectory.path().toStdString() + "/" + name; }
  static void Settle() {
    for (int round = 0; round < 4; ++round) Application().ProcessMessages();
  }
  template <class Class>
  static Class& Expert() {
    const TExpObjectList& experts = CurrentManager()->Experts();
    for (int i = 0; i < experts.Count(); ++i)
      if (auto* found = dynamic_cast<Class*>(experts.Get(i).Expert)) return *found;
    throw std::logic_error("no such expert");
  }
  template <class Form>
  static Form* Find() {
    for (TForm* form : Screen().Forms())
      if (auto* found = dynamic_cast<Form*>(form)) return found;
    return nullptr;
  }
  TCPUForm& OpenScan() {
    Expert<TCPUFormMng>().ShowCPU(nullptr);
    Settle();
    return *Find<TCPUForm>();
  }
  TUnitForm& OpenUnits() {
    Expert<TUnitManager>().ShowUnits(nullptr);
    Settle();
    return *FindUnits();
  }
  static TUnitForm* FindUnits() { return Find<TUnitForm>(); }

  QTemporaryDir FDirectory;
  TFakeEnvironment Environment;
};

// The number of text lines below each other that the widget's hint asks for fits in it; a text with
// an ellipsis is shortened on purpose and stands whole in the tool tip.
bool IsCut(const QWidget& widget, const QString& text) {
  if (text.isEmpty() || (text.endsWith(u'…') && !widget.toolTip().isEmpty())) return false;
  const auto* label = qobject_cast<const QLabel*>(&widget);
  if (label != nullptr && label->wordWrap())
    return label->heightForWidth(label->width()) > label->height();
  return widget.sizeHint().width() > widget.width() || widget.sizeHint().height() > widget.height();
}

QString TextOf(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) return label->text();
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) return button->text();
  return {};
}

// What is cut in the window, one a line.
std::string CutTexts(const QWidget& window) {
  std::string cut;
  const auto add = [&](const QString& text) { cut += FromQString(text) + "\n"; };
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible()) continue;
    const QString text = TextOf(*widget);
    if (widget->objectName() != "Directory" && IsCut(*widget, text)) add(text);
    const auto* header = qobject_cast<const QHeaderView*>(widget);
    for (int i = 0; header != nullptr && i < header->count(); ++i) {
      const QString title = header->model()->headerData(i, header->orientation()).toString();
      if (header->fontMetrics().horizontalAdvance(title) > header->sectionSize(i)) add(title);
    }
  }
  return cut;
}

TEST_F(Language, ACutTextIsFound) {
  const std::unique_ptr<TForm> form(CreateMessageDialog("?", mtWarning, {mbOK}));
  form->show();
  EXPECT_EQ(CutTexts(*form), "");
  form->findChild<QAbstractButton*>()->setFixedWidth(8);
  Settle();
  EXPECT_EQ(CutTexts(*form), "OK\n");
}

// The settings editor as the user opens it, but not modal.
TExpertEditor& ShowSettings() {
  TExpertEditor& editor = *CurrentManager()->Editor();
  editor.PrepareEditor();
  editor.LocalizeEditor();
  editor.FormOptions.Exclude(foModalShowing);
  editor.SetSpcRoot(*SettingsRoot());
  editor.ShowTree();
  return editor;
}

TEST_F(Language, NoLabelOfASettingIsCutInAny) {
  for (const char* language : {"", "wren_ger.dll", "wren_rus.dll"}) {
    LoadNewLanguage(*language == 0 ? "" : Path(language));
    TExpertEditor& editor = ShowSettings();
    std::vector<TTreeNode*> nodes;
    ForEachNode(*editor.RootNode(), [&](TTreeNode& node) { nodes.push_back(&node); });
    for (TTreeNode* node : nodes) {
      editor.SelectNode(node);
      Settle();
      EXPECT_EQ(CutTexts(*editor.Form()), "") << language << " " << node->Text;
      for (const auto& row : editor.Rows())
        EXPECT_FALSE(row->Label->text().contains(u'…'))
            << language << " " << FromQString(row->Label->text()) << " of "
            << editor.PropertyLabel(*row->EInstance, *row->EPropInfo);
    }
    editor.Form()->Close();
    Settle();
  }
}

// They are the toolkit's, which makes them as wide as their texts; what is asked must fit all the
// same.
TEST_F(Language, NoQuestionForATextIsCutInAny) {
  for (const char* language : {"", "wren_ger.dll", "wren_rus.dll"}) {
    LoadNewLanguage(*language == 0 ? "" : Path(language));
    for (const int prompt : {sEnterNewLine, sTextForEditing}) {
      std::string cut = "not shown", text;
      QTimer::singleShot(0, [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        cut = CutTexts(*dialog);
        dialog->close();
      });
      EXPECT_FALSE(InputSingleStrQuery(nullptr, LocaleStr(sMenuAddLine), LocaleStr(prompt), text));
      EXPECT_EQ(cut, "") << language;
    }
  }
}

TEST_F(Language, NoWindowCutsItsTextsInAny) {
  const TLanguageSettings settings;
  const TLanguageModules modules = settings.ModuleList();
  std::vector<TForm*> made;
  const auto make = [&](TForm* form) { return made.emplace_back(form); };
  const auto dialog = [&](TMsgDlgType type, TMsgDlgButtons buttons) {
    return make(CreateMessageDialog("?", type, buttons, &LocaleDialogText));
  };
  const auto viewer = [&](TViewModuleMode mode) {
    return make(NewForm<TViewForm>(nullptr, &Expert<TViewFormMng>(), mode));
  };
  const struct {
    const char* Name;
    std::function<TForm*()> Open;
  } rows[] = {
      {"units", [&] { return &OpenUnits(); }},
      {"scan", [&] { return &OpenScan(); }},
      {"line count", [&] { return make(NewForm<TStrCountForm>(nullptr)); }},
      {"strings", [&] { return make(NewForm<TStrEditDlg>(nullptr)); }},
      {"forms of the project", [&] { return viewer(svmForm); }},
      {"units of the project", [&] { return viewer(svmUnit); }},
      {"about", [&] { return make(NewForm<TInfoForm>(nullptr, "1.0")); }},
      {"languages", [&] { return make(NewForm<TLocaleForm>(nullptr, settings, Path(""))); }},
      {"new language", [&] { return make(NewForm<TAddLanguageForm>(nullptr, modules, Path(""))); }},
      {"settings editor", [] { return ShowSettings().Form(); }},
      {"question",
       [&] {
         return dialog(mtConfirmation, {mbYes, mbNo, mbCancel, mbAll});
       }},
      {"error",
       [&] {
         return dialog(mtError, {mbAbort, mbRetry, mbIgnore});
       }},
      {"warning", [&] { return dialog(mtWarning, {mbOK}); }},
  };
  for (const char* language : {"", "wren_ger.dll", "wren_rus.dll"}) {
    LoadNewLanguage(*language == 0 ? "" : Path(language));
    for (const auto& row : rows) {
      TForm* form = row.Open();
      form->show();
      Settle();
      EXPECT_EQ(CutTexts(*form), "") << row.Name << " " << language;
      form->Close();
      Settle();
    }
  }
  for (TForm* form : made) delete form;
}

TEST_F(Language, ASwitchOpensTheWindowsAgainAsTheyWere) {
  TUnitForm& before = OpenUnits();
  before.setGeometry(60, 70, 250, 330);
  before.FilterBox()->setEditText("alph");
  before.FilterUnits();
  before.ListBox()->setCurrentIndex(before.ListBox()->model()->index(1, 0));
  const QPointer<QWidget> old(&before);
  TAction german;
  german.SetCaption("German");
  CurrentManager()->SelectLanguage(&german);
  Settle();
  EXPECT_EQ(old, nullptr);
  TUnitForm* after = FindUnits();
  ASSERT_NE(after, nullptr);
  EXPECT_TRUE(after->isVisible());
  EXPECT_THAT(after->Caption(), testing::HasSubstr(LocaleStr(sUnitFormCaption)));
  EXPECT_EQ(after->geometry(), QRect(60, 70, 250, 330));
  EXPECT_EQ(FromQString(after->FilterBox()->currentText()), "alph");
  EXPECT_EQ(after->Units().Count(), 2);
  EXPECT_EQ(after->ListBox()->currentIndex().row(), 1);
  EXPECT_FALSE(Environment.MainForm->Enabled()) << "the window holds the others as before";
}

TEST_F(Language, ASwitchKeepsTheTextOfTheScan) {
  TCPUForm& before = OpenScan();
  before.TextBox()->setPlainText("00401000 nop");
  before.setGeometry(60, 70, 250, 330);
  const QPointer<QWidget> old(&before);
  TAction german;
  german.SetCaption("German");
  CurrentManager()->SelectLanguage(&german);
  Settle();
  EXPECT_EQ(old, nullptr);
  TCPUForm* after = Find<TCPUForm>();
  ASSERT_NE(after, nullptr);
  EXPECT_TRUE(after->isVisible());
  EXPECT_EQ(after->Caption(), LocaleStr(sCPUFormCaption));
  EXPECT_EQ(after->geometry(), QRect(60, 70, 250, 330));
  EXPECT_EQ(FromQString(after->TextBox()->toPlainText()), "00401000 nop");
}

}  // namespace
}  // namespace wrenfold
