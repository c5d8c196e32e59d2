// The texts of new files, and writing them.
#include "host/documents/NewFiles.h"

#include <fmt/format.h>

#include "platform/core/system/Exceptions.h"
#include "platform/core/system/Files.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

// In all texts {0} is the project's or the unit's name, {1} the form's.

constexpr std::string_view ConsoleProgram = R"(program {0};

{{$APPTYPE CONSOLE}}

uses
  SysUtils;

begin
  WriteLn('{0}');
end.
)";

constexpr std::string_view FreeConsoleProgram = R"(program {0};

{{$mode objfpc}}{{$H+}}

uses
  SysUtils;

begin
  WriteLn('{0}');
end.
)";

constexpr std::string_view FormsProgram = R"(program {0};

uses
  Forms,
  Main in 'Main.pas' {{MainForm}};

{{$R *.res}}

begin
  Application.Initialize;
  Application.CreateForm(TMainForm, MainForm);
  Application.Run;
end.
)";

constexpr std::string_view FreeFormsProgram = R"(program {0};

{{$mode objfpc}}{{$H+}}

uses
  {{$IFDEF UNIX}}
  cthreads,
  {{$ENDIF}}
  Interfaces,
  Forms,
  Main;

begin
  Application.Initialize;
  Application.CreateForm(TMainForm, MainForm);
  Application.Run;
end.
)";

constexpr std::string_view FormUnit = R"(unit {0};

{2}interface

uses
  {3};

type
  T{1} = class(TForm)
  private
  public
  end;

var
  {1}: T{1};

implementation

{{$R *{4}}}

end.
)";

constexpr std::string_view Form = R"(object {1}: T{1}
  Left = 200
  Top = 120
  Caption = '{1}'
  ClientHeight = 300
  ClientWidth = 440
end
)";

constexpr std::string_view ProjectFile = R"(<?xml version="1.0" encoding="UTF-8"?>
<CONFIG>
  <ProjectOptions>
    <Version Value="12"/>
    <General>
      <Title Value="{0}"/>
    </General>
    <BuildModes>
      <Item Name="Default" Default="True"/>
    </BuildModes>
{2}    <Units>
      <Unit>
        <Filename Value="{0}.lpr"/>
        <IsPartOfProject Value="True"/>
      </Unit>
{3}    </Units>
  </ProjectOptions>
  <CompilerOptions>
    <Version Value="11"/>
    <Target>
      <Filename Value="{0}"/>
    </Target>
  </CompilerOptions>
</CONFIG>
)";

constexpr std::string_view FormPackages = R"(    <RequiredPackages>
      <Item>
        <PackageName Value="LCL"/>
      </Item>
    </RequiredPackages>
)";

constexpr std::string_view MainUnit = R"(      <Unit>
        <Filename Value="Main.pas"/>
        <IsPartOfProject Value="True"/>
        <ComponentName Value="MainForm"/>
        <HasResources Value="True"/>
        <ResourceBaseClass Value="Form"/>
        <UnitName Value="Main"/>
      </Unit>
)";

constexpr std::string_view FreeFormExtension = ".lfm";

// Sources of Windows end their lines as there.
std::string WithLineEnds(const std::string& text, bool windows) {
  if (!windows) return text;
  std::string ended;
  for (const char c : text) ended.append(c == '\n' ? "\r\n" : std::string(1, c));
  return ended;
}

template <class... Texts>
std::string Filled(std::string_view pattern, const Texts&... texts) {
  return fmt::format(fmt::runtime(pattern), texts...);
}

}  // namespace

std::vector<TNewFile> NewProjectFiles(TNewProject kind, const std::string& fileName) {
  const std::string name = ExtractFileNameEx(fileName), folder = ExtractFilePath(fileName);
  const bool forms = kind == TNewProject::Forms;
  std::vector<TNewFile> files;
  if (LowerCase(ExtractFileExt(fileName)) == ".lpi") {
    files.push_back({fileName, Filled(ProjectFile, name, "", forms ? FormPackages : "",
                                      forms ? MainUnit : "")});
    files.push_back({ChangeFileExt(fileName, ".lpr"),
                     Filled(forms ? FreeFormsProgram : FreeConsoleProgram, name)});
  } else {
    files.push_back(
        {fileName, WithLineEnds(Filled(forms ? FormsProgram : ConsoleProgram, name), true)});
  }
  if (!forms) return files;
  const bool free = files.size() == 2;
  for (TNewFile& file : NewFormFiles(folder + "Main.pas", "MainForm", free ? ".lfm" : ".dfm"))
    files.push_back(std::move(file));
  return files;
}

std::vector<TNewFile> NewFormFiles(const std::string& unitFile, const std::string& formName,
                                   std::string_view formExtension) {
  const bool free = formExtension == FreeFormExtension;
  const std::string unit = ExtractFileNameEx(unitFile);
  return {{unitFile,
           WithLineEnds(Filled(FormUnit, unit, formName, free ? "{$mode objfpc}{$H+}\n\n" : "",
                               free ? "Classes, SysUtils, Forms, Controls, Graphics"
                                    : "Windows, Messages, SysUtils, Classes, Graphics, "
                                      "Controls, Forms",
                               formExtension),
                        !free)},
          {ChangeFileExt(unitFile, std::string(formExtension)),
           WithLineEnds(Filled(Form, unit, formName), !free)}};
}

void WriteNewFiles(const std::vector<TNewFile>& files) {
  for (std::size_t i = 1; i < files.size(); ++i)
    if (FileExists(files[i].FileName))
      throw EFCreateError(fmt::format("{}: the file is there already; expected a folder without it",
                                      files[i].FileName));
  for (const TNewFile& file : files) SafeWriteFile(file.FileName, file.Text);
}

}  // namespace wrenfold
