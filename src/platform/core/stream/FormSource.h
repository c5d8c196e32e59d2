// The bytes of a form file in any form, and what they become when the form is changed.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/stream/FormSpans.h"

namespace wrenfold {

// Holds what a form file held when it was read. Whatever is changed in the tree that ReadForm
// gives, Render writes it in the form that the file had: a text keeps its bytes wherever the tree
// still says the same, a stream differs in the changed values alone, a resource keeps its header.
class TFormSource {
 public:
  // Raises EParserError or EReadError with the place when the bytes are no form. The extension of
  // the file name tells which rendering of text comes first, where several would give this text.
  TFormSource(std::string bytes, std::string_view fileName);
  TFormSource(TFormSource&&) noexcept = default;
  TFormSource& operator=(TFormSource&&) noexcept = default;
  ~TFormSource() = default;

  TFormFormat Format() const { return FFormat; }
  // The style of a text, and the one that other forms are shown as text in.
  const TFormTextStyle& Style() const { return *FStyle; }
  // A tree of design components, which the caller owns; it does not need this object.
  std::unique_ptr<TDesignComponent> ReadForm() const;

  // The bytes of a file that holds the form of `root`, which ReadForm gave. Raises EReadError for a
  // value that a text cannot hold.
  std::string Render(const TDesignComponent& root) const;
  // The same as text, whatever the file is. Appends where its components stand, if that is asked
  // for.
  std::string RenderText(const TDesignComponent& root,
                         std::vector<TFormSpans::TPlace>* places = nullptr) const;

 private:
  std::string RenderResource(const TDesignComponent& root) const;
  std::string_view StreamOfResource(std::size_t* sizePosition = nullptr) const;

  TFormFormat FFormat;
  const TFormTextStyle* FStyle = &DefaultFormTextStyle();
  std::unique_ptr<TFormSpans> FSpans;  // of a text
  std::string FBytes;                  // of another form
};

// The style that renders a form as this text, line ends aside; the first of several. Where none
// does, the one that comes farthest. `first` is tried before all others, null for none.
const TFormTextStyle& FindStyleOfText(std::string_view text, std::string_view stream,
                                      const TFormTextStyle* first = nullptr);

}  // namespace wrenfold
