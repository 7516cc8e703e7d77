#include "platform/windowlist.h"

#include "platform/desktoppictures.h"
#include "platform/menubardesktop.h"
#include "platform/services.h"

#include <algorithm>
#include <cwchar>

CocoaGrabWindows g_WindowList;
QWidget *g_widgetExcept = nullptr;

namespace {

constexpr qsizetype s_titleCapacity = 256;

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

}  // namespace

int CocoaGrabWindows::GetWindowList(int onScreen, int relativeTo)
{
    using List = WindowCatalogue::List;
    const List which = relativeTo > 0 ? List::AtAndAbove : onScreen ? List::OnScreen : List::All;
    WindowInfo = services().windows->windows(which, relativeTo);
    Count = static_cast<int>(WindowInfo.size());
    return Count;
}

QImage CocoaGrabWindows::GrabWindow(int windowNumber)
{
    Image = services().pictures->ofWindows(std::nullopt, {windowNumber});
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
    const WindowCatalogue::Entry entry = g_WindowList.WindowInfo[index];
    copyName(entry.name, title);
    copyName(entry.owner, owner);
    if (windowNumber)
        *windowNumber = entry.number;
    return g_WindowList.GrabWindow(entry.number);
}

void getScreenGem(int &left, int &top, int &width, int &height)
{
    desktopBox().getRect(&left, &top, &width, &height);
}

void getScreenSize(int &width, int &height)
{
    int left = 0;
    int top = 0;
    getScreenGem(left, top, width, height);
}

int getOneScreen(int x, int y, QRect &rect)
{
    const QList<QRect> screens = services().screens->areas();
    for (qsizetype number = 1; number <= screens.size(); ++number) {
        rect = screenGeometry(screens, number);
        if (rect.contains(x, y))
            return static_cast<int>(number);
    }
    return -1;
}

QImage GrabFullWindow(int x, int y, int width, int height, bool clip, QWidget *except)
{
    const QRect asked(x, y, width, height);
    const QRect area = clip ? fittedToDesktop(asked) : asked;
    g_WindowList.GetWindowList(1, 0);
    return except ? pictureBehind(area, *except) : services().pictures->ofDesktop(area);
}

QPixmap screenWindow(int x, int y, int width, int height, bool clip, QWidget *except)
{
    return QPixmap::fromImage(GrabFullWindow(x, y, width, height, clip, except));
}

QPixmap screenMenu() { return MenuBarDesktop::menuBarPicture(); }
