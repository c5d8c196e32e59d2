// The variables and conditions of build files: what is in force in one configuration.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace wrenfold {

// Variables by name, letter case ignored (names are kept in upper case).
class TBuildVariables {
 public:
  void Set(std::string_view name, std::string_view value);
  // Empty when there is none of that name.
  std::string Get(std::string_view name) const;
  // The text with each "$(Name)" replaced by its value.
  std::string Expand(std::string_view text) const;

 private:
  std::map<std::string, std::string, std::less<>> FValues;
};

// The value of a condition such as "'$(Config)'=='Base' or '$(Base)'!=''", with "and", "or", "!"
// and brackets. An empty condition holds; one that does not parse does not.
bool EvaluateBuildCondition(std::string_view condition, const TBuildVariables& variables);

}  // namespace wrenfold
