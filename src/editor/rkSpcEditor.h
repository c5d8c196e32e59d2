// The settings editor: edits any object through its published properties alone.
#pragma once

#include <QIcon>
#include <QPoint>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "editor/rkAreaInfo.h"
#include "editor/rkControlInfo.h"
#include "editor/rkSpcBaseline.h"
#include "editor/rkSpcJournal.h"
#include "editor/rkSpcSearch.h"
#include "editor/rkSpcTree.h"
#include "foundation/rkClasses.h"
#include "storage/rkInitData.h"

namespace wrenfold {

class TFileDialog;
class TSpcForm;

// Shows a window with a tree of what the edited object consists of and, for the selected node, a
// row with a control for each property. It edits
// - a specification: on a clone of it where its class can be made without arguments, else in place;
// - or, in free mode, any object, in place.
// What is edited outlives the window. Nothing of the editor may be used in another thread.
class TSpcEditor : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TSpcEditor(TComponent* owner = nullptr);
  ~TSpcEditor() override;

  // Installs the entry points of the storage.
  static void Init(TInitData initData);

  // The variable that holds the specification: loading may exchange the object in it.
  void SetSpcRoot(std::unique_ptr<TSpcObject>& spc);
  // A specification of somebody who keeps it: it can be edited and saved, not exchanged by loading.
  void SetSpcRoot(TSpcObject& spc);
  TSpcObject* SpcRoot() const;
  bool FreeMode() const { return FFreeMode; }
  // What the tree shows: the free object, else the clone, else the specification; null: nothing.
  TPersistent* GetUpdatingSpc() const;

  // All raise ESpcEditorError when there is nothing to edit.
  void ShowTree(std::unique_ptr<TSpcObject>& spc);
  void ShowTree();
  void ShowTreeEx(TPersistent* instance);
  // The window; null while there is none.
  TSpcForm* Form() const;

  // The node of the whole; null without a tree.
  TTreeNode* RootNode() const;
  TTreeNode* SelectedNode() const { return FSelected; }
  TTreeNode* FindNode(const TPersistent* instance) const;
  const TControlList& Rows() const { return FRows; }
  const TSpcJournal& Journal() const { return FJournal; }
  // Whether anything differs from what was stored last. Rows that are still being edited count
  // when they have been stored (StoreRows).
  bool Changed() const;
  // Whether the specification was saved since the window was shown.
  bool Saved() const { return FSaved; }

  // Building the tree; descendants may extend it.
  virtual void BuildTree();
  virtual TTreeNode* ProcessItem(TPersistent& instance, TTreeNode& parent, const std::string& name);
  void ProcessCollection(TCollection& collection, TTreeNode& parent, const std::string& name);
  TTreeNode* ProcessItemEx(TBaseClassIdent ident, TTreeNode& parent, const std::string& name);

  // Names of nodes. Sections are those of the translating table.
  static std::string GetNodeName(const TPersistent& instance);
  static void SetNodeName(TPersistent& instance, const std::string& name);
  std::string FindNodeName(const TPersistent& instance, const std::string& defaultName) const;
  std::string FindNodeNameEx(const TPersistent& instance, const std::string& section,
                             const std::string& defaultName) const;
  std::string FindItemNodeName(const TPersistent& instance, const std::string& section,
                               const std::string& defaultName, int index) const;
  std::string Translate(const std::string& section, const std::string& ident) const;
  std::string TranslateEx(const std::string& section, const std::string& ident,
                          const std::string& defaultText) const;
  void TranslateEnumNames(TStrings& names, const std::string& section) const;
  // The label of a property, by its instance's class or an ancestor; the property's name where
  // there is none. Without "##".
  std::string PropertyLabel(const TPersistent& instance, const TPropInfo& property) const;
  // The value as a row would show it.
  std::string ValueText(const TPersistent& instance, const TPropInfo& property) const;

  virtual void PlaceNodeImages(TTreeNode& node, TBaseClassIdent ident, TPersistent& instance);
  void DoPlaceNodeImages(TTreeNode& node, TBaseClassIdent ident, TPersistent& instance);
  static void PlaceTreeNodeImage(TTreeNode& node, TNodeImageIndex type, int index);
  TImageList* Images() const { return FImages; }
  // Answers the index; -1 for no picture.
  int AddNewImage(const QIcon& picture);

