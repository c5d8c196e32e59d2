// The published properties of the component classes that are known: their kinds, and the defaults
// that form files leave out.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// What a property is to somebody who edits it.
enum class TPropertyKind : std::uint8_t {
  Integer,
  Float,
  Text,  // one line or several
  Boolean,
  Enumeration,  // its type names the values
  Set,
  Color,
  Cursor,
  ShortCut,
  Font,       // its parts are stored as "Font.Name" and so on
  Reference,  // another component of the form
  Strings,    // a list of texts, stored as "Items.Strings" and so on
  Picture,    // binary data that begins with the class of the picture, or a bitmap
  Collection,
  Event,  // its type names the parameters
  Other,  // shown as text, edited as text
};

struct TKnownProperty {
  std::string_view Name;
  TPropertyKind Kind = TPropertyKind::Other;
  // Of the enumeration, set or event; of the class that a reference leads to, empty for any.
  std::string_view Type = {};
  // As the text form writes it; empty where nothing is known or the class alone decides.
  std::string_view Default = {};
};

// The properties of a class, as far as they are known: of the class itself, else of the nearest
// ancestor that is known, else of the class whose name is the longest ending of the class's name;
// what every component has when none is known. Chain: the class and its ancestors, nearest first.
// In the order of their names.
const std::vector<TKnownProperty>& PropertiesOf(const std::vector<std::string>& chain);
// The properties of the items in a collection of the class, as far as they are known, in the order
// of their names; none for others.
const std::vector<TKnownProperty>& PropertiesOfItem(const std::vector<std::string>& chain,
                                                    std::string_view collection);
// The row of that path (letter case ignored) in any class, for a property that is stored but not
// known for its class: the kind by the name alone. Null when no class has such a property.
const TKnownProperty* FindPropertyAnywhere(std::string_view path);

// The values of an enumeration or the elements of a set, in their order; empty when it is unknown.
std::vector<std::string_view> ValuesOfType(std::string_view type);
// The parameters of an event's type as they stand in a declaration: "(Sender: TObject)". Empty when
// the type is unknown.
std::string_view ParametersOfEvent(std::string_view type);
// The same in C++: "(TObject *Sender)".
std::string CppParametersOfEvent(std::string_view type);
// The names of colours and cursors, in the order in which they are offered.
std::vector<std::string_view> ColorNames();
std::vector<std::string_view> CursorNames();
// The value of a named colour ($00BBGGRR, or a system colour with the high bit); false when there
// is none of that name.
bool FindColor(std::string_view name, std::uint32_t& value);

}  // namespace wrenfold
