// Tool bars whose buttons are components with replaceable handlers.
#pragma once

#include <QToolBar>
#include <QToolButton>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/core/model/Event.h"
#include "platform/widgets/Actions.h"
#include "platform/widgets/Control.h"

class QMouseEvent;

namespace wrenfold {

class TToolBar;

enum TToolButtonStyle : std::uint8_t { tbsButton, tbsCheck, tbsSeparator };
using TMouseEvent = TEvent<void(TObject*, QMouseEvent&)>;

// A button, or a separator, which takes no clicks. With an action, it takes over the action's
// hint, picture and state, and its caption unless it was given one of its own. A button leaves its
// bar when it is destroyed.
class TToolButton : public TControlOf<QToolButton>, public TActionClient {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // Appended to the bar.
  explicit TToolButton(TComponent* owner = nullptr, TToolBar* bar = nullptr);
  ~TToolButton() override;

  std::string Caption() const override { return FCaption; }
  void SetCaption(const std::string& caption) override;
  void SetVisible(bool visible) override;
  TToolButtonStyle Style() const { return FStyle; }
  void SetStyle(TToolButtonStyle style);
  std::int32_t ImageIndex() const { return FImageIndex; }
  void SetImageIndex(std::int32_t index);
  bool Down() const { return isChecked(); }
  void SetDown(bool down) { setChecked(down); }
  TToolBar* ToolBar() const { return FToolBar; }

  // As if the user had clicked: OnClick, or else the action. A disabled button does nothing.
  virtual void Click();
  // The sender is the button.
  TNotifyEvent OnClick;
  TMouseEvent OnMouseDown;

 protected:
  void ActionChanged() override;
  void UpdateTexts() override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  friend class TToolBar;
  void UpdateIcon();
  TToolBar* FToolBar = nullptr;
  QAction* FPlace = nullptr;  // the button's place in the bar; belongs to the bar
  std::string FCaption;
  bool FOwnCaption = false;
  TToolButtonStyle FStyle = tbsButton;
  std::int32_t FImageIndex = -1;
};

class TToolBar : public TControlOf<QToolBar> {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TToolBar(TComponent* owner = nullptr, QWidget* parent = nullptr);
  ~TToolBar() override;

  std::string Caption() const override;
  void SetCaption(const std::string& caption) override;
  int ButtonCount() const { return static_cast<int>(FButtons.size()); }
  // Raises EListError outside 0..ButtonCount-1.
  TToolButton* Buttons(int index) const;
  void InsertButton(int index, TToolButton* button);
  void RemoveButton(TToolButton* button);
  // New buttons owned by the bar's owner.
  TToolButton* AddButton(TAction* action);
  TToolButton* AddSeparator();
  // Not owned.
  TImageList* Images() const { return FImages; }
  void SetImages(TImageList* images);
  void Notification(TComponent* component, TOperation operation) override;

 private:
  std::vector<TToolButton*> FButtons;
  TImageList* FImages = nullptr;
};

}  // namespace wrenfold
