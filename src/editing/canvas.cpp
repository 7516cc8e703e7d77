#include "editing/canvas.h"

#include "editing/coverage.h"
#include "editing/rendering.h"

#include <QSet>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <span>
#include <utility>

namespace {

// The least memory for the pixels below the newest shapes, however small the picture is.
constexpr qsizetype s_leastBudget = 4 << 20;  // bytes
constexpr size_t s_mostAreas = 100;

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

/// Whether two states of shapes are drawn the same. Derived ones are made anew for each scene.
bool isSame(const EntryPtr &before, const EntryPtr &after)
{
    return before == after ||
           (before->id == after->id && isDerived(*before) && before->style == after->style &&
            before->geometry == after->geometry);
}

/// Whether all that is new lies above what was there.
bool isOnTop(const QList<EntryPtr> &before, const QList<EntryPtr> &after)
{
    return before.size() <= after.size() &&
           std::equal(before.begin(), before.end(), after.begin(), isSame);
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

void Canvas::start(const QImage &picture, const EditHistory &history)
{
    *this = {};
    // Both formats have 32 bits, which the incremental drawing relies on; a screen's pixmaps may
    // have other formats.
    m_picture = picture.convertToFormat(
        picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    m_base = m_picture;
    start(history);
}

void Canvas::start(const EditHistory &history)
{
    remember(history);
    m_isDrawn = false;
    m_areas.clear();
    setScene(sceneFor(history));
}

Scene Canvas::sceneFor(const EditHistory &history)
{
    const auto newest = std::find_if(history.begin(), history.end(), [](const OperationPtr &step) {
        return changesPicture(*step);
    });
    const EditHistory older = history.mid(newest - history.begin());
    if (older != m_older || !m_sceneOfOlder.size.isValid()) {
        m_older = older;
        m_sceneOfOlder = sceneOf(older, m_picture.size());
    }
    return applied(m_sceneOfOlder, {std::make_reverse_iterator(newest),
                                    std::make_reverse_iterator(history.begin())});
}

void Canvas::remember(const EditHistory &history)
{
    m_steps = history.size();
    m_newest = history.value(0);
}

void Canvas::setScene(Scene scene)
{
    if (!isSamePicture(scene, m_scene) || m_base.size() != scene.size) {
        m_base = changed(m_picture, scene);
        m_isDrawn = false;
        m_areas.clear();
        m_previewArea = {};
        m_preview.reset();
        m_previewShapes.reset();
    }
    m_scene = std::move(scene);
}

std::optional<QRegion> Canvas::follow(const EditHistory &history)
{
    const bool isBack = history.size() < m_steps;
    const EntryPtr shape = addedBy(isBack ? *m_newest : *history.first());
    remember(history);
    const bool isAlone = shape && !isDerived(*shape);
    if (isAlone && !isBack) {
        const QRegion area = coverageOf(*shape);
        if (m_isDrawn)
            push(*shape, area);
        m_scene.shapes.append(shape);
        forget(area);
        return area;
    }
    if (isAlone && m_isDrawn && !m_below.empty()) {
        const QRegion area = m_below.back().area;
        pop();
        m_scene.shapes.removeLast();
        forget(area);
        return area;
    }
    const Scene before = m_scene;
    setScene(sceneFor(history));
    if (!isSamePicture(m_scene, before))
        return {};
    const QRegion area = difference(before.shapes, m_scene.shapes);
    if (m_isDrawn && shape && !isBack && isOnTop(before.shapes, m_scene.shapes))
        push(*m_scene.shapes.last(), area);
    else if (m_isDrawn)
        redraw(area);
    forget(area);
    return area;
}

// What is recorded has changed there.
void Canvas::forget(const QRegion &area)
{
    m_layers.reset();
    m_previewImage.setDrawn(m_previewImage.drawn() - area);
}

// Where two states of the shapes differ. One that has come to lie elsewhere between others counts
// as changed.
QRegion Canvas::difference(const QList<EntryPtr> &before, const QList<EntryPtr> &after) const
{
    const auto [first, firstAfter] =
        std::mismatch(before.begin(), before.end(), after.begin(), after.end(), isSame);
    const auto [last, lastAfter] =
        std::mismatch(before.rbegin(), std::make_reverse_iterator(first), after.rbegin(),
                      std::make_reverse_iterator(firstAfter), isSame);
    const std::span<const EntryPtr> old(first, last.base());
    const std::span<const EntryPtr> now(firstAfter, lastAfter.base());
    const auto idsOf = [](const auto &shapes) {
        QSet<ShapeId> ids;
        for (const EntryPtr &shape : shapes)
            ids.insert(shape->id);
        return ids;
    };
    const QSet<ShapeId> idsBefore = idsOf(old);
    const QSet<ShapeId> idsNow = idsOf(now);
    QRegion area;
    auto left = old.begin();
    auto right = now.begin();
    while (left != old.end() || right != now.end()) {
        if (left != old.end() && !idsNow.contains((*left)->id)) {
            area += coverageOf(**left++);
        } else if (right != now.end() && !idsBefore.contains((*right)->id)) {
            area += coverageOf(**right++);
        } else {
            if (!isSame(*left, *right))
                area += changeOf(**left, **right, m_base.size());
            ++left;
            ++right;
        }
    }
    return area;
}

QRegion Canvas::coverageOf(const EditEntry &shape) const
{
    return coverage(shape.geometry, shape.style, m_base.size());
}

const QRegion &Canvas::areaOf(const EntryPtr &shape)
{
    const auto [found, isNew] = m_areas.try_emplace(shape);
    if (isNew)
        found->second = coverageOf(*shape);
    return found->second;
}

// While something is moved, the same few shapes are asked for again and again.
const QRegion &Canvas::fineAreaOf(const EntryPtr &shape)
{
    if (m_layers->areas.size() > s_mostAreas + static_cast<size_t>(m_scene.shapes.size()))
        m_layers->areas.clear();
    const auto [found, isNew] = m_layers->areas.try_emplace(shape);
    if (isNew)
        found->second = coverage(shape->geometry, shape->style, m_base.size(), true);
    return found->second;
}

qsizetype Canvas::bytesOf(const QRegion &area) const
{
    qsizetype bytes = 0;
    for (const QRect &rect : area)
        bytes += static_cast<qsizetype>(rect.width()) * rect.height() * (m_base.depth() / 8);
    return bytes;
}

qsizetype Canvas::budget() const { return std::max(s_leastBudget, m_base.sizeInBytes() / 8); }

void Canvas::push(const EditEntry &shape, const QRegion &area)
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
    drawOver(m_image, m_base, shape.geometry, shape.style, area);
}

void Canvas::pop()
{
    const Below &below = m_below.back();
    const char *kept = below.pixels.constData();
    forEachPiece(m_image, below.area, [&](int y, qsizetype start, qsizetype bytes) {
        std::memcpy(m_image.scanLine(y) + start, kept, bytes);
        kept += bytes;
    });
    m_belowBytes -= below.pixels.size();
    m_below.pop_back();
}

// What was kept below the newest shapes is not what lies below them any more.
void Canvas::redraw(const QRegion &area)
{
    m_below.clear();
    m_belowBytes = 0;
    if (!area.isEmpty())
        redraw(m_image, area, m_base, m_scene.shapes);
}

// Draws a part again: shapes over a picture, which may have others below them.
void Canvas::redraw(QImage &image, const QRegion &area, const QImage &picture,
                    const QList<EntryPtr> &shapes)
{
    useScreenDots(image);
    copyArea(picture, image, area);
    drawShapes(image, area, shapes);
}

QList<EntryPtr> Canvas::touching(const QRegion &area, const QList<EntryPtr> &shapes)
{
    // Areas of shapes that are gone keep these in memory.
    if (m_areas.size() > s_mostAreas + 2 * static_cast<size_t>(m_scene.shapes.size()))
        m_areas.clear();
    QList<EntryPtr> drawnHere;
    const QRect around = area.boundingRect();
    for (const EntryPtr &shape : shapes) {
        const QRegion &own = areaOf(shape);
        if (own.boundingRect().intersects(around) && own.intersects(area) &&
            (!m_layers || fineAreaOf(shape).intersects(area)))
            drawnHere.append(shape);
    }
    return drawnHere;
}

void Canvas::drawShapes(QImage &image, const QRegion &area, const QList<EntryPtr> &shapes)
{
    const QList<EntryPtr> drawnHere = touching(area, shapes);
    if (drawnHere.isEmpty())
        return;
    // The antialiasing of a line depends slightly on the bounds of the clip region, so these are
    // the picture's; its corners get their pixels back.
    const QRect all = m_base.rect();
    const QRegion corners = QRegion(QRect(all.topLeft(), QSize(1, 1))) +
                            QRegion(QRect(all.bottomRight(), QSize(1, 1))) - area;
    const QRgb *first = reinterpret_cast<const QRgb *>(image.constScanLine(0));
    const QRgb *last = reinterpret_cast<const QRgb *>(image.constScanLine(all.bottom()));
    const QRgb kept[]{first[0], last[all.right()]};
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRegion(area + corners);
    for (const EntryPtr &shape : drawnHere)
        drawShape(painter, shape->geometry, shape->style);
    painter.end();
    if (corners.contains(all.topLeft()))
        reinterpret_cast<QRgb *>(image.scanLine(0))[0] = kept[0];
    if (corners.contains(all.bottomRight()))
        reinterpret_cast<QRgb *>(image.scanLine(all.bottom()))[all.right()] = kept[1];
    for (const QRect &rect : area)
        clearOutside(m_base, image, rect);
}

void Canvas::replay()
{
    m_below.clear();
    m_belowBytes = 0;
    // The newest shapes are drawn one by one, so that each can be taken back.
    qsizetype room = budget();
    qsizetype single = m_scene.shapes.size();
    while (single > 0) {
        room -= bytesOf(coverageOf(*m_scene.shapes.at(single - 1)));
        if (room < 0)
            break;
        --single;
    }
    m_image = drawn(m_base, m_scene.shapes.first(single));
    m_isDrawn = true;
    m_previewImage = {};
    m_layers.reset();
    for (; single < m_scene.shapes.size(); ++single) {
        const EditEntry &shape = *m_scene.shapes.at(single);
        push(shape, coverageOf(shape));
    }
}

const QImage &Canvas::recorded()
{
    if (!m_isDrawn)
        replay();
    return m_image;
}

QRegion Canvas::setPreview(const OperationPtr &step)
{
    QRegion changed = m_previewArea;
    const std::optional<QList<EntryPtr>> shapesBefore = std::exchange(m_previewShapes, {});
    const EntryPtr addedBefore = m_preview ? addedBy(*m_preview) : nullptr;
    m_preview = step;
    m_previewArea = {};
    const EntryPtr added = step ? addedBy(*step) : nullptr;
    if (added && !isDerived(*added)) {
        m_previewArea = coverageOf(*added);
        if (addedBefore && !isDerived(*addedBefore))
            changed = changeOf(*addedBefore, *added, m_base.size());
        else
            changed += m_previewArea;
    } else if (step) {
        m_previewShapes = after(step).shapes;
        m_previewArea = difference(m_scene.shapes, *m_previewShapes);
        // From one state of the step to the next, less may change than from what is recorded.
        if (shapesBefore)
            changed = difference(*shapesBefore, *m_previewShapes);
        else
            changed += m_previewArea;
    }
    keepLayers();
    if (step)
        m_previewImage.setDrawn(m_previewImage.drawn() - changed);
    else
        m_previewImage = {};
    return changed;
}

// Goes on with the layers as long as the same shapes change.
void Canvas::keepLayers()
{
    const auto &now = m_previewShapes;
    QList<qsizetype> places;
    bool isSuited = now && now->size() == m_scene.shapes.size();
    for (qsizetype i = 0; isSuited && i < now->size(); ++i) {
        if (now->at(i) == m_scene.shapes.at(i))
            continue;
        places.append(i);
        isSuited = now->at(i)->id == m_scene.shapes.at(i)->id && !isDerived(*now->at(i));
    }
    if (!isSuited || places.isEmpty()) {
        m_layers.reset();
        return;
    }
    if (m_layers && m_layers->places == places)
        return;
    m_layers.emplace();
    m_layers->places = places;
    m_layers->below = m_scene.shapes.first(places.first());
    m_layers->others = *now;
    for (const qsizetype place : places) {
        m_layers->before += areaOf(m_scene.shapes.at(place));
        m_layers->others[place].reset();
    }
    m_layers->others.removeAll(nullptr);
    m_layers->drawnBelow = SparseImage(m_base.size(), m_base.format());
    m_layers->drawnOthers = SparseImage(m_base.size(), m_base.format());
    if (m_layers->drawnBelow.isNull() || m_layers->drawnOthers.isNull())
        m_layers.reset();
}

void Canvas::complete(SparseImage &layer, const QRegion &area, const QList<EntryPtr> &shapes)
{
    const QRegion missing = area - layer.drawn();
    if (missing.isEmpty())
        return;
    redraw(layer.image(), missing, m_base, shapes);
    layer.setDrawn(layer.drawn() + missing);
}

// Where no changing shape is drawn, the others are all there is: what is recorded, but for where
// the changing ones were. Elsewhere what lies below is there already, and the changing ones and
// what lies on top of them are drawn.
void Canvas::drawLayers(const QRegion &area)
{
    QImage &image = m_previewImage.image();
    const QRegion bared = area & m_layers->before;
    copyArea(m_image, image, area - bared);
    complete(m_layers->drawnOthers, bared, m_layers->others);
    copyArea(m_layers->drawnOthers.image(), image, bared);
    QRegion changing;
    for (const qsizetype place : m_layers->places)
        changing += fineAreaOf(m_previewShapes->at(place));
    changing &= area;
    if (changing.isEmpty())
        return;
    complete(m_layers->drawnBelow, changing, m_layers->below);
    copyArea(m_layers->drawnBelow.image(), image, changing);
    drawShapes(image, changing, m_previewShapes->sliced(m_layers->places.first()));
}

const QImage &Canvas::preview(const QRegion &part)
{
    const QImage &image = recorded();
    if (m_previewImage.isNull()) {
        m_previewImage = SparseImage(m_base.size(), m_base.format());
        // Without the address space it is shown as it is recorded.
        if (m_previewImage.isNull())
            return image;
        useScreenDots(m_previewImage.image());
    }
    const QRegion missing = (part & m_base.rect()) - m_previewImage.drawn();
    if (missing.isEmpty())
        return m_previewImage.image();
    m_previewImage.setDrawn(m_previewImage.drawn() + missing);
    const QRegion differing = missing & m_previewArea;
    copyArea(image, m_previewImage.image(), missing - differing);
    if (differing.isEmpty())
        return m_previewImage.image();
    if (m_layers) {
        drawLayers(differing);
    } else if (m_previewShapes && isOnTop(m_scene.shapes, *m_previewShapes)) {
        redraw(m_previewImage.image(), differing, image,
               m_previewShapes->sliced(m_scene.shapes.size()));
    } else if (m_previewShapes) {
        redraw(m_previewImage.image(), differing, m_base, *m_previewShapes);
    } else if (const EntryPtr added = addedBy(*m_preview)) {
        redraw(m_previewImage.image(), differing, image, {added});
    }
    return m_previewImage.image();
}

// A shape is drawn nowhere outside of its area; one may be drawn by another of its kind.
EntryPtr Canvas::shapeAt(QPointF point, qreal grace)
{
    const auto found =
        std::find_if(m_scene.shapes.rbegin(), m_scene.shapes.rend(), [&](const EntryPtr &shape) {
            const QRectF area(areaOf(shape).boundingRect());
            return (isDerived(*shape) ||
                    area.adjusted(-grace, -grace, grace, grace).contains(point)) &&
                   hit(shape->geometry, shape->style, point, grace);
        });
    return found == m_scene.shapes.rend() ? nullptr : *found;
}
