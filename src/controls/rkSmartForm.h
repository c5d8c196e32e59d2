// The base of the experts' windows: remembers where it stood, closes on Escape.
#pragma once

#include <string>

#include "platform/widgets/Actions.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

// A window placement as text: the ten numbers, separated by commas.
std::string PlacementToText(const TWindowPlacement& placement);
// Answers false for a text that is not ten numbers.
bool TextToPlacement(std::string_view text, TWindowPlacement& placement);

class TSmartForm : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TSmartForm(TComponent* owner = nullptr);

  // The placement as text; empty until it is captured or given.
  const std::string& Placement() const { return FPlacement; }
  void SetPlacementText(const std::string& placement) { FPlacement = placement; }
  // Capture the placement when the form closes.
  bool AutoSave = false;

  // Captures the placement, and what a descendant keeps with it.
  virtual void ReadFormData();
  // Applies the placement; a window without one goes to the centre of the screen.
  virtual void WriteFormData();
  // Takes settings into the form; called when it has been made.
  virtual void SetProperties() {}

  TActionList* FormActions() const { return FFormActions; }
  TAction* scSavePlacement() const { return FSavePlacement; }
  TAction* scExit() const { return FExit; }

 protected:
  // What descendants read from and write to themselves beside the placement.
  virtual void GetFormData() {}
  virtual void SetFormData() {}
  // The user pressed the exit key.
  virtual void ExitExecute() { Close(); }
  // A new action of the form.
  TAction* AddAction(const char* name, const char* category, TShortCut shortCut);

  void DoCreate() override;
  void DoShow() override;
  void DoClose(TCloseAction& action) override;

 private:
  void SavePlacementClick(TObject*) { ReadFormData(); }
  void ExitClick(TObject*) { ExitExecute(); }

  std::string FPlacement;
  TActionList* FFormActions;
  TAction* FSavePlacement;
  TAction* FExit;
};

}  // namespace wrenfold
