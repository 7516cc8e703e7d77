#include "editing/packedpicture.h"

#include <QColorSpace>

#include <algorithm>

#include <zstd.h>

namespace {

constexpr int s_level = 1;  // the fastest level; screen contents compress well anyway
// bytes; limits what is in memory both packed and unpacked.
constexpr qsizetype s_pieceSize = 4 << 20;
constexpr qsizetype s_leastGain = 4;  // at least a fourth of the bytes must be saved

int linesInPiece(const QImage &frame, int width)
{
    const qsizetype line = static_cast<qsizetype>(width) * frame.depth() / 8;
    return static_cast<int>(std::max<qsizetype>(1, s_pieceSize / std::max<qsizetype>(1, line)));
}

}  // namespace

PackedPicture::PackedPicture(const QImage &picture)
    : m_frame(picture.copy(0, 0, 1, 1)), m_size(picture.size())
{
    const int step = linesInPiece(picture, picture.width());
    qsizetype bytes = 0;
    for (int y = 0; y < picture.height(); y += step) {
        const qsizetype size = picture.bytesPerLine() * std::min(step, picture.height() - y);
        QByteArray piece(static_cast<qsizetype>(ZSTD_compressBound(size)), Qt::Uninitialized);
        const size_t packed =
            ZSTD_compress(piece.data(), piece.size(), picture.constScanLine(y), size, s_level);
        bytes += static_cast<qsizetype>(packed);
        if (ZSTD_isError(packed) ||
            bytes > picture.sizeInBytes() - picture.sizeInBytes() / s_leastGain) {
            *this = {};
            return;
        }
        piece.truncate(static_cast<qsizetype>(packed));
        piece.squeeze();
        m_pieces.append(piece);
    }
}

QImage PackedPicture::unpacked() const
{
    QImage result(m_size, m_frame.format());
    if (isNull() || result.isNull())
        return {};
    const int step = linesInPiece(result, result.width());
    int y = 0;
    for (const QByteArray &piece : m_pieces) {
        const int lines = std::min(step, result.height() - y);
        const auto size = static_cast<size_t>(result.bytesPerLine() * lines);
        if (ZSTD_decompress(result.scanLine(y), size, piece.constData(), piece.size()) != size)
            return {};
        y += lines;
    }
    result.setColorTable(m_frame.colorTable());
    result.setColorSpace(m_frame.colorSpace());
    result.setDotsPerMeterX(m_frame.dotsPerMeterX());
    result.setDotsPerMeterY(m_frame.dotsPerMeterY());
    for (const QString &key : m_frame.textKeys())
        result.setText(key, m_frame.text(key));
    return result;
}
