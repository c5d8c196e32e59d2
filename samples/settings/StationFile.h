// Files of the demonstration: they carry a header with the versions that they were written by.
#pragma once

#include <memory>
#include <string>

#include "spec/rkSpcMng.h"

namespace wrenfold::demo {

// Raises what the storage raises; the file is replaced whole.
void SaveStation(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format);

// Asks about versions that may not be read well; EAbort when the user does not want them. Raises
// ESpcMngError for a missing file and what the storage raises for one that cannot be read.
TObjectStorageFormat LoadStation(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                                 bool askOnErrors, bool recreate);

}  // namespace wrenfold::demo
