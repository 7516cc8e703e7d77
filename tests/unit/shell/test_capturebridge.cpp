// The bridge to the capture helper: statuses, the folder, and the question before a grab.

#include "config/applicationrecord.h"
#include "config/settings.h"
#include "config/xmlstore.h"
#include "fakedesktop.h"
#include "helper/helperserver.h"
#include "shell/capturebridge.h"
#include "shell/mainwindow.h"
#include "shell/noticebar.h"

#include <QAbstractButton>
#include <QDir>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <cwchar>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_frame = 7;

}  // namespace

class TestCaptureBridge : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void statuses();
    void finish();
    void failureIsTold();
    void folder();
    void asks_data();
    void asks();

private:
    int tabs() const { return m_window->findChild<QTabWidget *>(u"tabWidget"_s)->count(); }
    /// Presses a button of the message box that opens next, or rejects it; keeps its text.
    void answer(const QString &button);

    std::unique_ptr<FakeDesktop> m_desktop;
    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<MainWindow> m_window;
    QString m_asked;
};

void TestCaptureBridge::init()
{
    m_desktop = std::make_unique<FakeDesktop>();
    m_home = std::make_unique<QTemporaryDir>();
    qputenv("XDG_CACHE_HOME", m_home->path().toUtf8());
    g_ResourceFileName = m_home->filePath(u"SnapWorkbench.xml"_s);
    QFile file(g_ResourceFileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<Galeway ver=\"1\"/>");
    file.close();
    wcscpy(g_AppName, L"Our Name");
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    g_MainWindow = m_window.get();
    Ax_Shared_hlp = AXProjectAppDelegate::sharedDelegate();
    m_asked.clear();
}

void TestCaptureBridge::cleanup()
{
    g_MainWindow = nullptr;
    m_window.reset();
    FreeAllXmlDocument();
}

void TestCaptureBridge::answer(const QString &button)
{
    QTimer::singleShot(0, this, [this, button] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        m_asked = box->text() + u'|' + box->informativeText();
        QCOMPARE(box->windowTitle(), u"Our Name"_s);
        // Its frame stays for a moment after it.
        m_desktop->windows->numbers[box] = s_frame;
        m_desktop->windows->list = {{.entry = {.number = s_frame}}};
        m_desktop->clock->after(40, this, [this] { m_desktop->windows->list.clear(); });
        for (QAbstractButton *candidate : box->buttons()) {
            if (candidate->text() == button) {
                candidate->click();
                return;
            }
        }
        box->close();
    });
}

void TestCaptureBridge::statuses()
{
    m_window->ShowMenuWindow();
    GWCaptureStatusCallback(nullptr, 4, nullptr, 0, nullptr);
    QVERIFY(m_window->isMinimized());
    for (const int unknown : {0, 3, 8, -1})
        GWCaptureStatusCallback(nullptr, unknown, nullptr, 0, nullptr);
    QVERIFY(m_window->isMinimized());
    GWCaptureStatusCallback(nullptr, 6, nullptr, 0, nullptr);
    QVERIFY(!m_window->isMinimized());

    m_window->ShowMenuWindow();
    GWCaptureStatusCallback(nullptr, 4, nullptr, 0, nullptr);
    GWCaptureStatusCallback(nullptr, 5, nullptr, 0, nullptr);
    QVERIFY(!m_window->isMinimized());
    QCOMPARE(tabs(), 0);

    // One that the user minimised is not in the way, and stays so.
    m_window->showMinimized();
    m_window->ShowMenuWindow();
    GWCaptureStatusCallback(nullptr, 4, nullptr, 0, nullptr);
    GWCaptureStatusCallback(nullptr, 6, nullptr, 0, nullptr);
    QVERIFY(m_window->isMinimized());
}

