// The kinds of rows with special controls: spins, colours, dates, fonts, pictures, lists, hot keys.
#include <algorithm>
#include <limits>

#include "controls/rkComCtrls.h"
#include "controls/rkControls.h"
#include "controls/rkPictures.h"
#include "controls/rkStdCtrls.h"
#include "editor/rkRowValues.h"
#include "editor/rkRows.h"
#include "editor/rkSpcImage.h"
#include "editor/rkStrEdit.h"
#include "locale/rkLocale.h"
#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Text.h"
#include "storage/rkDataProps.h"
#include "storage/rkPropTypes.h"

namespace wrenfold {

namespace {

std::int32_t Ordinal(const TPersistent& instance, const TPropInfo& property) {
  return property.Access->GetOrd(instance);
}

std::string PlainText(const TPersistent& instance, const TPropInfo& property, const TRowContext&) {
  return GetPropAsText(instance, property);
}

class TSpinRow : public TPropertyRow {
 public:
  explicit TSpinRow(const TRowBinding& binding)
      : TPropertyRow(binding), FSpin(new TSpinEdit(binding.Context.Owner, binding.Context.Parent)) {
    const TValueRange& range = Property().Range();
    FSpin->setRange(Limited(range.Low), Limited(range.High));
    Bind<&TSpinRow::Edited>(FSpin->OnChange, this);
    Bind<&TSpinRow::Rejected>(FSpin->OnReject, this);
    SetControl(FSpin);
  }
  int MinimumWidth() const override {
    constexpr int Arrows = 40;
    return FSpin->fontMetrics().horizontalAdvance("000") + Arrows;
  }
  bool CanUndo() const override { return FSpin->CanUndo(); }
  void Undo() override { FSpin->Undo(); }

 protected:
  void Show() override { FSpin->SetValue(Ordinal(Instance(), Property())); }
  void Take() override {
    FSpin->interpretText();
    if (Modified()) Property().Access->SetOrd(Instance(), FSpin->Value());
  }

 private:
  static int Limited(std::int64_t value) {
    return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
  }
  void Rejected(TObject*) { SetMessage(rmRefusal, LocaleFormat(sSpinRejected, FSpin->Rejected())); }
  TSpinEdit* FSpin;
};

// Colours.

class TColorRow : public TPropertyRow {
 public:
  explicit TColorRow(const TRowBinding& binding)
      : TPropertyRow(binding),
        FEdit(new TColorEdit(binding.Context.Owner, binding.Context.Parent)) {
    TranslateNames();
    Bind<&TColorRow::Edited>(FEdit->OnChange, this);
    Bind<&TColorRow::Edited>(FEdit->OnTyped, this);
    Bind<&TColorRow::Completed>(FEdit->OnPick, this);
    SetControl(FEdit);
  }
  int MinimumWidth() const override { return ComboMinimumWidth(*FEdit) + FEdit->ColorWidth(); }
  bool CanUndo() const override { return FEdit->CanUndo(); }
  void Undo() override { FEdit->Undo(); }

 protected:
  void Show() override { FEdit->SetColorValue(Ordinal(Instance(), Property())); }
  void Take() override {
    TColor typed = clNone;
    std::int32_t number = 0;
    if (FEdit->Style() == esDropDown && !FEdit->InternalIdentToColor(FEdit->Text(), typed) &&
        !TryStrToInt(FEdit->Text(), number))
      throw EConvertError(LocaleFormat(sNotColour, FEdit->Text()));
    Property().Access->SetOrd(Instance(), FEdit->ColorValue().Value);
  }

 private:
  void TranslateNames() {
    if (!Context().TranslateNames) return;
    TStringList names;
    for (int i = 0; i < FEdit->count(); ++i) names.Add(FromQString(FEdit->itemText(i)));
    Context().TranslateNames(names, *Property().PropType);
    FEdit->SetColorNames(&names);
  }
  TColorEdit* FEdit;
};

std::string ColorText(const TPersistent& instance, const TPropInfo& property, const TRowContext&) {
  return ColorAsShownText(Ordinal(instance, property));
}

// Dates and times.

template <TDateTimeKind Kind>
class TDateTimeRow : public TPropertyRow {
 public:
  explicit TDateTimeRow(const TRowBinding& binding)
      : TPropertyRow(binding),
        FPicker(new TDateTimePicker(binding.Context.Owner, binding.Context.Parent)) {
    FPicker->SetKind(Kind);
    Bind<&TDateTimeRow::Edited>(FPicker->OnChange, this);
    Bind<&TDateTimeRow::Rejected>(FPicker->OnReject, this);
    SetControl(FPicker);
  }
  int MinimumWidth() const override { return FPicker->minimumSizeHint().width(); }
  bool CanUndo() const override { return FPicker->CanUndo(); }
  void Undo() override { FPicker->Undo(); }

