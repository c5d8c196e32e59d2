unit LedgerBook;

{ The book: its accounts, its entries, and the file they are kept in. }

interface

uses
  Classes, LedgerTypes;

type
  TLedgerBook = class
  private
    FAccounts: TAccounts;
    FEntries: TEntries;
    FFileName: string;
    FModified: Boolean;
    FOnChange: TNotifyEvent;
    procedure ReadLine(const Line: string; Number: Integer);
  public
    constructor Create;
    destructor Destroy; override;
    procedure Clear;
    procedure LoadFromFile(const FileName: string);
    procedure SaveToFile(const FileName: string);
    procedure Changed;
    { Raises ELedgerError when an account of the entry does not exist. }
    procedure Post(Day: TDateTime; const Text, FromCode, ToCode: string;
      const Amount: Currency);
    function Balance(const Code: string; UpTo: TDateTime): Currency;
    property Accounts: TAccounts read FAccounts;
    property Entries: TEntries read FEntries;
    property FileName: string read FFileName;
    property Modified: Boolean read FModified;
    property OnChange: TNotifyEvent read FOnChange write FOnChange;
  end;

implementation

uses
  SysUtils, LedgerMoney;

const
  AccountMark = 'A';
  EntryMark = 'E';
  Separator = #9;
  AmountFormat = '0.00';
  DayFormat = 'yyyy"-"mm"-"dd';

{ Cuts the text up to the next separator off the line. }
function NextField(var Line: string): string;
var
  Position: Integer;
begin
  Position := Pos(Separator, Line);
  if Position = 0 then
    Position := Length(Line) + 1;
  Result := Copy(Line, 1, Position - 1);
  Delete(Line, 1, Position);
end;

function DayOf(const Text: string): TDateTime;
begin
  Result := EncodeDate(StrToInt(Copy(Text, 1, 4)), StrToInt(Copy(Text, 6, 2)),
    StrToInt(Copy(Text, 9, 2)));
end;

{ TLedgerBook }

constructor TLedgerBook.Create;
begin
  inherited Create;
  FAccounts := TAccounts.Create;
  FEntries := TEntries.Create;
end;

destructor TLedgerBook.Destroy;
begin
  FEntries.Free;
  FAccounts.Free;
  inherited Destroy;
end;

procedure TLedgerBook.Clear;
begin
  FEntries.Clear;
  FAccounts.Clear;
  FFileName := '';
  FModified := False;
  if Assigned(FOnChange) then
    FOnChange(Self);
end;

procedure TLedgerBook.Changed;
begin
  FModified := True;
  if Assigned(FOnChange) then
    FOnChange(Self);
end;

procedure TLedgerBook.ReadLine(const Line: string; Number: Integer);
var
  Rest, Mark: string;
  Account: TAccount;
  Entry: TEntry;
begin
  if Trim(Line) = '' then
    Exit;
  Rest := Line;
  Mark := NextField(Rest);
  if Mark = AccountMark then
  begin
    Account := FAccounts.Add;
    Account.Code := NextField(Rest);
    Account.Kind := TAccountKind(StrToInt(NextField(Rest)));
    Account.Title := NextField(Rest);
  end
  else if Mark = EntryMark then
  begin
    Entry := FEntries.Add;
    Entry.Day := DayOf(NextField(Rest));
    Entry.FromCode := NextField(Rest);
    Entry.ToCode := NextField(Rest);
    Entry.Amount := TextToMoney(NextField(Rest));
    Entry.Text := NextField(Rest);
  end
  else
    raise ELedgerError.CreateFmt('Line %d: expected an account or an entry', [Number]);
end;

procedure TLedgerBook.LoadFromFile(const FileName: string);
var
  Lines: TStringList;
  I: Integer;
begin
  Lines := TStringList.Create;
  try
    Lines.LoadFromFile(FileName);
    Clear;
    for I := 0 to Lines.Count - 1 do
      ReadLine(Lines[I], I + 1);
    FFileName := FileName;
  finally
    Lines.Free;
  end;
  if Assigned(FOnChange) then
    FOnChange(Self);
end;

procedure TLedgerBook.SaveToFile(const FileName: string);
var
  Lines: TStringList;
  I: Integer;
begin
  Lines := TStringList.Create;
  try
    for I := 0 to FAccounts.Count - 1 do
      with FAccounts[I] do
        Lines.Add(AccountMark + Separator + Code + Separator +
          IntToStr(Ord(Kind)) + Separator + Title);
    for I := 0 to FEntries.Count - 1 do
      with FEntries[I] do
        Lines.Add(EntryMark + Separator + FormatDateTime(DayFormat, Day) + Separator +
          FromCode + Separator + ToCode + Separator + FormatFloat(AmountFormat, Amount) + Separator +
          Text);
    Lines.SaveToFile(FileName);
    FFileName := FileName;
    FModified := False;
  finally
    Lines.Free;
  end;
end;

procedure TLedgerBook.Post(Day: TDateTime; const Text, FromCode, ToCode: string;
  const Amount: Currency);
var
  Entry: TEntry;
begin
  if FAccounts.Find(FromCode) = nil then
    raise ELedgerError.CreateFmt('There is no account "%s"', [FromCode]);
  if FAccounts.Find(ToCode) = nil then
    raise ELedgerError.CreateFmt('There is no account "%s"', [ToCode]);
  Entry := FEntries.Add;
  Entry.Day := Day;
  Entry.Text := Text;
  Entry.FromCode := FromCode;
  Entry.ToCode := ToCode;
  Entry.Amount := Amount;
  Changed;
end;

function TLedgerBook.Balance(const Code: string; UpTo: TDateTime): Currency;
var
  I: Integer;
begin
  Result := 0;
  for I := 0 to FEntries.Count - 1 do
    if FEntries[I].Day <= UpTo then
    begin
      if CompareText(FEntries[I].ToCode, Code) = 0 then
        Result := Result + FEntries[I].Amount;
      if CompareText(FEntries[I].FromCode, Code) = 0 then
        Result := Result - FEntries[I].Amount;
    end;
end;

end.
