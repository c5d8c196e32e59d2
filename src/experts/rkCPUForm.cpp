#include "experts/rkCPUForm.h"

#include <QFontDatabase>
#include <QMenu>
#include <QVBoxLayout>

#include "controls/rkFileDialogs.h"
#include "controls/rkIcons.h"
#include "experts/rkCPUScan.h"
#include "experts/rkExpStrCount.h"
#include "locale/rkLocale.h"
#include "platform/core/system/Files.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int DefaultLineCount = 10;
constexpr int LineCounts[] = {10, 20, 30, 40, 50};

// Pictures of the window's list, by the image index of the actions.
constexpr int Pictures[] = {siExit, siGetData, siLineCount, siSave};
enum TPicture : int { piExit, piGetData, piLineCount, piSave };

}  // namespace

const TTypeInfo& TCPUForm::ClassInfo() {
  static const TTypeInfo info = Publish<TCPUForm>("TCPUForm", TSharedForm::ClassInfo());
  return info;
}

TCPUForm::TCPUForm(TComponent* owner, TCPUFormMng* manager)
    : TSharedForm(owner, manager),
      FManager(manager),
      FImages(new TImageList(this)),
      FTargetMenu(new TPopupMenu(this)),
      FCountMenu(new TPopupMenu(this)),
      FToolBar(new TToolBar(this, this)),
      FText(new TMemo(this, this)) {
  SetName("CPUForm");
  SetBorderStyle(bsSizeToolWin);
  SetCaption(LocaleStr(sCPUFormCaption));
  CreateActions();
  CreateTargetMenu();
  CreateCountMenu();
  CreateToolBar();
  FText->SetName("Text");
  FText->setAccessibleName(ToQString(LocaleStr(sViewCPUData)));
  FText->setToolTip(ToQString(LocaleStr(sViewCPUData)));
  FText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  FText->SetWordWrap(false);
  FText->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(FText, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& place) { Guarded(this, [&] { OpenTextMenu(place); }); });
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(FToolBar);
  layout->addWidget(FText, 1);
  setMinimumSize(160, 120);
  resize(420, 300);
  SetActiveControl(FText);
}

void TCPUForm::CreateActions() {
  FImages->SetName("Images");
  for (const int picture : Pictures) FImages->Add(SuiteIcon(picture));
  FormActions()->SetImages(FImages);
  scExit()->SetImageIndex(piExit);
  scExit()->SetHint(LocaleStr(sHintExit));
  const struct {
    const char* Name;
    const char* Key;
    int Picture;
    int HintId;
    TNotifyEvent Execute;
  } rows[] = {
      {"acGetData", "F5", piGetData, sGetCPUData,
       TNotifyEvent::Bind<&TCPUForm::GetDataClick>(this)},
      {"asSetStrCount", "F6", piLineCount, sLinesToRead,
       TNotifyEvent::Bind<&TCPUForm::CountActionClick>(this)},
      {"acSaveText", "Ctrl+Shift+S", piSave, sMenuSaveLines,
       TNotifyEvent::Bind<&TCPUForm::SaveClick>(this)},
  };
  for (const auto& row : rows) {
    TAction* action = AddAction(row.Name, "CPUView", TextToShortCut(row.Key));
    action->SetHint(LocaleStr(row.HintId));
    action->SetImageIndex(row.Picture);
    action->OnExecute = row.Execute;
  }
}

void TCPUForm::CreateToolBar() {
  FToolBar->SetName("ToolBar");
  FToolBar->SetImages(FImages);
  FToolBar->setIconSize(QSize(16, 16));
  FToolBar->setMovable(false);
  FToolBar->AddButton(scExit())->SetName("tbExit");
  FToolBar->AddSeparator();
  AddMenuButton("acGetData", *FTargetMenu)->SetName("tbGetData");
  AddMenuButton("asSetStrCount", *FCountMenu)->SetName("tbSetStrCount");
}

// The arrow beside the button opens the menu, Down opens it by keyboard.
TToolButton* TCPUForm::AddMenuButton(const char* action, TPopupMenu& menu) {
  TToolButton* button = FToolBar->AddButton(FormActions()->FindAction(action));
  button->setMenu(menu.Menu());
  button->setPopupMode(QToolButton::MenuButtonPopup);
  return button;
}

TMenuItem* TCPUForm::AddItem(TPopupMenu& menu, const std::string& caption, int tag) {
  auto* item = new TMenuItem(this);
  item->SetCaption(caption);
  item->SetRadioItem(caption != "-");
  item->Tag = tag;
  menu.Items()->Add(item);
  return item;
}

