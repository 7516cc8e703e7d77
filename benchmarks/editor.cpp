// The editor's frames for a picture as large as a big screen: a mouse event and the following
// paint.

#include "comparison.h"
#include "memory.h"
#include "plainpainter.h"

#include "editing/covering.h"
#include "editing/pictureeditor.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QScrollArea>
#include <QWidget>
#include <QWindow>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

constexpr QSize s_size(3840, 2160);
constexpr QSize s_viewport(1600, 900);
const float s_small = static_cast<float>(1 / (1.4 * 1.4 * 1.4));

enum Kind { Opaque, Ellipse };

QPixmap picture(Kind kind)
{
    QImage image(s_size, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = qRgb(x, y, x * y);
    }
    QPixmap pixmap = QPixmap::fromImage(image);
    if (kind == Ellipse) {
        QPainterPath path;
        path.addEllipse(QRectF(image.rect()));
        QPixmap flag;
        TPictureEditor::EditPolyPixmap(pixmap, flag, true, &path, nullptr);
    }
    return pixmap;
}

// Shapes of all sizes. Where there are very many of them, all but every tenth are small, as in a
// picture of which anything is still to be seen.
EditHistory shapes(int count, bool areMany = false)
{
    QRandomGenerator random(3);
    EditHistory history;
    for (int i = 0; i < count; ++i) {
        const QPoint at(random.bounded(s_size.width() - 700),
                        random.bounded(s_size.height() - 500));
        const int part = areMany && i % 10 ? 5 : 1;
        const QPoint to = at + QPoint(50 + random.bounded(600), 50 + random.bounded(400)) / part;
        const QRect rect(at, to);
        Geometry geometry;
        switch (i % 5) {
        case 0:
            geometry = RectShape{QPolygon(rect, true)};
            break;
        case 1:
            geometry = EllipseShape{rect};
            break;
        case 2:
            geometry = ArrowShape{CreateArrowPolygon(at, to, 4)};
            break;
        case 3:
            geometry = TextShape{at};
            break;
        default: {
            QPolygon line;
            for (int step = 0; step < 100; ++step)
                line << at + QPoint(step * 5, static_cast<int>(80 * std::sin(step / 8.))) / part;
            geometry = PolylineShape{line};
        }
        }
        history.prepend(adding({geometry,
                                {.type = i % 5 + 1,
                                 .width = 2 + i % 6,
                                 .color = QColor::fromHsv(i * 37 % 360, 255, 220),
                                 .text = QStringLiteral("A note beside the thing"),
                                 .font = QFont(QStringLiteral("Sans Serif"), 18)}}));
    }
    return history;
}

/// The drawing widget in a scroll area as in the main window, on an ordinary screen.
struct Stage {
    Stage()
    {
        area.setWindowFlag(Qt::FramelessWindowHint);
        area.setWidget(&widget);
    }

    ~Stage() { area.takeWidget(); }
    Stage(const Stage &) = delete;
    Stage &operator=(const Stage &) = delete;

    void show(float scale)
    {
        widget.resize(drawingSize(s_viewport, s_size, scale));
        area.resize(s_viewport);
        area.show();
        while (!area.windowHandle()->isExposed())
            QCoreApplication::processEvents();
        widget.repaint();
    }

    void send(QEvent::Type type, QPoint at, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, at, at, Qt::LeftButton, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }

    QScrollArea area{};
    QWidget widget{};
};

struct EditorStage : Stage {
    EditorStage(Kind kind, int count, float scale) : editor(&widget, nullptr)
    {
        editor.setPixmap(picture(kind));
        const EditHistory history = shapes(count);
        editor.setVecUnDo(&history);
        editor.setPixmapScaled(scale);
        editor.setState(stateRect);
        editor.setLineWidth(5);
        editor.setPenColor(Qt::red);
        show(scale);
    }

    static void frame() { QCoreApplication::processEvents(); }

    TPictureEditor editor;
};

struct PlainStage : Stage {
    PlainStage(Kind kind, int count, float scale) : painter(&widget)
    {
        painter.picture = picture(kind);
        painter.history = shapes(count);
        painter.scale = scale;
        painter.state = stateRect;
        painter.lineWidth = 5;
        painter.color = Qt::red;
        show(scale);
    }

    PlainPainter painter;
};

// The corner of a drag, which moves with each frame.
QPoint corner(int frame) { return {900 + frame * 7 % 300, 600 + frame * 5 % 200}; }

void repaint(benchmark::State &state, Kind kind)
{
    EditorStage stage(kind, 500, 1);
    for (auto _ : state)
        stage.widget.repaint();
}

