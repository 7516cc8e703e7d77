#include "editing/rendering.h"

#include "editing/coverage.h"
#include "editing/sparseimage.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

// More bands need less memory each, but each band draws its shapes again.
constexpr int s_bands = 10;
constexpr int s_fewestRows = 16;

constexpr float s_translucent = 0.25F;

// Rows of the picture in this format, without a copy if the picture has the format already.
QImage rowsOf(const QImage &picture, int top, int rows, QImage::Format format)
{
    QImage result(picture.constScanLine(top), picture.width(), rows, picture.bytesPerLine(),
                  picture.format());
    if (picture.colorCount() > 0)
        result.setColorTable(picture.colorTable());
    return result.convertToFormat(format);
}

// Changes of the picture itself. What only moves pixels leaves the format alone; what makes new
// ones works in the same format whichever way it was come by.
QImage in32Bits(const QImage &picture) { return picture.convertToFormat(pixmapFormat(picture)); }

QImage made(const QImage &picture, const CropPicture &crop)
{
    return picture.copy(crop.frame & picture.rect());
}

QImage made(const QImage &picture, const ExtendPicture &extend)
{
    const QImage before = in32Bits(picture);
    QImage result(extend.frame.size(), before.format());
    result.fill(extend.ground);
    result.setDotsPerMeterX(before.dotsPerMeterX());
    result.setDotsPerMeterY(before.dotsPerMeterY());
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(-extend.frame.topLeft(), before);
    return result;
}

QImage made(const QImage &picture, const TurnPicture &turn)
{
    return picture.transformed(QTransform().rotate(90. * (turn.quarters & 3)));
}

QImage made(const QImage &picture, const MirrorPicture &mirror)
{
    return picture.mirrored(mirror.axis == Qt::Horizontal, mirror.axis == Qt::Vertical);
}

QImage made(const QImage &picture, const ResizePicture &resize)
{
    return in32Bits(picture).scaled(resize.size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// All others leave the picture alone.
QImage made(const QImage &picture, const auto & /*change*/) { return picture; }

Qt::PenStyle penStyle(Dashes dashes)
{
    switch (dashes) {
    case Dashes::Dashed:
        return Qt::DashLine;
    case Dashes::Dotted:
        return Qt::DotLine;
    default:
        return Qt::SolidLine;
    }
}

QBrush brush(const EditMsg &style)
{
    if (!isFilled(style))
        return Qt::NoBrush;
    QColor color = style.color;
    if (style.fill == Fill::Translucent)
        color.setAlphaF(color.alphaF() * s_translucent);
    return color;
}

}  // namespace

void drawShape(QPainter &painter, const Geometry &geometry, const EditMsg &style)
{
    painter.setPen(QPen(style.color, style.width, penStyle(style.dashes)));
    painter.setBrush(brush(style));
    std::visit([&](const auto &shape) { shape.draw(painter, style); }, geometry);
}

QImage &cleanPixmap(const QImage &base, QImage &target, const QColor &color)
{
    if (!base.hasAlphaChannel())
        return target;
    if (base.format() == QImage::Format_ARGB32_Premultiplied && target.format() == base.format() &&
        color.alpha() == 0) {
        clearOutside(base, target, base.rect());
        return target;
    }
    // The colour value is compared, not the stored one: fully transparent black is 0 in both
    // formats in use, premultiplied or not.
    const QImage pixels = base.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            if (line[x] == 0)
                target.setPixelColor(x, y, color);
        }
    }
    return target;
}

void clearOutside(const QImage &base, QImage &target, const QRect &part)
{
    if (base.format() != QImage::Format_ARGB32_Premultiplied)
        return;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const auto *from = reinterpret_cast<const QRgb *>(base.constScanLine(y));
        auto *to = reinterpret_cast<QRgb *>(target.scanLine(y));
        for (int x = part.left(); x <= part.right(); ++x) {
            if (qAlpha(from[x]) == 0)
                to[x] = 0;
        }
    }
}

