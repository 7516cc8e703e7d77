// The grabs that work on other programs: a picked window, all that scrolls in it, an open menu.

#include "longpicture.h"
#include "pattern.h"
#include "platform/x11/x11display.h"
#include "scrollprogram.h"
#include "snapworkbench.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QStringList s_compositing{u"xfwm4"_s, u"--compositor=on"_s};
const QStringList s_openbox{u"openbox"_s};

const QRect s_screen(0, 0, 1600, 1000);
const QRect s_longWindow(300, 150, 900, 600);
constexpr int s_longRows = 5000;
const QString s_untitled = u"untitled * - Snap Workbench"_s;
const QString s_idleTitle = u"Snap Workbench"_s;
constexpr int s_captureLimit = 60000;
constexpr QRgb s_outline = qRgb(61, 165, 244);

// Whether a menu has its text already: on plain ground its soft edges are many colours.
bool isDrawn(const QImage &screen, const QRect &menu)
{
    const QRect inside = menu.adjusted(10, 10, -10, -10);
    QSet<QRgb> colors;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            colors.insert(screen.pixel(x, y));
    }
    return colors.size() > 16;
}

}  // namespace

class TestHelper : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void picksWindow();
    void takesContent();
    void takesByHand();
    void takesMenu();
    void standsStill();
    void ends_data();
    void ends();
    void asksInBetween();
    void question();
    void keysGoWhereTheUserGoes();

private:
    bool startDesktop(const QStringList &windowManager, const QString &scale = u"1"_s,
                      QMap<QString, QString> settings = {});
    bool startMenus();
    bool startLong(int rows = s_longRows);
    /// Takes the long window from the pick, and waits until it scrolls.
    bool startScrolling();
    void hotKey(xcb_keysym_t letter) { m_desktop->key(letter, {XK_Control_L, XK_Alt_L}); }
    QStringList leftFiles() const;
    /// The windows of an open menu: those that came without a window manager's say. The ring beside
    /// the pointer, which comes and goes meanwhile, is a square.
    QList<TestDesktop::Window> menus(const QList<TestDesktop::Window> &before);
    /// Opens a menu of the active window, and in it a submenu, and waits until both are drawn;
    /// empty where they never are. `shown` is the desktop then.
    QList<TestDesktop::Window> openMenus(QImage *shown);
    /// Presses a hot key while another program has all keys, as a screen locker does. Either that
    /// covers all, an open menu too, or the desktop is seen as it was. True where it gets the key
    /// and nothing else happens.
    bool isLeftAlone(bool covers);
    xcb_window_t showUnmanaged(QSize size);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    QProcess *m_long = nullptr;
    QRect m_viewport;
};

// However a grab ended, it leaves no file behind.
void TestHelper::cleanup()
{
    const QStringList left = m_desktop ? leftFiles() : QStringList();
    m_program.reset();
    m_desktop.reset();
    QCOMPARE(left, QStringList());
}

bool TestHelper::startDesktop(const QStringList &windowManager, const QString &scale,
                              QMap<QString, QString> settings)
{
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{.windowManager = windowManager});
    if (!m_desktop->isReady())
        return false;
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
    settings.insert(u"RunMinimized"_s, u"1"_s);
    m_program->writeSettings(settings);
    return m_program->startAndWait({{u"QT_SCALE_FACTOR"_s, scale}});
}

bool TestHelper::startMenus()
{
    return ScrollProgram::start(*m_desktop, u"gtk"_s, {u"menus"_s, u"bare"_s}, false).process &&
           waitFor([&] { return m_desktop->activeTitle() == u"scroll"; });
}

bool TestHelper::startLong(int rows)
{
    QStringList arguments;
    for (const int number :
         {s_longWindow.x(), s_longWindow.y(), s_longWindow.width(), s_longWindow.height(), rows})
        arguments.append(QString::number(number));
    m_long = m_desktop->start(TestDesktop::longProgram(), arguments, m_desktop->environment());
    if (!m_long || !waitFor([&] { return m_long->canReadLine(); }))
        return false;
    const QStringList place = QString::fromLatin1(m_long->readLine()).simplified().split(u' ');
    if (place.size() != 5)
        return false;
    m_viewport = QRect(place[1].toInt(), place[2].toInt(), place[3].toInt(), place[4].toInt());
    const QImage picture = longPicture(m_viewport.size());
    return waitFor([&] {
        return m_desktop->screenshot().copy(m_viewport) == picture &&
               m_desktop->activeTitle() == u"long";
    });
}

