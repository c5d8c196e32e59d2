// Reads values for rows and writes them back, kind by kind.
#include "designer/model/PropertyRows.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <unordered_map>

#include "designer/model/ItemValues.h"
#include "designer/model/ValueText.h"
#include "platform/core/stream/Bytes.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

using enum TPropertyKind;

constexpr char NamePath[] = "Name";

void AppendUtf8(std::string& text, std::uint32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | code >> 6);
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0 | code >> 12);
    text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    text += static_cast<char>(0xF0 | code >> 18);
    text += static_cast<char>(0x80 | (code >> 12 & 0x3F));
    text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  }
}

// The next code point; bytes that are no UTF-8 stand for themselves.
std::uint32_t TakeCodePoint(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  std::uint32_t code = length == 1 ? lead : lead & (0xFF >> (length + 1));
  const bool whole = text.size() >= length;
  for (std::size_t i = 1; whole && i < length; ++i)
    code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
  text.remove_prefix(whole ? length : 1);
  return whole ? code : lead;
}

// --- values as texts

std::string ColorText(const std::string& notation) {
  std::int64_t number = 0;
  const auto [end, error] =
      std::from_chars(notation.data(), notation.data() + notation.size(), number);
  if (error != std::errc() || end != notation.data() + notation.size()) return notation;
  return fmt::format("${:08X}", static_cast<std::uint32_t>(number));
}

std::string LinesText(const std::string& notation) {
  std::string text;
  std::string_view rest = notation;
  if (!rest.empty() && rest.front() == '(') rest = rest.substr(1, rest.size() - 2);
  // A line that goes on ends in a plus sign.
  std::string entry;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = Trim(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.empty()) continue;
    entry += line;
    if (line.back() == '+') continue;
    text += TextOfNotation(entry) + '\n';
    entry.clear();
  }
  if (!text.empty()) text.pop_back();
  return text;
}

std::string UserText(TPropertyKind kind, const std::string& notation) {
  switch (kind) {
    case Text:
      return TextOfNotation(notation);
    case Color:
      return ColorText(notation);
    case Strings:
      return LinesText(notation);
    default:
      return notation;
  }
}

// What a value that the table does not know is, by its tag.
TPropertyKind KindOfValue(std::string_view value) {
  using enum TValueType;
  switch (static_cast<TValueType>(value.empty() ? 0 : value[0])) {
    case vaInt8:
    case vaInt16:
    case vaInt32:
    case vaInt64:
      return Integer;
    case vaExtended:
    case vaSingle:
    case vaCurrency:
    case vaDate:
    case vaDouble:
      return Float;
    case vaString:
    case vaLString:
    case vaWString:
    case vaUTF8String:
      return Text;
    case vaFalse:
    case vaTrue:
      return Boolean;
    case vaSet:
      return Set;
    case vaBinary:
      return Picture;
    case vaCollection:
      return Collection;
    default:
      return Other;
  }
}

bool IsStringsList(std::string_view path, std::string_view value) {
  return path.ends_with(".Strings") && !value.empty() &&
         static_cast<TValueType>(value[0]) == TValueType::vaList;
}

std::vector<std::string> SetElements(std::string_view notation) {
  std::vector<std::string> elements;
  if (notation.size() < 2) return elements;
  std::string_view rest = notation.substr(1, notation.size() - 2);
  while (!rest.empty()) {
    const std::size_t comma = rest.find(',');
    const std::string_view element = Trim(rest.substr(0, comma));
    if (!element.empty()) elements.emplace_back(element);
    rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
  }
  return elements;
}

bool Has(const std::vector<std::string>& elements, std::string_view element) {
  return std::any_of(elements.begin(), elements.end(),
                     [&](const std::string& e) { return EqualText(e, element); });
}

// --- from texts to values

bool TakeInteger(const std::string& text, std::int64_t& number) {
  const bool hex = text.size() > 1 && text[0] == '$';
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data() + (hex ? 1 : 0), end, number, hex ? 16 : 10);
  return result.ec == std::errc() && result.ptr == end;
}

std::string IntegerNotation(const std::string& text, const TInspectedRow& row) {
  std::int64_t number = 0;
  if (!TakeInteger(text, number))
    throw EConvertError(
        fmt::format("'{}' does not fit {}: expected a whole number", text, row.Caption));
  return fmt::format("{}", number);
}

