// The CPU window scan: the expert that offers a window of text taken from the CPU window.
#pragma once

#include <QPointer>
#include <cstdint>

#include "manager/rkExpShrForm.h"

namespace wrenfold {

class TCPUForm;

// Which pane of the CPU window is read.
enum TCPUViewType : std::uint8_t { rkDisasmView, rkRegView, rkFlagsView, rkAllViews };
template <>
struct TEnumDescription<TCPUViewType> {
  static constexpr const char* Name = "TCPUViewType";
  static constexpr std::array Values{"rkDisasmView", "rkRegView", "rkFlagsView", "rkAllViews"};
};

// The expert is its own settings object.
class TCPUFormMng : public TSharedManager {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // Enters itself among the stored settings.
  TCPUFormMng();
  // Closes its window.
  ~TCPUFormMng() override;

  void Init(const TGetMenuItemData& getMenuItemData) override;
  std::unique_ptr<TObject> CloseWindows() override;
  void ReopenWindows(const TObject& windows) override;

  // Shows the window; there is one at most.
  void ShowCPU(TObject* sender);
  // Enables the menu item or action while the CPU window is visible.
  void UpdateMenuState(TObject* sender);

  std::int32_t ReadLineCount = 10;
  TCPUViewType ViewObject = rkDisasmView;

 private:
  TCPUForm& NeedForm();
  QPointer<QWidget> FForm;
};

// Enters the expert into the registry, as group 3.
void RegisterCPUView();

}  // namespace wrenfold
