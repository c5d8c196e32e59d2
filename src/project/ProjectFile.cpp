// Reads project files by the XML library; changes them in the text, so that the rest stays.
#include "project/ProjectFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <pugixml.hpp>

#include "platform/core/text/SysUtils.h"
#include "project/BuildConditions.h"
#include "project/FileLookup.h"

namespace wrenfold {

namespace {

using TNode = pugi::xml_node;

enum class TFormat {
  None,
  Settings,  // values in attributes "Value": the free Pascal environment's projects
  Package,   // the same, its packages
  Build,     // properties and items under conditions
  Group,     // projects as items
};
struct TFormatRow {
  std::string_view Extension;
  TFormat Format;
  const char* Root;
};
constexpr TFormatRow Formats[] = {
    {".lpi", TFormat::Settings, "CONFIG"},     {".lpk", TFormat::Package, "CONFIG"},
    {".dproj", TFormat::Build, "Project"},     {".cbproj", TFormat::Build, "Project"},
    {".groupproj", TFormat::Group, "Project"},
};

const TFormatRow* FindFormat(std::string_view fileName) {
  const std::string extension = LowerCase(ExtractFileExt(fileName));
  const auto* row =
      std::find_if(std::begin(Formats), std::end(Formats),
                   [&](const TFormatRow& known) { return known.Extension == extension; });
  return row != std::end(Formats) ? row : nullptr;
}

constexpr std::string_view UnitExtensions[] = {".pas", ".pp", ".p", ".cpp", ".cc", ".cxx", ".c"};

bool IsUnitFile(std::string_view fileName) {
  const std::string extension = LowerCase(ExtractFileExt(fileName));
  return std::find(std::begin(UnitExtensions), std::end(UnitExtensions), extension) !=
         std::end(UnitExtensions);
}

// The parts of a list, blanks around them and empty ones removed.
std::vector<std::string> Split(std::string_view list, char separator) {
  std::vector<std::string> parts;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(separator), list.size());
    if (const std::string_view part = Trim(list.substr(0, end)); !part.empty())
      parts.emplace_back(part);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return parts;
}

std::string ValueOf(TNode node, const char* child) {
  return node.child(child).attribute("Value").value();
}

// The text as a tree, with the places of its elements.
class TProjectXml {
 public:
  TProjectXml(std::string_view text, const std::string& fileName)
      : FText(text), FFileName(fileName), FFormat(FindFormat(fileName)) {
    if (FFormat == nullptr)
      throw EProjectError(fileName, {}, "this kind of project file is unknown");
    const pugi::xml_parse_result result =
        FDocument.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!result)
      throw EProjectError(
          fileName, PlaceAt(static_cast<std::size_t>(result.offset)),
          fmt::format("expected the XML text of a project ({})", result.description()));
    if (!Root())
      throw EProjectError(
          fileName, {},
          fmt::format("expected a project file, whose first element is <{}>", FFormat->Root));
  }

  TFormat Format() const { return FFormat->Format; }
  TNode Root() const { return FDocument.child(FFormat->Root); }
  const std::string& FileName() const { return FFileName; }
  std::string_view Text() const { return FText; }
  // Of the sign that opens the element.
  std::size_t StartOf(TNode node) const {
    return static_cast<std::size_t>(node.offset_debug()) - 1;
  }
  // Behind its end.
  std::size_t EndOf(TNode node) const {
    const std::size_t head = EndOfTag(StartOf(node));
    if (head >= 2 && FText[head - 2] == '/') return head;
    const std::string close = fmt::format("</{}", node.name());
    const std::size_t end = FText.find(close, head);
    return end == FText.npos ? FText.size() : EndOfTag(end);
  }
  std::size_t EndOfTag(std::size_t start) const {
    char quote = 0;
    for (std::size_t at = start; at < FText.size(); ++at) {
      const char c = FText[at];
      if (quote != 0) quote = c == quote ? 0 : quote;
      else if (c == '"' || c == '\'') quote = c;
      else if (c == '>') return at + 1;
    }
    return FText.size();
  }
  TSourcePlace PlaceOf(TNode node) { return PlaceAt(StartOf(node)); }

