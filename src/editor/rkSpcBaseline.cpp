#include "editor/rkSpcBaseline.h"

namespace wrenfold {

namespace {

const TObjectImage* Nested(const TObjectImage* image, const TPropInfo& property) {
  const TPropImage* value = image != nullptr ? image->Find(property) : nullptr;
  return value != nullptr ? value->Object() : nullptr;
}

std::unique_ptr<TPersistent> MakeFresh(const TTypeInfo& info) {
  if (info.InheritsFrom(TCollectionItem::ClassInfo()))
    return std::unique_ptr<TPersistent>(info.MakeItem(nullptr));
  return info.Make();
}

}  // namespace

void TSpcBaseline::Store(const TPersistent& root, const TLeavesOut& leavesOut) {
  FStored = std::make_shared<TObjectImage>(root, leavesOut);
  Map(root);
}

void TSpcBaseline::Map(const TPersistent& root) {
  FImages.clear();
  const TObjectImage* defaults = FDefaults ? FDefaults.get() : Fresh(root);
  MapObject(root, {FStored.get(), defaults});
}

void TSpcBaseline::SetDefault(const TPersistent& instance, const TPropInfo& property,
                              TPropImage value) {
  FOwnDefaults.insert_or_assign({&instance, &property}, std::move(value));
}

void TSpcBaseline::Clear() {
  FOwnDefaults.clear();
  FStored.reset();
  FImages.clear();
}

// A class that takes things over when it is made has no fresh object to compare with; making one
// that raises tells the same.
const TObjectImage* TSpcBaseline::Fresh(const TPersistent& object) {
  const auto [place, isNew] = FFresh.try_emplace(&object.GetClassInfo(), nullptr);
  if (!isNew) return place->second.get();
  try {
    if (const auto made = MakeFresh(object.GetClassInfo()))
      place->second = std::make_shared<TObjectImage>(*made);
  } catch (const std::exception&) {
    place->second = nullptr;
  }
  return place->second.get();
}

// With the defaults of the root given, no fresh object is made: it might take something over.
void TSpcBaseline::MapObject(const TPersistent& object, TImages images) {
  if (images.Default == nullptr && !FDefaults) images.Default = Fresh(object);
  if (!FImages.try_emplace(&object, images).second) return;
  if (const auto* collection = dynamic_cast<const TCollection*>(&object))
    MapItems(*collection, images);
  for (const TPropInfo* property : object.GetClassInfo().Properties()) {
    if (property->Kind() != tkClass) continue;
    const TPersistent* value = property->Access->GetObject(object);
    if (value == nullptr || dynamic_cast<const TComponent*>(value) != nullptr) continue;
    MapObject(*value, {Nested(images.Stored, *property), Nested(images.Default, *property)});
  }
}

void TSpcBaseline::MapItems(const TCollection& collection, TImages images) {
  const auto find = [&](const TObjectImage* image, int index) -> const TObjectImage* {
    const auto* item = image != nullptr ? image->FindItem(collection, index) : nullptr;
    return item != nullptr ? item->Image.get() : nullptr;
  };
  for (int i = 0; i < collection.Count(); ++i)
    MapObject(*collection.Item(i),
              {find(images.Stored, i), find(FDefaults ? images.Default : nullptr, i)});
}

const TPropImage* TSpcBaseline::Stored(const TPersistent& instance,
                                       const TPropInfo& property) const {
  const auto found = FImages.find(&instance);
  if (found == FImages.end() || found->second.Stored == nullptr) return nullptr;
  return found->second.Stored->Find(property);
}

const TPropImage* TSpcBaseline::TableDefault(const TPropInfo& property) const {
  if (!property.Default) return nullptr;
  return &FTableDefaults.try_emplace(&property, TPropImage(*property.Default)).first->second;
}

const TPropImage* TSpcBaseline::Default(const TPersistent& instance,
                                        const TPropInfo& property) const {
  const auto own = FOwnDefaults.find({&instance, &property});
  if (own != FOwnDefaults.end()) return &own->second;
  const auto found = FImages.find(&instance);
  const TObjectImage* image = found != FImages.end() ? found->second.Default : nullptr;
  const TPropImage* value = image != nullptr ? image->Find(property) : nullptr;
  return value != nullptr ? value : TableDefault(property);
}

bool TSpcBaseline::Differs(const TPersistent& instance, const TPropInfo& property) const {
  const TPropImage* value = Default(instance, property);
  return value != nullptr && !value->Matches(instance, property);
}

}  // namespace wrenfold
