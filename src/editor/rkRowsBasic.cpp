// The kinds of rows that every editor knows: numbers, texts, enumerations, sets, components.
#include <QStyle>
#include <QStyleOptionButton>
#include <algorithm>

#include "controls/rkStdCtrls.h"
#include "editor/rkRowValues.h"
#include "editor/rkRows.h"
#include "locale/rkLocale.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/Text.h"
#include "storage/rkDataProps.h"

namespace wrenfold {

namespace {

// How a kind of value is read as text and taken from it.
struct TTextForm {
  std::string (*Read)(const TPersistent&, const TPropInfo&);
  void (*Write)(TPersistent&, const TPropInfo&, const std::string& text);
};

class TEditRow : public TPropertyRow {
 public:
  TEditRow(const TRowBinding& binding, const TTextForm& form, const QString& filter = {},
           int maxLength = 0)
      : TPropertyRow(binding),
        FForm(form),
        FEdit(new TEdit(binding.Context.Owner, binding.Context.Parent)) {
    if (!filter.isEmpty()) FEdit->SetKeyFilter(filter);
    FEdit->SetMaxLength(maxLength);
    Bind<&TEditRow::Edited>(FEdit->OnChange, this);
    SetControl(FEdit);
  }
  int MinimumWidth() const override {
    constexpr int FrameAndMargins = 12;
    return FEdit->fontMetrics().horizontalAdvance('W') + FrameAndMargins;
  }
  bool CanUndo() const override { return FEdit->isUndoAvailable(); }
  void Undo() override { FEdit->undo(); }

 protected:
  void Show() override { FEdit->SetText(FForm.Read(Instance(), Property())); }
  void Take() override { FForm.Write(Instance(), Property(), FEdit->Text()); }

