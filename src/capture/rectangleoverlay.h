#pragma once

#include "capture/regionoverlay.h"

class QPainterPath;

/// The overlay with which the user marks a rectangle of the desktop.
class Dialog : public RegionOverlay
{
    Q_OBJECT
public:
    explicit Dialog(QWidget *parent = nullptr);

    Grab take() override { return {.picture = getPixmap()}; }
    /// The region's outline in overlay coordinates, null without a region. The caller owns it.
    QPainterPath *getPolygonF() const;

    /// Draws a rectangle in the painter's pen and brush, and the handles around it. Leaves the
    /// painter's brush changed.
    static void myDrawRect(QPainter &p, int x, int y, int w, int h);

protected:
    void draw(QPainter &painter, const QRect &region) const override;
};
