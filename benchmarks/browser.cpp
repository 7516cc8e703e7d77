// The window browser, on a desktop with many windows.

#include "comparison.h"

#include "capture/windowbrowser.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QList>
#include <QPixmap>
#include <QScreen>
#include <QWindow>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include <xcb/xcb.h>

namespace {

constexpr int s_count = 40;
constexpr uint16_t s_width = 1280;
constexpr uint16_t s_height = 800;
constexpr uint16_t s_tile = 64;

// Stacked windows of another program, each with different contents.
class Windows
{
public:
    Windows() : m_connection(xcb_connect(nullptr, nullptr))
    {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        const xcb_gcontext_t gc = xcb_generate_id(m_connection);
        xcb_create_gc(m_connection, gc, screen->root, 0, nullptr);
        std::vector<uint32_t> pixels(s_tile * s_tile);
        uint32_t seed = 1;
        for (int16_t i = 0; i < s_count; ++i) {
            std::generate(pixels.begin(), pixels.end(),
                          [&seed] { return (seed = seed * 1664525U + 1013904223U) >> 8; });
            const xcb_pixmap_t tile = xcb_generate_id(m_connection);
            xcb_create_pixmap(m_connection, screen->root_depth, tile, screen->root, s_tile, s_tile);
            xcb_put_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, tile, gc, s_tile, s_tile, 0, 0,
                          0, screen->root_depth,
                          static_cast<uint32_t>(pixels.size() * sizeof(uint32_t)),
                          reinterpret_cast<const uint8_t *>(pixels.data()));
            const xcb_window_t window = xcb_generate_id(m_connection);
            xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root,
                              static_cast<int16_t>(i * 50), static_cast<int16_t>(i * 30), s_width,
                              s_height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                              XCB_CW_BACK_PIXMAP, &tile);
            xcb_map_window(m_connection, window);
            m_windows.append(window);
        }
        // The reply means that the windows exist.
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }
    ~Windows() { xcb_disconnect(m_connection); }
    Windows(const Windows &) = delete;
    Windows &operator=(const Windows &) = delete;

    const QList<xcb_window_t> &all() const { return m_windows; }

private:
    xcb_connection_t *m_connection;
    QList<xcb_window_t> m_windows;
};

void windowsByToolkit(benchmark::State &state)
{
    const Windows windows;
    for (auto _ : state) {
        QList<QPixmap> pictures;
        for (const xcb_window_t window : windows.all())
            pictures.append(QGuiApplication::primaryScreen()->grabWindow(window));
        benchmark::DoNotOptimize(pictures);
    }
}

// Measures until the browser has been exposed and therefore painted.
void browserOpens(benchmark::State &state)
{
    const Windows windows;
    for (auto _ : state) {
        WindowsPreView browser;
        browser.show();
        while (!browser.windowHandle()->isExposed())
            QCoreApplication::processEvents();
    }
}

BENCHMARK(windowsByToolkit)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(browserOpens)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "opening the browser on 40 windows of 1280 x 800, against grabbing them "
                           "one by one with `QScreen::grabWindow`",
                   .measured = "browserOpens",
                   .against = "windowsByToolkit",
                   .limit = atMost(1)});

}  // namespace
