// Many pictures and large pictures in the main window, compared to a plain implementation where
// there is one.

#include "comparison.h"
#include "fakedesktop.h"
#include "memory.h"

#include "config/applicationrecord.h"
#include "config/xmlstore.h"
#include "platform/services.h"
#include "shell/mainwindow.h"
#include "shell/picturejobs.h"

#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QThread>

#include <benchmark/benchmark.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_many = 200;
constexpr int s_names = 2000;
constexpr QSize s_usual(1920, 1080);
constexpr QSize s_large(3840, 2160);
constexpr double s_second = 1e9;  // ns
constexpr double s_megabyte = 1e6;
constexpr int s_minute = 60'000;  // ms
constexpr int s_tick = 10'000;    // ms

// A picture like a screen with text and some pictures, different for each number.
QPixmap screen(QSize size, int number)
{
    QPixmap result(size);
    result.fill(QColor::fromHsv(number * 7 % 360, 40, 250));
    QPainter painter(&result);
    for (int y = 20; y < size.height(); y += 18)
        painter.drawText(20 + number % 9, y,
                         u"%1 "_s.arg(number * y, 12).repeated(size.width() / 100));
    for (int i = 0; i < 4; ++i) {
        QLinearGradient gradient(0, 0, 300, 200);
        gradient.setColorAt(0, QColor::fromHsv(i * 60, 200, 200));
        gradient.setColorAt(1, Qt::white);
        painter.fillRect(QRect(i * size.width() / 4, number % 500, 300, 200), gradient);
    }
    return result;
}

// The main window on the null desktop, with a resource file of its own.
struct OpenWindow {
    OpenWindow()
    {
        g_ResourceFileName = folder.filePath(u"SnapWorkbench.xml"_s);
        QFile file(g_ResourceFileName);
        if (file.open(QIODevice::WriteOnly))
            file.write("<Galeway ver=\"1\"/>");
        file.close();
        window = std::make_unique<MainWindow>();
        g_MainWindow = window.get();
        window->resize(950, 650);
        window->show();
        QCoreApplication::processEvents();
    }
    ~OpenWindow()
    {
        g_MainWindow = nullptr;
        window.reset();
        FreeAllXmlDocument();
        installServices(createServices());
    }
    OpenWindow(const OpenWindow &) = delete;
    OpenWindow &operator=(const OpenWindow &) = delete;

    void take(int count, QSize size) const
    {
        for (int i = 0; i < count; ++i)
            window->NewDocument(screen(size, i), u"window %1"_s.arg(i));
    }
    /// Waits until the workers have nothing to do.
    void settle() const
    {
        const auto *jobs = window->findChild<PictureJobs *>();
        do {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        } while (jobs->find(PictureJobs::Kind::Read, 0) || jobs->find(PictureJobs::Kind::Pack, 0));
    }

    FakeDesktop desktop{};
    QTemporaryDir folder{};
    std::unique_ptr<MainWindow> window{};
};

double secondsOf(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / s_second;
}

void plainTabs(benchmark::State &state)
{
    for (auto _ : state) {
        QTabWidget tabs;
        tabs.show();
        for (int i = 0; i < s_many; ++i) {
            tabs.addTab(new QWidget, u"window %1"_s.arg(i));
            tabs.setCurrentIndex(i);
            benchmark::DoNotOptimize(screen(s_usual, i));
        }
    }
}

void windowsTaken(benchmark::State &state)
{
    for (auto _ : state) {
        const OpenWindow open;
        QElapsedTimer timer;
        timer.start();
        open.take(s_many, s_usual);
        state.SetIterationTime(secondsOf(timer));
    }
}

void namesOpened(benchmark::State &state)
{
    for (auto _ : state) {
        const OpenWindow open;
        QStringList paths;
        const QPixmap picture = screen({100, 100}, 1);
        for (int i = 0; i < s_names; ++i) {
            paths.append(open.folder.filePath(u"%1.png"_s.arg(i)));
            picture.save(paths.last());
        }
        QElapsedTimer timer;
        timer.start();
        open.window->openPictures(paths);
        open.settle();
        state.SetIterationTime(secondsOf(timer));
    }
}

