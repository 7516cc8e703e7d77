#include "editing/shapefile.h"

#include "editing/shapeparts.h"

#include <QJsonObject>

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

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

// The names of a style's choices in files, by their numbers.
constexpr std::array s_fills{"none", "translucent", "solid"};
constexpr std::array s_dashes{"none", "dashed", "dotted"};
constexpr std::array s_heads{"one", "both", "open"};
constexpr std::array s_grounds{"none", "filled", "outlined"};
constexpr std::array s_backdrops{"color", "gradient", "blurred"};

constexpr int s_largestRatio = 100;

// What is as it always was before there was a choice is not written.
template<typename Choice>
void writeChoice(QJsonObject &to, QLatin1StringView key, const std::array<const char *, 3> &names,
                 Choice choice)
{
    if (choice != Choice())
        to[key] = QLatin1StringView(names.at(static_cast<size_t>(choice)));
}

template<typename Choice>
Choice readChoice(ShapeParts &parts, QLatin1StringView key,
                  const std::array<const char *, 3> &names)
{
    const QString name = parts.text(key);
    const auto found = std::find_if(names.begin(), names.end(), [&](const char *candidate) {
        return name == QLatin1StringView(candidate);
    });
    parts.requireName(name.isEmpty() || found != names.end());
    return found == names.end() ? Choice() : static_cast<Choice>(found - names.begin());
}

bool hasChoices(const EditMsg &style)
{
    return style.fill != Fill::None || style.dashes != Dashes::None || style.heads != Heads::One ||
           style.ground != TextGround::None || style.hasShadow || style.isRound;
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
    if (!shape.style.text.isEmpty() || shape.style.type == stateText)
        to["text"_L1] = shape.style.text;
    if (!shape.style.text.isEmpty() || shape.style.type == stateText ||
        toolOf(shape.style.type).hasLabel)
        to["font"_L1] = shape.style.font.toString();
    writeChoice(to, "fill"_L1, s_fills, shape.style.fill);
    writeChoice(to, "dashes"_L1, s_dashes, shape.style.dashes);
    writeChoice(to, "heads"_L1, s_heads, shape.style.heads);
    writeChoice(to, "ground"_L1, s_grounds, shape.style.ground);
    if (shape.style.hasShadow)
        to["shadow"_L1] = true;
    if (shape.style.isRound)
        to["round"_L1] = true;
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
                  .font = font(parts),
                  .fill = readChoice<Fill>(parts, "fill"_L1, s_fills),
                  .dashes = readChoice<Dashes>(parts, "dashes"_L1, s_dashes),
                  .heads = readChoice<Heads>(parts, "heads"_L1, s_heads),
                  .ground = readChoice<TextGround>(parts, "ground"_L1, s_grounds),
                  .hasShadow = parts.value("shadow"_L1).toBool(),
                  .isRound = parts.value("round"_L1).toBool()};
    parts.requireName(tool != tools.end());
    parts.require(style.color.isValid());
    parts.require(style.width >= 0 && style.width <= s_widestLine);
    return std::make_shared<const EditEntry>(EditEntry{
        readAny(static_cast<Geometry *>(nullptr), parts), std::move(style), idOf(parts, numbers)});
}

QJsonObject toJson(const Operation &operation, ShapeNumbers &numbers);

