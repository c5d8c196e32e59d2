// Moves texts between files and the toolkit's documents without a detour through its strings.
#include "host/documents/UnitDocument.h"

#include <Qsci/qsciscintilla.h>

#include <algorithm>

#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

int EolModeOf(TLineEnd lineEnd) {
  switch (lineEnd) {
    case TLineEnd::Lf:
      return QsciScintilla::SC_EOL_LF;
    case TLineEnd::Cr:
      return QsciScintilla::SC_EOL_CR;
    default:
      return QsciScintilla::SC_EOL_CRLF;
  }
}

}  // namespace

std::string EditorText(const QsciScintilla& editor) {
  const auto size = editor.SendScintilla(QsciScintilla::SCI_GETLENGTH);
  const void* text = editor.SendScintillaPtrResult(QsciScintilla::SCI_GETCHARACTERPOINTER);
  return {static_cast<const char*>(text), static_cast<std::size_t>(size)};
}

TDocumentAccess::TDocumentAccess() : FEditor(new QsciScintilla) {}

TDocumentAccess::~TDocumentAccess() = default;

QsciScintilla& TDocumentAccess::Show(const QsciDocument& document) {
  FEditor->setDocument(document);
  FEditor->setUtf8(true);
  return *FEditor;
}

void TDocumentAccess::SetText(const QsciDocument& document, const std::string& text,
                              TLineEnd lineEnd) {
  QsciScintilla& editor = Show(document);
  editor.SendScintilla(QsciScintilla::SCI_SETREADONLY, 0UL);
  editor.SendScintilla(QsciScintilla::SCI_SETUNDOCOLLECTION, 0UL);
  editor.SendScintilla(QsciScintilla::SCI_CLEARALL);
  editor.SendScintilla(QsciScintilla::SCI_APPENDTEXT, text.size(), text.c_str());
  editor.SendScintilla(QsciScintilla::SCI_SETUNDOCOLLECTION, 1UL);
  editor.SendScintilla(QsciScintilla::SCI_EMPTYUNDOBUFFER);
  editor.SendScintilla(QsciScintilla::SCI_SETEOLMODE, EolModeOf(lineEnd));
  editor.SendScintilla(QsciScintilla::SCI_SETSAVEPOINT);
}

void TDocumentAccess::ReplaceText(const QsciDocument& document, const std::string& text,
                                  TLineEnd lineEnd) {
  QsciScintilla& editor = Show(document);
  editor.SendScintilla(QsciScintilla::SCI_BEGINUNDOACTION);
  editor.SendScintilla(QsciScintilla::SCI_CLEARALL);
  editor.SendScintilla(QsciScintilla::SCI_APPENDTEXT, text.size(), text.c_str());
  editor.SendScintilla(QsciScintilla::SCI_ENDUNDOACTION);
  editor.SendScintilla(QsciScintilla::SCI_SETEOLMODE, EolModeOf(lineEnd));
  editor.SendScintilla(QsciScintilla::SCI_SETSAVEPOINT);
}

std::string TDocumentAccess::Text(const QsciDocument& document) {
  return EditorText(Show(document));
}

std::string TDocumentAccess::TextRange(const QsciDocument& document, std::int64_t position,
                                       std::int64_t count) {
  const QsciScintilla& editor = Show(document);
  const std::int64_t size = editor.SendScintilla(QsciScintilla::SCI_GETLENGTH);
  if (position < 0 || position >= size || count <= 0) return {};
  const void* text = editor.SendScintillaPtrResult(QsciScintilla::SCI_GETCHARACTERPOINTER);
  return {static_cast<const char*>(text) + position,
          static_cast<std::size_t>(std::min(count, size - position))};
}

std::int64_t TDocumentAccess::Length(const QsciDocument& document) {
  return Show(document).SendScintilla(QsciScintilla::SCI_GETLENGTH);
}

void TDocumentAccess::Replace(const QsciDocument& document, std::size_t offset, std::size_t length,
                              const std::string& text) {
  QsciScintilla& editor = Show(document);
  // What only puts in or takes out joins what was typed beside it before, as typing does.
  if (length == 0 && text.find('\0') == std::string::npos)
    editor.SendScintilla(QsciScintilla::SCI_INSERTTEXT, offset, text.c_str());
  else if (text.empty())
    editor.SendScintilla(QsciScintilla::SCI_DELETERANGE, offset, static_cast<long>(length));
  else {
    editor.SendScintilla(QsciScintilla::SCI_SETTARGETRANGE, offset,
                         static_cast<long>(offset + length));
    editor.SendScintilla(QsciScintilla::SCI_REPLACETARGET, text.size(), text.c_str());
  }
}

