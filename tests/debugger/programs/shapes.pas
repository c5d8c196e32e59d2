// A program of free Pascal to be stopped in: the tests find its lines by their comments.
program Shapes;

{$mode objfpc}{$H+}

uses
  SysUtils;

type
  TPoint = record
    X, Y: Integer;
  end;
  PPoint = ^TPoint;

  TFigure = class
  private
    FName: string;
  end;

  TShape = class(TFigure)
  private
    FPoints: array of TPoint;
    FNext: TShape;
  public
    procedure Grow(Count: Integer);
  end;

  EShape = class(Exception);

var
  Shape: TShape;
  Title: string[20];
  Place: PPoint;

procedure TShape.Grow(Count: Integer);
var
  I: Integer;
begin
  SetLength(FPoints, Count);
  for I := 0 to Count - 1 do
    FPoints[I].X := I * I;  // the loop
end;

procedure Tell(const Name: string; Ratio: Double; Ready: Boolean; Sign: Char);
var
  Empty: array of Integer;
begin
  Empty := nil;
  WriteLn(Name, Ratio:0:2, Ready, Sign, Length(Empty));  // the telling
end;

begin
  Shape := TShape.Create;
  Shape.FName := 'it''s round';
  Shape.Grow(5);
  Title := 'short';
  Place := @Shape.FPoints[3];
  Tell('hello', 1.5, True, 'x');
  try
    raise EShape.Create('too many corners');  // the raising
  except
    on E: Exception do
      WriteLn(E.Message);
  end;
end.
