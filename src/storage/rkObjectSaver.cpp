#include "storage/rkObjectSaver.h"

#include "platform/core/stream/FormText.h"
#include "platform/core/system/Files.h"
#include "storage/rkTextSource.h"

namespace wrenfold {

namespace {

bool IsNamed(const TComponent* component) {
  return component != nullptr && !component->Name().empty();
}

// An owner counts while it and its own owner have names: the outermost owner is the root that the
// path starts from.
std::string ComponentPath(const TComponent& component) {
  std::string path = component.Name();
  for (const TComponent* owner = component.Owner(); IsNamed(owner) && IsNamed(owner->Owner());
       owner = owner->Owner())
    path = owner->Name() + '.' + path;
  return path;
}

std::string ObjectName(const TPersistent* object, const std::vector<std::string>& names,
                       std::size_t index) {
  if (index < names.size() && !names[index].empty()) return names[index];
  const auto* component = dynamic_cast<const TComponent*>(object);
  return component != nullptr ? ComponentPath(*component) : std::string();
}

std::vector<TPersistent*> WithoutNulls(TPersistentArray objects) {
  std::vector<TPersistent*> present(objects.begin(), objects.end());
  std::erase(present, nullptr);
  return present;
}

[[noreturn]] void RaiseForFile(const std::string& fileName, const Exception& problem) {
  throw EFitReaderError(fileName + ": " + problem.Message());
}

}  // namespace

TStreamOriginalFormat RecognizeFormat(std::string_view bytes) {
  const TFormFormat format = TestFormFormat(bytes);
  if (format == TFormFormat::Unknown) return sofUnknown;
  return format == TFormFormat::Text ? sofText : sofBinary;
}

void TObjectSaver::TakeRecognizedForm(TStream& stream) {
  char bytes[FilerSignature.size()] = {};
  const std::int64_t start = stream.Position();
  const std::size_t count = stream.Read(bytes, sizeof bytes);
  stream.SetPosition(start);
  OriginalFormat = RecognizeFormat({bytes, count});
}

void TObjectSaver::LoadObjects(TPersistentArray objects, TStream& stream) {
  if (RecognitionOn) TakeRecognizedForm(stream);
  if (OriginalFormat == sofBinary) return LoadObjectBinary(objects, stream);
  if (OriginalFormat == sofText) return LoadObjectText(objects, stream);
  throw EFitReaderError("Stream read error at offset " + std::to_string(stream.Position()) +
                        ": expected a stored object in binary or text form");
}

void TObjectSaver::LoadObjectBinary(TPersistentArray objects, TStream& stream) {
  ReadObjects(objects, *CreateReader(stream));
}

void TObjectSaver::LoadObjectText(TPersistentArray objects, TStream& stream) {
  TTextSource source(stream);
  for (std::size_t i = 0; i < objects.size(); ++i) source.ConvertObject();
  source.Finish();
  TMemoryStream binary{std::string(source.Binary())};
  const std::unique_ptr<TFitReader> reader = CreateReader(binary);
  reader->OnPlace = [&source](std::int64_t offset) { return source.PlaceOf(offset); };
  ReadObjects(objects, *reader);
}

void TObjectSaver::ReadObjects(TPersistentArray objects, TFitReader& reader) {
  for (TPersistent* object : objects) {
    bool allowRead = object != nullptr;
    DoBeforeReadObject(object, reader, allowRead);
    std::string name;
    if (allowRead && object != nullptr) name = reader.ReadAsComponent(*object);
    else reader.SkipObject();
    DoAfterReadObject(object, reader, name);
  }
}

void TObjectSaver::LoadObjects(TPersistentArray objects, const std::string& fileName) {
  TMemoryStream stream(ReadWholeFile(fileName));
  try {
    LoadObjects(objects, stream);
  } catch (const EAbort&) {
    throw;
  } catch (const Exception& problem) {
    RaiseForFile(fileName, problem);
  }
}

// Walks over the stored form; raises where it is broken.
void TObjectSaver::CheckForm(TPersistentArray objects, TStream& stream) {
  const std::vector<TPersistent*> none(objects.size(), nullptr);
  TObjectSaver checker;
  checker.RecognitionOn = RecognitionOn;
  checker.OriginalFormat = OriginalFormat;
  checker.LoadObjects(none, stream);
  stream.SetPosition(0);
}

bool TObjectSaver::SafeLoadObjects(TPersistentArray objects, const std::string& fileName) {
  if (!FileExists(fileName) || FileSize(fileName) == 0) return false;
  TMemoryStream stream(ReadWholeFile(fileName));
  const std::vector<TPersistent*> present = WithoutNulls(objects);
  TObjectSaver memory;
  memory.IgnoreErrors = true;
  std::string before;
  try {
    CheckForm(objects, stream);
    before = memory.GetObjectProps(present);
    LoadObjects(objects, stream);
    return true;
  } catch (const Exception& problem) {
    if (!before.empty()) memory.SetObjectProps(present, before);
    if (dynamic_cast<const EAbort*>(&problem) != nullptr) throw;
    RaiseForFile(fileName, problem);
  }
}

void TObjectSaver::SaveObjects(TPersistentArray objects, const std::vector<std::string>& names,
                               TStream& stream) {
  if (OriginalFormat == sofBinary) return SaveObjectBinary(objects, names, stream);
  if (OriginalFormat == sofText) return SaveObjectText(objects, names, stream);
  throw EFitWriterError("Stream write error: the form to write is not known");
}

void TObjectSaver::SaveObjectBinary(TPersistentArray objects, const std::vector<std::string>& names,
                                    TStream& stream) {
  const std::unique_ptr<TFitWriter> writer = CreateWriter(stream);
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const std::string name = ObjectName(objects[i], names, i);
    bool allowWrite = objects[i] != nullptr;
    DoBeforeWriteObject(objects[i], name, *writer, allowWrite);
    if (!allowWrite || objects[i] == nullptr) continue;
    writer->WriteAsComponent(*objects[i], name);
    DoAfterWriteObject(objects[i], name, *writer);
  }
  writer->FlushBuffer();
}

