// The colours of source texts: Pascal, C++ and form texts, on light and dark grounds.
#pragma once

#include <memory>
#include <string_view>

class QsciLexer;
class QsciScintilla;

namespace wrenfold {

enum class THighlighting { None, Pascal, Cpp };

// By the extension of the file name.
THighlighting HighlightingOf(std::string_view fileName);

// Gives an editor the colours of a language, fitting the palette of the moment. Lexers are made
// once and reused; the editor must not outlive this object.
class THighlighter {
 public:
  explicit THighlighter(QsciScintilla& editor);
  ~THighlighter();

  // For the document that the editor shows now.
  void Apply(THighlighting highlighting);
  // The palette changed.
  void Recolour();

 private:
  QsciLexer* LexerOf(THighlighting highlighting);
  void ColourEditor();

  QsciScintilla& FEditor;
  std::unique_ptr<QsciLexer> FPascal;
  std::unique_ptr<QsciLexer> FCpp;
};

}  // namespace wrenfold
