// Dialogs that ask for a text.
#pragma once

#include <QWidget>
#include <string>

namespace wrenfold {

// Both answer false, and leave the value, when the user cancels.
bool InputSingleStrQuery(QWidget* parent, const std::string& caption, const std::string& prompt,
                         std::string& value);
// The same for a text of several lines, separated by line feeds.
bool InputMultiStrQuery(QWidget* parent, const std::string& caption, const std::string& prompt,
                        std::string& value);

}  // namespace wrenfold
