#include "editing/covering.h"

#include "editing/rendering.h"

#include <algorithm>
#include <type_traits>

namespace {

// Null for a shape that covers in another way, or not at all.
CoverBlocks *blocksOf(Geometry &geometry)
{
    const auto found = []<typename Shape>(Shape &shape) -> CoverBlocks * {
        if constexpr (std::is_base_of_v<CoverBlocks, Shape>)
            return &shape;
        return nullptr;
    };
    return std::visit(found, geometry);
}

// Null if the shape can stay as it is.
EntryPtr colored(const EditEntry &shape, const QList<EntryPtr> &before, const QImage &picture,
                 int seed)
{
    if (!toolOf(shape.geometry).isCover)
        return nullptr;
    EditEntry result = shape;
    CoverBlocks *blocks = blocksOf(result.geometry);
    if (!blocks)
        return nullptr;
    const bool stays = std::any_of(before.begin(), before.end(), [&](const EntryPtr &other) {
        return other->id == shape.id && boxOf(*other) == blocks->bounds;
    });
    if (stays && !blocks->colors.isEmpty())
        return nullptr;
    blocks->colors = CoverBlocks::colorsOf(picture, blocks->bounds);
    if (blocks->seed == 0)
        blocks->seed = 1 + seed % CoverBlocks::s_highestSeed;
    return std::make_shared<const EditEntry>(std::move(result));
}

constexpr int s_edge = 2;  // pixels

QList<EntryPtr> coversOf(const Scene &scene)
{
    QList<EntryPtr> result = scene.shapes;
    result.removeIf([](const EntryPtr &shape) { return !toolOf(shape->geometry).isCover; });
    return result;
}

}  // namespace

OperationPtr withColors(const OperationPtr &step, const QList<EntryPtr> &before,
                        const QImage &picture, int seed)
{
    if (!step)
        return step;
    if (const auto *several = std::get_if<SeveralChanges>(&step->change)) {
        SeveralChanges result;
        for (const OperationPtr &change : several->changes)
            result.changes.append(withColors(change, before, picture, seed++));
        return result.changes == several->changes ? step : operation(std::move(result));
    }
    const EntryPtr shape = shapeOf(*step);
    const EntryPtr result = shape ? colored(*shape, before, picture, seed) : nullptr;
    if (!result)
        return step;
    return addedBy(*step) ? operation(AddShape{result}) : operation(ReplaceShape{result});
}

EditHistory stillCovered(const EditHistory &history, const EditHistory &covered, QSize picture)
{
    const Scene now = sceneOf(history, picture);
    Scene then = sceneOf(covered, picture);
    const qsizetype later = history.size() - covered.size();
    if (later >= 0 && std::equal(covered.begin(), covered.end(), history.begin() + later)) {
        // Where the covers would be now.
        for (qsizetype i = later; i-- > 0;) {
            if (changesPicture(*history.at(i)))
                then = applied(std::move(then), {history.at(i)});
        }
    } else if (!isSamePicture(now, then)) {
        return covered;
    }
    EditHistory result = history;
    for (const EntryPtr &cover : coversOf(then)) {
        const bool isThere =
            std::any_of(now.shapes.begin(), now.shapes.end(), [&](const EntryPtr &shape) {
                return shape->id == cover->id && shape->geometry == cover->geometry;
            });
        if (isThere)
            continue;
        // Below what was drawn since.
        const EditEntry again{cover->geometry, cover->style};
        result.prepend(adding(again));
        result.prepend(operation(OrderShape{again.id, 0}));
    }
    return result;
}

OperationPtr withGround(const OperationPtr &step, const Scene &scene, const QImage &picture)
{
    if (!scene.onBlurred || changesPicture(*step))
        return step;
    const Scene after = applied(scene, {step});
    if (coversOf(after) == coversOf(scene))
        return step;
    SeveralChanges result;
    if (const auto *several = std::get_if<SeveralChanges>(&step->change))
        result = *several;
    else
        result.changes.append(step);
    // Where it was resized, its edge is mixed with the ground.
    const QRect inner = scene.onBlurred->adjusted(s_edge, s_edge, -s_edge, -s_edge);
    const QImage seen = inner.isEmpty() ? QImage() : drawn(picture, after.shapes).copy(inner);
    result.changes.append(operation(RecolorBackdrop{Backdrop::blotsOf(seen)}));
    return operation(std::move(result));
}
