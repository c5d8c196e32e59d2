object ReportForm: TReportForm
  Left = 242
  Top = 133
  Width = 520
  Height = 440
  Caption = 'Report'
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  OldCreateOrder = True
  OnClose = FormClose
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object TopPanel: TPanel
    Left = 0
    Top = 0
    Width = 512
    Height = 41
    Align = alTop
    BevelOuter = bvNone
    TabOrder = 0
    object YearLabel: TLabel
      Left = 12
      Top = 14
      Width = 25
      Height = 13
      Caption = '&Year:'
      FocusControl = YearEdit
    end
    object YearEdit: TEdit
      Left = 48
      Top = 10
      Width = 57
      Height = 21
      TabOrder = 0
      Text = '1999'
      OnChange = YearEditChange
    end
    object YearUpDown: TUpDown
      Left = 105
      Top = 10
      Width = 15
      Height = 21
      Associate = YearEdit
      Min = 1980
      Max = 2079
      Position = 1999
      TabOrder = 1
      Thousands = False
      Wrap = False
    end
    object PrintButton: TButton
      Left = 136
      Top = 8
      Width = 75
      Height = 25
      Caption = '&Print'
      TabOrder = 2
      OnClick = PrintButtonClick
    end
  end
  object ReportMemo: TMemo
    Left = 0
    Top = 41
    Width = 512
    Height = 372
    Align = alClient
    Font.Charset = ANSI_CHARSET
    Font.Color = clWindowText
    Font.Height = -13
    Font.Name = 'Courier New'
    Font.Style = []
    ParentFont = False
    ReadOnly = True
    ScrollBars = ssBoth
    TabOrder = 1
    WordWrap = False
  end
end
