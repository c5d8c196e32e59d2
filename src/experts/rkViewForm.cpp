// The window of the module viewer: its controls and its list.
#include "experts/rkViewForm.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "experts/rkModuleListView.h"
#include "experts/rkStatusPanels.h"
#include "locale/rkLocale.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr QSize FormSize(476, 263);
constexpr QSize SmallestList(100, 65);
constexpr int FollowDelay = 40;  // milliseconds that the preview waits while one moves on
constexpr std::uint32_t FinishLayout = 0xC01F;

enum TMenuTag : int { mtSynchronize = 1, mtScrollBars };

struct TModeRow {
  TViewModuleMode Mode;
  int NameId;
  int CaptionId;
};
constexpr TModeRow Modes[] = {{svmForm, sModeForms, sViewForms}, {svmUnit, sModeUnits, sViewUnits}};

// Keys of the filter field that move in the list.
constexpr int ListKeys[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown};

QString WithoutDots(const std::string& caption) {
  QString text = ToQString(caption);
  while (text.endsWith('.')) text.chop(1);
  return text;
}

}  // namespace

const TTypeInfo& TViewForm::ClassInfo() {
  static const TTypeInfo info = Publish<TViewForm>("TViewForm", TSharedForm::ClassInfo());
  return info;
}

TViewForm::TViewForm(TComponent* owner, TViewFormMng* manager, TViewModuleMode mode)
    : TSharedForm(owner, manager),
      FManager(manager),
      FMode(mode),
      FMessages(TWndMethod::Bind<&TViewForm::WndProc>(this)) {
  SetName("ViewForm");
  SetFormStyle(fsStayOnTop);
  FFollow.setSingleShot(true);
  FFollow.setInterval(FollowDelay);
  connect(&FFollow, &QTimer::timeout, this, [this] { Guarded(this, [this] { UpdatePreview(); }); });

  FSplitter = new QSplitter;
  FSplitter->addWidget(CreateModulePanel());
  FSplitter->addWidget(CreatePreview());
  FSplitter->setStretchFactor(1, 1);
  FSplitter->setChildrenCollapsible(false);
  FSplitter->setSizes({150, 230});
  auto* row = new QHBoxLayout;
  row->setContentsMargins(6, 6, 6, 2);
  row->addWidget(FSplitter, 1);
  row->addWidget(CreateButtons());
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addLayout(row, 1);
  column->addWidget(CreateMorePanel());
  FStatus = new TStatusPanels(this);
  column->addWidget(FStatus);
  CreateMenu();
  resize(FormSize);
}

TViewForm::~TViewForm() {
  BeforeDestruction();
  Guarded(nullptr, [this] { ReleaseShownForm(); });
}

QWidget* TViewForm::CreateModulePanel() {
  auto* panel = new QWidget;
  auto* column = new QVBoxLayout(panel);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(3);
  FModes = new QComboBox;
  FModes->setObjectName("ModeBox");
  for (const TModeRow& mode : Modes) FModes->addItem(ToQString(LocaleStr(mode.NameId)));
  FModes->setCurrentIndex(FMode);
  FFilter = new QLineEdit;
  FFilter->setObjectName("FilterEdit");
  FFilter->setClearButtonEnabled(true);
  FFilter->installEventFilter(this);
  FList = new QListView;
  FList->setObjectName("ModuleList");
  FList->setSelectionMode(QAbstractItemView::ExtendedSelection);
  FList->setEditTriggers(QAbstractItemView::NoEditTriggers);
  FList->setUniformItemSizes(true);
  FList->setMinimumSize(SmallestList);
  FListModel = new TModuleListModel(FModules, this);
  FList->setModel(FListModel);
  FList->setItemDelegate(new TModuleDelegate(FModules, *FManager, FList));
  column->addWidget(FModes);
  column->addWidget(FFilter);
  column->addWidget(FList, 1);

  connect(FModes, &QComboBox::activated, this,
          [this](int index) { Guarded(this, [&] { SetViewMode(Modes[index].Mode); }); });
  connect(FFilter, &QLineEdit::textEdited, this,
          [this](const QString& text) { Guarded(this, [&] { FilterTyped(text); }); });
  connect(FFilter, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (text.isEmpty()) Guarded(this, [&] { FilterTyped(text); });
  });
  connect(FList->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { FFollow.start(); });
  connect(FList, &QListView::doubleClicked, this, [this] { FOk->Click(); });
  return panel;
}

