#include "designer/model/ComponentText.h"

#include <algorithm>
#include <map>
#include <memory>

#include "designer/model/StoredValue.h"
#include "platform/core/stream/FormText.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

std::vector<std::string> TakenNames(const TDesignComponent& root) {
  std::vector<std::string> taken{LowerCase(root.Name())};
  for (const TComponent* each : root.Components()) taken.push_back(LowerCase(each->Name()));
  return taken;
}

std::vector<TDesignComponent*> AllOf(TDesignComponent& root) {
  std::vector<TDesignComponent*> all{&root};
  for (std::size_t i = 0; i < all.size(); ++i)
    all.insert(all.end(), all[i]->Children().begin(), all[i]->Children().end());
  return all;
}

// Old names, folded, and the new ones.
using TRenamed = std::map<std::string, std::string>;

void GiveFreeNames(TDesignComponent& pasted, std::vector<std::string>& taken, TRenamed& renamed) {
  for (TDesignComponent* each : AllOf(pasted)) {
    if (each->Name().empty()) continue;
    const std::string old = LowerCase(each->Name());
    if (std::ranges::find(taken, old) != taken.end()) {
      const std::string name = FreeName(each->StoredClassName(), taken);
      renamed[old] = name;
      each->SetName(name);
    }
    taken.push_back(LowerCase(each->Name()));
  }
}

void FollowNames(TDesignComponent& pasted, const TRenamed& renamed) {
  for (TDesignComponent* each : AllOf(pasted)) {
    // A copy: setting a value may move the properties.
    const std::vector<TDesignProperty> properties = each->Properties();
    for (const TDesignProperty& property : properties) {
      const auto found = renamed.find(LowerCase(StoredIdentifier(property.Value)));
      if (found == renamed.end()) continue;
      TByteWriter value;
      value.WriteIdentValue(found->second);
      each->SetValue(property.Path, value.View());
    }
  }
}

}  // namespace

std::string ComponentsText(std::span<const TDesignComponent* const> components) {
  TByteWriter text;
  for (const TDesignComponent* component : components) {
    const std::string stream = WriteDesignForm(*component);
    TByteReader binary(stream);
    ObjectBinaryToText(binary, text);
  }
  return text.ToString();
}

std::string FreeName(std::string_view className, const std::vector<std::string>& taken) {
  if (className.starts_with('T') && className.size() > 1) className.remove_prefix(1);
  for (int number = 1;; ++number) {
    std::string name = std::string(className) + std::to_string(number);
    if (std::ranges::find(taken, LowerCase(name)) == taken.end()) return name;
  }
}

std::vector<std::string> StreamsForPasting(std::string_view text, const TDesignComponent& root) {
  std::vector<std::unique_ptr<TDesignComponent>> pasted;
  std::size_t position = 0;
  while (!AtTextEnd(text, position)) {
    TByteWriter binary;
    ObjectTextToBinary(text, position, binary);
    pasted.push_back(ReadDesignForm(binary.ToString()));
  }
  std::vector<std::string> taken = TakenNames(root);
  TRenamed renamed;
  for (const auto& each : pasted) GiveFreeNames(*each, taken, renamed);
  std::vector<std::string> streams;
  for (const auto& each : pasted) {
    FollowNames(*each, renamed);
    streams.push_back(WriteDesignForm(*each));
  }
  return streams;
}

}  // namespace wrenfold