void TCPUForm::CreateTargetMenu() {
  FTargetMenu->SetName("TargetMenu");
  for (const TCPUViewType view : {rkDisasmView, rkRegView, rkFlagsView, rkAllViews}) {
    if (view == rkAllViews) AddItem(*FTargetMenu, "-", 0);
    Bind<&TCPUForm::TargetClick>(AddItem(*FTargetMenu, ViewName(view), view)->OnClick, this);
  }
  TakeView();
}

void TCPUForm::CreateCountMenu() {
  FCountMenu->SetName("CountMenu");
  for (const int count : LineCounts)
    Bind<&TCPUForm::CountClick>(
        AddItem(*FCountMenu, LocaleFormat(sCountOfStrings, count), count)->OnClick, this);
  AddItem(*FCountMenu, "-", 0);
  TMenuItem* custom = AddItem(*FCountMenu, LocaleStr(sCustomCount), FManager->ReadLineCount);
  custom->SetName("miCustom");
  Bind<&TCPUForm::CustomCountClick>(custom->OnClick, this);
  TakeCount();
}

void TCPUForm::TakeView() {
  for (TMenuItem* item : FTargetMenu->Items()->Items())
    if (!item->IsLine() && item->Tag == FManager->ViewObject) item->SetChecked(true);
}

// The first item with the count; the last one stands for all that have no item of their own.
void TCPUForm::TakeCount() {
  const std::vector<TMenuItem*>& items = FCountMenu->Items()->Items();
  items.back()->Tag = FManager->ReadLineCount;
  for (TMenuItem* item : items) {
    if (item->IsLine() || item->Tag != FManager->ReadLineCount) continue;
    item->SetChecked(true);
    return;
  }
}

void TCPUForm::GetViewText(TStrings& strings, TCPUViewType view, int lineCount) {
  if (TForm* window = FindCpuWindow()) ReadCpuView(*window, strings, view, lineCount);
}

void TCPUForm::GetData() {
  FText->clear();
  TStringList strings;
  GetViewText(strings, FManager->ViewObject, FManager->ReadLineCount);
  FText->SetLines(strings);
}

void TCPUForm::TargetClick(TObject* sender) {
  FManager->ViewObject = static_cast<TCPUViewType>(static_cast<TMenuItem*>(sender)->Tag);
  TakeView();
}

void TCPUForm::CountClick(TObject* sender) {
  FManager->ReadLineCount = static_cast<std::int32_t>(static_cast<TMenuItem*>(sender)->Tag);
  TakeCount();
}

void TCPUForm::CustomCountClick(TObject*) {
  const std::unique_ptr<TStrCountForm> dialog(NewForm<TStrCountForm>(nullptr));
  dialog->SetCount(FManager->ReadLineCount);
  if (dialog->ShowModal() == mrOk)
    FManager->ReadLineCount = dialog->Count() >= 1 ? dialog->Count() : DefaultLineCount;
  TakeCount();
}

void TCPUForm::CountActionClick(TObject*) {
  const TToolButton& button = *FToolBar->Buttons(FToolBar->ButtonCount() - 1);
  const QPoint below = button.mapToGlobal(QPoint(0, button.height()));
  FCountMenu->Popup(below.x(), below.y());
}

void TCPUForm::OpenTextMenu(const QPoint& place) {
  const std::unique_ptr<QMenu> menu(FText->createStandardContextMenu(place));
  const TAction& save = *FormActions()->FindAction("acSaveText");
  menu->addSeparator();
  const QAction* chosen = menu->addAction(save.Icon(), ToQString(save.Hint()));
  if (menu->exec(FText->viewport()->mapToGlobal(place)) == chosen) SaveClick(nullptr);
}

void TCPUForm::SaveClick(TObject*) {
  TSaveDialog dialog;
  dialog.Title = LocaleStr(sMenuSaveLines);
  dialog.Filter = LocaleStr(sLinesFilter);
  dialog.DefaultExt = "txt";
  if (!dialog.Execute(this)) return;
  TStringList lines;
  FText->GetLines(lines);
  lines.SaveToFile(dialog.FileName);
}

TCPUFormState TCPUForm::State() const {
  return {PlacementToText(GetPlacement()), FromQString(FText->toPlainText())};
}

void TCPUForm::Restore(const TCPUFormState& state) {
  TWindowPlacement placement;
  if (TextToPlacement(state.Placement, placement)) SetPlacement(placement);
  FText->setPlainText(ToQString(state.Text));
}

}  // namespace wrenfold
