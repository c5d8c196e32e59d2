// Tests the queries on the environment's projects, modules, editors and windows.
#include <gmock/gmock.h>

#include "FakeEnvironment.h"
#include "ide/rkCrtlUtils.h"
#include "ide/rkOTAUtils.h"
#include "platform/core/model/StringList.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;

class TOtherForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TOtherForm>("TOtherForm", TForm::ClassInfo());
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TForm::TForm;
};

struct TRoot : TComponent {
  explicit TRoot(const TTypeInfo& info) : Info(info) {}
  const TTypeInfo& GetClassInfo() const override { return Info; }
  const TTypeInfo& Info;
};

TEST(NoEnvironment, EveryQueryAnswersNothing) {
  BorlandIDEServices = nullptr;
  TSourceEditors editors;
  GetOpenedSourceEditors(editors, false);
  TStringList names;
  GetProjectModuleNames(names, mnkUnit);
  ShowModuleByName("Unit1", mnkUnit, false, false);
  EXPECT_TRUE(editors.empty());
  EXPECT_EQ(names.Count(), 0);
  EXPECT_FALSE(GetActiveModule());
  EXPECT_FALSE(GetActiveProject());
  EXPECT_FALSE(GetProjectResource());
  EXPECT_EQ(GetFormFromEditor(nullptr), nullptr);
  EXPECT_FALSE(GetFormEditorFromModule(nullptr));
}

TEST(EditorForm, IsTheFirstVisibleOneWithTheNameAnywhereInIt) {
  TFakeEnvironment environment;
  EXPECT_EQ(FindEditorForm(), environment.EditWindow);
  EXPECT_EQ(GetEditorFormComponent("TabControl"), environment.Tabs);
  environment.EditWindow->Hide();
  EXPECT_EQ(FindEditorForm(), nullptr);
  const std::unique_ptr<TForm> other(NewForm<TForm>());
  other->SetName("myeditwindow");
  other->Show();
  EXPECT_EQ(FindEditorForm(), nullptr);
  other->SetName("MyEditWindowX");
  EXPECT_EQ(FindEditorForm(), other.get());
}

TEST(DesignedRoot, IsAnsweredForItsKindOnly) {
  const auto report = TTypeInfo::MakeClass("TQuickRep", TComponent::ClassInfo());
  const auto ownReport = TTypeInfo::MakeClass("TQuickRep1", *report);
  const auto ownForm = TTypeInfo::MakeClass("TForm1", TForm::ClassInfo());
  const auto ownData = TTypeInfo::MakeClass("TData1", TDataModule::ClassInfo());
  const auto ownFrame = TTypeInfo::MakeClass("TFrame1", TFrame::ClassInfo());
  const struct {
    const char* Name;
    const TTypeInfo& Root;
    TProjectFormTypes Types;
    bool Found;
  } rows[] = {
      {"form", *ownForm, {pfkForm}, true},
      {"form as data module", *ownForm, {pfkDataModule, pfkQuickRep, pfkFrame}, false},
      {"data module", *ownData, {pfkForm, pfkDataModule}, true},
      {"report", *ownReport, {pfkQuickRep}, true},
      {"report class itself", *report, {pfkQuickRep}, false},
      {"frame", *ownFrame, {pfkFrame}, false},
      {"frame, all asked for", *ownFrame, {pfkForm, pfkFrame, pfkDataModule, pfkQuickRep}, false},
  };
  for (const auto& row : rows) {
    TRoot root(row.Root);
    const TIntf<TFakeFormEditor> editor(new TFakeFormEditor("/u.dfm", &root));
    EXPECT_EQ(GetFormFromEditor(static_cast<IOTAFormEditor*>(editor.get()), row.Types) != nullptr,
              row.Found)
        << row.Name;
  }
}

