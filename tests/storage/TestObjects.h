// Objects with one property of every kind, and keyed collections of them, for the storage's tests.
#pragma once

#include <string>
#include <vector>

#include "platform/core/model/Dialogs.h"
#include "platform/core/model/Graphics.h"
#include "storage/rkDataHndl.h"
#include "storage/rkStorage.h"

namespace wrenfold {

enum TGrade : std::uint8_t { grLow, grMiddle, grHigh };
template <>
struct TEnumDescription<TGrade> {
  static constexpr const char* Name = "TGrade";
  static constexpr std::array Values{"grLow", "grMiddle", "grHigh"};
};

class TSample : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TSample>("TSample", TSpcObject::ClassInfo())
                                      .Prop("Number", &TSample::Number)
                                      .Prop("Size", &TSample::Size)
                                      .Prop("Letter", &TSample::Letter)
                                      .Prop("Grade", &TSample::Grade)
                                      .Prop("Active", &TSample::Active)
                                      .Prop("Grades", &TSample::Grades)
                                      .Prop("Color", &TSample::Color)
                                      .Prop("Ratio", &TSample::Ratio)
                                      .Prop("Moment", &TSample::Moment)
                                      .Prop("Day", &TSample::Day)
                                      .Prop("Clock", &TSample::Clock)
                                      .Prop("Text", &TSample::Text)
                                      .Prop("Short", &TSample::Short)
                                      .Prop("Wide", &TSample::Wide)
                                      .Prop("Big", &TSample::Big)
                                      .Prop("Small", &TSample::Small)
                                      .Prop("OnClick", &TSample::OnClick)
                                      .Prop("Font", &TSample::Font)
                                      .Prop("Inner", &TSample::Inner, nullptr);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TSample* Inner() const { return FInner; }
  void SetInner(TSample* inner) { FInner = inner; }

  std::int32_t Number = 7;
  std::uint32_t Size = 50;
  char Letter = 'a';
  TGrade Grade = grMiddle;
  bool Active = true;
  TSet<TGrade> Grades = {grLow};
  TColor Color = clRed;
  double Ratio = 1.5;
  TDateTime Moment = 2.5;  // 1 January 1900, noon
  TDate Day = 2.0;
  TTime Clock = 0.25;
  std::string Text = "default";
  TShortString Short;
  TWideString Wide;
  std::int64_t Big = 5;
  std::uint8_t Small = 3;
  TNotifyEvent OnClick;
  std::unique_ptr<TFont> Font = std::make_unique<TFont>();

 private:
  TSample* FInner = nullptr;
};

class TKeyedItem : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TKeyedItem>("TKeyedItem", TSpcItem::ClassInfo())
                                      .Prop("Key", &TKeyedItem::Key)
                                      .Prop("Value", &TKeyedItem::Value)
                                      .Prop("Target", &TKeyedItem::Target);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TSpcItem::TSpcItem;
  std::string Key;
  std::int32_t Value = 0;
  TComponent* Target = nullptr;
};

class TKeyedItems : public TFixedCollection {
 public:
  explicit TKeyedItems(TPersistent* owner) : TFixedCollection(owner, TKeyedItem::ClassInfo()) {}
  std::string GetUpdateName() const override { return "Key"; }
  TKeyedItem& At(int index) const { return static_cast<TKeyedItem&>(*Item(index)); }
  TKeyedItem& AddValue(const std::string& key, int value) {
    auto& item = static_cast<TKeyedItem&>(*Add(key));
    item.Value = value;
    return item;
  }
  // "A=1 B=2"
  std::string Describe() const {
    std::string text;
    for (int i = 0; i < Count(); ++i) {
      if (i > 0) text += ' ';
      text += At(i).Key + '=' + std::to_string(At(i).Value);
    }
    return text;
  }
};

// Like the settings root: its collections are stored as defined properties, read by key.
class TKeyedRoot : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TKeyedRoot>("TKeyedRoot", TSpcObject::ClassInfo())
                                      .Prop("Title", &TKeyedRoot::Title)
                                      .Prop("Lines", &TKeyedRoot::Lines)
                                      .Prop("Plain", &TKeyedRoot::Plain, nullptr)
                                      .Prop("Shown", &TKeyedRoot::Shown, nullptr)
                                      .NotStored();
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  void DefineProperties(TFiler& filer) override {
    TSpcObject::DefineProperties(filer);
    auto* reader = dynamic_cast<TFitReader*>(&filer);
    auto* writer = dynamic_cast<TFitWriter*>(&filer);
    if (reader == nullptr && writer == nullptr) return;
    filer.DefineProperty(
        "Fixed_", [=, this](TReader&) { reader->ReadFixedCollection(Fixed, Reorder); },
        [=, this](TWriter&) { writer->WriteCollectionEx(Fixed); }, true);
    filer.DefineProperty(
        "Free_", [=, this](TReader&) { reader->ReadFreeCollection(Free, Reorder); },
        [=, this](TWriter&) { writer->WriteCollectionEx(Free); }, true);
  }

  TKeyedItems* Plain() const { return FPlain.get(); }
  // Published, but stored as "Fixed_" alone.
  TKeyedItems* Shown() const { return const_cast<TKeyedItems*>(&Fixed); }

  std::string Title = "untitled";
  std::unique_ptr<TStringList> Lines = std::make_unique<TStringList>();
  bool Reorder = false;
  TKeyedItems Fixed{this};
  TFreeCollection Free{this};

 private:
  std::unique_ptr<TKeyedItems> FPlain = std::make_unique<TKeyedItems>(this);
};

// Answers every question with one button and keeps the texts.
class TAnswers {
 public:
  explicit TAnswers(TMsgDlgBtn answer)
      : FSaved(SetMessageDlgProc(
            [this, answer](const std::string& text, TMsgDlgType type, TMsgDlgButtons buttons) {
              Asked.push_back(text);
              Warnings &= type == mtWarning && buttons == TMsgDlgButtons{mbYes, mbNo};
              return answer;
            })) {}
  ~TAnswers() { SetMessageDlgProc(FSaved); }
  std::vector<std::string> Asked;
  bool Warnings = true;

 private:
  TMessageDlgProc FSaved;
};

// The message of the exception that the call raises; "no error" when it raises none.
template <class Error = Exception, class Call>
std::string MessageOf(const Call& call) {
  try {
    call();
  } catch (const Error& problem) {
    return problem.Message();
  }
  return "no error";
}

}  // namespace wrenfold
