// The program among the others of the desktop: started twice, called over the session bus, started
// at login.

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
const QRect s_screen(0, 0, 1600, 1000);
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

class TestCitizen : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void secondStart_data();
    void secondStart();
    void startsInTheSameInstant_data();
    void startsInTheSameInstant();
    void startWhileTheFirstEnds();
    void firstDoesNotAnswer();
    void openedPictures();
    void busEnds_data();
    void busEnds();
    void copiedStays();
    void overlayActions_data();
    void overlayActions();
    void otherActions();
    void translatedMenu();
    void helpPages();
    void loginItem();

private:
    /// Calls a method of the running program; waits for its answer.
    QDBusMessage call(const QString &method, const QVariantList &arguments);
    QDBusMessage activateAction(const QString &name);
    bool waitForEnd(QProcess *process, int exitCode = 0);

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
};

void TestCitizen::init()
{
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{});
    QVERIFY(m_desktop->isReady());
    m_program = std::make_unique<SnapWorkbench>(*m_desktop);
}

void TestCitizen::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

QDBusMessage TestCitizen::call(const QString &method, const QVariantList &arguments)
{
    return m_program->call(u"org.freedesktop.Application"_s, method, arguments);
}

QDBusMessage TestCitizen::activateAction(const QString &name)
{
    return call(u"ActivateAction"_s, {name, QVariantList(), QVariantMap()});
}

bool TestCitizen::waitForEnd(QProcess *process, int exitCode)
{
    return waitFor([&] { return !isRunning(process); }) &&
           process->exitStatus() == QProcess::NormalExit && process->exitCode() == exitCode;
}

void TestCitizen::secondStart_data()
{
    QTest::addColumn<QMap<QString, QString>>("first");
    QTest::addColumn<QMap<QString, QString>>("second");
    QTest::addColumn<bool>("comesForward");
    const QMap<QString, QString> bus;
    QTest::newRow("bus") << bus << bus << true;
    QTest::newRow("no bus") << s_noBus << s_noBus << false;
    QTest::newRow("bus for the second only") << s_noBus << bus << false;
}

void TestCitizen::secondStart()
{
    using Variables = QMap<QString, QString>;
    QFETCH(Variables, first);
    QFETCH(Variables, second);
    QFETCH(bool, comesForward);
    m_program->writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(m_program->startAndWait(first));
    const QProcess *running = m_program->process();
    QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));
    QVERIFY(!m_program->mainWindow().viewable);

    // A start that leads to nothing is no success.
    QVERIFY(waitForEnd(m_program->start(second), comesForward ? 0 : 1));
    QVERIFY(isRunning(running));
    if (comesForward)
        QVERIFY(waitFor([&] { return m_desktop->activeTitle() == s_title; }));
    QCOMPARE(m_program->mainWindow().viewable, comesForward);
}

void TestCitizen::startsInTheSameInstant_data()
{
    QTest::addColumn<QMap<QString, QString>>("variables");
    QTest::addColumn<bool>("canLock");
    QTest::newRow("bus") << QMap<QString, QString>() << true;
    QTest::newRow("no bus") << s_noBus << true;
    QTest::newRow("nothing can be locked") << QMap<QString, QString>() << false;
}

void TestCitizen::startsInTheSameInstant()
{
    using Variables = QMap<QString, QString>;
    QFETCH(Variables, variables);
    QFETCH(bool, canLock);
    if (!canLock)
        QVERIFY(QDir().mkpath(m_program->dataFolder() + u"/.lock"_s));
    for (int round = 0; round < 3; ++round) {
        QList<QProcess *> processes;
        for (int i = 0; i < 5; ++i)
            processes.append(m_program->start(variables));
        const auto running = [&] {
            return std::count_if(processes.begin(), processes.end(), isRunning);
        };
        QVERIFY(waitFor([&] { return running() == 1 && m_program->mainWindow().viewable; }));
        QVERIFY(!QFile::exists(m_program->markerFile()));
        const auto first = std::find_if(processes.begin(), processes.end(), isRunning);
        m_desktop->closeWindow(m_program->mainWindow());
        const bool canAsk = variables.isEmpty();
        for (QProcess *process : processes)
            QVERIFY(waitForEnd(process, canAsk || process == *first ? 0 : 1));
    }
}

