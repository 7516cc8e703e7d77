#include "comparison.h"

#include "platform/windowlist.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>

#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

namespace {

// Keeps a picture while the next one is taken, as a tab does, so that its memory is not reused.
class Open
{
public:
    void keep(const QPixmap &picture)
    {
        m_pictures[m_next] = picture;
        m_next = (m_next + 1) % m_pictures.size();
    }

private:
    std::array<QPixmap, 8> m_pictures;
    size_t m_next = 0;
};

void wholeDesktopByToolkit(benchmark::State &state)
{
    Open pictures;
    for (auto _ : state)
        pictures.keep(QGuiApplication::primaryScreen()->grabWindow(0));
}

void wholeDesktop(benchmark::State &state)
{
    Open pictures;
    for (auto _ : state)
        pictures.keep(screenWindow(0, 0, -1, -1, true, nullptr));
}

// The lowest possible cost of a picture of the screen: the server's copy into shared memory.
void wholeDesktopBare(benchmark::State &state)
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const size_t bytes = size_t{4} * screen->width_in_pixels * screen->height_in_pixels;
    const int id = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    void *memory = shmat(id, nullptr, 0);
    const xcb_shm_seg_t segment = xcb_generate_id(connection);
    std::free(xcb_request_check(
        connection, xcb_shm_attach_checked(connection, segment, static_cast<uint32_t>(id), 0)));
    shmctl(id, IPC_RMID, nullptr);
    for (auto _ : state) {
        std::free(xcb_shm_get_image_reply(
            connection,
            xcb_shm_get_image(connection, screen->root, 0, 0, screen->width_in_pixels,
                              screen->height_in_pixels, ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, segment, 0),
            nullptr));
    }
    shmdt(memory);
    xcb_disconnect(connection);
}

BENCHMARK(wholeDesktopByToolkit)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(wholeDesktop)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(wholeDesktopBare)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "whole desktop at 3840 x 2160 into a `QPixmap`, against "
                           "`QScreen::grabWindow`, each picture kept open",
                   .measured = "wholeDesktop",
                   .against = "wholeDesktopByToolkit",
                   .faster = true,
                   .limit = "8 times faster or more"}) &&
    addComparison({.what = "the same, against a bare `ShmGetImage` into an attached segment",
                   .measured = "wholeDesktop",
                   .against = "wholeDesktopBare",
                   .limit = "at most 3 times"});

}  // namespace
