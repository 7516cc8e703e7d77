#include "editing/history.h"

#include <QHash>

#include <atomic>

namespace {

// Applies operations, oldest first. Places stay what they are while shapes are removed, so that
// each operation takes the same time, however many shapes there are.
class SceneBuilder
{
public:
    explicit SceneBuilder(QSize picture) { m_scene.frame = QRect(QPoint(), picture); }

    void apply(const Operation &operation)
    {
        std::visit([this](const auto &change) { apply(change); }, operation.change);
    }

    Scene finish()
    {
        m_scene.shapes.removeAll(nullptr);
        return std::move(m_scene);
    }

private:
    void apply(const AddShape &add)
    {
        m_places.insert(add.shape->id, m_scene.shapes.size());
        m_scene.shapes.append(add.shape);
    }

    void apply(const ReplaceShape &replace)
    {
        if (const auto place = m_places.constFind(replace.shape->id); place != m_places.constEnd())
            m_scene.shapes[*place] = replace.shape;
    }

    void apply(const RemoveShape &remove)
    {
        if (const auto place = m_places.constFind(remove.id); place != m_places.constEnd()) {
            m_scene.shapes[*place].reset();
            m_places.erase(place);
        }
    }

    void apply(const CropPicture &crop)
    {
        const QRect kept = crop.frame & QRect(QPoint(), m_scene.frame.size());
        if (kept.isEmpty())
            return;
        m_scene.frame = kept.translated(m_scene.frame.topLeft());
        if (kept.topLeft().isNull())
            return;
        for (EntryPtr &shape : m_scene.shapes) {
            if (shape)
                shape = std::make_shared<const EditEntry>(
                    EditEntry{moved(shape->geometry, -kept.topLeft()), shape->style, shape->id});
        }
    }

    void apply(const SeveralChanges &several)
    {
        for (const OperationPtr &change : several.changes)
            apply(*change);
    }

    Scene m_scene{};
    QHash<ShapeId, qsizetype> m_places{};
};

}  // namespace

ShapeId nextShapeId()
{
    static std::atomic<ShapeId> s_last = 0;
    return ++s_last;
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

EntryPtr addedBy(const Operation &operation)
{
    const auto *add = std::get_if<AddShape>(&operation.change);
    return add ? add->shape : nullptr;
}

Scene sceneOf(const EditHistory &history, QSize picture)
{
    SceneBuilder builder(picture);
    for (auto step = history.crbegin(); step != history.crend(); ++step)
        builder.apply(**step);
    return builder.finish();
}