QWidget* TViewForm::CreatePreview() {
  FPages = new QStackedWidget;
  FFormHost = new QWidget;
  FFormHost->setObjectName("FormHost");
  FFormHost->resize(0, 0);
  FFormArea = new QScrollArea;
  FFormArea->setObjectName("FormArea");
  FFormArea->setWidget(FFormHost);
  FSource = new TSourcePreview(nullptr);
  FSource->setObjectName("UnitPanel");
  FPages->addWidget(FFormArea);
  FPages->addWidget(FSource);
  FPreview = std::make_unique<TFormPreview>(*FFormHost);
  return FPages;
}

QWidget* TViewForm::CreateButtons() {
  auto* panel = new QWidget;
  auto* column = new QVBoxLayout(panel);
  column->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](const char* name, TModalResult result) {
    auto* button = new TButton(this, panel);
    button->SetName(name);
    button->ModalResult = result;
    column->addWidget(button);
    return button;
  };
  FCancel = add("btCancel", mrCancel);
  FOk = add("btOK", mrOk);
  FMore = add("btMore", mrNone);
  column->addStretch(1);
  SetDefaultButton(FOk);
  SetCancelButton(FCancel);
  Bind<&TViewForm::MoreClick>(FMore->OnClick, this);
  return panel;
}

QCheckBox* TViewForm::AddSwitch(const char* name, int textId,
                                const std::function<bool&()>& setting) {
  auto* box = new QCheckBox;
  box->setObjectName(name);
  connect(box, &QCheckBox::clicked, this, [this, setting](bool checked) {
    Guarded(this, [&] {
      setting() = checked;
      SettingChanged();
    });
  });
  FSwitches.push_back({box, textId, setting});
  return box;
}

QWidget* TViewForm::CreateMorePanel() {
  FMorePanel = new QWidget;
  FMorePanel->setObjectName("MorePanel");
  auto* grid = new QGridLayout(FMorePanel);
  grid->setContentsMargins(8, 0, 8, 2);
  grid->setHorizontalSpacing(16);
  TViewFormMng& m = *FManager;
  grid->addWidget(AddSwitch("cbSynchronize", sSynchronizeModules,
                            [&m]() -> bool& { return m.SynchronizeModules; }),
                  0, 0);
  grid->addWidget(AddSwitch("cbScrollBars", sDisplayScrollbars,
                            [this]() -> bool& { return ScrollBarSetting(); }),
                  1, 0);
  grid->addWidget(
      AddSwitch("cbGrouped", sLabelGroupedUnits, [&m]() -> bool& { return m.GroupedUnits; }), 0, 1);
  grid->addWidget(AddSwitch("cbSeparator", sLabelSeparatorAllowed,
                            [&m]() -> bool& { return m.SeparatorAllowed; }),
                  1, 1);
  grid->setColumnStretch(2, 1);
  FMorePanel->hide();
  return FMorePanel;
}

void TViewForm::CreateMenu() {
  FMenu = new TPopupMenu(this);
  FMenu->SetName("SettingsMenu");
  Bind<&TViewForm::MenuPopup>(FMenu->OnPopup, this);
  for (const auto& [name, tag] :
       {std::pair{"miSynchronize", mtSynchronize}, std::pair{"miScrollBars", mtScrollBars}}) {
    auto* item = new TMenuItem(this);
    item->SetName(name);
    item->Tag = tag;
    Bind<&TViewForm::MenuClick>(item->OnClick, this);
    FMenu->Items()->Add(item);
  }
  FMenu->AttachTo(FList);
  FMenu->AttachTo(FFormArea);
}

