// Fonts and pictures: what follows from what, and what is stored.
#include <gmock/gmock.h>

#include "platform/core/model/Graphics.h"
#include "platform/core/stream/Reader.h"
#include "platform/core/stream/Writer.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {
namespace {

struct TCounter {
  void Count(TObject*) { ++Changes; }
  int Changes = 0;
};

TEST(Font, ReportsRealChangesAlone) {
  TFont font, other;
  TCounter counter;
  Bind<&TCounter::Count>(font.OnChange, &counter);
  font.SetColor(font.Color());
  font.SetName(font.Name());
  EXPECT_EQ(counter.Changes, 0);
  font.SetStyle({fsBold, fsItalic});
  EXPECT_EQ(counter.Changes, 1);
  other.SetName("Mono");
  font.Assign(&other);
  EXPECT_EQ(counter.Changes, 2);
  EXPECT_EQ(font.Name(), "Mono");
  EXPECT_TRUE(font.Style().Empty());
  const TPicture picture;
  EXPECT_THROW(font.Assign(&picture), EConvertError);
}

// What an object's DefineProperties stores, read back into another of its class.
void Copy(TPersistent& from, TPersistent& to) {
  TMemoryStream stream;
  {
    TWriter writer(stream);
    writer.WriteProperties(from);
    writer.WriteListEnd();
  }
  stream.SetPosition(0);
  TReader reader(stream);
  reader.ReadProperties(to);
}

TEST(Picture, GraphicsOfEveryClassComeBack) {
  TBitmap bitmap;
  TIcon icon;
  TImageFile image;
  for (TGraphic* graphic : {static_cast<TGraphic*>(&bitmap), static_cast<TGraphic*>(&icon),
                            static_cast<TGraphic*>(&image)}) {
    graphic->SetData(std::string("BM\0\xFF", 4));
    TPicture picture, back;
    picture.SetGraphic(graphic);
    Copy(picture, back);
    ASSERT_NE(back.Graphic(), nullptr);
    EXPECT_EQ(back.Graphic()->ClassName(), graphic->ClassName());
    EXPECT_EQ(back.Graphic()->Data(), graphic->Data());
  }
}

TEST(Picture, DamagedDataLeavesThePictureAsItWas) {
  TImageFile image;
  image.SetData("kept");
  for (const char* stored : {"\x0A"
                             "a",
                             "\x05TFont....", "\x07TBitmap\xFF\xFF\xFF\x7F", "\x02No"}) {
    TPicture picture;
    picture.SetGraphic(&image);
    TMemoryStream stream;
    {
      TWriter writer(stream);
      writer.DefineBinaryProperty(
          "Data", {}, [stored](TStream& data) { data.WriteText(stored); }, true);
      writer.WriteListEnd();
    }
    stream.SetPosition(0);
    TReader reader(stream);
    EXPECT_THROW(reader.ReadProperties(picture), EFilerError);
    ASSERT_NE(picture.Graphic(), nullptr);
    EXPECT_EQ(picture.Graphic()->Data(), "kept");
  }
}

}  // namespace
}  // namespace wrenfold
