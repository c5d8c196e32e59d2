// Writes a changed form with the bytes of its text wherever nothing changed.
#include "platform/core/stream/FormSpans.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "platform/core/stream/CollectionItem.h"
#include "platform/core/stream/TextScan.h"

namespace wrenfold {
namespace {

constexpr std::size_t None = std::string_view::npos;
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t IndentStep = 2;

bool IsNested(TValueType type) {
  return type == TValueType::vaList || type == TValueType::vaCollection;
}

TValueType TagOf(std::string_view value) {
  return value.empty() ? TValueType::vaNull : static_cast<TValueType>(value[0]);
}

// What stands between two things in the text: the end of the line of the first, lines that belong
// to neither, the beginning of the line of the second.
struct TGap {
  std::string_view Tail;
  std::string_view Middle;
  std::string_view Lead;

  explicit TGap(std::string_view text) {
    const std::size_t first = text.find_first_of("\r\n");
    if (first == None) {
      Lead = text;
      return;
    }
    std::size_t last = text.find_last_of("\r\n");
    if (last > first && text[last] == '\n' && text[last - 1] == '\r') --last;
    Tail = text.substr(0, first);
    Middle = text.substr(first, last - first);
    Lead = text.substr(last);
  }
};

// What the form has now at one place of a container.
struct TChild {
  std::size_t Node = None;  // where the text has the same, within this container
  TFormNodeKind Kind = TFormNodeKind::Property;
  std::string_view Path;   // of a property
  std::string_view Bytes;  // of a value, an item or an element
  const TDesignComponent* Component = nullptr;
};

// A part of the text that holds children: its first and last byte stay.
struct TContainer {
  TFormSpan Inside;
  std::size_t FirstNode;
  std::size_t EndNode;
  std::string Indent;  // of children that have none to go by
};

TStoredItem ReadItem(std::string_view bytes) {
  TByteReader reader(bytes);
  return ReadStoredItem(reader);
}

// The elements of a list or the items of a collection.
std::vector<std::string_view> PartsOf(std::string_view value) {
  std::vector<std::string_view> parts;
  TByteReader reader(value);
  const bool items = reader.ReadValueType() == TValueType::vaCollection;
  while (!reader.SkipEndOfList("a value or the end")) {
    const std::size_t start = reader.Position();
    if (items && reader.PeekValueType() != TValueType::vaList) reader.ReadIntegerValue();
    if (items) {
      reader.ReadValueType();
      reader.SkipProperties();
    } else {
      reader.SkipValue();
    }
    parts.push_back(reader.Since(start));
  }
  return parts;
}

// Prefix, child position and names of a component in a stream.
struct TStoredHead {
  std::string_view Prefix;  // with the child position
  std::string_view ClassName;
  std::string_view Name;
};

TStoredHead ReadHead(TByteReader& reader) {
  TStoredHead head;
  const std::size_t start = reader.Position();
  if ((reader.ReadFilerFlags() & ffChildPos) != 0) reader.ReadIntegerValue();
  head.Prefix = reader.Since(start);
  head.ClassName = reader.ReadShortString("a class name");
  head.Name = reader.ReadShortString("a component name");
  return head;
}

class TSpanRenderer {
 public:
  TSpanRenderer(const TFormSpans& spans, const std::vector<std::size_t>& components, bool crLf,
                const TDesignComponent& root)
      : FText(spans.Text()),
        FStream(spans.Stream()),
        FNodes(spans.Nodes()),
        FStyle(spans.Style()),
        FComponents(components),
        FLineEnd(crLf ? "\r\n" : "\n"),
        FRoot(root) {}

  std::string Render() {
    ClaimComponents();
    const TFormNode& root = FNodes.front();
    FOut.reserve(FText.size() + 256);
    Copy({0, root.Text.Begin});
    MergeComponent(0, FRoot);
    Copy({root.Text.End, FText.size()});
    return std::move(FOut);
  }

 private:
  std::string_view View(TFormSpan span) const {
    return FText.substr(span.Begin, span.End - span.Begin);
  }
  std::string_view StoredOf(const TFormNode& node) const {
    return FStream.substr(node.Stored.Begin, node.Stored.End - node.Stored.Begin);
  }
  void Copy(TFormSpan span) { FOut += View(span); }

