#include "storage/rkInitData.h"

#include <algorithm>
#include <optional>

#include "locale/rkLocale.h"

namespace wrenfold {

namespace {

std::optional<TInitData>& Installed() {
  static std::optional<TInitData> initData;
  return initData;
}

template <class List>
auto FindByName(List& list, std::string_view name) {
  return std::find_if(list.begin(), list.end(),
                      [&](const auto& data) { return data->Name == name; });
}

}  // namespace

void RaiseInitDataNeeded() {
  throw ESpcMngError(LocaleStr(sInitDataNeeded));
}

void SetInitData(TInitData initData) {
  if (HasInitData())
    for (const auto& block : GetInitData().UserData)
      if (GetUserData(initData, block->Name) == nullptr) initData.UserData.push_back(block);
  Installed() = std::move(initData);
}

void ClearInitData() {
  Installed().reset();
}

bool HasInitData() {
  return Installed().has_value();
}

TInitData& GetInitData() {
  if (!HasInitData()) RaiseInitDataNeeded();
  return *Installed();
}

void AddUserData(TInitData& initData, std::shared_ptr<const TUserData> userData) {
  const auto place = FindByName(initData.UserData, userData->Name);
  if (place != initData.UserData.end()) *place = std::move(userData);
  else initData.UserData.push_back(std::move(userData));
}

const TUserData* GetUserData(const TInitData& initData, std::string_view name) {
  const auto place = FindByName(initData.UserData, name);
  return place != initData.UserData.end() ? place->get() : nullptr;
}

}  // namespace wrenfold
