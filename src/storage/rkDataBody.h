// Lists of objects in the four storage formats, on streams, in files and in strings.
#pragma once

#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/model/Persistent.h"
#include "storage/rkDataHeader.h"

namespace wrenfold {

// The objects of one call, in order; refers to the caller's array. What is read back must name the
// same number of objects, of the same classes, in the same order.
class TPersistentArray : public std::span<TPersistent* const> {
 public:
  using span::span;
  TPersistentArray(std::initializer_list<TPersistent*> objects)
      : span(objects.begin(), objects.size()) {}
};

// A component that an object that is none is stored in. The object is not owned.
class TWrapper : public TComponent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  explicit TWrapper(TPersistent* object) : FObject(object) {}
  TPersistent* I() const { return FObject; }

 private:
  TPersistent* FObject;
};

// A null of the array is stored without properties, and read over.
// Reading raises EReadError at a broken form and asks the user about properties that cannot be
// broken form and asks the user about properties that cannot be read. Objects read before a failure
// keep their new values.
void SaveObjectBinary(TPersistentArray objects, TStream& stream, bool isRes = false);
void LoadObjectBinary(TPersistentArray objects, TStream& stream, bool isRes = false);
// Properties only, without class names.
void SaveObjectBinaryEx(TPersistentArray objects, TStream& stream);
void LoadObjectBinaryEx(TPersistentArray objects, TStream& stream);
// An object that is no component stands behind a description line: its name of the array, or one
// made from its path.
void SaveObjectText(TPersistentArray objects, TStream& stream,
                    const std::vector<std::string>& names = {});
void LoadObjectText(TPersistentArray objects, TStream& stream);
// The reader makes a component of the stored class for each null of the array; the caller owns it.
void LoadComponentBinary(std::span<TComponent*> components, TStream& stream, bool isRes = false);
void LoadComponentText(std::span<TComponent*> components, TStream& stream);

// An empty name stands for "stored Instance --> " and the object's path.
void WriteObjectDescription(const TPersistent* object, const std::string& name, TStream& stream);
void SkipObjectDescription(TStream& stream);

// Header and body.
void SaveObjectDataBinary(TPersistentArray objects, TStream& stream, std::string_view description,
                          bool isRes = false);
void SaveObjectDataText(TPersistentArray objects, TStream& stream,
                        const std::vector<std::string>& names, std::string_view description);
// Sees the header before the body is read and may cancel the load.
using TDataHeaderHandler =
    std::function<void(const TObjDataDscr& dscr, const std::string& description, bool& cancel)>;
TObjectStorageFormat LoadObjectData(TPersistentArray objects, TStream& stream,
                                    const TDataHeaderHandler& handler = {});

// A body without a header.
void LoadObjects(TPersistentArray objects, TStream& stream, TObjectStorageFormat format);
// The same, but the form of the whole body is checked first: a broken one changes no object.
void SafeLoadObjects(TPersistentArray objects, TStream& stream, TObjectStorageFormat format);

// The same with files. Saving replaces the file whole or leaves it as it was; a failed load raises
// EDataHandlingError naming the file.
void SaveObjectBinary(TPersistentArray objects, const std::string& fileName, bool isRes = false);
void LoadObjectBinary(TPersistentArray objects, const std::string& fileName, bool isRes = false);
void SaveObjectBinaryEx(TPersistentArray objects, const std::string& fileName);
void LoadObjectBinaryEx(TPersistentArray objects, const std::string& fileName);
void SaveObjectText(TPersistentArray objects, const std::string& fileName,
                    const std::vector<std::string>& names = {});
void LoadObjectText(TPersistentArray objects, const std::string& fileName);
void SaveObjectDataBinary(TPersistentArray objects, const std::string& fileName,
                          std::string_view description, bool isRes = false);
void SaveObjectDataText(TPersistentArray objects, const std::string& fileName,
                        const std::vector<std::string>& names, std::string_view description);
TObjectStorageFormat LoadObjectData(TPersistentArray objects, const std::string& fileName,
                                    const TDataHeaderHandler& handler = {});

// Objects as a string: osfBin or osfText; empty for the other formats.
std::string GetProps(TPersistentArray objects, TObjectStorageFormat format);
void SetProps(TPersistentArray objects, std::string_view text, TObjectStorageFormat format);
// Like SetProps; a broken text changes no object.
void SetPropsEx(TPersistentArray objects, std::string_view text, TObjectStorageFormat format);
// One object's properties alone, without class and name, and back into an object of any class:
// properties that it lacks are left out.
std::string GetProps2(TPersistent& object);
void SetProps2(TPersistent& object, std::string_view text);
// Copies the stored properties that both objects have.
void ImportProps(TPersistent& target, TPersistent& source);

}  // namespace wrenfold
