#include "foundation/rkClasses.h"

#include <fmt/format.h>

#include <algorithm>

#include "locale/rkLocale.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

struct TValueObject : TObject {
  explicit TValueObject(const std::string& value) : Value(value) {}
  std::string Value;
};

// Of UTF-8, which editors put in front of a text.
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

TIniKeyList::~TIniKeyList() {
  for (int i = 0; i < Count(); ++i) delete GetObject(i);
}

std::string TIniKeyList::KeyValue(int index) const {
  const auto* object = static_cast<TValueObject*>(GetObject(index));
  return object != nullptr ? object->Value : std::string();
}

void TIniKeyList::SetKeyValue(int index, const std::string& value) {
  TValueObject object(value);
  PutObject(index, &object);
}

// Each list owns its values: one of another list is copied, other objects are not taken.
void TIniKeyList::PutObject(int index, TObject* object) {
  const auto* value = dynamic_cast<TValueObject*>(object);
  auto copy = value != nullptr ? std::make_unique<TValueObject>(value->Value) : nullptr;
  const TUpdate update(*this);  // whoever is told comes first or last
  const std::unique_ptr<TObject> old(GetObject(index));
  TStringList::PutObject(index, copy.get());
  static_cast<void>(copy.release());
}

void TIniKeyList::AddKey(const std::string& key, const std::string& value) {
  TValueObject object(value);
  AddObject(key, &object);
}

std::string TIniKeyList::Line(int index) const {
  const std::string value = KeyValue(index);
  return value.empty() ? Get(index) : Get(index) + "=" + value;
}

void TIniKeyList::Delete(int index) {
  const TUpdate update(*this);
  const std::unique_ptr<TObject> value(GetObject(index));
  TStringList::Delete(index);
}

void TIniKeyList::Clear() {
  const TUpdate update(*this);
  for (int i = 0; i < Count(); ++i) delete GetObject(i);
  TStringList::Clear();
}

TIniStrings::TIniStrings(const std::string& fileName) : FFileName(fileName) {
  FSections.Duplicates = dupAccept;
  LoadValues();
}

void TIniStrings::LoadValues() {
  if (FFileName.empty() || !FileExists(FFileName)) {
    Clear();
    return;
  }
  TStringList list;
  list.LoadFromFile(FFileName);
  SetStrings(list);
}

void TIniStrings::UpdateFile() const {
  if (FFileName.empty()) return;
  TStringList list;
  GetStrings(list);
  list.SaveToFile(FFileName);
}

void TIniStrings::SetStrings(const TStrings& list) {
  const bool sectionSorted = GetSectionSorted();
  const bool keySorted = FKeySorted;
  UnSort();
  Clear();
  TIniKeyList* keys = nullptr;
  for (int i = 0; i < list.Count(); ++i) {
    std::string line = list[i];
    if (i == 0 && line.starts_with(ByteOrderMark)) line.erase(0, ByteOrderMark.size());
    if (line.empty() || line.front() == ';') continue;
    if (line.front() == '[' && line.back() == ']')
      keys = AddSection(line.substr(1, line.size() - 2));
    else if (keys != nullptr) DoAddString(*keys, line);
  }
  SetSectionSorted(sectionSorted);
  SetKeySorted(keySorted);
}

void TIniStrings::GetStrings(TStrings& list) const {
  const TUpdate update(list);
  for (int i = 0; i < FSections.Count(); ++i) {
    list.Add("[" + FSections[i] + "]");
    const TIniKeyList& keys = KeysAt(i);
    for (int j = 0; j < keys.Count(); ++j) list.Add(keys.Line(j));
    list.Add("");
  }
}

void TIniStrings::Clear() {
  for (int i = 0; i < FSections.Count(); ++i) delete FSections.GetObject(i);
  FSections.Clear();
}

std::string TIniStrings::ReadString(std::string_view section, std::string_view key,
                                    const std::string& defaultValue) const {
  const TIniKeyList* keys = GetSection(section);
  const int index = keys != nullptr ? keys->IndexOf(key) : -1;
  return index >= 0 ? keys->KeyValue(index) : defaultValue;
}

void TIniStrings::WriteString(const std::string& section, const std::string& key,
                              const std::string& value) {
  TIniKeyList* keys = GetSection(section);
  if (keys == nullptr) keys = AddSection(section);
  const int index = keys->IndexOf(key);
  if (index >= 0) keys->SetKeyValue(index, value);
  else DoAddString(*keys, key + "=" + value);
}

void TIniStrings::ReadSection(std::string_view section, TStrings& list) const {
  const TUpdate update(list);
  list.Clear();
  const TIniKeyList* keys = GetSection(section);
  for (int i = 0; keys != nullptr && i < keys->Count(); ++i) list.Add(keys->Get(i));
}

void TIniStrings::ReadSections(TStrings& list) const {
  const TUpdate update(list);
  list.Clear();
  for (int i = 0; i < FSections.Count(); ++i) list.Add(FSections[i]);
}

