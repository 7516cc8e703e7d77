#include "editing/rowwriter.h"

#include <QColorSpace>
#include <QList>

#include <algorithm>
#include <array>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <limits>
#include <utility>
#include <vector>

#include <jpeglib.h>
#include <png.h>

// Both libraries report errors by longjmp. No object with a destructor may be created between
// setjmp and the jump, and a failing sink only sets a flag.

namespace {

constexpr int s_bestQuality = 100;

// The data besides pixels that both formats store.
struct Header {
    explicit Header(const QImage &picture)
        : size(picture.size()), dotsX(picture.dotsPerMeterX()), dotsY(picture.dotsPerMeterY()),
          profile(picture.colorSpace().isValid() ? picture.colorSpace().iccProfile() : QByteArray())
    {
        for (const QString &key : picture.textKeys())
            texts.append({key, picture.text(key)});
    }

    QSize size;
    int dotsX;
    int dotsY;
    QByteArray profile;
    QList<std::pair<QString, QString>> texts;
};

class PngWriter : public RowWriter
{
public:
    PngWriter(const QImage &picture, QImage::Format rows, int quality, Sink sink)
        : m_header(picture), m_isOpaque(rows == QImage::Format_RGB32), m_quality(quality),
          m_sink(std::move(sink))
    {
    }

    ~PngWriter() override { png_destroy_write_struct(&m_png, &m_info); }

    int longestSide() const override { return std::numeric_limits<int>::max(); }

    bool begin() override
    {
        m_png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, silent);
        m_info = m_png ? png_create_info_struct(m_png) : nullptr;
        if (!m_info)
            return false;
        png_set_write_fn(m_png, this, write, nullptr);
        const std::vector<Text> texts = usedTexts();
        std::vector<png_text> entries(texts.size());
        std::transform(texts.begin(), texts.end(), entries.begin(), entryOf);
        const bool isDone = guarded([&] {
            png_set_user_limits(m_png, std::numeric_limits<int>::max(),
                                std::numeric_limits<int>::max());
            if (m_quality >= 0) {
                constexpr int levels = 9;
                png_set_compression_level(m_png, (s_bestQuality - m_quality) * levels / 91);
            }
            png_set_IHDR(m_png, m_info, m_header.size.width(), m_header.size.height(), 8,
                         m_isOpaque ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGB_ALPHA,
                         PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
            if (!m_header.profile.isEmpty()) {
                png_set_iCCP(m_png, m_info, "Custom", PNG_COMPRESSION_TYPE_BASE,
                             reinterpret_cast<png_const_bytep>(m_header.profile.constData()),
                             m_header.profile.size());
            }
            png_set_pHYs(m_png, m_info, m_header.dotsX, m_header.dotsY, PNG_RESOLUTION_METER);
            if (!entries.empty())
                png_set_text(m_png, m_info, entries.data(), static_cast<int>(entries.size()));
            png_write_info(m_png, m_info);
            const bool isLittle = QSysInfo::ByteOrder == QSysInfo::LittleEndian;
            if (isLittle)
                png_set_bgr(m_png);
            if (m_isOpaque)
                png_set_filler(m_png, 0, isLittle ? PNG_FILLER_AFTER : PNG_FILLER_BEFORE);
            else if (!isLittle)
                png_set_swap_alpha(m_png);
        });
        return isDone && m_isTaken;
    }

    bool add(const QImage &rows) override
    {
        const QImage pixels = m_isOpaque ? rows : rows.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < pixels.height(); ++y) {
            const uchar *row = pixels.constScanLine(y);
            if (!guarded([&] { png_write_row(m_png, row); }) || !m_isTaken)
                return false;
        }
        return !pixels.isNull();
    }

    bool end() override
    {
        return guarded([&] { png_write_end(m_png, m_info); }) && m_isTaken;
    }

private:
    struct Text {
        QByteArray key{};
        QByteArray value{};
        bool isLatin = false;
    };

