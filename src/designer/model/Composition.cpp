#include "designer/model/Composition.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "platform/core/stream/ValueTypes.h"
#include "platform/core/text/SysUtils.h"
#include "project/TextEncoding.h"

namespace wrenfold {

namespace {

struct TCharsetPage {
  std::string_view Charset;
  int CodePage;
};
constexpr TCharsetPage CharsetPages[] = {
    {"ANSI_CHARSET", 1252},   {"RUSSIAN_CHARSET", 1251}, {"EASTEUROPE_CHARSET", 1250},
    {"GREEK_CHARSET", 1253},  {"TURKISH_CHARSET", 1254}, {"HEBREW_CHARSET", 1255},
    {"ARABIC_CHARSET", 1256}, {"BALTIC_CHARSET", 1257},  {"VIETNAMESE_CHARSET", 1258},
};

int CodePageOf(const TDesignNode& root) {
  for (const TCharsetPage& page : CharsetPages)
    if (root.Is("Font.Charset", page.Charset)) return page.CodePage;
  return SystemCodePage();
}

std::uint8_t FlagsOf(const TDesignComponent& component) {
  std::int32_t position = 0;
  return component.FilerFlags(position);
}

// Notes beyond these say the same again.
constexpr std::size_t MaxNotes = 50;

using TLayers = std::vector<const TDesignComponent*>;

}  // namespace

TDesignNode* TComposedForm::Find(std::string_view path, const TDesignNode* scope) const {
  for (;;) {
    const std::size_t dot = path.find('.');
    const auto names = FScopes.find(scope);
    if (names == FScopes.end()) return nullptr;
    const auto found = names->second.find(LowerCase(path.substr(0, dot)));
    if (found == names->second.end()) return nullptr;
    if (dot == std::string_view::npos) return found->second;
    path.remove_prefix(dot + 1);
    scope = found->second;
  }
}

TDesignNode* TComposedForm::NodeOf(const TDesignComponent& component) const {
  const auto found = FByComponent.find(&component);
  return found != FByComponent.end() ? found->second : nullptr;
}

void TComposedForm::AddNote(std::string note) {
  if (FNotes.size() >= MaxNotes || std::ranges::find(FNotes, note) != FNotes.end()) return;
  FNotes.push_back(std::move(note));
}

// Builds the nodes of the furthest ancestor first and lays the files of its descendants over them.
class TComposer {
 public:
  explicit TComposer(TFormCatalog& source)
      : FSource(source), FForm(std::make_unique<TComposedForm>()) {}

  std::unique_ptr<TComposedForm> Compose(const TDesignComponent& root) {
    FOwn = &root;
    const TLayers layers = WithAncestors(root, root.StoredClassName());
    TDesignNode& node = NewNode(nullptr, nullptr, *layers.back());
    FForm->FFree = root.FindValue("LCLVersion").data() != nullptr;
    AddLayers(node, layers, nullptr, 0);
    FForm->FCodePage = CodePageOf(node);
    ResolveAll();
    return std::move(FForm);
  }

 private:
  // The component, then the roots of the forms that it inherits, nearest first.
  TLayers WithAncestors(const TDesignComponent& component, std::string_view className) {
    TLayers layers{&component};
    const TDesignComponent* last = &component;
    std::unordered_set<std::string> seen{LowerCase(className)};
    while ((FlagsOf(*last) & ffInherited) != 0) {
      last = NearestForm(last->StoredClassName(), seen);
      if (last == nullptr) break;
      layers.push_back(last);
    }
    return layers;
  }

  const TDesignComponent* NearestForm(std::string_view className,
                                      std::unordered_set<std::string>& seen) {
    const auto ancestors = FSource.Ancestors(className);
    for (const std::string& ancestor : ancestors) {
      const TDesignComponent* form = FSource.FindForm(ancestor);
      if (form == nullptr) continue;
      if (seen.insert(LowerCase(ancestor)).second) return form;
      FForm->AddNote(fmt::format("{} inherits from itself", ancestor));
      return nullptr;
    }
    FForm->AddNote(fmt::format("{} inherits from {}, whose form is not known", className,
                               ancestors.empty() ? "a form" : ancestors.front()));
    return nullptr;
  }

