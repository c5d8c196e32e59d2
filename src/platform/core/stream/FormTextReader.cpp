// From the text form to the binary component stream, in one pass.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "platform/core/stream/FormText.h"
#include "platform/core/stream/HexText.h"
#include "platform/core/stream/PlainLines.h"
#include "platform/core/stream/TextScan.h"
#include "platform/core/text/Unicode.h"

namespace wrenfold {
namespace {

// What the text at the cursor belongs to: first those that end with "end".
enum class TNesting : std::uint8_t { Properties, Children, Item, List, Collection };

// A name or a short value is written without further checks after one Reserve of this.
constexpr std::size_t ShortRoom = 2 * (MaxName + 1) + 2 * BlockSize;
constexpr std::size_t StringChunk = 240;
constexpr std::size_t BinaryLineDigits = 64;

// A finite number must not become infinite where it is stored.
constexpr std::string_view FittingFloat = "a float that fits its kind";

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

bool SameWord(std::string_view word, std::string_view lowerCase) {
  if (word.size() != lowerCase.size()) return false;
  if (word == lowerCase) return true;
  for (std::size_t i = 0; i < word.size(); ++i)
    if ((word[i] | 0x20) != lowerCase[i]) return false;
  return true;
}

// Notes where everything stands, one node opened within the other.
class TNodeNotes {
 public:
  explicit TNodeNotes(std::vector<TFormNode>& nodes) : FNodes(nodes) {}

  void Open(TFormNodeKind kind, std::size_t text, std::size_t head, std::size_t stored) {
    FOpen.push_back(FNodes.size());
    FNodes.push_back({kind, {text, text}, {text, head}, {stored, stored}, 0});
  }
  void Close(std::size_t text, std::size_t stored) {
    TFormNode& node = FNodes[FOpen.back()];
    node.Text.End = text;
    node.Stored.End = stored;
    node.Next = FNodes.size();
    FOpen.pop_back();
  }

 private:
  std::vector<TFormNode>& FNodes;
  std::vector<std::size_t> FOpen;
};

class TFormTextReader {
 public:
  // With notes, no line is plain: each word is looked at.
  TFormTextReader(std::string_view text, std::size_t position, TByteWriter& out,
                  const TFormTextStyle& style, TNodeNotes* notes)
      : FBegin(text.data()),
        FNext(text.data() + position),
        FEnd(text.data() + text.size()),
        FOut(out),
        FStyle(style),
        FNotes(notes) {}

  void ReadObject() {
    FOut.WriteSignature();
    if (!ReadComponent(ReadWord("\"object\", \"inherited\" or \"inline\"")))
      FailAt(FWordStart, "\"object\", \"inherited\" or \"inline\"");
    while (ReadPlainLines(), FDepth > 0) {
      switch (FNesting[FDepth - 1]) {
        case TNesting::Properties:
          ReadMember();
          break;
        case TNesting::Children:
          ReadChild();
          break;
        case TNesting::List:
          ReadListElement();
          break;
        case TNesting::Collection:
          ReadCollectionElement();
          break;
        case TNesting::Item:
          ReadItemMember();
          break;
      }
    }
    SkipLineEnd();
  }

  std::size_t Position() const { return static_cast<std::size_t>(FNext - FBegin); }

 private:
  // Errors.

  [[noreturn]] void FailAt(const char* place, std::string_view expected) const {
    std::size_t line = 1;
    const char* lineStart = FBegin;
    for (const char* next = FBegin;
         (next = static_cast<const char*>(
              std::memchr(next, '\n', static_cast<std::size_t>(place - next)))) != nullptr;
         lineStart = ++next)
      ++line;
    throw EParserError(fmt::format("Line {}, column {}: expected {}, found {}", line,
                                   place - lineStart + 1, expected, Found(place)));
  }
  // At the next token.
  [[noreturn]] void Fail(std::string_view expected) const {
    FailAt(SkipBlanks(FNext, FEnd), expected);
  }

  // What is written next comes from the text that begins with this word; its head ends here.
  void OpenNode(TFormNodeKind kind, const char* word) {
    if (FNotes != nullptr) [[unlikely]]
      FNotes->Open(kind, static_cast<std::size_t>(word - FBegin), Position(), FOut.Size());
  }
  void CloseNode() {
    if (FNotes != nullptr) [[unlikely]]
      FNotes->Close(Position(), FOut.Size());
  }

