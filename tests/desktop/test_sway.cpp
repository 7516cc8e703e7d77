// The program on a desktop without X: its window, its grabs and what it leaves to others, with what
// the compositor itself shows as the measure.

#include "longpicture.h"
#include "pattern.h"
#include "snapprogram.h"
#include "swaydesktop.h"

#include <QPainterPath>
#include <QPolygon>
#include <QTest>
#include <QTransform>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString s_first = u"HEADLESS-1"_s;
const QString s_title = u"Snap Workbench"_s;
const QString s_second = u"HEADLESS-2"_s;
const SwayDesktop::Output s_fine{.position = {1600, 0}, .scale = 2};
const QRect s_pattern(40, 60, 402, 304);

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
        QVERIFY(begin() && m_sway->startPattern(s_pattern));
        QCOMPARE(m_sway->focused().title, u"pattern"_s);
        const QProcess *second = m_program->start();
        QVERIFY(second && waitFor([&] { return second->state() == QProcess::NotRunning; }));
        QCOMPARE(second->exitCode(), 0);
        QVERIFY(waitFor([&] { return m_sway->focused().title == s_title; }));
    }

    // What is taken are the screen's own pixels, whatever its scale.
    void rectangle()
    {
        const auto check = [this](const char *row, const QList<SwayDesktop::Output> &outputs,
                                  const QString &name = s_first) {
            qInfo("%s", row);
            QVERIFY(begin(outputs));
            const QRect area = s_pattern.translated(m_sway->area(name).topLeft());
            QVERIFY(m_sway->startPattern(area));
            const QRect marked(area.topLeft() + QPoint(20, 30), QSize(200, 150));
            QVERIFY(takeRectangle(marked));
            QCOMPARE(copied(), m_before[name].copy(inPixels(marked)));
        };
        check("scale 1", {{}});
        check("scale 1.5", {{.scale = 1.5}});
        check("scale 2", {{.scale = 2}});
        check("two scales, inside the first", {{}, s_fine});
        check("two scales, inside the second", {{}, s_fine}, s_second);

        // And it stays when the program has gone.
        const QProcess *program = m_program->process();
        const QImage last = m_sway->pasted();
        m_program->process()->terminate();
        QVERIFY(waitFor([&] { return program->state() == QProcess::NotRunning; }));
        QCOMPARE(program->exitCode(), 0);
        QCOMPARE(m_sway->pasted(), last);
    }

    // What is taken after a countdown is not what stood still while it was marked.
    void later()
    {
        QVERIFY(begin({{}}, {{u"ScreenTimer"_s, u"3"_s}}));
        QProcess *other = m_sway->startPattern(s_pattern);
        const QRect marked(s_pattern.topLeft() + QPoint(20, 30), QSize(200, 150));
        QVERIFY(other && openOverlay() && mark(marked));
        const QImage before = m_before[s_first].copy(inPixels(marked));
        m_sway->key(XKB_KEY_d);
        QVERIFY(m_program->waitForState(u"Counting"_s));
        other->terminate();
        QVERIFY(waitFor([&] { return shown(s_first).copy(inPixels(marked)) != before; }));
        QVERIFY(isTaken());
        const QImage taken = copied();
        QCOMPARE(taken.size(), before.size());
        QVERIFY(taken != before);
    }

    // Only here pixels are made up: for the part with fewer of them.
    void acrossScales()
    {
        QVERIFY(begin({{}, s_fine}));
        const QPoint border = m_sway->area(s_second).topLeft() + QPoint(0, 60);
        const QPoint before = border - QPoint(s_pattern.width(), 0);
        QVERIFY(m_sway->startPattern({before, s_pattern.size()}));
        QVERIFY(m_sway->startPattern({border, s_pattern.size()}));
        const QRect left(border + QPoint(-100, 30), QSize(100, 150));
        const QRect right(left.topRight() + QPoint(1, 0), QSize(200, 150));
        QVERIFY(takeRectangle(left | right));
        const QImage taken = copied();
        QCOMPARE(taken.size(), (left | right).size() * 2);
        QCOMPARE(taken.copy({{200, 0}, right.size() * 2}),
                 m_before[s_second].copy(inPixels(right)));
        const QImage coarse = m_before[s_first].copy(inPixels(left));
        for (int y = 0; y < taken.height(); ++y) {
            for (int x = 0; x < 2 * left.width(); ++x) {
                const QRgb pixel = coarse.pixel(x / 2, y / 2);
                QVERIFY(qAbs(qRed(taken.pixel(x, y)) - qRed(pixel)) <= 1);
                QVERIFY(qAbs(qGreen(taken.pixel(x, y)) - qGreen(pixel)) <= 1);
            }
        }
    }

    // Transparent outside of what was drawn.
    void shapes()
    {
        const auto check = [this](const char *row, qreal scale, const QPolygon &corners) {
            qInfo("%s", row);
            QVERIFY(begin({{.scale = scale}}) && m_sway->startPattern(s_pattern));
            const QRect box(s_pattern.topLeft() + QPoint(40, 30), QSize(200, 150));
            QPainterPath shape;
            if (corners.isEmpty()) {
                QVERIFY(openOverlay(u"capture-ellipse"_s) && mark(box));
                shape.addEllipse({QPointF(), QSizeF(box.size()) * scale});
            } else {
                QVERIFY(openOverlay(u"capture-polygon"_s));
                for (const QPoint corner : corners)
                    m_sway->click(box.topLeft() + corner);
                shape.addPolygon(QTransform::fromScale(scale, scale).map(QPolygonF(corners)));
            }
            m_sway->key(XKB_KEY_Return);
            QVERIFY(isTaken());
            QImage expected = m_before[s_first].copy(inPixels(box));
            for (int y = 0; y < expected.height(); ++y) {
                for (int x = 0; x < expected.width(); ++x) {
                    if (!shape.contains(QPointF(x, y)))
                        expected.setPixel(x, y, 0);
                }
            }
            QCOMPARE(copied(), expected);
        };
        check("ellipse, scale 1.5", 1.5, {});
        check("polygon, scale 2", 2,
              QPolygon({{0, 0}, {200, 40}, {190, 120}, {100, 60}, {50, 150}}));
    }

    // Without the program's own windows, which lay there before or meanwhile.
    void wholeScreen()
    {
        const QList<SwayDesktop::Output> outputs{{.scale = 2}, {.position = {800, 0}, .scale = 2}};
        QVERIFY(begin(outputs, {{u"ScreenTimer"_s, u"1"_s}}));
        QVERIFY(m_sway->startPattern(m_sway->area(s_first)));
        look();
        const QRect all(QPoint(), QSize(3200, 1000));
        QVERIFY(m_program->activate(u"capture-screen"_s) && isTaken());
        QImage taken = copied();
        QCOMPARE(taken.rect(), all);
        QCOMPARE(taken.copy(m_before[s_first].rect()), m_before[s_first]);
        QVERIFY(m_program->activate(u"capture-screen-countdown"_s));
        QVERIFY(m_program->waitForState(u"Counting"_s) && isTaken(1));
        taken = copied();
        QCOMPARE(taken.rect(), all);
        QCOMPARE(taken.copy(m_before[s_first].rect()), m_before[s_first]);
        QVERIFY(m_program->activate(u"capture-monitor"_s) && isTaken(2));
        QCOMPARE(copied().size(), m_before[s_first].size());

        QVERIFY(begin({{}}, {{u"ScreenTimer"_s, u"1000"_s}}));
        QVERIFY(m_program->activate(u"capture-screen-countdown"_s));
        QVERIFY(m_program->waitForState(u"Counting"_s) && m_program->activate(u"cancel"_s));
        QVERIFY(m_program->waitForState(u"Idle"_s) && isTitled(s_title));
    }

    // Of covered ones what is seen of them.
    void windows()
    {
        const QRect lower(100, 100, 402, 304);
        const QRect upper(300, 50, 402, 404);
        QVERIFY(begin() && m_sway->startPattern(lower) && m_sway->startPattern(upper));
        look();
        QVERIFY(m_program->activate(u"capture-active"_s) && m_program->waitForState(u"Idle"_s));
        QCOMPARE(copied(), m_before[s_first].copy(upper));
        QVERIFY(isQuestionAnswered());
        QVERIFY(openPick(upper.center()));
        m_sway->click(upper.center());
        QVERIFY(isTaken());
        const QImage front = copied();
        QCOMPARE(front, m_before[s_first].copy(upper));
        const QPoint inLower(200, 300);
        QVERIFY(openPick(inLower));
        m_sway->click(inLower);
        QVERIFY(isTaken(1));
        QCOMPARE(copied(), m_before[s_first].copy(QRect(100, 100, 200, 304)));
        // The front one comes first.
        QVERIFY(m_program->activate(u"capture-windows"_s));
        QVERIFY(m_program->waitForState(u"Browsing"_s));
        QVERIFY(leaves(u"Browsing"_s, XKB_KEY_Return) && m_program->waitForState(u"Idle"_s));
        QCOMPARE(copied(), front);
    }

    // By the wheel; the same order once more keeps what there is by then.
    void scrollingContent()
    {
        constexpr int rows = 3000;
        const QRect area(200, 100, 600, 400);
        QVERIFY(begin());
        QProcess *other = m_sway->startLong(area, rows);
        QVERIFY(other && isQuestionAnswered());
        const auto scroll = [&] {
            if (!openPick(area.center()))
                return false;
            m_sway->keyDown(XKB_KEY_Control_L);
            m_sway->click(area.center());
            m_sway->keyUp(XKB_KEY_Control_L);
            other->readAll();
            return m_program->waitForState(u"Scrolling"_s) &&
                   waitFor([&] { return other->readAll().count("at ") > 0; });
        };
        QVERIFY(waitFor([&] { return other->canReadLine(); }));
        const int width = other->readLine().simplified().split(' ').value(3).toInt();
        const QImage whole = longPicture({width, rows}).convertToFormat(QImage::Format_ARGB32);
        QVERIFY(scroll() && isTaken());
        QCOMPARE(copied(), whole);
        QVERIFY(scroll() && m_program->activate(u"capture-window"_s) && isTaken(1));
        const QImage part = copied();
        QVERIFY(part.height() > area.height() && part.height() < rows);
        QCOMPARE(part, whole.copy(part.rect()));
    }

    // Everything is as it was, also for a window that filled the screen.
    void givenUp()
    {
        QVERIFY(begin({{}, s_fine}) && m_sway->startPattern(s_pattern));
        const auto giveUp = [this](const QString &action, const QString &state) {
            const SwayDesktop::Window before = m_sway->focused();
            QVERIFY(openOverlay(action, state) && leaves(state, XKB_KEY_Escape));
            QVERIFY(m_program->waitForState(u"Idle"_s));
            QVERIFY(waitFor([&] { return m_sway->focused().id == before.id; }));
            QVERIFY(waitFor([&] { return m_sway->focused().fullscreen == before.fullscreen; }));
            QVERIFY(waitFor([&] { return shown(s_first) == m_before[s_first]; }));
            QVERIFY(isTitled(s_title));
        };
        for (const auto &action : {u"capture-rectangle"_s, u"capture-ellipse"_s})
            giveUp(action, u"Marking"_s);
        QVERIFY(m_sway->command(u"[title=pattern] focus, fullscreen enable"_s));
        const QImage filled =
            pattern(m_sway->area(s_first).size()).convertToFormat(QImage::Format_ARGB32);
        QVERIFY(waitFor([&] { return shown(s_first) == filled; }));
        giveUp(u"capture-rectangle"_s, u"Marking"_s);
    }

    // What is marked lies elsewhere then.
    void outputChanges()
    {
        QVERIFY(begin({{}, s_fine}) && m_sway->startPattern(s_pattern) && openOverlay());
        QVERIFY(m_sway->command(u"output HEADLESS-2 scale 1"_s));
        QVERIFY(m_program->waitForState(u"Idle"_s) && isTitled(s_title));
        QVERIFY(waitFor([&] { return shown(s_first) == m_before[s_first]; }));
        const QRect marked(s_pattern.topLeft() + QPoint(20, 30), QSize(200, 150));
        QVERIFY(takeRectangle(marked));
        QCOMPARE(copied(), m_before[s_first].copy(marked));
    }

