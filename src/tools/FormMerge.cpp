#include "tools/FormMerge.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <deque>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "platform/core/stream/Bytes.h"
#include "platform/core/text/SysUtils.h"
#include "tools/ValueMerge.h"

namespace wrenfold {
namespace {

// One value: what moves a control changes some of them.
constexpr std::array<std::string_view, 4> BoundsPaths = {"Left", "Top", "Width", "Height"};

enum TSide : std::uint8_t { sdBase, sdOurs, sdTheirs };
constexpr std::size_t SideCount = 3;

// A component on the three sides; null where it is not there.
struct TRow {
  std::array<const TDesignComponent*, SideCount> On{};
  TDesignComponent* Ours = nullptr;

  bool Has(TSide side) const { return On[side] != nullptr; }
  bool IsEverywhere() const { return Has(sdBase) && Has(sdOurs) && Has(sdTheirs); }
};

const TDesignComponent* ParentOf(const TDesignComponent* component) {
  return static_cast<const TDesignComponent*>(component->GetParentComponent());
}

std::uint8_t FlagsOf(const TDesignComponent& component) {
  std::int32_t position = 0;
  return component.FilerFlags(position);
}

bool SameHead(const TDesignComponent& a, const TDesignComponent& b) {
  return FlagsOf(a) == FlagsOf(b) && EqualText(a.StoredClassName(), b.StoredClassName());
}

bool SameProperties(const TDesignComponent& a, const TDesignComponent& b) {
  const auto covers = [](const TDesignComponent& x, const TDesignComponent& y) {
    return std::all_of(x.Properties().begin(), x.Properties().end(), [&](const auto& property) {
      return SameValue(property.Value, y.FindValue(property.Path));
    });
  };
  return a.Properties().size() == b.Properties().size() && covers(a, b);
}

std::size_t IndexInParent(const TDesignComponent& component) {
  const auto& siblings = ParentOf(&component)->Children();
  return static_cast<std::size_t>(std::find(siblings.begin(), siblings.end(), &component) -
                                  siblings.begin());
}

// All components of a form, parents first.
std::vector<const TDesignComponent*> AllOf(const TDesignComponent& root) {
  std::vector<const TDesignComponent*> all;
  std::vector<const TDesignComponent*> open{&root};
  while (!open.empty()) {
    const TDesignComponent* component = open.back();
    open.pop_back();
    all.push_back(component);
    open.insert(open.end(), component->Children().rbegin(), component->Children().rend());
  }
  return all;
}

// Which components of the three forms are the same one.
class TMatching {
 public:
  TMatching(const TDesignComponent* base, TDesignComponent& ours, const TDesignComponent& theirs) {
    TRow& root = FRows.emplace_back();
    root.On = {base, &ours, &theirs};
    for (std::size_t side = 0; side < SideCount; ++side)
      if (root.On[side] != nullptr) FRowOf[root.On[side]] = &root;
    if (base != nullptr) Add(sdBase, *base);
    Add(sdOurs, ours);
    Add(sdTheirs, theirs);
    for (TRow& row : FRows) row.Ours = const_cast<TDesignComponent*>(row.On[sdOurs]);
  }

  std::deque<TRow>& Rows() { return FRows; }
  TRow* RowOf(const TDesignComponent* component) const {
    const auto found = FRowOf.find(component);
    return found != FRowOf.end() ? found->second : nullptr;
  }
  void Place(TRow& row, TDesignComponent& ours) {
    row.On[sdOurs] = row.Ours = &ours;
    FRowOf[&ours] = &row;
  }

 private:
  using TKeys = std::unordered_map<const TDesignComponent*, std::string>;

  // Names are looked up in the form; those inside a frame in the frame. What has no name goes by
  // its parent, its class and its number among the like.
  static TKeys KeysOf(const std::vector<const TDesignComponent*>& all) {
    TKeys keys, scopes;
    std::map<std::string, int> counts;
    for (const TDesignComponent* component : all) {
      const TDesignComponent* parent = ParentOf(component);
      if (parent == nullptr) continue;
      const std::string& scope = scopes[parent];
      std::string& key = keys[component];
      if (component->Name().empty()) {
        key = fmt::format("{}\n{}", keys[parent], component->StoredClassName());
        key += fmt::format("\n{}", counts[key]++);
      } else {
        key = scope + LowerCase(component->Name());
      }
      scopes[component] = (FlagsOf(*component) & ffInline) != 0 ? key + '\n' : scope;
    }
    return keys;
  }

