// Pictures by index, as menus, actions and tool bars refer to them.
#pragma once

#include <QIcon>
#include <vector>

#include "platform/core/model/Persistent.h"

namespace wrenfold {

class TImageList : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TImageList(TComponent* owner = nullptr) : TComponent(owner) {}

  int Count() const { return static_cast<int>(FIcons.size()); }
  // Answers the index.
  int Add(const QIcon& icon);
  void Replace(int index, const QIcon& icon);
  void Clear() { FIcons.clear(); }
  // No picture outside 0..Count-1.
  QIcon Icon(int index) const;

 private:
  std::vector<QIcon> FIcons;
};

}  // namespace wrenfold
