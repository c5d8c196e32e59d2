#include "editor/rkControlInfo.h"

#include <QLabel>
#include <algorithm>

#include "locale/rkLocale.h"
#include "platform/core/text/SysUtils.h"
#include "storage/rkDataProps.h"

namespace wrenfold {

namespace {

template <class Rows, class Matches>
bool FindRow(const Rows& rows, int& index, const Matches& matches) {
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return matches(*row); });
  if (found == rows.end()) return false;
  index = static_cast<int>(found - rows.begin());
  return true;
}

}  // namespace

TControlInfo::~TControlInfo() {
  delete Label;
  delete Message;
  delete ClientWidget;
}

TControlInfo& TControlList::Add(std::unique_ptr<TControlInfo> row) {
  FRows.push_back(std::move(row));
  return *FRows.back();
}

TControlInfo& TControlList::Get(int index) const {
  if (index < 0 || index >= Count())
    throw EListError("Row index out of bounds (" + IntToStr(index) + ")");
  return *FRows[static_cast<std::size_t>(index)];
}

bool TControlList::FindByControl(const TControl* control, int& index) const {
  return FindRow(FRows, index, [&](const TControlInfo& row) { return row.EControl == control; });
}

bool TControlList::FindByModifyObject(const TObject* object, int& index) const {
  return FindRow(FRows, index,
                 [&](const TControlInfo& row) { return row.EModifyObject == object; });
}

TControlInfo* TControlList::FindByProperty(const TPersistent& instance,
                                           const TPropInfo& property) const {
  int index = 0;
  const bool found = FindRow(FRows, index, [&](const TControlInfo& row) {
    return row.EInstance == &instance && row.EPropInfo == &property;
  });
  return found ? FRows[static_cast<std::size_t>(index)].get() : nullptr;
}

void TControlList::Sort() {
  std::stable_sort(FRows.begin(), FRows.end(), [](const auto& left, const auto& right) {
    return UpperCase(left->EPropInfo->Name) < UpperCase(right->EPropInfo->Name);
  });
}

void ParseWidth(const std::string& text, int& width, bool& isPercent) {
  const auto sign = text.find('%');
  const int value = StrToInt(text.substr(0, sign));
  const bool percent = sign != text.npos;
  if (percent && (value < 0 || value > 100)) throw ESpcEditorError(LocaleStr(sPercentRange));
  width = value;
  isPercent = percent;
}

void ApplyLayoutSection(const TIniStrings& parameters, const std::string& section,
                        TControlInfo& row) {
  const TIniKeyList* keys = parameters.GetSection(section);
  if (keys == nullptr) return;
  for (int i = 0; i < keys->Count(); ++i) {
    const std::string& key = (*keys)[i];
    const std::string& value = keys->KeyValue(i);
    // A line without a value says nothing: the comment between two groups of defaults is one.
    if (value.empty()) continue;
    if (EqualText(key, "Width")) ParseWidth(value, row.Width, row.WidthIsPercent);
    else if (EqualText(key, "CentredLabel")) row.CentredLabel = EqualText(value, "True");
    else if (row.EControl != nullptr) SetPropByText(*row.EControl, key, value);
  }
}

}  // namespace wrenfold
