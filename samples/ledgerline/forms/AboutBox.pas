unit AboutBox;

interface

uses
  Classes, Controls, Forms, StdCtrls, ExtCtrls;

type
  TAboutForm = class(TForm)
    IconPanel: TPanel;
    TitleLabel: TLabel;
    WordsLabel: TLabel;
    CloseButton: TButton;
  end;

procedure ShowAboutBox;

implementation

{$R *.dfm}

procedure ShowAboutBox;
begin
  with TAboutForm.Create(Application) do
  try
    ShowModal;
  finally
    Free;
  end;
end;

end.
