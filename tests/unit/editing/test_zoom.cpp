#include "editing/zoom.h"
#include "rows.h"

#include <QTest>

class TestZoom : public QObject
{
    Q_OBJECT

private slots:
    void buttons()
    {
        const auto steps = [](auto step, int width, int count) {
            float scale = 1;
            while (count-- > 0)
                scale = step(scale, width);
            return scale;
        };
        expect("in by 1.4", steps(zoomedIn, 100, 1), 1.4F);
        expect("out by 1.4", steps(zoomedOut, 100, 1), 1 / 1.4F);
        expect("upper limit", steps(zoomedIn, 2900, 3), 3000.0F / 2900);
        expect("no step up makes smaller", steps(zoomedIn, 6000, 1), 1.0F);
        expect("nor after the wheel", zoomedIn(8, 1000), 8.0F);
        expect("lower limit", steps(zoomedOut, 100, 9), 0.5F);
        expect("lower limit enlarges", steps(zoomedOut, 40, 1), 1.25F);
    }

    // A picture whose zoom is 1 but for a rounding is blurred all over.
    void wheel()
    {
        float scale = 1;
        for (int i = 0; i < 7; ++i)
            scale = zoomedBy(scale, 1, 1000);
        for (int i = 0; i < 7; ++i)
            scale = zoomedBy(scale, -1, 1000);
        expect("there and back", scale, 1.0F);
        for (int i = 0; i < 4; ++i)
            scale = zoomedBy(scale, 0.75, 1000);
        expect("parts of notches", scale, 2.0F);
        expect("stops at its own size", zoomedBy(0.9F, 1, 1000), 1.0F);
        expect("and on the way down", zoomedBy(1.1F, -1, 1000), 1.0F);
        expect("largest", zoomedBy(7, 1, 1000), 8.0F);
        expect("the buttons went further", zoomedBy(100, 1, 30), 100.0F);
        expect("least", zoomedBy(0.06F, -9, 1000), 0.05F);
        expect("what is tiny is not enlarged", zoomedBy(1, -1, 20), 1.0F);
        expect("fit: as wide", zoomToFit({1000, 10}, {500, 400}), 0.5F);
        expect("fit: as high", zoomToFit({100, 800}, {500, 400}), 0.5F);
        expect("fit: the largest", zoomToFit({1, 1}, {500, 400}), 8.0F);
    }
};

QTEST_APPLESS_MAIN(TestZoom)
#include "test_zoom.moc"
