#include "storage/rkFitWriter.h"

#include "storage/rkAdvReader.h"

namespace wrenfold {

void TFitWriter::WriteAsComponent(TPersistent& object, std::string_view objectName) {
  Root = NamingRoot(object);
  SetPropPath({});
  WriteSignature();
  Bytes().WriteShortString(object.ClassName());
  Bytes().WriteShortString(objectName);
  WriteProperties(object);
  WriteListEnd();
  WriteListEnd();
}

void TFitWriter::WriteProperties(TPersistent& object) {
  for (const TPropInfo* property : object.GetClassInfo().Properties())
    if (IsStored(object, *property) && CanWriteProperty(object, *property))
      WriteProperty(object, *property);
  if (Options.DefinedProps) object.DefineProperties(*this);
}

bool TFitWriter::IsStored(TPersistent& object, const TPropInfo& property) const {
  if (property.Kind() == tkMethod && !Options.MethodProps) return false;
  if (!Options.Defaults) return MustWrite(object, property);
  if (!property.Stored(object)) return false;
  if (property.Kind() != tkClass) return property.Access->CanWrite();
  if (property.Access->GetObject(object) != nullptr) return true;
  // A reference to no component is a value; an object that is not there has none.
  return property.Access->CanWrite() && property.PropType->InheritsFrom(TComponent::ClassInfo());
}

bool TFitWriter::CanWriteProperty(TPersistent& object, const TPropInfo& property) {
  bool allow = true;
  OnCanWrite(object, property.Name, property, allow);
  return allow;
}

void TFitWriter::WriteCollectionEx(TCollection& collection, std::string_view furtherItems) {
  const std::string path = PropPath();
  SetPropPath({});
  WriteCollection(collection);
  SetPropPath(path);
  if (furtherItems.empty()) return;
  Bytes().Truncate(Bytes().Size() - 1);  // the end of the list
  Bytes().WriteBytes(furtherItems);
  WriteListEnd();
}

}  // namespace wrenfold
