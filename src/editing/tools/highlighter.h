#pragma once

#include "editing/tools/freehand.h"

/// A broad stroke that darkens what is below as ink would, so that it stays readable. It is
/// straight if it has two points.
struct HighlighterShape : PolylineShape {
    static constexpr Tool tool{.state = stateHighlighter,
                               .id = "highlighter",
                               .button = "BtnHighlighter",
                               .glyph = "highlighter",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Highlighter"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "H"),
                               .isFreehand = true,
                               .ownWidth = 18,
                               .ownColor = 0xffffe000};

    static std::optional<HighlighterShape> from(const Drag &drag);
    void draw(QPainter &painter, const EditMsg &style) const;
    HighlighterShape withEnd(qsizetype end, QPoint at, const EditMsg &style) const
    {
        return {PolylineShape::withEnd(end, at, style)};
    }
    HighlighterShape mapped(const PictureMap &map, const EditMsg &style) const
    {
        return {PolylineShape::mapped(map, style)};
    }
    static HighlighterShape read(ShapeParts &parts) { return {PolylineShape::read(parts)}; }
    bool operator==(const HighlighterShape &) const = default;
};
