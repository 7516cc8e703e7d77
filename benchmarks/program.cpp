// The running program beside one that has an empty window and nothing else.

#include "comparison.h"

#include "capture/dialog.h"
#include "config/applicationrecord.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <cstdlib>

#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <X11/keysym.h>

namespace {

constexpr int s_startLimit = 20000;  // milliseconds
constexpr int s_idleSeconds = 10;

const char *programPath(bool empty) { return empty ? BENCH_EMPTY : BENCH_PROGRAM; }

// Watches one pixel of the root: it keeps the root's colour until a window paints over it.
class PixelWatch
{
public:
    PixelWatch() : m_connection(xcb_connect(nullptr, nullptr))
    {
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    }
    ~PixelWatch() { xcb_disconnect(m_connection); }
    PixelWatch(const PixelWatch &) = delete;
    PixelWatch &operator=(const PixelWatch &) = delete;

    /// Presses and releases keys, given by their codes, in this order and back.
    void press(const QList<uint8_t> &keys)
    {
        for (const uint8_t key : keys)
            fake(XCB_KEY_PRESS, key);
        for (auto key = keys.crbegin(); key != keys.crend(); ++key)
            fake(XCB_KEY_RELEASE, *key);
        xcb_flush(m_connection);
    }
    QList<uint8_t> codes(const QList<xcb_keysym_t> &keysyms)
    {
        xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(m_connection);
        QList<uint8_t> result;
        for (const xcb_keysym_t keysym : keysyms) {
            xcb_keycode_t *code = xcb_key_symbols_get_keycode(symbols, keysym);
            result.append(code ? *code : 0);
            std::free(code);
        }
        xcb_key_symbols_free(symbols);
        return result;
    }
    /// Waits for another colour in the middle of the screen. False when none came.
    bool waitForChange(uint32_t before)
    {
        QElapsedTimer timer;
        timer.start();
        while (centre() == before) {
            if (timer.elapsed() > s_startLimit)
                return false;
            QCoreApplication::processEvents();
        }
        return true;
    }

    uint32_t centre()
    {
        auto *reply = xcb_get_image_reply(
            m_connection,
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root,
                          static_cast<int16_t>(m_screen->width_in_pixels / 2),
                          static_cast<int16_t>(m_screen->height_in_pixels / 2), 1, 1, ~0U),
            nullptr);
        const uint32_t result =
            reply ? *reinterpret_cast<uint32_t *>(xcb_get_image_data(reply)) : 0;
        std::free(reply);
        return result;
    }

private:
    void fake(uint8_t type, uint8_t key)
    {
        xcb_test_fake_input(m_connection, type, key, XCB_CURRENT_TIME, m_screen->root, 0, 0, 0);
    }

    xcb_connection_t *m_connection;
    const xcb_screen_t *m_screen = nullptr;
};

