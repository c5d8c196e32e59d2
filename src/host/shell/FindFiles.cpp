// Runs the search and lists what it finds.
#include "host/shell/FindFiles.h"

#include <fmt/format.h>

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

QLineEdit* AddField(QFormLayout& form, const char* name, const QString& caption,
                    const QString& hint) {
  auto* field = new QLineEdit;
  auto* label = new QLabel(caption);
  label->setBuddy(field);
  field->setObjectName(name);
  field->setAccessibleName(QString(caption).remove('&').remove(':'));
  field->setToolTip(hint);
  field->setClearButtonEnabled(true);
  form.addRow(label, field);
  return field;
}

QCheckBox* AddOption(QHBoxLayout& row, const char* name, const QString& caption,
                     const QString& hint) {
  auto* option = new QCheckBox(caption);
  option->setObjectName(name);
  option->setToolTip(hint);
  row.addWidget(option);
  return option;
}

std::string CountText(std::size_t places, int files) {
  return fmt::format("{} {} in {} {}", places, places == 1 ? "place" : "places", files,
                     files == 1 ? "file" : "files");
}

}  // namespace

const TTypeInfo& TFindFilesForm::ClassInfo() {
  static const TTypeInfo info = Publish<TFindFilesForm>("TFindFilesForm", TForm::ClassInfo());
  return info;
}

TFindFilesForm::TFindFilesForm(TComponent* owner, TDocuments& documents, TMessagePanel& messages)
    : TForm(owner, nullptr), FDocuments(documents), FMessages(messages) {
  SetName("FindFilesForm");
  SetCaption("Find in files");
  SetBorderStyle(bsDialog);
  KeyPreview = true;
  LayOut();
  FSearch.OnFound = [this](const std::vector<TFoundPlace>& places) {
    Guarded(this, [&] { Found(places); });
  };
  FSearch.OnProgress = [this](int done, int all) {
    FProgress->setRange(0, all);
    FProgress->setValue(done);
  };
  FSearch.OnEnd = [this](bool whole) { Guarded(this, [&] { Ended(whole); }); };
}

void TFindFilesForm::LayOut() {
  auto* column = new QVBoxLayout(this);
  auto* form = new QFormLayout;
  FText = AddField(*form, "FindFilesText", tr("&Find:"), tr("Text to find in all files"));
  FWith = AddField(*form, "FindFilesWith", tr("Replace &with:"),
                   tr("What takes its place; with regular expressions $1 is a group"));
  column->addLayout(form);
  auto* options = new QHBoxLayout;
  FCaseSensitive = AddOption(*options, "FindFilesCase", tr("&Case sensitive"),
                             tr("Tell capital letters from small ones"));
  FWholeWords =
      AddOption(*options, "FindFilesWords", tr("Whole w&ords"), tr("Find whole words only"));
  FRegularExpression = AddOption(*options, "FindFilesExpression", tr("Regular e&xpression"),
                                 tr("The text is a pattern: \\w+, (a|b), ^, $"));
  column->addLayout(options);
  FProgress = new QProgressBar;
  FProgress->setAccessibleName(tr("Progress"));
  FState = new QLabel;
  FState->setObjectName("FindFilesState");
  column->addWidget(FProgress);
  column->addWidget(FState);
  auto* buttons = new QDialogButtonBox;
  const auto add = [&](const char* name, const QString& caption, const QString& hint,
                       auto pressed) {
    QPushButton* button = buttons->addButton(caption, QDialogButtonBox::ActionRole);
    button->setObjectName(name);
    button->setToolTip(hint);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, pressed] { Guarded(this, pressed); });
    return button;
  };
  FFind = add("FindFilesFind", tr("Find"), tr("List all places in the messages (Enter)"),
              [this] { Find(); });
  FReplace = add("FindFilesReplace", tr("&Replace..."),
                 tr("Show all places as they will read, and replace those that you leave checked"),
                 [this] { Replace(); });
  FStop = add("FindFilesStop", tr("&Stop"), tr("End the search (Esc)"), [this] { Stop(); });
  column->addWidget(buttons);
  ShowState({});
  resize(460, sizeHint().height());
}

void TFindFilesForm::Open(const std::string& text) {
  if (!text.empty() && text.find_first_of("\r\n") == std::string::npos)
    FText->setText(ToQString(text));
  Show();
  raise();
  activateWindow();
  FText->setFocus();
  FText->selectAll();
}

void TFindFilesForm::KeyDown(QKeyEvent& key) {
  TForm::KeyDown(key);
  const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  const bool field = FText->hasFocus() || FWith->hasFocus();
  if (key.key() == Qt::Key_Escape) Running() ? Stop() : static_cast<void>(Close());
  else if (enter && field) Find();
  else return;
  key.accept();
}

void TFindFilesForm::ShowState(const QString& text) {
  const bool running = Running();
  FProgress->setVisible(running);
  FStop->setEnabled(running);
  FFind->setEnabled(!running);
  FReplace->setEnabled(!running);
  FState->setText(text);
}

void TFindFilesForm::Start(bool replace) {
  FPlaces.clear();
  FFiles = 0;
  FReplacing = replace;
  const std::string text = FromQString(FText->text());
  try {
    std::optional<std::string> with;
    if (replace) with = FromQString(FWith->text());
    FSearch.Start(
        FilesToSearch(FDocuments.Workspace()), text,
        {FCaseSensitive->isChecked(), FWholeWords->isChecked(), FRegularExpression->isChecked()},
        with);
  } catch (const ESearchError& error) {
    return ShowState(ToQString(error.Message()));
  }
  FGroup = replace ? -1 : FMessages.AddGroup("Searching \"" + text + "\"...");
  ShowState(tr("Searching..."));
}

void TFindFilesForm::Stop() {
  if (!Running()) return;
  FSearch.Stop();
  FReplacing = false;
  Ended(false);
}

void TFindFilesForm::Found(const std::vector<TFoundPlace>& places) {
  ++FFiles;
  FPlaces.insert(FPlaces.end(), places.begin(), places.end());
  if (FGroup >= 0)
    for (const TFoundPlace& found : places)
      FMessages.AddToGroup(FGroup, found.FileName, found.Line, found.LineText);
  FState->setText(ToQString(CountText(FPlaces.size(), FFiles)));
}

void TFindFilesForm::Ended(bool whole) {
  std::string text = CountText(FPlaces.size(), FFiles);
  if (!whole) text += ", and perhaps more: the search was ended";
  if (FGroup >= 0)
    FMessages.NameGroup(FGroup, fmt::format("\"{}\": {}", FromQString(FText->text()), text));
  FGroup = -1;
  ShowState(ToQString(text));
  if (FReplacing) ReplaceFound();
}

void TFindFilesForm::ReplaceFound() {
  FReplacing = false;
  if (FPlaces.empty()) return;
  const std::vector<TFoundPlace> places = Confirm ? Confirm(FPlaces) : FPlaces;
  const std::vector<std::string> troubles = ReplaceInFiles(FDocuments.Workspace(), places);
  for (const std::string& trouble : troubles) FDocuments.ReportError(trouble);
  ShowState(ToQString(fmt::format("replaced {} of {} places", places.size(), FPlaces.size())) +
            (troubles.empty() ? QString() : tr("; see the messages")));
}

}  // namespace wrenfold
