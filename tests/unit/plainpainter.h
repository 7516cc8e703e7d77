#pragma once

#include "base/palette.h"
#include "editing/gesture.h"
#include "editing/rendering.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <optional>
#include <utility>

/// The plain way to show a picture that is being drawn on: everything anew at each paint, and each
/// pixel looked at one by one. The editor has to give the same pixels.
class PlainPainter : public QObject
{
public:
    explicit PlainPainter(QWidget *widget) : m_widget(widget) { widget->installEventFilter(this); }

    QPixmap united() const { return QPixmap::fromImage(replay()); }

    /// A picture as it is seen: what is transparent in it shows fields of 8 by 8 pixels.
    static QImage onChequers(const QImage &picture)
    {
        QImage result(picture.size(), QImage::Format_RGB32);
        for (int y = 0; y < result.height(); ++y) {
            for (int x = 0; x < result.width(); ++x)
                result.setPixelColor(
                    x, y, (x / 8 + y / 8) % 2 ? Palette::clearDark : Palette::clearBright);
        }
        QPainter(&result).drawImage(0, 0, picture);
        return result;
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Paint)
            return QObject::eventFilter(watched, event);
        paint();
        return true;
    }

    QPixmap picture{};
    EditHistory history{};
    DrawingGesture gesture{};
    stateEnum state = stateMove;
    float scale = 1;
    int lineWidth = 1;
    QColor color = Qt::black;

