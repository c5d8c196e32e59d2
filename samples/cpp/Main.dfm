object TimeForm: TTimeForm
  Left = 320
  Top = 220
  BorderStyle = bsToolWindow
  Caption = 'Timekeeper'
  ClientHeight = 97
  ClientWidth = 257
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Color = clWindowText
  Font.Height = -11
  Font.Name = 'MS Sans Serif'
  Font.Style = []
  OldCreateOrder = False
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object TimeLabel: TLabel
    Left = 16
    Top = 16
    Width = 94
    Height = 29
    Caption = '00:00:00'
    Font.Charset = DEFAULT_CHARSET
    Font.Color = clWindowText
    Font.Height = -24
    Font.Name = 'MS Sans Serif'
    Font.Style = [fsBold]
    ParentFont = False
  end
  object TaskCombo: TComboBox
    Left = 16
    Top = 60
    Width = 145
    Height = 21
    Style = csDropDownList
    ItemHeight = 13
    TabOrder = 0
  end
  object StartButton: TButton
    Left = 168
    Top = 58
    Width = 75
    Height = 25
    Caption = '&Start'
    Default = True
    TabOrder = 1
    OnClick = StartButtonClick
  end
  object Timer: TTimer
    Enabled = False
    Interval = 500
    OnTimer = TimerTimer
    Left = 208
    Top = 16
  end
end
