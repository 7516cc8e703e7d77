// The program on KWin, which asks of programs what they may do, and tells them more than others: of
// windows that are covered, and of keys that are pressed elsewhere.

#include "kwindesktop.h"
#include "longpicture.h"
#include "pattern.h"
#include "platform/wayland/kwinhotkeys.h"
#include "snapprogram.h"

#include <QDBusMessage>
#include <QTest>

#include <algorithm>

#include <linux/input-event-codes.h>

using namespace Qt::StringLiterals;

namespace {

const QString s_title = u"Snap Workbench"_s;
const QRect s_pattern(140, 60, 402, 304);

QImage withAlpha(const QImage &image) { return image.convertToFormat(QImage::Format_ARGB32); }

}  // namespace

class TestKWin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString lack = KWinDesktop::lack();
        if (lack.isEmpty())
            return;
        QVERIFY2(!qEnvironmentVariableIsSet("SNAP_NO_SKIP"), qPrintable(lack));
        QSKIP(qPrintable(lack));
    }
    void cleanup() { finish(); }

    // By the keys that KWin hears, in front of another program; one that is taken starts nothing.
    void rectangle()
    {
        const auto check = [this](const char *row, const KWinDesktop::Options &options) {
            qInfo("%s", row);
            QVERIFY(begin(options));
            QVERIFY(m_kwin->startPattern(s_pattern));
            m_kwin->key(KEY_R, {KEY_LEFTCTRL, KEY_LEFTALT});
            QVERIFY(isOpen(u"Marking"_s, options.outputs));
            const QRect marked(s_pattern.topLeft() + QPoint(20, 30), QSize(200, 150));
            QVERIFY(mark(marked, options.scale));
            QVERIFY(leaves(u"Marking"_s, KEY_ENTER) && isTaken());
            const QRect pixels((marked.topLeft() - s_pattern.topLeft()) * options.scale,
                               marked.size() * options.scale);
            QCOMPARE(copied(), withAlpha(pattern(s_pattern.size() * options.scale).copy(pixels)));
        };
        check("two outputs", {.outputs = 2});
        check("scale 2", {.scale = 2});
    }

    void takenKey()
    {
        m_kwin = std::make_unique<KWinDesktop>(KWinDesktop::Options());
        QVERIFY(m_kwin->isReady());
        // Another program has the first one already.
        QVERIFY(registerElsewhere(Qt::CTRL | Qt::ALT | Qt::Key_R));
        int heard = 0;
        KWinHotKeys keys(m_kwin->bus());
        keys.setNames([](int number) {
            return HotKeys::Name{u"test-%1"_s.arg(number), u"Test"_s};
        });
        keys.setHandler([&](int number) { heard = number; });
        keys.add(1, Qt::CTRL | Qt::ALT | Qt::Key_R);
        keys.add(2, Qt::CTRL | Qt::ALT | Qt::Key_E);
        QVERIFY(waitFor([&] { return keys.keysOf(2) == u"Ctrl+Alt+E"; }));
        QVERIFY(keys.keysOf(1).isEmpty());
        m_kwin->key(KEY_R, {KEY_LEFTCTRL, KEY_LEFTALT});
        m_kwin->key(KEY_E, {KEY_LEFTCTRL, KEY_LEFTALT});
        QVERIFY(waitFor([&] { return heard != 0; }));
        QCOMPARE(heard, 2);
        // What the user chooses counts from then on, also against what the next start begins with.
        keys.change(2, Qt::SHIFT | Qt::Key_Print);
        QVERIFY(waitFor([&] { return keys.keysOf(2) == u"Shift+Print"; }));
        heard = 0;
        m_kwin->key(KEY_SYSRQ, {KEY_LEFTSHIFT});
        QVERIFY(waitFor([&] { return heard == 2; }));
        keys.remove(2);
        keys.add(2, Qt::CTRL | Qt::ALT | Qt::Key_E);
        QVERIFY(waitFor([&] { return keys.keysOf(2) == u"Shift+Print"; }));
    }

    // All of a window, whatever covers it; and what scrolls in one, by the wheel.
    void windows()
    {
        constexpr int rows = 2000;
        const QRect lower(100, 100, 402, 304);
        const QRect upper(300, 50, 602, 404);
        QVERIFY(begin({}) && m_kwin->startPattern(lower));
        QProcess *other = m_kwin->startLong(upper, rows);
        QVERIFY(other && isQuestionAnswered());
        const QPoint inLower(200, 200);
        QVERIFY(openPick(lower, inLower, pattern(lower.size())));
        m_kwin->click(inLower);
        QVERIFY(isTaken());
        QCOMPARE(copied(), withAlpha(pattern(lower.size())));

        QVERIFY(m_kwin->activate(u"long"_s));
        const int width = other->readLine().simplified().split(' ').value(3).toInt();
        const QImage whole = longPicture({width, rows});
        QVERIFY(openPick(upper, upper.center(), whole));
        m_kwin->key(KEY_ENTER);
        QVERIFY(m_program->waitForState(u"Scrolling"_s) && isTaken(1));
        QCOMPARE(copied(), withAlpha(whole));
    }

    // Without an entry that asks for it there is no picture, but a word; and as soon as KWin knows
    // of one there is.
    void notAllowed()
    {
        QVERIFY(begin({.isProgramKnown = false}));
        const QImage before = m_kwin->picture();
        QVERIFY(m_program->activate(u"capture-screen"_s));
        QVERIFY(waitFor([&] { return m_kwin->picture() != before; }));
        QVERIFY(m_program->waitForState(u"Idle"_s) && m_kwin->isActive(s_title));
        m_kwin->allowProgram();
        QVERIFY(waitFor([&] {
            return m_program->activate(u"capture-rectangle"_s) &&
                   m_program->waitForState(u"Marking"_s, 500);
        }));
    }

