// A component with a property of every kind, nested collections and references among components.
#pragma once

#include <memory>
#include <string>

#include "platform/core/model/Collection.h"
#include "platform/core/model/Graphics.h"
#include "platform/core/model/Persistent.h"
#include "platform/core/model/StringList.h"

namespace wrenfold {

// An item that holds items of its own class and refers to a component.
class TFuzzItem : public TCollectionItem {
 public:
  using TCollectionItem::TCollectionItem;
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TFuzzItem>("TFuzzItem", TCollectionItem::ClassInfo())
                                      .Prop("Rank", &TFuzzItem::Rank)
                                      .Prop("Title", &TFuzzItem::Title)
                                      .Prop("Peer", &TFuzzItem::Peer)
                                      .Prop("Items", &TFuzzItem::Items);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  std::int32_t Rank = 0;
  std::string Title;
  TComponent* Peer = nullptr;
  std::unique_ptr<TCollection> Items = std::make_unique<TCollection>(ClassInfo());
};

class TFuzzComponent : public TComponent {
 public:
  using TComponent::TComponent;
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TFuzzComponent>("TFuzzComponent", TComponent::ClassInfo())
                                      .Prop("Items", &TFuzzComponent::Items)
                                      .Prop("Font", &TFuzzComponent::Font)
                                      .Prop("Lines", &TFuzzComponent::Lines)
                                      .Prop("Picture", &TFuzzComponent::Picture)
                                      .Prop("Bitmap", &TFuzzComponent::Bitmap)
                                      .Prop("Number", &TFuzzComponent::Number)
                                      .Prop("Letter", &TFuzzComponent::Letter)
                                      .Prop("Active", &TFuzzComponent::Active)
                                      .Prop("Big", &TFuzzComponent::Big)
                                      .Prop("Ratio", &TFuzzComponent::Ratio)
                                      .Prop("Moment", &TFuzzComponent::Moment)
                                      .Prop("Text", &TFuzzComponent::Text)
                                      .Prop("Short", &TFuzzComponent::Short)
                                      .Prop("Wide", &TFuzzComponent::Wide)
                                      .Prop("Styles", &TFuzzComponent::Styles)
                                      .Prop("Pitch", &TFuzzComponent::Pitch)
                                      .Prop("Color", &TFuzzComponent::Color)
                                      .Prop("Loose", &TFuzzComponent::Loose)
                                      .Prop("Peer", &TFuzzComponent::Peer)
                                      .Prop("OnClick", &TFuzzComponent::OnClick);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  void GetChildren(const std::function<void(TComponent&)>& visit, TComponent*) override {
    for (TComponent* component : Components()) visit(*component);
  }

  std::unique_ptr<TCollection> Items = std::make_unique<TCollection>(TFuzzItem::ClassInfo());
  std::unique_ptr<TFont> Font = std::make_unique<TFont>();
  std::unique_ptr<TStringList> Lines = std::make_unique<TStringList>();
  std::unique_ptr<TPicture> Picture = std::make_unique<TPicture>();
  std::unique_ptr<TBitmap> Bitmap = std::make_unique<TBitmap>();
  std::int32_t Number = 0;
  char Letter = 'x';
  bool Active = false;
  std::int64_t Big = 0;
  double Ratio = 0;
  TDateTime Moment = 0.0;
  std::string Text;
  TShortString Short;
  TWideString Wide;
  TFontStyles Styles;
  TFontPitch Pitch = fpDefault;
  TColor Color = clRed;
  TVariant Loose;
  TComponent* Peer = nullptr;
  TNotifyEvent OnClick;
};

}  // namespace wrenfold
