#include "editing/history.h"

#include <QHash>
#include <QSet>

#include <QTransform>

#include <algorithm>
#include <atomic>
#include <functional>
#include <iterator>

namespace {

constexpr int s_longest = 32'767;  // pixels of a side, which painting can count
constexpr qint64 s_most = 400'000'000;

template<typename Shape> constexpr bool isSettled = requires(QList<EntryPtr> &shapes)
{
    Shape::settle(shapes, {});
};

template<typename... Shapes>
void settleAll(std::variant<Shapes...> * /*type*/, QList<EntryPtr> &shapes,
               const QList<ShapeId> &byAge)
{
    const auto settle = [&]<typename Shape>(const Shape *) {
        if constexpr (isSettled<Shape>)
            Shape::settle(shapes, byAge);
    };
    (settle(static_cast<const Shapes *>(nullptr)), ...);
}

// The blurred ground on which a change puts the picture; null if there is none.
const Backdrop *blurredBy(const OperationPtr &change)
{
    const auto *put = std::get_if<BackdropPicture>(&change->change);
    return put && put->backdrop && put->backdrop->ground == Backdrop::Ground::Blurred
               ? &*put->backdrop
               : nullptr;
}

// Applies operations, oldest first. Places stay what they are while shapes are removed, so that
// each operation takes the same time, however many shapes there are.
class SceneBuilder
{
public:
    explicit SceneBuilder(Scene scene) : m_scene(std::move(scene)) { findPlaces(); }

    void apply(const OperationPtr &operation)
    {
        std::visit([&](const auto &change) { apply(change, operation); }, operation->change);
    }

    Scene finish()
    {
        m_scene.shapes.removeAll(nullptr);
        if (!m_scene.derived.isEmpty())
            settleAll(static_cast<Geometry *>(nullptr), m_scene.shapes, m_scene.derived);
        return std::move(m_scene);
    }

private:
    void findPlaces()
    {
        m_places.clear();
        m_places.reserve(m_scene.shapes.size());
        for (qsizetype place = 0; place < m_scene.shapes.size(); ++place) {
            if (const EntryPtr &shape = m_scene.shapes.at(place))
                m_places.insert(shape->id, place);
        }
    }

    void apply(const AddShape &add, const OperationPtr & /*whole*/)
    {
        m_places.insert(add.shape->id, m_scene.shapes.size());
        m_scene.shapes.append(add.shape);
        if (isDerived(*add.shape))
            m_scene.derived.append(add.shape->id);
    }

    void apply(const ReplaceShape &replace, const OperationPtr & /*whole*/)
    {
        if (const auto place = m_places.constFind(replace.shape->id); place != m_places.constEnd())
            m_scene.shapes[*place] = replace.shape;
    }

    void apply(const RemoveShape &remove, const OperationPtr & /*whole*/)
    {
        if (const auto place = m_places.constFind(remove.id); place != m_places.constEnd()) {
            m_scene.shapes[*place].reset();
            m_places.erase(place);
            m_scene.derived.removeOne(remove.id);
        }
    }

    void apply(const OrderShape &order, const OperationPtr & /*whole*/)
    {
        const auto from = m_places.constFind(order.id);
        const auto above = m_places.constFind(order.above);
        if (from == m_places.constEnd() || order.id == order.above ||
            (order.above != 0 && above == m_places.constEnd()))
            return;
        const qsizetype below = order.above == 0 ? -1 : *above;
        m_scene.shapes.move(*from, *from < below ? below : below + 1);
        findPlaces();
    }

    void apply(const CropPicture &crop, const OperationPtr &whole)
    {
        const QRect kept = crop.frame & QRect(QPoint(), m_scene.size);
        if (!kept.isEmpty())
            change(kept.size(), PictureMap::moving(-kept.topLeft()), whole);
    }

