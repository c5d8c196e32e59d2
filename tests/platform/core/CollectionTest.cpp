// Collections, components and update brackets whose listeners raise or take others away.
#include <gtest/gtest.h>

#include "platform/core/model/Collection.h"
#include "platform/core/model/StringList.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {
namespace {

class EListener : public Exception {
 public:
  using Exception::Exception;
};

struct TRaising {
  void Changed(TObject*) { throw EListener("changed"); }
};

TEST(Update, ErrorOfAListenerLeavesTheBracketAndTheFirstErrorStands) {
  TRaising raising;
  TStringList list;
  Bind<&TRaising::Changed>(list.OnChange, &raising);
  EXPECT_THROW(list.SetText("a\r\nb"), EListener);
  EXPECT_EQ(list.Count(), 2);
  const auto failing = [&] {
    const TUpdate update(list);
    list.Add("c");
    throw EListError("in the bracket");
  };
  EXPECT_THROW(failing(), EListError);
  list.OnChange = {};
  TStringList other;
  other.Assign(&list);
  EXPECT_EQ(other.CommaText(), "a,b,c");
}

class TPart : public TCollectionItem {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TPart>("TPart", TCollectionItem::ClassInfo());
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TPart(TCollection* collection = nullptr) : TCollectionItem(collection) { ++Living; }
  ~TPart() override { --Living; }
  void Assign(const TPersistent* source) override {
    Value = static_cast<const TPart*>(source)->Value;
    if (Value < 0) throw EListener("assigned");
  }
  int Value = 0;
  static inline int Living = 0;
};

class TParts : public TCollection {
 public:
  TParts() : TCollection(TPart::ClassInfo()) {}
  TPart& AddValue(int value) {
    auto* part = static_cast<TPart*>(Add());
    part->Value = value;
    return *part;
  }
  bool Raises = false;
  int Reports = 0;

 protected:
  void Update(TCollectionItem*) override {
    ++Reports;
    if (Raises) throw EListener("update");
  }
};

TEST(Collection, ListenerThatRaisesNeitherLosesNorKeepsAnItem) {
  {
    TParts parts;
    parts.AddValue(1);
    parts.AddValue(2);
    parts.Raises = true;
    EXPECT_THROW(parts.Add(), EListener);
    EXPECT_EQ(parts.Count(), 2) << "what was not made is in no list";
    EXPECT_THROW(parts.Delete(0), EListener);
    EXPECT_EQ(parts.Count(), 1);
    delete parts.Item(0);
    EXPECT_EQ(parts.Count(), 0);
    parts.Raises = false;
    parts.AddValue(3);
    parts.Raises = true;
    EXPECT_THROW(parts.Clear(), EListener);
    EXPECT_EQ(parts.Count(), 0);
  }
  EXPECT_EQ(TPart::Living, 0);
}

TEST(Collection, ItemThatCannotBeCopiedLeavesTheTargetAsItWas) {
  TParts source, target;
  source.AddValue(1);
  source.AddValue(-1);
  TPart& kept = target.AddValue(7);
  target.Reports = 0;
  EXPECT_THROW(target.Assign(&source), EListener);
  ASSERT_EQ(target.Count(), 1);
  EXPECT_EQ(target.Item(0), &kept);
  EXPECT_EQ(target.Reports, 0);
  source.Delete(1);
  target.Assign(&source);
  EXPECT_EQ(static_cast<TPart*>(target.Item(0))->Value, 1);
  EXPECT_EQ(target.Reports, 1);
}

TEST(Component, PartnerFreedByANotificationIsNotTold) {
  class TFreeing : public TComponent {
   public:
    void Notification(TComponent* component, TOperation operation) override {
      TComponent::Notification(component, operation);
      for (TComponent*& partner : Partners) delete std::exchange(partner, nullptr);
    }
    TComponent* Partners[2] = {new TComponent, new TComponent};
  } freeing;
  auto* leaving = new TComponent;
  // One of them is told before, one would be told after.
  for (TComponent* told :
       {freeing.Partners[0], static_cast<TComponent*>(&freeing), freeing.Partners[1]})
    leaving->FreeNotification(told);
  delete leaving;
  EXPECT_EQ(freeing.Partners[0], nullptr);
}

}  // namespace
}  // namespace wrenfold
