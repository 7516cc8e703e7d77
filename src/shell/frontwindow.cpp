#include "shell/frontwindow.h"

#include "capture/grab.h"
#include "config/licensing.h"
#include "editing/pictureeditor.h"
#include "platform/applicationwatch.h"
#include "platform/services.h"
#include "shell/capturerefusal.h"
#include "shell/mainwindow.h"
#include "shell/trayicon.h"
#include "shell/workbench.h"

#include <QApplication>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

void unminimize(QWidget &window)
{
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
}

// A compositor may ignore that a window wants to be minimised, and doesn't tell when it is.
bool canMinimize() { return services().ownWindows->placesWindows(); }

// The application that was in front before a grab, and the title of its window.
std::pair<QString, QString> frontBefore(const Grab &grab)
{
    const auto entries = services().windows->windows(WindowCatalogue::List::OnScreen, 0);
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const WindowCatalogue::Entry &entry) {
            return grab.process != 0 && entry.process == grab.process && entry.layer == 0;
        });
    return found == entries.end() ? std::pair<QString, QString>()
                                  : std::pair(found->owner, found->name);
}

}  // namespace

GrabSituation FrontWindow::situation()
{
    const bool isActive = IsAppActive();
    return {.isActive = isActive,
            .active = isActive ? QApplication::activeWindow() : nullptr,
            .isMinimized = m_window.isMinimized() || !m_window.isVisible(),
            .isComposited = services().ownWindows->isComposited(),
            .hideBefore = Preferences::hidesBefore(),
            .showAfter = Preferences::showsAfter(),
            .process = services().watch->frontProcess(),
            .countdown = Preferences::countdown()};
}

QString FrontWindow::refusal(GrabCommand command) { return captureRefusal(command); }

void FrontWindow::place(Place place)
{
    switch (place) {
    case Place::Minimized:
        if (canMinimize())
            m_window.showMinimized();
        else
            hideWindows(true);
        break;
    case Place::Restored:
        if (canMinimize())
            m_window.showNormal();
        else
            hideWindows(false);
        break;
    case Place::Behind:
        m_window.lower();
        break;
    case Place::InFront:
        hideWindows(false);
        m_window.showInFront();
        m_window.activateWindow();
        if (!canMinimize())
            services().watch->bringToFront(&m_window);
        break;
    }
}

// The main window and its dialogs, which a window manager would minimise with it.
void FrontWindow::hideWindows(bool hide)
{
    if (hide == m_isHidden || (hide && !m_window.isVisible()))
        return;
    m_isHidden = hide;
    m_window.setVisible(!hide);
    hideDialogs(hide);
}

void FrontWindow::hideDialogs(bool hide)
{
    if (!hide) {
        for (const QPointer<QWidget> &dialog : std::exchange(m_hiddenDialogs, {})) {
            if (dialog && dialog->isVisible())
                services().ownWindows->setOnScreen(dialog, true);
        }
        return;
    }
    for (QWidget *window : QApplication::topLevelWidgets()) {
        const bool isDialog = qobject_cast<QDialog *>(window) && window != m_cover.get();
        if (!isDialog || !window->isVisible())
            continue;
        m_hiddenDialogs.append(window);
        services().ownWindows->setOnScreen(window, false);
    }
}

void FrontWindow::hideAll(bool hide)
{
    if (!canMinimize()) {
        hideWindows(hide);
        return;
    }
    if (!hide) {
        if (std::exchange(m_isMinimizedForHelper, false) && m_window.isMinimized())
            unminimize(m_window);
        hideDialogs(false);
        return;
    }
    hideDialogs(true);
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
    // Where every window is shown whole, an overlay has to get the focus by itself.
    if (!services().ownWindows->placesWindows())
        return;
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

// Cut to its outline. A grab that has a name is of a window that was chosen, and not of the one in
// front.
void FrontWindow::addDocument(Grab grab)
{
    const auto [owner, title] =
        grab.name.isEmpty() ? frontBefore(grab) : std::pair(QString(), grab.name);
    m_window.skin().load(m_flag, u"BtnFlag"_s, SkinNormal);
    TPictureEditor::EditPolyPixmap(grab.picture, m_flag, Licensing::status().registered,
                                   std::get_if<QPainterPath>(&grab.outline),
                                   std::get_if<QPolygonF>(&grab.outline));
    m_window.work().add(grab.picture, grab.name,
                        {.time = QDateTime::currentDateTime(),
                         .kind = grab.kind,
                         .application = owner,
                         .title = title});
}

// Where a refusal is why, the user may think better of it.
void FrontWindow::say(const QString &text)
{
    if (!services().pictures->canAskAgain()) {
        m_window.say(text);
        return;
    }
    m_window.say(text, {{tr("&Ask Again"), [this] {
                             services().pictures->askAgain([this] { m_window.grabs().repeat(); });
                         }}});
}

void FrontWindow::tellProgress(const QString &text) { m_window.tray().setTip(text); }
