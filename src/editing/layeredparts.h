#pragma once

#include <QCoreApplication>
#include <QLatin1StringView>
#include <QString>

// What writer and reader of layered files have to agree on.

/// What the user reads of layered files.
struct LayeredFile {
    Q_DECLARE_TR_FUNCTIONS(LayeredFile)
};

namespace layered {

using namespace Qt::StringLiterals;

constexpr auto s_type = "image/openraster"_L1;
constexpr auto s_typePart = "mimetype"_L1;
constexpr auto s_stackPart = "stack.xml"_L1;
constexpr auto s_mergedPart = "mergedimage.png"_L1;
constexpr auto s_thumbnailPart = "Thumbnails/thumbnail.png"_L1;
constexpr auto s_lowestPart = "data/layer0.png"_L1;
constexpr auto s_picturePart = "SnapWorkbench/picture.png"_L1;  ///< before its changes
constexpr auto s_statePart = "SnapWorkbench/state.json"_L1;

constexpr auto s_over = "svg:src-over"_L1;
constexpr auto s_multiply = "svg:multiply"_L1;

constexpr int s_version = 1;                   ///< of our own data
constexpr qint64 s_longestState = 64LL << 20;  ///< bytes of them
constexpr qsizetype s_mostShapes = 100'000;

inline QString noMemory()
{
    return QCoreApplication::translate("QPictureDocument", "There is not enough memory.");
}

}  // namespace layered
