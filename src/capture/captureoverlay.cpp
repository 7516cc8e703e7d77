#include "capture/captureoverlay.h"

#include "platform/applicationwatch.h"
#include "platform/desktoppictures.h"
#include "platform/keysymbols.h"
#include "platform/services.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QWindow>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_tickInterval = 100;  // ms
// How many ticks long the keyboard is asked for while another client has grabbed it.
constexpr int s_keyboardTries = 20;

QColor black(qreal opacity)
{
    return QColor::fromRgbF(0.0F, 0.0F, 0.0F, static_cast<float>(opacity));
}

// The same press in any layout: letters are commands here, and nothing is typed.
QKeyEvent commandOf(const QKeyEvent &event)
{
    return {event.type(),           commandKey(event),        event.modifiers(),
            event.nativeScanCode(), event.nativeVirtualKey(), event.nativeModifiers(),
            event.text(),           event.isAutoRepeat()};
}

}  // namespace

CaptureOverlay::CaptureOverlay(QWidget *parent, qreal sheetOpacity, Sheet sheet)
    : QDialog(parent), m_area(desktopBox()), m_places(services().ownWindows->panes()),
      m_sheetOpacity(sheetOpacity), m_sheet(sheet)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    // A modal flag that is set after the first show would be too late if another dialog is open,
    // which would then keep the overlay's keys. Without an open dialog it is set in exec(), so that
    // the window's close button works until then.
    setModal(QApplication::activeModalWidget());
    setAttribute(Qt::WA_TranslucentBackground);
    startTicks();
}

void CaptureOverlay::setSurface(QWidget *surface)
{
    for (const PanePlace &place : std::as_const(m_places)) {
        QWidget *window = this;
        QWidget *drawnOn = surface;
        if (!m_panes.isEmpty()) {
            window = drawnOn =
                new QWidget(this, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
            window->setAttribute(Qt::WA_TranslucentBackground);
        }
        drawnOn->setMouseTracking(true);
        // The sheet covers the whole surface, so the background need not be cleared.
        drawnOn->setAttribute(Qt::WA_OpaquePaintEvent);
        drawnOn->installEventFilter(this);
        m_panes.append(Pane(*window, *drawnOn, place, m_area.topLeft()));
        // The form has set a size of its own before, so this comes last.
        services().ownWindows->coverArea(window, place.area);
    }
}

const Pane *CaptureOverlay::paneOf(const QObject *surface) const
{
    const auto found = std::find_if(m_panes.begin(), m_panes.end(), [surface](const Pane &pane) {
        return &pane.surface() == surface;
    });
    return found == m_panes.end() ? nullptr : &*found;
}

bool CaptureOverlay::eventFilter(QObject *watched, QEvent *event)
{
    if (isHeldEnd(*event))
        return true;
    const Pane *pane = paneOf(watched);
    if (!pane)
        return QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::ContextMenu) {
        const auto &menu = *static_cast<QContextMenuEvent *>(event);
        // One pane has the keys of all.
        const bool isKey = menu.reason() == QContextMenuEvent::Keyboard;
        contextMenu(isKey ? paneAt(pointerInOverlay()) : *pane, menu);
        return true;
    }
    // A window manager may close any of the panes; the toolkit closes those that it hides, too.
    if (event->type() == QEvent::Close && isVisible())
        reject();
    if (event->type() == QEvent::KeyPress) {
        QKeyEvent command = commandOf(*static_cast<QKeyEvent *>(event));
        return paneEvent(*pane, &command);
    }
    return paneEvent(*pane, event);
}

// Uses the position in the window, which the surface fills, because the position in the surface is
// rounded to logical pixels.
QPoint CaptureOverlay::placeOf(const Pane &pane, const QMouseEvent &event) const
{
    return pixelAt(m_panes, pane, event.scenePosition());
}

void CaptureOverlay::ShowDetailWindow(EShowMagOpr opr, int x, int y)
{
    emit ShowDetailWindowRequest(this, opr, x, y);
}

// The dialog's loop ends when the window is hidden. For an overlay that can't be shown, or that was
// closed while it was being shown, it would never return.
int CaptureOverlay::exec()
{
    setModal(true);
    show();
    if (!isVisible())
        return Rejected;
    m_waitsToOpen = true;
    tellOpen();
    const int result = QDialog::exec();
    m_waitsToOpen = false;
    // When the program quits, the loop returns with the window still shown and the keyboard still
    // grabbed.
    hide();
    return result;
}

