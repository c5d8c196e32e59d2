// Writes values and objects of the component stream.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/core/model/Collection.h"
#include "platform/core/model/Filer.h"
#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/ValueTypes.h"

namespace wrenfold {

// Writes values and objects at a stream's position, when flushed or destroyed.
class TWriter : public TFiler {
 public:
  explicit TWriter(TStream& stream, int bufferSize = 4096);
  ~TWriter() override;

  void WriteValue(TValueType value);
  void WriteBoolean(bool value);
  void WriteChar(char value);
  // The smallest integer tag that holds the value.
  void WriteInteger(std::int64_t value);
  void WriteFloat(double value);
  void WriteIdent(std::string_view ident);
  void WriteString(std::string_view text);
  // As a wide string, from UTF-8.
  void WriteWideString(std::string_view text);
  void WriteSet(std::uint32_t value, const TTypeInfo& elementType);
  void WriteBinary(std::string_view bytes);
  // A value as it stands in a stream, tag first.
  void WriteRawValue(std::string_view value);
  void WriteListBegin();
  void WriteListEnd();
  virtual void WriteCollection(TCollection& collection);
  void WriteSignature();

  void WriteRootComponent(TComponent& root);
  // Resource header (the class name as the resource name), then the root.
  void WriteComponentRes(const std::string& resourceName, TComponent& root);
  void WriteComponent(TComponent& component);
  // Published and defined properties, without the end of the list.
  virtual void WriteProperties(TPersistent& instance);
  virtual void WriteProperty(TPersistent& instance, const TPropInfo& property);

  void DefineProperty(std::string_view name, const TReaderProc& readData,
                      const TWriterProc& writeData, bool hasData) override;
  void DefineTexts(std::string_view name, const TTextsReader& readTexts,
                   const TTextsWriter& writeTexts, bool hasData) override;
  void DefineBinaryProperty(std::string_view name, const TStreamProc& readData,
                            const TStreamProc& writeData, bool hasData) override;

  void WriteVariant(const TVariant& value);
  // The name of a property, behind the path.
  void WritePropName(std::string_view name);
  // What an object property holds, with its name: a component by its name, a collection as one, the
  // properties of any other object under the dotted prefix.
  void WriteObjectValue(const TPropInfo& property, TPersistent& value);

  void FlushBuffer();
  std::int64_t Position() const;
  // The dotted prefix of nested property names, such as "Font.".
  const std::string& PropPath() const { return FPropPath; }
  void SetPropPath(std::string path) { FPropPath = std::move(path); }

  // The name of a method of the root; without a handler, or when it is empty, the event is left
  // out.
  std::function<std::string(TWriter&, const TMethod&)> OnMethodName;

 protected:
  // The platform's rule: a stored property whose value differs from the default.
  virtual bool MustWrite(TPersistent& instance, const TPropInfo& property) const;
  // What is written but not flushed, for records that only a descendant knows.
  TByteWriter& Bytes() { return FBytes; }

 private:
  std::string ReferenceName(const TComponent& component) const;

  TStream& FStream;
  TByteWriter FBytes;
  std::string FPropPath;
};

}  // namespace wrenfold
