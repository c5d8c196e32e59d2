// A place in a window of the environment where packages put panels of theirs.
#pragma once

#include <QVBoxLayout>
#include <QWidget>

#include "platform/widgets/Control.h"

namespace wrenfold {

// Lays its children out one below the other, in the order of their coming; without visible ones it
// takes no room.
class TPanelPlace : public TControlOf<QWidget> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TPanelPlace(TComponent* owner, QWidget* parent);

 protected:
  void childEvent(QChildEvent* event) override;

 private:
  QVBoxLayout* FColumn;
};

}  // namespace wrenfold
