// Value types of properties that the settings editor shows with a control of their own.
#pragma once

#include <string>

#include "platform/core/model/Graphics.h"
#include "platform/core/model/StringList.h"
#include "storage/rkInitData.h"

namespace wrenfold {

// Lines with check marks.
class TCheckStrings : public TStringList {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  void Assign(const TPersistent* source) override;

  // The indices of the checked lines, from 0, joined by commas. A change is reported.
  const std::string& CheckedInds() const { return FCheckedInds; }
  void SetCheckedInds(const std::string& indices);

 private:
  std::string FCheckedInds;
};

// Lines of which one is selected.
class TSelectStrings : public TStringList {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  void Assign(const TPersistent* source) override;

  // -1: none. A change is reported.
  std::int32_t ItemIndex() const { return FItemIndex; }
  void SetItemIndex(std::int32_t index);

 private:
  std::int32_t FItemIndex = -1;
};

// Free text of several lines.
class TMemoStrings : public TStringList {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
};

class TFontEx : public TFont {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
};

class TPictureEx : public TPicture {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
};

enum TPropTypeIdent : std::uint8_t {
  tiUnknown,
  tiStrings,
  tiChkStrings,
  tiSelStrings,
  tiFont,
  tiPicture,
  tiGraphic
};
// tiUnknown for null.
TPropTypeIdent ClassifyPropValue(const TPersistent* value);

// The conversions of these types to text and back. An object of another class than the entry is
// for raises EDataHandlingError. Fonts and pictures travel as binary data in the string.
struct TPropTypesData : TUserData {
  static constexpr const char* BlockName = "PropTypes";
  TPropTypesData() : TUserData(BlockName) {}

  TEntryPoint<void(TPersistent& value, std::string& text)> StringsToText;
  TEntryPoint<void(TPersistent& value, std::string& text, std::string& checkedInds)>
      CheckStringsToText;
  TEntryPoint<void(TPersistent& value, std::string& text, std::int32_t& itemIndex)>
      SelectStringsToText;
  TEntryPoint<void(TPersistent& value, std::string& text)> FontToText;
  TEntryPoint<void(TPersistent& value, std::string& text)> PictureToText;
  TEntryPoint<void(TPersistent& value, const std::string& text)> TextToStrings;
  TEntryPoint<void(TPersistent& value, const std::string& text, const std::string& checkedInds)>
      TextToCheckStrings;
  TEntryPoint<void(TPersistent& value, const std::string& text, std::int32_t itemIndex)>
      TextToSelectStrings;
  TEntryPoint<void(TPersistent& value, const std::string& text)> TextToFont;
  TEntryPoint<void(TPersistent& value, const std::string& text)> TextToPicture;
  TEntryPoint<TPropTypeIdent(const TPersistent* value)> Classify;
};

// Adds the block to the installed init data, at the first of nested calls; the last Done ends it.
void InitPropTypes();
void DonePropTypes();

}  // namespace wrenfold