void tabClosed(benchmark::State &state)
{
    const OpenWindow open;
    open.take(s_many, {200, 200});
    QStringList paths{open.folder.filePath(u"a.png"_s)};
    screen({200, 200}, 1).save(paths.first());
    for (auto _ : state) {
        open.window->openPictures(paths);
        open.settle();
        QElapsedTimer timer;
        timer.start();
        open.window->CloseFile();
        QCoreApplication::processEvents();
        state.SetIterationTime(secondsOf(timer));
    }
}

void unseenMemory(benchmark::State &state)
{
    const OpenWindow open;
    const double before = residentBytes();
    open.take(s_many, s_usual);
    for (auto _ : state) {
        open.desktop.clock->advance(s_minute + s_tick);
        open.settle();
    }
    state.counters["value"] = (residentBytes() - before) / s_megabyte;
}

void tabSwitched(benchmark::State &state)
{
    const OpenWindow open;
    open.take(4, s_usual);
    int next = 0;
    for (auto _ : state) {
        open.desktop.clock->advance(s_minute + s_tick);
        open.settle();
        QElapsedTimer timer;
        timer.start();
        open.window->SetCurDocumentIndex(next);
        QCoreApplication::processEvents();
        state.SetIterationTime(secondsOf(timer));
        next = (next + 1) % 4;
    }
}

// Measures from the new tab until the next start would find the picture.
void keptOnDisk(benchmark::State &state)
{
    for (auto _ : state) {
        const OpenWindow open;
        const QString kept = open.folder.filePath(u"recovery"_s);
        open.window->startRecovery(kept);
        const QPixmap picture = screen(s_large, 1);
        QElapsedTimer timer;
        timer.start();
        open.window->NewDocument(picture, {});
        const auto isKept = [&kept] {
            const QStringList entries = QDir(kept).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
            return !entries.isEmpty() &&
                   QFile::exists(kept + u'/' + entries.first() + u"/state.json"_s);
        };
        while (!isKept())
            QThread::msleep(1);
        state.SetIterationTime(secondsOf(timer));
        if (RecoveryFolder(kept).read().entries.isEmpty())
            state.SkipWithError("nothing was kept");
    }
}

BENCHMARK(plainTabs)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);
BENCHMARK(windowsTaken)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseManualTime();
BENCHMARK(namesOpened)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseManualTime();
BENCHMARK(tabClosed)->Unit(benchmark::kMillisecond)->Iterations(5)->Repetitions(3)->UseManualTime();
BENCHMARK(unseenMemory)->Iterations(1)->Repetitions(3);
BENCHMARK(tabSwitched)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(4)
    ->Repetitions(3)
    ->UseManualTime();
BENCHMARK(keptOnDisk)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->UseManualTime();

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "200 windows taken, beside 200 plain tabs",
                   .measured = "windowsTaken",
                   .against = "plainTabs",
                   .limit = atMost(2)}) &&
    addComparison({.what = "200 windows taken",
                   .measured = "windowsTaken",
                   .unit = "ms",
                   .limit = atMost(5000)}) &&
    addComparison({.what = "2,000 names opened and read",
                   .measured = "namesOpened",
                   .unit = "ms",
                   .limit = atMost(4000)}) &&
    addComparison({.what = "one of 200 tabs closed",
                   .measured = "tabClosed",
                   .unit = "ms",
                   .limit = atMost(50)}) &&
    addComparison(
        {.what = "200 pictures of 1920 x 1080, not looked at for a minute (1,660 MB unpacked)",
         .measured = "unseenMemory",
         .unit = "MB",
         .limit = atMost(500)}) &&
    addComparison({.what = "a switch to one of them",
                   .measured = "tabSwitched",
                   .unit = "ms",
                   .limit = atMost(100)}) &&
    addComparison({.what = "a grab of 3840 x 2160 from its tab to the disk",
                   .measured = "keptOnDisk",
                   .unit = "ms",
                   .limit = atMost(1000)});

}  // namespace
