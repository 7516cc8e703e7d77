#pragma once

#include "recognition/textreader.h"

#include <QList>
#include <QRect>

#include <algorithm>
#include <cstdlib>

/// Which way a line of text runs: along it, or down or up in a picture that was turned. What is a
/// width in one is a height in the other.
class LineDirection
{
public:
    /// `words` are those of the line.
    explicit LineDirection(const QList<ReadWord> &words)
    {
        if (words.isEmpty())
            return;
        const QRect first = words.first().box;
        const QPoint way = words.last().box.center() - first.center();
        // A single word of some letters is longer than it is thick.
        constexpr int letters = 3;
        m_isDown = words.size() > 1
                       ? std::abs(way.y()) > std::abs(way.x())
                       : words.first().text.size() >= letters && first.height() > 2 * first.width();
    }

    int length(const QRect &box) const { return m_isDown ? box.height() : box.width(); }
    int thickness(const QRect &box) const { return m_isDown ? box.width() : box.height(); }
    /// What is free between two boxes; below 0 if they overlap.
    int gap(const QRect &a, const QRect &b) const
    {
        return m_isDown ? std::max(b.top() - a.bottom(), a.top() - b.bottom()) - 1
                        : std::max(b.left() - a.right(), a.left() - b.right()) - 1;
    }
    /// The box, as long as another one.
    QRect stretched(const QRect &box, const QRect &to) const
    {
        return m_isDown ? QRect(box.left(), to.top(), box.width(), to.height())
                        : QRect(to.left(), box.top(), to.width(), box.height());
    }

private:
    bool m_isDown = false;
};