TEST(ProjectModules, AreNamedByKindInProjectOrderWithoutEmptyNames) {
  TFakeEnvironment environment;
  environment.AddProject("Demo");
  for (const char* name : {"Unit2", "", "Unit1"}) {
    auto* info = new TFakeModuleInfo;
    info->Unit = name;
    info->File = std::string("/work/") + name + ".pas";
    info->DesignClass = "TFrame";
    environment.Project->Infos.emplace_back(info);
  }
  TStringList names;
  GetProjectModuleNames(names, mnkUnit);
  EXPECT_EQ(names.CommaText(), "Unit2,Unit1");
  GetProjectModuleNames(names, mnkDesignClass);
  EXPECT_EQ(names.Count(), 0);
  EXPECT_EQ(GetProjectModuleNames().size(), 3u);
  EXPECT_EQ(GetProjectModuleNames()[2][mnkUnit], "Unit1");
}

TEST(OpenEditors, OfTheProjectAreThoseThatItOwns) {
  TFakeEnvironment environment;
  environment.AddPage("Stranger");
  TSourceEditors editors;
  GetOpenedSourceEditors(editors, true);
  EXPECT_TRUE(editors.empty()) << "no project is open";
  environment.AddProject("Demo");
  environment.AddPage("Own")->Project = environment.Project.get();
  GetOpenedSourceEditors(editors, true);
  ASSERT_EQ(editors.size(), 1u);
  EXPECT_EQ(editors[0]->GetFileName(), "/work/Own.pas");
  GetOpenedSourceEditors(editors, false);
  EXPECT_EQ(editors.size(), 2u);
}

TEST(ShowModule, ShowsWhatBelongsToTheKind) {
  const struct {
    const char* Name;
    const char* Source;
    const char* Form;
    TModuleNameKind Kind;
    bool NoSource, ShowCpp;
    int SourceShown, FormShown, Opened;
  } rows[] = {
      {"unit hides the form", "/u.pas", "/u.dfm", mnkUnit, false, false, 1, 0, 0},
      {"header alike is shown", "/u.hpp", "/u.xfm", mnkFile, false, false, 1, 0, 0},
      {"a part of a hidden extension hides", "/u.re", "/u.h", mnkUnit, false, false, 0, 0, 0},
      {"no extension is shown", "/u", "/u.dfm", mnkUnit, false, false, 1, 0, 0},
      {"form opens the source by name", "/u.pas", "/u.dfm", mnkForm, false, false, 0, 1, 1},
      {"form alone", "/u.pas", "/u.dfm", mnkForm, true, false, 0, 1, 0},
      {"form with its C++ source", "/u.cpp", "/u.dfm", mnkForm, false, true, 1, 1, 0},
      {"text form of the free environment", "/u.pas", "/u.lfm", mnkForm, true, false, 0, 1, 0},
      {"text form hidden from units", "/u.fmx", "/u.lfm", mnkUnit, false, false, 0, 0, 0},
      {"design class shows nothing", "/u.pas", "/u.dfm", mnkDesignClass, false, true, 0, 0, 0},
  };
  for (const auto& row : rows) {
    TFakeEnvironment environment;
    auto* module = new TFakeModule(row.Source);
    const TIntf<TFakeFormEditor> form(new TFakeFormEditor(row.Form, nullptr));
    module->Editors.emplace_back(static_cast<IOTAFormEditor*>(form.get()));
    environment.AddProject("Demo");
    auto* info = new TFakeModuleInfo;
    info->Unit = info->File = info->Form = "Thing";
    info->Module = TIntf<IOTAModule>(module);
    environment.Project->Infos.emplace_back(info);
    ShowModuleByName("THING", row.Kind, row.NoSource, row.ShowCpp);
    EXPECT_EQ(module->Source->Shown, row.SourceShown) << row.Name;
    EXPECT_EQ(form->Shown, row.FormShown) << row.Name;
    EXPECT_EQ(static_cast<int>(environment.OpenedFiles.size()), row.Opened) << row.Name;
  }
}

TEST(FormByClass, IsExactlyOfThatClass) {
  const std::unique_ptr<TForm> other(NewForm<TOtherForm>());
  EXPECT_EQ(FindFormByClass(TForm::ClassInfo()), nullptr) << "a descendant was taken";
  EXPECT_EQ(ShowFormByClass(TOtherForm::ClassInfo()), other.get());
  EXPECT_TRUE(other->isVisible());
}

}  // namespace
}  // namespace wrenfold
