#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QSize>

/// A picture that is not looked at, packed to a fraction of its size. It comes back as it was, to
/// the bit, in a fraction of the time that a picture file takes. A value.
class PackedPicture
{
public:
    PackedPicture() = default;
    /// Packs a copy. Null, as a null picture, where that would save nothing worth while.
    explicit PackedPicture(const QImage &picture);

    bool isNull() const { return m_pieces.isEmpty(); }
    QSize size() const { return m_size; }
    QImage unpacked() const;

private:
    QImage m_frame;  ///< one pixel, with format, dots, colour space and texts
    QSize m_size;
    QList<QByteArray> m_pieces{};
};
