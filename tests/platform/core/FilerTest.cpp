// Objects through the component stream: what was written comes back, what is broken is told.
#include <gtest/gtest.h>

#include "platform/core/model/ClassRegistry.h"
#include "platform/core/model/Graphics.h"
#include "platform/core/model/StringList.h"
#include "platform/core/stream/DesignComponent.h"
#include "platform/core/stream/Reader.h"
#include "platform/core/stream/Writer.h"

using namespace std::string_literals;

namespace wrenfold {
namespace {

enum TSuit : std::uint8_t { suClubs, suHearts, suSpades };

}  // namespace

template <>
struct TEnumDescription<TSuit> {
  static constexpr const char* Name = "TSuit";
  static constexpr std::array Values{"suClubs", "suHearts", "suSpades"};
};

namespace {

class TCard : public TCollectionItem {
 public:
  using TCollectionItem::TCollectionItem;
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TCard>("TCard", TCollectionItem::ClassInfo())
                                      .Prop("Rank", &TCard::Rank)
                                      .Prop("Title", &TCard::Title);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  std::int32_t Rank = 0;
  std::string Title;
};

class TDeck : public TComponent {
 public:
  explicit TDeck(TComponent* owner = nullptr)
      : TComponent(owner),
        Cards(std::make_unique<TCollection>(TCard::ClassInfo())),
        Font(std::make_unique<TFont>()),
        Lines(std::make_unique<TStringList>()) {}
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TDeck>("TDeck", TComponent::ClassInfo())
                                      .Prop("Cards", &TDeck::Cards)
                                      .Prop("Font", &TDeck::Font)
                                      .Prop("Lines", &TDeck::Lines)
                                      .Prop("Letter", &TDeck::Letter)
                                      .Prop("Big", &TDeck::Big)
                                      .Prop("Ratio", &TDeck::Ratio)
                                      .Prop("Gauge", &TDeck::Gauge)
                                      .Prop("Wide", &TDeck::Wide)
                                      .Prop("Suits", &TDeck::Suits)
                                      .Prop("Trump", &TDeck::Trump)
                                      .Default(suHearts)
                                      .Prop("Back", &TDeck::Back)
                                      .Prop("Loose", &TDeck::Loose)
                                      .Prop("Mask", &TDeck::Mask)
                                      .Prop("Level", &TDeck::Level)
                                      .Default(1)
                                      .Prop("Seats", &TDeck::Seats)
                                      .Range(1, 9)
                                      .Default(2)
                                      .Prop("Next", &TDeck::Next)
                                      .Prop("OnDeal", &TDeck::OnDeal);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  void GetChildren(const std::function<void(TComponent&)>& visit, TComponent*) override {
    for (TComponent* component : Components()) visit(*component);
  }
  void Deal(TObject*) {}

