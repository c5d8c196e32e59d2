// Numbers, dates and times as texts in the user's locale.
#include <fmt/format.h>
#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <ctime>

#include "platform/core/system/Exceptions.h"
#include "platform/core/text/SysUtils.h"

namespace wrenfold {

namespace {

constexpr double SecondsPerDay = 24 * 60 * 60;
constexpr std::int64_t MillisecondsPerDay = 24 * 60 * 60 * 1000;
// Years of two digits below this one are of the next century.
constexpr int CenturyWindow = 50;

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days DayZero = sys_days(std::chrono::year(1899) / 12 / 30);

[[noreturn]] void RaiseNo(std::string_view what, std::string_view text) {
  throw EConvertError('\'' + std::string(text) + "' is not a valid " + std::string(what));
}

// A pattern as the system's locale gives it, in our letters; empty when it has parts that we have
// no letter for. Years get all their digits, so that a date that becomes text stays the same date.
std::string PatternFromLocale(std::string_view source) {
  static constexpr std::pair<char, std::string_view> parts[] = {{'d', "dd"},
                                                                {'e', "d"},
                                                                {'m', "mm"},
                                                                {'y', "yyyy"},
                                                                {'Y', "yyyy"},
                                                                {'H', "hh"},
                                                                {'I', "hh"},
                                                                {'k', "h"},
                                                                {'l', "h"},
                                                                {'M', "nn"},
                                                                {'S', "ss"},
                                                                {'p', "am/pm"},
                                                                {'T', "hh:nn:ss"},
                                                                {'R', "hh:nn"},
                                                                {'D', "mm/dd/yyyy"},
                                                                {'F', "yyyy-mm-dd"},
                                                                {'r', "hh:nn:ss am/pm"}};
  std::string pattern;
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source[i] != '%') {
      pattern += source[i];
      continue;
    }
    ++i;
    if (i < source.size() && (source[i] == '-' || source[i] == 'O' || source[i] == 'E')) ++i;
    const auto part = std::find_if(std::begin(parts), std::end(parts), [&](const auto& entry) {
      return i < source.size() && entry.first == source[i];
    });
    if (part == std::end(parts)) return {};
    pattern += part->second;
  }
  return std::string(Trim(pattern));
}

char SeparatorOf(std::string_view pattern, char otherwise) {
  const auto place = std::find_if(pattern.begin(), pattern.end(), [](char c) {
    return c == '/' || c == '.' || c == '-' || c == ':';
  });
  return place == pattern.end() ? otherwise : *place;
}

// Splits a pattern into runs of one letter, "am/pm" and single other characters.
std::string_view NextPart(std::string_view& pattern) {
  std::size_t length = 1;
  if (pattern.starts_with("am/pm")) length = 5;
  else if (IsAsciiLetter(pattern[0]))
    length = std::min(pattern.find_first_not_of(pattern[0]), pattern.size());
  const std::string_view part = pattern.substr(0, length);
  pattern.remove_prefix(length);
  return part;
}

std::string FormatPattern(std::string_view pattern, const TSystemTime& time,
                          const TFormatSettings& settings) {
  const bool halfDay = pattern.find("am/pm") != pattern.npos;
  std::string text;
  while (!pattern.empty()) {
    const std::string_view part = NextPart(pattern);
    const auto number = [&text, &part](int value) {
      text += fmt::format("{:0{}}", value, part.size());
    };
    switch (part[0]) {
      case 'd':
        number(time.Day);
        break;
      case 'm':
        number(time.Month);
        break;
      case 'y':
        number(part.size() > 2 ? time.Year : time.Year % 100);
        break;
      case 'h':
        number(halfDay ? (time.Hour + 11) % 12 + 1 : time.Hour);
        break;
      case 'n':
        number(time.Minute);
        break;
      case 's':
        number(time.Second);
        break;
      case 'a':
        text += time.Hour < 12 ? settings.TimeAMString : settings.TimePMString;
        break;
      case '/':
        text += settings.DateSeparator;
        break;
      case ':':
        text += settings.TimeSeparator;
        break;
      default:
        text += part;
    }
  }
  return text;
}

