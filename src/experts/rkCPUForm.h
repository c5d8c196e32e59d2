// The window of the CPU window scan.
#pragma once

#include <string>
#include <vector>

#include "controls/rkStdCtrls.h"
#include "experts/rkCPUView.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

// How the window stands, to open another one like it.
struct TCPUFormState {
  std::string Placement, Text;
};

// A text box that takes what the panes of the CPU window show; the text is the user's to edit, to
// copy and to save.
class TCPUForm : public TSharedForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // The manager owns the settings and outlives the window.
  TCPUForm(TComponent* owner, TCPUFormMng* manager);

  // Appends the text of that view of the CPU window; nothing while that is not visible.
  void GetViewText(TStrings& strings, TCPUViewType view, int lineCount);
  // Replaces the text by what the settings say.
  void GetData();

  TMemo* TextBox() const { return FText; }
  TPopupMenu* TargetMenu() const { return FTargetMenu; }
  TPopupMenu* CountMenu() const { return FCountMenu; }

  TCPUFormState State() const;
  void Restore(const TCPUFormState& state);

 private:
  void CreateActions();
  void CreateToolBar();
  void CreateTargetMenu();
  void CreateCountMenu();
  TMenuItem* AddItem(TPopupMenu& menu, const std::string& caption, int tag);
  TToolButton* AddMenuButton(const char* action, TPopupMenu& menu);
  void TakeView();
  void TakeCount();
  void OpenTextMenu(const QPoint& place);

  void GetDataClick(TObject*) { GetData(); }
  void CountClick(TObject* sender);
  void CustomCountClick(TObject* sender);
  void CountActionClick(TObject* sender);
  void TargetClick(TObject* sender);
  void SaveClick(TObject* sender);

  TCPUFormMng* FManager;
  TImageList* FImages;
  TPopupMenu* FTargetMenu;
  TPopupMenu* FCountMenu;
  TToolBar* FToolBar;
  TMemo* FText;
};

}  // namespace wrenfold
