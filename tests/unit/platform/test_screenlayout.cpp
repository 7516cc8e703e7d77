// Where screens of several scales lie, whose pixels a picture has, and what sway's tree says.

#include "numbered.h"
#include "platform/wayland/screenlayout.h"
#include "platform/wayland/swaytree.h"
#include "rows.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// A screen of each scale, side by side.
ScreenLayout threeScreens()
{
    return ScreenLayout({{.name = u"one"_s, .logical = {0, 0, 400, 300}, .pixels = {400, 300}},
                         {.name = u"fine"_s, .logical = {400, 0, 266, 200}, .pixels = {400, 300}},
                         {.name = u"two"_s, .logical = {666, 0, 200, 150}, .pixels = {400, 300}}});
}

}  // namespace

class TestScreenLayout : public QObject
{
    Q_OBJECT

private slots:
    // However a compositor rounds the logical size.
    void scales()
    {
        const auto check = [](QSize pixels, QSize logical, qreal scale) {
            expect(QByteArray::number(logical.width()), scaleOf(pixels, logical), scale);
        };
        check({1600, 1000}, {1600, 1000}, 1);
        check({1600, 1000}, {1066, 666}, 1.5);
        check({1600, 1000}, {1067, 667}, 1.5);
        check({3840, 2160}, {2880, 1620}, 4.0 / 3);
        check({1000, 1600}, {500, 800}, 2);
        check({1600, 1000}, {1600, 500}, 2);  // no scale fits: the greater one
        check({}, {0, 0}, 1);
    }

    void areasMeet()
    {
        const ScreenLayout layout = threeScreens();
        QCOMPARE(layout.scale(), 2.0);
        QList<QRect> areas;
        for (const ScreenLayout::Screen &screen : layout.screens())
            areas.append(screen.area);
        QCOMPARE(areas, (QList<QRect>{{0, 0, 800, 600}, {800, 0, 532, 400}, {1332, 0, 400, 300}}));
        const ScreenLayout alone({{.logical = {0, 0, 1066, 666}, .pixels = {1600, 1000}}});
        QCOMPARE(alone.screens().constFirst().area, QRect(0, 0, 1600, 1000));
        QCOMPARE(alone.toGlobal(QRectF(100, 100, 301, 301)), QRect(150, 150, 452, 452));
    }

    // Inside a screen its own pixels, as they are; across several those of the finest of them.
    void pictures()
    {
        const ScreenLayout layout = threeScreens();
        QList<QImage> own;
        for (int i = 0; i < 3; ++i)
            own.append(numbered({400, 300}, i));
        const auto check = [&](const QByteArray &row, const QRect &area, QSize size) {
            expect(row, layout.pictureSize(area), size);
            QImage picture = layout.picture(area, own);
            expect(row, picture.size(), size);
            return picture;
        };
        expect("one",
               check("one", {200, 100, 100, 60}, {50, 30}) == own.at(0).copy(100, 50, 50, 30),
               true);
        expect("odd", check("odd", {201, 101, 1, 1}, {1, 1}) == own.at(0).copy(101, 51, 1, 1),
               true);
        expect("two",
               check("two", {1432, 10, 100, 60}, {100, 60}) == own.at(2).copy(100, 10, 100, 60),
               true);
        expect("whole", check("whole", {0, 0, 800, 600}, {400, 300}) == own.at(0), true);
        const QImage fine = check("fine", {800, 0, 532, 400}, {400, 300});
        expect("fine", fine == own.at(1), true);
        // A finer screen that the area does not touch does not count.
        const QImage coarse = check("across", {400, 0, 600, 100}, {450, 75});
        expect("across", qBlue(coarse.pixel(299, 70)), 0);
        expect("across", qBlue(coarse.pixel(301, 70)), 50);
        check("across all", {0, 0, 1732, 600}, {1732, 600});
        const QImage beyond = check("beyond", {1632, 250, 200, 100}, {200, 100});
        expect("beyond", beyond.pixel(99, 49), own.at(2).pixel(399, 299));
        expect("beyond", beyond.pixel(100, 50), qRgb(0, 0, 0));
        check("nowhere", {5000, 0, 10, 10}, {10, 10});
        expect("empty", layout.picture({0, 0, 0, 10}, own).isNull(), true);
    }

    void trees()
    {
        const QList<WaylandWindow> tree =
            readSwayTree(R"({"type": "root", "rect": {"x": 0, "y": 0}, "nodes": [
            {"type": "output", "rect": {"x": 0, "y": 0}, "nodes": [
             {"type": "workspace", "rect": {"x": 0, "y": 0, "width": 800, "height": 600},
              "nodes": [
               {"id": 5, "pid": 50, "type": "con", "name": "tiled", "app_id": "a", "visible": true,
                "rect": {"x": 0, "y": 20, "width": 400, "height": 580},
                "deco_rect": {"x": 0, "y": 0, "width": 400, "height": 20},
                "window_rect": {"x": 2, "y": 0, "width": 396, "height": 578}},
               {"id": 6, "pid": 60, "type": "con", "name": "X", "app_id": null, "visible": true,
                "window_properties": {"class": "xterm"}, "fullscreen_mode": 1, "focused": true,
                "rect": {"x": 400, "y": 0, "width": 400, "height": 600}}],
              "floating_nodes": [
               {"id": 7, "pid": 70, "type": "floating_con", "name": "low", "app_id": "b",
                "visible": true, "rect": {"x": 10, "y": 10, "width": 50, "height": 50}},
               {"id": 8, "pid": 80, "type": "floating_con", "name": "high", "app_id": "c",
                "visible": false, "rect": {"x": 20, "y": 20, "width": 50, "height": 50}}]}]}]})");
        QStringList order;
        for (const WaylandWindow &window : tree)
            order.append(window.entry.name + u'/' + window.entry.owner);
        QCOMPARE(order, (QStringList{u"X/xterm"_s, u"high/c"_s, u"low/b"_s, u"tiled/a"_s}));
        QVERIFY(tree[0].isFocused && tree[0].entry.process == 60);
        QVERIFY(!tree[1].isVisible && tree[1].entry.number == 8);
        const WindowCatalogue::Entry tiled = tree[3].entry;
        QCOMPARE(tiled.bounds, QRectF(0, 0, 400, 600));
        QCOMPARE(tiled.frame, QMargins(2, 20, 2, 2));
        for (const char *broken :
             {"", "[]", "{\"nodes\": [7, null, {\"pid\": \"x\"}]}", "{\"nodes"})
            QVERIFY(readSwayTree(broken).size() <= 1);
    }
};

QTEST_GUILESS_MAIN(TestScreenLayout)
#include "test_screenlayout.moc"
