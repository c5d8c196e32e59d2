// What an inspector shows of components: rows of properties, stored ones and those known for their
// classes, and the stored values that texts typed into the rows stand for.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "designer/model/ClassProperties.h"
#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

struct TInspectedRow {
  std::string Path;     // of the property; "Name" for the name of the component
  int Item = -1;        // of a collection, when the row is inside one
  std::string Inner;    // the item's property
  std::string Element;  // of a set, when the row is one of its elements

  std::string Caption;
  TPropertyKind Kind = TPropertyKind::Other;
  std::string Type;     // of the enumeration, set, event or reference
  std::string Text;     // the value as a user reads it, that of the class where none is stored
  std::string Default;  // the class's, as a user reads it
  bool HasDefault = false;
  bool Stored = false;        // by one of the components at least
  bool Mixed = false;         // the components have different values; Text is empty then
  bool Group = false;         // has no value of its own
  std::size_t Parent = npos;  // the row that this one is unfolded from

  static constexpr std::size_t npos = static_cast<std::size_t>(-1);
  // Whether the two are the same row, of whatever components.
  bool SamePlace(const TInspectedRow& other) const {
    return Path == other.Path && Item == other.Item && Inner == other.Inner &&
           Element == other.Element;
  }
};

// The rows that all the components have in common, a parent before its children. Of several
// components the name is left out.
std::vector<TInspectedRow> InspectRows(const std::vector<const TDesignComponent*>& components);

// What the component stores for the row; empty where it is nothing. A view.
std::string_view StoredPart(const TDesignComponent& component, const TInspectedRow& row);

// The stored value of the row's property (row.Path) after the text was put into the row; none when
// nothing is to be stored any more. Raises EConvertError, in words, for what does not fit.
std::optional<std::string> ValueWithText(const TDesignComponent& component,
                                         const TInspectedRow& row, const std::string& text);
// The same after the row was given back its default: the property goes, or the part of it does.
std::optional<std::string> ValueReset(const TDesignComponent& component, const TInspectedRow& row);

// The same after the stored value (tag first, none: nothing is stored) was put into the row.
std::optional<std::string> ValueWithStored(const TDesignComponent& component,
                                           const TInspectedRow& row,
                                           const std::optional<std::string>& value);

// The class of a component and its ancestors as far as they are known, nearest first.
std::vector<std::string> ClassChainOf(const TDesignComponent& component);

// The text of a stored string, UTF-8 with LF between lines, and the other way round: in the
// notation of form files, without and with its quotes.
std::string TextOfNotation(std::string_view notation);
std::string NotationOfText(std::string_view text);

}  // namespace wrenfold
