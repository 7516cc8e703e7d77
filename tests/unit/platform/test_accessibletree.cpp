#include "platform/xdg/accessibletree.h"

#include <QTest>

#include <climits>

class TestAccessibleTree : public QObject
{
    Q_OBJECT

private slots:
    void mapping_data();
    void mapping();
    void differentWindow_data();
    void differentWindow();
    void area_data();
    void area();
    void usable_data();
    void usable();
};

void TestAccessibleTree::mapping_data()
{
    QTest::addColumn<QRect>("told");
    QTest::addColumn<QRect>("window");
    QTest::addColumn<QRect>("area");  // in the program's coordinates
    QTest::addColumn<QRect>("pixels");
    QTest::addColumn<bool>("sure");
    const QRect framed(549, 287, 502, 425);
    const QRect inside(10, 20, 100, 101);
    // clang-format off
    QTest::newRow("with the frame")
        << framed << framed << QRect(550, 324, 485, 383) << QRect(550, 324, 485, 383) << true;
    QTest::newRow("without the frame")
        << QRect(550, 307, 500, 400) << framed << QRect(560, 330, 90, 80) << QRect(560, 330, 90, 80) << true;
    QTest::newRow("from the window's corner: frames are thick at the top")
        << QRect(0, 0, 500, 400) << framed << inside << inside.translated(550, 311) << false;
    QTest::newRow("from the frame's corner")
        << QRect(0, 0, 502, 425) << framed << inside << inside.translated(549, 287) << false;
    QTest::newRow("twice, with an odd frame")
        << QRect(149, 43, 502, 413) << QRect(299, 87, 1002, 825) << QRect(150, 70, 485, 383)
        << QRect(300, 140, 970, 766) << true;
    QTest::newRow("one and a half: only whole pixels")
        << QRect(100, 120, 500, 400) << QRect(149, 160, 752, 625) << QRect(121, 151, 284, 198)
        << QRect(182, 227, 425, 296) << true;
    QTest::newRow("one and a quarter")
        << QRect(80, 80, 800, 480) << QRect(99, 80, 1002, 625) << QRect(84, 84, 400, 400)
        << QRect(105, 105, 500, 500) << true;
    QTest::newRow("a small window is not a smaller scale's with a thick frame")
        << QRect(80, 80, 200, 152) << QRect(99, 80, 252, 215) << QRect(84, 84, 100, 100)
        << QRect(105, 105, 125, 125) << true;
    // 1920 is where both ways of counting meet.
    QTest::newRow("scaled from its screen's corner")
        << QRect(2120, 200, 500, 400) << QRect(2319, 380, 1002, 825) << QRect(2130, 210, 100, 100)
        << QRect(2340, 420, 200, 200) << true;
    QTest::newRow("scaled from the window's corner")
        << QRect(0, 0, 500, 400) << QRect(2319, 380, 1002, 821) << inside << QRect(2340, 440, 200, 202) << false;
    // clang-format on
}

void TestAccessibleTree::mapping()
{
    QFETCH(QRect, told);
    QFETCH(QRect, window);
    QFETCH(QRect, area);
    QFETCH(QRect, pixels);
    const auto result = pixelMapping(told, window, {QPoint(0, 0), QPoint(1920, 0)});
    QVERIFY(result.has_value());
    QCOMPARE(result->toPixels(area), pixels);
    QTEST(result->told, "sure");
    QVERIFY(QRectF(area).contains(result->toProgram(QPointF(pixels.center()))));
}

void TestAccessibleTree::differentWindow_data()
{
    QTest::addColumn<QRect>("told");
    QTest::newRow("smaller than any frame leaves") << QRect(100, 100, 380, 400);
    QTest::newRow("lower") << QRect(100, 100, 500, 270);
    QTest::newRow("larger") << QRect(100, 100, 520, 400);
    QTest::newRow("not shown") << QRect(QPoint(INT_MIN, INT_MIN), QSize(500, 400));
    QTest::newRow("not known") << QRect(-1, -1, -1, -1);
    QTest::newRow("nothing") << QRect();
}

void TestAccessibleTree::differentWindow()
{
    QFETCH(QRect, told);
    QVERIFY(!pixelMapping(told, {100, 100, 502, 425}, {QPoint()}).has_value());
}

