#include "base/regionselection.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Request = RegionSelection::Request;

namespace {

constexpr Qt::KeyboardModifiers s_none = Qt::NoModifier;
constexpr Qt::KeyboardModifiers s_command = Qt::ControlModifier;
constexpr QSize s_surface(790, 590);
constexpr QSize s_overlay(800, 600);
constexpr QSize s_frame(241, 41);

RegionSelection::Input at(QPoint pos, Qt::KeyboardModifiers modifiers = s_none)
{
    return {pos, pos, modifiers};
}

QPoint farCorner(const QRect &rect) { return rect.topLeft() + QPoint(rect.width(), rect.height()); }

// By way of another place: a drag counts from where it began, and not from its last step.
void drag(RegionSelection &selection, QPoint from, QPoint to)
{
    selection.press(at(from), Qt::LeftButton);
    selection.move(at({123, 45}));
    selection.move(at(to));
    selection.painted();
    selection.release(at(to));
}

// A selection whose band was dragged from the region's top left corner, wherever that is.
RegionSelection marked(const QRect &region, const RegionPolicy &policy = s_rectanglePolicy)
{
    RegionSelection selection(policy);
    selection.setExtent({{5000, 5000}, {5000, 5000}, s_frame});
    drag(selection, region.topLeft(), farCorner(region));
    selection.setExtent({s_surface, s_overlay, s_frame});
    return selection;
}

}  // namespace

class TestRegionSelection : public QObject
{
    Q_OBJECT
private slots:
    void drags_data();
    void drags();
    void bandCountsOnceSeen();
    void square_data();
    void square();
    void commandPress_data();
    void commandPress();
    void keys_data();
    void keys();
    void caption_data();
    void caption();
    void shapes();
    void cursor();
    void otherButtons();
    void ellipseDiffers();
};

void TestRegionSelection::drags_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRect>("region");
    const QRect before(300, 300, 201, 101);
    // clang-format off
    QTest::newRow("draw down and right")    << QPoint(10, 20)   << QPoint(110, 70)   << QRect(10, 20, 100, 50);
    QTest::newRow("draw up and left")       << QPoint(110, 70)  << QPoint(10, 20)    << QRect(10, 20, 100, 50);
    QTest::newRow("draw past far borders")  << QPoint(700, 500) << QPoint(900, 900)  << QRect(700, 500, 90, 90);
    QTest::newRow("draw past near borders") << QPoint(50, 60)   << QPoint(-9, -9)    << QRect(0, 0, 50, 60);
    QTest::newRow("draw no width")          << QPoint(10, 20)   << QPoint(10, 70)    << before;
    QTest::newRow("draw no height")         << QPoint(10, 20)   << QPoint(110, 20)   << before;
    QTest::newRow("draw from just outside") << QPoint(502, 320) << QPoint(602, 330)  << QRect(502, 320, 100, 10);
    QTest::newRow("move")                   << QPoint(350, 350) << QPoint(360, 330)  << QRect(310, 280, 201, 101);
    QTest::newRow("move to near borders")   << QPoint(350, 350) << QPoint(-90, -90)  << QRect(0, 0, 201, 101);
    QTest::newRow("move to far borders")    << QPoint(350, 350) << QPoint(780, 1000) << QRect(599, 499, 201, 101);
    QTest::newRow("move by the near edge")  << QPoint(300, 320) << QPoint(301, 320)  << QRect(301, 300, 201, 101);
    QTest::newRow("move by the far edge")   << QPoint(501, 320) << QPoint(502, 321)  << QRect(301, 301, 201, 101);
    QTest::newRow("1: crosses over")        << QPoint(303, 304) << QPoint(600, 500)  << QRect(501, 401, 99, 99);
    QTest::newRow("2: past the border")     << QPoint(400, 300) << QPoint(0, -30)    << QRect(300, -30, 201, 431);
    QTest::newRow("3: free")                << QPoint(501, 300) << QPoint(550, 250)  << QRect(300, 250, 250, 151);
    QTest::newRow("4: past the border")     << QPoint(501, 350) << QPoint(850, 600)  << QRect(300, 300, 550, 101);
    QTest::newRow("5: clamped")             << QPoint(501, 401) << QPoint(850, 700)  << QRect(300, 300, 490, 290);
    QTest::newRow("6: crosses over")        << QPoint(400, 401) << QPoint(5, 260)    << QRect(300, 260, 201, 40);
    QTest::newRow("7: free")                << QPoint(300, 401) << QPoint(280, 500)  << QRect(280, 300, 221, 200);
    QTest::newRow("8: one axis only")       << QPoint(300, 350) << QPoint(250, 0)    << QRect(250, 300, 251, 101);
    // clang-format on
}

