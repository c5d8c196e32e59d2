// From the binary component stream to the text form, in one pass.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>

#include "platform/core/stream/FloatText.h"
#include "platform/core/stream/FormText.h"
#include "platform/core/stream/HexText.h"
#include "platform/core/stream/TextScan.h"
#include "platform/core/text/Unicode.h"

namespace wrenfold {
namespace {

// What the bytes at the cursor belong to.
enum class TNesting : std::uint8_t { Properties, Children, List, Collection, Item };

// Where the text reader keeps blanks of a name, in a style that keeps them.
enum class TBlanks : std::uint8_t { None, Behind, LineInFront };

constexpr std::size_t StringLineLength = 64;
constexpr std::size_t BinaryLineBytes = 32;
constexpr std::size_t MaxIndent = 2 * (MaxFormNesting + 3);
// A line's indent, a name and a short value are written without further checks after one Reserve.
constexpr std::size_t LineRoom = MaxIndent + 2 * MaxName + MaxFloatText + 4 * BlockSize;
// One line of a string: every character as a code or between quotes of its own.
constexpr std::size_t StringLineRoom = StringLineLength * 8 + MaxIndent + 2 * BlockSize;
constexpr std::size_t BinaryLineRoom = 2 * BinaryLineBytes + MaxIndent + 2 * BlockSize;

// Indentation makes text longer than what it came from without limit; real forms stay far below.
constexpr std::size_t MaxGrowth = 64;
constexpr std::size_t FreeGrowth = 1 << 16;

// CR LF.
constexpr std::uint16_t LineEnd = 0x0A0D;

class TFormTextWriter {
 public:
  TFormTextWriter(TByteReader& in, TByteWriter& out, const TFormTextStyle& style)
      : FIn(in),
        FOut(out),
        FStyle(style),
        FInEnd(in.Rest().data() + in.Left()),
        FMaxSize(out.Size() + in.Left() * MaxGrowth + FreeGrowth) {}

  void WriteObject() {
    FIn.ReadSignature();
    WriteComponent();
    while (FDepth > 0) {
      if (FOut.Size() > FMaxSize)
        FIn.Fail("less nesting: the text form would be much larger than the data");
      switch (FNesting[FDepth - 1]) {
        case TNesting::Properties:
          if (FIn.SkipEndOfList("a property or the end of the property list"))
            FNesting[FDepth - 1] = TNesting::Children;
          else WriteProperty();
          break;
        case TNesting::Children:
          if (FIn.SkipEndOfList("a component or the end of the child list")) EndComponent();
          else WriteComponent();
          break;
        case TNesting::List:
          WriteListElement();
          break;
        case TNesting::Collection:
          WriteCollectionElement();
          break;
        case TNesting::Item:
          if (FIn.SkipEndOfList("a property or the end of an item")) EndItem();
          else WriteProperty();
          break;
      }
    }
  }

 private:
  void Push(TNesting nesting) {
    if (FDepth == FNesting.size()) FIn.Fail("at most 512 nested components, lists and collections");
    FNesting[FDepth++] = nesting;
  }

  // Low-level output; room is reserved by the caller.

  char* Indent(char* out, std::size_t level) const {
    char* const end = out + 2 * level;
    do {
      std::memset(out, ' ', BlockSize);
      out += BlockSize;
    } while (out < end);
    return end;
  }

  static char* Append(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
  }

  char* NewLine(char* out, std::size_t level) const {
    *out++ = '\r';
    *out++ = '\n';
    return Indent(out, level);
  }

  void Emit(std::string_view text) { FOut.WriteBytes(text); }

  // A name that can stand in the text.
  std::string_view ReadName(const char* expected, TBlanks kept = TBlanks::None) {
    const std::string_view name = FIn.ReadShortString(expected);
    if (name.empty() || !IsWord(name, FInEnd)) [[unlikely]] {
      const std::string_view word = FStyle.KeepsBlanks ? WithoutBlanks(name, kept) : "";
      if (word.empty() || !IsWord(word, FInEnd)) FailName(name, expected);
    }
    return name;
  }

  // The text would say a number.
  std::string_view ReadIdent() {
    const std::string_view name = ReadName("an identifier");
    if (name[0] >= '0' && name[0] <= '9') FIn.FailAt(FIn.Position() - name.size(), "an identifier");
    return name;
  }

