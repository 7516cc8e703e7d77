#pragma once

#include <QImage>
#include <QRect>

/// How the content of a view moved between two pictures of it.
struct Movement {
    enum class Kind {
        Still,     ///< nothing scrolled; small spots may have changed by themselves
        Moved,     ///< the content moved up by `rows`
        Doubtful,  ///< several distances explain the pictures equally well
        Lost       ///< no distance explains them
    };
    Kind kind = Kind::Lost;
    int rows = 0;    ///< above 0 for Moved
    QRect moved{};   ///< what certainly moved, in the picture; empty unless Moved
    int bottom = 0;  ///< the rows from here on (a footer, a status line, a frame) did not take part
};

/// `expected` is the distance that the last steps suggest, 0 for none: it decides between distances
/// that the pixels alone can't tell apart, and nothing else.
Movement findMovement(const QImage &before, const QImage &after, int expected = 0);

/// The same for views that may have different colours, as some programs take others when they lose
/// the keyboard: where the colours tell nothing the edges may.
Movement findByEdges(const QImage &before, const QImage &after, int expected = 0);

/// Whether most of what can be told apart in a view is where it was, however much of the rest has
/// changed.
bool isInPlace(const QImage &before, const QImage &after);

/// The same for a program that scrolls by parts of a row, and rounds: whether most rows that can be
/// told apart are where they were, or one row beside that.
bool isNearPlace(const QImage &before, const QImage &after);
