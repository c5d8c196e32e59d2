// The panes of the CPU window that show memory and stack.
#pragma once

#include "host/debug/CpuPane.h"
#include "host/debug/MemoryUnits.h"

namespace wrenfold {

// Memory as numbers and text, sixteen bytes a line; numbers are edited in place. It is read on at
// both ends.
class TDumpPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TDumpPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  void GoTo(std::uint64_t address);
  void Update();
  const TMemoryUnit& Unit() const { return *FUnit; }
  void SetUnit(const TMemoryUnit& unit);

 protected:
  std::optional<std::uint64_t> PointerOf(const QTreeWidgetItem& item) const override;
  void AddMenuItems(TPopupMenu& menu) override;

 private:
  void Take(std::uint64_t address, const std::string& bytes);
  void ShowLines(const std::string& before);
  void ReadMore(int scrollValue);
  void Edited(QTreeWidgetItem* item, int column);
  std::string LineBytes(const QTreeWidgetItem& item) const;

  const TMemoryUnit* FUnit = &MemoryUnits().front();
  std::uint64_t FAddress = 0;
  std::size_t FSize;
  std::uint64_t FShownAddress = 0;
  std::string FBytes;  // from there on
  bool FFilling = false;
  bool FJumped = false;  // what comes next is shown from its beginning
};

// The words on the stack, from the stack pointer up.
class TStackPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TStackPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  void Update();

 protected:
  std::optional<std::uint64_t> PointerOf(const QTreeWidgetItem& item) const override;

 private:
  void Take(std::uint64_t address, std::size_t width, const std::string& bytes);
};

}  // namespace wrenfold