  // An identifier that text would give back as a value of its own tag stands as that value does;
  // empty for others.
  std::string_view WordOf(std::string_view name) const {
    const TValueType word = FStyle.KeepsBlanks ? TValueType::vaIdent : WordValueOf(name);
    if (word == TValueType::vaIdent) return {};
    if (word == TValueType::vaNull && FNesting[FDepth - 1] == TNesting::List)
      FIn.FailAt(FIn.Position() - name.size(), "a value that a list can hold");
    return RowOf(word).Content;
  }

  // The name without the blanks around it that the text reader would keep.
  std::string_view WithoutBlanks(std::string_view name, TBlanks kept) const {
    if (kept == TBlanks::Behind) return name.substr(0, name.find_last_not_of(' ') + 1);
    if (kept == TBlanks::None) return {};
    name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
    const std::string lineEnd = "\r\n" + std::string(2 * FLevel, ' ');
    return name.starts_with(lineEnd) ? name.substr(lineEnd.size()) : "";
  }

  void FailName(std::string_view name, const char* expected) const {
    const char* stop = SkipWord(name.data(), name.data() + name.size());
    const auto offset = static_cast<std::size_t>(stop - name.data());
    FIn.FailAt(FIn.Position() - name.size() + offset, expected);
  }

  // Components.

  void WriteComponent() {
    const std::uint8_t flags = FIn.ReadFilerFlags();
    const bool ordered = (flags & ffChildPos) != 0;
    std::int64_t position = 0;
    if (ordered) position = FIn.ReadIntegerValue();
    const std::string_view className =
        ReadName("a class name", ordered ? TBlanks::None : TBlanks::Behind);
    const std::string_view name = ReadComponentName();
    FOut.Reserve(LineRoom);
    char* out = Indent(FOut.End(), FLevel);
    const bool inherited = (flags & ffInherited) != 0;
    const bool isInline = (flags & ffInline) != 0;
    out = Append(out, inherited ? "inherited " : isInline ? "inline " : "object ");
    if (!name.empty()) {
      out = CopyShort(out, name.data(), name.size(), FInEnd);
      out = Append(out, ": ");
    }
    out = CopyShort(out, className.data(), className.size(), FInEnd);
    if (ordered) out = AppendOrder(out, position);
    FOut.SetEnd(Append(out, "\r\n"));
    Push(TNesting::Properties);
    ++FLevel;
  }

  std::string_view ReadComponentName() {
    if (!FIn.SkipEndOfList("a component name")) return ReadName("a component name");
    return {};
  }

  bool IsOpen() const { return FStyle.Layout != TFormLayout::Packed; }

  char* AppendOrder(char* out, std::int64_t order) const {
    out = Append(out, IsOpen() ? "[" : " [");
    out = std::to_chars(out, out + 24, order).ptr;
    *out++ = ']';
    return out;
  }

  void EndComponent() {
    --FDepth;
    --FLevel;
    FOut.Reserve(LineRoom);
    FOut.SetEnd(Append(Indent(FOut.End(), FLevel), "end\r\n"));
  }

  // Properties.

  void WriteProperty() {
    const std::string_view name = ReadName("a property name", TBlanks::LineInFront);
    FOut.Reserve(LineRoom);
    char* out = Indent(FOut.End(), FLevel);
    out = CopyShort(out, name.data(), name.size(), FInEnd);
    FOut.SetEnd(Append(out, " = "));
    WriteValue();
  }

  // A value that stands on its own: its line ends here, unless it is an element of a list.
  void EndValue() {
    if (FNesting[FDepth - 1] == TNesting::List) return;
    FOut.WriteFixed(LineEnd);
  }

