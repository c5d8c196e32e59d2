#include "platform/core/stream/Reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "platform/core/model/ClassRegistry.h"
#include "platform/core/model/NamePath.h"
#include "platform/core/stream/PropKinds.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

// Components nest in the stream as they do on a form; far more is no form but an attack.
constexpr int MaxObjectDepth = 1000;

std::string_view RestOf(TStream& stream, std::string& owned) {
  std::string_view bytes;
  if (stream.ViewRest(bytes)) return bytes;
  owned = stream.ReadRest();
  return owned;
}

double CurrencyToFloat(std::int64_t value) {
  return static_cast<double>(value) / 10000;
}

std::string WideToUtf8(std::string_view bytes) {
  std::u16string text(bytes.size() / 2, u'\0');
  std::copy_n(bytes.data(), text.size() * 2, reinterpret_cast<char*>(text.data()));
  return Utf8FromUtf16(text);
}

}  // namespace

// The path of the property being read, kept for messages.
struct TReader::TPropertyScope {
  TPropertyScope(TReader& reader, std::string path)
      : FReader(reader), FSaved(std::exchange(reader.FPath, std::move(path))) {}
  ~TPropertyScope() { FReader.FPath = std::move(FSaved); }
  TReader& FReader;
  std::string FSaved;
};

// Stands for one level of objects inside objects; the stack bears no more than a certain number.
struct TReader::TDepthScope {
  explicit TDepthScope(TReader& reader) : FReader(reader) {
    if (FReader.FDepth == MaxObjectDepth)
      throw EReadError(fmt::format("Objects nest deeper than {} levels at offset {}",
                                   MaxObjectDepth, FReader.Position()));
    ++FReader.FDepth;
  }
  ~TDepthScope() { --FReader.FDepth; }
  TReader& FReader;
};

TReader::TReader(TStream& stream, int)
    : FStream(stream),
      FStart(stream.Position()),
      FBytes(RestOf(stream, FOwned), static_cast<std::size_t>(FStart)) {}

TReader::~TReader() {
  FlushBuffer();
}

void TReader::FlushBuffer() {
  FStream.SetPosition(Position());
}

std::int64_t TReader::Position() const {
  return FStart + static_cast<std::int64_t>(FBytes.Position());
}

std::string TReader::PropertyPath() const {
  return FPath;
}

bool TReader::Error(const std::string&) {
  return false;
}

std::string TReader::ErrorAt(std::int64_t offset, std::string_view what,
                             const Exception& problem) const {
  const std::string place = OnPlace ? OnPlace(offset) : fmt::format("offset {}", offset);
  return fmt::format("Error reading {} at {}: {}", what, place, problem.Message());
}

void TReader::RaiseInvalidValue(const char* expected) const {
  throw EReadError(fmt::format("Invalid property value: expected {}, found {}", expected,
                               ValueTypeName(NextValue())));
}

TValueType TReader::NextValue() const {
  return TByteReader(FBytes).PeekValueType();
}

TValueType TReader::ReadValue() {
  return FBytes.ReadValueType();
}

// Where a property name may come its length stands, which is no tag.
bool TReader::EndOfList() const {
  return TByteReader(FBytes).PeekByte("a value or the end of a list") == 0;
}

bool TReader::ReadBoolean() {
  const TValueType type = NextValue();
  if (type != TValueType::vaTrue && type != TValueType::vaFalse) RaiseInvalidValue("a Boolean");
  ReadValue();
  return type == TValueType::vaTrue;
}

char TReader::ReadChar() {
  const std::string text = ReadString();
  if (text.size() != 1) throw EReadError("Invalid property value: expected one character");
  return text[0];
}

std::int64_t TReader::ReadInt64() {
  if (!IsIntegerValue(NextValue())) RaiseInvalidValue("an integer");
  return FBytes.ReadIntegerValue();
}

// Unsigned values of the full 32 bits come back as their two's complement.
std::int32_t TReader::ReadInteger() {
  const std::int64_t value = ReadInt64();
  if (value < INT32_MIN || value > UINT32_MAX)
    throw EReadError(fmt::format("Invalid property value: {} does not fit 32 bits", value));
  return static_cast<std::int32_t>(value);
}

