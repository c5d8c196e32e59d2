#include "platform/core/stream/DesignComponent.h"

#include <algorithm>

#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/Reader.h"
#include "platform/core/stream/Writer.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

const TTypeInfo& TDesignComponent::ClassInfo() {
  static const TTypeInfo info =
      Publish<TDesignComponent>("TDesignComponent", TComponent::ClassInfo());
  return info;
}

TDesignComponent::TDesignComponent(TComponent* owner)
    : TDesignComponent(owner, std::make_shared<TDesignBytes>(std::string())) {}

TDesignComponent::TDesignComponent(TComponent* owner, std::shared_ptr<TDesignBytes> bytes)
    : TComponent(owner), FBytes(std::move(bytes)) {}

TDesignComponent::~TDesignComponent() {
  // A form that goes as a whole takes everything with it.
  if (Owner() == nullptr || Owner()->ComponentState().Contains(csDestroying)) return;
  SetParentComponent(nullptr);
  std::vector<TDesignComponent*> inside = std::move(FChildren);
  for (std::size_t i = 0; i < inside.size(); ++i) {
    inside[i]->FParent = nullptr;
    const std::vector<TDesignComponent*> deeper = std::move(inside[i]->FChildren);
    inside.insert(inside.end(), deeper.begin(), deeper.end());
  }
  for (TDesignComponent* component : inside) delete component;
}

std::string_view TDesignComponent::FindValue(std::string_view path) const {
  for (const TDesignProperty& property : FProperties)
    if (EqualText(property.Path, path)) return property.Value;
  return {};
}

void TDesignComponent::SetValue(std::string_view path, std::string_view value) {
  const std::string_view kept = FBytes->Keep(value);
  for (TDesignProperty& property : FProperties) {
    if (!EqualText(property.Path, path)) continue;
    property.Value = kept;
    return;
  }
  FProperties.push_back({FBytes->Keep(path), kept});
}

bool TDesignComponent::RemoveValue(std::string_view path) {
  return std::erase_if(FProperties, [&](const TDesignProperty& property) {
           return EqualText(property.Path, path);
         }) != 0;
}

void TDesignComponent::InsertValue(std::size_t index, std::string_view path,
                                   std::string_view value) {
  const auto place = static_cast<std::ptrdiff_t>(std::min(index, FProperties.size()));
  FProperties.insert(FProperties.begin() + place, {FBytes->Keep(path), FBytes->Keep(value)});
}

void TDesignComponent::SetParentComponent(TComponent* parent) {
  if (FParent != nullptr) std::erase(FParent->FChildren, this);
  FParent = dynamic_cast<TDesignComponent*>(parent);
  if (FParent != nullptr) FParent->FChildren.push_back(this);
}

void TDesignComponent::SetChildIndex(std::size_t index) {
  if (FParent == nullptr) return;
  std::vector<TDesignComponent*>& all = FParent->FChildren;
  std::erase(all, this);
  all.insert(all.begin() + static_cast<std::ptrdiff_t>(std::min(index, all.size())), this);
}

void TDesignComponent::WriteHead(TByteWriter& stream) const {
  if (FPrefix != 0) stream.WriteByte(FPrefix);
  stream.WriteBytes(FStoredPosition);
  stream.WriteShortString(FClassName);
  stream.WriteShortString(Name());
}

void TDesignComponent::GetChildren(const std::function<void(TComponent&)>& visit, TComponent*) {
  for (TDesignComponent* child : FChildren) visit(*child);
}

std::uint8_t TDesignComponent::FilerFlags(std::int32_t& childPosition) const {
  childPosition = FChildPosition;
  return FPrefix & ~FilerPrefixMark;
}

// Values go out as they came in, whatever they are.
void TDesignComponent::DefineProperties(TFiler& filer) {
  for (const TDesignProperty& property : FProperties) {
    const std::string_view value = property.Value;
    filer.DefineProperty(
        property.Path, nullptr, [value](TWriter& writer) { writer.WriteRawValue(value); }, true);
  }
}

bool TDesignComponent::TakeUnknownProperty(std::string_view path, std::string_view value) {
  SetValue(path, value);
  return true;
}

// Reads without recursion: the child lists that are open are the parents of the last component.
class TDesignReader {
 public:
  explicit TDesignReader(std::string stream)
      : FBytes(std::make_shared<TDesignBytes>(std::move(stream))), FReader(FBytes->Stream()) {}

