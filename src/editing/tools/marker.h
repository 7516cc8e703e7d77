#pragma once

#include "editing/shaperefs.h"
#include "editing/tools/tool.h"

#include <QList>

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// A disc with a number. Markers count on by themselves, in the order in which they were added.
struct MarkerShape {
    static constexpr Tool tool{.state = stateMarker,
                               .id = "marker",
                               .button = "BtnMarker",
                               .glyph = "marker",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Numbered marker"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "N"),
                               .isPlaced = true,
                               .isDerived = true,
                               .hasLabel = true,
                               .keepsProportions = true,
                               .uses = UsesShadow | UsesNumber};
    static constexpr int s_highest = 9999;  ///< number that can be set

    QPoint middle{};
    int start = 0;   ///< the number that was set for it; 0: it counts on
    int room = 11;   ///< the radius without what the line width adds
    int number = 1;  ///< what it shows, as settle() found

    static std::optional<MarkerShape> from(const Drag &drag) { return MarkerShape{drag.pointer}; }
    static void settle(QList<EntryPtr> &shapes, const QList<ShapeId> &byAge);
    void draw(QPainter &painter, const EditMsg &style) const;
    void drawShadow(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    QPolygon drawnPoints() const { return QPolygon({middle}); }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg &style) const;
    MarkerShape mapped(const PictureMap &map, const EditMsg &style) const;
    void write(QJsonObject &to) const;
    static MarkerShape read(ShapeParts &parts);
    bool operator==(const MarkerShape &) const = default;
};
