// What several kinds of rows share: making rows, and handing objects over to properties.
#pragma once

#include <QComboBox>
#include <memory>

#include "editor/rkRows.h"

namespace wrenfold {

template <class Row>
std::unique_ptr<TPropertyRow> MakeRow(const TRowBinding& binding) {
  return std::make_unique<Row>(binding);
}

// The arrow and a few letters.
int ComboMinimumWidth(const QComboBox& box);

// A copy of the property's object to be changed and handed back. Without an object, an empty one of
// the declared class, or of the other class where the declared one is abstract.
std::unique_ptr<TPersistent> CopyOfObject(const TPersistent& instance, const TPropInfo& property,
                                          const TTypeInfo& otherClass);
// Gives the contents to the property, by its setter where it has one.
void PutObject(TPersistent& instance, const TPropInfo& property, TPersistent& value);

}  // namespace wrenfold
