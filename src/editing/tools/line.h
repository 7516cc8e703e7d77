#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// A straight line between two points. In files it has another id than the freehand line, whose id
/// is older.
struct LineShape {
    static constexpr Tool tool{.state = stateLine,
                               .id = "straight-line",
                               .button = "BtnDrawLine",
                               .glyph = "line",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Line"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+7"),
                               .uses = UsesDashes | UsesShadow};

    QPolygon points{};

    static std::optional<LineShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const { return points; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg & /*style*/) const { return boxAround(points); }
    QPolygon ends() const { return points; }
    LineShape withEnd(qsizetype end, QPoint at, const EditMsg &style) const;
    LineShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {map(points)};
    }
    void write(QJsonObject &to) const;
    static LineShape read(ShapeParts &parts);
    bool operator==(const LineShape &) const = default;
};
