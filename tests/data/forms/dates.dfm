object Dates: TDates
  Day = 36854.4251693056
  Small = 1.5E-7
  Large = 1E20
  Price = 123456c
  Ratio = 0.5s
  Birthday = 25569d
  Wide = 'Gr'#252#223'e, '#1055#1088#1080#1074#1077#1090
  Lists = (
    (
      1
      2)
    ())
end
