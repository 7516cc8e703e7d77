// Windows as a whole: the browser, and the full screen after a countdown.

#include "pattern.h"
#include "platform/x11/x11pictures.h"
#include "platform/x11/x11windowcatalogue.h"
#include "snapworkbench.h"

#include <QTest>

#include <algorithm>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QString s_browser = u"All Windows"_s;

}  // namespace

class TestWindows : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    void browserTakesCoveredWindows()
    {
        const auto check = [this](const char *row, const TestDesktop::Options &options,
                                  const QString &scale) {
            QVERIFY(begin({.row = row,
                           .desktop = options,
                           .settings = {{u"RunMinimized"_s, u"1"_s}},
                           .variables = {{u"QT_SCALE_FACTOR"_s, scale}}}));
            const QRect first(20, 60, 270, 500);
            const QRect second(options.size.width() - 310, 150, 301, 203);
            QVERIFY(m_desktop->startPattern(first, u"First"_s, true));
            QVERIFY(m_desktop->startPattern(second, u"Second"_s));
            QProcess *cover =
                m_desktop->startPattern({{0, 0}, options.size - QSize(3, 3)}, u"Cover"_s);
            QVERIFY(cover);

            // The front one is current; the two behind it are taken.
            QVERIFY(openBrowser());
            m_desktop->key(XK_Right);
            m_desktop->key(XK_Right, {XK_Shift_L});
            m_desktop->key(XK_Return);
            QVERIFY(isTitled(u"First *"_s));
            QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"First *"); }));
            const QImage framed = m_program->saveAs(m_desktop->home() + u"/first.png"_s);

            // What the screen shows of it once nothing lies above, but for the corners.
            cover->terminate();
            QRect frame;
            for (const TestDesktop::Window &window : m_desktop->windows()) {
                if (window.area.size() == framed.size() && window.area.contains(first.center()))
                    frame = window.area;
            }
            QVERIFY(frame.height() > first.height());
            const QRect upright(frame.topLeft() + QPoint(12, 0), frame.size() - QSize(24, 0));
            QVERIFY(waitFor([&] {
                return m_desktop->screenshot().copy(upright) ==
                       framed.copy(upright.translated(-frame.topLeft()));
            }));
            m_desktop->key(XK_w, {XK_Control_L});
            QVERIFY(isTitled(u"Second *"_s));
            QVERIFY(m_program->saveAs(m_desktop->home() + u"/second.png"_s) ==
                    pattern(second.size()));
        };
        check("compositing", {}, u"1"_s);
        check("openbox, scale 2", {.size = {3200, 2000}, .windowManager = s_openbox}, u"2"_s);
    }

    // Where they are asked to stand still; else the desktop goes on.
    void stillPictures()
    {
        TestDesktop desktop({.windowManager = s_openbox});
        QVERIFY(desktop.isReady());
        const QRect area(200, 100, 301, 203);
        QProcess *shown = desktop.startPattern(area);
        QVERIFY(shown);
        X11Display display(desktop.connection());
        X11Pictures pictures(display);
        const auto freeze = [&](Freeze how) {
            QList<bool> answers;
            pictures.freeze(how, [](bool, const QString &) { QFAIL("has been dropped"); });
            pictures.freeze(how, [&](bool areThere, const QString &) { answers.append(areThere); });
            const bool isLater = answers.isEmpty();
            return waitFor([&] { return !answers.isEmpty(); }) && isLater && answers.first();
        };
        QVERIFY(freeze(Freeze::AsUsual) && !pictures.isFrozen());
        QVERIFY(freeze(Freeze::Still) && pictures.isFrozen());
        shown->kill();
        QVERIFY(waitFor([&] { return desktop.screenshot(area) != pattern(area.size()); }));
        QCOMPARE(pictures.ofDesktop(area), pattern(area.size()));
        QCOMPARE(pictures.withoutWindows(area, {1}), pattern(area.size()));
        QCOMPARE(pictures.ofDesktop({-9, -9, 2, 2}).pixel(1, 1), QRgb(0xff000000));
        pictures.thaw();
        QCOMPARE(pictures.ofDesktop(area), desktop.screenshot(area));
    }

    // A panel is the tray where its program has that, by whatever window it is found.
    void tray()
    {
        TestDesktop desktop({.windowManager = {}});
        QVERIFY(desktop.isReady() && desktop.startPattern({200, 100, 301, 203}));
        xcb_connection_t *connection = desktop.connection();
        X11Display display(connection);
        X11WindowCatalogue catalogue(display);
        const auto shown = [&] { return catalogue.windows(WindowCatalogue::List::OnScreen, 0); };
        const auto another = static_cast<xcb_window_t>(shown().constFirst().number);
        const auto make = [&] {
            const xcb_window_t window = xcb_generate_id(connection);
            xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, display.root(), 0, 0, 600,
                              30, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0,
                              nullptr);
            return window;
        };
        const xcb_window_t panel = make();
        const xcb_atom_t dock = display.atom("_NET_WM_WINDOW_TYPE_DOCK");
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, panel,
                            display.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &dock);
        xcb_map_window(connection, panel);
        using enum WindowCatalogue::Kind;
        const auto check = [&](const char *row, xcb_window_t owner, WindowCatalogue::Kind kind,
                               WindowCatalogue::Kind kindOfAnother) {
            xcb_set_selection_owner(connection, owner, display.atom("_NET_SYSTEM_TRAY_S0"),
                                    XCB_CURRENT_TIME);
            QVERIFY2(shown().size() == 2, row);
            for (const WindowCatalogue::Entry &entry : shown()) {
                const bool isPanel = entry.number == static_cast<int>(panel);
                QVERIFY2(entry.kind == (isPanel ? kind : kindOfAnother), row);
            }
        };
        check("none", XCB_NONE, Panel, Other);
        check("of the panel's program", make(), Tray, Other);
        check("another", another, Panel, Tray);
    }

    void countdown()
    {
        const auto check = [this](const char *row, const TestDesktop::Options &options,
                                  const QString &scale) {
            QVERIFY(begin({.row = row,
                           .desktop = options,
                           .settings = {{u"RunMinimized"_s, u"1"_s},
                                        {u"AutoShow"_s, u"0"_s},
                                        {u"ScreenTimer"_s, u"2"_s}},
                           .variables = {{u"QT_SCALE_FACTOR"_s, scale}}}));
            // All of the desktop: without a window manager the program's window can't be minimised.
            QVERIFY(m_desktop->startPattern(s_screen));
            const QImage before = m_desktop->screenshot();
            QVERIFY(openCountdown());
            QVERIFY(waitFor([&] { return m_desktop->screenshot() != before; }));
            QVERIFY(isTitled(u"untitled *"_s) && !hasCountdown());
            if (options.windowManager.isEmpty())
                return;
            QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
            // Brings the program forward; what it grabbed does not show that.
            m_program->call(u"org.freedesktop.Application"_s, u"Activate"_s, {QVariantMap()});
            QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"untitled *"); }));
            QVERIFY(m_program->saveAs(m_desktop->home() + u"/whole.png"_s) == before);
        };
        check("compositing, scale 1.5", {}, u"1.5"_s);
        check("openbox", {.windowManager = s_openbox}, u"1"_s);
        check("no window manager", {.windowManager = {}}, u"1"_s);
    }

    // Whatever is pressed in between, nothing stays behind, and the next grab begins.
    void countdownIsGivenUp()
    {
        QVERIFY(begin({.settings = {{u"ScreenTimer"_s, u"1000"_s}}}));
        QProcess *other = m_desktop->startPattern({100, 100, 500, 400});
        QVERIFY(other);
        // The last press of those in a countdown runs after it, but the countdown's own key.
        QVERIFY(openCountdown());
        for (const xcb_keysym_t letter : {XK_l, XK_r, XK_t})
            hotKey(letter);
        // Another program has the keyboard, and gets every Escape as well.
        m_desktop->click({300, 300});
        QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
        m_desktop->key(XK_Escape);
        QVERIFY(waitFor([&] { return other->readAll().contains("key 16777216"); }));
        QCOMPARE(m_program->grabState(), u"Counting"_s);
        QVERIFY(waitFor([&] {
            m_desktop->key(XK_Escape);
            m_desktop->key(XK_Escape);
            return waitFor([&] { return m_program->grabState() != u"Counting"; }, 500);
        }));
        QVERIFY(m_program->waitForState(u"Marking"_s));
        m_desktop->key(XK_Escape);
        QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));
        // The other program hears keys again.
        QVERIFY(waitFor([&] {
            m_desktop->key(XK_x);
            return waitFor([&] { return other->readAll().contains("key 88"); }, 200);
        }));
    }

    // The window comes to the front after each grab, but not into the next one, which was asked for
    // before the first was over.
    void pressedTwice()
    {
        QVERIFY(begin({.settings = {{u"RunMinimized"_s, u"1"_s}, {u"ScreenTimer"_s, u"1"_s}}}));
        QVERIFY(m_desktop->startPattern({100, 100, 500, 400}));
        const QImage before = m_desktop->screenshot();
        hotKey(XK_t);
        QVERIFY(m_program->waitForState(u"Counting"_s));
        hotKey(XK_s);
        QVERIFY(m_program->waitForTitle(u"untitled 1 * - Snap Workbench"_s));
        QVERIFY(m_program->waitForState(u"Idle"_s));
        QVERIFY(waitFor([&] { return m_desktop->activeTitle() == m_program->mainWindow().title; }));
        QCOMPARE(m_program->saveAs(m_desktop->home() + u"/second.png"_s), before);
    }

    // The second click of a double click comes when the overlay has gone.
    void doubleClickStaysHere()
    {
        QVERIFY(begin({.settings = {{u"RunMinimized"_s, u"1"_s}}}));
        QProcess *other = m_desktop->startPattern(s_screen);
        QVERIFY(other);
        // A loaded machine may be too slow for a double click.
        bool isDouble = false;
        for (int attempt = 0; attempt < 5 && !isDouble; ++attempt) {
            QVERIFY(m_program->openOverlay(s_screen));
            QVERIFY(m_desktop->drag({200, 200}, {700, 500}, [&] {
                return qRed(m_desktop->pixel({600, 400})) > 140;
            }));
            // The button lies right below the marked rectangle's right end.
            const QPoint button(660, 536);
            QVERIFY(waitFor([&] {
                return m_desktop->pixel(button) != m_desktop->pixel({100, 536});
            }));
            m_desktop->click(button);
            QVERIFY(waitFor([&] { return !m_program->hasOverlay(s_screen); }));
            if (m_desktop->isPointerTaken()) {
                m_desktop->click(button);
                isDouble = m_desktop->isPointerTaken();
            }
            QVERIFY(m_program->waitForState(u"Idle"_s));
            m_desktop->key(XK_m, {XK_Control_L});
            QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
        }
        QVERIFY(isDouble);
        // It hears clicks: this one is the first.
        m_desktop->click({50, 60});
        QByteArray heard;
        QVERIFY(waitFor([&] {
            heard += other->readAll();
            return heard.contains("press 50,60");
        }));
        QCOMPARE(heard.count("press"), 1);
    }

private:
    // The countdown has no title but the program's, and is no speck.
    bool hasCountdown()
    {
        return m_desktop
                   ->find([](const TestDesktop::Window &window) {
                       return window.viewable && window.title == u"SnapWorkbench" &&
                              window.area.width() >= 120;
                   })
                   .id != XCB_NONE;
    }
    bool openBrowser()
    {
        const bool isIdle = m_program->waitForState(u"Idle"_s);
        hotKey(XK_l);
        return isIdle && m_program->waitForState(u"Browsing"_s) &&
               waitFor([&] { return m_desktop->activeTitle() == s_browser; });
    }
    bool openCountdown()
    {
        const bool isIdle = m_program->waitForState(u"Idle"_s);
        hotKey(XK_t);
        return isIdle && m_program->waitForState(u"Counting"_s) &&
               waitFor([&] { return hasCountdown(); });
    }
};

QTEST_GUILESS_MAIN(TestWindows)
#include "test_windows.moc"