  void WriteValue() {
    const std::size_t start = FIn.Position();
    const TValueType type = FIn.ReadValueType();
    switch (type) {
      case TValueType::vaNull:
        return EndWord("Null");
      case TValueType::vaFalse:
        return EndWord("False");
      case TValueType::vaTrue:
        return EndWord("True");
      case TValueType::vaNil:
        return EndWord("nil");
      case TValueType::vaIdent:
        return EndIdent(ReadIdent());
      case TValueType::vaInt8:
        return EndInteger(FIn.ReadFixed<std::int8_t>("an 8-bit integer"));
      case TValueType::vaInt16:
        return EndInteger(FIn.ReadFixed<std::int16_t>("a 16-bit integer"));
      case TValueType::vaInt32:
        return EndInteger(FIn.ReadFixed<std::int32_t>("a 32-bit integer"));
      case TValueType::vaInt64:
        return EndInteger(FIn.ReadFixed<std::int64_t>("a 64-bit integer"));
      case TValueType::vaString:
        return EndString(FIn.ReadShortString("a string"));
      case TValueType::vaLString:
        return EndString(FIn.ReadLongString("a long string"));
      case TValueType::vaSet:
        return WriteSet();
      case TValueType::vaBinary:
        return WriteBinary();
      case TValueType::vaList:
        Emit("(");
        ++FLevel;
        return Push(TNesting::List);
      case TValueType::vaCollection:
        Emit("<");
        ++FLevel;
        return Push(TNesting::Collection);
      case TValueType::vaWString:
        return WriteWideString();
      case TValueType::vaUTF8String:
        return WriteUtf8String();
      default:
        return WriteFloat(type, start);
    }
  }

  void EndWord(std::string_view word) {
    Emit(word);
    EndValue();
  }

  void EndIdent(std::string_view name) {
    const std::string_view word = WordOf(name);
    if (!word.empty()) return EndWord(word);
    FOut.Reserve(LineRoom);
    FOut.SetEnd(CopyShort(FOut.End(), name.data(), name.size(), FInEnd));
    EndValue();
  }

  void EndInteger(std::int64_t value) {
    FOut.Reserve(LineRoom);
    char* out = FOut.End();
    // Most numbers are small; 32 bits convert faster than 64.
    if (static_cast<std::int32_t>(value) == value)
      out = std::to_chars(out, out + 24, static_cast<std::int32_t>(value)).ptr;
    else out = std::to_chars(out, out + 24, value).ptr;
    FOut.SetEnd(out);
    EndValue();
  }

  void WriteFloat(TValueType type, std::size_t start) {
    FOut.Reserve(LineRoom);
    char* const out = FOut.End();
    switch (type) {
      case TValueType::vaExtended:
        FOut.SetEnd(Float(FIn.ReadExtended(), TFloatWidth::Extended, out));
        break;
      case TValueType::vaDouble:
        FOut.SetEnd(Float(DoubleToExtended(FIn.ReadFixed<double>("a double float")),
                          TFloatWidth::Double, out));
        break;
      case TValueType::vaSingle:
        FOut.SetEnd(Float(DoubleToExtended(FIn.ReadFixed<float>("a single float")),
                          TFloatWidth::Single, out));
        Emit("s");
        break;
      case TValueType::vaDate:
        FOut.SetEnd(
            Float(DoubleToExtended(FIn.ReadFixed<double>("a date")), TFloatWidth::Double, out));
        Emit("d");
        break;
      case TValueType::vaCurrency:
        // A whole number of ten-thousandths.
        FOut.SetEnd(
            std::to_chars(out, out + 24, FIn.ReadFixed<std::int64_t>("a currency value")).ptr);
        Emit("c");
        break;
      default:
        FIn.FailAt(start, "a value tag");
    }
    EndValue();
  }

  char* Float(TExtended value, TFloatWidth width, char* out) const {
    return WriteFloatText(value, FStyle.Floats, width, out);
  }

  void WriteSet() {
    Emit("[");
    std::string_view separator = "";
    while (!FIn.SkipEndOfList("an identifier of a set or its end")) {
      const std::string_view name = ReadName("an identifier of a set");
      FOut.Reserve(LineRoom);
      char* out = Append(FOut.End(), separator);
      FOut.SetEnd(CopyShort(out, name.data(), name.size(), FInEnd));
      separator = ", ";
    }
    Emit("]");
    EndValue();
  }

  void WriteBinary() {
    const std::string_view bytes = FIn.ReadLongString("binary data");
    const bool lines = bytes.size() >= BinaryLineBytes || IsOpen();
    Emit("{");
    for (std::size_t i = 0; i < bytes.size(); i += BinaryLineBytes) {
      const std::size_t count = std::min(BinaryLineBytes, bytes.size() - i);
      FOut.Reserve(BinaryLineRoom);
      char* out = FOut.End();
      if (lines) out = NewLine(out, FLevel + 1);
      EncodeHex(bytes.data() + i, count, out);
      FOut.SetEnd(out + 2 * count);
    }
    Close("}");
    EndValue();
  }

