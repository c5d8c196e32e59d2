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

[[noreturn]] void RaiseInitDataNeeded();

// A function of somebody else. Calling one that was not given raises ESpcMngError.
template <class Signature>
class TEntryPoint;
template <class Result, class... Arguments>
class TEntryPoint<Result(Arguments...)> {
 public:
  TEntryPoint() = default;
  template <class Function>
  TEntryPoint(Function function) : FFunction(std::move(function)) {}  // NOLINT: as a function

  Result operator()(Arguments... arguments) const {
    if (!FFunction) RaiseInitDataNeeded();
    return FFunction(std::forward<Arguments>(arguments)...);
  }
  explicit operator bool() const { return static_cast<bool>(FFunction); }

 private:
  std::function<Result(Arguments...)> FFunction;
};

// A named block of further entry points; descendants add them.
struct TUserData {
  explicit TUserData(std::string name) : Name(std::move(name)) {}
  virtual ~TUserData() = default;
  std::string Name;
};

struct TInitData {
  TEntryPoint<void(TSpcObject& spc, const std::string& fileName, TObjectStorageFormat format)>
      SaveSpc;
  TEntryPoint<TObjectStorageFormat(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                                   bool askOnErrors, bool recreate)>
      LoadSpc;
  TEntryPoint<void(std::unique_ptr<TSpcObject>& spc)> RecreateSpc;
  TEntryPoint<std::string(TPersistentArray objects, TObjectStorageFormat format)> GetProps;
  TEntryPoint<void(TPersistentArray objects, std::string_view text, TObjectStorageFormat format)>
      SetProps;
  TEntryPoint<TBaseClassIdent(const TPersistent* instance)> GetInstanceID;
  std::vector<std::shared_ptr<const TUserData>> UserData;
};

// Installs a record in place of the one before, whose blocks of user data stay where the new one
// has none of their name.
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