  // Which components of the text the form still has, and what each stands in.
  void ClaimComponents() {
    FParents.resize(FNodes.size(), None);
    for (std::size_t number : FComponents)
      for (std::size_t i = number + 1; i < FNodes[number].Next; i = FNodes[i].Next)
        FParents[i] = number;
    FClaimed.resize(FNodes.size());
    std::vector<const TDesignComponent*> open{&FRoot};
    while (!open.empty()) {
      const TDesignComponent* component = open.back();
      open.pop_back();
      const std::size_t index = component->StoredIndex(FRoot);
      if (index < FComponents.size()) FClaimed[FComponents[index]] = true;
      open.insert(open.end(), component->Children().begin(), component->Children().end());
    }
  }

  // Components.

  void MergeComponent(std::size_t number, const TDesignComponent& component) {
    const TFormNode& node = FNodes[number];
    MergeHead(node, component);
    std::vector<TChild> children;
    children.reserve(component.Properties().size() + component.Children().size());
    AddProperties(number, component.Properties(), children);
    for (const TDesignComponent* child : component.Children())
      children.push_back({NodeOf(*child, number), TFormNodeKind::Component, {}, {}, child});
    MergeChildren(InsideOf(node, number), children);
    Copy({node.Text.End - 3, node.Text.End});  // "end"
  }

  // The node of a component in the container.
  std::size_t NodeOf(const TDesignComponent& component, std::size_t container) const {
    const std::size_t index = component.StoredIndex(FRoot);
    std::size_t found = index < FComponents.size() ? FComponents[index] : None;
    if (found == None) found = FindUnclaimed(component, container);
    return found != None && FParents[found] == container ? found : None;
  }

  // One that was deleted and made again.
  std::size_t FindUnclaimed(const TDesignComponent& component, std::size_t container) const {
    if (component.Name().empty()) return None;
    for (std::size_t i = container + 1; i < FNodes[container].Next; i = FNodes[i].Next) {
      if (FNodes[i].Kind != TFormNodeKind::Component || FClaimed[i]) continue;
      TByteReader reader(StoredOf(FNodes[i]));
      const TStoredHead head = ReadHead(reader);
      if (head.Name == component.Name() && head.ClassName == component.StoredClassName()) return i;
    }
    return None;
  }

  void MergeHead(const TFormNode& node, const TDesignComponent& component) {
    TByteReader reader(StoredOf(node));
    const TStoredHead before = ReadHead(reader);
    TByteWriter stream;
    component.WriteHead(stream);
    TByteReader now(stream.View());
    const TStoredHead after = ReadHead(now);
    const std::string_view head = View(node.Head);
    if (before.Name == after.Name && before.ClassName == after.ClassName &&
        before.Prefix == after.Prefix) {
      FOut += head;
      return;
    }
    if (before.Prefix != after.Prefix || before.Name.empty() || after.Name.empty()) {
      FOut += NewHead(stream.View());
      return;
    }
    // Two words are replaced.
    const char* const begin = head.data();
    const char* const end = begin + head.size();
    const char* const name = SkipBlanks(SkipWord(begin, end), end);
    const char* const nameEnd = name + before.Name.size();
    const char* const className = SkipBlanks(SkipBlanks(nameEnd, end) + 1, end);
    FOut.append(begin, name).append(after.Name).append(nameEnd, className);
    FOut.append(after.ClassName).append(className + before.ClassName.size(), end);
  }

  std::string NewHead(std::string_view stored) const {
    TByteWriter stream;
    stream.WriteSignature();
    stream.WriteBytes(stored);
    stream.WriteEndOfList();
    stream.WriteEndOfList();
    const std::string text = AsText(stream.View());
    return text.substr(0, text.find('\r'));
  }

  // Containers.

  TContainer InsideOf(const TFormNode& node, std::size_t number) const {
    return {{node.Head.End, node.Text.End - 3},
            number + 1,
            node.Next,
            std::string(IndentOf(node.Text.Begin)) + std::string(IndentStep, ' ')};
  }

  // The blanks in front of what begins at `position`, when nothing else stands there.
  std::string_view IndentOf(std::size_t position) const {
    std::size_t start = position;
    while (start > 0 && (FText[start - 1] == ' ' || FText[start - 1] == '\t')) --start;
    const bool first = start == 0 || FText[start - 1] == '\n' || FText[start - 1] == '\r';
    return FText.substr(start, first ? position - start : 0);
  }

