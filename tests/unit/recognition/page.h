#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QStringList>

#include <algorithm>
#include <array>

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

constexpr const char *s_codeText = "https://tollen.example/tide";

// The text as a QR code, a letter a module.
// clang-format off
constexpr std::array<const char *, 25> s_code{
    "####### ### ##### #######",
    "#     # ###  ##   #     #",
    "# ### # # ##  ### # ### #",
    "# ### # ## # ##   # ### #",
    "# ### #       ### # ### #",
    "#     # #  ###  # #     #",
    "####### # # # # # #######",
    "         #  # ##         ",
    "##  ###    ##      # ####",
    " # ### #### ## ##   ## # ",
    " ##   # #  ##  ## #  ##  ",
    "#   ##  # ###     ##  ## ",
    "#  #####  # #  # ##  ####",
    "#####  ### #  ##    #  # ",
    "     ###  ##  ### #####  ",
    "  ## #     ##    # ## ## ",
    "## # ###### #  ########  ",
    "        # ## ## #   #    ",
    "#######  # ## # # # #    ",
    "#     # ## #  # #   ### #",
    "# ### # ##### # #######  ",
    "# ### #   ##  ## ###  ###",
    "# ### #  ### ## ###  # # ",
    "#     # ##### ##  ###### ",
    "####### ##     #  #   ###"};
// clang-format on

/// A picture of it.
inline QImage codePicture(bool isDark = false)
{
    constexpr int s_module = 3;
    constexpr int s_quiet = 12;
    constexpr int s_side = static_cast<int>(s_code.size()) * s_module + 2 * s_quiet;
    QImage picture(s_side, s_side, QImage::Format_RGB32);
    picture.fill(isDark ? Qt::black : Qt::white);
    QPainter painter(&picture);
    for (size_t y = 0; y < s_code.size(); ++y) {
        for (size_t x = 0; x < s_code.size(); ++x) {
            if (s_code[y][x] == '#') {
                painter.fillRect(s_quiet + static_cast<int>(x) * s_module,
                                 s_quiet + static_cast<int>(y) * s_module, s_module, s_module,
                                 isDark ? Qt::white : Qt::black);
            }
        }
    }
    return picture;
}
