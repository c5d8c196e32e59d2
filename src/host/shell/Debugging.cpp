#include "host/shell/Debugging.h"

#include <fmt/format.h>

#include <QFileInfo>
#include <QInputDialog>
#include <QRegularExpression>

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

std::optional<TMessage> CompilerMessage(const std::string& line, const std::string& folder) {
  static const QRegularExpression pascal(
      R"(^(.+?)\((\d+)(?:,\d+)?\) (Fatal|Error|Warning|Hint|Note): )");
  static const QRegularExpression cpp(
      R"(^(.+?):(\d+):(?:\d+:)? (fatal error|error|warning|note): )");
  QRegularExpressionMatch match = pascal.match(ToQString(line));
  if (!match.hasMatch()) match = cpp.match(ToQString(line));
  if (!match.hasMatch()) return std::nullopt;
  const std::string kind = LowerCase(FromQString(match.captured(3)));
  TMessage message{.Kind = TMessageKind::Information, .Text = line};
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
  FSession->OnBreakpoints = [this](const std::string&) { ShowMarks(); };
  FSession->Listen([this] { StateChanged(); });
  F.Editor.OnMarksWanted = [this] { ShowMarks(); };
  F.Editor.OnMarginClick = [this](TEditPage& page, int line) {
    FSession->ToggleBreakpoint(page.Source().FileName(), line);
  };
  F.Editor.OnMarksMoved = [this](TEditPage& page, const std::set<int>& lines) {
    FSession->MoveBreakpoints(page.Source().FileName(), lines);
  };
  F.Panels.Get<TProgramPanel>().Serve(*FSession);
  F.Panels.Get<TStackPanel>().Serve(*FSession);
  F.Panels.Get<TStackPanel>().OnOpen = [this](const TCodePlace& place) { GoTo(place); };
  F.Panels.Get<TCpuWindow>().Serve(*FSession);
}

TDebugging::~TDebugging() {
  F.Editor.OnMarksWanted = nullptr;
  F.Editor.OnMarginClick = nullptr;
  F.Editor.OnMarksMoved = nullptr;
  if (FBuild != nullptr) FBuild->disconnect();
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

std::string TDebugging::ParametersKey() const {
  TProjectHolder* project = F.Documents.Workspace().Project();
  if (project == nullptr) return "Parameters/None";
  return "Parameters/" + FromQString(ToQString(project->Project().FileName()).replace('/', '|'));
}

void TDebugging::RunProgram(const std::string& program) {
  FProgram = program;
  F.Panels.Get<TProgramPanel>().Clear();
  TPanels::Open(F.Panels.Get<TProgramPanel>());
  const QString parameters = QString::fromUtf8(F.Settings.Value(ParametersKey().c_str()));
  std::vector<std::string> arguments;
  for (const QString& argument : QProcess::splitCommand(parameters))
    arguments.push_back(FromQString(argument));
  std::string folder = ExtractFilePath(program);
  FSession->Run({program, std::move(arguments), std::move(folder)});
}

void TDebugging::StartBuild(bool run) {
  TProjectHolder* project = F.Documents.Workspace().Project();
  if (project == nullptr || Building() || !F.Documents.SaveAll()) return;
  const TBuildPlan plan = PlanBuild(project->Project());
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

void TDebugging::RunToCursor() {
  TEditPage* page = F.Editor.ActivePage();
  if (page == nullptr) return;
  int line = 1, column = 1;
  F.Editor.CursorOf(*page, line, column);
  FSession->Debugger().RunTo({.Place = {page->Source().FileName(), line}});
}

void TDebugging::Pause() {
  FSession->Debugger().Pause();
}

void TDebugging::Reset() {
  FSession->Debugger().Reset();
}

void TDebugging::ToggleBreakpoint() {
  TEditPage* page = F.Editor.ActivePage();
  if (page == nullptr) return;
  int line = 1, column = 1;
  F.Editor.CursorOf(*page, line, column);
  FSession->ToggleBreakpoint(page->Source().FileName(), line);
}

void TDebugging::AskParameters() {
  bool ok = false;
  const QString before = QString::fromUtf8(F.Settings.Value(ParametersKey().c_str()));
  const QString after = QInputDialog::getText(&F.Editor, QObject::tr("Parameters"),
                                              QObject::tr("The program is started with:"),
                                              QLineEdit::Normal, before, &ok);
  if (ok) F.Settings.SetValue(ParametersKey().c_str(), after.toUtf8());
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
  if (std::exchange(FShown, here) != here && now.Frames[0].Place) GoTo(now.Frames[0].Place);
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
  if (FSession->Stopped() && !now.Frames.empty() && now.Frames[0].Place.File == file)
    line = now.Frames[0].Place.Line;
  F.Editor.ShowMarks(FSession->Breakpoints(file), line);
}

}  // namespace wrenfold
