#include "platform/wayland/caststreams.h"

#include "base/log.h"

#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include <pipewire/pipewire.h>
#include <spa/param/video/format-utils.h>
#include <unistd.h>

namespace {

constexpr int s_pixelBytes = 4;
constexpr int s_largestSide = 16384;
constexpr int s_frameRate = 60;  // in a second, at most
constexpr QRgb s_opaque = 0xFF000000;

struct LoopDeleter {
    void operator()(pw_loop *loop) const
    {
        pw_loop_leave(loop);
        pw_loop_destroy(loop);
    }
};
struct ContextDeleter {
    void operator()(pw_context *context) const { pw_context_destroy(context); }
};
struct CoreDeleter {
    void operator()(pw_core *core) const { pw_core_disconnect(core); }
};

// All that the desktop may choose from: what it would have to be asked for in the graphics card's
// memory is not among it.
const spa_pod *offeredFormat(spa_pod_builder &builder)
{
    const spa_rectangle usual{1920, 1080};
    const spa_rectangle least{1, 1};
    const spa_rectangle most{s_largestSide, s_largestSide};
    const spa_fraction varies{0, 1};
    const spa_fraction fastest{s_frameRate, 1};
    spa_pod_frame frame;
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_Format, SPA_PARAM_EnumFormat);
    spa_pod_builder_add(
        &builder, SPA_FORMAT_mediaType, SPA_POD_Id(SPA_MEDIA_TYPE_video), SPA_FORMAT_mediaSubtype,
        SPA_POD_Id(SPA_MEDIA_SUBTYPE_raw), SPA_FORMAT_VIDEO_format,
        SPA_POD_CHOICE_ENUM_Id(5, SPA_VIDEO_FORMAT_BGRx, SPA_VIDEO_FORMAT_BGRx,
                               SPA_VIDEO_FORMAT_BGRA, SPA_VIDEO_FORMAT_RGBx, SPA_VIDEO_FORMAT_RGBA),
        SPA_FORMAT_VIDEO_size, SPA_POD_CHOICE_RANGE_Rectangle(&usual, &least, &most),
        SPA_FORMAT_VIDEO_framerate, SPA_POD_Fraction(&varies), SPA_FORMAT_VIDEO_maxFramerate,
        SPA_POD_CHOICE_RANGE_Fraction(&fastest, &varies, &fastest), 0);
    return static_cast<const spa_pod *>(spa_pod_builder_pop(&builder, &frame));
}

// One buffer is kept here, so that the desktop needs others meanwhile.
const spa_pod *wantedBuffers(spa_pod_builder &builder)
{
    constexpr int usual = 6;
    constexpr int least = 3;
    constexpr int most = 16;
    spa_pod_frame frame;
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers);
    spa_pod_builder_add(
        &builder, SPA_PARAM_BUFFERS_buffers, SPA_POD_CHOICE_RANGE_Int(usual, least, most),
        SPA_PARAM_BUFFERS_blocks, SPA_POD_Int(1), SPA_PARAM_BUFFERS_dataType,
        SPA_POD_CHOICE_FLAGS_Int((1 << SPA_DATA_MemFd) | (1 << SPA_DATA_MemPtr)), 0);
    return static_cast<const spa_pod *>(spa_pod_builder_pop(&builder, &frame));
}

// Tells which frames are broken.
const spa_pod *wantedHeader(spa_pod_builder &builder)
{
    spa_pod_frame frame;
    spa_pod_builder_push_object(&builder, &frame, SPA_TYPE_OBJECT_ParamMeta, SPA_PARAM_Meta);
    spa_pod_builder_add(&builder, SPA_PARAM_META_type, SPA_POD_Id(SPA_META_Header),
                        SPA_PARAM_META_size, SPA_POD_Int(int(sizeof(spa_meta_header))), 0);
    return static_cast<const spa_pod *>(spa_pod_builder_pop(&builder, &frame));
}

struct Builder {
    std::array<uint8_t, 1024> room{};
    spa_pod_builder builder{};
    Builder() { spa_pod_builder_init(&builder, room.data(), room.size()); }
};

}  // namespace

bool CastFrame::isWhole() const
{
    const qsizetype row = qsizetype(pixels.width()) * s_pixelBytes;
    const bool isSound = memory && !pixels.isEmpty() && pixels.width() <= s_largestSide &&
                         pixels.height() <= s_largestSide && stride >= row && offset >= 0 &&
                         offset <= capacity && length <= capacity - offset;
    // The last row may end with its last pixel.
    return isSound && length >= row && (length - row) / stride >= pixels.height() - 1;
}

