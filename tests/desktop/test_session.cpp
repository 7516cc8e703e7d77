// The program in a session: its icon in the tray, and the session's end.

#include "snapworkbench.h"

#include <QSet>
#include <QTest>

#include <algorithm>
#include <csignal>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

class TestSession : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    // The menu answers the left button as the right one, and its commands work from there. The icon
    // is seen though the skin's picture of it is none.
    void trayIcon()
    {
        QVERIFY(begin({.pictures = {{u"BtnIcon_normal"_s, SnapWorkbench::shippedFile()}}}));
        QVERIFY(startTray());
        const QRect icon = trayIconArea();
        QVERIFY(waitFor([&] {
            const QImage shown = m_desktop->screenshot().copy(icon);
            QSet<QRgb> colours;
            for (int i = 0; i < shown.width(); ++i)
                colours.insert(shown.pixel(i, shown.height() / 2));
            return colours.size() > 5;
        }));
        QVERIFY(openTrayMenu(3).isValid());
        m_desktop->key(XK_Escape);
        QVERIFY(waitFor([&] { return !trayMenuArea().isValid(); }));
        QVERIFY(openTrayMenu(1).isValid());
        for (int item = 0; item < 3; ++item)
            m_desktop->key(XK_Down);
        m_desktop->key(XK_Return);
        QVERIFY(m_program->waitForState(u"Marking"_s));
        for (const QPoint vertex : {QPoint(800, 400), QPoint(900, 600), QPoint(700, 600)})
            m_desktop->click(vertex);
        m_desktop->key(XK_Return);
        QVERIFY(isTitled(u"untitled *"_s));
    }

    // "Show" brings the dialog to the front; "Quit" cancels it, asks about the picture, and quits.
    void trayWithADialog()
    {
        using Keys = QList<std::pair<xcb_keysym_t, xcb_keysym_t>>;  // with their modifiers
        const auto check = [this](const char *row, const Keys &keys, const QString &theme) {
            QVERIFY(begin({.row = row, .variables = {{u"QT_QPA_PLATFORMTHEME"_s, theme}}}));
            QVERIFY(startTray());
            QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()) && grab());
            QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
            const xcb_window_t before = m_desktop->activeWindow();
            for (const auto &[letter, modifier] : keys)
                m_desktop->key(letter, {modifier});
            xcb_window_t dialog = XCB_NONE;
            QVERIFY(waitFor([&] {
                dialog = m_desktop->activeWindow();
                return dialog != XCB_NONE && dialog != before;
            }));
            QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));
            QVERIFY(openTrayMenu(1).isValid());
            m_desktop->key(XK_Up);
            m_desktop->key(XK_Up);
            m_desktop->key(XK_Return);
            QVERIFY(waitFor([&] { return m_desktop->activeWindow() == dialog; }));

            // Another button: two clicks of the same may be one double click.
            const QRect menu = openTrayMenu(3);
            QVERIFY(menu.isValid());
            const QList<TestDesktop::Window> windows = m_desktop->windows();
            m_desktop->click(menu.bottomLeft() + QPoint(40, -12));
            QVERIFY(hasDialog(windows));
            discard();
            QVERIFY(hasEnded());
        };
        check("open a file", {{XK_o, XK_Control_L}}, {});
        check("open a file, GTK's dialog", {{XK_o, XK_Control_L}}, u"gtk3"_s);
        check("colour, GTK's dialog", {{XK_k, XK_Control_L}, {XK_m, XK_Alt_L}}, u"gtk3"_s);
        check("save changes?", {{XK_w, XK_Control_L}}, {});
    }

    // Closing the window leaves the program and what is open, and asks nothing. The first time it
    // is said how to end it.
    void closesToTheTray()
    {
        QVERIFY(begin({.settings = {{u"CloseToTray"_s, u"1"_s}}}));
        QVERIFY(startTray() && grab());
        const auto isShown = [this] { return m_program->mainWindow().viewable; };
        const auto message = [this] {
            const QList<QRect> areas = unmanaged();
            return std::any_of(areas.begin(), areas.end(),
                               [](const QRect &area) { return area.width() > 150; });
        };
        const auto show = [&] {
            QVERIFY(openTrayMenu(1).isValid());
            m_desktop->key(XK_Up);
            m_desktop->key(XK_Up);
            m_desktop->key(XK_Return);
            QVERIFY(waitFor(isShown));
            QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
        };
        QVERIFY(!message());
        m_desktop->closeWindow(m_program->mainWindow());
        QVERIFY(waitFor([&] { return !isShown() && message(); }));
        show();
        QVERIFY(isTitled(u"untitled *"_s));
        const QList<TestDesktop::Window> windows = m_desktop->windows();
        m_desktop->key(XK_q, {XK_Control_L});
        QVERIFY(hasDialog(windows));
        discard();
        QVERIFY(hasEnded());
        // Not a second time.
        QVERIFY(m_program->startAndWait());
        m_desktop->closeWindow(m_program->mainWindow());
        QVERIFY(waitFor([&] { return !isShown(); }) && !message());
    }

    // Whatever waits in a loop of its own then: the program ends, and what was set is there again.
    void signalKeepsSettings()
    {
        const auto check = [this](const char *row, int signal,
                                  const std::function<bool()> &during) {
            QVERIFY(begin({.row = row, .settings = {{u"AutoShow"_s, u"1"_s}}}));
            const QRect area(137, 71, 1003, 701);
            m_desktop->placeWindow(m_program->mainWindow(), area);
            QVERIFY(waitFor([&] { return m_program->mainWindow().area == area; }));
            QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()) && during());
            QCOMPARE(kill(static_cast<pid_t>(m_program->process()->processId()), signal), 0);
            QVERIFY(hasEnded());
            QVERIFY(m_program->setting(u"WindowLeft"_s) == QString::number(area.x()));
            QVERIFY(m_program->setting(u"WindowWidth"_s) == QString::number(area.width()));
        };
        check("the terminal closes", SIGHUP, [] { return true; });
        check("while marking", SIGTERM, [&] { return m_program->openOverlay(s_screen); });
        check("while counting down", SIGTERM, [&] {
            hotKey(XK_t);
            return m_program->waitForState(u"Counting"_s);
        });
        check("while asking", SIGTERM, [&] { return grab() && openDialog(XK_w, {XK_Control_L}); });
    }

    // No grab opens anything, and each one says why in the same words.
    void refusedInAWaylandSession()
    {
        QVERIFY(begin({.variables = {{u"XDG_SESSION_TYPE"_s, u"wayland"_s}}}));
        QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
        const QRect window = m_program->mainWindow().area;
        // The bar, as the foot of the picture area shows it: the only thing there that is dark.
        QImage shown;
        const auto bar = [&] {
            shown = m_desktop->screenshot().copy(
                window.adjusted(20, window.height() * 3 / 4, -20, -88));
            QRect area;
            const bool isPainted = qGray(shown.pixel(0, 0)) > 200;
            for (int y = 0; isPainted && y < shown.height(); ++y) {
                for (int x = 0; x < shown.width(); ++x) {
                    if (qGray(shown.pixel(x, y)) < 60)
                        area |= QRect(x, y, 1, 1);
                }
            }
            return area;
        };
        QVERIFY(waitFor([&] { return !bar().isEmpty(); }));
        const QImage told = shown;
        const QPoint close = window.topLeft() + QPoint(20, window.height() * 3 / 4) +
                             bar().topRight() + QPoint(-24, 24);
        for (const xcb_keysym_t letter : {XK_r, XK_e, XK_a, XK_l, XK_w, XK_s, XK_t, XK_v}) {
            m_desktop->click(close);
            m_desktop->movePointer({5, 5});
            QVERIFY(waitFor([&] { return bar().isEmpty(); }));
            hotKey(letter);
            QVERIFY(waitFor([&] { return !bar().isEmpty() && shown == told; }));
            QCOMPARE(m_program->grabState(), u"Idle"_s);
        }
        QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));  // no tab
    }

