#include "capture/ellipseoverlay.h"

#include <QPainter>
#include <QPainterPath>

#include <memory>

MyDrawRound::MyDrawRound(QWidget *parent, const MarkingHabits &habits)
    : RegionOverlay(parent, s_ellipsePolicy, habits)
{
}

QPainterPath *MyDrawRound::getEllipse() const
{
    if (region().height() == 0)
        return nullptr;
    auto path = std::make_unique<QPainterPath>();
    path->addEllipse(0.0, 0.0, region().width(), region().height());
    return path.release();
}

Grab MyDrawRound::take()
{
    Grab grab{.picture = getPixmap(), .place = area().topLeft() + region().topLeft()};
    if (const std::unique_ptr<QPainterPath> ellipse(getEllipse()); ellipse)
        grab.outline = toPicture(grab.picture, region().size()).map(*ellipse);
    return grab;
}

void MyDrawRound::myDrawEllipse(QPainter &p, int x, int y, int w, int h)
{
    p.drawEllipse(x, y, w, h);
    if (isCommandHeld())
        drawHandles(p, {x, y, w, h}, {1, 5, 7, 3});
    drawHandles(p, {x, y, w, h}, {2, 6, 8, 4});
}

void MyDrawRound::draw(QPainter &painter, const QRect &region) const
{
    myDrawEllipse(painter, region.x(), region.y(), region.width(), region.height());
}