// Whichever way the race goes, a start that follows "Quit" leaves a program.
void TestCitizen::startWhileTheFirstEnds()
{
    QVERIFY(m_program->startAndWait());
    for (int round = 0; round < 4; ++round) {
        QProcess *first = m_program->process();
        QVERIFY(waitFor([&] { return m_program->mainWindow().viewable; }));
        m_desktop->closeWindow(m_program->mainWindow());
        QTest::qWait(15 * round);  // another moment of the end each time
        QProcess *second = m_program->start();
        QVERIFY(waitForEnd(first));
        QVERIFY(waitFor([&] { return m_program->mainWindow().viewable; }));
        QVERIFY(isRunning(second));
    }
}

// Who started it is told why nothing comes.
void TestCitizen::firstDoesNotAnswer()
{
    QVERIFY(m_program->startAndWait());
    const QString address = m_desktop->environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s);
    QDBusConnection bus = QDBusConnection::connectToBus(address, u"notifications"_s);
    Notifications notifications;
    QVERIFY(bus.registerObject(u"/org/freedesktop/Notifications"_s, &notifications,
                               QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(u"org.freedesktop.Notifications"_s));
    const auto first = static_cast<pid_t>(m_program->process()->processId());
    QCOMPARE(kill(first, SIGSTOP), 0);
    const auto goOn = qScopeGuard([first] { kill(first, SIGCONT); });

    QProcess second;
    second.setProcessEnvironment(m_desktop->environment());
    second.start(SnapWorkbench::program(), QStringList());
    QVERIFY(waitForEnd(&second, 1));
    const QString told = QString::fromLocal8Bit(second.readAllStandardError());
    QVERIFY2(told.contains(u"does not answer"_s), qPrintable(told));
    QVERIFY(waitFor([&] { return notifications.text.contains(u"does not answer"_s); }));
    QDBusConnection::disconnectFromBus(bus.name());
}

void TestCitizen::openedPictures()
{
    const QString one = m_desktop->home() + u"/one two#3.png"_s;
    const QString other = m_desktop->home() + u"/other.png"_s;
    for (const QString &path : {one, other})
        QVERIFY(pattern({60, 40}).save(path));
    const auto open = [&](const QStringList &uris) {
        return call(u"Open"_s, {uris, QVariantMap()}).type();
    };
    const QString oneUri = QUrl::fromLocalFile(one).toString(QUrl::FullyEncoded);
    const QString otherUri = QUrl::fromLocalFile(other).toString(QUrl::FullyEncoded);
    QVERIFY(m_program->startAndWait());
    QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));

    QCOMPARE(open({oneUri, otherUri, u"https://www.example.com/x.png"_s}),
             QDBusMessage::ReplyMessage);
    const QString oneTitle = u"one two#3.png - "_s + s_title;
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == oneTitle; }));
    // What is open already is only shown: two tabs, then none after two closings.
    QCOMPARE(open({otherUri}), QDBusMessage::ReplyMessage);
    QVERIFY(m_program->waitForTitle(u"other.png - "_s + s_title));
    m_desktop->key(XK_w, {XK_Control_L});
    QVERIFY(m_program->waitForTitle(oneTitle));
    m_desktop->key(XK_w, {XK_Control_L});
    QVERIFY(m_program->waitForTitle(s_title));
}

void TestCitizen::busEnds_data()
{
    QTest::addColumn<QString>("dialogs");
    QTest::newRow("dialogs of our toolkit") << QString();
    QTest::newRow("GTK's dialogs") << u"gtk3"_s;
}

// With a picture that has not been saved.
void TestCitizen::busEnds()
{
    QFETCH(QString, dialogs);
    QVERIFY(m_program->startAndWait({{u"QT_QPA_PLATFORMTHEME"_s, dialogs}}));
    const auto isInFront = [&] { return m_desktop->activeTitle() == s_title; };
    QVERIFY(waitFor(isInFront));
    const QString address = m_desktop->environment().value(u"DBUS_SESSION_BUS_ADDRESS"_s);
    QDBusConnection bus = QDBusConnection::connectToBus(address, u"names"_s);
    const auto names = [&] { return bus.interface()->registeredServiceNames().value().size(); };
    const qsizetype before = names();
    m_desktop->key(XK_o, {XK_Control_L});
    QVERIFY(waitFor([&] { return !isInFront() && (dialogs.isEmpty() || names() > before); }));
    m_desktop->key(XK_Escape);
    QVERIFY(waitFor(isInFront));
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    QVERIFY(m_program->waitForTitle(u"untitled * - "_s + s_title));

    QDBusConnection::disconnectFromBus(bus.name());
    m_desktop->endBus();
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    QVERIFY(m_program->waitForTitle(u"untitled 1 * - "_s + s_title));
    QVERIFY(isRunning(m_program->process()));
}

