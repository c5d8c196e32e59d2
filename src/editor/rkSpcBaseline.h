// What the values of an edited object are compared with: the stored ones and the defaults.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

#include "storage/rkObjectImage.h"

namespace wrenfold {

// Finds for every object below a root its counterpart in images of the root. Images are taken of
// contents: changes of the objects do not change them.
class TSpcBaseline {
 public:
  // The defaults of the root; null: those of fresh objects, as far as their classes can be made.
  void SetDefaults(std::shared_ptr<const TObjectImage> defaults) {
    FDefaults = std::move(defaults);
  }
  // Takes the values that the objects have now for the stored ones.
  void Store(const TPersistent& root, const TLeavesOut& leavesOut);
  // Finds the counterparts anew, after objects were added, deleted or moved.
  void Map(const TPersistent& root);
  void Clear();
  // The default of one value, whatever the defaults of the root are.
  void SetDefault(const TPersistent& instance, const TPropInfo& property, TPropImage value);

  // The root's stored image; null before the first Store.
  const TObjectImage* StoredRoot() const { return FStored.get(); }
  // Null when nothing is known: an added item was never stored; a default may be unknown.
  const TPropImage* Stored(const TPersistent& instance, const TPropInfo& property) const;
  const TPropImage* Default(const TPersistent& instance, const TPropInfo& property) const;
  // Whether the value is known not to be the default one.
  bool Differs(const TPersistent& instance, const TPropInfo& property) const;

 private:
  struct TImages {
    const TObjectImage* Stored = nullptr;
    const TObjectImage* Default = nullptr;
  };
  void MapObject(const TPersistent& object, TImages images);
  void MapItems(const TCollection& collection, TImages images);
  const TObjectImage* Fresh(const TPersistent& object);
  const TPropImage* TableDefault(const TPropInfo& property) const;

  std::shared_ptr<const TObjectImage> FDefaults, FStored;
  std::unordered_map<const TTypeInfo*, std::shared_ptr<const TObjectImage>> FFresh;
  std::unordered_map<const TPersistent*, TImages> FImages;
  std::map<std::pair<const TPersistent*, const TPropInfo*>, TPropImage> FOwnDefaults;
  mutable std::unordered_map<const TPropInfo*, TPropImage> FTableDefaults;
};

}  // namespace wrenfold