 private:
  TSourcePlace PlaceAt(std::size_t offset) { return FPlaces.At(std::min(offset, FText.size())); }

  std::string_view FText;
  const std::string& FFileName;
  const TFormatRow* FFormat;
  pugi::xml_document FDocument;
  TPlaceFinder FPlaces{FText};
};

// --- the free Pascal environment's files

TProjectEntry SettingsEntry(TProjectXml& xml, TNode unit) {
  TProjectEntry entry;
  entry.Path = ValueOf(unit, "Filename");
  entry.UnitName = ValueOf(unit, "UnitName");
  if (entry.UnitName.empty()) entry.UnitName = ExtractFileNameEx(entry.Path);
  entry.FormName = ValueOf(unit, "ComponentName");
  const std::string base = ValueOf(unit, "ResourceBaseClass");
  if (!base.empty() && base != "Form" && base != "Other") entry.DesignClass = "T" + base;
  entry.Place = xml.PlaceOf(unit);
  return entry;
}

void AddSettingsFile(TProjectXml& xml, TNode unit, TProjectFile& project) {
  const std::string path = ValueOf(unit, "Filename");
  if (path.empty()) return;
  if (IsUnitFile(path)) project.Entries.push_back(SettingsEntry(xml, unit));
  else if (path != project.MainSource) project.OtherFiles.push_back(path);
}

// Folders that only the environment could name are left out.
void AddFolders(const std::string& list, std::vector<std::string>& folders) {
  constexpr std::string_view ownFolders[] = {"$(ProjPath)", "$(PkgDir)"};
  for (std::string folder : Split(list, ';')) {
    for (const std::string_view own : ownFolders)
      if (folder.starts_with(own)) folder.replace(0, own.size(), "./");
    if (folder.find("$(") == folder.npos && folder.find('*') == folder.npos)
      folders.push_back(std::move(folder));
  }
}

// Symbols stand among the compiler's other options.
void ReadCompilerOptions(TNode options, TProjectFile& project) {
  const TNode paths = options.child("SearchPaths");
  AddFolders(ValueOf(paths, "OtherUnitFiles"), project.UnitPaths);
  AddFolders(ValueOf(paths, "IncludeFiles"), project.IncludePaths);
  std::string custom = ValueOf(options.child("Other"), "CustomOptions");
  std::replace_if(
      custom.begin(), custom.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; },
      ' ');
  for (const std::string& option : Split(custom, ' '))
    if (option.starts_with("-d") && option.size() > 2)
      project.Symbols.insert(UpperCase(option.substr(2, option.find(":=") - 2)));
}

// The options of the root are those of the default mode.
TNode OptionsOfMode(TNode modes, TNode root, std::string_view wanted, TProjectFile& project) {
  TNode chosen = root.child("CompilerOptions");
  for (const TNode mode : modes.children()) {
    const std::string name = mode.attribute("Name").value();
    if (name.empty()) continue;
    project.Configurations.push_back(name);
    const bool isDefault = mode.attribute("Default").as_bool();
    if (wanted.empty() ? isDefault : name == wanted) {
      project.Configuration = name;
      if (const TNode own = mode.child("CompilerOptions")) chosen = own;
    }
  }
  return chosen;
}

char SeparatorOf(TNode options) {
  return ValueOf(options, "PathDelim") == "\\" ? '\\' : '/';
}

