unit MainWindow;

{ The window of the program: the accounts on the left, the entries of one on the right. }

interface

uses
  Classes, Controls, Forms, Menus, ComCtrls, ExtCtrls, StdCtrls, LedgerTypes;

type
  TMainForm = class(TForm)
    MainMenu: TMainMenu;
    FileMenu: TMenuItem;
    NewItem: TMenuItem;
    OpenItem: TMenuItem;
    SaveItem: TMenuItem;
    FileSeparator: TMenuItem;
    ExitItem: TMenuItem;
    BookMenu: TMenuItem;
    EntryItem: TMenuItem;
    AccountItem: TMenuItem;
    ImportItem: TMenuItem;
    ReportItem: TMenuItem;
    HelpMenu: TMenuItem;
    AboutItem: TMenuItem;
    AccountTree: TTreeView;
    Splitter: TSplitter;
    EntryView: TListView;
    StatusBar: TStatusBar;
    procedure FormCreate(Sender: TObject);
    procedure FormDestroy(Sender: TObject);
    procedure FormCloseQuery(Sender: TObject; var CanClose: Boolean);
    procedure NewItemClick(Sender: TObject);
    procedure OpenItemClick(Sender: TObject);
    procedure SaveItemClick(Sender: TObject);
    procedure ExitItemClick(Sender: TObject);
    procedure EntryItemClick(Sender: TObject);
    procedure AccountItemClick(Sender: TObject);
    procedure ImportItemClick(Sender: TObject);
    procedure ReportItemClick(Sender: TObject);
    procedure AboutItemClick(Sender: TObject);
    procedure AccountTreeChange(Sender: TObject; Node: TTreeNode);
  private
    procedure BookChanged(Sender: TObject);
    function SelectedAccount: TAccount;
    procedure FillAccounts;
    procedure FillEntries;
    procedure UpdateStatus;
  end;

var
  MainForm: TMainForm;

implementation

uses
  Dialogs, SysUtils, AboutBox, AccountDialog, BookData, EntryDialog, LedgerImport,
  LedgerMoney, LedgerSettings, ReportView;

{$R *.dfm}

const
  NoFileName = 'New book';
  CashCode = 'CASH';
  OtherCode = 'MISC';

procedure TMainForm.FormCreate(Sender: TObject);
begin
  LoadPlacement(Self);
  BookModule.Book.OnChange := BookChanged;
  NewItemClick(nil);
end;

procedure TMainForm.FormDestroy(Sender: TObject);
begin
  BookModule.Book.OnChange := nil;
  SavePlacement(Self);
end;

procedure TMainForm.FormCloseQuery(Sender: TObject; var CanClose: Boolean);
begin
  CanClose := BookModule.MayLeaveBook;
end;

procedure TMainForm.NewItemClick(Sender: TObject);
begin
  if not BookModule.MayLeaveBook then
    Exit;
  BookModule.Book.Clear;
  with BookModule.Book.Accounts.Add do
  begin
    Code := CashCode;
    Title := 'Purse';
    Kind := akCash;
  end;
  with BookModule.Book.Accounts.Add do
  begin
    Code := OtherCode;
    Title := 'Other expenses';
    Kind := akExpense;
  end;
  BookChanged(nil);
end;

procedure TMainForm.OpenItemClick(Sender: TObject);
begin
  BookModule.OpenBook;
end;

procedure TMainForm.SaveItemClick(Sender: TObject);
begin
  BookModule.SaveBook;
  UpdateStatus;
end;

procedure TMainForm.ExitItemClick(Sender: TObject);
begin
  Close;
end;

procedure TMainForm.EntryItemClick(Sender: TObject);
begin
  with TEntryDialogForm.Create(Self) do
  try
    PostEntry(BookModule.Book);
  finally
    Free;
  end;
end;

procedure TMainForm.AccountItemClick(Sender: TObject);
begin
  with TAccountDialogForm.Create(Self) do
  try
    AddAccount(BookModule.Book);
  finally
    Free;
  end;
end;

procedure TMainForm.ImportItemClick(Sender: TObject);
var
  Account: TAccount;
begin
  Account := SelectedAccount;
  if (Account = nil) or not BookModule.ImportDialog.Execute then
    Exit;
  with ImportTable(BookModule.Book, BookModule.ImportDialog.FileName, Account.Code,
    OtherCode) do
    MessageDlg(Format('%d entries taken, %d lines skipped.', [Taken, Skipped]),
      mtInformation, [mbOk], 0);
end;

procedure TMainForm.ReportItemClick(Sender: TObject);
begin
  TReportForm.CreateFor(Self, BookModule.Book).Show;
end;

procedure TMainForm.AboutItemClick(Sender: TObject);
begin
  ShowAboutBox;
end;

procedure TMainForm.AccountTreeChange(Sender: TObject; Node: TTreeNode);
begin
  FillEntries;
end;

procedure TMainForm.BookChanged(Sender: TObject);
begin
  FillAccounts;
  FillEntries;
  UpdateStatus;
end;

function TMainForm.SelectedAccount: TAccount;
begin
  Result := nil;
  if AccountTree.Selected <> nil then
    Result := TAccount(AccountTree.Selected.Data);
end;

procedure TMainForm.FillAccounts;
var
  Kind: TAccountKind;
  Node: TTreeNode;
  I: Integer;
begin
  AccountTree.Items.BeginUpdate;
  try
    AccountTree.Items.Clear;
    for Kind := Low(TAccountKind) to High(TAccountKind) do
    begin
      Node := AccountTree.Items.Add(nil, AccountKindNames[Kind]);
      for I := 0 to BookModule.Book.Accounts.Count - 1 do
        if BookModule.Book.Accounts[I].Kind = Kind then
          AccountTree.Items.AddChildObject(Node, BookModule.Book.Accounts[I].Title,
            BookModule.Book.Accounts[I]);
      Node.Expand(True);
    end;
  finally
    AccountTree.Items.EndUpdate;
  end;
end;

procedure TMainForm.FillEntries;
var
  I: Integer;
  Account: TAccount;
  Entry: TEntry;
begin
  Account := SelectedAccount;
  EntryView.Items.BeginUpdate;
  try
    EntryView.Items.Clear;
    if Account = nil then
      Exit;
    for I := 0 to BookModule.Book.Entries.Count - 1 do
    begin
      Entry := BookModule.Book.Entries[I];
      if Entry.Touches(Account.Code) then
        with EntryView.Items.Add do
        begin
          Caption := DateToStr(Entry.Day);
          SubItems.Add(Entry.Text);
          SubItems.Add(MoneyToText(Entry.Amount));
        end;
    end;
  finally
    EntryView.Items.EndUpdate;
  end;
end;

procedure TMainForm.UpdateStatus;
begin
  with BookModule.Book do
  begin
    if FileName = '' then
      StatusBar.Panels[0].Text := NoFileName
    else
      StatusBar.Panels[0].Text := ExtractFileName(FileName);
    if Modified then
      StatusBar.Panels[1].Text := 'Modified'
    else
      StatusBar.Panels[1].Text := '';
    StatusBar.Panels[2].Text := Format('%d entries', [Entries.Count]);
  end;
end;

end.
