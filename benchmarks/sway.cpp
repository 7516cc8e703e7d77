// On a Wayland desktop: what the program's own road adds to the compositor's.

#include "comparison.h"

#include "base/clock.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "platform/wayland/screencopy.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QPainter>
#include <QProcess>
#include <QWidget>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

// Milliseconds.
constexpr int s_limit = 5000;
constexpr int s_pause = 1000;  // until a grab has ended, whatever of it is still to come

// What the screen shows, by screencopy and nothing else.
class BareScreen
{
public:
    QImage picture()
    {
        QImage result;
        bool isDone = false;
        Screencopy copy(m_connection, *m_connection->outputs().front(), m_kept,
                        [&](const QImage &picture) {
                            result = picture;
                            isDone = true;
                        });
        m_connection->waitFor([&isDone] { return isDone; }, s_limit);
        m_kept = copy.written();
        return result;
    }
    QRgb corner() { return picture().pixel(1, 1); }
    /// Handles events until the corner has that colour.
    bool waitFor(QRgb colour)
    {
        QElapsedTimer timer;
        timer.start();
        while (corner() != colour && timer.elapsed() < s_limit)
            QCoreApplication::processEvents();
        return timer.elapsed() < s_limit;
    }

private:
    std::shared_ptr<WaylandConnection> m_connection = WaylandConnection::open();
    std::shared_ptr<SharedPicture> m_kept;
};

void swayScreencopy(benchmark::State &state)
{
    BareScreen screen;
    for (auto _ : state)
        benchmark::DoNotOptimize(screen.picture());
}

void swayWholeDesktop(benchmark::State &state)
{
    Pictures &pictures = *services().pictures;
    for (auto _ : state) {
        bool isThere = false;
        pictures.freeze(Freeze::AsUsual,
                        [&](bool areThere, const QString &) { isThere = areThere; });
        waitUntil(*services().clock, s_limit, [&] { return isThere; });
        benchmark::DoNotOptimize(pictures.ofDesktop(desktopBox()));
        pictures.thaw();
    }
}

class BareWindow : public QWidget
{
public:
    explicit BareWindow(const QImage &picture) : m_picture(picture)
    {
        setWindowState(Qt::WindowFullScreen);
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.drawImage(0, 0, m_picture);
        painter.fillRect(rect(), QColor(0, 0, 0, 100));
    }

private:
    QImage m_picture;
};

void swayBareOverlay(benchmark::State &state)
{
    BareScreen screen;
    const QRgb before = screen.corner();
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        BareWindow window(screen.picture());
        window.show();
        bool isShown = false;
        while (!isShown && timer.elapsed() < s_limit) {
            QCoreApplication::processEvents();
            isShown = screen.corner() != before;
        }
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        window.hide();
        if (!isShown || !screen.waitFor(before))
            state.SkipWithError("no window");
    }
}

// Of the program in the tray, so that no window has to leave first.
void swayBusToOverlay(benchmark::State &state)
{
    BareScreen screen;
    const QRgb before = screen.corner();
    QProcess program;
    program.start(QStringLiteral(BENCH_PROGRAM), {});
    const auto call = [](const QString &action) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            u"org.example.brenvale.SnapWorkbench"_s, u"/org/example/brenvale/SnapWorkbench"_s,
            u"org.freedesktop.Application"_s, u"ActivateAction"_s);
        message << action << QVariantList() << QVariantMap();
        return QDBusConnection::sessionBus().call(message, QDBus::Block, s_limit).type() ==
               QDBusMessage::ReplyMessage;
    };
    // The program shows its window where there is no tray; another work space has none of it.
    static int s_workspace = 1;
    waitUntil(*services().clock, s_limit, [&] { return screen.corner() != before; });
    QProcess::execute(u"swaymsg"_s, {u"-q"_s, u"workspace"_s, QString::number(++s_workspace)});
    if (!screen.waitFor(before))
        state.SkipWithError("no empty work space");
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        bool isShown = call(u"capture-rectangle"_s);
        while (isShown && screen.corner() == before)
            isShown = timer.elapsed() < s_limit;
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        if (!isShown || !call(u"cancel"_s) || !screen.waitFor(before)) {
            state.SkipWithError("no overlay");
            break;
        }
        services().clock->pause(s_pause);
    }
    program.terminate();
    program.waitForFinished(s_limit);
}

BENCHMARK(swayScreencopy)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(5);
BENCHMARK(swayWholeDesktop)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(5);
BENCHMARK(swayBareOverlay)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5)
    ->Repetitions(3);
BENCHMARK(swayBusToOverlay)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5)
    ->Repetitions(3);

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "sway: whole desktop into a picture, against the bare screencopy",
                   .measured = "swayWholeDesktop",
                   .against = "swayScreencopy",
                   .limit = atMost(1.5)}) &&
    addComparison({.what = "sway: bus call to overlay, against screencopy and a bare window",
                   .measured = "swayBusToOverlay",
                   .against = "swayBareOverlay",
                   .limit = atMost(1.5)});

}  // namespace
