// What the scanners of Pascal and C++ sources have in common: tokens, positions, character classes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

enum class TTokenKind {
  End,
  Identifier,
  Text,  // a quoted text, with its quotes
  Number,
  Symbol,     // one character
  Note,       // a comment, without its delimiters
  Directive,  // a compiler directive, without delimiters and its mark ('$' or '#')
};

// A token of a source. Text points into the scanned source.
struct TSourceToken {
  TTokenKind Kind = TTokenKind::End;
  std::string_view Text;
  size_t Offset = 0;

  size_t End() const { return Offset + Text.size(); }  // of what is no note and no directive
  bool IsSymbol(char symbol) const { return Kind == TTokenKind::Symbol && Text[0] == symbol; }
};

// An identifier, or several joined by dots, from the token on; empty when there is none. Advance
// puts the next token into the same place.
template <class Advance>
std::string ReadDottedName(const TSourceToken& token, Advance advance) {
  std::string name;
  while (token.Kind == TTokenKind::Identifier) {
    name += token.Text;
    advance();
    if (!token.IsSymbol('.')) break;
    name += '.';
    advance();
  }
  return name;
}

// A place in a source, both counted from 1. Columns are bytes.
struct TSourcePlace {
  int Line = 1;
  int Column = 1;
};

// Bytes of a source from Begin on up to End.
struct TSourceSpan {
  size_t Begin = 0;
  size_t End = 0;

  bool Empty() const { return Begin == End; }
  std::string_view In(std::string_view source) const { return source.substr(Begin, End - Begin); }
};

// Bytes of a source that others take the place of.
struct TSourceEdit {
  size_t Offset = 0;
  size_t Length = 0;
  std::string Text;
};

// Something wrong in a source that leaves the rest of it readable.
struct TSourceProblem {
  TSourcePlace Place;
  std::string Message;
};

// Turns offsets into places. Offsets that grow from call to call are counted once in all.
class TPlaceFinder {
 public:
  explicit TPlaceFinder(std::string_view source) : FSource(source) {}
  TSourcePlace At(size_t offset);

 private:
  std::string_view FSource;
  size_t FOffset = 0;
  size_t FLineStart = 0;
  int FLine = 1;
};

enum class TSourceLanguage { Pascal, Cpp };
// By the extension of the file name; what is no C or C++ extension is Pascal.
TSourceLanguage LanguageOfFile(std::string_view fileName);

// Character classes of identifiers. Bytes from $80 on count as letters in either encoding.
bool IsIdentifierStart(char character);
bool IsIdentifierPart(char character);
bool IsBlank(char character);
// True for one identifier and nothing else.
bool IsIdentifier(std::string_view text);

// Where the lines of a source end: the offset of the line end at or after start, or its size.
size_t EndOfLine(std::string_view source, size_t start);

}  // namespace wrenfold