bool TestHelper::startScrolling()
{
    m_desktop->key(XK_Return);
    return m_program->waitForState(u"Scrolling"_s) &&
           waitFor([&] { return m_long->readAll().contains("at "); });
}

QStringList TestHelper::leftFiles() const
{
    const QDir folder(m_desktop->home() + u"/.cache/Brenvale Snap Workbench/AXTempDrawing"_s);
    return folder.entryList(QDir::Files | QDir::Hidden);
}

QList<TestDesktop::Window> TestHelper::menus(const QList<TestDesktop::Window> &before)
{
    QList<TestDesktop::Window> result = m_desktop->windows();
    result.removeIf([&](const TestDesktop::Window &window) {
        return !window.viewable || !window.overrideRedirect || window.area.width() < 60 ||
               window.area.width() == window.area.height() ||
               std::any_of(before.begin(), before.end(),
                           [&](const auto &old) { return old.id == window.id && old.viewable; });
    });
    return result;
}

QList<TestDesktop::Window> TestHelper::openMenus(QImage *shown)
{
    const auto before = m_desktop->windows();
    const auto other = std::find_if(before.begin(), before.end(), [&](const auto &window) {
        return window.id == m_desktop->activeWindow();
    });
    if (other == before.end())
        return {};
    m_desktop->click(other->area.topLeft() + QPoint(18, 10));
    if (!waitFor([&] { return menus(before).size() == 1; }))
        return {};
    const QRect menu = menus(before).first().area;
    // The middle one of three entries has the submenu.
    m_desktop->movePointer(menu.center() - QPoint(10, 0));
    m_desktop->movePointer(menu.center());
    if (!waitFor([&] { return menus(before).size() == 2; }))
        return {};
    const auto open = menus(before);
    const bool areDrawn = waitFor([&] {
        *shown = m_desktop->screenshot();
        return std::all_of(open.begin(), open.end(),
                           [&](const auto &window) { return isDrawn(*shown, window.area); });
    });
    return areDrawn ? open : QList<TestDesktop::Window>();
}

void TestHelper::picksWindow()
{
    QVERIFY(startDesktop(s_openbox, u"1.5"_s));
    const QRect lower(103, 101, 601, 403);
    const QRect upper(303, 203, 701, 503);
    QVERIFY(m_desktop->startPattern(lower, u"Lower"_s));
    QVERIFY(m_desktop->startPattern(upper, u"Upper"_s));
    const QImage before = m_desktop->screenshot();
    const auto isTinted = [&](QPoint at) {
        const QRgb plain = before.pixel(at);
        const QRgb shown = m_desktop->pixel(at);
        return qAbs(qRed(shown) - qRed(plain) * 155 / 255) < 3 &&
               qAbs(qGreen(shown) - qGreen(plain) * 155 / 255) < 3 && shown != plain;
    };
    const QPoint inUpper = upper.topLeft() + QPoint(90, 90);
    const QPoint inLower = lower.topLeft() + QPoint(90, 90);
    m_desktop->movePointer(upper.center());
    QVERIFY(openPick(*m_desktop, *m_program));
    QVERIFY(waitFor([&] { return isTinted(inUpper); }));
    m_desktop->movePointer(inLower);
    // Along the edge lies a light line, and a dark one inside of it.
    const auto isWhite = [&](QPoint at) { return m_desktop->pixel(at) == 0xffffffff; };
    QVERIFY(waitFor([&] {
        return isWhite({302, 300}) && isWhite({500, 202}) && isTinted({297, 300}) &&
               isTinted({500, 197}) && isTinted(inLower);
    }));
    for (const QPoint plain : {inUpper, QPoint(303, 300), QPoint(500, 203), QPoint(50, 50)})
        QCOMPARE(m_desktop->pixel(plain), before.pixel(plain));
    m_desktop->click(inLower);
    QVERIFY(m_program->waitForTitle(s_untitled));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == s_untitled; }));
    QCOMPARE(m_program->saveAs(m_desktop->home() + u"/pick.png"_s), pattern(lower.size()));
}

