unit Main;
interface
uses
  Forms, {$IFDEF X}A,{$ENDIF} B in 'B.pas';
type
  TFwd = class;
  TMain = class(TForm, IOne)
    Button: TButton;
  end;
  TList<T> = class(TObject) end;
  TRef = class of TMain;
implementation
end.