private:
    bool begin(const KWinDesktop::Options &options)
    {
        finish();
        m_kwin = std::make_unique<KWinDesktop>(options);
        m_program = std::make_unique<SnapProgram>(*m_kwin);
        m_program->writeSettings({{u"ShowMagnification"_s, u"0"_s}});
        return m_kwin->isReady() && m_program->start() &&
               waitFor([&] { return m_kwin->isActive(s_title); });
    }
    void finish()
    {
        m_program.reset();
        m_kwin.reset();
    }
    bool isOpen(const QString &state, qsizetype panes = 1)
    {
        return m_program->waitForState(state) && waitFor([&] {
                   const auto windows = m_kwin->windows();
                   return std::count_if(windows.begin(), windows.end(), [&](const auto &window) {
                              return window.isFullscreen &&
                                     window.pid == m_program->process()->processId();
                          }) == panes;
               });
    }
    /// Opens the pick, and waits until it has the window at `area`, which shows `content`, under
    /// the pointer.
    bool openPick(const QRect &area, QPoint at, const QImage &content)
    {
        const QPoint beside = at - QPoint(20, 20);
        const QRgb plain = content.pixel(beside - area.topLeft());
        if (!m_program->activate(u"capture-window"_s) || !isOpen(u"Picking"_s))
            return false;
        m_kwin->movePointer(at);
        return waitFor([&] {
            const QRgb tinted = m_kwin->picture().pixel(beside);
            return qAbs(qRed(tinted) - qRed(plain) * 155 / 255) < 3 &&
                   qAbs(qGreen(tinted) - qGreen(plain) * 155 / 255) < 3;
        });
    }
    /// Drags over an area of the pattern.
    bool mark(const QRect &area, int scale)
    {
        const QPoint inside = (area.topLeft() + QPoint(40, 30)) * scale;
        const QImage before = m_kwin->picture();
        return m_kwin->drag(
            area.topLeft(), area.topLeft() + QPoint(area.width(), area.height()),
            [&] { return m_kwin->picture().pixel(inside) != before.pixel(inside); });
    }
    /// Waits for the end of a grab with the picture of that number, and for its window.
    bool isTaken(int number = 0)
    {
        const QString name = number == 0 ? u"untitled"_s : u"untitled %1"_s.arg(number);
        const QString title = name + u" * - Snap Workbench"_s;
        return waitFor([&] {
                   return m_kwin->has([&](const auto &window) { return window.title == title; });
               }) &&
               m_program->waitForState(u"Idle"_s) && m_kwin->activate(title);
    }
    /// Presses a key until it is heard and ends that state.
    bool leaves(const QString &state, uint32_t code)
    {
        return waitFor([&] {
            m_kwin->key(code);
            return waitFor([&] { return m_program->grabState() != state; }, 500);
        });
    }
    /// The first pick asks whether to look into other programs.
    bool isQuestionAnswered()
    {
        return m_program->activate(u"capture-window"_s) && m_program->waitForState(u"Asking"_s) &&
               leaves(u"Asking"_s, KEY_ESC) && m_program->waitForState(u"Picking"_s) &&
               leaves(u"Picking"_s, KEY_ESC) && m_program->waitForState(u"Idle"_s);
    }
    QImage copied()
    {
        m_kwin->run(u"wl-copy"_s, {u"--clear"_s});
        QImage image;
        waitFor([&] {
            m_kwin->key(KEY_C, {KEY_LEFTCTRL});
            image = m_kwin->pasted();
            return !image.isNull();
        });
        return image;
    }
    bool registerElsewhere(QKeyCombination keys)
    {
        const QStringList name{u"elsewhere"_s, u"act"_s, u"Elsewhere"_s, u"Act"_s};
        const auto call = [this](const QString &method, const QVariantList &arguments) {
            QDBusMessage message = QDBusMessage::createMethodCall(
                u"org.kde.kglobalaccel"_s, u"/kglobalaccel"_s, u"org.kde.KGlobalAccel"_s, method);
            message.setArguments(arguments);
            return m_kwin->bus().call(message).type() == QDBusMessage::ReplyMessage;
        };
        const QVariant sequence = QVariant::fromValue(QList<int>{keys.toCombined()});
        return call(u"doRegister"_s, {name}) && call(u"setShortcut"_s, {name, sequence, 2U});
    }

    std::unique_ptr<KWinDesktop> m_kwin;
    std::unique_ptr<SnapProgram> m_program;
};

QTEST_GUILESS_MAIN(TestKWin)
#include "test_kwin.moc"
