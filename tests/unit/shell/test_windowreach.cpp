#include "shell/windowreach.h"

#include <QTest>

class TestWindowReach : public QObject
{
    Q_OBJECT

private slots:
    void places_data();
    void places();
};

void TestWindowReach::places_data()
{
    QTest::addColumn<QPoint>("stored");
    QTest::addColumn<QPoint>("shown");
    QTest::newRow("inside") << QPoint(100, 80) << QPoint(100, 80);
    QTest::newRow("on the second screen") << QPoint(1700, 300) << QPoint(1700, 300);
    QTest::newRow("across both") << QPoint(1200, 300) << QPoint(1200, 300);
    QTest::newRow("far edge off the screen") << QPoint(2400, 900) << QPoint(2400, 900);
    QTest::newRow("a hand's width left") << QPoint(-830, 80) << QPoint(-830, 80);
    QTest::newRow("less than that") << QPoint(-831, 80) << QPoint(0, 80);
    QTest::newRow("caption above the screen") << QPoint(100, -20) << QPoint(100, 24);
    QTest::newRow("caption half there") << QPoint(100, 10) << QPoint(100, 10);
    QTest::newRow("below") << QPoint(100, 1200) << QPoint(100, 350);
    QTest::newRow("a screen that is gone") << QPoint(4000, 2000) << QPoint(650, 350);
}

void TestWindowReach::places()
{
    QFETCH(QPoint, stored);
    QFETCH(QPoint, shown);
    // A panel takes the first screen's top.
    const QList<QRect> areas{{0, 24, 1600, 976}, {1600, 0, 1600, 1000}};
    QCOMPARE(withinReach({stored, QSize(950, 650)}, areas), QRect(shown, QSize(950, 650)));
    QCOMPARE(withinReach({stored, QSize(950, 650)}, {}).topLeft(), stored);
}

QTEST_APPLESS_MAIN(TestWindowReach)
#include "test_windowreach.moc"