void TestRegionSelection::drags()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    RegionSelection selection = marked({300, 300, 201, 101});
    drag(selection, from, to);
    QTEST(selection.region(), "region");
}

// A release can overtake the paint of its drag: what nobody has seen is not stored.
void TestRegionSelection::bandCountsOnceSeen()
{
    RegionSelection selection;
    selection.setExtent({s_surface, s_overlay, s_frame});
    selection.press(at({10, 10}), Qt::LeftButton);
    selection.move(at({50, 50}));
    selection.release(at({50, 50}));
    QCOMPARE(selection.region(), QRect(0, 0, 0, 0));

    selection.press(at({10, 10}), Qt::LeftButton);
    selection.move(at({10, 10}));
    selection.painted();  // of a band that is a point
    QVERIFY(!selection.hasRegion());
    selection.move(at({50, 50}));
    selection.painted();
    selection.release(at({50, 50}));
    QCOMPARE(selection.region(), QRect(10, 10, 40, 40));

    // A drag of a handle makes the region uncounted again.
    selection.press(at({50, 50}), Qt::LeftButton);
    selection.move(at({90, 90}));
    selection.release(at({90, 90}));
    QCOMPARE(selection.region(), QRect(10, 10, 40, 40));
    QVERIFY(!selection.hasRegion());
}

void TestRegionSelection::square_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QPoint>("end");
    const QPoint mid(300, 200);
    // clang-format off
    QTest::newRow("across, right up")          << mid << QPoint(400, 150) << QPoint(400, 100);
    QTest::newRow("across, right up, limit")   << mid << QPoint(560, 150) << QPoint(500, 0);
    QTest::newRow("across, right down")        << mid << QPoint(500, 250) << QPoint(500, 400);
    QTest::newRow("across, right down, limit") << mid << QPoint(750, 250) << QPoint(700, 600);
    QTest::newRow("across, left up")           << mid << QPoint(150, 150) << QPoint(150, 50);
    QTest::newRow("across, left up, limit")    << mid << QPoint(50, 150)  << QPoint(100, 0);
    QTest::newRow("across, left down")         << mid << QPoint(100, 250) << QPoint(100, 400);
    QTest::newRow("across, left down, limit")  << QPoint(620, 400) << QPoint(400, 450) << QPoint(820, 600);
    QTest::newRow("limit off the surface")     << QPoint(700, 400) << QPoint(400, 450) << QPoint(850, 600);
    QTest::newRow("down, right up")            << mid << QPoint(350, 50)  << QPoint(450, 50);
    QTest::newRow("down, right up, limit")     << QPoint(700, 400) << QPoint(750, 150) << QPoint(800, 100);
    QTest::newRow("down, right down")          << mid << QPoint(350, 500) << QPoint(600, 500);
    QTest::newRow("down, right down, limit")   << QPoint(700, 100) << QPoint(750, 400) << QPoint(800, 200);
    QTest::newRow("down, left up")             << QPoint(300, 400) << QPoint(250, 150) << QPoint(50, 150);
    QTest::newRow("down, left up, limit")      << QPoint(100, 500) << QPoint(50, 200)  << QPoint(0, 400);
    QTest::newRow("down, left down")           << mid << QPoint(250, 450) << QPoint(50, 450);
    QTest::newRow("down, left down, limit")    << QPoint(100, 200) << QPoint(60, 500)  << QPoint(0, 260);
    QTest::newRow("a tie counts as across")    << QPoint(500, 550) << QPoint(400, 650) << QPoint(550, 600);
    QTest::newRow("level: unchanged")          << mid << QPoint(400, 200) << QPoint(0, 0);
    QTest::newRow("upright: unchanged")        << mid << QPoint(300, 400) << QPoint(0, 0);
    // clang-format on
}

