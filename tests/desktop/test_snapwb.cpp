// What scripts see of the program: the commands of snapwb, their exit codes, and the pictures that
// they get.

#include "pattern.h"
#include "snapworkbench.h"

#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <csignal>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

class TestSnapWb : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    // The program is not running at first, and of all that is refused nothing is started.
    void fromNothingToAFile()
    {
        QVERIFY(begin() && m_program->quit());
        QCOMPARE(run({u"state"_s}), 3);
        const QList<QStringList> wrong{
            {},
            {u"grab"_s},
            {u"grab"_s, u"everything"_s},
            {u"grab"_s, u"screen"_s, u"--output"_s, at(u"a.jpg"_s)},
            {u"grab"_s, u"screen"_s, u"--delay"_s, u"soon"_s},
            {u"grab"_s, u"screen"_s, u"--delay"_s, u"-1"_s},
            {u"grab"_s, u"screen"_s, u"--delay"_s, u"1"_s, u"--delay"_s, u"2"_s},
            {u"grab"_s, u"screen"_s, u"window"_s},
            {u"grab"_s, u"screen"_s, u"--force"_s},
            {u"grab"_s, u"screen"_s, u"--output"_s, at(u"a.png"_s), u"--output"_s, at(u"b.png"_s)},
            {u"open"_s},
            {u"state"_s, u"--copy"_s},
            {u"state"_s, u"now"_s}};
        for (const QStringList &arguments : wrong)
            QVERIFY2(run(arguments) == 2, qPrintable(arguments.join(u' ')));
        QVERIFY(isTold("\"now\""));
        QCOMPARE(run({u"open"_s, at(u"none.png"_s)}), 3);
        QCOMPARE(run({u"state"_s}), 3);

        const QString path = at(u"picture.png"_s);
        QCOMPARE(run({u"grab"_s, u"screen"_s, u"--output"_s, path}), 0);
        // Its window has stayed out of the picture.
        QImage empty(s_screen.size(), QImage::Format_RGB32);
        empty.fill(m_desktop->pixel({0, 0}));
        QCOMPARE(picture(path), empty);
        QCOMPARE(run({u"state"_s}), 0);
        QCOMPARE(m_output, "Idle\n");
        QCOMPARE(run({u"open"_s, path}), 0);
        QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"picture.png"); }));
        // The same the second time, when it has a tab.
        QFile text(at(u"text.png"_s));
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("text") == 4);
        text.close();
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(run({u"open"_s, path, text.fileName()}), 3);
            QVERIFY(isTold("text.png"));
        }
        QCOMPARE(run({u"grab"_s, u"screen"_s, u"--output"_s, m_desktop->home()}), 3);
        QVERIFY(isTold("folder"));
        m_desktop->closeWindow(m_program->mainWindow());
        QVERIFY(waitFor([&] { return run({u"state"_s}) == 3; }));

        // The program takes the names of files at any start, the first and the second.
        for (const QString &name : {u"first.png"_s, u"second.png"_s}) {
            QVERIFY(pattern({60, 40}).save(at(name), "PNG"));
            m_desktop->start(SnapProgram::program(), {at(name)}, m_desktop->environment());
            QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(name); }));
        }
    }

    void pictures()
    {
        QVERIFY(begin({.settings = {{u"RunMinimized"_s, u"1"_s}}}));
        QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));
        const QImage before = shown();
        const QString path = at(u"picture.png"_s);
        const QStringList grab{u"grab"_s, u"screen"_s, u"--output"_s, path};
        QCOMPARE(run(grab), 0);
        QCOMPARE(picture(path), before);

        QCOMPARE(run({u"grab"_s, u"screen"_s, u"--output"_s, u"-"_s}), 0);
        QCOMPARE(QImage::fromData(m_output).convertToFormat(QImage::Format_RGB32), before);

        m_desktop->movePointer({600, 400});
        QCOMPARE(run({u"grab"_s, u"monitor"_s, u"--pointer"_s, u"--output"_s, at(u"2.png"_s)}), 0);
        QCOMPARE(picture(at(u"2.png"_s)).copy(0, 0, 300, 1000), before.copy(0, 0, 300, 1000));
        QVERIFY(picture(at(u"2.png"_s)) != before);
        QCOMPARE(run({u"grab"_s, u"active"_s, u"--output"_s, at(u"3.png"_s)}), 0);
        QCOMPARE(picture(at(u"3.png"_s)), before.copy(300, 200, 700, 500));

        // The user chooses it, once they have answered the question before.
        const auto windows = m_desktop->windows();
        QProcess *picking = start({u"grab"_s, u"window"_s, u"--output"_s, at(u"4.png"_s)});
        QVERIFY(m_desktop->waitForFocus(m_desktop->waitForNewWindow(windows)));
        m_desktop->key(XK_Tab);
        m_desktop->key(XK_space);
        QVERIFY(m_program->waitForState(u"Picking"_s));
        QVERIFY(waitFor([&] { return shown().pixel(400, 300) != before.pixel(400, 300); }));
        m_desktop->click({600, 400});
        QVERIFY(endsWith(picking, 0) && m_program->waitForState(u"Idle"_s));
        QCOMPARE(picture(at(u"4.png"_s)), before.copy(300, 200, 700, 500));
        QVERIFY(!m_program->mainWindow().viewable);

        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write("mine") == 4);
        file.close();
        QCOMPARE(run(grab), 3);
        QCOMPARE(QFileInfo(path).size(), 4);
        QCOMPARE(run(grab + QStringList{u"--force"_s}), 0);
        QCOMPARE(picture(path), before);

        QCOMPARE(run({u"grab"_s, u"screen"_s}), 0);
        QVERIFY(isTitled(u"untitled *"_s));
    }

    void anArea()
    {
        QVERIFY(begin({.settings = {{u"RunMinimized"_s, u"1"_s}}}));
        QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));
        const QImage before = shown().copy(400, 300, 90, 60);
        const QPoint inside(450, 330);
        const QRgb plain = m_desktop->pixel(inside);
        const QString path = at(u"picture.png"_s);
        const QStringList grab{u"grab"_s, u"region"_s, u"--output"_s, path};

        QCOMPARE(run({u"grab"_s, u"last"_s}), 3);
        QProcess *marking = start(grab);
        QVERIFY(m_program->waitForState(u"Marking"_s));
        QVERIFY(m_program->hasOverlay(s_screen));
        m_desktop->key(XK_Escape);
        QVERIFY(endsWith(marking, 1) && m_program->waitForState(u"Idle"_s));

        marking = start(grab);
        QVERIFY(m_program->waitForState(u"Marking"_s) && m_program->hasOverlay(s_screen));
        QCOMPARE(kill(pid_t(marking->processId()), SIGINT), 0);
        QVERIFY(endsWith(marking, 1) && m_program->waitForState(u"Idle"_s));
        QVERIFY(waitFor([this] { return isClear(); }) && !QFile::exists(path));

        marking = start(grab);
        QVERIFY(m_program->waitForState(u"Marking"_s) && m_program->hasOverlay(s_screen));
        QVERIFY(waitFor([&] { return m_desktop->pixel(inside) != plain; }));
        const QRgb dimmed = m_desktop->pixel(inside);
        QVERIFY(m_desktop->drag({400, 300}, {490, 360},
                                [&] { return m_desktop->pixel(inside) != dimmed; }));
        m_desktop->key(XK_Return);
        QVERIFY(endsWith(marking, 0));
        QCOMPARE(picture(path), before);

        // While somebody counts, others are told that they have to wait.
        QProcess *counting =
            start({u"grab"_s, u"last"_s, u"--delay"_s, u"1"_s, u"--output"_s, at(u"again.png"_s)});
        QVERIFY(m_program->waitForState(u"Counting"_s));
        QCOMPARE(run(grab + QStringList{u"--force"_s}), 4);
        QVERIFY(endsWith(counting, 0));
        QCOMPARE(picture(at(u"again.png"_s)), before);
    }

