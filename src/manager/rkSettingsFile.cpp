// Reading, writing and keeping of the settings file.
#include "manager/rkSettingsFile.h"

#include <filesystem>

#include "foundation/rkAppUtils.h"
#include "locale/rkLocale.h"
#include "manager/rkErrorLog.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"
#include "storage/rkTextSource.h"

namespace wrenfold {

namespace {

// What becomes of a value that cannot be read.
enum class TBadValue { Asks, IsLeftOut, EndsTheLoad };

// Writes down in LeftOut what was not read.
class TSettingsReader : public TFitReader {
 public:
  TSettingsReader(TStream& stream, int bufferSize, TBadValue badValue, std::string& leftOut)
      : TFitReader(stream, bufferSize), FBadValue(badValue), FLeftOut(leftOut) {}

 protected:
  bool Error(const std::string& message) override {
    if (FBadValue == TBadValue::EndsTheLoad || !TFitReader::Error(message)) return false;
    FLeftOut += (FLeftOut.empty() ? "" : "\r\n") + message;
    return true;
  }

 private:
  TBadValue FBadValue;
  std::string& FLeftOut;
};

class TSettingsSaver : public TObjectSaver {
 public:
  explicit TSettingsSaver(TBadValue badValue) : FBadValue(badValue) {
    RecognitionOn = true;
    IgnoreErrors = badValue == TBadValue::IsLeftOut;
  }
  std::string LeftOut;

 protected:
  void DoBeforeCreateReader(TStream& stream, std::unique_ptr<TFitReader>& reader) override {
    TObjectSaver::DoBeforeCreateReader(stream, reader);
    if (!reader) reader = std::make_unique<TSettingsReader>(stream, BufferSize, FBadValue, LeftOut);
  }

 private:
  TBadValue FBadValue;
};

// Stands in for the settings root where only the experts count.
class TStoredExperts : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info =
        Publish<TStoredExperts>("TStoredExperts", TPersistent::ClassInfo());
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TStoredExperts(const TActiveExperts& experts) : Experts(this) {
    for (int i = 0; i < experts.Count(); ++i)
      Experts.Add(experts.KeyOf(*experts.Item(i)))->Active = true;
  }

  void DefineProperties(TFiler& filer) override {
    auto* reader = dynamic_cast<TFitReader*>(&filer);
    if (reader == nullptr) return;
    filer.DefineProperty(
        "ActiveExperts_", [&](TReader&) { reader->ReadFixedCollection(Experts, false); }, {},
        false);
  }
  bool TakeUnknownProperty(std::string_view, std::string_view) override { return true; }

  TActiveExperts Experts;
};

std::string StoredBytes(TSpcObject& root, TStreamOriginalFormat format) {
  TObjectSaver saver;
  saver.OriginalFormat = format;
  TPersistent* const objects[] = {&root};
  TMemoryStream stream;
  saver.SaveObjects(objects, {SettingsObjectName}, stream);
  return std::string(stream.Bytes());
}

bool HasContents(const std::string& fileName, const std::string& bytes) {
  try {
    return ReadWholeFile(fileName) == bytes;
  } catch (const std::exception&) {
    return false;
  }
}

// Walks over the one record of a settings file; raises where it is none.
void CheckRecord(std::string_view binary) {
  TByteReader record(binary);
  record.ReadSignature();
  const std::size_t start = record.Position();
  record.ReadFilerFlags();
  const std::string_view className = record.ReadShortString("a class name");
  if (className != TExpData::ClassInfo().Name())
    throw EReadError("It holds an object of class " + std::string(className));
  record.Seek(start);
  record.SkipComponent();
}

}  // namespace

void SaveSettingsObject(TSpcObject& root, const std::string& fileName,
                        TObjectStorageFormat format) {
  SafeWriteFile(fileName, StoredBytes(root, format == osfText ? sofText : sofBinary));
}

void TSettingsFile::ReadActive(TActiveExperts& experts) const {
  if (FDropped) return;
  TStoredExperts stored(experts);
  TPersistent* const objects[] = {&stored};
  TSettingsSaver saver(TBadValue::EndsTheLoad);
  try {
    if (!saver.SafeLoadObjects(objects, Source())) return;
  } catch (const std::exception&) {
    return;  // The load itself will tell.
  }
  for (int i = 0; i < experts.Count(); ++i) {
    auto& expert = static_cast<TExpertInfo&>(*experts.Item(i));
    if (const TExpertInfo* known = stored.Experts.Find(expert.ExpertName))
      expert.Active = known->Active;
  }
}