bool& TViewForm::ScrollBarSetting() {
  return FMode == svmForm ? FManager->DisplayFormScrollbars : FManager->DisplayUnitScrollbars;
}

void TViewForm::MenuPopup(TObject*) {
  FMenu->Items()->Items(0)->SetChecked(FManager->SynchronizeModules);
  FMenu->Items()->Items(1)->SetChecked(ScrollBarSetting());
}

void TViewForm::MenuClick(TObject* sender) {
  const bool scrollBars = static_cast<TMenuItem*>(sender)->Tag == mtScrollBars;
  bool& setting = scrollBars ? ScrollBarSetting() : FManager->SynchronizeModules;
  setting = !setting;
  SettingChanged();
}

// Switches show the settings of the mode; the list may have another order.
void TViewForm::SettingChanged() {
  for (const TSwitch& each : FSwitches) each.Box->setChecked(each.Setting());
  ApplyScrollBars();
  const int current = CurrentIndex();
  const std::string file = current < 0 ? std::string() : FModules[current].FileName;
  FillModuleList();
  ShowList(FModules.IndexOfFile(file), true);
}

void TViewForm::ApplyScrollBars() {
  const Qt::ScrollBarPolicy policy =
      ScrollBarSetting() ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff;
  FFormArea->setHorizontalScrollBarPolicy(policy);
  FFormArea->setVerticalScrollBarPolicy(policy);
  FSource->setHorizontalScrollBarPolicy(policy);
  FSource->setVerticalScrollBarPolicy(policy);
}

void TViewForm::MoreClick(TObject*) {
  FManager->FormEnhancedState = !FManager->FormEnhancedState;
  UpdateMore();
}

void TViewForm::UpdateMore() {
  const bool open = FManager->FormEnhancedState;
  FMore->SetCaption(LocaleStr(sMore) + (open ? " <<" : " >>"));
  if (FMorePanel->isHidden() == !open) return;
  const int height = FMorePanel->sizeHint().height() + layout()->spacing();
  FMorePanel->setVisible(open);
  if (!isMaximized()) resize(width(), QWidget::height() + (open ? height : -height));
}

void TViewForm::SetProperties() {
  TSharedForm::SetProperties();
  FCancel->SetCaption(LocaleStr(sCancel));
  FOk->SetCaption(LocaleStr(sOK));
  FMenu->Items()->Items(0)->SetCaption(LocaleStr(sSynchronizeModules));
  FMenu->Items()->Items(1)->SetCaption(LocaleStr(sDisplayScrollbars));
  FFilter->setPlaceholderText(ToQString(LocaleStr(sTypeToFilter)));
  FModes->setAccessibleName(ToQString(LocaleStr(sFormUnitViewExpert)));
  FFilter->setAccessibleName(ToQString(LocaleStr(sTypeToFilter)));
  FSource->setAccessibleName(ToQString(LocaleStr(sPreviewName)));
  FFormArea->setAccessibleName(ToQString(LocaleStr(sPreviewName)));
  for (const TSwitch& each : FSwitches) {
    each.Box->setText(ToQString(LocaleStr(each.TextId)).replace("##", " "));
    each.Box->setChecked(each.Setting());
  }
  UpdateMore();
}

void TViewForm::DoCreate() {
  TSharedForm::DoCreate();
  ApplyScrollBars();
  FillModuleList();
  const TIntf<IOTAModule> active = GetActiveModule();
  const int current = active ? FModules.IndexOfFile(active->GetFileName()) : -1;
  ShowList(current < 0 && FManager->SelectFocusedItem ? 0 : current, true);
}

void TViewForm::DoShow() {
  TSharedForm::DoShow();
  if (FManager->SetFocusToModules) FList->setFocus();
  else FFilter->setFocus();
}

