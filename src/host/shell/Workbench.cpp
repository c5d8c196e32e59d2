// Builds the main window and keeps its state: title, status bar, panels, layout.
#include "host/shell/Workbench.h"

#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QVBoxLayout>

#include "host/documents/Icons.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Application.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// Raised when the panels are others than before: an old layout is then not taken.
constexpr int LayoutVersion = 1;
constexpr char GeometryKey[] = "Layout/Geometry", StateKey[] = "Layout/State";
constexpr int DiskInterval = 1500;

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

TWorkbench::TWorkbench()
    : FileDialogs(SystemDialogs(this)),
      FWorkspace(*this),
      FWindow(new QMainWindow(this)),
      FImages(new TImageList(this)),
      FActions(new TActionList(this)),
      FMenu(new TMainMenu(this)) {
  SetName("AppBuilder");
  FWindow->setWindowFlags(Qt::Widget);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(FWindow);
  setAcceptDrops(true);
  resize(QSize(1180, 720).boundedTo(screen()->availableSize() * 0.95));
  FImages->SetName("ImageList");
  FActions->SetName("ActionList");
  FActions->SetImages(FImages);
  FMenu->SetName("MainMenu");
  FMenu->SetImages(FImages);
  MakePanels();
  MakeCommands();
  MakeMenus();
  MakeToolBars();
  MakeStatusBar();
  FServices = std::make_unique<TToolsServices>(*this);
  connect(&FDiskTimer, &QTimer::timeout, this, [this] {
    if (QApplication::applicationState() == Qt::ApplicationActive)
      Guarded(this, [&] { CheckDisk(); });
  });
  FDiskTimer.start(DiskInterval);
  UpdateTitle();
  UpdateStatus();
}

TWorkbench::~TWorkbench() {
  BeforeDestruction();
  UnloadPackages();
  FDiskTimer.stop();
  FInspector->ShowForm(nullptr);
  for (TDesignerForm* designer : std::exchange(FDesigners, {})) delete designer;
  FEditWindow->OnPageChange = nullptr;
  FEditWindow->OnStatusChange = nullptr;
  while (!FEditWindow->Pages().empty()) FEditWindow->RemovePage(*FEditWindow->Pages().back());
  FServices.reset();
}

void TWorkbench::MakePanels() {
  FEditWindow = NewForm<TEditWindow>(this, FWindow);
  FFindBar = new TFindBar(*FEditWindow);
  FEditWindow->layout()->addWidget(FFindBar);
  FWindow->setCentralWidget(FEditWindow);
  FEditWindow->OnPageChange = [this] { PageChanged(); };
  FEditWindow->OnStatusChange = [this] { UpdateStatus(); };
  FEditWindow->OnCloseRequest = [this](TEditPage& page) { ClosePage(page); };
  FEditWindow->OnBuildMenu = [this](TPopupMenu& menu) { BuildEditorMenu(menu); };

  FProjectPanel = NewForm<TProjectPanel>(this);
  FInspector = NewForm<TPropertyInspector>(this);
  FMessages = NewForm<TMessagePanel>(this);
  FWindow->setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  QDockWidget* project = Dock(*FProjectPanel, Qt::LeftDockWidgetArea);
  QDockWidget* inspector = Dock(*FInspector, Qt::LeftDockWidgetArea);
  QDockWidget* messages = Dock(*FMessages, Qt::BottomDockWidgetArea);
  FWindow->resizeDocks({project}, {250}, Qt::Horizontal);
  FWindow->resizeDocks({project, inspector}, {360, 240}, Qt::Vertical);
  FWindow->resizeDocks({messages}, {110}, Qt::Vertical);
  FProjectPanel->OnOpen = [this](const std::string& fileName) { OpenFile(fileName); };
  FMessages->OnOpen = [this](const std::string& fileName, int line) { OpenFileAt(fileName, line); };
  FMessages->OnTrouble = [this] { FMessages->parentWidget()->show(); };
}

QDockWidget* TWorkbench::Dock(TForm& panel, Qt::DockWidgetArea area) {
  auto* dock = new QDockWidget(ToQString(panel.Caption()), FWindow);
  dock->setObjectName(ToQString(panel.Name() + "Dock"));
  dock->setWidget(&panel);
  FWindow->addDockWidget(area, dock);
  panel.show();
  return dock;
}

void TWorkbench::ShowPanel(TForm& panel, QWidget& first) {
  QWidget* dock = panel.parentWidget();
  // A command on a panel that the user is in closes it.
  if (dock->isVisible() && panel.isAncestorOf(QApplication::focusWidget())) {
    dock->hide();
    ViewEditor();
    return;
  }
  dock->show();
  dock->raise();
  panel.Show();
  first.setFocus();
}

void TWorkbench::ViewEditor() {
  FEditWindow->Show();
  if (HasPage()) FEditWindow->Editor().setFocus();
}

void TWorkbench::MakeStatusBar() {
  struct TField {
    QLabel*& Label;
    const char* Name;
    const char* Meaning;
    const char* Widest;
  };
  const TField fields[] = {
      {FStatus.Project, "StatusProject", "The project's units", ""},
      {FStatus.Modified, "StatusModified", "Whether the unit has changes that are not saved", ""},
      {FStatus.Caret, "StatusCaret", "Line and column of the caret", "Ln 00000, Col 000"},
      {FStatus.Insert, "StatusInsert", "Typing inserts or overwrites (Ins switches)", "Overwrite"},
      {FStatus.Encoding, "StatusEncoding", "The file's encoding", ""},
      {FStatus.LineEnds, "StatusLineEnds", "The file's line ends", "CR LF"},
  };
  QStatusBar* bar = FWindow->statusBar();
  bar->setObjectName("StatusBar");
  for (const TField& field : fields) {
    field.Label = new QLabel;
    field.Label->setObjectName(field.Name);
    field.Label->setAccessibleName(tr(field.Meaning));
    field.Label->setToolTip(tr(field.Meaning));
    field.Label->setContentsMargins(8, 0, 8, 0);
    field.Label->setMinimumWidth(
        field.Label->fontMetrics().horizontalAdvance(QString(field.Widest)) + 16);
    bar->addPermanentWidget(field.Label);
  }
}

