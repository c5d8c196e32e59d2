unit BookData;

{ The open book and the dialogs that choose its file. }

interface

uses
  Classes, Controls, Dialogs, Forms, SysUtils, LedgerBook;

type
  TBookModule = class(TDataModule)
    OpenDialog: TOpenDialog;
    SaveDialog: TSaveDialog;
    ImportDialog: TOpenDialog;
    procedure BookModuleCreate(Sender: TObject);
    procedure BookModuleDestroy(Sender: TObject);
  private
    FBook: TLedgerBook;
  public
    { False when the user wants to go on with the present book. }
    function MayLeaveBook: Boolean;
    function OpenBook: Boolean;
    function SaveBook: Boolean;
    property Book: TLedgerBook read FBook;
  end;

var
  BookModule: TBookModule;

implementation

uses
  LedgerSettings;

{$R *.dfm}

procedure TBookModule.BookModuleCreate(Sender: TObject);
begin
  FBook := TLedgerBook.Create;
end;

procedure TBookModule.BookModuleDestroy(Sender: TObject);
begin
  FBook.Free;
end;

function TBookModule.MayLeaveBook: Boolean;
begin
  Result := True;
  if FBook.Modified then
    case MessageDlg('Save the changes of this book?', mtConfirmation, mbYesNoCancel, 0) of
      mrYes:
        Result := SaveBook;
      mrCancel:
        Result := False;
    end;
end;

function TBookModule.OpenBook: Boolean;
begin
  Result := MayLeaveBook and OpenDialog.Execute;
  if Result then
  begin
    FBook.LoadFromFile(OpenDialog.FileName);
    AddRecentFile(OpenDialog.FileName);
  end;
end;

function TBookModule.SaveBook: Boolean;
begin
  if FBook.FileName <> '' then
    SaveDialog.FileName := FBook.FileName;
  Result := (FBook.FileName <> '') or SaveDialog.Execute;
  if Result then
    FBook.SaveToFile(SaveDialog.FileName);
end;

end.
