#include "host/shell/Debugging.h"

#include <fmt/format.h>

#include <QFileInfo>
#include <QInputDialog>
#include <QMenu>
#include <QRegularExpression>
#include <QToolTip>
#include <algorithm>

#include "host/debug/ExpressionAt.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

bool Exists(const std::string& fileName) {
  return QFileInfo::exists(ToQString(fileName));
}

// Names in what a compiler says are those of the file system, or of the command line.
std::string InFolder(const std::string& folder, const std::string& name) {
  const QFileInfo file(ToQString(name));
  return file.isAbsolute() ? name : folder + "/" + name;
}

}  // namespace

TBuildPlan PlanBuild(const TProject& project) {
  const std::string& source = project.FileName();
  const std::string program = ChangeFileExt(source, "");
  const std::string& folder = project.Folder();
  if (Exists(folder + "/Makefile")) return {"make", program, "make"};
  if (project.Language() == TSourceLanguage::Pascal)
    return {"fpc -g -gw3 -o" + Quoted(program) + " " + Quoted(source), program, "fp-compiler"};
  if (Exists(folder + "/CMakeLists.txt"))
    return {"cmake -B build -DCMAKE_BUILD_TYPE=Debug && cmake --build build",
            folder + "/build/" + ExtractFileName(program), "cmake"};
  return {"c++ -g -O0 -o " + Quoted(program) + " " + Quoted(source), program, "g++"};
}

std::optional<TNotice> CompilerMessage(const std::string& line, const std::string& folder) {
  static const QRegularExpression pascal(
      R"(^(.+?)\((\d+)(?:,\d+)?\) (Fatal|Error|Warning|Hint|Note): )");
  static const QRegularExpression cpp(
      R"(^(.+?):(\d+):(?:\d+:)? (fatal error|error|warning|note): )");
  QRegularExpressionMatch match = pascal.match(ToQString(line));
  if (!match.hasMatch()) match = cpp.match(ToQString(line));
  if (!match.hasMatch()) return std::nullopt;
  const std::string kind = LowerCase(FromQString(match.captured(3)));
  TNotice message{.Kind = TMessageKind::Information, .Text = line};
  if (kind == "warning") message.Kind = TMessageKind::Warning;
  if (kind.ends_with("error") || kind == "fatal") message.Kind = TMessageKind::Error;
  message.FileName = InFolder(folder, FromQString(match.captured(1)));
  message.Line = match.captured(2).toInt();
  return message;
}

TDebugging::TDebugging(const TParts& parts)
    : F(parts), FSession(std::make_unique<TDebugSession>()) {
  FSession->OnError = [this](const std::string& message) {
    F.Views.Tell({.Kind = TMessageKind::Error, .Text = message});
  };
  FSession->Listen([this] { StateChanged(); });
  FSession->ListenToBreakpoints([this] {
    ShowMarks();
    StoreBreakpoints();
  });
  ConnectEditor();
  ServePanels();
  FProjectOpened = std::move(F.Documents.OnProjectOpened);
  F.Documents.OnProjectOpened = [this](TProjectHolder& project) {
    LoadUserSettings();
    if (FProjectOpened) FProjectOpened(project);
  };
}

TDebugging::~TDebugging() {
  F.Documents.OnProjectOpened = std::move(FProjectOpened);
  F.Editor.OnMarksWanted = nullptr;
  F.Editor.OnMarginClick = nullptr;
  F.Editor.OnMarginMenu = nullptr;
  F.Editor.OnTipWanted = nullptr;
  F.Editor.OnMarksMoved = nullptr;
  F.Panels.Get<TWatchPanel>().OnChange = nullptr;
  if (FBuild != nullptr) FBuild->disconnect();
}

void TDebugging::ConnectEditor() {
  F.Editor.OnMarksWanted = [this] { ShowMarks(); };
  F.Editor.OnMarginClick = [this](TEditPage& page, int line) {
    FSession->ToggleBreakpoint({.Place = {page.Source().FileName(), line}});
  };
  F.Editor.OnMarginMenu = [this](TEditPage& page, int line, const QPoint& place) {
    OpenMarginMenu(page, line, place);
  };
  F.Editor.OnTipWanted = [this](std::string_view line, std::size_t column, const QPoint& place) {
    ShowTip(ExpressionAt(line, column), place);
  };
  F.Editor.OnMarksMoved = [this](TEditPage& page, const std::set<int>& lines) {
    FSession->MoveBreakpoints(page.Source().FileName(), lines);
  };
}

