// Menu trees, actions and tool buttons: what shows, what a click runs, who goes first.
#include <gmock/gmock.h>

#include "platform/core/system/Exceptions.h"
#include "platform/widgets/Menus.h"
#include "platform/widgets/ShortCuts.h"
#include "platform/widgets/Support.h"
#include "platform/widgets/ToolBar.h"

namespace wrenfold::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> Shown(const QWidget* container) {
  std::vector<std::string> texts;
  for (const QAction* action : container->actions())
    texts.push_back(action->isSeparator() ? "-" : action->text().toStdString());
  return texts;
}

TMenuItem* NewItem(TMenuItem* parent, const std::string& caption) {
  auto* item = new TMenuItem;
  item->SetCaption(caption);
  parent->Add(item);
  return item;
}

TEST(Menus, EveryChangeOfTheTreeShowsAtOnce) {
  TMainMenu menu;
  TMenuItem* file = NewItem(menu.Items(), "&File");
  NewItem(menu.Items(), "&Tools");
  auto* suite = new TMenuItem;
  suite->SetCaption("S&uite");
  menu.Items()->Insert(1, suite);
  EXPECT_THAT(Shown(menu.Bar()), ElementsAre("&File", "S&uite", "&Tools"));

  NewItem(suite, "Last")->SetShortCut(TextToShortCut("Ctrl+L"));
  auto* line = new TMenuItem;
  line->SetCaption("-");
  suite->Insert(0, line);
  suite->SetCaption("Changed");
  EXPECT_THAT(Shown(suite->ShownMenu()), ElementsAre("-", "Last\tCtrl+L"));
  ASSERT_NE(suite->ShownAction()->menu(), nullptr);

  delete file;
  line->SetVisible(false);
  EXPECT_THAT(Shown(menu.Bar()), ElementsAre("Changed", "&Tools"));
  EXPECT_FALSE(line->ShownAction()->isVisible());
  suite->Clear();
  EXPECT_EQ(suite->ShownAction()->menu(), nullptr) << "an item without sub-items opens no menu";
  EXPECT_EQ(menu.Items()->Find("TOOLS"), menu.Items()->Items(1));
}

TEST(Menus, AnItemIsInOneMenuOnly) {
  TPopupMenu first, second;
  TMenuItem* item = NewItem(first.Items(), "One");
  EXPECT_THROW(second.Items()->Add(item), Exception);
  EXPECT_THROW(first.Items()->Insert(3, new TMenuItem(&first)), EListError);
  first.Items()->Delete(0);
  second.Items()->Add(item);
  EXPECT_EQ(item->GetParentMenu(), &second);
  EXPECT_EQ(first.Items()->Count(), 0);
}

TEST(Menus, ItemsAndActionsMayGoInEitherOrder) {
  TRecorder recorder;
  TPopupMenu menu;
  TMenuItem* item = NewItem(menu.Items(), "Item");
  auto action = std::make_unique<TAction>();
  action->SetCaption("&Run");
  action->OnExecute = recorder.Event();
  item->SetAction(action.get());
  EXPECT_THAT(Shown(menu.Menu()), ElementsAre("&Run"));
  action.reset();
  EXPECT_EQ(item->Action(), nullptr);
  item->Click();
  EXPECT_TRUE(recorder.Calls.empty());

  TAction survivor;
  TActionList list;
  survivor.SetActionList(&list);
  item->SetAction(&survivor);
  delete item;
  survivor.SetCaption("tells nobody");
  EXPECT_EQ(menu.Items()->Count(), 0);
  EXPECT_EQ(list.ActionCount(), 1);
}

TEST(Menus, ListAndActionForgetEachOther) {
  auto list = std::make_unique<TActionList>();
  TAction first;
  auto second = std::make_unique<TAction>();
  first.SetActionList(list.get());
  second->SetActionList(list.get());
  second.reset();
  EXPECT_THAT(list->Actions(), ElementsAre(&first));
  list.reset();
  EXPECT_EQ(first.ActionList(), nullptr);
}

TEST(Menus, AClickRunsTheHandlerElseTheAction) {
  TRecorder recorder;
  TPopupMenu menu;
  TAction action;
  action.SetName("Action");
  action.OnExecute = recorder.Event();
  TMenuItem* item = NewItem(menu.Items(), "Item");
  item->SetName("Item");
  item->SetAction(&action);
  item->ShownAction()->trigger();
  item->OnClick = recorder.Event();
  item->ShownAction()->trigger();
  action.SetEnabled(false);
  item->Click();
  EXPECT_THAT(recorder.Calls, ElementsAre("Action", "Item"));
}

TEST(Menus, TheCheckMarkIsTheItemsAndNotTheToolkits) {
  TPopupMenu menu;
  TMenuItem* item = NewItem(menu.Items(), "Item");
  item->SetChecked(true);
  item->ShownAction()->trigger();
  EXPECT_TRUE(item->Checked());
  EXPECT_TRUE(item->ShownAction()->isChecked());

  TMenuItem* left = NewItem(menu.Items(), "Left");
  TMenuItem* right = NewItem(menu.Items(), "Right");
  for (TMenuItem* radio : {left, right}) radio->SetRadioItem(true);
  left->SetChecked(true);
  right->SetChecked(true);
  EXPECT_FALSE(left->Checked());
  EXPECT_TRUE(item->Checked()) << "no radio item";
}

