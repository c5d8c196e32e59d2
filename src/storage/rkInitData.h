// Entry points of the storage for parts of the system that are not linked to it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "storage/rkDataBody.h"
#include "storage/rkSpcBase.h"

namespace wrenfold {

// A named block of further entry points; descendants add them.
struct TUserData {
  explicit TUserData(std::string name) : Name(std::move(name)) {}
  virtual ~TUserData() = default;
  std::string Name;
};

struct TInitData {
  std::function<void(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format)>
      SaveSpc;
  std::function<TObjectStorageFormat(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                                     bool askOnErrors, bool recreate)>
      LoadSpc;
  std::function<void(std::unique_ptr<TSpcObject>& spc)> RecreateSpc;
  std::function<std::string(TPersistentArray objects, TObjectStorageFormat format)> GetProps;
  std::function<void(TPersistentArray objects, std::string_view text, TObjectStorageFormat format)>
      SetProps;
  std::function<TBaseClassIdent(const TPersistent* instance)> GetInstanceID;
  std::vector<std::shared_ptr<const TUserData>> UserData;
};

// Installs a record; what was installed before is gone.
void SetInitData(TInitData initData);
// Takes the record out again.
void ClearInitData();
bool HasInitData();
// The installed record; ESpcMngError when there is none.
TInitData& GetInitData();

// A block of a name that is there replaces it.
void AddUserData(TInitData& initData, std::shared_ptr<const TUserData> userData);
// Null when there is none of that name.
const TUserData* GetUserData(const TInitData& initData, std::string_view name);

}  // namespace wrenfold
