#include "capture/windowpick.h"

#include "platform/applicationwatch.h"
#include "platform/services.h"
#include "platform/windowlist.h"
#include "ui_windowpick.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <array>

namespace {

constexpr int s_pickInterval = 200;  // ms
constexpr QColor s_tint(0, 0, 0, 100);
constexpr size_t s_nameCapacity = 256;

}  // namespace

mouseShot::mouseShot(QWidget *parent)
    : CaptureOverlay(parent, 0), m_ui(std::make_unique<Ui::mouseShot>())
{
    m_ui->setupUi(this);
    setSurface(m_ui->widget);
    pickLater();
    // The overlay must be shown first, because it has to be the first window in the list.
    show();
    raise();
    readWindows();
    pickWindow();
}

mouseShot::~mouseShot() = default;

void mouseShot::readWindows()
{
    QList<WindowOutlines::Window> windows(GetWindowList(1, 0));
    for (int i = 0; i < windows.size(); ++i) {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        GetWindowGeometry(i, &x, &y, &width, &height);
        windows[i] = {.bounds = {x, y, width, height}, .level = GetWindowLevel(i)};
    }
    m_outlines = WindowOutlines(windows, services().windows->screens(), [](int index) {
        return GrabWindow(index, nullptr, nullptr, nullptr).size();
    });
}

int mouseShot::pickAt(QPoint point) const
{
    const int except = g_widgetExcept ? GetWindowId(g_widgetExcept) : 0;
    return m_outlines.pick(point, m_currentIndex, [except](int index) {
        return g_widgetExcept && getWinid(index) == except;
    });
}

void mouseShot::pickWindow()
{
    const int pick = pickAt(pointer());
    if (pick == m_currentIndex)
        return;
    m_currentIndex = pick;
    updateAll();
}

// Moves the pointer to the next window, in the order front to back, of which something is visible;
// the pick follows the pointer.
void mouseShot::pickBeside(int step)
{
    constexpr int places = 8;  // in each direction
    const auto count = static_cast<int>(m_outlines.rawPolygons().size());
    for (int i = 1; i <= count; ++i) {
        const int pick = (m_currentIndex - 1 + step * i % count + count) % count + 1;
        const QRect box = m_outlines.visible(pick).boundingRect() & area();
        QList<QPoint> points{box.center()};
        for (int place = 0; place < places * places; ++place)
            points.append(box.topLeft() +
                          QPoint(box.width() * (place % places * 2 + 1) / (2 * places),
                                 box.height() * (place / places * 2 + 1) / (2 * places)));
        const auto isShown = [&](QPoint at) { return box.contains(at) && pickAt(at) == pick; };
        const auto found = std::find_if(points.cbegin(), points.cend(), isShown);
        if (pick == m_currentIndex || found == points.cend())
            continue;
        services().windows->movePointer(*found);
        pickWindow();
        looked();
        return;
    }
}

void mouseShot::readAgain()
{
    readWindows();
    m_currentIndex = 0;
    pickWindow();
}

void mouseShot::updateAll() { m_ui->widget->update(); }

std::optional<WindowServer::Entry> mouseShot::picked() const
{
    if (m_currentIndex <= 0 || m_currentIndex >= g_WindowList.WindowInfo.size())
        return std::nullopt;
    return g_WindowList.WindowInfo[m_currentIndex];
}

int mouseShot::indexOf(int number) const
{
    const auto &windows = g_WindowList.WindowInfo;
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [number](const auto &entry) { return entry.number == number; });
    return found == windows.end() ? 0 : static_cast<int>(found - windows.begin());
}

void mouseShot::pick(int number) { m_currentIndex = indexOf(number); }

Grab mouseShot::take()
{
    Grab grab;
    grab.picture = getPixmap(&grab.name);
    return grab;
}

QPixmap mouseShot::getPixmap(QString *name)
{
    if (m_currentIndex <= 0)
        return {};
    std::array<wchar_t, s_nameCapacity> owner{};
    const QImage picture = GrabWindow(m_currentIndex, nullptr, owner.data(), nullptr);
    if (name)
        *name = QString::fromWCharArray(owner.data());
    return QPixmap::fromImage(picture);
}

void mouseShot::pickLater()
{
    services().clock->after(s_pickInterval, this, [this] {
        pickLater();
        pickWindow();
        looked();
    });
}

bool mouseShot::eventFilter(QObject *watched, QEvent *event)
{
    if (isHeldEnd(*event))
        return true;
    if (watched != m_ui->widget)
        return CaptureOverlay::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Paint:
        paintSheet(static_cast<QPaintEvent *>(event)->region(),
                   [this](QPainter &painter) { draw(painter); });
        return true;
    case QEvent::MouseButtonPress: {
        const Qt::MouseButtons buttons = static_cast<QMouseEvent *>(event)->buttons();
        if (buttons & Qt::LeftButton)
            accept();
        else if (buttons & Qt::RightButton)
            reject();
        return true;
    }
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Escape)
            reject();
        else if (key == Qt::Key_Return)
            accept();
        else if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
            pickBeside(key == Qt::Key_Tab ? 1 : -1);
        return true;
    }
    default:
        return CaptureOverlay::eventFilter(watched, event);
    }
}

void mouseShot::draw(QPainter &painter)
{
    const auto window = shown();
    if (!window)
        return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(s_tint);
    const QPolygon tinted =
        m_outlines.visible(indexOf(window->number)).translated(-area().topLeft());
    painter.drawPolygon(tinted, Qt::OddEvenFill);
}
