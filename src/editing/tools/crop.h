#pragma once

#include "editing/tools/tool.h"

/// Marks what is to stay of the picture.
struct CropTool {
    static constexpr Tool tool{.state = stateCrop,
                               .id = "crop",
                               .button = "BtnCrop",
                               .glyph = "crop",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Crop"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "C")};
};