// Reads what a user typed: numbers and separators, blanks anywhere around them.
class TTextScanner {
 public:
  explicit TTextScanner(std::string_view text) : FRest(Trim(text)) {}

  bool AtEnd() const { return FRest.empty(); }
  bool Number(int& value, int* digits = nullptr) {
    Blanks();
    const auto [stop, error] = std::from_chars(FRest.data(), FRest.data() + FRest.size(), value);
    if (error != std::errc() || FRest[0] == '-') return false;
    const auto count = static_cast<std::size_t>(stop - FRest.data());
    if (digits != nullptr) *digits = static_cast<int>(count);
    FRest.remove_prefix(count);
    return true;
  }
  bool Skip(char separator) {
    Blanks();
    if (!FRest.starts_with(separator)) return false;
    FRest.remove_prefix(1);
    return true;
  }
  bool SkipWord(std::string_view word) {
    Blanks();
    if (word.empty() || !EqualText(FRest.substr(0, word.size()), word)) return false;
    FRest.remove_prefix(word.size());
    return true;
  }

 private:
  void Blanks() {
    while (FRest.starts_with(' ')) FRest.remove_prefix(1);
  }
  std::string_view FRest;
};

int FullYear(int year, int digits) {
  if (digits > 2) return year;
  return year < CenturyWindow ? 2000 + year : 1900 + year;
}

enum class THalfDay { Unknown, Am, Pm };

bool ScanHalfDay(TTextScanner& scanner, THalfDay& half, const TFormatSettings& settings) {
  if (scanner.SkipWord(settings.TimeAMString)) half = THalfDay::Am;
  else if (scanner.SkipWord(settings.TimePMString)) half = THalfDay::Pm;
  else return false;
  return true;
}

// Reads one number of a pattern into the part of the time that the letter stands for.
bool ScanNumber(TTextScanner& scanner, char letter, TSystemTime& time) {
  int value = 0, digits = 0;
  if (!scanner.Number(value, &digits)) return false;
  switch (letter) {
    case 'd':
      time.Day = value;
      break;
    case 'm':
      time.Month = value;
      break;
    case 'y':
      time.Year = FullYear(value, digits);
      break;
    case 'h':
      time.Hour = value;
      break;
    case 'n':
      time.Minute = value;
      break;
    default:
      time.Second = value;
  }
  return true;
}

// Follows the pattern until the text stops doing so, and answers how many numbers were there; -1
// when one is missing behind its separator. What the locale puts between them is skipped.
int ScanPattern(TTextScanner& scanner, std::string_view pattern, TSystemTime& time, THalfDay& half,
                const TFormatSettings& settings) {
  int numbers = 0;
  while (!pattern.empty()) {
    const char letter = NextPart(pattern)[0];
    if (letter == 'a') {
      ScanHalfDay(scanner, half, settings);
    } else if (std::string_view("dmyhns").find(letter) != std::string_view::npos) {
      if (!ScanNumber(scanner, letter, time)) return -1;
      ++numbers;
    } else if (letter != ' ') {
      const char separator = letter == '/'   ? settings.DateSeparator
                             : letter == ':' ? settings.TimeSeparator
                                             : letter;
      if (!scanner.Skip(separator)) break;
    }
  }
  return numbers;
}

bool ScanDate(TTextScanner& scanner, TSystemTime& time, const TFormatSettings& settings) {
  THalfDay half = THalfDay::Unknown;
  return ScanPattern(scanner, settings.ShortDateFormat, time, half, settings) == 3;
}

