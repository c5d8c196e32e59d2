// Writes the source of the English language module from the package's own table.
#include <fmt/printf.h>

#include "locale/Strings.h"

namespace {

std::string Quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    switch (c) {
      case '"':
        result += "\"\"";
        break;
      case '\\':
        result += "\\\\";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\n':
        result += "\\n";
        break;
      default:
        result += c;
    }
  }
  return result + '"';
}

}  // namespace

int main() {
  fmt::print("#pragma code_page(65001)\n\nLANGUAGE 0x09, 0x01\n\nSTRINGTABLE\nBEGIN\n");
  for (const wrenfold::TStringEntry& entry : wrenfold::PackageStrings())
    fmt::print("  {} {}\n", entry.Id, Quoted(entry.Text));
  fmt::print("END\n");
}
