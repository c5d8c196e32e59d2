#include "editor/rkRowValues.h"

#include <QStyle>
#include <QStyleOptionComboBox>

namespace wrenfold {

int ComboMinimumWidth(const QComboBox& box) {
  const int arrow = box.style()->pixelMetric(QStyle::PM_MenuButtonIndicator, nullptr, &box);
  return arrow + box.fontMetrics().horizontalAdvance("WWW") + 12;
}

std::unique_ptr<TPersistent> CopyOfObject(const TPersistent& instance, const TPropInfo& property,
                                          const TTypeInfo& otherClass) {
  const TPersistent* value = property.Access->GetObject(instance);
  const TTypeInfo& wanted = value != nullptr ? value->GetClassInfo() : *property.PropType;
  std::unique_ptr<TPersistent> copy = wanted.Make();
  if (copy == nullptr) copy = otherClass.Make();
  if (value != nullptr) copy->Assign(value);
  return copy;
}

void PutObject(TPersistent& instance, const TPropInfo& property, TPersistent& value) {
  if (property.Access->CanWrite()) property.Access->SetObject(instance, &value);
  else if (TPersistent* object = property.Access->GetObject(instance)) object->Assign(&value);
}

}  // namespace wrenfold