void plainRepaint(benchmark::State &state, Kind kind)
{
    PlainStage stage(kind, 500, 1);
    for (auto _ : state)
        stage.widget.repaint();
}

void drag(benchmark::State &state, Kind kind, float scale)
{
    EditorStage stage(kind, 500, scale);
    stage.send(QEvent::MouseButtonPress, QPoint(500, 300), Qt::LeftButton);
    stage.send(QEvent::MouseMove, corner(0), Qt::LeftButton);
    stage.frame();
    int frame = 0;
    for (auto _ : state) {
        stage.send(QEvent::MouseMove, corner(++frame), Qt::LeftButton);
        stage.frame();
    }
}

void plainDrag(benchmark::State &state, Kind kind, float scale)
{
    PlainStage stage(kind, 500, scale);
    stage.painter.gesture.press({500, 300},
                                {.widget = stage.widget.size(), .picture = s_size, .scale = scale});
    int frame = 0;
    for (auto _ : state) {
        stage.painter.gesture.moveTo(corner(++frame));
        stage.widget.repaint();
    }
}

// A freehand line of a usual length, which a drag that went on would not have.
constexpr int s_moves = 100;

void toolDrag(benchmark::State &state, stateEnum tool, bool isRound = false)
{
    EditorStage stage(Opaque, 500, 1);
    stage.editor.setState(tool);
    stage.editor.changeStyle([&](EditMsg &style) { style.isRound = isRound; });
    int frame = 0;
    for (auto _ : state) {
        if (frame % s_moves == 0)
            stage.send(QEvent::MouseButtonPress, QPoint(500, 300), Qt::LeftButton);
        stage.send(QEvent::MouseMove, corner(++frame), Qt::LeftButton);
        stage.frame();
    }
}

void plainToolDrag(benchmark::State &state, stateEnum tool)
{
    PlainStage stage(Opaque, 500, 1);
    stage.painter.state = tool;
    const ViewMapping view{.widget = stage.widget.size(), .picture = s_size};
    stage.painter.gesture.press({500, 300}, view);
    int frame = 0;
    for (auto _ : state) {
        stage.painter.gesture.moveTo(corner(++frame));
        stage.painter.gesture.extendLine(view.toPicture(corner(frame)));
        stage.widget.repaint();
    }
}

void newShape(benchmark::State &state, Kind kind, int count)
{
    EditorStage stage(kind, count, 1);
    int frame = 0;
    for (auto _ : state) {
        stage.send(QEvent::MouseButtonPress, QPoint(500, 300), Qt::LeftButton);
        stage.send(QEvent::MouseButtonRelease, corner(++frame), Qt::NoButton);
        stage.frame();
    }
}

void plainNewShape(benchmark::State &state, Kind kind, int count)
{
    PlainStage stage(kind, count, 1);
    const EditHistory first = stage.painter.history;
    for (auto _ : state) {
        stage.painter.history = first;
        stage.painter.history.prepend(shapes(1).first());
        stage.widget.repaint();
    }
}

void undo(benchmark::State &state, Kind kind)
{
    EditorStage stage(kind, 500, 1);
    for (auto _ : state) {
        stage.editor.Undo();
        stage.frame();
    }
}

void plainUndo(benchmark::State &state, Kind kind)
{
    PlainStage stage(kind, 500, 1);
    for (auto _ : state) {
        stage.painter.history.removeFirst();
        stage.widget.repaint();
    }
}

// A shape in the middle of all of them is moved with the pointer.
void moveShape(benchmark::State &state, int count)
{
    EditorStage stage(Opaque, 0, 1);
    const EditHistory history = shapes(count, true);
    stage.editor.setVecUnDo(&history);
    const QList<EntryPtr> shapes = sceneOf(stage.editor.getVecUnDo(), s_size).shapes;
    const auto inView =
        std::find_if(shapes.begin() + count / 2, shapes.end(), [](const EntryPtr &shape) {
            return QRect(QPoint(), s_viewport).contains(boxOf(*shape));
        });
    stage.editor.setState(stateSelect);
    while (stage.editor.chosen().value(0) != *inView) {
        QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        stage.editor.eventFilter(&stage.widget, &tab);
    }
    const QPoint at = endsOf((*inView)->geometry).value(0, boxOf(**inView).topLeft());
    stage.send(QEvent::MouseButtonPress, at, Qt::LeftButton);
    stage.send(QEvent::MouseMove, at + QPoint(1, 1), Qt::LeftButton);
    stage.frame();
    int frame = 0;
    for (auto _ : state) {
        ++frame;
        stage.send(QEvent::MouseMove, at + QPoint(frame * 7 % 90, frame * 5 % 60), Qt::LeftButton);
        stage.frame();
    }
}

