// The bridge to the capture helper: statuses, the folder, and the question before a grab.

#include "helper/helperserver.h"
#include "rows.h"
#include "shell/capturebridge.h"
#include "shell/grabflow.h"
#include "shellfixture.h"

#include <cerrno>
#include <cwchar>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class TestCaptureBridge : public ShellTest
{
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        qputenv("XDG_CACHE_HOME", m_scratch->folder.path().toUtf8());
        wcscpy(g_AppName, L"Our Name");
        m_window->show();
        Ax_Shared_hlp = AXProjectAppDelegate::sharedDelegate();
    }

    void cleanup() { finish(); }

    void finished()
    {
        const QString folder = GWSnapWorkbenchGetTempPath();
        const QString path = folder + u"/picture.png"_s;
        QVERIFY(solid({30, 20}).save(path));
        m_window->showMinimized();
        say(5, path.toUtf8(), 0, "It ends at row 20.");
        QCOMPARE(tabs()->count(), 1);
        QVERIFY(!m_window->isMinimized());
        QCOMPARE(told(), u"It ends at row 20."_s);
        QVERIFY(!QFile::exists(path));
        QVERIFY(!QFile::exists(folder));
        // One that is gone opens no tab, and the user is told.
        say(5, path.toUtf8());
        QCOMPARE(tabs()->count(), 1);
        QVERIFY(told() != u"It ends at row 20."_s);
    }

    // A caller who waits for the picture hears of it before the grab ends.
    void failureIsTold()
    {
        QStringList heard;
        connect(&m_window->grabs(), &GrabFlow::failed, this,
                [&](const QString &reason) { heard.append(reason); });
        connect(&m_window->grabs(), &GrabFlow::over, this, [&] { heard.append(u"over"_s); });
        m_window->grabs().press(GrabCommand::Menu);
        press(u"Continue"_s);
        say(7, {}, 12, "no such window");
        QCOMPARE(m_asked, u"Alert|SnapWorkbench is Failing: no such window: 12"_s);
        QCOMPARE(heard, (QStringList{u"no such window"_s, u"over"_s}));
        // A grab that found nothing is told without a box.
        say(7, {}, 2, "nothing there");
        QCOMPARE(told(), u"nothing there"_s);
    }

    void folder()
    {
        const QString parent = at(u"Brenvale Snap Workbench"_s);
        const QString expected = parent + u"/AXTempDrawing"_s;
        const auto mode = [](const QString &path) {
            struct stat state {
            };
            return stat(QFile::encodeName(path).constData(), &state) == 0 ? state.st_mode & 07777
                                                                          : 0;
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

        // What is not the user's alone: no grab starts, nothing is asked, the user is told, and
        // nothing is removed there.
        const QString other = at(u"other"_s);
        QVERIFY(QDir().mkpath(other + u"/AXTempDrawing"_s));
        QVERIFY(QFile(other + u"/AXTempDrawing/kept"_s).open(QIODevice::WriteOnly));
        const auto isRefused = [&](const QString &reason) {
            GWSnapWorkbenchRemoveTempFiles();
            const bool isTold = !GWSnapWorkbenchStartCapture() && m_asked.isEmpty() &&
                                told().contains(u"%1, can't be used: %2"_s.arg(expected, reason));
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

    void asks()
    {
        // Whether a grab goes on, and whether the scrolling areas can be asked for then.
        const auto after = [this](bool enabled, bool prompt, const QString &button) {
            m_desktop->accessibility->enabled = enabled;
            m_asked.clear();
            if (!button.isNull())
                press(button);
            const bool goesOn =
                GWSnapWorkbenchTestClientStatus(static_cast<signed char>(prompt)) == 1;
            expect("asked", m_asked.isEmpty(), button.isNull());
            // Or the frame could be picked.
            expect("frames left", m_desktop->windows->list.isEmpty(), true);
            return std::pair(goesOn, m_desktop->accessibility->enabled);
        };
        expect("enabled", after(true, true, {}), {true, true});
        expect("not to be asked", after(false, false, {}), {true, false});
        expect("no", after(false, true, u"No"_s), {true, false});
        expect("enable", after(false, true, u"Enable Scroll Capture"_s), {false, true});
        expect("closed", after(false, true, u"none of them"_s), {true, false});
    }

private:
    /// What the helper says.
    static void say(int status, const QByteArray &path = {}, int number = 0,
                    const char *text = nullptr)
    {
        GWCaptureStatusCallback(nullptr, status, path.isNull() ? nullptr : path.constData(), number,
                                text);
    }
    /// Presses a button of the message box that opens next, or closes it; keeps its text.
    void press(const QString &button)
    {
        whenUp<QMessageBox>([this, button](QMessageBox &box) {
            constexpr int frame = 7;
            m_asked = box.text() + u'|' + box.informativeText();
            QCOMPARE(box.windowTitle(), u"Our Name"_s);
            // Its frame stays for a moment after it.
            m_desktop->ownWindows->numbers[&box] = frame;
            m_desktop->windows->list = {{.entry = {.number = frame}}};
            m_desktop->clock->after(40, this, [this] { m_desktop->windows->list.clear(); });
            for (QAbstractButton *candidate : box.buttons()) {
                if (candidate->text() == button)
                    return candidate->click();
            }
            box.close();
        });
    }
};

QTEST_MAIN(TestCaptureBridge)
#include "test_capturebridge.moc"