void TestHelper::takesContent()
{
    QVERIFY(startDesktop(s_compositing));
    QVERIFY(startLong());
    const QPoint at = m_viewport.center();
    m_desktop->movePointer(at);
    // Not from the top: it is to be there again afterwards.
    for (int i = 0; i < 4; ++i) {
        m_desktop->press(5);
        m_desktop->release(5);
    }
    QVERIFY(waitFor([&] { return m_long->readAll().contains("at 204\n"); }));
    QVERIFY(openPick(*m_desktop, *m_program, true));
    const auto isOutlined = [&](QPoint point) { return m_desktop->pixel(point) == s_outline; };
    QVERIFY(waitFor(
        [&] { return isOutlined(m_viewport.topLeft()) && isOutlined(m_viewport.bottomRight()); }));
    QVERIFY(!isOutlined(m_viewport.topLeft() - QPoint(0, 1)));
    QVERIFY(!isOutlined(m_viewport.bottomRight() + QPoint(1, 0)));
    m_desktop->keyDown(XK_Control_L);
    m_desktop->click(at);
    // Held longer than it takes to begin.
    QVERIFY(waitFor([&] { return !m_program->hasOverlay(s_screen); }));
    QVERIFY(!waitFor([&] { return m_long->canReadLine(); }, 500));
    m_desktop->keyUp(XK_Control_L);
    QVERIFY(m_program->waitForTitle(s_untitled, s_captureLimit));
    QByteArray said;
    QVERIFY(waitFor([&] {
        said += m_long->readAll();
        return said.endsWith("at 204\n");
    }));
    QVERIFY(!said.contains("zoomed"));
    const std::unique_ptr<xcb_query_pointer_reply_t, decltype(&std::free)> pointer(
        xcb_query_pointer_reply(m_desktop->connection(),
                                xcb_query_pointer(m_desktop->connection(), m_desktop->root()),
                                nullptr),
        std::free);
    QVERIFY(pointer && QPoint(pointer->root_x, pointer->root_y) == at);
    QCOMPARE(m_program->saveAs(m_desktop->home() + u"/long.png"_s),
             longPicture({m_viewport.width(), s_longRows}));
}

// A part that was drawn around, scrolled by who wants it, and by nobody else.
void TestHelper::takesByHand()
{
    QVERIFY(startDesktop(s_openbox));
    QVERIFY(startLong());
    QVERIFY(openPick(*m_desktop, *m_program));
    const QRect part = m_viewport.adjusted(40, 60, -100, -50);
    m_desktop->movePointer(part.topLeft());
    m_desktop->press(1);
    m_desktop->movePointer(part.center());
    m_desktop->movePointer(part.bottomRight() + QPoint(1, 1));
    m_desktop->release(1);
    QVERIFY(waitFor([&] {
        return m_desktop->pixel(part.topLeft()) == s_outline &&
               m_desktop->pixel(part.bottomRight()) == s_outline;
    }));
    m_desktop->key(XK_h);
    QVERIFY(m_program->waitForState(u"Scrolling"_s));
    QVERIFY(waitFor([&] { return m_desktop->isTaken(XK_Return); }));
    m_desktop->movePointer(m_viewport.center());
    constexpr int turns = 12;
    constexpr int wheelStep = 51;
    for (int i = 1; i <= turns; ++i) {
        m_desktop->press(5);
        m_desktop->release(5);
        const QByteArray at = "at " + QByteArray::number(i * wheelStep) + '\n';
        QVERIFY(waitFor([&] { return m_long->readAll().contains(at); }));
    }
    // It is looked at many times in this.
    QVERIFY(!waitFor([&] { return m_long->canReadLine(); }, 500));
    m_desktop->key(XK_Return);
    QVERIFY(m_program->waitForTitle(s_untitled));
    const QRect seen(part.topLeft() - m_viewport.topLeft(),
                     part.size() + QSize(0, turns * wheelStep));
    QCOMPARE(m_program->saveAs(m_desktop->home() + u"/hand.png"_s),
             longPicture({m_viewport.width(), s_longRows}).copy(seen));
}