QPoint useScreenDots(QImage &image)
{
    const QPoint told(image.dotsPerMeterX(), image.dotsPerMeterY());
    const QImage plain(1, 1, QImage::Format_RGB32);
    image.setDotsPerMeterX(plain.dotsPerMeterX());
    image.setDotsPerMeterY(plain.dotsPerMeterY());
    return told;
}

QImage changed(const QImage &picture, const Scene &scene)
{
    QImage result = picture;
    for (const OperationPtr &step : scene.picture)
        result = std::visit([&](const auto &change) { return made(result, change); }, step->change);
    return result;
}

QImage drawn(const QImage &picture, const QList<EntryPtr> &shapes, const QColor &background)
{
    // Avoids a copy of a large picture.
    if (shapes.isEmpty() && background.alpha() == 0)
        return picture;
    QImage result = picture;
    if (!shapes.isEmpty() && !result.isNull()) {
        const QPoint dots = useScreenDots(result);
        QPainter painter(&result);
        painter.setRenderHint(QPainter::Antialiasing);
        for (const EntryPtr &shape : shapes)
            drawShape(painter, shape->geometry, shape->style);
        painter.end();
        result.setDotsPerMeterX(dots.x());
        result.setDotsPerMeterY(dots.y());
    }
    return cleanPixmap(picture, result, background);
}

QImage replayed(const QImage &picture, const EditHistory &history, const QColor &background)
{
    const Scene scene = sceneOf(history, picture.size());
    return drawn(changed(picture, scene), scene.shapes, background);
}

QImage::Format pixmapFormat(const QImage &picture)
{
    return picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
}

bool replayedInBands(const QImage &picture, const QList<EntryPtr> &shapes,
                     const std::function<bool(const QImage &band, int top)> &take)
{
    const QImage::Format format = pixmapFormat(picture);
    const int rows = std::max(s_fewestRows, picture.height() / s_bands);
    const auto forEachBand = [&](const auto &work) {
        for (int top = 0; top < picture.height(); top += rows) {
            const int count = std::min(rows, picture.height() - top);
            if (!work(top, rowsOf(picture, top, count, format)))
                return false;
        }
        return true;
    };
    if (shapes.isEmpty()) {
        return forEachBand([&](int top, QImage band) {
            const QImage base = band;
            return take(cleanPixmap(base, band, QColor(0, 0, 0, 0)), top);
        });
    }
    SparseImage sparse(picture.size(), format);
    if (sparse.isNull())
        return false;
    std::vector<QRect> places;
    std::transform(
        shapes.begin(), shapes.end(), std::back_inserter(places), [&](const EntryPtr &entry) {
            return coverage(entry->geometry, entry->style, picture.size()).boundingRect();
        });
    QPainter painter(&sparse.image());
    painter.setRenderHint(QPainter::Antialiasing);
    // The antialiasing of a line depends slightly on the bounds of the clip region, so these stay
    // the same for all bands.
    const QRegion corners =
        QRegion(0, 0, 1, 1) + QRegion(picture.width() - 1, picture.height() - 1, 1, 1);
    return forEachBand([&](int top, const QImage &base) {
        if (base.isNull())
            return false;
        QImage band = sparse.band(top, base.height());
        for (int y = 0; y < base.height(); ++y)
            std::memcpy(band.scanLine(y), base.constScanLine(y), band.bytesPerLine());
        const QRect part(0, top, picture.width(), base.height());
        painter.setClipRegion(QRegion(part) + corners);
        for (qsizetype i = 0; i < shapes.size(); ++i) {
            if (places[i].intersects(part))
                drawShape(painter, shapes[i]->geometry, shapes[i]->style);
        }
        cleanPixmap(base, band, QColor(0, 0, 0, 0));
        const bool goesOn = take(band, top);
        sparse.release(part.bottom() + 1);
        return goesOn;
    });
}