  std::unique_ptr<TDesignComponent> Read() {
    std::unique_ptr<TDesignComponent> root(new TDesignComponent(nullptr, FBytes));
    ReadTree(*root, *root);
    return root;
  }

  TDesignComponent* ReadInto(TDesignComponent& root, TDesignComponent& parent) {
    std::unique_ptr<TDesignComponent> top(new TDesignComponent(&root, FBytes));
    top->SetParentComponent(&parent);
    ReadTree(*top, root);
    ExpectEnd();
    return top.release();
  }

  std::size_t Position() const { return FReader.Position(); }
  void ExpectEnd() const {
    if (!FReader.AtEnd()) FReader.Fail("the end of the stream");
  }

 private:
  void ReadTree(TDesignComponent& top, TDesignComponent& owner) {
    FReader.ReadSignature();
    ReadContents(top);
    for (TDesignComponent* current = &top; current != top.FParent;) {
      if (FReader.SkipEndOfList("a component or the end of the child list")) {
        current = current->FParent;
        continue;
      }
      auto* child = new TDesignComponent(&owner, FBytes);
      child->FParent = current;
      current->FChildren.push_back(child);
      ReadContents(*child);
      current = child;
    }
  }

  void ReadContents(TDesignComponent& component) {
    component.FStoredIndex = FCount++;
    component.FPrefix = FReader.ReadFilerFlags();
    if (component.FPrefix & ffChildPos) {
      const std::size_t start = FReader.Position();
      component.FChildPosition = static_cast<std::int32_t>(FReader.ReadIntegerValue());
      component.FStoredPosition = FReader.Since(start);
    }
    component.FClassName = FReader.ReadShortString("a class name");
    component.TakeName(std::string(FReader.ReadShortString("a component name")));
    FProperties.clear();
    while (!FReader.SkipEndOfList("a property or the end of the properties")) {
      const std::string_view path = FReader.ReadShortString("a property name");
      const std::size_t start = FReader.Position();
      FReader.SkipValue();
      FProperties.push_back({path, FReader.Since(start)});
    }
    component.FProperties.assign(FProperties.begin(), FProperties.end());
  }

  std::shared_ptr<TDesignBytes> FBytes;
  TByteReader FReader;
  std::size_t FCount = 0;                    // of the components read
  std::vector<TDesignProperty> FProperties;  // of one component; its memory serves them all
};

std::unique_ptr<TDesignComponent> ReadDesignForm(std::string stream, std::size_t* consumed) {
  TDesignReader reader(std::move(stream));
  auto root = reader.Read();
  if (consumed != nullptr) *consumed = reader.Position();
  else reader.ExpectEnd();
  return root;
}

TDesignComponent* AddDesignComponent(std::string stream, TDesignComponent& root,
                                     TDesignComponent& parent) {
  return TDesignReader(std::move(stream)).ReadInto(root, parent);
}

class TDesignWriter {
 public:
  explicit TDesignWriter(std::size_t size) : FBytes(size) {}

  // Without recursion: a stack of components and the next child of each.
  std::string Write(const TDesignComponent& root) {
    FBytes.WriteSignature();
    std::vector<std::pair<const TDesignComponent*, std::size_t>> open;
    WriteContents(root);
    open.emplace_back(&root, 0);
    while (!open.empty()) {
      auto& [component, next] = open.back();
      if (next == component->FChildren.size()) {
        FBytes.WriteEndOfList();
        open.pop_back();
        continue;
      }
      const TDesignComponent* child = component->FChildren[next++];
      WriteContents(*child);
      open.emplace_back(child, 0);
    }
    return FBytes.ToString();
  }

 private:
  void WriteContents(const TDesignComponent& component) {
    component.WriteHead(FBytes);
    for (const TDesignProperty& property : component.FProperties) {
      FBytes.WriteShortString(property.Path);
      FBytes.WriteBytes(property.Value);
    }
    FBytes.WriteEndOfList();
  }

  TByteWriter FBytes;
};

std::string WriteDesignForm(const TDesignComponent& root) {
  return TDesignWriter(root.FBytes->Stream().size() + 64).Write(root);
}

}  // namespace wrenfold