QImage CastFrame::picture() const
{
    if (!isWhole())
        return {};
    QImage result(pixels, QImage::Format_RGB32);
    for (int y = 0; y < result.height(); ++y) {
        // A row may begin anywhere in the memory.
        auto *row = reinterpret_cast<QRgb *>(result.scanLine(y));
        std::memcpy(row, memory + offset + y * stride, pixels.width() * sizeof(QRgb));
        if (order == Order::BlueFirst)
            std::transform(row, row + pixels.width(), row,
                           [](QRgb pixel) { return pixel | s_opaque; });
        else
            std::transform(row, row + pixels.width(), row, [](QRgb pixel) {
                return qRgb(qBlue(pixel), qGreen(pixel), qRed(pixel));
            });
    }
    return result;
}

struct CastStreams::Connection {
    std::unique_ptr<pw_loop, LoopDeleter> loop;
    std::unique_ptr<pw_context, ContextDeleter> context;
    std::unique_ptr<pw_core, CoreDeleter> core;
    spa_hook listener{};
    std::unique_ptr<QSocketNotifier> notifier;

    Connection() = default;
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection()
    {
        if (core)
            spa_hook_remove(&listener);
    }
};

struct CastStreams::Stream {
    CastStreams *owner;
    pw_stream *stream = nullptr;
    spa_hook listener{};
    spa_video_info_raw format{};
    pw_buffer *held = nullptr;  // the latest one, which the desktop does not write to
    CastFrame frame{};          // that lies in it
    QImage picture{};
    bool isNew = false;  // the frame is not in the picture yet

    explicit Stream(CastStreams *streams) : owner(streams) {}
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;
    ~Stream()
    {
        if (stream)
            pw_stream_destroy(stream);
    }

    CastFrame frameIn(const pw_buffer &buffer) const;
    void receive();
    void read();
};

CastFrame CastStreams::Stream::frameIn(const pw_buffer &buffer) const
{
    const spa_buffer &content = *buffer.buffer;
    const auto *header = static_cast<const spa_meta_header *>(
        spa_buffer_find_meta_data(&content, SPA_META_Header, sizeof(spa_meta_header)));
    if (content.n_datas == 0 || (header && (header->flags & SPA_META_HEADER_FLAG_CORRUPTED)))
        return {};
    const spa_data &data = content.datas[0];
    if (!data.data || !data.chunk || (data.chunk->flags & SPA_CHUNK_FLAG_CORRUPTED))
        return {};
    const bool isRedFirst =
        format.format == SPA_VIDEO_FORMAT_RGBx || format.format == SPA_VIDEO_FORMAT_RGBA;
    return {.memory = static_cast<const uchar *>(data.data),
            .capacity = data.maxsize,
            .offset = data.chunk->offset,
            .length = data.chunk->size,
            .stride = data.chunk->stride,
            .pixels = QSize(int(format.size.width), int(format.size.height)),
            .order = isRedFirst ? CastFrame::Order::RedFirst : CastFrame::Order::BlueFirst};
}

// Frames that tell of the pointer alone are empty, and no frames.
void CastStreams::Stream::receive()
{
    while (pw_buffer *buffer = pw_stream_dequeue_buffer(stream)) {
        const CastFrame received = frameIn(*buffer);
        if (!received.isWhole()) {
            pw_stream_queue_buffer(stream, buffer);
            continue;
        }
        if (held)
            pw_stream_queue_buffer(stream, held);
        held = buffer;
        frame = received;
        isNew = true;
    }
}

void CastStreams::Stream::read()
{
    if (std::exchange(isNew, false))
        picture = frame.picture();
}

// What PipeWire calls, from its loop, in which nothing that it calls for may be taken down.
struct CastStreams::Events {
    static Stream &of(void *data) { return *static_cast<Stream *>(data); }

    static void changeState(void *data, pw_stream_state /*old*/, pw_stream_state state,
                            const char *error)
    {
        qCInfo(logGrab) << "screen cast:" << pw_stream_state_as_string(state) << error;
        if (state == PW_STREAM_STATE_ERROR || state == PW_STREAM_STATE_UNCONNECTED)
            of(data).owner->end();
    }

