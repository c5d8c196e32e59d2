// Builds, runs and debugs the open project: the commands of the Run menu.
#pragma once

#include <QProcess>
#include <memory>
#include <string>

#include "host/debug/BreakpointPanel.h"
#include "host/debug/CpuWindow.h"
#include "host/debug/DebugSession.h"
#include "host/debug/ProgramPanel.h"
#include "host/debug/StackPanel.h"
#include "host/debug/WatchPanel.h"
#include "host/documents/Documents.h"
#include "host/panels/EditWindow.h"
#include "host/shell/DocumentWindows.h"
#include "host/shell/Panels.h"

namespace wrenfold {

// How a project becomes a program. The command runs in the project's folder by the shell.
struct TBuildPlan {
  std::string Command;
  std::string Program;
  // Debian's package of the compiler, for the word that there is none.
  std::string Package;
};
// By what stands in the project's folder and by its language.
TBuildPlan PlanBuild(const TProject& project);

// A line of a compiler's output that is about a place: "unit.pas(3,5) Error: ..." or
// "unit.cpp:3:5: error: ...". Nothing for other lines.
std::optional<TNotice> CompilerMessage(const std::string& line, const std::string& folder);

class TDebugging {
 public:
  struct TParts {
    TDocuments& Documents;
    TDocumentWindows& Views;
    TEditWindow& Editor;
    TPanels& Panels;
    TSettings& Settings;
  };
  explicit TDebugging(const TParts& parts);
  ~TDebugging();

  TDebugSession& Session() { return *FSession; }
  bool Building() const { return FBuild != nullptr; }
  // There is a project to run, or a program that waits to go on.
  bool CanRun() const;

  void Build() { StartBuild(false); }
  // Builds and starts the project's program, or lets the stopped one go on.
  void Run();
  // Starts a program that was built before.
  void RunProgram(const std::string& program);
  void Step(TStep step);
  void RunToCursor();
  void Pause();
  void Reset();
  void ToggleBreakpoint();
  // Asks for condition and count of the breakpoint at the cursor's line.
  void EditBreakpoint();
  void AddWatch();
  void AskParameters();
  void AskBuildCommand();
  void LoadProgram();
  void AskAttach();

 private:
  void StartBuild(bool run);
  void BuildEnded(bool run, const TBuildPlan& plan, int exitCode);
  void TakeBuildOutput();
  void StateChanged();
  void ShowMarks();
  void GoTo(const TCodePlace& place);
  void ConnectEditor();
  void ServePanels();
  void OpenMarginMenu(TEditPage& page, int line, const QPoint& place);
  void EditBreakpointAt(const TCodePlace& place);
  TCodePlace CursorPlace();
  void ShowTip(const std::string& expression, const QPoint& place);
  // What the user has set for the open project, or without one.
  std::string Key(const char* what) const;
  void LoadUserSettings();
  void StoreBreakpoints();
  void StoreWatches();
  TBuildPlan Plan(const TProject& project) const;

  TParts F;
  std::unique_ptr<QProcess> FBuild;
  std::string FBuildFolder;
  std::string FProgram;  // what was started without a project
  std::uint64_t FShown = 0;
  bool FLoading = false;
  std::function<void(TProjectHolder&)> FProjectOpened;  // who was told of it before
  // Ends before what it tells.
  std::unique_ptr<TDebugSession> FSession;
};

}  // namespace wrenfold