double TReader::ReadFloat() {
  switch (NextValue()) {
    case TValueType::vaExtended: {
      ReadValue();
      const TExtended extended = FBytes.ReadExtended();
      const double value = ExtendedToDouble(extended);
      if (std::isinf(value) && extended.IsFinite())
        throw EReadError("Invalid property value: the number does not fit a double");
      return value;
    }
    case TValueType::vaSingle:
      ReadValue();
      return static_cast<double>(FBytes.ReadFixed<float>("a single float"));
    case TValueType::vaDouble:
      ReadValue();
      return FBytes.ReadFixed<double>("a double float");
    case TValueType::vaDate:
      ReadValue();
      return FBytes.ReadFixed<double>("a date");
    case TValueType::vaCurrency:
      ReadValue();
      return CurrencyToFloat(FBytes.ReadFixed<std::int64_t>("a currency value"));
    default:
      if (!IsIntegerValue(NextValue())) RaiseInvalidValue("a number");
      return static_cast<double>(FBytes.ReadIntegerValue());
  }
}

std::string TReader::ReadIdent() {
  const TValueTypeRow& row = RowOf(NextValue());
  if (row.Family != TValueFamily::Identifier && row.Family != TValueFamily::Word)
    RaiseInvalidValue("an identifier");
  ReadValue();
  return row.Family == TValueFamily::Word ? std::string(row.Content)
                                          : std::string(FBytes.ReadShortString(row.Content));
}

std::string TReader::ReadString() {
  switch (NextValue()) {
    case TValueType::vaString:
      ReadValue();
      return std::string(FBytes.ReadShortString("a string"));
    case TValueType::vaLString:
    case TValueType::vaUTF8String:
      ReadValue();
      return std::string(FBytes.ReadLongString("a long string"));
    case TValueType::vaWString: {
      ReadValue();
      const std::uint64_t units = FBytes.ReadFixed<std::uint32_t>("a wide string");
      return WideToUtf8(FBytes.ReadView(units * 2, "a wide string"));
    }
    default:
      RaiseInvalidValue("a string");
  }
}

std::uint32_t TReader::ReadSet(const TTypeInfo& elementType) {
  if (NextValue() != TValueType::vaSet) RaiseInvalidValue("a set");
  ReadValue();
  std::uint32_t bits = 0;
  while (true) {
    const std::string_view name = FBytes.ReadShortString("an identifier of a set");
    if (name.empty()) return bits;
    const auto value = elementType.FindEnumValue(name);
    if (!value || *value > 31)
      throw EReadError(
          fmt::format("Invalid property value: {} is no element of {}", name, elementType.Name()));
    bits |= std::uint32_t{1} << *value;
  }
}

std::string_view TReader::ReadBinary() {
  if (NextValue() != TValueType::vaBinary) RaiseInvalidValue("binary data");
  ReadValue();
  return FBytes.ReadLongString("binary data");
}

void TReader::ReadListBegin() {
  if (NextValue() != TValueType::vaList) RaiseInvalidValue("a list");
  ReadValue();
}

void TReader::ReadListEnd() {
  if (!FBytes.SkipEndOfList("the end of a list")) FBytes.Fail("the end of a list");
}

void TReader::ReadSignature() {
  FBytes.ReadSignature();
}

std::string TReader::ReadResHeader() {
  std::string_view name;
  std::uint32_t size = 0;
  FBytes.ReadResourceHeader(name, size);
  return std::string(name);
}

void TReader::SkipValue() {
  FBytes.SkipValue();
}

void TReader::SkipProperty() {
  FBytes.ReadShortString("a property name");
  FBytes.SkipValue();
}

void TReader::SkipProperties() {
  FBytes.SkipProperties();
}

void TReader::SkipComponent() {
  FBytes.SkipComponent();
}

TComponent* TReader::CreateComponent(std::string_view className, std::string_view,
                                     TComponent* owner) {
  TComponent* component = FindClass(className).MakeComponent(owner);
  if (component == nullptr)
    throw EClassNotFound(fmt::format("Class {} is no class of components", className));
  return component;
}

TComponent* TReader::ReadRootComponent(TComponent* root) {
  ReadSignature();
  const std::int64_t start = Position();
  if (FBytes.ReadFilerFlags() & ffChildPos) FBytes.ReadIntegerValue();
  const std::string_view className = FBytes.ReadShortString("a class name");
  const std::string name(FBytes.ReadShortString("a component name"));
  std::unique_ptr<TComponent> made;
  if (root == nullptr) {
    made.reset(CreateComponent(className, name, nullptr));
    root = made.get();
  }
  Root = root;
  FOwner = root;
  root->SetComponentState(csLoading, true);
  try {
    root->SetName(name);
  } catch (const EComponentError& problem) {
    throw EReadError(ErrorAt(start, "a component", problem));
  }
  ReadDataInner(*root);
  ResolveReferences(root);
  for (TComponent* component : root->Components())
    if (component->ComponentState().Contains(csLoading)) component->Loaded();
  root->Loaded();
  return made ? made.release() : root;
}

