// What a start makes of the files that it finds, with real files, real ends of the process, and
// kills at any moment; also of a picture that is being saved.

#include "snapworkbench.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace {

// The value of one setting tells where a resource file comes from.
const QString s_key = u"ScreenTimer"_s;
const QString s_own = u"7"_s;
const QString s_fromBackup = u"8"_s;
const QString s_shipped = u"3"_s;

constexpr int s_allKills = 200;
constexpr int s_kills = 21;
constexpr int s_killWindow = 200;  // milliseconds; longer than a start takes to prove its file

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

using Damage = void (*)(const QString &path);

void leave(const QString &) {}
void removeIt(const QString &path) { QVERIFY(QFile::remove(path)); }
void emptyIt(const QString &path) { write(path, {}); }
void cutIt(const QString &path) { write(path, read(path).left(2000)); }
void garble(const QString &path) { write(path, "\x7f\x45\x4c\x46 no XML at all"); }
void withoutVersion(const QString &path) { write(path, read(path).replace("ver=\"1\"", "")); }
void older(const QString &path) { write(path, read(path).replace("ver=\"1\"", "ver=\"0\"")); }
void newer(const QString &path) { write(path, read(path).replace("ver=\"1\"", "ver=\"99\"")); }
void makeReadOnly(const QString &path) { QVERIFY(QFile::setPermissions(path, QFile::ReadOwner)); }
void putFolder(const QString &path)
{
    removeIt(path);
    QVERIFY(QDir().mkpath(path + u"/kept"_s));
}

}  // namespace

Q_DECLARE_METATYPE(Damage)

class TestStartup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void states_data();
    void states();
    void killsAtAnyMoment();
    void windowAndSettingsComeBack();

private:
    /// Starts until the window is there. The number of starts that it took; -1 when it never was.
    int startsUntilUp(SnapWorkbench &program);

    std::unique_ptr<TestDesktop> m_desktop;
};

void TestStartup::initTestCase()
{
    m_desktop = std::make_unique<TestDesktop>(TestDesktop::Options{.windowManager = {}});
    QVERIFY(m_desktop->isReady());
}

void TestStartup::init()
{
    QVERIFY(QDir(SnapWorkbench(*m_desktop).dataFolder()).removeRecursively());
}

int TestStartup::startsUntilUp(SnapWorkbench &program)
{
    for (int starts = 1; starts <= 3; ++starts) {
        QProcess *process = program.start();
        const bool decided = waitFor([&] {
            return process->state() == QProcess::NotRunning || program.mainWindow().viewable;
        });
        if (!decided)
            return -1;
        if (process->state() == QProcess::Running)
            return starts;
        // It ended abnormally, and at the next start the marker will tell.
        if (process->exitStatus() != QProcess::CrashExit || !QFile::exists(program.markerFile()))
            return -1;
    }
    return -1;
}

void TestStartup::states_data()
{
    QTest::addColumn<bool>("marker");
    QTest::addColumn<Damage>("damage");
    QTest::addColumn<bool>("backup");
    QTest::addColumn<int>("starts");
    QTest::addColumn<QString>("outcome");
    QTest::newRow("kept") << false << Damage(leave) << true << 1 << s_own;
    QTest::newRow("kept, no backup") << false << Damage(leave) << false << 1 << s_own;
    QTest::newRow("kept, read-only") << false << Damage(makeReadOnly) << true << 1 << s_own;
    QTest::newRow("kept, newer") << false << Damage(newer) << true << 1 << s_own;
    QTest::newRow("older") << false << Damage(older) << true << 1 << s_own;
    QTest::newRow("no version") << false << Damage(withoutVersion) << true << 1 << s_own;
    QTest::newRow("missing") << false << Damage(removeIt) << true << 1 << s_fromBackup;
    QTest::newRow("missing, no backup") << false << Damage(removeIt) << false << 1 << s_shipped;
    QTest::newRow("empty") << false << Damage(emptyIt) << true << 1 << s_fromBackup;
    QTest::newRow("empty, no backup") << false << Damage(emptyIt) << false << 1 << s_shipped;
    QTest::newRow("cut short") << false << Damage(cutIt) << true << 2 << s_fromBackup;
    QTest::newRow("not XML, no backup") << false << Damage(garble) << false << 2 << s_shipped;
    QTest::newRow("folder") << false << Damage(putFolder) << true << 1 << s_fromBackup;
    QTest::newRow("folder, no backup") << false << Damage(putFolder) << false << 1 << s_shipped;
    QTest::newRow("marker") << true << Damage(leave) << true << 1 << s_fromBackup;
    QTest::newRow("marker, not XML") << true << Damage(garble) << true << 1 << s_fromBackup;
    QTest::newRow("marker, no backup") << true << Damage(leave) << false << 1 << s_own;
}

