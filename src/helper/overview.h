#pragma once

#include <QImage>

#include <algorithm>
#include <vector>

/// The size of a preview of `picture` within `box`: in proportion, but a very long or wide picture
/// does not become narrower than a third of the box.
inline QSize overviewSize(QSize picture, QSize box)
{
    constexpr int narrowest = 3;  // the box is divided by this
    if (picture.isEmpty() || box.isEmpty())
        return {};
    QSize size = picture;
    if (size.width() > box.width() || size.height() > box.height())
        size.scale(box, Qt::KeepAspectRatio);
    return size
        .expandedTo(QSize(std::min(picture.width(), box.width() / narrowest),
                          std::min(picture.height(), box.height() / narrowest)))
        .expandedTo(QSize(1, 1));
}

/// A preview of a large picture, made from a few samples for each pixel, so that the effort does
/// not depend on the picture's size. `at(x, y)` returns a pixel of the picture.
template<typename Pixels> QImage sampledOverview(QSize picture, QSize box, const Pixels &at)
{
    constexpr int samples = 2;  // in each direction
    constexpr int count = samples * samples;
    const QSize size = overviewSize(picture, box);
    if (size.isEmpty())
        return {};
    QImage result(size, QImage::Format_RGB32);
    // Computed in advance, because a division for each sample would take longer than everything
    // else.
    const auto places = [](int whole, int shown) {
        std::vector<int> all(size_t{samples} * shown);
        for (size_t i = 0; i < all.size(); ++i)
            all[i] = static_cast<int>((2 * i + 1) * whole / (2 * all.size()));
        return all;
    };
    const std::vector<int> columns = places(picture.width(), size.width());
    const std::vector<int> rows = places(picture.height(), size.height());
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            int red = 0;
            int green = 0;
            int blue = 0;
            for (int i = 0; i < count; ++i) {
                const QRgb pixel =
                    at(columns[samples * x + i % samples], rows[samples * y + i / samples]);
                red += qRed(pixel);
                green += qGreen(pixel);
                blue += qBlue(pixel);
            }
            line[x] = qRgb(red / count, green / count, blue / count);
        }
    }
    return result;
}
