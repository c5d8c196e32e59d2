// Tests the language settings window: adding, refusing, deleting, the directory, what comes of it.
#include <gmock/gmock.h>

#include <QFileDialog>
#include <QTimer>
#include <QtTest/QTest>

#include "ManagerSupport.h"
#include "manager/rkLocaleSet.h"
#include "platform/widgets/Text.h"

namespace wrenfold {
namespace {

using testing::HasSubstr;

class LocaleSet : public testing::Test {
 protected:
  LocaleSet() {
    for (const char* name : {"wren_ger.dll", "wren_rus.dll"})
      SafeWriteFile(Fixture.Directory() + name,
                    ReadWholeFile(std::string(WRENFOLD_BIN_DIR "/") + name));
    SafeWriteFile(Fixture.Directory() + "broken.dll", "no module");
    Fixture.Start();
  }
  TMenuItem* Menu() {
    TMenuItem* settings = Fixture.Environment.TopItem()->Items(3);
    return settings->Items(settings->Count() - 1);
  }
  std::string Offered() {
    std::string text;
    for (const TMenuItem* item : Menu()->Items()) text += StripHotkey(item->Caption()) + ",";
    return text;
  }
  template <class Form>
  static Form* Shown() {
    for (TForm* form : Screen().Forms())
      if (auto* shown = dynamic_cast<Form*>(form); shown != nullptr && shown->isVisible())
        return shown;
    return nullptr;
  }
  // Opens the window from the menu, lets the user work in it, closes it by Escape.
  void Edit(const std::function<void(TLocaleForm&)>& work) {
    QTimer::singleShot(0, [&] {
      auto* form = Shown<TLocaleForm>();
      ASSERT_NE(form, nullptr);
      work(*form);
      QTest::keyClick(form->Grid(), Qt::Key_Escape);
    });
    Menu()->Items(Menu()->Count() - 1)->Click();
    TManagerFixture::Settle();
  }
  // Ctrl+A, the name and the library; gives up where it is refused.
  void Add(TLocaleForm& form, const char* name, const char* library) {
    QTimer::singleShot(0, [&] {
      auto* question = Shown<TAddLanguageForm>();
      ASSERT_NE(question, nullptr);
      auto* box = question->findChild<QComboBox*>("Library");
      box->setCurrentText(library);
      ASSERT_EQ(box->currentText(), library);
      QTest::keyClicks(question->findChild<QLineEdit*>("LanguageName"), name);
      QTest::keyClick(question, Qt::Key_Return);
      if (question->IsModal() && question->isVisible() && question->ModalResult() == mrNone)
        QTest::keyClick(question, Qt::Key_Escape);
    });
    QTest::keyClick(form.Grid(), Qt::Key_A, Qt::ControlModifier);
  }
  TManagerFixture Fixture;
};

TEST_F(LocaleSet, AddsWhatIsALanguageAndSaysWhyNot) {
  const struct {
    const char* Name;
    const char* Library;
    const char* Refusal;  // null: it is added
  } rows[] = {
      {"Ger,man", "wren_ger.dll", "cannot name a language"},
      {"a=b", "wren_ger.dll", "cannot name a language"},
      {"a\"b", "wren_ger.dll", "cannot name a language"},
      {"  ", "wren_ger.dll", "cannot name a language"},
      {"german", "wren_ger.dll", "There is a language 'german' already"},
      {"Broken", "broken.dll", "broken.dll"},
      {"New one", "wren_ger.dll", nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Name);
    Fixture.Questions.clear();
    Edit([&](TLocaleForm& form) {
      const int before = form.Grid()->rowCount();
      Add(form, row.Name, row.Library);
      EXPECT_EQ(form.Grid()->rowCount(), row.Refusal == nullptr ? before + 1 : before);
    });
    EXPECT_EQ(Fixture.Questions.size(), row.Refusal == nullptr ? 0u : 1u);
    for (const std::string& text : Fixture.Questions) EXPECT_THAT(text, HasSubstr(row.Refusal));
  }
  EXPECT_EQ(Offered(), "Default (English),-,Russian,German,New one,-,Modules...,");
  Fixture.Restart();
  EXPECT_EQ(Offered(), "Default (English),-,Russian,German,New one,-,Modules...,");
}

TEST_F(LocaleSet, DeletingTheActiveLanguageGoesBackToTheDefaultOne) {
  Menu()->Find("German")->Click();
  TManagerFixture::Settle();
  ASSERT_EQ(LocaleStr(sSettings), "Einstellungen");
  Fixture.Questions.clear();
  Edit([&](TLocaleForm& form) {
    form.Grid()->setCurrentCell(2, 0);
    Fixture.Answer = mbNo;
    QTest::keyClick(form.Grid(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(form.Grid()->rowCount(), 3);
    Fixture.Answer = mbYes;
    QTest::keyClick(form.Grid(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(form.Grid()->rowCount(), 2);
  });
  EXPECT_THAT(Fixture.Questions[0], HasSubstr("Deutsch"));
  EXPECT_EQ(Offered(), "Default (English),-,Russian,-,Modules...,");
  EXPECT_TRUE(Menu()->Items(0)->Checked());
  EXPECT_EQ(TStoredLanguage().value("ExpCurrentLocale").toString(), "");
}

TEST_F(LocaleSet, TheDirectoryIsStoredWithASeparator) {
  const QTemporaryDir elsewhere;
  const std::string directory = elsewhere.path().toStdString();
  SafeWriteFile(directory + "/wren_rus.dll", ReadWholeFile(WRENFOLD_BIN_DIR "/wren_rus.dll"));
  Edit([&](TLocaleForm& form) {
    QTimer::singleShot(0, [&] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      dialog->setDirectory(elsewhere.path());
      dialog->selectFile(elsewhere.path());
      static_cast<QDialog*>(dialog)->accept();
    });
    QTest::keyClick(form.Grid(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(form.Settings().Directory, directory + "/");
  });
  EXPECT_EQ(TStoredLanguage().value("ExpLocaleDir").toString().toStdString(), directory + "/");
  EXPECT_EQ(Offered(), "Default (English),-,Russian,-,Modules...,");
}

}  // namespace
}  // namespace wrenfold