void TestCitizen::overlayActions_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("litInTheMiddle");
    QTest::addColumn<bool>("litInTheCorner");
    QTest::newRow("rectangle") << u"capture-rectangle"_s << true << true;
    QTest::newRow("ellipse") << u"capture-ellipse"_s << true << false;
    QTest::newRow("polygon") << u"capture-polygon"_s << false << false;
}

void TestCitizen::overlayActions()
{
    QFETCH(QString, action);
    QFETCH(bool, litInTheMiddle);
    QFETCH(bool, litInTheCorner);
    m_program->writeSettings({{u"RunMinimized"_s, u"1"_s}});
    QVERIFY(m_program->startAndWait());
    const QRect area(300, 200, 700, 500);
    QVERIFY(m_desktop->startPattern(area));
    const QImage expected = pattern(area.size());
    // An overlay leaves six tenths of the light at the most outside what is marked.
    const auto isLit = [&](QPoint at) {
        return qGreen(m_desktop->pixel(at)) > 0.75 * qGreen(expected.pixel(at - area.topLeft()));
    };
    QCOMPARE(activateAction(action).type(), QDBusMessage::ReplyMessage);
    QVERIFY(waitFor([&] { return m_program->hasOverlay(s_screen); }));
    const QPoint middle(520, 431);
    const QPoint corner(427, 336);
    QVERIFY(waitFor([&] { return !isLit(middle) && !isLit(corner); }));
    QVERIFY(m_desktop->drag({420, 330}, {640, 560}, [&] {
        return isLit(middle) == litInTheMiddle && isLit(corner) == litInTheCorner;
    }));

    // A second start brings no window into the picture.
    QVERIFY(waitForEnd(m_program->start()));
    QVERIFY(m_program->hasOverlay(s_screen));
    m_desktop->key(XK_Escape);
    QVERIFY(waitFor([&] { return !m_program->hasOverlay(s_screen); }));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == u"pattern"; }));
    QVERIFY(!m_program->mainWindow().viewable);
}

void TestCitizen::otherActions()
{
    m_program->writeSettings({{u"AutoShow"_s, u"1"_s}, {u"ScreenTimer"_s, u"1"_s}});
    QVERIFY(m_program->startAndWait());
    QVERIFY(m_desktop->startPattern({300, 200, 700, 500}));
    QCOMPARE(activateAction(u"capture-screen"_s).type(), QDBusMessage::ReplyMessage);
    QVERIFY(m_program->waitForTitle(u"untitled * - "_s + s_title));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle().startsWith(u"untitled"); }));
    QCOMPARE(activateAction(u"capture-screen-countdown"_s).type(), QDBusMessage::ReplyMessage);
    QVERIFY(m_program->waitForTitle(u"untitled 1 * - "_s + s_title));

    const QList<TestDesktop::Window> before = m_desktop->windows();
    QCOMPARE(activateAction(u"capture-windows"_s).type(), QDBusMessage::ReplyMessage);
    const TestDesktop::Window browser = m_desktop->waitForNewWindow(before);
    QVERIFY(browser.id != XCB_NONE);
    QVERIFY(m_desktop->waitForFocus(browser));
    m_desktop->key(XK_Escape);

    QCOMPARE(activateAction(u"capture-nothing"_s).type(), QDBusMessage::ErrorMessage);
}

// A grab is told by its item's text, whatever the language.
void TestCitizen::translatedMenu()
{
    QVERIFY(m_program->startAndWait({{u"LC_ALL"_s, u"de_DE.UTF-8"_s}}));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == s_title; }));
    const auto popUps = [&] {
        const QList<TestDesktop::Window> windows = m_desktop->windows();
        return std::count_if(windows.begin(), windows.end(), [](const TestDesktop::Window &window) {
            return window.viewable && window.overrideRedirect;
        });
    };
    const auto before = popUps();
    m_desktop->key(XK_a, {XK_Alt_L});  // Aufnahme
    QVERIFY(waitFor([&] { return popUps() > before; }));
    m_desktop->key(XK_Return);
    QVERIFY(waitFor([&] { return m_program->hasOverlay(s_screen); }));
    m_desktop->key(XK_Escape);
    QVERIFY(waitFor([&] { return !m_program->hasOverlay(s_screen); }));
}

