#include "storage/rkObjectImage.h"

#include <algorithm>
#include <bit>
#include <exception>

#include "platform/core/model/Graphics.h"
#include "platform/core/model/StringList.h"
#include "storage/rkD4Add.h"
#include "storage/rkKeyedCollections.h"

namespace wrenfold {

// Keeps the first error of a restoration that goes on after it.
class TRestoreErrors {
 public:
  template <class Call>
  void Guard(Call&& call) {
    try {
      call();
    } catch (...) {
      if (!FFirst) FFirst = std::current_exception();
    }
  }
  void Raise() const {
    if (FFirst) std::rethrow_exception(FFirst);
  }

 private:
  std::exception_ptr FFirst;
};

namespace {

using TValue = TPropImage::TValue;

// Objects whose images are being taken: one that is met again inside itself is no part of itself.
thread_local std::vector<const TPersistent*> Imaging;

bool IsImaging(const TPersistent* object) {
  return std::find(Imaging.begin(), Imaging.end(), object) != Imaging.end();
}

class TImagingScope {
 public:
  explicit TImagingScope(const TPersistent& object) { Imaging.push_back(&object); }
  ~TImagingScope() { Imaging.pop_back(); }
  TImagingScope(const TImagingScope&) = delete;
  TImagingScope& operator=(const TImagingScope&) = delete;
};

bool IsOrdinal(TTypeKind kind) {
  constexpr TTypeKinds ordinals{tkInteger, tkChar, tkWChar, tkEnumeration, tkSet};
  return ordinals.Contains(kind);
}

bool IsString(TTypeKind kind) {
  constexpr TTypeKinds strings{tkString, tkLString, tkWString};
  return strings.Contains(kind);
}

TValue ObjectValue(TPersistent* object, const TLeavesOut& leavesOut) {
  if (object == nullptr) return {};
  if (IsImaging(object)) return TNoPart();
  if (auto* component = dynamic_cast<TComponent*>(object)) return component;
  return std::make_shared<const TObjectImage>(*object, leavesOut);
}

TValue Take(const TPersistent& instance, const TPropInfo& property,
            const TLeavesOut& leavesOut = {}) {
  if (leavesOut && leavesOut(instance, property)) return TNoPart();
  const TPropAccess& access = *property.Access;
  const TTypeKind kind = property.Kind();
  if (IsOrdinal(kind)) return access.GetOrd(instance);
  if (IsString(kind)) return access.GetStr(instance);
  if (kind == tkFloat) return access.GetFloat(instance);
  if (kind == tkInt64) return access.GetInt64(instance);
  if (kind == tkVariant) return access.GetVariant(instance);
  if (kind == tkClass) return ObjectValue(access.GetObject(instance), leavesOut);
  return {};
}

// Two numbers are the same value when their bytes are: an undefined number equals itself.
bool Same(const TValue& left, const TValue& right) {
  const auto* first = std::get_if<double>(&left);
  const auto* second = std::get_if<double>(&right);
  if (first != nullptr && second != nullptr)
    return std::bit_cast<std::uint64_t>(*first) == std::bit_cast<std::uint64_t>(*second);
  return left == right;
}

// Writes a value that is no object; nothing for one that the image does not hold.
struct TWriteValue {
  TPersistent& Instance;
  const TPropAccess& Access;
  void operator()(std::monostate) const {}
  void operator()(TNoPart) const {}
  void operator()(std::int32_t value) const { Access.SetOrd(Instance, value); }
  void operator()(std::int64_t value) const { Access.SetInt64(Instance, value); }
  void operator()(double value) const { Access.SetFloat(Instance, value); }
  void operator()(const std::string& value) const { Access.SetStr(Instance, value); }
  void operator()(const TVariant& value) const { Access.SetVariant(Instance, value); }
  void operator()(TComponent* value) const { Access.SetObject(Instance, value); }
  void operator()(const std::shared_ptr<const TObjectImage>&) const {}
};

// What the classes below hold beside their properties, as bytes.
std::string LinesOf(const TStrings& lines) {
  std::string bytes;
  for (int i = 0; i < lines.Count(); ++i) {
    const std::string& line = lines[i];
    const auto length = static_cast<std::uint32_t>(line.size());
    bytes.append(reinterpret_cast<const char*>(&length), sizeof length).append(line);
  }
  return bytes;
}

void SetLines(TStrings& lines, std::string_view bytes) {
  const TUpdate update(lines);
  lines.Clear();
  while (!bytes.empty()) {
    std::uint32_t length = 0;
    bytes.copy(reinterpret_cast<char*>(&length), sizeof length);
    lines.Add(std::string(bytes.substr(sizeof length, length)));
    bytes.remove_prefix(sizeof length + length);
  }
}

std::string PictureBytes(const TPicture& picture) {
  const TGraphic* graphic = picture.Graphic();
  return graphic == nullptr ? std::string() : graphic->ClassName() + '\0' + graphic->Data();
}

struct TGraphicClass {
  const TTypeInfo& (*Class)();
};
constexpr TGraphicClass GraphicClasses[] = {
    {TBitmap::ClassInfo}, {TIcon::ClassInfo}, {TImageFile::ClassInfo}};

void SetPictureBytes(TPicture& picture, std::string_view bytes) {
  const std::string_view name = bytes.substr(0, bytes.find('\0'));
  for (const TGraphicClass& known : GraphicClasses) {
    if (known.Class().Name() != name) continue;
    const std::unique_ptr<TPersistent> made = known.Class().Make();
    auto& graphic = static_cast<TGraphic&>(*made);
    graphic.SetData(std::string(bytes.substr(name.size() + 1)));
    return picture.SetGraphic(&graphic);
  }
  picture.SetGraphic(nullptr);
}

std::string ContentsOf(const TPersistent& object) {
  if (const auto* lines = dynamic_cast<const TStrings*>(&object)) return LinesOf(*lines);
  if (const auto* picture = dynamic_cast<const TPicture*>(&object)) return PictureBytes(*picture);
  if (const auto* graphic = dynamic_cast<const TGraphic*>(&object)) return graphic->Data();
  return {};
}

void SetContents(TPersistent& object, const std::string& bytes) {
  if (auto* lines = dynamic_cast<TStrings*>(&object)) SetLines(*lines, bytes);
  else if (auto* picture = dynamic_cast<TPicture*>(&object)) SetPictureBytes(*picture, bytes);
  else if (auto* graphic = dynamic_cast<TGraphic*>(&object)) graphic->SetData(bytes);
}

// The image of the object that the property held, put into the object that it holds now.
void RestoreObject(const TObjectImage& image, TPersistent& instance, const TPropInfo& property) {
  if (TPersistent* object = property.Access->GetObject(instance)) image.Restore(*object);
}

}  // namespace

const TPropInfo* KeyProperty(const TCollection& collection) {
  if (const auto* fixed = dynamic_cast<const TFixedCollection*>(&collection))
    return fixed->ItemClass().FindProperty(fixed->GetUpdateName());
  if (dynamic_cast<const TFreeCollection*>(&collection) != nullptr)
    return collection.ItemClass().FindProperty("AObjectID");
  return nullptr;
}

TPropImage::TPropImage(const TPersistent& instance, const TPropInfo& property,
                       const TLeavesOut& leavesOut)
    : FValue(Take(instance, property, leavesOut)) {}

const TObjectImage* TPropImage::Object() const {
  const auto* object = std::get_if<std::shared_ptr<const TObjectImage>>(&FValue);
  return object != nullptr ? object->get() : nullptr;
}

bool TPropImage::Matches(const TPersistent& instance, const TPropInfo& property) const {
  if (std::holds_alternative<TNoPart>(FValue)) return true;
  const TObjectImage* image = Object();
  if (image == nullptr) return Same(FValue, Take(instance, property));
  const TPersistent* object =
      property.Kind() == tkClass ? property.Access->GetObject(instance) : nullptr;
  return object != nullptr && image->Matches(*object);
}

void TPropImage::Restore(TPersistent& instance, const TPropInfo& property) const {
  if (std::holds_alternative<TNoPart>(FValue)) return;
  if (const TObjectImage* image = Object()) return RestoreObject(*image, instance, property);
  if (!property.Access->CanWrite() || Same(FValue, Take(instance, property))) return;
  if (property.Kind() == tkClass && std::holds_alternative<std::monostate>(FValue))
    return property.Access->SetObject(instance, nullptr);
  std::visit(TWriteValue{instance, *property.Access}, FValue);
}

TObjectImage::TObjectImage(const TPersistent& object, const TLeavesOut& leavesOut)
    : FClass(&object.GetClassInfo()), FContents(ContentsOf(object)) {
  const TImagingScope scope(object);
  FValues.reserve(FClass->Properties().size());
  for (const TPropInfo* property : FClass->Properties())
    FValues.emplace_back(object, *property, leavesOut);
  FCollection = dynamic_cast<const TCollection*>(&object);
  if (FCollection == nullptr) return;
  for (const TCollectionItem* item : FCollection->Items())
    FItems.push_back(
        {item->ID(), &item->GetClassInfo(), std::make_shared<TObjectImage>(*item, leavesOut)});
}

const TPropImage* TObjectImage::Find(const TPropInfo& property) const {
  const auto& properties = FClass->Properties();
  const auto found = std::find(properties.begin(), properties.end(), &property);
  if (found != properties.end())
    return &FValues[static_cast<std::size_t>(found - properties.begin())];
  return nullptr;
}

const TObjectImage::TItem* TObjectImage::FindItem(const TCollection& collection, int index) const {
  const TCollectionItem& item = *collection.Item(index);
  const TPropInfo* key = KeyProperty(collection);
  const auto corresponds = [&](const TItem& candidate) {
    if (&collection == FCollection) return candidate.ID == item.ID();
    const TPropImage* value = key != nullptr ? candidate.Image->Find(*key) : nullptr;
    return value != nullptr && value->Matches(item, *key);
  };
  const bool byPlace = &collection != FCollection && key == nullptr;
  if (byPlace)
    return index < static_cast<int>(FItems.size()) ? &FItems[static_cast<std::size_t>(index)]
                                                   : nullptr;
  // Most items stand where they stood.
  if (index < static_cast<int>(FItems.size()) &&
      corresponds(FItems[static_cast<std::size_t>(index)]))
    return &FItems[static_cast<std::size_t>(index)];
  const auto found = std::find_if(FItems.begin(), FItems.end(), corresponds);
  return found != FItems.end() ? &*found : nullptr;
}

bool TObjectImage::ItemsMatch(const TCollection& collection) const {
  if (collection.Count() != static_cast<int>(FItems.size())) return false;
  for (std::size_t i = 0; i < FItems.size(); ++i) {
    const TCollectionItem& item = *collection.Items()[i];
    if (FItems[i].Class != &item.GetClassInfo() || !FItems[i].Image->Matches(item)) return false;
  }
  return true;
}

bool TObjectImage::Matches(const TPersistent& object) const {
  if (FClass != &object.GetClassInfo() || FContents != ContentsOf(object)) return false;
  const auto& properties = FClass->Properties();
  for (std::size_t i = 0; i < FValues.size(); ++i)
    if (!FValues[i].Matches(object, *properties[i])) return false;
  const auto* collection = dynamic_cast<const TCollection*>(&object);
  return collection == nullptr || ItemsMatch(*collection);
}

// Every item that stays is put in its place in turn, so what follows it is not disturbed.
void TObjectImage::RestoreItems(TCollection& collection, TRestoreErrors& errors) const {
  const TUpdate update(collection);
  std::vector<TCollectionItem*> counterparts(FItems.size(), nullptr);
  std::vector<TCollectionItem*> superfluous;
  for (int i = 0; i < collection.Count(); ++i) {
    const TItem* wanted = FindItem(collection, i);
    TCollectionItem* item = collection.Item(i);
    TCollectionItem** place = wanted != nullptr
                                  ? &counterparts[static_cast<std::size_t>(wanted - FItems.data())]
                                  : nullptr;
    if (place != nullptr && *place == nullptr && wanted->Class == &item->GetClassInfo())
      *place = item;
    else superfluous.push_back(item);
  }
  for (TCollectionItem* item : superfluous) delete item;
  for (std::size_t i = 0; i < FItems.size(); ++i)
    errors.Guard([&] {
      TCollectionItem* item =
          counterparts[i] != nullptr ? counterparts[i] : FItems[i].Class->MakeItem(&collection);
      if (item == nullptr) return;
      item->SetIndex(static_cast<int>(i));
      FItems[i].Image->Restore(*item);
    });
}

void TObjectImage::Restore(TPersistent& object) const {
  TRestoreErrors errors;
  const bool sameClass = FClass == &object.GetClassInfo();
  if (FContents != ContentsOf(object)) errors.Guard([&] { SetContents(object, FContents); });
  const auto& properties = FClass->Properties();
  for (std::size_t i = 0; i < FValues.size(); ++i) {
    const TPropInfo* property =
        sameClass ? properties[i] : object.GetClassInfo().FindProperty(properties[i]->Name);
    if (property == nullptr || &*property->PropType != &*properties[i]->PropType) continue;
    errors.Guard([&] { FValues[i].Restore(object, *property); });
  }
  auto* collection = dynamic_cast<TCollection*>(&object);
  if (collection != nullptr && FCollection != nullptr) RestoreItems(*collection, errors);
  errors.Raise();
}

void CopyProps(const TPersistent& source, TPersistent& target) {
  TObjectImage(source).Restore(target);
}

std::unique_ptr<TPersistent> CloneObject(const TPersistent& source) {
  std::unique_ptr<TPersistent> clone = source.GetClassInfo().Make();
  if (clone != nullptr) CopyProps(source, *clone);
  return clone;
}

}  // namespace wrenfold