 protected:
  void Show() override {
    if (!FPicker->SetDateTime(Property().Access->GetFloat(Instance())))
      throw EConvertError(LocaleStr(sDateNotShown));
  }
  void Take() override {
    FPicker->Interpret();
    if (Modified()) Property().Access->SetFloat(Instance(), FPicker->DateTime());
  }

 private:
  void Rejected(TObject*) {
    const int text = Kind == dtkDate ? sNotDate : sNotTime;
    SetMessage(rmRefusal, LocaleFormat(text, FPicker->Rejected()));
    if (FPicker->DateTime() == Property().Access->GetFloat(Instance())) ControlRestored();
  }
  TDateTimePicker* FPicker;
};

// Fonts.

class TFontRow : public TPropertyRow {
 public:
  explicit TFontRow(const TRowBinding& binding)
      : TPropertyRow(binding), FEdit(new TFontEdit(binding.Context.Owner, binding.Context.Parent)) {
    FEdit->SetUseFonts(true);
    Bind<&TFontRow::Edited>(FEdit->OnChange, this);
    Bind<&TFontRow::Edited>(FEdit->OnTyped, this);
    Bind<&TFontRow::Completed>(FEdit->OnPick, this);
    SetControl(FEdit);
  }
  int MinimumWidth() const override { return ComboMinimumWidth(*FEdit); }
  bool CanUndo() const override { return FEdit->CanUndo(); }
  void Undo() override { FEdit->Undo(); }

 protected:
  void Show() override {
    if (auto* font = dynamic_cast<TFont*>(Property().Access->GetObject(Instance())))
      FEdit->SetSelFont(font);
  }
  void Take() override {
    if (!FEdit->TextIsTaken()) throw EConvertError(LocaleFormat(sNotFont, FEdit->Text()));
    const auto copy = CopyOfObject(Instance(), Property(), TFont::ClassInfo());
    copy->Assign(FEdit->SelFont());
    PutObject(Instance(), Property(), *copy);
  }

 private:
  TFontEdit* FEdit;
};

std::string FontText(const TPersistent& instance, const TPropInfo& property, const TRowContext&) {
  const auto* font = dynamic_cast<const TFont*>(property.Access->GetObject(instance));
  if (font == nullptr) return {};
  std::string text = LocaleFormat(sFontShown, font->Name(), font->Size());
  for (const char* style : {"Bold", "Italic", "Underline", "StrikeOut"})
    if (font->Style().Contains(static_cast<TFontStyle>(
            *TypeInfoOf<TFontStyle>().FindEnumValue(std::string("fs") + style))))
      text += std::string(", ") + style;
  return text;
}

// Pictures, and graphics without a picture around them.

class TPictureRow : public TPropertyRow {
 public:
  explicit TPictureRow(const TRowBinding& binding)
      : TPropertyRow(binding),
        FImage(new TSpcImage(binding.Context.Owner, binding.Context.Parent)) {
    FImage->SetPopupMenu(Context().PictureMenu);
    Bind<&TPictureRow::Picked>(FImage->OnChange, this);
    Bind<&TPictureRow::Failed>(FImage->OnFailure, this);
    constexpr int PictureHeight = 32;
    SetControl(FImage, PictureHeight);
  }
  int MinimumWidth() const override { return Height(); }

 protected:
  void Show() override {
    const TPersistent* value = Property().Access->GetObject(Instance());
    FImage->SetData(value == nullptr ? std::string() : PictureBytes(*value));
    if (!FImage->Problem().empty()) throw EInvalidPicture(FImage->Problem());
  }
  void Take() override {
    const auto copy = CopyOfObject(Instance(), Property(), TImageFile::ClassInfo());
    if (auto* picture = dynamic_cast<TPicture*>(copy.get()))
      picture->SetGraphic(GraphicOf(FImage->Data()).get());
    else if (auto* graphic = dynamic_cast<TGraphic*>(copy.get()))
      graphic->SetData(DataFor(*graphic));
    PutObject(Instance(), Property(), *copy);
  }
  bool ConfirmedByEnter() const override { return false; }

