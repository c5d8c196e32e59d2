// Decodes the items that list and tree views store as bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

struct TListItem {
  int Image = -1;
  int Depth = 0;                   // of trees
  bool Open = false;               // of trees: stored with its children shown
  std::vector<std::string> Texts;  // the caption, then those of the further columns; as stored
};

// "Items.Data" and "Items.LazData" of list views. What cannot be read ends the list.
std::vector<TListItem> DecodeListItems(std::string_view bytes, bool longTexts);

// "Items.Data" of tree views, parents before their children; both environments' kinds.
std::vector<TListItem> DecodeTreeItems(std::string_view bytes);

}  // namespace wrenfold
