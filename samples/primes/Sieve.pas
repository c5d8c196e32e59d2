unit Sieve;

{$mode objfpc}{$H+}

interface

type
  TPrimes = array of Integer;

{ All primes up to the limit, ascending. }
function PrimesUpTo(Limit: Integer): TPrimes;

implementation

function PrimesUpTo(Limit: Integer): TPrimes;
var
  Crossed: array of Boolean;
  Number, Multiple, Count: Integer;
begin
  SetLength(Crossed, Limit + 1);
  SetLength(Result, Limit);
  Count := 0;
  for Number := 2 to Limit do
    if not Crossed[Number] then
    begin
      Result[Count] := Number;
      Inc(Count);
      Multiple := 2 * Number;
      while Multiple <= Limit do
      begin
        Crossed[Multiple] := True;
        Inc(Multiple, Number);
      end;
    end;
  SetLength(Result, Count);
end;

end.
