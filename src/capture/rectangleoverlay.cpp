#include "capture/rectangleoverlay.h"

#include <QPainter>
#include <QPainterPath>

#include <memory>

Dialog::Dialog(QWidget *parent, const MarkingHabits &habits)
    : RegionOverlay(parent, s_rectanglePolicy, habits)
{
}

QPainterPath *Dialog::getPolygonF() const
{
    if (!hasArea())
        return nullptr;
    auto path = std::make_unique<QPainterPath>();
    path->addRect(region());
    return path.release();
}

void Dialog::myDrawRect(QPainter &p, int x, int y, int w, int h)
{
    p.drawRect(x, y, w, h);
    drawHandles(p, {x, y, w, h}, {1, 5, 7, 3, 2, 6, 8, 4});
}

void Dialog::draw(QPainter &painter, const QRect &region) const
{
    myDrawRect(painter, region.x(), region.y(), region.width(), region.height());
}
