// The main job on real desktops: hot key, rectangle, picture, file; which keys are heard, and who
// comes forward.

#include "pattern.h"
#include "platform/x11/x11hotkeys.h"
#include "platform/x11/x11pictures.h"
#include "snapworkbench.h"

#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <csignal>

#include <X11/keysym.h>
#include <xcb/xtest.h>

using namespace Qt::StringLiterals;

namespace {

const QRect s_patternArea(203, 151, 701, 503);

// Keys by their place on a US keyboard.
constexpr uint8_t s_keyO = 32;
constexpr uint8_t s_keyR = 27;
constexpr uint8_t s_keyS = 39;
constexpr uint8_t s_keyMenu = 135;
constexpr uint8_t s_keyCtrl = 37;
constexpr uint8_t s_keyAlt = 64;
constexpr uint8_t s_keyAltRight = 108;

}  // namespace

class TestGrab : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    void rectangle()
    {
        using Options = TestDesktop::Options;
        const auto check = [this](const char *row, const Options &options, const Values &variables,
                                  const QRect &area = s_patternArea,
                                  const QList<QRect> &panes = {}) {
            QVERIFY(
                begin({.row = row,
                       .desktop = options,
                       .settings = {{u"RunMinimized"_s, u"1"_s},
                                    {u"AutoShow"_s, u"1"_s},
                                    {u"ShowMagnification"_s, u"0"_s},
                                    {u"OverlayPanes"_s, panes.isEmpty() ? u""_s : u"screens"_s}},
                       .variables = variables}));
            QVERIFY(m_desktop->startPattern(area));
            const QImage expected = pattern(area.size());
            const auto lit = [&](QPoint at) {
                return isLit(m_desktop->pixel(at), expected.pixel(at - area.topLeft()));
            };
            const auto dimmed = [&](QPoint at) {
                return isDimmed(m_desktop->pixel(at), expected.pixel(at - area.topLeft()));
            };
            const QRect whole(QPoint(), options.size);
            QVERIFY(m_program->openOverlay(panes.value(0, whole)));
            QVERIFY(m_program->hasOverlay(panes.value(1, whole)));
            QCOMPARE(m_program->hasOverlay(whole), panes.isEmpty());
            const QPoint from = area.topLeft() + QPoint(127, 121);
            const QPoint to = from + QPoint(281, 207);
            const QPoint outside = from - QPoint(30, 30);
            QVERIFY(waitFor([&] { return dimmed(outside); }));
            QVERIFY(m_desktop->drag(from, to, [&] { return lit(to - QPoint(20, 20)); }));
            QVERIFY(lit(from + QPoint(30, 30)));
            QVERIFY(dimmed(outside));

            // The handle at the far corner, then one step with an arrow key.
            const QPoint further = to + QPoint(30, 24);
            QVERIFY(m_desktop->drag(to, further, [&] { return lit(to + QPoint(12, -40)); }));
            m_desktop->key(XK_Right);
            QVERIFY(waitFor([&] { return dimmed(from + QPoint(-1, 60)); }));
            m_desktop->key(XK_Return);
            QVERIFY(isTitled(u"untitled *"_s));
            QVERIFY(isClear());
            const QImage saved = m_program->saveAs(m_desktop->home() + u"/grab.png"_s);
            const QRect marked(from + QPoint(1, 0), further + QPoint(1, 0) - QPoint(1, 1));
            QCOMPARE(saved, expected.copy(marked.translated(-area.topLeft())));
        };
        const auto scaled = [](const QString &scale) {
            return Values{{u"QT_SCALE_FACTOR"_s, scale}};
        };
        const QRect acrossBoth(503, 151, 701, 503);
        check("compositing", {}, {});
        check("no compositor", {.windowManager = s_plain}, {});
        check("no window manager", {.windowManager = {}}, {});
        check("two monitors, across both",
              {.windowManager = s_openbox, .compositor = s_picom, .monitors = s_twoMonitors}, {},
              acrossBoth);
        check("odd desktop, scale 1.5", {.size = {1601, 1003}}, scaled(u"1.5"_s));
        check("144 dpi, no compositor", {.windowManager = s_openbox, .xftDpi = "144"}, {});
        // No screen at the corner of the box, and an origin that no logical position stands for.
        for (const auto &scale : {u"1.5"_s, u"2"_s})
            check("stepped monitors",
                  {.windowManager = s_openbox,
                   .monitors = {{u"L"_s, u"601/180x797/240+0+203"_s, u"screen"_s},
                                {u"R"_s, u"999/300x1000/300+601+0"_s, u"none"_s}}},
                  scaled(scale), acrossBoth);
        check("192 dpi, two monitors",
              {.windowManager = s_plain, .monitors = s_twoMonitors, .xftDpi = "192"}, {},
              acrossBoth);
        // One window a monitor, as on desktops where none can lie across both.
        const QList<QRect> panes{{0, 0, 800, 1000}, {800, 0, 800, 1000}};
        check("a pane a monitor",
              {.windowManager = s_openbox, .compositor = s_picom, .monitors = s_twoMonitors}, {},
              acrossBoth, panes);
        check("a pane a monitor, no compositor, scale 2",
              {.windowManager = s_openbox, .monitors = s_twoMonitors}, scaled(u"2"_s), acrossBoth,
              panes);
    }

    // What is marked is seen as it is, and taken when the button is released; the same area is
    // marked by a key, and taken after a countdown as it is then.
    void habits()
    {
        QVERIFY(begin({.settings = {{u"RunMinimized"_s, u"1"_s},
                                    {u"ShowMagnification"_s, u"0"_s},
                                    {u"AutoHide"_s, u"1"_s},
                                    {u"AutoShow"_s, u"1"_s},
                                    {u"TakeOnRelease"_s, u"1"_s},
                                    {u"ClearSelection"_s, u"1"_s},
                                    {u"ScreenTimer"_s, u"1"_s}}}));
        QVERIFY(m_desktop->startPattern(s_patternArea));
        const QImage expected = pattern(s_patternArea.size());
        QVERIFY(m_program->openOverlay(s_screen));
        const QPoint from = s_patternArea.topLeft() + QPoint(127, 121);
        const QPoint to = from + QPoint(281, 207);
        const auto at = [&](QPoint pixel) {
            return expected.pixel(pixel - s_patternArea.topLeft());
        };
        const QPoint inside = to - QPoint(20, 20);
        const QPoint outside = from - QPoint(30, 30);
        QVERIFY(m_desktop->drag(from, to, [&] {
            return (m_desktop->pixel(inside) & 0xffffff) == (at(inside) & 0xffffff) &&
                   isDimmed(m_desktop->pixel(outside), at(outside));
        }));
        QVERIFY(isTitled(u"untitled *"_s));
        QVERIFY(isClear());
        QVERIFY(m_program->openOverlay(s_screen));
        m_desktop->key(XK_r);
        m_desktop->key(XK_d);
        QVERIFY(m_program->waitForState(u"Counting"_s));
        QVERIFY(isTitled(u"untitled 1 *"_s));
        QVERIFY(isClear());
        const QImage saved = m_program->saveAs(m_desktop->home() + u"/again.png"_s);
        QCOMPARE(saved, expected.copy(
                            QRect(from, to - QPoint(1, 1)).translated(-s_patternArea.topLeft())));
    }

    void focusFollowsTheSetting()
    {
        const auto check = [this](const char *row, const QStringList &windowManager, bool shows) {
            QVERIFY(begin({.row = row,
                           .desktop = {.windowManager = windowManager},
                           .settings = {{u"AutoShow"_s, QString::number(shows)}}}));
            QProcess *other = m_desktop->startPattern(s_patternArea);
            QVERIFY(other);
            const auto isOther = [&] { return m_desktop->activeTitle() == u"pattern"; };
            QVERIFY(m_program->openOverlay(s_screen) && markPattern());
            m_desktop->key(XK_Return);
            QVERIFY(isTitled(u"untitled *"_s));
            QVERIFY(waitFor([&] {
                return shows ? m_desktop->activeTitle().startsWith(u"untitled *") : isOther();
            }));
            // The keyboard follows: the other program hears a key only where it is the active one.
            other->readAll();
            m_desktop->key(XK_x);
            const auto heard = [&] { return other->readAll().contains("key 88"); };
            QCOMPARE(waitFor(heard, shows ? 300 : 20000), !shows);

            // An overlay that is given up leaves things as they were.
            QVERIFY(m_program->openOverlay(s_screen));
            m_desktop->key(XK_Escape);
            QVERIFY(waitFor([&] { return !m_program->hasOverlay(s_screen); }));
            QVERIFY(waitFor([&] { return isOther() != shows; }));
        };
        check("stays there: xfwm4", TestDesktop::Options{}.windowManager, false);
        check("stays there: openbox", s_openbox, false);
        check("comes here: xfwm4", TestDesktop::Options{}.windowManager, true);
        check("comes here: openbox", s_openbox, true);
    }

    void hotKeys()
    {
        QVERIFY(begin({.settings = {{u"RunMinimized"_s, u"1"_s}}}));
        QVERIFY(m_desktop->startPattern(s_patternArea));
        // With the one lock, with both, and with the other one.
        for (const xcb_keysym_t lock : {XK_Caps_Lock, XK_Num_Lock, XK_Caps_Lock}) {
            m_desktop->key(lock);
            QVERIFY(m_program->openOverlay(s_screen));
            // Keys that would start a grab start nothing while one runs.
            hotKey(XK_s);
            hotKey(XK_r);
            QVERIFY(markPattern());
            m_desktop->key(XK_Escape);
            QVERIFY(waitFor([&] { return !m_program->hasOverlay(s_screen); }));
            QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
            QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));
        }
        // And the next grab is the first.
        QVERIFY(m_program->openOverlay(s_screen) && markPattern());
        m_desktop->key(XK_Return);
        QVERIFY(isTitled(u"untitled *"_s));
    }

    // Whatever locks are on; and of keys that another program has the user can be told.
    void changedHotKeys()
    {
        QVERIFY(begin({.settings = {{u"RunMinimized"_s, u"1"_s},
                                    {u"AutoShow"_s, u"1"_s},
                                    {u"HotKey.1"_s, u"Alt+Print"_s},
                                    {u"HotKey.2"_s, u"Ctrl+Shift+F9"_s},
                                    {u"HotKey.3"_s, u""_s},
                                    {u"HotKey.12"_s, u"Print"_s},
                                    {u"CountsDown.2"_s, u"1"_s},
                                    {u"ScreenTimer"_s, u"1"_s},
                                    {u"ShowPointer"_s, u"1"_s},
                                    {u"LastEllipse"_s, u"300,200 400,300"_s}}}));
        const auto opens = [this](xcb_keysym_t key, const QList<xcb_keysym_t> &modifiers) {
            m_desktop->key(key, modifiers);
            QVERIFY(key != XK_F9 || m_program->waitForState(u"Counting"_s));
            QVERIFY(m_program->waitForState(u"Marking"_s));
            m_desktop->key(XK_Escape);
            QVERIFY(m_program->waitForState(u"Idle"_s));
        };
        for (const xcb_keysym_t lock : {XK_Caps_Lock, XK_Num_Lock}) {
            opens(XK_Print, {XK_Alt_L});
            m_desktop->key(lock);
            opens(XK_F9, {XK_Control_L, XK_Shift_L});
            m_desktop->key(lock);
        }
        // A key of this test's own, and one that the program has.
        X11Display display(m_desktop->connection());
        X11HotKeys keys(display);
        keys.add(1, Qt::CTRL | Qt::Key_Print);
        keys.add(2, Qt::CTRL | Qt::SHIFT | Qt::Key_F9);
        QCOMPARE(keys.keysOf(1), u"Ctrl+Print"_s);
        QCOMPARE(keys.keysOf(2), QString());
        // What it had by itself is free.
        keys.add(2, Qt::CTRL | Qt::ALT | Qt::Key_R);
        QCOMPARE(keys.keysOf(2), u"Ctrl+Alt+R"_s);

        // The last area at once, with the pointer in it where that is.
        m_desktop->movePointer({350, 250});
        const auto shape = X11Pictures(display).pointer();
        QVERIFY(shape);
        m_desktop->key(XK_Print);
        QVERIFY(isTitled(u"untitled *"_s));
        const QString path = m_desktop->home() + u"/last.png"_s;
        QVERIFY(!m_program->saveAs(path).isNull());
        const QImage taken(path);
        QCOMPARE(taken.size(), QSize(100, 100));
        QCOMPARE(qAlpha(taken.pixel(1, 1)), 0);
        const QPoint corner = shape->corner - QPoint(300, 200);
        int opaque = 0;
        for (int y = 0; y < shape->shape.height(); ++y) {
            for (int x = 0; x < shape->shape.width(); ++x) {
                const QRgb pixel = shape->shape.pixel(x, y);
                if (qAlpha(pixel) != 255)
                    continue;
                ++opaque;
                QCOMPARE(taken.pixel(corner + QPoint(x, y)), pixel);
            }
        }
        QVERIFY(opaque > 10);
    }

    // The window in front, and the screen with the pointer.
    void takenAtOnce()
    {
        QVERIFY(begin({.desktop = {.windowManager = s_openbox, .monitors = s_twoMonitors},
                       .settings = {{u"RunMinimized"_s, u"1"_s},
                                    {u"AutoShow"_s, u"1"_s},
                                    {u"HotKey.13"_s, u"Alt+F9"_s},
                                    {u"HotKey.14"_s, u"Ctrl+Print"_s}}}));
        const QRect area(503, 151, 701, 503);
        QVERIFY(m_desktop->startPattern(area));
        QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
        m_desktop->key(XK_F9, {XK_Alt_L});
        QVERIFY(waitFor([&] {
            return m_program->mainWindow().title.endsWith(u" * - Snap Workbench") &&
                   m_desktop->activeTitle().endsWith(u" * - Snap Workbench");
        }));
        QCOMPARE(m_program->saveAs(m_desktop->home() + u"/front.png"_s), pattern(area.size()));
        m_desktop->movePointer({1200, 500});
        m_desktop->key(XK_Print, {XK_Control_L});
        QVERIFY(isTitled(u"untitled *"_s));
        QCOMPARE(m_program->saveAs(m_desktop->home() + u"/screen.png"_s).size(), QSize(800, 1000));
    }

    void hotKeyFollowsTheLayout()
    {
        QVERIFY(begin(
            {.desktop = {.windowManager = s_openbox}, .settings = {{u"RunMinimized"_s, u"1"_s}}}));
        const auto check = [this](const char *row, const QString &layout, bool second,
                                  uint8_t key) {
            QVERIFY2(m_desktop->run(u"setxkbmap"_s, layout.split(u' ')), row);
            if (second)
                tap({s_keyMenu});
            // How soon the program learns of the new layout is its own affair. A press that it only
            // answers late must not be followed by another, which could open the overlay again.
            QVERIFY2(waitFor([&] {
                         tap({s_keyCtrl, s_keyAlt, key});
                         return m_program->waitForState(u"Marking"_s, 2000);
                     }),
                     row);
            m_desktop->key(XK_Escape);
            QVERIFY2(m_program->waitForState(u"Idle"_s), row);
            // And nothing else was set off by the same key.
            QVERIFY2(m_program->waitForTitle(u"Snap Workbench"_s), row);
        };
        check("letters move", u"us -variant dvorak"_s, false, s_keyO);
        check("no Latin letters", u"ru"_s, false, s_keyR);
        // On one and the same key the first layout has S and the second one R.
        check("the second of two", u"us,us -variant ,colemak -option grp:menu_toggle"_s, true,
              s_keyS);
    }

    // Where the two are different modifiers, no one presses both.
    void eitherAltKey()
    {
        QVERIFY(begin(
            {.desktop = {.windowManager = s_openbox}, .settings = {{u"RunMinimized"_s, u"1"_s}}}));
        QVERIFY(m_program->quit());
        xcb_connection_t *connection = m_desktop->connection();
        const std::unique_ptr<xcb_get_modifier_mapping_reply_t, decltype(&free)> mapping(
            xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection),
                                           nullptr),
            &free);
        const int keys = mapping->keycodes_per_modifier;
        xcb_keycode_t *codes = xcb_get_modifier_mapping_keycodes(mapping.get());
        std::replace(codes, codes + qsizetype(8) * keys, s_keyAltRight, xcb_keycode_t(0));
        codes[qsizetype(XCB_MAP_INDEX_3) * keys] = s_keyAltRight;
        free(xcb_set_modifier_mapping_reply(
            connection, xcb_set_modifier_mapping(connection, mapping->keycodes_per_modifier, codes),
            nullptr));
        QVERIFY(m_program->startAndWait());
        for (const uint8_t alt : {s_keyAlt, s_keyAltRight}) {
            tap({s_keyCtrl, alt, s_keyR});
            QVERIFY(m_program->waitForState(u"Marking"_s));
            m_desktop->key(XK_Escape);
            QVERIFY(m_program->waitForState(u"Idle"_s));
        }
    }

    void minimisedWindowStaysThere()
    {
        QVERIFY(begin({.desktop = {.windowManager = s_openbox},
                       .settings = {{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"0"_s}}}));
        QVERIFY(m_desktop->startPattern({203, 151, 701, 503}));
        const auto other = [&] {
            return m_desktop->find([](const auto &window) { return window.title == u"pattern"; });
        };
        m_desktop->minimise(other());
        QVERIFY(waitFor([&] { return !other().viewable; }));
        const QPoint inside(480, 380);
        const QRgb plain = m_desktop->pixel(inside);
        QVERIFY(m_program->openOverlay(s_screen));
        QVERIFY(waitFor([&] { return m_desktop->pixel(inside) != plain; }));
        const QRgb before = m_desktop->pixel(inside);
        QVERIFY(m_desktop->drag({300, 200}, {500, 400},
                                [&] { return m_desktop->pixel(inside) != before; }));
        m_desktop->key(XK_Return);
        QVERIFY(isTitled(u"untitled *"_s));
        // By the time of another grab the first one has given the focus back.
        QVERIFY(m_program->openOverlay(s_screen));
        QVERIFY(!other().viewable);
    }

    // One key, and the picture is in a file: no window of this program appears, and whoever was in
    // front stays there, also while the program's own window lies behind.
    void straightToAFile()
    {
        for (const char *hides : {"0", "1"}) {
            QVERIFY(
                begin({.row = hides,
                       .settings = {{u"AutoHide"_s, QString::fromLatin1(hides)},
                                    {u"AutoShow"_s, u"1"_s},
                                    {u"AfterGrab.5"_s, u"6"_s},
                                    {u"AfterGrab.6"_s, u"6"_s},
                                    {u"PictureName"_s, u"{application}, {title} {counter:2}"_s}}}));
            QVERIFY(m_desktop->startPattern(s_patternArea));
            const auto own = m_program->mainWindow();
            for (const auto &name : {u"pattern, pattern 01.png"_s, u"pattern, pattern 02.png"_s}) {
                hotKey('s');
                const QString path = m_desktop->home() + u"/Pictures/"_s + name;
                QVERIFY2(waitFor([&] { return QFileInfo(path).size() > 0; }), qPrintable(path));
                QVERIFY(m_program->waitForState(u"Idle"_s));
                QCOMPARE(QImage(path).convertToFormat(QImage::Format_RGB32).copy(s_patternArea),
                         pattern(s_patternArea.size()));
                QCOMPARE(m_desktop->activeTitle(), u"pattern"_s);
                QCOMPARE(m_program->mainWindow().title, own.title);
            }
            // The name tells the window that was chosen, whichever is in front.
            QVERIFY(m_desktop->startPattern({950, 700, 200, 150}, u"another"_s));
            m_desktop->movePointer(s_patternArea.center());
            const QList<TestDesktop::Window> before = m_desktop->windows();
            hotKey('w');
            QVERIFY(hasDialog(before));
            m_desktop->key(XK_Escape);
            QVERIFY(m_program->waitForState(u"Picking"_s));
            m_desktop->click(s_patternArea.center());
            const QString chosen = m_desktop->home() + u"/Pictures/pattern, pattern 03.png"_s;
            QVERIFY(waitFor([&] { return QImage(chosen).size() == s_patternArea.size(); }));
            QVERIFY(m_program->waitForState(u"Idle"_s));
            // What has been begun is finished by a program that is told to end.
            hotKey('s');
            const QString path = m_desktop->home() + u"/Pictures/another, pattern 01.png"_s;
            QVERIFY(waitFor([&] { return QFile::exists(path); }));
            QCOMPARE(kill(static_cast<pid_t>(m_program->process()->processId()), SIGTERM), 0);
            QVERIFY(hasEnded());
            QCOMPARE(QImage(path).convertToFormat(QImage::Format_RGB32).copy(s_patternArea),
                     pattern(s_patternArea.size()));
        }
    }

private:
    void tap(const QList<uint8_t> &keys)
    {
        const auto fake = [this](uint8_t type, uint8_t key) {
            xcb_test_fake_input(m_desktop->connection(), type, key, XCB_CURRENT_TIME,
                                m_desktop->root(), 0, 0, 0);
        };
        for (const uint8_t key : keys)
            fake(XCB_KEY_PRESS, key);
        for (auto key = keys.crbegin(); key != keys.crend(); ++key)
            fake(XCB_KEY_RELEASE, *key);
        xcb_flush(m_desktop->connection());
    }
    // Marks a rectangle inside the pattern at its usual place.
    bool markPattern()
    {
        const QPoint corner(480, 380);
        const QRgb colour = pattern(s_patternArea.size()).pixel(corner - s_patternArea.topLeft());
        return m_desktop->drag({300, 200}, {500, 400},
                               [&] { return isLit(m_desktop->pixel(corner), colour); });
    }
};

QTEST_GUILESS_MAIN(TestGrab)
#include "test_grab.moc"
