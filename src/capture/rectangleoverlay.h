#pragma once

#include "capture/regionoverlay.h"

class QPainterPath;

/// The overlay for marking a rectangle of the desktop.
class Dialog : public RegionOverlay
{
    Q_OBJECT
public:
    explicit Dialog(QWidget *parent = nullptr, const MarkingHabits &habits = {});

    Grab take() override
    {
        return {.picture = getPixmap(), .place = area().topLeft() + region().topLeft()};
    }
    /// The region's outline in overlay coordinates, which the caller owns; null if there is no
    /// region.
    QPainterPath *getPolygonF() const;

    /// Draws a rectangle with the painter's pen and brush, and its handles. Changes the painter's
    /// brush.
    static void myDrawRect(QPainter &p, int x, int y, int w, int h);

protected:
    void draw(QPainter &painter, const QRect &region) const override;
};
