// Images of objects: what they keep, what matches, and what giving them back touches.
#include <gmock/gmock.h>

#include "TestObjects.h"
#include "storage/rkObjectImage.h"

namespace wrenfold {
namespace {

using testing::ElementsAre;

TEST(ObjectImage, EveryKindOfValueComesBackAndAnUnstoredOneToo) {
  TSample sample;
  const TObjectImage image(sample);
  const std::string before = GetProps({&sample}, osfBin);
  ASSERT_TRUE(image.Matches(sample));
  for (const TPropInfo* property : sample.GetClassInfo().Properties()) {
    if (property->Kind() == tkMethod || property->Name == "Inner") continue;
    if (property->Kind() == tkClass) sample.Font->SetStyle({fsBold});
    else if (property->Kind() == tkInt64) sample.Big = -1;
    else if (property->Kind() == tkFloat) property->Access->SetFloat(sample, 9.25);
    else if (property->Name == "Text" || property->Name == "Short" || property->Name == "Wide")
      property->Access->SetStr(sample, "changed");
    else property->Access->SetOrd(sample, property->Name == "Active" ? 0 : 2);
    EXPECT_FALSE(image.Matches(sample)) << property->Name;
    image.Restore(sample);
    EXPECT_TRUE(image.Matches(sample)) << property->Name;
    EXPECT_EQ(GetProps({&sample}, osfBin), before) << property->Name;
  }
}

TEST(ObjectImage, ItemsOfTheImagedCollectionAreFoundByWhoTheyAreAndStayTheSameObjects) {
  TKeyedRoot root;
  TKeyedItem& a = root.Plain()->AddValue("A", 1);
  root.Plain()->AddValue("B", 2);
  TKeyedItem& c = root.Plain()->AddValue("C", 3);
  root.Lines->Add("one");
  const TObjectImage image(root);
  root.Plain()->Delete(1);
  c.SetIndex(0);
  c.Key = "renamed";
  root.Plain()->AddValue("D", 4);
  root.Lines->Clear();
  image.Restore(root);
  EXPECT_EQ(root.Plain()->Describe(), "A=1 B=2 C=3");
  EXPECT_EQ(&root.Plain()->At(0), &a);
  EXPECT_EQ(&root.Plain()->At(2), &c);
  EXPECT_EQ(root.Lines->Text(), "one\r\n");
}

TEST(ObjectImage, AnotherCollectionTakesItemsOverByTheirKeys) {
  TKeyedRoot source, target;
  source.Plain()->AddValue("A", 1);
  source.Plain()->AddValue("B", 2);
  TKeyedItem& held = target.Plain()->AddValue("B", 9);
  target.Plain()->AddValue("C", 9);
  CopyProps(source, target);
  EXPECT_EQ(target.Plain()->Describe(), "A=1 B=2");
  EXPECT_EQ(&target.Plain()->At(1), &held);
}

// Writes down what its setters are given, and refuses one number.
class TWatched : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TWatched>("TWatched", TSpcObject::ClassInfo())
                                      .Prop("First", &TWatched::First, &TWatched::SetFirst)
                                      .Prop("Second", &TWatched::Second, &TWatched::SetSecond)
                                      .Prop("Outer", &TWatched::Outer);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  std::int32_t First() const { return FFirst; }
  void SetFirst(std::int32_t value) {
    if (Refuse) throw Exception("not now");
    Calls.push_back(value);
    FFirst = value;
  }
  std::int32_t Second() const { return FSecond; }
  void SetSecond(std::int32_t value) {
    Calls.push_back(value);
    FSecond = value;
  }
  TWatched* Outer = nullptr;
  bool Refuse = false;
  std::vector<int> Calls;

 private:
  std::int32_t FFirst = 0, FSecond = 0;
};

TEST(ObjectImage, SettersAreCalledWhereValuesDifferAndOneThatRaisesStopsNoOther) {
  TWatched object;
  object.Outer = &object;  // leads back: neither followed nor touched
  const TObjectImage image(object);
  object.SetSecond(5);
  object.Calls.clear();
  image.Restore(object);
  EXPECT_THAT(object.Calls, ElementsAre(0));
  object.SetFirst(1);
  object.SetSecond(2);
  object.Refuse = true;
  EXPECT_EQ(MessageOf([&] { image.Restore(object); }), "not now");
  EXPECT_EQ(object.First(), 1);
  EXPECT_EQ(object.Second(), 0);
  EXPECT_EQ(object.Outer, &object);
}

TEST(ObjectImage, WhatIsLeftOutNeitherCountsNorComesBack) {
  TSample sample;
  const TObjectImage image(sample, [](const TPersistent&, const TPropInfo& property) {
    return property.Name == "Text";
  });
  sample.Text = "mine";
  EXPECT_TRUE(image.Matches(sample));
  sample.Number = 1;
  image.Restore(sample);
  EXPECT_EQ(sample.Text, "mine");
  EXPECT_EQ(sample.Number, 7);
}

TEST(ObjectImage, PicturesAndListsAreComparedByTheirContents) {
  TPicture picture;
  TBitmap bitmap;
  bitmap.SetData("BM picture");
  picture.SetGraphic(&bitmap);
  const TObjectImage image(picture);
  picture.SetGraphic(nullptr);
  EXPECT_FALSE(image.Matches(picture));
  image.Restore(picture);
  ASSERT_NE(picture.Graphic(), nullptr);
  EXPECT_EQ(picture.Graphic()->Data(), "BM picture");
  EXPECT_EQ(picture.Graphic()->ClassName(), "TBitmap");
}

TEST(ObjectImage, ACloneIsMadeOnlyOfWhatCanBeMadeAlone) {
  TSample sample;
  sample.Text = "copied";
  const auto clone = CloneObject(sample);
  ASSERT_NE(clone, nullptr);
  EXPECT_EQ(static_cast<TSample&>(*clone).Text, "copied");
  TKeyedItems unmakeable(nullptr);
  EXPECT_EQ(CloneObject(unmakeable), nullptr);
}

}  // namespace
}  // namespace wrenfold
