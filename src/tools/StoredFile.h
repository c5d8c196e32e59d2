// A file of stored objects taken apart: data header, form, and the binary stream of each root.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/FormText.h"

namespace wrenfold {

// Of UTF-8, in front of a text.
inline constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

enum class TStoredForm { Binary, Resource, Extended, Text };

std::string_view StoredFormName(TStoredForm form);
// False when there is no such form, or none that files are converted to.
bool FindStoredForm(std::string_view name, TStoredForm& form);

// The header "sys_bin" or "sys_txt" in front of the objects.
struct TStoredHeader {
  bool Present = false;
  std::size_t End = 0;  // in the file, of the byte order mark too
  std::string Description;
};

struct TStoredRoot {
  std::string Label;  // the line in front of an object that is no component, in the text form
  std::size_t Start = 0;
  std::size_t Size = 0;
  std::size_t FilePosition = 0;  // of a binary stream
};

// The roots' streams, each with its signature, stand one behind the other in `Streams`. The
// extended form has no class names; its one root is the property lists behind the signature.
struct TStoredFile {
  TStoredForm Form = TStoredForm::Binary;
  bool HasByteOrderMark = false;
  TStoredHeader Header;
  std::vector<TStoredRoot> Roots;
  TByteWriter Streams;

  std::string_view Stream(const TStoredRoot& root) const {
    return Streams.View().substr(root.Start, root.Size);
  }
  // A cursor over it, whose errors name offsets in the file where the file is binary.
  TByteReader Reader(const TStoredRoot& root) const {
    return TByteReader(Stream(root), root.FilePosition);
  }
};

// Takes the bytes of a file apart; text is read in the given style. Raises EReadError or
// EParserError with the place and what was expected.
TStoredFile ParseStoredFile(std::string_view bytes,
                            const TFormTextStyle& style = DefaultFormTextStyle());

// The bytes of a file with the same header and objects in another form. Text gets the byte order
// mark that text had; from binary, it gets one when a name needs it: releases whose names are more
// than ASCII write it just then, whatever the style, and take text without it for the local code
// page. The extended form cannot be converted: EReadError.
void RenderStoredFile(const TStoredFile& file, TStoredForm form, const TFormTextStyle& style,
                      TByteWriter& out);

// The text with each line end as CR LF.
std::string WithCrLf(std::string_view text);

}  // namespace wrenfold
