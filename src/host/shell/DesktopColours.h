// Follows the desktop's choice of light or dark.
#pragma once

#include <QObject>
#include <QPalette>

class QDBusVariant;

namespace wrenfold {

// Asks the desktop (through its settings portal, else the environment variable GTK_THEME) whether
// it is dark, and gives the application a palette that fits; also later, when the choice changes.
// A desktop theme that brings a dark palette itself is left alone.
class TDesktopColours : public QObject {
  Q_OBJECT
 public:
  explicit TDesktopColours(QObject* parent = nullptr);

  bool Dark() const { return FDark; }
  void SetDark(bool dark);

 private slots:
  void SettingChanged(const QString& space, const QString& key, const QDBusVariant& value);

 private:
  QPalette FLight;
  bool FDark = false;
};

}  // namespace wrenfold
