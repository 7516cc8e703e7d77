#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// A line through all points where the pointer has been.
struct PolylineShape {
    static constexpr Tool tool{.state = statePoly,
                               .id = "line",
                               .button = "BtnDrawPoly",
                               .glyph = "freehand",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Freehand line"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+5"),
                               .isFreehand = true,
                               .uses = UsesDashes | UsesShadow};

    QPolygon points{};

    static std::optional<PolylineShape> from(const Drag &drag) { return PolylineShape{drag.line}; }
    void draw(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    bool coverChange(Tiles &tiles, const PolylineShape &before, const EditMsg &style) const;
    QPolygon drawnPoints() const { return points; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg & /*style*/) const { return boxAround(points); }
    /// Each of its points if there are few.
    QPolygon ends() const;
    PolylineShape withEnd(qsizetype end, QPoint at, const EditMsg &style) const;
    PolylineShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {map(points)};
    }
    void write(QJsonObject &to) const;
    static PolylineShape read(ShapeParts &parts);
    bool operator==(const PolylineShape &) const = default;
};