  std::string Found(const char* place) const {
    if (place == FEnd) return "the end of the text";
    if (*place == '\r' || *place == '\n') return "the end of the line";
    const char* end = SkipWord(place, FEnd);
    if (end - place > 40) end = place + 40;
    if (end != place) return fmt::format("\"{}\"", std::string_view(place, end));
    if (*place > ' ' && *place < 0x7F) return fmt::format("\"{}\"", *place);
    return fmt::format("character #{}", static_cast<unsigned>(static_cast<std::uint8_t>(*place)));
  }

  // Tokens.

  void SkipSpace() { FNext = SkipBlanks(FNext, FEnd); }

  // Whether the next token is this character; what is in front of it is not skipped.
  bool Sees(char character) const {
    const char* next = SkipBlanks(FNext, FEnd);
    return next != FEnd && *next == character;
  }

  // Skips the next token, if it is this character.
  bool Take(char character) {
    const char* next = SkipBlanks(FNext, FEnd);
    if (next == FEnd || *next != character) return false;
    FNext = next + 1;
    return true;
  }

  std::string_view ReadWord(const char* expected) {
    SkipSpace();
    return ScanWord(expected);
  }

  std::string_view ScanWord(const char* expected) {
    FWordStart = FNext;
    FNext = SkipWord(FNext, FEnd);
    while (FNext == FWordStart) {
      if (!SkipComment()) Fail(expected);
      FWordStart = FNext;
      FNext = SkipWord(FNext, FEnd);
    }
    const auto size = static_cast<std::size_t>(FNext - FWordStart);
    if (size > MaxName) FailAt(FWordStart, "a name of at most 255 bytes");
    return {FWordStart, size};
  }

  // The environment writes no comments, but other tools do; they stand where a word is due, from
  // "//" to the end of the line. The cursor then stands at what follows.
  bool SkipComment() {
    if (FEnd - FNext < 2 || FNext[0] != '/' || FNext[1] != '/') return false;
    while (FNext != FEnd && *FNext != '\r' && *FNext != '\n') ++FNext;
    SkipSpace();
    return true;
  }

  void SkipLineEnd() {
    while (FNext != FEnd && (*FNext == ' ' || *FNext == '\t')) ++FNext;
    if (FNext != FEnd && *FNext == '\r') ++FNext;
    if (FNext != FEnd && *FNext == '\n') ++FNext;
  }

  void Push(TNesting nesting) {
    if (FDepth == FNesting.size())
      FailAt(FNext,
             fmt::format("at most {} nested components, lists and collections", MaxFormNesting));
    FNesting[FDepth++] = nesting;
  }

  void WriteName(std::string_view name) {
    FOut.Reserve(ShortRoom);
    char* out = FOut.End();
    *out++ = static_cast<char>(name.size());
    FOut.SetEnd(CopyShort(out, name.data(), name.size(), FEnd));
  }

  // Components.

  // False when `word` does not open one.
  bool ReadComponent(std::string_view word) {
    std::uint8_t flags = 0;
    if (SameWord(word, "inherited")) flags = ffInherited;
    else if (SameWord(word, "inline")) flags = ffInline;
    else if (!SameWord(word, "object")) return false;
    SkipSpace();
    Push(TNesting::Properties);
    std::string_view className = ReadWord("a component name or class");
    std::string_view name(FWordStart, 0);
    if (Take(':')) {
      name = className;
      className = ReadWord("a class name");
    }
    if (FStyle.KeepsBlanks) className = WithBlanks(className);
    std::int64_t position = 0;
    if (ReadOrder(position)) flags |= ffChildPos;
    OpenNode(TFormNodeKind::Component, word.data());
    // A length byte of $F0 and above would be taken for a prefix.
    if (flags != 0 || className.size() >= FilerPrefixMark) FOut.WriteByte(FilerPrefixMark | flags);
    if ((flags & ffChildPos) != 0) FOut.WriteIntegerValue(position);
    WriteName(className);
    WriteName(name);
    return true;
  }