    void apply(const ExtendPicture &extend, const OperationPtr &whole)
    {
        if (extend.frame.intersects(QRect(QPoint(), m_scene.size)) &&
            isPictureSize(extend.frame.size()))
            change(extend.frame.size(), PictureMap::moving(-extend.frame.topLeft()), whole);
    }

    void apply(const TurnPicture &turn, const OperationPtr &whole)
    {
        changeOnGround(QTransform().rotate(90. * (turn.quarters & 3)), [&] {
            change(turn.quarters % 2 ? m_scene.size.transposed() : m_scene.size,
                   PictureMap::turning(turn.quarters, m_scene.size), whole);
        });
    }

    void apply(const MirrorPicture &mirror, const OperationPtr &whole)
    {
        const bool isAcross = mirror.axis == Qt::Horizontal;
        changeOnGround(QTransform::fromScale(isAcross ? -1 : 1, isAcross ? 1 : -1), [&] {
            change(m_scene.size, PictureMap::mirroring(mirror.axis, m_scene.size), whole);
        });
    }

    void apply(const ResizePicture &resize, const OperationPtr &whole)
    {
        if (!m_scene.size.isEmpty() && isPictureSize(resize.size)) {
            change(resize.size, PictureMap::resizing(m_scene.size, resize.size), whole);
        }
    }

    void apply(const BackdropPicture &put, const OperationPtr &whole)
    {
        const QRect before = m_scene.onBackdrop;
        const QSize picture = before.isNull() ? m_scene.size : before.size();
        const QSize size = put.backdrop ? put.backdrop->sizeFor(picture) : picture;
        const QRect place = put.backdrop ? put.backdrop->placeOf(picture) : QRect(QPoint(), size);
        if (picture.isEmpty() || !isPictureSize(size) || (!put.backdrop && before.isNull()))
            return;
        if (!before.isNull())
            m_scene.picture.removeLast();
        change(size, PictureMap::moving(place.topLeft() - before.topLeft()), whole);
        if (put.backdrop)
            m_scene.onBackdrop = place;
        else
            m_scene.picture.removeLast();
        if (std::none_of(m_scene.picture.begin(), m_scene.picture.end(), blurredBy))
            m_scene.onBlurred.reset();
        else if (!m_scene.onBlurred)
            m_scene.onBlurred = place;
    }

    void apply(const RecolorBackdrop &recolor, const OperationPtr & /*whole*/)
    {
        for (OperationPtr &change : m_scene.picture) {
            if (const Backdrop *blurred = blurredBy(change)) {
                Backdrop recolored = *blurred;
                recolored.blots = recolor.blots;
                change = operation(BackdropPicture{std::move(recolored)});
            }
        }
    }

    void apply(const SeveralChanges &several, const OperationPtr & /*whole*/)
    {
        for (const OperationPtr &change : several.changes)
            apply(change);
    }

    // Turns what lies on the ground, so that this can still be exchanged, and its light comes from
    // where it came from.
    void changeOnGround(const QTransform &turn, const std::function<void()> &change)
    {
        const std::optional<Backdrop> ground = backdropOf(m_scene);
        if (ground)
            apply(BackdropPicture{}, nullptr);
        change();
        if (ground)
            SceneBuilder::apply(operation(BackdropPicture{ground->turned(turn)}));
    }

    void change(QSize size, const PictureMap &map, const OperationPtr &whole)
    {
        m_scene.size = size;
        m_scene.picture.append(whole);
        m_scene.onBackdrop = {};
        if (m_scene.onBlurred)
            m_scene.onBlurred = map(*m_scene.onBlurred) & QRect(QPoint(), size);
        for (EntryPtr &shape : m_scene.shapes) {
            if (shape)
                shape = std::make_shared<const EditEntry>(mapped(*shape, map));
        }
    }

    Scene m_scene;
    QHash<ShapeId, qsizetype> m_places{};
};

}  // namespace

ShapeId nextShapeId()
{
    static std::atomic<ShapeId> s_last = 0;
    return ++s_last;
}

