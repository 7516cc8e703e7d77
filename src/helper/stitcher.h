#pragma once

#include "helper/movement.h"

#include <QImage>

#include <cstdlib>
#include <memory>
#include <optional>

/// Puts views of content that scrolls up together to one long picture.
class ScrollStitcher
{
public:
    explicit ScrollStitcher(int heightLimit);

    /// The first view is kept; Moved appends what is new; Still takes over the spots that changed.
    /// Doubtful and Lost change nothing, and neither does anything once the picture is full.
    Movement add(const QImage &view, int expected = 0);

    /// Takes a view that is known to be so many rows further down, though its pixels can't tell.
    /// `moved` is what moves in other views.
    void addKnown(const QImage &view, int rows, const QRect &moved);
    /// Takes a view for the last one as it is now: nothing has scrolled since.
    void takeOver(const QImage &view);
    /// Takes a view that shows content further up than the last one, by so many rows.
    void goBack(const QImage &view, int rows);
    /// The row of the content at the top of the last view.
    int offset() const { return m_offset; }
    /// Rows of the content that are not as a view shows them whose top is at `offset`.
    int rowsThatDiffer(const QImage &view, int offset) const;
    /// Takes these over, down to the row `end` of the view.
    void patch(const QImage &view, int offset, int end);

    /// What has moved in any view, in its coordinates.
    const QRect &moved() const { return m_moved; }

    int width() const { return m_last.width(); }
    /// The height that finish() would give.
    int rows() const;
    QRgb pixel(int x, int y) const;
    bool isFull() const { return rows() >= m_heightLimit; }

    /// The row of the content at the top of a view seen before; none if it could be several.
    std::optional<int> offsetOf(const QImage &view) const;

    /// What finish() would give, without what is put around it, no larger than a box, for a look.
    QImage overview(QSize box) const;

    /// Moves the picture out: a header once at its top, a footer once at its end. What stays above
    /// and below the views, as wide as they are, is put around it.
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
    std::unique_ptr<uchar, Free> m_pixels{};  ///< rows as wide as a view, without gaps
    int m_end = 0;                            ///< rows of the content that are in m_pixels
    int m_offset = 0;                         ///< row of the content at the top of the last view
    QRect m_moved{};
};
