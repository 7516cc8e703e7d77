// Saves a picture as large as a wall of screens, with shapes all over it.

#include "comparison.h"
#include "memory.h"

#include "base/wholefile.h"
#include "editing/picturefile.h"
#include "editing/rendering.h"

#include <QBuffer>
#include <QImageWriter>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

constexpr int s_side = 20000;

// Plain background, lines of marks like letters, and noise like a photograph's in a corner.
QImage page(QSize size)
{
    QImage result(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const auto mix = static_cast<QRgb>(x / 2 * 73856093 ^ y / 2 * 19349663);
            const bool isInk = y % 20 < 12 && x % 900 < 700 && mix % 5 == 0;
            line[x] = isInk ? 0xff202020 : 0xfff8f8f8;
            if (x < size.width() / 8 && y < size.height() / 8)
                line[x] = 0xff000000 | (mix * 2654435761U >> 8);
        }
    }
    return result;
}

const QImage &picture()
{
    static const QImage s_picture = page({s_side, s_side});
    return s_picture;
}

EditHistory shapes()
{
    EditHistory result;
    for (int i = 0; i < 100; ++i) {
        const QRect bounds(i * 190, i * 170 % 15000, 900 + i * 20, 4000);
        result.append(
            adding({EllipseShape{bounds},
                    {.type = stateEllipse, .width = 5, .color = QColor(200, 30, 30, 180)}}));
    }
    return result;
}

void save(benchmark::State &state, const char *name)
{
    const QTemporaryDir folder;
    const QImage &large = picture();
    for (auto _ : state) {
        PictureProgress progress;
        if (!writePicture(large, shapes(), folder.filePath(QString::fromLatin1(name)), {}, -1,
                          progress)
                 .isWritten)
            state.SkipWithError("not written");
    }
}

// As many pixels as a screen has, and shapes of those kinds that are drawn most.
void saveScreen(benchmark::State &state, const char *name)
{
    const QTemporaryDir folder;
    const QImage screen = page({3840, 2160});
    EditHistory history;
    for (int i = 0; i < 50; ++i) {
        const QRect bounds(i * 67, i * 41 % 1700, 300 + i * 4, 200);
        const EditMsg style{.type = i % 2 ? stateEllipse : stateHighlighter,
                            .width = i % 2 ? 4 : 24,
                            .color = QColor(250, 220, 40, 200),
                            .hasShadow = i % 3 == 0};
        if (i % 2)
            history.prepend(adding({EllipseShape{bounds}, style}));
        else
            history.prepend(adding(
                {HighlighterShape{{QPolygon({bounds.topLeft(), bounds.topRight()})}}, style}));
    }
    for (auto _ : state) {
        PictureProgress progress;
        if (!writePicture(screen, history, folder.filePath(QString::fromLatin1(name)), {}, -1,
                          progress)
                 .isWritten)
            state.SkipWithError("not written");
    }
}

// The plain method: renders the whole picture with its shapes, then encodes it in memory, then
// writes the file.
void saveWhole(benchmark::State &state, const char *name)
{
    const QTemporaryDir folder;
    const QImage &large = picture();
    for (auto _ : state) {
        QBuffer bytes;
        QImageWriter writer(&bytes, QByteArray(name).mid(2));
        if (!writer.write(replayed(large, shapes(), Qt::transparent)) ||
            !WholeFile(folder.filePath(QString::fromLatin1(name))).write(bytes.data()))
            state.SkipWithError("not written");
    }
}

template<typename Save> void memoryOf(benchmark::State &state, Save save, const char *name)
{
    const auto size = static_cast<double>(picture().sizeInBytes());
    const double before = residentBytes() - size;
    forgetHighestBytes();
    save(state, name);
    state.counters["value"] = (highestBytes() - before) / size;
}

void savedPng(benchmark::State &state) { save(state, "a.png"); }
void savedPngWhole(benchmark::State &state) { saveWhole(state, "a.png"); }
void savedJpeg(benchmark::State &state) { save(state, "a.jpg"); }
void savedJpegWhole(benchmark::State &state) { saveWhole(state, "a.jpg"); }
void savedPngMemory(benchmark::State &state) { memoryOf(state, save, "a.png"); }
void savedPngWholeMemory(benchmark::State &state) { memoryOf(state, saveWhole, "a.png"); }
void savedJpegMemory(benchmark::State &state) { memoryOf(state, save, "a.jpg"); }

void savedScreen(benchmark::State &state) { saveScreen(state, "a.png"); }
void savedScreenLayers(benchmark::State &state) { saveScreen(state, "a.ora"); }

BENCHMARK(savedScreen)->Iterations(2)->Repetitions(5)->Unit(benchmark::kMillisecond);
BENCHMARK(savedScreenLayers)->Iterations(2)->Repetitions(5)->Unit(benchmark::kMillisecond);
BENCHMARK(savedPng)->Iterations(1)->Repetitions(2)->Unit(benchmark::kSecond);
BENCHMARK(savedPngWhole)->Iterations(1)->Repetitions(2)->Unit(benchmark::kSecond);
BENCHMARK(savedJpeg)->Iterations(1)->Repetitions(2)->Unit(benchmark::kSecond);
BENCHMARK(savedJpegWhole)->Iterations(1)->Repetitions(2)->Unit(benchmark::kSecond);
BENCHMARK(savedPngMemory)->Iterations(1)->Repetitions(2);
BENCHMARK(savedPngWholeMemory)->Iterations(1)->Repetitions(2);
BENCHMARK(savedJpegMemory)->Iterations(1)->Repetitions(2);

[[maybe_unused]] const bool s_registered =
    addComparison({.what =
                       "processor time of saving 20,000 x 20,000 pixels with 100 shapes as PNG, "
                       "against the toolkit's writer on the whole replay",
                   .measured = "savedPng",
                   .against = "savedPngWhole",
                   .processorTime = true,
                   .limit = atMost(1.2)}) &&
    addComparison({.what = "the same as JPEG",
                   .measured = "savedJpeg",
                   .against = "savedJpegWhole",
                   .processorTime = true,
                   .limit = atMost(1.2)}) &&
    addComparison({.what = "processor time of writing 3840 x 2160 pixels with 50 shapes with "
                           "layers, against the plain PNG",
                   .measured = "savedScreenLayers",
                   .against = "savedScreen",
                   .processorTime = true,
                   .limit = atMost(3)}) &&
    addComparison({.what = "memory meanwhile, the picture included",
                   .measured = "savedPngMemory",
                   .unit = "times the picture",
                   .limit = atMost(1.2)}) &&
    addComparison({.what = "the same, against writing it whole",
                   .measured = "savedPngMemory",
                   .against = "savedPngWholeMemory",
                   .limit = atMost(0.6)}) &&
    addComparison({.what = "memory while the JPEG is written, the picture included",
                   .measured = "savedJpegMemory",
                   .unit = "times the picture",
                   .limit = atMost(1.2)});

}  // namespace
