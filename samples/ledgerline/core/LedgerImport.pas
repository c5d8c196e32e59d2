unit LedgerImport;

{ Takes entries from the table files that banks offer: day; text; amount. }

interface

uses
  LedgerBook;

type
  TImportResult = record
    Taken: Integer;
    Skipped: Integer;
  end;

function ImportTable(Book: TLedgerBook; const FileName, BankCode,
  OtherCode: string): TImportResult;

implementation

uses
  SysUtils, LedgerMoney;

const
  Separator = ';';

{ A field may stand in quotes, which are doubled inside it. }
function TakeField(var Line: string): string;
var
  I: Integer;
  Quoted: Boolean;
begin
  Result := '';
  Quoted := False;
  I := 1;
  while I <= Length(Line) do
  begin
    if Line[I] = '"' then
      if Quoted and (I < Length(Line)) and (Line[I + 1] = '"') then
      begin
        Result := Result + '"';
        Inc(I);
      end
      else
        Quoted := not Quoted
    else if (Line[I] = Separator) and not Quoted then
      Break
    else
      Result := Result + Line[I];
    Inc(I);
  end;
  Delete(Line, 1, I);
end;

function TryTextToDay(const Text: string; var Day: TDateTime): Boolean;
begin
  Result := True;
  try
    Day := StrToDate(Text);
  except
    on EConvertError do
      Result := False;
  end;
end;

function ImportTable(Book: TLedgerBook; const FileName, BankCode,
  OtherCode: string): TImportResult;
var
  Source: TextFile;
  Line, DayText, Text: string;
  Day: TDateTime;
  Amount: Currency;
begin
  Result.Taken := 0;
  Result.Skipped := 0;
  AssignFile(Source, FileName);
  Reset(Source);
  try
    while not Eof(Source) do
    begin
      ReadLn(Source, Line);
      DayText := TakeField(Line);
      Text := TakeField(Line);
      if not TryTextToDay(DayText, Day) or not TryTextToMoney(TakeField(Line), Amount) then
        Inc(Result.Skipped)
      else
      begin
        if Amount < 0 then
          Book.Post(Day, Text, BankCode, OtherCode, -Amount)
        else
          Book.Post(Day, Text, OtherCode, BankCode, Amount);
        Inc(Result.Taken);
      end;
    end;
  finally
    CloseFile(Source);
  end;
end;

end.
