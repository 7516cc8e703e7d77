// What the helper tells whoever started it, and what it leaves behind.

#include "fakedesktop.h"
#include "helper/helperserver.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Status {
    int code = 0;
    QString path{};
    int failure = 0;
    QString text{};
};
QList<Status> s_told;

void listen(void *, int status, const char *path, int failure, const char *text)
{
    s_told.append({status, QString::fromUtf8(path), failure, QString::fromUtf8(text)});
}

QList<int> codes()
{
    QList<int> result;
    for (const Status &status : s_told)
        result.append(status.code);
    return result;
}

}  // namespace

class TestHelperServer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void permission();  // first: the answer holds for the whole run
    void menu();
    void folderGone();
    void stopped();
    void stoppedAtOnce();
    void oneAtATime();
    void closedWhileWaiting();

private:
    /// What has been told once there are so many statuses, or ten seconds have passed.
    QList<int> heard(qsizetype count)
    {
        waitUntil(*m_desktop->clock, 10000, [count] { return s_told.size() >= count; });
        return codes();
    }
    QByteArray folder() const { return m_folder->path().toUtf8(); }

    std::unique_ptr<FakeDesktop> m_desktop;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestHelperServer::init()
{
    m_desktop = std::make_unique<FakeDesktop>();
    m_desktop->windows->list = {{.entry = {.number = 5,
                                           .bounds = QRectF(100, 100, 60, 80),
                                           .process = 9,
                                           .kind = WindowCatalogue::Kind::Menu},
                                 .color = Qt::red}};
    m_folder = std::make_unique<QTemporaryDir>();
    s_told.clear();
    GWSnapWorkbenchStartMessageServer(listen);
}

// However a grab ended, the keys are the user's again.
void TestHelperServer::cleanup()
{
    GWSnapWorkbenchStartMessageServer(nullptr);
    QCoreApplication::processEvents();
    QVERIFY(m_desktop->keys->watched.isEmpty());
}

void TestHelperServer::menu()
{
    m_desktop->hands->pointerPos = {120, 120};
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    // Nothing comes but through the event loop.
    QVERIFY(s_told.isEmpty());
    QCOMPARE(heard(2), QList<int>({4, 5}));
    const QImage picture(s_told.last().path);
    QCOMPARE(picture.size(), QSize(60, 80));
    QVERIFY(picture.hasAlphaChannel());
    QCOMPARE(picture.pixelColor(30, 40), QColor(Qt::red));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    QVERIFY(!(QFile::permissions(s_told.last().path) & (QFile::ReadGroup | QFile::ReadOther)));
}

void TestHelperServer::folderGone()
{
    m_desktop->hands->pointerPos = {120, 120};
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    m_folder->remove();
    QCOMPARE(heard(2), QList<int>({4, 7}));
    QVERIFY(s_told.last().failure != 0);
    QVERIFY(!s_told.last().text.isEmpty());
    QVERIFY(!QFile::exists(m_folder->path()));
}

void TestHelperServer::stopped()
{
    GWSnapWorkbenchStopMenuItemCapture();
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    QCOMPARE(heard(1), QList<int>({4}));
    GWSnapWorkbenchStopMenuItemCapture();
    GWSnapWorkbenchStopMenuItemCapture();
    QCOMPARE(heard(2), QList<int>({4, 6}));
    // A new one can be started, and is heard of.
    m_desktop->hands->pointerPos = {120, 120};
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    QCOMPARE(heard(4), QList<int>({4, 6, 4, 5}));
}

// Two hot keys that are read together.
void TestHelperServer::stoppedAtOnce()
{
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    GWSnapWorkbenchStopMenuItemCapture();
    QCOMPARE(heard(2), QList<int>({4, 6}));
    QVERIFY(m_desktop->keys->watched.isEmpty());
    // No overlay opens for what is given up before.
    GWSnapWorkbenchStartSessionCapture(folder().constData());
    GWSnapWorkbenchGiveUp();
    QCOMPARE(heard(4), QList<int>({4, 6, 4, 6}));
}

void TestHelperServer::oneAtATime()
{
    m_desktop->hands->pointerPos = {120, 120};
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    GWSnapWorkbenchStartMenuItemCapture(nullptr);
    QCOMPARE(heard(2), QList<int>({4, 5}));
    m_desktop->clock->advance(5000);
    QCOMPARE(s_told.size(), 2);
}

void TestHelperServer::closedWhileWaiting()
{
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    GWSnapWorkbenchStartMessageServer(nullptr);
    QCoreApplication::processEvents();
    QVERIFY(s_told.isEmpty());
    // Without anybody to tell nothing starts.
    GWSnapWorkbenchStartMenuItemCapture(folder().constData());
    GWSnapWorkbenchStartSessionCapture(folder().constData());
    GWSnapWorkbenchStopMenuItemCapture();
    QCoreApplication::processEvents();
    QVERIFY(s_told.isEmpty());
}

void TestHelperServer::permission()
{
    QVERIFY(!GWSnapWorkbenchIsEnableAccessibilty());
    bool answered = true;
    QCOMPARE(GWSnapWorkbenchTestProcessTrusted(&answered), 0);
    QVERIFY(!answered);
    GWSnapWorkbenchMakeProcessTrusted();
    QVERIFY(GWSnapWorkbenchIsEnableAccessibilty());
    QVERIFY(GWSnapWorkbenchTestProcessTrusted(nullptr) != 0);
    // A session that starts without the permission is the answer "No", for the whole run.
    m_desktop->accessibility->enabled = false;
    GWSnapWorkbenchStartMessageServer(nullptr);
    GWSnapWorkbenchStartSessionCapture(folder().constData());
    QCOMPARE(GWSnapWorkbenchTestProcessTrusted(&answered), 0);
    QVERIFY(answered);
}

QTEST_MAIN(TestHelperServer)
#include "test_helperserver.moc"
