// One row of the controls area: an instance, its property and the control that edits it.
#pragma once

#include <QPointer>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "editor/rkRows.h"
#include "editor/rkSpcTypes.h"
#include "foundation/rkClasses.h"
#include "storage/rkObjectImage.h"

class QLabel;

namespace wrenfold {

// What the factory answers. With a row the control is the row's.
struct TNewControlData {
  std::string Section;          // the layout section
  TPicture* Picture = nullptr;  // shown by an image control; not owned
  TControl* Control = nullptr;
  int Kind = 0;  // the extended kind, 0 for basic ones
  std::unique_ptr<TPropertyRow> Row;
};

class TControlInfo : public TObject {
 public:
  TControlInfo(TPersistent& instance, const TPropInfo& property)
      : EInstance(&instance), EPropInfo(&property) {}
  ~TControlInfo() override;

  TPersistent* EInstance;
  const TPropInfo* EPropInfo;
  TObject* EModifyObject = nullptr;   // the sender of the control's change event
  TControl* EControl = nullptr;       // owned by the row
  std::unique_ptr<TPropertyRow> Row;  // null for a control that the client made
  QPointer<QWidget> ClientWidget;     // that control's; goes with the row
  QPointer<QLabel> Label;
  QPointer<QLabel> Message;  // what is wrong with the value, in words; null: nothing

  int GetETag() const { return FTag; }
  void SetETag(int tag) { FTag = tag; }
  // Whether the row's control is one of the basic editor's own.
  static bool IsNativeControl(int tag) { return tag == 0; }

  int Column = 0;
  // The width of the layout parameters: pixels, or a share of the control area.
  int Width = 100;
  bool WidthIsPercent = true;
  bool CentredLabel = true;
  bool Differs = false;  // the value is not the default
  bool Hidden = false;   // the filter leaves the row out
  // The value before the user changed it; nothing while there is no change to be put down.
  std::optional<TPropImage> Before;

  // By the user, since the value was shown or taken. For a control of the client the editor says
  // so.
  bool Modified() const { return Row != nullptr ? Row->Modified() : FModified; }
  void SetModified(bool modified) { FModified = modified; }

 private:
  int FTag = 0;
  bool FModified = false;
};

class TControlList {
 public:
  TControlInfo& Add(std::unique_ptr<TControlInfo> row);
  int Count() const { return static_cast<int>(FRows.size()); }
  // Raises EListError outside 0..Count-1.
  TControlInfo& Get(int index) const;
  bool FindByControl(const TControl* control, int& index) const;
  bool FindByModifyObject(const TObject* object, int& index) const;
  TControlInfo* FindByProperty(const TPersistent& instance, const TPropInfo& property) const;
  // By the names of the properties.
  void Sort();
  void Clear() { FRows.clear(); }

  auto begin() const { return FRows.begin(); }
  auto end() const { return FRows.end(); }

 private:
  std::vector<std::unique_ptr<TControlInfo>> FRows;
};

// The text of a width: "40" pixels, "65%" of the area. Raises ESpcEditorError outside 0 to 100 per
// cent, EConvertError for what is no number.
void ParseWidth(const std::string& text, int& width, bool& isPercent);
// Applies the keys of a layout section: "Width", "CentredLabel", and every other one as a published
// property of the control. Nothing when there is no such section.
void ApplyLayoutSection(const TIniStrings& parameters, const std::string& section,
                        TControlInfo& row);

}  // namespace wrenfold
