#include "storage/rkFitReader.h"

#include <algorithm>
#include <unordered_map>

#include "platform/core/text/SysUtils.h"
#include "storage/rkFitWriter.h"
#include "storage/rkKeyedCollections.h"

namespace wrenfold {

namespace {

// The items of a collection by their keys; of equal keys the first item counts.
template <class Item>
using TItemsByKey = std::unordered_map<std::string, Item*>;

void MoveTo(TCollection& collection, TCollectionItem& item, int index) {
  const int place = std::min(index, collection.Count() - 1);
  if (collection.Item(place) != &item) item.SetIndex(place);
}

// The key of an item is the program's: what is read into the item must not change it.
class TKeyKept {
 public:
  explicit TKeyKept(TWrapperItem& item) : FItem(item), FKey(item.AObjectID) {}
  ~TKeyKept() { FItem.AObjectID = FKey; }
  TKeyKept(const TKeyKept&) = delete;
  TKeyKept& operator=(const TKeyKept&) = delete;

 private:
  TWrapperItem& FItem;
  std::string FKey;
};

bool IsStringValue(TValueType type) {
  return type == TValueType::vaString || type == TValueType::vaLString ||
         type == TValueType::vaUTF8String || type == TValueType::vaWString;
}

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

// Names of components mean for the target what they mean for the source.
void TFitReader::CopyItem(TPersistent& target, TPersistent& source) {
  TMemoryStream stream;
  TFitWriter writer(stream);
  writer.Root = Root;
  writer.WriteProperties(source);
  writer.WriteListEnd();
  writer.FlushBuffer();
  stream.SetPosition(0);
  TFitReader reader(stream);
  reader.IgnoreErrors = IgnoreErrors;
  reader.Root = Root;
  reader.ReadProperties(target);
  reader.ReadListEnd();
  reader.ResolveReferences(dynamic_cast<TComponent*>(Root));
}

void TFitReader::ReadFixedCollection(TFixedCollection& collection, bool reorder) {
  if (collection.Count() == 0) return SkipValue();
  TCollection stored(collection.ItemClass());
  // Reading may fail and go on behind the collection, with references to these items unsettled.
  struct TRetirement {
    TFitReader& Reader;
    TCollection& Items;
    ~TRetirement() { Reader.RetireItems(Items); }
  } const retirement{*this, stored};
  ReadCollection(stored);
  ResolveReferences(dynamic_cast<TComponent*>(Root));
  TItemsByKey<TCollectionItem> items;
  for (TCollectionItem* item : collection.Items()) items.try_emplace(collection.KeyOf(*item), item);
  items.erase("");
  const TUpdate update(collection);
  for (int i = 0; i < stored.Count(); ++i) {
    const auto found = items.find(collection.KeyOf(*stored.Item(i)));
    if (found == items.end()) continue;
    CopyItem(*found->second, *stored.Item(i));
    if (reorder) MoveTo(collection, *found->second, i);
  }
}

void TFitReader::ReadFreeCollection(TFreeCollection& collection, bool reorder) {
  if (NextValue() != TValueType::vaCollection) Bytes().Fail("a collection");
  ReadValue();
  TItemsByKey<TWrapperItem> items;
  for (int i = 0; i < collection.Count(); ++i)
    items.try_emplace(collection.Item(i)->AObjectID, collection.Item(i));
  items.erase("");
  const TUpdate update(collection);
  for (int i = 0; !EndOfList(); ++i) {
    if (NextValue() != TValueType::vaList) ReadInteger();
    ReadListBegin();
    const auto found = items.find(PeekItemKey("AObjectID"));
    if (found == items.end()) {
      Bytes().SkipProperties();
      continue;
    }
    const TKeyKept kept(*found->second);
    ReadProperties(*found->second);
    ReadListEnd();
    if (reorder) MoveTo(collection, *found->second, i);
  }
  ReadListEnd();
}

std::vector<TStoredItem> TFitReader::PeekItems(std::string_view keyProperty) {
  const std::size_t start = Bytes().Position();
  if (NextValue() != TValueType::vaCollection) Bytes().Fail("a collection");
  ReadValue();
  std::vector<TStoredItem> items;
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
    if (EqualText(name, propertyName) && IsStringValue(NextValue())) {
      key = ReadString();
      break;
    }
    SkipValue();
  }
  Bytes().Seek(start);
  return key;
}

}  // namespace wrenfold
