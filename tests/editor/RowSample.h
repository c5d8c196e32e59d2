// An object with a property of every kind that has a row.
#pragma once

#include <memory>

#include "editor/rkRows.h"
#include "platform/core/model/ClassRegistry.h"
#include "storage/rkPropTypes.h"

namespace wrenfold::test {

class TRowSample : public TComponent {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info =
        Publish<TRowSample>("TRowSample", TComponent::ClassInfo())
            .Prop("Number", &TRowSample::Number)
            .Prop("Small", &TRowSample::Small)
            .Prop("Wide", &TRowSample::Wide)
            .Prop("Letter", &TRowSample::Letter)
            .Prop("WideLetter", &TRowSample::WideLetter)
            .Prop("Ratio", &TRowSample::Ratio)
            .Prop("Title", &TRowSample::Title)
            .Prop("ShortTitle", &TRowSample::ShortTitle)
            .Prop("Pitch", &TRowSample::Pitch)
            .Prop("Active", &TRowSample::Active)
            .Prop("Styles", &TRowSample::Styles)
            .Prop("Friend", &TRowSample::Friend)
            .Prop("Count", &TRowSample::Count)
            .Prop("Colour", &TRowSample::Colour)
            .Prop("Day", &TRowSample::Day)
            .Prop("Moment", &TRowSample::Moment)
            .Prop("Clock", &TRowSample::Clock)
            .Prop("Face", &TRowSample::Face)
            .Prop("Picture", &TRowSample::Picture)
            .Prop("Glyph", &TRowSample::Glyph)
            .Prop("Notes", &TRowSample::Notes)
            .Prop("Checks", &TRowSample::Checks)
            .Prop("Choice", &TRowSample::Choice)
            .Prop("Key", &TRowSample::Key)
            .Prop("KeyText", &TRowSample::KeyText)
            .Prop("Locked", &TRowSample::GetLocked, nullptr)
            .Prop("Guarded", &TRowSample::GetGuarded, &TRowSample::SetGuarded);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TRowSample(TComponent* owner = nullptr) : TComponent(owner) {
    SetName("Sample");
    Checks->SetText("red\ngreen\nblue");
    Checks->SetCheckedInds("1");
    Choice->SetText("low\nmiddle\nhigh");
    Choice->SetItemIndex(0);
    Notes->SetText("first");
  }

  std::string GetLocked() const { return "as it is"; }
  std::string GetGuarded() const { return FGuarded; }
  void SetGuarded(const std::string& text) {
    if (text == "bad") throw Exception("The setter refuses this.");
    FGuarded = text;
  }

  std::int32_t Number = 7;
  std::uint8_t Small = 8;
  std::int64_t Wide = 5'000'000'000;
  char Letter = 'x';
  char16_t WideLetter = u'w';
  double Ratio = 0.5;
  std::string Title = "Title";
  TShortString ShortTitle = "Short";
  TFontPitch Pitch = fpDefault;
  bool Active = false;
  TFontStyles Styles = {fsItalic};
  TComponent* Friend = nullptr;
  TSpinInt Count = 3;
  TColor Colour = clBlack;
  TDate Day = 45000.75;
  TDateTime Moment = 45000.75;
  TTime Clock = 0.5;
  std::unique_ptr<TFont> Face = std::make_unique<TFont>();
  std::unique_ptr<TPicture> Picture = std::make_unique<TPicture>();
  std::unique_ptr<TBitmap> Glyph = std::make_unique<TBitmap>();
  std::unique_ptr<TMemoStrings> Notes = std::make_unique<TMemoStrings>();
  std::unique_ptr<TCheckStrings> Checks = std::make_unique<TCheckStrings>();
  std::unique_ptr<TSelectStrings> Choice = std::make_unique<TSelectStrings>();
  TShortCut Key = 0;
  TShortCutString KeyText = "Ctrl+S";

 private:
  std::string FGuarded = "good";
};

}  // namespace wrenfold::test
