unit AccountDialog;

{ Asks for a new account. }

interface

uses
  Classes, Controls, Forms, StdCtrls, ExtCtrls, BaseDialog, LedgerBook, LedgerTypes;

type
  TAccountDialogForm = class(TBaseDialogForm)
    CodeLabel: TLabel;
    CodeEdit: TEdit;
    TitleLabel: TLabel;
    TitleEdit: TEdit;
    KindGroup: TRadioGroup;
  private
    FBook: TLedgerBook;
  protected
    function Complaint: string; override;
  public
    function AddAccount(Book: TLedgerBook): Boolean;
  end;

implementation

uses
  SysUtils;

{$R *.dfm}

function TAccountDialogForm.Complaint: string;
begin
  Result := inherited Complaint;
  if Result <> '' then
    Exit;
  if Trim(CodeEdit.Text) = '' then
    Result := 'An account needs a code.'
  else if FBook.Accounts.Find(Trim(CodeEdit.Text)) <> nil then
    Result := 'There is an account with this code already.';
end;

function TAccountDialogForm.AddAccount(Book: TLedgerBook): Boolean;
var
  Account: TAccount;
begin
  FBook := Book;
  Result := Execute;
  if not Result then
    Exit;
  Account := Book.Accounts.Add;
  Account.Code := Trim(CodeEdit.Text);
  Account.Title := Trim(TitleEdit.Text);
  Account.Kind := TAccountKind(KindGroup.ItemIndex);
  Book.Changed;
end;

end.
