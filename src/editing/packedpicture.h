#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QSize>

/// A compressed picture, for documents that are not shown. It is restored exactly, much faster than
/// from a picture file. A value type.
class PackedPicture
{
public:
    PackedPicture() = default;
    /// Compresses a copy. The result is null if the picture is null or if compression would save
    /// too little.
    explicit PackedPicture(const QImage &picture);

    bool isNull() const { return m_pieces.isEmpty(); }
    QSize size() const { return m_size; }
    QImage unpacked() const;

private:
    QImage m_frame;  ///< one pixel with the picture's format, dots, colour space and texts
    QSize m_size;
    QList<QByteArray> m_pieces{};
};
