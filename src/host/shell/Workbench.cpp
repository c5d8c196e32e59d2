// Puts the parts of the main window together; keeps its title and its place.
#include "host/shell/Workbench.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include "host/shell/Dialogs.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// Raised when the panels are others than before: an old layout is then not taken.
constexpr int LayoutVersion = 2;
constexpr char GeometryKey[] = "Layout/Geometry", StateKey[] = "Layout/State";
constexpr QSize FirstSize(1180, 720);

TFileDialogs SystemDialogs(QWidget* parent) {
  return {
      [parent](const std::string& title, const std::string& folder, const std::string& filter) {
        std::vector<std::string> names;
        for (const QString& name : QFileDialog::getOpenFileNames(
                 parent, ToQString(title), ToQString(folder), ToQString(filter)))
          names.push_back(FromQString(name));
        return names;
      },
      [parent](const std::string& title, const std::string& fileName, const std::string& filter) {
        return FromQString(QFileDialog::getSaveFileName(parent, ToQString(title),
                                                        ToQString(fileName), ToQString(filter)));
      },
      [](const std::string& title, const std::vector<std::string>& files) {
        std::vector<TChoice> choices;
        for (const std::string& file : files) choices.push_back({ExtractFileName(file), file});
        const std::vector<int> chosen = ChooseFromList("ChooseFileForm", title, choices);
        return chosen.empty() ? std::string() : files[static_cast<std::size_t>(chosen[0])];
      }};
}

std::vector<std::string> DroppedFiles(const QMimeData* data) {
  std::vector<std::string> files;
  for (const QUrl& url : data->urls())
    if (url.isLocalFile()) files.push_back(FromQString(url.toLocalFile()));
  return files;
}

}  // namespace

const TTypeInfo& TWorkbench::ClassInfo() {
  static const TTypeInfo info = Publish<TWorkbench>("TAppBuilder", TForm::ClassInfo());
  return info;
}

const char* TWorkbench::VersionText() {
  return "Wrenfold " WRENFOLD_VERSION;
}

TWorkbench::TWorkbench()
    : FWindow(new QMainWindow(this)),
      FEditWindow(NewForm<TEditWindow>(this, FWindow)),
      FFindBar(new TFindBar(*FEditWindow)),
      FPanels(std::make_unique<TPanels>(*this, *FWindow)),
      FStatus(std::make_unique<TStatusFields>(*FWindow->statusBar())),
      FDesigners(std::make_unique<TDesigners>(*this)),
      FViews(std::make_unique<TDocumentWindows>(TDocumentWindows::TPlaces{
          *FEditWindow, *FDesigners, Inspector(), ProjectPanel(), Messages(), *FStatus})),
      FDocuments(std::make_unique<TDocuments>(*FViews)),
      FEventHandlers(std::make_unique<TEventHandlers>(*FDocuments, *FViews)),
      FDiskWatch(std::make_unique<TDiskWatch>(*FDocuments, *FViews)),
      FSessions(std::make_unique<TSessions>(*FDocuments, *FEditWindow)),
      FFindFiles(std::make_unique<TFindFilesForm>(nullptr, *FDocuments, Messages())),
      FDebugging(std::make_unique<TDebugging>(TDebugging::TParts{
          *FDocuments, *FViews, *FEditWindow, *FPanels, FDocuments->Settings()})),
      FCommands(std::make_unique<TCommands>(*this, *FWindow)),
      FServices(std::make_unique<TToolsServices>(TToolsServices::TEnvironment{
          *this, *FDocuments, FCommands->Menu(), FCommands->Actions(), FCommands->Images()})),
      FPackages(std::make_unique<TPackages>(*FServices, FDocuments->Notifiers(), *FViews)) {
  SetName("AppBuilder");
  FViews->Serve(*FDocuments);
  FViews->OnTitleChange = [this] { UpdateTitle(); };
  FileDialogs() = SystemDialogs(this);
  Inspector().FileDialogs = &FileDialogs();
  FEditWindow->layout()->addWidget(FFindBar);
  FFindBar->Confirm = FFindFiles->Confirm = ConfirmReplacements;
  FEditWindow->OnBuildMenu = [this](TPopupMenu& menu) { BuildEditorMenu(*this, menu); };
  Inspector().MethodsFor = [this](TFormEditor& form, const TInspectedRow& event) {
    return FEventHandlers->Fitting(form, event.Type);
  };
  Inspector().OpenMethod = [this](TFormEditor& form, const TInspectedRow& event,
                                  const std::string& method) {
    return FEventHandlers->Open(form, event.Type, method);
  };
  Messages().OnTrouble = [this] { TPanels::Open(Messages()); };
  FWindow->setWindowFlags(Qt::Widget);
  FWindow->setCentralWidget(FEditWindow);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(FWindow);
  setAcceptDrops(true);
  resize(FirstSize.boundedTo(screen()->availableSize() * 0.95));
  UpdateTitle();
}

TWorkbench::~TWorkbench() {
  BeforeDestruction();
  FPackages.reset();
  FDebugging.reset();
  FViews->Clear();
  FServices.reset();
}

void TWorkbench::ShowEditor() {
  FEditWindow->Show();
  if (FEditWindow->ActivePage() != nullptr) FEditWindow->Editor().setFocus();
}

void TWorkbench::UpdateTitle() {
  std::string name;
  if (TProjectHolder* project = Workspace().Project()) name = project->Project().Name();
  else if (const TEditPage* page = FEditWindow->ActivePage())
    name = ExtractFileName(page->Source().FileName());
  SetCaption(name.empty() ? "Wrenfold" : name + " - Wrenfold");
}

bool TWorkbench::CloseQuery() {
  if (!TForm::CloseQuery() || !FDocuments->Saving().SettleAll()) return false;
  FSessions->KeepForNextStart();
  SaveLayout();
  return true;
}

void TWorkbench::SaveLayout() {
  FDocuments->Settings().SetValue(GeometryKey, saveGeometry());
  FDocuments->Settings().SetValue(StateKey, FWindow->saveState(LayoutVersion));
}

void TWorkbench::LoadLayout() {
  restoreGeometry(FDocuments->Settings().Value(GeometryKey));
  FWindow->restoreState(FDocuments->Settings().Value(StateKey), LayoutVersion);
}

void TWorkbench::ReopenClick(TObject* sender) {
  FDocuments->OpenAny(dynamic_cast<TMenuItem&>(*sender).Hint());
}

void TWorkbench::ClosePageClick(TObject*) {
  if (TEditPage* page = FEditWindow->ActivePage()) FViews->ClosePage(*page);
}

void TWorkbench::dragEnterEvent(QDragEnterEvent* event) {
  if (!DroppedFiles(event->mimeData()).empty()) event->acceptProposedAction();
}

void TWorkbench::dropEvent(QDropEvent* event) {
  const std::vector<std::string> files = DroppedFiles(event->mimeData());
  event->acceptProposedAction();
  // The program that the files come from waits for the end of the drop: questions come later.
  QTimer::singleShot(0, this,
                     [this, files] { Guarded(this, [&] { FDocuments->OpenAll(files); }); });
}

void TWorkbench::changeEvent(QEvent* event) {
  TForm::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && FEditWindow != nullptr) FEditWindow->Recolour();
}

}  // namespace wrenfold