void CaptureOverlay::accept()
{
    if (canBeTaken())
        QDialog::accept();
}

bool CaptureOverlay::isHeldEnd(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(event);
    const bool ends =
        key.key() == Qt::Key_Escape || key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    return ends && key.isAutoRepeat();
}

void CaptureOverlay::changeviewmode() { ShowDetailWindow(eMagChangeMode, 0, 0); }

void CaptureOverlay::setVisible(bool visible)
{
    if (visible == isVisible()) {
        QDialog::setVisible(visible);
    } else if (visible) {
        if (!makeSeeThrough())
            return;
        m_windowBefore = QApplication::activeWindow();
        QDialog::setVisible(true);
        showPanes(true);
        // Both need the visible window: only then can the keyboard be grabbed, and the magnifier
        // must open above it.
        takeKeyboard();
        ShowDetailWindow(eMagOpen, 0, 0);
    } else {
        emit leaves(result() == Accepted);
        ShowDetailWindow(eMagClose, 0, 0);
        giveKeyboardBack();
        // An open menu would stay open without its overlay, and its loop would continue.
        for (QMenu *menu : findChildren<QMenu *>())
            menu->close();
        // A compositor may let it fade, which it can do unseen.
        for (const Pane &pane : std::as_const(m_panes))
            services().ownWindows->moveWindow(&pane.window(), offScreen());
        QDialog::setVisible(false);
        showPanes(false);
        giveFocusBack();
    }
}

// The first one is this dialog.
void CaptureOverlay::showPanes(bool visible)
{
    for (const Pane &pane : std::as_const(m_panes)) {
        if (&pane.window() != this)
            pane.window().setVisible(visible);
    }
}

// The toolkit gives a modal window the focus without the window manager's knowledge. Some window
// managers then report no active window and don't activate another one.
void CaptureOverlay::giveFocusBack()
{
    if (m_windowBefore && m_windowBefore->isVisible() && !m_windowBefore->isMinimized())
        m_windowBefore->activateWindow();
    m_windowBefore.clear();
}

// Whether the desktop shows through the panes, and is the one that pictures are taken of.
bool CaptureOverlay::isLive()
{
    return services().ownWindows->isComposited() && !services().pictures->isFrozen();
}

// Prepares the view of the desktop. Returns false if only the sheet would be visible.
bool CaptureOverlay::makeSeeThrough()
{
    for (Pane &pane : m_panes) {
        QPixmap dimmed;
        if (!isLive()) {
            dimmed = QPixmap::fromImage(
                services().pictures->ofDesktop(pane.pixels().translated(m_area.topLeft())));
            if (dimmed.isNull())
                return false;
            if (m_sheet != Sheet::Around)
                QPainter(&dimmed).fillRect(dimmed.rect(), black(m_sheetOpacity));
        }
        pane.setPicture(dimmed);
    }
    return true;
}

// The overlay was made for the desktop at the time when it opened. If the compositor ends, the
// sheet becomes opaque, and the desktop behind it can't be captured any more.
bool CaptureOverlay::fitsDesktop() const
{
    return m_places == services().ownWindows->panes() &&
           (!m_panes.constFirst().picture().isNull() || isLive());
}

// The window is override-redirect, so no window manager gives it the focus.
void CaptureOverlay::takeKeyboard()
{
    QWidget &surface = m_panes.constFirst().surface();
    if (QWidget::keyboardGrabber() != &surface) {
        surface.grabKeyboard();
        m_keyboardTries = s_keyboardTries;
    }
    --m_keyboardTries;
    // Where windows can't be placed the compositor gives the keys to the window with the focus, and
    // nobody can grab them.
    const bool hasFocus = QApplication::activeWindow() && !services().ownWindows->placesWindows();
    if (hasFocus || windowHandle()->setKeyboardGrabEnabled(true))
        m_keyboardTries = 0;
}

void CaptureOverlay::tellOpen()
{
    if (m_keyboardTries <= 0 && std::exchange(m_waitsToOpen, false))
        emit opened();
}