// A home of its own, kept over the starts: what is measured is the second start and not the first
// ever.
class Program
{
public:
    explicit Program(bool empty) : m_empty(empty)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_DATA_HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.path());
        m_process.setProcessEnvironment(environment);
    }
    ~Program() { stop(); }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Seconds from the start to the first paint; negative when none came.
    double start(const QStringList &arguments = {})
    {
        PixelWatch watch;
        const uint32_t before = watch.centre();
        QElapsedTimer timer;
        timer.start();
        m_process.start(QString::fromLocal8Bit(programPath(m_empty)), arguments);
        while (watch.centre() == before) {
            if (timer.elapsed() > s_startLimit)
                return -1;
            usleep(200);
        }
        return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    }
    void stop()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    QByteArray proc(const char *name) const
    {
        QFile file(QStringLiteral("/proc/%1/%2")
                       .arg(m_process.processId())
                       .arg(QString::fromLatin1(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    long ticks() const
    {
        // The name in parentheses may hold blanks; user and system time are fields 14 and 15.
        const QByteArray stat = proc("stat");
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        return fields.value(11).toLong() + fields.value(12).toLong();
    }
    double residentMegabytes() const
    {
        for (const QByteArray &line : proc("status").split('\n')) {
            if (line.startsWith("VmRSS:"))
                return line.simplified().split(' ').value(1).toDouble() / 1024;
        }
        return 0;
    }
    /// Waits until the process has used no time for a second.
    void settle() const
    {
        long before = -1;
        while (before != ticks()) {
            before = ticks();
            QThread::sleep(1);
        }
    }

private:
    bool m_empty;
    QTemporaryDir m_home;
    QProcess m_process;
};

void startUp(benchmark::State &state, bool empty)
{
    Program program(empty);
    program.start();
    program.stop();
    for (auto _ : state) {
        state.SetIterationTime(program.start());
        program.stop();
    }
}

void emptyStart(benchmark::State &state) { startUp(state, true); }
void programStart(benchmark::State &state) { startUp(state, false); }

void memory(benchmark::State &state, bool empty)
{
    Program program(empty);
    program.start();
    program.settle();
    for (auto _ : state)
        benchmark::ClobberMemory();
    state.counters["value"] = program.residentMegabytes();
}

void emptyMemory(benchmark::State &state) { memory(state, true); }
void programMemory(benchmark::State &state) { memory(state, false); }

void programIdle(benchmark::State &state)
{
    Program program(false);
    program.start();
    program.settle();
    for (auto _ : state) {
        const long before = program.ticks();
        QThread::sleep(s_idleSeconds);
        state.counters["value"] = static_cast<double>(program.ticks() - before);
    }
}

// From the hot key to the overlay on the screen.
void hotKeyToOverlay(benchmark::State &state)
{
    Program program(false);
    program.start();
    program.settle();
    PixelWatch watch;
    const QList<uint8_t> hotKey = watch.codes({XK_Control_L, XK_Alt_L, XK_r});
    const QList<uint8_t> escape = watch.codes({XK_Escape});
    for (auto _ : state) {
        const uint32_t before = watch.centre();
        QElapsedTimer timer;
        timer.start();
        watch.press(hotKey);
        const bool shown = watch.waitForChange(before);
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        if (!shown) {
            state.SkipWithError("no overlay");
            break;
        }
        const uint32_t dimmed = watch.centre();
        watch.press(escape);
        watch.waitForChange(dimmed);
        program.settle();
    }
}

// The same overlay over one white window, in this program.
void bareOverlay(benchmark::State &state)
{
    g_ResourceFileName =
        QFileInfo(QStringLiteral(BENCH_PROGRAM)).path() + QStringLiteral("/SnapWorkbench.xml");
    QWidget window;
    window.setPalette(QPalette(Qt::white));
    window.setGeometry(QGuiApplication::primaryScreen()->geometry());
    PixelWatch watch;
    const uint32_t root = watch.centre();
    window.show();
    watch.waitForChange(root);
    for (auto _ : state) {
        const uint32_t before = watch.centre();
        QElapsedTimer timer;
        timer.start();
        Dialog overlay(nullptr);
        overlay.show();
        watch.waitForChange(before);
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        const uint32_t dimmed = watch.centre();
        overlay.hide();
        watch.waitForChange(dimmed);
    }
}

BENCHMARK(hotKeyToOverlay)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3)
    ->Repetitions(3);
BENCHMARK(bareOverlay)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5)
    ->Repetitions(3);
BENCHMARK(emptyStart)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10)
    ->Repetitions(5);
BENCHMARK(programStart)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10)
    ->Repetitions(5);
BENCHMARK(emptyMemory)->Iterations(1)->Repetitions(3);
BENCHMARK(programMemory)->Iterations(1)->Repetitions(3);
BENCHMARK(programIdle)->Iterations(1)->Repetitions(3);

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "process start to first paint, against an empty `QMainWindow`",
                   .measured = "programStart",
                   .against = "emptyStart",
                   .limit = "at most 1.6 times"}) &&
    addComparison({.what = "resident memory, idle, against an empty `QMainWindow`",
                   .measured = "programMemory",
                   .against = "emptyMemory",
                   .limit = "at most 1.5 times"}) &&
    addComparison({.what = "processor time over 10 s idle, window shown",
                   .measured = "programIdle",
                   .unit = "ticks",
                   .limit = "0 ticks"}) &&
    addComparison({.what = "hot key to overlay, against the same overlay in a bare program",
                   .measured = "hotKeyToOverlay",
                   .against = "bareOverlay",
                   .limit = "at most 1.5 times"});

}  // namespace