void ReadSettings(TProjectXml& xml, std::string_view configuration, TProjectFile& project) {
  const TNode options = xml.Root().child("ProjectOptions");
  const TNode general = options.child("General");
  project.PathSeparator = SeparatorOf(options);
  project.Name = ValueOf(general, "Title");
  const int main = general.child("MainUnit").attribute("Value").as_int(0);
  int index = 0;
  for (const TNode unit : options.child("Units").children()) {
    const bool own = unit.child("IsPartOfProject").attribute("Value").as_bool();
    if (index++ == main) project.MainSource = ValueOf(unit, "Filename");
    else if (own) AddSettingsFile(xml, unit, project);
  }
  for (const TNode package : options.child("RequiredPackages").children())
    project.Requires.push_back(ValueOf(package, "PackageName"));
  ReadCompilerOptions(
      OptionsOfMode(options.child("BuildModes"), xml.Root(), configuration, project), project);
  project.Symbols.insert("FPC");
  if (std::any_of(project.Requires.begin(), project.Requires.end(),
                  [](const std::string& name) { return EqualText(name, "LCL"); }))
    project.Symbols.insert("LCL");
}

void ReadPackage(TProjectXml& xml, TProjectFile& project) {
  const TNode package = xml.Root().child("Package");
  project.Kind = TProjectKind::Package;
  project.Name = ValueOf(package, "Name");
  project.PathSeparator = SeparatorOf(package);
  for (const TNode file : package.child("Files").children()) AddSettingsFile(xml, file, project);
  for (const TNode other : package.child("RequiredPkgs").children())
    project.Requires.push_back(ValueOf(other, "PackageName"));
  ReadCompilerOptions(package.child("CompilerOptions"), project);
  project.Symbols.insert({"FPC", "LCL"});
}

// --- build files

void ReadItems(TProjectXml& xml, TNode group, TProjectFile& project) {
  for (const TNode item : group.children()) {
    const std::string_view kind = item.name();
    const std::string path = item.attribute("Include").value();
    if (kind == "BuildConfiguration") project.Configurations.push_back(path);
    if ((kind != "DCCReference" && kind != "CppCompile") || path.empty()) continue;
    if (EqualText(ExtractFileExt(path), ".dcp"))
      project.Requires.push_back(ExtractFileNameEx(path));
    if (!IsUnitFile(path)) continue;
    TProjectEntry entry{ExtractFileNameEx(path), path, item.child_value("Form"),
                        item.child_value("DesignClass"), xml.PlaceOf(item)};
    if (path != project.MainSource) project.Entries.push_back(std::move(entry));
  }
}

// Variables get their values from top to bottom, as the build does it.
void ReadBuild(TProjectXml& xml, std::string_view configuration, TProjectFile& project) {
  TBuildVariables variables;
  if (!configuration.empty()) variables.Set("Config", configuration);
  for (const TNode group : xml.Root().children("PropertyGroup")) {
    if (!EvaluateBuildCondition(group.attribute("Condition").value(), variables)) continue;
    for (const TNode property : group.children())
      if (EvaluateBuildCondition(property.attribute("Condition").value(), variables))
        variables.Set(property.name(), variables.Expand(property.child_value()));
  }
  project.MainSource = variables.Get("MainSource");
  project.Configuration = variables.Get("Config");
  project.Name = ExtractFileNameEx(project.MainSource);
  if (EqualText(variables.Get("AppType"), "Package")) project.Kind = TProjectKind::Package;
  if (EqualText(variables.Get("AppType"), "Library")) project.Kind = TProjectKind::Library;
  AddFolders(variables.Get("DCC_UnitSearchPath"), project.UnitPaths);
  AddFolders(variables.Get("DCC_IncludePath"), project.IncludePaths);
  for (const std::string& symbol : Split(variables.Get("DCC_Define"), ';'))
    project.Symbols.insert(UpperCase(symbol));
  for (const TNode group : xml.Root().children("ItemGroup")) ReadItems(xml, group, project);
  std::erase(project.Configurations, "Base");
}

void ReadGroup(const TProjectXml& xml, TProjectFile& project) {
  for (const TNode group : xml.Root().children("ItemGroup"))
    for (const TNode item : group.children("Projects"))
      if (const std::string path = item.attribute("Include").value(); !path.empty())
        project.Projects.push_back(path);
}

// --- changes

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') escaped += "&amp;";
    else if (c == '<') escaped += "&lt;";
    else if (c == '>') escaped += "&gt;";
    else if (c == '"') escaped += "&quot;";
    else escaped.append(1, c);
  }
  return escaped;
}

