// The module viewer as an expert: settings, commands, the environment's tool buttons.
#include "experts/rkFormView.h"

#include "controls/rkIcons.h"
#include "experts/rkModuleForms.h"
#include "experts/rkViewForm.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"
#include "platform/widgets/Desktop.h"

namespace wrenfold {

namespace {

constexpr std::uint32_t HookMessage = 0xC01E;
constexpr char ViewToolBar[] = "ViewToolBar";
constexpr char ViewUnitCaption[] = "View Unit";
constexpr char ViewFormCaption[] = "View Form";

// The names of the pen styles as the settings editor shows them.
struct TPenName {
  TPenStyle Style;
  int TextId;
};
constexpr TPenName PenNames[] = {
    {psSolid, sPenSolid},
    {psDash, sPenDash},
    {psDot, sPenDot},
    {psDashDot, sPenDashDot},
    {psDashDotDot, sPenDashDotDot},
    {psClear, sPenClear},
    {psInsideFrame, sPenInsideFrame},
};

std::string SettingTexts() {
  std::string text = MakePropNames(TViewFormMng::ClassInfo());
  text += "\r\n[TPenStyle]";
  for (const TPenName& pen : PenNames)
    text += std::string("\r\n") + TEnumDescription<TPenStyle>::Values[pen.Style] + "=" +
            LocaleStr(pen.TextId);
  return text;
}

int Running = 0;

class TRunning {
 public:
  TRunning() { ++Running; }
  ~TRunning() { --Running; }
  TRunning(const TRunning&) = delete;
  TRunning& operator=(const TRunning&) = delete;
};

void EnableSender(TObject* sender, bool enabled) {
  if (auto* item = dynamic_cast<TMenuItem*>(sender)) item->SetEnabled(enabled);
  if (auto* action = dynamic_cast<TAction*>(sender)) action->SetEnabled(enabled);
}

}  // namespace

bool FormViewerRunning() {
  return Running > 0;
}

const TTypeInfo& TViewFormMng::ClassInfo() {
  static const TTypeInfo info =
      Publish<TViewFormMng>("TViewFormMng", TSharedManager::ClassInfo())
          .Prop("ToolBarUpdated", &TViewFormMng::ToolBarUpdated, &TViewFormMng::SetToolBarUpdated)
          .Label(sLabelToolBarUpdated)
          .Prop("DisplayFormScrollbars", &TViewFormMng::DisplayFormScrollbars)
          .Label(sLabelDisplayFormScrollbars)
          .Prop("DisplayUnitScrollbars", &TViewFormMng::DisplayUnitScrollbars)
          .Label(sLabelDisplayUnitScrollbars)
          .Prop("EditorAutoSave", &TViewFormMng::EditorAutoSave)
          .Label(sLabelEditorAutoSave)
          .Prop("EditorReadOnly", &TViewFormMng::EditorReadOnly)
          .Label(sLabelEditorReadOnly)
          .Prop("EllipsisFilePath", &TViewFormMng::EllipsisFilePath)
          .Label(sLabelEllipsisFilePath)
          .Prop("FormEnhancedState", &TViewFormMng::FormEnhancedState)
          .Label(sLabelFormEnhancedState)
          .Prop("SynchronizeModules", &TViewFormMng::SynchronizeModules)
          .Label(sLabelSynchronizeModules)
          .Prop("GroupedUnits", &TViewFormMng::GroupedUnits)
          .Label(sLabelGroupedUnits)
          .Prop("SeparatorAllowed", &TViewFormMng::SeparatorAllowed)
          .Label(sLabelSeparatorAllowed)
          .Prop("SeparatorColor", &TViewFormMng::SeparatorColor)
          .Label(sLabelSeparatorColor)
          .Prop("SeparatorStyle", &TViewFormMng::SeparatorStyle)
          .Label(sLabelSeparatorStyle)
          .Prop("ExtendedDrawing", &TViewFormMng::ExtendedDrawing)
          .Label(sLabelExtendedDrawing)
          .Prop("FormFont", &TViewFormMng::FormFont)
          .Label(sLabelFormFont)
          .Prop("FormUnitFont", &TViewFormMng::FormUnitFont)
          .Label(sLabelFormUnitFont)
          .Prop("UnitFont", &TViewFormMng::UnitFont)
          .Label(sLabelUnitFont)
          .Label("DisplacingView", sLabelDisplacingView)
          .Label("SetFocusToModules", sLabelSetFocusToModules)
          .Label("SelectFocusedItem", sLabelSelectFocusedItem);
  return info;
}

TViewFormMng::TViewFormMng()
    : FormFont(std::make_unique<TFont>()),
      FormUnitFont(std::make_unique<TFont>()),
      UnitFont(std::make_unique<TFont>()),
      FWindow(TWndMethod::Bind<&TViewFormMng::WndProc>(this)) {
  FormFont->SetName("MS Sans Serif");
  FormFont->SetSize(8);
  FormUnitFont->Assign(FormFont.get());
  UnitFont->Assign(FormFont.get());
  AddStoredData(this, "FormUnitViewData", LocaleStr(sFormUnitViewExpert), SettingTexts());
  if (TForm* mainForm = Application().MainForm()) {
    FMainForm = mainForm;
    FMainFormShow.Hook(mainForm, mainForm->OnShow,
                       [this](TObject* sender) { MainFormShow(sender); });
  }
  FActiveFormChange.Hook(nullptr, Screen().OnActiveFormChange,
                         [this](TObject* sender) { ActiveFormChange(sender); });
}

TViewFormMng::~TViewFormMng() {
  delete FForm.data();
  RestoreToolBarButtons();
}

void TViewFormMng::Init(const TGetMenuItemData& getMenuItemData) {
  TExpMenuItemData& forms = getMenuItemData("ViewFormItem");
  forms.Caption = LocaleStr(sViewForms);
  forms.ImageIndex = siViewForms;
  forms.ShortCutText = "Ctrl+D";
  Bind<&TViewFormMng::ShowForms>(forms.OnExecute, this);
  Bind<&TViewFormMng::UpdateFormViewState>(forms.OnUpdate, this);
  TExpMenuItemData& units = getMenuItemData("ViewUnitItem");
  units.Caption = LocaleStr(sViewUnits);
  units.ImageIndex = siViewUnits;
  units.ShortCutText = "Ctrl+A";
  Bind<&TViewFormMng::ShowUnits>(units.OnExecute, this);
  Bind<&TViewFormMng::UpdateUnitViewState>(units.OnUpdate, this);
}

bool TViewFormMng::CheckButton(const TTakenButton& taken) {
  return taken.Button.isNull() || taken.Button->Enabled();
}

void TViewFormMng::ShowForms(TObject*) {
  if (CheckFormViewState()) ShowModules(svmForm);
}

void TViewFormMng::ShowUnits(TObject*) {
  if (CheckUnitViewState()) ShowModules(svmUnit);
}

void TViewFormMng::UpdateFormViewState(TObject* sender) {
  EnableSender(sender, CheckFormViewState());
}

void TViewFormMng::UpdateUnitViewState(TObject* sender) {
  EnableSender(sender, CheckUnitViewState());
}

void TViewFormMng::ShowModules(TViewModuleMode mode) {
  if (FForm) return;
  std::vector<TListedModule> chosen;
  bool displacing = DisplacingView;
  {
    const TRunning running;
    const QPointer<QWidget> window(NewForm<TViewForm>(&Application(), this, mode));
    FForm = window;
    auto* form = static_cast<TViewForm*>(window.data());
    const bool accepted = form->ShowModal() == mrOk;
    // The package may have been unloaded meanwhile, and this expert with it.
    if (!window) return;
    if (accepted) chosen = form->TakeChosen();
    mode = form->ViewMode();
    delete form;
  }
  wrenfold::ShowModules(chosen, mode, displacing);
}

void TViewFormMng::CloseUnsaved(IOTAModule& module) {
  FAnswerNo = true;
  module.Close();
  FAnswerNo = false;
}

void TViewFormMng::SetToolBarUpdated(bool updated) {
  if (updated == FToolBarUpdated || FMainForm.isNull()) return;
  FToolBarUpdated = updated;
  if (updated) FWindow.PostMessage(HookMessage);
  else RestoreToolBarButtons();
}

void TViewFormMng::WndProc(TMessage& message) {
  if (message.Msg == HookMessage) HookToolBarButtons();
  else TMessageWindow::DefaultHandler(message);
}

void TViewFormMng::HookToolBarButtons() {
  const auto services = Supports<INTAServices>(BorlandIDEServices);
  TToolBar* bar = services && FToolBarUpdated ? services->GetToolBar(ViewToolBar) : nullptr;
  if (bar == nullptr) return;
  for (int i = 0; i < bar->ButtonCount(); ++i) {
    TToolButton* button = bar->Buttons(i);
    const std::string caption = button->Caption();
    TTakenButton* taken = caption == ViewUnitCaption   ? &FUnitButton
                          : caption == ViewFormCaption ? &FFormButton
                                                       : nullptr;
    if (taken == nullptr) continue;
    if (taken->Button == button && taken->Hook.Holds(button->OnClick)) return;
    taken->Button = button;
  }
  const auto take = [](TTakenButton& taken, std::function<void(TObject*)> handler) {
    if (taken.Button && taken.Button->OnClick)
      taken.Hook.Hook(taken.Button, taken.Button->OnClick, std::move(handler));
  };
  take(FUnitButton, [this](TObject* sender) { ShowUnits(sender); });
  take(FFormButton, [this](TObject* sender) { ShowForms(sender); });
}

void TViewFormMng::RestoreToolBarButtons() {
  FUnitButton.Hook.Unhook();
  FFormButton.Hook.Unhook();
}

// A question about a preview is answered before the user sees it.
void TViewFormMng::ActiveFormChange(TObject* sender) {
  FActiveFormChange.CallBefore(sender);
  if (!std::exchange(FAnswerNo, false)) return;
  TForm* form = Screen().ActiveForm();
  if (form == nullptr || form->Caption() != "Confirm") return;
  PostClick(WidgetOf(form->FindComponent("No")));
}

void TViewFormMng::MainFormShow(TObject* sender) {
  FMainFormShow.CallBefore(sender);
  if (!std::exchange(FShown, true) && FToolBarUpdated) FWindow.PostMessage(HookMessage);
}

void RegisterFormView() {
  RegisterExpClass(TViewFormMng::ClassInfo(), 1, "FormUnitView", sFormUnitViewExpert);
}

}  // namespace wrenfold
