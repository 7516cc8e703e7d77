#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QStringList>

#include <algorithm>

constexpr int s_pageMargin = 12;
constexpr int s_pageRow = 20;  ///< from one line to the next

/// Lines of text as a program shows them, line `i` between `s_pageMargin + i * s_pageRow` and the
/// next one.
inline QImage pageOf(const QStringList &lines, int pixelSize = 13, bool isDark = false)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(pixelSize);
    const QFontMetrics metrics(font);
    int width = 1;
    for (const QString &line : lines)
        width = std::max(width, metrics.horizontalAdvance(line));
    QImage page(width + 2 * s_pageMargin,
                static_cast<int>(lines.size()) * s_pageRow + 2 * s_pageMargin,
                QImage::Format_RGB32);
    page.fill(isDark ? QColor(35, 40, 45) : QColor(Qt::white));
    QPainter painter(&page);
    painter.setFont(font);
    painter.setPen(isDark ? QColor(225, 228, 230) : QColor(25, 25, 25));
    for (int i = 0; i < lines.size(); ++i) {
        painter.drawText(QRect(s_pageMargin, s_pageMargin + i * s_pageRow, width, s_pageRow),
                         Qt::AlignLeft | Qt::AlignVCenter, lines[i]);
    }
    return page;
}
