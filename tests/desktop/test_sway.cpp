// The program on a desktop without X: its window, its grabs and what it leaves to others, with what
// the compositor itself shows as the measure.

#include "snapprogram.h"
#include "swaydesktop.h"

#include <QTest>
#include <QTransform>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString s_first = u"HEADLESS-1"_s;
const QString s_title = u"Snap Workbench"_s;
const QString s_untitled = u"untitled * - Snap Workbench"_s;

}  // namespace

class TestSway : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString lack = SwayDesktop::lack();
        if (lack.isEmpty())
            return;
        QVERIFY2(!qEnvironmentVariableIsSet("SNAP_NO_SKIP"), qPrintable(lack));
        QSKIP(qPrintable(lack));
    }
    void cleanup() { finish(); }

    // The measure itself: what is painted comes back, and input arrives, where it should.
    void desktop()
    {
        const auto check = [this](const char *row, const SwayDesktop::Output &output) {
            qInfo("%s", row);
            m_sway = std::make_unique<SwayDesktop>(QList<SwayDesktop::Output>{{}, output});
            QVERIFY2(m_sway->isReady(), qPrintable(m_sway->said()));
            const QString name = u"HEADLESS-2"_s;
            const QRect screen = m_sway->area(name);
            QCOMPARE(screen.topLeft(), output.position);
            const QRect area(screen.topLeft() + QPoint(80, 60), QSize(402, 304));
            QProcess *other = m_sway->startPattern(area);
            QVERIFY(other);
            m_sway->click(area.topLeft() + QPoint(33, 44));
            m_sway->key(XKB_KEY_x);
            QByteArray heard;
            QVERIFY(waitFor([&] {
                heard += other->readAll();
                return heard.contains("press 33,44\nkey 88\n");
            }));
        };
        check("scale 1", {.position = {1600, 0}});
        check("scale 1.5", {.position = {1600, 0}, .scale = 1.5});
        check("scale 2", {.mode = {3840, 2160}, .position = {1600, 0}, .scale = 2});
        check("turned", {.position = {1600, 0}, .transform = u"90"_s});
        check("turned and mirrored", {.position = {1600, 0}, .transform = u"flipped-270"_s});
    }

    void secondStart()
    {
        QVERIFY(begin());
        const QProcess *second = m_program->start();
        QVERIFY(second && waitFor([&] { return second->state() == QProcess::NotRunning; }));
        QCOMPARE(second->exitCode(), 0);
        QVERIFY(isTitled(s_title));
    }

    // What is taken are the screen's own pixels, whatever its scale.
    void rectangle()
    {
        const auto check = [this](const char *row, const QList<SwayDesktop::Output> &outputs,
                                  const QString &name = s_first) {
            qInfo("%s", row);
            QVERIFY(begin(outputs, {{u"ShowMagnification"_s, u"0"_s}}));
            const QPoint corner = m_sway->area(name).topLeft() + QPoint(40, 60);
            QVERIFY(m_sway->startPattern({corner, QSize(402, 304)}));
            const QRect marked(corner + QPoint(20, 30), QSize(200, 150));
            QVERIFY(openOverlay() && mark(marked));
            m_sway->key(XKB_KEY_Return);
            QVERIFY(isTitled(s_untitled) && m_program->waitForState(u"Idle"_s));
            QCOMPARE(copied(), m_before[name].copy(inPixels(marked)));
        };
        const SwayDesktop::Output second{.position = {1600, 0}, .scale = 2};
        check("scale 1", {{}});
        check("scale 1.5", {{.scale = 1.5}});
        check("scale 2", {{.scale = 2}});
        check("two scales, inside the first", {{}, second});
        check("two scales, inside the second", {{}, second}, u"HEADLESS-2"_s);
    }