// A click on the topmost shape costs nothing, so the points are spread over the picture.
void pick(benchmark::State &state, int count)
{
    Canvas canvas;
    canvas.start(picture(Opaque).toImage(), shapes(count));
    canvas.shapeAt({-100, -100}, 4);
    QRandomGenerator random(9);
    for (auto _ : state) {
        benchmark::DoNotOptimize(canvas.shapeAt(
            QPointF(random.bounded(s_size.width()), random.bounded(s_size.height())), 4));
    }
}

// Measures memory beyond the picture and the window's own pixels, which every program that shows it
// needs.
void memory(benchmark::State &state)
{
    for (auto _ : state) {
        Stage bare;
        bare.show(1);
        const QPixmap pixmap = picture(Opaque);
        const double before = residentBytes();
        TPictureEditor editor(&bare.widget, nullptr);
        editor.setPixmap(pixmap);
        const EditHistory history = shapes(500);
        editor.setVecUnDo(&history);
        editor.setState(stateRect);
        for (const float scale : {1.0F, 1 / 1.4F}) {
            editor.setPixmapScaled(scale);
            bare.send(QEvent::MouseButtonPress, QPoint(500, 300), Qt::LeftButton);
            bare.send(QEvent::MouseMove, corner(0), Qt::LeftButton);
            QCoreApplication::processEvents();
            bare.send(QEvent::MouseButtonRelease, corner(0), Qt::NoButton);
            bare.widget.repaint();
        }
        state.counters["value"] =
            (residentBytes() - before) / (4.0 * s_size.width() * s_size.height());
    }
}

// All of a picture is covered, from the choice of its colours on.
void coverAll(benchmark::State &state, stateEnum kind)
{
    const QImage below = picture(Opaque).toImage();
    Drag drag;
    drag.box = below.rect();
    const OperationPtr cover = adding({*shapeFrom(kind, drag), {.type = kind}});
    for (auto _ : state)
        benchmark::DoNotOptimize(
            replayed(below, {withColors(cover, {}, below, 1)}, Qt::transparent));
}

#define FRAMES(function, ...)                                                                      \
    BENCHMARK_CAPTURE(function, __VA_ARGS__)->Unit(benchmark::kMillisecond)->Repetitions(3)
#define PLAIN_FRAMES(function, ...) FRAMES(function, __VA_ARGS__)->Iterations(2)

FRAMES(repaint, opaque, Opaque);
PLAIN_FRAMES(plainRepaint, opaque, Opaque);
FRAMES(repaint, ellipse, Ellipse);
PLAIN_FRAMES(plainRepaint, ellipse, Ellipse);
FRAMES(drag, opaque, Opaque, 1.0F);
PLAIN_FRAMES(plainDrag, opaque, Opaque, 1.0F);
FRAMES(drag, ellipse, Ellipse, 1.0F);
PLAIN_FRAMES(plainDrag, ellipse, Ellipse, 1.0F);
FRAMES(drag, opaque_small, Opaque, s_small);
PLAIN_FRAMES(plainDrag, opaque_small, Opaque, s_small);
FRAMES(drag, ellipse_small, Ellipse, s_small);
PLAIN_FRAMES(plainDrag, ellipse_small, Ellipse, s_small);
FRAMES(toolDrag, line, stateLine);
PLAIN_FRAMES(plainToolDrag, line, stateLine);
FRAMES(toolDrag, highlighter, stateHighlighter);
PLAIN_FRAMES(plainToolDrag, highlighter, stateHighlighter);
FRAMES(toolDrag, marker, stateMarker);
PLAIN_FRAMES(plainToolDrag, marker, stateMarker);
FRAMES(toolDrag, measure, stateMeasure);
PLAIN_FRAMES(plainToolDrag, measure, stateMeasure);
FRAMES(toolDrag, spotlight, stateSpotlight);
PLAIN_FRAMES(plainToolDrag, spotlight, stateSpotlight);
FRAMES(toolDrag, round, stateSpotlight, true);
FRAMES(toolDrag, blur, stateBlur);
PLAIN_FRAMES(plainToolDrag, blur, stateBlur);
FRAMES(toolDrag, pixelate, statePixelate);
PLAIN_FRAMES(plainToolDrag, pixelate, statePixelate);
FRAMES(toolDrag, solid, stateSolid);
PLAIN_FRAMES(plainToolDrag, solid, stateSolid);
FRAMES(coverAll, blur, stateBlur);
FRAMES(coverAll, pixelate, statePixelate);
FRAMES(newShape, opaque_500, Opaque, 500);
PLAIN_FRAMES(plainNewShape, opaque_500, Opaque, 500);
FRAMES(newShape, opaque_5000, Opaque, 5000);
PLAIN_FRAMES(plainNewShape, opaque_5000, Opaque, 5000);
FRAMES(newShape, ellipse_500, Ellipse, 500);
PLAIN_FRAMES(plainNewShape, ellipse_500, Ellipse, 500);
FRAMES(undo, opaque, Opaque)->Iterations(200);
PLAIN_FRAMES(plainUndo, opaque, Opaque);
FRAMES(undo, ellipse, Ellipse)->Iterations(200);
PLAIN_FRAMES(plainUndo, ellipse, Ellipse);
FRAMES(moveShape, of_5000, 5000);
FRAMES(pick, of_5000, 5000);
BENCHMARK(memory)->Iterations(1)->Repetitions(3);

