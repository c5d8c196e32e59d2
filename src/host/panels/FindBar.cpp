// Lays the find bar out, keeps the hits and goes through them.
#include "host/panels/FindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

#include "host/documents/Icons.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

constexpr int SearchDelay = 150;  // milliseconds after the last key or edit
constexpr int FieldWidth = 320;

QLineEdit* MakeField(const char* name, const QString& placeholder, const QString& hint) {
  auto* field = new QLineEdit;
  field->setObjectName(name);
  field->setAccessibleName(placeholder);
  field->setPlaceholderText(placeholder);
  field->setToolTip(hint);
  field->setClearButtonEnabled(true);
  field->setMaximumWidth(FieldWidth);
  return field;
}

}  // namespace

TFindBar::TFindBar(TEditWindow& window)
    : QWidget(&window),
      FWindow(window),
      FText(MakeField("FindText", tr("Find in this unit"),
                      tr("Text to find (Enter: next, Shift+Enter: previous, Esc: close)"))),
      FWith(MakeField("ReplaceText", tr("Replace with"),
                      tr("What takes the place of a hit (Enter: replace and go on); with regular "
                         "expressions $1 is a group"))),
      FCaseSensitive(AddOption("FindCaseSensitive", tr("&Case sensitive"),
                               tr("Tell capital letters from small ones (Alt+C)"))),
      FWholeWords(
          AddOption("FindWholeWords", tr("Whole &words"), tr("Find whole words only (Alt+W)"))),
      FRegularExpression(AddOption("FindRegularExpression", tr("Regular e&xpression"),
                                   tr("The text is a pattern: \\w+, (a|b), ^ and $ are the ends of "
                                      "lines (Alt+X)"))),
      FResult(new QLabel),
      FReplaceRow(new QWidget) {
  setObjectName("FindBar");
  FResult->setObjectName("FindResult");
  LayOut();
  FLater.setSingleShot(true);
  FLater.setInterval(SearchDelay);
  connect(&FLater, &QTimer::timeout, this, [this] { Guarded(nullptr, [this] { Search(); }); });
  const auto later = [this] {
    if (isVisible()) FLater.start();
  };
  connect(FText, &QLineEdit::textChanged, this, later);
  connect(&FWindow.Editor(), &QsciScintilla::textChanged, this, later);
  connect(&FWindow.Tabs(), &QTabBar::currentChanged, this, later);
  for (QCheckBox* option : {FCaseSensitive, FWholeWords, FRegularExpression})
    connect(option, &QCheckBox::toggled, this, later);
  hide();
}

void TFindBar::LayOut() {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(6, 4, 6, 4);
  column->setSpacing(4);
  auto* row = new QHBoxLayout;
  row->addWidget(FText, 1);
  for (QCheckBox* option : {FCaseSensitive, FWholeWords, FRegularExpression})
    row->addWidget(option);
  row->addWidget(FResult, 1);
  QToolButton* close =
      AddButton("FindClose", QString(), tr("Close the find bar (Esc)"), &TFindBar::Close);
  close->setIcon(WorkbenchIcon("close"));
  close->setAccessibleName(tr("Close the find bar"));
  row->addWidget(close);
  column->addLayout(row);
  auto* second = new QHBoxLayout(FReplaceRow);
  second->setContentsMargins(0, 0, 0, 0);
  second->addWidget(FWith, 1);
  second->addWidget(AddButton("ReplaceOne", tr("&Replace"),
                              tr("Replace the hit that is selected and go to the next one (Alt+R)"),
                              &TFindBar::ReplaceOne));
  second->addWidget(AddButton("ReplaceAll", tr("Replace &all..."),
                              tr("Show all places as they will read, and replace them in one step "
                                 "(Alt+A)"),
                              &TFindBar::ReplaceAll));
  second->addStretch(1);
  column->addWidget(FReplaceRow);
}

QCheckBox* TFindBar::AddOption(const char* name, const QString& caption, const QString& hint) {
  auto* option = new QCheckBox(caption);
  option->setObjectName(name);
  option->setToolTip(hint);
  return option;
}

QToolButton* TFindBar::AddButton(const char* name, const QString& caption, const QString& hint,
                                 void (TFindBar::*pressed)()) {
  auto* button = new QToolButton;
  button->setObjectName(name);
  button->setText(caption);
  button->setToolTip(hint);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QToolButton::clicked, this,
          [this, pressed] { Guarded(nullptr, [&] { (this->*pressed)(); }); });
  return button;
}

