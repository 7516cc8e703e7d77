#pragma once

#include "platform/x11/x11display.h"

#include <QImage>
#include <QRect>

#include <array>

#include <xcb/shm.h>

/// Reads the pixels of windows and pixmaps into images.
///
/// A picture is transferred in bands through a small shared memory segment of two halves: the
/// server fills one half while the other one is copied out, still in the cache. A segment of the
/// whole picture's size would pass through main memory twice, and the program would keep that
/// memory for good.
class X11PixelReader
{
public:
    explicit X11PixelReader(X11Display &display);
    ~X11PixelReader();
    X11PixelReader(const X11PixelReader &) = delete;
    X11PixelReader &operator=(const X11PixelReader &) = delete;

    /// Reads `area`, which is relative to the drawable and must lie inside of it. Null if the
    /// drawable is gone or its depth is not supported.
    QImage read(xcb_drawable_t drawable, const QRect &area, int depth);

private:
    struct Band {
        int top = 0;
        int height = 0;
        xcb_shm_get_image_cookie_t cookie{};
    };

    bool attach();
    bool readShared(xcb_drawable_t drawable, const QRect &area, QImage &image);
    bool readPlain(xcb_drawable_t drawable, const QRect &area, QImage &image);

    X11Display &m_display;
    xcb_shm_seg_t m_segment = XCB_NONE;
    uchar *m_memory = nullptr;
    bool m_sharedFailed = false;
};
