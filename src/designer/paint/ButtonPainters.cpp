// Paints buttons of all kinds.
#include <QStyleOptionButton>
#include <QStyleOptionToolButton>
#include <array>

#include "designer/paint/Colours.h"
#include "designer/paint/Painters.h"
#include "platform/widgets/Text.h"

namespace wrenfold {

namespace {

// The buttons that a kind makes of a picture button without a caption or glyph of its own.
struct TButtonKind {
  std::string_view Kind;
  const char* Caption;
  QStyle::StandardPixmap Icon;
};
constexpr TButtonKind ButtonKinds[] = {
    {"bkOK", "OK", QStyle::SP_DialogOkButton},
    {"bkCancel", "Cancel", QStyle::SP_DialogCancelButton},
    {"bkHelp", "&Help", QStyle::SP_DialogHelpButton},
    {"bkYes", "&Yes", QStyle::SP_DialogYesButton},
    {"bkNo", "&No", QStyle::SP_DialogNoButton},
    {"bkClose", "&Close", QStyle::SP_DialogCloseButton},
    {"bkAbort", "&Abort", QStyle::SP_DialogAbortButton},
    {"bkRetry", "&Retry", QStyle::SP_BrowserReload},
    {"bkIgnore", "&Ignore", QStyle::SP_DialogIgnoreButton},
    {"bkAll", "&All", QStyle::SP_DialogYesToAllButton},
    {"bkYesToAll", "Yes to &All", QStyle::SP_DialogYesToAllButton},
    {"bkNoToAll", "No to A&ll", QStyle::SP_DialogNoToAllButton},
};

const TButtonKind* KindOf(const TDesignNode& node) {
  for (const TButtonKind& kind : ButtonKinds)
    if (node.Is("Kind", kind.Kind)) return &kind;
  return nullptr;
}

constexpr int StandardIconSide = 16;

QImage StandardIcon(TPainting& painting, QStyle::StandardPixmap icon) {
  return painting.Theme.Style->standardIcon(icon).pixmap(StandardIconSide).toImage();
}

void DrawButtonFace(TPainting& painting, const TDesignNode& node, const QRect& area, bool down) {
  QStyleOptionButton option;
  painting.Prepare(option, area);
  const QColor own = ColourOf(node.Value("Color"), painting.Theme.Palette);
  if (own.isValid()) option.palette.setColor(QPalette::Button, own);
  option.state |= down ? QStyle::State_Sunken | QStyle::State_On : QStyle::State_Raised;
  if (node.Boolean("Default", false)) option.features |= QStyleOptionButton::DefaultButton;
  painting.Theme.Style->drawControl(QStyle::CE_PushButtonBevel, &option, &painting.Canvas);
}

// Glyph and caption side by side or one above the other, as the layout says, in the middle.
struct TFace {
  QImage Glyph;
  QString Caption;
  int Spacing = 4;
  int Margin = -1;
  std::string_view Layout = {};
};

void DrawFaceUpright(TPainting& painting, const QRect& area, const TFace& face, bool glyphFirst) {
  const int text = painting.LineHeight();
  const int height = face.Glyph.height() + face.Spacing + text;
  const int top =
      area.top() + (face.Margin >= 0 && glyphFirst ? face.Margin : (area.height() - height) / 2);
  const int glyphTop = glyphFirst ? top : top + text + face.Spacing;
  const int textTop = glyphFirst ? top + face.Glyph.height() + face.Spacing : top;
  painting.DrawImage(QRect(QPoint(area.left() + (area.width() - face.Glyph.width()) / 2, glyphTop),
                           face.Glyph.size()),
                     face.Glyph);
  painting.DrawFittedText(QRect(area.left(), textTop, area.width(), text),
                          Qt::AlignCenter | Qt::TextShowMnemonic, face.Caption);
}

void DrawFaceSideways(TPainting& painting, const QRect& area, const TFace& face, bool glyphFirst) {
  const int room = area.width() - face.Glyph.width() - face.Spacing;
  const int text = std::max(0, std::min(painting.TextWidth(face.Caption), room));
  const int width = face.Glyph.width() + face.Spacing + text;
  int left = area.left() + (area.width() - width) / 2;
  if (face.Margin >= 0)
    left = glyphFirst ? area.left() + face.Margin : area.right() - face.Margin - width;
  const int glyphLeft = glyphFirst ? left : left + text + face.Spacing;
  const int textLeft = glyphFirst ? left + face.Glyph.width() + face.Spacing : left;
  painting.DrawImage(
      QRect(QPoint(glyphLeft, area.top() + (area.height() - face.Glyph.height()) / 2),
            face.Glyph.size()),
      face.Glyph);
  painting.DrawFittedText(QRect(textLeft, area.top(), text + 1, area.height()),
                          Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic, face.Caption);
}

void DrawFace(TPainting& painting, const QRect& area, TFace face) {
  if (face.Glyph.height() > area.height() || face.Glyph.width() > area.width())
    face.Glyph = face.Glyph.scaled(area.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
  if (face.Caption.isEmpty()) return painting.DrawImageCentred(area, face.Glyph);
  if (face.Glyph.isNull()) {
    const bool lines = face.Caption.contains('\n') || face.Caption.contains('\r');
    if (lines) return painting.DrawText(area, Qt::AlignCenter | Qt::TextShowMnemonic, face.Caption);
    return painting.DrawFittedText(area, Qt::AlignCenter | Qt::TextShowMnemonic, face.Caption);
  }
  const bool first = face.Layout != "blGlyphRight" && face.Layout != "blGlyphBottom";
  if (face.Layout == "blGlyphTop" || face.Layout == "blGlyphBottom")
    return DrawFaceUpright(painting, area, face, first);
  DrawFaceSideways(painting, area, face, first);
}

TFace FaceOf(TPainting& painting, const TDesignNode& node) {
  TFace face{painting.Glyph(node), TPainting::Caption(node)};
  face.Spacing = std::clamp(node.Bound("Spacing", 4), -1, 100);
  if (face.Spacing < 0) face.Spacing = 4;
  face.Margin = std::clamp(node.Bound("Margin", -1), -1, 1000);
  face.Layout = node.Identifier("Layout");
  return face;
}

void DrawMarkAndText(TPainting& painting, const TDesignNode& node, QStyle::PrimitiveElement mark,
                     QStyle::State state) {
  const QRect area = painting.Area();
  constexpr int side = 13, gap = 4;
  const bool right = node.Is("Alignment", "taLeftJustify");
  QRect box(right ? area.right() - side : 0, (area.height() - side) / 2, side, side);
  QStyleOptionButton option;
  painting.Prepare(option, box);
  option.state |= state;
  painting.Theme.Style->drawPrimitive(mark, &option, &painting.Canvas);
  const QRect text =
      right ? area.adjusted(0, 0, -side - gap, 0) : area.adjusted(side + gap, 0, 0, 0);
  const int flags = Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic;
  if (node.Boolean("WordWrap", false))
    return painting.DrawText(text, flags | Qt::TextWordWrap, TPainting::Caption(node));
  painting.DrawFittedText(text, flags, TPainting::Caption(node));
}

// The buttons of a panel of standard buttons, in the order from the right.
struct TPanelButton {
  const char* Element;
  const char* Prefix;
  const char* Caption;
  QStyle::StandardPixmap Icon;
  bool AtLeft;
};
constexpr TPanelButton PanelButtons[] = {
    {"pbHelp", "HelpButton", "&Help", QStyle::SP_DialogHelpButton, true},
    {"pbCancel", "CancelButton", "Cancel", QStyle::SP_DialogCancelButton, false},
    {"pbClose", "CloseButton", "&Close", QStyle::SP_DialogCloseButton, false},
    {"pbOK", "OKButton", "&OK", QStyle::SP_DialogOkButton, false},
};

QString PanelCaption(const TDesignNode& node, const TPanelButton& button) {
  const QString stored = ToQString(node.Text(std::string(button.Prefix) + ".Caption"));
  return stored.isEmpty() ? QString::fromLatin1(button.Caption) : stored;
}

constexpr std::array NavigatorMarks = {"|◀", "◀", "▶", "▶|", "+", "−", "▲", "✓", "✗", "⟳"};
constexpr std::array<const char*, 10> NavigatorNames = {"nbFirst",  "nbPrior",  "nbNext", "nbLast",
                                                        "nbInsert", "nbDelete", "nbEdit", "nbPost",
                                                        "nbCancel", "nbRefresh"};

bool IsGap(const TDesignNode& node) {
  return node.Is("Style", "tbsSeparator") || node.Is("Style", "tbsDivider");
}

QImage ToolImage(TPainting& painting, const TDesignNode& node) {
  const std::int64_t index = StoredInteger(node.OwnOrAction("ImageIndex"), -1);
  for (const std::string_view list : {"Images", "HotImages"})
    if (const TDesignNode* images = node.Parent->Linked(list))
      if (QImage image = painting.ImageAt(images, index); !image.isNull()) return image;
  return painting.Glyph(node);
}

constexpr int ArrowWidth = 13;

void DrawToolArrow(TPainting& painting, QRect& face) {
  QStyleOption option;
  painting.Prepare(option, QRect(face.right() - ArrowWidth, face.top(), ArrowWidth, face.height())
                               .adjusted(3, 0, -3, 0));
  painting.Theme.Style->drawPrimitive(QStyle::PE_IndicatorArrowDown, &option, &painting.Canvas);
  face.setRight(face.right() - ArrowWidth);
}

}  // namespace

void PaintButton(TPainting& painting, const TDesignNode& node) {
  const QRect area = painting.Area();
  DrawButtonFace(painting, node, area, node.Boolean("Checked", false));
  const int flags = Qt::AlignCenter | Qt::TextShowMnemonic;
  const QImage image = painting.Glyph(node);
  if (!image.isNull())
    return DrawFace(painting, area.adjusted(3, 3, -3, -3), FaceOf(painting, node));
  if (node.Boolean("WordWrap", false))
    return painting.DrawText(area.adjusted(3, 2, -3, -2), flags | Qt::TextWordWrap,
                             TPainting::Caption(node));
  painting.DrawFittedText(area.adjusted(3, 2, -3, -2), flags, TPainting::Caption(node));
}

void PaintBitButton(TPainting& painting, const TDesignNode& node) {
  DrawButtonFace(painting, node, painting.Area(), false);
  TFace face = FaceOf(painting, node);
  if (const TButtonKind* kind = KindOf(node)) {
    if (face.Caption.isEmpty()) face.Caption = QString::fromLatin1(kind->Caption);
    if (face.Glyph.isNull()) face.Glyph = StandardIcon(painting, kind->Icon);
  }
  DrawFace(painting, painting.Area().adjusted(4, 2, -4, -2), face);
}

void PaintSpeedButton(TPainting& painting, const TDesignNode& node) {
  const QRect area = painting.Area();
  const bool down = node.Boolean("Down", false);
  const bool flat = node.Boolean("Flat", false) && !down;
  if (!flat) DrawButtonFace(painting, node, area, down);
  if (const std::string_view colour = node.Value("ButtonColor"); !colour.empty())
    painting.Fill(area.adjusted(5, 5, -5, -5), ColourOf(colour, painting.Theme.Palette));
  TFace face = FaceOf(painting, node);
  // Buttons of a speed bar show their captions only when the bar says so.
  if (node.Parent->Look() == TLook::SpeedBar && !face.Glyph.isNull()) face.Caption.clear();
  DrawFace(painting, area.adjusted(2, 2, -2, -2), face);
}

void PaintCheckBox(TPainting& painting, const TDesignNode& node) {
  const bool on =
      StoredBoolean(node.OwnOrAction("Checked"), false) || node.Is("State", "cbChecked");
  const bool grey = node.Is("State", "cbGrayed");
  DrawMarkAndText(painting, node, QStyle::PE_IndicatorCheckBox,
                  grey ? QStyle::State_NoChange
                  : on ? QStyle::State_On
                       : QStyle::State_Off);
}

void PaintRadioButton(TPainting& painting, const TDesignNode& node) {
  const bool on = StoredBoolean(node.OwnOrAction("Checked"), false);
  DrawMarkAndText(painting, node, QStyle::PE_IndicatorRadioButton,
                  on ? QStyle::State_On : QStyle::State_Off);
}

void PaintButtonPanel(TPainting& painting, const TDesignNode& node) {
  painting.FillGround();
  const QRect area = painting.Area();
  constexpr int gap = 6;
  if (node.Boolean("ShowBevel", true)) painting.DrawEdge(QRect(0, 0, area.width(), 2), false);
  QRect room = area.adjusted(gap, gap, -gap, -gap);
  const std::string_view shown = node.Value("ShowButtons");
  for (const TPanelButton& button : PanelButtons) {
    if (!StoredSetHas(shown, button.Element, true)) continue;
    const TFace face{StandardIcon(painting, button.Icon), PanelCaption(node, button)};
    const int width = std::max(75, painting.TextWidth(face.Caption) + 36);
    QRect place(room.left(), room.top(), width, room.height());
    if (!button.AtLeft) place.moveRight(room.right());
    DrawButtonFace(painting, node, place, false);
    DrawFace(painting, place.adjusted(4, 2, -4, -2), face);
    if (button.AtLeft) room.setLeft(place.right() + gap);
    else room.setRight(place.left() - gap);
  }
}

void PaintNavigator(TPainting& painting, const TDesignNode& node) {
  std::vector<const char*> marks;
  for (std::size_t i = 0; i < NavigatorMarks.size(); ++i)
    if (StoredSetHas(node.Value("VisibleButtons"), NavigatorNames[i], true))
      marks.push_back(NavigatorMarks[i]);
  const QRect area = painting.Area();
  for (std::size_t i = 0; i < marks.size(); ++i) {
    const auto edge = [&](std::size_t at) {
      return static_cast<int>(static_cast<std::size_t>(area.width()) * at / marks.size());
    };
    const QRect button(edge(i), 0, edge(i + 1) - edge(i), area.height());
    if (!node.Boolean("Flat", false)) DrawButtonFace(painting, node, button, false);
    painting.DrawText(button, Qt::AlignCenter, QString::fromUtf8(marks[i]));
  }
}

void PaintToolButton(TPainting& painting, const TDesignNode& node) {
  const QRect area = painting.Area();
  if (IsGap(node)) {
    if (node.Is("Style", "tbsDivider"))
      painting.DrawEdge(QRect(area.center().x(), 2, 2, area.height() - 4), false);
    return;
  }
  const TDesignNode& bar = *node.Parent;
  const bool down = StoredBoolean(node.OwnOrAction("Down"), false) ||
                    StoredBoolean(node.OwnOrAction("Checked"), false);
  const bool flat = bar.Boolean("Flat", node.Form->FromFreeEnvironment());
  if (down || !flat) DrawButtonFace(painting, node, area, down);
  QRect face = area.adjusted(2, 2, -2, -2);
  if (node.Is("Style", "tbsDropDown")) DrawToolArrow(painting, face);
  TFace contents{ToolImage(painting, node), {}};
  const bool list = bar.Boolean("List", false);
  if (bar.Boolean("ShowCaptions", false) && node.Boolean("ShowCaption", true))
    contents.Caption = TPainting::Caption(node);
  contents.Layout = list ? "blGlyphLeft" : "blGlyphTop";
  contents.Spacing = list ? 4 : 1;
  DrawFace(painting, face, contents);
}

}  // namespace wrenfold
