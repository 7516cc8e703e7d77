#pragma once

#include <QByteArrayView>
#include <QImage>

#include <functional>
#include <memory>

/// Writes a picture file from the top row to the bottom one, with nothing of it kept. The file
/// says what the toolkit's writer would have said.
class RowWriter
{
public:
    /// Takes the file's bytes; false when they could not be kept.
    using Sink = std::function<bool(QByteArrayView)>;

    RowWriter() = default;
    virtual ~RowWriter() = default;
    RowWriter(const RowWriter &) = delete;
    RowWriter &operator=(const RowWriter &) = delete;

    /// For a picture of that size, with its resolution, colour space and texts. The rows are opaque
    /// or premultiplied ones of 32 bits. Nothing for a format that is not written by rows.
    static std::unique_ptr<RowWriter> create(const QByteArray &format, const QImage &picture,
                                             QImage::Format rows, int quality, Sink sink);

    /// Pixels on a side that a file of the format can have.
    virtual int longestSide() const = 0;
    /// All are false when the sink was, or memory ran out.
    virtual bool begin() = 0;
    virtual bool add(const QImage &rows) = 0;
    virtual bool end() = 0;
};