  // The bracket behind the last part of a value; the indent is that of the property again.
  void Close(std::string_view bracket) {
    FOut.Reserve(LineRoom);
    char* const out = IsOpen() ? NewLine(FOut.End(), FLevel) : FOut.End();
    FOut.SetEnd(Append(out, bracket));
  }

  // Containers.

  void WriteListElement() {
    if (FIn.SkipEndOfList("a value or the end of a list")) {
      --FDepth;
      --FLevel;
      Close(")");
      return EndValue();
    }
    FOut.Reserve(LineRoom);
    FOut.SetEnd(NewLine(FOut.End(), FLevel));
    WriteValue();
  }

  void WriteCollectionElement() {
    if (FIn.SkipEndOfList("an item or the end of a collection")) {
      --FDepth;
      --FLevel;
      Emit(">");
      return EndValue();
    }
    FOut.Reserve(2 * LineRoom);
    if (FStyle.Layout == TFormLayout::OpenBlankEnd) FOut.SetEnd(Indent(FOut.End(), FLevel - 1));
    char* out = Append(NewLine(FOut.End(), FLevel), "item");
    if (FIn.PeekValueType() != TValueType::vaList) out = AppendOrder(out, FIn.ReadIntegerValue());
    FOut.SetEnd(Append(out, "\r\n"));
    if (FIn.ReadValueType() != TValueType::vaList)
      FIn.FailAt(FIn.Position() - 1, "an item or the end of a collection");
    Push(TNesting::Item);
    ++FLevel;
  }

  void EndItem() {
    --FDepth;
    --FLevel;
    FOut.Reserve(LineRoom);
    FOut.SetEnd(Append(Indent(FOut.End(), FLevel), "end"));
  }

  // Strings.

  void EndString(std::string_view text) {
    if (text.size() <= StringLineLength) {
      // Nearly all strings are one run between quotes.
      FOut.Reserve(StringLineRoom);
      char* const out = FOut.End();
      *out = '\'';
      const char* end = text.data() + text.size();
      if (CopyPlain(text.data(), end, out + 1) == end) {
        out[text.size() + 1] = '\'';
        FOut.SetEnd(out + text.size() + 2);
        return EndValue();
      }
    }
    WriteStringLines(text);
    EndValue();
  }

  void WriteStringLines(std::string_view text) {
    if (IsOpen()) return WriteWholeString(text);
    if (text.size() > StringLineLength) BreakLine();
    for (std::size_t start = 0; start < text.size();) {
      std::size_t end = std::min(start + StringLineLength, text.size());
      if (FStyle.HighCharacters == THighCharacters::DoubleByte && end < text.size())
        end = BeforeTrailByte(text, start, end);
      WriteStringLine(text.substr(start, end - start));
      start = end;
      if (start < text.size()) {
        Emit(" +");
        BreakLine();
      }
    }
  }

  // A run between quotes ends at a control code alone.
  void WriteWholeString(std::string_view text) {
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
      FOut.Reserve(BlockSize);
      char* out = FOut.End();
      const auto code = static_cast<std::uint8_t>(text[i]);
      const bool plain = code >= ' ';
      if (plain != quoted) *out++ = '\'';
      quoted = plain;
      if (!plain) out = AppendCode(out, code);
      else *out++ = text[i];
      if (code == '\'') *out++ = '\'';
      FOut.SetEnd(out);
    }
    if (quoted) Emit("'");
  }

  void BreakLine() {
    FOut.Reserve(LineRoom);
    FOut.SetEnd(NewLine(FOut.End(), FLevel + 1));
  }

  // Where a line from `start` ends so that no lead byte loses its trail byte.
  static std::size_t BeforeTrailByte(std::string_view text, std::size_t start, std::size_t end) {
    for (std::size_t i = start; i < end; ++i) {
      const auto byte = static_cast<std::uint8_t>(text[i]);
      const bool lead = byte >= 0x81 && byte <= 0xFE;
      if (lead && ++i == end) return end - 1;
    }
    return end;
  }

