// A source file as the editor holds it: loaded and saved in the encoding and line ends it has.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "project/TextEncoding.h"

namespace wrenfold {

enum class TDiskState { Same, Changed, Missing };

// The file exists and may not be written, by this user or by anybody.
bool IsReadOnlyFile(const std::string& fileName);

// A text with the file it stands in. Saved without an edit the file has the bytes that it had.
class TTextFile {
 public:
  // Larger files are no sources and are not loaded.
  static constexpr std::int64_t MaxSize = std::int64_t{512} << 20;

  // A new file, which is not on disk before it is saved: UTF-8, CR LF.
  explicit TTextFile(std::string fileName) : FFileName(std::move(fileName)) {}
  // Reads the file; bytes that are not Unicode are of the code page. Raises EFOpenError.
  static TTextFile Load(const std::string& fileName, int codePage = SystemCodePage());

  const std::string& FileName() const { return FFileName; }
  // UTF-8; line ends are those of the file.
  const std::string& Text() const { return FText; }
  // Takes the edited text, UTF-8. Its line ends are kept as they are: lines that were not touched
  // keep theirs, and the editor ends new ones as LineEnds().Majority() says.
  void SetText(std::string text);
  bool Modified() const { return FModified; }

  const TTextFormat& Format() const { return FFormat; }
  // Chooses another encoding for the next Save.
  void SetFormat(const TTextFormat& format);
  const TLineEnds& LineEnds() const { return FLineEnds; }

  // Whether the file on disk still is what was loaded or saved last. Its bytes are read only when
  // its size or time say that it was written to.
  TDiskState DiskState() const;
  // The file is on disk and marked as not to be written, or this user may not write it.
  bool ReadOnly() const;

  // Writes the text in the file's encoding. The old file stays as it was when that fails: raises
  // ETextEncodingError for a character that the encoding lacks, EFCreateError for a read-only file
  // or a failed write.
  void Save();
  // The same under another name, which the text has from then on.
  void SaveAs(const std::string& fileName);

 private:
  struct TStamp {
    std::int64_t Size = -1;
    std::filesystem::file_time_type Time;
    std::size_t Hash = 0;
  };
  static TStamp StampOf(const std::string& fileName);

  std::string FFileName;
  std::string FText;
  TTextFormat FFormat;
  TLineEnds FLineEnds;
  TStamp FStamp;
  bool FModified = false;
};

}  // namespace wrenfold
