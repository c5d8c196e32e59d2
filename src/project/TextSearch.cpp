// Searching by the library of regular expressions, which compiles patterns to machine code.
#include "project/TextSearch.h"

#include <fmt/format.h>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstdint>

namespace wrenfold {

namespace {

// A pattern may try so many ways before it is given up as not found: no text of a project hangs it.
constexpr std::uint32_t MatchLimit = 2'000'000;

PCRE2_SPTR Units(std::string_view text) {
  return reinterpret_cast<PCRE2_SPTR>(text.data());
}

std::string MessageOf(int error) {
  PCRE2_UCHAR message[256];
  pcre2_get_error_message(error, message, std::size(message));
  return reinterpret_cast<const char*>(message);
}

// The pattern that means just this text.
std::string Quoted(std::string_view text) {
  constexpr std::string_view special = "\\^$.[]|()?*+{}#- \t";
  std::string quoted;
  for (const char c : text) {
    if (special.find(c) != special.npos) quoted.append(1, '\\');
    quoted.append(1, c);
  }
  return quoted;
}

// A word's end is only where the pattern itself ends in a part of a word.
std::string AsWord(const std::string& pattern) {
  return fmt::format("(?:(?<!\\w)(?=\\w)|(?!\\w))(?:{})(?:(?<=\\w)(?!\\w)|(?<!\\w))", pattern);
}

}  // namespace

struct TTextSearch::TCode {
  pcre2_code* Code = nullptr;
  pcre2_match_data* Matches = nullptr;
  pcre2_match_context* Context = nullptr;

  ~TCode() {
    pcre2_match_context_free(Context);
    pcre2_match_data_free(Matches);
    pcre2_code_free(Code);
  }
};

TTextSearch::TTextSearch(std::string_view pattern, const TSearchOptions& options)
    : FCode(std::make_unique<TCode>()), FRegularExpression(options.RegularExpression) {
  if (pattern.empty()) throw ESearchError("expected a text to find");
  std::string code = options.RegularExpression ? std::string(pattern) : Quoted(pattern);
  if (options.WholeWords) code = AsWord(code);
  const std::uint32_t flags = PCRE2_UTF | PCRE2_UCP | PCRE2_MULTILINE | PCRE2_MATCH_INVALID_UTF |
                              (options.CaseSensitive ? 0 : PCRE2_CASELESS);
  int error = 0;
  PCRE2_SIZE place = 0;
  pcre2_compile_context* context = pcre2_compile_context_create(nullptr);
  pcre2_set_newline(context, PCRE2_NEWLINE_ANYCRLF);
  FCode->Code = pcre2_compile(Units(code), code.size(), flags, &error, &place, context);
  pcre2_compile_context_free(context);
  if (FCode->Code == nullptr)
    throw ESearchError(fmt::format("{}: at {}: {}", pattern, place + 1, MessageOf(error)));
  pcre2_jit_compile(FCode->Code, PCRE2_JIT_COMPLETE);
  FCode->Matches = pcre2_match_data_create_from_pattern(FCode->Code, nullptr);
  FCode->Context = pcre2_match_context_create(nullptr);
  pcre2_set_match_limit(FCode->Context, MatchLimit);
}

TTextSearch::~TTextSearch() = default;

bool TTextSearch::Find(std::string_view text, std::size_t from, TTextMatch& match) const {
  if (from > text.size()) return false;
  const int count =
      pcre2_match(FCode->Code, Units(text), text.size(), from, 0, FCode->Matches, FCode->Context);
  if (count <= 0) return false;
  const PCRE2_SIZE* ends = pcre2_get_ovector_pointer(FCode->Matches);
  // A look behind can make a match end before it starts.
  if (ends[1] < ends[0]) return false;
  match = {ends[0], ends[1] - ends[0]};
  return true;
}

std::vector<TTextMatch> TTextSearch::FindAll(std::string_view text, std::size_t limit) const {
  std::vector<TTextMatch> found;
  TTextMatch match;
  for (std::size_t from = 0; found.size() < limit && Find(text, from, match);) {
    found.push_back(match);
    from = match.Offset + match.Length;
    // Behind a match of nothing goes on with the next character.
    if (match.Length == 0)
      while (++from < text.size() && (text[from] & 0xC0) == 0x80) continue;
  }
  return found;
}

std::string TTextSearch::Replacement(std::string_view text, const TTextMatch& match,
                                     std::string_view with) const {
  if (!FRegularExpression) return std::string(with);
  // The rest of the text is there for what the pattern looks ahead to and back at.
  constexpr std::uint32_t flags = PCRE2_SUBSTITUTE_EXTENDED | PCRE2_SUBSTITUTE_UNSET_EMPTY |
                                  PCRE2_SUBSTITUTE_OVERFLOW_LENGTH |
                                  PCRE2_SUBSTITUTE_REPLACEMENT_ONLY;
  std::string result(match.Length + with.size() + 64, '\0');
  for (;;) {
    PCRE2_SIZE size = result.size();
    const int count = pcre2_substitute(FCode->Code, Units(text), text.size(), match.Offset, flags,
                                       FCode->Matches, FCode->Context, Units(with), with.size(),
                                       reinterpret_cast<PCRE2_UCHAR*>(result.data()), &size);
    if (count == PCRE2_ERROR_NOMEMORY && size > result.size()) {
      result.resize(size);
      continue;
    }
    if (count < 0) throw ESearchError(fmt::format("{}: {}", with, MessageOf(count)));
    result.resize(size);
    return result;
  }
}

}  // namespace wrenfold
