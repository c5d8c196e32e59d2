unit LedgerReport;

{ Sums of a span of time, account by account, as lines of text. }

interface

uses
  Classes, LedgerBook, LedgerTypes;

type
  TReportLine = procedure(const Title: string; const Amount: Currency) of object;

  TLedgerReport = class
  private
    FBook: TLedgerBook;
    FFirstDay: TDateTime;
    FLastDay: TDateTime;
  public
    constructor Create(Book: TLedgerBook; FirstDay, LastDay: TDateTime);
    function Turnover(Account: TAccount): Currency;
    { Calls the handler for each account of the kind and returns the sum. }
    function ListKind(Kind: TAccountKind; Handler: TReportLine): Currency;
    procedure Write(Lines: TStrings);
  end;

implementation

uses
  SysUtils, LedgerMoney;

type
  TLineWriter = class
  private
    FLines: TStrings;
  public
    procedure AddLine(const Title: string; const Amount: Currency);
  end;

procedure TLineWriter.AddLine(const Title: string; const Amount: Currency);
begin
  FLines.Add(Format('  %-30s %14s', [Title, MoneyToText(Amount)]));
end;

{ TLedgerReport }

constructor TLedgerReport.Create(Book: TLedgerBook; FirstDay, LastDay: TDateTime);
begin
  inherited Create;
  FBook := Book;
  FFirstDay := FirstDay;
  FLastDay := LastDay;
end;

function TLedgerReport.Turnover(Account: TAccount): Currency;
begin
  Result := FBook.Balance(Account.Code, FLastDay) -
    FBook.Balance(Account.Code, FFirstDay - 1);
end;

function TLedgerReport.ListKind(Kind: TAccountKind; Handler: TReportLine): Currency;
var
  I: Integer;
  Amount: Currency;
begin
  Result := 0;
  for I := 0 to FBook.Accounts.Count - 1 do
    if FBook.Accounts[I].Kind = Kind then
    begin
      Amount := Turnover(FBook.Accounts[I]);
      Handler(FBook.Accounts[I].Title, Amount);
      Result := Result + Amount;
    end;
end;

procedure TLedgerReport.Write(Lines: TStrings);
var
  Kind: TAccountKind;
  Writer: TLineWriter;
  Sum: Currency;
begin
  Writer := TLineWriter.Create;
  try
    Writer.FLines := Lines;
    Lines.BeginUpdate;
    try
      Lines.Clear;
      for Kind := Low(TAccountKind) to High(TAccountKind) do
      begin
        Lines.Add(AccountKindNames[Kind]);
        Sum := ListKind(Kind, Writer.AddLine);
        Writer.AddLine('Sum', Sum);
        Lines.Add('');
      end;
    finally
      Lines.EndUpdate;
    end;
  finally
    Writer.Free;
  end;
end;

end.
