program Ledgerline;

uses
  Forms,
  LedgerTypes in 'core\LedgerTypes.pas',
  LedgerMoney in 'core\LedgerMoney.pas',
  LedgerBook in 'core\LedgerBook.pas',
  LedgerImport in 'core\LedgerImport.pas',
  LedgerReport in 'core\LedgerReport.pas',
  LedgerSettings in 'core\LedgerSettings.pas',
  BookData in 'forms\BookData.pas' {BookModule: TDataModule},
  AmountBox in 'forms\AmountBox.pas' {AmountFrame: TFrame},
  BaseDialog in 'forms\BaseDialog.pas' {BaseDialogForm},
  EntryDialog in 'forms\EntryDialog.pas' {EntryDialogForm},
  AccountDialog in 'forms\AccountDialog.pas' {AccountDialogForm},
  ReportView in 'forms\ReportView.pas' {ReportForm},
  AboutBox in 'forms\AboutBox.pas' {AboutForm},
  MainWindow in 'forms\MainWindow.pas' {MainForm};

{$R *.res}

begin
  Application.Initialize;
  Application.Title := 'Ledgerline';
  Application.CreateForm(TBookModule, BookModule);
  Application.CreateForm(TMainForm, MainForm);
  Application.Run;
end.
