#pragma once

#include "capture/grab.h"

#include <QPolygonF>
#include <QRect>
#include <QString>

// What was marked last in an overlay of a kind ("Rectangle", "Ellipse", "Polygon"), as the settings
// keep it over a restart. Points are global, in device pixels: the vertices of a polygon, or the
// near and the far corner of a region.

/// Empty if there is none.
QPolygonF lastMark(const QString &kind);
/// What is left of it on a desktop that may have become smaller.
QPolygonF lastMark(const QString &kind, const QRect &desktop);
void keepLastMark(const QString &kind, const QPolygonF &points);

/// The kind of what was marked last of all; empty if nothing has been.
QString lastMarkedKind();
/// The picture of that, as it is there now; null if there is nothing of it.
Grab takeLastMark();
