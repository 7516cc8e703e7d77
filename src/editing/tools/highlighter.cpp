#include "editing/tools/highlighter.h"

#include <QPainter>
#include <QPainterPath>

std::optional<HighlighterShape> HighlighterShape::from(const Drag &drag)
{
    if (drag.isEven)
        return HighlighterShape{{QPolygon({drag.start, drag.pointer})}};
    return HighlighterShape{{QPolygon({drag.start}) + drag.line}};
}

// One path, so that the stroke is as bright where it crosses itself.
void HighlighterShape::draw(QPainter &painter, const EditMsg & /*style*/) const
{
    const bool isStraight = points.size() == 2;
    QPen pen = painter.pen();
    // Lines of text are marked from edge to edge.
    pen.setCapStyle(isStraight ? Qt::FlatCap : Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    QPainterPath path;
    path.addPolygon(points);
    const QPainter::CompositionMode before = painter.compositionMode();
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    painter.strokePath(path, pen);
    painter.setCompositionMode(before);
}
