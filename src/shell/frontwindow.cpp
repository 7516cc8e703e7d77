#include "shell/frontwindow.h"

#include "base/clock.h"
#include "capture/grab.h"
#include "config/licensing.h"
#include "editing/pictureeditor.h"
#include "platform/applicationwatch.h"
#include "platform/services.h"
#include "shell/capturerefusal.h"
#include "shell/grabcalls.h"
#include "shell/grabdelivery.h"
#include "shell/mainwindow.h"
#include "shell/pins.h"
#include "shell/trayicon.h"

#include <QApplication>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_mostEscapes = 8;   // for menus that have opened from one another
constexpr int s_menuLimit = 200;   // ms, for one to close
constexpr int s_handsLimit = 500;  // ms, for the hot key to be let go

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

// The application that the picture is of, and the title of its window: those that were chosen, or
// what else the picture is called by.
std::pair<QString, QString> originOf(const Grab &grab)
{
    if (!grab.application.isEmpty() || !grab.title.isEmpty())
        return {grab.application, grab.title};
    return grab.name.isEmpty() ? frontBefore(grab) : std::pair(QString(), grab.name);
}

}  // namespace

GrabSituation FrontWindow::situation()
{
    const bool isActive = IsAppActive();
    // A caller over the bus may want some of it otherwise than the preferences say.
    const GrabOrder &order = m_window.calls().order();
    return {.isActive = isActive,
            .active = isActive ? QApplication::activeWindow() : nullptr,
            .isMinimized = m_window.isMinimized() || !m_window.isVisible(),
            .isComposited = services().ownWindows->isComposited(),
            .hideBefore = Preferences::hidesBefore(),
            .showAfter = Preferences::showsAfter(),
            .freezes = Preferences::freezesScreen(),
            .process = services().watch->frontProcess(),
            .window = services().watch->frontWindow(),
            .showsPointer = order.showsPointer.value_or(Preferences::showsPointer()),
            .countdown = Preferences::countdown(),
            .delay = order.delay > 0 ? order.delay : Preferences::delay()};
}

QString FrontWindow::refusal(GrabCommand command) { return captureRefusal(command); }

void FrontWindow::place(Place place)
{
    switch (place) {
    case Place::Minimized:
        if (m_window.isVisible() && !m_window.isMinimized())
            m_departure.begin({&m_window});
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

bool FrontWindow::hidePins()
{
    Pins &pins = m_window.pins();
    if (Preferences::showsPins() || pins.shown().isEmpty())
        return false;
    m_departure.begin(pins.shown());
    pins.leaveScreen();
    return true;
}

void FrontWindow::showPins(bool withKeyboard) { m_window.pins().comeBack(withKeyboard); }

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

void FrontWindow::closeMenus()
{
    Hands &hands = *services().hands;
    int open = hands.openMenus();
    if (open == 0)
        return;
    // Keys that are let go need not be taken from the user's hands.
    waitUntil(m_clock, s_handsLimit, [&hands] { return !hands.isHandBusy(); });
    // Each closes one menu; a submenu that closes leaves the one that it has opened from.
    for (int i = 0; i < s_mostEscapes && open > 0; ++i) {
        hands.pressEscape();
        const int before = open;
        waitUntil(m_clock, s_menuLimit, [&] { return (open = hands.openMenus()) < before; });
    }
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

void FrontWindow::focusOther()
{
    // Other programs draw themselves anew when they come to the front, which is waited for as well.
    m_front.giveBack([this] {
        if (m_departure.isUnderWay())
            m_departure.isOver();
    });
}

void FrontWindow::focusOwn(QWidget *window)
{
    window->activateWindow();
    QCoreApplication::processEvents();
}

void FrontWindow::closing()
{
    if (!m_departure.isUnderWay())
        m_departure.begin({});
}

void FrontWindow::settle() { m_departure.wait(); }

void FrontWindow::holdClicks()
{
    if (!m_cover)
        return;
    m_cover->holdClicks();
    m_clicksHeld = m_clock.now();
}

void FrontWindow::freeClicks()
{
    if (!m_cover)
        return;
    waitUntil(m_clock, QApplication::doubleClickInterval(), [this] {
        return m_clock.now() - m_clicksHeld >= QApplication::doubleClickInterval();
    });
    m_cover->freeClicks();
}

// Cut to its outline.
bool FrontWindow::addDocument(Grab grab, std::optional<GrabGoals> goals)
{
    // Who asks for another place on the way still wants to hear that the picture got there. What a
    // program asks for over the bus goes where it said, and nowhere else.
    const GrabGoals usual = goals.value_or(Preferences::afterGrab());
    const bool isElsewhere = grab.goals && !usual.testFlag(GrabGoal::Caller);
    const GrabGoals wanted = isElsewhere ? *grab.goals | (usual & GrabGoal::Notify) : usual;
    const auto [owner, title] = originOf(grab);
    m_window.skin().load(m_flag, u"BtnFlag"_s, SkinNormal);
    TPictureEditor::EditPolyPixmap(grab.picture, m_flag, Licensing::status().registered,
                                   std::get_if<QPainterPath>(&grab.outline),
                                   std::get_if<QPolygonF>(&grab.outline));
    return m_window.delivery().deliver({.picture = grab.picture,
                                        .name = grab.name,
                                        .origin = {.time = QDateTime::currentDateTime(),
                                                   .kind = grab.kind,
                                                   .application = owner,
                                                   .title = title},
                                        .place = grab.place,
                                        .goals = wanted});
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