  void AddProperties(std::size_t container, const std::vector<TDesignProperty>& properties,
                     std::vector<TChild>& children) const {
    const std::size_t end = FNodes[container].Next;
    std::size_t next = container + 1;
    for (const TDesignProperty& property : properties) {
      const std::size_t found = FindProperty(next, end, property.Path);
      children.push_back({found, TFormNodeKind::Property, property.Path, property.Value});
      if (found != None) next = FNodes[found].Next;
    }
  }

  std::size_t FindProperty(std::size_t first, std::size_t end, std::string_view path) const {
    for (std::size_t i = first; i < end && FNodes[i].Kind == TFormNodeKind::Property;
         i = FNodes[i].Next)
      if (View(FNodes[i].Head) == path) return i;
    return None;
  }

  void MergeChildren(const TContainer& container, const std::vector<TChild>& children) {
    std::vector<bool> kept(container.EndNode - container.FirstNode);
    for (const TChild& child : children)
      if (child.Node != None) kept[child.Node - container.FirstNode] = true;
    // The gap in front of each node that stands right in the container, and behind the last one.
    std::size_t behind = container.Inside.Begin;
    std::vector<std::pair<std::size_t, TGap>> gaps;
    for (std::size_t i = container.FirstNode; i < container.EndNode; i = FNodes[i].Next) {
      gaps.emplace_back(i, TGap(View({behind, FNodes[i].Text.Begin})));
      behind = FNodes[i].Text.End;
    }
    const TGap last(View({behind, container.Inside.End}));
    const std::string_view indent = ChildIndent(container, gaps);

    FOut += gaps.empty() ? last.Tail : gaps.front().second.Tail;
    std::size_t next = 0;  // the first gap whose lines are not written yet
    for (const TChild& child : children) {
      if (child.Node == None) {
        FOut.append(FLineEnd).append(indent);
        WriteNew(child, indent);
        continue;
      }
      const auto at =
          std::lower_bound(gaps.begin(), gaps.end(), child.Node,
                           [](const auto& gap, std::size_t n) { return gap.first < n; });
      const auto index = static_cast<std::size_t>(at - gaps.begin());
      for (; next < index; ++next)
        if (!kept[gaps[next].first - container.FirstNode]) FOut += gaps[next].second.Middle;
      next = std::max(next, index + 1);
      FOut.append(at->second.Middle).append(at->second.Lead);
      MergeChild(child, indent);
      FOut += index + 1 < gaps.size() ? gaps[index + 1].second.Tail : last.Tail;
    }
    for (; next < gaps.size(); ++next)
      if (!kept[gaps[next].first - container.FirstNode]) FOut += gaps[next].second.Middle;
    FOut.append(last.Middle).append(last.Lead);
  }

  std::string_view ChildIndent(const TContainer& container,
                               const std::vector<std::pair<std::size_t, TGap>>& gaps) const {
    for (const auto& [node, gap] : gaps)
      if (gap.Lead.find_first_of("\r\n") != None) return IndentOf(FNodes[node].Text.Begin);
    return container.Indent;
  }

  void MergeChild(const TChild& child, std::string_view indent) {
    const TFormNode& node = FNodes[child.Node];
    switch (child.Kind) {
      case TFormNodeKind::Component:
        return MergeComponent(child.Node, *child.Component);
      case TFormNodeKind::Property: {
        const std::size_t value = ValueBegin(node);
        const std::string_view before = View({node.Text.Begin, value});
        // A value that begins in the next line is a long one; another may be short.
        if (!IsMergeable(child.Node, child.Bytes) && before.find('\n') != None) {
          FOut.append(before.substr(0, before.find('=') + 1)).append(" ");
          FOut += NewValue(child.Bytes, indent);
          return;
        }
        FOut += before;
        return MergeValue({value, node.Text.End}, child.Node, child.Bytes, indent);
      }
      case TFormNodeKind::Item:
        return MergeItem(node, child.Node, child.Bytes, indent);
      case TFormNodeKind::Element:
        return MergeValue(node.Text, child.Node, child.Bytes, indent);
    }
  }

  std::size_t ValueBegin(const TFormNode& property) const {
    const char* const end = FText.data() + property.Text.End;
    const char* const equals = SkipBlanks(FText.data() + property.Head.End, end);
    return static_cast<std::size_t>(SkipBlanks(equals + 1, end) - FText.data());
  }

  // Values.

  // Whether the text of a value serves for these bytes, in part at least.
  bool IsMergeable(std::size_t number, std::string_view bytes) const {
    const std::string_view before = StoredOf(FNodes[number]);
    if (before == bytes) return true;
    return IsNested(TagOf(bytes)) && TagOf(before) == TagOf(bytes) &&
           FNodes[number].Next != number + 1;
  }

