#include "editing/covering.h"
#include "editing/pictureeditor.h"
#include "editing/scaling.h"
#include "plainpainter.h"

#include <QApplication>
#include <QBackingStore>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include <cmath>
#include <functional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_widget(420, 320);

}  // namespace

/// What the editor shows, saves and copies is what a plain replay gives.
class TestDisplay : public QObject
{
    Q_OBJECT

private slots:
    // Parts of a scaled picture join to the whole one without a trace.
    void parts()
    {
        QRandomGenerator random(5);
        for (int round = 0; round < 150; ++round) {
            const auto side = [&] { return 1 + random.bounded(round % 5 == 0 ? 4 : 250); };
            QImage image(side(), side(), QImage::Format_ARGB32_Premultiplied);
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    image.setPixel(x, y, random.generate());
            }
            const double zoom = std::pow(1.4, random.bounded(9) - 4);
            QSize size(side(), side());
            if (round % 2)
                size = (QSizeF(image.size()) * zoom).toSize().expandedTo({1, 1});
            if (size == image.size())
                continue;
            const QPoint corner(random.bounded(size.width()), random.bounded(size.height()));
            const QRect part = QRect(corner, QSize(side(), side())) & QRect(QPoint(), size);
            QCOMPARE(
                scaledPart(image, size, part),
                image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).copy(part));
            const QSize large = image.size() * 3;
            if (const QRect inside = part & QRect(QPoint(), large); !inside.isEmpty())
                QCOMPARE(sharpPart(image, large, inside), image.scaled(large).copy(inside));
        }
    }

    void histories_data()
    {
        QTest::addColumn<bool>("transparent");
        QTest::newRow("opaque") << false;
        QTest::newRow("transparent") << true;
    }

    // The same random mouse, undo, redo and zoom for both; what is asked to be painted is compared
    // with the whole.
    void histories()
    {
        QFETCH(const bool, transparent);
        QRandomGenerator random(transparent ? 11 : 7);
        QImage image(QSize(300, 220), QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, 0xff000000 | random.generate());
        }
        if (transparent) {
            QPainterPath path;
            path.addEllipse(QRectF(image.rect()));
            QPixmap cut = QPixmap::fromImage(image);
            QPixmap flag;
            TPictureEditor::EditPolyPixmap(cut, flag, true, &path, nullptr);
            image = cut.toImage();
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, 100, qPremultiply(qRgba(255, 0, 0, x % 256)));
        }
        const QPixmap picture = QPixmap::fromImage(image);
        QCOMPARE(picture.hasAlpha(), transparent);

        QWidget widget;
        widget.resize(s_widget);
        TPictureEditor editor(&widget, nullptr);
        editor.setPixmap(picture);
        widget.show();
        QVERIFY(QTest::qWaitForWindowExposed(&widget));
        QWidget plainWidget;
        plainWidget.resize(s_widget);
        PlainPainter plain(&plainWidget);
        plain.picture = picture;

        const auto point = [&] {
            return QPoint(random.bounded(-20, s_widget.width() + 20),
                          random.bounded(-20, s_widget.height() + 20));
        };
        const auto send = [&](QEvent::Type type, QPoint at, Qt::MouseButtons buttons) {
            QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton, buttons,
                              Qt::NoModifier);
            QCoreApplication::sendEvent(&widget, &event);
        };
        int steps = 0;
        const auto compare = [&] {
            // Only what the editor asked for is painted on its window.
            QCoreApplication::processEvents();
            const QImage expected = plainWidget.grab().toImage();
            const QImage window = widget.screen()->grabWindow(widget.winId()).toImage();
            if (window.convertToFormat(QImage::Format_RGB32) !=
                expected.convertToFormat(QImage::Format_RGB32)) {
                QFAIL(qPrintable(
                    u"step %1, zoom %2, tool %3"_s.arg(steps).arg(plain.scale).arg(plain.state)));
            }
        };
        for (int round = 0; round < 120; ++round) {
            const int action = random.bounded(10);
            plain.state = editor.getState();
            if (action == 0) {
                plain.scale = static_cast<float>(std::pow(1.4, random.bounded(7) - 4));
                editor.setPixmapScaled(plain.scale);
            } else if (action <= 2) {
                editor.Undo();
            } else if (action == 3) {
                editor.Redo();
            } else if (action == 4) {
                QFont font;
                font.setPointSize(6 + random.bounded(30));
                font.setItalic(random.bounded(2));
                const OperationPtr text = adding({TextShape{point()},
                                                  {.type = stateText,
                                                   .color = QColor::fromRgb(random.generate()),
                                                   .text = u"fjÅg %1\nمرحبا"_s.arg(round),
                                                   .font = font}});
                editor.record(text);
            } else {
                const QList tools{stateRect,      stateEllipse,     stateArrow,
                                  statePoly,      stateHighlighter, stateMarker,
                                  stateSpotlight, stateMeasure,     stateSolid};
                plain.state = tools.at(random.bounded(tools.size()));
                plain.lineWidth = 1 + random.bounded(12);
                plain.color =
                    QColor::fromRgba(random.generate() | (random.bounded(2) ? 0xff000000 : 0));
                editor.setState(plain.state);
                editor.setLineWidth(plain.lineWidth);
                editor.setPenColor(plain.color);
                QPoint at = point();
                send(QEvent::MouseButtonPress, at, Qt::LeftButton);
                const ViewMapping view{
                    .widget = s_widget, .picture = picture.size(), .scale = plain.scale};
                plain.gesture.press(at, view);
                for (int moves = random.bounded(5); moves >= 0; --moves) {
                    at = point();
                    send(QEvent::MouseMove, at, Qt::LeftButton);
                    plain.gesture.moveTo(at);
                    if (toolOf(plain.state).isFreehand)
                        plain.gesture.extendLine(view.toPicture(at));
                    compare();
                }
                send(QEvent::MouseButtonRelease, at, Qt::NoButton);
                plain.gesture.drop();
            }
            plain.history = editor.getVecUnDo();
            ++steps;
            compare();
            if (QTest::currentTestFailed())
                return;
            QCOMPARE(editor.sendPixmap(Qt::transparent).toImage(), plain.united().toImage());
        }
        QVERIFY(plain.history.size() > 20);
    }

    void operations();
};

