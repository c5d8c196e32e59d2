#include "platform/core/stream/Writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "platform/core/model/NamePath.h"
#include "platform/core/stream/PropKinds.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

TWriter::TWriter(TStream& stream, int bufferSize)
    : FStream(stream), FBytes(static_cast<std::size_t>(std::max(bufferSize, 16))) {}

// Callers that must know of a failed write flush first.
TWriter::~TWriter() {
  try {
    FlushBuffer();
  } catch (const Exception&) {
  }
}

void TWriter::FlushBuffer() {
  FStream.WriteBuffer(FBytes.View().data(), FBytes.Size());
  FBytes.Clear();
}

std::int64_t TWriter::Position() const {
  return FStream.Position() + static_cast<std::int64_t>(FBytes.Size());
}

void TWriter::WriteValue(TValueType value) {
  FBytes.WriteValueType(value);
}

void TWriter::WriteBoolean(bool value) {
  WriteValue(value ? TValueType::vaTrue : TValueType::vaFalse);
}

void TWriter::WriteChar(char value) {
  WriteString({&value, 1});
}

void TWriter::WriteInteger(std::int64_t value) {
  FBytes.WriteIntegerValue(value);
}

void TWriter::WriteFloat(double value) {
  FBytes.WriteExtendedValue(DoubleToExtended(value));
}

void TWriter::WriteIdent(std::string_view ident) {
  FBytes.WriteIdentValue(ident);
}

void TWriter::WriteString(std::string_view text) {
  FBytes.WriteStringValue(text);
}

void TWriter::WriteWideString(std::string_view text) {
  const std::u16string wide = Utf16FromUtf8(text);
  WriteValue(TValueType::vaWString);
  FBytes.WriteFixed(static_cast<std::uint32_t>(wide.size()));
  FBytes.WriteBytes({reinterpret_cast<const char*>(wide.data()), wide.size() * 2});
}

void TWriter::WriteSet(std::uint32_t value, const TTypeInfo& elementType) {
  WriteValue(TValueType::vaSet);
  const auto& names = elementType.EnumNames();
  for (std::size_t i = 0; i < 32; ++i) {
    if ((value >> i & 1) == 0) continue;
    if (i >= names.size())
      throw EWriteError(
          fmt::format("Element {} of a set of {} has no name", i, elementType.Name()));
    FBytes.WriteShortString(names[i]);
  }
  FBytes.WriteShortString("");
}

void TWriter::WriteBinary(std::string_view bytes) {
  FBytes.WriteBinaryValue(bytes);
}

void TWriter::WriteRawValue(std::string_view value) {
  FBytes.WriteBytes(value);
}

void TWriter::WriteListBegin() {
  WriteValue(TValueType::vaList);
}

void TWriter::WriteListEnd() {
  FBytes.WriteEndOfList();
}

void TWriter::WriteSignature() {
  FBytes.WriteSignature();
}

void TWriter::WriteCollection(TCollection& collection) {
  const std::string saved = std::exchange(FPropPath, {});
  WriteValue(TValueType::vaCollection);
  for (TCollectionItem* item : collection.Items()) {
    WriteListBegin();
    WriteProperties(*item);
    WriteListEnd();
  }
  WriteListEnd();
  FPropPath = saved;
}

void TWriter::WriteRootComponent(TComponent& root) {
  Root = &root;
  WriteSignature();
  WriteComponent(root);
}

void TWriter::WriteComponentRes(const std::string& resourceName, TComponent& root) {
  const std::size_t sizeAt = FBytes.WriteResourceHeader(resourceName);
  const std::size_t start = FBytes.Size();
  WriteRootComponent(root);
  FBytes.PatchFixed(sizeAt, static_cast<std::uint32_t>(FBytes.Size() - start));
}

void TWriter::WriteComponent(TComponent& component) {
  std::int32_t childPosition = 0;
  const std::uint8_t flags = component.FilerFlags(childPosition);
  if (flags != 0) FBytes.WriteByte(FilerPrefixMark | flags);
  if (flags & ffChildPos) WriteInteger(childPosition);
  FBytes.WriteShortString(component.ClassName());
  FBytes.WriteShortString(component.Name());
  WriteProperties(component);
  WriteListEnd();
  auto* root = dynamic_cast<TComponent*>(Root);
  component.GetChildren([this](TComponent& child) { WriteComponent(child); }, root);
  WriteListEnd();
}