  void MergeValue(TFormSpan text, std::size_t number, std::string_view bytes,
                  std::string_view indent) {
    const TFormNode& node = FNodes[number];
    if (!IsMergeable(number, bytes)) {
      FOut += NewValue(bytes, indent);
      return;
    }
    if (StoredOf(node) == bytes) return Copy(text);
    Copy({text.Begin, text.Begin + 1});
    const TContainer inside{{text.Begin + 1, text.End - 1},
                            number + 1,
                            node.Next,
                            std::string(indent) + std::string(IndentStep, ' ')};
    MergeChildren(inside, MatchParts(inside, PartsOf(bytes)));
    Copy({text.End - 1, text.End});
  }

  // Parts that are equal at the beginning and at the end are the same; those in between are paired
  // in order.
  std::vector<TChild> MatchParts(const TContainer& inside,
                                 const std::vector<std::string_view>& parts) const {
    std::vector<std::size_t> before;
    for (std::size_t i = inside.FirstNode; i < inside.EndNode; i = FNodes[i].Next)
      before.push_back(i);
    const std::size_t common = std::min(before.size(), parts.size());
    std::size_t front = 0;
    while (front < common && StoredOf(FNodes[before[front]]) == parts[front]) ++front;
    std::size_t back = 0;
    while (back < common - front &&
           StoredOf(FNodes[before[before.size() - 1 - back]]) == parts[parts.size() - 1 - back])
      ++back;
    std::vector<TChild> children;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      std::size_t node = None;
      if (i >= parts.size() - back) node = before[before.size() - (parts.size() - i)];
      else if (i < before.size() - back) node = before[i];
      children.push_back({node, FNodes[inside.FirstNode].Kind, {}, parts[i]});
    }
    return children;
  }

  void MergeItem(const TFormNode& node, std::size_t number, std::string_view bytes,
                 std::string_view indent) {
    if (StoredOf(node) == bytes) return Copy(node.Text);
    const TStoredItem item = ReadItem(bytes);
    if (ReadItem(StoredOf(node)).Order != item.Order) {
      FOut += NewPart(bytes, TValueType::vaCollection, indent);
      return;
    }
    Copy(node.Head);
    std::vector<TChild> children;
    AddProperties(number, item.Properties, children);
    MergeChildren(InsideOf(node, number), children);
    Copy({node.Text.End - 3, node.Text.End});  // "end"
  }

  // What the text has nothing of.

  void WriteNew(const TChild& child, std::string_view indent) {
    switch (child.Kind) {
      case TFormNodeKind::Component:
        return WriteNewComponent(*child.Component, indent);
      case TFormNodeKind::Property:
        FOut.append(child.Path).append(" = ");
        FOut += NewValue(child.Bytes, indent);
        return;
      case TFormNodeKind::Item:
        FOut += NewPart(child.Bytes, TValueType::vaCollection, indent);
        return;
      case TFormNodeKind::Element:
        FOut += NewPart(child.Bytes, TValueType::vaList, indent);
        return;
    }
  }

  // One that comes from another place of the text brings its bytes along.
  void WriteNewComponent(const TDesignComponent& component, std::string_view indent) {
    const std::size_t index = component.StoredIndex(FRoot);
    if (index >= FComponents.size()) {
      FOut += Reindented(AsText(WriteDesignForm(component)), 0, indent);
      return;
    }
    const std::size_t start = FOut.size();
    MergeComponent(FComponents[index], component);
    const std::string text = FOut.substr(start);
    FOut.resize(start);
    FOut += Reindented(text, IndentOf(FNodes[FComponents[index]].Text.Begin).size(), indent);
  }

  std::string NewValue(std::string_view value, std::string_view indent) const {
    return Rendered(value, IndentStep, indent);
  }

  // An element or an item, which is rendered inside a list or collection of its own.
  std::string NewPart(std::string_view part, TValueType container, std::string_view indent) const {
    TByteWriter value;
    value.WriteValueType(container);
    value.WriteBytes(part);
    value.WriteEndOfList();
    const std::string text = Rendered(value.View(), 2 * IndentStep, indent);
    const std::size_t begin = text.find_first_not_of("\r\n ", 1);
    const std::size_t end = text.find_last_not_of("\r\n ", text.size() - 2);
    return text.substr(begin, end + 1 - begin);
  }