void TestRegionSelection::square()
{
    QFETCH(QPoint, start);
    QFETCH(QPoint, pointer);
    QFETCH(QPoint, end);
    RegionSelection selection;
    selection.setExtent({{850, 5000}, s_overlay, s_frame});
    selection.press(at(start), Qt::LeftButton);
    // The rule looks at the global position alone.
    selection.move({{1, 1}, pointer, s_command});
    QCOMPARE(selection.endPoint(), end);
    selection.release(at({1, 1}, s_command));
    QCOMPARE(selection.endPoint(), end);
}

void TestRegionSelection::commandPress_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QPoint>("press");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QPoint>("end");
    const QPoint tl(100, 100);
    const QPoint br(150, 140);
    const QPoint tr(150, 100);
    const QPoint bl(100, 140);
    const QPoint origin(0, 0);
    // clang-format off
    QTest::newRow("right of it, above") << tl << br << QPoint(200, 50)  << s_command << bl << tr;
    QTest::newRow("right of it, below") << br << tl << QPoint(200, 200) << s_command << tl << br;
    QTest::newRow("left of it, above")  << tl << br << QPoint(50, 50)   << s_command << br << tl;
    QTest::newRow("left of it, below")  << tl << br << QPoint(50, 120)  << s_command << tr << bl;
    QTest::newRow("anchor decides")     << bl << tr << QPoint(50, 120)  << s_command << br << tl;
    QTest::newRow("level with it")      << br << tl << QPoint(200, 100) << s_command << br << tl;
    QTest::newRow("no region")          << origin << origin << QPoint(200, 200) << s_command << origin << origin;
    QTest::newRow("not Command alone")  << tl << br << QPoint(200, 50)
        << (s_command | Qt::ShiftModifier) << QPoint(200, 50) << origin;
    // clang-format on
}

void TestRegionSelection::commandPress()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(QPoint, press);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    RegionSelection selection;
    selection.setExtent({s_surface, s_overlay, s_frame});
    drag(selection, from, to);
    selection.press(at(press, modifiers), Qt::LeftButton);
    QTEST(selection.startPoint(), "start");
    QTEST(selection.endPoint(), "end");
}

