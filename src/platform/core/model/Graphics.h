// Value objects: fonts and pictures, kept as data; widgets turn them into what they paint with.
#pragma once

#include <memory>
#include <string>

#include "platform/core/model/Persistent.h"
#include "platform/core/model/Streams.h"
#include "platform/core/text/Identifiers.h"

namespace wrenfold {

enum TFontPitch : std::uint8_t { fpDefault, fpVariable, fpFixed };
template <>
struct TEnumDescription<TFontPitch> {
  static constexpr const char* Name = "TFontPitch";
  static constexpr std::array Values{"fpDefault", "fpVariable", "fpFixed"};
};

enum TFontStyle : std::uint8_t { fsBold, fsItalic, fsUnderline, fsStrikeOut };
template <>
struct TEnumDescription<TFontStyle> {
  static constexpr const char* Name = "TFontStyle";
  static constexpr std::array Values{"fsBold", "fsItalic", "fsUnderline", "fsStrikeOut"};
};
template <>
struct TSetDescription<TFontStyle> {
  static constexpr const char* Name = "TFontStyles";
};
using TFontStyles = TSet<TFontStyle>;

inline constexpr TFontCharset ANSI_CHARSET = 0, DEFAULT_CHARSET = 1;
// Pixels per inch that font heights and sizes are converted with.
inline constexpr int FontPixelsPerInch = 96;

// Height is pixels, negative without the internal leading; Size is points and follows from it.
class TFont : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TFontCharset Charset() const { return FCharset; }
  void SetCharset(TFontCharset charset);
  TColor Color() const { return FColor; }
  void SetColor(TColor color);
  std::int32_t Height() const { return FHeight; }
  void SetHeight(std::int32_t height);
  const std::string& Name() const { return FName; }
  // A font always has a name: an empty one is not taken.
  void SetName(const std::string& name);
  TFontPitch Pitch() const { return FPitch; }
  void SetPitch(TFontPitch pitch);
  std::int32_t Size() const;
  void SetSize(std::int32_t size);
  TFontStyles Style() const { return FStyle; }
  void SetStyle(TFontStyles style);

  void Assign(const TPersistent* source) override;

  TNotifyEvent OnChange;

 protected:
  virtual void Changed() { OnChange(this); }

 private:
  template <class Value>
  void Change(Value& member, const Value& value);

  TFontCharset FCharset = DEFAULT_CHARSET;
  TColor FColor = clWindowText;
  std::int32_t FHeight = -11;
  std::string FName = "MS Sans Serif";
  TFontPitch FPitch = fpDefault;
  TFontStyles FStyle;
};

// A picture of some kind as the bytes that it is stored as.
class TGraphic : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  bool Empty() const { return FData.empty(); }
  const std::string& Data() const { return FData; }
  void SetData(std::string data);
  // Null empties it.
  void Assign(const TPersistent* source) override;
  // Stored as the binary property "Data".
  void DefineProperties(TFiler& filer) override;

  TNotifyEvent OnChange;

 protected:
  friend class TPicture;
  // The stored bytes as the class frames them, and back.
  virtual std::string StoredData() const { return FData; }
  virtual void TakeStoredData(std::string data) { SetData(std::move(data)); }

 private:
  std::string FData;
};

// A bitmap file (header included) or nothing; stored behind a 32-bit length.
class TBitmap : public TGraphic {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

 protected:
  std::string StoredData() const override;
  void TakeStoredData(std::string data) override;
};

class TIcon : public TGraphic {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
};

// A file of any picture format that is no bitmap and no icon.
class TImageFile : public TGraphic {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
};

// Holds a graphic of any class, or none; stored as "Data": the class name as a short string, then
// what the graphic stores.
class TPicture : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  TGraphic* Graphic() const { return FGraphic.get(); }
  // Copies the graphic; null empties the picture.
  void SetGraphic(const TGraphic* graphic);
  void Assign(const TPersistent* source) override;
  void DefineProperties(TFiler& filer) override;
  // The graphic's class follows from the first bytes. Raises EFOpenError.
  void LoadFromFile(const std::string& fileName);

  TNotifyEvent OnChange;

 private:
  void ReadData(TStream& stream);
  void WriteData(TStream& stream) const;

  std::unique_ptr<TGraphic> FGraphic;
};

}  // namespace wrenfold
