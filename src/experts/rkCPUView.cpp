// The CPU window scan as an expert: settings, menu command, registration.
#include "experts/rkCPUView.h"

#include "experts/rkCPUForm.h"
#include "experts/rkCPUScan.h"
#include "locale/rkLocale.h"
#include "manager/rkExpMng.h"

namespace wrenfold {

namespace {

// Two of the names are those of views that there are none of: users' language modules have them.
struct TViewName {
  const char* Name;
  int TextId;
};
constexpr TViewName ViewNames[] = {
    {"rkDisasmView", sValueDisasmView}, {"rkRegView", sValueRegView},
    {"rkFlagsView", sValueFlagsView},   {"rkDumpView", sValueDumpView},
    {"rkStackView", sValueStackView},   {"rkAllViews", sValueAllViews},
};

std::string SettingTexts() {
  std::string text = MakePropNames(TCPUFormMng::ClassInfo()) + "\r\n[TCPUViewType]";
  for (const TViewName& view : ViewNames)
    text += std::string("\r\n") + view.Name + "=" + LocaleStr(view.TextId);
  return text;
}

class TOpenCPUForm : public TObject {
 public:
  TCPUFormState State;
};

}  // namespace

const TTypeInfo& TCPUFormMng::ClassInfo() {
  static const TTypeInfo info = Publish<TCPUFormMng>("TCPUFormMng", TSharedManager::ClassInfo())
                                    .Prop("ReadLineCount", &TCPUFormMng::ReadLineCount)
                                    .Label(sLabelReadLineCount)
                                    .Prop("ViewObject", &TCPUFormMng::ViewObject)
                                    .Label(sLabelViewObject);
  return info;
}

TCPUFormMng::TCPUFormMng() {
  AddStoredData(this, "CPUViewData", LocaleStr(sCPUViewExpert), SettingTexts());
}

TCPUFormMng::~TCPUFormMng() {
  delete FForm.data();
}

void TCPUFormMng::Init(const TGetMenuItemData& getMenuItemData) {
  TExpMenuItemData& item = getMenuItemData("ViewCPUItem");
  item.Caption = LocaleStr(sViewCPUData);
  item.ShortCutText = "Ctrl+W";
  Bind<&TCPUFormMng::ShowCPU>(item.OnExecute, this);
  Bind<&TCPUFormMng::UpdateMenuState>(item.OnUpdate, this);
}

TCPUForm& TCPUFormMng::NeedForm() {
  if (FForm.isNull()) FForm = NewForm<TCPUForm>(&Application(), this);
  return *static_cast<TCPUForm*>(FForm.data());
}

void TCPUFormMng::ShowCPU(TObject*) {
  NeedForm().Show();
}

void TCPUFormMng::UpdateMenuState(TObject* sender) {
  const bool canShow = FindCpuWindow() != nullptr;
  if (auto* item = dynamic_cast<TMenuItem*>(sender)) item->SetEnabled(canShow);
  if (auto* action = dynamic_cast<TAction*>(sender)) action->SetEnabled(canShow);
}

std::unique_ptr<TObject> TCPUFormMng::CloseWindows() {
  if (FForm.isNull() || !FForm->isVisible()) return nullptr;
  auto window = std::make_unique<TOpenCPUForm>();
  window->State = NeedForm().State();
  NeedForm().Close();
  return window;
}

void TCPUFormMng::ReopenWindows(const TObject& windows) {
  NeedForm().Show();
  NeedForm().Restore(dynamic_cast<const TOpenCPUForm&>(windows).State);
}

void RegisterCPUView() {
  RegisterExpClass(TCPUFormMng::ClassInfo(), 3, "CPUView", sCPUViewExpert);
}

}  // namespace wrenfold