void CaptureOverlay::giveKeyboardBack()
{
    m_keyboardTries = 0;
    if (!m_panes.isEmpty() && QWidget::keyboardGrabber() == &m_panes.constFirst().surface())
        m_panes.constFirst().surface().releaseKeyboard();
}

void CaptureOverlay::runMenu(const Pane &pane, const QContextMenuEvent &event,
                             const MenuEntry &finish, const QList<MenuEntry> &own,
                             const QList<MenuEntry> &more)
{
    QMenu menu(&pane.window());
    const auto add = [&](const MenuEntry &entry) {
        QAction *action = menu.addAction(entry.text);
        action->setShortcut(entry.shortcut);
        action->setShortcutVisibleInContextMenu(true);
        action->setEnabled(entry.enabled);
        connect(action, &QAction::triggered, this, entry.run);
    };
    add({.text = tr("Dismiss this menu "), .run = [&menu] { menu.close(); }});
    menu.addSeparator();
    add(finish);
    add({.text = tr("Abort(Esc)"), .shortcut = u"ESC"_s, .run = [this] { reject(); }});
    for (const MenuEntry &entry : own)
        add(entry);
    menu.addSeparator();
    add({.text = tr("Change magnifier view mode"), .shortcut = u"Ctrl+E"_s, .run = [this] {
             changeviewmode();
         }});
    menu.addSeparator();
    for (const MenuEntry &entry : more)
        add(entry);
    // The toolkit sends keys to a keyboard grabber before it looks for an open menu.
    giveKeyboardBack();
    const bool isElsewhere = event.reason() == QContextMenuEvent::Keyboard && m_panes.size() > 1;
    menu.exec(isElsewhere ? QCursor::pos() : event.globalPos());
    if (isVisible())
        takeKeyboard();
}

void CaptureOverlay::stopTicks() { m_ticks.removeAll(m_newestTicks); }

void CaptureOverlay::startTicks()
{
    m_ticks.append(++m_newestTicks);
    tickLater(m_newestTicks);
}

void CaptureOverlay::tickLater(int ticks)
{
    services().clock->after(s_tickInterval, this, [this, ticks] {
        if (!m_ticks.contains(ticks))
            return;
        tickLater(ticks);
        passTick();
    });
}

void CaptureOverlay::passTick()
{
    if (finished || !isVisible())
        return;
    if (!fitsDesktop()) {
        reject();
        return;
    }
    // An open menu has the keyboard and must not be covered.
    const bool menuIsOpen = QApplication::activePopupWidget();
    if (!IsAppActive() && !menuIsOpen && services().ownWindows->placesWindows())
        stayOnTop();
    if (m_keyboardTries > 0 && !menuIsOpen)
        takeKeyboard();
    tellOpen();
    tick();
}

void CaptureOverlay::stayOnTop()
{
    // The compositor or its user may have made a pane smaller.
    if (!services().ownWindows->placesWindows()) {
        for (const Pane &pane : std::as_const(m_panes))
            pane.window().setWindowState(Qt::WindowFullScreen);
        return;
    }
    raise();
    // The magnifier must stay above its overlay.
    for (QWidget *child : findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (child->isWindow() && child->isVisible())
            child->raise();
    }
}

QTransform CaptureOverlay::toPicture(const QPixmap &picture, QSize marked)
{
    if (picture.isNull() || marked.isEmpty())
        return {};
    return QTransform::fromScale(qreal(picture.width()) / marked.width(),
                                 qreal(picture.height()) / marked.height());
}

QPoint CaptureOverlay::pointer() const { return services().hands->pointer(); }

void CaptureOverlay::updatePixels(const QRegion &pixels)
{
    // Of the surfaces one has to get a paint event.
    m_panes.constFirst().surface().update(0, 0, 1, 1);
    for (const Pane &pane : std::as_const(m_panes))
        pane.update(pixels);
}

void CaptureOverlay::updateAll()
{
    for (const Pane &pane : std::as_const(m_panes))
        pane.surface().update();
}