void TDebugging::ServePanels() {
  const auto open = [this](const TCodePlace& place) { GoTo(place); };
  F.Panels.Get<TProgramPanel>().Serve(*FSession);
  F.Panels.Get<TStackPanel>().Serve(*FSession);
  F.Panels.Get<TStackPanel>().OnOpen = open;
  F.Panels.Get<TBreakpointPanel>().Serve(*FSession);
  F.Panels.Get<TBreakpointPanel>().OnOpen = open;
  F.Panels.Get<TWatchPanel>().Serve(*FSession);
  F.Panels.Get<TWatchPanel>().OnChange = [this] { StoreWatches(); };
  F.Panels.Get<TCpuWindow>().Serve(*FSession);
}

bool TDebugging::CanRun() const {
  if (FSession->Stopped()) return true;
  return !FSession->Running() && !Building() &&
         (F.Documents.Workspace().Project() != nullptr || !FProgram.empty());
}

void TDebugging::Run() {
  if (FSession->Stopped()) return FSession->Debugger().Continue();
  if (F.Documents.Workspace().Project() != nullptr) StartBuild(true);
  else if (!FProgram.empty()) RunProgram(FProgram);
}

std::string TDebugging::Key(const char* what) const {
  TProjectHolder* project = F.Documents.Workspace().Project();
  if (project == nullptr) return fmt::format("{}/None", what);
  return fmt::format("{}/{}", what,
                     FromQString(ToQString(project->Project().FileName()).replace('/', '|')));
}

void TDebugging::LoadUserSettings() {
  FLoading = true;
  FSession->SetBreakpoints(
      TBreakpoints::FromText(F.Settings.Value(Key("Breakpoints").c_str()).toStdString()));
  std::vector<std::string> watches;
  const QString text = QString::fromUtf8(F.Settings.Value(Key("Watches").c_str()));
  for (const QString& line : text.split('\n', Qt::SkipEmptyParts))
    watches.push_back(FromQString(line));
  F.Panels.Get<TWatchPanel>().SetExpressions(watches);
  FLoading = false;
}

void TDebugging::StoreBreakpoints() {
  if (FLoading || F.Documents.Workspace().Project() == nullptr) return;
  F.Settings.SetValue(Key("Breakpoints").c_str(),
                      QByteArray::fromStdString(FSession->Breakpoints().ToText()));
}

void TDebugging::StoreWatches() {
  if (FLoading || F.Documents.Workspace().Project() == nullptr) return;
  std::string text;
  for (const std::string& expression : F.Panels.Get<TWatchPanel>().Expressions())
    text += expression + "\n";
  F.Settings.SetValue(Key("Watches").c_str(), QByteArray::fromStdString(text));
}

void TDebugging::RunProgram(const std::string& program) {
  FProgram = program;
  F.Panels.Get<TProgramPanel>().Clear();
  TPanels::Open(F.Panels.Get<TProgramPanel>());
  const QString parameters = QString::fromUtf8(F.Settings.Value(Key("Parameters").c_str()));
  std::vector<std::string> arguments;
  for (const QString& argument : QProcess::splitCommand(parameters))
    arguments.push_back(FromQString(argument));
  std::string folder = ExtractFilePath(program);
  FSession->Run({program, std::move(arguments), std::move(folder)});
}

TBuildPlan TDebugging::Plan(const TProject& project) const {
  TBuildPlan plan = PlanBuild(project);
  const std::string command = F.Settings.Value(Key("BuildCommand").c_str()).toStdString();
  if (!command.empty()) plan.Command = command;
  return plan;
}