  // The text of a value whose lines, but for the first, stand `base` blanks deep as rendered.
  std::string Rendered(std::string_view value, std::size_t base, std::string_view indent) const {
    constexpr std::string_view begin = "object T\r\n  V = ", end = "\r\nend\r\n";
    TByteWriter carrier;
    carrier.WriteSignature();
    carrier.WriteShortString("T");
    carrier.WriteShortString("");
    carrier.WriteShortString("V");
    carrier.WriteBytes(value);
    carrier.WriteEndOfList();
    carrier.WriteEndOfList();
    const std::string text = AsText(carrier.View());
    return Reindented(
        std::string_view(text).substr(begin.size(), text.size() - begin.size() - end.size()), base,
        indent);
  }

  std::string AsText(std::string_view stream) const {
    TByteReader binary(stream);
    TByteWriter text;
    ObjectBinaryToText(binary, text, FStyle);
    return text.ToString();
  }

  // The lines behind the first one begin with `indent` instead of `base` blanks. Line ends at the
  // end go.
  std::string Reindented(std::string_view text, std::size_t base, std::string_view indent) const {
    text = text.substr(0, text.find_last_not_of("\r\n") + 1);
    std::string result;
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
      std::string_view line = text.substr(0, end);
      text.remove_prefix(end);
      const bool ended = line.ends_with('\n');
      if (ended) line.remove_suffix(line.ends_with("\r\n") ? 2 : 1);
      if (!result.empty()) {
        line.remove_prefix(std::min({base, line.size(), line.find_first_not_of(" \t")}));
        result += indent;
      }
      result += line;
      if (ended) result += FLineEnd;
    }
    return result;
  }

  std::string_view FText;
  std::string_view FStream;
  const std::vector<TFormNode>& FNodes;
  const TFormTextStyle& FStyle;
  const std::vector<std::size_t>& FComponents;
  std::string_view FLineEnd;
  const TDesignComponent& FRoot;
  std::vector<std::size_t> FParents;  // the components that nodes stand right in
  std::vector<bool> FClaimed;         // nodes of components that the form still has
  std::string FOut;
};

}  // namespace

TFormSpans::TFormSpans(std::string text, const TFormTextStyle& style)
    : FText(std::move(text)), FStyle(&style) {
  std::size_t position = FText.starts_with(Utf8Mark) ? Utf8Mark.size() : 0;
  ReadFormNodes(FText, position, FStream, FNodes);
  if (!AtTextEnd(FText, position)) {
    const auto begin = FText.begin();
    throw EParserError(
        fmt::format("Line {}: expected the end of the text behind the \"end\" of the form",
                    std::count(begin, begin + static_cast<std::ptrdiff_t>(position), '\n') + 1));
  }
  for (std::size_t i = 0; i < FNodes.size(); ++i)
    if (FNodes[i].Kind == TFormNodeKind::Component) FComponents.push_back(i);
  const auto lines = std::count(FText.begin(), FText.end(), '\n');
  std::ptrdiff_t crLf = 0;
  for (std::size_t at = 0; (at = FText.find("\r\n", at)) != None; at += 2) ++crLf;
  FCrLf = 2 * crLf >= lines;
}

std::unique_ptr<TDesignComponent> TFormSpans::ReadForm() const {
  return ReadDesignForm(std::string(Stream()));
}

std::string TFormSpans::Render(const TDesignComponent& root, std::vector<TPlace>* places) const {
  std::string text = TSpanRenderer(*this, FComponents, FCrLf, root).Render();
  if (places != nullptr) FindFormPlaces(text, root, *places);
  return text;
}

void FindFormPlaces(std::string_view text, const TDesignComponent& root,
                    std::vector<TFormSpans::TPlace>& places) {
  std::size_t position = text.starts_with(Utf8Mark) ? Utf8Mark.size() : 0;
  TByteWriter stream;
  std::vector<TFormNode> nodes;
  ReadFormNodes(text, position, stream, nodes);
  std::vector<const TDesignComponent*> open{&root};
  for (const TFormNode& node : nodes) {
    if (node.Kind != TFormNodeKind::Component || open.empty()) continue;
    const TDesignComponent* component = open.back();
    open.pop_back();
    places.push_back({component, node.Text});
    open.insert(open.end(), component->Children().rbegin(), component->Children().rend());
  }
}

}  // namespace wrenfold