  std::string_view WithBlanks(std::string_view className) {
    const char* end = className.data() + className.size();
    while (end != FEnd && *end == ' ') ++end;
    if (end == FEnd || (*end != '\r' && *end != '\n')) return className;
    const auto size = static_cast<std::size_t>(end - className.data());
    if (size > MaxName) Fail("a class name of at most 255 bytes");
    FNext = end;
    return {className.data(), size};
  }

  // The name together with a blank line in front of it, both indented as text is written.
  std::string_view WithBlankLine(std::string_view name) const {
    const char* text = FBegin;
    const std::string_view before(text, static_cast<std::size_t>(name.data() - text));
    const std::size_t last = before.find_last_not_of(' ');
    if (last == std::string_view::npos || last < 2 || before[last] != '\n') return name;
    const std::size_t indent = before.size() - last - 1;
    if (indent != 2 * static_cast<std::size_t>(FDepth)) return name;
    const std::size_t blank = before.find_last_not_of(' ', last - 2);
    if (blank == std::string_view::npos || before[blank] != '\n' || before[last - 1] != '\r')
      return name;
    const std::size_t start = blank + 1 + indent;
    const std::size_t size = before.size() + name.size() - start;
    return start < last && size <= MaxName ? std::string_view(text + start, size) : name;
  }

  // "[n]", when there is one.
  bool ReadOrder(std::int64_t& order) {
    if (!Take('[')) return false;
    SkipSpace();
    const char* start = FNext;
    TNumber number;
    ScanNumber(number);
    if (number.IsFloat) FailAt(start, "a whole number");
    if (!Take(']')) Fail("\"]\"");
    order = number.Integer;
    return true;
  }

  void ReadMember() {
    const std::string_view word = ReadWord("a property, a component or \"end\"");
    if (IsEndWord(word)) {
      FOut.WriteEndOfList();
      FOut.WriteEndOfList();
      --FDepth;
      return CloseNode();
    }
    if (IsComponentWord(word) && !Sees('=')) {
      FOut.WriteEndOfList();
      FNesting[FDepth - 1] = TNesting::Children;
      ReadComponent(word);
      return;
    }
    ReadProperty(word);
  }

  // "end", unless it is the name of a property.
  bool IsEndWord(std::string_view word) const {
    return word.size() == 3 && SameWord(word, "end") && !Sees('=');
  }

#ifdef __SSE2__
  // Reads the lines at the cursor that are written as nearly all are; every other line is left to
  // the token by token reading. The end of a line is found without a look at its words, its indent
  // by a guess that is checked, so that the processor can begin with the next line before it has
  // finished this one.
  void ReadPlainLines() {
    if (FStyle.KeepsBlanks || FNotes != nullptr) return;
    if (FNext != FEnd && *FNext == '\r') ++FNext;
    while (FDepth > 0 && FEnd - FNext >= PlainLineReach && *FNext == '\n') {
      const std::size_t indent = 1 + 2 * FDepth;
      if (indent >= BlockSize) return;
      const unsigned words = detail::BlankMask(detail::LoadBlock(FNext)) ^ 0xFFFF;
      if (StartsAt(indent, words)) {
        if (!ReadPlainLine(FNext + indent)) return;
      } else if (!StartsAt(indent - 2, words) || !ReadPlainEnd(FNext + indent - 2)) {
        return;
      }
    }
  }

  // Whether the lowest bit of the mask is this one.
  static bool StartsAt(std::size_t bit, unsigned mask) {
    return (mask & ((2U << bit) - 1)) == 1U << bit;
  }

  // A component or a property; false, with nothing read, when it is not plain.
  bool ReadPlainLine(const char* line) {
    const std::uint64_t lineFeeds = detail::MaskOfFour<detail::LineFeedMask>(line);
    if (lineFeeds == 0) return false;
    const char* const lineFeed = line + std::countr_zero(lineFeeds);
    const char* const end = lineFeed - (lineFeed[-1] == '\r');
    FOut.Reserve(PlainLineRoom);
    char* out = FOut.End();
    TNesting& nesting = FNesting[FDepth - 1];
    if (std::memcmp(line, "object ", 7) == 0) {
      if (nesting > TNesting::Children || FDepth == FNesting.size()) return false;
      *out = 0;
      out = PutPlainComponent(line + 7, end, out + (nesting == TNesting::Properties));
      if (out == nullptr) return false;
      nesting = TNesting::Children;
      FNesting[FDepth++] = TNesting::Properties;
    } else {
      if (nesting != TNesting::Properties && nesting != TNesting::Item) return false;
      out = PutPlainProperty(line, end, out);
      if (out == nullptr) return false;
    }
    FOut.SetEnd(out);
    FNext = lineFeed;
    return true;
  }