void CaptureOverlay::paintSheet(const Pane &pane, const QRegion &exposed, const QRect &drawn,
                                const std::function<void(QPainter &)> &draw)
{
    QPainter painter;
    pane.begin(painter);
    if (m_sheet == Sheet::Around) {
        paintAround(painter, pane, exposed);
        painter.setRenderHint(QPainter::Antialiasing);
        draw(painter);
        return;
    }
    const bool isLive = pane.picture().isNull();
    for (const QRect &logical : exposed) {
        const QRect pixels = pane.pixelsAround(logical);
        if (isLive && hasSheet()) {
            paintLive(painter, pixels, drawn, draw);
            continue;
        }
        if (isLive || !pane.pixels().contains(pixels)) {
            painter.setCompositionMode(QPainter::CompositionMode_Source);
            painter.fillRect(pixels, isLive ? Qt::transparent : Qt::black);
            painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        }
        const QRect part = isLive ? QRect() : pane.inPicture(pixels);
        if (part.isEmpty())
            continue;
        painter.save();
        pane.usePicture(painter);
        painter.drawPixmap(part, pane.picture(), part);
        const QRect touched = drawn.isEmpty() ? QRect() : part & pane.inPicture(drawn);
        if (hasSheet() && !touched.isEmpty())
            addSheet(painter, pane, touched, draw);
        painter.restore();
    }
    if (hasSheet())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
}

// What a window of the sheet's opacity would show, but for its child widgets, which stay opaque.
void CaptureOverlay::paintLive(QPainter &painter, const QRect &pixels, const QRect &drawn,
                               const std::function<void(QPainter &)> &draw) const
{
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(pixels, black(m_sheetOpacity));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const QRect touched = pixels & drawn;
    if (touched.isEmpty())
        return;
    QImage sheet(touched.size(), QImage::Format_ARGB32_Premultiplied);
    sheet.fill(Qt::black);
    QPainter sheetPainter(&sheet);
    sheetPainter.setRenderHint(QPainter::Antialiasing);
    sheetPainter.translate(-touched.topLeft());
    draw(sheetPainter);
    sheetPainter.resetTransform();
    sheetPainter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    sheetPainter.fillRect(sheet.rect(), black(m_sheetOpacity));
    sheetPainter.end();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(touched.topLeft(), sheet);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

// The sheet is painted here, and not by the window's opacity, which would be that of all of it.
void CaptureOverlay::paintAround(QPainter &painter, const Pane &pane, const QRegion &exposed) const
{
    const QPainterPath hole = marked();
    const QTransform inPixels = painter.worldTransform();
    for (const QRect &logical : exposed) {
        // Exactly this: what is translucent must not be painted twice.
        painter.save();
        painter.resetTransform();
        painter.setClipRect(logical);
        painter.setWorldTransform(inPixels);
        const QRect pixels = pane.pixelsAround(logical).adjusted(-1, -1, 1, 1);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(pixels, pane.picture().isNull() ? Qt::transparent : Qt::black);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        if (const QRect part = pane.inPicture(pixels); !part.isEmpty()) {
            pane.usePicture(painter);
            painter.drawPixmap(part, pane.picture(), part);
            painter.setWorldTransform(inPixels);
        }
        QPainterPath sheet;
        sheet.addRect(pixels);
        sheet.addPath(hole);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(sheet, black(m_sheetOpacity));
        painter.restore();
    }
}

// Adds what a compositor would add to the dimmed desktop: the complete sheet multiplied by its
// opacity. The painter's own opacity can't be used, because it would apply to sums that are already
// limited to white. `part` is in the pane's picture.
void CaptureOverlay::addSheet(QPainter &painter, const Pane &pane, const QRect &part,
                              const std::function<void(QPainter &)> &draw) const
{
    QImage sheet(part.size(), QImage::Format_ARGB32_Premultiplied);
    sheet.fill(Qt::transparent);
    QPainter sheetPainter(&sheet);
    sheetPainter.setRenderHint(QPainter::Antialiasing);
    sheetPainter.translate(-part.topLeft());
    sheetPainter.scale(pane.ratio(), pane.ratio());
    sheetPainter.translate(-pane.pixels().topLeft());
    draw(sheetPainter);
    sheetPainter.resetTransform();
    sheetPainter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    sheetPainter.fillRect(sheet.rect(), black(m_sheetOpacity));
    sheetPainter.end();
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.drawImage(part.topLeft(), sheet);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}