void TestRegionSelection::keys_data()
{
    QTest::addColumn<QRect>("before");
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QRect>("after");
    QTest::addColumn<Request>("request");
    const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
    const Qt::KeyboardModifiers alt = Qt::AltModifier;
    const QRect some(50, 60, 100, 80);
    const QRect top(50, 0, 100, 80);
    const QRect empty(0, 0, 0, 0);
    const QRect beyond(300, 590, 100, 5);     // y is not below the surface's height
    const QRect touching(300, 500, 100, 90);  // its far edge is
    // clang-format off
    QTest::newRow("left at the top")     << top   << int(Qt::Key_Left)  << s_none << top << Request::None;
    QTest::newRow("right at the bottom") << beyond << int(Qt::Key_Right) << s_none << beyond << Request::None;
    QTest::newRow("shift+left")          << some  << int(Qt::Key_Left)  << shift << QRect(50, 60, 99, 80)  << Request::None;
    QTest::newRow("shift+right")         << some  << int(Qt::Key_Right) << shift << QRect(50, 60, 101, 80) << Request::None;
    QTest::newRow("shift+up")            << some  << int(Qt::Key_Up)    << shift << QRect(50, 60, 100, 79) << Request::None;
    QTest::newRow("shift+down")          << some  << int(Qt::Key_Down)  << shift << QRect(50, 60, 100, 81) << Request::None;
    QTest::newRow("shift+up, empty")     << empty << int(Qt::Key_Up)    << shift << empty << Request::None;
    QTest::newRow("shift+right, bottom") << touching << int(Qt::Key_Right) << shift << touching << Request::None;
    QTest::newRow("alt+left")            << some  << int(Qt::Key_Left)  << alt << QRect(1, 60, 149, 80)  << Request::None;
    QTest::newRow("alt+left, no nudge")  << top   << int(Qt::Key_Left)  << alt << QRect(1, 0, 150, 80)   << Request::None;
    QTest::newRow("alt+right")           << some  << int(Qt::Key_Right) << alt << QRect(51, 60, 738, 80) << Request::None;
    QTest::newRow("alt+up")              << some  << int(Qt::Key_Up)    << alt << QRect(50, 1, 100, 139) << Request::None;
    QTest::newRow("alt+down")            << some  << int(Qt::Key_Down)  << alt << QRect(50, 61, 100, 528) << Request::None;
    QTest::newRow("alt+down, beyond")    << beyond << int(Qt::Key_Down) << alt << QRect(300, 590, 100, -1) << Request::None;
    QTest::newRow("shift+alt+left")      << some  << int(Qt::Key_Left)  << (shift | alt) << QRect(1, 60, 149, 80) << Request::None;
    QTest::newRow("command+left nudges") << some  << int(Qt::Key_Left)  << s_command << QRect(49, 60, 100, 80) << Request::None;
    QTest::newRow("backspace")           << some  << int(Qt::Key_Backspace) << s_none << QRect(50, 60, 99, 79) << Request::None;
    QTest::newRow("shift+backspace")     << some  << int(Qt::Key_Backspace) << shift << empty << Request::Clear;
    QTest::newRow("return")              << some  << int(Qt::Key_Return) << s_none << some << Request::Accept;
    QTest::newRow("return, empty")       << empty << int(Qt::Key_Return) << s_none << empty << Request::None;
    QTest::newRow("keypad's enter")      << some  << int(Qt::Key_Enter)  << s_none << some << Request::None;
    QTest::newRow("escape")              << some  << int(Qt::Key_Escape) << s_none << some << Request::Close;
    QTest::newRow("command+e")           << some  << int(Qt::Key_E) << s_command << some << Request::ChangeViewMode;
    // clang-format on
}

void TestRegionSelection::keys()
{
    QFETCH(QRect, before);
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    RegionSelection selection = marked(before);
    const Request request = selection.key(key, modifiers);
    QTEST(selection.region(), "after");
    QTEST(request, "request");
}

void TestRegionSelection::caption_data()
{
    QTest::addColumn<QRect>("band");
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QPoint>("place");
    QTest::addColumn<QList<QRect>>("screens");
    const QSize doubled(482, 82);
    const auto row = [](const char *name, const QRect &band, QSize frame, QPoint place,
                        const QList<QRect> &screens = {}) {
        QTest::newRow(name) << band << frame << place << screens;
    };
    row("at the left", {41, 100, 200, 50}, s_frame, {0, 165});
    row("right edges meet", {42, 100, 200, 50}, s_frame, {1, 165});
    row("just fits under", {41, 500, 200, 44}, s_frame, {0, 559});
    row("above", {41, 56, 200, 489}, s_frame, {0, 0});
    row("inside", {41, 55, 200, 490}, s_frame, {0, 489});
    row("scale 2: above", {83, 97, 400, 407}, doubled, {1, 0});
    // A low screen and a high one, which no one sees below and above.
    const QList<QRect> stepped{{0, 0, 400, 400}, {400, 150, 400, 450}};
    row("two screens, under both", {300, 200, 200, 100}, s_frame, {259, 315}, stepped);
    row("above, on the low one", {41, 200, 200, 190}, s_frame, {0, 144}, stepped);
    row("inside, on the low one", {41, 30, 200, 360}, s_frame, {0, 334}, stepped);
    row("across, more on the low one", {300, 100, 150, 280}, s_frame, {159, 44}, stepped);
    row("across, more on the high one", {390, 100, 100, 280}, s_frame, {400, 395}, stepped);
}