    static void silent(png_structp, png_const_charp) {}

    static void write(png_structp png, png_bytep bytes, size_t size)
    {
        auto *self = static_cast<PngWriter *>(png_get_io_ptr(png));
        self->m_isTaken = self->m_isTaken && self->m_sink({bytes, static_cast<qsizetype>(size)});
    }

    // Returns false if the library left the work by a jump.
    template<typename Work> bool guarded(const Work &work)
    {
        if (setjmp(png_jmpbuf(m_png)))  // NOLINT: the library's way
            return false;
        work();
        return true;
    }

    std::vector<Text> usedTexts() const
    {
        constexpr qsizetype longestKey = 79;  // the format's limit
        std::vector<Text> result;
        for (const auto &[key, text] : m_header.texts) {
            const bool isLatin = QString::fromLatin1(text.toLatin1()) == text;
            const Text used{.key = key.toLatin1().left(longestKey),
                            .value = isLatin ? text.toLatin1() : text.toUtf8(),
                            .isLatin = isLatin};
            if (!used.key.isEmpty())
                result.push_back(used);
        }
        return result;
    }

    static png_text entryOf(const Text &text)
    {
        constexpr qsizetype worthPacking = 40;
        const bool isPacked = text.value.size() >= worthPacking;
        png_text entry{};
        entry.key = const_cast<char *>(text.key.constData());
        entry.text = const_cast<char *>(text.value.constData());
        if (text.isLatin) {
            entry.compression = isPacked ? PNG_TEXT_COMPRESSION_zTXt : PNG_TEXT_COMPRESSION_NONE;
            entry.text_length = text.value.size();
        } else {
            entry.compression = isPacked ? PNG_ITXT_COMPRESSION_zTXt : PNG_ITXT_COMPRESSION_NONE;
            entry.itxt_length = text.value.size();
        }
        return entry;
    }

    Header m_header;
    bool m_isOpaque;
    int m_quality;
    Sink m_sink;
    bool m_isTaken = true;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
};

class JpegWriter : public RowWriter
{
public:
    JpegWriter(const QImage &picture, int quality, Sink sink)
        : m_header(picture), m_quality(quality), m_sink(std::move(sink))
    {
        m_jpeg.client_data = this;
        m_jpeg.err = jpeg_std_error(&m_error);
        m_error.error_exit = leave;
        m_error.output_message = [](j_common_ptr) {};
        m_target.init_destination = [](j_compress_ptr jpeg) { rewind(jpeg); };
        m_target.empty_output_buffer = [](j_compress_ptr jpeg) -> boolean {
            self(jpeg)->pass(s_bufferSize);
            rewind(jpeg);
            return TRUE;
        };
        m_target.term_destination = [](j_compress_ptr jpeg) {
            self(jpeg)->pass(s_bufferSize - jpeg->dest->free_in_buffer);
        };
    }

    ~JpegWriter() override { jpeg_destroy_compress(&m_jpeg); }

    int longestSide() const override { return JPEG_MAX_DIMENSION; }

    bool begin() override
    {
        QList<QByteArray> comments;
        for (const auto &[key, text] : m_header.texts) {
            constexpr qsizetype longest = 65530;
            const QString start = key.isEmpty() ? key : key + QStringLiteral(": ");
            comments.append((start + text).toUtf8().left(longest));
        }
        const bool isDone = guarded([&] {
            jpeg_create_compress(&m_jpeg);
            m_jpeg.dest = &m_target;
            m_jpeg.image_width = m_header.size.width();
            m_jpeg.image_height = m_header.size.height();
            m_jpeg.input_components = 4;
            m_jpeg.in_color_space =
                QSysInfo::ByteOrder == QSysInfo::LittleEndian ? JCS_EXT_BGRX : JCS_EXT_XRGB;
            jpeg_set_defaults(&m_jpeg);
            setDensity();
            constexpr int usual = 75;
            jpeg_set_quality(&m_jpeg, m_quality < 0 ? usual : m_quality, TRUE);
            jpeg_start_compress(&m_jpeg, TRUE);
            for (const QByteArray &comment : comments) {
                jpeg_write_marker(&m_jpeg, JPEG_COM,
                                  reinterpret_cast<const JOCTET *>(comment.constData()),
                                  static_cast<unsigned>(comment.size()));
            }
            if (!m_header.profile.isEmpty()) {
                jpeg_write_icc_profile(
                    &m_jpeg, reinterpret_cast<const JOCTET *>(m_header.profile.constData()),
                    static_cast<unsigned>(m_header.profile.size()));
            }
        });
        return isDone && m_isTaken;
    }

