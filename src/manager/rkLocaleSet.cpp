// The language settings window and its question for a new language.
#include "manager/rkLocaleSet.h"

#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <memory>

#include "controls/rkIcons.h"
#include "foundation/rkAppUtils.h"
#include "locale/rkLocale.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

struct TActionRow {
  const char* Name;
  const char* ShortCut;
  int TextId;
  int Picture;
};
constexpr TActionRow ActionRows[] = {{"acExit", "Esc", sHintExit, siExit},
                                     {"acAdd", "Ctrl+A", sAddLanguage, siAdd},
                                     {"acDelete", "Ctrl+D", sDeleteLanguage, siDelete},
                                     {"acSetDir", "Ctrl+S", sSetWorkDirectory, siOpen}};

}  // namespace

const TTypeInfo& TLocaleForm::ClassInfo() {
  static const TTypeInfo info = Publish<TLocaleForm>("TLocaleForm", TForm::ClassInfo());
  return info;
}

TLocaleForm::TLocaleForm(TComponent* owner, const TLanguageSettings& settings,
                         std::string packageDirectory)
    : TForm(owner), FSettings(settings), FPackageDirectory(std::move(packageDirectory)) {
  // One that was stored by hand.
  if (!FSettings.Directory.empty() && FSettings.Directory.back() != '/') FSettings.Directory += '/';
  SetName("LocaleForm");
  SetCaption(LocaleStr(sLocalizationSetting));
  CreateActions();
  CreateControls();
  resize(420, 300);
  CenterOverWindow();
  ShowLanguages(0);
  ShowDirectory();
  SetActiveControl(FGrid);
}

void TLocaleForm::CreateActions() {
  auto* images = new TImageList(this);
  FActions = new TActionList(this);
  FActions->SetName("Actions");
  FActions->SetImages(images);
  for (const TActionRow& row : ActionRows) {
    auto* action = new TAction(this);
    action->SetName(row.Name);
    action->SetCaption(LocaleStr(row.TextId));
    action->SetHint(LocaleStr(row.TextId));
    action->SetShortCut(TextToShortCut(row.ShortCut));
    action->SetImageIndex(images->Add(SuiteIcon(row.Picture)));
    action->SetActionList(FActions);
  }
  Bind<&TLocaleForm::ExitClick>(FindAction("acExit")->OnExecute, this);
  Bind<&TLocaleForm::AddClick>(FindAction("acAdd")->OnExecute, this);
  Bind<&TLocaleForm::DeleteClick>(FindAction("acDelete")->OnExecute, this);
  Bind<&TLocaleForm::UpdateDelete>(FindAction("acDelete")->OnUpdate, this);
  Bind<&TLocaleForm::DirectoryClick>(FindAction("acSetDir")->OnExecute, this);
}

void TLocaleForm::CreateControls() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 4);
  layout->setSpacing(2);
  auto* bar = new TToolBar(this, this);
  bar->SetName("ToolBar");
  bar->SetImages(FActions->Images());
  bar->setIconSize(QSize(16, 16));
  bar->setMovable(false);
  for (const TActionRow& row : ActionRows) {
    bar->AddButton(FindAction(row.Name))->SetName("tb" + std::string(row.Name).substr(2));
    if (&row == &ActionRows[0]) bar->AddSeparator();
  }
  layout->addWidget(bar);

  FGrid = new QTableWidget(0, 2, this);
  FGrid->setObjectName("Languages");
  FGrid->setAccessibleName(windowTitle());
  FGrid->setToolTip(windowTitle());
  FGrid->setHorizontalHeaderLabels(
      {ToQString(LocaleStr(sLanguageColumn)), ToQString(LocaleStr(sLibraryColumn))});
  FGrid->horizontalHeader()->setStretchLastSection(true);
  FGrid->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  FGrid->horizontalHeader()->setHighlightSections(false);
  FGrid->setColumnWidth(0, 180);
  FGrid->verticalHeader()->hide();
  FGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
  FGrid->setSelectionBehavior(QAbstractItemView::SelectRows);
  FGrid->setSelectionMode(QAbstractItemView::SingleSelection);
  FGrid->setTabKeyNavigation(false);
  layout->addWidget(FGrid, 1);

  FDirectory = new QLabel(this);
  FDirectory->setObjectName("Directory");
  FDirectory->setTextFormat(Qt::PlainText);
  FDirectory->setContentsMargins(6, 0, 6, 0);
  FDirectory->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  layout->addWidget(FDirectory);
}

// A library that is not in the directory is shown like what cannot be chosen: the menu does not
// offer it.
void TLocaleForm::ShowLanguages(int selected) {
  const TLanguageModules modules = FSettings.ModuleList();
  FGrid->setRowCount(static_cast<int>(modules.size()));
  for (int row = 0; row < FGrid->rowCount(); ++row) {
    const auto& [language, library] = modules[static_cast<std::size_t>(row)];
    const bool isThere = FileExists(FSettings.FullName(library, FPackageDirectory));
    FGrid->setItem(row, 0, new QTableWidgetItem(ToQString(TranslateLangName(language))));
    FGrid->setItem(row, 1, new QTableWidgetItem(ToQString(library)));
    if (!isThere)
      FGrid->item(row, 1)->setForeground(palette().brush(QPalette::Disabled, QPalette::Text));
  }
  FGrid->setCurrentCell(std::min(selected, FGrid->rowCount() - 1), 0);
  FActions->UpdateActions();
}

