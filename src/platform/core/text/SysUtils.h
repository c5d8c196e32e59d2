// Conversions between texts and values, and the comparisons of texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/core/text/Values.h"

namespace wrenfold {

constexpr bool IsAsciiLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
// ASCII letters to lower case, other bytes as they are.
constexpr char FoldChar(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);
// Equal with ASCII case folding.
bool EqualText(std::string_view left, std::string_view right);
// Negative, zero or positive: byte order with ASCII case folding.
int CompareText(std::string_view left, std::string_view right);
// The order of the user's locale, letter case ignored (UTF-8 texts).
int AnsiCompareText(const std::string& left, const std::string& right);
// Equal but for letter case; much quicker than the order.
bool AnsiSameText(std::string_view left, std::string_view right);
// Keys whose byte order is that order, for sorting many texts.
std::string AnsiSortKey(const std::string& text);
// Without leading and trailing blanks and control characters.
std::string_view Trim(std::string_view text);

std::string IntToStr(std::int64_t value);
// Upper case, at least the given number of digits.
std::string IntToHex(std::uint64_t value, int digits);
// Decimal, or hexadecimal behind "$" or "0x", blanks in front allowed. Raises EConvertError naming
// the text. The 32-bit form also takes hexadecimal texts of the full unsigned range.
std::int32_t StrToInt(std::string_view text);
std::int64_t StrToInt64(std::string_view text);
bool TryStrToInt(std::string_view text, std::int32_t& value);

// How the user's locale writes numbers, dates and times. Patterns are of the letters d, m, y, h, n,
// s (one: no leading zero), "am/pm" and separators that stand for themselves.
struct TFormatSettings {
  char DecimalSeparator = '.';
  char ThousandSeparator = ',';
  char DateSeparator = '/';
  char TimeSeparator = ':';
  std::string ShortDateFormat = "yyyy-mm-dd";
  std::string LongTimeFormat = "hh:nn:ss";
  std::string TimeAMString = "AM";
  std::string TimePMString = "PM";
};

// The settings of the process, taken from the system's locale at the first use. They can be
// changed; a call can also be given another record.
TFormatSettings& FormatSettings();
// Reads them from the locale of the environment again.
TFormatSettings SystemFormatSettings();

// The shortest general form of at most 15 significant digits.
std::string FloatToStr(double value, const TFormatSettings& settings = FormatSettings());
double StrToFloat(std::string_view text, const TFormatSettings& settings = FormatSettings());

struct TSystemTime {
  int Year, Month, Day, Hour, Minute, Second, Millisecond;
};
TSystemTime DecodeDateTime(TDateTime value);
// Raises EConvertError for a day or time that does not exist.
TDateTime EncodeDateTime(const TSystemTime& time);
TDateTime Now();
// Date in the short format and, when there is a time of day, the time in the long one.
std::string DateTimeToStr(TDateTime value, const TFormatSettings& settings = FormatSettings());
std::string DateToStr(TDateTime value, const TFormatSettings& settings = FormatSettings());
std::string TimeToStr(TDateTime value, const TFormatSettings& settings = FormatSettings());
// Date, or date and time, in that order; a year of two digits means 1950 to 2049.
TDateTime StrToDateTime(std::string_view text, const TFormatSettings& settings = FormatSettings());
TDateTime StrToTime(std::string_view text, const TFormatSettings& settings = FormatSettings());

// Parts of file names; "/" and "\" both separate, so does the ":" behind a drive letter.
std::string ExtractFileName(std::string_view fileName);
std::string ExtractFilePath(std::string_view fileName);  // with its trailing separator
std::string ExtractFileExt(std::string_view fileName);   // with the dot
std::string ChangeFileExt(std::string_view fileName, std::string_view extension);
// The bare name: no directory, no extension.
std::string ExtractFileNameEx(std::string_view fileName);

}  // namespace wrenfold