void TWorkbench::UpdateTitle() {
  std::string name;
  if (FWorkspace.Project() != nullptr) name = FWorkspace.Project()->Project().Name();
  else if (const TEditPage* page = FEditWindow->ActivePage())
    name = ExtractFileName(page->Source().FileName());
  SetCaption(name.empty() ? "Wrenfold" : name + " - Wrenfold");
}

void TWorkbench::UpdateStatus() {
  if (FStatus.Caret == nullptr) return;
  const TEditPage* page = FEditWindow->ActivePage();
  const TUnitDocument* document = page != nullptr ? page->Source().LoadedDocument() : nullptr;
  for (QLabel* label :
       {FStatus.Caret, FStatus.Modified, FStatus.Insert, FStatus.Encoding, FStatus.LineEnds})
    label->setVisible(document != nullptr);
  if (document == nullptr) return;
  int line = 0, column = 0;
  FEditWindow->Editor().getCursorPosition(&line, &column);
  FStatus.Caret->setText(tr("Ln %1, Col %2").arg(line + 1).arg(column + 1));
  FStatus.Modified->setText(document->Modified()   ? tr("Modified")
                            : document->ReadOnly() ? tr("Read only")
                                                   : QString());
  FStatus.Modified->setVisible(!FStatus.Modified->text().isEmpty());
  FStatus.Insert->setText(FEditWindow->Editor().overwriteMode() ? tr("Overwrite") : tr("Insert"));
  FStatus.Encoding->setText(ToQString(EncodingName(document->File().Format())));
  FStatus.LineEnds->setText(ToQString(LineEndsName(document->File().LineEnds())));
}

void TWorkbench::PageChanged() {
  const TEditPage* page = FEditWindow->ActivePage();
  const TModule* module = page != nullptr ? page->Source().Module() : nullptr;
  TFormEditor* form = module != nullptr ? module->FormEditor() : nullptr;
  if (form != FInspector->Editor()) FInspector->ShowForm(form);
  UpdateTitle();
}

void TWorkbench::StepPage(int delta) {
  const std::vector<TEditPage*> pages = FEditWindow->Pages();
  if (pages.empty()) return;
  const int count = static_cast<int>(pages.size());
  const int index = (FEditWindow->Tabs().TabIndex() + delta + count) % count;
  FEditWindow->Activate(*pages[static_cast<std::size_t>(index)]);
}

TModule* TWorkbench::CurrentModule() {
  if (const auto* designer = dynamic_cast<TDesignerForm*>(Screen().ActiveForm()))
    return designer->Editor().Module();
  const TEditPage* page = FEditWindow->ActivePage();
  return page != nullptr ? page->Source().Module() : nullptr;
}

void TWorkbench::ReportError(const std::string& message) {
  FMessages->Add(TMessageKind::Error, message);
  FWindow->statusBar()->showMessage(ToQString(message), 15000);
}

bool TWorkbench::LoadPackage(const std::string& fileName) {
  try {
    auto package = std::make_unique<TPackage>(AbsoluteFileName(fileName));
    const TPackage& loaded = *FPackages.emplace_back(std::move(package));
    loaded.Register();
  } catch (const EPackageError& e) {
    ReportError(e.Message());
    return false;
  } catch (...) {
    // The package stays mapped: what it made before it failed may be in use.
    ReportError("The package " + fileName +
                " failed in \"Register\": " + ExceptionMessage(std::current_exception()) +
                ". The workbench goes on without what it did not set up.");
    return false;
  }
  FMessages->Add(TMessageKind::Information, "Package " + fileName + " is loaded.");
  FServices->NotifyFile(ofnPackageInstalled, fileName);
  return true;
}

void TWorkbench::UnloadPackages() {
  if (FServices != nullptr) FServices->EndWizards();
  while (!FPackages.empty()) FPackages.pop_back();
}

bool TWorkbench::CloseQuery() {
  if (!TForm::CloseQuery() || !SettleAll()) return false;
  StoreSession();
  SaveLayout();
  return true;
}

void TWorkbench::SaveLayout() {
  FSettings.SetValue(GeometryKey, saveGeometry());
  FSettings.SetValue(StateKey, FWindow->saveState(LayoutVersion));
}

void TWorkbench::LoadLayout() {
  restoreGeometry(FSettings.Value(GeometryKey));
  FWindow->restoreState(FSettings.Value(StateKey), LayoutVersion);
}

void TWorkbench::dragEnterEvent(QDragEnterEvent* event) {
  if (!DroppedFiles(event->mimeData()).empty()) event->acceptProposedAction();
}

void TWorkbench::dropEvent(QDropEvent* event) {
  const std::vector<std::string> files = DroppedFiles(event->mimeData());
  event->acceptProposedAction();
  // The program that the files come from waits for the end of the drop: questions come later.
  QTimer::singleShot(0, this, [this, files] {
    Guarded(this, [&] {
      for (const std::string& file : files) OpenAny(file);
    });
  });
}

void TWorkbench::changeEvent(QEvent* event) {
  TForm::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && FEditWindow != nullptr) FEditWindow->Recolour();
}

}  // namespace wrenfold