  std::unique_ptr<TCollection> Cards;
  std::unique_ptr<TFont> Font;
  std::unique_ptr<TStringList> Lines;
  char Letter = 'x';
  std::int64_t Big = 0;
  double Ratio = 0;
  float Gauge = 0;
  TWideString Wide;
  TSet<TSuit> Suits;
  TSuit Trump = suHearts;
  TColor Back = clRed;
  TVariant Loose;
  std::uint32_t Mask = 0;
  std::uint8_t Level = 1;
  std::int32_t Seats = 2;
  TDeck* Next = nullptr;
  TNotifyEvent OnDeal;
};

std::string Written(TDeck& deck) {
  TMemoryStream stream;
  TWriter writer(stream);
  writer.OnMethodName = [](TWriter&, const TMethod&) { return std::string("Deal"); };
  writer.WriteRootComponent(deck);
  writer.FlushBuffer();
  return stream.TakeBytes();
}

void Fill(TDeck& deck) {
  deck.SetName("Deck");
  deck.Letter = '\0';
  deck.Big = std::int64_t{1} << 40;
  deck.Ratio = -2.5;
  deck.Wide = u"\u0416\u20AC";
  deck.Suits = {suClubs, suSpades};
  deck.Trump = suSpades;
  deck.Back = TColor(0x123456);
  deck.Loose = 1.5;
  deck.Mask = 0xFFFFFFFF;
  deck.Font->SetStyle({fsBold});
  deck.Lines->Add("one");
  deck.Lines->Add("");
  auto* card = static_cast<TCard*>(deck.Cards->Add());
  card->Rank = -40000;
  card->Title = std::string(300, 'a');
  deck.Cards->Add();
  auto* child = new TDeck(&deck);
  child->SetName("Inner");
  deck.Next = child;
  child->Next = &deck;
  Bind<&TDeck::Deal>(deck.OnDeal, &deck);
}

TEST(Filer, EveryKindOfValueComesBack) {
  RegisterClass(TDeck::ClassInfo());
  TDeck deck;
  Fill(deck);
  const std::string bytes = Written(deck);

  TMemoryStream stream(bytes + "behind");
  TDeck read;
  {
    TReader reader(stream);
    reader.OnFindMethod = [&read](TReader&, std::string_view) {
      return TNotifyEvent::Bind<&TDeck::Deal>(&read).Method();
    };
    reader.ReadRootComponent(&read);
  }
  EXPECT_EQ(stream.ReadRest(), "behind") << "the stream's position follows the reader";
  EXPECT_EQ(read.Name(), "Deck");
  ASSERT_EQ(read.Cards->Count(), 2);
  EXPECT_EQ(static_cast<TCard*>(read.Cards->Item(0))->Rank, -40000);
  EXPECT_EQ(read.Lines->Text(), "one\r\n\r\n");
  EXPECT_EQ(read.Wide, deck.Wide);
  EXPECT_EQ(read.Mask, 0xFFFFFFFF);
  ASSERT_EQ(read.Components().size(), 1u);
  EXPECT_EQ(read.Next, read.Components()[0]);
  EXPECT_EQ(read.Next->Next, &read);
  // What the properties hold shows in what they are written as.
  EXPECT_EQ(Written(read), bytes);
  UnRegisterClass(TDeck::ClassInfo());
}

TEST(Filer, DefaultsAreLeftOut) {
  TDeck deck;
  const std::string bytes = Written(deck);
  for (const char* name : {"Trump", "Ratio", "Big", "Next", "OnDeal", "Tag", "\x04Name", "Size"})
    EXPECT_EQ(bytes.find(name), std::string::npos) << name;
  for (const char* name : {"Suits", "Back", "Font.Color", "Cards"})
    EXPECT_NE(bytes.find(name), std::string::npos) << name;
}

class TLenientReader : public TReader {
 public:
  using TReader::TReader;
  std::vector<std::string> Errors;

