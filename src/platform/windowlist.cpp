#include "platform/windowlist.h"

#include "platform/services.h"

#include <QWidget>

#include <algorithm>
#include <cwchar>

CocoaGrabWindows g_WindowList;
QWidget *g_widgetExcept = nullptr;

namespace {

constexpr int s_menuBarLayer = 24;
constexpr qsizetype s_titleCapacity = 256;
constexpr int s_goneLimit = 5000;  // ms

bool isValid(int index) { return index >= 0 && index < g_WindowList.Count; }

void copyName(const QString &name, wchar_t *out)
{
    if (!out)
        return;
    // Each unit of UTF-16 becomes at most one wide character, so the result fits.
    const qsizetype length = name.left(s_titleCapacity - 1).toWCharArray(out);
    out[length] = L'\0';
}

// Screen numbers start at 1, so the first number skips screen 0, and the last number, which is out
// of range, stands for it.
QRect screenGeometry(const QList<QRect> &screens, qsizetype number)
{
    return number < screens.size() ? screens.at(number) : screens.first();
}

// A reader would expect comparisons with the far edges of the box, but two of them use its size, on
// purpose. Both are the same if the box begins at the origin.
QRect clipped(QRect area)
{
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    getScreenGem(left, top, width, height);
    if (area == QRect(0, 0, -1, -1))
        return {left, top, width, height};
    if (area.x() < left || area.x() > width)
        area.moveLeft(left);
    if (area.y() < top || area.y() > height)
        area.moveTop(top);
    if (area.width() <= 0 || area.width() > width - area.x())
        area.setWidth(width - area.x());
    if (area.height() <= 0 || area.height() > height - area.y())
        area.setHeight(height - area.y());
    return area;
}

}  // namespace

int CocoaGrabWindows::GetWindowList(int onScreen, int relativeTo)
{
    using List = WindowServer::List;
    const List which = relativeTo > 0 ? List::AtAndAbove : onScreen ? List::OnScreen : List::All;
    WindowInfo = services().windows->windows(which, relativeTo);
    Count = static_cast<int>(WindowInfo.size());
    return Count;
}

QImage CocoaGrabWindows::GrabWindow(int windowNumber)
{
    Image = services().windows->picture(std::nullopt, {windowNumber});
    return Image;
}

int GetWindowList(int onScreen, int relativeTo)
{
    return g_WindowList.GetWindowList(onScreen, relativeTo);
}

int GetWindowLevel(int index) { return isValid(index) ? g_WindowList.WindowInfo[index].layer : 0; }

int getWinid(int index) { return isValid(index) ? g_WindowList.WindowInfo[index].number : 0; }

int GetWindowGeometry(int index, int *x, int *y, int *width, int *height)
{
    if (!isValid(index))
        return 0;
    const QRectF &bounds = g_WindowList.WindowInfo[index].bounds;
    *x = static_cast<int>(bounds.x());
    *y = static_cast<int>(bounds.y());
    *width = static_cast<int>(bounds.width());
    *height = static_cast<int>(bounds.height());
    return 1;
}

QImage GrabWindow(int index, wchar_t *title, wchar_t *owner, int *windowNumber)
{
    if (!isValid(index))
        return {};
    const WindowServer::Entry entry = g_WindowList.WindowInfo[index];
    copyName(entry.name, title);
    copyName(entry.owner, owner);
    if (windowNumber)
        *windowNumber = entry.number;
    return g_WindowList.GrabWindow(entry.number);
}

void getScreenGem(int &left, int &top, int &width, int &height)
{
    left = top = width = height = 0;
    const QList<QRect> screens = services().windows->screens();
    for (qsizetype number = 1; number <= screens.size(); ++number) {
        const QRect screen = screenGeometry(screens, number);
        left = std::min(left, screen.x());
        top = std::min(top, screen.y());
        width = std::max(width, screen.x() + screen.width());
        height = std::max(height, screen.y() + screen.height());
    }
    width -= left;
    height -= top;
}

void getScreenSize(int &width, int &height)
{
    int left = 0;
    int top = 0;
    getScreenGem(left, top, width, height);
}

int getOneScreen(int x, int y, QRect &rect)
{
    const QList<QRect> screens = services().windows->screens();
    for (qsizetype number = 1; number <= screens.size(); ++number) {
        rect = screenGeometry(screens, number);
        if (rect.contains(x, y))
            return static_cast<int>(number);
    }
    return -1;
}

QImage GrabFullWindow(int x, int y, int width, int height, bool clip, QWidget *except)
{
    QRect area(x, y, width, height);
    if (clip)
        area = clipped(area);
    g_WindowList.GetWindowList(1, 0);
    if (!except)
        return services().windows->screenPicture(area);
    return pictureBehind(area, *except);
}

QImage pictureBehind(const QRect &area, const QWidget &except)
{
    QList<int> leftOut{services().windows->numberOf(&except)};
    for (const QObject *child : except.children()) {
        const auto *window = qobject_cast<const QWidget *>(child);
        if (window && window->isWindow())
            leftOut.append(services().windows->numberOf(window));
    }
    return services().windows->pictureWithout(area, leftOut);
}

QPixmap screenWindow(int x, int y, int width, int height, bool clip, QWidget *except)
{
    return QPixmap::fromImage(GrabFullWindow(x, y, width, height, clip, except));
}

void waitUntilGone(int number)
{
    WindowServer &server = *services().windows;
    waitUntil(*services().clock, s_goneLimit, [&] {
        const auto windows = server.windows(WindowServer::List::OnScreen, 0);
        return std::none_of(windows.begin(), windows.end(),
                            [number](const auto &entry) { return entry.number == number; });
    });
}

QPixmap screenMenu()
{
    if (!services().windows->hasMenuBar())
        return {};
    static int s_menuBar = 0;
    if (s_menuBar == 0) {
        g_WindowList.GetWindowList(1, 0);
        const QList<WindowServer::Entry> &list = g_WindowList.WindowInfo;
        const auto found = std::find_if(
            list.begin() + std::min<qsizetype>(1, list.size()), list.end(),
            [](const WindowServer::Entry &entry) { return entry.layer == s_menuBarLayer; });
        if (found != list.end())
            s_menuBar = found->number;
    }
    if (g_WindowList.GetWindowList(1, s_menuBar) == 0)
        return {};
    const QRect bounds = g_WindowList.WindowInfo.last().bounds.toRect();
    return screenWindow(bounds.x(), bounds.y(), bounds.width(), bounds.height(), true, nullptr);
}