 private:
  // Some classes hold one format only.
  std::string DataFor(const TGraphic& graphic) const {
    const std::string what = LocaleStr(sPictureInProperty);
    const TTypeInfo& info = graphic.GetClassInfo();
    if (info.InheritsFrom(TBitmap::ClassInfo())) return ConvertPicture(FImage->Data(), "BMP", what);
    if (info.InheritsFrom(TIcon::ClassInfo())) return ConvertPicture(FImage->Data(), "ICO", what);
    return FImage->Data();
  }
  void Failed(TObject*) { SetMessage(rmRefusal, FImage->Failure()); }
  TSpcImage* FImage;
};

std::string PictureText(const TPersistent& instance, const TPropInfo& property,
                        const TRowContext&) {
  const TPersistent* value = property.Access->GetObject(instance);
  const std::string bytes = value == nullptr ? std::string() : PictureBytes(*value);
  if (bytes.empty()) return {};
  const TPictureInfo info = ReadPictureInfo(bytes);
  return LocaleFormat(sPictureShown, info.Format, info.Size.width(), info.Size.height());
}

// Lists of lines.

const TStrings* LinesOf(const TPersistent& instance, const TPropInfo& property) {
  return dynamic_cast<const TStrings*>(property.Access->GetObject(instance));
}

std::string LinesText(const TPersistent& instance, const TPropInfo& property, const TRowContext&) {
  const TStrings* lines = LinesOf(instance, property);
  if (lines == nullptr) return {};
  return lines->Count() == 1 ? lines->Get(0) : LocaleFormat(sLinesShown, lines->Count());
}

class TCheckStringsRow : public TPropertyRow {
 public:
  explicit TCheckStringsRow(const TRowBinding& binding)
      : TPropertyRow(binding),
        FList(new TCheckListBox(binding.Context.Owner, binding.Context.Parent)) {
    FList->SetPopupMenu(Context().LinesMenu);
    Bind<&TCheckStringsRow::Picked>(FList->OnChange, this);
    constexpr int ListHeight = 100;
    SetControl(FList, ListHeight);
  }

 protected:
  void Show() override {
    const auto* value =
        dynamic_cast<const TCheckStrings*>(Property().Access->GetObject(Instance()));
    if (value == nullptr) return;
    FList->SetLines(*value);
    TStringList indices;
    indices.SetCommaText(value->CheckedInds());
    std::int32_t index = 0;
    for (int i = 0; i < indices.Count(); ++i)
      if (TryStrToInt(indices[i], index)) FList->SetChecked(index, true);
  }
  void Take() override {
    const auto copy = CopyOfObject(Instance(), Property(), TCheckStrings::ClassInfo());
    auto& lines = dynamic_cast<TCheckStrings&>(*copy);
    FList->GetLines(lines);
    std::string checked;
    for (int i = 0; i < FList->count(); ++i)
      if (FList->Checked(i)) checked.append(checked.empty() ? 0 : 1, ',').append(IntToStr(i));
    lines.SetCheckedInds(checked);
    PutObject(Instance(), Property(), lines);
  }

 private:
  TCheckListBox* FList;
};

std::string CheckStringsText(const TPersistent& instance, const TPropInfo& property,
                             const TRowContext&) {
  const auto* value = dynamic_cast<const TCheckStrings*>(property.Access->GetObject(instance));
  if (value == nullptr) return {};
  TStringList indices;
  indices.SetCommaText(value->CheckedInds());
  std::string text;
  std::int32_t index = 0;
  for (int i = 0; i < indices.Count(); ++i)
    if (TryStrToInt(indices[i], index) && index >= 0 && index < value->Count())
      text += (text.empty() ? "" : ", ") + value->Get(index);
  return '[' + text + ']';
}

class TSelectStringsRow : public TPropertyRow {
 public:
  explicit TSelectStringsRow(const TRowBinding& binding)
      : TPropertyRow(binding), FBox(new TComboBox(binding.Context.Owner, binding.Context.Parent)) {
    FBox->SetPopupMenu(Context().LinesMenu);
    Bind<&TSelectStringsRow::Picked>(FBox->OnChange, this);
    SetControl(FBox);
  }
  int MinimumWidth() const override { return ComboMinimumWidth(*FBox); }