std::string FromList(const std::string& text, const std::vector<std::string_view>& values,
                     const TInspectedRow& row) {
  for (const std::string_view value : values)
    if (EqualText(value, text)) return std::string(value);
  std::string names;
  for (const std::string_view value : values) names.append(names.empty() ? "" : ", ").append(value);
  throw EConvertError(
      fmt::format("'{}' does not fit {}: expected one of {}", text, row.Caption, names));
}

std::string Identifier(const std::string& text, const TInspectedRow& row) {
  const bool dotted = std::all_of(text.begin(), text.end(), [](char c) {
    return c == '.' || c == '_' || (c >= '0' && c <= '9') || ((c | 32) >= 'a' && (c | 32) <= 'z');
  });
  if (text.empty() || !dotted || (text[0] >= '0' && text[0] <= '9'))
    throw EConvertError(fmt::format("'{}' does not fit {}: expected a name", text, row.Caption));
  return text;
}

std::string ColorNotation(const std::string& text, const TInspectedRow& row) {
  std::uint32_t value = 0;
  for (const std::string_view name : ColorNames())
    if (EqualText(name, text)) return std::string(name);
  const bool html = text.size() == 7 && text[0] == '#';
  const bool hex = html || (text.size() > 1 && text[0] == '$');
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data() + (hex ? 1 : 0), end, value, hex ? 16 : 10);
  if (result.ec != std::errc() || result.ptr != end)
    throw EConvertError(
        fmt::format("'{}' does not fit {}: expected a colour, as clRed, $00BBGGRR or #RRGGBB", text,
                    row.Caption));
  if (html) value = (value & 0xFF) << 16 | (value & 0xFF00) | value >> 16;
  for (const std::string_view name : ColorNames())
    if (std::uint32_t named = 0; FindColor(name, named) && named == value) return std::string(name);
  return fmt::format("{}", static_cast<std::int32_t>(value));
}

// Cursors of a program's own have numbers.
std::string CursorNotation(const std::string& text, const TInspectedRow& row) {
  std::int64_t number = 0;
  if (TakeInteger(text, number)) return fmt::format("{}", number);
  return FromList(text, CursorNames(), row);
}

std::string SetNotation(const std::string& text, const TInspectedRow& row) {
  const bool bracketed = text.size() >= 2 && text.front() == '[' && text.back() == ']';
  if (!bracketed)
    throw EConvertError(
        fmt::format("'{}' does not fit {}: expected names in square brackets", text, row.Caption));
  const std::vector<std::string_view> known = ValuesOfType(row.Type);
  std::string notation;
  for (const std::string& element : SetElements(text))
    notation.append(notation.empty() ? "" : ", ")
        .append(known.empty() ? Identifier(element, row) : FromList(element, known, row));
  return fmt::format("[{}]", notation);
}

std::string StringsNotation(const std::string& text) {
  std::string notation = "(";
  std::string_view rest = text;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    notation += "\r\n" + NotationOfText(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  }
  return notation + ")";
}

// The text as a form file would write the value; raises what does not fit the kind.
std::string Notation(const TInspectedRow& row, const std::string& text) {
  switch (row.Kind) {
    case Text:
      return NotationOfText(text);
    case Integer:
    case ShortCut:
      return IntegerNotation(text, row);
    case Cursor:
      return CursorNotation(text, row);
    case Boolean:
      return FromList(text, {"False", "True"}, row);
    case Enumeration: {
      const auto values = ValuesOfType(row.Type);
      return values.empty() ? Identifier(text, row) : FromList(text, values, row);
    }
    case Set:
      return SetNotation(text, row);
    case Color:
      return ColorNotation(text, row);
    case Reference:
    case Event:
      return Identifier(text, row);
    case Strings:
      return StringsNotation(text);
    default:
      return text;
  }
}

}  // namespace

std::string_view StoredPart(const TDesignComponent& component, const TInspectedRow& row) {
  const std::string_view value = component.FindValue(row.Path);
  if (row.Item < 0) return value;
  const auto items = ItemsOf(value);
  const auto item = static_cast<std::size_t>(row.Item);
  return item < items.size() ? items[item].Value(row.Inner) : std::string_view();
}

