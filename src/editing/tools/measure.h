#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// The distance between two points, and the angle at which the line between them rises: counter-
/// clockwise from the right, from 0 up to but not including 180 degrees, whichever end came first.
struct MeasureShape {
    static constexpr Tool tool{.state = stateMeasure,
                               .id = "measure",
                               .button = "BtnMeasure",
                               .glyph = "measure",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Measure"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "M"),
                               .hasLabel = true,
                               .uses = UsesShadow};

    QPolygon points{};

    static std::optional<MeasureShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg &style) const;
    void drawShadow(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const { return points; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg &style) const;
    QPolygon ends() const { return points; }
    MeasureShape withEnd(qsizetype end, QPoint at, const EditMsg &style) const;
    MeasureShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {map(points)};
    }
    void write(QJsonObject &to) const;
    static MeasureShape read(ShapeParts &parts);
    bool operator==(const MeasureShape &) const = default;
};

/// What is written beside the line. It is the same in every language, as the shape has to be.
QString labelOf(const MeasureShape &measure);