  // An "end" of a component or an item; false, with nothing read, for anything else.
  bool ReadPlainEnd(const char* line) {
    const TNesting nesting = FNesting[FDepth - 1];
    const char* const lineFeed = line + 3 + (line[3] == '\r');
    if (std::memcmp(line, "end", 3) != 0 || *lineFeed != '\n' || nesting > TNesting::Item ||
        GoesOnWith('=', lineFeed))
      return false;
    FOut.WriteEndOfList();
    if (nesting == TNesting::Properties) FOut.WriteEndOfList();
    FNext = lineFeed;
    --FDepth;
    return true;
  }
#else
  void ReadPlainLines() {}
#endif

  static bool IsComponentWord(std::string_view word) {
    switch (word.size()) {
      case 6:
        return SameWord(word, "object") || SameWord(word, "inline");
      case 9:
        return SameWord(word, "inherited");
      default:
        return false;
    }
  }

  void ReadChild() {
    const std::string_view word = ReadWord("a component or \"end\"");
    if (ReadComponent(word)) return;
    if (!SameWord(word, "end")) FailAt(FWordStart, "a component or \"end\"");
    FOut.WriteEndOfList();
    --FDepth;
    CloseNode();
  }

  void ReadProperty(std::string_view name) {
    WriteName(FStyle.KeepsBlanks ? WithBlankLine(name) : name);
    OpenNode(TFormNodeKind::Property, name.data());
    if (FEnd - FNext > 3 && std::memcmp(FNext, " = ", 3) == 0) {
      FNext += 3;
    } else if (!Take('=')) {
      Fail("\"=\"");
    }
    ReadNodeValue();
  }

  // The value of the node that was opened last. One that nests is read, and closed, later on.
  void ReadNodeValue() {
    const std::size_t depth = FDepth;
    ReadValue();
    if (FDepth == depth) CloseNode();
  }

  // Values.

  void ReadValue() {
    SkipSpace();
    const char first = FNext != FEnd ? *FNext : '\0';
    switch (first) {
      case '\'':
      case '#':
        return ReadString();
      case '[':
        return ReadSet();
      case '{':
        return ReadBinary();
      case '(':
        ++FNext;
        FOut.WriteValueType(TValueType::vaList);
        return Push(TNesting::List);
      case '<':
        ++FNext;
        FOut.WriteValueType(TValueType::vaCollection);
        return Push(TNesting::Collection);
      default:
        if (IsDigit(first) || first == '-') return ReadNumber();
        if (first == '$') return ReadLongNumber();
        return ReadIdent();
    }
  }

  void ReadIdent() {
    const std::string_view word = ScanWord("a value");
    // Few words are other than identifiers, and all of them are short.
    if (word.size() <= 5) {
      if (IsNotFinite(word)) return WriteNotFinite(word, false);
      const TValueType type = WordValueOf(word);
      // A style that keeps what editing tools wrote keeps the letter case of their words.
      const bool isWord =
          type != TValueType::vaIdent && (!FStyle.KeepsBlanks || word == RowOf(type).Content);
      // The tag of "Null" is the byte that ends the list.
      if (isWord && type == TValueType::vaNull && FNesting[FDepth - 1] == TNesting::List)
        FailAt(FWordStart, "a value that a list can hold");
      if (isWord) return FOut.WriteValueType(type);
    }
    FOut.Reserve(1 + ShortRoom);
    char* out = FOut.End();
    *out++ = static_cast<char>(TValueType::vaIdent);
    *out++ = static_cast<char>(word.size());
    FOut.SetEnd(CopyShort(out, word.data(), word.size(), FEnd));
  }

