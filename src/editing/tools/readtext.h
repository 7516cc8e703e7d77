#pragma once

#include "editing/tools/tool.h"

/// Marks a part of the picture whose text is to be copied.
struct ReadTextTool {
    static constexpr Tool tool{.state = stateReadText,
                               .id = "readtext",
                               .button = "BtnReadText",
                               .glyph = "readtext",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Copy Text"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "T")};
};
