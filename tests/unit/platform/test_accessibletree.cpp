#include "platform/xdg/accessibletree.h"
#include "rows.h"

#include <climits>

class TestAccessibleTree : public QObject
{
    Q_OBJECT

private slots:
    void mapping()
    {
        const auto check = [&](const QByteArray &row, const QRect &told, const QRect &window,
                               const QRect &area, const QRect &pixels, bool sure) {
            const auto result = pixelMapping(told, window, {QPoint(0, 0), QPoint(1920, 0)});
            QVERIFY2(result.has_value(), row);
            expect(row, result->toPixels(area), pixels);
            expect(row, result->told, sure);
            QVERIFY2(QRectF(area).contains(result->toProgram(QPointF(pixels.center()))),
                     row.constData());
        };
        const QRect framed(549, 287, 502, 425);
        const QRect inside(10, 20, 100, 101);
        check("with the frame", framed, framed, {550, 324, 485, 383}, {550, 324, 485, 383}, true);
        check("without the frame", {550, 307, 500, 400}, framed, {560, 330, 90, 80},
              {560, 330, 90, 80}, true);
        check("from the window's corner: frames are thick at the top", {0, 0, 500, 400}, framed,
              inside, inside.translated(550, 311), false);
        check("from the frame's corner", {0, 0, 502, 425}, framed, inside,
              inside.translated(549, 287), false);
        check("twice, with an odd frame", {149, 43, 502, 413}, {299, 87, 1002, 825},
              {150, 70, 485, 383}, {300, 140, 970, 766}, true);
        check("one and a half: only whole pixels", {100, 120, 500, 400}, {149, 160, 752, 625},
              {121, 151, 284, 198}, {182, 227, 425, 296}, true);
        check("one and a quarter", {80, 80, 800, 480}, {99, 80, 1002, 625}, {84, 84, 400, 400},
              {105, 105, 500, 500}, true);
        check("a small window is not a smaller scale's with a thick frame", {80, 80, 200, 152},
              {99, 80, 252, 215}, {84, 84, 100, 100}, {105, 105, 125, 125}, true);
        // 1920 is where both ways of counting meet.
        check("scaled from its screen's corner", {2120, 200, 500, 400}, {2319, 380, 1002, 825},
              {2130, 210, 100, 100}, {2340, 420, 200, 200}, true);
        check("scaled from the window's corner", {0, 0, 500, 400}, {2319, 380, 1002, 821}, inside,
              {2340, 440, 200, 202}, false);
    }

    void differentWindow()
    {
        const auto check = [&](const QByteArray &row, const QRect &told) {
            QVERIFY2(!pixelMapping(told, {100, 100, 502, 425}, {QPoint()}).has_value(),
                     row.constData());
        };
        check("smaller than any frame leaves", {100, 100, 380, 400});
        check("lower", {100, 100, 500, 270});
        check("larger", {100, 100, 520, 400});
        check("not shown", {QPoint(INT_MIN, INT_MIN), QSize(500, 400)});
        check("not known", {-1, -1, -1, -1});
        check("nothing", {});
    }

