#include "editing/cropping.h"

namespace {

RegionSelection::Input input(QPoint at, Qt::KeyboardModifiers modifiers)
{
    return {.pos = at, .pointer = at, .modifiers = modifiers};
}

}  // namespace

Cropping::Cropping(QSize picture, float reach)
    : m_picture(picture), m_region(RegionPolicy{.exactKeys = true, .lastIsEdge = false})
{
    setReach(reach);
    // As if the pointer had marked it.
    const QPoint end(picture.width(), picture.height());
    m_region.press(input({}, {}), Qt::LeftButton);
    m_region.move(input(end, {}));
    m_region.painted();
    m_region.release(input(end, {}));
}

void Cropping::setReach(float reach)
{
    m_region.setExtent({.surface = m_picture, .overlay = m_picture, .reach = reach});
}

void Cropping::press(QPoint at, Qt::KeyboardModifiers modifiers)
{
    if (isWhole() && m_region.cursor(input(at, modifiers), {}).shape == Qt::ArrowCursor)
        m_region.clear();
    // A square begins where it is pressed, too, if there is no frame with which it could go on.
    m_region.press(input(at, frame().isEmpty() ? Qt::KeyboardModifiers() : modifiers),
                   Qt::LeftButton);
}

// What is marked counts, also if a quick hand leaves no time to show it.
void Cropping::move(QPoint at, Qt::KeyboardModifiers modifiers)
{
    m_region.move(input(at, modifiers));
    m_region.painted();
}

void Cropping::release(QPoint at, Qt::KeyboardModifiers modifiers)
{
    m_region.release(input(at, modifiers));
}

Cropping::Answer Cropping::key(int key, Qt::KeyboardModifiers modifiers)
{
    switch (m_region.key(key == Qt::Key_Enter ? Qt::Key_Return : key, modifiers)) {
    case RegionSelection::Request::Accept:
        return Answer::Take;
    case RegionSelection::Request::Close:
        return Answer::GiveUp;
    default:
        return Answer::None;
    }
}

QRect Cropping::frame() const
{
    const QList<QRect> shapes = m_region.shapes();
    return shapes.isEmpty() ? QRect() : shapes.first() & QRect(QPoint(), m_picture);
}

Qt::CursorShape Cropping::cursor(QPoint at) const
{
    const Qt::CursorShape shape = m_region.cursor(input(at, {}), {}).shape;
    return shape == Qt::ArrowCursor ? (isWhole() ? Qt::CrossCursor : Qt::SizeAllCursor) : shape;
}
