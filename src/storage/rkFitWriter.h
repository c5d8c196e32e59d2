// The writer of objects without a wrapper, which writes every stored property.
#pragma once

#include <string>
#include <string_view>

#include "platform/core/model/Event.h"
#include "platform/core/stream/Writer.h"
#include "platform/core/system/Exceptions.h"

namespace wrenfold {

class EFitWriterError : public Exception {
 public:
  using Exception::Exception;
};

// What a writer writes beside the values of plain properties.
struct TFitWriterOptions {
  bool Defaults = true;      // values that equal the default, empty texts, lists and zeros
  bool DefinedProps = true;  // what objects define beside their published properties
  bool MethodProps = true;   // events, where the handler's name is known
};

// Decides whether a property is written; `allow` comes in as true.
using TCanWriteEvent = TEvent<void(TPersistent& object, const std::string& name,
                                   const TPropInfo& property, bool& allow)>;

// Writes the record of a root directly from any persistent object.
class TFitWriter : public TWriter {
 public:
  using TWriter::TWriter;

  TFitWriterOptions Options;
  TCanWriteEvent OnCanWrite;

  // Signature, class, name, properties and no children. The class is the object's own.
  void WriteAsComponent(TPersistent& object, std::string_view objectName);
  // Published properties in declaration order, then the defined ones.
  void WriteProperties(TPersistent& object) override;
  bool WritesDefaults() const override { return Options.Defaults; }
  virtual bool CanWriteProperty(TPersistent& object, const TPropInfo& property);
  // A collection as the value of a defined property. The path of nested property names is the same
  // after the call as before; item properties start a path of their own. Further items, as they
  // stand in a stream, follow those of the collection.
  void WriteCollectionEx(TCollection& collection, std::string_view furtherItems = {});

 private:
  bool IsStored(TPersistent& object, const TPropInfo& property) const;
};

}  // namespace wrenfold