TSearchOptions TFindBar::Options() const {
  return {FCaseSensitive->isChecked(), FWholeWords->isChecked(), FRegularExpression->isChecked()};
}

void TFindBar::Open(bool replace) {
  const std::string selected = FWindow.SelectedText();
  if (!selected.empty() && selected.find_first_of("\r\n") == std::string::npos)
    FText->setText(ToQString(selected));
  FReplaceRow->setVisible(replace);
  show();
  Search();
  FText->setFocus();
  FText->selectAll();
}

void TFindBar::Close() {
  hide();
  FWindow.Editor().setFocus();
}

void TFindBar::hideEvent(QHideEvent* event) {
  FLater.stop();
  FHits.clear();
  FWindow.ShowHits({});
  QWidget::hideEvent(event);
}

void TFindBar::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->key() == Qt::Key_Escape) Close();
  else if (enter && FWith->hasFocus()) ReplaceOne();
  else if (enter) Find(event->modifiers().testFlag(Qt::ShiftModifier));
  else QWidget::keyPressEvent(event);
}

void TFindBar::Say(const QString& text, bool trouble) {
  FResult->setForegroundRole(trouble ? QPalette::BrightText : QPalette::WindowText);
  FResult->setText(text);
  FResult->setToolTip(text);
}

// All hits of the text as it stands: they are counted, marked and gone through.
void TFindBar::Search() {
  FLater.stop();
  FHits.clear();
  if (FText->text().isEmpty()) {
    Say({});
  } else {
    try {
      FHits = TTextSearch(FromQString(FText->text()), Options()).FindAll(FWindow.Text());
      Say(FHits.empty() ? tr("\"%1\" was not found").arg(FText->text())
                        : tr("%n place(s)", nullptr, static_cast<int>(FHits.size()))
                              .replace("(s)", FHits.size() == 1 ? "" : "s"));
    } catch (const ESearchError& error) {
      Say(ToQString(error.Message()), true);
    }
  }
  FWindow.ShowHits(FHits);
}

// The first hit behind the selection, or the last one in front of it, around the ends of the text.
void TFindBar::Find(bool backward) {
  if (FText->text().isEmpty()) return Open();
  Search();
  if (FHits.empty()) return;
  const TTextMatch selection = FWindow.Selection();
  const std::size_t from = backward ? selection.Offset : selection.Offset + selection.Length;
  auto hit = std::lower_bound(
      FHits.begin(), FHits.end(), from,
      [](const TTextMatch& match, std::size_t offset) { return match.Offset < offset; });
  // A hit of nothing at the caret is the one that was found before.
  if (!backward && hit != FHits.end() && *hit == selection) ++hit;
  if (backward) hit = hit == FHits.begin() ? FHits.end() - 1 : hit - 1;
  else if (hit == FHits.end()) hit = FHits.begin();
  FWindow.Select(*hit);
  Say(tr("%1 of %2").arg(hit - FHits.begin() + 1).arg(FHits.size()));
}

void TFindBar::ReplaceOne() {
  if (FText->text().isEmpty()) return;
  const TTextMatch selection = FWindow.Selection();
  Search();
  if (std::find(FHits.begin(), FHits.end(), selection) != FHits.end()) {
    const TTextSearch search(FromQString(FText->text()), Options());
    const std::string with =
        search.Replacement(FWindow.Text(), selection, FromQString(FWith->text()));
    FWindow.Replace({{selection.Offset, selection.Length, with}});
    FWindow.Select({selection.Offset + with.size(), 0});
  }
  Find(false);
}

void TFindBar::ReplaceAll() {
  TEditPage* page = FWindow.ActivePage();
  if (page == nullptr || FText->text().isEmpty()) return;
  const std::string with = FromQString(FWith->text());
  std::vector<TFoundPlace> places =
      FindPlaces(TTextSearch(FromQString(FText->text()), Options()), page->Source().FileName(),
                 FWindow.Text(), &with, SIZE_MAX);
  if (Confirm && !places.empty()) places = Confirm(places);
  std::vector<TSourceEdit> edits;
  for (const TFoundPlace& found : places)
    edits.push_back({found.Place.Offset, found.Place.Length, found.With});
  FWindow.Replace(edits);
  Search();
  if (!places.empty()) Say(tr("%1 replaced").arg(places.size()));
}

}  // namespace wrenfold
