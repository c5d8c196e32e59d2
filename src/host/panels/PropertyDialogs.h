// The dialogs of the object inspector's values: one row of a table for each kind that has one.
#pragma once

#include <QWidget>
#include <string>

#include "designer/model/PictureValue.h"
#include "designer/model/PropertyRows.h"
#include "host/documents/Saving.h"

namespace wrenfold {

bool HasDialog(const TInspectedRow& row);
// Asks for the text of the row's value; false when the user gave up. The font's text is
// "Name|Height|Style", of the parts that it is stored in. Not for pictures.
bool EditInDialog(QWidget* parent, const TInspectedRow& row, std::string& text);
// Shows a stored picture, lets the user load another one or save it as a file. False when the value
// is as it was.
bool EditPicture(QWidget* parent, const TInspectedRow& row, TPictureNotation notation,
                 const TFileDialogs& files, std::string& value);

}  // namespace wrenfold
