// A text form whose bytes stay where nothing was changed, whatever wrote it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/stream/DesignComponent.h"
#include "platform/core/stream/FormText.h"

namespace wrenfold {

// A text form together with where everything in it stands. The text is never changed: a design tree
// that was read from it is, and Render then writes the form that the tree holds with the bytes of
// the text wherever the tree still says what they say. So a change, its undo, and a second change
// after saving all start from the bytes that the file had.
//
// What is "the same" is decided value by value, and inside collections and lists item by item: one
// changed value changes its own line. Components are recognised by where they were read from
// (TDesignComponent::StoredIndex), so that a renamed or moved one keeps its bytes; one that was
// deleted and read again from its own text is recognised by parent, name and class.
class TFormSpans {
 public:
  // A component in a rendered text: from "object" to behind its "end".
  struct TPlace {
    const TDesignComponent* Component;
    TFormSpan Text;
  };

  // Takes the bytes of one text form, a byte order mark in front included. What is rendered new is
  // rendered in this style, with the line ends and the indent that the text has at that place.
  // Raises EParserError with line and column when the text is no form; what stands behind the
  // form's end must be blank.
  explicit TFormSpans(std::string text, const TFormTextStyle& style = DefaultFormTextStyle());

  const std::string& Text() const { return FText; }
  const TFormTextStyle& Style() const { return *FStyle; }
  void SetStyle(const TFormTextStyle& style) { FStyle = &style; }
  // The same form as a binary component stream.
  std::string_view Stream() const { return FStream.View(); }
  // Everything in the text in its order, what is inside a node behind it; the root is the first.
  const std::vector<TFormNode>& Nodes() const { return FNodes; }

  // The form as design components, which the caller owns; they need this object no more. Any number
  // of trees can be read.
  std::unique_ptr<TDesignComponent> ReadForm() const;

  // The text of the form that `root`, which ReadForm gave, holds now. Appends the places of all its
  // components in the order of the text, when they are asked for. Costs one pass over text and
  // tree. A value that the style cannot hold as text raises EReadError.
  std::string Render(const TDesignComponent& root, std::vector<TPlace>* places = nullptr) const;

 private:
  std::string FText;
  const TFormTextStyle* FStyle;
  TByteWriter FStream;
  std::vector<TFormNode> FNodes;
  std::vector<std::size_t> FComponents;  // the nodes of the components, in stored order
  bool FCrLf = true;                     // how most lines of the text end
};

// Appends where the components of a form stand in a text that says what the form does, in the order
// of the text.
void FindFormPlaces(std::string_view text, const TDesignComponent& root,
                    std::vector<TFormSpans::TPlace>& places);

}  // namespace wrenfold