/// On a desktop whose scale is not whole, where widgets begin between two pixels.
class TestScaledDisplay : public QObject
{
    Q_OBJECT

private slots:
    void scrolled();
};

// Operations of every kind, undone and redone at random, leave the pixels of a replay from nothing.
// Undone shapes come back on top of what only added one, and after nothing else.
void TestDisplay::operations()
{
    const bool isLong = qEnvironmentVariableIsSet("SNAP_LONG");
    const quint32 seed = isLong ? QRandomGenerator::global()->generate() : 15;
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    QImage image(QSize(200, 150), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    for (int x = 0; x < image.width(); ++x)
        image.setPixel(x, 40, qPremultiply(qRgba(255, 0, 0, x)));
    QPainter(&image).setCompositionMode(QPainter::CompositionMode_Source);
    for (int y = 90; y < image.height(); ++y)
        std::fill_n(reinterpret_cast<QRgb *>(image.scanLine(y)), y, 0);
    QWidget widget;
    TPictureEditor editor(&widget, nullptr);
    editor.setPixmap(QPixmap::fromImage(image));
    PlainPainter plain(&widget);
    widget.removeEventFilter(&plain);
    plain.picture = editor.getPixmap();

    Canvas canvas;
    const auto point = [&] {
        const QSize size = editor.pictureSize();
        return QPoint(random.bounded(-20, size.width() + 20),
                      random.bounded(-20, size.height() + 20));
    };
    const auto shape = [&](ShapeId id, int tool) {
        EditMsg style{.type = tool,
                      .width = 1 + random.bounded(9),
                      .color = QColor::fromRgba(random.generate()),
                      .text = u"fj\n\u0645"_s,
                      .fill = Fill(random.bounded(3)),
                      .dashes = Dashes(random.bounded(3)),
                      .heads = Heads(random.bounded(3)),
                      .ground = TextGround(random.bounded(3)),
                      .hasShadow = random.bounded(4) == 0,
                      .isRound = random.bounded(2) == 0};
        style.font.setPointSize(6 + random.bounded(20));
        Drag drag{.start = point(),
                  .end = point(),
                  .line = QPolygon({point(), point(), point()}),
                  .width = style.width};
        drag.pointer = drag.end;
        drag.box = QRect(drag.start, drag.end).normalized() | QRect(drag.start, QSize(1, 1));
        Geometry geometry = shapeFrom(stateEnum(tool), drag).value_or(TextShape{drag.start});
        if (auto *marker = std::get_if<MarkerShape>(&geometry))
            marker->start = random.bounded(4) ? 0 : random.bounded(1200);
        return shapeOf(*withColors(adding({geometry, style, id}), {}, image, random.bounded(99)));
    };
    const auto any = [&] {
        const auto shapes = sceneOf(editor.getVecUnDo(), image.size()).shapes;
        return shapes.isEmpty() ? std::make_shared<const EditEntry>()
                                : shapes.at(random.bounded(shapes.size()));
    };
    const auto anyId = [&] { return any()->id; };
    const std::function<OperationPtr(int)> change = [&](int kind) {
        if (kind < 5)
            return operation(AddShape{shape(nextShapeId(), random.bounded(1 + stateSolid))});
        if (kind == 5) {
            const EntryPtr before = any();
            return operation(ReplaceShape{shape(before->id, before->style.type)});
        }
        if (kind == 6)
            return operation(RemoveShape{anyId()});
        if (kind == 7)
            return operation(OrderShape{anyId(), random.bounded(3) ? anyId() : 0});
        const QSize size = editor.pictureSize();
        if (kind == 8 && size.width() > 60 && size.height() > 60)
            return operation(CropPicture{QRect(random.bounded(-9, 9), random.bounded(9),
                                               size.width() - 9, size.height() - 5)});
        const auto side = [&] { return random.bounded(80, 200); };
        if (kind == 8)
            return operation(ResizePicture{{side(), side()}});
        if (kind == 9)
            return operation(TurnPicture{random.bounded(4)});
        if (kind == 10)
            return operation(MirrorPicture{random.bounded(2) ? Qt::Horizontal : Qt::Vertical});
        if (kind == 11)
            return operation(ExtendPicture{QRect(-3, random.bounded(-9, 9), side(), side()),
                                           QColor::fromRgb(random.generate())});
        if (kind == 12 && random.bounded(4) == 0)
            return operation(BackdropPicture{});
        if (kind == 12) {
            return operation(BackdropPicture{Backdrop{.ground = Backdrop::Ground(random.bounded(2)),
                                                      .first = QColor(random.generate()),
                                                      .padding = random.bounded(20),
                                                      .radius = random.bounded(99),
                                                      .hasShadow = random.bounded(2) == 0,
                                                      .ratio = {random.bounded(3), 1}}});
        }
        SeveralChanges several;
        for (int i = random.bounded(4); i >= 0; --i)
            several.changes.append(change(random.bounded(8)));
        return operation(several);
    };
    for (int step = 0; step < (isLong ? 10'000 : 400); ++step) {
        const int action = random.bounded(26);
        if (step % 250 == 249) {
            editor.clearShape();
        } else if (step % 10 == 9) {
            // As a change of tabs does.
            const EditHistory history = editor.getVecUnDo();
            editor.setVecUnDo(&history);
        } else if (action < 5) {
            editor.Undo();
        } else if (action < 9) {
            editor.Redo();
        } else {
            const OperationPtr recorded = change(action - 9 > 13 ? 2 : action - 9);
            const auto undone = addedBy(*recorded) ? editor.getVecReDo() : EditHistory();
            editor.record(recorded);
            QCOMPARE(editor.getVecReDo(), undone);
        }
        plain.history = editor.getVecUnDo();
        widget.resize(editor.pictureSize());
        const QImage expected = plain.united().toImage();
        QImage shown(expected.size(), QImage::Format_ARGB32_Premultiplied);
        shown.fill(Qt::transparent);
        widget.render(&shown, {}, {}, {});
        if (shown != PlainPainter::onChequers(expected).convertToFormat(shown.format()) ||
            editor.sendPixmap(Qt::transparent).toImage() != expected)
            QFAIL(qPrintable(u"seed %1, step %2, action %3"_s.arg(seed).arg(step).arg(action)));
        // What a step would come to is shown before it is recorded, also while it changes.
        if (step % 4 == 0)
            canvas.start(image, plain.history);
        const EntryPtr one = any();
        for (int state = random.bounded(3); step % 4 == 0 && state >= 0; --state) {
            const OperationPtr next = random.bounded(3)
                                          ? operation(ReplaceShape{shape(one->id, one->style.type)})
                                          : change(random.bounded(8));
            canvas.setPreview(next);
            plain.history.prepend(next);
            const QImage after =
                plain.united().toImage().convertToFormat(canvas.recorded().format());
            plain.history.removeFirst();
            QRegion part(random.bounded(60), random.bounded(60), random.bounded(200), 200);
            part &= after.rect();
            const QImage &preview = canvas.preview(part);
            for (const QRect &rect : part)
                QVERIFY2(preview.copy(rect) == after.copy(rect),
                         qPrintable(u"seed %1, step %2"_s.arg(seed).arg(step)));
            canvas.setPreview(random.bounded(2) ? next : nullptr);
        }
    }
}

// What is scrolled is not painted anew, and what is drawn then has to fit to it.
void TestScaledDisplay::scrolled()
{
    QRandomGenerator random(3);
    QImage image(900, 300, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, random.generate());
    }
    QWidget window;
    window.resize(330, 220);
    QScrollArea area(&window);
    area.setFrameShape(QFrame::NoFrame);
    area.setGeometry(5, 5, 301, 203);
    auto *view = new QWidget;
    view->resize(700, 300);
    area.setWidget(view);
    TPictureEditor editor(view, nullptr);
    editor.setPixmap(QPixmap::fromImage(image));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    area.horizontalScrollBar()->setValue(14);
    QCoreApplication::processEvents();
    editor.setState(stateRect);
    for (const auto &[type, at, buttons] :
         {std::tuple(QEvent::MouseButtonPress, QPoint(60, 60), Qt::LeftButton),
          {QEvent::MouseButtonRelease, QPoint(160, 120), Qt::NoButton}}) {
        QMouseEvent event(type, at, view->mapTo(&window, at), view->mapToGlobal(at), Qt::LeftButton,
                          buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(view, &event);
    }
    QCoreApplication::processEvents();
    const auto onScreen = [&] {
        return dynamic_cast<QImage *>(window.backingStore()->paintDevice())->copy();
    };
    const QImage drawn = onScreen();
    view->repaint();
    QVERIFY(drawn == onScreen());
}

int main(int argc, char *argv[])
{
    // All steps of the operations are one function.
    qputenv("QTEST_FUNCTION_TIMEOUT", "3000000");
    int failures = 0;
    const auto run = [&](const char *scale, QObject &&test) {
        qputenv("QT_SCALE_FACTOR", scale);
        const QApplication application(argc, argv);
        failures += QTest::qExec(&test, argc, argv);
    };
    run("1", TestDisplay());
    run("1.5", TestScaledDisplay());
    return failures;
}

#include "test_display.moc"
