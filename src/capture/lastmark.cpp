#include "capture/lastmark.h"

#include "config/settings.h"
#include "platform/desktoppictures.h"

#include <QStringList>
#include <QTransform>

using namespace Qt::StringLiterals;

namespace {

const auto s_kindKey = u"LastMarked"_s;

QString keyOf(const QString &kind) { return u"Last"_s + kind; }

}  // namespace

QPolygonF lastMark(const QString &kind)
{
    QPolygonF result;
    const QStringList points = GetConfigString(keyOf(kind)).split(u' ', Qt::SkipEmptyParts);
    for (const QString &point : points) {
        bool isX = false;
        bool isY = false;
        const int x = point.section(u',', 0, 0).toInt(&isX);
        const int y = point.section(u',', 1).toInt(&isY);
        // A file that somebody has edited.
        if (!isX || !isY)
            return {};
        result.append(QPointF(x, y));
    }
    return result;
}

QPolygonF lastMark(const QString &kind, const QRect &desktop)
{
    const QPolygonF points = lastMark(kind);
    const QRectF whole(desktop);
    const QRectF box = points.boundingRect();
    if (whole.contains(box) || !whole.intersects(box))
        return whole.contains(box) ? points : QPolygonF();
    if (points.size() == 2) {
        const QRectF left = box & whole;
        return {{left.topLeft(), left.bottomRight()}};
    }
    QPolygonF left = points.intersected(whole);
    if (left.isClosed())
        left.removeLast();
    return left;
}

// What was marked before that was kept has a kind all the same.
QString lastMarkedKind()
{
    const QStringList kinds{u"Rectangle"_s, u"Ellipse"_s, u"Polygon"_s};
    QString stored = GetConfigString(s_kindKey);
    if (kinds.contains(stored) && !lastMark(stored).isEmpty())
        return stored;
    for (const QString &kind : kinds) {
        if (!lastMark(kind).isEmpty())
            return kind;
    }
    return {};
}

Grab takeLastMark()
{
    const QString kind = lastMarkedKind();
    const QPolygonF points = lastMark(kind, desktopBox());
    const QRectF exact = points.boundingRect();
    const QRect box(exact.topLeft().toPoint(), exact.size().toSize());
    if (box.isEmpty())
        return {};
    Grab grab{.picture = desktopPicture(box), .kind = kind.toLower(), .place = box.topLeft()};
    // The screen's own pixels may be larger.
    const QTransform scale = QTransform::fromScale(qreal(grab.picture.width()) / box.width(),
                                                   qreal(grab.picture.height()) / box.height());
    if (kind == u"Ellipse") {
        QPainterPath path;
        path.addEllipse(0.0, 0.0, box.width(), box.height());
        grab.outline = scale.map(path);
    } else if (kind == u"Polygon") {
        grab.outline = scale.map(points.translated(-box.topLeft()));
    }
    return grab;
}

// A freehand line has more vertices than a setting holds; then every second one is left out, or
// more.
void keepLastMark(const QString &kind, const QPolygonF &points)
{
    QString text;
    for (qsizetype step = 1; text.isEmpty() || text.size() >= WideTextCapacity; step *= 2) {
        QStringList kept;
        for (qsizetype i = 0; i < points.size(); i += step)
            kept.append(u"%1,%2"_s.arg(qRound(points[i].x())).arg(qRound(points[i].y())));
        text = kept.join(u' ');
        if (points.isEmpty())
            break;
    }
    SetConfigString(keyOf(kind), text);
    SetConfigString(s_kindKey, kind);
}
