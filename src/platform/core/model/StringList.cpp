#include "platform/core/model/StringList.h"

#include <algorithm>

#include "platform/core/model/Filer.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr std::string_view LineEnd = "\r\n";

[[noreturn]] void RaiseIndex(int index) {
  throw EListError("List index out of bounds (" + std::to_string(index) + ")");
}

bool NeedsQuotes(const std::string& line) {
  return std::any_of(line.begin(), line.end(), [](char c) {
    return static_cast<unsigned char>(c) <= ' ' || c == '"' || c == ',';
  });
}

std::string Quoted(const std::string& line) {
  std::string text = "\"";
  for (const char c : line) text.append(c == '"' ? 2 : 1, c);
  return text + '"';
}

void SkipBlanks(std::string_view& text) {
  while (!text.empty() && static_cast<unsigned char>(text[0]) <= ' ') text.remove_prefix(1);
}

// Takes one element of a comma text, in quotes or up to the next blank or comma.
std::string TakeElement(std::string_view& text) {
  std::string element;
  if (text.empty() || text[0] != '"') {
    while (!text.empty() && static_cast<unsigned char>(text[0]) > ' ' && text[0] != ',') {
      element += text[0];
      text.remove_prefix(1);
    }
    return element;
  }
  text.remove_prefix(1);
  while (!text.empty()) {
    if (text[0] == '"' && (text.size() == 1 || text[1] != '"')) {
      text.remove_prefix(1);
      break;
    }
    element += text[0];
    text.remove_prefix(text[0] == '"' ? 2 : 1);
  }
  return element;
}

}  // namespace

const TTypeInfo& TStrings::ClassInfo() {
  static const TTypeInfo info = Publish<TStrings>("TStrings", TPersistent::ClassInfo());
  return info;
}

TObject* TStrings::GetObject(int) const {
  return nullptr;
}

void TStrings::PutObject(int, TObject*) {}

int TStrings::Add(const std::string& text) {
  const int index = Count();
  Insert(index, text);
  return index;
}

int TStrings::AddObject(const std::string& text, TObject* object) {
  const int index = Add(text);
  PutObject(index, object);
  return index;
}

void TStrings::InsertObject(int index, const std::string& text, TObject* object) {
  Insert(index, text);
  PutObject(index, object);
}

void TStrings::Exchange(int first, int second) {
  const TUpdate update(*this);
  const std::string text = Get(first);
  TObject* object = GetObject(first);
  Put(first, Get(second));
  PutObject(first, GetObject(second));
  Put(second, text);
  PutObject(second, object);
}

void TStrings::Move(int from, int to) {
  if (from == to) return;
  const TUpdate update(*this);
  const std::string text = Get(from);
  TObject* object = GetObject(from);
  Delete(from);
  InsertObject(to, text, object);
}

void TStrings::AddStrings(const TStrings& source) {
  const TUpdate update(*this);
  for (int i = 0; i < source.Count(); ++i) AddObject(source[i], source.GetObject(i));
}

int TStrings::IndexOf(std::string_view text) const {
  for (int i = 0; i < Count(); ++i)
    if (AnsiSameText(Get(i), text)) return i;
  return -1;
}

int TStrings::IndexOfObject(const TObject* object) const {
  for (int i = 0; i < Count(); ++i)
    if (GetObject(i) == object) return i;
  return -1;
}

int TStrings::IndexOfName(std::string_view name) const {
  for (int i = 0; i < Count(); ++i) {
    const std::string& line = Get(i);
    if (line.size() > name.size() && line[name.size()] == '=' &&
        EqualText(std::string_view(line).substr(0, name.size()), name))
      return i;
  }
  return -1;
}

std::string TStrings::Text() const {
  std::string text;
  for (int i = 0; i < Count(); ++i) text.append(Get(i)).append(LineEnd);
  return text;
}

void TStrings::SetText(std::string_view text) {
  const TUpdate update(*this);
  Clear();
  while (!text.empty()) {
    const auto end = std::min(text.find_first_of(LineEnd), text.size());
    Add(std::string(text.substr(0, end)));
    text.remove_prefix(end);
    if (text.starts_with(LineEnd)) text.remove_prefix(2);
    else if (!text.empty()) text.remove_prefix(1);
  }
}

std::string TStrings::CommaText() const {
  if (Count() == 1 && Get(0).empty()) return "\"\"";
  std::string text;
  for (int i = 0; i < Count(); ++i) {
    if (i > 0) text += ',';
    text += NeedsQuotes(Get(i)) ? Quoted(Get(i)) : Get(i);
  }
  return text;
}

void TStrings::SetCommaText(std::string_view text) {
  const TUpdate update(*this);
  Clear();
  SkipBlanks(text);
  while (!text.empty()) {
    Add(TakeElement(text));
    SkipBlanks(text);
    if (text.empty() || text[0] != ',') continue;
    text.remove_prefix(1);
    SkipBlanks(text);
    if (text.empty()) Add("");
  }
}

std::string TStrings::Value(std::string_view name) const {
  const int index = IndexOfName(name);
  return index < 0 ? std::string() : Get(index).substr(name.size() + 1);
}

void TStrings::SetValue(const std::string& name, const std::string& value) {
  const int index = IndexOfName(name);
  if (value.empty()) {
    if (index >= 0) Delete(index);
  } else if (index >= 0) {
    Put(index, name + '=' + value);
  } else {
    Add(name + '=' + value);
  }
}

void TStrings::Assign(const TPersistent* source) {
  const auto* other = dynamic_cast<const TStrings*>(source);
  if (other == nullptr) return TPersistent::Assign(source);
  if (other == this) return;
  const TUpdate update(*this);
  Clear();
  AddStrings(*other);
}

