#pragma once

#include "helper/movement.h"

#include <QImage>

#include <cstdlib>
#include <memory>
#include <optional>

/// Composes views of content that scrolls up into one long picture.
class ScrollStitcher
{
public:
    explicit ScrollStitcher(int heightLimit);

    /// Adds a view. The first view is kept; Moved appends what is new; Still updates the changed
    /// spots. Doubtful and Lost change nothing. When the picture is full, nothing changes any more.
    Movement add(const QImage &view, int expected = 0);

    /// Adds a view that is known to be `rows` rows further down, although its pixels can't prove
    /// it. `moved` is the part that moves in other views.
    void addKnown(const QImage &view, int rows, const QRect &moved);
    /// Replaces the last view by a newer picture of the same place.
    void takeOver(const QImage &view);
    /// Sets the last view to one that shows content further up, by this number of rows.
    void goBack(const QImage &view, int rows);
    /// The row of the content that is at the top of the last view.
    int offset() const { return m_offset; }
    /// The number of rows in which the content differs from a view whose top is at row `offset`.
    int rowsThatDiffer(const QImage &view, int offset) const;
    /// Replaces these rows by those of the view, up to but not including the view's row `end`.
    void patch(const QImage &view, int offset, int end);

    /// The part that has moved in any view, in the view's coordinates.
    const QRect &moved() const { return m_moved; }

    int width() const { return m_last.width(); }
    /// The height of the result of finish().
    int rows() const;
    /// A pixel of the content, for which y counts from its top.
    QRgb pixel(int x, int y) const;
    bool isFull() const { return rows() >= m_heightLimit; }

    /// The row of the content at the top of a view seen before; none if there are several
    /// candidates.
    std::optional<int> offsetOf(const QImage &view) const;

    /// A preview of the result of finish() without the parts around it, no larger than `box`.
    QImage overview(QSize box) const;

    /// Moves the picture out: a header once at the top, a footer once at the end. `above` and
    /// `below` are put around it; they are the parts of the window that stay above and below the
    /// views, and must have the same width.
    QImage finish(const QImage &above = {}, const QImage &below = {});

private:
    struct Free {
        void operator()(uchar *bytes) const { std::free(bytes); }
    };

    bool grow(int rows);
    bool append(const QImage &view, int offset, int bottom);
    bool appendMoved(const QImage &view, const Movement &movement);
    bool continues(const QImage &view, int offset, int from) const;
    void takeSpots(const QImage &view);
    int comparableEnd(const QImage &view, int offset) const;
    QImage converted(const QImage &view) const;
    QRgb *row(int y) const;

    int m_heightLimit;
    QImage m_last{};
    std::unique_ptr<uchar, Free> m_pixels{};  ///< rows without padding, as wide as a view
    int m_end = 0;                            ///< number of the content's rows in m_pixels
    int m_offset = 0;                         ///< row of the content at the top of the last view
    QRect m_moved{};
};
