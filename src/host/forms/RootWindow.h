// The window of a designed form, drawn, for whoever shows it elsewhere.
#pragma once

#include <QImage>
#include <QWidget>
#include <memory>
#include <string_view>

#include "designer/paint/Fonts.h"
#include "host/documents/Modules.h"

namespace wrenfold {

// Has the size of the designed form, takes no input and is no form of the screen. A window of its
// own, hidden, until somebody gives it a parent and shows it; when that parent is destroyed, it is
// hidden and has none again.
class TRootWindow : public QWidget {
 public:
  // The editor outlives the window.
  explicit TRootWindow(TFormEditor& editor);
  ~TRootWindow() override;

  // False when there is nothing to show: a data module, a form that cannot be read.
  bool HasForm() const;
  // Whether the form is composed with the form of that class.
  bool Uses(std::string_view className) const { return FCatalog->AskedFor(className); }
  // The form may be another one now.
  void Update();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void FollowHolder();

  TFormEditor& FEditor;
  std::unique_ptr<TModuleForms> FCatalog;
  std::unique_ptr<TComposedForm> FForm;
  std::unique_ptr<TFontBook> FFonts;
  QImage FPicture;  // in the pixels of the screen
  QMetaObject::Connection FHolder;
};

}  // namespace wrenfold
