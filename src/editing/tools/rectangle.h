#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// A closed outline of five points.
struct RectShape {
    static constexpr Tool tool{.state = stateRect,
                               .id = "rectangle",
                               .button = "BtnDrawRect",
                               .glyph = "rectangle",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Rectangle"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+2"),
                               .uses = UsesFill | UsesDashes | UsesShadow};

    QPolygon outline{};

    static std::optional<RectShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg &style) const;
    void drawShadow(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const { return outline; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg & /*style*/) const { return boxAround(outline); }
    RectShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {map(outline)};
    }
    void write(QJsonObject &to) const;
    static RectShape read(ShapeParts &parts);
    bool operator==(const RectShape &) const = default;
};

/// Draws the outline of a rectangle of five points; nothing if it has fewer.
void DrawRect(QPainter &painter, const QColor &color, int width, const QPolygon &rect);
