// The window that finds and replaces in all files of the project.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <functional>
#include <vector>

#include "host/documents/Documents.h"
#include "host/documents/FileSearch.h"
#include "host/panels/MessagePanel.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

// Hits are listed in the messages while the search runs; one can work on meanwhile.
class TFindFilesForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // Both must outlive the window.
  TFindFilesForm(TComponent* owner, TDocuments& documents, TMessagePanel& messages);

  // Comes to the front, with that text when it is not empty.
  void Open(const std::string& text);
  void Find() { Start(false); }
  // Finds, lets the user choose, and replaces.
  void Replace() { Start(true); }
  bool Running() const { return FSearch.Running(); }

  std::function<std::vector<TFoundPlace>(const std::vector<TFoundPlace>&)> Confirm;

 protected:
  void KeyDown(QKeyEvent& key) override;

 private:
  void LayOut();
  void Start(bool replace);
  void Stop();
  void Found(const std::vector<TFoundPlace>& places);
  void Ended(bool whole);
  void ReplaceFound();
  void ShowState(const QString& text);

  TDocuments& FDocuments;
  TMessagePanel& FMessages;
  TFileSearch FSearch;
  QLineEdit* FText;
  QLineEdit* FWith;
  QCheckBox* FCaseSensitive;
  QCheckBox* FWholeWords;
  QCheckBox* FRegularExpression;
  QProgressBar* FProgress;
  QLabel* FState;
  QPushButton* FFind;
  QPushButton* FReplace;
  QPushButton* FStop;
  int FGroup = -1;  // of the messages
  int FFiles = 0;
  std::vector<TFoundPlace> FPlaces;
  bool FReplacing = false;
};

}  // namespace wrenfold