void TestRegionSelection::caption()
{
    QFETCH(QRect, band);
    QFETCH(QSize, frame);
    QFETCH(QPoint, place);
    RegionSelection selection;
    QFETCH(QList<QRect>, screens);
    selection.setExtent({s_surface, s_overlay, frame, screens});
    selection.press(at(farCorner(band)), Qt::LeftButton);
    QVERIFY(!selection.move(at(QPoint(band.x(), farCorner(band).y()))).has_value());
    const std::optional<RegionSelection::Caption> dragged = selection.move(at(band.topLeft()));
    QVERIFY(dragged.has_value());
    QCOMPARE(dragged->place, place);
    QCOMPARE(dragged->width, u"%1 px"_s.arg(band.width()));
    QCOMPARE(dragged->height, u"%1 px"_s.arg(band.height()));
    selection.painted();
    selection.release(at(band.topLeft()));
    const RegionSelection::Caption keyed = selection.regionCaption();
    QCOMPARE(keyed.place, place);
    QCOMPARE(keyed.width, u":%1 px"_s.arg(band.width()));
    QCOMPARE(keyed.height, u":%1 px"_s.arg(band.height()));
    selection.setExtent({s_surface, s_overlay, frame});
    // After a key the band, which a click leaves elsewhere, decides about the left border.
    const QPoint right(frame.width() + 1, 590);
    selection.press(at(right), Qt::LeftButton);
    selection.release(at(right));
    QCOMPARE(selection.regionCaption().place.x(), farCorner(band).x() - frame.width());
}

void TestRegionSelection::shapes()
{
    const QRect region(300, 300, 40, 50);
    QVERIFY(RegionSelection().shapes().isEmpty());
    RegionSelection selection = marked(region);
    QCOMPARE(selection.shapes(), QList<QRect>{region});
    selection.press(at({90, 80}), Qt::LeftButton);
    selection.move(at({90, 80}));
    QCOMPARE(selection.shapes(), (QList<QRect>{{90, 80, 0, 0}, region}));
    selection.move(at({10, 20}));
    QCOMPARE(selection.shapes(), (QList<QRect>{{10, 20, 80, 60}}));
    selection.key(Qt::Key_A, s_none);  // takes the band away until the next move
    QVERIFY(selection.shapes().isEmpty());
    selection.clear();
    selection.release(at({10, 20}));
    QVERIFY(selection.shapes().isEmpty());
    QVERIFY(selection.hasRegion());
}

void TestRegionSelection::cursor()
{
    const RegionSelection selection = marked({100, 100, 201, 101});
    const auto cursorAt = [&](QPoint pos, QPoint pointer) {
        return selection.cursor({pos, pointer, s_none}, QRect(QPoint(300, 300), s_frame));
    };
    const QPoint away(700, 10);
    const QPoint inside(150, 150);
    const QList<QPoint> handles{{100, 100}, {200, 100}, {301, 100}, {301, 150},
                                {301, 201}, {200, 201}, {100, 201}, {100, 150}};
    const QList<Qt::CursorShape> shapes{Qt::SizeFDiagCursor, Qt::SizeVerCursor, Qt::SizeBDiagCursor,
                                        Qt::SizeHorCursor};
    for (int i = 0; i < handles.size(); ++i)
        QCOMPARE(cursorAt(handles[i], inside).shape, shapes[i % 4]);
    QCOMPARE(cursorAt({97, 96}, away).shape, Qt::SizeFDiagCursor);
    QCOMPARE(cursorAt({97, 95}, away).shape, Qt::CrossCursor);
    // Off the handles the global position counts.
    QCOMPARE(cursorAt(away, inside).shape, Qt::ArrowCursor);
    QCOMPARE(cursorAt(inside, away).shape, Qt::CrossCursor);
    QVERIFY(!cursorAt(away, inside).onFrame);
    QVERIFY(cursorAt(away, {400, 320}).onFrame);
}

