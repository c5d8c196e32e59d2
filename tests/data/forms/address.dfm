object AddressForm: TAddressForm
  Left = 192
  Top = -107
  BorderStyle = bsDialog
  Caption = 'Address book'
  ClientHeight = 40000
  ClientWidth = 128
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Height = -11
  Font.Style = [fsBold, fsItalic]
  Menu = MainMenu
  Tag = 2147483648
  Position = poScreenCenter
  OnCreate = FormCreate
  PixelsPerInch = 96
  TextHeight = 13
  object Names: TListBox
    Left = 8
    Hint = 'Each line'#39's first word'#13#10'is the key'
    Items.Strings = (
      'Ada'
      ''
      
        'A line that is longer than sixty-four characters is broken by th' +
        'e writer and joined by the reader'
      #9'tab first')
    Anchors = []
    ParentShowHint = False
    ShowHint = True
    Data = {0102FF}
    object TBevel
      Align = alClient
    end
  end
  inline Details: TDetailsFrame [1]
    Top = 8
    inherited Caption: TLabel
      Visible = False
    end
  end
  object Grid: TStringGrid
    Columns = <
      item
        Width = 64
      end
      item
        Expanded = False
        Title = 'Second'
        Buttons = <>
      end>
    ColWidths = (
      64
      -1
      2.5)
    Glyph.Data = {
      424DF60000000000000076000000280000001000000010000000010004000000
      424DF60000000000000076000000280000001000000010000000010004000000
      00FF}
    Owner = nil
    Strings = ()
  end
end
