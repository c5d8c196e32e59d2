// The dialogs that ask for the name of a file to open or to save.
#pragma once

#include <QFileDialog>
#include <string>

#include "platform/core/model/Persistent.h"

namespace wrenfold {

class TFileDialog : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // Appended to a name without an extension; without a dot.
  std::string DefaultExt;
  // What was given before the dialog, or chosen in it.
  std::string FileName;
  // Pairs "description|patterns", all separated by "|"; several patterns by ";".
  std::string Filter;
  std::int32_t FilterIndex = 1;  // from 1
  std::string InitialDir;
  std::string Title;

  // Shows the dialog over the window of the widget; false when the user cancels.
  bool Execute(QWidget* parent);

 protected:
  explicit TFileDialog(TComponent* owner) : TComponent(owner) {}
  virtual void Prepare(QFileDialog& dialog) const = 0;
};

// Opens files that are there.
class TOpenDialog : public TFileDialog {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TOpenDialog(TComponent* owner = nullptr) : TFileDialog(owner) {}

 protected:
  void Prepare(QFileDialog& dialog) const override;
};

class TSaveDialog : public TFileDialog {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TSaveDialog(TComponent* owner = nullptr) : TFileDialog(owner) {}

  // Asks before a file is replaced.
  bool OverwritePrompt = true;

 protected:
  void Prepare(QFileDialog& dialog) const override;
};

// The toolkit's filters for ours.
QStringList ToNameFilters(const std::string& filter);

}  // namespace wrenfold
