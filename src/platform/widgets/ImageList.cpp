#include "platform/widgets/ImageList.h"

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

const TTypeInfo& TImageList::ClassInfo() {
  static const TTypeInfo info = Publish<TImageList>("TImageList", TComponent::ClassInfo());
  return info;
}

int TImageList::Add(const QIcon& icon) {
  FIcons.push_back(icon);
  return Count() - 1;
}

void TImageList::Replace(int index, const QIcon& icon) {
  if (index < 0 || index >= Count())
    throw EListError("Image index out of bounds (" + IntToStr(index) + ")");
  FIcons[static_cast<std::size_t>(index)] = icon;
}

QIcon TImageList::Icon(int index) const {
  return index < 0 || index >= Count() ? QIcon() : FIcons[static_cast<std::size_t>(index)];
}

}  // namespace wrenfold
