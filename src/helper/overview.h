#pragma once

#include <QImage>

#include <algorithm>
#include <vector>

/// The size at which a picture is looked at in a box: in its own proportions, but a very long or
/// wide one is not drawn out to a thread.
inline QSize overviewSize(QSize picture, QSize box)
{
    constexpr int narrowest = 3;  // parts of the box
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

/// A small picture of a large one from a few pixels for each of its own, whatever the size of the
/// large one. `at(x, y)` gives a pixel of that.
template<typename Pixels> QImage sampledOverview(QSize picture, QSize box, const Pixels &at)
{
    constexpr int samples = 2;  // each way
    constexpr int count = samples * samples;
    const QSize size = overviewSize(picture, box);
    if (size.isEmpty())
        return {};
    QImage result(size, QImage::Format_RGB32);
    // A division for each sample would take longer than all the rest.
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
