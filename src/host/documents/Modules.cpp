// Implements modules and editors over documents; windows are the host's affair.
#include "host/documents/Modules.h"

#include <algorithm>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

int TNotifierList::Add(IOTANotifier* notifier) {
  FNotifiers.emplace_back(notifier);
  return static_cast<int>(FNotifiers.size()) - 1;
}

void TNotifierList::Remove(int index) {
  if (index >= 0 && index < static_cast<int>(FNotifiers.size())) FNotifiers[index] = nullptr;
}

void TNotifierList::Call(void (IOTANotifier::*operation)()) {
  for (std::size_t i = 0; i < FNotifiers.size(); ++i)
    if (const TIntf<IOTANotifier> held = FNotifiers[i]) (held.get()->*operation)();
}

void TNotifierList::CallForm(const std::function<void(IOTAFormNotifier&)>& operation) {
  for (std::size_t i = 0; i < FNotifiers.size(); ++i)
    if (const TIntf<IOTAFormNotifier> held = Supports<IOTAFormNotifier>(FNotifiers[i].get()))
      operation(*held);
}

void TNotifierList::End() {
  Call(&IOTANotifier::Destroyed);
  FNotifiers.clear();
}

void TModuleEditor::Detach() {
  Notifiers.End();
  FModule = nullptr;
}

void TModuleEditor::Changed(bool modified) {
  if (FModule == nullptr) return;
  if (modified) {
    Notifiers.Call(&IOTANotifier::Modified);
    FModule->Notifiers.Call(&IOTANotifier::Modified);
  }
  FHost.EditorChanged(*FModule);
}

template <class... Interfaces>
IOTAModule* TEditorOf<Interfaces...>::GetModule() {
  return FModule != nullptr ? FModule->Interface() : nullptr;
}

// --- source editors

TSourceEditor::TSourceEditor(TModule& module, TModuleHost& host, const std::string& fileName)
    : TEditorOf(module, host, fileName) {}

TSourceEditor::TSourceEditor(TModule& module, TModuleHost& host, const std::string& fileName,
                             const std::string& text)
    : TEditorOf(module, host, fileName),
      FDocument(std::make_unique<TUnitDocument>(host.Documents(), fileName, text)) {
  Watch();
}

HResult TSourceEditor::QueryInterface(const TGuid& iid, void** result) {
  return QueryAmong<IOTASourceEditor, IOTAEditor, IOTATextWriter>(this, iid, result);
}

void TSourceEditor::Watch() {
  FDocument->OnChange = [this](TUnitDocument& document) { Changed(document.Modified()); };
}

TUnitDocument& TSourceEditor::Document() {
  if (FDocument == nullptr) {
    FDocument = std::make_unique<TUnitDocument>(FHost.Documents(), FileName());
    Watch();
  }
  return *FDocument;
}

TUnitDocument* TSourceEditor::TryDocument() {
  if (FModule == nullptr) return nullptr;
  try {
    return &Document();
  } catch (const Exception& e) {
    FHost.ReportError(e.Message());
    return nullptr;
  }
}

void TSourceEditor::SaveAs(const std::string& fileName) {
  Notifiers.Call(&IOTANotifier::BeforeSave);
  Document().SaveAs(fileName);
  TakeFileName(fileName);
  Notifiers.Call(&IOTANotifier::AfterSave);
}

void TSourceEditor::Detach() {
  TEditorOf::Detach();
  FDocument.reset();
}

void TSourceEditor::MarkModified() {
  if (TUnitDocument* document = TryDocument()) document->SetModified(true);
}

void TSourceEditor::Show() {
  if (FModule != nullptr) FHost.ShowSource(*this);
}

int TSourceEditor::GetEditViewCount() {
  return FModule != nullptr ? static_cast<int>(FHost.ViewsOf(*this).size()) : 0;
}

IOTAEditView* TSourceEditor::GetEditView(int index) {
  if (FModule == nullptr) return nullptr;
  const std::vector<IOTAEditView*> views = FHost.ViewsOf(*this);
  return index >= 0 && index < static_cast<int>(views.size()) ? views[index] : nullptr;
}

int TSourceEditor::GetLinesInBuffer() {
  const TUnitDocument* document = TryDocument();
  return document != nullptr ? document->LineCount() : 0;
}

std::string TSourceEditor::GetText(std::int64_t position, std::int64_t count) {
  const TUnitDocument* document = TryDocument();
  return document != nullptr ? document->TextRange(position, count) : std::string();
}

void TSourceEditor::Replace(std::int64_t position, std::int64_t count, const std::string& text) {
  TUnitDocument* document = TryDocument();
  if (document == nullptr) return;
  const std::int64_t length = document->Length();
  const std::int64_t begin = std::clamp<std::int64_t>(position, 0, length);
  const std::int64_t cut = std::clamp<std::int64_t>(count, 0, length - begin);
  document->Replace(static_cast<std::size_t>(begin), static_cast<std::size_t>(cut), text);
}

// --- form editors

void TDesigner::Detach() {
  FEditor = nullptr;
  FSelections.clear();
}