 protected:
  bool Error(const std::string& message) override {
    Errors.push_back(message);
    return true;
  }
};

TEST(Filer, AnIgnoredErrorCostsOneValue) {
  struct {
    const char* Name;
    std::string Value;
    const char* Message;
  } const rows[] = {
      {"Nowhere", "\x06\x02hi", "does not exist"},
      {"Font.Nowhere.Deep", "\x01\x02\x05\x01\x02\x05\x00\x00"s, "does not exist"},
      {"Big", "\x06\x02hi", "expected an integer, found vaString"},
      {"Trump", "\x07\x06suNone", "suNone is no value of TSuit"},
      {"Suits", "\x0B\x06suNone\x00"s, "suNone is no element of TSuit"},
      {"Back",
       "\x07\x07"
       "clNone2",
       "clNone2 is no value of TColor"},
      {"OnDeal", "\x07\x04Gone", "Method Gone does not exist"},
      {"Letter", "\x06\x02hi", "expected one character"},
      {"Ratio", "\x05\0\0\0\0\0\0\0\x80\xFE\x7F"s, "does not fit a double"},
      {"Gauge", "\x05\0\0\0\0\0\0\0\x80\xFE\x41"s, "does not fit Single"},
      {"Level", "\x03\x2C\x01", "300 is outside Byte (0 to 255)"},
      {"Seats", "\x02\x0A", "10 is outside Integer (1 to 9)"},
      {"Mask", "\x02\xFF", "-1 is outside Cardinal (0 to 4294967295)"},
      {"Tag", "\x13\xFF\xFF\xFF\xFF\0\0\0\0"s, "4294967295 is outside Integer"},
      {"Cards", "\x0E\x01\x04Rank\x06\x01x\x00\x00"s, "expected an integer, found vaString"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Name);
    TByteWriter bytes;
    bytes.WriteSignature();
    bytes.WriteShortString("TDeck");
    bytes.WriteShortString("D");
    bytes.WriteShortString(row.Name);
    bytes.WriteBytes(row.Value);
    bytes.WriteShortString("Big");
    bytes.WriteIntegerValue(7);
    bytes.WriteBytes(std::string(2, '\0'));
    const std::string stored = bytes.ToString();

    TMemoryStream lenientStream(stored);
    TLenientReader lenient(lenientStream);
    TDeck deck;
    lenient.ReadRootComponent(&deck);
    EXPECT_EQ(deck.Big, 7) << "reading goes on behind the value";
    EXPECT_EQ(deck.Level + deck.Seats + deck.Tag, 3) << "a refused value is not written";
    ASSERT_EQ(lenient.Errors.size(), 1u);
    EXPECT_NE(lenient.Errors[0].find(row.Message), std::string::npos) << lenient.Errors[0];

    TMemoryStream strictStream(stored);
    TReader strict(strictStream);
    EXPECT_THROW(strict.ReadRootComponent(&deck), EReadError);
  }
}

// Children and a reference of a class that the property does not hold.
TEST(Filer, AnIgnoredComponentLeavesNothingBehind) {
  RegisterClass(TDeck::ClassInfo());
  RegisterClass(TComponent::ClassInfo());
  const std::string children = "\x05TDeck\x01X\0\0\x05TDeck\x01x\0\0\x0ATComponent\x01P\0\0\0"s;
  TMemoryStream stream(
      "TPF0\x05TDeck\x01"
      "D\x04Next\x07\x01P\0"s +
      children);
  TLenientReader reader(stream);
  TDeck deck;
  TDeck next;
  deck.Next = &next;
  reader.ReadRootComponent(&deck);
  EXPECT_EQ(deck.Components().size(), 2u);
  EXPECT_EQ(deck.Next, &next);
  ASSERT_EQ(reader.Errors.size(), 2u);
  EXPECT_TRUE(reader.Errors[0].starts_with("Error reading a component at offset 31: "))
      << reader.Errors[0];
  EXPECT_NE(reader.Errors[1].find("holds a TDeck, not a TComponent"), std::string::npos)
      << reader.Errors[1];
  UnRegisterClass(TComponent::ClassInfo());
  UnRegisterClass(TDeck::ClassInfo());
}

TEST(Filer, TruncationAtAnyByteIsAReadError) {
  TDeck deck;
  Fill(deck);
  deck.OnDeal = {};
  RegisterClass(TDeck::ClassInfo());
  const std::string bytes = Written(deck);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    TMemoryStream stream(bytes.substr(0, length));
    TDeck read;
    TLenientReader reader(stream);
    EXPECT_THROW(reader.ReadRootComponent(&read), EReadError) << length;
  }
  UnRegisterClass(TDeck::ClassInfo());
}

TEST(TypeInfo, LabelsComeByTextNumberAndMayNameNoProperty) {
  class TBase : public TPersistent {
   public:
    std::int32_t Value = 0;
  };
  const TTypeInfo base = Publish<TBase>("TBase", TPersistent::ClassInfo())
                             .Prop("Second", &TBase::Value)
                             .Label(20)
                             .Label("Nowhere", 15);
  const TTypeInfo info = Publish<TBase>("TLabelled", base)
                             .Prop("Unlabelled", &TBase::Value)
                             .Prop("First", &TBase::Value)
                             .Label(10);
  std::string labels;
  for (const TLabel& label : info.Labels())
    labels += label.Name + '=' + std::to_string(label.TextId) + ' ';
  EXPECT_EQ(labels, "First=10 Nowhere=15 Second=20 ");
  EXPECT_EQ(TTypeInfo("tdatetime", tkFloat).PropKind(), TPropKind::DateTime)
      << "a type is known by its name in any letter case";
}

// A component inside a component, as often as asked.
std::string Nested(int levels) {
  std::string bytes = "TPF0";
  for (int i = 0; i < levels; ++i) bytes += std::string("\x05TDeck\x00\x00", 8);
  return bytes + std::string(static_cast<std::size_t>(levels), '\0');
}

TEST(DesignComponent, AnyFormComesBackByteForByte) {
  TDeck deck;
  Fill(deck);
  const std::string plain = Written(deck);
  // Prefixes: inherited with a child position, inline; a child list inside a child.
  const std::string prefixed =
      "TPF0\xF1\x05TMain\x04Main\x00\xF3\x02\x05\x04TBox\x00\x05Odd.A\x0D\x00"
      "\xF4\x04TBox\x01\x42\x00\x00\x00\x00"s;
  for (const std::string& stream : {plain, prefixed, Nested(1000000)}) {
    const auto root = ReadDesignForm(stream);
    EXPECT_TRUE(WriteDesignForm(*root) == stream);
    if (stream.size() > 100000) continue;
    TMemoryStream written;
    TWriter writer(written);
    writer.WriteRootComponent(*root);
    writer.FlushBuffer();
    EXPECT_TRUE(written.Bytes() == stream) << "through the general writer";
  }
}

TEST(DesignComponent, ChangedAndNewPropertiesAreWritten) {
  TDeck deck;
  Fill(deck);
  const auto root = ReadDesignForm(Written(deck));
  root->SetValue("big", "\x02\x05");
  root->SetValue("Caption", "\x06\x02Hi");
  const auto again = ReadDesignForm(WriteDesignForm(*root));
  EXPECT_EQ(again->FindValue("Big"), "\x02\x05");
  EXPECT_EQ(again->Properties().back().Path, "Caption");
}

}  // namespace
}  // namespace wrenfold
