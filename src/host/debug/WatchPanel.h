// Expressions that the user watches, with their values at each stop.
#pragma once

#include <QLineEdit>
#include <QTreeWidget>
#include <functional>
#include <string>
#include <vector>

#include "host/debug/DebugSession.h"
#include "platform/widgets/Forms.h"

namespace wrenfold {

class TWatchPanel : public TForm {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }
  explicit TWatchPanel(TComponent* owner, QWidget* parent = nullptr);

  // To be called once.
  void Serve(TDebugSession& session);

  std::vector<std::string> Expressions() const;
  void SetExpressions(const std::vector<std::string>& expressions);
  void Add(const std::string& expression);
  // The user has changed them.
  std::function<void()> OnChange;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Update();
  void Ask(int index);
  void ShowValue(int index, const TVariable& value);
  void AddItem(const std::string& expression);
  void Edited(QTreeWidgetItem* item, int column);
  void Changed();

  TDebugSession* FSession = nullptr;
  QLineEdit* FNew;
  QTreeWidget* FList;
  bool FFilling = false;
};

}  // namespace wrenfold
