program Primes;

{ A console program to run, stop and step in. }

{$mode objfpc}{$H+}

uses
  Sieve in 'Sieve.pas';

var
  Found: TPrimes;
  I, Sum: Integer;
begin
  Found := PrimesUpTo(100);
  Sum := 0;
  for I := 0 to High(Found) do
    Sum := Sum + Found[I];
  WriteLn(Length(Found), ' primes, their sum is ', Sum);
end.
