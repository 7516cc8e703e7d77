// The main window under a moving pointer and while it is resized, compared to plain windows.

#include "comparison.h"
#include "runningprogram.h"
#include "ui_mainwindow.h"

#include <QMainWindow>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace {

constexpr QSize s_size(950, 650);
constexpr int s_sweeps = 20;
constexpr int s_steps = 120;
constexpr QSize s_step(2, 1);
constexpr int s_paintLimit = 2000;  // milliseconds

// The rectangles of the form's buttons in the window.
QList<QRect> buttonPlaces()
{
    QMainWindow window;
    Ui::MainWindow ui;
    ui.setupUi(&window);
    ui.widSysTool->hide();
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.resize(s_size);
    window.show();
    QCoreApplication::processEvents();
    QList<QRect> places;
    for (const QPushButton *button : window.findChildren<QPushButton *>()) {
        if (button->isVisible())
            places.append({button->mapTo(&window, QPoint()), button->size()});
    }
    return places;
}

QPoint windowOrigin(const PixelWatch &watch)
{
    const QSize around = watch.screen().size() - s_size;
    return {around.width() / 2, around.height() / 2};
}

// Waits for each button, so that each is painted in its hover state.
bool sweep(PixelWatch &watch, const QList<QRect> &buttons)
{
    for (const QRect &button : buttons) {
        const QRect line(button.left(), button.center().y() - 3, button.width(), 6);
        const QList<uint32_t> before = watch.pixels(line);
        watch.movePointer(button.center());
        QElapsedTimer timer;
        timer.start();
        while (watch.pixels(line) == before) {
            if (timer.elapsed() > s_paintLimit)
                return false;
            usleep(500);
        }
    }
    return true;
}

void pointerSweep(benchmark::State &state, const char *path)
{
    Program program(path);
    program.start();
    program.settle();
    PixelWatch watch;
    QList<QRect> buttons = buttonPlaces();
    for (QRect &button : buttons)
        button.translate(windowOrigin(watch));
    sweep(watch, buttons);
    for (auto _ : state) {
        const double before = program.processorTime();
        for (int i = 0; i < s_sweeps; ++i) {
            if (!sweep(watch, buttons)) {
                state.SkipWithError("a button did not change");
                return;
            }
        }
        const double used = program.processorTime() - before;
        state.counters["value"] = used * 1e3 / (s_sweeps * static_cast<double>(buttons.size()));
    }
    watch.movePointer({});
}

void programSweep(benchmark::State &state) { pointerSweep(state, BENCH_PROGRAM); }
void plainSweep(benchmark::State &state) { pointerSweep(state, BENCH_PLAIN); }

// The median of all steps in milliseconds, from the request for the new size until the far corner
// is painted on the screen.
double resizeStep(PixelWatch &watch, xcb_window_t window)
{
    const QPoint origin = windowOrigin(watch);
    const auto corner = [&](QSize size) {
        const QPoint at = origin + QPoint(size.width() - 3, size.height() - 20);
        return watch.pixels({at, QSize(1, 1)});
    };
    const QList<uint32_t> painted = corner(s_size);
    std::vector<double> times;
    for (int i = 1; i <= s_steps; ++i) {
        const QSize size = s_size + s_step * i;
        QElapsedTimer timer;
        timer.start();
        watch.resize(window, size);
        while (corner(size) != painted) {
            if (timer.elapsed() > s_paintLimit)
                return -1;
            usleep(100);  // keeps the server from being busy with these requests only
        }
        times.push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void liveResize(benchmark::State &state, const char *path)
{
    Program program(path);
    program.start();
    program.settle();
    PixelWatch watch;
    const xcb_window_t window = watch.findWindow(s_size);
    for (auto _ : state) {
        const double time = resizeStep(watch, window);
        if (time < 0) {
            state.SkipWithError("a size was not painted");
            return;
        }
        state.counters["value"] = time;
    }
}

void programResize(benchmark::State &state) { liveResize(state, BENCH_PROGRAM); }
void emptyResize(benchmark::State &state) { liveResize(state, BENCH_EMPTY); }

BENCHMARK(programSweep)->Iterations(1)->Repetitions(3);
BENCHMARK(plainSweep)->Iterations(1)->Repetitions(3);
BENCHMARK(programResize)->Iterations(1)->Repetitions(3);
BENCHMARK(emptyResize)->Iterations(1)->Repetitions(3);

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "processor time of a button that the pointer passes",
                   .measured = "programSweep",
                   .unit = "ms",
                   .limit = atMost(1)}) &&
    addComparison({.what = "the same, against plain `QPushButton`s with icons",
                   .measured = "programSweep",
                   .against = "plainSweep"}) &&
    addComparison({.what = "a step of a live resize until it is painted",
                   .measured = "programResize",
                   .unit = "ms",
                   .limit = atMost(16.7)}) &&
    addComparison({.what = "the same, against an empty `QMainWindow`",
                   .measured = "programResize",
                   .against = "emptyResize"});

}  // namespace
