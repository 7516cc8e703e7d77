#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// The hand moves the picture in its scroll area, and draws nothing. An entry of the history that
/// draws nothing is its shape, too.
struct EmptyShape {
    static constexpr Tool tool{.state = stateMove,
                               .id = "move",
                               .button = "BtnDrawMove",
                               .glyph = "hand",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Hand"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+1"),
                               .cursor = Qt::OpenHandCursor};

    static std::optional<EmptyShape> from(const Drag & /*drag*/) { return {}; }
    void draw(QPainter & /*painter*/, const EditMsg & /*style*/) const {}
    void cover(Tiles & /*tiles*/, const EditMsg & /*style*/) const {}
    QPolygon drawnPoints() const { return {}; }
    bool hit(QPointF /*point*/, qreal /*grace*/, const EditMsg & /*style*/) const { return false; }
    QRect box(const EditMsg & /*style*/) const { return {}; }
    EmptyShape mapped(const PictureMap & /*map*/, const EditMsg & /*style*/) const { return {}; }
    void write(QJsonObject & /*to*/) const {}
    static EmptyShape read(ShapeParts & /*parts*/) { return {}; }
    bool operator==(const EmptyShape &) const = default;
};
