unit LedgerSettings;

{ What the program remembers between two runs. }

interface

uses
  Classes, Forms;

const
  MaxRecentFiles = 8;

procedure LoadPlacement(Form: TForm);
procedure SavePlacement(Form: TForm);
procedure LoadRecentFiles(Files: TStrings);
procedure AddRecentFile(const FileName: string);

implementation

uses
  IniFiles, SysUtils;

const
  RecentSection = 'Recent';

function OpenSettings: TIniFile;
begin
  Result := TIniFile.Create(ChangeFileExt(Application.ExeName, '.ini'));
end;

procedure LoadPlacement(Form: TForm);
var
  Settings: TIniFile;
begin
  Settings := OpenSettings;
  try
    with Settings do
      Form.SetBounds(ReadInteger(Form.Name, 'Left', Form.Left),
        ReadInteger(Form.Name, 'Top', Form.Top),
        ReadInteger(Form.Name, 'Width', Form.Width),
        ReadInteger(Form.Name, 'Height', Form.Height));
  finally
    Settings.Free;
  end;
end;

procedure SavePlacement(Form: TForm);
var
  Settings: TIniFile;
begin
  Settings := OpenSettings;
  try
    Settings.WriteInteger(Form.Name, 'Left', Form.Left);
    Settings.WriteInteger(Form.Name, 'Top', Form.Top);
    Settings.WriteInteger(Form.Name, 'Width', Form.Width);
    Settings.WriteInteger(Form.Name, 'Height', Form.Height);
  finally
    Settings.Free;
  end;
end;

procedure LoadRecentFiles(Files: TStrings);
var
  Settings: TIniFile;
  I: Integer;
  FileName: string;
begin
  Settings := OpenSettings;
  try
    Files.Clear;
    for I := 1 to MaxRecentFiles do
    begin
      FileName := Settings.ReadString(RecentSection, IntToStr(I), '');
      if FileName <> '' then
        Files.Add(FileName);
    end;
  finally
    Settings.Free;
  end;
end;

procedure AddRecentFile(const FileName: string);
var
  Settings: TIniFile;
  Files: TStringList;
  I: Integer;
begin
  Files := TStringList.Create;
  try
    LoadRecentFiles(Files);
    I := Files.IndexOf(FileName);
    if I >= 0 then
      Files.Delete(I);
    Files.Insert(0, FileName);
    Settings := OpenSettings;
    try
      Settings.EraseSection(RecentSection);
      for I := 0 to Files.Count - 1 do
        if I < MaxRecentFiles then
          Settings.WriteString(RecentSection, IntToStr(I + 1), Files[I]);
    finally
      Settings.Free;
    end;
  finally
    Files.Free;
  end;
end;

end.
