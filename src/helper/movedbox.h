#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

/// The box of what went along with a movement between two views of 32 bits a pixel, without what
/// stayed in its place at the edges; empty where too much in it is not as the movement wants it.
QRect movedBox(const QImage &before, const QImage &after, QPoint movement);
