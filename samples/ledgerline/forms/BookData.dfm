object BookModule: TBookModule
  OldCreateOrder = False
  OnCreate = BookModuleCreate
  OnDestroy = BookModuleDestroy
  Left = 285
  Top = 161
  Height = 200
  Width = 300
  object OpenDialog: TOpenDialog
    DefaultExt = 'book'
    Filter = 'Books (*.book)|*.book|All files (*.*)|*.*'
    Options = [ofHideReadOnly, ofPathMustExist, ofFileMustExist]
    Left = 32
    Top = 24
  end
  object SaveDialog: TSaveDialog
    DefaultExt = 'book'
    Filter = 'Books (*.book)|*.book|All files (*.*)|*.*'
    Options = [ofOverwritePrompt, ofHideReadOnly, ofPathMustExist]
    Left = 112
    Top = 24
  end
  object ImportDialog: TOpenDialog
    DefaultExt = 'csv'
    Filter = 'Tables of a bank (*.csv)|*.csv|All files (*.*)|*.*'
    Options = [ofHideReadOnly, ofFileMustExist]
    Title = 'Take entries from a table'
    Left = 192
    Top = 24
  end
end
