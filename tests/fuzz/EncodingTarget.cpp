// Source files of any encoding, decoded for the editor and encoded again.
#include "fuzz/Targets.h"
#include "project/TextEncoding.h"

namespace wrenfold {

void FuzzTextEncoding(std::string_view bytes) {
  constexpr int firstCodePage = 1250;
  constexpr int codePages = 9;
  // Every code page gets its share of inputs.
  const int codePage = firstCodePage + static_cast<int>(bytes.size() % codePages);
  TTextFormat format;
  const std::string text = DecodeText(bytes, codePage, format);
  Promise(EncodeText(text, format, "fuzzed.pas") == bytes, "no byte of a source is lost");
  // Other encodings take the text or name the place of the character that they lack.
  for (TTextFormat other : {TTextFormat{TTextEncoding::Utf16BigEndian},
                            TTextFormat{TTextEncoding::CodePage, firstCodePage + 2}}) {
    Succeeds([&] { EncodeText(text, other, "fuzzed.pas"); }, {"fuzzed.pas"});
  }
  CountLineEnds(text);
}

}  // namespace wrenfold
