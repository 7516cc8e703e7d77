#pragma once

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <array>

/// Glyphs made up by chance, each the same wherever it is drawn, as those of a font.
class Glyphs
{
public:
    static constexpr int s_count = 40;
    static constexpr QSize s_size{8, 12};
    static constexpr int s_pitch = 20;  ///< from a line of text to the next one

    Glyphs()
    {
        QRandomGenerator random(7);
        for (auto &glyph : m_glyphs)
            for (auto &line : glyph)
                for (int x = 1; x < s_size.width(); ++x)
                    line[x] = random.bounded(3) ? 0 : 40 * random.bounded(1, 6);
    }

    void draw(QImage &page, int x, int y, int glyph, QColor ink) const
    {
        for (int dy = 0; dy < s_size.height(); ++dy)
            for (int dx = 0; dx < s_size.width(); ++dx)
                if (const int weight = m_glyphs[glyph][dy][dx];
                    weight && page.valid(x + dx, y + dy))
                    page.setPixel(x + dx, y + dy,
                                  mix(page.pixel(x + dx, y + dy), ink.rgb(), weight));
    }

    void number(QImage &page, int x, int y, int value, QColor ink = Qt::black) const
    {
        for (int digit = 4; digit >= 0; --digit, value /= 10)
            draw(page, x + digit * s_size.width(), y, value % 10, ink);
    }

private:
    static QRgb mix(QRgb ground, QRgb ink, int weight)
    {
        const auto part = [&](int shift) {
            return (int((ground >> shift) & 255) * (255 - weight) +
                    int((ink >> shift) & 255) * weight) /
                   255;
        };
        return qRgb(part(16), part(8), part(0));
    }

    std::array<std::array<std::array<int, 8>, 12>, s_count> m_glyphs{};
};

inline const Glyphs &glyphs()
{
    static const Glyphs s_glyphs;
    return s_glyphs;
}

inline QImage plainPage(int width, int height, QColor ground = Qt::white)
{
    QImage page(width, height, QImage::Format_RGB32);
    page.fill(ground);
    return page;
}

/// Paragraphs of ragged lines with blank ones between, in columns [left, right).
inline void writeText(QImage &page, quint32 seed, int left, int right, QColor ink = Qt::black)
{
    QRandomGenerator random(seed);
    for (int y = 4; y < page.height(); y += Glyphs::s_pitch) {
        if (random.bounded(5) == 0)
            continue;
        const int end = random.bounded(3) ? right : random.bounded(left, right);
        for (int x = left; x + Glyphs::s_size.width() <= end; x += Glyphs::s_size.width())
            if (random.bounded(6))
                glyphs().draw(page, x, y, random.bounded(Glyphs::s_count), ink);
    }
}

inline QImage textPage(int width, int height, quint32 seed = 1)
{
    QImage page = plainPage(width, height);
    writeText(page, seed, 20, width - 30);
    return page;
}

inline void fill(QImage &picture, const QRect &rect, QColor color)
{
    QPainter(&picture).fillRect(rect, color);
}

/// What an application draws around and over the content that it scrolls.
struct Frame {
    int header = 0;
    int footer = 0;
    int sideBar = 0;        ///< at the left
    int scrollBar = 0;      ///< at the right
    bool position = false;  ///< the footer shows the offset

    QRect content(const QSize &view) const
    {
        return QRect(QPoint(0, 0), view).adjusted(sideBar, header, -scrollBar, -footer);
    }

    QImage view(const QImage &page, int offset, const QSize &size) const
    {
        return view(page, QPoint(0, offset), size);
    }
    QImage view(const QImage &page, QPoint at, const QSize &size) const
    {
        const int offset = at.y();
        QImage picture = plainPage(size.width(), size.height(), QColor(225, 228, 232));
        const QRect area = content(size);
        {
            QPainter painter(&picture);
            painter.drawImage(area.topLeft(), page, QRect(at, area.size()));
        }
        for (int y = 6; y + 12 < header; y += 20)
            for (int x = 8; x < size.width() - 40; x += 60)
                glyphs().number(picture, x, y, x * 7 + y);
        for (int y = header + 4; y < size.height() - footer - 12 && sideBar; y += 17)
            glyphs().number(picture, 2, y, y * 31);
        if (footer > 0)
            glyphs().number(picture, 10, size.height() - footer + 4, position ? offset : 4711);
        if (scrollBar > 0) {
            const QRect track(area.right() + 1, area.top(), scrollBar, area.height());
            fill(picture, track, QColor(240, 240, 240));
            const int thumb = std::max(20, track.height() * track.height() / page.height());
            fill(picture,
                 QRect(track.left() + 2, track.top() + offset * track.height() / page.height(),
                       scrollBar - 4, thumb),
                 QColor(150, 150, 150));
        }
        return picture;
    }
};
