// Pictures that are kept above all windows: they are seen pixel for pixel where they were put, are
// in no other picture, and give the keyboard back.

#include "pattern.h"
#include "snapworkbench.h"

#include <QFileInfo>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QRect s_pattern(203, 151, 701, 503);
const QRect s_marked(300, 200, 281, 207);

}  // namespace

class TestPins : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    void pin()
    {
        for (const char *scale : {"1", "1.5"}) {
            const bool isPlain = scale == QByteArray("1");
            QVERIFY(begin({.row = scale,
                           .desktop = {.windowManager = s_openbox,
                                       .compositor = isPlain ? s_picom : QStringList()},
                           .settings = {{u"RunMinimized"_s, u"1"_s},
                                        {u"AutoHide"_s, u"1"_s},
                                        {u"ShowMagnification"_s, u"0"_s},
                                        {u"KeepPins"_s, u"1"_s},
                                        {u"AfterGrab.6"_s, u"4"_s},
                                        {u"PictureName"_s, u"{counter}"_s}},
                           .variables = {{u"QT_SCALE_FACTOR"_s, QString::fromLatin1(scale)}}}));
            QVERIFY(m_desktop->startPattern(s_pattern));
            QVERIFY(pinMarked());
            QVERIFY(waitFor([&] { return shows(s_marked.topLeft()); }));

            // Moved partly off the window that it is of.
            const QPoint by(517, 331);
            const QPoint there = s_marked.topLeft() + by;
            QVERIFY(m_desktop->drag(s_marked.center(), s_marked.center() + by,
                                    [&] { return shows(there); }));
            const QImage before = m_desktop->screenshot();

            hotKey('s');
            const QString path = m_desktop->home() + u"/Pictures/1.png"_s;
            QVERIFY(waitFor([&] { return QFileInfo(path).size() > 0; }));
            QVERIFY(m_program->waitForState(u"Idle"_s));
            QVERIFY(waitFor([&] { return shows(there); }));
            const QImage taken = QImage(path).convertToFormat(QImage::Format_RGB32);
            QCOMPARE(taken.copy(s_pattern), pattern(s_pattern.size()));
            const QPoint beside(s_pattern.right() + 50, there.y() + 100);
            QVERIFY(QRect(there, s_marked.size()).contains(beside));
            QVERIFY(taken.pixel(beside) != before.pixel(beside));

            // By keys; it is there again after a restart, as it was.
            QVERIFY(m_desktop->waitForFocus(found()));
            m_desktop->key(XK_Left);
            m_desktop->key(XK_Up, {XK_Shift_L});
            const QPoint moved = there - QPoint(1, 10);
            QVERIFY(waitFor([&] { return shows(moved); }));
            QVERIFY(m_program->quit());
            QVERIFY(waitFor([&] { return found().id == XCB_NONE; }));
            QVERIFY(m_program->startAndWait());
            QVERIFY(waitFor([&] { return shows(moved); }));

            m_desktop->click(moved + QPoint(50, 50));
            QVERIFY(m_desktop->waitForFocus(found()));
            m_desktop->key(XK_Escape);
            QVERIFY(waitFor([&] { return found().id == XCB_NONE; }));
            QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
        }
    }

private:
    bool pinMarked()
    {
        if (!m_program->openOverlay(s_screen))
            return false;
        const QPoint inside = s_marked.center();
        const QRgb colour = patternAt(inside);
        if (!waitFor([&] { return isDimmed(m_desktop->pixel(inside), colour); }) ||
            !m_desktop->drag(s_marked.topLeft(), s_marked.bottomRight() + QPoint(1, 1),
                             [&] { return isLit(m_desktop->pixel(inside), colour); }))
            return false;
        m_desktop->key('p');
        return waitFor([this] { return found().viewable; }) && m_program->waitForState(u"Idle"_s);
    }
    TestDesktop::Window found()
    {
        return m_desktop->find(
            [](const TestDesktop::Window &window) { return window.title == u"Pinned picture"; });
    }
    static QRgb patternAt(QPoint at)
    {
        return pattern(s_pattern.size()).pixel(at - s_pattern.topLeft());
    }
    // Whether the picture is to be seen, whole, with its corner there.
    bool shows(QPoint corner)
    {
        return m_desktop->screenshot({corner, s_marked.size()}) ==
               pattern(s_pattern.size()).copy(s_marked.translated(-s_pattern.topLeft()));
    }
};

QTEST_GUILESS_MAIN(TestPins)
#include "test_pins.moc"
