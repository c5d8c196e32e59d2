#include "StationFile.h"

#include "locale/rkLocale.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Files.h"
#include "storage/rkStorage.h"

namespace wrenfold::demo {

void SaveStation(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format) {
  const std::string versions = MakeVerInfo(format == osfText ? osfText : osfBin);
  if (format == osfText) SaveObjectDataText({&spc}, fileName, {"Station"}, versions);
  else SaveObjectDataBinary({&spc}, fileName, versions);
}

TObjectStorageFormat LoadStation(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                                 bool, bool) {
  if (!FileExists(fileName)) throw ESpcMngError(LocaleFormat(sSpcFileNotFound, fileName));
  bool cancelled = false;
  const TDataHeaderHandler check = [&](const TObjDataDscr& dscr, const std::string& versions,
                                       bool& cancel) {
    CheckVer(dscr, versions, cancel, {.CheckVersion = true, .FileName = fileName});
    cancelled = cancel;
  };
  TPersistent* const objects[] = {spc.get()};
  const TObjectStorageFormat format = LoadObjectData(objects, fileName, check);
  if (cancelled) throw EAbort("cancelled");
  return format;
}

}  // namespace wrenfold::demo
