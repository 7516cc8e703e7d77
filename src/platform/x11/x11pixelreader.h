#pragma once

#include "platform/x11/x11display.h"

#include <QImage>
#include <QRect>

#include <array>

#include <xcb/shm.h>

/// Reads pixels of windows and pixmaps into images.
///
/// Bands of the picture travel through a small shared segment of two halves: the server fills one
/// half while the other is copied out, still warm in the cache. A segment of the picture's size
/// would be written, and read again, through main memory, and would stay with the program for good.
class X11PixelReader
{
public:
    explicit X11PixelReader(X11Display &display);
    ~X11PixelReader();
    X11PixelReader(const X11PixelReader &) = delete;
    X11PixelReader &operator=(const X11PixelReader &) = delete;

    /// `area` must lie inside the drawable. Null where the drawable is gone or its depth is
    /// unknown.
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