    bool add(const QImage &rows) override
    {
        for (int y = 0; y < rows.height(); ++y) {
            JSAMPROW row = const_cast<JSAMPROW>(rows.constScanLine(y));
            if (!guarded([&] { jpeg_write_scanlines(&m_jpeg, &row, 1); }) || !m_isTaken)
                return false;
        }
        return !rows.isNull();
    }

    bool end() override
    {
        return guarded([&] { jpeg_finish_compress(&m_jpeg); }) && m_isTaken;
    }

private:
    static constexpr size_t s_bufferSize = 1 << 16;

    static JpegWriter *self(j_compress_ptr jpeg)
    {
        return static_cast<JpegWriter *>(jpeg->client_data);
    }

    static void leave(j_common_ptr jpeg)
    {
        longjmp(self(reinterpret_cast<j_compress_ptr>(jpeg))->m_mark,
                1);  // NOLINT: the library's way
    }

    static void rewind(j_compress_ptr jpeg)
    {
        jpeg->dest->next_output_byte = self(jpeg)->m_buffer.data();
        jpeg->dest->free_in_buffer = s_bufferSize;
    }

    void pass(size_t count)
    {
        m_isTaken = m_isTaken && m_sink({m_buffer.data(), static_cast<qsizetype>(count)});
    }

    // Returns false if the library left the work by a jump.
    template<typename Work> bool guarded(const Work &work)
    {
        if (setjmp(m_mark))  // NOLINT: the library's way
            return false;
        work();
        return true;
    }

    // Writes dots per inch or per centimetre, whichever is closer to the picture's dots per metre.
    void setDensity()
    {
        constexpr double inch = 0.0254;
        constexpr int centimetres = 100;
        const auto loss = [&](double unit) {
            return std::abs(m_header.dotsX * unit - std::round(m_header.dotsX * unit)) +
                   std::abs(m_header.dotsY * unit - std::round(m_header.dotsY * unit));
        };
        const bool isInch = loss(inch) < loss(1.0 / centimetres);
        const auto density = [&](int dots) {
            return static_cast<UINT16>(isInch ? std::lround(dots * inch)
                                              : (dots + centimetres / 2) / centimetres);
        };
        m_jpeg.density_unit = isInch ? 1 : 2;
        m_jpeg.X_density = density(m_header.dotsX);
        m_jpeg.Y_density = density(m_header.dotsY);
    }

    Header m_header;
    int m_quality;
    Sink m_sink;
    bool m_isTaken = true;
    jpeg_compress_struct m_jpeg{};
    jpeg_error_mgr m_error{};
    jpeg_destination_mgr m_target{};
    std::array<JOCTET, s_bufferSize> m_buffer{};
    std::jmp_buf m_mark{};
};

}  // namespace

std::unique_ptr<RowWriter> RowWriter::create(const QByteArray &format, const QImage &picture,
                                             QImage::Format rows, int quality, Sink sink)
{
    const QByteArray lower = format.toLower();
    const int usedQuality = std::min(quality, s_bestQuality);
    if (lower == "png")
        return std::make_unique<PngWriter>(picture, rows, usedQuality, std::move(sink));
    if (lower == "jpg" || lower == "jpeg")
        return std::make_unique<JpegWriter>(picture, usedQuality, std::move(sink));
    return {};
}