namespace {

std::string ElementsWith(const TDesignComponent& component, const TInspectedRow& row, bool on) {
  const std::string_view stored = StoredPart(component, row);
  std::vector<std::string> elements =
      SetElements(stored.empty() ? row.Default : FormValueText(stored));
  std::erase_if(elements, [&](const std::string& e) { return EqualText(e, row.Element); });
  if (on) elements.push_back(row.Element);
  // The order of the type is that in which compilers write.
  std::string notation;
  const auto known = ValuesOfType(row.Type);
  const auto add = [&](std::string_view element) {
    notation.append(notation.empty() ? "" : ", ").append(element);
  };
  for (const std::string_view value : known)
    if (Has(elements, value)) add(value);
  for (const std::string& element : elements)
    if (std::none_of(known.begin(), known.end(),
                     [&](std::string_view v) { return EqualText(v, element); }))
      add(element);
  return fmt::format("[{}]", notation);
}

bool IsInherited(const TDesignComponent& component) {
  std::int32_t position = 0;
  return (component.FilerFlags(position) & (ffInherited | ffInline)) != 0;
}

}  // namespace

std::string TextOfNotation(std::string_view notation) {
  std::string text;
  for (std::size_t at = 0; at < notation.size();) {
    if (notation[at] == '\'') {
      for (++at; at < notation.size(); ++at) {
        if (notation[at] != '\'') text += notation[at];
        else if (at + 1 < notation.size() && notation[at + 1] == '\'') text += notation[at++];
        else break;
      }
      ++at;
    } else if (notation[at] == '#') {
      std::uint32_t code = 0;
      const auto result =
          std::from_chars(notation.data() + at + 1, notation.data() + notation.size(), code);
      at = static_cast<std::size_t>(result.ptr - notation.data());
      if (code != 13) AppendUtf8(text, code);  // CR LF between lines becomes LF
    } else {
      ++at;
    }
  }
  return text;
}

std::string NotationOfText(std::string_view text) {
  std::string notation;
  bool quoted = false;
  const auto quote = [&](bool wanted) {
    if (quoted != wanted) notation += '\'';
    quoted = wanted;
  };
  while (!text.empty()) {
    const std::uint32_t code = TakeCodePoint(text);
    if (code >= ' ' && code < 0x7F) {
      quote(true);
      notation += static_cast<char>(code);
      if (code == '\'') notation += '\'';
    } else {
      quote(false);
      notation += code == '\n' ? "#13#10" : fmt::format("#{}", code);
    }
  }
  quote(false);
  return notation.empty() ? "''" : notation;
}

std::vector<std::string> ClassChainOf(const TDesignComponent& component) {
  std::vector<std::string> chain{std::string(component.StoredClassName())};
  for (const TTypeInfo* info = &component.GetClassInfo();
       info != nullptr && info != &TDesignComponent::ClassInfo(); info = info->Parent())
    if (!EqualText(info->Name(), chain.back())) chain.emplace_back(info->Name());
  // A root whose unit is not known is most likely a form.
  if (component.Owner() == nullptr && chain.size() == 1) chain.emplace_back("TForm");
  return chain;
}

std::optional<std::string> ValueWithStored(const TDesignComponent& component,
                                           const TInspectedRow& row,
                                           const std::optional<std::string>& value) {
  if (row.Item < 0) return value;
  return WithPart(component.FindValue(row.Path), static_cast<std::size_t>(row.Item), row.Inner,
                  value);
}

std::optional<std::string> ValueWithText(const TDesignComponent& component,
                                         const TInspectedRow& row, const std::string& text) {
  const std::string_view stored = StoredPart(component, row);
  // Clearing a reference or a handler takes it away; so does the default, where nothing inherits.
  if (text.empty() && (row.Kind == Event || row.Kind == Reference))
    return ValueReset(component, row);
  std::string notation = row.Element.empty()
                             ? Notation(row, text)
                             : ElementsWith(component, row, EqualText(text, "True"));
  if (row.Element.empty() && row.HasDefault && !IsInherited(component) &&
      UserText(row.Kind, notation) == row.Default)
    return ValueReset(component, row);
  // Where the table knows the kind, it was checked above: a colour may be a name or a number.
  const bool checked = row.Kind != Other && row.Kind != Float;
  return ValueWithStored(component, row,
                         FormValueFromText(notation, checked ? std::string_view() : stored));
}

std::optional<std::string> ValueReset(const TDesignComponent& component, const TInspectedRow& row) {
  if (row.Item >= 0 && StoredPart(component, row).empty())
    return std::string(component.FindValue(row.Path));
  return ValueWithStored(component, row, std::nullopt);
}

// --- rows

