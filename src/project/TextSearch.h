// Finds texts and regular expressions in sources, and tells what would stand in their place.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/system/Exceptions.h"

namespace wrenfold {

// A pattern that is none. The message tells the place in it and what is wrong there.
class ESearchError : public Exception {
 public:
  using Exception::Exception;
};

struct TSearchOptions {
  bool CaseSensitive = false;
  bool WholeWords = false;
  bool RegularExpression = false;

  friend bool operator==(const TSearchOptions&, const TSearchOptions&) = default;
};

// Bytes of a text.
struct TTextMatch {
  std::size_t Offset = 0;
  std::size_t Length = 0;

  friend bool operator==(const TTextMatch&, const TTextMatch&) = default;
};

// A pattern ready to be found. Texts are UTF-8; bytes that are not end a match. "^" and "$" mean
// the ends of lines. One object is used by one thread at a time.
class TTextSearch {
 public:
  // Raises ESearchError, also for an empty pattern.
  TTextSearch(std::string_view pattern, const TSearchOptions& options);
  ~TTextSearch();

  // The first match at or behind an offset. False when there is none.
  bool Find(std::string_view text, std::size_t from, TTextMatch& match) const;
  // All matches that do not overlap, from the start; at most so many.
  std::vector<TTextMatch> FindAll(std::string_view text, std::size_t limit = SIZE_MAX) const;
  // What takes the match's place: the replacement as it stands, of a regular expression with $1,
  // ${name}, \n, \t, \U...\E in it. Raises ESearchError when that is no replacement.
  std::string Replacement(std::string_view text, const TTextMatch& match,
                          std::string_view with) const;

 private:
  struct TCode;
  std::unique_ptr<TCode> FCode;
  bool FRegularExpression;
};

}  // namespace wrenfold
