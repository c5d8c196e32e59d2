// What the user does with nodes: select, add, delete, move, rename, search, undo.
#include <algorithm>

#include "editor/rkSpcEditor.h"
#include "editor/rkSpcForm.h"
#include "foundation/rkAppUtils.h"
#include "locale/rkLocale.h"
#include "platform/core/text/Format.h"
#include "platform/widgets/Guard.h"
#include "storage/rkD4Add.h"

namespace wrenfold {

namespace {

const TPropInfo* NodeNameOf(const TTreeNode& node) {
  if (node.Dscr.Instance == nullptr) return nullptr;
  const TPropInfo* property =
      GetPropInfo(*node.Dscr.Instance, "NodeName", {tkString, tkLString, tkWString});
  return property != nullptr && property->Access->CanWrite() ? property : nullptr;
}

// A key that no item of the collection has: the class's name for one and a number.
std::string FreshKey(const TCollection& collection, const TPropInfo& key) {
  for (int number = collection.Count();; ++number) {
    const std::string candidate = Format("Item%d", number);
    const bool taken = std::any_of(
        collection.Items().begin(), collection.Items().end(),
        [&](const TCollectionItem* item) { return GetStrProp(*item, key) == candidate; });
    if (!taken) return candidate;
  }
}

}  // namespace

// Rows of the node that is left are stored first; a value that is refused stays as it was.
void TSpcEditor::NodeSelected(TTreeNode* node) {
  if (FBuilding || FClosing || node == FSelected) return;
  StoreRows();
  FSelected = node;
  ShowRows();
  DescribeSelected();
}

void TSpcEditor::SelectNode(TTreeNode* node) {
  FForm->Tree().Select(node);
  NodeSelected(FForm->Tree().Selected());
}

void TSpcEditor::ShowSelected() {
  if (FForm != nullptr) FForm->Tree().ShowNode(FSelected);
}

void TSpcEditor::ShowTopItem() {
  if (FForm != nullptr) FForm->Tree().ShowNode(RootNode());
}

void TSpcEditor::DescribeSelected() {
  if (FForm == nullptr) return;
  if (FSelected == nullptr || FSelected->Instance == nullptr) return FForm->SetPanels({}, {});
  const auto* component = dynamic_cast<const TComponent*>(FSelected->Instance);
  const std::string name = component != nullptr ? component->Name() : FSelected->Text;
  const std::string className = FSelected->Dscr.Instance->ClassName();
  const std::string description =
      name.empty() || name == className ? className : name + ": " + className;
  FForm->SetPanels(' ' + LocaleFormat(sPropertyCount, FRows.Count()), ' ' + description);
}

bool TSpcEditor::AllowChange(TCollection& collection, TCollectionItem* item,
                             TCollNotification action) {
  bool allow = true;
  OnCollectionChanging(this, &collection, item, action, allow);
  return allow;
}

// Nobody looks at the nodes while their items change. The children of the collection's node are
// made anew: their names may hold their places. The change answers which of them is selected then.
void TSpcEditor::ChangeCollection(TTreeNode& collectionNode, const std::function<int()>& change) {
  auto& collection = static_cast<TCollection&>(*collectionNode.Instance);
  StoreRows();
  FBuilding = true;
  ClearRows();
  FSelected = nullptr;
  int select = -1;
  FForm->Tree().setUpdatesEnabled(false);
  FForm->Tree().ChangeNodes([&] {
    Guarded(this, [&] { select = change(); });
    for (const auto& child : collectionNode.Children)
      ForEachNode(*child, [this](TTreeNode& node) {
        FNodes.erase(node.Instance);
        FNodes.erase(node.Dscr.Instance);
      });
    collectionNode.Children.clear();
    for (int i = 0; i < collection.Count(); ++i)
      ProcessItem(*collection.Item(i), collectionNode,
                  NameOfItem(*collection.Item(i), collectionNode));
  });
  FForm->Tree().setUpdatesEnabled(true);
  FBaseline.Map(*GetUpdatingSpc());
  CountAllChanges();
  FSearch.SetTree(FTop.get());
  FBuilding = false;
  const auto& children = collectionNode.Children;
  select = std::min(select, static_cast<int>(children.size()) - 1);
  SelectNode(select >= 0 ? children[static_cast<std::size_t>(select)].get() : &collectionNode);
  FForm->JournalChanged();
}

void TSpcEditor::AddNode(TTreeNode& node) {
  TTreeNode& collectionNode = node.Ident == ciCollection ? node : *node.Parent;
  auto* collection = dynamic_cast<TCollection*>(collectionNode.Instance);
  if (collection == nullptr || !AllowChange(*collection, nullptr, cnAdding)) return;
  TCollectionItem* item = nullptr;
  ChangeCollection(collectionNode, [&] {
    item = collection->Add();
    const TPropInfo* key = KeyProperty(*collection);
    if (item != nullptr && key != nullptr && GetStrProp(*item, *key).empty())
      SetStrProp(*item, *key, FreshKey(*collection, *key));
    OnCollectionChange(this, collection, item, cnAdding);
    return collection->Count() - 1;
  });
  if (item == nullptr) return;
  FJournal.AddAdded(*item, LineOf(*item, sElementAdded));
  FForm->JournalChanged();
}

void TSpcEditor::DeleteNode(TTreeNode& node) {
  if (node.Ident == ciCollection) {
    if (MsgQuestion(LocaleStr(sDeleteAllElementsQuestion)) == mbYes) ClearCollection(node);
    return;
  }
  auto* item = dynamic_cast<TCollectionItem*>(node.Instance);
  if (item == nullptr || item->Collection() == nullptr) return;
  if (MsgQuestion(LocaleStr(sDeleteElementQuestion)) == mbYes) DeleteItem(*item, *node.Parent);
}

void TSpcEditor::ClearCollection(TTreeNode& node) {
  auto& collection = static_cast<TCollection&>(*node.Instance);
  if (!AllowChange(collection, nullptr, cnClearing)) return;
  ChangeCollection(node, [&] {
    FJournal.AddCleared(collection, LineOf(collection, sElementsDeleted));
    collection.Clear();
    OnCollectionChange(this, &collection, nullptr, cnClearing);
    return -1;
  });
}

void TSpcEditor::DeleteItem(TCollectionItem& item, TTreeNode& collectionNode) {
  TCollection& collection = *item.Collection();
  if (!AllowChange(collection, &item, cnDeleting)) return;
  ChangeCollection(collectionNode, [&] {
    const int index = item.Index();
    FJournal.AddDeleted(item, LineOf(item, sElementDeleted));
    collection.Delete(index);
    OnCollectionChange(this, &collection, nullptr, cnDeleting);
    return index;
  });
}

void TSpcEditor::MoveNode(TTreeNode& node, TNodeMotion motion, bool select) {
  auto* item = dynamic_cast<TCollectionItem*>(node.Instance);
  if (item == nullptr || item->Collection() == nullptr) return;
  const int from = item->Index();
  const int to = from + (motion == nmUp ? -1 : 1);
  if (to < 0 || to >= item->Collection()->Count()) return;
  ChangeCollection(*node.Parent, [&] {
    FJournal.AddMoved(*item, from, LineOf(*item, sElementMoved));
    item->SetIndex(to);
    return select ? to : from;
  });
}

bool TSpcEditor::CanRenameNode(const TTreeNode& node) {
  return NodeNameOf(node) != nullptr;
}

bool TSpcEditor::RenameNode(TTreeNode& node, const std::string& name) {
  const TPropInfo* property = NodeNameOf(node);
  if (property == nullptr) return false;
  TPersistent& instance = *node.Dscr.Instance;
  StoreRows();
  const TPropImage before(instance, *property);
  const std::string from = ValueText(instance, *property);
  SetStrProp(instance, *property, name);
  if (before.Matches(instance, *property)) return false;
  FJournal.AddValue(instance, *property, before, LineOf(instance, *property, from));
  if (TControlInfo* row = FRows.FindByProperty(instance, *property)) SetControlData(*row);
  ValueChanged(instance);
  return true;
}

TJournalLine TSpcEditor::LineOf(const TPersistent& instance, const TPropInfo& property,
                                const std::string& from) const {
  const TTreeNode* node = NodeOf(instance);
  const std::string where = node != nullptr ? node->Path() + " / " : std::string();
  return {where + PropertyLabel(instance, property), from, ValueText(instance, property)};
}

TJournalLine TSpcEditor::LineOf(const TPersistent& instance, int textId) const {
  const TTreeNode* node = NodeOf(instance);
  return {node != nullptr ? node->Path() : instance.ClassName(), {}, LocaleStr(textId)};
}

bool TSpcEditor::UndoEntry(int index) {
  if (index < 0 || index >= FJournal.Count() || !FJournal.CanUndo(index)) return false;
  bool done = false;
  if (TCollection* collection = FJournal.ChangedCollection(index)) {
    TTreeNode* node = NodeOf(*collection);
    if (node == nullptr) return false;
    ChangeCollection(*node, [&] {
      const int select = FJournal.Undo(index).Index;
      done = true;
      return select;
    });
  } else {
    Guarded(this, [&] {
      ShowBack(FJournal.Undo(index));
      done = true;
    });
  }
  FForm->JournalChanged();
  return done;
}

bool TSpcEditor::CanUndo() const {
  const bool editing =
      std::any_of(FRows.begin(), FRows.end(), [](const auto& row) { return row->Modified(); });
  return editing || FJournal.LastUndoable() >= 0;
}

// A row that is being edited is stored first: then it is the last change.
bool TSpcEditor::UndoLast() {
  StoreRows();
  return UndoEntry(FJournal.LastUndoable());
}

void TSpcEditor::ShowBack(const TSpcJournal::TUndone& undone) {
  TTreeNode* node = NodeOf(*undone.Instance);
  if (node == nullptr) return;
  if (node != FSelected) SelectNode(node);
  TControlInfo* row = FRows.FindByProperty(*undone.Instance, *undone.Property);
  if (row == nullptr) return ValueChanged(*undone.Instance);
  row->Before.reset();
  SetControlData(*row);
  ValueStored(*row);
  FForm->Area().ScrollTo(*row);
}

TSpcSearch::TResult TSpcEditor::Search(const std::string& text) {
  StoreRows();
  FSearchText = text;
  const TSpcSearch::TResult result = FSearch.Run(text);
  FHits = result.Hits;
  ApplyFilter();
  if (result.First != nullptr) SelectNode(result.First);
  return result;
}

void TSpcEditor::SetChangedOnly(bool changedOnly) {
  StoreRows();
  FChangedOnly = changedOnly;
  ApplyFilter();
}

// The filter is made of what holds now: what changes later stays in view.
void TSpcEditor::ApplyFilter() {
  const bool searching = !FSearchText.empty();
  TSpcTreeModel::TLetsThrough filter;
  if (searching || FChangedOnly)
    filter = [searching, changed = FChangedOnly](const TTreeNode& node) {
      return (!searching || node.IsHit) && (!changed || node.OwnChanges > 0);
    };
  FForm->Tree().SetFilter(std::move(filter));
  NodeSelected(FForm->Tree().Selected());
  FilterRows();
  FForm->Area().Arrange(&FRows);
}

}  // namespace wrenfold