  // INF and NAN, with the suffix of a number.
  static bool IsNotFinite(std::string_view word) {
    if (!word.starts_with("INF") && !word.starts_with("NAN")) return false;
    return word.size() == 3 || (word.size() == 4 && (word[3] == 's' || word[3] == 'd'));
  }

  void WriteNotFinite(std::string_view word, bool negative) {
    TNumber number;
    number.IsFloat = true;
    number.Float = DoubleToExtended(word[0] == 'I' ? HUGE_VAL : std::nan(""));
    if (negative) number.Float.SignExponent |= 0x8000;
    if (word.size() == 4) number.Suffix = word[3];
    WriteNumber(word.data(), number);
  }

  void WriteFloat(TExtended value) {
    if (!FStyle.NewerTags) return FOut.WriteExtendedValue(value);
    const double narrow = ExtendedToDouble(value);
    // What is too large for a double stays an extended.
    if (std::isinf(narrow) && value.IsFinite()) return FOut.WriteExtendedValue(value);
    FOut.WriteValueType(TValueType::vaDouble);
    FOut.WriteFixed(narrow);
  }

  void ReadListElement() {
    if (!Take(')')) {
      SkipSpace();
      if (FNext == FEnd) Fail("a value or \")\"");
      OpenNode(TFormNodeKind::Element, FNext);
      return ReadNodeValue();
    }
    FOut.WriteEndOfList();
    --FDepth;
    CloseNode();
  }

  void ReadCollectionElement() {
    if (Take('>')) {
      FOut.WriteEndOfList();
      --FDepth;
      return CloseNode();
    }
    if (!SameWord(ReadWord("\"item\" or \">\""), "item")) FailAt(FWordStart, "\"item\" or \">\"");
    const char* const word = FWordStart;
    std::int64_t order = 0;
    const bool ordered = ReadOrder(order);
    OpenNode(TFormNodeKind::Item, word);
    if (ordered) FOut.WriteIntegerValue(order);
    FOut.WriteValueType(TValueType::vaList);
    Push(TNesting::Item);
  }

  void ReadItemMember() {
    const std::string_view word = ReadWord("a property or \"end\"");
    if (!IsEndWord(word)) return ReadProperty(word);
    FOut.WriteEndOfList();
    --FDepth;
    CloseNode();
  }

  void ReadSet() {
    ++FNext;
    FOut.WriteValueType(TValueType::vaSet);
    if (!Take(']')) {
      do {
        WriteName(ReadWord("a set element"));
      } while (Take(','));
      if (!Take(']')) Fail("\",\" or \"]\"");
    }
    FOut.WriteByte(0);
  }

  void ReadBinary() {
    const char* open = FNext++;
    const void* close = std::memchr(FNext, '}', static_cast<std::size_t>(FEnd - FNext));
    if (close == nullptr) FailAt(open, "binary data that ends with \"}\"");
    const char* end = static_cast<const char*>(close);
    FOut.Reserve(5 + static_cast<std::size_t>(end - FNext) / 2);
    char* const start = FOut.End();
    char* out = start + 5;
    for (SkipSpace(); FNext != end; FNext = SkipBlanks(FNext, end)) {
      // Line by line, so that the decoder does not stumble over each line's end.
      const std::size_t left = std::min(static_cast<std::size_t>(end - FNext), BinaryLineDigits);
      const std::size_t count = DecodeHex(FNext, left, out);
      if (count == 0) Fail("pairs of hexadecimal digits or \"}\"");
      out += count;
      FNext += count * 2;
    }
    ++FNext;
    const auto size = static_cast<std::size_t>(out - start - 5);
    if (size > std::numeric_limits<std::uint32_t>::max())
      FailAt(open, "at most four gigabytes of binary data");
    *start = static_cast<char>(TValueType::vaBinary);
    const auto length = static_cast<std::uint32_t>(size);
    std::memcpy(start + 1, &length, sizeof length);
    FOut.SetEnd(out);
  }

  // Numbers.

  struct TNumber {
    bool IsFloat = false;
    std::int64_t Integer = 0;
    TExtended Float;
    char Suffix = '\0';  // 's', 'c', 'd' or none
  };