// Rebuilds its own sub-items while they are about to open, and deletes the item that was clicked.
class TRebuilder : public TObject {
 public:
  TMenuItem* Item = nullptr;
  void Rebuild(TObject*) {
    Item->Clear();
    NewItem(Item, "New");
  }
  void DeleteItem(TObject* sender) { delete dynamic_cast<TMenuItem*>(sender); }
};

TEST(Menus, HandlersMayRebuildAndDeleteWhatCalledThem) {
  TPopupMenu menu;
  TRebuilder rebuilder;
  rebuilder.Item = NewItem(menu.Items(), "Parent");
  NewItem(rebuilder.Item, "Old");
  Bind<&TRebuilder::Rebuild>(rebuilder.Item->OnClick, &rebuilder);
  auto* shown = qobject_cast<QMenu*>(rebuilder.Item->ShownMenu());
  shown->popup(QPoint(0, 0));
  EXPECT_THAT(Shown(shown), ElementsAre("New"));
  shown->close();
  EXPECT_EQ(rebuilder.Item->ShownAction()->menu(), shown);

  TMenuItem* doomed = NewItem(menu.Items(), "Doomed");
  Bind<&TRebuilder::DeleteItem>(doomed->OnClick, &rebuilder);
  menu.Popup(0, 0);
  menu.Menu()->setActiveAction(doomed->ShownAction());
  QTest::keyClick(menu.Menu(), Qt::Key_Return);
  Application().ProcessMessages();
  EXPECT_EQ(menu.Items()->Count(), 1);
}

// Fills the menu when it opens.
class TFiller : public TObject {
 public:
  TRecorder Recorder;
  TPopupMenu* Menu = nullptr;
  void Fill(TObject*) {
    Recorder.Record(Menu->PopupComponent());
    if (Menu->Items()->Count() == 0) NewItem(Menu->Items(), "Made");
  }
};

TEST(Menus, ARightClickOpensTheMenuOfTheControl) {
  TForm form;
  auto* control = new TControlOf<QWidget>(&form, &form);
  control->SetName("Place");
  control->resize(20, 20);
  auto* menu = new TPopupMenu(&form);
  TFiller filler;
  filler.Menu = menu;
  Bind<&TFiller::Fill>(menu->OnPopup, &filler);
  control->SetPopupMenu(menu);
  Activate(form);
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(1, 1),
                          control->mapToGlobal(QPoint(1, 1)));
  QApplication::sendEvent(control, &event);
  EXPECT_TRUE(menu->Menu()->isVisible());
  EXPECT_THAT(filler.Recorder.Calls, ElementsAre("Place"));
  menu->Close();
  delete control;
  EXPECT_EQ(menu->PopupComponent(), nullptr);
  delete menu;
}

TEST(ToolBars, AHandlerOfAButtonCanBeTakenOverAndGivenBack) {
  TRecorder theirs, ours;
  TForm form;
  auto* bar = new TToolBar(&form, &form);
  auto* button = new TToolButton(&form, bar);
  button->SetName("ViewUnit");
  button->SetCaption("View Unit");
  button->OnClick = theirs.Event();
  const TNotifyEvent saved = std::exchange(button->OnClick, ours.Event());
  button->click();
  EXPECT_EQ(button->OnClick, ours.Event());
  button->OnClick = saved;
  button->click();
  button->SetEnabled(false);
  button->Click();
  EXPECT_EQ(ours.Calls.size(), 1u);
  EXPECT_EQ(theirs.Calls.size(), 1u);
}

TEST(ToolBars, ButtonsFollowTheirActionAndLeaveWithTheirBar) {
  auto form = std::make_unique<TForm>();
  auto* bar = new TToolBar(form.get(), form.get());
  TAction action;
  action.SetCaption("&Open");
  action.SetHint("Open unit");
  action.SetShortCut(TextToShortCut("Alt+S"));
  TToolButton* first = bar->AddButton(&action);
  bar->AddSeparator();
  TToolButton* last = bar->AddButton(&action);
  EXPECT_EQ(first->text(), "Open");
  EXPECT_EQ(first->toolTip(), "Open unit (Alt+S)");
  EXPECT_EQ(first->accessibleName(), "Open");
  action.SetEnabled(false);
  EXPECT_FALSE(last->isEnabled());
  delete first;
  Application().ProcessMessages();
  ASSERT_EQ(bar->ButtonCount(), 2);
  EXPECT_EQ(bar->Buttons(0)->Style(), tbsSeparator);
  bar->RemoveButton(last);
  delete bar;
  EXPECT_THAT(form->Components(), ElementsAre(last)) << "the separator went with the bar";
  form.reset();
  action.SetEnabled(true);
}

}  // namespace
}  // namespace wrenfold::test