 private:
  TTextForm FForm;
  TEdit* FEdit;
};

// Integers.

bool IsInt64(const TPropInfo& property) {
  return property.Kind() == tkInt64;
}

std::string ReadInteger(const TPersistent& instance, const TPropInfo& property) {
  const TPropAccess& access = *property.Access;
  if (IsInt64(property)) return IntToStr(access.GetInt64(instance));
  return IntToStr(property.Range().NumberOf(access.GetOrd(instance)));
}

[[noreturn]] void RaiseOutOfRange(const std::string& text, const TValueRange& range) {
  throw EConvertError(LocaleFormat(sOutOfRange, text, IntToStr(range.Low), IntToStr(range.High)));
}

TValueRange RangeOf(const TPropInfo& property) {
  if (!IsInt64(property)) return property.Range();
  return property.Access->Range().value_or(TValueRange{INT64_MIN, INT64_MAX});
}

// A number that is too long for every type is still a number.
bool IsDigits(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::int64_t ParseInteger(const std::string& text, const TValueRange& range) {
  try {
    const std::int64_t value = StrToInt64(text);
    if (!range.Contains(value)) RaiseOutOfRange(text, range);
    return value;
  } catch (const EConvertError&) {
    if (IsDigits(text)) RaiseOutOfRange(text, range);
    throw EConvertError(LocaleFormat(sNotInteger, text));
  }
}

void WriteInteger(TPersistent& instance, const TPropInfo& property, const std::string& text) {
  const std::int64_t value = ParseInteger(std::string(Trim(text)), RangeOf(property));
  if (IsInt64(property)) property.Access->SetInt64(instance, value);
  else property.Access->SetOrd(instance, static_cast<std::int32_t>(value));
}

// What an integer can be typed with.
const QString IntegerCharacters = "0123456789-";

// Characters: of one byte they are Latin-1.

std::string ReadCharacter(const TPersistent& instance, const TPropInfo& property) {
  const auto code = static_cast<char16_t>(property.Access->GetOrd(instance));
  return code == 0 ? std::string() : FromQString(QString(QChar(code)));
}

void WriteCharacter(TPersistent& instance, const TPropInfo& property, const std::string& text) {
  const QString characters = ToQString(text);
  const char16_t code = characters.isEmpty() ? u'\0' : characters[0].unicode();
  const char16_t highest = property.Kind() == tkChar ? 0xFF : 0xFFFF;
  if (characters.size() > 1 || code > highest)
    throw EConvertError(LocaleFormat(sNotOneCharacter, text));
  property.Access->SetOrd(instance, code);
}

// Floating point numbers.

std::string ReadText(const TPersistent& instance, const TPropInfo& property) {
  return GetPropAsText(instance, property);
}

void WriteFloat(TPersistent& instance, const TPropInfo& property, const std::string& text) {
  try {
    SetPropByText(instance, property, text);
  } catch (const EConvertError&) {
    throw EConvertError(LocaleFormat(sNotNumber, text));
  }
}

QString FloatCharacters() {
  const TFormatSettings& settings = FormatSettings();
  return IntegerCharacters + "Ee" + settings.DecimalSeparator + settings.ThousandSeparator;
}

// Texts.

void WriteString(TPersistent& instance, const TPropInfo& property, const std::string& text) {
  constexpr std::size_t ShortStringSize = 255;
  if (property.Kind() == tkString && text.size() > ShortStringSize)
    throw EConvertError(LocaleFormat(sTextTooLong, text.size(), ShortStringSize));
  property.Access->SetStr(instance, text);
}

constexpr TTextForm IntegerForm{ReadInteger, WriteInteger};
constexpr TTextForm CharacterForm{ReadCharacter, WriteCharacter};
constexpr TTextForm FloatForm{ReadText, WriteFloat};
constexpr TTextForm StringForm{ReadText, WriteString};

std::unique_ptr<TPropertyRow> MakeInteger(const TRowBinding& binding) {
  return std::make_unique<TEditRow>(binding, IntegerForm, IntegerCharacters);
}
std::unique_ptr<TPropertyRow> MakeCharacter(const TRowBinding& binding) {
  return std::make_unique<TEditRow>(binding, CharacterForm, QString(), 1);
}
std::unique_ptr<TPropertyRow> MakeFloat(const TRowBinding& binding) {
  // Dates and times are written with other signs.
  const bool plain = binding.Property.PropType->PropKind() == TPropKind::Float;
  return std::make_unique<TEditRow>(binding, FloatForm, plain ? FloatCharacters() : QString());
}
std::unique_ptr<TPropertyRow> MakeString(const TRowBinding& binding) {
  return std::make_unique<TEditRow>(binding, StringForm);
}

template <const TTextForm& Form>
std::string TextOf(const TPersistent& instance, const TPropInfo& property, const TRowContext&) {
  return Form.Read(instance, property);
}

// Enumerations.

// The names of an enumeration's values, or of the elements of a set, as they are shown.
void FillShownNames(const TTypeInfo& type, const TRowContext& context, TStrings& names) {
  FillEnumNames(type.Kind() == tkSet ? *type.ElementType() : type, names);
  if (context.TranslateNames) context.TranslateNames(names, type);
}

class TEnumRow : public TPropertyRow {
 public:
  explicit TEnumRow(const TRowBinding& binding)
      : TPropertyRow(binding), FBox(new TComboBox(binding.Context.Owner, binding.Context.Parent)) {
    TStringList names;
    FillShownNames(*Property().PropType, Context(), names);
    FBox->SetLines(names);
    Bind<&TEnumRow::Picked>(FBox->OnChange, this);
    SetControl(FBox);
  }
  int MinimumWidth() const override { return ComboMinimumWidth(*FBox); }

 protected:
  void Show() override { FBox->SetItemIndex(Property().Access->GetOrd(Instance()) - Lowest()); }
  void Take() override {
    if (FBox->ItemIndex() >= 0) Property().Access->SetOrd(Instance(), FBox->ItemIndex() + Lowest());
  }

 private:
  int Lowest() const { return static_cast<int>(Property().PropType->Range().Low); }
  TComboBox* FBox;
};

std::string EnumText(const TPersistent& instance, const TPropInfo& property,
                     const TRowContext& context) {
  TStringList names;
  FillShownNames(*property.PropType, context, names);
  const int index =
      property.Access->GetOrd(instance) - static_cast<int>(property.PropType->Range().Low);
  return index >= 0 && index < names.Count() ? names[index] : std::string();
}

class TBooleanRow : public TPropertyRow {
 public:
  explicit TBooleanRow(const TRowBinding& binding)
      : TPropertyRow(binding), FBox(new TCheckBox(binding.Context.Owner, binding.Context.Parent)) {
    Bind<&TBooleanRow::Picked>(FBox->OnChange, this);
    SetControl(FBox);
  }
  int MinimumWidth() const override { return FBox->sizeHint().width(); }

 protected:
  void Show() override { FBox->SetChecked(Property().Access->GetOrd(Instance()) != 0); }
  void Take() override { Property().Access->SetOrd(Instance(), FBox->Checked() ? 1 : 0); }

 private:
  TCheckBox* FBox;
};

// Sets: line N is the element with the lowest ordinal plus N.

class TSetRow : public TPropertyRow {
 public:
  explicit TSetRow(const TRowBinding& binding)
      : TPropertyRow(binding),
        FList(new TCheckListBox(binding.Context.Owner, binding.Context.Parent)) {
    TStringList names;
    FillShownNames(*Property().PropType, Context(), names);
    FList->SetLines(names);
    Bind<&TSetRow::Picked>(FList->OnChange, this);
    constexpr int MostHeight = 90;
    SetControl(FList, FList->IntegralHeight(MostHeight));
  }

 protected:
  void Show() override {
    const auto bits = static_cast<std::uint32_t>(Property().Access->GetOrd(Instance()));
    for (int i = 0; i < FList->count(); ++i) FList->SetChecked(i, (bits & BitOf(i)) != 0);
  }
  // Elements without a line stay as they are.
  void Take() override {
    auto bits = static_cast<std::uint32_t>(Property().Access->GetOrd(Instance()));
    for (int i = 0; i < FList->count(); ++i)
      bits = FList->Checked(i) ? bits | BitOf(i) : bits & ~BitOf(i);
    Property().Access->SetOrd(Instance(), static_cast<std::int32_t>(bits));
  }

 private:
  std::uint32_t BitOf(int line) const {
    return 1u << (line + Property().PropType->ElementType()->Range().Low);
  }
  TCheckListBox* FList;
};

std::string SetText(const TPersistent& instance, const TPropInfo& property,
                    const TRowContext& context) {
  TStringList names;
  FillShownNames(*property.PropType, context, names);
  const auto bits = static_cast<std::uint32_t>(property.Access->GetOrd(instance)) >>
                    property.PropType->ElementType()->Range().Low;
  std::string text;
  for (int i = 0; i < names.Count(); ++i)
    if ((bits >> i & 1) != 0) text += (text.empty() ? "" : ", ") + names[i];
  return '[' + text + ']';
}

// Components: a list of those that the property may refer to, none of them first.

TComponent* ComponentAround(const TPersistent& instance) {
  const TPersistent* around = &instance;
  while (around != nullptr && dynamic_cast<const TComponent*>(around) == nullptr)
    around = around->GetOwner();
  auto* component = const_cast<TComponent*>(dynamic_cast<const TComponent*>(around));
  while (component != nullptr && component->Owner() != nullptr) component = component->Owner();
  return component;
}

std::vector<TComponent*> FindCandidates(const TPersistent& instance, const TPropInfo& property,
                                        const TRowContext& context) {
  if (context.Candidates) return context.Candidates(instance, property);
  std::vector<TComponent*> found;
  TComponent* root = ComponentAround(instance);
  if (root == nullptr) return found;
  found = root->Components();
  found.insert(found.begin(), root);
  std::erase_if(found, [&](const TComponent* component) {
    return !component->GetClassInfo().InheritsFrom(*property.PropType);
  });
  return found;
}

std::string ComponentName(const TComponent* component) {
  if (component == nullptr) return LocaleStr(sNoComponent);
  return component->Name().empty() ? component->ClassName() : component->Name();
}

class TComponentRow : public TPropertyRow {
 public:
  explicit TComponentRow(const TRowBinding& binding)
      : TPropertyRow(binding), FBox(new TComboBox(binding.Context.Owner, binding.Context.Parent)) {
    Bind<&TComponentRow::Picked>(FBox->OnChange, this);
    SetControl(FBox);
  }
  int MinimumWidth() const override { return ComboMinimumWidth(*FBox); }

 protected:
  void Show() override {
    auto* value = dynamic_cast<TComponent*>(Property().Access->GetObject(Instance()));
    FComponents = FindCandidates(Instance(), Property(), Context());
    FComponents.insert(FComponents.begin(), nullptr);
    if (std::find(FComponents.begin(), FComponents.end(), value) == FComponents.end())
      FComponents.push_back(value);
    TStringList names;
    for (const TComponent* component : FComponents) names.Add(ComponentName(component));
    FBox->SetLines(names);
    const auto at = std::find(FComponents.begin(), FComponents.end(), value);
    FBox->SetItemIndex(static_cast<int>(at - FComponents.begin()));
  }
  void Take() override {
    if (FBox->ItemIndex() >= 0)
      Property().Access->SetObject(Instance(), FComponents[FBox->ItemIndex()]);
  }

 private:
  TComboBox* FBox;
  std::vector<TComponent*> FComponents;
};

std::string ComponentText(const TPersistent& instance, const TPropInfo& property,
                          const TRowContext&) {
  return ComponentName(dynamic_cast<TComponent*>(property.Access->GetObject(instance)));
}

// The table.

template <TTypeKind... Kinds>
bool IsKind(const TPropInfo& property, const TRowContext&) {
  return ((property.Kind() == Kinds) || ...);
}
bool IsBoolean(const TPropInfo& property, const TRowContext&) {
  return property.PropType->PropKind() == TPropKind::Boolean;
}
bool IsComponent(const TPropInfo& property, const TRowContext&) {
  return property.Kind() == tkClass && property.PropType->InheritsFrom(TComponent::ClassInfo());
}

constexpr TRowRule BasicRules[] = {
    {1, "Integer", "Width=50%\n", IsKind<tkInteger, tkInt64>, MakeInteger, TextOf<IntegerForm>},
    {2, "Char", "Width=20\n", IsKind<tkChar, tkWChar>, MakeCharacter, TextOf<CharacterForm>},
    {3, "Float", "Width=50%\n", IsKind<tkFloat>, MakeFloat, TextOf<FloatForm>},
    {4, "String", "Width=100%\n", IsKind<tkString, tkLString, tkWString>, MakeString,
     TextOf<StringForm>},
    {6, "Boolean", "Width=13\n", IsBoolean, MakeRow<TBooleanRow>, EnumText},
    {5, "Enum", "Width=80%\n", IsKind<tkEnumeration>, MakeRow<TEnumRow>, EnumText},
    {7, "Set", "Width=100%\nCentredLabel=False\n", IsKind<tkSet>, MakeRow<TSetRow>, SetText},
    {8, "Component", "Width=100%\n", IsComponent, MakeRow<TComponentRow>, ComponentText},
};

}  // namespace

TRowRules BasicRowRules() {
  return BasicRules;
}

}  // namespace wrenfold