private:
    QString at(const QString &name) const { return m_desktop->home() + u'/' + name; }
    static QImage picture(const QString &path)
    {
        return QImage(path).convertToFormat(QImage::Format_RGB32);
    }
    QImage shown() { return m_desktop->screenshot().convertToFormat(QImage::Format_RGB32); }
    QProcess *start(const QStringList &arguments)
    {
        const QString snapwb = QFileInfo(SnapProgram::program()).path() + u"/snapwb"_s;
        return m_desktop->start(snapwb, arguments, m_desktop->environment(), at(u"told"_s));
    }
    /// The exit code; what it says on standard output is m_output then.
    int run(const QStringList &arguments)
    {
        QProcess *process = start(arguments);
        if (!waitFor([&] { return process->state() == QProcess::NotRunning; }))
            return -1;
        m_output = process->readAllStandardOutput();
        return process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -1;
    }
    /// Of the last one to be started, on standard error.
    bool isTold(const QByteArray &text) const
    {
        QFile file(at(u"told"_s));
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(text);
    }
    static bool endsWith(const QProcess *process, int exitCode)
    {
        return waitFor([&] { return process->state() == QProcess::NotRunning; }) &&
               process->exitStatus() == QProcess::NormalExit && process->exitCode() == exitCode;
    }

    QByteArray m_output;
};

QTEST_GUILESS_MAIN(TestSnapWb)
#include "test_snapwb.moc"