void TObjectSaver::SaveObjectText(TPersistentArray objects, const std::vector<std::string>& names,
                                  TStream& stream) {
  TMemoryStream binary;
  SaveObjectBinary(objects, names, binary);
  TByteReader bytes(binary.Bytes());
  TByteWriter text;
  while (!bytes.AtEnd()) ObjectBinaryToText(bytes, text);
  stream.WriteText(text.View());
}

void TObjectSaver::SaveObjects(TPersistentArray objects, const std::vector<std::string>& names,
                               const std::string& fileName) {
  TMemoryStream stream;
  SaveObjects(objects, names, stream);
  SafeWriteFile(fileName, stream.Bytes());
}

std::string TObjectSaver::GetObjectProps(TPersistentArray objects) {
  TStringStream stream;
  SaveObjects(objects, {}, stream);
  return stream.TakeBytes();
}

void TObjectSaver::SetObjectProps(TPersistentArray objects, std::string_view text) {
  TStringStream stream{std::string(text)};
  LoadObjects(objects, stream);
}

std::unique_ptr<TFitReader> TObjectSaver::CreateReader(TStream& stream) {
  std::unique_ptr<TFitReader> reader;
  DoBeforeCreateReader(stream, reader);
  if (reader == nullptr) reader = std::make_unique<TFitReader>(stream, BufferSize);
  reader->IgnoreErrors = IgnoreErrors;
  DoAfterCreateReader(*reader);
  return reader;
}

std::unique_ptr<TFitWriter> TObjectSaver::CreateWriter(TStream& stream) {
  std::unique_ptr<TFitWriter> writer;
  DoBeforeCreateWriter(stream, writer);
  if (writer == nullptr) writer = std::make_unique<TFitWriter>(stream, BufferSize);
  writer->Options = WriterOptions;
  DoAfterCreateWriter(*writer);
  return writer;
}

void TObjectSaver::DoBeforeCreateReader(TStream& stream, std::unique_ptr<TFitReader>& reader) {
  OnBeforeCreateReader(*this, stream, reader);
}

void TObjectSaver::DoAfterCreateReader(TFitReader& reader) {
  OnAfterCreateReader(*this, reader);
}

void TObjectSaver::DoBeforeCreateWriter(TStream& stream, std::unique_ptr<TFitWriter>& writer) {
  OnBeforeCreateWriter(*this, stream, writer);
}

void TObjectSaver::DoAfterCreateWriter(TFitWriter& writer) {
  OnAfterCreateWriter(*this, writer);
}

void TObjectSaver::DoBeforeReadObject(TPersistent* object, TFitReader& reader, bool& allowRead) {
  OnBeforeReadObject(*this, object, reader, allowRead);
}

void TObjectSaver::DoAfterReadObject(TPersistent* object, TFitReader& reader,
                                     const std::string& objectName) {
  OnAfterReadObject(*this, object, reader, objectName);
}

void TObjectSaver::DoBeforeWriteObject(TPersistent* object, const std::string& objectName,
                                       TFitWriter& writer, bool& allowWrite) {
  OnBeforeWriteObject(*this, object, objectName, writer, allowWrite);
}

void TObjectSaver::DoAfterWriteObject(TPersistent* object, const std::string& objectName,
                                      TFitWriter& writer) {
  OnAfterWriteObject(*this, object, objectName, writer);
}

void TPropSaver::DoBeforeCreateWriter(TStream& stream, std::unique_ptr<TFitWriter>& writer) {
  TObjectSaver::DoBeforeCreateWriter(stream, writer);
  if (writer == nullptr) writer = std::make_unique<TFilteringWriter>(stream, BufferSize);
}

void TPropSaver::DoAfterCreateWriter(TFitWriter& writer) {
  if (auto* filtering = dynamic_cast<TFilteringWriter*>(&writer)) {
    filtering->SetIgnoredProps(FIgnoredProps);
    filtering->SetStoredProps(FStoredProps);
  }
  TObjectSaver::DoAfterCreateWriter(writer);
}

// Each object starts with the lists as they are: what was let pass in the object before is
// forgotten.
void TPropSaver::DoBeforeWriteObject(TPersistent* object, const std::string& objectName,
                                     TFitWriter& writer, bool& allowWrite) {
  if (auto* filtering = dynamic_cast<TFilteringWriter*>(&writer)) filtering->PrepareObjProps();
  TObjectSaver::DoBeforeWriteObject(object, objectName, writer, allowWrite);
}

void CopyStoredProps(TPersistent& target, TPersistent& source) {
  TObjectSaver saver;
  saver.SetObjectProps({&target}, saver.GetObjectProps({&source}));
}

}  // namespace wrenfold
