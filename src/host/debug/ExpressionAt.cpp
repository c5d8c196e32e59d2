#include "host/debug/ExpressionAt.h"

namespace wrenfold {

namespace {

bool IsName(char c) {
  return c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         static_cast<unsigned char>(c) >= 0x80;
}

// Where the brackets that end in front of the place begin; the place itself when they do not.
std::size_t BeforeBrackets(std::string_view line, std::size_t end) {
  std::size_t at = end;
  int depth = 0;
  while (at > 0) {
    const char c = line[--at];
    if (c == ']') ++depth;
    if (c == '[' && --depth == 0) return at;
    if (depth == 0) break;
  }
  return end;
}

// Where the part that a ".", "->" or "^" in front of the place belongs to begins.
std::size_t BeforePart(std::string_view line, std::size_t start) {
  std::size_t at = start;
  if (line.substr(0, at).ends_with("->")) at -= 2;
  else if (at > 0 && line[at - 1] == '.') --at;
  else return start;
  while (at > 0) {
    if (line[at - 1] == '^') --at;
    else if (line[at - 1] == ']' && BeforeBrackets(line, at) < at) at = BeforeBrackets(line, at);
    else break;
  }
  const std::size_t end = at;
  while (at > 0 && IsName(line[at - 1])) --at;
  return at < end ? at : start;
}

}  // namespace

std::string ExpressionAt(std::string_view line, std::size_t column) {
  if (column >= line.size() || !IsName(line[column])) return {};
  std::size_t start = column, end = column;
  while (start > 0 && IsName(line[start - 1])) --start;
  while (end < line.size() && IsName(line[end])) ++end;
  if (line[start] >= '0' && line[start] <= '9') return {};
  for (std::size_t before = BeforePart(line, start); before < start;
       before = BeforePart(line, start))
    start = before;
  return std::string(line.substr(start, end - start));
}

}  // namespace wrenfold
