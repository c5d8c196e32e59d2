// A manager in a temporary package directory, with experts that write down what happens to them.
#pragma once

#include <QSettings>
#include <QTemporaryDir>
#include <memory>
#include <string>
#include <vector>

#include "FakeEnvironment.h"
#include "locale/rkLocale.h"
#include "manager/rkErrorLog.h"
#include "manager/rkExpMng.h"
#include "platform/core/system/Files.h"

namespace wrenfold {

inline std::vector<std::string> ExpertLog;
inline std::string TakeExpertLog() {
  std::string text;
  for (const std::string& line : std::exchange(ExpertLog, {}))
    text += (text.empty() ? "" : " ") + line;
  return text;
}

enum class TFailingStep { None, Constructor, Init };

template <char Letter>
class TTestExpert : public TCustomExpert {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info =
        Publish<TTestExpert>(std::string("TExpert") + Letter, TCustomExpert::ClassInfo())
            .Prop("Note", &TTestExpert::Note)
            .Prop("Lines", &TTestExpert::Lines)
            .Prop("Guarded", &TTestExpert::Guarded, &TTestExpert::SetGuarded);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TTestExpert() : Lines(std::make_unique<TStringList>()) {
    Write("made");
    AddStoredData(this, std::string("Data") + Letter, "", "");
    FailAt(TFailingStep::Constructor);
  }
  ~TTestExpert() override { Write("freed"); }
  void Init(const TGetMenuItemData& getMenuItemData) override {
    Write("init");
    TExpMenuItemData& item = getMenuItemData(std::string("Item") + Letter);
    item.Caption = std::string("Command ") + Letter;
    item.ShortCutText = std::string("Ctrl+Shift+") + Letter;
    Bind<&TTestExpert::Execute>(item.OnExecute, this);
    Record = &item;
    if (Letter == 'A' || Fails == TFailingStep::None) return;
    Bind<&TTestExpert::Execute>(getMenuItemData("ItemA").OnExecute, this);
    FailAt(TFailingStep::Init);
  }
  void Load(bool loaded) override { Write(loaded ? "loaded" : "defaults"); }
  void Execute(TObject*) {
    Write("executed");
    if (ThrowWhenExecuted) throw Exception("command failed");
  }

  std::string Guarded() const { return FGuarded; }
  void SetGuarded(const std::string& text) {
    if (RefusesSettings) throw Exception("not now");
    FGuarded = text;
  }

  std::string Note;
  std::unique_ptr<TStringList> Lines;
  TExpMenuItemData* Record = nullptr;
  static inline TFailingStep Fails = TFailingStep::None;
  static inline bool ThrowWhenExecuted = false;
  static inline bool RefusesSettings = false;

 private:
  std::string FGuarded;
  static void FailAt(TFailingStep step) {
    if (Fails == step) throw Exception("no expert today");
  }
  static void Write(const char* what) { ExpertLog.push_back(std::string(1, Letter) + ":" + what); }
};

// The stored choice of the language, as the file holds it.
class TStoredLanguage : public QSettings {
 public:
  TStoredLanguage() : QSettings(IniFormat, UserScope, "Wrenfold", "Registry") {
    beginGroup("Software/Wrenfold");
  }
};

// Starts with experts A (group 1) and B (group 5). Questions are answered with Answer and kept.
class TManagerFixture {
 public:
  TManagerFixture() {
    SetMessageDlgProc([this](const std::string& text, TMsgDlgType, TMsgDlgButtons) {
      Questions.push_back(text);
      return Answer;
    });
    ForgetLanguage();
    StartUnit();
  }
  ~TManagerFixture() {
    Stop();
    DoneExpManager();
    FreeLocale();
    RemoveMessageDialogs();
    InstallMessageDialogs();
    ExpertLog.clear();
  }

  void StartUnit() {
    InitExpManager(Directory());
    RegisterExpClass(TTestExpert<'A'>::ClassInfo(), 1, "ExpertA", -1);
    RegisterExpClass(TTestExpert<'B'>::ClassInfo(), 5, "ExpertB", sUnitManagerExpert);
  }
  // As the environment does it: loads the package, lets its messages in, and unloads it.
  void Start() {
    RegisterExpManager();
    Settle();
  }
  // Messages may post further ones.
  static void Settle() {
    for (int round = 0; round < 3; ++round) Application().ProcessMessages();
  }
  void Stop() { TFakeEnvironment::Wizard = nullptr; }
  // Ends the package and loads it again.
  void Restart() {
    Stop();
    DoneExpManager();
    StartUnit();
    Start();
  }
  static void ForgetLanguage() { TStoredLanguage().clear(); }

  TExpManager& Manager() { return *CurrentManager(); }
  template <char Letter>
  TTestExpert<Letter>& Expert() {
    const int index = Manager().Experts().IndexOf(std::string("Expert") + Letter);
    return static_cast<TTestExpert<Letter>&>(*Manager().Experts().Get(index).Expert);
  }
  std::string Directory() const { return FDirectory.path().toStdString() + "/"; }
  std::string Log() const {
    const std::string name = Directory() + "ExpError.log";
    return FileExists(name) ? ReadWholeFile(name) : "";
  }

  TFakeEnvironment Environment;
  std::vector<std::string> Questions;
  TMsgDlgBtn Answer = mbYes;

 private:
  QTemporaryDir FDirectory;
};

}  // namespace wrenfold
