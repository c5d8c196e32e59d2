// What open documents ask of the windows that show them.
#pragma once

#include <string>
#include <vector>

#include "host/documents/Modules.h"

namespace wrenfold {

enum class TMessageKind { Information, Warning, Error };

// A message to the user; with a file and a line (from 1; 0: none) it leads there.
struct TNotice {
  TMessageKind Kind = TMessageKind::Error;
  std::string Text = {};
  std::string FileName = {};
  int Line = 0;
};

class TDocumentViews {
 public:
  // A page of the text is brought to the front, made where there is none. Raises EFOpenError when
  // the text cannot be read.
  virtual void ShowSource(TSourceEditor& editor) = 0;
  // Another page of the text, active from now on. Raises EFOpenError.
  virtual void AddPage(TSourceEditor& editor) = 0;
  // Between the two, pages are only collected; they are shown at the end.
  virtual void BeginPages() = 0;
  virtual void EndPages() = 0;
  // Puts the cursor of the active page on a line and column, from 1.
  virtual void GoTo(int line, int column) = 0;
  // The form, which was read before, is shown in its designer.
  virtual void ShowForm(TFormEditor& editor) = 0;
  virtual std::vector<IOTAEditView*> ViewsOf(const TSourceEditor& editor) = 0;
  virtual TForm* DesignerOf(const TFormEditor& editor) = 0;
  virtual QWidget* RootWindowOf(TFormEditor& editor) = 0;
  // Whether a page (of another source than this one) or a window shows the module.
  virtual bool Shows(const TModule& module, const TSourceEditor* except) const = 0;
  // The module of the designer or page that the user was in last, or null.
  virtual TModule* CurrentModule() = 0;

  virtual void SelectionChanged(TFormEditor& editor) = 0;
  // Modified, saved or renamed.
  virtual void EditorChanged(TModule& module) = 0;
  // The form goes, or is read again: nothing of it may be kept. FormRead follows when it comes
  // back.
  virtual void FormGoes(TFormEditor& editor) = 0;
  virtual void FormRead(TFormEditor& editor) = 0;
  // The module is closed: its pages and windows go.
  virtual void Drop(TModule& module) = 0;
  // Forms that are composed with the form of this class are others now.
  virtual void BaseFormChanged(std::string_view className) = 0;
  // Another project is open, or none, or its modules are others than before.
  virtual void ProjectChanged(TProjectHolder* project) = 0;

  virtual void Tell(const TNotice& message) = 0;
  // A word for the status line that goes by itself.
  virtual void Status(const std::string& text) = 0;

 protected:
  ~TDocumentViews() = default;
};

}  // namespace wrenfold