void TReader::ReadDataInner(TComponent& component) {
  ReadProperties(component);
  ReadListEnd();
  ReadChildren(component);
}

void TReader::ReadChildren(TComponent& component) {
  const TDepthScope depth(*this);
  while (!EndOfList()) ReadComponent(component);
  ReadListEnd();
}

void TReader::ReadComponent(TComponent& parent) {
  const std::size_t start = FBytes.Position();
  const std::uint8_t flags = FBytes.ReadFilerFlags();
  if (flags & ffChildPos) FBytes.ReadIntegerValue();
  const std::string_view className = FBytes.ReadShortString("a class name");
  const std::string name(FBytes.ReadShortString("a component name"));
  TComponent* component = nullptr;
  if (flags & ffInherited) component = FOwner->FindComponent(name);
  if (component == nullptr) {
    try {
      TComponent* owner = parent.GetChildOwner();
      component = CreateComponent(className, name, owner != nullptr ? owner : FOwner);
      component->SetComponentState(csLoading, true);
      component->SetName(name);
    } catch (const Exception& problem) {
      delete component;  // its owner would keep one that has no name
      const std::string message =
          ErrorAt(FStart + static_cast<std::int64_t>(start), "a component", problem);
      const bool unknownClass = dynamic_cast<const EClassNotFound*>(&problem) != nullptr;
      if (!Error(message)) {
        if (unknownClass) throw EClassNotFound(message);
        throw EReadError(message);
      }
      FBytes.Seek(start);
      return SkipComponent();
    }
  }
  component->SetParentComponent(&parent);
  ReadDataInner(*component);
}

void TReader::ReadProperties(TPersistent& instance) {
  while (!EndOfList()) ReadProperty(instance);
}

// An error of the contents that is ignored leaves the reader behind the value. One of the form
// shows up again when the value is skipped. What stands goes up as it is, whatever it is inside of.
void TReader::ReadProperty(TPersistent& instance) {
  const std::string_view path = FBytes.ReadShortString("a property name");
  const std::size_t start = FBytes.Position();
  if (FPath.empty()) FErrorStands = false;
  const TPropertyScope scope(*this, instance.ClassName() + '.' + std::string(path));
  try {
    ReadPropertyAt(instance, path, start);
  } catch (const EAbort&) {
    throw;
  } catch (const Exception& problem) {
    if (FErrorStands) throw;
    FErrorStands = true;
    FBytes.Seek(start);
    FBytes.SkipValue();
    const std::string message = ErrorAt(FStart + static_cast<std::int64_t>(start), FPath, problem);
    FErrorStands = !Error(message);
    if (FErrorStands) throw EReadError(message);
  }
}

void TReader::ReadPropertyAt(TPersistent& instance, std::string_view path, std::size_t start) {
  TPersistent* current = &instance;
  std::string_view rest = path;
  for (auto dot = rest.find('.'); dot != rest.npos && current != nullptr; dot = rest.find('.')) {
    const TPropInfo* step = current->GetClassInfo().FindProperty(rest.substr(0, dot));
    current =
        step != nullptr && step->Kind() == tkClass ? step->Access->GetObject(*current) : nullptr;
    rest.remove_prefix(dot + 1);
  }
  if (current != nullptr) {
    const TPropInfo* property = current->GetClassInfo().FindProperty(rest);
    if (property != nullptr) return RowOf(*property).Read(*this, *current, *property);
    if (ReadDefinedProperty(*current, rest)) return;
  }
  FBytes.SkipValue();
  if (!instance.TakeUnknownProperty(path, FBytes.Since(start)))
    throw EReadError("Property does not exist");
}

bool TReader::ReadDefinedProperty(TPersistent& instance, std::string_view name) {
  const auto savedName = std::exchange(FDefinedName, name);
  const bool savedRead = std::exchange(FDefinedRead, false);
  instance.DefineProperties(*this);
  FDefinedName = savedName;
  return std::exchange(FDefinedRead, savedRead);
}

void TReader::DefineProperty(std::string_view name, const TReaderProc& readData, const TWriterProc&,
                             bool) {
  if (FDefinedRead || !readData || !EqualText(name, FDefinedName)) return;
  readData(*this);
  FDefinedRead = true;
}