void TIniStrings::ReadSectionValues(std::string_view section, TStrings& list) const {
  const TUpdate update(list);
  list.Clear();
  const TIniKeyList* keys = GetSection(section);
  for (int i = 0; keys != nullptr && i < keys->Count(); ++i) list.Add(keys->Line(i));
}

bool TIniStrings::HasKey(std::string_view section, std::string_view key) const {
  const TIniKeyList* keys = GetSection(section);
  return keys != nullptr && keys->IndexOf(key) >= 0;
}

TIniKeyList* TIniStrings::GetSection(std::string_view section) const {
  const int index = FSections.IndexOf(section);
  return index >= 0 ? &KeysAt(index) : nullptr;
}

TIniKeyList* TIniStrings::AddSection(const std::string& name) {
  auto keys = std::make_unique<TIniKeyList>();
  keys->SetSorted(FKeySorted);
  FSections.AddObject(name, keys.get());
  return keys.release();
}

void TIniStrings::AddString(const std::string& section, const std::string& line) {
  TIniKeyList* keys = GetSection(section);
  DoAddString(keys != nullptr ? *keys : *AddSection(section), line);
}

void TIniStrings::ReplaceString(std::string_view section, std::string_view key,
                                const std::string& value) {
  if (HasKey(section, key)) {
    TIniKeyList* keys = GetSection(section);
    keys->SetKeyValue(keys->IndexOf(key), value);
  }
}

void TIniStrings::EraseSection(std::string_view section) {
  const int index = FSections.IndexOf(section);
  if (index < 0) return;
  const std::unique_ptr<TObject> keys(FSections.GetObject(index));
  FSections.Delete(index);
}

void TIniStrings::DeleteKey(std::string_view section, std::string_view key) {
  if (HasKey(section, key)) {
    TIniKeyList* keys = GetSection(section);
    keys->Delete(keys->IndexOf(key));
  }
}

void TIniStrings::Sort() {
  SetSectionSorted(true);
  SetKeySorted(true);
}

void TIniStrings::UnSort() {
  SetSectionSorted(false);
  SetKeySorted(false);
}

void TIniStrings::SetKeySorted(bool sorted) {
  FKeySorted = sorted;
  for (int i = 0; i < FSections.Count(); ++i) KeysAt(i).SetSorted(sorted);
}

void TIniStrings::DoAddString(TIniKeyList& keys, const std::string& line) const {
  const std::size_t at = line.find('=');
  if (at != std::string::npos && at > 0) keys.AddKey(line.substr(0, at), line.substr(at + 1));
  else if (!FDropKeysWithoutValue) keys.AddKey(line, "");
}

TIniKeyList& TIniStrings::KeysAt(int index) const {
  return *static_cast<TIniKeyList*>(FSections.GetObject(index));
}

namespace {

std::string IdentOf(TObject* item) {
  auto* ident = dynamic_cast<IIdentIntf*>(item);
  if (ident == nullptr) throw EIdentListError(LocaleStr(sNoIdentIntf));
  return ident->GetIdent();
}

std::string IdentOf(const TIntf<IIdentIntf>& item) {
  if (!item) throw EIdentListError(LocaleStr(sNoIdentIntf));
  return item->GetIdent();
}

}  // namespace

template <class TItem>
int TIdentListBase<TItem>::Add(const TItem& item) {
  const std::string ident = IdentOf(item);
  if (!IsValidIdent(ident)) throw EIdentListError(LocaleFormat(sIdentUnacceptable, ident));
  int index = 0;
  if (Find(ident, index)) throw EIdentListError(LocaleFormat(sIdentNotUnique, ident));
  FItems.insert(FItems.begin() + index, item);
  return index;
}

template <class TItem>
bool TIdentListBase<TItem>::Find(std::string_view ident, int& index) const {
  int low = 0;
  int high = Count() - 1;
  bool found = false;
  while (low <= high) {
    const int middle = (low + high) / 2;
    const int order = CompareText(IdentOf(FItems[static_cast<std::size_t>(middle)]), ident);
    if (order < 0) low = middle + 1;
    else high = middle - 1;
    found = found || order == 0;
  }
  index = low;
  return found;
}

template <class TItem>
int TIdentListBase<TItem>::IndexOf(const TItem& item) const {
  const auto found = std::ranges::find(FItems, item);
  return found != FItems.end() ? static_cast<int>(found - FItems.begin()) : -1;
}

template <class TItem>
void TIdentListBase<TItem>::Remove(const TItem& item) {
  if (const int index = IndexOf(item); index >= 0) Delete(index);
}

template <class TItem>
void TIdentListBase<TItem>::Delete(int index) {
  Items(index);
  FItems.erase(FItems.begin() + index);
}

template <class TItem>
const TItem& TIdentListBase<TItem>::Items(int index) const {
  if (index < 0 || index >= Count())
    throw EListError(fmt::format("List index out of bounds ({})", index));
  return FItems[static_cast<std::size_t>(index)];
}

template class TIdentListBase<TObject*>;
template class TIdentListBase<TIntf<IIdentIntf>>;

}  // namespace wrenfold
