// A writer of some of the properties, chosen by lists of dotted names.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "storage/rkFitWriter.h"

namespace wrenfold {

// With a stored list only the named properties, the objects that lead to them and everything under
// a stored object are written; with an empty one everything is. The ignored list always wins. Names
// are compared without regard to letter case. Those of an item's properties go on behind the
// collection's.
class TFilteringWriter : public TFitWriter {
 public:
  using TFitWriter::TFitWriter;

  void SetIgnoredProps(const std::vector<std::string>& names);
  void SetStoredProps(const std::vector<std::string>& names);
  // To be called before each root: works out the objects that lead to stored properties and forgets
  // the object of the root before.
  void PrepareObjProps();

  bool CanWriteProperty(TPersistent& object, const TPropInfo& property) override;
  void WriteCollection(TCollection& collection) override;
  void DefineProperty(std::string_view name, const TReaderProc& readData,
                      const TWriterProc& writeData, bool hasData) override;
  void DefineBinaryProperty(std::string_view name, const TStreamProc& readData,
                            const TStreamProc& writeData, bool hasData) override;

 private:
  using TNames = std::unordered_set<std::string>;
  bool Allows(std::string_view name, bool isObject);

  TNames FStored;  // all in lower case
  TNames FIgnored;
  TNames FObjectPaths;  // the objects on the way to stored properties
  std::string FClassPrefix;
  std::string FItemPrefix;  // of the collection whose items are being written, with its dot
  std::string FPath;        // of the property that was let pass last
};

}  // namespace wrenfold
