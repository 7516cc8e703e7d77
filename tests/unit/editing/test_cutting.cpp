#include "editing/cutting.h"
#include "rows.h"

#include <QImage>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize s_size(97, 83);

// One point of the picture or near it: on a pixel, half way between two, or anywhere.
QPointF anyPoint(QRandomGenerator &random)
{
    const auto coordinate = [&](int size) {
        const double value = random.generateDouble() * 1.4 * size - 0.2 * size;
        switch (random.bounded(3)) {
        case 0:
            return std::round(value);
        case 1:
            return std::round(value) + 0.5;
        default:
            return value;
        }
    };
    return {coordinate(s_size.width()), coordinate(s_size.height())};
}

QPainterPath anyShape(QRandomGenerator &random)
{
    QPainterPath path;
    path.setFillRule(random.bounded(2) ? Qt::WindingFill : Qt::OddEvenFill);
    for (int outline = random.bounded(1, 4); outline > 0; --outline) {
        path.moveTo(anyPoint(random));
        for (int part = random.bounded(12); part > 0; --part) {
            if (random.bounded(3))
                path.lineTo(anyPoint(random));
            else
                path.cubicTo(anyPoint(random), anyPoint(random), anyPoint(random));
        }
    }
    if (random.bounded(4) == 0)
        path.addEllipse(QRectF(anyPoint(random), anyPoint(random)));
    return path;
}

}  // namespace

class TestCutting : public QObject
{
    Q_OBJECT

private slots:
    void equalsContains()
    {
        const auto check = [](const QByteArray &name, const QPainterPath &shape) {
            QImage cut(s_size, QImage::Format_ARGB32_Premultiplied);
            cut.fill(0xff123456);
            QImage expected = cut;
            for (int y = 0; y < expected.height(); ++y) {
                for (int x = 0; x < expected.width(); ++x) {
                    if (!shape.contains(QPointF(x, y)))
                        expected.setPixel(x, y, 0);
                }
            }
            cutToShape(cut, shape);
            expect(name, cut, expected);
        };
        const auto row = [&](const QByteArray &name,
                             const std::function<void(QPainterPath &)> &draw) {
            QPainterPath path;
            draw(path);
            check(name, path);
        };
        row("nothing", [](QPainterPath &) {});
        row("a point", [](QPainterPath &path) { path.moveTo(5, 5); });
        row("upright line", [](QPainterPath &path) {
            path.addPolygon(QPolygonF{{5, 5}, {5, 50}});
        });
        row("level line", [](QPainterPath &path) { path.addPolygon(QPolygonF{{5, 5}, {50, 5}}); });
        row("as large", [](QPainterPath &path) { path.addRect({0, 0, 97, 83}); });
        row("beyond all sides", [](QPainterPath &path) { path.addRect({-1e9, -1e9, 3e9, 3e9}); });
        row("outside", [](QPainterPath &path) { path.addEllipse({200, 10, 30, 30}); });
        row("ellipse as large", [](QPainterPath &path) { path.addEllipse({0, 0, 97, 83}); });
        row("flat ellipse", [](QPainterPath &path) { path.addEllipse({3, 10, 90, 0}); });
        // Its sides are all but level at a row, and left out there, so that the row stays open.
        row("all but level", [](QPainterPath &path) {
            path.addPolygon(QPolygonF{{9, 40}, {60, 40.00000000001}});
        });
        row("all but closed", [](QPainterPath &path) {
            path.addPolygon(QPolygonF({{9, 0}, {60, 40}, {5, 60}, {9, 1e-13}}));
        });
        row("open at the right", [](QPainterPath &path) {
            path.addPolygon(
                QPolygonF({{9, 20}, {70, 40.00000000001}, {30, 39.99999999999}, {5, 60}}));
        });
        QRandomGenerator random(20240611);
        for (int i = 0; i < 200; ++i)
            check("random " + QByteArray::number(i), anyShape(random));
    }

    void formats()
    {
        QPainterPath shape;
        shape.addRect(2, 1, 3, 2);
        for (const QImage::Format format :
             {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_RGB16}) {
            QImage picture(8, 8, format);
            picture.fill(Qt::red);
            cutToShape(picture, shape);
            QCOMPARE(picture.pixel(2, 1), 0xffff0000);
            QCOMPARE(picture.pixel(1, 1), 0U);
        }
    }
};

QTEST_APPLESS_MAIN(TestCutting)
#include "test_cutting.moc"