  TDesignNode& NewNode(TDesignNode* parent, TDesignNode* scope, const TDesignComponent& first) {
    TDesignNode& node = FForm->FStore.emplace_back();
    node.Form = FForm.get();
    node.Parent = parent;
    node.Scope = scope;
    node.FName = first.Name();
    if (parent != nullptr) parent->Children.push_back(&node);
    FForm->FNodes.push_back(&node);
    if (!node.FName.empty()) FForm->FScopes[scope].emplace(LowerCase(node.FName), &node);
    return node;
  }

  // The furthest ancestor stands last.
  void AddLayers(TDesignNode& node, const TLayers& layers, TDesignNode* scope, int depth) {
    for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer)
      AddLayer(node, **layer, scope, depth);
  }

  void AddLayer(TDesignNode& node, const TDesignComponent& component, TDesignNode* scope,
                int depth) {
    node.Layers.push_back(&component);
    node.FName = component.Name().empty() ? node.FName : component.Name();
    if (BelongsToForm(component)) {
      node.Own = &component;
      FForm->FByComponent.emplace(&component, &node);
    }
    if (depth >= MaxDrawnNesting && !component.Children().empty())
      return FForm->AddNote(
          fmt::format("Components nested deeper than {} are left out", MaxDrawnNesting));
    for (const TDesignComponent* child : component.Children())
      AddChild(node, *child, scope, depth + 1);
  }

  void AddChild(TDesignNode& parent, const TDesignComponent& child, TDesignNode* scope, int depth) {
    const std::uint8_t flags = FlagsOf(child);
    TDesignNode* known = (flags & ffInherited) != 0 ? FForm->Find(child.Name(), scope) : nullptr;
    if (known != nullptr && known->Parent != nullptr && !known->Layers.empty()) {
      MoveTo(*known, child);
      return AddLayer(*known, child, known->IsInline ? known : scope, depth);
    }
    if (FForm->FNodes.size() >= MaxDrawnComponents)
      return FForm->AddNote(
          fmt::format("Components beyond the first {} are left out", MaxDrawnComponents));
    TDesignNode& node = NewNode(&parent, scope, child);
    if ((flags & ffInline) != 0) return AddFrame(node, child, depth);
    AddLayer(node, child, scope, depth);
  }

  void AddFrame(TDesignNode& node, const TDesignComponent& component, int depth) {
    node.IsInline = true;
    const std::string className(component.StoredClassName());
    const std::string folded = LowerCase(className);
    const TDesignComponent* frame = FSource.FindForm(className);
    if (frame == nullptr) {
      // Controls that are made of others are stored like frames.
      if (FindClassRow(className) == nullptr)
        FForm->AddNote(
            fmt::format("The frame {} of class {} is not known", node.Name(), className));
    } else if (std::ranges::find(FOpenFrames, folded) != FOpenFrames.end()) {
      FForm->AddNote(fmt::format("{} holds itself", className));
    } else {
      FOpenFrames.push_back(folded);
      AddLayers(node, WithAncestors(*frame, className), &node, depth);
      FOpenFrames.pop_back();
    }
    AddLayer(node, component, &node, depth);
  }

  // A stored position counts among the children of the parent.
  static void MoveTo(TDesignNode& node, const TDesignComponent& component) {
    std::int32_t position = 0;
    if ((component.FilerFlags(position) & ffChildPos) == 0 || position < 0) return;
    std::vector<TDesignNode*>& siblings = node.Parent->Children;
    // Putting so many in order would take longer than anybody waits.
    constexpr std::size_t mostOrdered = 10'000;
    if (siblings.size() > mostOrdered) return;
    std::erase(siblings, &node);
    const std::size_t index =
        std::min<std::size_t>(static_cast<std::size_t>(position), siblings.size());
    siblings.insert(siblings.begin() + static_cast<std::ptrdiff_t>(index), &node);
  }

  bool BelongsToForm(const TDesignComponent& component) const {
    return &component == FOwn || component.Owner() == FOwn;
  }

  // Children first: the root is told by them where nothing else tells.
  void ResolveAll() {
    for (TDesignNode* node : FForm->FNodes) {
      node->Class = KnownClass(*node);
      // A root is no component of another, whatever its class is called ("TOpenDialog").
      if (node->IsRoot()) node->Class = IsRootClass(node->Class) ? node->Class : LikeAForm();
      else if (!node->Parent->Visual()) node->Class = PartOfAnother();
      else if (node->IsInline) ResolveFrame(*node);
      else ResolveComponent(*node);
    }
    ResolveRoot(FForm->Root());
  }

