// Readers and writers of objects in the component stream.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/Bytes.h"
#include "platform/core/Collection.h"
#include "platform/core/Persistent.h"
#include "platform/core/Streams.h"
#include "platform/core/ValueTypes.h"

namespace wrenfold {

using TReaderProc = std::function<void(TReader&)>;
using TWriterProc = std::function<void(TWriter&)>;
using TStreamProc = std::function<void(TStream&)>;

// What an object defines its further stored data with, in both directions.
class TFiler {
 public:
  TFiler() = default;
  TFiler(const TFiler&) = delete;
  TFiler& operator=(const TFiler&) = delete;
  virtual ~TFiler() = default;

  // A stored property of the given name, read and written by procedures; written when hasData.
  virtual void DefineProperty(std::string_view name, const TReaderProc& readData,
                              const TWriterProc& writeData, bool hasData) = 0;
  // The same as raw bytes.
  virtual void DefineBinaryProperty(std::string_view name, const TStreamProc& readData,
                                    const TStreamProc& writeData, bool hasData) = 0;
  // Whether data that equals what a new object has is to be written as well.
  virtual bool WritesDefaults() const { return false; }

  // The object whose components and methods names in the stream refer to.
  TPersistent* Root = nullptr;
};

// Reads values and objects from a stream's position on. The stream's position follows when the
// reader is destroyed or FlushBuffer is called. Errors of the form (truncation, a wrong tag) raise
// EReadError with the offset; errors of the contents (unknown property, bad value) reach Error().
class TReader : public TFiler {
 public:
  explicit TReader(TStream& stream, int bufferSize = 4096);
  ~TReader() override;

  // Values. Each raises EReadError when the next value is of another kind; integers and floats
  // are taken from every tag that holds them.
  TValueType NextValue() const;
  TValueType ReadValue();
  bool ReadBoolean();
  char ReadChar();
  std::int32_t ReadInteger();
  std::int64_t ReadInt64();
  double ReadFloat();
  std::string ReadIdent();
  // Narrow, long, UTF-8 and wide strings; a wide one becomes UTF-8, the others keep their bytes.
  std::string ReadString();
  std::uint32_t ReadSet(const TTypeInfo& elementType);
  // A value of the binary kind; the view is valid as long as the reader.
  std::string_view ReadBinary();
  void ReadListBegin();
  void ReadListEnd();
  bool EndOfList() const;

  void ReadSignature();
  // The resource header in front of a root; answers the resource's name.
  std::string ReadResHeader();
  void SkipValue();
  void SkipProperty();
  // One component with its properties and children, prefix included.
  void SkipComponent();

  // Reads a root into the given component (its own class is kept), or makes one of the class that
  // the stream names. The caller owns a root that was made.
  TComponent* ReadRootComponent(TComponent* root);
  // Properties up to the end of the list, which is left in place.
  void ReadProperties(TPersistent& instance);
  void ReadProperty(TPersistent& instance);
  // A collection value, its tag included; what the collection held is gone.
  void ReadCollection(TCollection& collection);

  void DefineProperty(std::string_view name, const TReaderProc& readData,
                      const TWriterProc& writeData, bool hasData) override;
  void DefineBinaryProperty(std::string_view name, const TStreamProc& readData,
                            const TStreamProc& writeData, bool hasData) override;

  // Offset in the stream of the next byte to be read.
  std::int64_t Position() const;
  void FlushBuffer();
  // "Class.Path" of the property being read, for messages.
  std::string PropertyPath() const;

  // Finds a method of the root by its name; without a handler, or when it answers an empty one,
  // the name is unknown.
  std::function<TMethod(TReader&, std::string_view name)> OnFindMethod;
  // Names the place of an offset for messages about the contents; "offset N" without it.
  std::function<std::string(std::int64_t offset)> OnPlace;

 protected:
  // An error of the contents: true ignores it and goes on, false (the default) lets it stand.
  virtual bool Error(const std::string& message);
  // A new component that a stored component of that class and name is read into; made by the class
  // registry unless a descendant knows better. Destroyed when it cannot take the name. Raises
  // EClassNotFound.
  virtual TComponent* CreateComponent(std::string_view className, std::string_view name,
                                      TComponent* owner);
  // Settles the references by component name that were read, from the root on (null: none can be).
  void ResolveReferences(TComponent* root);
  // Empties a collection whose items references may still wait for: they are kept until then.
  void RetireItems(TCollection& collection);
  // The bytes behind Position(), for records that only a descendant knows.
  TByteReader& Bytes() { return FBytes; }

 private:
  struct TPropertyScope;
  struct TDepthScope;
  void ReadPropertyAt(TPersistent& instance, std::string_view path, std::size_t start);
  void ReadPropertyValue(TPersistent& instance, const TPropInfo& property);
  std::int32_t ReadOrdinal(const TTypeInfo& type);
  TMethod ReadMethod();
  TVariant ReadVariant();
  void ReadClassValue(TPersistent& instance, const TPropInfo& property);
  bool ReadDefinedProperty(TPersistent& instance, std::string_view name);
  void ReadDataInner(TComponent& component);
  void ReadComponent(TComponent& parent);
  void ReadChildren(TComponent& component);
  [[noreturn]] void RaiseInvalidValue(const char* expected) const;
  std::string ErrorAt(std::int64_t offset, std::string_view what, const Exception& problem) const;

  struct TReference {
    TPersistent* Instance;
    const TPropInfo* Property;
    std::int64_t Offset;  // of the value
    std::string Name;
    std::string Path;
  };

  TStream& FStream;
  std::int64_t FStart;
  std::string FOwned;  // what was read ahead, when the stream has no bytes to show
  TByteReader FBytes;
  TComponent* FOwner = nullptr;
  int FDepth = 0;
  bool FErrorStands = false;  // and ends the reading
  std::vector<TReference> FReferences;
  std::vector<std::unique_ptr<TCollectionItem>> FRetired;
  std::string FPath;              // of the property being read
  std::string_view FDefinedName;  // the property that DefineProperties is being asked for
  bool FDefinedRead = false;
};

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
  void DefineBinaryProperty(std::string_view name, const TStreamProc& readData,
                            const TStreamProc& writeData, bool hasData) override;

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
  void WritePropName(std::string_view name);
  // The value alone, without the name. Class properties with parts of their own write their
  // properties under the dotted prefix instead.
  void WritePropertyValue(TPersistent& instance, const TPropInfo& property);
  // What is written but not flushed, for records that only a descendant knows.
  TByteWriter& Bytes() { return FBytes; }

 private:
  void WriteClassProperty(const TPropInfo& property, TPersistent& value);
  void WriteOrdinal(std::int32_t value, const TTypeInfo& type);
  void WriteVariant(const TVariant& value);
  std::string ReferenceName(const TComponent& component) const;

  TStream& FStream;
  TByteWriter FBytes;
  std::string FPropPath;
};

}  // namespace wrenfold
