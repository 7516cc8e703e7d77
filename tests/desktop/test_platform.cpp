// What only a real X server can tell: where windows end up, which keys are heard, who comes
// forward.

#include "snapworkbench.h"

#include <QTest>

#include <algorithm>

#include <X11/keysym.h>
#include <xcb/xtest.h>

using namespace Qt::StringLiterals;

namespace {

// Keys by their place on a US keyboard.
constexpr uint8_t s_keyO = 32;
constexpr uint8_t s_keyR = 27;
constexpr uint8_t s_keyS = 39;
constexpr uint8_t s_keyMenu = 135;
constexpr uint8_t s_keyCtrl = 37;
constexpr uint8_t s_keyAlt = 64;
constexpr uint8_t s_keyAltRight = 108;

}  // namespace

class TestPlatform : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    void overlayCoversTheDesktop()
    {
        const auto check = [this](const char *row, const QString &left, const QString &right,
                                  const QString &scale) {
            QVERIFY(begin(
                {.row = row,
                 .desktop = {.windowManager = s_openbox,
                             .monitors = {{u"L"_s, left, u"screen"_s}, {u"R"_s, right, u"none"_s}}},
                 .settings = {{u"RunMinimized"_s, u"1"_s}},
                 .variables = {{u"QT_SCALE_FACTOR"_s, scale}}}));
            QVERIFY(m_program->openOverlay(s_screen));
            const QList<QRect> areas = unmanaged();
            const auto overlay = std::find_if(areas.begin(), areas.end(),
                                              [](QRect area) { return area.contains(s_screen); });
            QVERIFY(overlay != areas.end());
            QCOMPARE(overlay->topLeft(), QPoint(0, 0));
            QVERIFY(s_screen.adjusted(0, 0, 1, 1).contains(*overlay));
        };
        check("narrow and wide, 2", u"600/180x1000/300+0+0"_s, u"1000/300x1000/300+600+0"_s,
              u"2"_s);
        // No screen at the corner of the box, and an origin that no logical position stands for.
        for (const auto &scale : {u"1.5"_s, u"2"_s})
            check("stepped", u"601/180x797/240+0+203"_s, u"999/300x1000/300+601+0"_s, scale);
    }

    void hotKeyFollowsTheLayout()
    {
        QVERIFY(begin(
            {.desktop = {.windowManager = s_openbox}, .settings = {{u"RunMinimized"_s, u"1"_s}}}));
        const auto check = [this](const char *row, const QString &layout, bool second,
                                  uint8_t key) {
            QProcess *setting =
                m_desktop->start(u"setxkbmap"_s, layout.split(u' '), m_desktop->environment());
            QVERIFY2(setting && setting->waitForFinished() && setting->exitCode() == 0, row);
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
            const QList<TestDesktop::Window> windows = m_desktop->windows();
            return *std::find_if(windows.begin(), windows.end(),
                                 [](const auto &window) { return window.title == u"pattern"; });
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
};

QTEST_GUILESS_MAIN(TestPlatform)
#include "test_platform.moc"