void TWriter::WriteProperties(TPersistent& instance) {
  for (const TPropInfo* property : instance.GetClassInfo().Properties())
    if (MustWrite(instance, *property)) WriteProperty(instance, *property);
  instance.DefineProperties(*this);
}

bool TWriter::MustWrite(TPersistent& instance, const TPropInfo& property) const {
  if (!property.Stored(instance)) return false;
  if (property.Kind() != tkClass && !property.Access->CanWrite()) return false;
  return !RowOf(property).IsDefault(instance, property);
}

void TWriter::WritePropName(std::string_view name) {
  FBytes.WriteShortString(FPropPath.empty() ? std::string(name) : FPropPath + std::string(name));
}

void TWriter::WriteProperty(TPersistent& instance, const TPropInfo& property) {
  RowOf(property).Write(*this, instance, property);
}

void TWriter::WriteObjectValue(const TPropInfo& property, TPersistent& value) {
  // What stands for any object and cannot be set to another one is no reference.
  const bool isContent =
      !property.Access->CanWrite() && !property.PropType->InheritsFrom(TComponent::ClassInfo());
  const auto* component = dynamic_cast<TComponent*>(&value);
  if (component != nullptr && !isContent) {
    const std::string name = ReferenceName(*component);
    if (name.empty() || EqualText(name, "nil")) return;  // nobody would find it
    WritePropName(property.Name);
    return WriteIdent(name);
  }
  if (auto* collection = dynamic_cast<TCollection*>(&value)) {
    WritePropName(property.Name);
    return WriteCollection(*collection);
  }
  const std::string saved = FPropPath;
  FPropPath += property.Name + '.';
  WriteProperties(value);
  FPropPath = saved;
}

// The name within the root; a component of another owner stands behind its owner's name.
std::string TWriter::ReferenceName(const TComponent& component) const {
  if (&component == Root) {
    auto* root = dynamic_cast<TComponent*>(Root);
    if (FindComponentEx(root, root->Name()) == root) return root->Name();
    return FindComponentEx(root, "Owner") == root ? "Owner" : "";
  }
  const TComponent* owner = component.Owner();
  if (owner == nullptr || owner == Root || owner->Name().empty()) return component.Name();
  return owner->Name() + '.' + component.Name();
}

void TWriter::WriteVariant(const TVariant& value) {
  struct TVisitor {
    TWriter& Writer;
    void operator()(std::monostate) const { Writer.WriteValue(TValueType::vaNull); }
    void operator()(bool value) const { Writer.WriteBoolean(value); }
    void operator()(std::int32_t value) const { Writer.WriteInteger(value); }
    void operator()(std::int64_t value) const { Writer.WriteInteger(value); }
    void operator()(double value) const { Writer.WriteFloat(value); }
    void operator()(const std::string& value) const { Writer.WriteString(value); }
  };
  std::visit(TVisitor{*this}, value);
}

void TWriter::DefineProperty(std::string_view name, const TReaderProc&,
                             const TWriterProc& writeData, bool hasData) {
  if (!hasData || !writeData) return;
  WritePropName(name);
  const std::string saved = std::exchange(FPropPath, {});
  writeData(*this);
  FPropPath = saved;
}

void TWriter::DefineTexts(std::string_view name, const TTextsReader&,
                          const TTextsWriter& writeTexts, bool hasData) {
  const auto write = [&writeTexts](TWriter& writer) {
    writer.WriteListBegin();
    for (const std::string& text : writeTexts()) writer.WriteString(text);
    writer.WriteListEnd();
  };
  DefineProperty(name, nullptr, write, hasData);
}

void TWriter::DefineBinaryProperty(std::string_view name, const TStreamProc&,
                                   const TStreamProc& writeData, bool hasData) {
  if (!hasData || !writeData) return;
  WritePropName(name);
  TMemoryStream bytes;
  writeData(bytes);
  WriteBinary(bytes.Bytes());
}

}  // namespace wrenfold
