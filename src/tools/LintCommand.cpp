// wrenfold-spc lint: what breaks at run time in forms and their units.
#include <fmt/format.h>

#include <set>

#include "tools/Commands.h"
#include "tools/LintRules.h"

namespace wrenfold {
namespace {

// A text between quotes as JSON has it; bytes that are no UTF-8 stay as they are.
std::string Quoted(std::string_view text) {
  std::string result = "\"";
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') result += '\\';
    if (code < ' ') result += fmt::format("\\u{:04x}", code);
    else result += character;
  }
  return result + '"';
}

std::string AsJson(const TLintFinding& finding) {
  return fmt::format(R"({{"file":{},"line":{},"path":{},"rule":{},"message":{}}})",
                     Quoted(finding.FileName), finding.Line, Quoted(finding.Path),
                     Quoted(finding.Rule), Quoted(finding.Message));
}

std::string AsText(const TLintFinding& finding) {
  const std::string line = finding.Line != 0 ? fmt::format("({})", finding.Line) : "";
  return fmt::format("{}{}: {}: {} [{}]", finding.FileName, line, finding.Path, finding.Message,
                     finding.Rule);
}

void Write(const TLintResult& result, bool json, TOutput& output) {
  if (!json) {
    for (const TLintFinding& finding : result.Findings) output.Line(AsText(finding));
    output.Line(fmt::format("linted {} forms: {} findings, {} not checked", result.Forms,
                            result.Findings.size(), result.NotChecked));
    return;
  }
  output.Line(R"({"findings":[)");
  for (std::size_t i = 0; i < result.Findings.size(); ++i)
    output.Line(AsJson(result.Findings[i]) + (i + 1 < result.Findings.size() ? "," : ""));
  output.Line(fmt::format(R"(],"forms":{},"notChecked":{}}})", result.Forms, result.NotChecked));
}

}  // namespace

int RunLint(const std::vector<std::string>& names, const TLintOptions& options, TOutput& output) {
  TLintResult result;
  bool trouble = false;
  std::set<std::string> done;
  const auto guarded = [&](const std::string& name, const auto& action) {
    try {
      action();
    } catch (const Exception& error) {
      output.Error(NamedTrouble(name, error));
      trouble = true;
    } catch (const std::exception& error) {
      output.Error(fmt::format("{}: {}", name, error.what()));
      trouble = true;
    }
  };
  for (const std::string& name : names)
    guarded(name, [&] {
      TLintSources sources(name);
      const std::vector<std::string>& forms = sources.Forms();
      for (std::size_t i = 0; i < forms.size(); ++i) {
        output.Progress(i, forms.size(), forms[i]);
        if (!done.insert(forms[i]).second) continue;
        guarded(forms[i],
                [&] { LintForm(sources, sources.Form(forms[i]), options.Strict, result); });
      }
      output.Progress(forms.size(), forms.size(), "");
    });
  Write(result, options.Json, output);
  if (trouble) return ecTrouble;
  return result.Findings.empty() ? ecFine : ecFindings;
}

}  // namespace wrenfold