  void ReadNumber() {
    const char* next = *FNext == '-' ? FNext + 1 : FNext;
    const char* const digits = next;
    const std::int64_t magnitude = ReadShortNumber(next, FEnd);
    if (next != digits && next != FEnd && !IsWordCharacter(*next)) {
      const std::int64_t sign = -static_cast<std::int64_t>(digits != FNext);
      FNext = next;
      return FOut.WriteIntegerValue((magnitude ^ sign) - sign);
    }
    ReadLongNumber();
  }

  // Floats, hexadecimal numbers and those of more than eight digits.
  void ReadLongNumber() {
    const char* start = FNext;
    if (*start == '-' && IsNotFinite({start + 1, SkipWord(start + 1, FEnd)})) {
      ++FNext;
      return WriteNotFinite(ReadWord("a number"), true);
    }
    TNumber number;
    ScanNumber(number);
    WriteNumber(start, number);
  }

  void WriteNumber(const char* start, const TNumber& number) {
    switch (number.Suffix) {
      case 's': {
        const auto value = static_cast<float>(ExtendedToDouble(number.Float));
        if (std::isinf(value) && number.Float.IsFinite()) FailAt(start, FittingFloat);
        FOut.WriteValueType(TValueType::vaSingle);
        return FOut.WriteFixed(value);
      }
      case 'd': {
        const double value = ToDouble(start, number.Float);
        FOut.WriteValueType(TValueType::vaDate);
        return FOut.WriteFixed(value);
      }
      case 'c':
        FOut.WriteValueType(TValueType::vaCurrency);
        return FOut.WriteFixed(number.Integer);
      default:
        break;
    }
    if (!number.IsFloat) return FOut.WriteIntegerValue(number.Integer);
    WriteFloat(number.Float);
  }

  double ToDouble(const char* start, TExtended value) const {
    const double stored = ExtendedToDouble(value);
    if (!std::isinf(stored) || !value.IsFinite()) return stored;
    // Fifteen digits of the largest double say slightly more than it is.
    value.Mantissa -= value.Mantissa >> 48;
    if (std::isinf(ExtendedToDouble(value))) FailAt(start, FittingFloat);
    return std::copysign(std::numeric_limits<double>::max(), stored);
  }

  void ScanNumber(TNumber& number) {
    const char* start = FNext;
    const char* next = FNext;
    if (next != FEnd && *next == '$') return ScanHexNumber(number);
    const bool negative = next != FEnd && *next == '-';
    if (negative) ++next;
    const char* digits = next;
    std::uint64_t value = 0;
    while (next != FEnd && IsDigit(*next))
      value = value * 10 + static_cast<unsigned>(*next++ - '0');
    if (next == digits) FailAt(next, "a digit");
    if (next == FEnd || !IsWordCharacter(*next)) {
      // Up to 18 digits cannot overflow.
      if (next - digits > 18 && !ParseLongInteger({digits, next}, negative, value))
        FailAt(start, "an integer of 64 bits");
      number.Integer = static_cast<std::int64_t>(negative ? 0 - value : value);
      FNext = next;
      return;
    }
    FNext = ScanFloatTail(next, number);
    const std::string_view text(start, number.Suffix != '\0' ? FNext - 1 : FNext);
    if (!DecimalToExtended(text, number.Float) && !number.Float.IsFinite())
      FailAt(start, "a float that fits ten bytes");
    if (number.Suffix == 'c') number.Integer = ToCurrency(start, number.Float);
  }

  static bool ParseLongInteger(std::string_view digits, bool negative, std::uint64_t& value) {
    const std::uint64_t limit =
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + (negative ? 1 : 0);
    value = 0;
    for (const char character : digits) {
      const auto digit = static_cast<unsigned>(character - '0');
      if (value > (limit - digit) / 10) return false;
      value = value * 10 + digit;
    }
    return true;
  }

  void ScanHexNumber(TNumber& number) {
    const char* start = FNext++;
    const char* end = SkipWord(FNext, FEnd);
    std::uint64_t value = 0;
    if (end == FNext || end - FNext > 16) FailAt(start, "\"$\" and up to 16 hexadecimal digits");
    for (; FNext != end; ++FNext) {
      const char pair[2] = {'0', *FNext};
      char digit = 0;
      if (DecodeHex(pair, 2, &digit) == 0) Fail("a hexadecimal digit");
      value = value << 4 | static_cast<unsigned>(digit);
    }
    number.Integer = static_cast<std::int64_t>(value);
  }

