#include "storage/rkFilteringWriter.h"

#include <utility>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

std::unordered_set<std::string> Folded(const std::vector<std::string>& names) {
  std::unordered_set<std::string> folded;
  for (const std::string& name : names) folded.insert(LowerCase(name));
  return folded;
}

}  // namespace

void TFilteringWriter::SetIgnoredProps(const std::vector<std::string>& names) {
  FIgnored = Folded(names);
}

void TFilteringWriter::SetStoredProps(const std::vector<std::string>& names) {
  FStored = Folded(names);
  PrepareObjProps();
}

void TFilteringWriter::PrepareObjProps() {
  FClassPrefix.clear();
  FObjectPaths.clear();
  for (const std::string& name : FStored)
    for (auto dot = name.find('.'); dot != name.npos; dot = name.find('.', dot + 1))
      FObjectPaths.insert(name.substr(0, dot));
}

bool TFilteringWriter::CanWriteProperty(TPersistent& object, const TPropInfo& property) {
  return TFitWriter::CanWriteProperty(object, property) &&
         Allows(property.Name, property.Kind() == tkClass);
}

// The prefix of a stored object is compared without a boundary at a dot: "Font" lets "FontColor"
// pass as well. Files rely on it.
bool TFilteringWriter::Allows(std::string_view name, bool isObject) {
  const std::string path = FItemPrefix + LowerCase(PropPath() + std::string(name));
  bool allowed = FStored.empty();
  if (!FObjectPaths.empty()) allowed = FObjectPaths.contains(path);
  if (!allowed && !FClassPrefix.empty()) allowed = path.starts_with(FClassPrefix);
  if (!allowed && FStored.contains(path)) {
    allowed = true;
    if (isObject) FClassPrefix = path;
  }
  if (!allowed || FIgnored.contains(path)) return false;
  FPath = path;
  return true;
}

// In the stream the names of an item's properties stand alone.
void TFilteringWriter::WriteCollection(TCollection& collection) {
  const std::string path = FPath;
  const std::string outer = std::exchange(FItemPrefix, path + '.');
  TFitWriter::WriteCollection(collection);
  FItemPrefix = outer;
  FPath = path;
}

void TFilteringWriter::DefineProperty(std::string_view name, const TReaderProc& readData,
                                      const TWriterProc& writeData, bool hasData) {
  // It may be a collection.
  TFitWriter::DefineProperty(name, readData, writeData, hasData && Allows(name, true));
}

void TFilteringWriter::DefineBinaryProperty(std::string_view name, const TStreamProc& readData,
                                            const TStreamProc& writeData, bool hasData) {
  TFitWriter::DefineBinaryProperty(name, readData, writeData, hasData && Allows(name, false));
}

}  // namespace wrenfold
