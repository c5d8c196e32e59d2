// The pane of the CPU window that shows code.
#pragma once

#include <map>
#include <vector>

#include "host/debug/CpuPane.h"
#include "host/debug/JumpLanes.h"

namespace wrenfold {

// The code around the place where the program stopped. What was read stays while the program stays
// in it, so that stepping does not move the lines; reading goes on at both ends.
class TDisassemblyPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TDisassemblyPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  // The address of the selected line, 0 without one. Setting it inside an instruction selects the
  // next one. What is shown does not move; behind its end it is read on, which may take a moment:
  // a package that goes line by line waits for it here, a quarter of a second in all on its way.
  std::int64_t SelectedAddress() const;
  void SetSelectedAddress(std::int64_t address);
  // The line's parts; the text of the instruction begins with its address.
  std::string SelectedLabel() const;
  std::string SelectedSource() const;
  std::string SelectedDisassembly() const;

  // Shows the code at the address, whatever is shown now.
  void GoTo(std::uint64_t address);
  void Update();
  // Shows breakpoints and the program's place as they are now.
  void Mark();

 protected:
  void paintEvent(QPaintEvent* event) override;
  std::optional<std::uint64_t> PointerOf(const QTreeWidgetItem& item) const override;
  void AddMenuItems(TPopupMenu& menu) override;

 private:
  std::vector<TJump> VisibleJumps() const;
  void Take(std::uint64_t address, const std::vector<TCodeLine>& lines);
  void Append(const std::vector<TCodeLine>& lines);
  void Prepend(std::vector<TCodeLine> lines);
  void ReadOn();
  void ReadBack();
  void WaitForMore();
  // The items of a line, the instruction's last.
  QList<QTreeWidgetItem*> MakeItems(const TCodeLine& line);
  void MarkLine(std::size_t index);
  const TCodeLine* SelectedLine() const;
  int IndexOf(std::uint64_t address) const;
  void ScrollTo(int index);
  void ReadMore(int scrollValue);
  std::string SourceText(const TCodePlace& place);

  std::vector<TCodeLine> FLines;
  std::vector<QTreeWidgetItem*> FItems;  // of the instructions, one for each line
  bool FReading = false;
  static constexpr int MaxPatience = 250;
  int FPatience = MaxPatience;  // milliseconds that a package may still wait for lines
  std::map<std::string, std::vector<std::string>> FSources;
};

}  // namespace wrenfold