 protected:
  void Show() override {
    const auto* value =
        dynamic_cast<const TSelectStrings*>(Property().Access->GetObject(Instance()));
    if (value == nullptr) return;
    FBox->SetLines(*value);
    FBox->SetItemIndex(value->ItemIndex() < value->Count() ? value->ItemIndex() : -1);
  }
  void Take() override {
    const auto copy = CopyOfObject(Instance(), Property(), TSelectStrings::ClassInfo());
    auto& lines = dynamic_cast<TSelectStrings&>(*copy);
    FBox->GetLines(lines);
    lines.SetItemIndex(FBox->ItemIndex());
    PutObject(Instance(), Property(), lines);
  }

 private:
  TComboBox* FBox;
};

std::string SelectStringsText(const TPersistent& instance, const TPropInfo& property,
                              const TRowContext&) {
  const auto* value = dynamic_cast<const TSelectStrings*>(property.Access->GetObject(instance));
  if (value == nullptr || value->ItemIndex() < 0 || value->ItemIndex() >= value->Count()) return {};
  return value->Get(value->ItemIndex());
}

class TStringsRow : public TPropertyRow {
 public:
  explicit TStringsRow(const TRowBinding& binding)
      : TPropertyRow(binding), FMemo(new TMemo(binding.Context.Owner, binding.Context.Parent)) {
    FMemo->SetScrollBars(ssVertical);
    Bind<&TStringsRow::Edited>(FMemo->OnChange, this);
    Bind<&TStringsRow::OpenEditor>(FMemo->OnDblClick, this);
    constexpr int MemoHeight = 90;
    SetControl(FMemo, MemoHeight);
  }
  bool CanUndo() const override { return FMemo->document()->isUndoAvailable(); }
  void Undo() override { FMemo->undo(); }

 protected:
  void Show() override {
    if (const TStrings* lines = LinesOf(Instance(), Property())) FMemo->SetLines(*lines);
  }
  void Take() override {
    const auto copy = CopyOfObject(Instance(), Property(), TStringList::ClassInfo());
    FMemo->GetLines(dynamic_cast<TStrings&>(*copy));
    PutObject(Instance(), Property(), *copy);
  }
  bool ConfirmedByEnter() const override { return false; }

 private:
  void OpenEditor(TObject*) {
    TStringList lines;
    FMemo->GetLines(lines);
    const QPointer<TMemo> life = FMemo;
    if (!TStrEditDlg::Execute(lines, FMemo->accessibleName().toStdString()) || life == nullptr)
      return;
    FMemo->SetLines(lines);
    if (life != nullptr) ControlCompleted();
  }
  TMemo* FMemo;
};

// Hot keys: codes, and their texts.

class THotKeyRow : public TPropertyRow {
 public:
  explicit THotKeyRow(const TRowBinding& binding)
      : TPropertyRow(binding), FKey(new THotKeyEx(binding.Context.Owner, binding.Context.Parent)) {
    Bind<&THotKeyRow::Pressed>(FKey->OnChange, this);
    Bind<&THotKeyRow::Unknown>(FKey->OnUnknownKey, this);
    SetControl(FKey);
  }

 protected:
  void Show() override {
    if (IsCode())
      return FKey->SetHotKey(static_cast<std::uint16_t>(Ordinal(Instance(), Property())));
    const std::string text = Property().Access->GetStr(Instance());
    FKey->SetText(text);
    if (!text.empty() && FKey->HotKey() == 0) throw EConvertError(LocaleFormat(sKeyNotNamed, text));
  }
  void Take() override {
    const TShortCut key = FKey->HotKey();
    if (IsTypingKey(key)) throw EConvertError(LocaleFormat(sTypingKey, ShortCutToText(key)));
    if (IsCode()) Property().Access->SetOrd(Instance(), key);
    else Property().Access->SetStr(Instance(), ShortCutToText(key));
  }
  bool ConfirmedByEnter() const override { return false; }

