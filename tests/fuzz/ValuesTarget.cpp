// Paths and values of properties as text: the first line is the path, the rest the value.
#include "fuzz/Targets.h"
#include "storage/TestObjects.h"
#include "storage/rkDataProps.h"

namespace wrenfold {
namespace {

std::string Stored(TSample& sample) {
  TObjectSaver saver;
  return saver.GetObjectProps({&sample});
}

void SetByText(std::string_view path, std::string_view value) {
  TSample inner;
  TSample sample;
  sample.SetInner(&inner);
  const std::string before = Stored(sample) + Stored(inner);
  TPersistent* owner = &sample;
  const TPropInfo* property = FindPropInfo(owner, path);
  Promise(property != nullptr || owner == &sample, "a path that leads nowhere moves nothing");
  // The message repeats the text or path that was refused, or says that the kind has no text. That
  // of a set repeats an element, see ConvertSet.
  const bool isSet = property != nullptr && property->Kind() == tkSet;
  const auto set = [&] { SetPropByText(sample, path, value); };
  if (!Succeeds(set, {property != nullptr ? value : path, "Unsupported variable type.",
                      isSet ? "is unacceptable value" : "Unsupported variable type."})) {
    Promise(Stored(sample) + Stored(inner) == before, "a refused text changes nothing");
    return;
  }
  const std::string text = GetPropAsText(sample, path);
  SetPropByText(sample, path, text);
  Promise(GetPropAsText(sample, path) == text, "a value's own text means that value");
}

void SetByVariant(std::string_view path, std::string_view value) {
  TSample sample;
  TVariant variant = std::string(value);
  Succeeds([&] { SetPropByVariant(sample, path, variant); }, {""});
}

void ConvertSet(std::string_view text) {
  const TTypeInfo& type = *TSample::ClassInfo().FindProperty("Grades")->PropType;
  std::uint32_t set = 0;
  const auto convert = [&] {
    try {
      set = StrToSet(type, text);
    } catch (const EDataHandlingError& error) {
      const std::string refused = error.Message().substr(0, error.Message().rfind(" is "));
      Promise(Exception(std::string(text)).Message().find(refused) != std::string::npos,
              "an error repeats the element or the text that is refused");
      throw;
    }
  };
  if (!Succeeds(convert, {"is unacceptable value", "is incorrect value"})) return;
  Promise(StrToSet(type, SetToStr(type, set)) == set, "a set's own text means that set");
}

}  // namespace

void FuzzPropertyText(std::string_view bytes) {
  const std::size_t end = bytes.find('\n');
  const std::string_view path = bytes.substr(0, end);
  const std::string_view value = end == bytes.npos ? std::string_view() : bytes.substr(end + 1);
  SetByText(path, value);
  SetByVariant(path, value);
  ConvertSet(value);
}

}  // namespace wrenfold
