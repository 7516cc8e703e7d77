#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QRegion>

/// What went along with a movement between two views.
struct Moved {
    /// Its box, without what stayed in its place at the edges; empty where too much in it is not as
    /// the movement wants it.
    QRect box{};
    /// What in the box stayed in its place all the same, as buttons over a map do, in boxes.
    QRegion stayed{};
};

/// For views of 32 bits a pixel.
Moved movedBox(const QImage &before, const QImage &after, QPoint movement);
