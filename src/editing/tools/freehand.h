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
                               .isFreehand = true};

    QPolygon points{};

    static std::optional<PolylineShape> from(const Drag &drag) { return PolylineShape{drag.line}; }
    void draw(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const { return points; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    PolylineShape moved(QPoint by) const { return {points.translated(by)}; }
    void write(QJsonObject &to) const;
    static PolylineShape read(ShapeParts &parts);
};