void TestCaptureBridge::finish()
{
    const QString folder = GWSnapWorkbenchGetTempPath();
    const QString path = folder + u"/picture.png"_s;
    QImage picture(30, 20, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QVERIFY(picture.save(path));
    m_window->showMinimized();
    GWCaptureStatusCallback(nullptr, 5, path.toUtf8().constData(), 0, "It ends at row 20.");
    QCOMPARE(tabs(), 1);
    QVERIFY(!m_window->isMinimized());
    QCOMPARE(m_window->findChild<NoticeBar *>()->text(), u"It ends at row 20."_s);
    QVERIFY(!QFile::exists(path));
    QVERIFY(!QFile::exists(folder));
    // One that is gone opens no tab, and the user is told.
    GWCaptureStatusCallback(nullptr, 5, path.toUtf8().constData(), 0, nullptr);
    QCOMPARE(tabs(), 1);
    QVERIFY(m_window->findChild<NoticeBar *>()->text() != u"It ends at row 20."_s);
}

void TestCaptureBridge::failureIsTold()
{
    answer(u"Continue"_s);
    GWCaptureStatusCallback(nullptr, 7, nullptr, 12, "no such window");
    QCOMPARE(m_asked, u"Alert|SnapWorkbench is Failing: no such window: 12"_s);
    // A grab that found nothing is told without a box.
    GWCaptureStatusCallback(nullptr, 7, nullptr, 2, "nothing there");
    QCOMPARE(m_window->findChild<NoticeBar *>()->text(), u"nothing there"_s);
}

void TestCaptureBridge::folder()
{
    const QString parent = m_home->path() + u"/Brenvale Snap Workbench"_s;
    const QString expected = parent + u"/AXTempDrawing"_s;
    const auto mode = [](const QString &path) {
        struct stat state {
        };
        return stat(QFile::encodeName(path).constData(), &state) == 0 ? state.st_mode & 07777 : 0;
    };
    const auto setMode = [](const QString &path, mode_t now) {
        return chmod(QFile::encodeName(path).constData(), now) == 0;
    };
    umask(0);  // others are kept out whatever the user's mask says
    QCOMPARE(GWSnapWorkbenchGetTempPath(), expected);
    umask(022);
    QVERIFY(mode(parent) == 0700 && mode(expected) == 0700);
    QVERIFY(setMode(parent, 0755) && setMode(expected, 0755));
    QVERIFY(QFile(expected + u"/kept"_s).open(QIODevice::WriteOnly));
    QCOMPARE(GWSnapWorkbenchGetTempPath(), expected);
    QVERIFY(mode(parent) == 0700 && mode(expected) == 0700);
    QVERIFY(QFile::exists(expected + u"/kept"_s));

    // What is not the user's alone: no grab starts, nothing is asked, the user is told, and nothing
    // is removed there.
    const QString other = m_home->path() + u"/other"_s;
    QVERIFY(QDir().mkpath(other + u"/AXTempDrawing"_s));
    QVERIFY(QFile(other + u"/AXTempDrawing/kept"_s).open(QIODevice::WriteOnly));
    const auto isRefused = [&](const QString &reason) {
        GWSnapWorkbenchRemoveTempFiles();
        const bool isTold = !GWSnapWorkbenchStartCapture() && m_asked.isEmpty() &&
                            m_window->findChild<NoticeBar *>()->text().contains(
                                u"%1, can't be used: %2"_s.arg(expected, reason));
        return isTold && GWSnapWorkbenchGetTempPath().isNull() && !m_window->isMinimized() &&
               (QFileInfo(parent).isFile() || QFile::exists(expected + u"/kept"_s));
    };
    const QString theirs = u"It belongs to somebody else, or others may write to it."_s;
    for (const QString &open : {parent, expected}) {
        QVERIFY(setMode(open, 0770));
        QVERIFY(isRefused(theirs));
        QVERIFY(setMode(open, 0700));
    }
    if (geteuid() == 0) {
        QCOMPARE(chown(QFile::encodeName(expected).constData(), 1, 1), 0);
        QVERIFY(isRefused(theirs));
        QCOMPARE(chown(QFile::encodeName(expected).constData(), 0, 0), 0);
    }
    GWSnapWorkbenchRemoveTempFiles();
    QVERIFY(!QFile::exists(expected));
    QVERIFY(QFile::link(other + u"/AXTempDrawing"_s, expected));
    QVERIFY(isRefused(qt_error_string(ENOTDIR)));
    QVERIFY(QFile::remove(expected) && QDir().rmdir(parent));
    QVERIFY(QFile::link(other, parent));
    QVERIFY(isRefused(qt_error_string(ENOTDIR)));
    QVERIFY(QFile::remove(parent));
    QVERIFY(QFile(parent).open(QIODevice::WriteOnly));
    QVERIFY(isRefused(qt_error_string(ENOTDIR)));
}

void TestCaptureBridge::asks_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<int>("prompt");
    QTest::addColumn<QString>("button");  // empty: no question comes
    QTest::addColumn<int>("goesOn");
    QTest::addColumn<bool>("enabledAfter");
    // clang-format off
    QTest::newRow("enabled")         << true  << 1 << QString()                  << 1 << true;
    QTest::newRow("not to be asked") << false << 0 << QString()                  << 1 << false;
    QTest::newRow("no")              << false << 1 << u"No"_s                    << 1 << false;
    QTest::newRow("enable")          << false << 1 << u"Enable Scroll Capture"_s << 0 << true;
    QTest::newRow("closed")          << false << 1 << u"closed"_s                << 1 << false;
    // clang-format on
}

void TestCaptureBridge::asks()
{
    QFETCH(bool, enabled);
    QFETCH(int, prompt);
    QFETCH(QString, button);
    m_desktop->accessibility->enabled = enabled;
    if (!button.isEmpty())
        answer(button);
    QTEST(int(GWSnapWorkbenchTestClientStatus(static_cast<signed char>(prompt))), "goesOn");
    QCOMPARE(m_asked.isEmpty(), button.isEmpty());
    QVERIFY(m_desktop->windows->list.isEmpty());  // or the frame could be picked
    QTEST(m_desktop->accessibility->enabled, "enabledAfter");
}

QTEST_MAIN(TestCaptureBridge)
#include "test_capturebridge.moc"
