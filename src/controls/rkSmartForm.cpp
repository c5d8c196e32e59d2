// The base of the experts' windows.
#include "controls/rkSmartForm.h"

#include <array>
#include <charconv>

#include "platform/widgets/ShortCuts.h"

namespace wrenfold {

namespace {

// The numbers of the text form in their order.
using TNumber = int TWindowPlacement::*;
constexpr std::array<TNumber, 10> Numbers{&TWindowPlacement::Flags, &TWindowPlacement::ShowCmd,
                                          &TWindowPlacement::MinX,  &TWindowPlacement::MinY,
                                          &TWindowPlacement::MaxX,  &TWindowPlacement::MaxY,
                                          &TWindowPlacement::Left,  &TWindowPlacement::Top,
                                          &TWindowPlacement::Right, &TWindowPlacement::Bottom};

}  // namespace

std::string PlacementToText(const TWindowPlacement& placement) {
  std::string text;
  for (const TNumber number : Numbers) {
    if (!text.empty()) text += ',';
    text += std::to_string(placement.*number);
  }
  return text;
}

bool TextToPlacement(std::string_view text, TWindowPlacement& placement) {
  TWindowPlacement read;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (const TNumber number : Numbers) {
    if (number != Numbers.front() && (at == end || *at++ != ',')) return false;
    const auto [next, error] = std::from_chars(at, end, read.*number);
    if (error != std::errc()) return false;
    at = next;
  }
  if (at != end) return false;
  placement = read;
  return true;
}

const TTypeInfo& TSmartForm::ClassInfo() {
  static const TTypeInfo info = Publish<TSmartForm>("TSmartForm", TForm::ClassInfo());
  return info;
}

TSmartForm::TSmartForm(TComponent* owner) : TForm(owner), FFormActions(new TActionList(this)) {
  FFormActions->SetName("FormActions");
  FSavePlacement = AddAction("scSavePlacement", "FormMng", TextToShortCut("Ctrl+S"));
  Bind<&TSmartForm::SavePlacementClick>(FSavePlacement->OnExecute, this);
  FExit = AddAction("scExit", "FormMng", TextToShortCut("Esc"));
  Bind<&TSmartForm::ExitClick>(FExit->OnExecute, this);
}

TAction* TSmartForm::AddAction(const char* name, const char* category, TShortCut shortCut) {
  auto* action = new TAction(this);
  action->SetName(name);
  action->SetCategory(category);
  action->SetShortCut(shortCut);
  action->SetActionList(FFormActions);
  return action;
}

void TSmartForm::ReadFormData() {
  FPlacement = PlacementToText(GetPlacement());
  GetFormData();
}

void TSmartForm::WriteFormData() {
  TWindowPlacement placement;
  const bool placed = TextToPlacement(FPlacement, placement);
  // A window that opens out of sight, perhaps while others wait for it, looks like a frozen
  // program.
  if (placement.ShowCmd == SW_SHOWMINIMIZED) placement.ShowCmd = SW_SHOWNORMAL;
  if (placed) SetPlacement(placement);
  else CenterOnScreen();
  SetFormData();
}

void TSmartForm::DoCreate() {
  TForm::DoCreate();
  SetProperties();
}

void TSmartForm::DoShow() {
  TForm::DoShow();
  WriteFormData();
}

void TSmartForm::DoClose(TCloseAction& action) {
  if (AutoSave) ReadFormData();
  TForm::DoClose(action);
}

}  // namespace wrenfold