private:
    static void clean(const QImage &base, QImage &target)
    {
        for (int x = 0; x < base.width(); ++x) {
            for (int y = 0; y < base.height(); ++y) {
                if (base.pixel(x, y) == 0)
                    target.setPixelColor(x, y, QColor(0, 0, 0, 0));
            }
        }
    }

    // What a history has come to so far.
    struct Made {
        QImage pristine{};
        QList<EditEntry> shapes{};
        QList<ShapeId> added{};  // in their order
        // What lay on the ground on which it lies now.
        std::optional<std::pair<QImage, QPoint>> before{};
        Backdrop ground{};
    };

    // A turn leaves the ground where it is.
    static void change(Made &made, const QTransform &turn, const auto &mapFor)
    {
        const bool isOnGround = made.before.has_value();
        const Backdrop ground = made.ground;
        if (isOnGround)
            apply({BackdropPicture{}}, made);
        change(made, made.pristine.transformed(turn), mapFor(made.pristine.size()));
        if (isOnGround)
            apply({BackdropPicture{ground.turned(turn)}}, made);
    }

    static void change(Made &made, const QImage &now, const PictureMap &map)
    {
        made.pristine = now;
        made.before.reset();
        for (EditEntry &shape : made.shapes)
            shape = mapped(shape, map);
    }

    // Each operation is carried out by looking at all shapes.
    static void apply(const Operation &operation, Made &made)
    {
        QImage &pristine = made.pristine;
        QList<EditEntry> &shapes = made.shapes;
        const EntryPtr shape = shapeOf(operation);
        if (addedBy(operation)) {
            shapes.append(*shape);
            made.added.append(shape->id);
        } else if (shape) {
            for (EditEntry &other : shapes) {
                if (other.id == shape->id)
                    other = *shape;
            }
        } else if (const auto *remove = std::get_if<RemoveShape>(&operation.change)) {
            shapes.removeIf([&](const EditEntry &other) { return other.id == remove->id; });
        } else if (const auto *crop = std::get_if<CropPicture>(&operation.change)) {
            const QRect kept = crop->frame & pristine.rect();
            if (!kept.isEmpty())
                change(made, pristine.copy(kept), PictureMap::moving(-kept.topLeft()));
        } else if (const auto *extend = std::get_if<ExtendPicture>(&operation.change)) {
            if (!extend->frame.intersects(pristine.rect()))
                return;
            QImage larger(extend->frame.size(), pristine.format());
            for (int y = 0; y < larger.height(); ++y) {
                for (int x = 0; x < larger.width(); ++x) {
                    const QPoint from = QPoint(x, y) + extend->frame.topLeft();
                    larger.setPixel(x, y,
                                    pristine.rect().contains(from)
                                        ? reinterpret_cast<const QRgb *>(
                                              pristine.constScanLine(from.y()))[from.x()]
                                        : extend->ground.rgba());
                }
            }
            change(made, larger, PictureMap::moving(-extend->frame.topLeft()));
        } else if (const auto *turn = std::get_if<TurnPicture>(&operation.change)) {
            change(made, QTransform().rotate(90 * turn->quarters),
                   [&](QSize size) { return PictureMap::turning(turn->quarters, size); });
        } else if (const auto *mirror = std::get_if<MirrorPicture>(&operation.change)) {
            const bool isAcross = mirror->axis == Qt::Horizontal;
            change(made, QTransform::fromScale(isAcross ? -1 : 1, isAcross ? 1 : -1),
                   [&](QSize size) { return PictureMap::mirroring(mirror->axis, size); });
        } else if (const auto *resize = std::get_if<ResizePicture>(&operation.change)) {
            change(made,
                   pristine.scaled(resize->size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation),
                   PictureMap::resizing(pristine.size(), resize->size));
        } else if (const auto *put = std::get_if<BackdropPicture>(&operation.change)) {
            const auto [below, at] = made.before.value_or(std::pair(pristine, QPoint()));
            if (!put->backdrop && !made.before)
                return;
            const QPoint to =
                put->backdrop ? put->backdrop->placeOf(below.size()).topLeft() : QPoint();
            change(made, put->backdrop ? put->backdrop->under(below) : below,
                   PictureMap::moving(to - at));
            if (put->backdrop) {
                made.before.emplace(below, to);
                made.ground = *put->backdrop;
            }
        } else if (const auto *order = std::get_if<OrderShape>(&operation.change)) {
            const auto placeOf = [&](ShapeId id) {
                return std::find_if(shapes.begin(), shapes.end(),
                                    [id](const EditEntry &other) { return other.id == id; });
            };
            if (placeOf(order->id) == shapes.end() || order->id == order->above ||
                (order->above != 0 && placeOf(order->above) == shapes.end()))
                return;
            const EditEntry entry = *placeOf(order->id);
            shapes.erase(placeOf(order->id));
            shapes.insert(order->above == 0 ? shapes.begin() : std::next(placeOf(order->above)),
                          entry);
        } else {
            for (const OperationPtr &part : std::get<SeveralChanges>(operation.change).changes)
                apply(*part, made);
        }
    }

    // Markers count in the order in which they were added, and the lowest spotlight has the areas
    // of all.
    static void derive(Made &made)
    {
        int number = 0;
        for (const ShapeId id : std::as_const(made.added)) {
            for (EditEntry &shape : made.shapes) {
                auto *marker = std::get_if<MarkerShape>(&shape.geometry);
                if (marker && shape.id == id)
                    marker->number = number = marker->start > 0 ? marker->start : number + 1;
            }
        }
        SpotlightShape *lowest = nullptr;
        for (EditEntry &shape : made.shapes) {
            if (auto *spotlight = std::get_if<SpotlightShape>(&shape.geometry)) {
                spotlight->spots.clear();
                lowest = lowest ? lowest : spotlight;
                lowest->spots.append({spotlight->bounds, shape.style.isRound});
                std::sort(lowest->spots.begin(), lowest->spots.end());
            }
        }
    }

    QImage replay(const OperationPtr &draft = nullptr) const
    {
        Made made{.pristine = picture.toImage()};
        for (auto step = history.crbegin(); step != history.crend(); ++step)
            apply(**step, made);
        if (draft)
            apply(*draft, made);
        derive(made);
        QImage image = made.pristine;
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        for (const EditEntry &shape : std::as_const(made.shapes))
            drawShape(painter, shape.geometry, shape.style);
        painter.end();
        clean(made.pristine, image);
        return image;
    }

    void paint() const
    {
        ViewMapping view{.widget = m_widget->size(), .picture = picture.size(), .scale = scale};
        QPainter painter(m_widget);
        painter.setPen(QColor(126, 136, 146));
        painter.drawRect(QRect(view.margins() - QPoint(1, 1), view.scaledSize() + QSize(1, 1)));
        const auto show = [&](const QImage &shown) {
            painter.drawPixmap(view.margins(), QPixmap::fromImage(shown).scaled(
                                                   view.shownSize(), Qt::KeepAspectRatio,
                                                   Qt::SmoothTransformation));
        };
        const std::optional<Geometry> shape = gesture.preview(state, view, lineWidth);
        if (picture.hasAlpha()) {
            QImage clear(view.scaledSize(), QImage::Format_ARGB32_Premultiplied);
            clear.fill(Qt::transparent);
            painter.drawImage(view.margins(), onChequers(clear));
        }
        if (!shape || picture.hasAlpha())
            show(replay());
        if (shape)
            show(replay(adding({*shape, {.type = state, .width = lineWidth, .color = color}})));
    }

    QWidget *m_widget;
};