// Where units stand: the element that holds them, and those that are units.
struct TUnitList {
  TNode Holder;
  std::vector<TNode> Units;
};

TUnitList UnitsOf(const TProjectXml& xml) {
  TUnitList list;
  if (xml.Format() == TFormat::Build) {
    for (const TNode group : xml.Root().children("ItemGroup"))
      for (const TNode item : group.children()) {
        const std::string_view kind = item.name();
        if (kind != "DCCReference" && kind != "CppCompile") continue;
        list.Holder = group;
        list.Units.push_back(item);
      }
    return list;
  }
  list.Holder = xml.Format() == TFormat::Package
                    ? xml.Root().child("Package").child("Files")
                    : xml.Root().child("ProjectOptions").child("Units");
  for (const TNode unit : list.Holder.children()) list.Units.push_back(unit);
  return list;
}

std::string PathOf(TFormat format, TNode unit) {
  return format == TFormat::Build ? unit.attribute("Include").value() : ValueOf(unit, "Filename");
}

// Letter case and the direction of slashes make no other file.
bool SamePath(std::string_view left, std::string_view right) {
  return EqualText(ResolveFileName("", left), ResolveFileName("", right));
}

// Elements of a list can be numbered; then their count stands in the holder.
constexpr std::string_view Digits = "0123456789";

std::string NumberedName(std::string_view name, std::size_t number) {
  const std::size_t digits = name.find_last_not_of(Digits) + 1;
  return digits == name.size() ? std::string(name)
                               : fmt::format("{}{}", name.substr(0, digits), number);
}

std::size_t NumberOf(std::string_view name) {
  const std::size_t digits = name.find_last_not_of(Digits) + 1;
  return digits == name.size()
             ? 0
             : static_cast<std::size_t>(StrToInt(std::string(name.substr(digits))));
}

// The value of an attribute, in the text between its quotes.
TSourceEdit AttributeEdit(const TProjectXml& xml, TNode node, std::string_view attribute,
                          const std::string& value) {
  const std::size_t start = xml.StartOf(node);
  const std::string_view tag = xml.Text().substr(start, xml.EndOfTag(start) - start);
  const std::size_t name = tag.find(fmt::format(" {}=", attribute));
  const std::size_t quote = tag.find_first_of("\"'", name + attribute.size());
  const std::size_t end = tag.find(tag[quote], quote + 1);
  return {start + quote + 1, end - quote - 1, Escaped(value)};
}

void CountEdit(const TProjectXml& xml, TNode holder, std::size_t count,
               std::vector<TSourceEdit>& edits) {
  if (holder.attribute("Count"))
    edits.push_back(AttributeEdit(xml, holder, "Count", std::to_string(count)));
}

// A line as the file writes them, indented by levels below the given text.
class TLines {
 public:
  TLines(const TProjectXml& xml, std::string_view indent)
      : FEnd(xml.Text().find("\r\n") != std::string_view::npos ? "\r\n" : "\n"),
        FIndent(indent),
        FStep(indent.find('\t') != indent.npos ? "\t" : "  ") {}
  void Add(int level, const std::string& line) {
    FText.append(FEnd).append(FIndent);
    for (int i = 0; i < level; ++i) FText.append(FStep);
    FText.append(line);
  }
  std::string Take() { return std::move(FText); }

 private:
  const char* FEnd;
  std::string FIndent;
  const char* FStep;
  std::string FText;
};

// The blanks in front of what starts there, if nothing else stands in its line.
std::string_view IndentAt(std::string_view text, std::size_t start) {
  std::size_t begin = start;
  while (begin > 0 && (text[begin - 1] == ' ' || text[begin - 1] == '\t')) --begin;
  return begin == 0 || text[begin - 1] == '\n' ? text.substr(begin, start - begin) : "";
}

void AddValue(TLines& lines, const char* name, const std::string& value) {
  if (!value.empty()) lines.Add(1, fmt::format("<{} Value=\"{}\"/>", name, Escaped(value)));
}

