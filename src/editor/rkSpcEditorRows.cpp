// The rows of the selected node: made, shown, stored, marked, given back.
#include <QApplication>
#include <QClipboard>
#include <QMenu>

#include "editor/rkImageText.h"
#include "editor/rkSpcEditor.h"
#include "editor/rkSpcForm.h"
#include "locale/rkLocale.h"
#include "platform/core/text/Format.h"
#include "platform/widgets/Guard.h"
#include "platform/widgets/Text.h"
#include "spec/rkSpcConst.h"

namespace wrenfold {

namespace {

// Sets a flag for a scope.
class TFlagged {
 public:
  explicit TFlagged(bool& flag) : FFlag(flag), FBefore(flag) { FFlag = true; }
  ~TFlagged() { FFlag = FBefore; }
  TFlagged(const TFlagged&) = delete;
  TFlagged& operator=(const TFlagged&) = delete;

 private:
  bool& FFlag;
  bool FBefore;
};

constexpr const char* BasicParamsComment = "-- SpcEditor --";

}  // namespace

const TRowRule* TSpcEditor::RowRule(const TPropInfo& property) const {
  return FindRowRule(BasicRowRules(), property, RowContext(nullptr));
}

TRowContext TSpcEditor::RowContext(QWidget* parent) const {
  TRowContext context;
  context.Owner = const_cast<TSpcEditor*>(this);
  context.Parent = parent;
  context.Candidates = Candidates;
  context.HotKeyConflict = [this](TShortCut shortCut, const TPersistent& instance,
                                  const TPropInfo& property) {
    return HotKeyConflict(shortCut, instance, property);
  };
  if (SimpleMode) return context;
  context.TranslateNames = [this](TStrings& names, const TTypeInfo& type) {
    const bool bySet = type.ElementType() == nullptr || FTranslations.HasSection(type.Name());
    TranslateEnumNames(names, bySet ? type.Name() : type.ElementType()->Name());
  };
  return context;
}

std::string TSpcEditor::HotKeyConflict(TShortCut, const TPersistent&, const TPropInfo&) const {
  return {};
}

void TSpcEditor::UpdateControlParams() {
  AddLayoutDefaults(BasicRowRules(), BasicParamsComment, *ControlParams);
}

void TSpcEditor::DoBeforeCreateControl(TPersistent& instance, const TPropInfo& property,
                                       QWidget* parent, TNotifyEvent changeAction,
                                       TNewControlData& data, bool& handled) {
  BeforeCreateControl(this, &instance, &property, parent, changeAction, data, handled);
  if (handled) return;
  const TRowRule* rule = RowRule(property);
  if (rule == nullptr) return;
  data.Row = rule->Make({instance, property, *rule, RowContext(parent)});
  data.Control = &data.Row->Control();
  data.Section = LayoutSection(*rule);
  data.Row->OnChange = changeAction;
  handled = true;
}

void TSpcEditor::DoAfterCreateControl(TControlInfo& row) {
  AfterCreateControl(this, row);
}

void TSpcEditor::CreateControl(TControlInfo& row) {
  TNewControlData data;
  bool handled = false;
  DoBeforeCreateControl(*row.EInstance, *row.EPropInfo, FForm->Area().Panel(akControl, row.Column),
                        TNotifyEvent::Bind<&TSpcEditor::ControlChange>(this), data, handled);
  row.EControl = data.Control;
  row.EModifyObject = data.Control;
  row.Row = std::move(data.Row);
  row.SetETag(data.Kind);
  if (row.EControl == nullptr) return;
  if (row.Row == nullptr) row.ClientWidget = row.EControl->Widget();
  if (row.Row != nullptr) {
    Bind<&TSpcEditor::RowCommitted>(row.Row->OnCommit, this);
    Bind<&TSpcEditor::RowMessage>(row.Row->OnMessage, this);
  }
  if (!data.Section.empty()) SetControlParams(data.Section, row);
  DoAfterCreateControl(row);
}

void TSpcEditor::SetControlParams(const std::string& section, TControlInfo& row) {
  ApplyLayoutSection(FControlIni, section, row);
  if (!SimpleMode)
    ApplyLayoutSection(FRedefiedIni, GetFullPropName(*row.EInstance, *row.EPropInfo), row);
}

const TPropInfo* TSpcEditor::KeyOf(const TPersistent& instance) {
  const auto* item = dynamic_cast<const TCollectionItem*>(&instance);
  return item != nullptr && item->Collection() != nullptr ? KeyProperty(*item->Collection())
                                                          : nullptr;
}

bool TSpcEditor::IsKey(const TPersistent& instance, const TPropInfo& property) const {
  return KeyOf(instance) == &property;
}

// An object that has no setter is edited in itself.
bool TSpcEditor::IsDisabled(const TPersistent& instance, const TPropInfo& property) const {
  const bool readOnly = !property.Access->CanWrite() && property.Kind() != tkClass;
  return readOnly || IsKey(instance, property) ||
         DisabledProps->IndexOf(GetFullPropName(instance, property)) >= 0;
}

void TSpcEditor::MakeRow(const TInstRow& instRow, int column) {
  TControlInfo& row =
      FRows.Add(std::make_unique<TControlInfo>(*instRow.Instance, *instRow.Property));
  row.Column = column;
  const std::string label = PropertyLabel(*row.EInstance, *row.EPropInfo);
  const bool breaksLines = FormOptions.Contains(foMultiLineCaptions);
  const std::string caption = ReplaceAll(CaptionOf(*row.EInstance, *row.EPropInfo),
                                         SPseudoNewLine(), breaksLines ? "\n" : " ");
  row.Label = FForm->Area().MakeLabel(row, Format(SLabelCaption(), caption));
  OnCreateLabel(this, row);
  CreateControl(row);
  row.Differs = RowDiffers(*row.EInstance, *row.EPropInfo);
  if (row.EControl == nullptr) return;
  QWidget* widget = row.EControl->Widget();
  if (row.Row != nullptr) row.Row->SetLabel(label);
  else widget->setAccessibleName(ToQString(label));
  row.Label->setBuddy(widget);
  if (IsDisabled(*row.EInstance, *row.EPropInfo)) row.EControl->SetEnabled(false);
  SetControlData(row);
}

void TSpcEditor::ShowRows() {
  ClearRows();
  if (FForm == nullptr || FSelected == nullptr) return;
  TControlsArea& area = FForm->Area();
  area.setUpdatesEnabled(false);
  const auto& rows = FSelected->Dscr.Rows;
  const auto columns = static_cast<std::size_t>(area.ColCount());
  const std::size_t perColumn = (rows.size() + columns - 1) / columns;
  try {
    const TFlagged filling(FFilling);
    for (std::size_t i = 0; i < rows.size(); ++i) MakeRow(rows[i], static_cast<int>(i / perColumn));
  } catch (...) {
    ClearRows();
    area.setUpdatesEnabled(true);
    throw;
  }
  FilterRows();
  area.Arrange(&FRows);
  area.setUpdatesEnabled(true);
}

void TSpcEditor::ClearRows() {
  for (const auto& row : FRows) OnDropControl(this, *row);
  if (FForm != nullptr) FForm->Area().Arrange(nullptr);
  FRows.Clear();
}

// While only changes are shown, the rows of the others are hidden; what is reset later stays.
void TSpcEditor::FilterRows() {
  for (const auto& row : FRows) row->Hidden = FChangedOnly && !row->Differs;
}

void TSpcEditor::RebuildControls() {
  if (FClosing) return;
  StoreRows();
  ShowRows();
  DescribeSelected();
}

void TSpcEditor::SetControlData(TControlInfo& row) {
  const TFlagged filling(FFilling);
  bool handled = false;
  BeforeSetControlData(this, row, handled);
  if (!handled && row.Row != nullptr) row.Row->ShowValue();
  row.SetModified(false);
  AfterSetControlData(this, row);
}

void TSpcEditor::GetControlData(TControlInfo& row) {
  bool handled = false, abort = false;
  BeforeGetControlData(this, row, handled, abort);
  if (abort) return;
  if (!handled && row.Row != nullptr && !row.Row->TakeValue()) return;
  row.SetModified(false);
  AfterGetControlData(this, row, abort);
}

void TSpcEditor::SetControlsData() {
  for (const auto& row : FRows) SetControlData(*row);
}

// All at once, as they are, without putting anything down in the journal yet.
void TSpcEditor::GetControlsData() {
  for (const auto& row : FRows)
    if (row->Modified()) GetControlData(*row);
}

TControlInfo* TSpcEditor::RowOf(const TObject* sender) const {
  for (const auto& row : FRows)
    if (row->EModifyObject == sender || row->Row.get() == sender || row->EControl == sender)
      return row.get();
  return nullptr;
}

void TSpcEditor::ControlChange(TObject* sender) {
  if (FFilling) return;
  TControlInfo* row = RowOf(sender);
  if (row == nullptr) return;
  row->SetModified(true);
  if (!row->Before) row->Before = TPropImage(*row->EInstance, *row->EPropInfo);
  DoControlChange(*row);
  if (!FFreeMode || !Options.Contains(eoSaveSpcOnChange)) return;
  PutDownOthers(*row);
  GetControlsData();
  ValueStored(*row);
}

void TSpcEditor::DoControlChange(TControlInfo& row) {
  OnControlChange(this, row);
}

void TSpcEditor::RowCommitted(TObject* sender) {
  if (TControlInfo* row = RowOf(sender)) StoreRow(*row);
}

void TSpcEditor::RowMessage(TObject* sender) {
  TControlInfo* row = RowOf(sender);
  if (row == nullptr || row->Row == nullptr || row->Label == nullptr) return;
  const TRowMessage& message = row->Row->Message();
  const bool shown = row->Message != nullptr;
  if (message.Kind == rmNone && !shown) return;
  FForm->Area().ShowMessage(*row, message.Kind, message.Text);
}

bool TSpcEditor::StoreRow(TControlInfo& row) {
  if (row.Modified() && !TakeRow(row)) return false;
  if (row.Before) PutDown(row);
  return true;
}

bool TSpcEditor::TakeRow(TControlInfo& row) {
  const TPropImage before(*row.EInstance, *row.EPropInfo);
  GetControlData(row);
  if (row.Modified()) return false;
  if (!row.Before) row.Before = before;
  if (!KeyIsTaken(row)) return true;
  const std::string key = ValueText(*row.EInstance, *row.EPropInfo);
  before.Restore(*row.EInstance, *row.EPropInfo);
  row.Before.reset();
  FForm->Area().ShowMessage(row, rmRefusal, LocaleFormat(sKeyTaken, key));
  return false;
}

bool TSpcEditor::KeyIsTaken(const TControlInfo& row) const {
  if (!IsKey(*row.EInstance, *row.EPropInfo)) return false;
  const TPropImage key(*row.EInstance, *row.EPropInfo);
  const auto& collection = *static_cast<TCollectionItem*>(row.EInstance)->Collection();
  for (const TCollectionItem* item : collection.Items())
    if (item != row.EInstance && key.Matches(*item, *row.EPropInfo)) return true;
  return false;
}

// A change that led back to where it came from is none.
void TSpcEditor::PutDown(TControlInfo& row) {
  const TPropImage before = *std::exchange(row.Before, std::nullopt);
  if (before.Matches(*row.EInstance, *row.EPropInfo)) return;
  const std::string from =
      ImageAsShownText(before, *row.EInstance, *row.EPropInfo, RowContext(nullptr));
  FJournal.AddValue(*row.EInstance, *row.EPropInfo, before,
                    LineOf(*row.EInstance, *row.EPropInfo, from));
  ValueStored(row);
}

void TSpcEditor::PutDownOthers(const TControlInfo& row) {
  for (const auto& other : FRows)
    if (other.get() != &row && other->Before && !other->Modified()) PutDown(*other);
}

bool TSpcEditor::StoreRows() {
  bool stored = true;
  for (const auto& row : FRows) stored &= StoreRow(*row);
  return stored;
}

// A setter may have changed more than the one value.
void TSpcEditor::ValueStored(TControlInfo& row) {
  for (const auto& other : FRows) {
    if (other->EInstance != row.EInstance) continue;
    if (other.get() != &row && !other->Modified()) SetControlData(*other);
    other->Differs = RowDiffers(*other->EInstance, *other->EPropInfo);
  }
  ValueChanged(*row.EInstance);
}

void TSpcEditor::ValueChanged(TPersistent& instance) {
  TTreeNode* node = NodeOf(instance);
  if (node == nullptr) return;
  CountChanges(*node);
  RenewTexts(*node);
  for (TTreeNode* each = node; each != nullptr; each = each->Parent)
    FForm->Tree().Model().NodeChanged(*each);
  FForm->Area().Arrange(&FRows);
  FForm->JournalChanged();
  if (node == FSelected) DescribeSelected();
}

TTreeNode* TSpcEditor::NodeOf(const TPersistent& instance) const {
  return FindNode(&instance);
}

bool TSpcEditor::RowDiffers(const TPersistent& instance, const TPropInfo& property) const {
  return !IsKey(instance, property) && FBaseline.Differs(instance, property);
}

// Of one node; those above count the difference.
void TSpcEditor::CountChanges(TTreeNode& node) {
  int own = 0;
  const TPropInfo* key = node.Dscr.Rows.empty() ? nullptr : KeyOf(*node.Dscr.Rows[0].Instance);
  for (const TInstRow& row : node.Dscr.Rows)
    own += row.Property != key && FBaseline.Differs(*row.Instance, *row.Property);
  const int more = own - std::exchange(node.OwnChanges, own);
  for (TTreeNode* each = &node; each != nullptr; each = each->Parent) each->Changes += more;
}

void TSpcEditor::CountAllChanges() {
  if (FTop == nullptr) return;
  ForEachNode(*FTop, [](TTreeNode& node) { node.OwnChanges = node.Changes = 0; });
  ForEachNode(*FTop, [this](TTreeNode& node) { CountChanges(node); });
}

void TSpcEditor::RowsChanged() {
  for (const auto& row : FRows) row->Differs = RowDiffers(*row->EInstance, *row->EPropInfo);
  if (FForm == nullptr) return;
  FForm->Area().Arrange(&FRows);
  FForm->Tree().viewport()->update();
}

bool TSpcEditor::CanReset(const TControlInfo& row, bool toStored) const {
  if (IsDisabled(*row.EInstance, *row.EPropInfo)) return false;
  const TPropImage* value = toStored ? FBaseline.Stored(*row.EInstance, *row.EPropInfo)
                                     : FBaseline.Default(*row.EInstance, *row.EPropInfo);
  return value != nullptr && (row.Modified() || !value->Matches(*row.EInstance, *row.EPropInfo));
}

void TSpcEditor::ResetRow(TControlInfo& row, bool toStored) {
  if (!CanReset(row, toStored)) return;
  const TPropImage value = toStored ? *FBaseline.Stored(*row.EInstance, *row.EPropInfo)
                                    : *FBaseline.Default(*row.EInstance, *row.EPropInfo);
  if (!row.Before) row.Before = TPropImage(*row.EInstance, *row.EPropInfo);
  Guarded(this, [&] { value.Restore(*row.EInstance, *row.EPropInfo); });
  SetControlData(row);
  PutDown(row);
}

std::string TSpcEditor::RowHint(const TControlInfo& row) const {
  const auto add = [&](std::string& text, int textId, const std::string& value) {
    if (!text.empty()) text += '\n';
    text += LocaleFormat(textId, value.empty() ? LocaleStr(sEmptyValue) : value);
  };
  const TRowContext context = RowContext(nullptr);
  std::string text = PropertyLabel(*row.EInstance, *row.EPropInfo);
  if (const TPropImage* value = FBaseline.Default(*row.EInstance, *row.EPropInfo))
    add(text, sDefaultValueIs, ImageAsShownText(*value, *row.EInstance, *row.EPropInfo, context));
  if (const TPropImage* value = FBaseline.Stored(*row.EInstance, *row.EPropInfo))
    add(text, sStoredValueIs, ImageAsShownText(*value, *row.EInstance, *row.EPropInfo, context));
  add(text, sCurrentValueIs, ValueText(*row.EInstance, *row.EPropInfo));
  return text;
}

std::string TSpcEditor::NameAndValue(const TControlInfo& row) const {
  return PropertyLabel(*row.EInstance, *row.EPropInfo) + '\t' +
         ValueText(*row.EInstance, *row.EPropInfo);
}

void TSpcEditor::RowMenu(TControlInfo& row, const QPoint& place) {
  StoreRow(row);
  QMenu menu(FForm);
  const QStringList lines = ToQString(RowHint(row)).split('\n');
  for (const QString& line : lines.mid(1)) menu.addAction(line)->setEnabled(false);
  menu.addSeparator();
  QAction* toDefault = menu.addAction(ToQString(LocaleStr(sResetToDefault)));
  toDefault->setEnabled(CanReset(row, false));
  QAction* toStored = menu.addAction(ToQString(LocaleStr(sResetToStored)));
  toStored->setEnabled(CanReset(row, true));
  menu.addSeparator();
  QAction* copy = menu.addAction(ToQString(LocaleStr(sCopyNameValue)));
  const QAction* chosen = menu.exec(place);
  if (chosen == toDefault) ResetRow(row, false);
  else if (chosen == toStored) ResetRow(row, true);
  else if (chosen == copy) QApplication::clipboard()->setText(ToQString(NameAndValue(row)));
}

void TSpcEditor::BeginUpdate(TAreaKind kind, int column) {
  if (FForm != nullptr) FForm->Area().BeginUpdate(kind, column);
}

void TSpcEditor::EndUpdate(TAreaKind kind, int column) {
  if (FForm != nullptr) FForm->Area().EndUpdate(kind, column);
}

}  // namespace wrenfold