private:
    bool startTray()
    {
        return m_desktop->start(
                   u"trayer"_s,
                   u"--edge top --align left --widthtype pixel --width 120 --height 24"_s.split(
                       u' '),
                   m_desktop->environment()) &&
               waitFor([&] { return trayIconArea().isValid(); });
    }
    QRect trayIconArea()
    {
        return m_desktop
            ->find([](const TestDesktop::Window &window) {
                return window.viewable && window.title == u"SnapWorkbench"_s &&
                       window.area.width() > 10 && window.area.height() < 30;
            })
            .area;
    }
    QRect trayMenuArea()
    {
        const QPoint at = trayIconArea().center();
        return m_desktop
            ->find([&](const TestDesktop::Window &window) {
                return window.viewable && window.overrideRedirect && window.area.height() > 100 &&
                       window.area.adjusted(-1, -1, 1, 1).contains(at);
            })
            .area;
    }
    /// Opens the menu by a click; gives its area.
    QRect openTrayMenu(int button)
    {
        if (trayMenuArea().isValid())
            return {};
        // A dialog that is just opening may take the first click for one beside it.
        waitFor([&] {
            m_desktop->click(trayIconArea().center(), button);
            return waitFor([&] { return trayMenuArea().isValid(); }, 3000);
        });
        return trayMenuArea();
    }
};

QTEST_GUILESS_MAIN(TestSession)
#include "test_session.moc"