std::string UnitElement(const TProjectXml& xml, const std::string& name, std::string_view indent,
                        const TProjectEntry& unit) {
  TLines lines(xml, indent);
  if (xml.Format() == TFormat::Build) {
    const std::string head = fmt::format("<{} Include=\"{}\"", name, Escaped(unit.Path));
    if (unit.FormName.empty()) {
      lines.Add(0, head + "/>");
      return lines.Take();
    }
    lines.Add(0, head + ">");
    lines.Add(1, fmt::format("<Form>{}</Form>", Escaped(unit.FormName)));
    if (!unit.DesignClass.empty())
      lines.Add(1, fmt::format("<DesignClass>{}</DesignClass>", Escaped(unit.DesignClass)));
    lines.Add(0, fmt::format("</{}>", name));
    return lines.Take();
  }
  const bool package = xml.Format() == TFormat::Package;
  lines.Add(0, fmt::format("<{}>", name));
  AddValue(lines, "Filename", unit.Path);
  if (!package) AddValue(lines, "IsPartOfProject", "True");
  if (!package && !unit.FormName.empty()) {
    AddValue(lines, "ComponentName", unit.FormName);
    AddValue(lines, "HasResources", "True");
    AddValue(lines, "ResourceBaseClass",
             unit.DesignClass.empty() ? "Form" : unit.DesignClass.substr(1));
  }
  AddValue(lines, "UnitName", unit.UnitName);
  lines.Add(0, fmt::format("</{}>", name));
  return lines.Take();
}

// What elements of a list that holds none are called.
const char* FirstName(TFormat format, TSourceLanguage language) {
  if (format == TFormat::Build)
    return language == TSourceLanguage::Cpp ? "CppCompile" : "DCCReference";
  return format == TFormat::Package ? "Item" : "Unit";
}

// The name of one more element.
std::string NextName(TFormat format, const TUnitList& list, std::string_view path) {
  if (list.Units.empty()) return FirstName(format, LanguageOfFile(path));
  const std::string_view last = list.Units.back().name();
  return NumberedName(last, NumberOf(last) + 1);
}

std::size_t IndexOf(const TProjectXml& xml, const TUnitList& list, std::string_view path) {
  std::size_t index = 0;
  while (index < list.Units.size() && !SamePath(PathOf(xml.Format(), list.Units[index]), path))
    ++index;
  return index;
}

// The element with the blanks and the line end around it.
TSourceEdit LineRemoval(const TProjectXml& xml, TNode unit) {
  const std::string_view text = xml.Text();
  std::size_t start = xml.StartOf(unit);
  const std::size_t end = xml.EndOf(unit);
  start -= IndentAt(text, start).size();
  if (start > 0 && text[start - 1] == '\n') --start;
  if (start > 0 && text[start - 1] == '\r') --start;
  return {start, end - start, ""};
}

// The names of a numbered element, where it begins and where it ends.
void RenumberEdits(const TProjectXml& xml, TNode unit, std::vector<TSourceEdit>& edits) {
  const std::string_view name = unit.name();
  const std::string lower = NumberedName(name, NumberOf(name) - 1);
  if (lower == name) return;
  edits.push_back({xml.StartOf(unit) + 1, name.size(), lower});
  const std::size_t end = xml.EndOf(unit) - 1 - name.size();
  if (xml.Text().substr(end, name.size()) == name) edits.push_back({end, name.size(), lower});
}

}  // namespace

bool IsProjectDescription(std::string_view fileName) {
  const TFormatRow* row = FindFormat(fileName);
  return row != nullptr && row->Format != TFormat::Group;
}

bool IsProjectGroup(std::string_view fileName) {
  const TFormatRow* row = FindFormat(fileName);
  return row != nullptr && row->Format == TFormat::Group;
}

