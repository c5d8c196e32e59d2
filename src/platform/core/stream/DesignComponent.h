// Components of forms being designed: of any class, compiled or known only from the user's source.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/Persistent.h"

namespace wrenfold {

class TByteWriter;

// One stored property: the dotted path and the value as it stands in the stream, tag first.
struct TDesignProperty {
  std::string_view Path;
  std::string_view Value;
};

// The bytes that the components of one form have their names and values in.
class TDesignBytes {
 public:
  explicit TDesignBytes(std::string stream) : FStream(std::move(stream)) {}
  std::string_view Stream() const { return FStream; }
  // Keeps further bytes; the view stays valid as long as this object.
  std::string_view Keep(std::string_view bytes) { return FKept.emplace_back(bytes); }

 private:
  std::string FStream;
  std::deque<std::string> FKept;
};

// Keeps every property as it was stored, in order, whatever its class: writing the component gives
// the same bytes. The root of a form owns all its components; they share the form's bytes.
class TDesignComponent : public TComponent {
 public:
  // The root class of all design classes.
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return *FClass; }
  std::string ClassName() const override { return std::string(FClassName); }

  // A component of a class that is known by its name alone, stored nowhere yet.
  explicit TDesignComponent(TComponent* owner = nullptr);
  // Takes what is inside along.
  ~TDesignComponent() override;

  // The record of the component's class: a chain of names that ends in TDesignComponent. It is
  // the root class until somebody who knows the user's source gives another; not owned.
  void SetDesignClass(const TTypeInfo& info) { FClass = &info; }
  std::string_view StoredClassName() const { return FClassName; }
  void SetStoredClassName(std::string_view name) { FClassName = FBytes->Keep(name); }

  const std::vector<TDesignProperty>& Properties() const { return FProperties; }
  // The stored value of a property by path (letter case ignored); empty when there is none.
  std::string_view FindValue(std::string_view path) const;
  // Replaces the value of a property or appends one. The bytes must be one value, tag first.
  void SetValue(std::string_view path, std::string_view value);
  // False when there is no such property.
  bool RemoveValue(std::string_view path);
  // Gives a property that is not there a place among the others, at most behind the last one.
  void InsertValue(std::size_t index, std::string_view path, std::string_view value);

  // The components inside this one, in stored order.
  const std::vector<TDesignComponent*>& Children() const { return FChildren; }
  TComponent* GetParentComponent() const override { return FParent; }
  void SetParentComponent(TComponent* parent) override;
  // Its place among the children of its parent, at most the last one.
  void SetChildIndex(std::size_t index);
  // The number that the component had in the stream that `root` was read from, the root's is 0;
  // npos when it came into the form later.
  std::size_t StoredIndex(const TDesignComponent& root) const {
    return FBytes == root.FBytes ? FStoredIndex : std::string_view::npos;
  }
  // Prefix, child position, class and name as they stand in a stream.
  void WriteHead(TByteWriter& stream) const;
  void GetChildren(const std::function<void(TComponent&)>& visit, TComponent* root) override;
  std::uint8_t FilerFlags(std::int32_t& childPosition) const override;
  void DefineProperties(TFiler& filer) override;
  bool TakeUnknownProperty(std::string_view path, std::string_view value) override;

 private:
  friend class TDesignReader;
  friend class TDesignWriter;
  friend std::string WriteDesignForm(const TDesignComponent& root);
  TDesignComponent(TComponent* owner, std::shared_ptr<TDesignBytes> bytes);

  const TTypeInfo* FClass = &ClassInfo();
  std::shared_ptr<TDesignBytes> FBytes;
  std::string_view FClassName = "TDesignComponent";
  std::vector<TDesignProperty> FProperties;
  TDesignComponent* FParent = nullptr;
  std::vector<TDesignComponent*> FChildren;
  std::int32_t FChildPosition = 0;
  std::string_view FStoredPosition;  // the same with its tag, which may be larger than needed
  std::uint8_t FPrefix = 0;          // as stored, 0 for none
  std::size_t FStoredIndex = std::string_view::npos;
};

// Reads one form from a binary component stream ("TPF0" first) that is handed over. With consumed,
// bytes may follow the form and are counted out; without, they are an error. Errors of the form
// raise EReadError naming the offset. Nesting is limited by the size of the stream alone.
std::unique_ptr<TDesignComponent> ReadDesignForm(std::string stream,
                                                 std::size_t* consumed = nullptr);
// Reads a component with all that is inside it as the last child of `parent`; `root`, of which
// `parent` is or which it is, owns them all. The caller sees to it that their names are free.
// Errors as above; the form then is as it was.
TDesignComponent* AddDesignComponent(std::string stream, TDesignComponent& root,
                                     TDesignComponent& parent);
// The stream of a form: for one that was read and not changed, the same bytes. Also of a component
// in a form, with what is inside it.
std::string WriteDesignForm(const TDesignComponent& root);

}  // namespace wrenfold
