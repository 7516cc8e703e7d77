#pragma once

#include <QImage>
#include <QPainter>

/// A document of made-up text: lines of words on white, blank lines, tables whose rows repeat, and
/// blocks of colour. The same for the same size, always.
inline QImage longPicture(const QSize &size)
{
    constexpr int lineHeight = 20;
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    quint32 state = 12345;
    const auto random = [&state](int below) {
        state = state * 1664525U + 1013904223U;
        return static_cast<int>((state >> 8) % static_cast<quint32>(below));
    };
    for (int line = 0; line * lineHeight < size.height(); ++line) {
        const int top = line * lineHeight;
        if (line % 40 > 30) {
            // A table: each row as the last, but for its first cell now and then.
            painter.setPen(QColor(150, 150, 150));
            for (int column = 0; column < size.width(); column += 90)
                painter.drawRect(column, top, 90, lineHeight);
            if (line % 4 == 0)
                painter.fillRect(8, top + 6, 10 + random(60), 9, QColor(60, 60, 60));
            continue;
        }
        if (line % 40 == 20) {
            painter.fillRect(30, top, size.width() / 2, lineHeight,
                             QColor(random(256), random(256), random(256)));
            continue;
        }
        if (random(5) == 0)
            continue;
        for (int x = 20; x < size.width() - 80;) {
            const int letters = 2 + random(8);
            for (int i = 0; i < letters; ++i, x += 7) {
                painter.fillRect(x, top + 5 + random(4), 1 + random(5), 3 + random(8), Qt::black);
            }
            x += 8;
            if (random(14) == 0)
                break;
        }
    }
    return image;
}
