// The window of the module viewer: a list of forms or units with a live preview.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <memory>
#include <vector>

#include "experts/rkFormPreview.h"
#include "experts/rkFormView.h"
#include "experts/rkModuleForms.h"
#include "experts/rkSourcePreview.h"
#include "platform/widgets/Button.h"

namespace wrenfold {

class TModuleListModel;
class TStatusPanels;

class TViewForm : public TSharedForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // The manager owns the settings and outlives the window.
  TViewForm(TComponent* owner, TViewFormMng* manager, TViewModuleMode mode);
  ~TViewForm() override;

  TViewModuleMode ViewMode() const { return FMode; }
  // Lists the other kind of modules; the module that was current stays it where the settings or the
  // Ctrl key say so.
  void SetViewMode(TViewModuleMode mode);

  // What was chosen with OK, in list order: the selected modules, else the current one, else the
  // first. They stay open; the preview is released.
  std::vector<TListedModule> TakeChosen();

  const TModuleList& Modules() const { return FModules; }
  QListView* ModuleList() const { return FList; }
  QLineEdit* FilterEdit() const { return FFilter; }
  QComboBox* ModeBox() const { return FModes; }
  TSourcePreview* SourcePreview() const { return FSource; }
  // What the status bar tells: the kind of form file, and what stands in the way of a preview.
  std::string FormKind() const;
  std::string Warning() const;
  TPopupMenu* SettingsMenu() const { return FMenu; }

  void SetProperties() override;

 protected:
  void DoCreate() override;
  void DoShow() override;
  void DoClose(TCloseAction& action) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // The parts of the window.
  QWidget* CreateModulePanel();
  QWidget* CreatePreview();
  QWidget* CreateButtons();
  QWidget* CreateMorePanel();
  void CreateMenu();
  QCheckBox* AddSwitch(const char* name, int textId, const std::function<bool&()>& setting);
  bool ForwardKey(QEvent* event);

  // The list.
  void FillModuleList();
  void ShowList(int current, bool select);
  int CurrentIndex() const;
  void FilterTyped(const QString& text);

  // The preview.
  void UpdatePreview();
  void PreviewForm(const TListedModule& module);
  void PreviewUnit(const TListedModule& module);
  IOTAModule* OpenForPreview(const TListedModule& module);
  void ReleaseShownForm(bool keepOpen = false);
  void SetStatus(const std::string& kind, const std::string& warning, const std::string& path);
  void ApplyScrollBars();

  void SettingChanged();
  void MoreClick(TObject* sender);
  void UpdateMore();
  bool& ScrollBarSetting();
  void MenuPopup(TObject* sender);
  void MenuClick(TObject* sender);
  void WndProc(TMessage& message);

  TViewFormMng* FManager;
  TViewModuleMode FMode;
  TModuleList FModules;
  std::string FRemembered;  // file of the module that the next mode is to select

  TIntf<IOTAModule> FPreviewed;  // the module behind the preview
  std::string FPreviewedFile;
  bool FOpenedForPreview = false;
  QTimer FFollow;
  TMessageWindow FMessages;

  QComboBox* FModes = nullptr;
  QLineEdit* FFilter = nullptr;
  QListView* FList = nullptr;
  TModuleListModel* FListModel = nullptr;
  QSplitter* FSplitter = nullptr;
  QStackedWidget* FPages = nullptr;
  QScrollArea* FFormArea = nullptr;
  QWidget* FFormHost = nullptr;
  TSourcePreview* FSource = nullptr;
  TButton *FCancel = nullptr, *FOk = nullptr, *FMore = nullptr;
  QWidget* FMorePanel = nullptr;
  struct TSwitch {
    QCheckBox* Box;
    int TextId;
    std::function<bool&()> Setting;
  };
  std::vector<TSwitch> FSwitches;
  TStatusPanels* FStatus = nullptr;
  TPopupMenu* FMenu = nullptr;
  std::unique_ptr<TFormPreview> FPreview;
};

}  // namespace wrenfold
