// wrenfold-spc set and get: single properties of a form.
#include <fmt/format.h>

#include <algorithm>

#include "platform/core/text/SysUtils.h"
#include "platform/core/text/Unicode.h"
#include "tools/Commands.h"
#include "tools/FormDocument.h"

namespace wrenfold {
namespace {

TFormDocument ReadForm(const std::string& name) {
  return TFormDocument(ReadInput(name));
}

TDesignComponent* FindChild(const TDesignComponent& parent, std::string_view name) {
  for (TDesignComponent* child : parent.Children())
    if (EqualText(child->Name(), name)) return child;
  return nullptr;
}

struct TTarget {
  TDesignComponent* Component;
  std::string Property;  // may be dotted itself
};

bool HasPart(const TDesignComponent& component, std::string_view object) {
  return std::any_of(component.Properties().begin(), component.Properties().end(),
                     [&](const TDesignProperty& property) {
                       return property.Path.size() > object.size() &&
                              property.Path[object.size()] == '.' &&
                              EqualText(property.Path.substr(0, object.size()), object);
                     });
}

// Names lead from component to component as far as there are such components; the first may be any
// of the form, or the root itself. The rest is the property. A name that is neither a component nor
// a part of the root is told, since its property would go to the root.
TTarget FindTarget(TDesignComponent& root, const std::string& path) {
  TDesignComponent* component = &root;
  std::string_view rest = path;
  for (bool first = true; rest.find('.') != rest.npos; first = false) {
    const std::string_view name = rest.substr(0, rest.find('.'));
    TDesignComponent* next = FindChild(*component, name);
    if (next == nullptr && first && EqualText(root.Name(), name)) next = &root;
    if (next == nullptr && first) next = static_cast<TDesignComponent*>(root.FindComponent(name));
    if (next == nullptr && first && !HasPart(root, name))
      throw EConvertError(
          fmt::format("{0}: the form has no component {1}; a property of the form "
                      "itself is {2}.{0}",
                      path, name, root.Name()));
    if (next == nullptr) break;
    component = next;
    rest.remove_prefix(name.size() + 1);
  }
  return {component, std::string(rest)};
}

bool IsProperty(std::string_view path) {
  const auto isWord = [](char c) {
    return IsAsciiLetter(c) || (c >= '0' && c <= '9') || c == '_' || c == '.' ||
           static_cast<unsigned char>(c) >= 0x80;
  };
  return !path.empty() && path.size() <= MaxName && path.front() != '.' && path.back() != '.' &&
         std::all_of(path.begin(), path.end(), isWord);
}

// Byte strings would be taken for the code page of whoever reads them.
std::string ValueOfString(std::string_view text) {
  TByteWriter value;
  const bool isAscii =
      std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
  if (isAscii) {
    value.WriteStringValue(text);
    return value.ToString();
  }
  const std::u16string units = Utf16FromUtf8(text);
  value.WriteValueType(TValueType::vaWString);
  value.WriteFixed(static_cast<std::uint32_t>(units.size()));
  value.WriteBytes({reinterpret_cast<const char*>(units.data()), units.size() * 2});
  return value.ToString();
}

void Change(TDesignComponent& root, const std::string& change, bool asText) {
  const std::size_t equals = change.find('=');
  if (equals == std::string::npos)
    throw EConvertError(fmt::format("expected PATH=VALUE, found {}", change));
  const std::string path = change.substr(0, equals);
  const std::string text = change.substr(equals + 1);
  const TTarget target = FindTarget(root, path);
  if (!IsProperty(target.Property))
    throw EConvertError(fmt::format("expected the path of a property, found {}", path));
  try {
    target.Component->SetValue(target.Property, asText ? ValueOfString(text) : ValueOfText(text));
  } catch (const EParserError& error) {
    throw EConvertError(fmt::format("{}: {} is no value: {}", path, text, error.Message()));
  }
}

}  // namespace

int RunSet(const std::string& name, const std::vector<std::string>& changes, bool asText,
           TOutput& output) {
  try {
    RequireReplaceable(name);
    TFormDocument document = ReadForm(name);
    const std::string before = document.Bytes();
    for (const std::string& change : changes) Change(document.Root(), change, asText);
    const std::string after = document.Bytes();
    if (after != before) WriteOutput(name, after);
    return ecFine;
  } catch (const Exception& error) {
    output.Error(NamedTrouble(name, error));
    return ecTrouble;
  }
}

int RunGet(const std::string& name, const std::string& path, TOutput& output) {
  try {
    TFormDocument document = ReadForm(name);
    const TTarget target = FindTarget(document.Root(), path);
    const std::string_view value = target.Component->FindValue(target.Property);
    if (value.empty()) {
      output.Error(fmt::format("{}: {} is not stored", name, path));
      return ecFindings;
    }
    const std::string text = document.TextOf(value);
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = std::min(text.find("\r\n", start), text.size());
      output.Line(text.substr(start, end - start));
      start = end + 2;
    }
    return ecFine;
  } catch (const Exception& error) {
    output.Error(NamedTrouble(name, error));
    return ecTrouble;
  }
}

}  // namespace wrenfold