  void Add(TSide side, const TDesignComponent& root) {
    const std::vector<const TDesignComponent*> all = AllOf(root);
    const TKeys keys = KeysOf(all);
    std::vector<const TDesignComponent*> added;
    for (const TDesignComponent* component : all) {
      if (component == &root) continue;
      const auto found = FByKey.find(keys.at(component));
      if (found == FByKey.end() || found->second->Has(side)) added.push_back(component);
      else Put(*found->second, side, component);
    }
    if (side != sdBase) TakeRenamed(side, added);
    for (const TDesignComponent* component : added) {
      TRow& row = FRows.emplace_back();
      Put(row, side, component);
      FByKey.try_emplace(keys.at(component), &row);
    }
  }

  void Put(TRow& row, TSide side, const TDesignComponent* component) {
    row.On[side] = component;
    FRowOf[component] = &row;
  }

  // A component that is gone and a new one that is the same but for the name.
  void TakeRenamed(TSide side, std::vector<const TDesignComponent*>& added) {
    for (TRow& row : FRows) {
      if (!row.Has(sdBase) || row.Has(side) || added.empty()) continue;
      const TDesignComponent* found = FindRenamed(row, side, added);
      if (found == nullptr) continue;
      Put(row, side, found);
      std::erase(added, found);
    }
  }

  const TDesignComponent* FindRenamed(const TRow& row, TSide side,
                                      const std::vector<const TDesignComponent*>& added) const {
    const TDesignComponent& before = *row.On[sdBase];
    const TRow* parent = RowOf(ParentOf(&before));
    std::vector<const TDesignComponent*> like;
    for (const TDesignComponent* component : added)
      if (RowOf(ParentOf(component)) == parent && SameHead(before, *component) &&
          SameProperties(before, *component))
        like.push_back(component);
    if (like.size() <= 1 && LikeGone(before, side) == 1) return like.empty() ? nullptr : like[0];
    const std::size_t index = IndexInParent(before);
    for (const TDesignComponent* component : like)
      if (IndexInParent(*component) == index) return component;
    return nullptr;
  }

  // How many components that are gone from this side could have become the same new one.
  std::size_t LikeGone(const TDesignComponent& before, TSide side) const {
    std::size_t count = 0;
    for (const TDesignComponent* sibling : ParentOf(&before)->Children())
      if (!RowOf(sibling)->Has(side) && SameHead(before, *sibling) &&
          SameProperties(before, *sibling))
        ++count;
    return count;
  }

  std::deque<TRow> FRows;
  std::unordered_map<const TDesignComponent*, TRow*> FRowOf;
  std::unordered_map<std::string, TRow*> FByKey;
};

class TFormMerge {
 public:
  TFormMerge(const TDesignComponent* base, TDesignComponent& ours, const TDesignComponent& theirs)
      : FRoot(ours), FTheirs(theirs), FMatching(base, ours, theirs) {}

  std::vector<TMergeConflict> Run() {
    for (TRow& row : FMatching.Rows())
      if (row.Has(sdOurs) && row.Has(sdTheirs)) MergeRow(row);
    for (const TDesignComponent* component : AllOf(FTheirs)) AddNew(*component);
    for (TRow& row : FMatching.Rows())
      if (row.IsEverywhere()) MergeParent(row);
    for (TRow& row : FMatching.Rows()) MergeDeletion(row);
    for (TRow& row : FMatching.Rows())
      if (row.Has(sdOurs) && row.Has(sdTheirs)) MergeOrder(row);
    return std::move(FConflicts);
  }

 private:
  // What one component is in itself.

  void MergeRow(TRow& row) {
    const std::array<std::string, SideCount> classes = HeadTexts(row);
    if (TakesTheirs(row, "", classes))
      row.Ours->SetStoredClassName(row.On[sdTheirs]->StoredClassName());
    MergeName(row);
    MergeProperties(row);
  }

