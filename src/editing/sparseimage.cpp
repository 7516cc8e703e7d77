#include "editing/sparseimage.h"

#include <utility>

#include <sys/mman.h>
#include <unistd.h>

SparseImage::SparseImage(QSize size, QImage::Format format)
{
    const qsizetype line = qsizetype{4} * size.width();
    m_bytes = line * size.height();
    if (m_bytes <= 0)
        return;
    void *memory = mmap(nullptr, m_bytes, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        return;
    m_memory = memory;
    m_image = QImage(static_cast<uchar *>(m_memory), size.width(), size.height(), line, format);
}

SparseImage::~SparseImage()
{
    if (m_memory)
        munmap(m_memory, m_bytes);
}

SparseImage &SparseImage::operator=(SparseImage &&other) noexcept
{
    SparseImage taken(std::move(other));
    swap(taken);
    return *this;
}

QImage SparseImage::band(int top, int rows)
{
    return {m_image.scanLine(top), m_image.width(), rows, m_image.bytesPerLine(), m_image.format()};
}

void SparseImage::release(int bottom)
{
    const qsizetype page = sysconf(_SC_PAGESIZE);
    const qsizetype end = m_image.bytesPerLine() * bottom / page * page;
    madvise(static_cast<uchar *>(m_memory) + m_released, end - m_released, MADV_DONTNEED);
    m_released = end;
}

void SparseImage::swap(SparseImage &other) noexcept
{
    std::swap(m_memory, other.m_memory);
    std::swap(m_bytes, other.m_bytes);
    std::swap(m_released, other.m_released);
    std::swap(m_image, other.m_image);
    std::swap(m_drawn, other.m_drawn);
}
