// Gives each component of a composed form its place.
#pragma once

#include <span>

#include "designer/model/Composition.h"

namespace wrenfold {

// A window larger than this is cut, with a note.
inline constexpr int MaxWindowSide = 8192;

// The side of an icon for a component without a place of its own.
inline constexpr int IconSide = 28;

// The frame around a form's client area, in pixels.
struct TWindowFrame {
  int Border = 1;
  int Caption = 26;
  int Menu = 20;
};

enum class TAlign : std::uint8_t { None, Top, Bottom, Left, Right, Client, Custom };
TAlign AlignOf(const TDesignNode& node);

// A control as the alignment sees it.
struct TAligned {
  TBounds Bounds;
  TAlign Align = TAlign::None;
  bool AnchorLeft = true;
  bool AnchorTop = true;
  bool AnchorRight = false;
  bool AnchorBottom = false;
};

// Moves and sizes controls after their parent's client area went from one size to another: those
// with an alignment share it in the order top, bottom, left, right, client; the others keep their
// distance to the sides that they are anchored to.
void AlignControls(std::span<TAligned> controls, TExtent before, TExtent after);
TAligned AlignedOf(const TDesignNode& node);

// Sets bounds, client areas, what is shown and clips of all nodes. Stored bounds stand; Align and
// Anchors act where a form that inherits, or a frame, has another size than the file it comes from.
// May be called again after a property or a page changed.
void LayoutForm(TComposedForm& form, const TWindowFrame& frame = {});

// The page of a page control that is turned up, or null.
TDesignNode* ActivePage(const TDesignNode& pages);
// Turns up a page from now on, whatever the form stores.
void TurnTo(TComposedForm& form, const TDesignNode& page);

// The menu bar of a form, or null.
const TDesignNode* MenuOf(const TDesignNode& root);

}  // namespace wrenfold