    static void changeParam(void *data, uint32_t id, const spa_pod *param)
    {
        Stream &stream = of(data);
        if (!param || id != SPA_PARAM_Format)
            return;
        if (spa_format_video_raw_parse(param, &stream.format) < 0) {
            stream.owner->end();
            return;
        }
        Builder buffers;
        Builder header;
        std::array<const spa_pod *, 2> wanted{wantedBuffers(buffers.builder),
                                              wantedHeader(header.builder)};
        pw_stream_update_params(stream.stream, wanted.data(), uint32_t(wanted.size()));
    }

    static void removeBuffer(void *data, pw_buffer *buffer)
    {
        Stream &stream = of(data);
        if (buffer != stream.held)
            return;
        stream.read();
        stream.held = nullptr;
    }

    static void process(void *data)
    {
        of(data).receive();
        of(data).owner->tellIfReady();
    }

    static void fail(void *data, uint32_t id, int /*sequence*/, int /*result*/, const char *message)
    {
        qCInfo(logGrab) << "screen cast:" << message;
        if (id == PW_ID_CORE)
            static_cast<CastStreams *>(data)->end();
    }

    static const pw_stream_events &ofStream()
    {
        static const pw_stream_events s_events = [] {
            pw_stream_events events{};
            events.version = PW_VERSION_STREAM_EVENTS;
            events.state_changed = &changeState;
            events.param_changed = &changeParam;
            events.remove_buffer = &removeBuffer;
            events.process = &process;
            return events;
        }();
        return s_events;
    }

    static const pw_core_events &ofCore()
    {
        static const pw_core_events s_events = [] {
            pw_core_events events{};
            events.version = PW_VERSION_CORE_EVENTS;
            events.error = &fail;
            return events;
        }();
        return s_events;
    }
};

CastStreams::CastStreams(int descriptor, const QList<uint> &nodes)
    : m_connection(std::make_unique<Connection>())
{
    pw_init(nullptr, nullptr);
    Connection &to = *m_connection;
    to.loop.reset(pw_loop_new(nullptr));
    if (to.loop) {
        pw_loop_enter(to.loop.get());
        // Nothing here has to come in time to the microsecond.
        to.context.reset(
            pw_context_new(to.loop.get(), pw_properties_new("module.rt", "false", nullptr), 0));
    }
    if (to.context)
        to.core.reset(pw_context_connect_fd(to.context.get(), descriptor, nullptr, 0));
    else
        close(descriptor);
    if (!to.core) {
        end();
        return;
    }
    pw_core_add_listener(to.core.get(), &to.listener, &Events::ofCore(), this);
    for (const uint node : nodes) {
        const auto &made = m_streams.emplace_back(std::make_unique<Stream>(this));
        made->stream =
            pw_stream_new(to.core.get(), "screen",
                          pw_properties_new(PW_KEY_MEDIA_TYPE, "Video", PW_KEY_MEDIA_CATEGORY,
                                            "Capture", PW_KEY_MEDIA_ROLE, "Screen",
                                            PW_KEY_NODE_DONT_RECONNECT, "true", nullptr));
        if (!made->stream) {
            end();
            return;
        }
        pw_stream_add_listener(made->stream, &made->listener, &Events::ofStream(), made.get());
        Builder format;
        std::array<const spa_pod *, 1> offered{offeredFormat(format.builder)};
        pw_stream_connect(made->stream, PW_DIRECTION_INPUT, node,
                          pw_stream_flags(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS),
                          offered.data(), uint32_t(offered.size()));
    }
    to.notifier =
        std::make_unique<QSocketNotifier>(pw_loop_get_fd(to.loop.get()), QSocketNotifier::Read);
    connect(to.notifier.get(), &QSocketNotifier::activated, this,
            [loop = to.loop.get()] { pw_loop_iterate(loop, 0); });
}

CastStreams::~CastStreams()
{
    // What goes now tells of its end.
    m_hasEnded = true;
}

QImage CastStreams::latest(qsizetype index)
{
    if (m_hasEnded)
        return {};
    Stream &stream = *m_streams[size_t(index)];
    stream.read();
    return stream.picture;
}

void CastStreams::tellIfReady()
{
    const bool areThere = std::all_of(m_streams.begin(), m_streams.end(), [](const auto &stream) {
        return stream->isNew || !stream->picture.isNull();
    });
    if (areThere && !std::exchange(m_isReady, true))
        QMetaObject::invokeMethod(this, &CastStreams::ready, Qt::QueuedConnection);
}

void CastStreams::end()
{
    if (!std::exchange(m_hasEnded, true))
        QMetaObject::invokeMethod(this, &CastStreams::ended, Qt::QueuedConnection);
}
