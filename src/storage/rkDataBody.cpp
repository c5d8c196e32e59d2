#include "storage/rkDataBody.h"

#include <memory>
#include <optional>

#include "platform/core/system/Files.h"
#include "storage/rkAdvReader.h"
#include "storage/rkFieldClasses.h"
#include "storage/rkTextSource.h"

namespace wrenfold {

namespace {

// The component that the object is stored as: itself, or a wrapper that lives as long as this.
class TStoredAs {
 public:
  explicit TStoredAs(TPersistent* object) : FComponent(dynamic_cast<TComponent*>(object)) {
    if (FComponent != nullptr) return;
    FWrapper = std::make_unique<TWrapper>(object);
    FComponent = FWrapper.get();
  }
  TComponent& Component() const { return *FComponent; }

 private:
  std::unique_ptr<TWrapper> FWrapper;
  TComponent* FComponent;
};

bool IsComponent(const TPersistent* object) {
  return dynamic_cast<const TComponent*>(object) != nullptr;
}

std::string_view RestOf(TStream& stream, std::string& copy) {
  std::string_view rest;
  if (!stream.ViewRest(rest)) rest = copy = stream.ReadRest();
  return rest;
}

// The classes of the objects that an object holds, known to the reader for as long as it reads.
class TFieldClasses {
 public:
  explicit TFieldClasses(const TPersistent& object) : FClasses(RegisterFieldClasses(object)) {}
  ~TFieldClasses() { UnRegisterFieldClasses(FClasses); }
  TFieldClasses(const TFieldClasses&) = delete;
  TFieldClasses& operator=(const TFieldClasses&) = delete;