void TestHelper::takesMenu()
{
    QVERIFY(startDesktop(s_compositing));
    QVERIFY(startMenus());
    const auto atFirst = m_desktop->windows();
    hotKey(XK_v);
    // What to do is told before a menu is open.
    QVERIFY(waitFor([&] { return menus(atFirst).size() == 1; }));
    const auto before = m_desktop->windows();
    QImage shown;
    const auto open = openMenus(&shown);
    QVERIFY(!open.isEmpty());
    QRect both;
    for (const TestDesktop::Window &window : open)
        both |= window.area;
    QVERIFY(m_program->waitForTitle(s_untitled));
    // The menu still hangs there, and has the keyboard.
    QVERIFY(waitFor([&] {
        m_desktop->key(XK_Escape);
        return waitFor([&] { return menus(before).isEmpty(); }, 500);
    }));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == s_untitled; }));
    const QString path = m_desktop->home() + u"/menu.png"_s;
    QVERIFY(!m_program->saveAs(path).isNull());
    const QImage taken(path);
    QCOMPARE(taken.size(), both.size());
    QVERIFY(taken.hasAlphaChannel());
    int wrong = 0;
    int outside = 0;
    for (int y = 0; y < taken.height(); ++y) {
        for (int x = 0; x < taken.width(); ++x) {
            const QPoint at = both.topLeft() + QPoint(x, y);
            const bool inMenu = std::any_of(open.begin(), open.end(), [&](const auto &window) {
                return window.area.contains(at);
            });
            outside += inMenu ? 0 : 1;
            // What shines through a shadow, or round a corner, is the ground's.
            const int alpha = qAlpha(taken.pixel(x, y));
            if (inMenu ? alpha == 255 && taken.pixel(x, y) != shown.pixel(at) : alpha != 0)
                ++wrong;
        }
    }
    QCOMPARE(wrong, 0);
    QVERIFY(outside > 0);
}

xcb_window_t TestHelper::showUnmanaged(QSize size)
{
    xcb_connection_t *connection = m_desktop->connection();
    const xcb_window_t window = xcb_generate_id(connection);
    const uint32_t isUnmanaged = 1;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, m_desktop->root(), 0, 0,
                      uint16_t(size.width()), uint16_t(size.height()), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &isUnmanaged);
    xcb_map_window(connection, window);
    const auto isIt = [&](const auto &other) { return other.id == window && other.viewable; };
    return waitFor([&] { return m_desktop->find(isIt).id == window; }) ? window : XCB_NONE;
}

bool TestHelper::isLeftAlone(bool covers)
{
    xcb_connection_t *connection = m_desktop->connection();
    X11Display display(connection);
    const xcb_window_t menu = covers ? showUnmanaged({80, 50}) : XCB_NONE;
    const xcb_atom_t type = display.atom("_NET_WM_WINDOW_TYPE_POPUP_MENU");
    if (covers)
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, menu,
                            display.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
    const xcb_window_t window = showUnmanaged(covers ? s_screen.size() : QSize(1, 1));
    const std::unique_ptr<xcb_grab_keyboard_reply_t, decltype(&free)> grab(
        xcb_grab_keyboard_reply(connection,
                                xcb_grab_keyboard(connection, 0, window, XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr),
        &free);
    hotKey(XK_r);
    // With each answer the program has been through what came before.
    bool isAlone = grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
    for (int i = 0; i < 3; ++i)
        isAlone = isAlone && m_program->grabState() == u"Idle";
    int keys = 0;
    while (auto *event = xcb_poll_for_event(connection)) {
        keys += (event->response_type & ~0x80) == XCB_KEY_PRESS ? 1 : 0;
        free(event);
    }
    xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    if (covers)
        xcb_destroy_window(connection, menu);
    xcb_destroy_window(connection, window);
    xcb_flush(connection);
    return isAlone && keys == 3;
}

// An open menu stays in the picture, and is closed with all that it has opened, even while the user
// still holds the keys. A locked screen is none of that.
void TestHelper::standsStill()
{
    QVERIFY(startDesktop(s_openbox, u"1"_s, {{u"FreezeScreen"_s, u"1"_s}}));
    QVERIFY(startMenus());
    QVERIFY(isLeftAlone(false) && isLeftAlone(true));
    for (const bool isHeld : {false, true}) {
        QImage shown;
        const auto open = openMenus(&shown);
        QVERIFY(!open.isEmpty());
        QRect area;
        for (const TestDesktop::Window &window : open)
            area |= window.area.adjusted(-5, -5, 5, 5);
        const QPoint inside = open.first().area.topLeft() + QPoint(20, 20);
        const QList<xcb_keysym_t> keys{XK_Control_L, XK_Alt_L, XK_r};
        for (const xcb_keysym_t key : keys)
            m_desktop->keyDown(key);
        for (qsizetype i = 0; i < keys.size() && !isHeld; ++i)
            m_desktop->keyUp(keys[i]);
        QVERIFY(m_program->waitForState(u"Marking"_s));
        const auto isOpen = [&](const TestDesktop::Window &window) {
            return window.viewable && std::any_of(open.begin(), open.end(), [&](const auto &menu) {
                       return menu.id == window.id;
                   });
        };
        QVERIFY(waitFor([&] { return m_desktop->find(isOpen).id == XCB_NONE; }));
        QVERIFY(waitFor([&] { return m_desktop->pixel(inside) != shown.pixel(inside); }));
        for (qsizetype i = 0; i < keys.size() && isHeld; ++i)
            m_desktop->keyUp(keys[i]);
        const QRgb dimmed = m_desktop->pixel(inside);
        QVERIFY(m_desktop->drag(area.topLeft(), area.bottomRight() + QPoint(1, 1),
                                [&] { return m_desktop->pixel(inside) != dimmed; }));
        m_desktop->key(XK_Return);
        QVERIFY(waitFor([&] { return m_program->mainWindow().title.startsWith(u"untitled"); }));
        QCOMPARE(m_program->saveAs(m_desktop->home() + (isHeld ? u"/held.png"_s : u"/menus.png"_s)),
                 shown.copy(area).convertToFormat(QImage::Format_RGB32));
        m_desktop->key(XK_w, {XK_Control_L});
        QVERIFY(m_program->waitForTitle(s_idleTitle));
        m_desktop->minimise(m_program->mainWindow());
        QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"scroll"; }));
    }
}

