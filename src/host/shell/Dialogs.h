// The workbench's small dialogs.
#pragma once

#include <string>
#include <vector>

#include "host/documents/Replacement.h"

namespace wrenfold {

// Asks for a line from 1 to lines. False when the user gave up; line then is as it was.
bool AskLine(int& line, int lines);

// One of the texts of ChooseFromList, with what is shown behind it.
struct TChoice {
  std::string Text;
  std::string Detail;
};
// Lets the user choose from a list that typing filters: the indices of the chosen ones, none when
// the user gave up.
std::vector<int> ChooseFromList(const std::string& name, const std::string& caption,
                                const std::vector<TChoice>& choices);

// Shows each place as it reads and as it will read; answers those that the user leaves checked,
// none when the user gave up.
std::vector<TFoundPlace> ConfirmReplacements(const std::vector<TFoundPlace>& places);

}  // namespace wrenfold
