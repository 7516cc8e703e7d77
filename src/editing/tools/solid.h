#pragma once

#include "editing/tools/cover.h"

/// An area in one colour, of which nothing is left.
struct SolidShape : CoverArea {
    static constexpr Tool tool{.state = stateSolid,
                               .id = "solid",
                               .button = "BtnSolid",
                               .glyph = "solid",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Solid Cover"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "X"),
                               .isCover = true,
                               .ownWidth = 1,
                               .ownColor = 0xff000000};

    static std::optional<SolidShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg &style) const;
    SolidShape mapped(const PictureMap &map, const EditMsg & /*style*/) const
    {
        return {CoverArea::mapped(map)};
    }
    static SolidShape read(ShapeParts &parts) { return {CoverArea::read(parts)}; }
    bool operator==(const SolidShape &) const = default;
};
