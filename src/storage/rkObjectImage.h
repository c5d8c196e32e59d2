// The published properties of an object as values: what snapshots, clones, undo and reset rest on.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "platform/core/model/Collection.h"

namespace wrenfold {

class TObjectImage;

// Stands for a property that is left out: it matches everything and restores nothing. So is an
// object property that leads back to an object around it.
struct TNoPart {
  friend bool operator==(TNoPart, TNoPart) = default;
};

// Whether a property is left out of an image.
using TLeavesOut = std::function<bool(const TPersistent& instance, const TPropInfo& property)>;

// The value of one property; nothing for kinds that no setting has (events). An object that is a
// component is a reference; any other object is an image of its contents.
class TPropImage {
 public:
  using TValue =
      std::variant<std::monostate, TNoPart, std::int32_t, std::int64_t, double, std::string,
                   TVariant, TComponent*, std::shared_ptr<const TObjectImage>>;

  TPropImage() = default;
  TPropImage(const TPersistent& instance, const TPropInfo& property,
             const TLeavesOut& leavesOut = {});
  // A value that no object holds, such as the default of a property table.
  explicit TPropImage(std::int32_t ordinal) : FValue(ordinal) {}
  explicit TPropImage(std::string text) : FValue(std::move(text)) {}

  const TValue& Value() const { return FValue; }
  // The image of an object property; null for every other kind and for a property without object.
  const TObjectImage* Object() const;
  // Whether the property has this value now.
  bool Matches(const TPersistent& instance, const TPropInfo& property) const;
  // Gives the value back, by the setter only where it differs; a read-only property is left alone,
  // but the object that it holds is not. Raises what the setter raises.
  void Restore(TPersistent& instance, const TPropInfo& property) const;

 private:
  TValue FValue;
};

// What an object holds: every published property, stored or not, and for lists, pictures and
// collections what they contain. Images are never changed once made.
class TObjectImage {
 public:
  struct TItem {
    int ID = -1;  // the item's number in the collection that the image was taken of
    const TTypeInfo* Class = nullptr;
    std::shared_ptr<const TObjectImage> Image;
  };

  explicit TObjectImage(const TPersistent& object, const TLeavesOut& leavesOut = {});

  const TTypeInfo& Class() const { return *FClass; }
  // The value of a property of the class; null for one that the class does not have.
  const TPropImage* Find(const TPropInfo& property) const;
  const std::vector<TItem>& Items() const { return FItems; }
  // The image of the object that corresponds to an item of the imaged collection (in that very
  // collection by its number, in another one by the key or the place); null when there is none.
  const TItem* FindItem(const TCollection& collection, int index) const;

  bool Matches(const TPersistent& object) const;
  // Gives the object the contents of the image, by setters only where values differ. Items of a
  // collection are changed in place, those too many deleted, missing ones added, the order taken
  // over. Properties that the object's class lacks are left out. A setter that raises does not keep
  // the others from their values: the first error is raised at the end.
  void Restore(TPersistent& object) const;

 private:
  void RestoreItems(TCollection& collection, class TRestoreErrors& errors) const;
  bool ItemsMatch(const TCollection& collection) const;

  const TTypeInfo* FClass;
  std::vector<TPropImage> FValues;  // in the order of the class's properties
  std::string FContents;            // what a list or picture stores beside its properties
  const TCollection* FCollection = nullptr;
  std::vector<TItem> FItems;
};

// The property that tells the items of a keyed collection apart; null for other collections.
const TPropInfo* KeyProperty(const TCollection& collection);

// Copies every published property of one object into another one of the same shape.
void CopyProps(const TPersistent& source, TPersistent& target);
// A new object with the same contents; null when the class cannot be made without arguments.
std::unique_ptr<TPersistent> CloneObject(const TPersistent& source);

}  // namespace wrenfold