void TViewForm::DoClose(TCloseAction& action) {
  FFollow.stop();
  TSharedForm::DoClose(action);
}

void TViewForm::SetViewMode(TViewModuleMode mode) {
  if (mode == FMode) return;
  const int current = CurrentIndex();
  const bool control = QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier;
  FRemembered.clear();
  if ((FManager->SynchronizeModules || control) && current >= 0)
    FRemembered = FModules[current].FileName;
  FMode = mode;
  FModes->setCurrentIndex(mode);
  ReleaseShownForm();
  ApplyScrollBars();
  for (const TSwitch& each : FSwitches) each.Box->setChecked(each.Setting());
  FillModuleList();
  const int remembered = FRemembered.empty() ? -1 : FModules.IndexOfFile(FRemembered);
  ShowList(remembered < 0 && FManager->SelectFocusedItem ? 0 : remembered, true);
}

void TViewForm::FillModuleList() {
  TModuleInfos infos;
  GetProjectModules(infos);
  FModules.FillModuleList(infos, FMode, FManager->GroupedUnits);
  static_cast<TModuleDelegate*>(FList->itemDelegate())->SetMode(FMode);
  for (const TModeRow& row : Modes)
    if (row.Mode == FMode) {
      SetCaption(FromQString(WithoutDots(LocaleStr(row.CaptionId))));
      FList->setAccessibleName(ToQString(LocaleStr(row.NameId)));
    }
}

void TViewForm::ShowList(int current, bool select) {
  FListModel->Reset();
  if (current >= 0 && current < FModules.Count()) {
    const QModelIndex index = FListModel->index(current);
    FList->selectionModel()->setCurrentIndex(
        index, select ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate);
    FList->scrollTo(index);
  }
  FFollow.start();
}

int TViewForm::CurrentIndex() const {
  const int row = FList->currentIndex().row();
  return row < FModules.Count() ? row : -1;
}

// The best match is what OK opens and what is previewed.
void TViewForm::FilterTyped(const QString& text) {
  FModules.SetFilter(std::string(Trim(FromQString(text))));
  ShowList(0, true);
}

std::vector<TListedModule> TViewForm::TakeChosen() {
  std::vector<int> rows;
  for (const QModelIndex& index : FList->selectionModel()->selectedIndexes())
    rows.push_back(index.row());
  std::ranges::sort(rows);
  if (rows.empty() && FModules.Count() > 0) rows.push_back(std::max(0, CurrentIndex()));
  std::vector<TListedModule> chosen;
  for (const int row : rows) chosen.push_back(FModules[row]);
  const bool keep = std::ranges::any_of(
      chosen, [this](const auto& module) { return module.FileName == FPreviewedFile; });
  ReleaseShownForm(keep);
  return chosen;
}

bool TViewForm::ForwardKey(QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (std::ranges::find(ListKeys, key) == std::end(ListKeys)) return false;
  QApplication::sendEvent(FList, event);
  return true;
}

bool TViewForm::eventFilter(QObject* watched, QEvent* event) {
  if (watched == FFilter && ForwardKey(event)) return true;
  return TSharedForm::eventFilter(watched, event);
}

std::string TViewForm::FormKind() const {
  return FromQString(FStatus->Kind->text());
}

std::string TViewForm::Warning() const {
  return FromQString(FStatus->Warning->text());
}

void TViewForm::SetStatus(const std::string& kind, const std::string& warning,
                          const std::string& path) {
  FStatus->Kind->setText(ToQString(kind));
  FStatus->Warning->setText(ToQString(warning));
  FStatus->Path->SetPath(ToQString(path), FManager->EllipsisFilePath);
}

void TViewForm::WndProc(TMessage& message) {
  if (message.Msg != FinishLayout) return TMessageWindow::DefaultHandler(message);
  FFormArea->horizontalScrollBar()->setValue(0);
  FFormArea->verticalScrollBar()->setValue(0);
  FFormHost->update();
}

}  // namespace wrenfold
