// A file with one form, to be changed and given back in the form and with the bytes that it had.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/core/stream/FormSpans.h"
#include "tools/StoredFile.h"

namespace wrenfold {

class TFormDocument {
 public:
  // Takes the bytes of a file in any form. Raises EReadError or EParserError for what cannot be
  // read, and for a file that holds something beside one object.
  explicit TFormDocument(std::string bytes);

  TDesignComponent& Root() { return *FRoot; }
  const TDesignComponent& Root() const { return *FRoot; }
  // The file with what the root holds now: a text keeps its bytes wherever nothing changed, and a
  // file without a change is the same.
  std::string Bytes() const;
  // The text of a value, as it would stand behind "=" in a text form of the file's style.
  std::string TextOf(std::string_view value) const;

 private:
  std::string FBytes;
  TStoredFile FFile;
  const TFormTextStyle* FStyle = &DefaultFormTextStyle();
  std::optional<TFormSpans> FSpans;  // of a text
  std::unique_ptr<TDesignComponent> FRoot;
};

// The bytes of a value that is written as in a text form. Raises EParserError.
std::string ValueOfText(std::string_view text);

}  // namespace wrenfold
