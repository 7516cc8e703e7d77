#include "capture/magnifiergeometry.h"

namespace {

constexpr int s_distance = 20;

}  // namespace

QSize MagnifierView::pictureSize() const
{
    return {size.width() - size.width() % multiple, size.height() - size.height() % multiple};
}

QRect MagnifierView::source(QPoint point) const
{
    QRect result(QPoint(), QSize(size.width() / multiple, size.height() / multiple));
    result.moveCenter(point);
    return result;
}

QPoint MagnifierView::centre() const
{
    return {(pictureSize().width() - 1) / 2, (pictureSize().height() - 1) / 2};
}

QRect MagnifierView::centreMark() const
{
    const auto block = [this](int length) { return (length / multiple - 1) / 2 * multiple; };
    // QPainter::drawRect() draws one pixel more than the rectangle's size.
    return {block(pictureSize().width()), block(pictureSize().height()), multiple - 1,
            multiple - 1};
}

QRect MagnifierView::visible(const QRect &source, const QRect &desktop) const
{
    const QRect shown = source & desktop;
    return {(shown.topLeft() - source.topLeft()) * multiple, shown.size() * multiple};
}

bool magnifierIsInTheWay(const QRect &magnifier, QPoint pointer)
{
    return magnifier.adjusted(-s_distance, -s_distance, s_distance, s_distance).contains(pointer);
}

QPoint magnifierPlace(QSize magnifier, const QRect &screen, QPoint pointer)
{
    const QPoint inside = pointer - screen.topLeft();
    const bool right = inside.x() < screen.width() / 2.0;
    const bool bottom = inside.y() < screen.height() / 2.0;
    return screen.topLeft() + QPoint(right ? screen.width() - magnifier.width() : 0,
                                     bottom ? screen.height() - magnifier.height() : 0);
}

QRect magnifierResized(const QRect &magnifier, QSize size, const QRect &screen)
{
    QPoint corner = magnifier.topLeft();
    if (corner.x() > screen.x())
        corner.rx() += magnifier.width() - size.width();
    if (corner.y() > screen.y())
        corner.ry() += magnifier.height() - size.height();
    return {corner, size};
}