  // Changes of collections. The events may refuse them. They are undone by the journal.
  void AddNode(TTreeNode& node);
  void DeleteNode(TTreeNode& node);
  void MoveNode(TTreeNode& node, TNodeMotion motion, bool select);
  // Writes the published NodeName; false where there is none that can be written.
  bool RenameNode(TTreeNode& node, const std::string& name);
  static bool CanRenameNode(const TTreeNode& node);
  void SelectNode(TTreeNode* node);
  // Scroll the selected node, or the first one, into view.
  void ShowSelected();
  void ShowTopItem();

  // The journal and the other ways back; errors of the object are shown.
  bool UndoEntry(int index);
  bool UndoLast();
  bool CanUndo() const;
  bool CanReset(const TControlInfo& row, bool toStored) const;
  void ResetRow(TControlInfo& row, bool toStored);
  // The three values side by side.
  std::string RowHint(const TControlInfo& row) const;
  std::string NameAndValue(const TControlInfo& row) const;

  // Search and filter. The tree shows hits with the nodes above them.
  TSpcSearch::TResult Search(const std::string& text);
  void SetChangedOnly(bool changedOnly);
  bool ChangedOnly() const { return FChangedOnly; }

  // Rows. Storing answers false when a value was refused: the row tells why.
  void RebuildControls();
  bool StoreRow(TControlInfo& row);
  bool StoreRows();
  void ControlChange(TObject* sender);
  virtual void DoControlChange(TControlInfo& row);
  void SetControlsData();
  void GetControlsData();
  using TComponent::BeginUpdate;
  using TComponent::EndUpdate;
  void BeginUpdate(TAreaKind kind, int column);
  void EndUpdate(TAreaKind kind, int column);
  void SetControlParams(const std::string& section, TControlInfo& row);

  // Files. Failures are shown and answered with false.
  bool LoadFromFile(const std::string& fileName, bool askOnErrors = true);
  bool LoadFromFile(std::unique_ptr<TSpcObject>& spc, const std::string& fileName,
                    bool askOnErrors = true);
  bool Load();
  virtual bool SaveToFile(const std::string& fileName, TObjectStorageFormat format);
  bool Save();
  bool SaveAs();
  // Asks whether changes are to be saved; false: the user wants neither.
  bool SaveChanges();
  bool DoSave();
  bool DoSaveChanges();
  // Gives everything back as it was stored last.
  void UndoChanges();
  // Asks for a name and a format; false: cancelled.
  bool InternalSaveAs(TFileDialog& dialog, std::string& fileName, TObjectStorageFormat& format);
  const std::string& FileName() const { return FFileName; }
  TObjectStorageFormat FileFormat() const { return FFormat; }
  // For a specification that was loaded by somebody else.
  void SetFile(const std::string& fileName, TObjectStorageFormat format);

  // Asks SaveChanges and lets the tree go; false: the window stays.
  bool Release();
  virtual void SetCaption();
  // Texts in another language: names, labels, hints.
  void Retranslate();
  bool IsButtonVisible(TSpcEdVisibleButton button) const { return VisibleButtons.Contains(button); }
  // Whether loading can exchange what is edited.
  bool CanLoad() const { return !FFreeMode && FRootVariable != nullptr; }

  // The window's settings: as lines of the section IniSection of the file IniFileName.
  virtual void ReadFormSetting(const std::string& section, const std::string& name, TStrings& list);
  virtual void WriteFormSetting(const std::string& section, const std::string& name,
                                const TStrings& list);

  // Published.
  bool ShowStatusBar = true;
  bool SimpleMode = false;
  std::string FormCaption;
  TSpcFormOptions FormOptions{foAutoSaveParams, foEllipsisLabels, foMultiLineCaptions};
  std::string IniFileName;
  std::string IniSection;
  std::unique_ptr<TStringList> InvisibleProps;
  TSpcEdOptions Options;
  std::unique_ptr<TStringList> TranslatingTable;
  TSpcEdVisibleButtons VisibleButtons = AllSpcEdButtons;
  std::int32_t ColCount = 1;
  std::unique_ptr<TControlAreaInfo> ControlAreaInfo;
  std::unique_ptr<TStringList> ControlParams;
  std::unique_ptr<TStringList> DisabledProps;
  std::unique_ptr<TLabelAreaInfo> LabelAreaInfo;
  std::unique_ptr<TStringList> RedefiedParams;
  std::int32_t TopInc = 5;
  TFont* TreeFont() const { return FTreeFont.get(); }
  void SetTreeFont(TFont* font);
  bool HasTreeFont() const { return FHasTreeFont; }
  TFont* HeaderFont() const { return FHeaderFont.get(); }
  void SetHeaderFont(TFont* font);
  bool HasHeaderFont() const { return FHasHeaderFont; }

