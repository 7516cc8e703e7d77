#include "shell/windowframe.h"

#include "base/palette.h"
#include "config/settings.h"
#include "platform/services.h"
#include "shell/skin.h"
#include "shell/windowreach.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_smallestSize(950, 650);
constexpr int s_farthest = 32767;  // where a window system can put a window
constexpr int s_grip = 11;         // pixels at the corner that resizes

QRect availableGeometry() { return QGuiApplication::primaryScreen()->availableGeometry(); }

// The primary screen's first.
QList<QRect> screenAreas()
{
    QList<QRect> areas{availableGeometry()};
    for (const QScreen *screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

}  // namespace

WindowFrame::WindowFrame(QWidget &window, Skin &skin)
    : QObject(&window), m_window(window), m_skin(skin),
      m_placesWindows(services().ownWindows->placesWindows()),
      m_isComposited(services().ownWindows->isComposited())
{
    services().ownWindows->setCompositingHandler([this] { followCompositor(); });
    // After the toolkit and the window manager have moved what they move themselves.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &WindowFrame::comeWithinReach,
            Qt::QueuedConnection);
    for (QScreen *screen : QGuiApplication::screens())
        follow(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &WindowFrame::follow);
}

WindowFrame::~WindowFrame() { services().ownWindows->setCompositingHandler(nullptr); }

void WindowFrame::follow(QScreen *screen)
{
    connect(screen, &QScreen::availableGeometryChanged, this, &WindowFrame::comeWithinReach,
            Qt::QueuedConnection);
}

void WindowFrame::showStored()
{
    holdToScreen();
    // The exact text counts here, and not the number.
    const bool isMaximized = GetConfigString(u"WindowMaxed"_s) == u"1";
    // A desktop that maximises the window gives it the size from before back afterwards.
    if (!isMaximized || !m_placesWindows)
        showNormal();
    if (isMaximized)
        showMaximized();
}

void WindowFrame::holdToScreen()
{
    m_window.setMinimumSize(s_smallestSize.boundedTo(m_window.screen()->availableSize()));
}

void WindowFrame::showNormal()
{
    const QRect available = availableGeometry();
    const int width = GetConfigNumber(u"WindowWidth"_s, s_smallestSize.width(), 1, s_farthest);
    const int height = GetConfigNumber(u"WindowHeight"_s, s_smallestSize.height(), 1, s_farthest);
    if (!m_placesWindows) {
        m_window.setWindowState(m_window.windowState() & ~Qt::WindowMaximized);
        m_window.resize(QSize(width, height).boundedTo(available.size()));
        return;
    }
    const int left =
        GetConfigNumber(u"WindowLeft"_s, (available.width() - width) / 2, -s_farthest, s_farthest);
    const int top =
        GetConfigNumber(u"WindowTop"_s, (available.height() - height) / 2, -s_farthest, s_farthest);
    m_window.setGeometry(withinReach(
        {left, top, std::min(width, available.width()), std::min(height, available.height())},
        screenAreas()));
}

// A window that stood on a monitor that is gone comes to one that is there, and one whose monitor
// has become smaller becomes smaller with it.
void WindowFrame::comeWithinReach()
{
    holdToScreen();
    if (!m_placesWindows)
        return;
    const QScreen &screen = *m_window.screen();
    QRect area(m_window.geometry().topLeft(),
               m_window.size().boundedTo(screen.availableVirtualSize()));
    area = area == m_window.geometry() ? withinReach(area, screenAreas())
                                       : movedInto(area, screen.availableGeometry());
    if (area != m_window.geometry())
        m_window.setGeometry(area);
}

void WindowFrame::showMaximized()
{
    if (m_placesWindows)
        m_window.setGeometry(availableGeometry());
    else
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);
}

bool WindowFrame::isMaximized() const
{
    return m_placesWindows ? m_window.size() == availableGeometry().size() : m_window.isMaximized();
}

void WindowFrame::storeNormal()
{
    if (m_placesWindows) {
        SetConfigString(u"WindowLeft"_s, QString::number(m_window.geometry().x()));
        SetConfigString(u"WindowTop"_s, QString::number(m_window.geometry().y()));
    }
    SetConfigString(u"WindowWidth"_s, QString::number(m_window.width()));
    SetConfigString(u"WindowHeight"_s, QString::number(m_window.height()));
}

void WindowFrame::store()
{
    const bool maximized = isMaximized();
    SetConfigString(u"WindowMaxed"_s, maximized ? u"1"_s : u"0"_s);
    if (!maximized)
        storeNormal();
}

