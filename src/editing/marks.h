#pragma once

#include <QPainter>
#include <QRectF>
#include <QString>

/// What the editor shows over the picture, and never in it: frames, handles, what is being cropped.
/// Positions and lengths are device pixels of the widget; `ratio` is how many of them a logical one
/// has. Each has a dark and a light line, so that it is seen on any picture.
namespace Marks {

/// A frame around something chosen.
void frame(QPainter &painter, const QRectF &rect, qreal ratio);
/// A handle. Those at the ends of lines are round.
void handle(QPainter &painter, QPointF centre, bool isRound, qreal ratio);
/// How far the marks of one shape reach beyond its frame, handles included.
qreal reach(qreal ratio);
/// The frame of what stays of `picture`, with its thirds and handles; all around it is veiled.
void cropFrame(QPainter &painter, const QRectF &picture, const QRectF &frame, qreal ratio);
/// The frame of something that is proposed to be covered, with a tint where it is to be.
void proposal(QPainter &painter, const QRectF &rect, bool isTaken, qreal ratio);
/// An outline at some distance around what the user looks at.
void outline(QPainter &painter, const QRectF &rect, qreal ratio);
/// Where the next key press would take effect.
void crosshair(QPainter &painter, QPointF centre, qreal ratio);
/// A small plate with some words at a point, held inside of `room`. With a colour it shows that
/// one, too. Returns where it is.
QRectF plate(QPainter &painter, QPointF beside, const QString &text, const QColor &color,
             const QRectF &room, qreal ratio);

}  // namespace Marks