bool ScanTime(TTextScanner& scanner, TSystemTime& time, const TFormatSettings& settings) {
  THalfDay half = THalfDay::Unknown;
  if (ScanPattern(scanner, settings.LongTimeFormat, time, half, settings) < 1) return false;
  if (half == THalfDay::Unknown && !ScanHalfDay(scanner, half, settings)) return true;
  if (time.Hour < 1 || time.Hour > 12) return false;
  time.Hour = time.Hour % 12 + (half == THalfDay::Pm ? 12 : 0);
  return true;
}

TDateTime Encoded(const TSystemTime& time, std::string_view what, std::string_view text) {
  try {
    return EncodeDateTime(time);
  } catch (const EConvertError&) {
    RaiseNo(what, text);
  }
}

}  // namespace

TFormatSettings SystemFormatSettings() {
  TFormatSettings settings;
  const locale_t locale = newlocale(LC_ALL_MASK, "", nullptr);
  if (locale == nullptr) return settings;
  const auto text = [locale](nl_item item) { return std::string(nl_langinfo_l(item, locale)); };
  if (text(RADIXCHAR).size() == 1) settings.DecimalSeparator = text(RADIXCHAR)[0];
  if (text(THOUSEP).size() == 1) settings.ThousandSeparator = text(THOUSEP)[0];
  else if (settings.DecimalSeparator == ',') settings.ThousandSeparator = '.';
  const std::string date = PatternFromLocale(text(D_FMT));
  const std::string time = PatternFromLocale(text(T_FMT));
  if (!date.empty()) settings.ShortDateFormat = date;
  if (!time.empty()) settings.LongTimeFormat = time;
  settings.DateSeparator = SeparatorOf(settings.ShortDateFormat, settings.DateSeparator);
  settings.TimeSeparator = SeparatorOf(settings.LongTimeFormat, settings.TimeSeparator);
  if (!text(AM_STR).empty()) settings.TimeAMString = text(AM_STR);
  if (!text(PM_STR).empty()) settings.TimePMString = text(PM_STR);
  freelocale(locale);
  return settings;
}

TFormatSettings& FormatSettings() {
  static TFormatSettings settings = SystemFormatSettings();
  return settings;
}

std::string FloatToStr(double value, const TFormatSettings& settings) {
  if (std::isnan(value)) return "NAN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  if (value == 0) return "0";  // without a sign
  // 0.00001 is the smallest value without an exponent.
  const bool isSmall = std::fabs(value) < 1e-4 && std::fabs(value) >= 1e-5;
  std::string text = isSmall ? fmt::format("{:.19f}", value) : fmt::format("{:.15G}", value);
  if (isSmall) text.erase(text.find_last_not_of('0') + 1);
  if (const auto dot = text.find('.'); dot != text.npos) text[dot] = settings.DecimalSeparator;
  // 1E+16 is written 1E16, 1E-07 is written 1E-7.
  if (const auto mark = text.find('E'); mark != text.npos) {
    std::size_t digits = mark + 1;
    if (text[digits] == '+') text.erase(digits, 1);
    else ++digits;
    while (text[digits] == '0' && digits + 1 < text.size()) text.erase(digits, 1);
  }
  return text;
}

double StrToFloat(std::string_view text, const TFormatSettings& settings) {
  std::string number(Trim(text));
  if (number.starts_with('+') && !number.starts_with("+-")) number.erase(0, 1);
  const bool plain = number.find_first_not_of(std::string("0123456789eE+-") +
                                              settings.DecimalSeparator) == number.npos;
  std::replace(number.begin(), number.end(), settings.DecimalSeparator, '.');
  double value = 0;
  const char* end = number.data() + number.size();
  const auto [stop, error] = std::from_chars(number.data(), end, value);
  if (!plain || error != std::errc() || stop != end) RaiseNo("floating point value", text);
  return value;
}

