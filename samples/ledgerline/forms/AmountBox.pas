unit AmountBox;

{ A box to type an amount in, with the meaning of what was typed beside it. }

interface

uses
  Classes, Controls, Forms, Graphics, StdCtrls;

type
  TAmountFrame = class(TFrame)
    AmountLabel: TLabel;
    AmountEdit: TEdit;
    MeaningLabel: TLabel;
    procedure AmountEditChange(Sender: TObject);
  private
    function GetAmount: Currency;
    procedure SetAmount(const Value: Currency);
  public
    function Valid: Boolean;
    property Amount: Currency read GetAmount write SetAmount;
  end;

implementation

uses
  LedgerMoney;

{$R *.dfm}

procedure TAmountFrame.AmountEditChange(Sender: TObject);
var
  Value: Currency;
begin
  if TryTextToMoney(AmountEdit.Text, Value) then
  begin
    MeaningLabel.Caption := MoneyToText(Value);
    MeaningLabel.Font.Color := clWindowText;
  end
  else
  begin
    MeaningLabel.Caption := 'no amount';
    MeaningLabel.Font.Color := clRed;
  end;
end;

function TAmountFrame.GetAmount: Currency;
begin
  Result := TextToMoney(AmountEdit.Text);
end;

procedure TAmountFrame.SetAmount(const Value: Currency);
begin
  AmountEdit.Text := MoneyToText(Value);
end;

function TAmountFrame.Valid: Boolean;
var
  Value: Currency;
begin
  Result := TryTextToMoney(AmountEdit.Text, Value);
end;

end.
