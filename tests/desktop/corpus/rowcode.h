#pragma once

#include <QImage>

/// The bar code of a row's number: cells of three pixels, a coloured one at either end, fourteen of
/// the number and four to check it by.
struct RowCode {
    static constexpr int cell = 3;
    static constexpr int bits = 14;
    static constexpr int checkBits = 4;
    static constexpr int width = cell * (bits + checkBits + 2);
    static constexpr int height = 12;
    static constexpr QRgb first = 0xffff00ff;
    static constexpr QRgb last = 0xff00ffff;
    static constexpr QRgb one = 0xff000000;
    static constexpr QRgb zero = 0xffffffff;

    static constexpr int value(int row)
    {
        return row << checkBits | ((row ^ row >> 4 ^ row >> 8 ^ row >> 12) & 15);
    }

    static QImage picture(int row)
    {
        QImage result(width, height, QImage::Format_RGB32);
        for (int x = 0; x < width; ++x) {
            const int at = x / cell;
            const int bit = bits + checkBits - at;
            const QRgb inside = (value(row) >> bit & 1) != 0 ? one : zero;
            const QRgb color = at == 0 ? first : bit < 0 ? last : inside;
            for (int y = 0; y < height; ++y)
                result.setPixel(x, y, color);
        }
        return result;
    }
};
