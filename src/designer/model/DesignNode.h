// A component of a composed form: what is stored of it in the form and in what the form inherits.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "designer/model/ClassTable.h"
#include "designer/model/Geometry.h"
#include "designer/model/StoredValue.h"

namespace wrenfold {

class TComposedForm;

class TDesignNode {
 public:
  // As stored nearest to the form itself.
  const std::string& Name() const { return FName; }
  std::string_view ClassName() const { return Layers.back()->StoredClassName(); }

  // The stored value of a property (letter case ignored), that of the form before that of the forms
  // it inherits; empty when none is stored.
  std::string_view Value(std::string_view path) const;
  bool Has(std::string_view path) const { return !Value(path).empty(); }
  std::int64_t Integer(std::string_view path, std::int64_t otherwise) const {
    return StoredInteger(Value(path), otherwise);
  }
  // Cut to what is a bound of a control.
  int Bound(std::string_view path, std::int64_t otherwise) const {
    return CutToBound(Integer(path, otherwise));
  }
  bool Boolean(std::string_view path, bool otherwise) const {
    return StoredBoolean(Value(path), otherwise);
  }
  // Empty when none is stored.
  std::string_view Identifier(std::string_view path) const { return StoredIdentifier(Value(path)); }
  bool Is(std::string_view path, std::string_view identifier) const;
  std::string Text(std::string_view path) const;
  std::vector<std::string> Strings(std::string_view path) const;

  // The same of the component that the reference in the property `path` leads to: null when there
  // is no such component in the form.
  const TDesignNode* Linked(std::string_view path) const;
  // A caption, hint, image index or state: the component's own, else that of its action.
  std::string_view OwnOrAction(std::string_view path) const;

  bool Visual() const { return Class.Row->Look != TLook::Icon && Class.Row->Look != TLook::Hidden; }
  TLook Look() const { return Class.Row->Look; }
  // Whether it is a frame in the form, with names of its own.
  bool IsInline = false;
  bool IsRoot() const { return Parent == nullptr; }

  // The form that the node is in.
  const TComposedForm* Form = nullptr;
  TDesignNode* Parent = nullptr;
  // The frame that the node's name belongs to; null for the form itself.
  TDesignNode* Scope = nullptr;
  // The page that was turned up by hand; null: the form says which.
  TDesignNode* TurnedPage = nullptr;
  // From the back to the front.
  std::vector<TDesignNode*> Children;
  // The component in each file, that of the furthest ancestor first, that of the form itself last;
  // never empty. They belong to the form and to the source of forms.
  std::vector<const TDesignComponent*> Layers;
  // The component in the form itself; null for what is only inherited.
  const TDesignComponent* Own = nullptr;
  TResolvedClass Class;

  // Set by the layout. Relative to the parent's Client; of the root, to the picture.
  TBounds Bounds;
  // Where children lie, relative to the node's own left top.
  TBounds Client;
  // Neither on a page that is not turned up nor behind a parent that is not drawn.
  bool Shown = false;
  // Left top corner in the picture, and the part of the node that its parents do not cut off.
  TPlace Origin;
  TBounds Clip;

  TBounds BoundsInForm() const { return {Origin.X, Origin.Y, Bounds.Width, Bounds.Height}; }

 private:
  friend class TComposer;
  std::string FName;
};

}  // namespace wrenfold
