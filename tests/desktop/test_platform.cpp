// What only a real X server can tell: where windows end up, which keys are heard, who comes
// forward.

#include "snapworkbench.h"

#include <QTest>

#include <algorithm>
#include <string_view>

#include <X11/keysym.h>
#include <xcb/xtest.h>

using namespace Qt::StringLiterals;

namespace {

const QRect s_whole(0, 0, 1600, 1000);

// Keys by their place on a US keyboard.
constexpr uint8_t s_keyO = 32;
constexpr uint8_t s_keyR = 27;
constexpr uint8_t s_keyS = 39;
constexpr uint8_t s_keyMenu = 135;
constexpr uint8_t s_keyCtrl = 37;
constexpr uint8_t s_keyAlt = 64;
constexpr uint8_t s_keyAltRight = 108;

void tap(TestDesktop &desktop, const QList<uint8_t> &keys)
{
    const auto fake = [&](uint8_t type, uint8_t key) {
        xcb_test_fake_input(desktop.connection(), type, key, XCB_CURRENT_TIME, desktop.root(), 0, 0,
                            0);
    };
    for (const uint8_t key : keys)
        fake(XCB_KEY_PRESS, key);
    for (auto key = keys.crbegin(); key != keys.crend(); ++key)
        fake(XCB_KEY_RELEASE, *key);
    xcb_flush(desktop.connection());
}

bool setLayout(TestDesktop &desktop, const QStringList &arguments)
{
    QProcess process;
    process.setProcessEnvironment(desktop.environment());
    process.start(u"setxkbmap"_s, arguments);
    return process.waitForFinished() && process.exitCode() == 0;
}

TestDesktop::Window windowCalled(TestDesktop &desktop, const QString &title)
{
    const QList<TestDesktop::Window> windows = desktop.windows();
    const auto found =
        std::find_if(windows.begin(), windows.end(),
                     [&](const TestDesktop::Window &window) { return window.title == title; });
    return found == windows.end() ? TestDesktop::Window{} : *found;
}

// Asks the window manager, as a frame's button would.
void minimise(TestDesktop &desktop, const TestDesktop::Window &window)
{
    constexpr std::string_view name = "WM_CHANGE_STATE";
    constexpr uint32_t iconic = 3;
    xcb_connection_t *connection = desktop.connection();
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&free)> type(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, name.size(), name.data()),
                              nullptr),
        &free);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window.id;
    message.type = type->atom;
    message.data.data32[0] = iconic;
    xcb_send_event(connection, 0, desktop.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(connection);
}

}  // namespace

class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    void overlayCoversTheDesktop_data();
    void overlayCoversTheDesktop();
    void hotKeyFollowsTheLayout_data();
    void hotKeyFollowsTheLayout();
    void eitherAltKey();
    void minimisedWindowStaysThere();
};

void TestPlatform::overlayCoversTheDesktop_data()
{
    QTest::addColumn<QStringList>("monitors");
    QTest::addColumn<QString>("scale");
    const QStringList narrow{u"600/180x1000/300+0+0"_s, u"1000/300x1000/300+600+0"_s};
    const QStringList even{u"800/250x1000/300+0+0"_s, u"800/250x1000/300+800+0"_s};
    // No screen at the corner of the box, and an origin that no logical position stands for.
    const QStringList stepped{u"601/180x797/240+0+203"_s, u"999/300x1000/300+601+0"_s};
    QTest::newRow("narrow and wide, 1.5") << narrow << u"1.5"_s;
    QTest::newRow("narrow and wide, 2") << narrow << u"2"_s;
    QTest::newRow("even, 1.5") << even << u"1.5"_s;
    QTest::newRow("stepped, 1.5") << stepped << u"1.5"_s;
    QTest::newRow("stepped, 2") << stepped << u"2"_s;
}

void TestPlatform::overlayCoversTheDesktop()
{
    QFETCH(QStringList, monitors);
    QFETCH(QString, scale);
    TestDesktop desktop(
        {.windowManager = {u"openbox"_s},
         .monitors = {{u"L"_s, monitors[0], u"screen"_s}, {u"R"_s, monitors[1], u"none"_s}}});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(program.startAndWait({{u"QT_SCALE_FACTOR"_s, scale}}));
    QVERIFY(program.openOverlay(s_whole));
    const QList<TestDesktop::Window> windows = desktop.windows();
    const auto overlay =
        std::find_if(windows.begin(), windows.end(), [](const TestDesktop::Window &window) {
            return window.viewable && window.overrideRedirect && window.area.contains(s_whole);
        });
    QVERIFY(overlay != windows.end());
    QCOMPARE(overlay->area.topLeft(), QPoint(0, 0));
    QVERIFY(s_whole.adjusted(0, 0, 1, 1).contains(overlay->area));
}

