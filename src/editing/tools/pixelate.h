#pragma once

#include "editing/tools/cover.h"

/// An area in which only squares in its colours are left.
struct PixelateShape : CoverBlocks {
    static constexpr Tool tool{.state = statePixelate,
                               .id = "pixelate",
                               .button = "BtnPixelate",
                               .glyph = "pixelate",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Pixelate"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "P"),
                               .advice = s_coverAdvice,
                               .isCover = true,
                               .ownWidth = 1,
                               .ownColor = 0xff000000};

    static std::optional<PixelateShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg & /*style*/) const { drawBlocks(painter, false); }
    PixelateShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {CoverBlocks::mapped(map)};
    }
    static PixelateShape read(ShapeParts &parts) { return {CoverBlocks::read(parts)}; }
    bool operator==(const PixelateShape &) const = default;
};
