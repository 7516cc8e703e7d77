#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// The points of the head: wing, tip and wing; then the shaft's end inside the head and its start,
/// which lies slightly after the arrow's own.
struct ArrowShape {
    static constexpr Tool tool{.state = stateArrow,
                               .id = "arrow",
                               .button = "BtnDrawArrow",
                               .glyph = "arrow",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Arrow"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+4"),
                               .uses = UsesDashes | UsesHeads | UsesShadow};

    QPolygon points{};
    QPoint start{};

    static std::optional<ArrowShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const { return points; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg &style) const;
    /// Where it starts, and its tip.
    QPolygon ends() const { return QPolygon({start, points.value(1)}); }
    ArrowShape withEnd(qsizetype end, QPoint at, const EditMsg &style) const;
    ArrowShape mapped(const PictureMap &map, const EditMsg &style) const;
    void write(QJsonObject &to) const;
    static ArrowShape read(ShapeParts &parts);
    bool operator==(const ArrowShape &) const = default;
};

/// The five points of an arrow in picture coordinates. In an arrow that is shorter than its head
/// the wings lie behind the start.
QPolygon CreateArrowPolygon(const QPoint &start, const QPoint &end, int width);
/// Draws an arrow; nothing if it has fewer than three points.
void DrawArrow(QPainter &painter, const QColor &color, int width, const QPolygon &arrow);
