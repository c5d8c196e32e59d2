// A place of a text and what is to stand there.
#pragma once

#include <string>

#include "project/TextSearch.h"

namespace wrenfold {

struct TFoundPlace {
  std::string FileName;
  int Line = 1;            // from 1
  TTextMatch Place;        // in the text as it is decoded
  std::string LineText;    // without its end, cut where it is very long
  std::size_t Column = 0;  // of the match in LineText, in bytes
  std::string With;        // that takes its place, when one was asked for
};

// What the line reads then.
inline std::string ReplacedLine(const TFoundPlace& found) {
  std::string line = found.LineText;
  if (found.Column > line.size()) return line;
  return line.replace(found.Column, found.Place.Length, found.With);
}

// The places of a text that a pattern finds, with what takes their place; at most so many.
std::vector<TFoundPlace> FindPlaces(const TTextSearch& search, const std::string& fileName,
                                    std::string_view text, const std::string* with,
                                    std::size_t limit);

}  // namespace wrenfold