TSystemTime DecodeDateTime(TDateTime value) {
  if (!std::isfinite(value.Value)) value = 0;  // a damaged file may hold anything
  // The date is counted towards minus infinity, the time away from zero.
  double whole = std::trunc(value.Value);
  auto fraction = static_cast<std::int64_t>(
      std::llround(std::fabs(value.Value - whole) * static_cast<double>(MillisecondsPerDay)));
  if (fraction == MillisecondsPerDay) {
    fraction = 0;
    whole += 1;
  }
  whole = std::clamp(whole, -693593.0, 2958465.0);  // years 1 to 9999
  const year_month_day date(DayZero + days(static_cast<int>(whole)));
  const auto part = [&fraction](std::int64_t size) {
    const auto rest = static_cast<int>(fraction % size);
    fraction /= size;
    return rest;
  };
  TSystemTime time{};
  time.Millisecond = part(1000);
  time.Second = part(60);
  time.Minute = part(60);
  time.Hour = static_cast<int>(fraction);
  time.Year = static_cast<int>(date.year());
  time.Month = static_cast<int>(static_cast<unsigned>(date.month()));
  time.Day = static_cast<int>(static_cast<unsigned>(date.day()));
  return time;
}

TDateTime EncodeDateTime(const TSystemTime& time) {
  const auto within = [](int value, int limit) { return value >= 0 && value < limit; };
  // The calendar's types hold a byte: a month of 257 would be January.
  const bool fits =
      within(time.Year - 1, 9999) && within(time.Month - 1, 12) && within(time.Day - 1, 31);
  const year_month_day date(std::chrono::year(fits ? time.Year : 0),
                            std::chrono::month(fits ? static_cast<unsigned>(time.Month) : 0),
                            std::chrono::day(fits ? static_cast<unsigned>(time.Day) : 0));
  if (!date.ok() || !within(time.Hour, 24) || !within(time.Minute, 60) ||
      !within(time.Second, 60) || !within(time.Millisecond, 1000))
    throw EConvertError("Invalid argument to date encode");
  const auto day = static_cast<double>((sys_days(date) - DayZero).count());
  const double fraction =
      (time.Hour * 3600 + time.Minute * 60 + time.Second + time.Millisecond / 1000.0) /
      SecondsPerDay;
  return day < 0 ? day - fraction : day + fraction;
}

TDateTime Now() {
  std::timespec now{};
  std::timespec_get(&now, TIME_UTC);
  std::tm local{};
  localtime_r(&now.tv_sec, &local);
  return EncodeDateTime({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                         local.tm_min, std::min(local.tm_sec, 59),
                         static_cast<int>(now.tv_nsec / 1000000)});
}

std::string DateToStr(TDateTime value, const TFormatSettings& settings) {
  return FormatPattern(settings.ShortDateFormat, DecodeDateTime(value), settings);
}

std::string TimeToStr(TDateTime value, const TFormatSettings& settings) {
  return FormatPattern(settings.LongTimeFormat, DecodeDateTime(value), settings);
}

std::string DateTimeToStr(TDateTime value, const TFormatSettings& settings) {
  const TSystemTime time = DecodeDateTime(value);
  const bool midnight =
      time.Hour == 0 && time.Minute == 0 && time.Second == 0 && time.Millisecond == 0;
  const std::string date = DateToStr(value, settings);
  return midnight ? date : date + ' ' + TimeToStr(value, settings);
}

TDateTime StrToDateTime(std::string_view text, const TFormatSettings& settings) {
  TTextScanner scanner(text);
  TSystemTime time{};
  const bool dated = ScanDate(scanner, time, settings);
  if (!dated || (!scanner.AtEnd() && !ScanTime(scanner, time, settings)) || !scanner.AtEnd())
    RaiseNo("date and time", text);
  return Encoded(time, "date and time", text);
}

TDateTime StrToTime(std::string_view text, const TFormatSettings& settings) {
  TTextScanner scanner(text);
  TSystemTime time{1899, 12, 30, 0, 0, 0, 0};
  if (!ScanTime(scanner, time, settings) || !scanner.AtEnd()) RaiseNo("time", text);
  return Encoded(time, "time", text);
}

}  // namespace wrenfold
