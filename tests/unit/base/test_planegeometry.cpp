#include "base/planegeometry.h"

#include <QTest>

class TestPlaneGeometry : public QObject
{
    Q_OBJECT

private slots:
    void tolerances();
    void rotation();
    void angles_data();
    void angles();
    void crossings_data();
    void crossings();
};

void TestPlaneGeometry::tolerances()
{
    QCOMPARE(RoundTo(2.5L), 3);
    QCOMPARE(RoundTo(-2.5L), -2);
    QCOMPARE(RoundTo(-2.6L), -3);
    QVERIFY(EquFloat(1.0F, 1.00001F));
    QVERIFY(!EquFloat(1.0F, 1.0001F));
    QVERIFY(!EquFloat1(22.5F, 0.0F, 22.5F));
    QVERIFY(EquFloat1(22.4F, 0.0F, 22.5F));
}

// Exact, and not nearly so: sine and cosine snap to the axes.
void TestPlaneGeometry::rotation()
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

void TestPlaneGeometry::angles_data()
{
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<double>("degrees");
    QTest::newRow("same point") << QPointF(0, 0) << 0.0;
    QTest::newRow("right") << QPointF(1, 0) << 0.0;
    QTest::newRow("down") << QPointF(0, 1) << 90.0;
    QTest::newRow("left") << QPointF(-1, 0) << 180.0;
    QTest::newRow("up") << QPointF(0, -1) << 270.0;
    QTest::newRow("too short to be vertical") << QPointF(0.000001, 0.0005) << 0.0;
    QTest::newRow("vertical by its ratio") << QPointF(1, 200000) << 90.0;
    QTest::newRow("horizontal by its ratio") << QPointF(-200000, 1) << 180.0;
    // The rough factor shows: 45 degrees come out 45.0000015.
    QTest::newRow("slope") << QPointF(1, 1)
                           << static_cast<double>(std::atan2(1.0F, 1.0F)) * 57.29578;
    QTest::newRow("slope up") << QPointF(1, -1)
                              << static_cast<double>(std::atan2(-1.0F, 1.0F)) * 57.29578 + 360;
}

void TestPlaneGeometry::angles()
{
    QFETCH(const QPointF, to);
    QFETCH(const double, degrees);
    const double angle = CalAngle_Deg({}, to);
    QVERIFY2(angle == degrees, qPrintable(QString::number(angle, 'g', 17)));
    QVERIFY(qAbs(CalAngle({}, to) * 57.29578 - degrees) < 0.0001);
}

void TestPlaneGeometry::crossings_data()
{
    QTest::addColumn<QLineF>("a");
    QTest::addColumn<QLineF>("b");
    QTest::addColumn<bool>("crosses");
    QTest::addColumn<QPointF>("at");
    const QPointF unwritten(-99, -99);
    const QLineF flat(0, 5, 10, 5);
    const QLineF upright(4, 0, 4, 10);
    const QLineF slope(0, 0, 10, 10);
    const QLineF falling(0, 10, 10, 0);
    QTest::newRow("both horizontal") << flat << QLineF(0, 5, 9, 5) << false << unwritten;
    QTest::newRow("horizontal, vertical") << flat << upright << true << QPointF(4, 5);
    QTest::newRow("horizontal, sloped") << flat << slope << true << QPointF(5, 5);
    QTest::newRow("horizontal, sloped beyond its end, with no slack")
        << QLineF(0, 5, 4.95, 5) << slope << false << QPointF(5, 5);
    QTest::newRow("both vertical") << upright << QLineF(4, 1, 4, 2) << false << unwritten;
    QTest::newRow("vertical, horizontal") << upright << flat << true << QPointF(4, 5);
    QTest::newRow("vertical, sloped") << upright << slope << true << QPointF(4, 4);
    QTest::newRow("sloped, vertical") << slope << upright << true << QPointF(4, 4);
    QTest::newRow("sloped, horizontal") << slope << flat << true << QPointF(5, 5);
    QTest::newRow("both sloped") << slope << falling << true << QPointF(5, 5);
    QTest::newRow("shared end") << slope << QLineF(10, 10, 20, 0) << true << QPointF(10, 10);
    QTest::newRow("apart") << slope << QLineF(20, 0, 30, -20) << false << QPointF(40 / 3., 40 / 3.);
    QTest::newRow("nearly parallel") << slope << QLineF(0, 0.001, 10, 9.995) << false << unwritten;
    QTest::newRow("nearly parallel, other way")
        << slope << QLineF(10, 9.995, 0, 0.001) << false << unwritten;
}

void TestPlaneGeometry::crossings()
{
    QFETCH(const QLineF, a);
    QFETCH(const QLineF, b);
    QFETCH(const bool, crosses);
    QFETCH(const QPointF, at);
    QPointF crossing(-99, -99);
    QCOMPARE(LineCrossLine(a.p1(), a.p2(), b.p1(), b.p2(), crossing), crosses);
    QCOMPARE(crossing, at);
}

QTEST_GUILESS_MAIN(TestPlaneGeometry)
#include "test_planegeometry.moc"
