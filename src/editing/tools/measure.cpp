#include "editing/tools/measure.h"

#include "editing/shapeparts.h"
#include "editing/tiles.h"

#include <QImage>
#include <QLineF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_most(10'000, 1000);  // of a label, picture pixels
constexpr int s_halfTurn = 180;
constexpr int s_gap = 4;  // between a line and a label that lies beside it

QSize textSize(const QString &text, const QFont &font)
{
    QImage image(1, 1, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(font);
    return painter.boundingRect(QRect(QPoint(), s_most), Qt::AlignLeft | Qt::AlignTop, text).size();
}

qreal tickOf(const EditMsg &style) { return 5 + 1.5 * style.width; }

// The unit vector along a line, or to the right.
QPointF directionOf(const QLineF &line)
{
    return line.length() > 0 ? QPointF(line.dx(), line.dy()) / line.length() : QPointF(1, 0);
}

// Where the label's plate lies: in the middle of the line, or above it if it would hide its ends;
// below it if there is no room above.
QRect plateOf(const MeasureShape &measure, const EditMsg &style)
{
    const QSize text = textSize(labelOf(measure), style.font);
    const QSize size = text + QSize(text.height() * 2 / 3, text.height() / 4);
    const QLineF line(measure.points.at(0), measure.points.at(1));
    const QPointF along = directionOf(line);
    const qreal tick = tickOf(style);
    const qreal half =
        (std::abs(along.x()) * size.width() + std::abs(along.y()) * size.height()) / 2;
    QRectF plate(QPointF(), size);
    plate.moveCenter(line.center());
    if (line.length() / 2 < half + tick) {
        const auto [top, bottom] = std::minmax({line.y1(), line.y2()});
        plate.moveBottom(top - tick - s_gap);
        if (plate.top() < 0)
            plate.moveTop(bottom + tick + s_gap);
    }
    return {plate.topLeft().toPoint(), size};
}

void strokeLine(QPainter &painter, const MeasureShape &measure, const EditMsg &style)
{
    const QLineF line(measure.points.at(0), measure.points.at(1));
    const QPointF along = directionOf(line);
    const QPointF tick = QPointF(-along.y(), along.x()) * tickOf(style);
    QPainterPath path(line.p1());
    path.lineTo(line.p2());
    for (const QPointF end : {line.p1(), line.p2()}) {
        path.moveTo(end - tick);
        path.lineTo(end + tick);
    }
    QPen pen = painter.pen();
    pen.setCapStyle(Qt::FlatCap);
    painter.strokePath(path, pen);
}

void drawPlate(QPainter &painter, const QRect &plate, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(plate, plate.height() / 5., plate.height() / 5.);
}

}  // namespace

QString labelOf(const MeasureShape &measure)
{
    const QLineF line(measure.points.at(0), measure.points.at(1));
    // How steep it rises to the right, in tenths, so that what is nearly level is shown as that.
    const int tenths = qRound(line.angle() * 10) % (s_halfTurn * 10);
    const bool falls = tenths > s_halfTurn * 10 / 2;
    return u"%1 px  %2°"_s.arg(qRound(line.length()))
        .arg((falls ? tenths - s_halfTurn * 10 : tenths) / 10., 0, 'f', 1);
}

std::optional<MeasureShape> MeasureShape::from(const Drag &drag)
{
    return MeasureShape{QPolygon({drag.start, drag.pointer})};
}

void MeasureShape::draw(QPainter &painter, const EditMsg &style) const
{
    strokeLine(painter, *this, style);
    const QRect plate = plateOf(*this, style);
    QColor letters = style.color;
    letters.setAlpha(255);
    drawPlate(painter, plate, groundFor(letters));
    painter.setPen(letters);
    painter.setFont(style.font);
    painter.drawText(plate, Qt::AlignCenter | Qt::TextDontClip, labelOf(*this));
}

void MeasureShape::drawShadow(QPainter &painter, const EditMsg &style) const
{
    strokeLine(painter, *this, style);
    drawPlate(painter, plateOf(*this, style), style.color);
}

void MeasureShape::cover(Tiles &tiles, const EditMsg &style) const
{
    tiles.addOutline(points, Tiles::reachOf(style.width) + tickOf(style));
    // Letters may reach slightly beyond what is their room.
    const QRect plate = plateOf(*this, style);
    const int lean = plate.height() / 2;
    tiles.addRect(plate.adjusted(-lean, -lean, lean, lean));
}

bool MeasureShape::hit(QPointF point, qreal grace, const EditMsg &style) const
{
    const QLineF line(points.at(0), points.at(1));
    const QPointF along = directionOf(line);
    const QPointF tick = QPointF(-along.y(), along.x()) * tickOf(style);
    const auto isOnTick = [&](QPointF end) {
        return isOnLine(QPolygonF({end - tick, end + tick}), point, style.width, grace);
    };
    return isOnLine(points, point, style.width, grace) || isOnTick(line.p1()) ||
           isOnTick(line.p2()) ||
           QRectF(plateOf(*this, style)).adjusted(-grace, -grace, grace, grace).contains(point);
}

QRect MeasureShape::box(const EditMsg &style) const
{
    return boxAround(points) | plateOf(*this, style);
}

MeasureShape MeasureShape::withEnd(qsizetype end, QPoint at, const EditMsg & /*style*/) const
{
    MeasureShape result = *this;
    result.points[end] = at;
    return result;
}

void MeasureShape::write(QJsonObject &to) const { to["points"_L1] = numbersOf(points); }

MeasureShape MeasureShape::read(ShapeParts &parts) { return {parts.points("points"_L1, 2, 2)}; }
