#include "rows.h"
#include "shell/windowreach.h"

class TestWindowReach : public QObject
{
    Q_OBJECT

private slots:
    void places()
    {
        // A panel takes the first screen's top.
        const QList<QRect> areas{{0, 24, 1600, 976}, {1600, 0, 1600, 1000}};
        const auto shown = [&](QPoint stored) {
            return withinReach({stored, QSize(950, 650)}, areas).topLeft();
        };
        expect("inside", shown({100, 80}), {100, 80});
        expect("across both", shown({1200, 300}), {1200, 300});
        expect("far edge off the screen", shown({2400, 900}), {2400, 900});
        expect("a hand's width left", shown({-830, 80}), {-830, 80});
        expect("less than that", shown({-831, 80}), {0, 80});
        expect("caption above the screen", shown({100, -20}), {100, 24});
        expect("caption half there", shown({100, 10}), {100, 10});
        expect("below", shown({100, 1200}), {100, 350});
        expect("a screen that is gone", shown({4000, 2000}), {650, 350});
        QCOMPARE(withinReach({{4000, 2000}, QSize(9, 9)}, {}), QRect(4000, 2000, 9, 9));
    }
};

QTEST_APPLESS_MAIN(TestWindowReach)
#include "test_windowreach.moc"
