// Stored collections read into the items that are there, and the writer that filters properties.
#include <gtest/gtest.h>

#include "TestObjects.h"

namespace wrenfold {
namespace {

struct TKeyedCase {
  const char* Name;
  std::vector<std::string> Stored;  // keys; the values are 100, 101, ...
  std::vector<std::string> Held;    // keys; the values are 0, 1, ...
  bool Reorder;
  const char* Result;
};

TEST(FixedCollection, StoredItemsUpdateByKeyAndNeverGrowOrShrink) {
  const TKeyedCase cases[] = {
      {"ByKeyNotByPlace", {"B", "A"}, {"A", "B"}, false, "A=101 B=100"},
      {"ReorderTakesTheStoredOrder", {"B", "A"}, {"A", "B"}, true, "B=100 A=101"},
      {"UnknownKeyIsDropped", {"X", "A"}, {"A", "B"}, false, "A=101 B=1"},
      {"NotStoredKeepsItsValue", {"B"}, {"A", "B", "C"}, false, "A=0 B=100 C=2"},
      {"EmptyKeysMatchNothing", {"", "A"}, {"", "A"}, false, "=0 A=101"},
      {"CaseOfKeysCounts", {"a"}, {"A"}, false, "A=0"},
      {"EmptyTargetStaysEmpty", {"A"}, {}, false, ""},
      {"NothingStored", {}, {"A"}, true, "A=0"},
      {"LastOfEqualStoredKeysCounts", {"A", "A"}, {"A"}, false, "A=101"},
      {"FirstOfEqualHeldKeysIsFilled", {"A"}, {"A", "A"}, false, "A=100 A=1"},
      {"PlaceBeyondTheEndMeansTheEnd", {"X", "Y", "Z", "A"}, {"A", "B"}, true, "B=1 A=103"},
      {"DroppedItemsCountAsPlaces", {"X", "C"}, {"A", "B", "C"}, true, "A=0 C=101 B=1"},
  };
  for (const TKeyedCase& c : cases) {
    SCOPED_TRACE(c.Name);
    TKeyedRoot stored, held;
    const auto fill = [](TKeyedItems& items, const std::vector<std::string>& keys, int value) {
      for (const std::string& key : keys) {
        TKeyedItem& item = static_cast<TKeyedItem&>(*items.TSpcCollection::Add());
        item.Key = key;
        item.Value = value++;
      }
    };
    fill(stored.Fixed, c.Stored, 100);
    fill(held.Fixed, c.Held, 0);
    held.Reorder = c.Reorder;
    const std::vector<TCollectionItem*> items = held.Fixed.Items();
    CopyStoredProps(held, stored);
    EXPECT_EQ(held.Fixed.Describe(), c.Result);
    EXPECT_TRUE(std::is_permutation(items.begin(), items.end(), held.Fixed.Items().begin()));
  }
}

// An item that was written when its class had fewer properties, and one whose key stands twice.
TEST(FixedCollection, PropertyThatIsNotStoredKeepsItsValue) {
  TKeyedRoot root;
  root.Fixed.AddValue("A", 5);
  root.Fixed.AddValue("B", 6);
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  saver.SetObjectProps({&root},
                       "object T\r\n  Fixed_ = <\r\n    item\r\n      Key = 'A'\r\n    end\r\n"
                       "    item\r\n      Key = 'B'\r\n      Value = 7\r\n      Key = 'A'\r\n"
                       "    end>\r\nend\r\n");
  EXPECT_EQ(root.Fixed.Describe(), "A=5 B=7");
}

// Whoever holds an item keeps it, whatever a hand wrote into the file.
TEST(FixedCollection, PropertyThatIsNeverStoredIsNoWayToReplaceItems) {
  TKeyedRoot root;
  TKeyedItem& held = root.Fixed.AddValue("A", 5);
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  TAnswers yes(mbYes);
  saver.SetObjectProps({&root}, "object T\r\n  Shown = <\r\n    item\r\n    end>\r\nend\r\n");
  EXPECT_EQ(yes.Asked.size(), 1u);
  ASSERT_EQ(root.Fixed.Count(), 1);
  EXPECT_EQ(root.Fixed.Item(0), &held);
}

TEST(FixedCollection, ItemThatRefusesItsKeyIsTakenAway) {
  class TPicky : public TKeyedItem {
   public:
    static const TTypeInfo& ClassInfo() {
      static const TTypeInfo info = Publish<TPicky>("TPicky", TKeyedItem::ClassInfo())
                                        .Prop("Key", &TPicky::GetKey, &TPicky::SetKey);
      return info;
    }
    const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
    using TKeyedItem::TKeyedItem;
    const std::string& GetKey() const { return Key; }
    void SetKey(const std::string& key) { throw EListError(key); }
  };
  class TPickyItems : public TFixedCollection {
   public:
    TPickyItems() : TFixedCollection(nullptr, TPicky::ClassInfo()) {}
    std::string GetUpdateName() const override { return "Key"; }
  } items;
  EXPECT_THROW(items.Add("A"), EListError);
  EXPECT_EQ(items.Count(), 0);
}

TEST(FixedCollection, SecondItemOfAKeyIsRefused) {
  TKeyedItems items(nullptr);
  TSpcItem* first = items.Add("A");
  EXPECT_EQ(items.Find("A"), first);
  EXPECT_EQ(items.Find("a"), nullptr);
  EXPECT_EQ(MessageOf<EFixedCollectionError>([&] { items.Add("A"); }),
            "Collection\xE2\x80\x99s element 'A' already exists.");
  items.Add("");
  EXPECT_THROW(items.Add(""), EFixedCollectionError);
  EXPECT_EQ(items.Count(), 2);
}

// A component of a form, in items that are stored by key.
TEST(FixedCollection, ReferencesOfMatchedItemsAreTakenOver) {
  class TKeyedForm : public TComponent {
   public:
    void DefineProperties(TFiler& filer) override {
      if (auto* reader = dynamic_cast<TFitReader*>(&filer))
        filer.DefineProperty(
            "Fixed_", [=, this](TReader&) { reader->ReadFixedCollection(Fixed, false); }, nullptr,
            true);
    }
    TKeyedItems Fixed{nullptr};
  } form;
  TComponent button(&form);
  button.SetName("Button");
  TKeyedItem& item = form.Fixed.AddValue("A", 1);
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  const TAnswers no(mbNo);
  const auto load = [&](const std::string& target) {
    saver.SetObjectProps({&form},
                         "object T\r\n  Fixed_ = <\r\n    item\r\n      Key = 'A'\r\n"
                         "      Target = " +
                             target + "\r\n    end>\r\nend\r\n");
  };
  load("Button");
  EXPECT_EQ(item.Target, &button);
  load("nil");
  EXPECT_EQ(item.Target, nullptr);
}

TEST(FreeCollection, HeldObjectsAreFilledInPlace) {
  TKeyedRoot stored, held;
  TSample a, b, aHeld, cHeld;
  a.Number = 100;
  a.Font->SetSize(20);
  stored.Free.Add(&b, "Unknown");
  stored.Free.Add(&a, "A");
  held.Free.Add(&aHeld, "A");
  held.Free.Add(&cHeld, "C");
  held.Free.Add(nullptr, "Nothing");
  TFont* font = aHeld.Font.get();
  for (const bool reorder : {false, true}) {
    held.Reorder = reorder;
    aHeld.Number = 0;
    CopyStoredProps(held, stored);
    EXPECT_EQ(aHeld.Number, 100);
    EXPECT_EQ(aHeld.Font.get(), font);
    EXPECT_EQ(font->Size(), 20);
    EXPECT_EQ(cHeld.Number, 7);
    EXPECT_EQ(held.Free.Count(), 3);
    EXPECT_EQ(held.Free.Find("A")->Index(), reorder ? 1 : 0);
    EXPECT_EQ(held.Free.Find("A")->NestedObject(), &aHeld);
  }
  EXPECT_EQ(MessageOf<EFreeCollectionError>([&] { held.Free.Add(&b, "A"); }),
            "Object 'A' already exists.");
  aHeld.Number = 0;
  held.Free.Assign(&stored.Free);
  EXPECT_EQ(aHeld.Number, 100);
  EXPECT_EQ(held.Free.Count(), 3);
}

TEST(FreeCollection, HeldComponentComesBack) {
  TKeyedRoot stored, held;
  TComponent component, componentHeld;
  component.SetName("Named");
  component.Tag = 5;
  stored.Free.Add(&component, "A");
  held.Free.Add(&componentHeld, "A");
  const TAnswers no(mbNo);
  CopyStoredProps(held, stored);
  EXPECT_EQ(componentHeld.Tag, 5);
}

TEST(FreeCollection, KeyBehindThePropertiesIsFound) {
  TKeyedRoot root;
  TSample held;
  root.Free.Add(&held, "A");
  TObjectSaver saver;
  saver.OriginalFormat = sofText;
  TAnswers no(mbNo);
  saver.SetObjectProps(
      {&root},
      "object T\r\n  Free_ = <\r\n    item\r\n      NestedObject.Number = 5\r\n"
      "      AObjectID = 'A'\r\n    end\r\n    item\r\n      NestedObject.Wrong = 5\r\n"
      "      AObjectID = 'B'\r\n    end>\r\n  Title = 'read on'\r\nend\r\n");
  EXPECT_EQ(held.Number, 5);
  EXPECT_EQ(root.Title, "read on");
  EXPECT_EQ(no.Asked.size(), 0u);  // what is not held is not read
}

struct TFilterCase {
  const char* Name;
  std::vector<std::string> Stored;
  std::vector<std::string> Ignored;
  const char* Written;
};

class TFiltered : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TFiltered>("TFiltered", TSpcObject::ClassInfo())
                                      .Prop("A", &TFiltered::A)
                                      .Prop("Font", &TFiltered::Font)
                                      .Prop("FontColor", &TFiltered::A)
                                      .Prop("Lines", &TFiltered::Lines)
                                      .Prop("Items", &TFiltered::Items, nullptr)
                                      .Prop("Z", &TFiltered::A);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  std::int32_t A = 1;
  std::unique_ptr<TFont> Font = std::make_unique<TFont>();
  std::unique_ptr<TStringList> Lines = std::make_unique<TStringList>();
  TKeyedItems* Items() const { return FItems.get(); }

