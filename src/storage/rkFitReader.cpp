#include "storage/rkFitReader.h"

#include <algorithm>
#include <unordered_map>

#include "platform/core/text/SysUtils.h"
#include "storage/rkD4Add.h"
#include "storage/rkKeyedCollections.h"

namespace wrenfold {

namespace {

void MoveTo(TCollection& collection, TCollectionItem& item, int index) {
  const int place = std::min(index, collection.Count() - 1);
  if (collection.Item(place) != &item) item.SetIndex(place);
}

// The key of an item is the program's: what is read into the item must not change it.
class TKeyKept {
 public:
  TKeyKept(TCollectionItem& item, const std::string& property)
      : FItem(item), FProperty(property), FKey(ItemKey(item, property)) {}
  ~TKeyKept() {
    if (ItemKey(FItem, FProperty) != FKey) SetStrProp(FItem, FProperty, FKey);
  }
  TKeyKept(const TKeyKept&) = delete;
  TKeyKept& operator=(const TKeyKept&) = delete;

 private:
  TCollectionItem& FItem;
  const std::string& FProperty;
  std::string FKey;
};

}  // namespace

// A resource header may stand in front of a record, as the form's recognition allows.
void TFitReader::ReadRecordHead() {
  if (Bytes().PeekByte("the signature of a stored object") == ResourceMark) ReadResHeader();
  ReadSignature();
}

std::string TFitReader::ReadAsComponent(TPersistent& object) {
  Root = NamingRoot(object);
  ReadRecordHead();
  if (Bytes().ReadFilerFlags() & ffChildPos) Bytes().ReadIntegerValue();
  Bytes().ReadShortString("a class name");
  const std::string name(Bytes().ReadShortString("an object name"));
  ReadProperties(object);
  ReadListEnd();
  ReadListEnd();
  ResolveReferences(dynamic_cast<TComponent*>(Root));
  return name;
}

void TFitReader::SkipObject() {
  ReadRecordHead();
  SkipComponent();
}

void TFitReader::SkipSetBody() {
  while (!Bytes().ReadShortString("an element of a set").empty()) {
  }
}

void TFitReader::ReadFixedCollection(TFixedCollection& collection, bool reorder) {
  ReadByKey(collection, collection.GetUpdateName(), reorder);
}

void TFitReader::ReadFreeCollection(TFreeCollection& collection, bool reorder) {
  ReadByKey(collection, "AObjectID", reorder);
}

// Of equal keys the first item counts.
void TFitReader::ReadByKey(TCollection& collection, const std::string& property, bool reorder) {
  if (NextValue() != TValueType::vaCollection) Bytes().Fail("a collection");
  ReadValue();
  std::unordered_map<std::string, TCollectionItem*> items;
  for (TCollectionItem* item : collection.Items())
    items.try_emplace(ItemKey(*item, property), item);
  items.erase("");
  const TUpdate update(collection);
  for (int i = 0; !EndOfList(); ++i) {
    if (NextValue() != TValueType::vaList) ReadInteger();
    ReadListBegin();
    const auto found = items.find(PeekItemKey(property));
    if (found == items.end()) {
      Bytes().SkipProperties();
      continue;
    }
    const TKeyKept kept(*found->second, property);
    ReadProperties(*found->second);
    ReadListEnd();
    if (reorder) MoveTo(collection, *found->second, i);
  }
  ReadListEnd();
}

std::vector<TCarriedItem> TFitReader::PeekItems(std::string_view keyProperty) {
  const std::size_t start = Bytes().Position();
  if (NextValue() != TValueType::vaCollection) Bytes().Fail("a collection");
  ReadValue();
  std::vector<TCarriedItem> items;
  while (!EndOfList()) {
    if (NextValue() != TValueType::vaList) ReadInteger();
    const std::size_t item = Bytes().Position();
    ReadListBegin();
    std::string key = PeekItemKey(keyProperty);
    Bytes().SkipProperties();
    items.push_back({std::move(key), std::string(Bytes().Since(item))});
  }
  Bytes().Seek(start);
  return items;
}

// Looks through the properties of an item for its key and goes back to the first one.
std::string TFitReader::PeekItemKey(std::string_view propertyName) {
  const std::size_t start = Bytes().Position();
  std::string key;
  while (!EndOfList()) {
    const std::string_view name = Bytes().ReadShortString("a property name");
    if (EqualText(name, propertyName) && IsTextValue(NextValue())) {
      key = ReadString();
      break;
    }
    SkipValue();
  }
  Bytes().Seek(start);
  return key;
}

}  // namespace wrenfold
