#include "tools/StoredFile.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/core/text/Unicode.h"
#include "tools/StoredWalk.h"

namespace wrenfold {
namespace {

constexpr std::string_view BinaryLabel = "sys_bin";
constexpr std::string_view TextLabel = "sys_txt";
constexpr std::string_view StoredLabel = "stored Instance --> ";
constexpr std::string_view WrapperClass = "TWrapper";
constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t MaxBinaryDescription = 255;

struct TFormName {
  std::string_view Name;
  TStoredForm Form;
};
constexpr TFormName FormNames[] = {{"binary", TStoredForm::Binary},
                                   {"resource", TStoredForm::Resource},
                                   {"text", TStoredForm::Text},
                                   {"extended", TStoredForm::Extended}};

// The next line without its end; `position` moves behind the end.
std::string_view TakeLine(std::string_view text, std::size_t& position) {
  const std::size_t end = std::min(text.find('\n', position), text.size());
  std::string_view line = text.substr(position, end - position);
  position = std::min(end + 1, text.size());
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

bool StartsObject(std::string_view text, std::size_t position) {
  const std::size_t start = text.find_first_not_of(" \t\r\n\v\f", position);
  if (start == std::string_view::npos) return false;
  for (const std::string_view word : {"object ", "inherited ", "inline "}) {
    if (text.size() - start < word.size()) continue;
    const std::string_view found = text.substr(start, word.size());
    if (std::equal(word.begin(), word.end(), found.begin(),
                   [](char left, char right) { return left == (right | 0x20); }))
      return true;
  }
  return false;
}

void ParseTextRoots(std::string_view text, std::size_t position, const TFormTextStyle& style,
                    TStoredFile& file) {
  file.Form = TStoredForm::Text;
  do {
    TStoredRoot root;
    if (!StartsObject(text, position)) {
      // A line that names an object which is no component; anything else fails in the converter.
      std::size_t next = position;
      const std::string_view line = TakeLine(text, next);
      if (StartsObject(text, next)) {
        root.Label = line;
        position = next;
      }
    }
    root.Start = file.Streams.Size();
    ObjectTextToBinary(text, position, file.Streams, style);
    root.Size = file.Streams.Size() - root.Start;
    file.Roots.push_back(std::move(root));
  } while (!AtTextEnd(text, position));
}

void ParseText(std::string_view bytes, std::size_t position, const TFormTextStyle& style,
               TStoredFile& file) {
  if (!style.KeepsBlanks) return ParseTextRoots(bytes, position, style, file);
  // Blank lines are kept as they will be written.
  ParseTextRoots(WithCrLf(bytes), WithCrLf(bytes.substr(0, position)).size(), style, file);
}

void AddRoot(std::string_view bytes, std::size_t start, std::size_t end, TStoredFile& file) {
  file.Roots.push_back({{}, file.Streams.Size(), end - start, start});
  file.Streams.WriteBytes(bytes.substr(start, end - start));
}

// One "TPF0", then property lists without class names; `reader` stands behind the signature.
bool IsExtended(TByteReader reader) {
  try {
    do {
      reader.SkipProperties();
    } while (!reader.AtEnd());
    return true;
  } catch (const EReadError&) {
    return false;
  }
}

// Reads the component at the cursor. False when there are property lists up to the end instead.
bool SkipRoot(TByteReader& reader, bool mayBeExtended) {
  reader.ReadSignature();
  const TByteReader behindSignature = reader;
  try {
    reader.SkipComponent();
    if (!reader.AtEnd() && reader.PeekByte("a stored object") != ResourceMark)
      TByteReader(reader).ReadSignature();
    return true;
  } catch (const EReadError&) {
    if (!mayBeExtended || !IsExtended(behindSignature)) throw;
    reader.Seek(reader.Size());
    return false;
  }
}

void ParseBinaryRoots(std::string_view bytes, std::size_t position, TStoredFile& file) {
  TByteReader reader(bytes);
  reader.Seek(position);
  do {
    const bool isResource = reader.PeekByte("a stored object") == ResourceMark;
    std::uint32_t size = 0;
    if (isResource) {
      std::string_view name;
      reader.ReadResourceHeader(name, size);
      file.Form = TStoredForm::Resource;
    }
    const std::size_t start = reader.Position();
    if (size > reader.Left()) reader.FailAt(start - 4, "a resource size within the data");
    if (!SkipRoot(reader, file.Roots.empty())) file.Form = TStoredForm::Extended;
    if (isResource && reader.Position() - start != size)
      reader.FailAt(start - 4, "the size of the stream that follows");
    AddRoot(bytes, start, reader.Position(), file);
  } while (!reader.AtEnd());
}

// A data header, when the bytes start with one; returns its size.
std::size_t ParseHeader(std::string_view bytes, TStoredHeader& header) {
  const std::string_view label = bytes.substr(0, BinaryLabel.size());
  if (label == BinaryLabel) {
    TByteReader reader(bytes);
    reader.Seek(BinaryLabel.size());
    if (reader.ReadByte("a resource flag") > 1)
      reader.FailAt(BinaryLabel.size(), "a resource flag of 0 or 1");
    header.Description = reader.ReadShortString("a description");
    header.Present = true;
    return reader.Position();
  }
  if (label != TextLabel) return 0;
  std::size_t position = 0;
  header.Description = TakeLine(bytes, position).substr(TextLabel.size());
  if (header.Description.starts_with(' ')) header.Description.erase(0, 1);
  TakeLine(bytes, position);  // the underline
  header.Present = true;
  return position;
}

void RenderHeader(const TStoredHeader& header, TStoredForm form, TByteWriter& out) {
  if (!header.Present) return;
  if (form == TStoredForm::Text) {
    std::string line(TextLabel);
    if (!header.Description.empty()) line += " " + header.Description;
    const std::string underline(line.size(), '-');
    for (const std::string& text : {line, underline}) {
      out.WriteBytes(text);
      out.WriteBytes(LineEnd);
    }
    return;
  }
  out.WriteBytes(BinaryLabel);
  out.WriteByte(form == TStoredForm::Resource ? 1 : 0);
  out.WriteShortString(std::string_view(header.Description).substr(0, MaxBinaryDescription));
}

struct TRootNames {
  std::string_view Class;
  std::string_view Name;
};

TRootNames ReadRootNames(std::string_view stream) {
  TByteReader reader(stream);
  reader.ReadSignature();
  if ((reader.ReadFilerFlags() & ffChildPos) != 0) reader.ReadIntegerValue();
  TRootNames names;
  names.Class = reader.ReadShortString("a class name");
  names.Name = reader.ReadShortString("an object name");
  return names;
}

bool IsUtf8Name(std::string_view name) {
  const bool isAscii =
      std::all_of(name.begin(), name.end(), [](char c) { return (c & 0x80) == 0; });
  return !isAscii && Utf8FromUtf16(Utf16FromUtf8(name)) == name;
}

bool HasUtf8Identifier(const TStoredPart& part) {
  TByteReader reader(part.Value);
  if (part.Type != TValueType::vaIdent && part.Type != TValueType::vaSet) return false;
  reader.ReadValueType();
  while (!reader.AtEnd())
    if (IsUtf8Name(reader.ReadShortString("an identifier"))) return true;
  return false;
}

bool NeedsByteOrderMark(const TStoredFile& file) {
  bool needed = false;
  for (const TStoredRoot& root : file.Roots)
    WalkParts(file.Reader(root), [&](const TStoredPart& part, std::size_t, std::size_t) {
      needed =
          needed || IsUtf8Name(part.ClassName) || IsUtf8Name(part.Name) || HasUtf8Identifier(part);
    });
  return needed;
}

void RenderTextRoot(const TStoredFile& file, const TStoredRoot& root, const TFormTextStyle& style,
                    TByteWriter& out) {
  std::string label = root.Label;
  if (label.empty()) {
    const TRootNames names = ReadRootNames(file.Stream(root));
    if (names.Class == WrapperClass) {
      label = StoredLabel;
      label += names.Name.empty() ? names.Class : names.Name;
    }
  }
  if (!label.empty()) {
    out.WriteBytes(label);
    out.WriteBytes(LineEnd);
  }
  TByteReader reader = file.Reader(root);
  ObjectBinaryToText(reader, out, style);
}

}  // namespace

std::string_view StoredFormName(TStoredForm form) {
  for (const TFormName& row : FormNames)
    if (row.Form == form) return row.Name;
  return {};
}

bool FindStoredForm(std::string_view name, TStoredForm& form) {
  for (const TFormName& row : FormNames) {
    if (row.Name != name || row.Form == TStoredForm::Extended) continue;
    form = row.Form;
    return true;
  }
  return false;
}

TStoredFile ParseStoredFile(std::string_view bytes, const TFormTextStyle& style) {
  TStoredFile file;
  file.HasByteOrderMark = bytes.starts_with(ByteOrderMark);
  const std::size_t mark = file.HasByteOrderMark ? ByteOrderMark.size() : 0;
  const std::size_t position = mark + ParseHeader(bytes.substr(mark), file.Header);
  file.Header.End = position;
  const bool textHeader = file.Header.Present && bytes.substr(mark).starts_with(TextLabel);
  switch (textHeader ? TFormFormat::Text : TestFormFormat(bytes.substr(position))) {
    case TFormFormat::Binary:
    case TFormFormat::Resource:
      ParseBinaryRoots(bytes, position, file);
      break;
    case TFormFormat::Text:
      ParseText(bytes, position, style, file);
      break;
    case TFormFormat::Unknown:
      // A label may stand in front of the first object.
      if (bytes.substr(position).starts_with(StoredLabel)) {
        ParseText(bytes, position, style, file);
        break;
      }
      TByteReader(bytes).FailAt(position, "\"TPF0\", a resource header or \"object\"");
  }
  return file;
}

void RenderStoredFile(const TStoredFile& file, TStoredForm form, const TFormTextStyle& style,
                      TByteWriter& out) {
  if (file.Form == TStoredForm::Extended)
    throw EReadError("The extended form has no class names and cannot be converted");
  const bool isFromText = file.Form == TStoredForm::Text;
  if (form == TStoredForm::Text &&
      (file.HasByteOrderMark || (!isFromText && NeedsByteOrderMark(file))))
    out.WriteBytes(ByteOrderMark);
  RenderHeader(file.Header, form, out);
  for (const TStoredRoot& root : file.Roots) {
    const std::string_view stream = file.Stream(root);
    switch (form) {
      case TStoredForm::Text:
        RenderTextRoot(file, root, style, out);
        break;
      case TStoredForm::Resource: {
        const std::size_t size = out.WriteResourceHeader(ReadRootNames(stream).Class);
        out.PatchFixed(size, static_cast<std::uint32_t>(stream.size()));
        out.WriteBytes(stream);
        break;
      }
      default:
        out.WriteBytes(stream);
    }
  }
}

std::string WithCrLf(std::string_view text) {
  std::string result;
  result.reserve(text.size() + text.size() / 16);
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) {
      result.append(text.substr(start));
      break;
    }
    result.append(text.substr(start, end - start));
    if (result.empty() || result.back() != '\r') result.push_back('\r');
    result.push_back('\n');
    start = end + 1;
  }
  return result;
}

}  // namespace wrenfold