void TDocumentAccess::ReplaceAll(const QsciDocument& document,
                                 const std::vector<TSourceEdit>& edits) {
  QsciScintilla& editor = Show(document);
  editor.beginUndoAction();
  for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
    editor.SendScintilla(QsciScintilla::SCI_SETTARGETRANGE, edit->Offset,
                         static_cast<long>(edit->Offset + edit->Length));
    editor.SendScintilla(QsciScintilla::SCI_REPLACETARGET, edit->Text.size(), edit->Text.c_str());
  }
  editor.endUndoAction();
}

bool TDocumentAccess::Undo(const QsciDocument& document) {
  QsciScintilla& editor = Show(document);
  editor.SendScintilla(QsciScintilla::SCI_UNDO);
  return editor.SendScintilla(QsciScintilla::SCI_GETMODIFY) == 0;
}

bool TDocumentAccess::Redo(const QsciDocument& document) {
  QsciScintilla& editor = Show(document);
  editor.SendScintilla(QsciScintilla::SCI_REDO);
  return editor.SendScintilla(QsciScintilla::SCI_GETMODIFY) == 0;
}

void TDocumentAccess::SetSavePoint(const QsciDocument& document) {
  Show(document).SendScintilla(QsciScintilla::SCI_SETSAVEPOINT);
}

int TDocumentAccess::LineCount(const QsciDocument& document) {
  return Show(document).lines();
}

void TDocumentAccess::PlaceOf(const QsciDocument& document, long position, int& line, int& column) {
  Show(document).lineIndexFromPosition(static_cast<int>(position), &line, &column);
}

long TDocumentAccess::PositionOf(const QsciDocument& document, int line, int column) {
  return Show(document).positionFromLineIndex(line, column);
}

TUnitDocument::TUnitDocument(TDocumentAccess& access, std::string fileName, const std::string& text)
    : FAccess(access), FFile(std::move(fileName)), FUntitled(true) {
  FFile.SetText(text);
  FAccess.SetText(FDocument, text, FFile.LineEnds().Majority());
}

TUnitDocument::TUnitDocument(TDocumentAccess& access, const std::string& fileName)
    : FAccess(access), FFile(TTextFile::Load(fileName)), FReadOnly(FFile.ReadOnly()) {
  FAccess.SetText(FDocument, FFile.Text(), FFile.LineEnds().Majority());
}

std::string TUnitDocument::Caption() const {
  return ExtractFileNameEx(FileName());
}

void TUnitDocument::SetModified(bool modified) {
  if (FModified == modified) return;
  FModified = modified;
  Changed();
}

void TUnitDocument::ReplaceAll(const std::vector<TSourceEdit>& edits) {
  if (edits.empty()) return;
  FAccess.ReplaceAll(FDocument, edits);
  SetModified(true);
}

void TUnitDocument::Replace(std::size_t offset, std::size_t length, const std::string& text) {
  FAccess.Replace(FDocument, offset, length, text);
  SetModified(true);
}

void TUnitDocument::SaveAs(const std::string& fileName) {
  FFile.SetText(Text());
  FFile.SaveAs(fileName);
  FUntitled = false;
  FReadOnly = FFile.ReadOnly();
  FAccepted = {};
  FModified = false;
  FAccess.SetSavePoint(FDocument);
  Changed();
}

void TUnitDocument::Reload() {
  FFile = TTextFile::Load(FileName());
  FAccess.ReplaceText(FDocument, FFile.Text(), FFile.LineEnds().Majority());
  FAccepted = {};
  FModified = false;
  Changed();
}

TUnitDocument::TAccepted TUnitDocument::PresentState() const {
  std::error_code error;
  return {FFile.DiskState(), FileSize(FileName()),
          std::filesystem::last_write_time(FileName(), error)};
}

TDiskState TUnitDocument::DiskState() {
  if (FUntitled) return TDiskState::Same;
  if (FFile.ReadOnly() != FReadOnly) {
    FReadOnly = !FReadOnly;
    Changed();
  }
  const TAccepted present = PresentState();
  return present == FAccepted ? TDiskState::Same : present.State;
}

void TUnitDocument::AcceptDiskState() {
  FAccepted = PresentState();
}

void TUnitDocument::Changed() {
  if (OnChange) OnChange(*this);
}

}  // namespace wrenfold
