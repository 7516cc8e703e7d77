// The program in a session: its icon in the tray, and the session's end.

#include "snapworkbench.h"

#include <QTest>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QRect s_screen(0, 0, 1600, 1000);

}  // namespace

class TestSession : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void trayIcon();

private:
    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
};

void TestSession::init()
{
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{});
    QVERIFY(m_desktop->isReady());
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
}

void TestSession::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

// The menu answers the left button as the right one, and its commands work from there.
void TestSession::trayIcon()
{
    QVERIFY(m_desktop->start(
        u"trayer"_s,
        u"--edge top --align left --widthtype pixel --width 120 --height 24"_s.split(u' '),
        m_desktop->environment()));
    QVERIFY(m_program->startAndWait());
    const auto found = [this](const auto &isIt) {
        const QList<TestDesktop::Window> windows = m_desktop->windows();
        const auto window = std::find_if(windows.begin(), windows.end(), isIt);
        return window == windows.end() ? QRect() : window->area;
    };
    const auto isIcon = [](const TestDesktop::Window &window) {
        return window.viewable && window.title == u"SnapWorkbench"_s && window.area.width() > 10;
    };
    QVERIFY(waitFor([&] { return found(isIcon).isValid(); }));
    const QPoint at = found(isIcon).center();
    const auto isMenu = [&](const TestDesktop::Window &window) {
        return window.viewable && window.overrideRedirect && window.area.height() > 100 &&
               window.area.adjusted(-1, -1, 1, 1).contains(at);
    };
    for (const int button : {1, 3}) {
        QVERIFY(!found(isMenu).isValid());
        m_desktop->click(at, button);
        QVERIFY(waitFor([&] { return found(isMenu).isValid(); }));
        m_desktop->key(XK_Escape);
        QVERIFY(waitFor([&] { return !found(isMenu).isValid(); }));
    }
    m_desktop->click(at);
    QVERIFY(waitFor([&] { return found(isMenu).isValid(); }));
    m_desktop->key(XK_Down);
    m_desktop->key(XK_Return);
    QVERIFY(waitFor([&] { return m_program->hasOverlay(s_screen); }));
    m_desktop->key(XK_Escape);
    QVERIFY(waitFor([&] { return !m_program->hasOverlay(s_screen); }));
}

QTEST_GUILESS_MAIN(TestSession)
#include "test_session.moc"
