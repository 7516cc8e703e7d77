#include "editing/shapefile.h"

#include "editing/shapeparts.h"

#include <QJsonObject>

#include <algorithm>
#include <type_traits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_widestLine = 1000;  // picture pixels
constexpr qreal s_largestText = 500;

template<typename Shape> QLatin1StringView kindOf(const Shape & /*shape*/)
{
    // A shape that draws nothing can come from any tool.
    if constexpr (std::is_same_v<Shape, EmptyShape>)
        return "nothing"_L1;
    else
        return QLatin1StringView(Shape::tool.id);
}

template<typename... Shapes> Geometry readAny(std::variant<Shapes...> * /*type*/, ShapeParts &parts)
{
    const QString kind = parts.text("kind"_L1);
    std::optional<Geometry> result;
    const auto tryOne = [&]<typename Shape>(const Shape &empty) {
        if (kind == kindOf(empty))
            result = Shape::read(parts);
    };
    (tryOne(Shapes()), ...);
    parts.requireName(result.has_value());
    return result.value_or(EmptyShape{});
}

QFont font(ShapeParts &parts)
{
    const QString text = parts.text("font"_L1);
    QFont result;
    parts.require(text.isEmpty() || result.fromString(text));
    parts.require(result.pointSizeF() <= s_largestText && result.pixelSize() <= s_largestText);
    return result;
}

void write(QJsonObject &to, const EditEntry &shape, ShapeNumbers &numbers)
{
    std::visit(
        [&](const auto &geometry) {
            to["kind"_L1] = kindOf(geometry);
            geometry.write(to);
        },
        shape.geometry);
    to["id"_L1] = numbers.numberOf(shape.id);
    to["tool"_L1] = QLatin1StringView(toolOf(shape.style.type).id);
    to["color"_L1] = shape.style.color.name(QColor::HexArgb);
    to["width"_L1] = shape.style.width;
    if (!shape.style.text.isEmpty() || shape.style.type == stateText) {
        to["text"_L1] = shape.style.text;
        to["font"_L1] = shape.style.font.toString();
    }
}

// A shape that was kept before shapes had numbers has none.
ShapeId idOf(const ShapeParts &parts, ShapeNumbers &numbers)
{
    const qint64 number = parts.value("id"_L1).toInteger(-1);
    return number < 0 ? nextShapeId() : numbers.idOf(number);
}

EntryPtr readShape(ShapeParts &parts, ShapeNumbers &numbers)
{
    const auto tools = allTools();
    const QString id = parts.text("tool"_L1);
    const auto tool = std::find_if(tools.begin(), tools.end(), [&](const Tool *candidate) {
        return id == QLatin1StringView(candidate->id);
    });
    EditMsg style{.type = tool == tools.end() ? stateMove : (*tool)->state,
                  .width = parts.number("width"_L1),
                  .color = QColor::fromString(parts.text("color"_L1)),
                  .text = parts.text("text"_L1),
                  .font = font(parts)};
    parts.requireName(tool != tools.end());
    parts.require(style.color.isValid());
    parts.require(style.width >= 0 && style.width <= s_widestLine);
    return std::make_shared<const EditEntry>(EditEntry{
        readAny(static_cast<Geometry *>(nullptr), parts), std::move(style), idOf(parts, numbers)});
}

QJsonObject toJson(const Operation &operation, ShapeNumbers &numbers);

void write(QJsonObject &to, const AddShape &add, ShapeNumbers &numbers)
{
    write(to, *add.shape, numbers);
}

void write(QJsonObject &to, const ReplaceShape &replace, ShapeNumbers &numbers)
{
    to["op"_L1] = "replace"_L1;
    write(to, *replace.shape, numbers);
}

void write(QJsonObject &to, const RemoveShape &remove, ShapeNumbers &numbers)
{
    to["op"_L1] = "remove"_L1;
    to["id"_L1] = numbers.numberOf(remove.id);
}

void write(QJsonObject &to, const CropPicture &crop, ShapeNumbers & /*numbers*/)
{
    to["op"_L1] = "crop"_L1;
    to["frame"_L1] =
        QJsonArray{crop.frame.x(), crop.frame.y(), crop.frame.width(), crop.frame.height()};
}

void write(QJsonObject &to, const SeveralChanges &several, ShapeNumbers &numbers)
{
    to["op"_L1] = "several"_L1;
    QJsonArray changes;
    for (const OperationPtr &change : several.changes)
        changes.append(toJson(*change, numbers));
    to["changes"_L1] = changes;
}

QJsonObject toJson(const Operation &operation, ShapeNumbers &numbers)
{
    QJsonObject result;
    std::visit([&](const auto &change) { write(result, change, numbers); }, operation.change);
    return result;
}

// Null for what can't be used.
class Reader
{
public:
    explicit Reader(ShapeNumbers &numbers) : m_numbers(numbers) {}

    bool isNewer() const { return m_isNewer; }

    OperationPtr read(const QJsonObject &from, bool isPart = false)
    {
        ShapeParts parts(from);
        Operation result;
        const QString kind = parts.text("op"_L1);
        if (kind.isEmpty())
            result.change = AddShape{readShape(parts, m_numbers)};
        else if (kind == "replace"_L1)
            result.change = ReplaceShape{readShape(parts, m_numbers)};
        else if (kind == "remove"_L1)
            result.change = RemoveShape{idOf(parts, m_numbers)};
        else if (kind == "crop"_L1)
            result.change = readCrop(parts);
        else if (parts.requireName(kind == "several"_L1) && parts.require(!isPart))
            result.change = readSeveral(parts);
        m_isNewer = m_isNewer || parts.isNewer();
        return parts.areUsable() ? std::make_shared<const Operation>(std::move(result)) : nullptr;
    }

private:
    static CropPicture readCrop(ShapeParts &parts)
    {
        const QPolygon frame = parts.points("frame"_L1, 2, 2);
        const QSize size(frame.last().x(), frame.last().y());
        parts.require(!size.isEmpty());
        return {{frame.first(), size}};
    }

    SeveralChanges readSeveral(ShapeParts &parts)
    {
        SeveralChanges several;
        for (const auto &change : parts.value("changes"_L1).toArray()) {
            several.changes.append(read(change.toObject(), true));
            if (!parts.require(several.changes.last() != nullptr))
                break;
        }
        return several;
    }

    ShapeNumbers &m_numbers;
    bool m_isNewer = false;
};

}  // namespace

qint64 ShapeNumbers::numberOf(ShapeId id)
{
    qint64 &number = m_numbers[id];
    if (number == 0)
        number = m_numbers.size();
    return number;
}

ShapeId ShapeNumbers::idOf(qint64 number)
{
    ShapeId &id = m_ids[number];
    if (id == 0)
        id = nextShapeId();
    return id;
}

QJsonArray toJson(const EditHistory &history, ShapeNumbers &numbers)
{
    QJsonArray result;
    for (auto step = history.crbegin(); step != history.crend(); ++step)
        result.append(toJson(**step, numbers));
    return result;
}

HistoryRead historyFromJson(const QJsonArray &operations, ShapeNumbers &numbers)
{
    Reader reader(numbers);
    EditHistory history;
    history.reserve(operations.size());
    for (const auto &step : operations) {
        history.append(reader.read(step.toObject()));
        if (!history.last())
            return {.isNewer = reader.isNewer()};
    }
    std::reverse(history.begin(), history.end());
    return {.history = history};
}
