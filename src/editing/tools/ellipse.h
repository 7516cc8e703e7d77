#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// The ellipse inside `bounds`.
struct EllipseShape {
    static constexpr Tool tool{.state = stateEllipse,
                               .id = "ellipse",
                               .button = "BtnDrawEllipse",
                               .glyph = "ellipse",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Ellipse"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+3"),
                               .uses = UsesFill | UsesDashes | UsesShadow};

    QRect bounds{};

    static std::optional<EllipseShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg &style) const;
    void drawShadow(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const;
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg & /*style*/) const { return boxAround(drawnPoints()); }
    EllipseShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {map(bounds)};
    }
    void write(QJsonObject &to) const;
    static EllipseShape read(ShapeParts &parts);
    bool operator==(const EllipseShape &) const = default;
};
