#include "storage/rkSpcBase.h"

#include <algorithm>

namespace wrenfold {

namespace {

// An empty event stays an empty function, so that a filer sees that there is no procedure.
template <class Function, class Argument>
Function AsFunction(const TEvent<void(Argument&)>& event) {
  return event ? Function([event](Argument& argument) { event(argument); }) : Function();
}

template <class Procedure>
bool Contains(const std::vector<Procedure>& list, const Procedure& procedure) {
  return std::find(list.begin(), list.end(), procedure) != list.end();
}

// The first class of the list that the instance is of decides; without one it is ciObject.
struct TClassRule {
  TBaseClassIdent Ident;
  bool (*Matches)(const TPersistent&);
};

template <class Class>
bool IsOf(const TPersistent& instance) {
  return dynamic_cast<const Class*>(&instance) != nullptr;
}

constexpr TClassRule ClassRules[] = {
    {ciSpcObject, IsOf<TSpcObject>}, {ciSpcItem, IsOf<TSpcItem>},
    {ciItem, IsOf<TCollectionItem>}, {ciCollection, IsOf<TCollection>},
    {ciComponent, IsOf<TComponent>},
};

}  // namespace

const TTypeInfo& TCustomSpcObject::ClassInfo() {
  static const TTypeInfo info =
      Publish<TCustomSpcObject>("TCustomSpcObject", TPersistent::ClassInfo());
  return info;
}

void TCustomSpcObject::AddStorageProc(const TStorageProc& procedure) {
  FStorageProcs.push_back(procedure);
}

void TCustomSpcObject::AddBinStorageProc(const TBinStorageProc& procedure) {
  FBinStorageProcs.push_back(procedure);
}

bool TCustomSpcObject::HasStorageProc(const TStorageProc& procedure) const {
  return Contains(FStorageProcs, procedure);
}

bool TCustomSpcObject::HasBinStorageProc(const TBinStorageProc& procedure) const {
  return Contains(FBinStorageProcs, procedure);
}

void TCustomSpcObject::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  for (const TStorageProc& procedure : FStorageProcs)
    filer.DefineProperty(procedure.Name, AsFunction<TReaderProc>(procedure.ReadData),
                         AsFunction<TWriterProc>(procedure.WriteData), procedure.HasData);
  for (const TBinStorageProc& procedure : FBinStorageProcs)
    filer.DefineBinaryProperty(procedure.Name, AsFunction<TStreamProc>(procedure.ReadData),
                               AsFunction<TStreamProc>(procedure.WriteData), procedure.HasData);
}

const TTypeInfo& TSpcObject::ClassInfo() {
  static const TTypeInfo info = Publish<TSpcObject>("TSpcObject", TCustomSpcObject::ClassInfo());
  return info;
}

const TTypeInfo& TSpcItem::ClassInfo() {
  static const TTypeInfo info = Publish<TSpcItem>("TSpcItem", TCollectionItem::ClassInfo());
  return info;
}

const TTypeInfo& TSpcCollection::ClassInfo() {
  static const TTypeInfo info =
      Publish<TSpcCollection>("TSpcCollection", TOwnedCollection::ClassInfo());
  return info;
}

TSpcCollection::TSpcCollection(TPersistent* owner, const TTypeInfo& itemClass)
    : TOwnedCollection(owner, itemClass) {
  if (!itemClass.InheritsFrom(TSpcItem::ClassInfo()))
    throw ESpcMngError(itemClass.Name() + " is no class of specification items");
}

TSpcItem* TSpcCollection::Add() {
  return static_cast<TSpcItem*>(TOwnedCollection::Add());
}

TSpcItem* TSpcCollection::Insert(int index) {
  return static_cast<TSpcItem*>(TOwnedCollection::Insert(index));
}

TSpcItem* TSpcCollection::FindItemID(int id) const {
  return static_cast<TSpcItem*>(TOwnedCollection::FindItemID(id));
}

TSpcItem* TSpcCollection::Item(int index) const {
  return static_cast<TSpcItem*>(TOwnedCollection::Item(index));
}

TBaseClassIdent ClassifyInstance(const TPersistent* instance) {
  if (instance == nullptr) return ciUnknown;
  const auto* rule = std::find_if(std::begin(ClassRules), std::end(ClassRules),
                                  [&](const TClassRule& r) { return r.Matches(*instance); });
  return rule != std::end(ClassRules) ? rule->Ident : ciObject;
}

}  // namespace wrenfold