 private:
  bool IsCode() const { return Property().Kind() == tkInteger; }
  void Unknown(TObject*) { SetMessage(rmRefusal, LocaleStr(sUnknownKey)); }
  // What is wrong with a key is told as soon as it is pressed.
  void Pressed(TObject*) {
    const QPointer<QWidget> life = FKey;
    ControlChanged();
    if (life == nullptr || !Modified()) return;
    const TShortCut key = FKey->HotKey();
    const std::string name = ShortCutToText(key);
    if (IsTypingKey(key)) return SetMessage(rmRefusal, LocaleFormat(sTypingKey, name));
    if (key == 0 || !Context().HotKeyConflict) return;
    const std::string other = Context().HotKeyConflict(key, Instance(), Property());
    if (!other.empty()) SetMessage(rmRemark, LocaleFormat(sHotKeyTaken, name, other));
  }
  THotKeyEx* FKey;
};

std::string HotKeyText(const TPersistent& instance, const TPropInfo& property, const TRowContext&) {
  return ShortCutToText(static_cast<std::uint16_t>(Ordinal(instance, property)));
}

// The table. A type is recognised by its record or, where another module has a record of its own,
// by the record's name.

template <class Value>
bool IsType(const TPropInfo& property) {
  const TTypeInfo& type = *property.PropType;
  return &type == &TypeInfoOf<Value>() || EqualText(type.Name(), TypeInfoOf<Value>().Name());
}
template <class Value>
bool IsOfType(const TPropInfo& property, const TRowContext&) {
  return IsType<Value>(property);
}
template <class Class>
bool IsOfClass(const TPropInfo& property, const TRowContext&) {
  const TTypeInfo& type = *property.PropType;
  return type.Kind() == tkClass &&
         (type.InheritsFrom(Class::ClassInfo()) || type.InheritsFrom(Class::ClassInfo().Name()));
}
template <TPropKind Kind>
bool IsPropKind(const TPropInfo& property, const TRowContext&) {
  return property.PropType->PropKind() == Kind;
}
// A spin counts with 32 bits and a sign: wider integers stay text.
bool IsSpin(const TPropInfo& property, const TRowContext& context) {
  if (IsType<TSpinInt>(property)) return true;
  return context.SpinOveruse && property.Kind() == tkInteger &&
         property.PropType->PropKind() == TPropKind::Integer &&
         property.Range().High <= std::numeric_limits<std::int32_t>::max();
}

constexpr TRowRule ProRules[] = {
    {4, "Color", "Width=100%\n", IsPropKind<TPropKind::Color>, MakeRow<TColorRow>, ColorText},
    {11, "ShortCut", "Width=50%\n", IsOfType<TShortCut>, MakeRow<THotKeyRow>, HotKeyText},
    {1, "SpinInt", "Width=65%\n", IsSpin, MakeRow<TSpinRow>, PlainText},
    {5, "Date", "Width=80%\n", IsPropKind<TPropKind::DateTime>, MakeRow<TDateTimeRow<dtkDate>>,
     PlainText},
    {6, "Time", "Width=80%\n", IsPropKind<TPropKind::Time>, MakeRow<TDateTimeRow<dtkTime>>,
     PlainText},
    {12, "ShortCutString", "Width=50%\n", IsOfType<TShortCutString>, MakeRow<THotKeyRow>,
     PlainText},
    {2, "CheckStrings", "Width=100%\nCentredLabel=False\n", IsOfClass<TCheckStrings>,
     MakeRow<TCheckStringsRow>, CheckStringsText},
    {3, "SelectStrings", "Width=100%\n", IsOfClass<TSelectStrings>, MakeRow<TSelectStringsRow>,
     SelectStringsText},
    {10, "Strings", "Width=100%\nCentredLabel=False\n", IsOfClass<TStrings>, MakeRow<TStringsRow>,
     LinesText},
    {7, "Font", "Width=100%\n", IsOfClass<TFont>, MakeRow<TFontRow>, FontText},
    {8, "Picture", "Width=32\nCentredLabel=False\n", IsOfClass<TPicture>, MakeRow<TPictureRow>,
     PictureText},
    {9, "Picture", "Width=32\nCentredLabel=False\n", IsOfClass<TGraphic>, MakeRow<TPictureRow>,
     PictureText},
};

}  // namespace

TRowRules ProRowRules() {
  return ProRules;
}

}  // namespace wrenfold
