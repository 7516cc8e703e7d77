#include "base/regionselection.h"
#include "rows.h"

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
    void drags()
    {
        const auto check = [&](const QByteArray &row, QPoint from, QPoint to, const QRect &region) {
            RegionSelection selection = marked({300, 300, 201, 101});
            drag(selection, from, to);
            expect(row, selection.region(), region);
        };
        const QRect before(300, 300, 201, 101);
        check("draw down and right", {10, 20}, {110, 70}, {10, 20, 100, 50});
        check("draw up and left", {110, 70}, {10, 20}, {10, 20, 100, 50});
        check("draw past far borders", {700, 500}, {900, 900}, {700, 500, 90, 90});
        check("draw past near borders", {50, 60}, {-9, -9}, {0, 0, 50, 60});
        // What ends on the last pixel ends at the edge behind it, and nothing else does.
        check("draw to the last pixel", {700, 500}, {789, 589}, {700, 500, 90, 90});
        check("draw to the one before", {700, 500}, {788, 588}, {700, 500, 88, 88});
        check("4: to the last column", {501, 350}, {789, 589}, {300, 300, 490, 101});
        check("5: to the last row", {501, 401}, {600, 589}, {300, 300, 300, 290});
        check("draw no width", {10, 20}, {10, 70}, before);
        check("draw no height", {10, 20}, {110, 20}, before);
        check("draw from just outside", {502, 320}, {602, 330}, {502, 320, 100, 10});
        check("move", {350, 350}, {360, 330}, {310, 280, 201, 101});
        check("move to near borders", {350, 350}, {-90, -90}, {0, 0, 201, 101});
        check("move to far borders", {350, 350}, {780, 1000}, {599, 499, 201, 101});
        check("move by the near edge", {300, 320}, {301, 320}, {301, 300, 201, 101});
        check("move by the far edge", {501, 320}, {502, 321}, {301, 301, 201, 101});
        check("1: crosses over", {303, 304}, {600, 500}, {501, 401, 99, 99});
        check("2: past the border", {400, 300}, {0, -30}, {300, -30, 201, 431});
        check("3: free", {501, 300}, {550, 250}, {300, 250, 250, 151});
        check("4: past the border", {501, 350}, {850, 600}, {300, 300, 550, 101});
        check("5: clamped", {501, 401}, {850, 700}, {300, 300, 490, 290});
        check("6: crosses over", {400, 401}, {5, 260}, {300, 260, 201, 40});
        check("7: free", {300, 401}, {280, 500}, {280, 300, 221, 200});
        check("8: one axis only", {300, 350}, {250, 0}, {250, 300, 251, 101});
    }

    // A release can overtake the paint of its drag: what nobody has seen is not stored.
    void bandCountsOnceSeen()
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

    void square()
    {
        const auto check = [&](const QByteArray &row, QPoint start, QPoint pointer, QPoint end) {
            RegionSelection selection;
            selection.setExtent({{850, 5000}, s_overlay, s_frame});
            selection.press(at(start), Qt::LeftButton);
            // The rule looks at the global position alone.
            selection.move({{1, 1}, pointer, s_command});
            expect(row, selection.endPoint(), end);
            selection.release(at({1, 1}, s_command));
            expect(row, selection.endPoint(), end);
        };
        const QPoint mid(300, 200);
        check("across, right up", mid, {400, 150}, {400, 100});
        check("across, right up, limit", mid, {560, 150}, {500, 0});
        check("across, right down", mid, {500, 250}, {500, 400});
        check("across, right down, limit", mid, {750, 250}, {700, 600});
        check("across, left up", mid, {150, 150}, {150, 50});
        check("across, left up, limit", mid, {50, 150}, {100, 0});
        check("across, left down", mid, {100, 250}, {100, 400});
        check("across, left down, limit", {620, 400}, {400, 450}, {820, 600});
        check("limit off the surface", {700, 400}, {400, 450}, {850, 600});
        check("down, right up", mid, {350, 50}, {450, 50});
        check("down, right up, limit", {700, 400}, {750, 150}, {800, 100});
        check("down, right down", mid, {350, 500}, {600, 500});
        check("down, right down, limit", {700, 100}, {750, 400}, {800, 200});
        check("down, left up", {300, 400}, {250, 150}, {50, 150});
        check("down, left up, limit", {100, 500}, {50, 200}, {0, 400});
        check("down, left down", mid, {250, 450}, {50, 450});
        check("down, left down, limit", {100, 200}, {60, 500}, {0, 260});
        check("a tie counts as across", {500, 550}, {400, 650}, {550, 600});
        check("level: unchanged", mid, {400, 200}, {0, 0});
        check("upright: unchanged", mid, {300, 400}, {0, 0});
    }

    void commandPress()
    {
        const auto check = [&](const QByteArray &row, QPoint from, QPoint to, QPoint press,
                               Qt::KeyboardModifiers modifiers, QPoint start, QPoint end) {
            RegionSelection selection;
            selection.setExtent({s_surface, s_overlay, s_frame});
            drag(selection, from, to);
            selection.press(at(press, modifiers), Qt::LeftButton);
            expect(row, selection.startPoint(), start);
            expect(row, selection.endPoint(), end);
        };
        const QPoint tl(100, 100);
        const QPoint br(150, 140);
        const QPoint tr(150, 100);
        const QPoint bl(100, 140);
        const QPoint origin(0, 0);
        check("right of it, above", tl, br, {200, 50}, s_command, bl, tr);
        check("right of it, below", br, tl, {200, 200}, s_command, tl, br);
        check("left of it, above", tl, br, {50, 50}, s_command, br, tl);
        check("left of it, below", tl, br, {50, 120}, s_command, tr, bl);
        check("anchor decides", bl, tr, {50, 120}, s_command, br, tl);
        check("level with it", br, tl, {200, 100}, s_command, br, tl);
        check("no region", origin, origin, {200, 200}, s_command, origin, origin);
        check("not Command alone", tl, br, {200, 50}, (s_command | Qt::ShiftModifier), {200, 50},
              origin);
    }

    void keys()
    {
        const auto check = [&](const QByteArray &row, const QRect &before, int key,
                               Qt::KeyboardModifiers modifiers, const QRect &after,
                               Request request) {
            RegionSelection selection = marked(before);
            const Request made = selection.key(key, modifiers);
            expect(row, selection.region(), after);
            expect(row, made, request);
        };
        const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
        const Qt::KeyboardModifiers alt = Qt::AltModifier;
        const QRect some(50, 60, 100, 80);
        const QRect top(50, 0, 100, 80);
        const QRect empty(0, 0, 0, 0);
        const QRect beyond(300, 590, 100, 5);     // y is not below the surface's height
        const QRect touching(300, 500, 100, 90);  // its far edge is
        check("left at the top", top, int(Qt::Key_Left), s_none, top, Request::None);
        check("right at the bottom", beyond, int(Qt::Key_Right), s_none, beyond, Request::None);
        check("shift+left", some, int(Qt::Key_Left), shift, {50, 60, 99, 80}, Request::None);
        check("shift+right", some, int(Qt::Key_Right), shift, {50, 60, 101, 80}, Request::None);
        check("shift+up", some, int(Qt::Key_Up), shift, {50, 60, 100, 79}, Request::None);
        check("shift+down", some, int(Qt::Key_Down), shift, {50, 60, 100, 81}, Request::None);
        check("shift+up, empty", empty, int(Qt::Key_Up), shift, empty, Request::None);
        check("shift+right, bottom", touching, int(Qt::Key_Right), shift, touching, Request::None);
        check("alt+left", some, int(Qt::Key_Left), alt, {1, 60, 149, 80}, Request::None);
        check("alt+left, no nudge", top, int(Qt::Key_Left), alt, {1, 0, 150, 80}, Request::None);
        check("alt+right", some, int(Qt::Key_Right), alt, {51, 60, 738, 80}, Request::None);
        check("alt+up", some, int(Qt::Key_Up), alt, {50, 1, 100, 139}, Request::None);
        check("alt+down", some, int(Qt::Key_Down), alt, {50, 61, 100, 528}, Request::None);
        check("alt+down, beyond", beyond, int(Qt::Key_Down), alt, {300, 590, 100, -1},
              Request::None);
        check("shift+alt+left", some, int(Qt::Key_Left), (shift | alt), {1, 60, 149, 80},
              Request::None);
        check("command+left nudges", some, int(Qt::Key_Left), s_command, {49, 60, 100, 80},
              Request::None);
        check("backspace", some, int(Qt::Key_Backspace), s_none, {50, 60, 99, 79}, Request::None);
        check("shift+backspace", some, int(Qt::Key_Backspace), shift, empty, Request::Clear);
        check("return", some, int(Qt::Key_Return), s_none, some, Request::Accept);
        check("return, empty", empty, int(Qt::Key_Return), s_none, empty, Request::None);
        check("keypad's enter", some, int(Qt::Key_Enter), s_none, some, Request::None);
        check("escape", some, int(Qt::Key_Escape), s_none, some, Request::Close);
        check("command+e", some, int(Qt::Key_E), s_command, some, Request::ChangeViewMode);
    }

    void caption()
    {
        const auto check = [&](const QByteArray &row, const QRect &band, QSize frame, QPoint place,
                               const QList<QRect> &screens = {}) {
            RegionSelection selection;
            selection.setExtent({s_surface, s_overlay, frame, screens});
            selection.press(at(farCorner(band)), Qt::LeftButton);
            QVERIFY2(!selection.move(at(QPoint(band.x(), farCorner(band).y()))).has_value(),
                     row.constData());
            const std::optional<RegionSelection::Caption> dragged =
                selection.move(at(band.topLeft()));
            QVERIFY2(dragged.has_value(), row);
            expect(row, dragged->place, place);
            expect(row, dragged->width, u"%1 px"_s.arg(band.width()));
            expect(row, dragged->height, u"%1 px"_s.arg(band.height()));
            selection.painted();
            selection.release(at(band.topLeft()));
            const RegionSelection::Caption keyed = selection.regionCaption();
            expect(row, keyed.place, place);
            expect(row, keyed.width, u":%1 px"_s.arg(band.width()));
            expect(row, keyed.height, u":%1 px"_s.arg(band.height()));
            selection.setExtent({s_surface, s_overlay, frame});
            // After a key the band, which a click leaves elsewhere, decides about the left border.
            const QPoint right(frame.width() + 1, 590);
            selection.press(at(right), Qt::LeftButton);
            selection.release(at(right));
            expect(row, selection.regionCaption().place.x(), farCorner(band).x() - frame.width());
        };
        const QSize doubled(482, 82);
        check("at the left", {41, 100, 200, 50}, s_frame, {0, 165});
        check("right edges meet", {42, 100, 200, 50}, s_frame, {1, 165});
        check("just fits under", {41, 500, 200, 44}, s_frame, {0, 559});
        check("above", {41, 56, 200, 489}, s_frame, {0, 0});
        check("inside", {41, 55, 200, 490}, s_frame, {0, 489});
        check("scale 2: above", {83, 97, 400, 407}, doubled, {1, 0});
        // A low screen and a high one, which no one sees below and above.
        const QList<QRect> stepped{{0, 0, 400, 400}, {400, 150, 400, 450}};
        check("two screens, under both", {300, 200, 200, 100}, s_frame, {259, 315}, stepped);
        check("above, on the low one", {41, 200, 200, 190}, s_frame, {0, 144}, stepped);
        check("inside, on the low one", {41, 30, 200, 360}, s_frame, {0, 334}, stepped);
        check("across, more on the low one", {300, 100, 150, 280}, s_frame, {159, 44}, stepped);
        check("across, more on the high one", {390, 100, 100, 280}, s_frame, {400, 395}, stepped);
    }

    void shapes()
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

    void cursor()
    {
        const RegionSelection selection = marked({100, 100, 201, 101});
        const auto cursorAt = [&](QPoint pos, QPoint pointer) {
            return selection.cursor({pos, pointer, s_none}, QRect(QPoint(300, 300), s_frame));
        };
        const QPoint away(700, 10);
        const QPoint inside(150, 150);
        const QList<QPoint> handles{{100, 100}, {200, 100}, {301, 100}, {301, 150},
                                    {301, 201}, {200, 201}, {100, 201}, {100, 150}};
        const QList<Qt::CursorShape> shapes{Qt::SizeFDiagCursor, Qt::SizeVerCursor,
                                            Qt::SizeBDiagCursor, Qt::SizeHorCursor};
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

    void otherButtons()
    {
        RegionSelection selection = marked({100, 100, 200, 100});
        selection.press(at({10, 10}), Qt::LeftButton | Qt::RightButton);
        QVERIFY(!selection.isPressed());
        QVERIFY(!selection.move(at({50, 50})).has_value());
        QCOMPARE(selection.startPoint(), QPoint(100, 100));
    }

    // One of each, in step: what the one does and the other doesn't.
    void ellipseDiffers()
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
        QCOMPARE(ellipse.move(at({500, 400})).value_or(RegionSelection::Caption()).width,
                 u"0 px"_s);

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
};

QTEST_APPLESS_MAIN(TestRegionSelection)
#include "test_regionselection.moc"
