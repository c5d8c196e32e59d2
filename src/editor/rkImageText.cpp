#include "editor/rkImageText.h"

namespace wrenfold {

namespace {

// Reads from an image whatever instance it is asked about.
class TImageAccess : public TPropAccess {
 public:
  explicit TImageAccess(const TPropImage& image) : FImage(image) {
    if (const TObjectImage* object = image.Object()) {
      FObject = object->Class().Make();
      if (FObject != nullptr) object->Restore(*FObject);
    }
  }
  std::int32_t GetOrd(const TPersistent&) const override { return Get<std::int32_t>(); }
  std::int64_t GetInt64(const TPersistent&) const override { return Get<std::int64_t>(); }
  double GetFloat(const TPersistent&) const override { return Get<double>(); }
  std::string GetStr(const TPersistent&) const override { return Get<std::string>(); }
  TVariant GetVariant(const TPersistent&) const override { return Get<TVariant>(); }
  TPersistent* GetObject(const TPersistent&) const override {
    if (FObject != nullptr) return FObject.get();
    return Get<TComponent*>();
  }

 private:
  template <class Value>
  Value Get() const {
    const auto* value = std::get_if<Value>(&FImage.Value());
    return value != nullptr ? *value : Value();
  }
  const TPropImage& FImage;
  std::unique_ptr<TPersistent> FObject;
};

}  // namespace

std::string ImageAsShownText(const TPropImage& image, const TPersistent& instance,
                             const TPropInfo& property, const TRowContext& context) {
  TPropInfo imaged{.Name = property.Name,
                   .PropType = property.PropType,
                   .Access = std::make_unique<TImageAccess>(image)};
  return PropertyAsShownText(instance, imaged, context);
}

}  // namespace wrenfold
