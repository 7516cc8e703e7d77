#include "editing/rendering.h"

#include "editing/coverage.h"
#include "editing/sparseimage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace {

// More bands need less memory each, but each band draws its shapes again.
constexpr int s_bands = 10;
constexpr int s_fewestRows = 16;

constexpr float s_translucent = 0.25F;

// Where the copies lie of which a shadow is made: more of them in the middle, and some in each row
// and column, so that thin lines have no stripes beside them. Picture pixels.
constexpr std::array<QPoint, 9> s_shadow{
    {{3, 1}, {2, 2}, {4, 2}, {1, 3}, {3, 3}, {5, 3}, {2, 4}, {4, 4}, {3, 5}}};
constexpr int s_shadowReach = 5;
constexpr float s_faint = 0.05F;

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

QImage made(const QImage &picture, const BackdropPicture &put)
{
    return put.backdrop->under(picture);
}

// All others leave the picture alone.
QImage made(const QImage &picture, const auto & /*change*/) { return picture; }

QBrush brush(const EditMsg &style)
{
    if (!isFilled(style))
        return Qt::NoBrush;
    QColor color = style.color;
    if (style.fill == Fill::Translucent)
        color.setAlphaF(color.alphaF() * s_translucent);
    return color;
}

void prepare(QPainter &painter, const EditMsg &style)
{
    painter.setPen(QPen(style.color, style.width));
    painter.setBrush(brush(style));
}

// A picture of the shadow that could be blurred would be as large as the shape. Some faint copies
// beside each other are soft enough, and are the same in whatever parts a picture is drawn.
void drawShadow(QPainter &painter, const Geometry &geometry, const EditMsg &style)
{
    EditMsg faint = style;
    faint.color = QColor::fromRgbF(0, 0, 0, s_faint * style.color.alphaF());
    // What shines through a shape is not made darker.
    if (style.fill == Fill::Translucent)
        faint.fill = Fill::None;
    const QTransform before = painter.transform();
    for (const QPoint by : s_shadow) {
        painter.setTransform(QTransform::fromTranslate(by.x(), by.y()) * before);
        prepare(painter, faint);
        std::visit(
            [&](const auto &shape) {
                if constexpr (requires { shape.drawShadow(painter, faint); })
                    shape.drawShadow(painter, faint);
                else
                    shape.draw(painter, faint);
            },
            geometry);
    }
    painter.setTransform(before);
}

}  // namespace

void drawShape(QPainter &painter, const Geometry &geometry, const EditMsg &style)
{
    if (shadowReach(geometry, style) > 0)
        drawShadow(painter, geometry, style);
    prepare(painter, style);
    std::visit([&](const auto &shape) { shape.draw(painter, style); }, geometry);
}

int shadowReach(const Geometry &geometry, const EditMsg &style)
{
    const auto uses = []<typename Shape>(const Shape &) { return Shape::tool.uses; };
    return style.hasShadow && (std::visit(uses, geometry) & UsesShadow) ? s_shadowReach : 0;
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
