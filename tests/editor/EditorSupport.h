// A specification with rows of several kinds, nested objects and collections, and an editor over
// it.
#pragma once

#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "editor/rkSpcEdPro.h"
#include "editor/rkSpcForm.h"
#include "platform/core/model/Dialogs.h"
#include "platform/widgets/Application.h"
#include "storage/rkDataProps.h"
#include "storage/rkKeyedCollections.h"
#include "storage/rkPropTypes.h"

namespace wrenfold::test {


class TPlace : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TPlace>("TPlace", TSpcItem::ClassInfo())
                                      .Prop("NodeName", &TPlace::Name)
                                      .Prop("Number", &TPlace::Number)
                                      .Prop("Open", &TPlace::Open);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TSpcItem::TSpcItem;
  std::string GetNodeName() const override { return Name; }

  std::string Name;
  std::int32_t Number = 3;
  bool Open = false;
};

class TKeyed : public TSpcItem {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TKeyed>("TKeyed", TSpcItem::ClassInfo())
                                      .Prop("Key", &TKeyed::Key)
                                      .Prop("Value", &TKeyed::Value);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  using TSpcItem::TSpcItem;
  std::string GetNodeName() const override { return Key; }
  bool NeedsIterate() const override { return false; }
  std::string Key;
  std::int32_t Value = 0;
};

class TKeyedList : public TFixedCollection {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TKeyedList>("TKeyedList", TFixedCollection::ClassInfo());
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TKeyedList(TPersistent* owner) : TFixedCollection(owner, TKeyed::ClassInfo()) {}
  std::string GetUpdateName() const override { return "Key"; }
};

class TInner : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TInner>("TInner", TSpcObject::ClassInfo())
                                      .Prop("Depth", &TInner::Depth)
                                      .Prop("Remark", &TInner::Remark);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  std::int32_t Depth = 1;
  std::string Remark = "none";
};

class TGarden : public TSpcObject {
 public:
  static const TTypeInfo& ClassInfo() {
    static const TTypeInfo info = Publish<TGarden>("TGarden", TSpcObject::ClassInfo())
                                      .Prop("NodeName", &TGarden::Name)
                                      .Prop("Title", &TGarden::Title)
                                      .Prop("Count", &TGarden::Count, &TGarden::SetCount)
                                      .Prop("Wet", &TGarden::Wet)
                                      .Prop("Lines", &TGarden::Lines)
                                      .Prop("Inner", &TGarden::Inner)
                                      .Prop("Places", &TGarden::Places)
                                      .Prop("Keyed", &TGarden::Keyed);
    return info;
  }
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  TGarden()
      : Lines(std::make_unique<TMemoStrings>()),
        Inner(std::make_unique<TInner>()),
        Places(std::make_unique<TSpcCollection>(this, TPlace::ClassInfo())),
        Keyed(std::make_unique<TKeyedList>(this)) {}

  TPlace& AddPlace(const std::string& name) {
    auto& place = static_cast<TPlace&>(*Places->Add());
    place.Name = name;
    return place;
  }
  std::int32_t Count() const { return FCount; }
  void SetCount(std::int32_t count) {
    if (count == 13) throw Exception("thirteen is never planted");
    FCount = count;
  }

  std::string Name;
  std::string Title = "Kew";
  bool Wet = false;
  std::unique_ptr<TMemoStrings> Lines;
  std::unique_ptr<TInner> Inner;
  std::unique_ptr<TSpcCollection> Places;
  std::unique_ptr<TKeyedList> Keyed;

 private:
  std::int32_t FCount = 5;
};

// Answers questions in turn (the last answer stays) and keeps them.
class TAnswers {
 public:
  explicit TAnswers(std::vector<TMsgDlgBtn> answers = {mbYes})
      : FAnswers(std::move(answers)),
        FBefore(SetMessageDlgProc([this](const std::string& text, TMsgDlgType, TMsgDlgButtons) {
          Asked.push_back(text);
          const TMsgDlgBtn answer = FAnswers.front();
          if (FAnswers.size() > 1) FAnswers.erase(FAnswers.begin());
          return answer;
        })) {}
  ~TAnswers() { SetMessageDlgProc(FBefore); }
  TAnswers(const TAnswers&) = delete;
  TAnswers& operator=(const TAnswers&) = delete;

  std::vector<std::string> Asked;

 private:
  std::vector<TMsgDlgBtn> FAnswers;
  TMessageDlgProc FBefore;
};

// An editor whose window settings stay in memory.
class TTestEditor : public TSpcEditorPro {
 public:
  TTestEditor() { FormCaption = "Test"; }
  void ReadFormSetting(const std::string&, const std::string&, TStrings& list) override {
    list.SetText(Setting);
  }
  void WriteFormSetting(const std::string&, const std::string&, const TStrings& list) override {
    Setting = list.Text();
  }
  // The node by the texts of the path below the root, "" for the root itself.
  TTreeNode* NodeAt(const std::string& path) const {
    TTreeNode* node = RootNode();
    TStringList names;
    names.SetText(path);
    for (int i = 0; i < names.Count(); ++i) {
      TTreeNode* found = nullptr;
      for (const auto& child : node->Children)
        if (child->Text == names[i]) found = child.get();
      if (found == nullptr) return nullptr;
      node = found;
    }
    return node;
  }
  void Select(const std::string& path) { SelectNode(NodeAt(path)); }
  TControlInfo& Row(const std::string& property) const {
    for (const auto& row : Rows())
      if (row->EPropInfo->Name == property) return *row;
    throw Exception("no row " + property);
  }
  QWidget* Widget(const std::string& property) const { return Row(property).EControl->Widget(); }
  // As a user types it: the old text goes, Enter confirms.
  void Type(const std::string& property, const std::string& text, bool enter = true) const {
    QWidget* widget = Widget(property);
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(widget, QString::fromStdString(text));
    if (enter) QTest::keyClick(widget, Qt::Key_Return);
  }
  void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : Form(), static_cast<Qt::Key>(key), modifiers);
  }
  std::string JournalText() const {
    std::string text;
    for (int i = 0; i < Journal().Count(); ++i) {
      const TJournalLine& line = Journal().Line(i);
      text += line.Where + ": " + line.From + " -> " + line.To + '\n';
    }
    return text;
  }

  std::string Setting;
};

}  // namespace wrenfold::test