// Versions that know no choices of style know no "add" either, and leave the picture alone.
void write(QJsonObject &to, const AddShape &add, ShapeNumbers &numbers)
{
    if (hasChoices(add.shape->style))
        to["op"_L1] = "add"_L1;
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

void write(QJsonObject &to, const OrderShape &order, ShapeNumbers &numbers)
{
    to["op"_L1] = "order"_L1;
    to["id"_L1] = numbers.numberOf(order.id);
    if (order.above != 0)
        to["above"_L1] = numbers.numberOf(order.above);
}

QJsonArray numbersOf(const QRect &frame)
{
    return {frame.x(), frame.y(), frame.width(), frame.height()};
}

void write(QJsonObject &to, const CropPicture &crop, ShapeNumbers & /*numbers*/)
{
    to["op"_L1] = "crop"_L1;
    to["frame"_L1] = numbersOf(crop.frame);
}

void write(QJsonObject &to, const ExtendPicture &extend, ShapeNumbers & /*numbers*/)
{
    to["op"_L1] = "extend"_L1;
    to["frame"_L1] = numbersOf(extend.frame);
    to["ground"_L1] = extend.ground.name();
}

void write(QJsonObject &to, const TurnPicture &turn, ShapeNumbers & /*numbers*/)
{
    to["op"_L1] = "turn"_L1;
    to["quarters"_L1] = turn.quarters;
}

void write(QJsonObject &to, const MirrorPicture &mirror, ShapeNumbers & /*numbers*/)
{
    to["op"_L1] = "mirror"_L1;
    to["axis"_L1] = mirror.axis == Qt::Horizontal ? "horizontal"_L1 : "vertical"_L1;
}

void write(QJsonObject &to, const ResizePicture &resize, ShapeNumbers & /*numbers*/)
{
    to["op"_L1] = "resize"_L1;
    to["size"_L1] = QJsonArray{resize.size.width(), resize.size.height()};
}

void write(QJsonObject &to, const BackdropPicture &put, ShapeNumbers & /*numbers*/)
{
    to["op"_L1] = "backdrop"_L1;
    if (!put.backdrop)
        return;
    const Backdrop &backdrop = *put.backdrop;
    to["on"_L1] = true;
    writeChoice(to, "ground"_L1, s_backdrops, backdrop.ground);
    to["first"_L1] = backdrop.first.name();
    to["second"_L1] = backdrop.second.name();
    to["blots"_L1] = namesOf(backdrop.blots);
    to["padding"_L1] = backdrop.padding;
    to["radius"_L1] = backdrop.radius;
    to["shadow"_L1] = backdrop.hasShadow;
    to["ratio"_L1] = QJsonArray{backdrop.ratio.width(), backdrop.ratio.height()};
}

void write(QJsonObject &to, const RecolorBackdrop &recolor, ShapeNumbers & /*numbers*/)
{
    to["op"_L1] = "recolor"_L1;
    to["blots"_L1] = namesOf(recolor.blots);
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
        if (kind.isEmpty() || kind == "add"_L1)
            result.change = AddShape{readShape(parts, m_numbers)};
        else if (kind == "replace"_L1)
            result.change = ReplaceShape{readShape(parts, m_numbers)};
        else if (kind == "remove"_L1)
            result.change = RemoveShape{idOf(parts, m_numbers)};
        else if (kind == "order"_L1)
            result.change = readOrder(parts);
        else if (kind == "crop"_L1)
            result.change = CropPicture{readFrame(parts)};
        else if (kind == "extend"_L1)
            result.change = readExtend(parts);
        else if (kind == "turn"_L1)
            result.change = TurnPicture{parts.number("quarters"_L1)};
        else if (kind == "mirror"_L1)
            result.change = readMirror(parts);
        else if (kind == "resize"_L1)
            result.change = readResize(parts);
        else if (kind == "backdrop"_L1)
            result.change = readBackdrop(parts);
        else if (kind == "recolor"_L1)
            result.change = RecolorBackdrop{parts.colors("blots"_L1, Backdrop::s_mostBlots)};
        else if (parts.requireName(kind == "several"_L1) && parts.require(!isPart))
            result.change = readSeveral(parts);
        m_isNewer = m_isNewer || parts.isNewer();
        return parts.areUsable() ? std::make_shared<const Operation>(std::move(result)) : nullptr;
    }

private:
    OrderShape readOrder(ShapeParts &parts)
    {
        const qint64 above = parts.value("above"_L1).toInteger(-1);
        return {idOf(parts, m_numbers), above < 0 ? 0 : m_numbers.idOf(above)};
    }

    static QRect readFrame(ShapeParts &parts)
    {
        const QPolygon frame = parts.points("frame"_L1, 2, 2);
        const QSize size(frame.last().x(), frame.last().y());
        parts.require(!size.isEmpty());
        return {frame.first(), size};
    }

    static ExtendPicture readExtend(ShapeParts &parts)
    {
        const QColor ground = QColor::fromString(parts.text("ground"_L1));
        parts.require(ground.isValid() && ground.alpha() == 255);
        return {readFrame(parts), ground};
    }

    static MirrorPicture readMirror(ShapeParts &parts)
    {
        const QString axis = parts.text("axis"_L1);
        parts.requireName(axis == "horizontal"_L1 || axis == "vertical"_L1);
        return {axis == "vertical"_L1 ? Qt::Vertical : Qt::Horizontal};
    }

    static ResizePicture readResize(ShapeParts &parts)
    {
        const QPoint size = parts.points("size"_L1, 1, 1).first();
        parts.require(isPictureSize({size.x(), size.y()}));
        return {{size.x(), size.y()}};
    }

    static BackdropPicture readBackdrop(ShapeParts &parts)
    {
        if (!parts.value("on"_L1).toBool())
            return {};
        Backdrop backdrop;
        backdrop.ground = readChoice<Backdrop::Ground>(parts, "ground"_L1, s_backdrops);
        backdrop.first = QColor(parts.text("first"_L1));
        backdrop.second = QColor(parts.text("second"_L1));
        parts.require(backdrop.first.isValid() && backdrop.second.isValid());
        backdrop.blots = parts.colors("blots"_L1, Backdrop::s_mostBlots);
        backdrop.padding = parts.number("padding"_L1);
        parts.require(backdrop.padding >= 0 && backdrop.padding <= Backdrop::s_widestPadding);
        backdrop.radius = parts.number("radius"_L1);
        parts.require(backdrop.radius >= 0 && backdrop.radius <= Backdrop::s_roundest);
        backdrop.hasShadow = parts.value("shadow"_L1).toBool();
        const QPoint ratio = parts.points("ratio"_L1, 1, 1).first();
        parts.require(std::min(ratio.x(), ratio.y()) >= 0 &&
                      std::max(ratio.x(), ratio.y()) <= s_largestRatio);
        backdrop.ratio = {ratio.x(), ratio.y()};
        return {backdrop};
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
