// Saves and loads lists of objects without a wrapper, with events around every step.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/Event.h"
#include "storage/rkDataBody.h"
#include "storage/rkFilteringWriter.h"
#include "storage/rkFitReader.h"
#include "storage/rkFitWriter.h"

namespace wrenfold {

enum TStreamOriginalFormat : std::uint8_t { sofUnknown, sofBinary, sofText };

// What the first bytes say: $FF or "TPF0" binary; a tab, vertical tab, CR, blank or the first
// letter of "object" or "inherited" text.
TStreamOriginalFormat RecognizeFormat(std::string_view bytes);

class TObjectSaver;
using TBeforeCreateReader = TEvent<void(TObjectSaver&, TStream&, std::unique_ptr<TFitReader>&)>;
using TAfterCreateReader = TEvent<void(TObjectSaver&, TFitReader&)>;
using TBeforeCreateWriter = TEvent<void(TObjectSaver&, TStream&, std::unique_ptr<TFitWriter>&)>;
using TAfterCreateWriter = TEvent<void(TObjectSaver&, TFitWriter&)>;
using TBeforeReadObject = TEvent<void(TObjectSaver&, TPersistent*, TFitReader&, bool& allowRead)>;
using TAfterReadObject =
    TEvent<void(TObjectSaver&, TPersistent*, TFitReader&, const std::string& objectName)>;
using TBeforeWriteObject = TEvent<void(TObjectSaver&, TPersistent*, const std::string& objectName,
                                       TFitWriter&, bool& allowWrite)>;
using TAfterWriteObject =
    TEvent<void(TObjectSaver&, TPersistent*, const std::string& objectName, TFitWriter&)>;

// Null objects of an array are skipped: what is stored for them is read over.
class TObjectSaver : public TObject {
 public:
  // Loading recognises the stored form and keeps it in OriginalFormat.
  bool RecognitionOn = false;
  int BufferSize = 4096;
  // Readers go on at a property that cannot be read, instead of asking the user.
  bool IgnoreErrors = false;
  TFitWriterOptions WriterOptions;
  // The form to write, and after a load that recognises it the form found.
  TStreamOriginalFormat OriginalFormat = sofBinary;

  TBeforeCreateReader OnBeforeCreateReader;
  TAfterCreateReader OnAfterCreateReader;
  TBeforeCreateWriter OnBeforeCreateWriter;
  TAfterCreateWriter OnAfterCreateWriter;
  TBeforeReadObject OnBeforeReadObject;
  TAfterReadObject OnAfterReadObject;
  TBeforeWriteObject OnBeforeWriteObject;
  TAfterWriteObject OnAfterWriteObject;

  // Raise EFitReaderError for a form that is not recognised, EReadError or EParserError for a
  // broken one. Objects stay as far as they were read.
  void LoadObjects(TPersistentArray objects, TStream& stream);
  void LoadObjectBinary(TPersistentArray objects, TStream& stream);
  void LoadObjectText(TPersistentArray objects, TStream& stream);
  // Failures are EFitReaderError and name the file.
  void LoadObjects(TPersistentArray objects, const std::string& fileName);
  // Answers false when there is no such file or it is empty. The whole file is checked before an
  // object changes, and when reading fails all the same, the objects get their old values back; the
  // failure is raised as by LoadObjects.
  bool SafeLoadObjects(TPersistentArray objects, const std::string& fileName);

  // An object without a name in `names` is stored under the name path of a component, else without
  // a name. Raises EFitWriterError when OriginalFormat is sofUnknown.
  void SaveObjects(TPersistentArray objects, const std::vector<std::string>& names,
                   TStream& stream);
  void SaveObjectBinary(TPersistentArray objects, const std::vector<std::string>& names,
                        TStream& stream);
  void SaveObjectText(TPersistentArray objects, const std::vector<std::string>& names,
                      TStream& stream);
  // Replaces the file whole, or raises and leaves it as it was.
  void SaveObjects(TPersistentArray objects, const std::vector<std::string>& names,
                   const std::string& fileName);

  // The same through a string.
  std::string GetObjectProps(TPersistentArray objects);
  void SetObjectProps(TPersistentArray objects, std::string_view text);

  virtual std::unique_ptr<TFitReader> CreateReader(TStream& stream);
  virtual std::unique_ptr<TFitWriter> CreateWriter(TStream& stream);

 protected:
  // Each raises the event of its name.
  virtual void DoBeforeCreateReader(TStream& stream, std::unique_ptr<TFitReader>& reader);
  virtual void DoAfterCreateReader(TFitReader& reader);
  virtual void DoBeforeCreateWriter(TStream& stream, std::unique_ptr<TFitWriter>& writer);
  virtual void DoAfterCreateWriter(TFitWriter& writer);
  virtual void DoBeforeReadObject(TPersistent* object, TFitReader& reader, bool& allowRead);
  virtual void DoAfterReadObject(TPersistent* object, TFitReader& reader,
                                 const std::string& objectName);
  virtual void DoBeforeWriteObject(TPersistent* object, const std::string& objectName,
                                   TFitWriter& writer, bool& allowWrite);
  virtual void DoAfterWriteObject(TPersistent* object, const std::string& objectName,
                                  TFitWriter& writer);

 private:
  void CheckForm(TPersistentArray objects, TStream& stream);
  void TakeRecognizedForm(TStream& stream);
  void ReadObjects(TPersistentArray objects, TFitReader& reader);
};

// Saves some of the properties only.
class TPropSaver : public TObjectSaver {
 public:
  void SetIgnoredProps(std::vector<std::string> names) { FIgnoredProps = std::move(names); }
  void SetStoredProps(std::vector<std::string> names) { FStoredProps = std::move(names); }

 protected:
  void DoBeforeCreateWriter(TStream& stream, std::unique_ptr<TFitWriter>& writer) override;
  void DoAfterCreateWriter(TFitWriter& writer) override;
  void DoBeforeWriteObject(TPersistent* object, const std::string& objectName, TFitWriter& writer,
                           bool& allowWrite) override;

 private:
  std::vector<std::string> FIgnoredProps;
  std::vector<std::string> FStoredProps;
};

// Gives `target` all stored values of `source`, objects and collections in it included.
void CopyStoredProps(TPersistent& target, TPersistent& source);

}  // namespace wrenfold
