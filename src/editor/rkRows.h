// What a row of the settings editor is: a control that edits one published property of one object.
#pragma once

#include <QPointer>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/core/model/StringList.h"
#include "platform/widgets/Control.h"
#include "platform/widgets/Menus.h"

namespace wrenfold {

class TPropertyRow;
struct TRowRule;

// What rows ask of the editor that shows them. Every member may be empty.
struct TRowContext {
  TComponent* Owner = nullptr;        // owns the controls
  QWidget* Parent = nullptr;          // they stand on it
  bool SpinOveruse = false;           // every integer gets a spin edit
  TPopupMenu* LinesMenu = nullptr;    // of check and select lists
  TPopupMenu* PictureMenu = nullptr;  // of pictures
  // Replaces the names of an enumeration's or a set's values by the texts that are shown: as many,
  // in the same order. The type is the property's own.
  std::function<void(TStrings& names, const TTypeInfo& type)> TranslateNames;
  // The components that the property may refer to. Without it: those that belong with the instance.
  std::function<std::vector<TComponent*>(const TPersistent&, const TPropInfo&)> Candidates;
  // The name of the command that has the hot key already; empty: none.
  std::function<std::string(TShortCut, const TPersistent&, const TPropInfo&)> HotKeyConflict;
};

// Told at the row, in words. With a remark the value is taken, with a refusal the old one stays.
enum TRowMessageKind : std::uint8_t { rmNone, rmRemark, rmRefusal };
struct TRowMessage {
  TRowMessageKind Kind = rmNone;
  std::string Text;
  friend bool operator==(const TRowMessage&, const TRowMessage&) = default;
};

// What a row is made of. The objects outlive the row.
struct TRowBinding {
  TPersistent& Instance;
  const TPropInfo& Property;
  const TRowRule& Rule;
  TRowContext Context;
};

// One kind of row. Tables of rules are ordered: the first that matches is the row's kind.
struct TRowRule {
  int Kind;            // the number of the kind
  const char* Name;    // with "Control" behind it, the name of the kind's layout section
  const char* Layout;  // default lines of that section, each ended by a line feed
  // By the declared type alone: the value may be null.
  bool (*Matches)(const TPropInfo& property, const TRowContext& context);
  std::unique_ptr<TPropertyRow> (*Make)(const TRowBinding& binding);
  // The value in words: what the control shows.
  std::string (*Text)(const TPersistent& instance, const TPropInfo& property,
                      const TRowContext& context);
};
using TRowRules = std::span<const TRowRule>;
// The kinds that every editor knows, and those of the editor with the special controls.
TRowRules BasicRowRules();
TRowRules ProRowRules();
// Null when no rule matches: the property has no row.
const TRowRule* FindRowRule(TRowRules rules, const TPropInfo& property, const TRowContext& context);
// The name of the kind's layout section.
std::string LayoutSection(const TRowRule& rule);
// Appends a comment line, then the default layout section of every kind (a name stands once).
void AddLayoutDefaults(TRowRules rules, const std::string& comment, TStrings& lines);

class TPropertyRow : public TObject {
 public:
  // Destroys the control, unless its owner has.
  ~TPropertyRow() override;

  TPersistent& Instance() const { return FBinding.Instance; }
  const TPropInfo& Property() const { return FBinding.Property; }
  const TRowRule& Rule() const { return FBinding.Rule; }
  // Layout parameters set its published properties.
  TControl& Control() const { return *FControl; }
  // Logical pixels: the height is that of the kind; no layout may make the control narrower than
  // its indicator (a check mark, the arrows) needs.
  int Height() const { return FHeight; }
  virtual int MinimumWidth() const;

  // Names the control for assistive programs.
  void SetLabel(const std::string& label);

  // Value to control. Clears Modified and the message and raises no event but OnMessage. A value
  // that cannot be shown becomes a remark; this never raises.
  void ShowValue();
  // Control to value, when the user has modified it. On a refusal the property keeps its value, the
  // control what was entered, and the answer is false. Never raises: what a setter raises is a
  // refusal with its message.
  bool TakeValue();
  // The user has changed the control since the value was shown or taken.
  bool Modified() const { return FModified; }
  const TRowMessage& Message() const { return FMessage; }

  // Keys that are the row's before they are the environment's actions' or the editor's.
  bool ClaimsKey(const QKeyEvent& key) const { return FControl->ClaimsKey(key); }
  // Whether the control has changes of its own to take back, such as typed letters.
  virtual bool CanUndo() const { return false; }
  virtual void Undo() {}

  // By the user alone; the sender of the first is the control.
  TNotifyEvent OnChange;   // the control's contents changed
  TNotifyEvent OnCommit;   // a modified row was left, confirmed by Enter, or needs no confirmation
  TNotifyEvent OnMessage;  // the message changed

 protected:
  explicit TPropertyRow(const TRowBinding& binding);
  // To be called by descendants when the control is made.
  void SetControl(TControl* control, int height = 0);
  const TRowContext& Context() const { return FBinding.Context; }

  // Value to control. May raise.
  virtual void Show() = 0;
  // Control to value. A refusal is an exception with the words for the user; then nothing may have
  // changed.
  virtual void Take() = 0;
  // Enter ends the entry. Where it is an entry itself it does not.
  virtual bool ConfirmedByEnter() const { return true; }

  // For descendants: the user changed the control; a change that is complete in itself is committed
  // at once.
  void ControlChanged();
  void ControlCompleted();
  // The control has put back what was entered and shows the property's value again.
  void ControlRestored() { FModified = false; }
  void SetMessage(TRowMessageKind kind, const std::string& text);
  // The same as handlers of a control's events.
  void Edited(TObject*) { ControlChanged(); }
  void Completed(TObject*) { ControlCompleted(); }
  void Picked(TObject*);

 private:
  class TWatcher;
  void Commit();

  TRowBinding FBinding;
  TControl* FControl = nullptr;
  QPointer<QWidget> FWidget;
  std::unique_ptr<TWatcher> FWatcher;
  int FHeight = 0;
  bool FModified = false, FShowing = false, FTakeRefused = false;
  TRowMessage FMessage;
};

// The value of a property as a row would show it, for searching, tool tips and copying: translated
// names, "3 lines", "Tahoma, 8 pt, bold". Never raises; empty for what has no text.
std::string PropertyAsShownText(const TPersistent& instance, const TPropInfo& property,
                                const TRowContext& context = {});

}  // namespace wrenfold