TComponent* TDesigner::GetRoot() {
  return FEditor != nullptr ? FEditor->GetRootComponent() : nullptr;
}

void TDesigner::SetSelections(const std::vector<TComponent*>& components) {
  TComponent* root = GetRoot();
  if (root == nullptr) return;
  FSelections.clear();
  for (TComponent* component : components)
    if (component == root || (component != nullptr && component->Owner() == root))
      FSelections.push_back(component);
  FEditor->Host().SelectionChanged(*FEditor);
  if (FEditor != nullptr)
    FEditor->Notifiers.CallForm([](IOTAFormNotifier& notifier) { notifier.SelectionChanged(); });
}

TForm* TDesigner::GetDesignerForm() {
  return FEditor != nullptr ? FEditor->Host().DesignerOf(*FEditor) : nullptr;
}

QWidget* TDesigner::GetRootWindow() {
  return GetRoot() != nullptr ? FEditor->Host().RootWindowOf(*FEditor) : nullptr;
}

TFormEditor::TFormEditor(TModule& module, TModuleHost& host, const std::string& fileName)
    : TEditorOf(module, host, fileName), FDesigner(new TDesigner(*this)) {}

TFormEditor::~TFormEditor() {
  FDesigner->Detach();
}

HResult TFormEditor::QueryInterface(const TGuid& iid, void** result) {
  return QueryAmong<IOTAFormEditor, IOTAEditor, INTAFormEditor>(this, iid, result);
}

TFormDocument* TFormEditor::Document() {
  if (FDocument != nullptr || FFailed || FModule == nullptr) return FDocument.get();
  try {
    auto document = std::make_unique<TFormDocument>(FileName());
    const std::string className(document->Root().StoredClassName());
    document->Root().SetDesignClass(FClasses.Record(FHost.ClassChain(*FModule, className)));
    FFields = std::make_unique<TFieldDeclarations>(*this);
    document->OnStep = [this] { FFields->Follow(FDocument->History()); };
    document->OnChange = [this] { Changed(Modified()); };
    FDocument = std::move(document);
  } catch (const Exception& e) {
    const auto* formError = dynamic_cast<const EFormFileError*>(&e);
    FTroublePlace = formError != nullptr ? formError->Place() : TSourcePlace();
    FFailed = true;
    FHost.ReportError(e.Message());
  }
  return FDocument.get();
}

void TFormEditor::Activated() {
  Notifiers.CallForm([](IOTAFormNotifier& notifier) { notifier.FormActivated(); });
}

void TFormEditor::Change(const std::vector<TFormChange>& changes) {
  Document()->Change(changes);
  TellRenamed(changes, true);
}

void TFormEditor::Undo() {
  if (FDocument != nullptr) TellRenamed(FDocument->Undo(), false);
}

void TFormEditor::Redo() {
  if (FDocument != nullptr) TellRenamed(FDocument->Redo(), true);
}

void TFormEditor::TellRenamed(const std::vector<TFormChange>& changes, bool forward) {
  for (const TFormChange& change : changes) {
    if (change.Path != NameOfComponent) continue;
    const std::string& before = forward ? *change.Before : *change.After;
    TComponent* component = FDocument->Edits().Find(forward ? *change.After : *change.Before);
    Notifiers.CallForm([&](IOTAFormNotifier& notifier) {
      notifier.ComponentRenamed(component, before, component->Name());
    });
  }
}

void TFormEditor::Forget() {
  FDesigner->SetSelections({});
  FDocument.reset();
  FFailed = false;
}

void TFormEditor::ReadAgain() {
  const std::string before = FDocument != nullptr ? FDocument->Root().Name() : std::string();
  Forget();
  TComponent* root = before.empty() ? nullptr : GetRootComponent();
  if (root == nullptr || root->Name() == before) return;
  Notifiers.CallForm(
      [&](IOTAFormNotifier& notifier) { notifier.ComponentRenamed(root, before, root->Name()); });
}

void TFormEditor::SaveAs(const std::string& fileName) {
  if (FDocument == nullptr) return;
  Notifiers.Call(&IOTANotifier::BeforeSave);
  FDocument->SaveAs(fileName);
  TakeFileName(fileName);
  Notifiers.Call(&IOTANotifier::AfterSave);
}

void TFormEditor::Detach() {
  TEditorOf::Detach();
  FDesigner->Detach();
  FDocument.reset();
}

void TFormEditor::MarkModified() {
  if (TFormDocument* document = Document()) document->SetModified(true);
}

void TFormEditor::Show() {
  if (FModule != nullptr) FHost.ShowForm(*this);
}

TComponent* TFormEditor::GetRootComponent() {
  TFormDocument* document = Document();
  return document != nullptr ? &document->Root() : nullptr;
}

TComponent* TFormEditor::FindComponent(const std::string& name) {
  TComponent* root = GetRootComponent();
  return root != nullptr ? root->FindComponent(name) : nullptr;
}

IDesigner* TFormEditor::GetFormDesigner() {
  return GetRootComponent() != nullptr ? FDesigner.get() : nullptr;
}

// --- modules

