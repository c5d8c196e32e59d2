// Actions: commands with a caption, a shortcut and a state, shown by menu items and tool buttons.
#pragma once

#include <string>
#include <vector>

#include "platform/core/model/Event.h"
#include "platform/core/model/Persistent.h"
#include "platform/widgets/ImageList.h"

namespace wrenfold {

class TAction;
class TActionList;

// Shows an action. It is told of every change, and of the action's end by a null action.
class TActionClient {
 public:
  TActionClient() = default;
  TActionClient(const TActionClient&) = delete;
  TActionClient& operator=(const TActionClient&) = delete;
  virtual ~TActionClient();

  TAction* Action() const { return FAction; }
  void SetAction(TAction* action);

 protected:
  // The action, or one of its properties, is another one now; Action() may be null.
  virtual void ActionChanged() = 0;

 private:
  friend class TAction;
  TAction* FAction = nullptr;
};

// A command. It may belong to one action list, which does not own it: it leaves the list when it is
// destroyed, and stays (without a list) when the list is.
class TAction : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TAction(TComponent* owner = nullptr) : TComponent(owner) {}
  ~TAction() override;

  const std::string& Category() const { return FCategory; }
  void SetCategory(const std::string& category) { FCategory = category; }
  // With an ampersand before the accelerator character.
  const std::string& Caption() const { return FCaption; }
  void SetCaption(const std::string& caption) { Change(FCaption, caption); }
  const std::string& Hint() const { return FHint; }
  void SetHint(const std::string& hint) { Change(FHint, hint); }
  TShortCut ShortCut() const { return FShortCut; }
  void SetShortCut(TShortCut shortCut) { Change(FShortCut, shortCut); }
  // Index in the image list of the action list; -1: none.
  std::int32_t ImageIndex() const { return FImageIndex; }
  void SetImageIndex(std::int32_t index) { Change(FImageIndex, index); }
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool enabled) { Change(FEnabled, enabled); }
  bool Visible() const { return FVisible; }
  void SetVisible(bool visible) { Change(FVisible, visible); }
  bool Checked() const { return FChecked; }
  void SetChecked(bool checked) { Change(FChecked, checked); }

  TActionList* ActionList() const { return FActionList; }
  void SetActionList(TActionList* list);

  // Calls OnExecute, then answers true, when it is set.
  virtual bool Execute();
  // Calls OnUpdate: the action finds out for itself whether it is enabled and so on.
  virtual bool Update();

  // The sender is the action.
  TNotifyEvent OnExecute;
  TNotifyEvent OnUpdate;

  // Two actions with the same picture look the same wherever they are shown.
  QIcon Icon() const;

 private:
  friend class TActionClient;
  friend class TActionList;
  template <class Value>
  void Change(Value& member, const Value& value) {
    if (member == value) return;
    member = value;
    Changed();
  }
  void Changed();

  TActionList* FActionList = nullptr;
  std::vector<TActionClient*> FClients;
  std::string FCategory, FCaption, FHint;
  TShortCut FShortCut;
  std::int32_t FImageIndex = -1;
  bool FEnabled = true, FVisible = true, FChecked = false;
};

// The commands of one form, in order. Their shortcuts work while the form that owns the list is the
// active one; those of the application's main form, and of lists that no form owns, in every form.
class TActionList : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TActionList(TComponent* owner = nullptr);
  ~TActionList() override;

  int ActionCount() const { return static_cast<int>(FActions.size()); }
  // Raises EListError outside 0..ActionCount-1.
  TAction* Actions(int index) const;
  const std::vector<TAction*>& Actions() const { return FActions; }
  // By component name, letter case ignored; null when there is none.
  TAction* FindAction(std::string_view name) const;
  void AddAction(TAction* action) { action->SetActionList(this); }
  void RemoveAction(TAction* action);

  // Not owned.
  TImageList* Images() const { return FImages; }
  void SetImages(TImageList* images);
  void Notification(TComponent* component, TOperation operation) override;

  // The first action with the shortcut that is enabled, after its update, and has something to
  // execute; null when there is none.
  TAction* FindShortCut(TShortCut shortCut) const;
  void UpdateActions();

  // All lists that exist, in the order of their making.
  static const std::vector<TActionList*>& All();

 private:
  friend class TAction;
  std::vector<TAction*> FActions;
  TImageList* FImages = nullptr;
};

}  // namespace wrenfold
