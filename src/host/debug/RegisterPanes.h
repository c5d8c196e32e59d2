// The panes of the CPU window that show registers and flags.
#pragma once

#include <map>
#include <memory>

#include "host/debug/CpuPane.h"
#include "host/debug/CpuValues.h"

namespace wrenfold {

// The registers, those that changed marked; a value is edited in place.
class TRegisterPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TRegisterPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  TPersistent* CurrentRegs() const { return FCurrent.get(); }
  void Update();

 protected:
  std::optional<std::uint64_t> PointerOf(const QTreeWidgetItem& item) const override;

 private:
  void Edited(QTreeWidgetItem* item);

  std::unique_ptr<TCpuValues> FCurrent;
  TRegisterValues FLast;
  std::map<std::string, std::string> FLastMore;
  bool FFilling = false;
};

// The flags; a click on one that a program may change turns it.
class TFlagsPane final : public TCpuPane {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TFlagsPane(TComponent* owner, QWidget* parent, TDebugSession& session);

  TPersistent* CurrentFlags() const { return FCurrent.get(); }
  void Update();

 private:
  void Turn(int row);

  std::unique_ptr<TCpuValues> FCurrent;
  std::uint64_t FLast = 0;
};

}  // namespace wrenfold