  // Fraction, exponent and suffix behind the digits; returns the place behind them.
  const char* ScanFloatTail(const char* next, TNumber& number) {
    number.IsFloat = true;
    if (*next == '.')
      for (++next; next != FEnd && IsDigit(*next);) ++next;
    if (next != FEnd && (*next | 0x20) == 'e') {
      ++next;
      if (next != FEnd && (*next == '+' || *next == '-')) ++next;
      if (next == FEnd || !IsDigit(*next)) FailAt(next, "the digits of an exponent");
      while (next != FEnd && IsDigit(*next)) ++next;
    }
    if (next != FEnd && std::string_view("scdSCD").find(*next) != std::string_view::npos)
      number.Suffix = static_cast<char>(*next++ | 0x20);
    if (next != FEnd && IsWordCharacter(*next)) FailAt(next, "the end of a number");
    return next;
  }

  // Currency stands in the text as a number of ten-thousandths.
  std::int64_t ToCurrency(const char* start, TExtended value) {
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    if (value == IntegerToExtended(lowest)) return lowest;
    const int shift = TExtended::ExponentBias + 63 - value.Exponent();
    if (shift < 1) FailAt(start, "a currency value of 64 bits");
    if (shift > 64) return 0;
    const std::uint64_t whole = shift < 64 ? value.Mantissa >> shift : 0;
    const std::uint64_t rounded = whole + (value.Mantissa >> (shift - 1) & 1);
    if (rounded >> 63 != 0) FailAt(start, "a currency value of 64 bits");
    const auto magnitude = static_cast<std::int64_t>(rounded);
    return value.Negative() ? -magnitude : magnitude;
  }

  // Strings.

  // Byte strings are written as they are read; the tag is set when the length is known.
  void ReadString() {
    const char* start = FNext;
    const std::size_t tag = FOut.Size();
    FOut.WriteFixed(std::uint16_t{0});
    do {
      SkipSpace();
      if (FNext == FEnd || (*FNext != '\'' && *FNext != '#')) Fail("a string");
      while (FNext != FEnd && (*FNext == '\'' || *FNext == '#')) {
        if (*FNext == '\'') {
          ReadQuoted();
          continue;
        }
        const unsigned code = ReadCode();
        if (code > 127) {
          FOut.Truncate(tag);
          FNext = start;
          return ReadWideString();
        }
        FOut.WriteByte(static_cast<std::uint8_t>(code));
      }
    } while (Take('+'));  // goes on in the next line
    FinishString(tag, FOut.Size() - tag - 2);
  }

  void FinishString(std::size_t tag, std::size_t size) {
    if (size <= MaxName) {
      const auto head =
          static_cast<std::uint16_t>(static_cast<unsigned>(TValueType::vaString) | size << 8);
      return FOut.PatchFixed(tag, head);
    }
    if (size > std::numeric_limits<std::uint32_t>::max()) Fail("at most four gigabytes of text");
    FOut.Reserve(3);
    char* const content = FOut.End() - size;
    std::memmove(content + 3, content, size);
    FOut.SetEnd(FOut.End() + 3);
    FOut.PatchFixed(tag, TValueType::vaLString);
    FOut.PatchFixed(tag + 1, static_cast<std::uint32_t>(size));
  }

  // One run between quotes; a doubled quote stands for one.
  void ReadQuoted() {
    const char* open = FNext++;
    for (;;) {
      FOut.Reserve(StringChunk + BlockSize);
      const char* end =
          FEnd - FNext > static_cast<std::ptrdiff_t>(StringChunk) ? FNext + StringChunk : FEnd;
      const char* stop = CopyPlain(FNext, end, FOut.End());
      FOut.SetEnd(FOut.End() + (stop - FNext));
      FNext = stop;
      if (stop == end && end != FEnd) continue;
      if (stop != FEnd && *stop == '\'') {
        ++FNext;
        if (FNext == FEnd || *FNext != '\'') return;
        FOut.WriteByte('\'');
        ++FNext;
      } else if (stop != FEnd && *stop != '\r' && *stop != '\n') {
        // Control codes are written as #n, but a tab typed by hand does no harm.
        FOut.WriteByte(static_cast<std::uint8_t>(*stop));
        ++FNext;
      } else {
        FailAt(open, "a string that ends with a quote on the same line");
      }
    }
  }

