#pragma once

#include <QImage>
#include <QRegion>

/// An image of which only the parts that are drawn on use memory, a page at a time. So parts of a
/// large picture can be drawn with its own coordinates and size, and get the same pixels as in a
/// drawing that is made at once. A value that can be moved only.
class SparseImage
{
public:
    SparseImage() = default;
    /// The format has 32 bits a pixel. Where there is too little address space the image is null.
    SparseImage(QSize size, QImage::Format format);
    ~SparseImage();
    SparseImage(SparseImage &&other) noexcept { swap(other); }
    SparseImage &operator=(SparseImage &&other) noexcept;
    SparseImage(const SparseImage &) = delete;
    SparseImage &operator=(const SparseImage &) = delete;

    bool isNull() const { return m_image.isNull(); }
    QImage &image() { return m_image; }
    const QImage &image() const { return m_image; }
    /// Some of the rows, for writing.
    QImage band(int top, int rows);
    /// Frees the memory of all rows above `bottom`.
    void release(int bottom);

    /// What has been drawn, as whoever draws says.
    const QRegion &drawn() const { return m_drawn; }
    void setDrawn(const QRegion &area) { m_drawn = area; }

private:
    void swap(SparseImage &other) noexcept;

    void *m_memory = nullptr;
    qsizetype m_bytes = 0;
    qsizetype m_released = 0;
    QImage m_image;
    QRegion m_drawn{};
};