  // The components that a property may refer to; empty: those that belong with the instance.
  std::function<std::vector<TComponent*>(const TPersistent& instance, const TPropInfo& property)>
      Candidates;

  TAfterSaveSpcEvent AfterSaveSpc;
  TBeforeSaveSpcEvent BeforeSaveSpc;
  TCollectionChangeEvent OnCollectionChange;
  TCollectionChangingEvent OnCollectionChanging;
  TCreateSpcEvent OnCreateSpc;
  TCreateSpcEvent OnLoadSpc;
  TPlaceNodeImageEvent OnPlaceNodeImage;
  TReadFormSettingEvent OnReadFormSetting;
  TSelectStartNodeEvent OnSelectStartNode;
  TWriteFormSettingEvent OnWriteFormSetting;
  TBeforeCreateControlEvent BeforeCreateControl;
  TControlEvent AfterCreateControl;
  TControlEvent OnCreateLabel;
  TControlEvent OnControlChange;
  TControlEvent OnDropControl;
  THandleControlEvent OnResizeControl;
  THandleControlEvent BeforeSetControlData;
  TControlEvent AfterSetControlData;
  TGetControlDataEvent BeforeGetControlData;
  TAbortControlEvent AfterGetControlData;

 protected:
  virtual void DoShowTree();
  virtual TSpcForm* MakeForm();
  void CheckInit() const;
  // The copy that is worked on; null: the specification itself is.
  virtual std::unique_ptr<TPersistent> MakeClone(const TSpcObject& root);
  // Writes the clone back.
  void UpdateSpc();
  virtual void DoRelease();
  // Writes the specification to the file; raises.
  virtual void WriteSpc(const std::string& fileName, TObjectStorageFormat format);
  // The defaults of the whole; null: those of fresh objects.
  virtual std::shared_ptr<const TObjectImage> RootDefaults() const { return nullptr; }

  // May give single values other defaults.
  virtual void PrepareBaseline(TSpcBaseline&) {}
  // Whether closing stores the placement of the window.
  virtual bool AutoSaveParams() const { return FormOptions.Contains(foAutoSaveParams); }

  // The factory.
  virtual const TRowRule* RowRule(const TPropInfo& property) const;
  virtual TRowContext RowContext(QWidget* parent) const;
  virtual void DoBeforeCreateControl(TPersistent& instance, const TPropInfo& property,
                                     QWidget* parent, TNotifyEvent changeAction,
                                     TNewControlData& data, bool& handled);
  virtual void DoAfterCreateControl(TControlInfo& row);
  virtual void SetControlData(TControlInfo& row);
  virtual void GetControlData(TControlInfo& row);
  // Appends the default layout to ControlParams.
  virtual void UpdateControlParams();
  // Who has the hot key already; empty: nobody.
  virtual std::string HotKeyConflict(TShortCut shortCut, const TPersistent& instance,
                                     const TPropInfo& property) const;

 private:
  friend class TSpcForm;
  // What is known of a class while a tree is shown.
  struct TClassPlan {
    std::vector<const TPropInfo*> Properties;  // in the order of the rows
    std::vector<const TRowRule*> Rules;        // of each of them; null: no kind of row
    std::vector<const TPropInfo*> LeftOut;     // invisible
    std::string Names;                         // of all rows, with their labels, for the search
    std::string ValueNames;                    // that values of the rows can have
  };