bool isDerived(const EditEntry &shape) { return toolOf(shape.geometry).isDerived; }

EditEntry mapped(const EditEntry &shape, const PictureMap &map)
{
    const EditMsg style = mapped(shape.style, map);
    return {mapped(shape.geometry, style, map), style, shape.id};
}

OperationPtr adding(EditEntry shape)
{
    return operation(AddShape{std::make_shared<const EditEntry>(std::move(shape))});
}

EntryPtr shapeOf(const Operation &operation)
{
    if (const auto *replace = std::get_if<ReplaceShape>(&operation.change))
        return replace->shape;
    return addedBy(operation);
}

QList<EntryPtr> shapesOf(const Operation &operation)
{
    QList<EntryPtr> result;
    if (const auto *several = std::get_if<SeveralChanges>(&operation.change)) {
        for (const OperationPtr &part : several->changes)
            result += shapesOf(*part);
    } else if (const EntryPtr shape = shapeOf(operation)) {
        result.append(shape);
    }
    return result;
}

EntryPtr addedBy(const Operation &operation)
{
    const auto *add = std::get_if<AddShape>(&operation.change);
    return add ? add->shape : nullptr;
}

bool changesPicture(const Operation &operation)
{
    if (const auto *several = std::get_if<SeveralChanges>(&operation.change)) {
        return std::any_of(several->changes.begin(), several->changes.end(),
                           [](const OperationPtr &change) { return changesPicture(*change); });
    }
    return std::holds_alternative<CropPicture>(operation.change) ||
           std::holds_alternative<ExtendPicture>(operation.change) ||
           std::holds_alternative<TurnPicture>(operation.change) ||
           std::holds_alternative<MirrorPicture>(operation.change) ||
           std::holds_alternative<ResizePicture>(operation.change) ||
           std::holds_alternative<BackdropPicture>(operation.change) ||
           std::holds_alternative<RecolorBackdrop>(operation.change);
}

qsizetype shapeCount(const EditHistory &history)
{
    QSet<ShapeId> ids;
    for (const OperationPtr &step : history) {
        for (const EntryPtr &shape : shapesOf(*step))
            ids.insert(shape->id);
    }
    return ids.size();
}

bool hasCovers(const EditHistory &history)
{
    // Where the shapes lie makes no difference, so the picture's size need not be known.
    const Scene scene = sceneOf(history, {});
    return std::any_of(scene.shapes.begin(), scene.shapes.end(),
                       [](const EntryPtr &shape) { return toolOf(shape->geometry).isCover; });
}

bool isPictureSize(QSize size)
{
    return size.width() > 0 && size.height() > 0 && size.width() <= s_longest &&
           size.height() <= s_longest && qint64{size.width()} * size.height() <= s_most;
}

std::optional<Backdrop> backdropOf(const Scene &scene)
{
    if (scene.onBackdrop.isNull())
        return {};
    return std::get<BackdropPicture>(scene.picture.last()->change).backdrop;
}

bool isSamePicture(const Scene &a, const Scene &b)
{
    // A ground that was turned or has got other colours is an operation that no history has, made
    // anew for each scene.
    const auto isSame = [](const OperationPtr &one, const OperationPtr &other) {
        const auto *ground = std::get_if<BackdropPicture>(&one->change);
        const auto *otherGround = std::get_if<BackdropPicture>(&other->change);
        return one == other || (ground && otherGround && ground->backdrop == otherGround->backdrop);
    };
    return a.size == b.size && std::equal(a.picture.begin(), a.picture.end(), b.picture.begin(),
                                          b.picture.end(), isSame);
}

Scene sceneOf(const EditHistory &history, QSize picture)
{
    return applied({.size = picture}, {history.crbegin(), history.crend()});
}

Scene applied(Scene scene, const QList<OperationPtr> &steps)
{
    SceneBuilder builder(std::move(scene));
    for (const OperationPtr &step : steps)
        builder.apply(step);
    return builder.finish();
}
