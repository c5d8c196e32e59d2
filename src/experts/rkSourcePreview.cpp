#include "experts/rkSourcePreview.h"

#include <QEvent>

#include "platform/widgets/Guard.h"

namespace wrenfold {

namespace {

constexpr std::int64_t Chunk = 1 << 20;  // bytes that are asked of an editor at once
constexpr int MarginPadding = 2;         // characters beside the line numbers

std::string TextOf(IOTASourceEditor& editor) {
  std::string text;
  for (;;) {
    const std::string part = editor.GetText(static_cast<std::int64_t>(text.size()), Chunk);
    text += part;
    if (static_cast<std::int64_t>(part.size()) < Chunk) return text;
  }
}

}  // namespace

TSourcePreview::TSourcePreview(QWidget* parent) : QsciScintilla(parent), FHighlighter(*this) {
  setUtf8(true);
  setReadOnly(true);
  setMarginType(0, QsciScintilla::NumberMargin);
  setMarginWidth(1, 4);
  setTabWidth(8);
  setScrollWidth(1);
  setScrollWidthTracking(true);
  connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
          [this](int position, int type, const char* text, int length) {
            GuardedWhile(this, nullptr, [&] { TextModified(position, type, text, length); });
          });
}

void TSourcePreview::ShowSource(TIntf<IOTASourceEditor> editor, bool readOnly) {
  Clear();
  if (!editor) return;
  SetText(TextOf(*editor));
  FHighlighter.Apply(HighlightingOf(editor->GetFileName()));
  if (!readOnly) FWriter = Supports<IOTATextWriter>(editor.get());
  setReadOnly(!FWriter);
  setCaretLineVisible(static_cast<bool>(FWriter));
}

void TSourcePreview::Clear() {
  FWriter = nullptr;
  FEdited = false;
  SetText({});
}

// The bytes as they are, and new lines as the text has them.
void TSourcePreview::SetText(const std::string& text) {
  FFilling = true;
  setReadOnly(false);
  SendScintilla(SCI_CLEARALL);
  SendScintilla(SCI_ADDTEXT, text.size(), text.c_str());
  SendScintilla(SCI_SETEMPTYSELECTION, 0UL);
  SendScintilla(SCI_SETFIRSTVISIBLELINE, 0UL);
  SendScintilla(SCI_EMPTYUNDOBUFFER);
  setEolMode(text.find("\r\n") != std::string::npos ? EolWindows : EolUnix);
  setMarginWidth(0, QString(QString::number(lines()).size() + MarginPadding, '0'));
  setReadOnly(true);
  FFilling = false;
}

void TSourcePreview::TextModified(int position, int type, const char* text, int length) {
  if (FFilling || !FWriter) return;
  if (type & SC_MOD_INSERTTEXT)
    FWriter->Replace(position, 0, std::string(text, static_cast<std::size_t>(length)));
  else if (type & SC_MOD_DELETETEXT) FWriter->Replace(position, length, {});
  else return;
  FEdited = true;
}

void TSourcePreview::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) FHighlighter.Recolour();
}

}  // namespace wrenfold
