// What is known of the environment's library: classes, events, references.
#pragma once

#include <span>
#include <string_view>

namespace wrenfold {

// A class whose instances stand in forms, and the one of these that it descends from, if any.
struct TLibraryClass {
  std::string_view Name;
  std::string_view Ancestor;
};
// Null when it is none of the library's.
const TLibraryClass* FindLibraryClass(std::string_view name);

// An event of the library's classes and what its method takes: types, "var" in front.
struct TLibraryEvent {
  std::string_view Name;
  std::string_view Parameters;  // "TObject;var Word;TShiftState"
  std::string_view Classes;     // the only ones that have it so, "" for all
};
// The event of a class, null when nothing certain is known of it.
const TLibraryEvent* FindLibraryEvent(std::string_view name, std::string_view className);
// Whether a property of that name is an event, whatever class has it.
bool IsEventName(std::string_view name);
// A type that no program gives another meaning.
bool IsLibraryType(std::string_view name);

// Whether the property of a library class refers to a component.
bool IsReference(std::string_view property);

// Classes of the library that can be ancestors of what forms are of.
bool IsFormAncestor(std::string_view name);
// Whether the letter behind "&" in its caption is a key.
bool HasAccelerator(std::string_view className);

}  // namespace wrenfold
