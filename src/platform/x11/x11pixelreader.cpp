#include "platform/x11/x11pixelreader.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include <sys/ipc.h>
#include <sys/mman.h>
#include <sys/shm.h>

namespace {

constexpr size_t s_slots = 4;
constexpr int s_slotBytes = 1024 * 1024;
constexpr size_t s_largePage = size_t{2} * 1024 * 1024;

QImage::Format formatOf(int depth)
{
    switch (depth) {
    case 32:
        return QImage::Format_ARGB32_Premultiplied;
    case 30:
        return QImage::Format_RGB30;
    case 24:
        return QImage::Format_RGB32;
    case 16:
        return QImage::Format_RGB16;
    default:
        return QImage::Format_Invalid;
    }
}

// New memory is mapped page by page, and the first write to each page traps into the kernel; for a
// large picture that takes longer than the copying. Large pages need only a few traps.
void preferLargePages(QImage &image)
{
    constexpr size_t page = 4096;
    const size_t before = reinterpret_cast<uintptr_t>(image.bits()) % page;
    const size_t bytes = before + static_cast<size_t>(image.sizeInBytes());
    if (bytes >= s_largePage)
        madvise(image.bits() - before, (bytes + page - 1) / page * page, MADV_HUGEPAGE);
}

// Lines of the server's images and of QImage are both padded to four bytes. Bits that no colour
// uses are undefined in the server's images and are set while copying, since a second pass would
// cost as much again.
void copyLines(QImage &image, int top, int height, const uchar *from)
{
    const size_t bytes = static_cast<size_t>(image.bytesPerLine()) * height;
    uint32_t unused = 0;
    if (image.format() == QImage::Format_RGB32)
        unused = 0xff000000U;
    else if (image.format() == QImage::Format_RGB30)
        unused = 0xc0000000U;
    if (unused == 0) {
        std::memcpy(image.scanLine(top), from, bytes);
        return;
    }
    auto *to = reinterpret_cast<uint32_t *>(image.scanLine(top));
    const auto *pixels = reinterpret_cast<const uint32_t *>(from);
    const size_t count = bytes / sizeof(uint32_t);
    for (size_t i = 0; i < count; ++i)
        to[i] = pixels[i] | unused;
}

}  // namespace

X11PixelReader::X11PixelReader(X11Display &display) : m_display(display) {}

X11PixelReader::~X11PixelReader()
{
    if (m_memory)
        shmdt(m_memory);
}

bool X11PixelReader::attach()
{
    if (m_memory || m_sharedFailed)
        return m_memory;
    m_sharedFailed = true;
    xcb_connection_t *connection = m_display.connection();
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(connection, &xcb_shm_id);
    if (!extension || !extension->present)
        return false;
    const int id = shmget(IPC_PRIVATE, s_slots * s_slotBytes, IPC_CREAT | 0600);
    if (id == -1)
        return false;
    void *memory = shmat(id, nullptr, 0);
    if (reinterpret_cast<intptr_t>(memory) != -1) {
        m_segment = xcb_generate_id(connection);
        const Reply<xcb_generic_error_t> error(
            xcb_request_check(connection, xcb_shm_attach_checked(connection, m_segment,
                                                                 static_cast<uint32_t>(id), 0)));
        // A server on another machine can't attach the segment.
        if (error)
            shmdt(memory);
        else
            m_memory = static_cast<uchar *>(memory);
    }
    shmctl(id, IPC_RMID, nullptr);
    m_sharedFailed = !m_memory;
    return m_memory;
}

bool X11PixelReader::readShared(xcb_drawable_t drawable, const QRect &area, QImage &image)
{
    xcb_connection_t *connection = m_display.connection();
    const int bandHeight = static_cast<int>(s_slotBytes / image.bytesPerLine());
    std::array<std::optional<Band>, s_slots> bands;
    int asked = 0;
    const auto ask = [&](size_t slot) {
        bands[slot].reset();
        if (asked >= image.height())
            return;
        Band band{.top = asked, .height = std::min(bandHeight, image.height() - asked)};
        band.cookie = xcb_shm_get_image(
            connection, drawable, static_cast<int16_t>(area.x()),
            static_cast<int16_t>(area.y() + band.top), static_cast<uint16_t>(area.width()),
            static_cast<uint16_t>(band.height), ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, m_segment,
            static_cast<uint32_t>(slot * s_slotBytes));
        asked += band.height;
        bands[slot] = band;
        xcb_flush(connection);
    };

    bool complete = true;
    for (size_t slot = 0; slot < s_slots; ++slot)
        ask(slot);
    for (size_t slot = 0; bands[slot]; slot = (slot + 1) % s_slots) {
        const Band band = *bands[slot];
        const auto reply = XCB_REPLY(connection, shm_get_image, band.cookie);
        if (reply && complete)
            copyLines(image, band.top, band.height, m_memory + slot * s_slotBytes);
        complete = complete && reply;
        ask(slot);
    }
    return complete;
}

bool X11PixelReader::readPlain(xcb_drawable_t drawable, const QRect &area, QImage &image)
{
    xcb_connection_t *connection = m_display.connection();
    const auto reply =
        XCB_REPLY(connection, get_image,
                  xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable,
                                static_cast<int16_t>(area.x()), static_cast<int16_t>(area.y()),
                                static_cast<uint16_t>(area.width()),
                                static_cast<uint16_t>(area.height()), ~0U));
    if (!reply || xcb_get_image_data_length(reply.get()) < image.sizeInBytes())
        return false;
    copyLines(image, 0, image.height(), xcb_get_image_data(reply.get()));
    return true;
}

QImage X11PixelReader::read(xcb_drawable_t drawable, const QRect &area, int depth)
{
    const QImage::Format format = formatOf(depth);
    if (format == QImage::Format_Invalid || area.isEmpty())
        return {};
    QImage image(area.size(), format);
    if (image.isNull())
        return {};
    preferLargePages(image);
    // A server may allow the segment to be attached and still refuse to write into it.
    const bool shared =
        attach() && image.bytesPerLine() <= s_slotBytes && readShared(drawable, area, image);
    if (!shared && !readPlain(drawable, area, image))
        return {};
    return depth == 16 || depth == 30 ? image.convertToFormat(QImage::Format_RGB32) : image;
}
