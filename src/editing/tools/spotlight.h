#pragma once

#include "editing/shaperefs.h"
#include "editing/tools/tool.h"

#include <QList>

class QJsonObject;
class QPainter;
class ShapeParts;
class Tiles;

/// An area that stays bright while all around it is darkened: a rectangle, or the ellipse in it.
/// The spotlights of a picture darken it together, once: the lowest of them draws the ground with
/// the areas of all.
struct SpotlightShape {
    static constexpr Tool tool{.state = stateSpotlight,
                               .id = "spotlight",
                               .button = "BtnSpotlight",
                               .glyph = "spotlight",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Spotlight"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "L"),
                               .isDerived = true,
                               .ownWidth = 1,
                               .ownColor = 0xff000000,
                               .uses = UsesRound};

    struct Spot {
        QRect bounds{};
        bool isRound = false;
        bool operator==(const Spot &) const = default;
        /// Any order, always the same: what several ellipses leave dark depends on it, by a hair.
        bool operator<(const Spot &other) const;
    };

    QRect bounds{};
    QList<Spot> spots{};  ///< what stays bright, as settle() found; none if another one darkens

    static std::optional<SpotlightShape> from(const Drag &drag);
    static void settle(QList<EntryPtr> &shapes, const QList<ShapeId> &byAge);
    void draw(QPainter &painter, const EditMsg &style) const;
    void cover(Tiles &tiles, const EditMsg &style) const;
    bool coverChange(Tiles &tiles, const SpotlightShape &before, const EditMsg &style) const;
    QPolygon drawnPoints() const { return {}; }
    bool hit(QPointF point, qreal grace, const EditMsg &style) const;
    QRect box(const EditMsg & /*style*/) const { return bounds; }
    SpotlightShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {map(bounds)};
    }
    void write(QJsonObject &to) const;
    static SpotlightShape read(ShapeParts &parts);
    bool operator==(const SpotlightShape &) const = default;
};