namespace {

std::string CountText(std::size_t items) {
  return items == 1 ? "(1 item)" : fmt::format("({} items)", items);
}

std::string TextOf(TPropertyKind kind, std::string_view value) {
  if (kind == Picture) return fmt::format("({} bytes)", value.size());
  if (kind == Collection) return CountText(ItemsOf(value).size());
  return UserText(kind, FormValueText(value));
}

// The kind and type of a stored property that the class's table does not know.
TKnownProperty UnknownRow(std::string_view path, std::string_view value) {
  TKnownProperty row{path, KindOfValue(value)};
  if (IsStringsList(path, value)) row.Kind = Strings;
  if (const TKnownProperty* other = FindPropertyAnywhere(path)) {
    row.Kind = other->Kind;
    row.Type = other->Type;
  } else if (row.Kind == Other && path.starts_with("On")) {
    row.Kind = Event;
  }
  return row;
}

// The same for a property of an item, of which less is known: what is stored of it counts, if its
// name in some class does not say more.
TKnownProperty UnknownPart(const TItemPart& part) {
  TKnownProperty row{part.Path, KindOfValue(part.Value)};
  const TKnownProperty* known = FindPropertyAnywhere(part.Path);
  if (known == nullptr || (row.Kind != Other && known->Kind != Color)) return row;
  row.Kind = known->Kind;
  row.Type = known->Type;
  return row;
}

bool NameLess(const TKnownProperty& a, const TKnownProperty& b) {
  return UpperCase(a.Name) < UpperCase(b.Name);
}

// Known and stored properties, by name.
template <class Stored, class RowOf>
std::vector<TKnownProperty> Merged(const std::vector<TKnownProperty>& known, const Stored& stored,
                                   const RowOf& rowOf) {
  std::vector<TKnownProperty> rows = known;
  for (const auto& property : stored)
    if (std::ranges::none_of(
            known, [&](const TKnownProperty& row) { return EqualText(row.Name, property.Path); }))
      rows.push_back(rowOf(property));
  if (rows.size() != known.size()) std::ranges::stable_sort(rows, NameLess);
  return rows;
}

// What tells an item from others.
std::string TitleOfItem(const TItemValue& item) {
  for (const char* path : {"Caption", "Text", "Title.Caption", "DisplayName", "FieldName", "Name"})
    if (const std::string_view value = item.Value(path); !value.empty()) return TextOf(Text, value);
  return {};
}

class TRowCollector {
 public:
  explicit TRowCollector(const TDesignComponent& component)
      : FComponent(component), FChain(ClassChainOf(component)) {}

  std::vector<TInspectedRow> Collect() {
    TInspectedRow name;
    name.Path = name.Caption = NamePath;
    name.Kind = Text;
    name.Text = FComponent.Name();
    name.Stored = true;
    FRows.push_back(name);
    for (const TKnownProperty& known :
         Merged(PropertiesOf(FChain), FComponent.Properties(),
                [](const TDesignProperty& p) { return UnknownRow(p.Path, p.Value); }))
      Add(known);
    return std::move(FRows);
  }

 private:
  // The row that "Font" of "Font.Name" is, made where it is not there yet.
  std::size_t GroupOf(std::string_view name) {
    for (std::size_t i = 0; i < FRows.size(); ++i)
      if (FRows[i].Parent == TInspectedRow::npos && EqualText(FRows[i].Caption, name)) return i;
    TInspectedRow group;
    group.Path = group.Caption = name;
    group.Group = true;
    FRows.push_back(group);
    return FRows.size() - 1;
  }

  static void Describe(TInspectedRow& row, const TKnownProperty& known) {
    row.Caption = known.Name;
    row.Kind = known.Kind;
    row.Type = known.Type;
    row.Default = UserText(known.Kind, std::string(known.Default));
    row.HasDefault = !known.Default.empty();
  }

  void Add(const TKnownProperty& known) {
    TInspectedRow row;
    row.Path = known.Name;
    Describe(row, known);
    if (known.Kind == Font) {
      row.Group = true;
      row.Text = "(font)";
      FRows.push_back(row);
      return;
    }
    const std::size_t dot = known.Name.find('.');
    // "Items.Strings", "Picture.Data" have one part alone and stand for the whole.
    if (dot != std::string_view::npos) {
      const bool whole = known.Kind == Strings || known.Kind == Picture;
      row.Caption = whole ? known.Name.substr(0, dot) : known.Name.substr(dot + 1);
      if (!whole) row.Parent = GroupOf(known.Name.substr(0, dot));
    }
    Read(row, FComponent.FindValue(known.Name));
    FRows.push_back(row);
    Unfold(FRows.size() - 1);
  }

