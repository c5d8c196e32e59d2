unit BaseDialog;

{ The dialog that all others derive from: two buttons, and a check before it closes. }

interface

uses
  Classes, Controls, Forms, StdCtrls, ExtCtrls, Dialogs;

type
  TBaseDialogForm = class(TForm)
    ButtonPanel: TPanel;
    OkButton: TButton;
    CancelButton: TButton;
    ClientPanel: TPanel;
    procedure FormCloseQuery(Sender: TObject; var CanClose: Boolean);
  protected
    { The sentence that tells the user what is wrong, or nothing. }
    function Complaint: string; virtual;
  public
    function Execute: Boolean;
  end;

implementation

{$R *.dfm}

function TBaseDialogForm.Complaint: string;
begin
  Result := '';
end;

function TBaseDialogForm.Execute: Boolean;
begin
  Result := ShowModal = mrOk;
end;

procedure TBaseDialogForm.FormCloseQuery(Sender: TObject; var CanClose: Boolean);
begin
  CanClose := (ModalResult <> mrOk) or (Complaint = '');
  if not CanClose then
    MessageDlg(Complaint, mtWarning, [mbOk], 0);
end;

end.