private:
    bool begin(const QList<SwayDesktop::Output> &outputs = {{}},
               const QMap<QString, QString> &settings = {})
    {
        finish();
        m_sway = std::make_unique<SwayDesktop>(outputs);
        for (qsizetype i = 1; i <= outputs.size(); ++i)
            m_before[u"HEADLESS-%1"_s.arg(i)] = {};
        m_program = std::make_unique<SnapProgram>(*m_sway);
        m_program->writeSettings(settings);
        return m_sway->isReady() && m_program->start() && isTitled(s_title);
    }
    void finish()
    {
        m_program.reset();
        m_sway.reset();
        m_before.clear();
    }
    bool isTitled(const QString &title)
    {
        return waitFor([&] {
            return m_sway->find([&](const auto &window) { return window.title == title; }).id != 0;
        });
    }

    /// The output that a point lies on.
    QString outputAt(QPoint at)
    {
        const auto names = m_before.keys();
        return *std::find_if(names.begin(), names.end(),
                             [&](const QString &name) { return m_sway->area(name).contains(at); });
    }
    /// An area of one output in that one's own pixels.
    QRect inPixels(const QRect &area)
    {
        const QString name = outputAt(area.topLeft());
        const QRect output = m_sway->area(name);
        const qreal scale = qreal(m_before[name].width()) / output.width();
        return QTransform::fromScale(scale, scale).mapRect(area.translated(-output.topLeft()));
    }
    /// Opens an overlay, and waits until it has a pane over each output.
    bool openOverlay(const QString &action = u"capture-rectangle"_s)
    {
        for (auto it = m_before.begin(); it != m_before.end(); ++it)
            *it = m_sway->picture(it.key());
        const auto isPane = [&](const SwayDesktop::Window &window) {
            return window.fullscreen && window.pid == m_program->process()->processId();
        };
        return m_program->activate(action) && m_program->waitForState(u"Marking"_s) && waitFor([&] {
                   const auto windows = m_sway->windows();
                   return std::count_if(windows.begin(), windows.end(), isPane) == m_before.size();
               });
    }
    /// Whether the overlay shows a pixel of a pattern as its sheet makes it, and lit or not.
    bool isShown(QPoint at, bool isLit)
    {
        const QString name = outputAt(at);
        const QPoint pixel = inPixels({at, QSize(1, 1)}).topLeft();
        const QRgb before = m_before[name].pixel(pixel);
        const QRgb shown = m_sway->picture(name).pixel(pixel);
        const auto isIt = [&](int part, int of) {
            return qAbs(part - of * 0.4 - (isLit ? 153 : 0)) < 3;
        };
        return isIt(qRed(shown), qRed(before)) && isIt(qGreen(shown), qGreen(before));
    }
    /// Drags over an area of patterns.
    bool mark(const QRect &area)
    {
        const QPoint to = area.topLeft() + QPoint(area.width(), area.height());
        const QPoint last = to - QPoint(20, 20);
        return waitFor([&] { return isShown(area.topLeft(), false) && isShown(last, false); }) &&
               m_sway->drag(area.topLeft(), to, [&] { return isShown(last, true); });
    }
    /// The current picture, as another program pastes it.
    QImage copied()
    {
        m_sway->command(u"[pid=%1] focus"_s.arg(m_program->process()->processId()));
        QImage image;
        // A key that follows the focus within the same millisecond, as no hand presses it, is lost.
        waitFor([&] {
            if (m_sway->focused().title.endsWith(s_title))
                m_sway->key(XKB_KEY_c, {XKB_KEY_Control_L});
            QProcess paste;
            paste.setProcessEnvironment(m_sway->environment());
            paste.start(u"wl-paste"_s, {u"-t"_s, u"image/png"_s});
            return paste.waitForFinished() && image.loadFromData(paste.readAllStandardOutput());
        });
        return image.convertToFormat(QImage::Format_RGB32);
    }

    QMap<QString, QImage> m_before;  ///< what the outputs showed before the overlay came
    std::unique_ptr<SwayDesktop> m_sway;
    std::unique_ptr<SnapProgram> m_program;
};

QTEST_GUILESS_MAIN(TestSway)
#include "test_sway.moc"