  static std::array<std::string, SideCount> HeadTexts(const TRow& row) {
    std::array<std::string, SideCount> texts;
    for (std::size_t side = 0; side < SideCount; ++side)
      if (row.On[side] != nullptr) texts[side] = row.On[side]->StoredClassName();
    return texts;
  }

  void MergeName(TRow& row) {
    std::array<std::string, SideCount> names;
    for (std::size_t side = 0; side < SideCount; ++side)
      if (row.On[side] != nullptr) names[side] = row.On[side]->Name();
    if (!TakesTheirs(row, ".Name", names)) return;
    try {
      row.Ours->SetName(names[sdTheirs]);
    } catch (const EComponentError&) {
      Report(PathOf(*row.Ours) + ".Name", names[sdBase], names[sdOurs], names[sdTheirs]);
    }
  }

  // Whether what theirs says is to be taken over.
  bool TakesTheirs(const TRow& row, std::string_view path,
                   const std::array<std::string, SideCount>& texts) {
    if (EqualText(texts[sdTheirs], texts[sdBase]) || EqualText(texts[sdOurs], texts[sdTheirs]))
      return false;
    if (EqualText(texts[sdOurs], texts[sdBase])) return true;
    Report(PathOf(*row.Ours).append(path), texts[sdBase], texts[sdOurs], texts[sdTheirs]);
    return false;
  }

  // Properties.

  static std::string_view ValueOn(const TRow& row, TSide side, std::string_view path) {
    return row.Has(side) ? row.On[side]->FindValue(path) : std::string_view();
  }
  static TValueSides ValuesOf(const TRow& row, std::string_view path) {
    return {ValueOn(row, sdBase, path), ValueOn(row, sdOurs, path), ValueOn(row, sdTheirs, path)};
  }

  void MergeProperties(TRow& row) {
    MergeBounds(row);
    std::vector<std::string> paths;
    for (const TSide side : {sdTheirs, sdOurs})
      for (const TDesignProperty& property : row.On[side]->Properties())
        paths.emplace_back(property.Path);
    std::sort(paths.begin(), paths.end(),
              [](const auto& a, const auto& b) { return CompareText(a, b) < 0; });
    paths.erase(std::unique(paths.begin(), paths.end(), EqualText), paths.end());
    for (const std::string& path : paths) {
      const auto isThis = [&](std::string_view bounds) { return EqualText(bounds, path); };
      if (std::any_of(BoundsPaths.begin(), BoundsPaths.end(), isThis)) continue;
      const TValueSides sides = ValuesOf(row, path);
      const std::string merged =
          MergeValue(sides, [&](const std::string& inside, const TValueSides& values) {
            Report(fmt::format("{}.{}{}", PathOf(*row.Ours), path, inside), ShownValue(values.Base),
                   ShownValue(values.Ours), ShownValue(values.Theirs));
          });
      if (merged != sides.Ours) Take(row, path, merged);
    }
  }

  void MergeBounds(TRow& row) {
    const auto same = [&](TSide a, TSide b) {
      return std::all_of(BoundsPaths.begin(), BoundsPaths.end(), [&](std::string_view path) {
        return SameValue(ValueOn(row, a, path), ValueOn(row, b, path));
      });
    };
    if (same(sdTheirs, sdBase) || same(sdOurs, sdTheirs)) return;
    if (!same(sdOurs, sdBase))
      return Report(PathOf(*row.Ours) + ".Left/Top/Width/Height", BoundsText(row, sdBase),
                    BoundsText(row, sdOurs), BoundsText(row, sdTheirs));
    for (const std::string_view path : BoundsPaths) {
      const std::string value(ValueOn(row, sdTheirs, path));
      if (value != ValueOn(row, sdOurs, path)) Take(row, path, value);
    }
  }

  static std::string BoundsText(const TRow& row, TSide side) {
    std::string text;
    for (const std::string_view path : BoundsPaths)
      text += (text.empty() ? "" : ", ") + ShownValue(ValueOn(row, side, path));
    return text;
  }

