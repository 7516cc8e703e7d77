#pragma once

#include "editing/picturemap.h"

#include <QColor>
#include <QFont>
#include <QPoint>
#include <QPolygon>
#include <QRect>
#include <QString>

#include <optional>

class QPainter;

// What all tools share. A tool is one pair of files in this folder and one row of the table
// (`tooltable.h`), which is a struct with `static constexpr Tool tool`: what strip, keys and files
// know of it. That of a tool which draws is its shape, a value with these members, too:
//
// - `static std::optional<Shape> from(const Drag &)`: the shape of a drag; none if it draws none.
//
// - `void draw(QPainter &, const EditMsg &) const`: draws over what is below, which is what the
//   painter's device shows. The pen has the style's colour and width, the brush its fill.
//   `void drawShadow(QPainter &, const EditMsg &) const`, if its parts lie over each other: what
//   its shadow is a shadow of.
//
// - `void cover(Tiles &, const EditMsg &) const`: marks every tile that draw() may change. A shape
//   whose states may differ in less has `bool coverChange(Tiles &, const Shape &, const EditMsg &)
//   const`, which marks only that; false if it can't tell.
//
// - `QPolygon drawnPoints() const`: points that are drawn in any case.
//
// - `bool hit(QPointF, qreal grace, const EditMsg &) const`: whether a point lies on what is drawn,
//   or at most `grace` beside it.
//
// - `QRect box(const EditMsg &) const`: what the shape lies in, without the width of its lines; the
//   far edge is not included.
//
// - For a shape that is not resized by its box, `QPolygon ends() const`: the points by which the
//   user takes hold of it, none if by its box after all; and `Shape withEnd(qsizetype, QPoint,
//   const EditMsg &) const`: one of them elsewhere.
//
// - `Shape mapped(const PictureMap &, const EditMsg &) const`: where it is after a change of the
//   picture, or of its box. The style has been mapped already.
//
// - `static void settle(QList<EntryPtr> &shapes, const QList<ShapeId> &byAge)`, if it is derived:
//   replaces those of its kind whose look has to change by copies, and leaves all others alone.
//
// - `void write(QJsonObject &) const` and `static Shape read(ShapeParts &)`: for unsaved pictures
//   that are kept. An earlier version of the program leaves alone what has names that are new.
//
// All positions and lengths are picture pixels.

/// The tools' numbers. Recorded shapes keep the number of the tool that drew them. Tools that came
/// later have higher numbers.
enum stateEnum : int {
    stateMove,
    stateRect,
    stateEllipse,
    stateArrow,
    stateText,
    statePoly,
    stateLine,
    stateSelect,
    stateHighlighter,
    stateMarker,
    stateSpotlight,
    stateCrop,
    stateMeasure,
    statePipette
};

enum class Fill { None, Translucent, Solid };
enum class Dashes { None, Dashed, Dotted };
enum class Heads { One, Both, Open };
enum class TextGround { None, Filled, Outlined };

/// What of a style makes a difference to a tool, besides width and colour; flags.
enum ToolUse : unsigned {
    UsesFill = 1,
    UsesDashes = 2,
    UsesHeads = 4,
    UsesGround = 8,
    UsesShadow = 16,
    UsesRound = 32,
    UsesNumber = 64,
    UsesAll = 127
};

/// The style with which a shape was drawn. Each shape uses what it has a use for.
struct EditMsg {
    int type = stateMove;  ///< a value of stateEnum
    int width = 1;         ///< line width in picture pixels; not used for text
    QColor color{};
    QString text{};
    QFont font{};  ///< font of a text, without the zoom
    Fill fill = Fill::None;
    Dashes dashes = Dashes::None;
    Heads heads = Heads::One;
    TextGround ground = TextGround::None;
    bool hasShadow = false;
    bool isRound = false;  ///< a spotlight's area is an ellipse

    bool operator==(const EditMsg &) const = default;
};

// What a style holds at most; settings and files may tell more.
constexpr int s_widestLine = 1000;  ///< picture pixels
constexpr qreal s_largestText = 500;

/// What a style is after a change of the picture: lengths grow with it.
EditMsg mapped(EditMsg style, const PictureMap &map);

/// The row of a tool: what the strip, the keys and the files know of it.
struct Tool {
    stateEnum state = stateMove;   ///< its number, which no other tool has
    const char *id = nullptr;      ///< in files; a name that was given out stays
    const char *button = nullptr;  ///< object name of its button, and section of the skin
    const char *glyph = nullptr;   ///< what its button shows where the skin has no such section
    const char *name = nullptr;    ///< English; MainWindow's texts have it in the user's language
    const char *keys = nullptr;    ///< the same for the keys that choose it
    Qt::CursorShape cursor = Qt::CrossCursor;
    bool isFreehand = false;  ///< every move of the pointer counts, not only the last one
    bool isPlaced = false;    ///< a click draws, too; a drag carries the shape along
    /// The look depends on other shapes of the picture, see SceneBuilder.
    bool isDerived = false;
    bool hasLabel = false;          ///< it writes something, in the font of texts
    bool keepsProportions = false;  ///< when its box is resized
    /// Nobody gets back what lies below it from a picture that is handed on.
    bool isCover = false;
    /// What it draws with at first; none for a tool that shares the style of the others.
    int ownWidth = 0;
    QRgb ownColor = 0;
    unsigned uses = 0;  ///< of ToolUse, what the user can choose for it
};

/// A press, a drag and, maybe, a release.
struct Drag {
    QPoint start{};
    QPoint end{};      ///< once released, held inside the view
    QPoint pointer{};  ///< the same, wherever it is
    /// The rectangle between both; none while the drag does not have two corners yet.
    std::optional<QRect> box{};
    QPolygon line{};      ///< where the pointer has been meanwhile
    int width = 1;        ///< line width
    bool isEven = false;  ///< Shift is held: squares, circles, whole eighths of a turn
};

/// Gives the pen the gaps of the style, if it has any, so that a line of that length begins and
/// ends in the middle of a dash.
void setDashes(QPainter &painter, const EditMsg &style, qreal length);
/// The length of a line through points.
qreal lengthOf(const QPolygonF &line);
/// Whether a point lies at most `reach` beside a line through points.
bool isNearLine(const QPolygonF &line, QPointF point, qreal reach);
/// The same for a line drawn with a pen of that width, with `grace` beside it.
bool isOnLine(const QPolygonF &line, QPointF point, int width, qreal grace);
/// The smallest rectangle around points, without the far edge.
QRect boxAround(const QPolygon &points);
/// Whether a style's fill is drawn, and so is hit inside of an outline.
bool isFilled(const EditMsg &style);
/// Black or white, whichever contrasts more with a colour.
QColor contrastTo(const QColor &color);
