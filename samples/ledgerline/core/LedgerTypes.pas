unit LedgerTypes;

{ Accounts and entries of a household book. }

interface

uses
  Classes, SysUtils;

type
  ELedgerError = class(Exception);

  TAccountKind = (akCash, akBank, akIncome, akExpense);

  TAccount = class(TCollectionItem)
  private
    FCode: string;
    FTitle: string;
    FKind: TAccountKind;
  public
    procedure Assign(Source: TPersistent); override;
  published
    property Code: string read FCode write FCode;
    property Title: string read FTitle write FTitle;
    property Kind: TAccountKind read FKind write FKind;
  end;

  TAccounts = class(TCollection)
  private
    function GetAccount(Index: Integer): TAccount;
  public
    constructor Create;
    function Add: TAccount;
    function Find(const Code: string): TAccount;
    property Accounts[Index: Integer]: TAccount read GetAccount; default;
  end;

  { Moves an amount from one account to another. }
  TEntry = class(TCollectionItem)
  private
    FDay: TDateTime;
    FText: string;
    FFromCode: string;
    FToCode: string;
    FAmount: Currency;
  public
    procedure Assign(Source: TPersistent); override;
    function Touches(const Code: string): Boolean;
  published
    property Day: TDateTime read FDay write FDay;
    property Text: string read FText write FText;
    property FromCode: string read FFromCode write FFromCode;
    property ToCode: string read FToCode write FToCode;
    property Amount: Currency read FAmount write FAmount;
  end;

  TEntries = class(TCollection)
  private
    function GetEntry(Index: Integer): TEntry;
  public
    constructor Create;
    function Add: TEntry;
    property Entries[Index: Integer]: TEntry read GetEntry; default;
  end;

const
  AccountKindNames: array[TAccountKind] of string =
    ('Cash', 'Bank', 'Income', 'Expense');

implementation

{ TAccount }

procedure TAccount.Assign(Source: TPersistent);
begin
  if Source is TAccount then
  begin
    FCode := TAccount(Source).Code;
    FTitle := TAccount(Source).Title;
    FKind := TAccount(Source).Kind;
  end
  else
    inherited Assign(Source);
end;

{ TAccounts }

constructor TAccounts.Create;
begin
  inherited Create(TAccount);
end;

function TAccounts.Add: TAccount;
begin
  Result := TAccount(inherited Add);
end;

function TAccounts.Find(const Code: string): TAccount;
var
  I: Integer;
begin
  for I := 0 to Count - 1 do
  begin
    Result := Accounts[I];
    if CompareText(Result.Code, Code) = 0 then
      Exit;
  end;
  Result := nil;
end;

function TAccounts.GetAccount(Index: Integer): TAccount;
begin
  Result := TAccount(GetItem(Index));
end;

{ TEntry }

procedure TEntry.Assign(Source: TPersistent);
begin
  if Source is TEntry then
  begin
    FDay := TEntry(Source).Day;
    FText := TEntry(Source).Text;
    FFromCode := TEntry(Source).FromCode;
    FToCode := TEntry(Source).ToCode;
    FAmount := TEntry(Source).Amount;
  end
  else
    inherited Assign(Source);
end;

function TEntry.Touches(const Code: string): Boolean;
begin
  Result := (CompareText(FFromCode, Code) = 0) or (CompareText(FToCode, Code) = 0);
end;

{ TEntries }

constructor TEntries.Create;
begin
  inherited Create(TEntry);
end;

function TEntries.Add: TEntry;
begin
  Result := TEntry(inherited Add);
end;

function TEntries.GetEntry(Index: Integer): TEntry;
begin
  Result := TEntry(GetItem(Index));
end;

end.
