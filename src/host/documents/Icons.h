// The workbench's own icons, drawn in the colours of the palette.
#pragma once

#include <QIcon>
#include <string_view>

namespace wrenfold {

// The icon of that name, sharp at every size and drawn anew when the palette changes. An unknown
// name gives an empty icon.
QIcon WorkbenchIcon(std::string_view name);

}  // namespace wrenfold
