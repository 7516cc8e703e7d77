// The program among the others of the desktop: started twice, called over the session bus, and what
// it leaves to others.

#include "pattern.h"
#include "snapworkbench.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTest>
#include <QUrl>

#include <csignal>

#include <X11/keysym.h>

using namespace Qt::StringLiterals;

namespace {

const QString s_title = u"Snap Workbench"_s;
const QMap<QString, QString> s_noBus{{u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s}};

bool isRunning(const QProcess *process) { return process->state() != QProcess::NotRunning; }

// The desktop's messages; keeps the last one's text.
class Notifications : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QString text{};

public slots:
    uint Notify(const QString &, uint, const QString &, const QString &, const QString &body,
                const QStringList &, const QVariantMap &, int)
    {
        text = body;
        return 1;
    }
};

}  // namespace

class TestCitizen : public DesktopTest
{
    Q_OBJECT

private slots:
    void cleanup() { finish(); }

    void secondStart()
    {
        const auto check = [this](const char *row, const Values &first, const Values &second,
                                  bool comesForward) {
            QVERIFY(
                begin({.row = row, .settings = {{u"RunMinimized"_s, u"1"_s}}, .variables = first}));
            const QProcess *running = m_program->process();
            QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));
            QVERIFY(!m_program->mainWindow().viewable);
            // A start that leads to nothing is no success.
            QVERIFY(endsWith(m_program->start(second), comesForward ? 0 : 1));
            QVERIFY(isRunning(running));
            QVERIFY(!comesForward || waitFor([&] { return m_desktop->activeTitle() == s_title; }));
            QVERIFY(m_program->mainWindow().viewable == comesForward);
        };
        check("bus", {}, {}, true);
        check("no bus", s_noBus, s_noBus, false);
        check("bus for the second only", s_noBus, {}, false);
    }

    void startsInTheSameInstant()
    {
        const auto check = [this](const char *row, const Values &variables, bool canLock) {
            QVERIFY(begin({.row = row}) && m_program->quit());
            QVERIFY(QDir(m_program->dataFolder()).removeRecursively());
            if (!canLock)
                QVERIFY(QDir().mkpath(m_program->dataFolder() + u"/.lock"_s));
            for (int round = 0; round < 3; ++round) {
                QList<QProcess *> processes;
                for (int i = 0; i < 5; ++i)
                    processes.append(m_program->start(variables));
                QVERIFY(waitFor([&] {
                    return m_program->mainWindow().viewable &&
                           std::count_if(processes.begin(), processes.end(), isRunning) == 1;
                }));
                QVERIFY(!QFile::exists(m_program->markerFile()));
                const auto first = std::find_if(processes.begin(), processes.end(), isRunning);
                m_desktop->closeWindow(m_program->mainWindow());
                const bool canAsk = variables.isEmpty();
                for (QProcess *process : processes)
                    QVERIFY(endsWith(process, canAsk || process == *first ? 0 : 1));
            }
        };
        check("bus", {}, true);
        check("no bus", s_noBus, true);
        check("nothing can be locked", {}, false);
    }

    // Whichever way the race goes, a start that follows "Quit" leaves a program.
    void startWhileTheFirstEnds()
    {
        QVERIFY(begin());
        for (int round = 0; round < 4; ++round) {
            QProcess *first = m_program->process();
            QVERIFY(waitFor([&] { return m_program->mainWindow().viewable; }));
            m_desktop->closeWindow(m_program->mainWindow());
            QTest::qWait(15 * round);  // another moment of the end each time
            QProcess *second = m_program->start();
            QVERIFY(endsWith(first, 0));
            QVERIFY(waitFor([&] { return m_program->mainWindow().viewable; }));
            QVERIFY(isRunning(second));
        }
    }

    // Who started it is told why nothing comes.
    void firstDoesNotAnswer()
    {
        QVERIFY(begin());
        const QString address = m_desktop->environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s);
        QDBusConnection bus = QDBusConnection::connectToBus(address, u"notifications"_s);
        Notifications notifications;
        QVERIFY(bus.registerObject(u"/org/freedesktop/Notifications"_s, &notifications,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(u"org.freedesktop.Notifications"_s));
        const auto first = static_cast<pid_t>(m_program->process()->processId());
        QCOMPARE(kill(first, SIGSTOP), 0);
        const auto goOn = qScopeGuard([first] { kill(first, SIGCONT); });
        QVERIFY(endsWith(m_program->start(), 1));
        QVERIFY(waitFor([&] { return notifications.text.contains(u"does not answer"_s); }));
        QDBusConnection::disconnectFromBus(bus.name());
    }

    // With a picture that has not been saved, and after a dialog that another toolkit has shown.
    void busEnds()
    {
        QVERIFY(begin({.variables = {{u"QT_QPA_PLATFORMTHEME"_s, u"gtk3"_s}}}));
        const auto isInFront = [&] { return m_desktop->activeTitle() == s_title; };
        QVERIFY(waitFor(isInFront));
        const QString address = m_desktop->environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s);
        QDBusConnection bus = QDBusConnection::connectToBus(address, u"names"_s);
        const auto names = [&] { return bus.interface()->registeredServiceNames().value().size(); };
        const qsizetype before = names();
        m_desktop->key(XK_o, {XK_Control_L});
        QVERIFY(waitFor([&] { return !isInFront() && names() > before; }));
        m_desktop->key(XK_Escape);
        QVERIFY(waitFor(isInFront));
        QVERIFY(grab());
        QDBusConnection::disconnectFromBus(bus.name());
        m_desktop->endBus();
        hotKey(XK_s);
        QVERIFY(isTitled(u"untitled 1 *"_s));
        QVERIFY(isRunning(m_program->process()));
    }

    void calledOverTheBus()
    {
        QVERIFY(begin({.settings = {{u"AutoShow"_s, u"1"_s},
                                    {u"RunMinimized"_s, u"1"_s},
                                    {u"ScreenTimer"_s, u"1"_s}}}));
        QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));
        QVERIFY(m_program->activate(u"capture-polygon"_s) && m_program->waitForState(u"Marking"_s));
        // A second start brings no window into the picture.
        QVERIFY(endsWith(m_program->start(), 0));
        QVERIFY(m_program->hasOverlay(s_screen));
        QVERIFY(m_program->activate(u"cancel"_s) && m_program->waitForState(u"Idle"_s));
        QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
        QVERIFY(!m_program->mainWindow().viewable);

        // What is no file is left out.
        const QString path = m_desktop->home() + u"/one two#3.png"_s;
        QVERIFY(pattern({60, 40}).save(path));
        call(u"Open"_s, {QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded),
                                     u"https://www.example.com/x.png"_s},
                         QVariantMap()});
        QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"one two#3.png"); }));
        m_desktop->key(XK_w, {XK_Control_L});
        QVERIFY(m_program->waitForTitle(s_title));
        m_desktop->key(XK_m, {XK_Control_L});

        QVERIFY(m_program->activate(u"capture-screen"_s) && isTitled(u"untitled *"_s));
        QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"untitled"); }));
        QVERIFY(m_program->activate(u"capture-screen-countdown"_s) && isTitled(u"untitled 1 *"_s));
        QVERIFY(m_program->activate(u"capture-windows"_s) &&
                m_program->waitForState(u"Browsing"_s));
        QVERIFY(!m_program->activate(u"capture-nothing"_s));
    }

    // The picture outlives the program, and who keeps it goes when another program copies
    // something.
    void copiedStays()
    {
        const auto isKept = [&] {
            const QByteArray home = "HOME=" + QFile::encodeName(m_desktop->home());
            const QStringList processes = QDir(u"/proc"_s).entryList(QDir::Dirs);
            return std::any_of(processes.begin(), processes.end(), [&](const QString &process) {
                const QString folder = u"/proc/"_s + process;
                QFile environment(folder + u"/environ"_s);
                return QFile::symLinkTarget(folder + u"/exe"_s)
                           .endsWith(u"/snapworkbench-clipboard"_s) &&
                       environment.open(QIODevice::ReadOnly) &&
                       environment.readAll().split('\0').contains(home);
            });
        };
        QVERIFY(begin());
        QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
        QVERIFY(grab() && m_program->waitForState(u"Idle"_s));
        m_desktop->key(XK_c, {XK_Control_L});
        const QStringList image{u"-t"_s, u"image/png"_s, u"-o"_s};
        QImage copied;
        QVERIFY(waitFor([&] { return copied.loadFromData(xclip(image)); }));
        QCOMPARE(kill(pid_t(m_program->process()->processId()), SIGTERM), 0);
        QVERIFY(endsWith(m_program->process(), 0));
        QVERIFY(isKept());
        QCOMPARE(QImage::fromData(xclip(image)), copied);
        xclip({u"-i"_s}, "something else");
        QVERIFY(waitFor([&] { return !isKept(); }));
        QCOMPARE(xclip({u"-o"_s}), QByteArray("something else"));
    }

private:
    /// Calls a method of the running program; waits for its answer.
    QDBusMessage call(const QString &method, const QVariantList &arguments)
    {
        return m_program->call(u"org.freedesktop.Application"_s, method, arguments);
    }
    static bool endsWith(const QProcess *process, int exitCode)
    {
        return waitFor([&] { return !isRunning(process); }) &&
               process->exitStatus() == QProcess::NormalExit && process->exitCode() == exitCode;
    }
};

QTEST_GUILESS_MAIN(TestCitizen)
#include "test_citizen.moc"
