#include "comparison.h"

#include "platform/desktoppictures.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <malloc.h>
#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/shm.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

namespace {

// A picture stays open in its tab while the next is taken, so its memory is new: the system has to
// clear it first, which is a large part of the time. Pictures that were thrown away would leave
// theirs to the next one as long as nothing small has settled in it, and that is another time in
// each run.
class Open
{
public:
    explicit Open(benchmark::State &state) : m_state(state) {}

    void keep(const QPixmap &picture)
    {
        m_pictures[m_count++] = picture;
        if (m_count < m_pictures.size())
            return;
        m_state.PauseTiming();
        m_pictures = {};
        m_count = 0;
        malloc_trim(0);
        m_state.ResumeTiming();
    }

private:
    benchmark::State &m_state;
    std::array<QPixmap, 8> m_pictures;
    size_t m_count = 0;
};

void wholeDesktopByToolkit(benchmark::State &state)
{
    Open pictures(state);
    for (auto _ : state)
        pictures.keep(QGuiApplication::primaryScreen()->grabWindow(0));
}

void wholeDesktop(benchmark::State &state)
{
    Open pictures(state);
    for (auto _ : state)
        pictures.keep(desktopPicture(desktopBox()));
}

// The screen by one request, into a segment that is shared with the server for all of the time.
class BareScreen
{
public:
    BareScreen() : m_connection(xcb_connect(nullptr, nullptr))
    {
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        const int id = shmget(IPC_PRIVATE, bytes(), IPC_CREAT | 0600);
        m_memory = shmat(id, nullptr, 0);
        m_segment = xcb_generate_id(m_connection);
        std::free(
            xcb_request_check(m_connection, xcb_shm_attach_checked(m_connection, m_segment,
                                                                   static_cast<uint32_t>(id), 0)));
        shmctl(id, IPC_RMID, nullptr);
    }
    ~BareScreen()
    {
        shmdt(m_memory);
        xcb_disconnect(m_connection);
    }
    BareScreen(const BareScreen &) = delete;
    BareScreen &operator=(const BareScreen &) = delete;

    void read()
    {
        std::free(xcb_shm_get_image_reply(
            m_connection,
            xcb_shm_get_image(m_connection, m_screen->root, 0, 0, m_screen->width_in_pixels,
                              m_screen->height_in_pixels, ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment,
                              0),
            nullptr));
    }
    QSize size() const { return {m_screen->width_in_pixels, m_screen->height_in_pixels}; }
    size_t bytes() const
    {
        return size_t{4} * m_screen->width_in_pixels * m_screen->height_in_pixels;
    }
    const void *memory() const { return m_memory; }

private:
    xcb_connection_t *m_connection;
    const xcb_screen_t *m_screen = nullptr;
    void *m_memory = nullptr;
    xcb_shm_seg_t m_segment = XCB_NONE;
};

// The server's copy alone, over and over into the same memory: no picture is left that could be
// kept. Less than this nobody can do.
void wholeDesktopUnkept(benchmark::State &state)
{
    BareScreen screen;
    for (auto _ : state)
        screen.read();
}

// The same, and one copy into a picture that stays, in large pages as the program asks for them.
// What the program adds to that is its road from the command to the request; what it gains is that
// it copies one part while the server writes the next.
void wholeDesktopBare(benchmark::State &state)
{
    BareScreen screen;
    Open pictures(state);
    for (auto _ : state) {
        screen.read();
        QImage picture(screen.size(), QImage::Format_RGB32);
        constexpr uintptr_t page = 4096;
        const auto from = reinterpret_cast<uintptr_t>(picture.bits()) / page * page;
        madvise(reinterpret_cast<void *>(from), screen.bytes(), MADV_HUGEPAGE);
        std::memcpy(picture.bits(), screen.memory(), screen.bytes());
        pictures.keep(QPixmap::fromImage(std::move(picture)));
    }
}

BENCHMARK(wholeDesktop)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(wholeDesktopByToolkit)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(wholeDesktopBare)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();
BENCHMARK(wholeDesktopUnkept)->Unit(benchmark::kMillisecond)->Repetitions(5)->UseRealTime();

[[maybe_unused]] const bool s_registered =
    addComparison({.what = "whole desktop at 3840 x 2160 into a `QPixmap`, against "
                           "`QScreen::grabWindow`, each picture kept open",
                   .measured = "wholeDesktop",
                   .against = "wholeDesktopByToolkit",
                   .faster = true,
                   .limit = atLeast(8)}) &&
    addComparison({.what =
                       "the same, against one bare `ShmGetImage` and a copy into a picture that "
                       "stays open",
                   .measured = "wholeDesktop",
                   .against = "wholeDesktopBare",
                   .limit = atMost(1.3)}) &&
    addComparison({.what = "the same, against the `ShmGetImage` alone, again and again into the "
                           "same memory",
                   .measured = "wholeDesktop",
                   .against = "wholeDesktopUnkept"});

}  // namespace
