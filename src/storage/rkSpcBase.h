// The base classes of specifications: settings objects, their items and collections. They know no
// saver; what saves and loads them stands above.
#pragma once

#include <string>
#include <vector>

#include "platform/core/model/Collection.h"
#include "platform/core/model/Event.h"
#include "platform/core/stream/Reader.h"
#include "platform/core/stream/Writer.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// Every failure of specifications and their files.
class ESpcMngError : public Exception {
 public:
  using Exception::Exception;
};

// What the settings editor asks of an object that it shows as a tree node.
class INodeInfo {
 public:
  // The node's caption; empty: the editor's own.
  virtual std::string GetNodeName() const = 0;
  // The name of the property that the node stands for; empty: the editor's own.
  virtual std::string GetNodePropName() const = 0;
  // Whether the captions of its properties go through the translation table.
  virtual bool NeedsTranslate() const = 0;

 protected:
  ~INodeInfo() = default;
};

class INodeOfItemInfo {
 public:
  // Whether the editor lists the item's own objects as child nodes.
  virtual bool NeedsIterate() const = 0;

 protected:
  ~INodeOfItemInfo() = default;
};

// A value that an object stores beside its published properties. Two records are equal when they
// have the same name, handlers and flag.
struct TStorageProc {
  std::string Name;
  TEvent<void(TReader&)> ReadData;
  TEvent<void(TWriter&)> WriteData;
  bool HasData = false;  // whether there is anything to write
  friend bool operator==(const TStorageProc&, const TStorageProc&) = default;
};

// The same for a value that is raw bytes.
struct TBinStorageProc {
  std::string Name;
  TEvent<void(TStream&)> ReadData;
  TEvent<void(TStream&)> WriteData;
  bool HasData = false;
  friend bool operator==(const TBinStorageProc&, const TBinStorageProc&) = default;
};

// An object with a list of further stored values, stored in the order added.
class TCustomSpcObject : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  void AddStorageProc(const TStorageProc& procedure);
  void AddBinStorageProc(const TBinStorageProc& procedure);
  bool HasStorageProc(const TStorageProc& procedure) const;
  bool HasBinStorageProc(const TBinStorageProc& procedure) const;

  void DefineProperties(TFiler& filer) override;

 private:
  std::vector<TStorageProc> FStorageProcs;
  std::vector<TBinStorageProc> FBinStorageProcs;
};

// The base class of a specification and of the objects in it.
class TSpcObject : public TCustomSpcObject, public INodeInfo {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  std::string GetNodeName() const override { return {}; }
  std::string GetNodePropName() const override { return {}; }
  bool NeedsTranslate() const override { return true; }
};

// The base class of the items of a specification's collections.
class TSpcItem : public TCollectionItem, public INodeInfo, public INodeOfItemInfo {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TSpcItem(TCollection* collection = nullptr) : TCollectionItem(collection) {}

  std::string GetNodeName() const override { return {}; }
  std::string GetNodePropName() const override { return {}; }
  bool NeedsTranslate() const override { return true; }
  bool NeedsIterate() const override { return true; }
};

// A collection of TSpcItem; the item class must be one of them.
class TSpcCollection : public TOwnedCollection, public INodeInfo {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TSpcCollection(TPersistent* owner, const TTypeInfo& itemClass);

  TSpcItem* Add();
  TSpcItem* Insert(int index);
  TSpcItem* FindItemID(int id) const;
  // Raises EListError outside 0..Count-1.
  TSpcItem* Item(int index) const;

  std::string GetNodeName() const override { return {}; }
  std::string GetNodePropName() const override { return {}; }
  bool NeedsTranslate() const override { return true; }
};

// How the settings editor treats an object that it meets.
enum TBaseClassIdent : std::uint8_t {
  ciUnknown,
  ciSpcObject,
  ciObject,
  ciSpcItem,
  ciItem,
  ciCollection,
  ciComponent
};
// ciUnknown for null.
TBaseClassIdent ClassifyInstance(const TPersistent* instance);

}  // namespace wrenfold
