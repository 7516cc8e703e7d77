#pragma once

#include "capture/regionoverlay.h"

class QPainterPath;

/// The overlay with which the user marks an ellipse: by the rectangle around it, and otherwise as
/// RegionPolicy tells.
class MyDrawRound : public RegionOverlay
{
    Q_OBJECT
public:
    explicit MyDrawRound(QWidget *parent = nullptr);

    Grab take() override;
    /// The ellipse in the picture's coordinates, which the caller owns. Null only where the region
    /// has no height.
    QPainterPath *getEllipse() const;

    /// Draws an ellipse in the painter's pen and brush, and the handles of the rectangle around it,
    /// those at its corners only while Command alone is held. Leaves the painter's brush changed.
    static void myDrawEllipse(QPainter &p, int x, int y, int w, int h);

protected:
    void draw(QPainter &painter, const QRect &region) const override;
};