void TestStartup::states()
{
    QFETCH(bool, marker);
    QFETCH(Damage, damage);
    QFETCH(bool, backup);
    QFETCH(int, starts);
    QFETCH(QString, outcome);
    SnapWorkbench program(*m_desktop);
    program.writeSettings({{s_key, s_fromBackup}});
    if (backup)
        QVERIFY(QFile::copy(program.resourceFile(), program.backupFile()));
    program.writeSettings({{s_key, s_own}});
    damage(program.resourceFile());
    if (marker)
        write(program.markerFile(), {});

    QCOMPARE(startsUntilUp(program), starts);
    QVERIFY(!QFile::exists(program.markerFile()));
    QCOMPARE(program.setting(s_key), outcome);
    QCOMPARE(program.setting(s_key, program.backupFile()), outcome);
    QVERIFY(program.quit());
    QCOMPARE(program.setting(s_key), outcome);
    QCOMPARE(program.process()->exitCode(), 0);
    // A folder that stood in the way has been moved, with all that is in it.
    const QDir data(program.dataFolder());
    const QStringList aside = data.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(aside.size(), damage == putFolder ? 1 : 0);
    for (const QString &folder : aside)
        QVERIFY(QFileInfo(data.filePath(folder) + u"/kept"_s).isDir());
}

// While it starts, and while it ends.
void TestStartup::killsAtAnyMoment()
{
    SnapWorkbench program(*m_desktop);
    std::mt19937 random(20261121);
    const int kills = qEnvironmentVariableIsSet("SNAP_LONG") ? s_allKills : s_kills;
    for (int kill = 0; kill < kills; ++kill) {
        program.writeSettings({{s_key, s_own}});
        QFile::remove(program.backupFile());
        QVERIFY(QFile::copy(program.resourceFile(), program.backupFile()));
        if (kill % 2 == 0) {
            program.start();
        } else {
            QCOMPARE(startsUntilUp(program), 1);
            m_desktop->closeWindow(program.mainWindow());
        }
        QElapsedTimer timer;
        timer.start();
        const qint64 moment = static_cast<qint64>(random() % s_killWindow);
        while (timer.elapsed() < moment) {
        }
        program.process()->kill();
        QVERIFY(waitFor([&] { return program.process()->state() == QProcess::NotRunning; }));
        // A good file whose backup still stands is never lost, whenever the end came.
        QCOMPARE(startsUntilUp(program), 1);
        QCOMPARE(program.setting(s_key), s_own);
        QVERIFY(!QFile::exists(program.markerFile()));
        QVERIFY(program.quit());
    }
    QCOMPARE(QDir(program.dataFolder()).entryList(QDir::Files).size(), 2);
}

void TestStartup::windowAndSettingsComeBack()
{
    SnapWorkbench program(*m_desktop);
    QVERIFY(program.startAndWait());
    const QRect area(33, 44, 1011, 707);
    QVERIFY(waitFor([&] { return program.mainWindow().viewable; }));
    m_desktop->placeWindow(program.mainWindow(), area);
    QVERIFY(waitFor([&] { return program.mainWindow().area == area; }));
    QVERIFY(program.quit());
    QCOMPARE(program.setting(u"WindowLeft"_s), u"33"_s);
    QCOMPARE(program.setting(u"WindowMaxed"_s), u"0"_s);
    QVERIFY(program.startAndWait());
    QVERIFY(waitFor([&] { return program.mainWindow().area == area; }));

    // A window as large as the screen comes back so, and the size before is remembered.
    const QRect whole(0, 0, 1600, 1000);
    m_desktop->placeWindow(program.mainWindow(), whole);
    QVERIFY(waitFor([&] { return program.mainWindow().area == whole; }));
    QVERIFY(program.quit());
    QCOMPARE(program.setting(u"WindowMaxed"_s), u"1"_s);
    QCOMPARE(program.setting(u"WindowWidth"_s), u"1011"_s);
    QVERIFY(program.startAndWait());
    QVERIFY(waitFor([&] { return program.mainWindow().area == whole; }));
    QVERIFY(program.quit());
}

QTEST_GUILESS_MAIN(TestStartup)
#include "test_startup.moc"
