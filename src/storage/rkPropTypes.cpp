#include "storage/rkPropTypes.h"

#include <algorithm>
#include <iterator>

#include "locale/rkLocale.h"

namespace wrenfold {

namespace {

template <class Class>
Class& As(TPersistent& value) {
  auto* object = dynamic_cast<Class*>(&value);
  if (object == nullptr) throw EDataHandlingError(LocaleStr(sUnsupportedType));
  return *object;
}

void StringsToText(TPersistent& value, std::string& text) {
  text = As<TStrings>(value).Text();
}

void CheckStringsToText(TPersistent& value, std::string& text, std::string& checkedInds) {
  const auto& strings = As<TCheckStrings>(value);
  text = strings.Text();
  checkedInds = strings.CheckedInds();
}

void SelectStringsToText(TPersistent& value, std::string& text, std::int32_t& itemIndex) {
  const auto& strings = As<TSelectStrings>(value);
  text = strings.Text();
  itemIndex = strings.ItemIndex();
}

void ObjectToText(TPersistent& value, std::string& text) {
  text = GetProps({&value}, osfBin);
}

void TextToStrings(TPersistent& value, const std::string& text) {
  As<TStrings>(value).SetText(text);
}

void TextToCheckStrings(TPersistent& value, const std::string& text,
                        const std::string& checkedInds) {
  auto& strings = As<TCheckStrings>(value);
  const TUpdate update(strings);
  strings.SetText(text);
  strings.SetCheckedInds(checkedInds);
}

void TextToSelectStrings(TPersistent& value, const std::string& text, std::int32_t itemIndex) {
  auto& strings = As<TSelectStrings>(value);
  const TUpdate update(strings);
  strings.SetText(text);
  strings.SetItemIndex(itemIndex);
}

// The text leaves out values that are default, the pitch among them.
void TextToFont(TPersistent& value, const std::string& text) {
  As<TFont>(value).SetPitch(fpDefault);
  SetProps({&value}, text, osfBin);
}

void TextToPicture(TPersistent& value, const std::string& text) {
  value.Assign(nullptr);
  SetProps({&value}, text, osfBin);
}

std::shared_ptr<const TPropTypesData> MakeEntryPoints() {
  auto data = std::make_shared<TPropTypesData>();
  data->StringsToText = StringsToText;
  data->CheckStringsToText = CheckStringsToText;
  data->SelectStringsToText = SelectStringsToText;
  data->FontToText = ObjectToText;
  data->PictureToText = ObjectToText;
  data->TextToStrings = TextToStrings;
  data->TextToCheckStrings = TextToCheckStrings;
  data->TextToSelectStrings = TextToSelectStrings;
  data->TextToFont = TextToFont;
  data->TextToPicture = TextToPicture;
  data->Classify = ClassifyPropValue;
  return data;
}

// The first class of the list that the value is of decides: check and select lists are string lists
// themselves.
struct TValueRule {
  TPropTypeIdent Ident;
  bool (*Matches)(const TPersistent&);
};

template <class Class>
bool IsOf(const TPersistent& value) {
  return dynamic_cast<const Class*>(&value) != nullptr;
}

constexpr TValueRule ValueRules[] = {
    {tiChkStrings, IsOf<TCheckStrings>}, {tiSelStrings, IsOf<TSelectStrings>},
    {tiStrings, IsOf<TStrings>},         {tiFont, IsOf<TFont>},
    {tiPicture, IsOf<TPicture>},         {tiGraphic, IsOf<TGraphic>},
};

int InitCount = 0;

}  // namespace

const TTypeInfo& TCheckStrings::ClassInfo() {
  static const TTypeInfo info =
      Publish<TCheckStrings>("TCheckStrings", TStringList::ClassInfo())
          .Prop("CheckedInds", &TCheckStrings::CheckedInds, &TCheckStrings::SetCheckedInds);
  return info;
}

void TCheckStrings::Assign(const TPersistent* source) {
  const TUpdate update(*this);
  TStringList::Assign(source);
  if (const auto* other = dynamic_cast<const TCheckStrings*>(source))
    SetCheckedInds(other->FCheckedInds);
}

void TCheckStrings::SetCheckedInds(const std::string& indices) {
  if (indices == FCheckedInds) return;
  Changing();
  FCheckedInds = indices;
  Changed();
}

const TTypeInfo& TSelectStrings::ClassInfo() {
  static const TTypeInfo info =
      Publish<TSelectStrings>("TSelectStrings", TStringList::ClassInfo())
          .Prop("ItemIndex", &TSelectStrings::ItemIndex, &TSelectStrings::SetItemIndex);
  return info;
}

void TSelectStrings::Assign(const TPersistent* source) {
  const TUpdate update(*this);
  TStringList::Assign(source);
  if (const auto* other = dynamic_cast<const TSelectStrings*>(source))
    SetItemIndex(other->FItemIndex);
}

void TSelectStrings::SetItemIndex(std::int32_t index) {
  if (index == FItemIndex) return;
  Changing();
  FItemIndex = index;
  Changed();
}

const TTypeInfo& TMemoStrings::ClassInfo() {
  static const TTypeInfo info = Publish<TMemoStrings>("TMemoStrings", TStringList::ClassInfo());
  return info;
}

const TTypeInfo& TFontEx::ClassInfo() {
  static const TTypeInfo info = Publish<TFontEx>("TFontEx", TFont::ClassInfo());
  return info;
}

const TTypeInfo& TPictureEx::ClassInfo() {
  static const TTypeInfo info = Publish<TPictureEx>("TPictureEx", TPicture::ClassInfo());
  return info;
}

TPropTypeIdent ClassifyPropValue(const TPersistent* value) {
  if (value == nullptr) return tiUnknown;
  const auto* rule = std::find_if(std::begin(ValueRules), std::end(ValueRules),
                                  [&](const TValueRule& r) { return r.Matches(*value); });
  return rule != std::end(ValueRules) ? rule->Ident : tiUnknown;
}

void InitPropTypes() {
  if (GetUserData(GetInitData(), TPropTypesData::BlockName) == nullptr)
    AddUserData(GetInitData(), MakeEntryPoints());
  ++InitCount;
}

void DonePropTypes() {
  if (InitCount == 0 || --InitCount > 0 || !HasInitData()) return;
  std::erase_if(GetInitData().UserData,
                [](const auto& data) { return data->Name == TPropTypesData::BlockName; });
}

}  // namespace wrenfold
