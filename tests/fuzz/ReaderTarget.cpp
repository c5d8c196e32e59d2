// Stored objects read into objects of compiled classes.
#include "fuzz/FuzzObjects.h"
#include "fuzz/Targets.h"
#include "platform/core/model/ClassRegistry.h"
#include "storage/rkFitReader.h"
#include "storage/rkFitWriter.h"

namespace wrenfold {
namespace {

// A reader that goes on at every error of the contents, or at none.
class TFuzzReader : public TFitReader {
 public:
  TFuzzReader(TStream& stream, bool goesOn) : TFitReader(stream), FGoesOn(goesOn) {}

 protected:
  bool Error(const std::string& message) override {
    PromiseMessage(EReadError(message), {"offset "});
    return FGoesOn;
  }

 private:
  bool FGoesOn;
};

std::string Stored(TFuzzComponent& component) {
  TMemoryStream stream;
  TWriter(stream).WriteRootComponent(component);
  return stream.TakeBytes();
}

// However far reading came, the object can be stored and read back.
void PromiseWhole(TFuzzComponent& component) {
  const std::string stored = Stored(component);
  TFuzzComponent again;
  TMemoryStream stream(stored);
  TReader(stream).ReadRootComponent(&again);
  Promise(Stored(again) == stored, "an object that was read comes back from its own bytes");
}

}  // namespace

void FuzzTypedReader(std::string_view bytes) {
  RegisterClass(TFuzzComponent::ClassInfo());
  for (const bool goesOn : {false, true}) {
    TFuzzComponent record;
    TMemoryStream recordStream{std::string(bytes)};
    Succeeds([&] { TFuzzReader(recordStream, goesOn).ReadAsComponent(record); }, {"offset "});
    PromiseWhole(record);
    TFuzzComponent root;
    TMemoryStream rootStream{std::string(bytes)};
    Succeeds([&] { TFuzzReader(rootStream, goesOn).ReadRootComponent(&root); }, {"offset "});
    PromiseWhole(root);
  }
}

}  // namespace wrenfold
