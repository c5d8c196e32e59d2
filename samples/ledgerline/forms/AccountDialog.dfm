inherited AccountDialogForm: TAccountDialogForm
  Caption = 'Account'
  PixelsPerInch = 96
  TextHeight = 13
  inherited ClientPanel: TPanel
    object CodeLabel: TLabel
      Left = 16
      Top = 20
      Width = 28
      Height = 13
      Caption = '&Code:'
      FocusControl = CodeEdit
    end
    object TitleLabel: TLabel
      Left = 16
      Top = 48
      Width = 23
      Height = 13
      Caption = '&Title:'
      FocusControl = TitleEdit
    end
    object CodeEdit: TEdit
      Left = 96
      Top = 16
      Width = 81
      Height = 21
      CharCase = ecUpperCase
      MaxLength = 8
      TabOrder = 0
    end
    object TitleEdit: TEdit
      Left = 96
      Top = 44
      Width = 265
      Height = 21
      TabOrder = 1
    end
    object KindGroup: TRadioGroup
      Left = 16
      Top = 76
      Width = 345
      Height = 69
      Caption = 'Kind'
      Columns = 2
      ItemIndex = 0
      Items.Strings = (
        'Cash'
        'Bank'
        'Income'
        'Expense')
      TabOrder = 2
    end
  end
end
