// Components of forms being designed: every class, compiled or known only from the user's source.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/Bytes.h"
#include "platform/core/Persistent.h"
#include "platform/core/ValueTypes.h"

namespace wrenfold {

class TWriter;

// One stored property: the dotted path and the value as it stands in the stream, tag first.
struct TDesignProperty {
  std::string_view Path;
  std::string_view Value;
};

// A component read from a form file that keeps every property, in order, as it was stored. Names
// and values are views into the form's bytes, which all its components hold together, or into
// bytes of their own when they were changed.
class TDesignComponent : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override {
    return FClass != nullptr ? *FClass : ClassInfo();
  }
  std::string ClassName() const override { return std::string(FClassName); }

  explicit TDesignComponent(TComponent* owner = nullptr) : TComponent(owner) {}

  // The class name that the stream gave; the record of the class, where it is known.
  std::string_view StoredClassName() const { return FClassName; }
  void SetDesignClass(const TTypeInfo* info) { FClass = info; }

  const std::vector<TDesignProperty>& Properties() const { return FProperties; }
  // The stored value of a property by path (letter case ignored), or empty.
  std::string_view FindValue(std::string_view path) const;
  // Replaces or appends a value (tag first).
  void SetValue(std::string_view path, std::string value);

  // The stored prefix: inherited, inline, child position.
  std::uint8_t Flags() const { return FFlags; }
  std::int32_t ChildPosition() const { return FChildPosition; }
  const std::vector<TDesignComponent*>& Children() const { return FChildren; }
  TDesignComponent* ParentDesign() const { return FParent; }
  TComponent* GetParentComponent() const override { return FParent; }
  // Name of the component as stored; Name() may differ where the stored one is empty or taken.
  std::string_view StoredName() const { return FStoredName; }

 private:
  friend class TDesignReader;
  std::string_view FClassName;
  std::string_view FStoredName;
  const TTypeInfo* FClass = nullptr;
  std::uint8_t FFlags = 0;
  std::int32_t FChildPosition = 0;
  std::vector<TDesignProperty> FProperties;
  TDesignComponent* FParent = nullptr;
  std::vector<TDesignComponent*> FChildren;
};

}  // namespace wrenfold