  // A new property stands behind the one that it stands behind in theirs.
  void Take(TRow& row, std::string_view path, std::string_view value) {
    TDesignComponent& ours = *row.Ours;
    if (value.empty()) {
      ours.RemoveValue(path);
      return;
    }
    if (!ours.FindValue(path).empty()) return ours.SetValue(path, value);
    std::size_t place = 0;
    for (const TDesignProperty& property : row.On[sdTheirs]->Properties()) {
      if (EqualText(property.Path, path)) return ours.InsertValue(place, property.Path, value);
      for (std::size_t i = 0; i < ours.Properties().size(); ++i)
        if (EqualText(ours.Properties()[i].Path, property.Path)) place = i + 1;
    }
  }

  // Components that come, move and go.

  void AddNew(const TDesignComponent& theirs) {
    TRow& row = *FMatching.RowOf(&theirs);
    if (row.Has(sdBase) || row.Has(sdOurs)) return;
    const TRow& parent = *FMatching.RowOf(ParentOf(&theirs));
    const std::string className(theirs.StoredClassName());
    if (parent.Ours == nullptr) return;  // told where the parent is
    if (IsTaken(theirs.Name(), *parent.Ours))
      return Report(PathOf(theirs), "(none)", "(another " + theirs.Name() + ')', className);
    TByteWriter stream;
    stream.WriteSignature();
    theirs.WriteHead(stream);
    for (const TDesignProperty& property : theirs.Properties()) {
      stream.WriteShortString(property.Path);
      stream.WriteBytes(property.Value);
    }
    stream.WriteEndOfList();
    stream.WriteEndOfList();
    FMatching.Place(row, *AddDesignComponent(stream.ToString(), FRoot, *parent.Ours));
    FIncoming.insert(row.Ours);
  }

  // Names inside a frame are its own.
  bool IsTaken(const std::string& name, const TDesignComponent& parent) const {
    for (const TDesignComponent* around = &parent; around != nullptr; around = ParentOf(around))
      if ((FlagsOf(*around) & ffInline) != 0) return false;
    return FRoot.FindComponent(name) != nullptr;
  }

  const TRow* ParentRow(const TRow& row, TSide side) const {
    return row.Has(side) && ParentOf(row.On[side]) != nullptr
               ? FMatching.RowOf(ParentOf(row.On[side]))
               : nullptr;
  }

  void MergeParent(TRow& row) {
    const TRow* base = ParentRow(row, sdBase);
    const TRow* ours = ParentRow(row, sdOurs);
    const TRow* theirs = ParentRow(row, sdTheirs);
    if (theirs == base || theirs == ours) return;
    if (ours != base || theirs->Ours == nullptr || IsInside(theirs->Ours, row.Ours))
      return Report(PathOf(*row.Ours) + " (parent)", ShownParent(row, sdBase),
                    ShownParent(row, sdOurs), ShownParent(row, sdTheirs));
    row.Ours->SetParentComponent(theirs->Ours);
    FIncoming.insert(row.Ours);
  }

  static std::string ShownParent(const TRow& row, TSide side) {
    return PathOf(*ParentOf(row.On[side]));
  }

  static bool IsInside(const TDesignComponent* component, const TDesignComponent* around) {
    for (; component != nullptr; component = ParentOf(component))
      if (component == around) return true;
    return false;
  }

  // Looked at where a whole part of the form begins to be gone.
  void MergeDeletion(TRow& row) {
    if (!row.Has(sdBase) || row.Has(sdOurs) == row.Has(sdTheirs)) return;
    const TSide gone = row.Has(sdOurs) ? sdTheirs : sdOurs;
    const TSide left = row.Has(sdOurs) ? sdOurs : sdTheirs;
    const TRow* around = ParentRow(row, sdBase);
    if (!around->Has(gone)) return;
    const bool changed = IsChanged(*row.On[left], left);
    if (changed) {
      const std::string before(row.On[sdBase]->StoredClassName());
      const std::string ours = gone == sdOurs ? "(deleted)" : before + " (changed)";
      const std::string theirs = gone == sdTheirs ? "(deleted)" : before + " (changed)";
      return Report(PathOf(*row.On[left]), before, ours, theirs);
    }
    if (gone == sdOurs) return;
    TDesignComponent* deleted = row.Ours;
    for (const TDesignComponent* inside : AllOf(*deleted)) {
      TRow* other = FMatching.RowOf(inside);
      if (other == nullptr) continue;
      other->On[sdOurs] = nullptr;
      other->Ours = nullptr;
    }
    delete deleted;
  }

