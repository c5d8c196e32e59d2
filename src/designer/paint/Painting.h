// Draws the components of a composed form on one canvas: what all painters draw with.
#pragma once

#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QStyle>
#include <QStyleOption>
#include <unordered_map>
#include <vector>

#include "designer/model/Layout.h"
#include "designer/paint/Fonts.h"

namespace wrenfold {

// How system colours and frames look. The style is not owned.
struct TTheme {
  QPalette Palette;
  QStyle* Style = nullptr;
};

// What a component takes over from its parent unless it stores its own.
struct TAppearance {
  TFontSpec Font;
  QColor FontColour;
  QColor Ground;
  bool Enabled = true;
};

// Draws one form once. Painters are called with the canvas moved to the component's left top corner
// and clipped to what is seen of it; they set pen and brush as they need them.
class TPainting {
 public:
  // All must outlive the object. The form must be laid out; what cannot be drawn is noted in it.
  TPainting(QPainter& canvas, TComposedForm& form, const TTheme& theme, TFontBook& fonts);

  void DrawForm();

  QPainter& Canvas;
  const TTheme& Theme;

  // Of the component that is being drawn.
  const TAppearance& Appearance() const { return *FAppearance; }
  QRect Area() const { return FArea; }
  const QFont& Font() { return FFonts.Font(FAppearance->Font); }
  const QFont& Font(const TFontSpec& spec) { return FFonts.Font(spec); }
  // The colour of texts; faint where the component is disabled.
  QColor TextColour() const;
  QColor SystemColour(QPalette::ColorRole role) const { return Theme.Palette.color(role); }
  // The colour stored under `path`, or another.
  QColor Colour(const TDesignNode& node, std::string_view path, const QColor& otherwise) const;

  // Caption of the component or its action.
  static QString Caption(const TDesignNode& node);
  // Qt::AlignmentFlag and Qt::TextFlag; the part that has no room is cut.
  void DrawText(const QRect& area, int flags, const QString& text);
  void DrawText(const QRect& area, int flags, const QString& text, const QColor& colour);
  // The same in one line that is squeezed a little where the font at hand is wider than the one
  // that the form was made with.
  void DrawFittedText(const QRect& area, int flags, const QString& text);
  int TextWidth(const QString& text);
  int LineHeight();

  void Fill(const QRect& area, const QColor& colour);
  void FillGround() { Fill(FArea, FAppearance->Ground); }
  // A line of one pixel around the area, lighter or darker at two sides.
  void DrawEdge(const QRect& area, bool raised);
  void DrawOutline(const QRect& area, const QColor& colour);
  // The frame of an edit or list with its ground, by the desktop's style. Answers the room inside.
  QRect DrawField(const TDesignNode& node);
  void DrawImage(const QRect& area, const QImage& image);
  // In the middle of the area, in its own size or smaller.
  void DrawImageCentred(const QRect& area, const QImage& image);

  // A style option for this component with these bounds.
  void Prepare(QStyleOption& option, const QRect& area);

  // The pictures of an image list, decoded once; none for null or another component.
  const std::vector<QImage>& Images(const TDesignNode* list);
  // A null image when there is none of that index.
  QImage ImageAt(const TDesignNode* list, std::int64_t index);
  // The glyph that a component stores, or the one of its action in the list.
  QImage Glyph(const TDesignNode& node);
  void Note(const TDesignNode& node, const std::string& trouble);

  TComposedForm& Form() { return FForm; }

 private:
  void DrawNode(TDesignNode& node, const TAppearance& inherited);
  TAppearance AppearanceOf(const TDesignNode& node, const TAppearance& inherited) const;
  QColor GroundOf(const TDesignNode& node, const TAppearance& inherited) const;

  TComposedForm& FForm;
  TFontBook& FFonts;
  QTransform FBase;
  QRegion FBaseClip;
  const TAppearance* FAppearance = nullptr;
  QRect FArea;
  std::unordered_map<const TDesignNode*, std::vector<QImage>> FImages;
};

inline QRect RectOf(const TBounds& bounds) {
  return {bounds.Left, bounds.Top, bounds.Width, bounds.Height};
}

}  // namespace wrenfold
