#pragma once

#include <QImage>
#include <QRect>

/// The vertical movement of a view's content between two pictures of it.
struct Movement {
    enum class Kind {
        Still,     ///< nothing scrolled, although small spots may have changed
        Moved,     ///< the content moved up by `rows`
        Doubtful,  ///< several distances explain the pictures equally well
        Lost       ///< no distance explains the pictures
    };
    Kind kind = Kind::Lost;
    int rows = 0;  ///< above 0 if Moved
    /// The part that certainly moved, in the picture's coordinates; empty unless Moved.
    QRect moved{};
    int bottom = 0;  ///< the first row below the content (a footer, a status line, a frame)
};

/// `expected` is the distance that previous steps suggest; 0 if unknown. It is used only to choose
/// between distances that explain the pixels equally well.
Movement findMovement(const QImage &before, const QImage &after, int expected = 0);

/// The same for views whose colours may have changed, as in programs that use other colours when
/// they lose the keyboard focus: if the colours give no result, edges are compared.
Movement findByEdges(const QImage &before, const QImage &after, int expected = 0);

/// Whether most distinct rows of a view are in the same place, however much of the rest has
/// changed.
bool isInPlace(const QImage &before, const QImage &after);

/// The same for programs that scroll by fractions of a row and round: the rows may be off by one.
bool isNearPlace(const QImage &before, const QImage &after);
