#include "platform/wayland/screencopy.h"

#include <QTransform>

#include <algorithm>
#include <array>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <wlr-screencopy-unstable-v1.h>

namespace {

constexpr uint32_t s_tellsEnd = 3;  // the version that says when all offers have been made

struct Format {
    uint32_t code = 0;
    QImage::Format format = QImage::Format_Invalid;
};

// Screens show no transparency, so what is written for it does not count.
constexpr std::array<Format, 6> s_formats{{
    {WL_SHM_FORMAT_XRGB8888, QImage::Format_RGB32},
    {WL_SHM_FORMAT_ARGB8888, QImage::Format_RGB32},
    {WL_SHM_FORMAT_XBGR8888, QImage::Format_RGBX8888},
    {WL_SHM_FORMAT_ABGR8888, QImage::Format_RGBX8888},
    {WL_SHM_FORMAT_XRGB2101010, QImage::Format_RGB30},
    {WL_SHM_FORMAT_XBGR2101010, QImage::Format_BGR30},
}};

QImage::Format formatOf(uint32_t code)
{
    const auto *const found =
        std::find_if(s_formats.begin(), s_formats.end(),
                     [code](const Format &format) { return format.code == code; });
    return found == s_formats.end() ? QImage::Format_Invalid : found->format;
}

// As the screen is seen: the compositor turns what lies in memory against the clock.
QImage turned(const QImage &image, int32_t transform)
{
    constexpr int32_t flipped = WL_OUTPUT_TRANSFORM_FLIPPED;
    constexpr qreal quarter = 90;
    if (transform == WL_OUTPUT_TRANSFORM_NORMAL)
        return image;
    QTransform turn;
    turn.rotate(quarter * (transform % flipped));
    const QImage upright = image.transformed(turn);
    return transform >= flipped ? upright.mirrored(true, false) : upright;
}

}  // namespace

std::shared_ptr<SharedPicture> SharedPicture::create(wl_shm *shm, uint32_t format, QSize size,
                                                     int stride)
{
    const qint64 bytes = qint64(stride) * size.height();
    if (!shm || size.isEmpty() || stride < size.width() * 4 || bytes > INT32_MAX)
        return nullptr;
    const int file = memfd_create("picture", MFD_CLOEXEC);
    void *memory = MAP_FAILED;
    if (file >= 0 && ftruncate(file, bytes) == 0)
        memory =
            mmap(nullptr, static_cast<size_t>(bytes), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    wl_buffer *buffer = nullptr;
    if (memory != MAP_FAILED) {
        wl_shm_pool *pool = wl_shm_create_pool(shm, file, static_cast<int32_t>(bytes));
        buffer = wl_shm_pool_create_buffer(pool, 0, size.width(), size.height(), stride, format);
        wl_shm_pool_destroy(pool);
    }
    if (file >= 0)
        close(file);
    if (!buffer)
        return nullptr;
    return std::shared_ptr<SharedPicture>(new SharedPicture(buffer, memory, format, size, stride));
}

SharedPicture::~SharedPicture()
{
    wl_buffer_destroy(m_buffer);
    munmap(m_memory, static_cast<size_t>(m_stride) * static_cast<size_t>(m_size.height()));
}

bool SharedPicture::isKnown(uint32_t format) { return formatOf(format) != QImage::Format_Invalid; }

bool SharedPicture::fits(uint32_t format, QSize size, int stride) const
{
    return m_format == format && m_size == size && m_stride == stride;
}

QImage SharedPicture::image(const std::shared_ptr<SharedPicture> &picture)
{
    // Let go by the image when its last copy goes.
    auto holder = std::make_unique<std::shared_ptr<SharedPicture>>(picture);
    return {static_cast<const uchar *>(picture->m_memory),
            picture->m_size.width(),
            picture->m_size.height(),
            picture->m_stride,
            formatOf(picture->m_format),
            [](void *held) { delete static_cast<std::shared_ptr<SharedPicture> *>(held); },
            holder.release()};
}

Screencopy::Screencopy(std::shared_ptr<WaylandConnection> connection, const WaylandOutput &output,
                       std::shared_ptr<SharedPicture> kept, bool withPointer, Answer answer)
    : m_connection(std::move(connection)), m_kept(std::move(kept)), m_answer(std::move(answer)),
      m_transform(output.transform)
{
    static const zwlr_screencopy_frame_v1_listener s_listener{
        .buffer =
            [](void *data, zwlr_screencopy_frame_v1 *, uint32_t format, uint32_t width,
               uint32_t height, uint32_t stride) {
                static_cast<Screencopy *>(data)->offered(
                    {format,
                     {static_cast<int>(width), static_cast<int>(height)},
                     static_cast<int>(stride)});
            },
        .flags =
            [](void *data, zwlr_screencopy_frame_v1 *, uint32_t flags) {
                static_cast<Screencopy *>(data)->m_isUpsideDown =
                    flags & ZWLR_SCREENCOPY_FRAME_V1_FLAGS_Y_INVERT;
            },
        .ready = [](void *data, zwlr_screencopy_frame_v1 *, uint32_t, uint32_t,
                    uint32_t) { static_cast<Screencopy *>(data)->ready(); },
        .failed = [](void *data,
                     zwlr_screencopy_frame_v1 *) { static_cast<Screencopy *>(data)->finish({}); },
        .damage = [](void *, zwlr_screencopy_frame_v1 *, uint32_t, uint32_t, uint32_t, uint32_t) {},
        .linux_dmabuf = [](void *, zwlr_screencopy_frame_v1 *, uint32_t, uint32_t, uint32_t) {},
        .buffer_done =
            [](void *data, zwlr_screencopy_frame_v1 *) {
                static_cast<Screencopy *>(data)->write();
            }};
    m_frame = zwlr_screencopy_manager_v1_capture_output(m_connection->screencopy(),
                                                        withPointer ? 1 : 0, output.output);
    zwlr_screencopy_frame_v1_add_listener(m_frame, &s_listener, this);
    m_connection->flush();
}

Screencopy::~Screencopy()
{
    if (m_frame)
        zwlr_screencopy_frame_v1_destroy(m_frame);
}

// The first format that can be read here; the compositor begins with the one that it likes best.
void Screencopy::offered(const Offer &offer)
{
    if (!m_offer && SharedPicture::isKnown(offer.format))
        m_offer = offer;
    const auto version = zwlr_screencopy_manager_v1_get_version(m_connection->screencopy());
    if (version < s_tellsEnd)
        write();
}

void Screencopy::write()
{
    if (m_written || !m_frame)
        return;
    if (m_offer) {
        const auto [format, size, stride] = *m_offer;
        const bool isFree = m_kept && m_kept.use_count() == 1;
        m_written = isFree && m_kept->fits(format, size, stride)
                        ? m_kept
                        : SharedPicture::create(m_connection->shm(), format, size, stride);
    }
    if (!m_written) {
        finish({});
        return;
    }
    zwlr_screencopy_frame_v1_copy(m_frame, m_written->buffer());
    m_connection->flush();
}

void Screencopy::ready()
{
    QImage picture = SharedPicture::image(m_written);
    if (m_isUpsideDown)
        picture = picture.mirrored();
    finish(turned(picture, m_transform).convertToFormat(QImage::Format_RGB32));
}

void Screencopy::finish(const QImage &picture)
{
    zwlr_screencopy_frame_v1_destroy(std::exchange(m_frame, nullptr));
    const Answer answer = std::exchange(m_answer, nullptr);
    if (answer)
        answer(picture);
}
