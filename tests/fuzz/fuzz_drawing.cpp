// Drawings, packed or not: what is drawn reads no other file.

#include "editing/drawingcheck.h"
#include "fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto text =
        drawingText(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (!text)
        return 0;
    const DrawingCheck check = checkDrawing(*text);
    REQUIRE(check.pixels >= 0);
    return 0;
}
