#pragma once

#include "editing/tools/tool.h"

/// Picks shapes that are there, to move and to change them.
struct SelectTool {
    static constexpr Tool tool{.state = stateSelect,
                               .id = "select",
                               .button = "BtnSelect",
                               .glyph = "select",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Select"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "S"),
                               .cursor = Qt::ArrowCursor,
                               .uses = UsesAll};
};