 private:
  TRegisterClasses FClasses;
};

void ReadObjects(TPersistentArray objects, TAdvReader& reader, bool isRes) {
  for (TPersistent* object : objects) {
    if (isRes) reader.ReadResHeader();
    if (object == nullptr) {
      reader.ReadSignature();
      reader.SkipComponent();
      continue;
    }
    const TStoredAs stored(object);
    const TFieldClasses classes(*object);
    reader.ReadRootComponent(&stored.Component());
  }
}

void ReadRoots(std::span<TComponent*> components, TAdvReader& reader, bool isRes) {
  for (TComponent*& component : components) {
    std::optional<TFieldClasses> classes;
    if (component != nullptr) classes.emplace(*component);
    if (isRes) reader.ReadResHeader();
    component = reader.ReadRootComponent(component);
  }
}

constexpr const char* DescriptionEnd = "the line end of an object's description";

// Reads what was converted, with errors placed in the text.
template <class Read>
void ReadConverted(TTextSource& source, const Read& read) {
  source.Finish();
  TMemoryStream binary{std::string(source.Binary())};
  TAdvReader reader(binary);
  reader.OnPlace = [&source](std::int64_t offset) { return source.PlaceOf(offset); };
  read(reader);
}

// Raises for a body whose form is broken.
void CheckBody(TPersistentArray objects, std::string_view body, TObjectStorageFormat format) {
  TByteReader bytes(body);
  if (format == osfExtBin) bytes.ReadSignature();
  for (std::size_t i = 0; i < objects.size(); ++i) {
    std::string_view name;
    std::uint32_t size = 0;
    if (format == osfExtBin) {
      bytes.SkipProperties();
      continue;
    }
    if (format == osfResBin) bytes.ReadResourceHeader(name, size);
    bytes.ReadSignature();
    bytes.SkipComponent();
  }
}

// Saves through memory, so that a failure leaves the file as it was.
template <class Save>
void ToFile(const std::string& fileName, const Save& save) {
  TMemoryStream stream;
  save(stream);
  SafeWriteFile(fileName, stream.Bytes());
}

template <class Load>
void FromFile(const std::string& fileName, const Load& load) {
  TMemoryStream stream(ReadWholeFile(fileName));
  try {
    load(stream);
  } catch (const EAbort&) {
    throw;
  } catch (const Exception& problem) {
    throw EDataHandlingError(fileName + ": " + problem.Message());
  }
}

}  // namespace

const TTypeInfo& TWrapper::ClassInfo() {
  static const TTypeInfo info =
      Publish<TWrapper>("TWrapper", TComponent::ClassInfo()).Prop("I", &TWrapper::I, nullptr);
  return info;
}

void SaveObjectBinary(TPersistentArray objects, TStream& stream, bool isRes) {
  TAdvWriter writer(stream);
  for (TPersistent* object : objects) {
    const TStoredAs stored(object);
    TComponent& component = stored.Component();
    if (isRes) writer.WriteComponentRes(component.ClassName(), component);
    else writer.WriteRootComponent(component);
  }
  writer.FlushBuffer();
}

void LoadObjectBinary(TPersistentArray objects, TStream& stream, bool isRes) {
  TAdvReader reader(stream);
  ReadObjects(objects, reader, isRes);
}

void SaveObjectBinaryEx(TPersistentArray objects, TStream& stream) {
  TAdvWriter writer(stream);
  writer.WriteSignature();
  for (TPersistent* object : objects) {
    writer.Root = object;
    if (object != nullptr) writer.WriteProperties(*object);
    writer.WriteListEnd();
  }
  writer.FlushBuffer();
}

void LoadObjectBinaryEx(TPersistentArray objects, TStream& stream) {
  TAdvReader reader(stream);
  reader.ReadSignature();
  for (TPersistent* object : objects) {
    if (object == nullptr) {
      reader.SkipProperties();
      continue;
    }
    const TFieldClasses classes(*object);
    reader.Root = object;
    reader.ReadProperties(*object);
    reader.ReadListEnd();
  }
}

void SaveObjectText(TPersistentArray objects, TStream& stream,
                    const std::vector<std::string>& names) {
  TMemoryStream binary;
  SaveObjectBinary(objects, binary);
  TByteReader bytes(binary.Bytes());
  TByteWriter text;
  for (std::size_t i = 0; i < objects.size(); ++i) {
    text.Clear();
    ObjectBinaryToText(bytes, text);
    if (!IsComponent(objects[i]))
      WriteObjectDescription(objects[i], i < names.size() ? names[i] : std::string(), stream);
    stream.WriteText(text.View());
  }
}

void LoadObjectText(TPersistentArray objects, TStream& stream) {
  TTextSource source(stream);
  for (const TPersistent* object : objects) {
    if (!IsComponent(object)) source.TakeLine(DescriptionEnd);
    source.ConvertObject();
  }
  ReadConverted(source, [&](TAdvReader& reader) { ReadObjects(objects, reader, false); });
}

void LoadComponentBinary(std::span<TComponent*> components, TStream& stream, bool isRes) {
  TAdvReader reader(stream);
  ReadRoots(components, reader, isRes);
}

void LoadComponentText(std::span<TComponent*> components, TStream& stream) {
  TTextSource source(stream);
  for (std::size_t i = 0; i < components.size(); ++i) source.ConvertObject();
  ReadConverted(source, [&](TAdvReader& reader) { ReadRoots(components, reader, false); });
}

void WriteObjectDescription(const TPersistent* object, const std::string& name, TStream& stream) {
  const std::string path = object != nullptr ? object->GetNamePath() : "nil";
  std::string line = name.empty() ? "stored Instance --> " + path : name;
  for (char& c : line)
    if (c == '\r' || c == '\n') c = ' ';  // the line is found again by its end
  stream.WriteText(line + "\r\n");
}

void SkipObjectDescription(TStream& stream) {
  TTextSource source(stream);
  source.TakeLine(DescriptionEnd);
  source.Finish();
}

void SaveObjectDataBinary(TPersistentArray objects, TStream& stream, std::string_view description,
                          bool isRes) {
  WriteBinDataHeader(stream, isRes, description);
  SaveObjectBinary(objects, stream, isRes);
}

void SaveObjectDataText(TPersistentArray objects, TStream& stream,
                        const std::vector<std::string>& names, std::string_view description) {
  WriteTextDataHeader(stream, description);
  SaveObjectText(objects, stream, names);
}

TObjectStorageFormat LoadObjectData(TPersistentArray objects, TStream& stream,
                                    const TDataHeaderHandler& handler) {
  TObjDataDscr dscr;
  std::string description;
  ReadDataHeader(stream, dscr.Format, dscr.IsRes, description);
  bool cancel = false;
  if (handler) handler(dscr, description, cancel);
  if (cancel) return dscr.Format;
  if (dscr.Format == osfText) LoadObjectText(objects, stream);
  else LoadObjectBinary(objects, stream, dscr.IsRes);
  return dscr.Format;
}

void LoadObjects(TPersistentArray objects, TStream& stream, TObjectStorageFormat format) {
  switch (format) {
    case osfBin:
      return LoadObjectBinary(objects, stream, false);
    case osfResBin:
      return LoadObjectBinary(objects, stream, true);
    case osfExtBin:
      return LoadObjectBinaryEx(objects, stream);
    case osfText:
      return LoadObjectText(objects, stream);
  }
}

// The text form is checked by its conversion.
void SafeLoadObjects(TPersistentArray objects, TStream& stream, TObjectStorageFormat format) {
  if (format != osfText) {
    const std::int64_t start = stream.Position();
    std::string copy;
    CheckBody(objects, RestOf(stream, copy), format);
    stream.SetPosition(start);
  }
  LoadObjects(objects, stream, format);
}

void SaveObjectBinary(TPersistentArray objects, const std::string& fileName, bool isRes) {
  ToFile(fileName, [&](TStream& stream) { SaveObjectBinary(objects, stream, isRes); });
}

void LoadObjectBinary(TPersistentArray objects, const std::string& fileName, bool isRes) {
  FromFile(fileName, [&](TStream& stream) { LoadObjectBinary(objects, stream, isRes); });
}

void SaveObjectBinaryEx(TPersistentArray objects, const std::string& fileName) {
  ToFile(fileName, [&](TStream& stream) { SaveObjectBinaryEx(objects, stream); });
}

void LoadObjectBinaryEx(TPersistentArray objects, const std::string& fileName) {
  FromFile(fileName, [&](TStream& stream) { LoadObjectBinaryEx(objects, stream); });
}

void SaveObjectText(TPersistentArray objects, const std::string& fileName,
                    const std::vector<std::string>& names) {
  ToFile(fileName, [&](TStream& stream) { SaveObjectText(objects, stream, names); });
}

void LoadObjectText(TPersistentArray objects, const std::string& fileName) {
  FromFile(fileName, [&](TStream& stream) { LoadObjectText(objects, stream); });
}

void SaveObjectDataBinary(TPersistentArray objects, const std::string& fileName,
                          std::string_view description, bool isRes) {
  ToFile(fileName,
         [&](TStream& stream) { SaveObjectDataBinary(objects, stream, description, isRes); });
}

void SaveObjectDataText(TPersistentArray objects, const std::string& fileName,
                        const std::vector<std::string>& names, std::string_view description) {
  ToFile(fileName,
         [&](TStream& stream) { SaveObjectDataText(objects, stream, names, description); });
}

TObjectStorageFormat LoadObjectData(TPersistentArray objects, const std::string& fileName,
                                    const TDataHeaderHandler& handler) {
  TObjectStorageFormat format = osfBin;
  FromFile(fileName, [&](TStream& stream) { format = LoadObjectData(objects, stream, handler); });
  return format;
}

std::string GetProps(TPersistentArray objects, TObjectStorageFormat format) {
  TStringStream stream;
  if (format == osfBin) SaveObjectBinary(objects, stream);
  if (format == osfText) SaveObjectText(objects, stream);
  return stream.TakeBytes();
}

void SetProps(TPersistentArray objects, std::string_view text, TObjectStorageFormat format) {
  TStringStream stream{std::string(text)};
  LoadObjects(objects, stream, format);
}

void SetPropsEx(TPersistentArray objects, std::string_view text, TObjectStorageFormat format) {
  TStringStream stream{std::string(text)};
  SafeLoadObjects(objects, stream, format);
}

std::string GetProps2(TPersistent& object) {
  TStringStream stream;
  SaveObjectBinaryEx({&object}, stream);
  return stream.TakeBytes();
}

void SetProps2(TPersistent& object, std::string_view text) {
  TStringStream stream{std::string(text)};
  TAdvReader reader(stream);
  reader.IgnoreErrors = true;
  reader.Root = &object;
  reader.ReadSignature();
  reader.ReadProperties(object);
  reader.ReadListEnd();
}

void ImportProps(TPersistent& target, TPersistent& source) {
  SetProps2(target, GetProps2(source));
}

}  // namespace wrenfold
