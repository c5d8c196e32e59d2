// Gives lexers their colours from one table a language.
#include "platform/source/Highlighting.h"

#include <Qsci/qscilexercpp.h>
#include <Qsci/qscilexerpascal.h>
#include <Qsci/qsciscintilla.h>

#include <QApplication>
#include <QFontDatabase>
#include <QPalette>
#include <array>

#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

struct TFileKind {
  std::string_view Extension;
  THighlighting Highlighting;
};
constexpr TFileKind FileKinds[] = {
    {".pas", THighlighting::Pascal}, {".dpr", THighlighting::Pascal},
    {".dpk", THighlighting::Pascal}, {".lpr", THighlighting::Pascal},
    {".inc", THighlighting::Pascal}, {".pp", THighlighting::Pascal},
    {".dfm", THighlighting::Pascal}, {".xfm", THighlighting::Pascal},
    {".fmx", THighlighting::Pascal}, {".lfm", THighlighting::Pascal},
    {".cpp", THighlighting::Cpp},    {".cc", THighlighting::Cpp},
    {".cxx", THighlighting::Cpp},    {".c", THighlighting::Cpp},
    {".h", THighlighting::Cpp},      {".hpp", THighlighting::Cpp},
    {".bpr", THighlighting::Cpp},
};

// What a piece of source is. Each has one colour on a light ground and one on a dark one.
enum TTint { tiText, tiKeyword, tiComment, tiText2, tiNumber, tiDirective, tiAssembler, tiWrong };
struct TTintColours {
  QRgb Light;
  QRgb Dark;
  bool Bold;
  bool Italic;
};
constexpr std::array<TTintColours, 8> Tints{{
    {0, 0, false, false},  // the palette's text
    {0xff1f3d8f, 0xff8ab4f8, true, false},
    {0xff4f7358, 0xff8cb08f, false, true},
    {0xffa3341e, 0xffe8a87c, false, false},
    {0xff7a3e9d, 0xffc9a0e8, false, false},
    {0xff85600d, 0xffd9c16a, false, false},
    {0xff4a5560, 0xffb4bec8, false, false},
    {0xffc4161c, 0xffff8a80, false, false},
}};

struct TStyleTint {
  int Style;
  TTint Tint;
};
constexpr TStyleTint PascalStyles[] = {
    {QsciLexerPascal::Comment, tiComment},
    {QsciLexerPascal::CommentParenthesis, tiComment},
    {QsciLexerPascal::CommentLine, tiComment},
    {QsciLexerPascal::PreProcessor, tiDirective},
    {QsciLexerPascal::PreProcessorParenthesis, tiDirective},
    {QsciLexerPascal::Number, tiNumber},
    {QsciLexerPascal::HexNumber, tiNumber},
    {QsciLexerPascal::Keyword, tiKeyword},
    {QsciLexerPascal::SingleQuotedString, tiText2},
    {QsciLexerPascal::UnclosedString, tiWrong},
    {QsciLexerPascal::Character, tiText2},
    {QsciLexerPascal::Asm, tiAssembler},
};
constexpr TStyleTint CppStyles[] = {
    {QsciLexerCPP::Comment, tiComment},
    {QsciLexerCPP::CommentLine, tiComment},
    {QsciLexerCPP::CommentDoc, tiComment},
    {QsciLexerCPP::CommentLineDoc, tiComment},
    {QsciLexerCPP::Number, tiNumber},
    {QsciLexerCPP::Keyword, tiKeyword},
    {QsciLexerCPP::KeywordSet2, tiKeyword},
    {QsciLexerCPP::DoubleQuotedString, tiText2},
    {QsciLexerCPP::SingleQuotedString, tiText2},
    {QsciLexerCPP::RawString, tiText2},
    {QsciLexerCPP::EscapeSequence, tiText2},
    {QsciLexerCPP::UnclosedString, tiWrong},
    {QsciLexerCPP::PreProcessor, tiDirective},
};

// The lexers of the toolkit bring styles with fonts and grounds of their own, 0 to 127.
constexpr int StyleCount = 128;

