// One item of a stored collection: its order and its properties, as views of the stream.
#pragma once

#include <string_view>
#include <vector>

#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/DesignComponent.h"

namespace wrenfold {

struct TStoredItem {
  std::string_view Order;  // with its tag; empty when there is none
  std::vector<TDesignProperty> Properties;
};

// Reads the item that the reader stands at and leaves it behind the item's end. The views are of
// what the reader reads. Raises EReadError when it is none.
TStoredItem ReadStoredItem(TByteReader& reader);

}  // namespace wrenfold
