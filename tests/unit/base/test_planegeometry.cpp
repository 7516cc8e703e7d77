#include "base/planegeometry.h"
#include "rows.h"

class TestPlaneGeometry : public QObject
{
    Q_OBJECT

private slots:
    // Exact, and not nearly so: sine and cosine snap to the axes.
    void rotation()
    {
        const QPointF p(10, 0);
        QVERIFY(RotateByRad(0.00003F, p, {}) == p);
        QVERIFY(RotateByDeg(90, p, {}).x() == 0 && RotateByDeg(90, p, {}).y() == 10);
        QVERIFY(RotateByDeg(180, p, {5, 0}).x() == 0 && RotateByDeg(180, p, {5, 0}).y() == 0);
        QVERIFY(RotateByDeg(270, p, {}).x() == 0 && RotateByDeg(270, p, {}).y() == -10);
        QVERIFY(RotateByRad(1, {3, 4}, {3, 4}) == QPointF(3, 4));
        const QPointF turned = RotateByDeg(30, p, {1, 1});
        QVERIFY(qAbs(turned.x() - 9.294) < 0.001 && qAbs(turned.y() - 4.634) < 0.001);
    }

    void angles()
    {
        const auto check = [&](const QByteArray &row, const QPointF &to, double degrees) {
            const double angle = CalAngle_Deg({}, to);
            QVERIFY2(angle == degrees, qPrintable(QString::number(angle, 'g', 17)));
            QVERIFY2(qAbs(CalAngle({}, to) * 57.29578 - degrees) < 0.0001, row);
        };
        check("same point", {0, 0}, 0.0);
        check("right", {1, 0}, 0.0);
        check("down", {0, 1}, 90.0);
        check("left", {-1, 0}, 180.0);
        check("up", {0, -1}, 270.0);
        check("too short to be vertical", {0.000001, 0.0005}, 0.0);
        check("vertical by its ratio", {1, 200000}, 90.0);
        check("horizontal by its ratio", {-200000, 1}, 180.0);
        // The rough factor shows: 45 degrees come out 45.0000015.
        check("slope", {1, 1}, static_cast<double>(std::atan2(1.0F, 1.0F)) * 57.29578);
        check("slope up", {1, -1}, static_cast<double>(std::atan2(-1.0F, 1.0F)) * 57.29578 + 360);
    }

    void crossings()
    {
        const auto check = [&](const QByteArray &row, const QLineF &a, const QLineF &b,
                               bool crosses, const QPointF &at) {
            QPointF crossing(-99, -99);
            expect(row, LineCrossLine(a.p1(), a.p2(), b.p1(), b.p2(), crossing), crosses);
            expect(row, crossing, at);
        };
        const QPointF unwritten(-99, -99);
        const QLineF flat(0, 5, 10, 5);
        const QLineF upright(4, 0, 4, 10);
        const QLineF slope(0, 0, 10, 10);
        const QLineF falling(0, 10, 10, 0);
        check("both horizontal", flat, {0, 5, 9, 5}, false, unwritten);
        check("horizontal, vertical", flat, upright, true, {4, 5});
        check("horizontal, sloped", flat, slope, true, {5, 5});
        check("horizontal, sloped beyond its end, with no slack", {0, 5, 4.95, 5}, slope, false,
              {5, 5});
        check("both vertical", upright, {4, 1, 4, 2}, false, unwritten);
        check("vertical, horizontal", upright, flat, true, {4, 5});
        check("vertical, sloped", upright, slope, true, {4, 4});
        check("sloped, vertical", slope, upright, true, {4, 4});
        check("sloped, horizontal", slope, flat, true, {5, 5});
        check("both sloped", slope, falling, true, {5, 5});
        check("shared end", slope, {10, 10, 20, 0}, true, {10, 10});
        check("apart", slope, {20, 0, 30, -20}, false, {40 / 3., 40 / 3.});
        check("nearly parallel", slope, {0, 0.001, 10, 9.995}, false, unwritten);
        check("nearly parallel, other way", slope, {10, 9.995, 0, 0.001}, false, unwritten);
    }
};

QTEST_GUILESS_MAIN(TestPlaneGeometry)
#include "test_planegeometry.moc"
