// Options and events of the settings editor.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "platform/core/model/Collection.h"
#include "platform/core/model/Event.h"
#include "platform/core/system/Exceptions.h"
#include "storage/rkSpcBase.h"

class QWidget;

namespace wrenfold {

class TControlInfo;
class TTreeNode;
class TTreeView;
struct TNewControlData;

// Every failure of the editor itself.
class ESpcEditorError : public Exception {
 public:
  using Exception::Exception;
};

enum TSpcEdOption : std::uint8_t {
  eoSaveSpcOnExit,    // closing saves without asking
  eoSaveSpcOnChange,  // without a file: every change of a control is in the object at once
  eoSortProps,        // properties by name instead of by declaration
  eoExpandCompProps   // components are nodes of their own
};
template <>
struct TEnumDescription<TSpcEdOption> {
  static constexpr const char* Name = "TSpcEdOption";
  static constexpr std::array Values{"eoSaveSpcOnExit", "eoSaveSpcOnChange", "eoSortProps",
                                     "eoExpandCompProps"};
};
template <>
struct TSetDescription<TSpcEdOption> {
  static constexpr const char* Name = "TSpcEdOptions";
};
using TSpcEdOptions = TSet<TSpcEdOption>;

enum TSpcFormOption : std::uint8_t {
  foAutoSaveParams,      // closing stores the placement of the window
  foAreasDynamicResize,  // columns follow the drag of their border
  foModalShowing,
  foStayOnTop,
  foTreeExpandOnEnter,  // Enter folds and unfolds the selected node
  foEllipsisLabels,     // labels that do not fit end in an ellipsis
  foMultiLineCaptions   // "##" breaks the lines of labels, otherwise it is a blank
};
template <>
struct TEnumDescription<TSpcFormOption> {
  static constexpr const char* Name = "TSpcFormOption";
  static constexpr std::array Values{
      "foAutoSaveParams",    "foAreasDynamicResize", "foModalShowing",     "foStayOnTop",
      "foTreeExpandOnEnter", "foEllipsisLabels",     "foMultiLineCaptions"};
};
template <>
struct TSetDescription<TSpcFormOption> {
  static constexpr const char* Name = "TSpcFormOptions";
};
using TSpcFormOptions = TSet<TSpcFormOption>;

// In the order of the tool bar.
enum TSpcEdVisibleButton : std::uint8_t {
  vbExitEditor,
  vbLoadSpc,
  vbSaveSpc,
  vbSaveSpcAs,
  vbAddNode,
  vbDeleteNode,
  vbMoveNodeUp,
  vbMoveNodeDown,
  vbExpandNode,
  vbCollapseNode
};
template <>
struct TEnumDescription<TSpcEdVisibleButton> {
  static constexpr const char* Name = "TSpcEdVisibleButton";
  static constexpr std::array Values{
      "vbExitEditor", "vbLoadSpc",    "vbSaveSpc",      "vbSaveSpcAs",  "vbAddNode",
      "vbDeleteNode", "vbMoveNodeUp", "vbMoveNodeDown", "vbExpandNode", "vbCollapseNode"};
};
template <>
struct TSetDescription<TSpcEdVisibleButton> {
  static constexpr const char* Name = "TSpcEdVisibleButtons";
};
using TSpcEdVisibleButtons = TSet<TSpcEdVisibleButton>;
inline constexpr TSpcEdVisibleButtons AllSpcEdButtons = TSpcEdVisibleButtons::FromBits(0x3FF);

enum TNodeMotion : std::uint8_t { nmUp, nmDown };
enum TNodeImageIndex : std::uint8_t {
  niiSelectedIndex,
  niiStateIndex,
  niiImageIndex,
  niiOverlayIndex
};
enum TCollNotification : std::uint8_t { cnAdding, cnDeleting, cnClearing };
enum TAreaKind : std::uint8_t { akLabel, akControl, akAll };

// Sets one of the four indices of a node; nothing for -1.
using TPlaceImage = std::function<void(TTreeNode& node, TNodeImageIndex type, int index)>;

// The sender is the editor.
using TPlaceNodeImageEvent = TEvent<void(TObject* sender, TTreeNode* node, TBaseClassIdent ident,
                                         TPersistent* instance, const TPlaceImage& placeImage)>;
using TBeforeSaveSpcEvent =
    TEvent<void(TObject* sender, TSpcObject* spc, const std::string& fileName, bool& allowSave)>;
using TAfterSaveSpcEvent =
    TEvent<void(TObject* sender, TSpcObject* spc, const std::string& fileName)>;
// The item is null while it does not exist yet, and where all items are meant.
using TCollectionChangingEvent =
    TEvent<void(TObject* sender, TCollection* collection, TCollectionItem* item,
                TCollNotification action, bool& allowChange)>;
using TCollectionChangeEvent = TEvent<void(TObject* sender, TCollection* collection,
                                           TCollectionItem* item, TCollNotification action)>;
using TSelectStartNodeEvent =
    TEvent<void(TObject* sender, TTreeView* treeView, bool& defaultSelect)>;
// With allowRead (allowWrite) left true the editor reads (writes) its ini file as well.
using TReadFormSettingEvent =
    TEvent<void(TObject* sender, const std::string& iniFileName, const std::string& section,
                std::string& iniData, bool& allowRead)>;
using TWriteFormSettingEvent =
    TEvent<void(TObject* sender, const std::string& iniFileName, const std::string& section,
                const std::string& iniData, bool& allowWrite)>;
using TCreateSpcEvent = TEvent<void(TObject* sender, TSpcObject* spc)>;

using TBeforeCreateControlEvent =
    TEvent<void(TObject* sender, TPersistent* instance, const TPropInfo* property, QWidget* parent,
                TNotifyEvent change, TNewControlData& data, bool& handled)>;
using TControlEvent = TEvent<void(TObject* sender, TControlInfo& row)>;
using THandleControlEvent = TEvent<void(TObject* sender, TControlInfo& row, bool& handled)>;
using TGetControlDataEvent =
    TEvent<void(TObject* sender, TControlInfo& row, bool& handled, bool& abort)>;
using TAbortControlEvent = TEvent<void(TObject* sender, TControlInfo& row, bool& abort)>;

}  // namespace wrenfold
