#include "shell/sessionend.h"

#include "config/xmlstore.h"
#include "shell/grabflow.h"
#include "shell/mainwindow.h"

#include <QApplication>

SessionEnd::SessionEnd(MainWindow &window) : m_window(window), m_signals([this] { endBySignal(); })
{
    // The session manager waits for the answer.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &SessionEnd::commit,
            Qt::DirectConnection);
    qGuiApp->installEventFilter(this);
}

// The pictures stay open: another program may still stop the session's end.
void SessionEnd::commit(QSessionManager &manager)
{
    m_committed = false;
    m_window.grabs().dropHelper();
    m_window.finishPictures();
    if (m_window.HasModified(true) && manager.allowsInteraction()) {
        const bool goesOn = m_window.saveChanges();
        // Not after release(), which tells the session manager that all is well.
        if (!goesOn) {
            manager.cancel();
            return;
        }
        manager.release();
    }
    m_committed = true;
    m_window.saveSettings();
}

// When the session ends the toolkit would close every window, and the window ask a second time.
bool SessionEnd::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Quit || watched != qGuiApp)
        return QObject::eventFilter(watched, event);
    if (!m_committed) {
        m_window.endWhenClosed();
        return QObject::eventFilter(watched, event);
    }
    QCoreApplication::exit(0);
    return true;
}

// Nobody can be asked, and whoever sent the signal does not wait: what has not been saved comes
// back at the next start.
void SessionEnd::endBySignal()
{
    m_window.saveSettings();
    m_window.grabs().quit();
    // Loops that wait for a window end with it.
    for (QWidget *widget : QApplication::topLevelWidgets())
        widget->hide();
    QCoreApplication::exit(0);
}