  // "#n", up to 65535.
  unsigned ReadCode() {
    const char* start = FNext++;
    unsigned code = 0;
    const char* digits = FNext;
    while (FNext != FEnd && IsDigit(*FNext) && code <= 0xFFFF)
      code = code * 10 + static_cast<unsigned>(*FNext++ - '0');
    if (FNext == digits) Fail("a character code");
    if (code > 0xFFFF) FailAt(start, "a character code of at most 65535");
    return code;
  }

  // The second look at a string that has codes above 127: 16-bit units, of which quoted bytes give
  // one each.
  void ReadWideString() {
    const char* start = FNext;
    const std::size_t tag = FOut.Size();
    FOut.WriteValueType(TValueType::vaWString);
    FOut.WriteFixed(std::uint32_t{0});
    do {
      SkipSpace();
      if (FNext == FEnd || (*FNext != '\'' && *FNext != '#')) Fail("a string");
      while (FNext != FEnd && (*FNext == '\'' || *FNext == '#')) {
        if (*FNext == '#') FOut.WriteFixed(static_cast<std::uint16_t>(ReadCode()));
        else WidenQuoted();
      }
    } while (Take('+'));  // goes on in the next line
    const std::size_t units = (FOut.Size() - tag - 5) / 2;
    if (units > std::numeric_limits<std::uint32_t>::max()) FailAt(start, "a shorter string");
    FOut.PatchFixed(tag + 1, static_cast<std::uint32_t>(units));
    if (FStyle.NewerTags) PreferUtf8(tag);
  }

  void WidenQuoted() {
    const std::size_t start = FOut.Size();
    ReadQuoted();
    const std::size_t size = FOut.Size() - start;
    FOut.Reserve(size);
    char* const bytes = FOut.End() - size;
    for (std::size_t i = size; i-- > 0;) {
      bytes[2 * i] = bytes[i];
      bytes[2 * i + 1] = 0;
    }
    FOut.SetEnd(bytes + 2 * size);
  }

  void PreferUtf8(std::size_t tag) {
    const std::string_view bytes = FOut.View().substr(tag + 5);
    std::u16string units(bytes.size() / 2, u'\0');
    std::memcpy(units.data(), bytes.data(), bytes.size());
    const std::string text = Utf8FromUtf16(units);
    if (tag + 5 + text.size() >= FOut.Size()) return;
    FOut.Truncate(tag);
    FOut.WriteValueType(TValueType::vaUTF8String);
    FOut.WriteFixed(static_cast<std::uint32_t>(text.size()));
    FOut.WriteBytes(text);
  }

  const char* FBegin;
  const char* FNext;
  const char* FEnd;
  const char* FWordStart = nullptr;
  TByteWriter& FOut;
  const TFormTextStyle& FStyle;
  TNodeNotes* FNotes;
  std::size_t FDepth = 0;
  std::array<TNesting, MaxFormNesting> FNesting;
};

void Convert(std::string_view text, std::size_t& position, TByteWriter& binary,
             const TFormTextStyle& style, TNodeNotes* notes) {
  const std::size_t start = binary.Size();
  TFormTextReader reader(text, position, binary, style, notes);
  try {
    reader.ReadObject();
  } catch (...) {
    binary.Truncate(start);
    throw;
  }
  position = reader.Position();
}

}  // namespace

void ObjectTextToBinary(std::string_view text, std::size_t& position, TByteWriter& binary,
                        const TFormTextStyle& style) {
  Convert(text, position, binary, style, nullptr);
}

void ReadFormNodes(std::string_view text, std::size_t& position, TByteWriter& binary,
                   std::vector<TFormNode>& nodes) {
  const std::size_t before = nodes.size();
  TNodeNotes notes(nodes);
  try {
    Convert(text, position, binary, DefaultFormTextStyle(), &notes);
  } catch (...) {
    nodes.resize(before);
    throw;
  }
}

}  // namespace wrenfold
