// The debugger as the window sees it: commands go in, events come out, nothing waits.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "debugger/Backend.h"

namespace wrenfold {

// What came of the program or of a command. Called by the window, in order, on its own thread.
using TDebugEvent = std::function<void()>;

// A shown line of code: the instruction and what is known of its place.
struct TCodeLine {
  TInstruction Instruction{};
  // The symbol that begins here.
  std::string Label{};
  // The source line that begins here.
  TCodePlace Place{};
};

// Owns one worker thread, which owns the backend and all of its objects. Public calls return at
// once; answers and news reach the handlers when the window calls Dispatch, which it does after
// `wake` was called (on the worker's thread).
class TDebugger {
 public:
  using TMakeBackend = std::function<std::unique_ptr<TDebugBackend>()>;

  explicit TDebugger(std::function<void()> wake, TMakeBackend make = LoadDebugBackend);
  // Ends a program that was launched, leaves one that was attached to.
  ~TDebugger();
  TDebugger(const TDebugger&) = delete;
  TDebugger& operator=(const TDebugger&) = delete;

  // Runs what has come since the last call.
  void Dispatch();
  // Runs what comes until the condition holds, for those few who must have an answer at once.
  // Answers what is left of the milliseconds, 0 when they have passed.
  int WaitUntil(const std::function<bool()>& done, int milliseconds);

  // The newest state; never null.
  const TSnapshotPtr& Snapshot() const { return FSnapshot; }

  std::function<void()> OnSnapshot;
  std::function<void(const std::string& text)> OnOutput;
  // What a command could not do, in words.
  std::function<void(const std::string& message)> OnError;

  void Launch(const TLaunch& launch);
  void Attach(std::uint64_t processId);
  void Continue();
  void Step(TStep step);
  void RunTo(const TBreakpoint& place);
  void Pause();
  // Ends the program, or leaves it when it was attached to.
  void Reset();
  void SendInput(const std::string& text);
  // All breakpoints there are; those that are new are placed, those that are gone removed.
  void SetBreakpoints(std::vector<TBreakpoint> breakpoints);
  // Whether the program stops where an exception is raised; yes at first.
  void SetExceptionStops(bool stops);
  void SelectThread(std::uint64_t id);
  void SelectFrame(std::size_t index);
  void WriteRegister(const std::string& name, std::uint64_t value);
  void WriteMemory(std::uint64_t address, const std::string& bytes);

  // Questions: the answer reaches `answer` by Dispatch, or not at all when it fails or the program
  // is gone. An expression without a value is answered by one that tells why.
  void Evaluate(const std::string& expression, std::function<void(const TVariable&)> answer);
  void ReadMemory(std::uint64_t address, std::size_t size,
                  std::function<void(const std::string&)> answer);
  // The instructions around an address, `before` of them in front of it.
  void ReadCode(std::uint64_t address, std::size_t before, std::size_t count,
                std::function<void(const std::vector<TCodeLine>&)> answer);
  void FindSymbol(const std::string& name, std::function<void(std::uint64_t)> answer);

 private:
  using TCommand = std::function<void(TDebugBackend&)>;
  void Post(TCommand command);
  void Tell(TDebugEvent event);
  void TellError(const std::string& message);

  // The worker's side.
  void Work();
  void RunCommand(const TCommand& command);
  void TakeEvents();
  void Publish();
  void PlaceBreakpoints();
  std::vector<TBreakpoint> Wanted() const;
  // Why it stopped, when it was an exception; the call with the raising line is selected then.
  std::string Raised();
  void End();

  const std::function<void()> FWake;
  const TMakeBackend FMake;

  std::mutex FMutex;  // guards what follows, up to the blank line
  std::condition_variable FChanged, FArrived;
  std::deque<TCommand> FCommands;
  std::deque<TDebugEvent> FEvents;
  bool FEnding = false;

  // The window's thread only.
  TSnapshotPtr FSnapshot = std::make_shared<TSnapshot>();

  // The worker's thread only.
  std::unique_ptr<TDebugBackend> FBackend;
  std::vector<TBreakpoint> FWanted;
  bool FExceptionStops = true;
  std::string FRaised;                               // at the stop of now
  std::vector<std::pair<TBreakpoint, int>> FPlaced;  // with the backend's numbers
  bool FLoaded = false;
  TRunState FState = TRunState::None;
  std::uint64_t FNumber = 0;
  bool FAttached = false;

  std::thread FWorker;
};

}  // namespace wrenfold
