// How the edited object becomes a tree: nodes, rows, names.
#include <algorithm>

#include "editor/rkSpcEditor.h"
#include "locale/rkLocale.h"
#include "platform/core/text/Format.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/ImageList.h"
#include "spec/rkSpcConst.h"
#include "storage/rkDataProps.h"

namespace wrenfold {

namespace {

constexpr const char* NodeNameProperty = "NodeName";

// The images of a node by what it is; a client's handler may place others.
struct TNodeImages {
  TBaseClassIdent Ident;
  int Image, Selected;
};
constexpr TNodeImages NodeImages[] = {
    {ciSpcItem, 12, 13}, {ciItem, 12, 13}, {ciCollection, 14, 14}};
constexpr TNodeImages OtherImages{ciUnknown, 10, 11};

const INodeInfo* NodeInfoOf(const TPersistent& instance) {
  return dynamic_cast<const INodeInfo*>(&instance);
}

// The object whose properties the node of the instance shows: its own, or those of the object that
// it says it stands for.
TPersistent& ShownObject(TPersistent& instance) {
  const INodeInfo* info = NodeInfoOf(instance);
  const std::string name = info != nullptr ? info->GetNodePropName() : std::string();
  const TPropInfo* property = name.empty() ? nullptr : instance.GetClassInfo().FindProperty(name);
  if (property == nullptr || property->Kind() != tkClass) return instance;
  TPersistent* object = property->Access->GetObject(instance);
  return object != nullptr ? *object : instance;
}

bool IsString(const TPropInfo& property) {
  constexpr TTypeKinds strings{tkString, tkLString, tkWString};
  return strings.Contains(property.Kind());
}

const TTypeInfo* EnumerationOf(const TPropInfo& property) {
  if (property.Kind() == tkEnumeration) return &*property.PropType;
  return property.Kind() == tkSet ? property.PropType->ElementType() : nullptr;
}

std::string NumberedName(const std::string& name, int index) {
  return Format("%s[%d]", name, index);
}

}  // namespace

const TSpcEditor::TClassPlan& TSpcEditor::PlanOf(const TTypeInfo& info) const {
  const auto [place, isNew] = FPlans.try_emplace(&info);
  TClassPlan& plan = place->second;
  if (!isNew) return plan;
  for (const TPropInfo* property : info.Properties())
    (FInvisible.Contains(info.Name() + '.' + property->Name) ? plan.LeftOut : plan.Properties)
        .push_back(property);
  if (Options.Contains(eoSortProps))
    std::stable_sort(plan.Properties.begin(), plan.Properties.end(),
                     [](const auto* left, const auto* right) {
                       return UpperCase(left->Name) < UpperCase(right->Name);
                     });
  for (const TPropInfo* property : plan.Properties) plan.Rules.push_back(RowRule(*property));
  return plan;
}

TLeavesOut TSpcEditor::LeavesOut() const {
  if (FInvisible.Empty()) return {};
  return [this](const TPersistent& instance, const TPropInfo& property) {
    const auto& leftOut = PlanOf(instance.GetClassInfo()).LeftOut;
    return std::find(leftOut.begin(), leftOut.end(), &property) != leftOut.end();
  };
}

void TSpcEditor::BuildTree() {
  FPlans.clear();
  FInvisible.Assign(*InvisibleProps);
  FNodes.clear();
  FSelected = nullptr;
  FTop = std::make_unique<TTreeNode>();
  TPersistent* spc = GetUpdatingSpc();
  if (spc == nullptr) return;
  ProcessValue(*spc, *FTop, RootText());
}

// The object's own name, else the bare name of its file, else its class.
std::string TSpcEditor::RootText() const {
  const TPersistent& spc = *GetUpdatingSpc();
  const auto* component = dynamic_cast<const TComponent*>(&spc);
  if (component != nullptr && !component->Name().empty()) return component->Name();
  const std::string bareName =
      FreeMode() ? std::string() : ChangeFileExt(ExtractFileName(FFileName), "");
  const std::string other = bareName.empty() ? spc.ClassName() : bareName;
  return SimpleMode ? other : FindNodeName(spc, other);
}

TTreeNode* TSpcEditor::RootNode() const {
  return FTop != nullptr && !FTop->Children.empty() ? FTop->Children.front().get() : nullptr;
}

TTreeNode* TSpcEditor::FindNode(const TPersistent* instance) const {
  const auto found = FNodes.find(instance);
  return found != FNodes.end() ? found->second : nullptr;
}

TTreeNode* TSpcEditor::ProcessItemEx(TBaseClassIdent ident, TTreeNode& parent,
                                     const std::string& name) {
  TTreeNode* node = parent.AddChild(name);
  node->Ident = ident;
  return node;
}

TTreeNode* TSpcEditor::AddInstanceNode(TPersistent& instance, TTreeNode& parent,
                                       const std::string& name) {
  TTreeNode* node = ProcessItemEx(GetInitData().GetInstanceID(&instance), parent, name);
  node->Instance = &instance;
  node->Dscr.Instance = &ShownObject(instance);
  FNodes[&instance] = node;
  FNodes[node->Dscr.Instance] = node;
  PlaceNodeImages(*node, node->Ident, instance);
  return node;
}

TTreeNode* TSpcEditor::ProcessItem(TPersistent& instance, TTreeNode& parent,
                                   const std::string& name) {
  TTreeNode* node = AddInstanceNode(instance, parent, name);
  ProcessProperties(*node->Dscr.Instance, *node);
  return node;
}

void TSpcEditor::ProcessCollection(TCollection& collection, TTreeNode& parent,
                                   const std::string& name) {
  TTreeNode* node = AddInstanceNode(collection, parent, name);
  ProcessProperties(collection, *node);
  node->Children.reserve(static_cast<std::size_t>(collection.Count()));
  for (int i = 0; i < collection.Count(); ++i)
    ProcessItem(*collection.Item(i), *node, NameOfItem(*collection.Item(i), *node));
}

void TSpcEditor::ProcessValue(TPersistent& value, TTreeNode& parent, const std::string& name) {
  if (auto* collection = dynamic_cast<TCollection*>(&value))
    return ProcessCollection(*collection, parent, name);
  ProcessItem(value, parent, name);
}

void TSpcEditor::ProcessProperties(TPersistent& instance, TTreeNode& node) {
  const bool hidesName = node.Ident == ciSpcObject || node.Ident == ciObject;
  const TClassPlan& plan = PlanOf(instance.GetClassInfo());
  node.Dscr.Rows.reserve(plan.Properties.size());
  for (std::size_t i = 0; i < plan.Properties.size(); ++i) {
    const TPropInfo* property = plan.Properties[i];
    const bool hasRule = plan.Rules[i] != nullptr;
    if (property->Kind() == tkClass && ProcessObjectProperty(instance, *property, hasRule, node))
      continue;
    if (hidesName && IsString(*property) && EqualText(property->Name, NodeNameProperty)) continue;
    if (hasRule || BeforeCreateControl) node.Dscr.Rows.push_back({property, &instance});
  }
}

// Answers whether the property's object is a node. An object that is a node already (it leads back,
// or is shared) is shown there alone.
bool TSpcEditor::ProcessObjectProperty(TPersistent& instance, const TPropInfo& property,
                                       bool hasRule, TTreeNode& node) {
  TPersistent* value = property.Access->GetObject(instance);
  const TBaseClassIdent ident = GetInitData().GetInstanceID(value);
  const bool isRow = ident == ciUnknown || (ident == ciObject && hasRule) ||
                     (ident == ciComponent && !Options.Contains(eoExpandCompProps));
  if (isRow) return false;
  if (FNodes.contains(value)) return true;
  const std::string label = PropertyLabel(instance, property);
  ProcessValue(*value, node, SimpleMode ? property.Name : FindNodeName(*value, label));
  node.Children.back()->Property = &property;
  return true;
}

std::string TSpcEditor::NameOfItem(TCollectionItem& item, const TTreeNode& collectionNode) const {
  const int index = item.Index();
  const std::string defaultName = NumberedName(collectionNode.Text, index + 1);
  if (SimpleMode) return defaultName;
  return FindItemNodeName(item, item.Collection()->ClassName(), defaultName, index + 1);
}

std::string TSpcEditor::GetNodeName(const TPersistent& instance) {
  const INodeInfo* info = NodeInfoOf(instance);
  return info != nullptr ? info->GetNodeName() : std::string();
}

void TSpcEditor::SetNodeName(TPersistent&, const std::string&) {
  throw ESpcEditorError(LocaleStr(sOperationNotSupported));
}

std::string TSpcEditor::FindNodeName(const TPersistent& instance,
                                     const std::string& defaultName) const {
  return FindNodeNameEx(instance, instance.ClassName(), defaultName);
}

std::string TSpcEditor::FindNodeNameEx(const TPersistent& instance, const std::string& section,
                                       const std::string& defaultName) const {
  const std::string name = GetNodeName(instance);
  if (name.empty()) return defaultName;
  const INodeInfo* info = NodeInfoOf(instance);
  return info == nullptr || info->NeedsTranslate() ? TranslateEx(section, name, name) : name;
}

std::string TSpcEditor::FindItemNodeName(const TPersistent& instance, const std::string& section,
                                         const std::string& defaultName, int index) const {
  const std::string name = FindNodeNameEx(instance, section, defaultName);
  const auto* itemInfo = dynamic_cast<const INodeOfItemInfo*>(&instance);
  const bool iterates = itemInfo != nullptr && itemInfo->NeedsIterate();
  return name != defaultName && iterates ? NumberedName(name, index) : name;
}

std::string TSpcEditor::Translate(const std::string& section, const std::string& ident) const {
  return TranslateEx(section, ident, ident);
}

std::string TSpcEditor::TranslateEx(const std::string& section, const std::string& ident,
                                    const std::string& defaultText) const {
  return FTranslations.ReadString(section, ident, defaultText);
}

void TSpcEditor::TranslateEnumNames(TStrings& names, const std::string& section) const {
  for (int i = 0; i < names.Count(); ++i) names.Put(i, Translate(section, names[i]));
}

std::string TSpcEditor::CaptionOf(const TPersistent& instance, const TPropInfo& property) const {
  if (SimpleMode) return property.Name;
  for (const TTypeInfo* info = &instance.GetClassInfo(); info != nullptr; info = info->Parent()) {
    const std::string text = TranslateEx(info->Name(), property.Name, {});
    if (!text.empty()) return text;
  }
  return property.Name;
}

std::string TSpcEditor::PropertyLabel(const TPersistent& instance,
                                      const TPropInfo& property) const {
  return ReplaceAll(CaptionOf(instance, property), SPseudoNewLine(), " ");
}

std::string TSpcEditor::ValueText(const TPersistent& instance, const TPropInfo& property) const {
  return PropertyAsShownText(instance, property, RowContext(nullptr));
}

// A name that could be a value, raw and as it is shown, finds the row that could have it.
TNodeTexts TSpcEditor::TextsOf(const TTreeNode& node) const {
  auto& plan = const_cast<TClassPlan&>(PlanOf(node.Dscr.Instance->GetClassInfo()));
  if (plan.Names.empty())
    for (const TInstRow& row : node.Dscr.Rows) {
      plan.Names += '\n' + row.Property->Name + '\n' + PropertyLabel(*row.Instance, *row.Property);
      const TTypeInfo* enumeration = EnumerationOf(*row.Property);
      if (enumeration == nullptr || enumeration == &TypeInfoOf<bool>()) continue;
      for (const std::string& name : enumeration->EnumNames())
        plan.ValueNames += '\n' + name + '\n' + Translate(enumeration->Name(), name);
    }
  TNodeTexts texts{node.Text + plan.Names, plan.ValueNames};
  for (const TInstRow& row : node.Dscr.Rows)
    texts.Values += '\n' + ValueText(*row.Instance, *row.Property);
  return texts;
}

void TSpcEditor::PlaceNodeImages(TTreeNode& node, TBaseClassIdent ident, TPersistent& instance) {
  const TNodeImages* images = &OtherImages;
  for (const TNodeImages& known : NodeImages)
    if (known.Ident == ident) images = &known;
  PlaceTreeNodeImage(node, niiImageIndex, images->Image);
  PlaceTreeNodeImage(node, niiSelectedIndex, images->Selected);
  // A node shows a picture only when a handler places one.
  node.Images[niiImageIndex] = node.Images[niiSelectedIndex] = -1;
  DoPlaceNodeImages(node, ident, instance);
}

void TSpcEditor::DoPlaceNodeImages(TTreeNode& node, TBaseClassIdent ident, TPersistent& instance) {
  OnPlaceNodeImage(this, &node, ident, &instance, PlaceTreeNodeImage);
}

void TSpcEditor::PlaceTreeNodeImage(TTreeNode& node, TNodeImageIndex type, int index) {
  if (index != -1) node.Images[type] = index;
}

int TSpcEditor::AddNewImage(const QIcon& picture) {
  return picture.isNull() ? -1 : FImages->Add(picture);
}

// The text of a node follows its object: a name that was changed, an index, another language.
void TSpcEditor::RenewTexts(TTreeNode& node) {
  auto* item = dynamic_cast<TCollectionItem*>(node.Instance);
  const bool isItem =
      item != nullptr && node.Parent != nullptr && node.Parent->Ident == ciCollection;
  if (isItem) node.Text = NameOfItem(*item, *node.Parent);
  else if (node.Instance != nullptr && node.Property != nullptr && !SimpleMode)
    node.Text =
        FindNodeName(*node.Instance, PropertyLabel(*node.Parent->Dscr.Instance, *node.Property));
  else if (node.Instance != nullptr && node.Parent == FTop.get()) node.Text = RootText();
  FSearch.Forget(node);
  for (const auto& child : node.Children) RenewTexts(*child);
}

}  // namespace wrenfold
