#pragma once

#include <QColor>
#include <QJsonArray>
#include <QJsonObject>
#include <QPolygon>

/// Reads the members of one recorded shape, and remembers if one is missing, damaged or out of
/// range. Positions are picture coordinates.
class ShapeParts
{
public:
    static constexpr int s_farthest = 1 << 24;  ///< pixels from the corner; no picture is larger

    explicit ShapeParts(QJsonObject shape) : m_shape(std::move(shape)) {}

    bool areUsable() const { return m_areUsable; }
    /// Whether it is not usable since a later version of the program has named something.
    bool isNewer() const { return m_isNewer; }
    /// Returns `isUsable`. If it is false, the whole shape is not.
    bool require(bool isUsable);
    /// The same for whether a name is known.
    bool requireName(bool isKnown);

    QString text(QLatin1StringView name) const { return m_shape[name].toString(); }
    int number(QLatin1StringView name) { return whole(m_shape[name]); }
    QJsonValue value(QLatin1StringView name) const { return m_shape[name]; }
    /// `fewest` points where the member is not usable.
    QPolygon points(QLatin1StringView name, qsizetype fewest, qsizetype most);
    /// Opaque colours.
    QList<QRgb> colors(QLatin1StringView name, qsizetype most);

private:
    int whole(const QJsonValue &value);

    QJsonObject m_shape;
    bool m_areUsable = true;
    bool m_isNewer = false;
};

/// The coordinates of points in the form that ShapeParts::points() reads.
QJsonArray numbersOf(const QPolygon &points);
/// Colours in the form that ShapeParts::colors() reads.
QJsonArray namesOf(const QList<QRgb> &colors);
