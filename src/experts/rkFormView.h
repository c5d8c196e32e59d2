// The module viewer: the expert that offers a chooser of the project's forms and units.
#pragma once

#include <QPointer>
#include <QWidget>
#include <array>
#include <memory>

#include "experts/rkModuleList.h"
#include "ide/rkEventHook.h"
#include "manager/rkExpShrForm.h"
#include "platform/core/model/Graphics.h"
#include "platform/widgets/Messages.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold {

enum TPenStyle : std::uint8_t {
  psSolid,
  psDash,
  psDot,
  psDashDot,
  psDashDotDot,
  psClear,
  psInsideFrame
};
template <>
struct TEnumDescription<TPenStyle> {
  static constexpr const char* Name = "TPenStyle";
  static constexpr std::array Values{"psSolid",      "psDash",  "psDot",        "psDashDot",
                                     "psDashDotDot", "psClear", "psInsideFrame"};
};

// A chooser is open: what follows the environment's forms waits until it is closed.
bool FormViewerRunning();

// The expert is its own settings object.
class TViewFormMng : public TSharedManager {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TViewFormMng();
  ~TViewFormMng() override;

  void Init(const TGetMenuItemData& getMenuItemData) override;

  // Takes the environment's tool buttons "View Form" and "View Unit" over: a little later, so that
  // the environment has finished what it is doing. Off gives them back at once.
  bool ToolBarUpdated() const { return FToolBarUpdated; }
  void SetToolBarUpdated(bool updated);

  bool DisplayFormScrollbars = false;
  bool DisplayUnitScrollbars = true;
  bool EditorAutoSave = false;
  bool EditorReadOnly = true;
  bool EllipsisFilePath = true;
  bool FormEnhancedState = false;  // the panel of "More" is folded out
  bool SynchronizeModules = false;
  bool GroupedUnits = false;
  bool SeparatorAllowed = false;
  TColor SeparatorColor = clWindowText;
  TPenStyle SeparatorStyle = psDot;
  bool ExtendedDrawing = false;
  std::unique_ptr<TFont> FormFont, FormUnitFont, UnitFont;

  // Not stored.
  bool DisplacingView = true;
  bool SetFocusToModules = true;
  bool SelectFocusedItem = false;

  bool CheckFormViewState() const { return CheckButton(FFormButton); }
  bool CheckUnitViewState() const { return CheckButton(FUnitButton); }
  void ShowForms(TObject* sender);
  void ShowUnits(TObject* sender);
  // A menu item or an action is enabled when the matching check holds.
  void UpdateFormViewState(TObject* sender);
  void UpdateUnitViewState(TObject* sender);

  // Runs the chooser, and opens what was chosen.
  void ShowModules(TViewModuleMode mode);
  // Closes a module that was open for a preview alone; what was changed in it is dropped.
  void CloseUnsaved(IOTAModule& module);

 private:
  struct TTakenButton {
    QPointer<TToolButton> Button;
    TEventHook Hook;
  };
  static bool CheckButton(const TTakenButton& taken);

  void WndProc(TMessage& message);
  void HookToolBarButtons();
  void RestoreToolBarButtons();
  void ActiveFormChange(TObject* sender);
  void MainFormShow(TObject* sender);

  TMessageWindow FWindow;
  TEventHook FMainFormShow, FActiveFormChange;
  TTakenButton FFormButton, FUnitButton;
  QPointer<QWidget> FMainForm, FForm;
  bool FToolBarUpdated = false;
  bool FShown = false;     // the main form was shown once
  bool FAnswerNo = false;  // the next question of the environment is about a preview
};

// Enters the expert into the registry, as group 1.
void RegisterFormView();

}  // namespace wrenfold
