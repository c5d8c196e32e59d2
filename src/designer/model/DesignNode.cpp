#include "designer/model/DesignNode.h"

#include "designer/model/Composition.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

std::string_view TDesignNode::Value(std::string_view path) const {
  for (auto layer = Layers.rbegin(); layer != Layers.rend(); ++layer)
    if (const std::string_view value = (*layer)->FindValue(path); !value.empty()) return value;
  return {};
}

bool TDesignNode::Is(std::string_view path, std::string_view identifier) const {
  return EqualText(Identifier(path), identifier);
}

std::string TDesignNode::Text(std::string_view path) const {
  return StoredText(Value(path), Form->CodePage());
}

std::vector<std::string> TDesignNode::Strings(std::string_view path) const {
  return StoredStrings(Value(path), Form->CodePage());
}

const TDesignNode* TDesignNode::Linked(std::string_view path) const {
  const std::string_view name = Identifier(path);
  if (name.empty()) return nullptr;
  const TDesignNode* found = Scope != nullptr ? Form->Find(name, Scope) : nullptr;
  return found != nullptr ? found : Form->Find(name);
}

std::string_view TDesignNode::OwnOrAction(std::string_view path) const {
  const std::string_view own = Value(path);
  if (!own.empty()) return own;
  const TDesignNode* action = Linked("Action");
  return action != nullptr && action != this ? action->Value(path) : std::string_view();
}

}  // namespace wrenfold
