#pragma once

#include <QByteArrayView>
#include <QImage>

#include <functional>
#include <memory>

/// Writes a picture file row by row from the top, without keeping rows. The file's content matches
/// that of the toolkit's writer.
class RowWriter
{
public:
    /// Takes bytes of the file; returns false if they could not be stored.
    using Sink = std::function<bool(QByteArrayView)>;

    RowWriter() = default;
    virtual ~RowWriter() = default;
    RowWriter(const RowWriter &) = delete;
    RowWriter &operator=(const RowWriter &) = delete;

    /// Creates a writer for a picture of this size, with its resolution, colour space and texts.
    /// `rows` is the format of the rows: 32 bits, opaque or premultiplied. Null for a format that
    /// is not supported.
    static std::unique_ptr<RowWriter> create(const QByteArray &format, const QImage &picture,
                                             QImage::Format rows, int quality, Sink sink);

    /// The largest side in pixels that the file format allows.
    virtual int longestSide() const = 0;
    /// All three return false if the sink failed or memory ran out.
    virtual bool begin() = 0;
    virtual bool add(const QImage &rows) = 0;
    virtual bool end() = 0;
};
