#include "editor/rkSpcEdPro.h"

#include "editor/rkRowMenus.h"

namespace wrenfold {

namespace {

constexpr const char* ProParamsComment = "-- SpcEditorPro --";

}  // namespace

const TTypeInfo& TSpcEditorPro::ClassInfo() {
  static const TTypeInfo info = Publish<TSpcEditorPro>("TSpcEditorPro", TSpcEditor::ClassInfo())
                                    .Prop("SpinOveruse", &TSpcEditorPro::SpinOveruse)
                                    .Default(false);
  return info;
}

TSpcEditorPro::TSpcEditorPro(TComponent* owner)
    : TSpcEditor(owner),
      FStringsMenu(CreateStringsEditorMenu()),
      FPictureMenu(CreatePicEditorMenu()) {
  // The base has added its own already.
  AddLayoutDefaults(ProRowRules(), ProParamsComment, *ControlParams);
}

TSpcEditorPro::~TSpcEditorPro() = default;

TLinesMenu* TSpcEditorPro::CreateStringsEditorMenu() {
  return new TLinesMenu(this);
}

TPictureMenu* TSpcEditorPro::CreatePicEditorMenu() {
  return new TPictureMenu(this);
}

TPopupMenu* TSpcEditorPro::StringsMenu() const {
  return FStringsMenu;
}

TPopupMenu* TSpcEditorPro::PictureMenu() const {
  return FPictureMenu;
}

const TRowRule* TSpcEditorPro::RowRule(const TPropInfo& property) const {
  const TRowRule* rule = FindRowRule(ProRowRules(), property, RowContext(nullptr));
  return rule != nullptr ? rule : TSpcEditor::RowRule(property);
}

TRowContext TSpcEditorPro::RowContext(QWidget* parent) const {
  TRowContext context = TSpcEditor::RowContext(parent);
  context.SpinOveruse = SpinOveruse;
  context.LinesMenu = FStringsMenu;
  context.PictureMenu = FPictureMenu;
  return context;
}

void TSpcEditorPro::DoBeforeCreateControl(TPersistent& instance, const TPropInfo& property,
                                          QWidget* parent, TNotifyEvent changeAction,
                                          TNewControlData& data, bool& handled) {
  TSpcEditor::DoBeforeCreateControl(instance, property, parent, changeAction, data, handled);
  if (data.Row == nullptr) return;
  const TRowRules rules = ProRowRules();
  const TRowRule* rule = &data.Row->Rule();
  if (rule >= rules.data() && rule < rules.data() + rules.size()) data.Kind = rule->Kind;
}

void TSpcEditorPro::UpdateControlParams() {
  TSpcEditor::UpdateControlParams();
  AddLayoutDefaults(ProRowRules(), ProParamsComment, *ControlParams);
}

}  // namespace wrenfold
