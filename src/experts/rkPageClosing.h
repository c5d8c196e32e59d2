// Closes pages of the code editor one after the other.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "experts/rkUnitList.h"
#include "platform/widgets/Timer.h"

namespace wrenfold {

// Closing a page may ask the user, which lets messages be handled: meanwhile nothing else may close
// a page or change the order of the tabs. Whoever owns this may be destroyed in between.
class TPageClosing {
 public:
  // What closing needs of its owner, which outlives this.
  class ISteps {
   public:
    // Closes the page by its module; a page that is not found is left out.
    virtual void CloseByModule(const TUnitList::TItem& page) = 0;
    // Activates the page and closes it by the editor's own command.
    virtual void CloseByEditor(const TUnitList::TItem& page) = 0;
    // The environment is asking whether to save a page.
    virtual bool ConfirmWindowOpen() const = 0;
    // The last page is gone, or closing failed.
    virtual void PagesClosed() = 0;

   protected:
    ~ISteps() = default;
  };
  explicit TPageClosing(ISteps& steps);

  // Both take the pages in ascending order and close from the last one, so that the positions of
  // those that wait stay valid. The first returns when all are closed.
  void CloseAtOnce(std::vector<TUnitList::TItem> pages);
  // One every 100 ms, while no question is open.
  void CloseOneByOne(std::vector<TUnitList::TItem> pages);
  // Forgets the pages that wait.
  void Stop();
  // The order of the tabs must stay as it is.
  bool IsClosing() const { return FBusy || FTimer.Enabled(); }

 private:
  void TimerTimer(TObject* sender);
  // Runs one step; false when the owner is gone afterwards.
  bool Run(const std::function<void()>& step);

  ISteps& FSteps;
  TTimer FTimer;
  std::vector<TUnitList::TItem> FPending;
  bool FBusy = false;
  std::shared_ptr<int> FAlive = std::make_shared<int>();
};

}  // namespace wrenfold
