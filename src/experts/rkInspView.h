// The form list in the object inspector: the expert that puts it there and keeps it current.
#pragma once

#include <QComboBox>
#include <QPointer>
#include <vector>

#include "experts/rkInspNotifiers.h"
#include "ide/rkEventHook.h"
#include "manager/rkExpShrForm.h"
#include "platform/widgets/Actions.h"
#include "platform/widgets/Messages.h"

namespace wrenfold {

// The expert is its own settings object.
class TInspectorViewMng : public TSharedManager, private IFormListEvents {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TInspectorViewMng();
  ~TInspectorViewMng() override;
  // The choice in the list, and whether the user is in it.
  std::unique_ptr<TObject> CloseWindows() override;
  void ReopenWindows(const TObject& windows) override;

  bool DisplayPanel() const { return FDisplayPanel; }
  void SetDisplayPanel(bool display);
  bool ProjectFormsOnly() const { return FProjectFormsOnly; }
  void SetProjectFormsOnly(bool projectOnly);
  bool ReturnFocus() const { return FReturnFocus; }
  void SetReturnFocus(bool returnFocus) { FReturnFocus = returnFocus; }
  bool AutoShowForm = false;

  // Posts that another form is active; a burst of changes is one message.
  void DoSetActiveForm(TComponent* component);
  // The list; null while the inspector has none.
  QComboBox* FormCombo() const { return FCombo; }
  // The editor behind the chosen entry, or null.
  IOTAEditor* ChosenEditor() const;

 private:
  // The environment's objects.
  void SetUpdated(bool updated);
  void InspectorFormDestroy(TObject* sender);
  void CloseAllActionExecute(TObject* sender);
  void WndProc(TMessage& message);
  void BuildControls();
  void RemoveControls();
  QWidget* CreatePanel();
  void AddMenuItems();
  void RemoveMenuItems();
  void MenuPopup(TObject* sender);
  void MenuClick(TObject* sender);

  // The list.
  void FillFormCombo();
  void RefreshWhenQuiet();
  void SetActiveForm();
  // The entry of the editor, if it has one.
  void ChooseEntry(IOTAEditor* editor);
  void FormComboChange();
  bool IsOpen(IOTAEditor* editor) const;
  void FocusComboIfWanted();

  // Selections in the designer of the chosen form.
  void ShowForm();
  void SelectParent();
  void ShowIfForced();

  void FormListChanged() override;
  void FormActivated(TComponent* root) override;

  struct TEntry {
    TIntf<IOTAEditor> Editor;
    std::string Name;
    TIntf<TFormNotifier> Notifier;
    int NotifierIndex = -1;
  };
  void ReleaseEntries();

  bool FDisplayPanel = true, FProjectFormsOnly = false, FReturnFocus = false;
  TMessageWindow FWindow;
  QPointer<QWidget> FInspector;
  TEventHook FInspectorDestroy, FCloseAll, FActiveFormChange, FPopup;
  TIntf<TIDENotifier> FNotifier;
  int FNotifierIndex = -1;

  QPointer<QWidget> FPanel;
  QPointer<QComboBox> FCombo;
  std::vector<TEntry> FEntries;  // an item of the list carries the index of its entry
  TPopupMenu* FMenu = nullptr;
  std::vector<TMenuItem*> FMenuItems;

  TComponent* FLastPosted = nullptr;  // compared, never used
  bool FMayPost = true;
  bool FUpdateWanted = true;
  bool FFollow = true;
};

// Enters the expert into the registry, as group 2.
void RegisterInspectorView();

}  // namespace wrenfold
