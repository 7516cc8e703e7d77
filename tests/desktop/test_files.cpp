// Opening, saving and closing through the real dialogs, by the keyboard.

#include "pattern.h"
#include "snapworkbench.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

class TestFiles : public DesktopTest
{
    Q_OBJECT

private slots:
    void init()
    {
        QVERIFY(begin({.settings = {{u"AutoShow"_s, u"1"_s}}}));
        QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"Snap Workbench"; }));
    }
    void cleanup() { finish(); }

    void saved()
    {
        QVERIFY(QDir().mkpath(m_desktop->home() + u"/Pictures"_s));
        // What lies around it may still change while it is taken.
        const QRect area(203, 151, 701, 503);
        QVERIFY(m_desktop->startPattern(area));
        QVERIFY(grab());
        QVERIFY(openDialog(XK_s, {XK_Control_L}));
        QVERIFY(m_program->confirm(u"untitled.png - Snap Workbench"_s));
        const QString first = m_desktop->home() + u"/Pictures/untitled.png"_s;
        const QImage screen(first);
        QCOMPARE(screen.copy(area).convertToFormat(QImage::Format_RGB32), pattern(area.size()));
        // A saved picture is saved again without a question.
        QVERIFY(QFile::remove(first));
        m_desktop->key(XK_s, {XK_Control_L});
        QVERIFY(waitFor([&] { return QImage(first) == screen; }));
        QVERIFY(openDialog(XK_s, {XK_Control_L, XK_Shift_L}));
        m_desktop->type(at(u"b.jpg"_s));
        QVERIFY(m_program->confirm(u"b.jpg - Snap Workbench"_s));
        const QImage jpeg(at(u"b.jpg"_s));
        QCOMPARE(jpeg.size(), screen.size());
        QVERIFY(qAbs(qGreen(jpeg.pixel(20, 20)) - qGreen(screen.pixel(20, 20))) < 12);

        // What can't be written there is written elsewhere, from the bar that says so. The folder
        // takes no file from anyone, root included, and has none either: the dialog looks into
        // those that it lists to tell their types, and a kernel log among them, as /proc has it,
        // keeps root's program waiting.
        QVERIFY(openDialog(XK_s, {XK_Control_L, XK_Shift_L}));
        m_desktop->type(u"/sys/a.png"_s);
        QVERIFY(dismiss(XK_Return) && m_desktop->waitForFocus(m_program->mainWindow()));
        const QRect window = m_program->mainWindow().area;
        const QPoint bar(window.center().x(), window.bottom() - 108);
        QVERIFY(waitFor([&] { return m_desktop->pixel(bar) == qRgb(35, 40, 45); }));
        QVERIFY(openDialog(XK_a, {XK_Alt_L}));
        // The ending that the filter adds does not get round the question about a file that is
        // there already.
        QFile file(at(u"v1.2.jpg"_s));
        QVERIFY(file.open(QIODevice::ReadWrite) && file.write("mine") && file.flush());
        m_desktop->type(at(u"v1.2"_s));
        const QList<TestDesktop::Window> before = m_desktop->windows();
        m_dialog = {};
        for (int press = 0; press < 20 && m_dialog.id == XCB_NONE; ++press) {
            m_desktop->key(XK_Return);
            m_dialog = m_desktop->waitForNewWindow(before, 1000);
        }
        QVERIFY(m_dialog.id != XCB_NONE);
        QVERIFY(dismiss(XK_Escape));
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), QByteArray("mine"));
    }

    void opened()
    {
        QVERIFY(pattern({300, 200}).save(at(u"good.png"_s)));
        QFile bad(at(u"bad.png"_s));
        QVERIFY(bad.open(QIODevice::WriteOnly) && bad.write("no picture") && bad.flush());
        // Opened once more, a file is only shown.
        for (const auto &name : {u"good.png"_s, u"bad.png"_s, u"good.png"_s}) {
            QVERIFY(
                waitFor([&] { return m_desktop->activeTitle() == m_program->mainWindow().title; }));
            QVERIFY(openDialog(XK_o, {XK_Control_L}));
            m_desktop->type(at(name));
            QVERIFY(dismiss(XK_Return) && isTitled(name));
        }
        QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"good.png"); }));
        m_desktop->key(XK_w, {XK_Control_L});
        QVERIFY(isTitled(u"bad.png"_s));
        m_desktop->key(XK_w, {XK_Control_L});
        QVERIFY(m_program->waitForTitle(u"Snap Workbench"_s));
        QVERIFY(m_program->quit());
        QCOMPARE(m_program->setting(u"MediaDir"_s), m_desktop->home());
    }

private:
    QString at(const QString &name) const { return m_desktop->home() + u'/' + name; }
};

QTEST_GUILESS_MAIN(TestFiles)
#include "test_files.moc"
