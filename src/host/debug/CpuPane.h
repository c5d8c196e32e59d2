// What the panes of the CPU window have in common: lines that are copied as text.
#pragma once

#include <QTreeWidget>
#include <functional>
#include <optional>
#include <string>

#include "host/debug/DebugSession.h"
#include "platform/widgets/Control.h"
#include "platform/widgets/Menus.h"

namespace wrenfold {

// What of a line is copied beside its text.
struct TCopyParts {
  bool Addresses = true;
  bool Bytes = true;
};

// A list of lines in a fixed-width font with a local menu.
class TCpuPane : public TControlOf<QTreeWidget> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // The selected lines with the notes above them, or all lines when at most one is selected; the
  // columns are aligned by blanks.
  std::string CopyText(const TCopyParts& parts) const;

  // A place that the line points to is to be shown, as code or as memory.
  std::function<void(std::uint64_t address, bool code)> OnFollow;
  // The user wants to enter a place to go to.
  std::function<void()> OnGoTo;

  bool ClaimsKey(const QKeyEvent& key) const override;

 protected:
  struct TColumns {
    QStringList Titles;
    int Address = -1, Bytes = -1;  // -1: there is none
  };
  TCpuPane(TComponent* owner, QWidget* parent, TDebugSession& session, const char* name,
           const QString& title, const QString& tip, TColumns columns);
  void keyPressEvent(QKeyEvent* event) override;

  // Where the line points to, if it does.
  virtual std::optional<std::uint64_t> PointerOf(const QTreeWidgetItem&) const { return {}; }
  // Entries of the pane's own, behind the common ones.
  virtual void AddMenuItems(TPopupMenu&) {}
  TMenuItem* AddMenuItem(const QString& caption, std::function<void()> execute);
  // Makes the columns wide enough for what is shown; they do not become narrower, so that nothing
  // moves while stepping. The toolkit's own way measures all lines at each change.
  void FitColumns();
  static void SetBold(QTreeWidgetItem* item, bool bold);
  // What cannot be done, told where errors are.
  void Refuse(const std::string& message) const;

  TDebugSession& FSession;

 private:
  void BuildMenu(TObject* sender);
  void MenuClick(TObject* sender);
  void SaveText();
  void SendToScan();
  bool Copied(const QTreeWidgetItem& item) const;

  const TColumns FColumns;
  TCopyParts FParts;
  TPopupMenu* FMenu;
  bool FFitted = false;
  std::vector<std::function<void()>> FCommands;  // of the menu, by the tags of its items
};

// As many digits as the processor's addresses have.
std::string AddressText(std::uint64_t value, const TProcessor* processor);
// "1F 00", each byte on its own.
std::string BytesText(std::string_view bytes);

}  // namespace wrenfold