    void area()
    {
        using Role = AccessibleRole;
        using Path = QList<AccessibleLevel>;
        const QRect pane(20, 30, 300, 200);
        const QRect shown(21, 31, 284, 184);
        const QRect bar(305, 31, 14, 184);
        const auto scrolls = [](const QRect &extents, const QRect &next, const QList<QRect> &bars) {
            return AccessibleLevel{.extents = extents, .next = next, .scrollBars = bars};
        };
        const auto lines = [&](Role role, const QRect &first, const QRect &last,
                               const QRect &header = {}) {
            return AccessibleLevel{
                .role = role, .extents = pane, .items = {first, last}, .header = header};
        };
        // In a window, which leads to the first of them.
        const auto check = [&](const QByteArray &row, const Path &path, const QRect &area) {
            const AccessibleLevel window{.role = Role::Filler,
                                         .extents = {0, 0, 500, 400},
                                         .next = path.constFirst().extents};
            expect(row, scrollingArea(Path{window} + path), area);
        };
        const AccessibleLevel around = scrolls(pane, shown, {bar});
        check("nothing scrolls", {scrolls(pane, shown, {})}, {});
        AccessibleLevel filler = scrolls(pane, shown, {bar, {21, 215, 284, 14}});
        filler.role = Role::Filler;
        check("beside its bar", {filler, {.role = Role::Filler, .extents = shown}}, shown);
        check("only sideways", {scrolls(pane, shown, {{21, 201, 284, 14}})}, {});
        check("bar on the left", {scrolls(pane, {35, 31, 284, 198}, {{21, 31, 14, 198}})},
              {35, 31, 284, 198});
        check("no content told: all but the bar", {scrolls(pane, {}, {{306, 30, 14, 200}})},
              {20, 30, 286, 200});
        check("no content told, bar on the left", {scrolls(pane, {}, {{20, 30, 14, 200}})},
              {34, 30, 286, 200});
        const QRect all(0, 0, 500, 400);
        check("another one's bar, before it",
              {scrolls(all, {300, 30, 200, 200}, {{200, 30, 14, 200}})}, {});
        check("another one's bar, behind it",
              {scrolls(all, {20, 30, 200, 200}, {{480, 30, 14, 200}})}, {});
        check("one of many rows beside the bar",
              {scrolls(pane, {20, 60, 286, 60}, {{306, 30, 14, 200}})}, {20, 30, 286, 200});
        check("header above the bar",
              {scrolls({50, 24, 400, 300}, {50, 24, 385, 300}, {{435, 49, 15, 275}})},
              {50, 49, 385, 275});
        const QRect high(20, -500, 300, 5100);
        check(
            "higher than what shows it, under the bar of what is around",
            {scrolls(pane, pane, {{314, 30, 6, 200}}), scrolls(pane, high, {}), {.extents = high}},
            {20, 30, 294, 200});
        check("cut off by what is around", {scrolls({0, 0, 300, 150}, pane, {}), around},
              {21, 31, 279, 119});
        const QRect text(0, 0, 490, 400);
        check("terminal beside the window's bar",
              {scrolls(all, text, {{490, 0, 10, 400}}), {.role = Role::Terminal, .extents = text}},
              text);
        check("terminal alone", {{.role = Role::Terminal, .extents = pane}}, pane);
        check("inner one too low",
              {around, scrolls({40, 60, 100, 30}, {40, 60, 90, 30}, {{130, 60, 10, 30}})}, shown);
        check("list without bars, at its end",
              {lines(Role::List, {21, -4000, 284, 14}, {21, 215, 284, 14})}, {21, 31, 284, 198});
        check("tree without bars: indented, with a header",
              {lines(Role::Tree, {41, 49, 264, 14}, {41, 4235, 264, 14}, {21, 31, 284, 18})},
              {21, 49, 284, 180});
        check("tree without bars: indented, no header",
              {lines(Role::Tree, {41, 30, 264, 14}, {41, 4235, 264, 14})}, {20, 30, 285, 200});
        check("list that fits", {lines(Role::List, {21, 31, 298, 14}, {21, 210, 298, 14})}, {});
    }

    void usable()
    {
        const auto check = [&](const QByteArray &row, const QRect &area, bool good) {
            expect(row, isUsable(area, {100, 100, 500, 400}, {120, 150}), good);
        };
        check("inside", {110, 130, 40, 40}, true);
        check("narrow", {110, 130, 39, 200}, false);
        check("low", {110, 130, 200, 39}, false);
        check("sticks out", {99, 130, 200, 200}, false);
        check("beside the point", {121, 130, 200, 200}, false);
        check("nothing", {}, false);
    }
};

QTEST_APPLESS_MAIN(TestAccessibleTree)
#include "test_accessibletree.moc"