bool IsProjectName(std::string_view fileName) {
  constexpr std::string_view sources[] = {".dpr", ".dpk", ".lpr"};
  const std::string extension = LowerCase(ExtractFileExt(fileName));
  return FindFormat(fileName) != nullptr ||
         std::find(std::begin(sources), std::end(sources), extension) != std::end(sources);
}

TProjectFile ParseProjectFile(std::string_view text, const std::string& fileName,
                              std::string_view configuration) {
  TProjectXml xml(text, fileName);
  TProjectFile project;
  switch (xml.Format()) {
    case TFormat::Settings:
      ReadSettings(xml, configuration, project);
      break;
    case TFormat::Package:
      ReadPackage(xml, project);
      break;
    case TFormat::Build:
      ReadBuild(xml, configuration, project);
      break;
    case TFormat::Group:
      ReadGroup(xml, project);
      break;
    case TFormat::None:
      break;
  }
  if (project.Name.empty()) project.Name = ExtractFileNameEx(fileName);
  return project;
}

std::vector<TSourceEdit> AddToProjectFileEdits(std::string_view text, const std::string& fileName,
                                               const TProjectEntry& unit) {
  TProjectXml xml(text, fileName);
  const TUnitList list = UnitsOf(xml);
  std::vector<TSourceEdit> edits;
  if (!list.Holder || IndexOf(xml, list, unit.Path) < list.Units.size()) return edits;
  CountEdit(xml, list.Holder, list.Units.size() + 1, edits);
  const std::string name = NextName(xml.Format(), list, unit.Path);
  if (!list.Units.empty()) {
    const TNode last = list.Units.back();
    edits.push_back(
        {xml.EndOf(last), 0, UnitElement(xml, name, IndentAt(text, xml.StartOf(last)), unit)});
    return edits;
  }
  // Behind the head of a list that holds nothing; one that ends in itself gets an end.
  const std::size_t start = xml.StartOf(list.Holder), head = xml.EndOfTag(start);
  const std::string indent(IndentAt(text, start));
  std::string element = UnitElement(xml, name, indent + "  ", unit);
  if (text[head - 2] == '/') {
    TLines end(xml, indent);
    end.Add(0, fmt::format("</{}>", list.Holder.name()));
    element.append(end.Take());
    edits.push_back({head - 2, 1, ""});
  }
  edits.push_back({head, 0, std::move(element)});
  return edits;
}

std::vector<TSourceEdit> RemoveFromProjectFileEdits(std::string_view text,
                                                    const std::string& fileName,
                                                    std::string_view path) {
  TProjectXml xml(text, fileName);
  const TUnitList list = UnitsOf(xml);
  std::vector<TSourceEdit> edits;
  const std::size_t index = IndexOf(xml, list, path);
  if (index == list.Units.size()) return edits;
  CountEdit(xml, list.Holder, list.Units.size() - 1, edits);
  edits.push_back(LineRemoval(xml, list.Units[index]));
  for (std::size_t i = index + 1; i < list.Units.size(); ++i)
    RenumberEdits(xml, list.Units[i], edits);
  return edits;
}

std::vector<TSourceEdit> RenameInProjectFileEdits(std::string_view text,
                                                  const std::string& fileName,
                                                  std::string_view oldPath,
                                                  const TProjectEntry& unit) {
  TProjectXml xml(text, fileName);
  const TUnitList list = UnitsOf(xml);
  const std::size_t index = IndexOf(xml, list, oldPath);
  if (index == list.Units.size()) return {};
  const TNode found = list.Units[index];
  if (xml.Format() == TFormat::Build) return {AttributeEdit(xml, found, "Include", unit.Path)};
  std::vector<TSourceEdit> edits{AttributeEdit(xml, found.child("Filename"), "Value", unit.Path)};
  if (const TNode name = found.child("UnitName"))
    edits.push_back(AttributeEdit(xml, name, "Value", unit.UnitName));
  std::sort(edits.begin(), edits.end(), [](const TSourceEdit& left, const TSourceEdit& right) {
    return left.Offset < right.Offset;
  });
  return edits;
}

}  // namespace wrenfold