void TestHelper::ends_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("by");
    for (const QString &state : {u"pick"_s, u"scrolling"_s, u"menu wait"_s}) {
        for (const QString &by : {u"Escape"_s, u"cancel"_s, u"quit"_s})
            QTest::newRow(qPrintable(state + u", "_s + by)) << state << by;
    }
}

// The pointer, the focus and the content stay with the user.
void TestHelper::ends()
{
    QFETCH(QString, state);
    QFETCH(QString, by);
    // Which has keys of its own with Escape.
    QVERIFY(startDesktop(s_openbox));
    QVERIFY(startLong());
    m_desktop->movePointer(m_viewport.center());
    const QImage before = m_desktop->screenshot();
    if (state == u"menu wait") {
        hotKey(XK_v);
        QVERIFY(m_program->waitForState(u"MenuWait"_s));
    } else {
        QVERIFY(openPick(*m_desktop, *m_program));
        QVERIFY(state == u"pick" || startScrolling());
    }
    if (by == u"quit") {
        QVERIFY(m_program->quit());
        QCOMPARE(m_program->process()->exitCode(), 0);
        return;
    }
    // The keys of the wait for a menu are taken from the first look on.
    QVERIFY(waitFor([&] {
        if (by == u"cancel")
            m_program->call(u"org.freedesktop.Application"_s, u"ActivateAction"_s,
                            {by, QVariantList(), QVariantMap()});
        else
            m_desktop->key(XK_Escape);
        return m_program->waitForState(u"Idle"_s, 1500);
    }));
    QVERIFY(waitFor([&] { return m_desktop->screenshot() == before; }));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"long"; }));
    QCOMPARE(m_program->mainWindow().title, s_idleTitle);
    // And the next grab starts.
    QVERIFY(m_program->openOverlay(s_screen));
    m_desktop->key(XK_Escape);
}

// What has not been saved is asked about, and the question gets the keys.
void TestHelper::asksInBetween()
{
    QVERIFY(startDesktop(s_compositing));
    QVERIFY(startLong());
    hotKey(XK_s);
    QVERIFY(m_program->waitForTitle(s_untitled));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == s_untitled; }));
    // Until then the program brings its window to the front.
    QVERIFY(m_program->waitForState(u"Idle"_s));
    m_desktop->click(m_viewport.topLeft() + QPoint(5, 5));
    m_desktop->movePointer(m_viewport.topLeft() + QPoint(5, 5));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"long"; }));
    QVERIFY(openPick(*m_desktop, *m_program));
    QVERIFY(startScrolling());
    const auto before = m_desktop->windows();
    m_desktop->closeWindow(m_program->mainWindow());
    const auto question = m_desktop->waitForNewWindow(before);
    QVERIFY(question.id && m_desktop->waitForFocus(question));
    QVERIFY(waitFor([&] {
        m_desktop->key(XK_Escape);
        return waitFor([&] { return m_desktop->activeTitle() == s_untitled; }, 1000);
    }));
    QVERIFY(m_program->openOverlay(s_screen));
    m_desktop->key(XK_Escape);
}