  TResolvedClass KnownClass(const TDesignNode& node) {
    const std::string className(node.ClassName());
    auto [known, isNew] = FResolved.try_emplace(LowerCase(className));
    if (isNew) known->second = ResolveClass(node.ClassName(), FSource.Ancestors(className));
    return known->second;
  }

  static const TClassRow* FormRow() { return FindClassRow("TForm"); }
  static TResolvedClass LikeAForm() { return {FormRow(), TResolution::ByLikeness, "root"}; }
  static bool IsRootClass(const TResolvedClass& known) {
    return known.Row != nullptr && IsRootLook(known.Row->Look);
  }
  static TResolvedClass PartOfAnother() {
    return {FindClassRow("TAction"), TResolution::ByLikeness, "part of another"};
  }

  static void ResolveComponent(TDesignNode& node) {
    if (node.Class.How == TResolution::ByClass && node.Class.Row != nullptr) return;
    const bool seen = LooksVisual(node);
    if (node.Class.Row == nullptr) {
      node.Class = ResolveByContents(node, seen);
    } else if (node.Visual() && !seen && node.Look() != TLook::Page) {
      node.Class = ResolveByContents(node, false);
    } else if (!node.Visual() && HasPlace(node)) {
      node.Class = ResolveByContents(node, true);
    }
  }

  // Stored of controls alone: some dialogs have a size, what is part of another has none.
  static bool HasPlace(const TDesignNode& node) {
    return node.Has("TabOrder") ||
           (node.Look() == TLook::Hidden && node.Has("Width") && node.Has("Height"));
  }

  // Components without a place on the form lie on its root and store where their icon is, no more.
  static bool LooksVisual(const TDesignNode& node) {
    constexpr std::string_view evidence[] = {"Width",       "Height",    "TabOrder",   "Align",
                                             "Anchors",     "Text",      "Color",      "BackColor",
                                             "ParentColor", "Font.Name", "ParentFont", "Cursor"};
    const bool placed = node.Has("Left") || node.Has("Top");
    if (placed && !node.Parent->IsRoot() && !node.Parent->IsInline) return true;
    return std::ranges::any_of(evidence, [&](std::string_view path) { return node.Has(path); });
  }

  static bool IsRootLook(TLook look) {
    return look == TLook::Form || look == TLook::Frame || look == TLook::DataModule;
  }

  // The root is what its ancestors say, else what only one kind of root stores.
  static void ResolveRoot(TDesignNode& node) {
    if (node.Class.How == TResolution::ByClass && IsRootLook(node.Look())) return;
    node.Class = {FindClassRow(LikelyRootClass(node)), TResolution::ByLikeness, "root"};
  }

  static bool HasAny(const TDesignNode& node, std::initializer_list<std::string_view> paths) {
    return std::ranges::any_of(paths, [&](std::string_view path) { return node.Has(path); });
  }

  static std::string_view LikelyRootClass(const TDesignNode& node) {
    if (HasAny(node, {"HorizontalOffset", "VerticalOffset"})) return "TDataModule";
    if (HasAny(node, {"BorderStyle", "BorderIcons", "Caption", "Position", "FormStyle"}))
      return "TForm";
    if (HasAny(node, {"TabOrder", "DesignLeft", "DesignTop"})) return "TFrame";
    const bool holdsControls = std::ranges::any_of(
        node.Children, [](const TDesignNode* child) { return child->Visual(); });
    if (holdsControls && !HasAny(node, {"ClientWidth", "ClientHeight"})) return "TFrame";
    if (holdsControls || HasAny(node, {"ClientWidth", "ClientHeight", "Color", "LCLVersion"}))
      return "TForm";
    return "TDataModule";
  }

  static void ResolveFrame(TDesignNode& node) {
    if (node.Class.Row != nullptr && !IsRootLook(node.Look())) return;
    const bool composed = node.Layers.size() > 1;
    node.Class = {FindClassRow("TFrame"), composed ? TResolution::ByClass : TResolution::ByLikeness,
                  "inline"};
  }

  TFormCatalog& FSource;
  std::unique_ptr<TComposedForm> FForm;
  const TDesignComponent* FOwn = nullptr;
  std::vector<std::string> FOpenFrames;  // folded class names of the frames being composed
  std::unordered_map<std::string, TResolvedClass> FResolved;
};

std::unique_ptr<TComposedForm> ComposeForm(const TDesignComponent& root, TFormCatalog& source) {
  return TComposer(source).Compose(root);
}

}  // namespace wrenfold
