#pragma once

#include <QImage>

/// The bar code of a row's number: a coloured cell at either end, fourteen of the number and four
/// to check it by. Cells are three pixels wide, or one where a row is to differ little from the
/// next.
struct RowCode {
    static constexpr int bits = 14;
    static constexpr int checkBits = 4;
    static constexpr int cells = bits + checkBits + 2;
    static constexpr int wideCell = 3;
    static constexpr int height = 12;
    static constexpr QRgb first = 0xffff00ff;
    static constexpr QRgb last = 0xff00ffff;
    static constexpr QRgb one = 0xff000000;
    static constexpr QRgb zero = 0xffffffff;

    static constexpr int value(int row)
    {
        return row << checkBits | ((row ^ row >> 4 ^ row >> 8 ^ row >> 12) & 15);
    }

    static QImage picture(int row, int cell = wideCell)
    {
        QImage line(cells, 1, QImage::Format_RGB32);
        for (int x = 0; x < cells; ++x)
            line.setPixel(x, 0, (value(row) >> (cells - 2 - x) & 1) != 0 ? one : zero);
        line.setPixel(0, 0, first);
        line.setPixel(cells - 1, 0, last);
        return line.scaled(cells * cell, height);
    }
};
