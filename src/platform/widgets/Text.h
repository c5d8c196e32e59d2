// The two conversions between the system's byte strings and the toolkit's strings.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace wrenfold {

// Byte strings are UTF-8. Bytes that are no UTF-8 become U+FFFD.
QString ToQString(std::string_view text);
std::string FromQString(const QString& text);

}  // namespace wrenfold