void TestAccessibleTree::area_data()
{
    using Role = AccessibleRole;
    using Path = QList<AccessibleLevel>;
    QTest::addColumn<Path>("path");
    QTest::addColumn<QRect>("area");
    const QRect pane(20, 30, 300, 200);
    const QRect shown(21, 31, 284, 184);
    const QRect bar(305, 31, 14, 184);
    const QRect flatBar(21, 215, 284, 14);
    const auto window = [](const QRect &next) {
        return AccessibleLevel{.role = Role::Filler, .extents = {0, 0, 500, 400}, .next = next};
    };

    QTest::newRow("nothing scrolls")
        << Path{window(pane), {.extents = pane, .next = shown}} << QRect();
    QTest::newRow("beside its bar") << Path{window(pane),
                                            {.role = Role::Filler,
                                             .extents = pane,
                                             .next = shown,
                                             .scrollBars = {bar, flatBar}},
                                            {.role = Role::Filler, .extents = shown}}
                                    << shown;
    QTest::newRow("only sideways")
        << Path{window(pane),
                {.extents = pane, .next = shown, .scrollBars = {flatBar.translated(0, -14)}}}
        << QRect();
    QTest::newRow("bar on the left") << Path{window(pane),
                                             {.extents = pane,
                                              .next = {35, 31, 284, 198},
                                              .scrollBars = {QRect(21, 31, 14, 198)}}}
                                     << QRect(35, 31, 284, 198);
    QTest::newRow("no content told: all but the bar")
        << Path{window(pane), {.extents = pane, .scrollBars = {QRect(306, 30, 14, 200)}}}
        << QRect(20, 30, 286, 200);
    QTest::newRow("no content told, bar on the left")
        << Path{window(pane), {.extents = pane, .scrollBars = {QRect(20, 30, 14, 200)}}}
        << QRect(34, 30, 286, 200);
    QTest::newRow("another one's bar, before it") << Path{window({300, 30, 200, 200}),
                                                          {.extents = {0, 0, 500, 400},
                                                           .next = {300, 30, 200, 200},
                                                           .scrollBars = {QRect(200, 30, 14, 200)}}}
                                                  << QRect();
    QTest::newRow("another one's bar, behind it") << Path{window({20, 30, 200, 200}),
                                                          {.extents = {0, 0, 500, 400},
                                                           .next = {20, 30, 200, 200},
                                                           .scrollBars = {QRect(480, 30, 14, 200)}}}
                                                  << QRect();
    QTest::newRow("one of many rows beside the bar")
        << Path{window(pane),
                {.extents = pane,
                 .next = {20, 60, 286, 60},
                 .scrollBars = {QRect(306, 30, 14, 200)}}}
        << QRect(20, 30, 286, 200);
    QTest::newRow("header above the bar") << Path{window({50, 24, 400, 300}),
                                                  {.extents = {50, 24, 400, 300},
                                                   .next = {50, 24, 385, 300},
                                                   .scrollBars = {QRect(435, 49, 15, 275)}}}
                                          << QRect(50, 49, 385, 275);
    QTest::newRow("higher than what shows it, under the bar of what is around")
        << Path{window(pane),
                {.extents = pane, .next = pane, .scrollBars = {QRect(314, 30, 6, 200)}},
                {.extents = pane, .next = {20, -500, 300, 5100}},
                {.extents = {20, -500, 300, 5100}}}
        << QRect(20, 30, 294, 200);
    QTest::newRow("cut off by what is around")
        << Path{window({0, 0, 300, 150}),
                {.extents = {0, 0, 300, 150}, .next = pane},
                {.extents = pane, .next = shown, .scrollBars = {bar}}}
        << QRect(21, 31, 279, 119);
    QTest::newRow("terminal beside the window's bar")
        << Path{{.extents = {0, 0, 500, 400},
                 .next = {0, 0, 490, 400},
                 .scrollBars = {QRect(490, 0, 10, 400)}},
                {.role = Role::Terminal, .extents = {0, 0, 490, 400}}}
        << QRect(0, 0, 490, 400);
    QTest::newRow("terminal alone")
        << Path{window(pane), {.role = Role::Terminal, .extents = pane}} << pane;
    QTest::newRow("inner one too low")
        << Path{window(pane),
                {.extents = pane, .next = shown, .scrollBars = {bar}},
                {.extents = {40, 60, 100, 30},
                 .next = {40, 60, 90, 30},
                 .scrollBars = {QRect(130, 60, 10, 30)}}}
        << shown;
    QTest::newRow("list without bars, at its end")
        << Path{window(pane),
                {.role = Role::List,
                 .extents = pane,
                 .items = {QRect(21, -4000, 284, 14), QRect(21, 215, 284, 14)}}}
        << QRect(21, 31, 284, 198);
    QTest::newRow("tree without bars: indented, with a header")
        << Path{window(pane),
                {.role = Role::Tree,
                 .extents = pane,
                 .items = {QRect(41, 49, 264, 14), QRect(41, 4235, 264, 14)},
                 .header = {21, 31, 284, 18}}}
        << QRect(21, 49, 284, 180);
    QTest::newRow("tree without bars: indented, no header")
        << Path{window(pane),
                {.role = Role::Tree,
                 .extents = pane,
                 .items = {QRect(41, 30, 264, 14), QRect(41, 4235, 264, 14)}}}
        << QRect(20, 30, 285, 200);
    QTest::newRow("list that fits")
        << Path{window(pane),
                {.role = Role::List,
                 .extents = pane,
                 .items = {QRect(21, 31, 298, 14), QRect(21, 210, 298, 14)}}}
        << QRect();
}

void TestAccessibleTree::area()
{
    QFETCH(QList<AccessibleLevel>, path);
    QTEST(scrollingArea(path), "area");
}

void TestAccessibleTree::usable_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<bool>("good");
    QTest::newRow("inside") << QRect(110, 130, 40, 40) << true;
    QTest::newRow("narrow") << QRect(110, 130, 39, 200) << false;
    QTest::newRow("low") << QRect(110, 130, 200, 39) << false;
    QTest::newRow("sticks out") << QRect(99, 130, 200, 200) << false;
    QTest::newRow("beside the point") << QRect(121, 130, 200, 200) << false;
    QTest::newRow("nothing") << QRect() << false;
}

void TestAccessibleTree::usable()
{
    QFETCH(QRect, area);
    QTEST(isUsable(area, {100, 100, 500, 400}, {120, 150}), "good");
}

QTEST_APPLESS_MAIN(TestAccessibleTree)
#include "test_accessibletree.moc"
