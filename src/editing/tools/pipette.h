#pragma once

#include "editing/tools/tool.h"

/// Takes the colour of the pen from the picture.
struct PipetteTool {
    static constexpr Tool tool{.state = statePipette,
                               .id = "pipette",
                               .button = "BtnPipette",
                               .glyph = "pipette",
                               .name = QT_TRANSLATE_NOOP("MainWindow", "Pipette"),
                               .keys = QT_TRANSLATE_NOOP("MainWindow", "I")};
};