bool TSettingsFile::Load(TExpData& root, bool ask) {
  if (FDropped) return false;
  FUnread = true;
  FProblem.clear();
  TSettingsSaver saver(ask ? TBadValue::Asks : TBadValue::IsLeftOut);
  TPersistent* const objects[] = {&root};
  try {
    FKnown = Contents();
    const bool loaded = saver.SafeLoadObjects(objects, Source());
    FUnread = false;
    if (!saver.LeftOut.empty()) NoteProblem(sSettingsLeftOut, saver.LeftOut);
    return loaded;
  } catch (const std::exception& error) {
    NoteProblem(sSettingsUnreadable, error.what());
    throw;
  }
}

// The copy is made at once, so that what is told is true. Where none can be made, the file itself
// stays until there is one.
void TSettingsFile::NoteProblem(int textId, const std::string& reason) {
  std::string kept = FFileName;
  FUnread = true;
  try {
    kept = Keep(".bad");
    FUnread = false;
  } catch (const std::exception&) {
    ErrorLog().Add(nullptr, std::current_exception());
  }
  FProblem = LocaleFormat(textId, kept, reason);
}

void TSettingsFile::Save(TExpData& root) {
  if (FUnread) Keep(".bad");
  std::string bytes = StoredBytes(root, sofBinary);
  SafeWriteFile(FFileName, bytes);
  FKnown = std::move(bytes);
  FUnread = FDropped = false;
}

bool TSettingsFile::SaveOrTell(TExpData& root) {
  try {
    Save(root);
    return true;
  } catch (const std::exception& error) {
    ErrorLog().Add(nullptr, std::current_exception());
    if (!std::exchange(FSaveFailureTold, true))
      MsgWarning(LocaleFormat(sSettingsNotWritable, std::string(error.what())), {mbOK});
    return false;
  }
}

bool TSettingsFile::Drop() {
  FDropped = true;
  FUnread = false;
  FProblem.clear();
  return !FileExists(FFileName) || DeleteFile(FFileName);
}

bool TSettingsFile::ChangedOnDisk() const {
  return Contents() != FKnown;
}

void TSettingsFile::Export(TExpData& root, const std::string& fileName,
                           TObjectStorageFormat format) const {
  const bool text = format == osfText || EqualText(ExtractFileExt(fileName), ".stx");
  SafeWriteFile(fileName, StoredBytes(root, text ? sofText : sofBinary));
}

std::string TSettingsFile::CheckImport(const std::string& fileName) {
  std::string bytes = ReadWholeFile(fileName);
  try {
    if (RecognizeFormat(bytes) != sofText) return CheckRecord(bytes), bytes;
    TMemoryStream stream(bytes);
    TTextSource source(stream);
    source.ConvertObject();
    CheckRecord(source.Binary());
    return bytes;
  } catch (const std::exception& error) {
    throw EFitReaderError(LocaleFormat(sNoSettingsFile, fileName, std::string(error.what())));
  }
}

void TSettingsFile::Import(const std::string& fileName) {
  const std::string bytes = CheckImport(fileName);
  Keep(".bak");
  SafeWriteFile(FFileName, bytes);
  FUnread = true;
  FDropped = false;
}

const std::string& TSettingsFile::Source() const {
  return FShipped.empty() || FileExists(FFileName) ? FFileName : FShipped;
}

std::string TSettingsFile::Contents() const {
  return FileExists(FFileName) ? ReadWholeFile(FFileName) : std::string();
}

// Answers the name of the copy, the same one for the same contents. A file that cannot be read gets
// a second name instead: of what a link leads to, since the link would lead to the new contents.
std::string TSettingsFile::Keep(const char* extension) const {
  if (!FileExists(FFileName)) return {};
  std::string bytes;
  std::exception_ptr unreadable;
  try {
    bytes = ReadWholeFile(FFileName);
  } catch (const std::exception&) {
    unreadable = std::current_exception();
  }
  std::string kept = FFileName + extension;
  for (int number = 2; FileExists(kept); ++number) {
    if (!unreadable && HasContents(kept, bytes)) return kept;
    kept = FFileName + extension + std::to_string(number);
  }
  if (!unreadable) return SafeWriteFile(kept, bytes), kept;
  std::error_code error;
  std::filesystem::create_hard_link(std::filesystem::canonical(FFileName, error), kept, error);
  if (error) std::rethrow_exception(unreadable);
  return kept;
}

}  // namespace wrenfold