void TStrings::DefineProperties(TFiler& filer) {
  const auto read = [this](const std::vector<std::string>& texts) {
    const TUpdate update(*this);
    Clear();
    for (const std::string& text : texts) Add(text);
  };
  const auto write = [this] {
    std::vector<std::string> texts;
    for (int i = 0; i < Count(); ++i) texts.push_back(Get(i));
    return texts;
  };
  filer.DefineTexts("Strings", read, write, Count() > 0 || filer.WritesDefaults());
}

void TStrings::LoadFromFile(const std::string& fileName) {
  SetText(ReadWholeFile(fileName));
}

void TStrings::SaveToFile(const std::string& fileName) const {
  SafeWriteFile(fileName, Text());
}

void TStrings::BeginUpdate() {
  if (FUpdateCount == 0) SetUpdateState(true);
  ++FUpdateCount;
}

void TStrings::EndUpdate() {
  if (--FUpdateCount == 0) SetUpdateState(false);
}

void TStrings::SetUpdateState(bool) {}

const TTypeInfo& TStringList::ClassInfo() {
  static const TTypeInfo info = Publish<TStringList>("TStringList", TStrings::ClassInfo());
  return info;
}

std::size_t TStringList::Checked(int index) const {
  if (index < 0 || index >= Count()) RaiseIndex(index);
  return static_cast<std::size_t>(index);
}

const std::string& TStringList::Get(int index) const {
  return FItems[Checked(index)].Text;
}

void TStringList::Put(int index, const std::string& text) {
  if (FSorted) throw EListError("A line of a sorted list cannot be replaced");
  const std::size_t place = Checked(index);
  Changing();
  FItems[place].Text = text;
  Changed();
}

TObject* TStringList::GetObject(int index) const {
  return FItems[Checked(index)].Object;
}

void TStringList::PutObject(int index, TObject* object) {
  const std::size_t place = Checked(index);
  Changing();
  FItems[place].Object = object;
  Changed();
}

void TStringList::Insert(int index, const std::string& text) {
  if (FSorted) throw EListError("A line cannot be inserted at a place of a sorted list");
  InsertItem(index, text);
}

void TStringList::InsertItem(int index, const std::string& text) {
  if (index < 0 || index > Count()) RaiseIndex(index);
  Changing();
  FItems.insert(FItems.begin() + index, TItem{text, nullptr});
  Changed();
}

void TStringList::Delete(int index) {
  const std::size_t place = Checked(index);
  Changing();
  FItems.erase(FItems.begin() + static_cast<std::ptrdiff_t>(place));
  Changed();
}

void TStringList::Clear() {
  if (FItems.empty()) return;
  Changing();
  FItems.clear();
  Changed();
}

int TStringList::Add(const std::string& text) {
  int index = Count();
  if (FSorted && Find(text, index)) {
    if (Duplicates == dupIgnore) return index;
    if (Duplicates == dupError) throw EListError("The list does not allow duplicates: " + text);
  }
  InsertItem(index, text);
  return index;
}

void TStringList::Exchange(int first, int second) {
  const std::size_t a = Checked(first), b = Checked(second);
  Changing();
  std::swap(FItems[a], FItems[b]);
  Changed();
}

void TStringList::Move(int from, int to) {
  const auto a = static_cast<std::ptrdiff_t>(Checked(from));
  const auto b = static_cast<std::ptrdiff_t>(Checked(to));
  if (a == b) return;
  Changing();
  const auto begin = FItems.begin();
  if (a < b) std::rotate(begin + a, begin + a + 1, begin + b + 1);
  else std::rotate(begin + b, begin + a, begin + a + 1);
  Changed();
}

int TStringList::IndexOf(std::string_view text) const {
  if (!FSorted) return TStrings::IndexOf(text);
  int index = 0;
  return Find(text, index) ? index : -1;
}

bool TStringList::Find(std::string_view text, int& index) const {
  const std::string wanted(text);
  const auto place = std::lower_bound(FItems.begin(), FItems.end(), wanted,
                                      [](const TItem& item, const std::string& name) {
                                        return AnsiCompareText(item.Text, name) < 0;
                                      });
  index = static_cast<int>(place - FItems.begin());
  return place != FItems.end() && AnsiCompareText(place->Text, wanted) == 0;
}

void TStringList::SetSorted(bool sorted) {
  if (sorted == FSorted) return;
  if (sorted) Sort();
  FSorted = sorted;
}

// One key a line: comparing keys is far cheaper than comparing texts in the locale's order.
void TStringList::Sort() {
  if (FSorted || FItems.size() < 2) return;
  std::vector<std::pair<std::string, std::size_t>> keys;
  keys.reserve(FItems.size());
  for (std::size_t i = 0; i < FItems.size(); ++i) keys.emplace_back(AnsiSortKey(FItems[i].Text), i);
  std::sort(keys.begin(), keys.end());
  std::vector<TItem> sorted;
  sorted.reserve(FItems.size());
  for (const auto& [key, index] : keys) sorted.push_back(std::move(FItems[index]));
  Changing();
  FItems = std::move(sorted);
  Changed();
}

void TStringList::CustomSort(const TCompare& compare) {
  if (FSorted || FItems.size() < 2) return;
  Changing();
  std::stable_sort(FItems.begin(), FItems.end(), [&compare](const TItem& a, const TItem& b) {
    return compare(a.Text, b.Text) < 0;
  });
  Changed();
}

void TStringList::Changed() {
  if (UpdateCount() == 0) OnChange(this);
}

void TStringList::Changing() {
  if (UpdateCount() == 0) OnChanging(this);
}

void TStringList::SetUpdateState(bool updating) {
  if (updating) Changing();
  else Changed();
}

}  // namespace wrenfold