void TDebugging::StartBuild(bool run) {
  TProjectHolder* project = F.Documents.Workspace().Project();
  if (project == nullptr || Building() || !F.Documents.SaveAll()) return;
  const TBuildPlan plan = Plan(project->Project());
  FBuildFolder = project->Project().Folder();
  F.Views.Tell({.Kind = TMessageKind::Information, .Text = plan.Command});
  FBuild = std::make_unique<QProcess>();
  FBuild->setWorkingDirectory(ToQString(FBuildFolder));
  FBuild->setProcessChannelMode(QProcess::MergedChannels);
  QObject::connect(FBuild.get(), &QProcess::readyReadStandardOutput, FBuild.get(),
                   [this] { Guarded(&F.Editor, [&] { TakeBuildOutput(); }); });
  QObject::connect(FBuild.get(), &QProcess::finished, FBuild.get(), [this, run, plan](int code) {
    Guarded(&F.Editor, [&] { BuildEnded(run, plan, code); });
  });
  FBuild->start("/bin/sh", {"-c", ToQString(plan.Command)});
}

void TDebugging::TakeBuildOutput() {
  while (FBuild->canReadLine()) {
    const std::string line = FromQString(QString::fromUtf8(FBuild->readLine()).trimmed());
    if (const auto message = CompilerMessage(line, FBuildFolder)) F.Views.Tell(*message);
  }
}

void TDebugging::BuildEnded(bool run, const TBuildPlan& plan, int exitCode) {
  TakeBuildOutput();
  // The process tells of its end itself: it goes when that is over.
  FBuild.release()->deleteLater();
  constexpr int noSuchCommand = 127;
  if (exitCode == noSuchCommand)
    return F.Views.Tell({.Text = fmt::format("The compiler is not installed; Debian's package {} "
                                             "brings it.",
                                             plan.Package)});
  if (exitCode != 0)
    return F.Views.Tell({.Text = fmt::format("The build failed with exit code {}", exitCode)});
  F.Views.Status("Built " + plan.Program);
  if (run) RunProgram(plan.Program);
}

void TDebugging::Step(TStep step) {
  const bool instruction = F.Panels.Get<TCpuWindow>().HasFocus();
  if (instruction && step == TStep::Over) step = TStep::InstructionOver;
  if (instruction && step == TStep::Into) step = TStep::InstructionInto;
  FSession->Debugger().Step(step);
}

TCodePlace TDebugging::CursorPlace() {
  TEditPage* page = F.Editor.ActivePage();
  if (page == nullptr) return {};
  TCodePlace place{page->Source().FileName(), 1};
  int column = 1;
  F.Editor.CursorOf(*page, place.Line, column);
  return place;
}

void TDebugging::RunToCursor() {
  if (const TCodePlace place = CursorPlace()) FSession->Debugger().RunTo({.Place = place});
}

void TDebugging::Pause() {
  FSession->Debugger().Pause();
}

void TDebugging::Reset() {
  FSession->Debugger().Reset();
}

void TDebugging::ToggleBreakpoint() {
  if (const TCodePlace place = CursorPlace()) FSession->ToggleBreakpoint({.Place = place});
}

void TDebugging::EditBreakpoint() {
  if (const TCodePlace place = CursorPlace()) EditBreakpointAt(place);
}

void TDebugging::EditBreakpointAt(const TCodePlace& place) {
  TBreakpoint breakpoint{.Place = place};
  if (const TBreakpoint* known = FSession->Breakpoints().Find(breakpoint)) breakpoint = *known;
  if (AskBreakpoint(&F.Editor, breakpoint)) FSession->PutBreakpoint(breakpoint);
}

void TDebugging::OpenMarginMenu(TEditPage& page, int line, const QPoint& at) {
  const TBreakpoint breakpoint{.Place = {page.Source().FileName(), line}};
  const bool stands = FSession->Breakpoints().Find(breakpoint) != nullptr;
  QMenu menu(&F.Editor);
  const QAction* toggle =
      menu.addAction(stands ? QObject::tr("Remove breakpoint") : QObject::tr("Add breakpoint"));
  const QAction* edit = menu.addAction(QObject::tr("Condition and count..."));
  const QAction* chosen = menu.exec(at);
  if (chosen == toggle) FSession->ToggleBreakpoint(breakpoint);
  if (chosen == edit) EditBreakpointAt(breakpoint.Place);
}

void TDebugging::AddWatch() {
  TPanels::Open(F.Panels.Get<TWatchPanel>());
  std::string expression = F.Editor.SelectedText();
  TEditPage* page = F.Editor.ActivePage();
  if (expression.empty() && page != nullptr) {
    int line = 1, column = 1;
    F.Editor.CursorOf(*page, line, column);
    const std::string text = FromQString(F.Editor.Editor().text(line - 1));
    expression = ExpressionAt(text, static_cast<std::size_t>(column - 1));
  }
  if (!expression.empty() && expression.find('\n') == std::string::npos)
    F.Panels.Get<TWatchPanel>().Add(expression);
}

