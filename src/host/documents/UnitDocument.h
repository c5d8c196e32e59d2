// A source text open in the workbench: its file and the toolkit's document that its views edit.
#pragma once

#include <Qsci/qscidocument.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/source/Highlighting.h"
#include "project/SourceText.h"
#include "project/TextFile.h"

class QsciScintilla;

namespace wrenfold {

// Reaches into documents that no editor shows at the moment. One is enough for all of them.
class TDocumentAccess {
 public:
  TDocumentAccess();
  ~TDocumentAccess();

  // What the document held is forgotten, what was done to it as well.
  void SetText(const QsciDocument& document, const std::string& text, TLineEnd lineEnd);
  // The same as one edit that the user can undo.
  void ReplaceText(const QsciDocument& document, const std::string& text, TLineEnd lineEnd);
  // UTF-8 with the line ends that it has.
  std::string Text(const QsciDocument& document);
  // The bytes from an offset on; fewer than count when the text ends before.
  std::string TextRange(const QsciDocument& document, std::int64_t position, std::int64_t count);
  std::int64_t Length(const QsciDocument& document);
  // Bytes of the text, which the user can undo as one edit.
  void Replace(const QsciDocument& document, std::size_t offset, std::size_t length,
               const std::string& text);
  // In the order of their offsets; undone as one edit.
  void ReplaceAll(const QsciDocument& document, const std::vector<TSourceEdit>& edits);
  // Take back or make again one step. Answer whether the text is as it was saved.
  bool Undo(const QsciDocument& document);
  bool Redo(const QsciDocument& document);
  void SetSavePoint(const QsciDocument& document);
  int LineCount(const QsciDocument& document);
  // Positions are bytes; lines and columns (characters) count from 0.
  void PlaceOf(const QsciDocument& document, long position, int& line, int& column);
  long PositionOf(const QsciDocument& document, int line, int column);

 private:
  QsciScintilla& Show(const QsciDocument& document);

  std::unique_ptr<QsciScintilla> FEditor;
};

// The text of the editor's present document, UTF-8.
std::string EditorText(const QsciScintilla& editor);

// One open source file. Views share its document, so that an edit shows in all of them.
class TUnitDocument {
 public:
  // A new unit, on disk only when it was saved.
  TUnitDocument(TDocumentAccess& access, std::string fileName, const std::string& text);
  // Raises EFOpenError.
  TUnitDocument(TDocumentAccess& access, const std::string& fileName);

  const std::string& FileName() const { return FFile.FileName(); }
  // What a tab shows: the bare name.
  std::string Caption() const;
  const QsciDocument& Document() const { return FDocument; }
  const TTextFile& File() const { return FFile; }
  THighlighting Highlighting() const { return HighlightingOf(FileName()); }
  // True for a unit that was never saved.
  bool Untitled() const { return FUntitled; }
  // As of the last look at the disk.
  bool ReadOnly() const { return FReadOnly; }
  // Chooses another encoding for the next save.
  void SetFormat(const TTextFormat& format) { FFile.SetFormat(format); }

  bool Modified() const { return FModified; }
  // The editor that shows the document reports edits and undone edits.
  void SetModified(bool modified);
  // The text as it stands, edits included.
  std::string Text() const { return FAccess.Text(FDocument); }
  std::string TextRange(std::int64_t position, std::int64_t count) const {
    return FAccess.TextRange(FDocument, position, count);
  }
  // As the user would edit it: can be undone, and is not saved.
  void Replace(std::size_t offset, std::size_t length, const std::string& text);
  void Undo() { SetModified(!FAccess.Undo(FDocument)); }
  void Redo() { SetModified(!FAccess.Redo(FDocument)); }
  // The same at several places, in the order of their offsets; undone as one edit.
  void ReplaceAll(const std::vector<TSourceEdit>& edits);
  int LineCount() const { return FAccess.LineCount(FDocument); }
  std::int64_t Length() const { return FAccess.Length(FDocument); }
  void PlaceOf(long position, int& line, int& column) const {
    FAccess.PlaceOf(FDocument, position, line, column);
  }
  long PositionOf(int line, int column) const {
    return FAccess.PositionOf(FDocument, line, column);
  }

  // Raises what TTextFile::SaveAs raises; document and file then are as they were.
  void Save() { SaveAs(FileName()); }
  void SaveAs(const std::string& fileName);
  // Takes the file as it stands on disk now; undoing brings the edits back. Raises EFOpenError.
  void Reload();

  // Whether the file on disk is another one than that loaded, saved or last accepted.
  TDiskState DiskState();
  // The user keeps the text of the editor: the present file on disk is no longer news.
  void AcceptDiskState();

  // After every change of the modified state, name or file.
  std::function<void(TUnitDocument&)> OnChange;

 private:
  struct TAccepted {
    TDiskState State = TDiskState::Same;
    std::int64_t Size = -1;
    std::filesystem::file_time_type Time;
    friend bool operator==(const TAccepted&, const TAccepted&) = default;
  };
  TAccepted PresentState() const;
  void Changed();

  TDocumentAccess& FAccess;
  TTextFile FFile;
  QsciDocument FDocument;
  TAccepted FAccepted;
  bool FUntitled = false;
  bool FReadOnly = false;
  bool FModified = false;
};

}  // namespace wrenfold