std::vector<TModuleEditor*> TModule::Editors() const {
  std::vector<TModuleEditor*> editors;
  for (const TIntf<TSourceEditor>& source : FSources) editors.push_back(source.get());
  if (FForm) editors.push_back(FForm.get());
  return editors;
}

TSourceEditor* TModule::FindSource(const std::string& fileName) const {
  for (const TIntf<TSourceEditor>& source : FSources)
    if (source->FileName() == fileName) return source.get();
  return nullptr;
}

bool TModule::Modified() const {
  const auto editors = Editors();
  return std::any_of(editors.begin(), editors.end(), [](auto* e) { return e->Modified(); });
}

bool TModule::Untitled() const {
  const TUnitDocument* document = FSources.empty() ? nullptr : FSources[0]->LoadedDocument();
  return document != nullptr && document->Untitled();
}

TSourceEditor& TModule::AddSource(const std::string& fileName) {
  return *FSources.emplace_back(new TSourceEditor(*this, FHost, fileName));
}

TSourceEditor& TModule::AddNewSource(const std::string& fileName, const std::string& text) {
  return *FSources.emplace_back(new TSourceEditor(*this, FHost, fileName, text));
}

void TModule::AddForm(const std::string& fileName) {
  FForm = new TFormEditor(*this, FHost, fileName);
}

void TModule::SaveAs(const std::string& fileName, bool onlyModified) {
  Notifiers.Call(&IOTANotifier::BeforeSave);
  const bool renamed = fileName != FFileName;
  for (TModuleEditor* editor : Editors()) {
    if (!renamed && onlyModified && !editor->Modified()) continue;
    if (!renamed) {
      editor->SaveAs(editor->FileName());
      continue;
    }
    const bool own = editor->FileName() == FFileName;
    // The form is read before its unit has another name, so that there is something to write.
    if (auto* form = dynamic_cast<TFormEditor*>(editor)) form->Document();
    editor->SaveAs(own ? fileName : ChangeFileExt(fileName, ExtractFileExt(editor->FileName())));
  }
  FFileName = fileName;
  Notifiers.Call(&IOTANotifier::AfterSave);
  FHost.EditorChanged(*this);
}

void TModule::Detach() {
  for (TModuleEditor* editor : Editors()) editor->Detach();
  Notifiers.End();
  Owners.clear();
}

template <class Interface_>
void TModuleOf<Interface_>::SetFileName(const std::string& fileName) {
  try {
    SaveAs(fileName, false);
  } catch (const Exception& e) {
    Host().ReportError(e.Message());
  }
}

template <class Interface_>
IOTAEditor* TModuleOf<Interface_>::GetModuleFileEditor(int index) {
  const std::vector<TModuleEditor*> editors = Editors();
  const bool valid = index >= 0 && index < static_cast<int>(editors.size());
  return valid ? editors[index]->Interface() : nullptr;
}

template <class Interface_>
IOTAProject* TModuleOf<Interface_>::GetOwner(int index) {
  return index >= 0 && index < static_cast<int>(Owners.size()) ? Owners[index] : nullptr;
}

template class TModuleOf<IOTAModule>;
template class TModuleOf<IOTAProject>;
template class TModuleOf<IOTAProjectGroup>;
template class TModuleOf<IOTAProjectResource>;

IOTAModule* TModuleInfo::OpenModule() {
  TModule* module = FHost != nullptr ? FHost->OpenModule(FModule.FileName) : nullptr;
  return module != nullptr ? module->Interface() : nullptr;
}

TProjectHolder::TProjectHolder(TModuleHost& host, std::unique_ptr<TProject> project)
    : TModuleOf(host, project->FileName()), FProject(std::move(project)) {
  AddSource(FileName());
  if (TTextFile* description = FProject->DescriptionText()) AddSource(description->FileName());
  ListModules();
}

TProjectHolder::~TProjectHolder() {
  for (const TIntf<TModuleInfo>& info : FInfos) info->Detach();
}

void TProjectHolder::ListModules() {
  for (const TIntf<TModuleInfo>& info : FInfos) info->Detach();
  FInfos.clear();
  FInfos.reserve(FProject->Modules().size());
  for (const TProjectModule& module : FProject->Modules())
    FInfos.emplace_back(new TModuleInfo(Host(), module));
}

void TProjectHolder::SourceChanged() {
  FProject->Source().SetText(Sources()[0]->Document().Text());
  if (TTextFile* description = FProject->DescriptionText())
    description->SetText(FindSource(description->FileName())->Document().Text());
  FProject->Refresh();
  ListModules();
}

IOTAModuleInfo* TProjectHolder::GetModule(int index) {
  return index >= 0 && index < GetModuleCount() ? FInfos[index].get() : nullptr;
}

void AddUnitFiles(TModule& module, const TDefinedSymbols& symbols) {
  const std::string& fileName = module.FileName();
  if (LanguageOfFile(fileName) == TSourceLanguage::Cpp) {
    const std::string header = FindHeader(fileName);
    if (!header.empty() && header != fileName) module.AddSource(header);
  }
  const std::string form = FindFormFile(fileName, symbols);
  if (!form.empty() && form != fileName) module.AddForm(form);
}

}  // namespace wrenfold
