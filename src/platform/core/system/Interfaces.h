// Interfaces with identity and reference counting, as the open tools interface uses them.
#pragma once

#include <array>
#include <cstdint>
#include <utility>

namespace wrenfold {

// The identity of an interface.
struct TGuid {
  std::uint32_t D1 = 0;
  std::uint16_t D2 = 0;
  std::uint16_t D3 = 0;
  std::array<std::uint8_t, 8> D4{};
  friend bool operator==(const TGuid&, const TGuid&) = default;
};

using HResult = std::uint32_t;
inline constexpr HResult S_OK = 0;
inline constexpr HResult E_NOINTERFACE = 0x80004002;

// The root of all interfaces. Every interface I names itself by a static constexpr TGuid I::IID.
class IInterface {
 public:
  static constexpr TGuid IID{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

  // Puts a pointer of the type that the identity names into result and counts it; E_NOINTERFACE
  // and null when the object does not support it.
  virtual HResult QueryInterface(const TGuid& iid, void** result) = 0;
  virtual int _AddRef() = 0;
  virtual int _Release() = 0;

 protected:
  virtual ~IInterface() = default;
};

// Holds one reference.
template <class Interface>
class TIntf {
 public:
  TIntf() = default;
  TIntf(std::nullptr_t) {}                         // NOLINT
  TIntf(Interface* pointer) : FPointer(pointer) {  // NOLINT: takes a reference of its own
    if (FPointer != nullptr) FPointer->_AddRef();
  }
  TIntf(const TIntf& other) : TIntf(other.FPointer) {}
  TIntf(TIntf&& other) noexcept : FPointer(std::exchange(other.FPointer, nullptr)) {}
  ~TIntf() {
    if (FPointer != nullptr) FPointer->_Release();
  }
  TIntf& operator=(TIntf other) noexcept {
    std::swap(FPointer, other.FPointer);
    return *this;
  }

  Interface* get() const { return FPointer; }
  Interface* operator->() const { return FPointer; }
  Interface& operator*() const { return *FPointer; }
  explicit operator bool() const { return FPointer != nullptr; }
  friend bool operator==(const TIntf& a, const TIntf& b) { return a.FPointer == b.FPointer; }

 private:
  Interface* FPointer = nullptr;
};

// The interface of an object as another one, or none.
template <class Wanted, class Interface>
TIntf<Wanted> Supports(Interface* object) {
  void* result = nullptr;
  if (object == nullptr || object->QueryInterface(Wanted::IID, &result) != S_OK) return {};
  const TIntf<Wanted> held(static_cast<Wanted*>(result));
  held->_Release();  // QueryInterface counted it as well
  return held;
}
template <class Wanted, class Interface>
TIntf<Wanted> Supports(const TIntf<Interface>& object) {
  return Supports<Wanted>(object.get());
}

namespace detail {

template <class Wanted, class Object>
bool AnswerInterface(Object* object, const TGuid& iid, void** result) {
  if (!(iid == Wanted::IID)) return false;
  *result = static_cast<Wanted*>(object);
  return true;
}

}  // namespace detail

// Answers QueryInterface for an object that implements the listed interfaces. The first one also
// answers for IInterface.
template <class First, class... Others, class Object>
HResult QueryAmong(Object* object, const TGuid& iid, void** result) {
  *result = nullptr;
  if (iid == IInterface::IID) *result = static_cast<First*>(object);
  else if (!(detail::AnswerInterface<First>(object, iid, result) || ... ||
             detail::AnswerInterface<Others>(object, iid, result)))
    return E_NOINTERFACE;
  object->_AddRef();
  return S_OK;
}

// An object that implements interfaces and lives as long as it is referenced.
template <class First, class... Others>
class TInterfacedObject : public First, public Others... {
 public:
  TInterfacedObject() = default;
  TInterfacedObject(const TInterfacedObject&) = delete;
  TInterfacedObject& operator=(const TInterfacedObject&) = delete;
  virtual ~TInterfacedObject() = default;

  HResult QueryInterface(const TGuid& iid, void** result) override {
    return QueryAmong<First, Others...>(this, iid, result);
  }
  int _AddRef() override { return ++FReferences; }
  int _Release() override {
    const int left = --FReferences;
    if (left == 0) delete this;
    return left;
  }

 private:
  int FReferences = 0;
};

}  // namespace wrenfold
