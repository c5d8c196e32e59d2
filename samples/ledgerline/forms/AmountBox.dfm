object AmountFrame: TAmountFrame
  Left = 0
  Top = 0
  Width = 320
  Height = 29
  TabOrder = 0
  object AmountLabel: TLabel
    Left = 0
    Top = 8
    Width = 39
    Height = 13
    Caption = '&Amount:'
    FocusControl = AmountEdit
  end
  object MeaningLabel: TLabel
    Left = 208
    Top = 8
    Width = 48
    Height = 13
    Caption = 'no amount'
    Font.Charset = DEFAULT_CHARSET
    Font.Color = clRed
    Font.Height = -11
    Font.Name = 'MS Sans Serif'
    Font.Style = []
    ParentFont = False
  end
  object AmountEdit: TEdit
    Left = 80
    Top = 4
    Width = 121
    Height = 21
    TabOrder = 0
    OnChange = AmountEditChange
  end
end