// The toolkit's words, but for a directive of long ago that is the name of a namespace today.
class TPascalLexer final : public QsciLexerPascal {
 public:
  TPascalLexer() {
    for (const QByteArray& word : QByteArray(QsciLexerPascal::keywords(1)).split(' '))
      if (word != "winapi") FWords += word + ' ';
  }
  const char* keywords(int set) const override {
    return set == 1 ? FWords.constData() : QsciLexerPascal::keywords(set);
  }

 private:
  QByteArray FWords;
};

bool DarkGround() {
  return QApplication::palette().color(QPalette::Base).lightness() < 128;
}

QFont SourceFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setFixedPitch(true);
  return font;
}

template <class Table>
void ColourLexer(QsciLexer& lexer, const Table& styles) {
  const QPalette palette = QApplication::palette();
  const QFont font = SourceFont();
  lexer.setDefaultFont(font);
  lexer.setDefaultColor(palette.color(QPalette::Text));
  lexer.setDefaultPaper(palette.color(QPalette::Base));
  lexer.setFont(font, -1);
  lexer.setColor(palette.color(QPalette::Text), -1);
  lexer.setPaper(palette.color(QPalette::Base), -1);
  for (int style = 0; style < StyleCount; ++style) lexer.setEolFill(false, style);
  for (const TStyleTint& entry : styles) {
    const TTintColours& tint = Tints[entry.Tint];
    QFont styled = font;
    styled.setBold(tint.Bold);
    styled.setItalic(tint.Italic);
    lexer.setFont(styled, entry.Style);
    lexer.setColor(QColor::fromRgba(DarkGround() ? tint.Dark : tint.Light), entry.Style);
  }
}

}  // namespace

THighlighting HighlightingOf(std::string_view fileName) {
  const std::string extension = LowerCase(ExtractFileExt(fileName));
  for (const TFileKind& kind : FileKinds)
    if (kind.Extension == extension) return kind.Highlighting;
  return THighlighting::None;
}

THighlighter::THighlighter(QsciScintilla& editor)
    : FEditor(editor), FPascal(new TPascalLexer), FCpp(new QsciLexerCPP) {
  Recolour();
}

THighlighter::~THighlighter() {
  FEditor.setLexer(nullptr);
}

QsciLexer* THighlighter::LexerOf(THighlighting highlighting) {
  switch (highlighting) {
    case THighlighting::Pascal:
      return FPascal.get();
    case THighlighting::Cpp:
      return FCpp.get();
    default:
      return nullptr;
  }
}

void THighlighter::Apply(THighlighting highlighting) {
  FEditor.setLexer(LexerOf(highlighting));
  ColourEditor();
}

void THighlighter::Recolour() {
  ColourLexer(*FPascal, PascalStyles);
  ColourLexer(*FCpp, CppStyles);
  ColourEditor();
}

void THighlighter::ColourEditor() {
  const QPalette palette = QApplication::palette();
  const QColor base = palette.color(QPalette::Base);
  const QColor text = palette.color(QPalette::Text);
  const bool dark = DarkGround();
  if (FEditor.lexer() == nullptr) {
    FEditor.setFont(SourceFont());
    FEditor.setColor(text);
    FEditor.setPaper(base);
  }
  FEditor.setMarginsFont(SourceFont());
  FEditor.setMarginsBackgroundColor(dark ? base.lighter(118) : base.darker(104));
  FEditor.setMarginsForegroundColor(palette.color(QPalette::Disabled, QPalette::Text));
  FEditor.setCaretForegroundColor(text);
  FEditor.setCaretLineBackgroundColor(dark ? base.lighter(125) : base.darker(103));
  FEditor.setSelectionBackgroundColor(palette.color(QPalette::Highlight));
  FEditor.setSelectionForegroundColor(palette.color(QPalette::HighlightedText));
  FEditor.setMatchedBraceBackgroundColor(dark ? base.lighter(180) : base.darker(112));
  FEditor.setMatchedBraceForegroundColor(text);
}

}  // namespace wrenfold