  // Whether a side changed anything in a component that the other one deleted.
  bool IsChanged(const TDesignComponent& top, TSide side) const {
    for (const TDesignComponent* component : AllOf(top)) {
      const TRow* row = FMatching.RowOf(component);
      // What could not be moved out is still wanted.
      if (!row->Has(sdBase) || (side == sdOurs && row->Has(sdTheirs))) return true;
      const TDesignComponent& base = *row->On[sdBase];
      if (!SameHead(base, *component) || !EqualText(base.Name(), component->Name()) ||
          !SameProperties(base, *component) || ParentRow(*row, sdBase) != ParentRow(*row, side))
        return true;
    }
    return false;
  }

  // Order.

  std::vector<TRow*> ChildRows(const TRow& row, TSide side) const {
    std::vector<TRow*> rows;
    for (const TDesignComponent* child : row.On[side]->Children())
      if (TRow* other = FMatching.RowOf(child)) rows.push_back(other);
    return rows;
  }

  // Those that stand in the same parent on all sides.
  std::vector<TRow*> CommonRows(const TRow& row, TSide side) const {
    std::vector<TRow*> rows = ChildRows(row, side);
    std::erase_if(rows, [&](const TRow* child) {
      return !child->IsEverywhere() || ParentRow(*child, sdBase) != &row ||
             ParentRow(*child, sdOurs) != &row || ParentRow(*child, sdTheirs) != &row;
    });
    return rows;
  }

  void MergeOrder(TRow& row) {
    if (row.Has(sdBase)) MergeCommonOrder(row);
    TDesignComponent* previous = nullptr;
    for (const TRow* child : ChildRows(row, sdTheirs)) {
      if (child->Ours == nullptr || ParentOf(child->Ours) != row.Ours) continue;
      if (FIncoming.contains(child->Ours)) {
        child->Ours->SetChildIndex(row.Ours->Children().size());
        child->Ours->SetChildIndex(previous != nullptr ? IndexInParent(*previous) + 1 : 0);
      }
      previous = child->Ours;
    }
  }

  void MergeCommonOrder(TRow& row) {
    const std::vector<TRow*> base = CommonRows(row, sdBase);
    const std::vector<TRow*> ours = CommonRows(row, sdOurs);
    const std::vector<TRow*> theirs = CommonRows(row, sdTheirs);
    if (theirs == base || theirs == ours) return;
    if (ours != base)
      return Report(PathOf(*row.Ours) + " (order)", OrderText(base, sdBase),
                    OrderText(ours, sdOurs), OrderText(theirs, sdTheirs));
    std::vector<std::size_t> places;
    for (const TRow* child : ours) places.push_back(IndexInParent(*child->Ours));
    for (std::size_t i = 0; i < places.size(); ++i) theirs[i]->Ours->SetChildIndex(places[i]);
  }

  static std::string OrderText(const std::vector<TRow*>& rows, TSide side) {
    std::string text;
    for (const TRow* row : rows) text += (text.empty() ? "" : ", ") + LabelOf(*row->On[side]);
    return text;
  }

  // Messages.

  static std::string LabelOf(const TDesignComponent& component) {
    return component.Name().empty() ? std::string(component.StoredClassName()) : component.Name();
  }

  static std::string PathOf(const TDesignComponent& component) {
    std::string path = LabelOf(component);
    for (const auto* around = ParentOf(&component); around != nullptr; around = ParentOf(around))
      path = LabelOf(*around) + '.' + path;
    return path;
  }

  void Report(std::string path, std::string base, std::string ours, std::string theirs) {
    FConflicts.push_back({std::move(path), std::move(base), std::move(ours), std::move(theirs)});
  }

  TDesignComponent& FRoot;
  const TDesignComponent& FTheirs;
  TMatching FMatching;
  std::unordered_set<const TDesignComponent*> FIncoming;  // of ours, whose place theirs knows
  std::vector<TMergeConflict> FConflicts;
};

}  // namespace

std::vector<TMergeConflict> MergeForms(const TDesignComponent* base, TDesignComponent& ours,
                                       const TDesignComponent& theirs) {
  return TFormMerge(base, ours, theirs).Run();
}

}  // namespace wrenfold
