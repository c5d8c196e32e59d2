// Project files of today's environments: what is read from them, and that edits touch nothing else.
#include <gtest/gtest.h>

#include "project/BuildConditions.h"
#include "project/Project.h"
#include "project/ProjectFile.h"
#include "project/TestSupport.h"
#include "project/UnitEdits.h"

namespace wrenfold {
namespace {

const std::string Settings =
    "<?xml version=\"1.0\"?>\n<CONFIG>\n  <ProjectOptions>\n    <PathDelim Value=\"\\\"/>\n"
    "    <BuildModes Count=\"2\">\n      <Item1 Name=\"Default\" Default=\"True\"/>\n"
    "      <Item2 Name=\"Fast\"><CompilerOptions><Other>\n"
    "        <CustomOptions Value=\"-dFAST -O3\"/></Other></CompilerOptions></Item2>\n"
    "    </BuildModes>\n    <RequiredPackages><Item1><PackageName Value=\"LCL\"/></Item1>"
    "</RequiredPackages>\n    <Units Count=\"3\">\n"
    "      <Unit0>\n        <Filename Value=\"App.lpr\"/>\n"
    "        <IsPartOfProject Value=\"True\"/>\n      </Unit0>\n"
    "      <Unit1>\n        <Filename Value=\"ui\\Main.pas\"/>\n"
    "        <IsPartOfProject Value=\"True\"/>\n        <ComponentName Value=\"MainForm\"/>\n"
    "        <ResourceBaseClass Value=\"DataModule\"/>\n        <UnitName Value=\"Main\"/>\n"
    "      </Unit1>\n"
    "      <Unit2>\n        <Filename Value=\"notes&amp;more.txt\"/>\n"
    "        <IsPartOfProject Value=\"True\"/>\n      </Unit2>\n    </Units>\n"
    "  </ProjectOptions>\n  <CompilerOptions>\n    <SearchPaths>\n"
    "      <OtherUnitFiles Value=\"lib;$(Unknown)\\x;$(ProjPath)\\own\"/>\n    </SearchPaths>\n"
    "    <Other><CustomOptions Value=\"-dSlow&#10;-dX:=1\"/></Other>\n  </CompilerOptions>\n"
    "</CONFIG>\n";

const std::string Build =
    "<Project>\r\n\t<PropertyGroup>\r\n\t\t<MainSource>App.dpr</MainSource>\r\n"
    "\t\t<Config Condition=\"'$(Config)'==''\">Debug</Config>\r\n\t</PropertyGroup>\r\n"
    "\t<PropertyGroup Condition=\"'$(Config)'=='Debug' or '$(Cfg_1)'!=''\">\r\n"
    "\t\t<DCC_Define>DEBUG;$(DCC_Define)</DCC_Define>\r\n\t</PropertyGroup>\r\n"
    "\t<PropertyGroup Condition=\"('$(Config)'=='Release') and !('$(MainSource)'=='')\">\r\n"
    "\t\t<DCC_UnitSearchPath>..\\lib;$(DCC_UnitSearchPath)</DCC_UnitSearchPath>\r\n"
    "\t</PropertyGroup>\r\n"
    "\t<ItemGroup>\r\n\t\t<DCCReference Include=\"rtl.dcp\"/>\r\n"
    "\t\t<DCCReference Include=\"Main.pas\">\r\n\t\t\t<Form>MainForm</Form>\r\n"
    "\t\t\t<DesignClass>TFrame</DesignClass>\r\n\t\t</DCCReference>\r\n"
    "\t\t<BuildConfiguration Include=\"Base\"/>\r\n\t\t<BuildConfiguration Include=\"Debug\"/>\r\n"
    "\t\t<BuildConfiguration Include=\"Release\"/>\r\n\t</ItemGroup>\r\n</Project>\r\n";

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : "|") + text;
  return joined;
}

std::string Joined(const TDefinedSymbols& symbols) {
  return Joined(std::vector<std::string>(symbols.begin(), symbols.end()));
}