void WindowFrame::press(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton)
        return;
    const QPoint pos = event.position().toPoint();
    const bool inGrip =
        pos.x() > m_window.width() - 1 - s_grip && pos.y() > m_window.height() - 1 - s_grip;
    const Drag drag = inGrip ? Drag::Resize : Drag::Move;
    if (!m_placesWindows && desktopTakesOver(drag))
        return;
    m_drag = drag;
    m_dragPos = pos;
    m_dragSize = m_window.size();
}

// Only a desktop that places windows itself is asked: a window manager takes over late, and where
// the button was let go meanwhile some keep the window at the pointer until the next click.
bool WindowFrame::desktopTakesOver(Drag drag)
{
    QWindow &window = *m_window.windowHandle();
    return drag == Drag::Resize ? window.startSystemResize(Qt::BottomEdge | Qt::RightEdge)
                                : window.startSystemMove();
}

void WindowFrame::move(const QMouseEvent &event)
{
    if (m_drag == Drag::Move) {
        // From the pointer's place on the desktop: its place in the window lags behind the
        // window's own moves, and counting from that would overshoot.
        const QPoint origin = event.globalPosition().toPoint() - m_dragPos;
        m_window.move(m_window.pos() + origin - m_window.geometry().topLeft());
    } else if (m_drag == Drag::Resize) {
        // From the size at the press: the window manager's answers come later than the moves,
        // and differences added up would lose some.
        const QPoint moved = event.position().toPoint() - m_dragPos;
        m_window.resize(m_dragSize + QSize(moved.x(), moved.y()));
    }
}

// What the pictures of the corners leave of the window; what is more than half there stays.
QRegion WindowFrame::cornerRegion()
{
    const Skin::Ground &ground = Skin::body();
    QRegion shape(m_window.rect());
    const auto cut = [&](SkinAttribute attribute, bool right, bool bottom) {
        const QPixmap &corner = m_skin.picture(ground.section, attribute);
        const QPoint place(right ? m_window.width() - corner.width() : 0,
                           bottom ? m_window.height() - corner.height() : 0);
        if (!corner.hasAlphaChannel())
            return;
        const QBitmap solid = QBitmap::fromImage(
            corner.toImage().createAlphaMask(Qt::MonoOnly | Qt::ThresholdDither));
        shape -= QRegion(QRect(place, corner.size())) - QRegion(solid).translated(place);
    };
    cut(ground.topLeft, false, false);
    cut(ground.topRight, true, false);
    cut(ground.bottomLeft, false, true);
    cut(ground.bottomRight, true, true);
    return shape;
}

// Where no compositor lets the desktop show through. A maximised window has corners that fill the
// screen's.
void WindowFrame::cutCorners()
{
    if (m_isComposited || isMaximized())
        m_window.clearMask();
    else
        m_window.setMask(cornerRegion());
}

void WindowFrame::followCompositor()
{
    m_isComposited = services().ownWindows->isComposited();
    cutCorners();
    m_window.update();
}

void WindowFrame::paint()
{
    const Skin::Ground &ground = Skin::body();
    const QPixmap &topLeft = m_skin.picture(ground.section, ground.topLeft);
    const QPixmap &topRight = m_skin.picture(ground.section, ground.topRight);
    const QPixmap &bottomLeft = m_skin.picture(ground.section, ground.bottomLeft);
    const QPixmap &bottomRight = m_skin.picture(ground.section, ground.bottomRight);
    const int w = m_window.width();
    const int h = m_window.height();
    QPainter painter(&m_window);
    // One picture's width serves all four corners, and without it the body stays bare.
    const int c = topLeft.width();
    if (c > 0 && m_isComposited && !isMaximized()) {
        painter.fillRect(QRect(c, 0, w - 2 * c, h), Palette::dark);
        painter.fillRect(QRect(0, c, c, h - 2 * c), Palette::dark);
        painter.fillRect(QRect(w - c, c, c, h - 2 * c), Palette::dark);
    } else if (c > 0) {
        // Corners that are cut need the body behind their soft edges.
        painter.fillRect(m_window.rect(), Palette::dark);
    } else if (!m_isComposited) {
        painter.fillRect(m_window.rect(), m_window.palette().window());
    }
    drawIfThere(painter, {0, 0}, topLeft);
    drawIfThere(painter, {w - topRight.width(), 0}, topRight);
    drawIfThere(painter, {0, h - bottomLeft.height()}, bottomLeft);
    drawIfThere(painter, {w - bottomRight.width(), h - bottomRight.height()}, bottomRight);
}