void TDebugging::ShowTip(const std::string& expression, const QPoint& place) {
  if (expression.empty() || !FSession->Stopped()) return;
  FSession->Debugger().Evaluate(expression, [this, place](const TVariable& value) {
    if (value.Failed) return;
    std::string text = value.Name + " = " + value.Value;
    constexpr std::size_t mostParts = 12;
    for (std::size_t i = 0; i < std::min(value.Parts.size(), mostParts); ++i)
      text += "\n  " + value.Parts[i].Name + " = " + value.Parts[i].Value;
    if (value.Parts.size() > mostParts) text += "\n  …";
    QToolTip::showText(place, ToQString(text), &F.Editor);
  });
}

void TDebugging::AskBuildCommand() {
  TProjectHolder* project = F.Documents.Workspace().Project();
  if (project == nullptr) return;
  bool ok = false;
  const QString after = QInputDialog::getText(
      &F.Editor, QObject::tr("Build command"),
      QObject::tr("Run by the shell in the project's folder; empty: what suits the project"),
      QLineEdit::Normal, ToQString(Plan(project->Project()).Command), &ok);
  if (!ok) return;
  // What would be chosen anyhow is not kept, so that it goes on following the project.
  const bool usual = FromQString(after.trimmed()) == PlanBuild(project->Project()).Command;
  F.Settings.SetValue(Key("BuildCommand").c_str(), usual ? QByteArray() : after.trimmed().toUtf8());
}

void TDebugging::AskParameters() {
  bool ok = false;
  const QString before = QString::fromUtf8(F.Settings.Value(Key("Parameters").c_str()));
  const QString after = QInputDialog::getText(&F.Editor, QObject::tr("Parameters"),
                                              QObject::tr("The program is started with:"),
                                              QLineEdit::Normal, before, &ok);
  if (ok) F.Settings.SetValue(Key("Parameters").c_str(), after.toUtf8());
}

void TDebugging::LoadProgram() {
  const auto files = F.Documents.Saving().Dialogs.Open("Load program", "", "All files (*)");
  if (!files.empty()) RunProgram(files[0]);
}

void TDebugging::AskAttach() {
  bool ok = false;
  const int id = QInputDialog::getInt(&F.Editor, QObject::tr("Attach to process"),
                                      QObject::tr("Number of the process:"), 1, 1, 1 << 22, 1, &ok);
  if (ok) FSession->Debugger().Attach(static_cast<std::uint64_t>(id));
}

void TDebugging::StateChanged() {
  const TSnapshot& now = FSession->Now();
  ShowMarks();
  if (now.State == TRunState::Exited)
    F.Views.Status(fmt::format("The program ended with exit code {}", now.ExitCode));
  if (!FSession->Stopped() || now.Frames.empty()) return;
  F.Views.Status(now.Reason);
  // A choice of another call, or a changed value, is no new place.
  const std::uint64_t here = now.Address();
  const TCodePlace place = now.Frames[std::min(now.FrameIndex, now.Frames.size() - 1)].Place;
  if (std::exchange(FShown, here) != here && place) GoTo(place);
}

void TDebugging::GoTo(const TCodePlace& place) {
  if (!Exists(place.File)) return;
  const bool inCpu = F.Panels.Get<TCpuWindow>().HasFocus();
  F.Documents.OpenFileAt(place.File, place.Line);
  ShowMarks();
  if (inCpu) F.Panels.Get<TCpuWindow>().Code().setFocus();
}

void TDebugging::ShowMarks() {
  const TEditPage* page = F.Editor.ActivePage();
  if (page == nullptr) return;
  const std::string& file = page->Source().FileName();
  int line = 0;
  const TSnapshot& now = FSession->Now();
  if (FSession->Stopped() && now.FrameIndex < now.Frames.size() &&
      now.Frames[now.FrameIndex].Place.File == file)
    line = now.Frames[now.FrameIndex].Place.Line;
  F.Editor.ShowMarks(FSession->Breakpoints().LinesOf(file), line);
}

}  // namespace wrenfold