void TestCitizen::helpPages()
{
    // What opens addresses on a desktop; this one only notes them.
    const QString noted = m_desktop->home() + u"/noted"_s;
    QFile opener(m_desktop->home() + u"/xdg-open"_s);
    QVERIFY(opener.open(QIODevice::WriteOnly));
    opener.write("#!/bin/sh\nprintf %s \"$1\" >'" + noted.toLocal8Bit() + "'\n");
    opener.close();
    QVERIFY(opener.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    QVERIFY(m_program->startAndWait(
        {{u"PATH"_s, m_desktop->home() + u':' + qEnvironmentVariable("PATH")}}));
    QVERIFY(waitFor([&] { return m_desktop->activeTitle() == s_title; }));
    m_desktop->key(XK_F1);
    QFile file(noted);
    QVERIFY(waitFor([&] { return file.size() > 0; }));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString page = QUrl(QString::fromLocal8Bit(file.readAll())).toLocalFile();
    QVERIFY2(page.endsWith(u"/index.html"_s) && QFile::exists(page), qPrintable(page));
}

void TestCitizen::loginItem()
{
    const QString folder = m_desktop->home() + u"/config/autostart"_s;
    const QString entry = folder + u"/snapworkbench.desktop"_s;
    const auto startOnceWith = [&](const QString &setting) {
        m_program->writeSettings({{u"FirstRun"_s, setting}});
        return m_program->startAndWait() && m_program->quit() &&
               m_program->setting(u"FirstRun"_s) == setting;
    };
    QVERIFY(startOnceWith(u"1"_s));
    QVERIFY(QFile::exists(entry));
    // Taken away elsewhere, it comes back.
    QVERIFY(QFile::remove(entry));
    QVERIFY(startOnceWith(u"1"_s));
    QVERIFY(QFile::exists(entry));
    QVERIFY(startOnceWith(u"0"_s));
    QVERIFY(!QFile::exists(entry));

    // A folder that can't be written, for root neither.
    QVERIFY(QDir().rmdir(folder));
    QFile inTheWay(folder);
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    for (const QString &setting : {u"1"_s, u"0"_s})
        QVERIFY(startOnceWith(setting));
}

// The picture outlives the program, and who keeps it goes when another program copies something.
void TestCitizen::copiedStays()
{
    const auto xclip = [this](const QStringList &arguments, const QByteArray &input = {}) {
        QProcess process;
        process.setProcessEnvironment(m_desktop->environment());
        process.start(u"xclip"_s, QStringList{u"-selection"_s, u"clipboard"_s} + arguments);
        process.write(input);
        process.closeWriteChannel();
        // One that copies leaves a process behind that holds the output open.
        return process.waitForFinished() && input.isEmpty() ? process.readAll() : QByteArray();
    };
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
    QVERIFY(m_program->startAndWait());
    QVERIFY(m_desktop->waitForFocus(m_program->mainWindow()));
    m_desktop->key(XK_s, {XK_Control_L, XK_Alt_L});
    QVERIFY(m_program->waitForTitle(u"untitled * - Snap Workbench"_s));
    QVERIFY(m_program->waitForState(u"Idle"_s));
    m_desktop->key(XK_c, {XK_Control_L});
    const QStringList image{u"-t"_s, u"image/png"_s, u"-o"_s};
    QImage copied;
    QVERIFY(waitFor([&] { return copied.loadFromData(xclip(image)); }));
    QCOMPARE(kill(pid_t(m_program->process()->processId()), SIGTERM), 0);
    QVERIFY(waitForEnd(m_program->process()));
    QVERIFY(isKept());
    QCOMPARE(QImage::fromData(xclip(image)), copied);
    xclip({u"-i"_s}, "something else");
    QVERIFY(waitFor([&] { return !isKept(); }));
    QCOMPARE(xclip({u"-o"_s}), QByteArray("something else"));
}

QTEST_GUILESS_MAIN(TestCitizen)
#include "test_citizen.moc"