 private:
  std::unique_ptr<TKeyedItems> FItems = std::make_unique<TKeyedItems>(this);
};

// The names of the properties in a text form, joined by blanks.
std::string WrittenNames(const std::string& text) {
  std::string names;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find("\r\n", start), text.size());
    const std::string line = text.substr(start, end - start);
    const auto equals = line.find(" = ");
    if (line.starts_with("  ") && equals != line.npos) {
      if (!names.empty()) names += ' ';
      names += line.substr(line.find_first_not_of(' '), equals - line.find_first_not_of(' '));
    }
    start = end + 2;
  }
  return names;
}

TEST(FilteringWriter, ListsDecideWhatIsWritten) {
  const std::string font = "Font.Charset Font.Color Font.Height Font.Name Font.Pitch Font.Style";
  const TFilterCase cases[] = {
      {"OneProperty", {"z"}, {}, "Z"},
      {"PartOfAnObject", {"Font.Color", "Z"}, {}, "Font.Color Z"},
      {"DefinedPartByItsObject", {"Lines"}, {}, "Lines.Strings"},
      {"DefinedPartByName", {"Lines.Strings"}, {}, "Lines.Strings"},
      {"IgnoredWins", {"A", "Z"}, {"A"}, "Z"},
      {"IgnoredObject", {}, {"font", "Lines", "Items"}, "A FontColor Z"},
      {"Collection", {"items"}, {}, "Items Key Value Target"},
      {"PartOfEachItem", {"Items.Key", "Z"}, {}, "Items Key Z"},
      {"IgnoredPartOfEachItem", {"Items", "Z"}, {"Items.Value", "Target"}, "Items Key Target Z"},
      {"IgnoredPart", {"Font.Color", "Font.Name"}, {"Font.Name"}, "Font.Color"},
      {"UnknownNameWritesNothing", {"Nothing"}, {}, ""},
  };
  TFiltered object;
  object.Lines->Add("line");
  object.Items()->Add("A");
  for (const TFilterCase& c : cases) {
    SCOPED_TRACE(c.Name);
    TPropSaver saver;
    saver.OriginalFormat = sofText;
    saver.SetStoredProps(c.Stored);
    saver.SetIgnoredProps(c.Ignored);
    EXPECT_EQ(WrittenNames(saver.GetObjectProps({&object})), c.Written);
  }
  TPropSaver saver;
  saver.OriginalFormat = sofText;
  EXPECT_EQ(WrittenNames(saver.GetObjectProps({&object})),
            "A " + font + " FontColor Lines.Strings Items Key Value Target Z");
  // The name of a stored object lets pass what begins with it, in this object only.
  saver.SetStoredProps({"Font"});
  const std::string one = font + " FontColor";
  EXPECT_EQ(WrittenNames(saver.GetObjectProps({&object, &object})), one + ' ' + one);
}

void RefuseNumbers(TPersistent&, const std::string&, const TPropInfo& property, bool& allow) {
  allow = property.Kind() != tkInteger;
}

TEST(FitWriter, CallbackAndOptionsLeaveOutProperties) {
  TFiltered object;
  object.Lines->Add("line");
  TMemoryStream stream;
  TFitWriter writer(stream);
  writer.OnCanWrite = TCanWriteEvent::Of<&RefuseNumbers>();
  writer.Options.DefinedProps = false;
  writer.WriteAsComponent(object, "");
  writer.FlushBuffer();
  const std::string& bytes = stream.Bytes();
  EXPECT_EQ(bytes.find("\x01"
                       "A"),
            bytes.npos);
  EXPECT_EQ(bytes.find("Strings"), bytes.npos);
  EXPECT_NE(bytes.find("Font.Name"), bytes.npos);
  EXPECT_EQ(bytes.find("Font.Color"), bytes.npos);
}

}  // namespace
}  // namespace wrenfold
