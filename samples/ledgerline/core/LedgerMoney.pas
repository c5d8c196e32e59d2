unit LedgerMoney;

{ Amounts as the user writes them: "12,50 €", "1 200", "-3.5". }

interface

function MoneyToText(const Amount: Currency): string;
{ Raises ELedgerError with the text when it is no amount. }
function TextToMoney(const Text: string): Currency;
function TryTextToMoney(const Text: string; var Amount: Currency): Boolean;

implementation

uses
  SysUtils, LedgerTypes;

const
  CurrencySign = '€';
  { A blank that does not break a line, as tables copied from a bank's pages have it. }
  FixedBlank = #160;

{ The last comma or full stop stands before the cents; those before it group thousands. }
function Cleaned(const Text: string): string;
var
  I, CentsMark: Integer;
begin
  CentsMark := LastDelimiter(',.', Text);
  Result := '';
  for I := 1 to Length(Text) do
    case Text[I] of
      '0'..'9', '-':
        Result := Result + Text[I];
      ',', '.':
        if I = CentsMark then
          Result := Result + DecimalSeparator;
      ' ', FixedBlank, CurrencySign:
        ;
    else
      Result := '';
      Exit;
    end;
end;

function MoneyToText(const Amount: Currency): string;
begin
  Result := FormatFloat('#,##0.00', Amount) + ' ' + CurrencySign;
end;

function TryTextToMoney(const Text: string; var Amount: Currency): Boolean;
var
  Value: Extended;
begin
  Result := TextToFloat(PChar(Cleaned(Text)), Value, fvExtended);
  if Result then
    Amount := Value;
end;

function TextToMoney(const Text: string): Currency;
begin
  if not TryTextToMoney(Text, Result) then
    raise ELedgerError.CreateFmt('"%s" is not an amount', [Text]);
end;

end.
