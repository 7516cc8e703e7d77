// The main job on real desktops: hot key, rectangle, picture, file.

#include "pattern.h"
#include "snapworkbench.h"

#include <QTest>

#include <X11/keysym.h>

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
                                  const QRect &area = s_patternArea) {
            QVERIFY(begin({.row = row,
                           .desktop = options,
                           .settings = {{u"RunMinimized"_s, u"1"_s},
                                        {u"AutoShow"_s, u"1"_s},
                                        {u"ShowMagnification"_s, u"0"_s}},
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
            QVERIFY(m_program->openOverlay(whole));
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
            QVERIFY(!m_program->hasOverlay(whole));
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
        check("scale 2, no compositor", {.windowManager = s_openbox}, scaled(u"2"_s));
        check("144 dpi, no compositor", {.windowManager = s_openbox, .xftDpi = "144"}, {});
        check("192 dpi, two monitors",
              {.windowManager = s_plain, .monitors = s_twoMonitors, .xftDpi = "192"}, {},
              acrossBoth);
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

private:
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
