program Ledger;
{$IFDEF WIN32}
uses
  Forms,
  Main in 'core\Main.pas' {MainForm},
  Data in 'Data.pas' {Data: TDataModule};
{$ENDIF}
{$R *.RES}
begin
  Application.CreateForm(TMainForm, MainForm);
end.
