#include "tools/StoredWalk.h"

#include <vector>

#include "platform/core/stream/FormText.h"

namespace wrenfold {
namespace {

enum class TNesting : std::uint8_t { Properties, Children, List, Collection, Item };

struct TNestingRow {
  TPartKind Holds;
  const char* Expected;
};
// In the order of TNesting.
constexpr TNestingRow NestingRows[] = {
    {TPartKind::Property, "a property or the end of the property list"},
    {TPartKind::Component, "a component or the end of the child list"},
    {TPartKind::Element, "a value or the end of a list"},
    {TPartKind::Item, "an item or the end of a collection"},
    {TPartKind::Property, "a property or the end of an item"}};

class TWalker {
 public:
  TWalker(TByteReader& reader, const TPartHandler& handle) : FReader(reader), FHandle(handle) {}

  void WalkObject() {
    Enter(TPartKind::Component);
    Walk();
  }

  void WalkLists() {
    while (!FReader.AtEnd()) {
      FNesting.push_back(TNesting::Item);
      Walk();
    }
  }

 private:
  void Walk() {
    while (!FNesting.empty()) {
      TNesting& nesting = FNesting.back();
      const TNestingRow& row = NestingRows[static_cast<std::size_t>(nesting)];
      if (!FReader.SkipEndOfList(row.Expected)) Enter(row.Holds);
      else if (nesting == TNesting::Properties) nesting = TNesting::Children;
      else FNesting.pop_back();
    }
  }

  void Enter(TPartKind kind) {
    const std::size_t position = FReader.Position();
    const TStoredPart part = ReadStoredPart(FReader, kind);
    FHandle(part, position, FNesting.size());
    if (kind == TPartKind::Component) Push(TNesting::Properties);
    else if (kind == TPartKind::Item) Push(TNesting::Item);
    else if (part.Type == TValueType::vaList) Push(TNesting::List);
    else if (part.Type == TValueType::vaCollection) Push(TNesting::Collection);
  }

  void Push(TNesting nesting) {
    if (FNesting.size() == MaxFormNesting)
      FReader.Fail("at most 512 nested components, lists and collections");
    FNesting.push_back(nesting);
  }

  TByteReader& FReader;
  const TPartHandler& FHandle;
  std::vector<TNesting> FNesting;
};

void ReadComponent(TByteReader& reader, TStoredPart& part) {
  part.Flags = reader.ReadFilerFlags();
  part.HasOrder = (part.Flags & ffChildPos) != 0;
  if (part.HasOrder) part.Order = reader.ReadIntegerValue();
  part.ClassName = reader.ReadShortString("a class name");
  part.Name = reader.ReadShortString("a component name");
}

void ReadItem(TByteReader& reader, TStoredPart& part) {
  part.HasOrder = reader.PeekValueType() != TValueType::vaList;
  if (part.HasOrder) part.Order = reader.ReadIntegerValue();
  if (reader.ReadValueType() != TValueType::vaList)
    reader.FailAt(reader.Position() - 1, "an item or the end of a collection");
}

void ReadValue(TByteReader& reader, TStoredPart& part) {
  const std::size_t start = reader.Position();
  part.Type = reader.PeekValueType();
  if (part.IsContainer()) {
    reader.ReadValueType();
    part.IsEmpty = reader.PeekByte("an element or the end") == 0;
  } else {
    reader.SkipValue();
  }
  part.Value = reader.Since(start);
}

}  // namespace

TStoredPart ReadStoredPart(TByteReader& reader, TPartKind kind) {
  TStoredPart part;
  part.Kind = kind;
  switch (kind) {
    case TPartKind::Component:
      ReadComponent(reader, part);
      break;
    case TPartKind::Item:
      ReadItem(reader, part);
      break;
    case TPartKind::Property:
      part.Name = reader.ReadShortString("a property name");
      [[fallthrough]];
    case TPartKind::Element:
      ReadValue(reader, part);
      break;
  }
  return part;
}

void WalkParts(TByteReader reader, const TPartHandler& handle) {
  reader.ReadSignature();
  TWalker(reader, handle).WalkObject();
}

void WalkPropertyLists(TByteReader reader, const TPartHandler& handle) {
  reader.ReadSignature();
  TWalker(reader, handle).WalkLists();
}

}  // namespace wrenfold
