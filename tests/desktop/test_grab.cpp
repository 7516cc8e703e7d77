// The main job on real desktops: hot key, rectangle, picture, file; which keys are heard, and who
// comes forward.

#include "pattern.h"
#include "snapworkbench.h"

#include <QTest>

#include <algorithm>

#include <X11/keysym.h>
#include <xcb/xtest.h>

using namespace Qt::StringLiterals;

namespace {

// What the overlay's black at 60 % leaves of a colour, and what its white makes of it.
bool isDimmed(QRgb shown, QRgb colour)
{
    return qAbs(qRed(shown) - qRed(colour) * 0.4) < 3 &&
           qAbs(qGreen(shown) - qGreen(colour) * 0.4) < 3 &&
           qAbs(qBlue(shown) - qBlue(colour) * 0.4) < 3;
}

bool isLit(QRgb shown, QRgb colour)
{
    return qAbs(qRed(shown) - qRed(colour) * 0.4 - 153) < 3 &&
           qAbs(qGreen(shown) - qGreen(colour) * 0.4 - 153) < 3;
}

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
