// The running program compared to a program with an empty window.

#include "comparison.h"
#include "runningprogram.h"

#include "capture/rectangleoverlay.h"
#include "config/applicationrecord.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QThread>
#include <QWidget>

#include <benchmark/benchmark.h>

#include <X11/keysym.h>

#include <cmath>

namespace {

constexpr int s_idleSeconds = 10;

void startUp(benchmark::State &state, bool empty)
{
    Program program(empty ? BENCH_EMPTY : BENCH_PROGRAM);
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
    Program program(empty ? BENCH_EMPTY : BENCH_PROGRAM);
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
    Program program(BENCH_PROGRAM);
    program.start();
    program.settle();
    for (auto _ : state) {
        const long before = program.ticks();
        QThread::sleep(s_idleSeconds);
        state.counters["value"] = static_cast<double>(program.ticks() - before);
    }
}

// Measures from the hot key until the overlay is on the screen. The first one of a process, here
// and in the bare program, pays for its memory too, and is not measured.
void hotKeyToOverlay(benchmark::State &state)
{
    Program program(BENCH_PROGRAM);
    program.start();
    program.settle();
    PixelWatch watch;
    const QList<uint8_t> hotKey = watch.codes({XK_Control_L, XK_Alt_L, XK_r});
    const QList<uint8_t> escape = watch.codes({XK_Escape});
    // Seconds; negative if no overlay was shown.
    const auto open = [&] {
        const uint32_t before = watch.centre();
        QElapsedTimer timer;
        timer.start();
        watch.press(hotKey);
        const bool shown = watch.waitForChange(before);
        const double taken = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
        const uint32_t dimmed = watch.centre();
        watch.press(escape);
        watch.waitForChange(dimmed);
        program.settle();
        return shown ? taken : -1;
    };
    open();
    for (auto _ : state) {
        const double taken = open();
        state.SetIterationTime(std::abs(taken));
        if (taken < 0) {
            state.SkipWithError("no overlay");
            break;
        }
    }
}

// Measures from a key until the picture has its tab, where a compositor goes on showing what has
// closed.
void keyToTab(benchmark::State &state, bool isWhole)
{
    constexpr unsigned long resting = 500;  // milliseconds
    QProcess compositor;
    compositor.start(QStringLiteral("picom"),
                     {QStringLiteral("--backend"), QStringLiteral("xrender"),
                      QStringLiteral("--config"), QStringLiteral("/dev/null")});
    Program program(BENCH_PROGRAM);
    program.start();
    program.settle();
    PixelWatch watch;
    const QList<uint8_t> whole = watch.codes({XK_Control_L, XK_Alt_L, XK_s});
    const QList<uint8_t> marking = watch.codes({XK_Control_L, XK_Alt_L, XK_r});
    const QList<uint8_t> enter = watch.codes({XK_Return});
    const QPoint from = watch.screen().bottomRight() / 4;
    for (auto _ : state) {
        const uint32_t before = watch.centre();
        bool isReady = true;
        if (!isWhole) {
            watch.press(marking);
            // An overlay looks for the pointer all the time, and never settles.
            isReady = watch.waitForChange(before);
            QThread::msleep(resting);
            isReady = isReady && watch.dragOverCentre(from, 3 * from);
            QThread::msleep(resting);
        }
        const QByteArray title = watch.pictureTitle();
        QElapsedTimer timer;
        timer.start();
        watch.press(isWhole ? whole : enter);
        while (isReady && watch.pictureTitle() == title && timer.elapsed() < startLimit)
            usleep(1000);
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        if (!isReady || timer.elapsed() >= startLimit) {
            state.SkipWithError("no tab");
            break;
        }
        program.settle();
    }
    program.stop();
    compositor.terminate();
    compositor.waitForFinished();
}

void returnToTab(benchmark::State &state) { keyToTab(state, false); }
void wholeScreenToTab(benchmark::State &state) { keyToTab(state, true); }

// The same overlay in this program, over one white window.
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
    const auto open = [&] {
        const uint32_t before = watch.centre();
        QElapsedTimer timer;
        timer.start();
        Dialog overlay(nullptr);
        overlay.show();
        watch.waitForChange(before);
        const double taken = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
        const uint32_t dimmed = watch.centre();
        overlay.hide();
        watch.waitForChange(dimmed);
        // The machine is as cold as it is for a user who presses a key.
        QThread::sleep(1);
        return taken;
    };
    open();
    for (auto _ : state)
        state.SetIterationTime(open());
}

BENCHMARK(hotKeyToOverlay)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5)
    ->Repetitions(3);
BENCHMARK(returnToTab)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3)
    ->Repetitions(3);
BENCHMARK(wholeScreenToTab)
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
    addComparison({.what = "process start to first paint with the whole skin, against an empty "
                           "`QMainWindow`",
                   .measured = "programStart",
                   .against = "emptyStart",
                   .limit = atMost(1.6)}) &&
    addComparison({.what = "resident memory, idle, against an empty `QMainWindow`",
                   .measured = "programMemory",
                   .against = "emptyMemory",
                   .limit = atMost(1.25)}) &&
    addComparison({.what = "processor time over 10 s idle, window shown",
                   .measured = "programIdle",
                   .unit = "ticks",
                   .limit = atMost(0)}) &&
    addComparison({.what = "hot key to overlay, against the same overlay in a bare program",
                   .measured = "hotKeyToOverlay",
                   .against = "bareOverlay",
                   .limit = atMost(1.3)}) &&
    addComparison({.what = "Return in the overlay to tab, with a compositor",
                   .measured = "returnToTab",
                   .unit = "ms",
                   .limit = atMost(200)}) &&
    addComparison({.what = "full screen's key to tab, with a compositor",
                   .measured = "wholeScreenToTab",
                   .unit = "ms",
                   .limit = atMost(200)});

}  // namespace
