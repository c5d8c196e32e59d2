// The mixin that makes a widget of the toolkit a named, owned component with published properties.
#pragma once

#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/core/model/Graphics.h"
#include "platform/core/model/Persistent.h"

class QKeyEvent;

namespace wrenfold {

class TPopupMenu;

// A component that is a widget. The owner and the widget's parent both destroy it; whichever goes
// first wins, and the other one forgets it. Nothing of a control may be used in another thread.
class TControl : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  ~TControl() override;

  // The control as a widget.
  virtual QWidget* Widget() const = 0;

  // Sets the widget's object name as well.
  void SetName(const std::string& name) override;

  // The published properties. Caption is published by the controls that show one; of the others it
  // is the name that assistive programs tell.
  virtual std::string Caption() const;
  virtual void SetCaption(const std::string& caption);
  virtual bool Enabled() const;
  virtual void SetEnabled(bool enabled);
  // What was asked for; whether it shows also depends on what it stands in.
  virtual bool Visible() const;
  virtual void SetVisible(bool visible);
  const std::string& Hint() const { return FHint; }
  virtual void SetHint(const std::string& hint);
  std::int32_t Width() const;
  void SetWidth(std::int32_t width);
  std::int32_t Height() const;
  void SetHeight(std::int32_t height);
  // clDefault: the desktop's colour.
  TColor Color() const { return FColor; }
  void SetColor(TColor color);
  // A font that was never set is the desktop's. Changing the font object changes the widget.
  TFont* Font() const;
  void SetFont(TFont* font);

  // Whether the control wants the key for itself, before the shortcuts of actions: keys that edit
  // what it holds, a hot key that it records. Asked while the focus is in it.
  virtual bool ClaimsKey(const QKeyEvent&) const { return false; }

  // The menu that opens on a right click or the menu key. Not owned.
  TPopupMenu* PopupMenu() const { return FPopupMenu; }
  void SetPopupMenu(TPopupMenu* menu);

  void Notification(TComponent* component, TOperation operation) override;

 protected:
  explicit TControl(TComponent* owner);
  // To be called by the widget's class: ties the two names together.
  void Attach();
  // Caption or hint changed: sets the tool tip and accessible texts.
  virtual void UpdateTexts();

 private:
  void FontChanged(TObject* sender);
  bool FontStored() const { return FFontSet; }

  std::string FHint;
  TColor FColor = clDefault;
  mutable std::unique_ptr<TFont> FFont;
  bool FFontSet = false;
  TPopupMenu* FPopupMenu = nullptr;
};

// A widget class with the mixin: class TMemo : public TControlOf<QPlainTextEdit>.
template <class WidgetClass>
class TControlOf : public WidgetClass, public TControl {
 public:
  explicit TControlOf(TComponent* owner = nullptr, QWidget* parent = nullptr)
      : WidgetClass(parent), TControl(owner) {
    Attach();
  }
  QWidget* Widget() const override { return const_cast<TControlOf*>(this); }
};

// The component as a widget; null when it is none.
QWidget* WidgetOf(TComponent* component);
// The widget as a control; null when it is none.
TControl* ControlOf(QWidget* widget);

// A colour of the platform as the toolkit's: system colours come from the palette.
QColor ToQColor(TColor color);
QFont ToQFont(const TFont& font);
// Takes family, size and style over.
void FromQFont(const QFont& source, TFont& font);

}  // namespace wrenfold
