#include "capture/windowpick.h"

#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "platform/windowlist.h"
#include "ui_windowpick.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

constexpr int s_pickInterval = 200;  // ms
constexpr QColor s_tint(0, 0, 0, 100);
constexpr qreal s_lineWidth = 1.5;  // of the light and of the dark line, in logical pixels

QRect truncated(const QRectF &bounds)
{
    return {static_cast<int>(bounds.x()), static_cast<int>(bounds.y()),
            static_cast<int>(bounds.width()), static_cast<int>(bounds.height())};
}

// Without the pixels that are so near to its edge. The polygon of a window can't be drawn as a
// line: where another one lies in front of its middle it has a seam.
QRegion shrunk(const QRegion &region, int by)
{
    return region & region.translated(by, by) & region.translated(by, -by) &
           region.translated(-by, by) & region.translated(-by, -by);
}

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
    OwnWindows &own = *services().ownWindows;
    m_windows = services().windows->windows(WindowCatalogue::List::OnScreen, 0);
    // The list begins with the overlay, which is one window to it. One that was read before the
    // overlay was there has none.
    if (!services().pictures->isLive())
        m_windows.prepend({.bounds = area()});
    for (const Pane &pane : panes()) {
        const int number = own.numberOf(&pane.window());
        if (&pane.window() != this && number != 0)
            m_windows.removeIf([number](const auto &entry) { return entry.number == number; });
    }
    QList<WindowOutlines::Window> windows;
    for (const WindowCatalogue::Entry &entry : std::as_const(m_windows))
        windows.append({.bounds = truncated(entry.bounds), .level = entry.layer});
    m_outlines = WindowOutlines(windows, services().screens->areas(), [this](int index) {
        return services().pictures->ofWindows(std::nullopt, {m_windows.at(index).number}).size();
    });
}

int mouseShot::pickAt(QPoint point) const
{
    const int except = services().ownWindows->numberOf(g_widgetExcept);
    return m_outlines.pick(point, [this, except](int index) {
        const WindowCatalogue::Entry window = m_windows.value(index);
        return window.isDesktop() || (g_widgetExcept && window.number == except);
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
        services().hands->movePointer(*found);
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

std::optional<WindowCatalogue::Entry> mouseShot::picked() const
{
    if (m_currentIndex <= 0 || m_currentIndex >= m_windows.size())
        return std::nullopt;
    return m_windows.at(m_currentIndex);
}

int mouseShot::indexOf(int number) const
{
    const auto found = std::find_if(m_windows.begin(), m_windows.end(),
                                    [number](const auto &entry) { return entry.number == number; });
    return found == m_windows.end() ? 0 : static_cast<int>(found - m_windows.begin());
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
    const auto window = picked();
    if (!window)
        return {};
    if (name)
        *name = window->shownOwner();
    return windowPicture(*window);
}

void mouseShot::pickLater()
{
    services().clock->after(s_pickInterval, this, [this] {
        pickLater();
        pickWindow();
        looked();
    });
}

bool mouseShot::paneEvent(const Pane &pane, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Paint:
        paintSheet(pane, static_cast<QPaintEvent *>(event)->region(), area(),
                   [this, &pane](QPainter &painter) { draw(painter, pane); });
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
        return false;
    }
}

void mouseShot::draw(QPainter &painter, const Pane &pane)
{
    const auto window = shown();
    if (!window)
        return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(s_tint);
    const QPolygon tinted =
        m_outlines.visible(indexOf(window->number)).translated(-area().topLeft());
    painter.drawPolygon(tinted, Qt::OddEvenFill);
    // The tint alone can't be seen on a dark window.
    QRegion rest(tinted, Qt::OddEvenFill);
    for (const Qt::GlobalColor color : {Qt::white, Qt::black}) {
        const QRegion inside = shrunk(rest, qRound(s_lineWidth * pane.scale()));
        for (const QRect &rect : rest - inside)
            painter.fillRect(rect, color);
        rest = inside;
    }
}
