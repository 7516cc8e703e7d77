#include "comparison.h"

#include "helper/scrollcapture.h"
#include "platform/services.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

const QRect s_window(100, 50, 1300, 900);
constexpr int s_screens = 20;
constexpr int s_rows = s_screens * 880;
constexpr int s_wheelStep = 51;  // step of the program that scrolls
constexpr int s_clicks = 12;     // about 0.7 of its view
constexpr int s_round = 12;      // ms
constexpr int s_rest = 90;
constexpr int s_patience = 500;

// Another program with a long page, scrolled to its top.
class Page
{
public:
    Page()
    {
        QStringList arguments;
        for (const int number :
             {s_window.x(), s_window.y(), s_window.width(), s_window.height(), s_rows})
            arguments.append(QString::number(number));
        m_program.start(QStringLiteral(BENCH_LONG), arguments);
        m_program.waitForReadyRead();
        m_view = QImage();
        QElapsedTimer clock;
        clock.start();
        while (m_number == 0 && clock.elapsed() < 10000) {
            for (const auto &window :
                 services().windows->windows(WindowCatalogue::List::OnScreen, 0)) {
                if (window.bounds.toRect() == s_window)
                    m_number = window.number;
            }
            pause();
        }
        settle();
    }
    ~Page()
    {
        m_program.kill();
        m_program.waitForFinished();
    }

    int number() const { return m_number; }

    void turn(int clicks)
    {
        m_view = look();
        services().hands->turnWheel(s_window.center(), clicks, Hands::Wheel::Down);
        settle();
    }

private:
    static void pause()
    {
        QEventLoop loop;
        QTimer::singleShot(s_round, &loop, &QEventLoop::quit);
        loop.exec();
    }
    QImage look() const { return services().pictures->ofWindows(std::nullopt, {m_number}); }
    // Waits until something has changed and then nothing changes any more.
    void settle()
    {
        const QImage before = m_view;
        QElapsedTimer sinceTurn;
        sinceTurn.start();
        QElapsedTimer sinceChange = sinceTurn;
        while (true) {
            pause();
            const QImage now = look();
            if (now != m_view)
                sinceChange.restart();
            m_view = now;
            if (m_view != before ? sinceChange.elapsed() >= s_rest
                                 : sinceTurn.elapsed() >= s_patience)
                return;
        }
    }

    QProcess m_program;
    int m_number = 0;
    QImage m_view;
};

void scrolledPage(benchmark::State &state)
{
    const Page page;
    for (auto _ : state) {
        ScrollCapture capture({.window = page.number(), .anchor = s_window.center()});
        const ScrollCapture::Result result = capture.run();
        if (result.picture.height() != s_rows)
            state.SkipWithError("the page did not come out whole");
    }
}

void scrolledPageBare(benchmark::State &state)
{
    Page page;
    for (auto _ : state) {
        for (int row = 0; row < s_rows - s_window.height(); row += s_clicks * s_wheelStep)
            page.turn(s_clicks);
        page.turn(-s_rows / s_wheelStep);
    }
}

BENCHMARK(scrolledPage)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1)
    ->Repetitions(3);
BENCHMARK(scrolledPageBare)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(1)
    ->Repetitions(3);

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "taking a page of 20 screens, against scrolling down it and back and "
                           "waiting for it to come to rest",
                   .measured = "scrolledPage",
                   .against = "scrolledPageBare",
                   .limit = atMost(1.3)});

}  // namespace