void TestPlatform::hotKeyFollowsTheLayout_data()
{
    QTest::addColumn<QStringList>("layout");
    QTest::addColumn<bool>("second");
    QTest::addColumn<uint8_t>("key");
    QTest::newRow("letters move") << QStringList{u"us"_s, u"-variant"_s, u"dvorak"_s} << false
                                  << s_keyO;
    QTest::newRow("no Latin letters") << QStringList{u"ru"_s} << false << s_keyR;
    // On one and the same key the first layout has S and the second one R.
    const QStringList two{u"us,us"_s, u"-variant"_s, u",colemak"_s, u"-option"_s,
                          u"grp:menu_toggle"_s};
    QTest::newRow("the second of two") << two << true << s_keyS;
    QTest::newRow("none in the second")
        << QStringList{u"us,ru"_s, u"-option"_s, u"grp:menu_toggle"_s} << true << s_keyR;
}

void TestPlatform::hotKeyFollowsTheLayout()
{
    QFETCH(QStringList, layout);
    QFETCH(bool, second);
    QFETCH(uint8_t, key);
    TestDesktop desktop({.windowManager = {u"openbox"_s}});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(program.startAndWait());
    QVERIFY(program.openOverlay(s_whole));
    desktop.key(XK_Escape);
    QVERIFY(waitFor([&] { return !program.hasOverlay(s_whole); }));

    QVERIFY(setLayout(desktop, layout));
    if (second)
        tap(desktop, {s_keyMenu});
    // How soon the program learns of the new layout is its own affair. A press that it only answers
    // late must not be followed by another, which could open the overlay again.
    QVERIFY(waitFor([&] {
        tap(desktop, {s_keyCtrl, s_keyAlt, key});
        return program.waitForState(u"Marking"_s, 2000);
    }));
    QVERIFY(program.hasOverlay(s_whole));
    desktop.key(XK_Escape);
    QVERIFY(program.waitForState(u"Idle"_s));
    // And nothing else was set off by the same key.
    QVERIFY(program.waitForTitle(u"Snap Workbench"_s));
}

// Where the two are different modifiers, no one presses both.
void TestPlatform::eitherAltKey()
{
    TestDesktop desktop({.windowManager = {u"openbox"_s}});
    QVERIFY(desktop.isReady());
    xcb_connection_t *connection = desktop.connection();
    const std::unique_ptr<xcb_get_modifier_mapping_reply_t, decltype(&free)> mapping(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr),
        &free);
    const int keys = mapping->keycodes_per_modifier;
    xcb_keycode_t *codes = xcb_get_modifier_mapping_keycodes(mapping.get());
    std::replace(codes, codes + qsizetype(8) * keys, s_keyAltRight, xcb_keycode_t(0));
    codes[qsizetype(XCB_MAP_INDEX_3) * keys] = s_keyAltRight;
    free(xcb_set_modifier_mapping_reply(
        connection, xcb_set_modifier_mapping(connection, mapping->keycodes_per_modifier, codes),
        nullptr));
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(program.startAndWait());
    for (const uint8_t alt : {s_keyAlt, s_keyAltRight}) {
        tap(desktop, {s_keyCtrl, alt, s_keyR});
        QVERIFY(program.waitForState(u"Marking"_s));
        desktop.key(XK_Escape);
        QVERIFY(program.waitForState(u"Idle"_s));
    }
}

void TestPlatform::minimisedWindowStaysThere()
{
    TestDesktop desktop({.windowManager = {u"openbox"_s}});
    QVERIFY(desktop.isReady());
    SnapWorkbench program(desktop);
    program.writeSettings({{u"RunMinimized"_s, u"1"_s}, {u"AutoShow"_s, u"0"_s}});
    QVERIFY(program.startAndWait());
    QVERIFY(desktop.startPattern({203, 151, 701, 503}));
    const auto other = [&] { return windowCalled(desktop, u"pattern"_s); };
    minimise(desktop, other());
    QVERIFY(waitFor([&] { return !other().viewable; }));

    QVERIFY(program.openOverlay(s_whole));
    const QPoint inside(480, 380);
    const QRgb before = desktop.pixel(inside);
    QVERIFY(desktop.drag({300, 200}, {500, 400}, [&] { return desktop.pixel(inside) != before; }));
    desktop.key(XK_Return);
    QVERIFY(program.waitForTitle(u"untitled * - Snap Workbench"_s));
    // By the time of another grab the first one has given the focus back.
    QVERIFY(program.openOverlay(s_whole));
    QVERIFY(!other().viewable);
}

QTEST_GUILESS_MAIN(TestPlatform)
#include "test_platform.moc"