bool addRatio(const char *what, const std::string &name, const std::string &plain, double least)
{
    return addComparison({.what = what,
                          .measured = name,
                          .against = plain,
                          .faster = true,
                          .limit = atLeast(least)});
}

// Every tool has a drag frame of its own.
bool addTool(const std::string &what, const std::string &name, double least)
{
    const std::string plain = name == "round" ? "spotlight" : name;
    return addRatio(("the drag frame of a " + what).c_str(), "toolDrag/" + name,
                    "plainToolDrag/" + plain, least) &&
           addComparison({.what = "the frame itself",
                          .measured = "toolDrag/" + name,
                          .unit = "ms",
                          .limit = atMost(8)});
}

[[maybe_unused]] const bool s_registered =
    addRatio("repaint with nothing changed, 500 shapes, against a replay of everything",
             "repaint/opaque", "plainRepaint/opaque", 50) &&
    addRatio("the same on an ellipse grab", "repaint/ellipse", "plainRepaint/ellipse", 25) &&
    addRatio("one drag frame of the editor on a picture of 3840 x 2160 with 500 shapes in a window "
             "of 1600 x 900, zoom 1, against a replay of everything",
             "drag/opaque", "plainDrag/opaque", 20) &&
    addComparison({.what = "the frame itself",
                   .measured = "drag/opaque",
                   .unit = "ms",
                   .limit = atMost(8)}) &&
    addRatio("the frame on an ellipse grab", "drag/ellipse", "plainDrag/ellipse", 10) &&
    addRatio("the drag frame at zoom 0.36", "drag/opaque_small", "plainDrag/opaque_small", 8) &&
    addRatio("the same on an ellipse grab", "drag/ellipse_small", "plainDrag/ellipse_small", 4) &&
    addTool("line", "line", 100) && addTool("highlighter", "highlighter", 100) &&
    addTool("marker", "marker", 100) && addTool("measure", "measure", 100) &&
    addTool("spotlight", "spotlight", 10) && addTool("round spotlight", "round", 10) &&
    addTool("blur", "blur", 10) && addTool("pixelate", "pixelate", 10) &&
    addTool("solid cover", "solid", 100) &&
    addComparison({.what = "blurring all of 3840 x 2160",
                   .measured = "coverAll/blur",
                   .unit = "ms",
                   .limit = atMost(60)}) &&
    addComparison({.what = "pixelating all of it",
                   .measured = "coverAll/pixelate",
                   .unit = "ms",
                   .limit = atMost(60)}) &&
    addRatio("a new shape and the repaint, 500 before it", "newShape/opaque_500",
             "plainNewShape/opaque_500", 20) &&
    addRatio("a new shape and the repaint, 5,000 before it", "newShape/opaque_5000",
             "plainNewShape/opaque_5000", 20) &&
    addComparison({.what = "the same, against the one with 500 before it",
                   .measured = "newShape/opaque_5000",
                   .against = "newShape/opaque_500",
                   .limit = atMost(1.5)}) &&
    addRatio("a new shape and the repaint on an ellipse grab", "newShape/ellipse_500",
             "plainNewShape/ellipse_500", 10) &&
    addRatio("an undo and the repaint", "undo/opaque", "plainUndo/opaque", 3) &&
    addRatio("the same on an ellipse grab", "undo/ellipse", "plainUndo/ellipse", 1.5) &&
    addComparison({.what = "one of 5,000 shapes moved, a frame",
                   .measured = "moveShape/of_5000",
                   .unit = "ms",
                   .limit = atMost(8)}) &&
    addComparison({.what = "the shape at a point, of 5,000",
                   .measured = "pick/of_5000",
                   .unit = "ms",
                   .limit = atMost(1)}) &&
    addComparison({.what = "memory while editing, beyond the picture",
                   .measured = "memory",
                   .unit = "times the picture",
                   .limit = atMost(2)});

}  // namespace