TEST(ProjectFile, TellsUnitsFoldersAndSymbolsOfTheConfiguration) {
  const TProjectFile file = ParseProjectFile(Settings, "App.lpi");
  EXPECT_EQ(file.MainSource, "App.lpr");
  ASSERT_EQ(file.Entries.size(), 1u);
  EXPECT_EQ(file.Entries[0].Path + file.Entries[0].FormName + file.Entries[0].DesignClass,
            "ui\\Main.pasMainFormTDataModule");
  EXPECT_EQ(file.Entries[0].Place.Line, 16);
  EXPECT_EQ(Joined(file.OtherFiles), "notes&more.txt");
  EXPECT_EQ(Joined(file.UnitPaths), "lib|./\\own");
  EXPECT_EQ(Joined(file.Symbols), "FPC|LCL|SLOW|X");
  EXPECT_EQ(Joined(file.Configurations), "Default|Fast");
  EXPECT_EQ(Joined(ParseProjectFile(Settings, "App.lpi", "Fast").Symbols), "FAST|FPC|LCL");

  const TProjectFile build = ParseProjectFile(Build, "App.dproj");
  EXPECT_EQ(build.MainSource + "|" + build.Configuration, "App.dpr|Debug");
  EXPECT_EQ(Joined(build.Symbols) + Joined(build.UnitPaths), "DEBUG");
  EXPECT_EQ(Joined(build.Requires), "rtl");
  ASSERT_EQ(build.Entries.size(), 1u);
  EXPECT_EQ(build.Entries[0].DesignClass, "TFrame");
  EXPECT_EQ(Joined(build.Configurations), "Debug|Release");
  EXPECT_EQ(Joined(ParseProjectFile(Build, "App.dproj", "Release").UnitPaths), "..\\lib");
}

TEST(ProjectFile, ConditionsAreReadWholeOrDoNotHold) {
  TBuildVariables variables;
  variables.Set("Config", "Debug");
  const std::pair<const char*, bool> rows[] = {
      {"", true},
      {"'$(CONFIG)'=='debug'", true},
      {"'$(Config)' != 'Debug' Or ('a'=='a' And !('a'=='b'))", true},
      {"'a'=='b' and 'a'=='a' or 'c'=='c'", true},
      {"Exists('x.proj')", false},
      {"'$(Config)'=='Debug", false},
      {"'a'=='a' and", false},
      {"'a'=='a')", false},
      {"$(Missing)==''", true},
  };
  for (const auto& [condition, value] : rows)
    EXPECT_EQ(EvaluateBuildCondition(condition, variables), value) << condition;
  EXPECT_FALSE(EvaluateBuildCondition(std::string(100000, '('), variables));
}

std::string Replaced(std::string text, std::string_view part, std::string_view with) {
  return text.replace(text.find(part), part.size(), with);
}

TEST(ProjectFile, EditsKeepEveryOtherByte) {
  const TProjectEntry extra{"Extra", "ui\\Extra.pas", "ExtraForm", "", {}};
  const auto added = ApplyEdits(Settings, AddToProjectFileEdits(Settings, "App.lpi", extra));
  const std::string element =
      "\n      <Unit3>\n        <Filename Value=\"ui\\Extra.pas\"/>\n"
      "        <IsPartOfProject Value=\"True\"/>\n        <ComponentName Value=\"ExtraForm\"/>\n"
      "        <HasResources Value=\"True\"/>\n        <ResourceBaseClass Value=\"Form\"/>\n"
      "        <UnitName Value=\"Extra\"/>\n      </Unit3>";
  EXPECT_EQ(added, Replaced(Replaced(Settings, "Count=\"3\"", "Count=\"4\""), "</Unit2>",
                            "</Unit2>" + element));
  EXPECT_EQ(ApplyEdits(added, RemoveFromProjectFileEdits(added, "App.lpi", "UI/extra.pas")),
            Settings);
  const auto less =
      ApplyEdits(Settings, RemoveFromProjectFileEdits(Settings, "App.lpi", "ui\\Main.pas"));
  EXPECT_EQ(less.find("Main"), std::string::npos);
  EXPECT_NE(less.find("<Unit1>\n        <Filename Value=\"notes&amp;more.txt\"/>"),
            std::string::npos)
      << "the elements behind are numbered anew";
  EXPECT_NE(less.find("</Unit1>\n    </Units>"), std::string::npos);
  EXPECT_EQ(ApplyEdits(Settings, RenameInProjectFileEdits(Settings, "App.lpi", "ui\\Main.pas",
                                                          {"A&B", "A&B.pas", "", "", {}})),
            Replaced(Replaced(Settings, "ui\\Main.pas", "A&amp;B.pas"), "\"Main\"", "\"A&amp;B\""));

  const auto built = ApplyEdits(Build, AddToProjectFileEdits(Build, "App.dproj", extra));
  EXPECT_EQ(built, Replaced(Build, "</DCCReference>",
                            "</DCCReference>\r\n\t\t<DCCReference Include=\"ui\\Extra.pas\">\r\n"
                            "\t\t\t<Form>ExtraForm</Form>\r\n\t\t</DCCReference>"));
  const std::string empty = "<CONFIG><Package>\n  <Files/>\n</Package></CONFIG>";
  EXPECT_EQ(ApplyEdits(empty, AddToProjectFileEdits(empty, "P.lpk", {"A", "a.pas", "", "", {}})),
            "<CONFIG><Package>\n  <Files>\n    <Item>\n      <Filename Value=\"a.pas\"/>\n"
            "      <UnitName Value=\"A\"/>\n    </Item>\n  </Files>\n</Package></CONFIG>");
}

