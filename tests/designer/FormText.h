// Forms for tests, written as text.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "designer/model/Layout.h"
#include "platform/core/text/SysUtils.h"
#include "project/FormFile.h"

namespace wrenfold {

// Forms and ancestors by class name.
class TTestForms final : public TFormCatalog {
 public:
  void Add(const std::string& text) {
    TFormFile file = ReadFormFile(text, "test");
    FForms[LowerCase(file.Root->StoredClassName())] = std::move(file);
  }
  void Derive(const std::string& className, const std::string& ancestor) {
    FAncestors[LowerCase(className)] = ancestor;
  }
  std::vector<std::string> Ancestors(std::string_view className) override {
    std::vector<std::string> chain;
    auto found = FAncestors.find(LowerCase(className));
    while (found != FAncestors.end() && chain.size() < 8) {
      chain.push_back(found->second);
      found = FAncestors.find(LowerCase(found->second));
    }
    return chain;
  }
  const TDesignComponent* FindForm(std::string_view className) override {
    const auto found = FForms.find(LowerCase(className));
    return found != FForms.end() ? found->second.Root.get() : nullptr;
  }

 private:
  std::map<std::string, TFormFile> FForms;
  std::map<std::string, std::string> FAncestors;
};

// A composed form that keeps what it was composed of.
struct TTestForm {
  explicit TTestForm(const std::string& text, std::shared_ptr<TTestForms> forms = nullptr)
      : Source(forms != nullptr ? forms : std::make_shared<TTestForms>()),
        File(ReadFormFile(text, "test")),
        Form(ComposeForm(*File.Root, *Source)) {
    LayoutForm(*Form, {0, 0, 0});
  }
  TComposedForm* operator->() const { return Form.get(); }
  TDesignNode& operator[](const char* name) const { return *Form->Find(name); }

  std::shared_ptr<TTestForms> Source;
  TFormFile File;
  std::unique_ptr<TComposedForm> Form;
};

}  // namespace wrenfold
