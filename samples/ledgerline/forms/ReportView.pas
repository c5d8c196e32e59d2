unit ReportView;

{ Shows the sums of a year and puts them on paper. }

interface

uses
  Classes, Controls, Forms, StdCtrls, ComCtrls, ExtCtrls, LedgerBook;

type
  TReportForm = class(TForm)
    TopPanel: TPanel;
    YearLabel: TLabel;
    YearEdit: TEdit;
    YearUpDown: TUpDown;
    PrintButton: TButton;
    ReportMemo: TMemo;
    procedure FormCreate(Sender: TObject);
    procedure FormClose(Sender: TObject; var Action: TCloseAction);
    procedure YearEditChange(Sender: TObject);
    procedure PrintButtonClick(Sender: TObject);
  private
    FBook: TLedgerBook;
    procedure ShowYear(Year: Word);
  public
    constructor CreateFor(AOwner: TComponent; Book: TLedgerBook);
  end;

implementation

uses
  Printers, SysUtils, LedgerReport, LedgerSettings;

{$R *.dfm}

constructor TReportForm.CreateFor(AOwner: TComponent; Book: TLedgerBook);
begin
  FBook := Book;
  inherited Create(AOwner);
end;

procedure TReportForm.FormCreate(Sender: TObject);
var
  Year, Month, Day: Word;
begin
  LoadPlacement(Self);
  DecodeDate(Date, Year, Month, Day);
  YearUpDown.Position := Year;
  ShowYear(Year);
end;

procedure TReportForm.FormClose(Sender: TObject; var Action: TCloseAction);
begin
  SavePlacement(Self);
  Action := caFree;
end;

procedure TReportForm.YearEditChange(Sender: TObject);
begin
  ShowYear(YearUpDown.Position);
end;

procedure TReportForm.ShowYear(Year: Word);
var
  Report: TLedgerReport;
begin
  if FBook = nil then
    Exit;
  Report := TLedgerReport.Create(FBook, EncodeDate(Year, 1, 1), EncodeDate(Year, 12, 31));
  try
    Report.Write(ReportMemo.Lines);
  finally
    Report.Free;
  end;
end;

procedure TReportForm.PrintButtonClick(Sender: TObject);
var
  Paper: TextFile;
  I: Integer;
begin
  AssignPrn(Paper);
  Rewrite(Paper);
  try
    Printer.Canvas.Font := ReportMemo.Font;
    for I := 0 to ReportMemo.Lines.Count - 1 do
      WriteLn(Paper, ReportMemo.Lines[I]);
  finally
    CloseFile(Paper);
  end;
end;

end.
