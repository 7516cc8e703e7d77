#include "editing/canvas.h"

#include "editing/coverage.h"
#include "editing/rendering.h"

#include <algorithm>
#include <cstring>

namespace {

// The least memory for the pixels below the newest shapes, however small the picture is.
constexpr qsizetype s_leastBudget = 4 << 20;  // bytes

/// Calls `visit(y, first byte in the line, bytes)` for each part of a line in an area.
template<typename Visit> void forEachPiece(const QImage &image, const QRegion &area, Visit visit)
{
    const qsizetype pixel = image.depth() / 8;
    for (const QRect &rect : area) {
        for (int y = rect.top(); y <= rect.bottom(); ++y)
            visit(y, rect.left() * pixel, rect.width() * pixel);
    }
}

void copyArea(const QImage &from, QImage &to, const QRegion &area)
{
    forEachPiece(to, area, [&](int y, qsizetype start, qsizetype bytes) {
        std::memcpy(to.scanLine(y) + start, from.constScanLine(y) + start, bytes);
    });
}

/// Draws one more shape over a picture with shapes. `area` must contain the shape.
void drawOver(QImage &image, const QImage &picture, const Geometry &geometry, const EditMsg &style,
              const QRegion &area)
{
    if (area.isEmpty())
        return;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawShape(painter, geometry, style);
    painter.end();
    for (const QRect &rect : area)
        clearOutside(picture, image, rect);
}

}  // namespace

void Canvas::setPicture(const QImage &picture)
{
    *this = {};
    // Both formats have 32 bits, which the incremental drawing relies on; a screen's pixmaps may
    // have other formats.
    m_picture = picture.convertToFormat(
        picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

qsizetype Canvas::bytesOf(const QRegion &area) const
{
    qsizetype bytes = 0;
    for (const QRect &rect : area)
        bytes += static_cast<qsizetype>(rect.width()) * rect.height() * (m_picture.depth() / 8);
    return bytes;
}

qsizetype Canvas::budget() const { return std::max(s_leastBudget, m_picture.sizeInBytes() / 4); }

QRegion Canvas::add(const EditEntry &entry)
{
    QRegion area = coverage(entry.geometry, entry.style, m_picture.size());
    if (m_isDrawn)
        push(entry, area);
    m_stale += area;
    return area;
}

QRegion Canvas::takeBack(const EditEntry &entry)
{
    QRegion area = coverage(entry.geometry, entry.style, m_picture.size());
    m_stale += area;
    if (m_isDrawn && !m_below.empty()) {
        const Below &below = m_below.back();
        const char *kept = below.pixels.constData();
        forEachPiece(m_image, below.area, [&](int y, qsizetype start, qsizetype bytes) {
            std::memcpy(m_image.scanLine(y) + start, kept, bytes);
            kept += bytes;
        });
        m_belowBytes -= below.pixels.size();
        m_below.pop_back();
    } else {
        m_isDrawn = false;
    }
    return area;
}

void Canvas::push(const EditEntry &entry, const QRegion &area)
{
    Below below{.area = area};
    below.pixels.reserve(bytesOf(area));
    forEachPiece(m_image, area, [&](int y, qsizetype start, qsizetype bytes) {
        const uchar *pixels = m_image.constScanLine(y) + start;
        below.pixels.append(reinterpret_cast<const char *>(pixels), bytes);
    });
    m_belowBytes += below.pixels.size();
    m_below.push_back(std::move(below));
    while (m_belowBytes > budget()) {
        m_belowBytes -= m_below.front().pixels.size();
        m_below.pop_front();
    }
    useScreenDots(m_image);
    drawOver(m_image, m_picture, entry.geometry, entry.style, area);
}

void Canvas::replay(const EditHistory &history)
{
    m_below.clear();
    m_belowBytes = 0;
    // The newest shapes are drawn one by one, so that each can be taken back.
    qsizetype room = budget();
    qsizetype single = 0;
    while (single < history.size()) {
        const EditEntry &entry = *history.at(single);
        room -= bytesOf(coverage(entry.geometry, entry.style, m_picture.size()));
        if (room < 0)
            break;
        ++single;
    }
    m_image = replayed(m_picture, history.sliced(single), QColor(0, 0, 0, 0));
    m_isDrawn = true;
    m_previewImage = {};
    while (single > 0) {
        const EditEntry &entry = *history.at(--single);
        push(entry, coverage(entry.geometry, entry.style, m_picture.size()));
    }
}

const QImage &Canvas::recorded(const EditHistory &history)
{
    if (!m_isDrawn)
        replay(history);
    return m_image;
}

QRegion Canvas::setPreview(const std::optional<Geometry> &geometry, const EditMsg &style)
{
    QRegion changed = m_previewArea;
    m_previewArea = geometry ? coverage(*geometry, style, m_picture.size()) : QRegion();
    changed += m_previewArea;
    m_preview = geometry;
    m_previewStyle = style;
    m_stale += changed;
    return changed;
}

const QImage &Canvas::preview(const EditHistory &history)
{
    const QImage &image = recorded(history);
    if (m_previewImage.isNull()) {
        m_previewImage = image.copy();
        useScreenDots(m_previewImage);
        m_stale = m_previewArea;
    }
    if (!m_stale.isEmpty()) {
        copyArea(image, m_previewImage, m_stale + m_previewArea);
        if (m_preview)
            drawOver(m_previewImage, m_picture, *m_preview, m_previewStyle, m_previewArea);
        m_stale = {};
    }
    return m_previewImage;
}