  static void Read(TInspectedRow& row, std::string_view value) {
    row.Stored = !value.empty();
    row.Text = row.Stored               ? TextOf(row.Kind, value)
               : row.Kind == Collection ? CountText(0)
                                        : row.Default;
  }

  void Unfold(std::size_t index) {
    const TInspectedRow row = FRows[index];
    if (row.Kind == Set) UnfoldSet(row, index);
    if (row.Kind == Collection && row.Stored && row.Item < 0) UnfoldItems(row, index);
  }

  void UnfoldSet(const TInspectedRow& set, std::size_t parent) {
    const std::vector<std::string> elements = SetElements(set.Text);
    std::vector<std::string> all;
    for (const std::string_view value : ValuesOfType(set.Type)) all.emplace_back(value);
    for (const std::string& element : elements)
      if (!Has(all, element)) all.push_back(element);
    for (const std::string& element : all) {
      TInspectedRow row = set;
      row.Element = row.Caption = element;
      row.Kind = Boolean;
      row.Parent = parent;
      row.Text = Has(elements, element) ? "True" : "False";
      FRows.push_back(row);
    }
  }

  void UnfoldItems(const TInspectedRow& collection, std::size_t parent) {
    const auto items = ItemsOf(FComponent.FindValue(collection.Path));
    const auto& known = PropertiesOfItem(FChain, collection.Path);
    for (std::size_t i = 0; i < items.size(); ++i) {
      TInspectedRow item;
      item.Path = collection.Path;
      item.Item = static_cast<int>(i);
      item.Caption = fmt::format("[{}]", i);
      item.Text = TitleOfItem(items[i]);
      item.Stored = true;
      item.Parent = parent;
      item.Group = true;
      FRows.push_back(item);
      const std::size_t place = FRows.size() - 1;
      for (const TKnownProperty& part : Merged(known, items[i].Parts, UnknownPart))
        AddPart(item, place, part, items[i].Value(part.Name));
    }
  }

  void AddPart(const TInspectedRow& item, std::size_t parent, const TKnownProperty& known,
               std::string_view value) {
    TInspectedRow row;
    row.Path = item.Path;
    row.Item = item.Item;
    row.Inner = known.Name;
    row.Parent = parent;
    Describe(row, known);
    Read(row, value);
    FRows.push_back(row);
    if (row.Kind == Set) UnfoldSet(row, FRows.size() - 1);
  }

  const TDesignComponent& FComponent;
  const std::vector<std::string> FChain;
  std::vector<TInspectedRow> FRows;
};

// The rows of one component, less what others do not have, with what differs in them marked. A
// form's designer asks for thousands of components at each click: only the rows of the first one
// are made, of the others the stored bytes are compared.
class TCommonRows {
 public:
  explicit TCommonRows(const TDesignComponent& first)
      : FRows(TRowCollector(first).Collect()), FAlive(FRows.size(), true), FValues(FRows.size()) {
    for (std::size_t i = 0; i < FRows.size(); ++i) {
      const TInspectedRow& row = FRows[i];
      // A name and an item are one component's own.
      FAlive[i] = row.Path != NamePath && row.Item < 0;
      FValues[i] = first.FindValue(row.Path);
      if (row.Element.empty() && row.Item < 0) FLeads.emplace(UpperCase(row.Path), i);
    }
  }

  void Meet(const TDesignComponent& other) {
    const TClassRows& known = RowsOfClass(other);
    FStored.assign(FRows.size(), {});
    for (const TDesignProperty& property : other.Properties())
      if (const auto lead = FLeads.find(UpperCase(property.Path)); lead != FLeads.end())
        FStored[lead->second] = property.Value;
    for (std::size_t i = 0; i < FRows.size(); ++i)
      if (FAlive[i] && !IsPlainGroup(FRows[i])) Meet(i, known);
  }