TEST(ProjectFile, WhatIsNoneIsRefusedInWordsAndDoesNoHarm) {
  std::string laughs = "<!DOCTYPE p [<!ENTITY a \"aaaaaaaaaa\">";
  for (char c = 'b'; c < 'k'; ++c)
    laughs += std::string("<!ENTITY ") + c + " \"&" + char(c - 1) + ";&" + char(c - 1) + ";\">";
  const struct {
    const char* Name;
    std::string Text;
    const char* Message;  // null: read
  } rows[] = {
      {"a.lpi", "", "expected the XML text"},
      {"a.lpi", "<CONFIG><Units></CONFIG>", "a.lpi(1,"},
      {"a.dproj", "<CONFIG/>", "first element is <Project>"},
      {"a.lpi", std::string(200000, '<'), "expected the XML text"},
      {"a.dproj",
       laughs + "]><Project><PropertyGroup><MainSource>&j;</MainSource></PropertyGroup></Project>",
       nullptr},
      {"a.dproj", "<Project><PropertyGroup><A>x</A><A>$(A)$(A)</A></PropertyGroup></Project>",
       nullptr},
  };
  for (const auto& row : rows) {
    std::string message;
    try {
      EXPECT_LT(ParseProjectFile(row.Text, row.Name).MainSource.size(), 100u);
    } catch (const EProjectError& error) {
      message = error.Message();
    }
    if (row.Message == nullptr) EXPECT_EQ(message, "");
    else EXPECT_NE(message.find(row.Message), std::string::npos) << message;
  }
}

TEST(ProjectFile, ProjectOpensWithItFromEitherSide) {
  const TTemporaryFolder folder;
  folder.Write("ui/Main.pas", "");
  folder.Write("own/Helper.pas", "");
  const std::string file = folder.Write("App.lpi", Settings);
  const std::string source =
      folder.Write("App.lpr", "program App; uses Main, Helper, Nowhere; begin end.");
  for (const std::string& name : {file, source}) {
    const auto project = TProject::Open(name);
    EXPECT_EQ(project->FileName(), source);
    EXPECT_EQ(project->DescriptionName(), file);
    ASSERT_EQ(project->Modules().size(), 2u) << name;
    EXPECT_EQ(project->Modules()[0].FileName, folder.Path() + "/ui/Main.pas");
    EXPECT_EQ(project->Modules()[0].FormName, "MainForm");
    EXPECT_EQ(project->Modules()[1].FileName, folder.Path() + "/own/Helper.pas");
    EXPECT_TRUE(project->Symbols().contains("SLOW"));
  }
  folder.Write("App.lpr", "begin end.");
  EXPECT_EQ(TProject::Open(file)->Modules().size(), 1u) << "the list of the file is enough";
  std::filesystem::remove(source);
  EXPECT_THROW(TProject::Open(file), EProjectError);
}

}  // namespace
}  // namespace wrenfold
