// What the targets of the component stream have in common: rendering a stream as text.
#pragma once

#include <string>
#include <string_view>

#include "fuzz/Targets.h"
#include "platform/core/stream/FormText.h"

namespace wrenfold {

// Renders the bytes in every style. Text that comes out reads back as a stream of the same text.
inline void RenderInEachStyle(std::string_view bytes,
                              void (*toText)(TByteReader&, TByteWriter&, const TFormTextStyle&),
                              void (*fromText)(std::string_view, std::size_t&, TByteWriter&,
                                               const TFormTextStyle&)) {
  // Deep nesting indents each value, so that small input has longer text.
  constexpr std::size_t growth = 200;
  constexpr std::size_t freeGrowth = 1 << 20;
  for (const TFormTextStyle& style : FormTextStyles()) {
    TByteReader reader(bytes);
    TByteWriter text;
    if (!Succeeds([&] { toText(reader, text, style); }, {"offset "})) {
      Promise(text.Size() == 0, "a failed conversion leaves no text");
      continue;
    }
    Promise(text.Size() <= bytes.size() * growth + freeGrowth, "text grows within limits");
    const auto throughBinary = [&](std::string_view source) {
      TByteWriter back;
      std::size_t position = 0;
      fromText(source, position, back, style);
      Promise(position == source.size(), "text of a stream is read whole");
      TByteReader second(back.View());
      TByteWriter again;
      toText(second, again, style);
      Promise(second.AtEnd(), "a stream made from text is written whole");
      return std::string(again.View());
    };
    std::string settled(text.View());
    // A style of newer releases stores floats in fewer bytes than the stream may hold.
    if (style.NewerTags) settled = throughBinary(settled);
    Promise(throughBinary(settled) == settled, "text of a stream comes back");
  }
}

}  // namespace wrenfold
