#include "editing/shapeparts.h"

#include <cmath>

bool ShapeParts::require(bool isUsable)
{
    m_areUsable = m_areUsable && isUsable;
    return isUsable;
}

bool ShapeParts::requireName(bool isKnown)
{
    m_isNewer = m_isNewer || !isKnown;
    return require(isKnown);
}

QPolygon ShapeParts::points(QLatin1StringView name, qsizetype fewest, qsizetype most)
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

QList<QRgb> ShapeParts::colors(QLatin1StringView name, qsizetype most)
{
    const QJsonArray names = m_shape[name].toArray();
    QList<QRgb> result;
    if (!require(names.size() <= most))
        return result;
    for (const auto &colorName : names) {
        const QColor color(colorName.toString());
        require(color.isValid());
        result.append(color.rgb());
    }
    return result;
}

int ShapeParts::whole(const QJsonValue &value)
{
    const double found = value.toDouble(std::nan(""));
    return require(std::abs(found) <= s_farthest) ? static_cast<int>(found) : 0;
}

QJsonArray numbersOf(const QPolygon &points)
{
    QJsonArray result;
    for (const QPoint point : points) {
        result.append(point.x());
        result.append(point.y());
    }
    return result;
}

QJsonArray namesOf(const QList<QRgb> &colors)
{
    QJsonArray names;
    for (const QRgb color : colors)
        names.append(QColor(color).name());
    return names;
}
