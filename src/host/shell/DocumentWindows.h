// Shows open documents in the editor's pages, the designers and the panels.
#pragma once

#include <QPointer>
#include <functional>
#include <vector>

#include "host/documents/Documents.h"
#include "host/forms/Designers.h"
#include "host/panels/EditWindow.h"
#include "host/panels/MessagePanel.h"
#include "host/panels/ProjectPanel.h"
#include "host/panels/PropertyInspector.h"
#include "host/shell/StatusFields.h"

namespace wrenfold {

class TDocumentWindows final : public TDocumentViews {
 public:
  // Where documents are shown. All outlive this object.
  struct TPlaces {
    TEditWindow& Editor;
    TDesigners& Designers;
    TPropertyInspector& Inspector;
    TProjectPanel& Project;
    TMessagePanel& Messages;
    TStatusFields& Status;
  };
  explicit TDocumentWindows(const TPlaces& places);
  ~TDocumentWindows();
  // Whose documents are shown; to be called once.
  void Serve(TDocuments& documents);

  // The designer that the user was in last, unless it was a page; null also when it is hidden.
  TDesignerForm* ActiveDesigner() const;
  // False when the user kept the page.
  bool ClosePage(TEditPage& page);
  // Closes all pages and windows without a question.
  void Clear();

  // What the main window's title tells may be something else now.
  std::function<void()> OnTitleChange;

  // TDocumentViews
  void ShowSource(TSourceEditor& editor) override;
  void AddPage(TSourceEditor& editor) override { F.Editor.AddPage(editor); }
  void BeginPages() override { F.Editor.BeginUpdate(); }
  void EndPages() override { F.Editor.EndUpdate(); }
  void GoTo(int line, int column) override;
  void ShowForm(TFormEditor& editor) override;
  std::vector<IOTAEditView*> ViewsOf(const TSourceEditor& editor) override;
  TForm* DesignerOf(const TFormEditor& editor) override { return F.Designers.Find(editor); }
  QWidget* RootWindowOf(TFormEditor& editor) override { return F.Designers.RootWindow(editor); }
  bool Shows(const TModule& module, const TSourceEditor* except) const override;
  TModule* CurrentModule() override;
  void SelectionChanged(TFormEditor& editor) override;
  void EditorChanged(TModule& module) override;
  void FormGoes(TFormEditor& editor) override;
  void FormRead(TFormEditor& editor) override;
  void Drop(TModule& module) override;
  void BaseFormChanged(std::string_view className) override {
    F.Designers.UpdateUsersOf(className);
  }
  void ProjectChanged(TProjectHolder* project) override;
  void Tell(const TNotice& message) override;
  void Status(const std::string& text) override;

 private:
  void PageChanged();
  void ActiveFormChanged();
  void Activate(TDesignerForm& designer);
  void DesignerClosed(TFormEditor& editor);
  void TitleChanged() {
    if (OnTitleChange) OnTitleChange();
  }

  TPlaces F;
  TDocuments* FDocuments = nullptr;
  QPointer<TDesignerForm> FActiveDesigner;
  TFormEditor* FReread = nullptr;  // was shown in the inspector before it was read again
  QMetaObject::Connection FFollowing;
};

}  // namespace wrenfold