void TReader::DefineTexts(std::string_view name, const TTextsReader& readTexts, const TTextsWriter&,
                          bool hasData) {
  const auto read = [&readTexts](TReader& reader) {
    std::vector<std::string> texts;
    reader.ReadListBegin();
    while (!reader.EndOfList()) texts.push_back(reader.ReadString());
    reader.ReadListEnd();
    readTexts(std::move(texts));
  };
  DefineProperty(name, read, nullptr, hasData);
}

void TReader::DefineBinaryProperty(std::string_view name, const TStreamProc& readData,
                                   const TStreamProc&, bool) {
  if (FDefinedRead || !readData || !EqualText(name, FDefinedName)) return;
  TMemoryStream bytes{std::string(ReadBinary())};
  readData(bytes);
  FDefinedRead = true;
}

TMethod TReader::ReadMethod() {
  if (NextValue() == TValueType::vaNil) return ReadValue(), TMethod{};
  const std::string name = ReadIdent();
  const TMethod method = OnFindMethod ? OnFindMethod(*this, name) : TMethod{};
  if (!method) throw EReadError("Method " + name + " does not exist");
  return method;
}

TVariant TReader::ReadVariant() {
  const TValueType type = NextValue();
  switch (type) {
    case TValueType::vaNull:
    case TValueType::vaNil:
      return ReadValue(), TVariant();
    case TValueType::vaTrue:
    case TValueType::vaFalse:
      return ReadBoolean();
    case TValueType::vaInt64:
      return ReadInt64();
    default:
      break;
  }
  if (IsIntegerValue(type)) return ReadInteger();
  if (IsTextValue(type)) return ReadString();
  return ReadFloat();
}

void TReader::ReadObjectValue(TPersistent& instance, const TPropInfo& property) {
  switch (NextValue()) {
    case TValueType::vaNil:
      ReadValue();
      return property.Access->SetObject(instance, nullptr);
    // A component may be called as one of the values that have a tag of their own.
    case TValueType::vaFalse:
    case TValueType::vaTrue:
    case TValueType::vaNull:
    case TValueType::vaIdent:
      FReferences.push_back({&instance, &property, Position(), ReadIdent(), FPath});
      return;
    case TValueType::vaCollection: {
      // Others hold its items; whatever put the value here, the class did not write it.
      if (property.NeverStored) throw EReadError("The property is not read from a stream");
      auto* collection = dynamic_cast<TCollection*>(property.Access->GetObject(instance));
      if (collection == nullptr) throw EReadError("The property holds no collection");
      if (collection->ItemsAreHeld()) throw EReadError("Its items cannot be replaced");
      return ReadCollection(*collection);
    }
    default:
      RaiseInvalidValue("a component name, nil or a collection");
  }
}

// A stream may store a collection twice, and the references of the first time wait for items that
// the second time replaces.
void TReader::RetireItems(TCollection& collection) {
  if (FReferences.empty()) return collection.Clear();
  while (collection.Count() > 0) {
    FRetired.emplace_back(collection.Items().back());
    collection.Items().back()->SetCollection(nullptr);
  }
}

void TReader::ReadCollection(TCollection& collection) {
  if (NextValue() != TValueType::vaCollection) RaiseInvalidValue("a collection");
  ReadValue();
  const TDepthScope depth(*this);
  const TUpdate update(collection);
  RetireItems(collection);
  while (!EndOfList()) {
    if (NextValue() != TValueType::vaList) ReadInteger();  // the order, which is the order read in
    ReadListBegin();
    TCollectionItem* item = collection.Add();
    if (item == nullptr) throw EReadError("Items of " + collection.ClassName() + " cannot be made");
    ReadProperties(*item);
    ReadListEnd();
  }
  ReadListEnd();
}

// References by component name are settled when all components are there.
void TReader::ResolveReferences(TComponent* root) {
  for (const TReference& reference : std::exchange(FReferences, {})) {
    TComponent* target = FindComponentEx(root, reference.Name);
    try {
      if (target == nullptr)
        throw EReadError(fmt::format("component {} does not exist", reference.Name));
      reference.Property->Access->SetObject(*reference.Instance, target);
    } catch (const EAbort&) {
      throw;
    } catch (const Exception& problem) {
      const std::string message = ErrorAt(reference.Offset, reference.Path, problem);
      if (!Error(message)) throw EReadError(message);
    }
  }
}

}  // namespace wrenfold