// It is found again, Escape in it is "No", and it leaves nothing of this program under the pick.
void TestHelper::question()
{
    QVERIFY(startDesktop(s_compositing));
    QVERIFY(m_desktop->startPattern({100, 100, 500, 400}));
    const QImage before = m_desktop->screenshot();
    m_program->call(u"org.freedesktop.Application"_s, u"Activate"_s, {QVariantMap()});
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == s_idleTitle; }));
    const QString about = u"About Snap Workbench"_s;
    m_desktop->key(XK_s, {XK_Alt_L});
    QVERIFY(waitFor([&] {
        m_desktop->key(XK_a);
        return waitFor([&] { return m_desktop->activeTitle() == about; }, 500);
    }));

    const auto windows = m_desktop->windows();
    hotKey(XK_w);
    const auto box = m_desktop->waitForNewWindow(windows);
    QVERIFY(box.id && m_desktop->waitForFocus(box));
    QProcess *cover = m_desktop->startPattern(s_screen, u"Cover"_s);
    QVERIFY(cover);
    // Any press brings it forward.
    hotKey(XK_r);
    QVERIFY(m_desktop->waitForFocus(box));
    QCOMPARE(m_program->grabState(), u"Asking"_s);
    cover->terminate();
    QVERIFY(cover->waitForFinished());
    QVERIFY(m_desktop->waitForFocus(box));
    m_desktop->key(XK_Escape);
    QVERIFY(m_program->waitForState(u"Picking"_s));
    // Above the hint at the foot.
    const QRect upper(0, 0, 1600, 700);
    m_desktop->movePointer({1500, 100});
    QVERIFY(waitFor([&] { return m_desktop->screenshot().copy(upper) == before.copy(upper); }));
    m_desktop->key(XK_Escape);
    QVERIFY(m_program->waitForState(u"Idle"_s));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == about; }));
}

// While something scrolls, Escape pressed in another window is for that one, and the first one
// that is not gives the keyboard back at once.
void TestHelper::keysGoWhereTheUserGoes()
{
    // xfwm4 gives the focus back to a window when the wheel is turned over it.
    QVERIFY(startDesktop(s_openbox));
    QProcess *other = m_desktop->startPattern({20, 20, 200, 100});
    QVERIFY(other);
    // Which takes longer than the user does.
    QVERIFY(startLong(4 * s_longRows));
    m_desktop->movePointer(m_viewport.center());
    QVERIFY(openPick(*m_desktop, *m_program));
    QVERIFY(startScrolling());
    const auto hearsEscape = [&] {
        m_desktop->key(XK_Escape);
        return waitFor([&] { return other->readAll().contains("key 16777216"); });
    };
    QVERIFY(waitFor([&] { return m_desktop->isTaken(XK_Escape); }));
    m_desktop->click({100, 100});
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
    QVERIFY(waitFor([&] { return !m_desktop->isTaken(XK_Escape); }));
    QVERIFY(hearsEscape());
    QCOMPARE(m_program->grabState(), u"Scrolling"_s);
    m_desktop->click(m_viewport.topLeft() + QPoint(5, 5));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"long"; }));
    QVERIFY(waitFor([&] { return m_desktop->isTaken(XK_Escape); }));
    m_desktop->key(XK_Escape);
    QVERIFY(waitFor([&] { return !m_desktop->isTaken(XK_Escape); }));
    QVERIFY(m_program->waitForState(u"Ending"_s));
    m_desktop->click({100, 100});
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
    QVERIFY(hearsEscape());
    QVERIFY(m_program->waitForState(u"Idle"_s, s_captureLimit));
    QCOMPARE(m_program->mainWindow().title, s_idleTitle);
}

QTEST_GUILESS_MAIN(TestHelper)
#include "test_helper.moc"
