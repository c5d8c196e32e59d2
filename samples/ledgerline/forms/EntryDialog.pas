unit EntryDialog;

{ Asks for an entry of the book. }

interface

uses
  Classes, Controls, Forms, StdCtrls, ComCtrls, ExtCtrls, BaseDialog, AmountBox,
  LedgerBook, LedgerTypes;

type
  TEntryDialogForm = class(TBaseDialogForm)
    DayLabel: TLabel;
    DayPicker: TDateTimePicker;
    TextLabel: TLabel;
    TextEdit: TEdit;
    FromLabel: TLabel;
    FromCombo: TComboBox;
    ToLabel: TLabel;
    ToCombo: TComboBox;
    AmountFrame1: TAmountFrame;
    procedure FormShow(Sender: TObject);
  private
    FBook: TLedgerBook;
    function CodeOf(Combo: TComboBox): string;
  protected
    function Complaint: string; override;
  public
    { Posts the entry that the user gives; False when the user gives none. }
    function PostEntry(Book: TLedgerBook): Boolean;
  end;

implementation

uses
  SysUtils;

{$R *.dfm}

procedure TEntryDialogForm.FormShow(Sender: TObject);
var
  I: Integer;
begin
  DayPicker.Date := Date;
  FromCombo.Items.Clear;
  for I := 0 to FBook.Accounts.Count - 1 do
    FromCombo.Items.AddObject(FBook.Accounts[I].Title, FBook.Accounts[I]);
  ToCombo.Items := FromCombo.Items;
end;

function TEntryDialogForm.CodeOf(Combo: TComboBox): string;
begin
  if Combo.ItemIndex < 0 then
    Result := ''
  else
    Result := TAccount(Combo.Items.Objects[Combo.ItemIndex]).Code;
end;

function TEntryDialogForm.Complaint: string;
begin
  Result := inherited Complaint;
  if Result <> '' then
    Exit;
  if CodeOf(FromCombo) = '' then
    Result := 'Choose the account that the money comes from.'
  else if CodeOf(ToCombo) = '' then
    Result := 'Choose the account that the money goes to.'
  else if not AmountFrame1.Valid then
    Result := 'The amount is not a number.';
end;

function TEntryDialogForm.PostEntry(Book: TLedgerBook): Boolean;
begin
  FBook := Book;
  Result := Execute;
  if Result then
    Book.Post(DayPicker.Date, TextEdit.Text, CodeOf(FromCombo), CodeOf(ToCombo),
      AmountFrame1.Amount);
end;

end.
