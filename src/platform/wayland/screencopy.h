#pragma once

#include "platform/wayland/waylandconnection.h"

#include <QImage>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

struct wl_buffer;
struct zwlr_screencopy_frame_v1;

/// Memory that the compositor writes a picture into.
class SharedPicture
{
public:
    /// Null if there is no such memory. `format` is one of wl_shm's.
    static std::shared_ptr<SharedPicture> create(wl_shm *shm, uint32_t format, QSize size,
                                                 int stride);
    ~SharedPicture();
    SharedPicture(const SharedPicture &) = delete;
    SharedPicture &operator=(const SharedPicture &) = delete;

    /// Whether pictures with this format can be read here.
    static bool isKnown(uint32_t format);
    bool fits(uint32_t format, QSize size, int stride) const;
    wl_buffer *buffer() const { return m_buffer; }

    /// What has been written, without a copy. The memory lives as long as that does.
    static QImage image(const std::shared_ptr<SharedPicture> &picture);

private:
    SharedPicture(wl_buffer *buffer, void *memory, uint32_t format, QSize size, int stride)
        : m_buffer(buffer), m_memory(memory), m_format(format), m_size(size), m_stride(stride)
    {
    }

    wl_buffer *m_buffer;
    void *m_memory;
    uint32_t m_format;
    QSize m_size;
    int m_stride;
};

/// Takes one picture of one screen, in the screen's own pixels, without the pointer.
class Screencopy : public QObject
{
    Q_OBJECT
public:
    /// `answer` is called once, when events are handled, with null if the compositor refuses. It
    /// may delete this object, which gives the picture up. `kept` may be written into if nobody
    /// holds its picture any more.
    using Answer = std::function<void(QImage)>;
    Screencopy(std::shared_ptr<WaylandConnection> connection, const WaylandOutput &output,
               std::shared_ptr<SharedPicture> kept, bool withPointer, Answer answer);
    ~Screencopy() override;

    /// Where the picture was written to; null before.
    const std::shared_ptr<SharedPicture> &written() const { return m_written; }

private:
    struct Offer {
        uint32_t format = 0;
        QSize size{};
        int stride = 0;
    };
    void offered(const Offer &offer);
    void write();
    void ready();
    void finish(const QImage &picture);

    std::shared_ptr<WaylandConnection> m_connection;
    zwlr_screencopy_frame_v1 *m_frame = nullptr;
    std::shared_ptr<SharedPicture> m_kept;
    std::shared_ptr<SharedPicture> m_written;
    Answer m_answer;
    std::optional<Offer> m_offer;
    bool m_isUpsideDown = false;
    int32_t m_transform;
};
