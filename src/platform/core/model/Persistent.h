// The root classes of the object model: objects, persistent objects, components.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/core/model/TypeInfo.h"

namespace wrenfold {

class TFiler;
class TReader;
class TWriter;

// The root of everything that can be the sender of an event.
class TObject {
 public:
  TObject() = default;
  TObject(const TObject&) = delete;
  TObject& operator=(const TObject&) = delete;
  virtual ~TObject() = default;

  // The class name without its namespace.
  virtual std::string ClassName() const;
};

// An object with published properties. Every class declares its table in a static ClassInfo() and
// answers it from GetClassInfo().
class TPersistent : public TObject {
 public:
  static const TTypeInfo& ClassInfo();
  virtual const TTypeInfo& GetClassInfo() const { return ClassInfo(); }
  std::string ClassName() const override { return GetClassInfo().Name(); }

  // Copies the contents of source. A class that does not know the source's class leaves it to the
  // source's AssignTo; when that does not know either, EConvertError is raised.
  virtual void Assign(const TPersistent* source);
  virtual void AssignTo(TPersistent* destination) const;

  // Defines what the object stores beside its published properties.
  virtual void DefineProperties(TFiler& filer);

  // The object that this one belongs to, or null.
  virtual TPersistent* GetOwner() const { return nullptr; }
  // The path by which the object is known: its owner's path, a dot and its own name; the class
  // name where there is no owner.
  virtual std::string GetNamePath() const;

  // The stream names a property that the class does not publish. An object that keeps properties
  // of classes that exist only in a user's source takes the value (as it stands in the stream, tag
  // first) and answers true.
  virtual bool TakeUnknownProperty(std::string_view path, std::string_view value);

  // Brackets of a change; a collection reports one change at the end.
  virtual void BeginUpdate() {}
  virtual void EndUpdate() {}
};

// Holds an object's update bracket open. Whoever is told of the change at its end may raise: the
// error goes on from here, unless the bracket is left by an error already, which then stands.
class TUpdate {
 public:
  explicit TUpdate(TPersistent& object) : FObject(object) { FObject.BeginUpdate(); }
  ~TUpdate() noexcept(false) {
    try {
      FObject.EndUpdate();
    } catch (...) {
      if (std::uncaught_exceptions() == FErrors) throw;
    }
  }
  TUpdate(const TUpdate&) = delete;
  TUpdate& operator=(const TUpdate&) = delete;

 private:
  TPersistent& FObject;
  int FErrors = std::uncaught_exceptions();
};

enum TOperation : std::uint8_t { opInsert, opRemove };
enum TComponentState : std::uint8_t {
  csLoading,
  csReading,
  csWriting,
  csDestroying,
  csDesigning,
  csAncestor,
  csUpdating,
  csFixups,
  csInline
};

// A named object that owns other components: they are destroyed with it, last one first.
class TComponent : public TPersistent {
 public:
  static const TTypeInfo& ClassInfo();
  const TTypeInfo& GetClassInfo() const override { return ClassInfo(); }

  // The owner, when there is one, takes over the component.
  explicit TComponent(TComponent* owner = nullptr);
  ~TComponent() override;

  const std::string& Name() const { return FName; }
  // Raises EComponentError when the name is no identifier, longer than a stream can hold, or
  // another component of the owner has it.
  virtual void SetName(const std::string& name);

  TComponent* Owner() const { return FOwner; }
  TPersistent* GetOwner() const override { return FOwner; }
  std::string GetNamePath() const override { return FName; }
  const std::vector<TComponent*>& Components() const { return FComponents; }
  // The owned component of that name, letter case ignored, or null.
  TComponent* FindComponent(std::string_view name) const;
  // Take over or give away a component.
  void InsertComponent(TComponent* component);
  void RemoveComponent(TComponent* component);
  int ComponentIndex() const;
  void DestroyComponents();

  // Called with opRemove for every component that this one asked about and that is going away.
  virtual void Notification(TComponent* component, TOperation operation);
  void FreeNotification(TComponent* component);

  TSet<TComponentState> ComponentState() const { return FState; }
  void SetComponentState(TComponentState state, bool on);

  // Streaming: the components that are stored inside this one, in order, and where one that is
  // read belongs. Plain components store none.
  virtual void GetChildren(const std::function<void(TComponent&)>& visit, TComponent* root);
  virtual TComponent* GetParentComponent() const { return nullptr; }
  virtual void SetParentComponent(TComponent* parent);
  // The owner of components that are read inside this one; null means the reader's root.
  virtual TComponent* GetChildOwner() { return nullptr; }
  virtual void Loaded() { SetComponentState(csLoading, false); }
  // The prefix that the component is stored with (0: none), and its position among its siblings
  // where the prefix says that one is stored.
  virtual std::uint8_t FilerFlags(std::int32_t& childPosition) const;

  // A free word for the owner's use.
  std::int32_t Tag = 0;

 protected:
  // Takes a name unchecked: names of a stored form stay what they were.
  void TakeName(std::string name);

 private:
  void ForgetNotification(TComponent* component);

  std::string FName;
  TComponent* FOwner = nullptr;
  std::vector<TComponent*> FComponents;
  std::vector<TComponent*> FFreeNotifies;
  // The first owned component of every name, in upper case; made when a name is looked for among
  // many, null while it does not hold.
  mutable std::unique_ptr<std::unordered_map<std::string, TComponent*>> FNames;
  TSet<TComponentState> FState;
};

// A letter or underscore followed by letters, digits or underscores.
bool IsValidIdent(std::string_view name);

}  // namespace wrenfold
