// The reader of objects stored without a wrapper.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/core/system/Exceptions.h"
#include "storage/rkAdvReader.h"

namespace wrenfold {

class TFixedCollection;
class TFreeCollection;

class EFitReaderError : public Exception {
 public:
  using Exception::Exception;
};

// An item of a stored collection as it stands in the stream, from the begin of its list to the end.
struct TCarriedItem {
  std::string Key;
  std::string Bytes;
};

// Reads a root's record directly into any persistent object.
class TFitReader : public TAdvReader {
 public:
  using TAdvReader::TAdvReader;

  // Reads a signature and a record into the object, whose own class is kept. Answers the stored
  // object name.
  std::string ReadAsComponent(TPersistent& object);
  // Reads over a signature and a record.
  void SkipObject();
  // Reads over the names of a set behind its tag.
  void SkipSetBody();

  // Both read a stored collection into the items that are there, by key: no item is added, removed
  // or replaced, stored items without a counterpart are dropped, what was not stored keeps its
  // value, items and properties alike. With reorder, matched items move to their stored positions.
  // Which item has a key is settled before the first one moves.
  void ReadFixedCollection(TFixedCollection& collection, bool reorder);
  // The stored properties go into the object that the item holds.
  void ReadFreeCollection(TFreeCollection& collection, bool reorder);
  // The items of the collection value that comes next, which stays to be read.
  std::vector<TCarriedItem> PeekItems(std::string_view keyProperty);

 private:
  void ReadRecordHead();
  void ReadByKey(TCollection& collection, const std::string& property, bool reorder);
  std::string PeekItemKey(std::string_view propertyName);
};

}  // namespace wrenfold
