object MainForm: TMainForm
  Left = 214
  Top = 118
  Width = 656
  Height = 463
  Caption = 'Ledgerline'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  Menu = MainMenu
  OldCreateOrder = False
  OnCloseQuery = FormCloseQuery
  OnCreate = FormCreate
  OnDestroy = FormDestroy
  PixelsPerInch = 96
  TextHeight = 13
  object Splitter: TSplitter
    Left = 185
    Top = 0
    Width = 3
    Height = 398
    Cursor = crHSplit
  end
  object AccountTree: TTreeView
    Left = 0
    Top = 0
    Width = 185
    Height = 398
    Align = alLeft
    HideSelection = False
    Indent = 19
    ReadOnly = True
    TabOrder = 0
    OnChange = AccountTreeChange
  end
  object EntryView: TListView
    Left = 188
    Top = 0
    Width = 460
    Height = 398
    Align = alClient
    Columns = <
      item
        Caption = 'Day'
        Width = 80
      end
      item
        Caption = 'Text'
        Width = 250
      end
      item
        Alignment = taRightJustify
        Caption = 'Amount'
        Width = 100
      end>
    ReadOnly = True
    RowSelect = True
    TabOrder = 1
    ViewStyle = vsReport
  end
  object StatusBar: TStatusBar
    Left = 0
    Top = 398
    Width = 648
    Height = 19
    Panels = <
      item
        Width = 300
      end
      item
        Width = 80
      end
      item
        Width = 50
      end>
    SimplePanel = False
  end
  object MainMenu: TMainMenu
    Left = 24
    Top = 336
    object FileMenu: TMenuItem
      Caption = '&File'
      object NewItem: TMenuItem
        Caption = '&New'
        ShortCut = 16462
        OnClick = NewItemClick
      end
      object OpenItem: TMenuItem
        Caption = '&Open...'
        ShortCut = 16463
        OnClick = OpenItemClick
      end
      object SaveItem: TMenuItem
        Caption = '&Save'
        ShortCut = 16467
        OnClick = SaveItemClick
      end
      object FileSeparator: TMenuItem
        Caption = '-'
      end
      object ExitItem: TMenuItem
        Caption = 'E&xit'
        OnClick = ExitItemClick
      end
    end
    object BookMenu: TMenuItem
      Caption = '&Book'
      object EntryItem: TMenuItem
        Caption = '&Entry...'
        ShortCut = 45
        OnClick = EntryItemClick
      end
      object AccountItem: TMenuItem
        Caption = '&Account...'
        OnClick = AccountItemClick
      end
      object ImportItem: TMenuItem
        Caption = '&Import...'
        OnClick = ImportItemClick
      end
      object ReportItem: TMenuItem
        Caption = '&Report'
        ShortCut = 119
        OnClick = ReportItemClick
      end
    end
    object HelpMenu: TMenuItem
      Caption = '&Help'
      object AboutItem: TMenuItem
        Caption = '&About...'
        OnClick = AboutItemClick
      end
    end
  end
end