  void WriteStringLine(std::string_view text) {
    FOut.Reserve(StringLineRoom);
    char* out = FOut.End();
    const char* next = text.data();
    const char* end = next + text.size();
    while (next != end) {
      if (static_cast<std::uint8_t>(*next) < ' ' || *next == '\'') {
        out = AppendCode(out, static_cast<std::uint8_t>(*next++));
        continue;
      }
      *out++ = '\'';
      const char* stop = CopyPlain(next, end, out);
      out += stop - next;
      next = stop;
      *out++ = '\'';
    }
    FOut.SetEnd(out);
  }

  static char* AppendCode(char* out, unsigned code) {
    *out++ = '#';
    return std::to_chars(out, out + 8, code).ptr;
  }

  void WriteWideString() {
    const std::size_t units = FIn.ReadFixed<std::uint32_t>("a wide string");
    WriteUnits(FIn.ReadView(units * 2, "a wide string"));
  }

  void WriteUtf8String() {
    const std::string_view text = FIn.ReadLongString("a UTF-8 string");
    const std::u16string units = Utf16FromUtf8(text);
    // What was no UTF-8 does not come back.
    const std::string back = Utf8FromUtf16(units);
    const auto wrong = std::mismatch(text.begin(), text.end(), back.begin(), back.end()).first;
    if (wrong != text.end())
      FIn.FailAt(FIn.Position() - static_cast<std::size_t>(text.end() - wrong), "valid UTF-8");
    WriteUnits({reinterpret_cast<const char*>(units.data()), units.size() * 2});
  }

  void WriteUnits(std::string_view units) {
    if (IsOpen()) return WriteWholeUnits(units);
    const std::size_t lineBytes = StringLineLength * 2;
    if (units.empty()) Emit("''");
    if (units.size() > lineBytes) BreakLine();
    for (std::size_t start = 0; start < units.size(); start += lineBytes) {
      if (start > 0) {
        Emit(" +");
        BreakLine();
      }
      WriteUnitLine(units.substr(start, lineBytes));
    }
    EndValue();
  }

  void WriteWholeUnits(std::string_view units) {
    bool quoted = units.empty();
    if (quoted) Emit("'");
    for (std::size_t i = 0; i < units.size(); i += 2) {
      FOut.Reserve(BlockSize);
      char* out = FOut.End();
      std::uint16_t unit = 0;
      std::memcpy(&unit, units.data() + i, sizeof unit);
      const bool plain = unit >= ' ' && unit <= 127;
      if (plain != quoted) *out++ = '\'';
      quoted = plain;
      if (plain) *out++ = static_cast<char>(unit);
      else out = AppendCode(out, unit);
      if (unit == '\'') *out++ = '\'';
      FOut.SetEnd(out);
    }
    if (quoted) Emit("'");
    EndValue();
  }

  void WriteUnitLine(std::string_view units) {
    FOut.Reserve(StringLineRoom);
    char* out = FOut.End();
    bool quoted = false;
    for (std::size_t i = 0; i < units.size(); i += 2) {
      std::uint16_t unit = 0;
      std::memcpy(&unit, units.data() + i, sizeof unit);
      const bool plain = unit >= ' ' && unit <= 127 && unit != '\'';
      if (plain != quoted) *out++ = '\'';
      quoted = plain;
      if (plain) *out++ = static_cast<char>(unit);
      else out = AppendCode(out, unit);
    }
    if (quoted) *out++ = '\'';
    FOut.SetEnd(out);
  }

  TByteReader& FIn;
  TByteWriter& FOut;
  const TFormTextStyle& FStyle;
  const char* FInEnd;
  std::size_t FMaxSize;
  std::size_t FLevel = 0;  // of indentation, two blanks each
  std::size_t FDepth = 0;
  std::array<TNesting, MaxFormNesting> FNesting;
};

}  // namespace

void ObjectBinaryToText(TByteReader& binary, TByteWriter& text, const TFormTextStyle& style) {
  const std::size_t start = text.Size();
  TFormTextWriter writer(binary, text, style);
  try {
    writer.WriteObject();
  } catch (...) {
    text.Truncate(start);
    throw;
  }
}

}  // namespace wrenfold
