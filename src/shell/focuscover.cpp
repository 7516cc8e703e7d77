#include "shell/focuscover.h"

#include "base/clock.h"
#include "base/log.h"
#include "platform/applicationwatch.h"
#include "platform/menubardesktop.h"
#include "platform/services.h"
#include "platform/windowlist.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

// Milliseconds.
constexpr int s_giveBackLimit = 1000;
constexpr int s_bringLimit = 5000;
constexpr int s_requestInterval = 200;
// Looks that must find this program inactive, so that the change has come to rest.
constexpr int s_inactiveLooks = 10;

}  // namespace

void Front::bring(QWidget &window) const
{
    // Whether this program is in front says nothing of its window there, and raising is not heard.
    if (!services().ownWindows->placesWindows()) {
        services().watch->bringToFront(&window);
        return;
    }
    const QPointer<QWidget> target = &window;
    target->raise();
    // A window manager may refuse at first, so the request is made again from time to time.
    qint64 next = m_clock.now();
    const bool isInFront = waitUntil(m_clock, s_bringLimit, [&] {
        if (!target || !target->isVisible() || IsAppActive())
            return true;
        if (m_clock.now() >= next) {
            services().watch->bringToFront(target);
            next = m_clock.now() + s_requestInterval;
        }
        return IsAppActive();
    });
    if (!isInFront)
        qCInfo(logGrab) << "the front could not be got";
}

void Front::giveBack(const std::function<void()> &meanwhile) const
{
    // A compositor that places windows by itself gives the front back by itself, too.
    if (!services().ownWindows->placesWindows())
        return;
    SetPreAppActive();
    int inactive = 0;
    const bool isGiven = waitUntil(m_clock, s_giveBackLimit, [&] {
        QCoreApplication::processEvents();
        meanwhile();
        return !IsAppActive() && ++inactive == s_inactiveLooks;
    });
    if (!isGiven)
        qCInfo(logGrab) << "nobody took the front back";
}

FocusCover::FocusCover()
{
    setStyleSheet(u"QDialog{background-color: rgba(200,200,200,5%);} "
                  "QGraphicsView{background-color: rgba(96,96,255,0%);}"_s);
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setGeometry({});
    services().ownWindows->keepOutOfTaskBar(this);
    g_widgetExcept = this;
}

FocusCover::~FocusCover() { g_widgetExcept = nullptr; }

void FocusCover::appear()
{
    m_menuBar = MenuBarDesktop::menuBarPicture();
    // A window has one pixel at least; a shape that lies outside keeps it off the screen.
    setGeometry(QRect({}, m_menuBar.size().expandedTo({1, 1})));
    if (m_menuBar.isNull())
        setMask(QRegion(-1, -1, 1, 1));
    show();
    SetWindowNoShadown(this);
}

void FocusCover::holdClicks()
{
    if (isVisible())
        windowHandle()->setMouseGrabEnabled(true);
}

void FocusCover::freeClicks()
{
    if (windowHandle())
        windowHandle()->setMouseGrabEnabled(false);
}

void FocusCover::keyPressEvent(QKeyEvent *event)
{
    // Not to the dialog's own handling, which would hide it.
    if (event->key() == Qt::Key_Escape)
        emit escaped();
}

void FocusCover::paintEvent(QPaintEvent * /*event*/) { QPainter(this).drawPixmap(0, 0, m_menuBar); }

void FocusCover::hideEvent(QHideEvent *event)
{
    freeClicks();
    QDialog::hideEvent(event);
}
