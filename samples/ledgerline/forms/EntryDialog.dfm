inherited EntryDialogForm: TEntryDialogForm
  Caption = 'Entry'
  OnShow = FormShow
  PixelsPerInch = 96
  TextHeight = 13
  inherited ButtonPanel: TPanel
    inherited OkButton: TButton
      Caption = 'Post'
    end
  end
  inherited ClientPanel: TPanel
    object DayLabel: TLabel
      Left = 16
      Top = 20
      Width = 22
      Height = 13
      Caption = '&Day:'
      FocusControl = DayPicker
    end
    object TextLabel: TLabel
      Left = 16
      Top = 48
      Width = 24
      Height = 13
      Caption = '&Text:'
      FocusControl = TextEdit
    end
    object FromLabel: TLabel
      Left = 16
      Top = 76
      Width = 26
      Height = 13
      Caption = '&From:'
      FocusControl = FromCombo
    end
    object ToLabel: TLabel
      Left = 16
      Top = 104
      Width = 16
      Height = 13
      Caption = 'T&o:'
      FocusControl = ToCombo
    end
    object DayPicker: TDateTimePicker
      Left = 96
      Top = 16
      Width = 121
      Height = 21
      CalAlignment = dtaLeft
      Date = 36161.5
      Time = 36161.5
      DateFormat = dfShort
      DateMode = dmComboBox
      Kind = dtkDate
      ParseInput = False
      TabOrder = 0
    end
    object TextEdit: TEdit
      Left = 96
      Top = 44
      Width = 265
      Height = 21
      TabOrder = 1
    end
    object FromCombo: TComboBox
      Left = 96
      Top = 72
      Width = 265
      Height = 21
      Style = csDropDownList
      ItemHeight = 13
      Sorted = True
      TabOrder = 2
    end
    object ToCombo: TComboBox
      Left = 96
      Top = 100
      Width = 265
      Height = 21
      Style = csDropDownList
      ItemHeight = 13
      Sorted = True
      TabOrder = 3
    end
    inline AmountFrame1: TAmountFrame
      Left = 16
      Top = 124
      TabOrder = 4
    end
  end
end
