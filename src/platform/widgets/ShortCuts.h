// Key codes of shortcuts: their texts, and the toolkit's key sequences.
#pragma once

#include <QKeySequence>
#include <string>
#include <string_view>

#include "platform/core/text/Values.h"

class QKeyEvent;

namespace wrenfold {

// "Ctrl+Shift+Q", "Del", "Alt+Left", "F5"; empty for a code without a name. The order of the
// modifiers in texts made here is Shift, Ctrl, Alt.
std::string ShortCutToText(TShortCut shortCut);
// Letter case and the order of the modifiers do not matter; a text that names no key gives 0.
// Texts are read by the names of the keys and not by the keyboard layout that is active.
TShortCut TextToShortCut(std::string_view text);

QKeySequence ShortCutToKeySequence(TShortCut shortCut);
// The code of a key with its modifiers (0 for a bare modifier or a key without a code).
TShortCut ShortCutOf(const QKeyEvent& event);
// `place` is the key's scan code, 0 when it is not known.
TShortCut ShortCutOf(int key, Qt::KeyboardModifiers modifiers, unsigned place = 0);

}  // namespace wrenfold
