// Specification files: saving, loading, recreating, and the check of their version.
#pragma once

#include <memory>
#include <string>

#include "spec/rkSpcVers.h"
#include "storage/rkDataBody.h"
#include "storage/rkInitData.h"
#include "storage/rkSpcBase.h"

namespace wrenfold {

// Both are called by SaveSpc and LoadSpc and can be replaced; they are never null.
using TSaveSpcProc = void (*)(TSpcObject& spc, const std::string& fileName,
                              TObjectStorageFormat format);
using TLoadSpcProc = TObjectStorageFormat (*)(std::unique_ptr<TSpcObject>& spc,
                                              const std::string& fileName, bool askOnErrors,
                                              bool recreate);
extern TSaveSpcProc SaveSpcProc;
extern TLoadSpcProc LoadSpcProc;

void SaveSpc(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format);
// With askOnErrors the user is asked about properties that cannot be read, else they are left out.
// With recreate the specification is made anew first, so that what the file lacks is default.
// Answers the form found, osfBin or osfText. A failed load leaves the specification as far as it
// was read.
TObjectStorageFormat LoadSpc(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                             bool askOnErrors = true, bool recreate = false);

// What the procedures are at first: osfText is saved as text, every other format as binary, both
// without a header and without an object name; the file is replaced whole. Loading raises
// ESpcMngError for a missing file and an unknown form.
void SaveSpcInner(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format);
TObjectStorageFormat LoadSpcInner(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                                  bool askOnErrors, bool recreate);

// Puts a new object of its class in place of the specification, which goes when the new one is
// made. ESpcMngError when there is none, or when its class has no constructor without arguments.
void RecreateSpc(std::unique_ptr<TSpcObject>& spc);

// "1.01 4.00" for osfBin, "e_ver: 1.01 d_ver: 4.00" for osfText, else empty. The decimal separator
// is "." in every locale.
std::string MakeVerInfo(TObjectStorageFormat format);

// What the version check is asked with.
struct TSpecData {
  bool CheckVersion = true;
  std::string FileName;  // for the questions
};
// Parses a version text (ESpcMngError, or EConvertError for its numbers, which are read by the
// user's locale) and asks the user about versions that may not be read well; cancel becomes true
// when the last question was not answered with yes.
void CheckVer(const TObjDataDscr& dscr, const std::string& description, bool& cancel,
              const TSpecData& data);

// Fills a record with the functions of this unit.
void FillInitData(TInitData& initData);

}  // namespace wrenfold
