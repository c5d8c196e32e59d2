// Form files beside units: found, recognised and read into design components.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/stream/DesignComponent.h"
#include "platform/core/stream/FormSource.h"
#include "platform/core/system/Exceptions.h"
#include "project/Conditionals.h"
#include "project/SourceText.h"

namespace wrenfold {

// A form file that cannot be read. The message names the file, the place and what is wrong; the
// place is the first of the file where the trouble has none.
class EFormFileError : public Exception {
 public:
  explicit EFormFileError(const std::string& message, TSourcePlace place = {})
      : Exception(message), FPlace(place) {}
  const TSourcePlace& Place() const { return FPlace; }

 private:
  TSourcePlace FPlace;
};

// .dfm, .xfm, .nfm, .fmx, .lfm, in any letter case.
bool IsFormFileName(std::string_view fileName);

// The form file beside a unit. Where there are several, it is the one that the unit's own resource
// directives name ({$R *.lfm}, #pragma resource "*.dfm") with these symbols defined, else the first
// of them in this order. Empty when there is none.
std::string FindFormFile(const std::string& unitFile,
                         const TDefinedSymbols& symbols = DefaultSymbols());

// The names in the first line of a text form. Both are empty when it is none.
struct TFormHeader {
  std::string FormName;
  std::string ClassName;
};
// Reads no more of the file than its beginning.
TFormHeader ReadFormHeader(const std::string& fileName);

// A form as it was stored.
struct TFormFile {
  std::string FileName;
  TFormFormat Format = TFormFormat::Unknown;
  std::unique_ptr<TDesignComponent> Root;  // owns all components of the form
};
// Reads a form file in its binary, resource or text form. Raises EFormFileError, or EFOpenError
// when the file cannot be read.
TFormFile LoadFormFile(const std::string& fileName);
// The same, and what the file held: to save the form so that all bytes stay that were not changed.
TFormFile LoadFormFile(const std::string& fileName, std::optional<TFormSource>& source);
// The same with the bytes of the file at hand; the file name is for messages.
TFormFile ReadFormFile(std::string bytes, const std::string& fileName);

// Makes the records of classes that exist only in the user's source. The records live as long as
// this object.
class TDesignClasses {
 public:
  // The record of the first class of a chain of names, the nearest first: {"TMain", "TForm"}. The
  // last one gets TDesignComponent for a parent. Equal chains have one record.
  const TTypeInfo& Record(const std::vector<std::string>& chain);

 private:
  std::map<std::vector<std::string>, std::unique_ptr<TTypeInfo>> FRecords;
};

// True when the class or one of its ancestors has that name (letter case ignored): whether the root
// of a form is a "TForm", a "TDataModule", a "TFrame".
bool IsDesignClass(const TTypeInfo& info, std::string_view className);

}  // namespace wrenfold
