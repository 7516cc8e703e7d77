#pragma once

#include <QColor>
#include <QFont>
#include <QPoint>
#include <QPolygon>
#include <QRect>
#include <QString>

#include <optional>

// What all tools share. A tool is one pair of files in this folder and one row of the table
// (`tooltable.h`). Its shape is a value with these members:
//
// - `static constexpr Tool tool`: what strip, keys and files know of it.
//
// - `static std::optional<Shape> from(const Drag &)`: the shape of a drag; none if it draws none.
//
// - `void draw(QPainter &, const EditMsg &) const`: draws over what is below, which is what the
//   painter's device shows. The pen has the style's colour and width, and there is no brush.
//
// - `void cover(Tiles &, const EditMsg &) const`: marks every tile that draw() may change.
//
// - `QPolygon drawnPoints() const`: points that are drawn in any case.
//
// - `bool hit(QPointF, qreal grace, const EditMsg &) const`: whether a point lies on what is drawn,
//   or at most `grace` beside it.
//
// - `Shape moved(QPoint by) const`.
//
// - `void write(QJsonObject &) const` and `static Shape read(ShapeParts &)`: for unsaved pictures
//   that are kept. An earlier version of the program leaves alone what has names that are new.
//
// All positions and lengths are picture pixels.

/// The tools' numbers. Recorded shapes keep the number of the tool that drew them. Tools that came
/// later have higher numbers.
enum stateEnum : int { stateMove, stateRect, stateEllipse, stateArrow, stateText, statePoly };

/// The style with which a shape was drawn.
struct EditMsg {
    int type = stateMove;  ///< a value of stateEnum
    int width = 1;         ///< line width in picture pixels; not used for text
    QColor color{};
    QString text{};
    QFont font{};  ///< font of a text, without the zoom
};

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
};

/// A press, a drag and, maybe, a release.
struct Drag {
    QPoint start{};
    QPoint end{};      ///< once released, held inside the view
    QPoint pointer{};  ///< the same, wherever it is
    /// The rectangle between both; none while the drag does not have two corners yet.
    std::optional<QRect> box{};
    QPolygon line{};  ///< where the pointer has been meanwhile
    int width = 1;    ///< line width
};

/// Whether a point lies at most `reach` beside a line through points.
bool isNearLine(const QPolygonF &line, QPointF point, qreal reach);
/// The same for a line drawn with a pen of that width, with `grace` beside it.
bool isOnLine(const QPolygonF &line, QPointF point, int width, qreal grace);
