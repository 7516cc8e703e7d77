#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// Text whose top left corner is at `position`. It comes from the field in which it is typed, and
/// not from a drag.
struct TextShape {
    static constexpr Tool tool{.state = stateText,
                               .id = "text",
                               .button = "BtnDrawText",
                               .glyph = "text",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Text"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+6")};

    QPoint position{};

    static std::optional<TextShape> from(const Drag & /*drag*/) { return {}; }
    void draw(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const { return QList<QPoint>{position}; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    TextShape moved(QPoint by) const { return {position + by}; }
    void write(QJsonObject &to) const;
    static TextShape read(ShapeParts &parts);
};
