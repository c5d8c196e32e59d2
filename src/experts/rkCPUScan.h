// The contents of the CPU window's panes as text.
#pragma once

#include <string>

#include "experts/rkCPUView.h"
#include "platform/core/model/StringList.h"

namespace wrenfold {

// The environment's CPU window while it is visible, or null.
TForm* FindCpuWindow();

// The name of a view in the user's language.
std::string ViewName(TCPUViewType view);

// Appends what the panes of that CPU window show. A line of the disassembly may hold line ends: its
// label and its source stand in it above the instruction. The selection of the CPU window is
// afterwards what it was. Panes and registers that the window does not have are left out or 0.
void ReadCpuView(TForm& cpuWindow, TStrings& strings, TCPUViewType view, int lineCount);

}  // namespace wrenfold
