// Reads values and objects of the component stream.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/Collection.h"
#include "platform/core/model/Filer.h"
#include "platform/core/stream/Bytes.h"
#include "platform/core/stream/ValueTypes.h"

namespace wrenfold {

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
  // The method of the root that the name stands for; an unknown one raises EReadError.
  TMethod ReadMethod();
  TVariant ReadVariant();
  // A component's name, which is settled when all are read, nil, or a collection, into an object
  // property.
  void ReadObjectValue(TPersistent& instance, const TPropInfo& property);
  void ReadListBegin();
  void ReadListEnd();
  bool EndOfList() const;

  void ReadSignature();
  // The resource header in front of a root; answers the resource's name.
  std::string ReadResHeader();
  void SkipValue();
  void SkipProperty();
  // A list of properties and its end.
  void SkipProperties();
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
  void DefineTexts(std::string_view name, const TTextsReader& readTexts,
                   const TTextsWriter& writeTexts, bool hasData) override;
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

}  // namespace wrenfold