void TestRegionSelection::otherButtons()
{
    RegionSelection selection = marked({100, 100, 200, 100});
    selection.press(at({10, 10}), Qt::LeftButton | Qt::RightButton);
    QVERIFY(!selection.isPressed());
    QVERIFY(!selection.move(at({50, 50})).has_value());
    QCOMPARE(selection.startPoint(), QPoint(100, 100));
}

// One of each, in step: what the one does and the other doesn't.
void TestRegionSelection::ellipseDiffers()
{
    const QRect region(100, 100, 200, 100);
    RegionSelection rectangle = marked(region);
    RegionSelection ellipse = marked(region, s_ellipsePolicy);
    QCOMPARE(rectangle.key(Qt::Key_A, s_none), ellipse.key(Qt::Key_A, s_none));
    QCOMPARE(rectangle.regionCaption().width, u":200 px"_s);
    QCOMPARE(ellipse.regionCaption().width, u":200"_s);
    QCOMPARE(ellipse.regionCaption().height, u":100"_s);

    // In a corner, outside the ellipse: the cursor says so, and a press moves the region.
    const QPoint corner(112, 108);
    QCOMPARE(rectangle.cursor(at(corner), {}).shape, Qt::ArrowCursor);
    QCOMPARE(ellipse.cursor(at(corner), {}).shape, Qt::CrossCursor);
    QCOMPARE(ellipse.cursor(at({200, 150}), {}).shape, Qt::ArrowCursor);
    QCOMPARE(ellipse.cursor(at({300, 200}), {}).shape, Qt::SizeFDiagCursor);
    ellipse.press(at(corner), Qt::LeftButton);
    QCOMPARE(ellipse.hitZone(), RegionSelection::s_inside);
    ellipse.release(at(corner));

    // An edge beyond the border, and a press with Command that would begin there.
    for (RegionSelection *selection : {&rectangle, &ellipse}) {
        drag(*selection, {100, 150}, {-20, 150});
        selection->press(at({400, 300}, s_command), Qt::LeftButton);
    }
    QCOMPARE(rectangle.startPoint(), QPoint(-20, 100));
    QCOMPARE(ellipse.startPoint(), QPoint(0, 100));

    for (RegionSelection *selection : {&rectangle, &ellipse}) {
        selection->release(at({400, 300}, s_command));
        selection->press(at({500, 300}), Qt::LeftButton);
    }
    QVERIFY(!rectangle.move(at({500, 400})).has_value());
    QCOMPARE(ellipse.move(at({500, 400})).value_or(RegionSelection::Caption()).width, u"0 px"_s);

    // A press whose release never came, and the next one that hits nothing.
    for (RegionSelection *selection : {&rectangle, &ellipse}) {
        selection->release(at({500, 400}));
        selection->press(at({300, 150}), Qt::LeftButton);
        QCOMPARE(selection->hitZone(), 4);
        selection->press(at({600, 500}), Qt::LeftButton);
    }
    QCOMPARE(rectangle.hitZone(), 0);
    QCOMPARE(ellipse.hitZone(), 4);
}

QTEST_APPLESS_MAIN(TestRegionSelection)
#include "test_regionselection.moc"