private:
    bool begin(const QList<SwayDesktop::Output> &outputs = {{}},
               QMap<QString, QString> settings = {})
    {
        finish();
        settings.insert(u"ShowMagnification"_s, u"0"_s);
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

    /// Waits for the end of a grab with the picture of that number.
    bool isTaken(int number = 0)
    {
        const QString name = number == 0 ? u"untitled"_s : u"untitled %1"_s.arg(number);
        return isTitled(name + u" * - Snap Workbench"_s) && m_program->waitForState(u"Idle"_s);
    }

    QImage shown(const QString &output)
    {
        return m_sway->picture(output).convertToFormat(QImage::Format_ARGB32);
    }
    void look()
    {
        for (auto it = m_before.begin(); it != m_before.end(); ++it)
            *it = shown(it.key());
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
    bool openOverlay(const QString &action = u"capture-rectangle"_s,
                     const QString &state = u"Marking"_s)
    {
        look();
        const auto isPane = [&](const SwayDesktop::Window &window) {
            return window.fullscreen && window.pid == m_program->process()->processId();
        };
        return m_program->activate(action) && m_program->waitForState(state) && waitFor([&] {
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
        const QPoint last(area.left() + area.width() * 2 / 5, to.y() - 12);
        return waitFor([&] { return isShown(area.topLeft(), false) && isShown(last, false); }) &&
               m_sway->drag(area.topLeft(), to, [&] { return isShown(last, true); });
    }
    bool takeRectangle(const QRect &area)
    {
        const bool isMarked = openOverlay() && mark(area);
        m_sway->key(XKB_KEY_Return);
        return isMarked && isTaken();
    }
    /// Opens the pick, and waits until it has the window at that point.
    bool openPick(QPoint at)
    {
        if (!openOverlay(u"capture-window"_s, u"Picking"_s))
            return false;
        m_sway->movePointer(at);
        const QPoint beside = at - QPoint(20, 20);  // the pointer is in the picture, too
        const QRgb plain = m_before[s_first].pixel(beside);
        return waitFor([&] {
            const QRgb tinted = shown(s_first).pixel(beside);
            return qAbs(qRed(tinted) - qRed(plain) * 155 / 255) < 3 &&
                   qAbs(qGreen(tinted) - qGreen(plain) * 155 / 255) < 3;
        });
    }
    /// Presses a key until it is heard and ends that state: one that follows the focus within the
    /// same millisecond, as no hand presses it, is lost.
    bool leaves(const QString &state, xkb_keysym_t keysym)
    {
        return waitFor([&] {
            m_sway->key(keysym);
            return waitFor([&] { return m_program->grabState() != state; }, 500);
        });
    }
    /// The first pick asks whether to look into other programs.
    bool isQuestionAnswered()
    {
        return m_program->activate(u"capture-window"_s) && m_program->waitForState(u"Asking"_s) &&
               leaves(u"Asking"_s, XKB_KEY_Escape) && m_program->waitForState(u"Picking"_s) &&
               leaves(u"Picking"_s, XKB_KEY_Escape) && m_program->waitForState(u"Idle"_s);
    }
    /// The current picture, once another program can paste it.
    QImage copied()
    {
        m_sway->run(u"wl-copy"_s, {u"--clear"_s});
        m_sway->command(u"[pid=%1] focus"_s.arg(m_program->process()->processId()));
        QImage image;
        // As in leaves().
        waitFor([&] {
            if (m_sway->focused().title.endsWith(s_title))
                m_sway->key(XKB_KEY_c, {XKB_KEY_Control_L});
            image = m_sway->pasted();
            return !image.isNull();
        });
        return image;
    }

    QMap<QString, QImage> m_before;  ///< what the outputs showed before the overlay came
    std::unique_ptr<SwayDesktop> m_sway;
    std::unique_ptr<SnapProgram> m_program;
};

QTEST_GUILESS_MAIN(TestSway)
#include "test_sway.moc"
