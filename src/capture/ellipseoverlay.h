#pragma once

#include "capture/regionoverlay.h"

class QPainterPath;

/// The overlay for marking an ellipse. The user marks the rectangle around it; RegionPolicy lists
/// all differences from a rectangle.
class MyDrawRound : public RegionOverlay
{
    Q_OBJECT
public:
    explicit MyDrawRound(QWidget *parent = nullptr, const MarkingHabits &habits = {});

    Grab take() override;
    /// The ellipse in the coordinates of the picture; the caller owns it. A reader would expect
    /// null for every empty region, but it is null only for a height of 0, on purpose.
    QPainterPath *getEllipse() const;

    /// Draws an ellipse with the painter's pen and brush, and the handles of its bounding
    /// rectangle; the corner handles only while Command alone is held. Changes the painter's brush.
    static void myDrawEllipse(QPainter &p, int x, int y, int w, int h);

protected:
    void draw(QPainter &painter, const QRect &region) const override;
};