  std::vector<TInspectedRow> Take() {
    DropEmptyGroups();
    std::vector<TInspectedRow> common;
    std::vector<std::size_t> places(FRows.size(), TInspectedRow::npos);
    for (std::size_t i = 0; i < FRows.size(); ++i) {
      TInspectedRow& row = FRows[i];
      const bool child = row.Parent != TInspectedRow::npos;
      if (!FAlive[i] || (child && places[row.Parent] == TInspectedRow::npos)) continue;
      if (child) row.Parent = places[row.Parent];
      if (row.Mixed) row.Text.clear();
      places[i] = common.size();
      common.push_back(std::move(row));
    }
    return common;
  }

 private:
  // What the table of a class says to each row: whether the class has it, and with what default.
  struct TClassRow {
    bool Known = false;
    std::string Default;
  };
  using TClassRows = std::vector<TClassRow>;

  // "Constraints", which is there for its parts alone.
  static bool IsPlainGroup(const TInspectedRow& row) { return row.Group && row.Kind == Other; }

  const TClassRows& RowsOfClass(const TDesignComponent& component) {
    const TClassKey key{component.StoredClassName(), &component.GetClassInfo()};
    if (const auto found = FClasses.find(key); found != FClasses.end()) return found->second;
    const auto& table = PropertiesOf(ClassChainOf(component));
    TClassRows rows(FRows.size());
    for (std::size_t i = 0; i < FRows.size(); ++i)
      for (const TKnownProperty& known : table)
        if (FRows[i].Item < 0 && EqualText(known.Name, FRows[i].Path))
          rows[i] = {known.Kind == FRows[i].Kind || !FRows[i].Element.empty(),
                     UserText(known.Kind, std::string(known.Default))};
    return FClasses.emplace(key, std::move(rows)).first->second;
  }

  void Meet(std::size_t i, const TClassRows& known) {
    TInspectedRow& row = FRows[i];
    if (!row.Element.empty()) return MeetElement(row, known[i]);
    const std::string_view value = FStored[i];
    const bool has =
        known[i].Known || (!value.empty() && UnknownRow(row.Path, value).Kind == row.Kind);
    if (!has) {
      FAlive[i] = false;
      return;
    }
    if (row.Default != known[i].Default) row.Default.clear(), row.HasDefault = false;
    if (row.Kind == Font) return;
    row.Stored = row.Stored || !value.empty();
    row.Mixed = row.Mixed || Differs(row, FValues[i], value, known[i].Default);
  }

  bool Differs(const TInspectedRow& row, std::string_view first, std::string_view value,
               const std::string& byDefault) const {
    if (!first.empty() && first == value) return false;
    // Of these the text does not tell all.
    if (row.Kind == Picture || row.Kind == Collection) return first != value;
    return row.Text != (value.empty() ? byDefault : TextOf(row.Kind, value));
  }

  // An element goes with its set, whose value of the same component was met right before.
  void MeetElement(TInspectedRow& row, const TClassRow& known) {
    const std::size_t set = row.Parent;
    if (row.Default != known.Default) row.Default.clear(), row.HasDefault = false;
    if (row.Mixed || !FAlive[set]) return;
    row.Stored = FRows[set].Stored;
    const std::string_view value = FStored[set];
    if (!value.empty() && value == FValues[set]) return;
    const auto elements = SetElements(value.empty() ? known.Default : TextOf(Set, value));
    row.Mixed = Has(elements, row.Element) != (row.Text == "True");
  }

  void DropEmptyGroups() {
    std::vector<bool> used(FRows.size(), false);
    for (std::size_t i = FRows.size(); i-- > 0;) {
      if (IsPlainGroup(FRows[i])) FAlive[i] = FAlive[i] && used[i];
      if (FAlive[i] && FRows[i].Parent != TInspectedRow::npos) used[FRows[i].Parent] = true;
    }
  }

  using TClassKey = std::pair<std::string_view, const TTypeInfo*>;

  std::vector<TInspectedRow> FRows;
  std::vector<bool> FAlive;
  std::vector<std::string_view> FValues;  // of the first component
  std::vector<std::string_view> FStored;  // of the one that is met
  std::unordered_map<std::string, std::size_t> FLeads;
  std::map<TClassKey, TClassRows> FClasses;
};

}  // namespace

std::vector<TInspectedRow> InspectRows(const std::vector<const TDesignComponent*>& components) {
  if (components.empty()) return {};
  if (components.size() == 1) return TRowCollector(*components[0]).Collect();
  TCommonRows rows(*components[0]);
  for (std::size_t i = 1; i < components.size(); ++i) rows.Meet(*components[i]);
  return rows.Take();
}

}  // namespace wrenfold
