#pragma once

#include "editing/tools/cover.h"

/// An area in which only soft blots of its colours are left.
struct BlurShape : CoverBlocks {
    static constexpr Tool tool{.state = stateBlur,
                               .id = "blur",
                               .button = "BtnBlur",
                               .glyph = "blur",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Blur"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "B"),
                               .advice = s_coverAdvice,
                               .isCover = true,
                               .ownWidth = 1,
                               .ownColor = 0xff000000};

    static std::optional<BlurShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg & /*style*/) const { drawBlocks(painter, true); }
    BlurShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {CoverBlocks::mapped(map)};
    }
    static BlurShape read(ShapeParts &parts) { return {CoverBlocks::read(parts)}; }
    bool operator==(const BlurShape &) const = default;
};
