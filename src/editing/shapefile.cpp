#include "editing/shapefile.h"

#include <QJsonObject>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_farthest = 1 << 24;  // picture pixels from the corner; no picture is larger
constexpr int s_widestLine = 1000;   // picture pixels
constexpr qreal s_largestText = 500;
constexpr qsizetype s_arrowPoints = 5;
constexpr qsizetype s_outlinePoints = 5;

// Indexed by the tools' numbers.
constexpr std::array<QLatin1StringView, 6> s_tools{"move"_L1,  "rectangle"_L1, "ellipse"_L1,
                                                   "arrow"_L1, "text"_L1,      "line"_L1};

// Reads the members of one shape, and remembers if one is invalid.
class Parts
{
public:
    explicit Parts(QJsonObject shape) : m_shape(std::move(shape)) {}

    bool areUsable() const { return m_areUsable; }
    QString text(QLatin1StringView name) const { return m_shape[name].toString(); }
    int number(QLatin1StringView name) { return whole(m_shape[name]); }
    QPolygon points(QLatin1StringView name, qsizetype fewest, qsizetype most)
    {
        const QJsonArray coordinates = m_shape[name].toArray();
        const qsizetype count = coordinates.size() / 2;
        QPolygon result;
        if (!require(coordinates.size() % 2 == 0 && count >= fewest && count <= most))
            return QPolygon(fewest);
        result.reserve(count);
        for (qsizetype i = 0; i < count; ++i)
            result.append({whole(coordinates.at(2 * i)), whole(coordinates.at(2 * i + 1))});
        return result;
    }
    bool require(bool isUsable)
    {
        m_areUsable = m_areUsable && isUsable;
        return isUsable;
    }

private:
    int whole(const QJsonValue &value)
    {
        const double found = value.toDouble(std::nan(""));
        return require(std::abs(found) <= s_farthest) ? static_cast<int>(found) : 0;
    }

    QJsonObject m_shape;
    bool m_areUsable = true;
};

QJsonArray numbers(const QPolygon &points)
{
    QJsonArray result;
    for (const QPoint point : points) {
        result.append(point.x());
        result.append(point.y());
    }
    return result;
}

void write(QJsonObject &to, const EmptyShape &) { to[u"kind"_s] = u"nothing"_s; }

void write(QJsonObject &to, const RectShape &shape)
{
    to[u"kind"_s] = u"rectangle"_s;
    to[u"points"_s] = numbers(shape.outline);
}

void write(QJsonObject &to, const EllipseShape &shape)
{
    to[u"kind"_s] = u"ellipse"_s;
    to[u"bounds"_s] =
        QJsonArray{shape.bounds.x(), shape.bounds.y(), shape.bounds.width(), shape.bounds.height()};
}

void write(QJsonObject &to, const ArrowShape &shape)
{
    to[u"kind"_s] = u"arrow"_s;
    to[u"points"_s] = numbers(shape.points);
}

void write(QJsonObject &to, const PolylineShape &shape)
{
    to[u"kind"_s] = u"line"_s;
    to[u"points"_s] = numbers(shape.points);
}

void write(QJsonObject &to, const TextShape &shape)
{
    to[u"kind"_s] = u"text"_s;
    to[u"position"_s] = QJsonArray{shape.position.x(), shape.position.y()};
}

Geometry geometry(Parts &parts)
{
    const QString kind = parts.text("kind"_L1);
    if (kind == u"rectangle")
        return RectShape{parts.points("points"_L1, s_outlinePoints, s_outlinePoints)};
    if (kind == u"arrow")
        return ArrowShape{parts.points("points"_L1, s_arrowPoints, s_arrowPoints)};
    if (kind == u"line")
        return PolylineShape{parts.points("points"_L1, 0, s_farthest)};
    if (kind == u"text")
        return TextShape{parts.points("position"_L1, 1, 1).first()};
    if (kind == u"ellipse") {
        const QPolygon corner = parts.points("bounds"_L1, 2, 2);
        return EllipseShape{{corner.first(), QSize(corner.last().x(), corner.last().y())}};
    }
    parts.require(kind == u"nothing");
    return EmptyShape{};
}

QFont font(Parts &parts)
{
    const QString text = parts.text("font"_L1);
    QFont result;
    parts.require(text.isEmpty() || result.fromString(text));
    parts.require(result.pointSizeF() <= s_largestText && result.pixelSize() <= s_largestText);
    return result;
}

QJsonObject toJson(const EditEntry &entry)
{
    QJsonObject result;
    std::visit([&](const auto &shape) { write(result, shape); }, entry.geometry);
    result[u"tool"_s] =
        s_tools.at(std::min(static_cast<size_t>(entry.style.type), s_tools.size() - 1));
    result[u"color"_s] = entry.style.color.name(QColor::HexArgb);
    result[u"width"_s] = entry.style.width;
    if (!entry.style.text.isEmpty() || entry.style.type == stateText) {
        result[u"text"_s] = entry.style.text;
        result[u"font"_s] = entry.style.font.toString();
    }
    return result;
}

EditEntry entryFrom(Parts &parts)
{
    const auto tool = std::find(s_tools.begin(), s_tools.end(), parts.text("tool"_L1));
    EditMsg style{.type = static_cast<int>(tool - s_tools.begin()),
                  .width = parts.number("width"_L1),
                  .color = QColor::fromString(parts.text("color"_L1)),
                  .text = parts.text("text"_L1),
                  .font = font(parts)};
    parts.require(tool != s_tools.end() && style.color.isValid());
    parts.require(style.width >= 0 && style.width <= s_widestLine);
    return {geometry(parts), std::move(style)};
}

}  // namespace

QJsonArray toJson(const EditHistory &history)
{
    QJsonArray result;
    for (auto entry = history.crbegin(); entry != history.crend(); ++entry)
        result.append(toJson(**entry));
    return result;
}

std::optional<EditHistory> historyFromJson(const QJsonArray &shapes)
{
    EditHistory result;
    result.reserve(shapes.size());
    for (const auto &shape : shapes) {
        Parts parts(shape.toObject());
        result.append(std::make_shared<const EditEntry>(entryFrom(parts)));
        if (!parts.areUsable())
            return std::nullopt;
    }
    std::reverse(result.begin(), result.end());
    return result;
}
