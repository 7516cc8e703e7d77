#include "shell/frontwindow.h"

#include "capture/grab.h"
#include "platform/applicationwatch.h"
#include "platform/services.h"
#include "shell/capturerefusal.h"
#include "shell/mainwindow.h"

#include <QApplication>

#include <utility>

namespace {

void unminimize(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
}

}  // namespace

GrabSituation FrontWindow::situation()
{
    const bool isActive = IsAppActive();
    return {.isActive = isActive,
            .active = isActive ? QApplication::activeWindow() : nullptr,
            .isMinimized = m_window.isMinimized(),
            .isComposited = services().windows->isComposited(),
            .hideBefore = MainWindow::GetHideFromXML(),
            .showAfter = MainWindow::GetShowFromXML(),
            .process = services().watch->frontProcess(),
            .countdown = MainWindow::GetScreenTimerFromXML(),
            .refusal = captureRefusal()};
}

void FrontWindow::place(Place place)
{
    switch (place) {
    case Place::Minimized:
        m_window.showMinimized();
        break;
    case Place::Restored:
        m_window.showNormal();
        break;
    case Place::Behind:
        m_window.lower();
        break;
    case Place::InFront:
        m_window.showInFront();
        m_window.activateWindow();
        break;
    }
}

void FrontWindow::hideAll(bool hide)
{
    if (!hide) {
        if (std::exchange(m_isMinimizedForHelper, false) && m_window.isMinimized())
            unminimize(m_window);
        for (const QPointer<QWidget> &dialog : std::exchange(m_hiddenDialogs, {})) {
            if (dialog && dialog->isVisible())
                services().windows->setOnScreen(dialog, true);
        }
        return;
    }
    for (QWidget *window : QApplication::topLevelWidgets()) {
        const bool isDialog = qobject_cast<QDialog *>(window) && window != m_cover.get();
        if (!isDialog || !window->isVisible())
            continue;
        m_hiddenDialogs.append(window);
        services().windows->setOnScreen(window, false);
    }
    m_isMinimizedForHelper = !m_window.isMinimized();
    if (m_isMinimizedForHelper)
        m_window.showMinimized();
}

void FrontWindow::close()
{
    QMetaObject::invokeMethod(&m_window, &MainWindow::quit, Qt::QueuedConnection);
}

void FrontWindow::takeFocus()
{
    QCoreApplication::processEvents();
    if (!m_cover) {
        m_cover = std::make_unique<FocusCover>();
        connect(m_cover.get(), &FocusCover::escaped, this, &FrontWindow::escaped);
    }
    m_cover->appear();
    m_front.bring(*m_cover);
    m_cover->activateWindow();
}

// A window that is not shown can't be brought to the front.
void FrontWindow::regainFocus()
{
    if (m_cover && m_cover->isVisible())
        m_front.bring(*m_cover);
}

void FrontWindow::dropFocus(bool giveBack)
{
    if (giveBack)
        m_front.giveBack();
    if (m_cover)
        m_cover->hide();
}

void FrontWindow::focusOther() { m_front.giveBack(); }

void FrontWindow::focusOwn(QWidget *window)
{
    window->activateWindow();
    QCoreApplication::processEvents();
}

void FrontWindow::settle() { m_front.settle(); }

void FrontWindow::freeClicks()
{
    if (m_cover)
        m_cover->freeClicks();
}

void FrontWindow::addDocument(Grab grab) { m_window.addGrab(std::move(grab)); }

void FrontWindow::say(const QString &text) { m_window.say(text); }