  void ListChanged(TObject* sender);
  static void PrepareParams(TIniStrings& ini, const TStrings& lines);
  const TClassPlan& PlanOf(const TTypeInfo& info) const;
  TLeavesOut LeavesOut() const;
  TTreeNode* AddInstanceNode(TPersistent& instance, TTreeNode& parent, const std::string& name);
  void ProcessProperties(TPersistent& instance, TTreeNode& node);
  bool ProcessObjectProperty(TPersistent& instance, const TPropInfo& property, bool hasRule,
                             TTreeNode& node);
  void ProcessValue(TPersistent& value, TTreeNode& parent, const std::string& name);
  std::string RootText() const;
  std::string NameOfItem(TCollectionItem& item, const TTreeNode& collectionNode) const;
  void RenewTexts(TTreeNode& node);
  TNodeTexts TextsOf(const TTreeNode& node) const;
  std::string CaptionOf(const TPersistent& instance, const TPropInfo& property) const;

  void TreeChanged();
  void SelectStartNode();
  // Whether the first node is selected; OnSelectStartNode may have selected another one.
  bool CanNodeDefaultSelect(TTreeView& treeView);
  void NodeSelected(TTreeNode* node);
  void DescribeSelected();
  void CountChanges(TTreeNode& node);
  void CountAllChanges();
  bool RowDiffers(const TPersistent& instance, const TPropInfo& property) const;
  static const TPropInfo* KeyOf(const TPersistent& instance);
  void ApplyFilter();

  void ShowRows();
  void ClearRows();
  void MakeRow(const TInstRow& instRow, int column);
  void CreateControl(TControlInfo& row);
  bool IsDisabled(const TPersistent& instance, const TPropInfo& property) const;
  bool IsKey(const TPersistent& instance, const TPropInfo& property) const;
  void FilterRows();
  void RowCommitted(TObject* sender);
  void RowMessage(TObject* sender);
  void RowMenu(TControlInfo& row, const QPoint& place);
  TControlInfo* RowOf(const TObject* sender) const;
  bool TakeRow(TControlInfo& row);
  bool KeyIsTaken(const TControlInfo& row) const;
  void PutDown(TControlInfo& row);
  void PutDownOthers(const TControlInfo& row);
  void ValueStored(TControlInfo& row);
  void ValueChanged(TPersistent& instance);
  void ShowBack(const TSpcJournal::TUndone& undone);
  TJournalLine LineOf(const TPersistent& instance, const TPropInfo& property,
                      const std::string& from) const;
  TJournalLine LineOf(const TPersistent& instance, int textId) const;
  TTreeNode* NodeOf(const TPersistent& instance) const;

  bool AllowChange(TCollection& collection, TCollectionItem* item, TCollNotification action);
  void ChangeCollection(TTreeNode& collectionNode, const std::function<int()>& change);
  void ClearCollection(TTreeNode& node);
  void DeleteItem(TCollectionItem& item, TTreeNode& collectionNode);

  void SetBaseline();
  // The baseline is another one: marks of the rows follow.
  void RowsChanged();
  bool LoadInPlace(const std::string& fileName, bool askOnErrors);
  void TakeLoaded(const std::string& fileName);
  bool ShowError(int textId, const std::string& fileName);
  std::string IniFile() const;

  std::unique_ptr<TSpcObject>* FRootVariable = nullptr;
  TSpcObject* FKeptRoot = nullptr;
  TPersistent* FFreeInstance = nullptr;
  bool FFreeMode = false;
  std::unique_ptr<TPersistent> FClone;
  std::string FFileName;
  TObjectStorageFormat FFormat = osfBin;
  std::string FLoadDir, FSaveDir;

  QPointer<TSpcForm> FForm;
  bool FShown = false, FClosing = false, FBuilding = false, FFilling = false, FSaved = false;
  bool FChangedOnly = false;
  std::string FSearchText;
  int FHits = 0;

  std::unique_ptr<TTreeNode> FTop;
  TTreeNode* FSelected = nullptr;
  std::unordered_map<const TPersistent*, TTreeNode*> FNodes;
  TControlList FRows;
  TSpcBaseline FBaseline;
  TSpcJournal FJournal;
  TSpcSearch FSearch;
  TIniStrings FControlIni, FRedefiedIni, FTranslations;
  TNameSet FInvisible;
  mutable std::unordered_map<const TTypeInfo*, TClassPlan> FPlans;
  TImageList* FImages;
  std::unique_ptr<TFont> FTreeFont, FHeaderFont;
  bool FHasTreeFont = false, FHasHeaderFont = false;
};

}  // namespace wrenfold
