// What the environment tells of its forms, for a list of them.
#pragma once

#include <string>

#include "ide/rkOTAUtils.h"

namespace wrenfold {

// Told by the notifiers, inside the environment's own handling: to be answered later.
class IFormListEvents {
 public:
  // Forms were opened, closed or renamed.
  virtual void FormListChanged() = 0;
  // The designer of that root is the active one.
  virtual void FormActivated(TComponent* root) = 0;

 protected:
  ~IFormListEvents() = default;
};

// Files of the environment. Detached from its listener, it tells nothing any more.
class TIDENotifier : public TNotifierObject<IOTAIDENotifier> {
 public:
  explicit TIDENotifier(IFormListEvents& events) : FEvents(&events) {}
  void Detach() { FEvents = nullptr; }

  void FileNotification(TOTAFileNotification code, const std::string&, bool&) override {
    const bool changes =
        code == ofnFileOpened || code == ofnFileClosing || code == ofnActiveProjectChanged;
    if (changes && FEvents != nullptr) FEvents->FormListChanged();
  }
  void BeforeCompile(IOTAProject*, bool&) override {}
  void AfterCompile(bool) override {}

 private:
  IFormListEvents* FEvents;
};

// One designed form.
class TFormNotifier : public TNotifierObject<IOTAFormNotifier> {
 public:
  // The root is compared, never used.
  TFormNotifier(IFormListEvents& events, TComponent* root) : FEvents(&events), FRoot(root) {}
  void Detach() { FEvents = nullptr; }

  void Destroyed() override {
    if (FEvents != nullptr) FEvents->FormListChanged();
  }
  void FormActivated() override {
    if (FEvents != nullptr) FEvents->FormActivated(FRoot);
  }
  void ComponentRenamed(TComponent* component, const std::string&, const std::string&) override {
    // A form that was read again has another root.
    const bool root = component != nullptr && component->Owner() == nullptr;
    if (FEvents != nullptr && root) FEvents->FormListChanged();
  }
  void SelectionChanged() override {}

 private:
  IFormListEvents* FEvents;
  TComponent* FRoot;
};

}  // namespace wrenfold