void TLocaleForm::ShowDirectory() {
  const QString directory = ToQString(Directory());
  FDirectory->setText(
      FDirectory->fontMetrics().elidedText(directory, Qt::ElideMiddle, FDirectory->width() - 12));
  FDirectory->setToolTip(directory);
  FDirectory->setAccessibleName(directory);
}

void TLocaleForm::resizeEvent(QResizeEvent* event) {
  TForm::resizeEvent(event);
  if (FDirectory != nullptr) ShowDirectory();
}

void TLocaleForm::AddClick(TObject*) {
  TLanguageModules modules = FSettings.ModuleList();
  const std::unique_ptr<TAddLanguageForm> form(
      NewForm<TAddLanguageForm>(nullptr, modules, Directory()));
  if (form->ShowModal() != mrOk) return;
  modules.emplace_back(form->LanguageName(), form->Library());
  FSettings.SetModuleList(modules);
  ShowLanguages(FGrid->rowCount());
}

void TLocaleForm::UpdateDelete(TObject* sender) {
  static_cast<TAction*>(sender)->SetEnabled(FGrid->currentRow() >= 0);
}

void TLocaleForm::DeleteClick(TObject*) {
  const int row = FGrid->currentRow();
  if (row < 0) return;
  const std::string name = FromQString(FGrid->item(row, 0)->text());
  if (MsgQuestion(LocaleFormat(sDeleteLanguageQuestion, name)) != mbYes) return;
  TLanguageModules modules = FSettings.ModuleList();
  modules.erase(modules.begin() + row);
  FSettings.SetModuleList(modules);
  ShowLanguages(row);
}

void TLocaleForm::DirectoryClick(TObject*) {
  const QString chosen = QFileDialog::getExistingDirectory(
      this, ToQString(LocaleStr(sSelectWorkDirectory)), ToQString(Directory()));
  if (chosen.isEmpty()) return;
  FSettings.Directory = FromQString(chosen.endsWith('/') ? chosen : chosen + '/');
  ShowLanguages(FGrid->currentRow());
  ShowDirectory();
}

const TTypeInfo& TAddLanguageForm::ClassInfo() {
  static const TTypeInfo info = Publish<TAddLanguageForm>("TAddLanguageForm", TForm::ClassInfo());
  return info;
}

TAddLanguageForm::TAddLanguageForm(TComponent* owner, const TLanguageModules& known,
                                   const std::string& directory)
    : TForm(owner),
      FKnown(known),
      FDirectory(directory),
      FName(new QLineEdit(this)),
      FLibrary(new QComboBox(this)) {
  SetName("AddLanguageForm");
  SetBorderStyle(bsDialog);
  SetCaption(LocaleStr(sAddLanguage));
  FName->setObjectName("LanguageName");
  FLibrary->setObjectName("Library");
  FLibrary->addItems(QDir(ToQString(directory)).entryList({"*.dll"}, QDir::Files, QDir::Name));

  auto* layout = new QVBoxLayout(this);
  auto* rows = new QFormLayout;
  layout->addLayout(rows);
  const struct {
    int TextId;
    QWidget* Control;
  } labels[] = {{sLanguageColumn, FName}, {sLibraryColumn, FLibrary}};
  for (const auto& [textId, control] : labels) {
    control->setAccessibleName(ToQString(LocaleStr(textId)));
    control->setToolTip(control->accessibleName());
    control->setMinimumWidth(220);
    rows->addRow(ToQString(LocaleStr(textId)), control);
  }
  auto* buttons = new QHBoxLayout;
  layout->addLayout(buttons);
  buttons->addStretch(1);
  TButton* ok = AddButton("btOK", sOK, mrOk);
  TButton* cancel = AddButton("btCancel", sCancel, mrCancel);
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  SetDefaultButton(ok);
  SetCancelButton(cancel);
  SetActiveControl(FName);
  adjustSize();
  setFixedSize(size());
  CenterOverWindow();
}

TButton* TAddLanguageForm::AddButton(const char* name, int textId, TModalResult result) {
  auto* button = new TButton(this, this);
  button->SetName(name);
  button->SetCaption(LocaleStr(textId));
  button->ModalResult = result;
  return button;
}

std::string TAddLanguageForm::LanguageName() const {
  return std::string(Trim(FromQString(FName->text())));
}

std::string TAddLanguageForm::Library() const {
  return FromQString(FLibrary->currentText());
}

bool TAddLanguageForm::CloseQuery() {
  if (ModalResult() != mrOk) return TForm::CloseQuery();
  std::string refusal = RefusalOfName(FKnown, LanguageName());
  QWidget* wrong = FName;
  if (refusal.empty()) {
    wrong = FLibrary;
    refusal = FLibrary->count() == 0 ? LocaleFormat(sNoLibraryThere, FDirectory)
                                     : RefusalOfModule(FDirectory + Library());
  }
  if (refusal.empty()) return TForm::CloseQuery();
  MsgWarning(refusal, {mbOK});
  wrong->setFocus();
  return false;
}

}  // namespace wrenfold
