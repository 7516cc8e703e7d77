#pragma once

#include "editing/tools/tool.h"

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// Text that begins at `position`: its top left corner, before it was turned. It comes from the
/// field in which it is typed, and not from a drag.
struct TextShape {
    static constexpr Tool tool{.state = stateText,
                               .id = "text",
                               .button = "BtnDrawText",
                               .glyph = "text",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Text"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+6"),
                               .keepsProportions = true,
                               .uses = UsesGround | UsesShadow};

    QPoint position{};
    QTransform direction{};  ///< of the lines, if the picture was turned or mirrored since

    static std::optional<TextShape> from(const Drag & /*drag*/) { return {}; }
    void draw(QPainter &painter, const EditMsg &style) const;
    void drawShadow(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const { return QList<QPoint>{position}; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg &style) const;
    TextShape mapped(const PictureMap &map, const EditMsg &style) const;
    void write(QJsonObject &to) const;
    static TextShape read(ShapeParts &parts);
    bool operator==(const TextShape &) const = default;
};
