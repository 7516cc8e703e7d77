#include "helper/movement.h"
#include "helper/scrollingarea.h"

#include "helper/scrollpage.h"
#include "rows.h"

#include <functional>

using namespace Qt::StringLiterals;
using Kind = Movement::Kind;

namespace {

constexpr QSize s_view(640, 480);

// Rows of a table, all alike but for the one at `odd`.
QImage table(int height, int period, int odd = -1)
{
    QImage page = plainPage(s_view.width(), height);
    for (int y = 0, line = 0; y < height; y += period, ++line) {
        fill(page, QRect(0, y, page.width(), 1), Qt::lightGray);
        for (int x = 12; x < page.width() - 60; x += 100)
            glyphs().number(page, x, y + 4, line == odd && x > 100 && x < 300 ? 123 : 98765);
    }
    return page;
}

QImage mapped(int height, const std::function<QRgb(int, int)> &color)
{
    QImage page = plainPage(s_view.width(), height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < page.width(); ++x)
            page.setPixel(x, y, color(x, y));
    return page;
}

// A wide list of numbered rows, whose names take a tenth of it: narrow evidence. A bar lies on row
// `marked` from edge to edge; with `hovered`, on the row that is at that height of the view.
QImage listView(int offset, int marked, int hovered = -1)
{
    constexpr int pitch = 24;
    QImage view = plainPage(1200, s_view.height());
    for (int row = offset / pitch; row * pitch < offset + view.height(); ++row) {
        const QRect bar(0, row * pitch - offset, view.width(), pitch);
        if (row == marked || (hovered >= 0 && bar.contains(0, hovered)))
            fill(view, bar, row == marked ? QColor(53, 132, 228) : QColor(235, 235, 235));
        glyphs().number(view, 10, bar.top() + 6, row * 7 + 10000);
        glyphs().number(view, 60, bar.top() + 6, row * row + 3);
    }
    return view;
}

// Few kinds of items, in an order without a rule.
QImage itemPage(int height)
{
    QImage page = plainPage(s_view.width(), height);
    QRandomGenerator random(17);
    for (int y = 0; y < height; y += 23) {
        fill(page, QRect(0, y, 640, 1), Qt::lightGray);
        glyphs().number(page, 10, y + 4, random.bounded(4) * 1111);
        glyphs().number(page, 300, y + 4, random.bounded(3) * 2222);
    }
    return page;
}

// Lines that differ in their number only, as a terminal's.
QImage numberedLines(int height)
{
    QImage page = plainPage(s_view.width(), height, Qt::black);
    for (int y = 0, line = 10000; y < page.height(); y += 16, ++line) {
        glyphs().number(page, 10, y, line, Qt::green);
        for (int x = 80; x < 400; x += 8)
            glyphs().draw(page, x, y, x / 8 % 20 + 15, Qt::lightGray);
    }
    return page;
}

// A table turned over its diagonal: its cells are numbered by bars, line by line. No line of a
// column has its like for itself, but most cells differ from the next.
QImage codedColumns(int length)
{
    constexpr int column = 100;
    constexpr int cell = 30;
    constexpr int bar = 3;
    constexpr int bits = 16;
    QImage page(s_view.width(), length, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    for (int y = 0; y < length; y += column) {
        painter.fillRect(0, y, page.width(), 1, Qt::lightGray);
        for (int x = 0; x < page.width(); x += cell) {
            const int number = x / cell * 24 + y / column;
            const int code = number << 4 | ((number ^ number >> 4 ^ number >> 8) & 15);
            for (int bit = 0; bit < bits; ++bit) {
                if (code >> bit & 1)
                    painter.fillRect(x + 9, y + 6 + bar * bit, 12, bar, Qt::black);
            }
        }
    }
    return page;
}

}  // namespace

class TestMovement : public QObject
{
    Q_OBJECT

private slots:
    void kinds()
    {
        const auto add = [](const QByteArray &name, const QImage &before, const QImage &after,
                            Kind kind, int rows = 0, int expected = 0) {
            const Movement movement = findMovement(before, after, expected);
            expect(name, int(movement.kind), int(kind));
            expect(name, movement.rows, rows);
            expect(name, movement.moved.isEmpty(), kind != Kind::Moved);
        };
        const auto scrolled = [&](const QByteArray &name, const QImage &page, int from, int rows,
                                  const Frame &frame = {}, Kind kind = Kind::Moved,
                                  int expected = 0) {
            add(name, frame.view(page, from, s_view), frame.view(page, from + rows, s_view), kind,
                kind == Kind::Moved ? rows : 0, expected);
        };
        const QImage text = textPage(s_view.width(), 3000);
        const Frame whole{
            .header = 60, .footer = 24, .sideBar = 60, .scrollBar = 15, .position = true};

        scrolled("text", text, 100, 120);
        scrolled("text, 1 row", text, 100, 1);
        scrolled("text, 37 rows", text, 100, 37);
        scrolled("text, nearly a view", text, 100, 420);
        scrolled("text, more than a view", text, 100, 500, {}, Kind::Lost);
        scrolled("text, two views", text, 0, 1000, {}, Kind::Lost);
        scrolled("text, downwards", text, 300, -120, {}, Kind::Lost);
        scrolled("text, a wrong guess", text, 100, 120, {}, Kind::Moved, 140);
        scrolled("sticky header and footer", text, 100, 200, {.header = 80, .footer = 40});
        scrolled("everything around", text, 100, 90, whole);
        scrolled("everything around, 1 row", text, 100, 1, whole);
        scrolled("everything around, downwards", text, 300, -90, whole, Kind::Lost);
        scrolled("everything around, more than a view", text, 100, 450, whole, Kind::Lost);
        scrolled("scroll bar", text, 0, 133, {.scrollBar = 15});
        scrolled("side bar", text, 0, 133, {.sideBar = 300});

        for (const int rows : {3, 20, 47, 160, 333}) {
            const QByteArray step = QByteArray::number(rows);
            const bool alike = rows % 20 == 0;
            scrolled("table, " + step, table(3000, 20), 200, rows, {},
                     alike ? Kind::Still : Kind::Doubtful);
            scrolled("table, a guess, " + step, table(3000, 20), 200, rows, {},
                     alike ? Kind::Still : Kind::Moved, rows);
            scrolled("table, a guess between, " + step, table(3000, 20), 200, rows, {},
                     alike ? Kind::Still : Kind::Doubtful, rows + 1);
            scrolled("table, odd line, " + step, table(3000, 20, 29), 200, rows);
            scrolled("table, odd line, wrong guess, " + step, table(3000, 20, 29), 200, rows, {},
                     Kind::Moved, rows + 20);
        }

        scrolled("coded columns", codedColumns(3000), 0, 267);
        scrolled("coded columns, backwards", codedColumns(3000), 567, -267, {}, Kind::Lost);

        const QImage numbered = numberedLines(3000);
        scrolled("numbered lines", numbered, 0, 16);
        scrolled("numbered lines, 3", numbered, 32, 48);
        scrolled("numbered lines, 20", numbered, 160, 320);
        scrolled("numbered lines, 25", numbered, 160, 400);

        QImage sparse = plainPage(s_view.width(), 3000);
        for (int y = 40; y < 3000; y += 170)
            for (int x = 30; x < 30 + y % 300; x += 8)
                glyphs().draw(sparse, x, y, (x * 7 + y) % 40, Qt::black);
        scrolled("mostly white", sparse, 0, 100);
        scrolled("mostly white, scroll bar", sparse, 200, 55, {.scrollBar = 15});
        scrolled("mostly white, everything around", sparse, 200, 55, whole);
        QImage word = plainPage(s_view.width(), 1000);
        glyphs().number(word, 100, 300, 31415);
        scrolled("one word", word, 0, 100);
        scrolled("one word, scroll bar", word, 0, 100, {.scrollBar = 15});

        QImage dark = plainPage(s_view.width(), 2000, QColor(30, 30, 34));
        writeText(dark, 5, 10, 600, QColor(210, 210, 190));
        scrolled("dark", dark, 100, 210, whole);

        scrolled("flat blocks", mapped(2000, [](int, int y) { return QRgb(y / 70 * 0x123457); }),
                 10, 90);
        // A single edge in sight, under a header that fills more rows than it does.
        scrolled("edge under a header",
                 mapped(2000, [](int, int y) { return y < 300 ? 0xff808080 : 0xffffffff; }), 0, 2,
                 {.header = 120}, Kind::Lost);
        for (const int rows : {234, 270})
            scrolled("items of few kinds, " + QByteArray::number(rows), itemPage(2000), 469, rows,
                     {.header = 40, .footer = 30, .scrollBar = 14});
        scrolled("gradient",
                 mapped(2000, [](int, int y) { return qRgb(y / 8, 255 - y / 8, y % 7); }), 10, 90);
        scrolled("gradient along the rows",
                 mapped(2000, [](int x, int) { return qRgb(x / 3, 9, 9); }), 10, 90, {},
                 Kind::Still);
        scrolled("blank", plainPage(s_view.width(), 2000), 10, 90, {}, Kind::Still);
        scrolled("noise",
                 mapped(2000,
                        [](int x, int y) {
                            return QRgb((quint32(x * 7919 + y * 104729) * 2654435761U) >> 8);
                        }),
                 10, 200);

        // Text beside a column that stays, and beside one that moves at its own pace.
        const QImage other = textPage(320, 3000, 9);
        const auto columns = [&](int offset, int second) {
            QImage view = Frame{}.view(text, offset, s_view);
            QPainter(&view).drawImage(320, 0, other, 0, second, 320, -1);
            return view;
        };
        add("column that stays", columns(50, 70), columns(140, 70), Kind::Moved, 90);
        add("columns apart", columns(50, 70), columns(140, 110), Kind::Lost);

        // Spots that change by themselves.
        const auto with = [&](int offset, const QRect &spot, QColor color) {
            QImage view = Frame{}.view(text, offset, s_view);
            fill(view, spot, color);
            return view;
        };
        const QRect caret(200, 103, 2, 14);
        add("caret", with(0, caret, Qt::red), with(0, {}, Qt::red), Kind::Still);
        add("caret, moved", with(0, caret, Qt::red), with(75, {}, Qt::red), Kind::Moved, 75);
        add("caret of two views", with(0, caret, Qt::red), with(75, caret, Qt::red), Kind::Moved,
            75);
        const auto animated = [&](int offset, int frame, const QPoint &corner) {
            QImage view = Frame{}.view(text, offset, s_view);
            QRandomGenerator random(frame);
            for (int y = 0; y < 64; ++y)
                for (int x = 0; x < 90; ++x)
                    view.setPixel(corner.x() + x, corner.y() + y, random.generate() | 0xff000000);
            return view;
        };
        for (const QPoint corner :
             {QPoint(0, 0), QPoint(550, 0), QPoint(0, 416), QPoint(550, 416)}) {
            const QByteArray name = "animation at " + QByteArray::number(corner.x()) + ' ' +
                                    QByteArray::number(corner.y());
            add(name, animated(30, 1, corner), animated(30, 2, corner), Kind::Still);
            add(name + ", moved", animated(30, 1, corner), animated(110, 2, corner), Kind::Moved,
                80);
        }
        const auto lined = [&](const QRect &spot) {
            QImage view = Frame{}.view(table(1000, 20), 0, s_view);
            fill(view, spot, Qt::red);
            return view;
        };
        add("caret on a table", lined(caret), lined({}), Kind::Still);
        // Many carets, as an editor of several lines at once has, whose lines look alike.
        QImage carets = numbered.copy(0, 0, 640, 480);
        for (int y = 32; y < 400; y += 48)
            fill(carets, {200, y, 2, 12}, Qt::red);
        add("carets on numbered lines", carets, numbered.copy(0, 0, 640, 480), Kind::Still);

        // What crosses the whole view, and is denied by a tenth of it.
        for (const int rows : {24, 72, 144, 312}) {
            const QByteArray step = QByteArray::number(rows);
            const auto list = [&](const QByteArray &name, int marked, int hovered = -1) {
                add(name + step, listView(0, marked, hovered), listView(rows, marked, hovered),
                    Kind::Moved, rows);
            };
            list("marked row that leaves, ", 0);
            list("marked row that stays in sight, ", 15);
            list("hovered row, ", -1, 300);
            list("hovered row at the top, ", -1, 10);
            list("hovered row at the end, ", -1, 470);
            list("marked and hovered, ", 0, 200);
        }
        // A bar that fades while it is looked at, over the text's end.
        const auto fading = [&](int offset, int grey) {
            QImage view = Frame{}.view(text, offset, s_view);
            fill(view, {590, offset / 6, 8, 80}, QColor(grey, grey, grey));
            return view;
        };
        add("fading bar", fading(0, 120), fading(120, 160), Kind::Moved, 120);
        add("a bar that fades away", fading(0, 120), with(0, {}, Qt::red), Kind::Still);
        // One for the columns, over a few lines on a page that is blank below them.
        QImage few = listView(0, 1).copy(0, 0, 640, 480);
        fill(few, {0, 72, 640, 408}, Qt::white);
        QImage underlined = few;
        fill(underlined, {0, 474, 250, 4}, Qt::gray);
        add("a bar for columns comes", few, underlined, Kind::Still);

        // The same words in other lines, other text, and a picture that came in between.
        add("reflow", textPage(640, 480, 3), textPage(500, 480, 3).copy(0, 0, 640, 480),
            Kind::Lost);
        add("another page", textPage(640, 480, 3), textPage(640, 480, 4), Kind::Lost);
        QImage pushed = Frame{}.view(text, 100, s_view);
        QPainter(&pushed).drawImage(0, 260, text, 0, 300, 640, 220);
        fill(pushed, QRect(0, 200, 640, 60), Qt::gray);
        add("pushed down", Frame{}.view(text, 20, s_view), pushed, Kind::Lost);
        // The last line of one page happens to be the first line of the next one.
        QImage first = textPage(640, 480, 3);
        QImage second = textPage(640, 480, 4);
        QPainter(&second).drawImage(0, 0, first, 0, 440, 640, 20);
        add("a line again", first, second, Kind::Lost);
    }

    // Steps that can't be known, on pages where much looks alike at some other distance. Whether
    // they are doubtful or lost matters less than that nothing is made of them.
    void neverGuessed()
    {
        QImage sparse = plainPage(s_view.width(), 3000);
        for (int y = 30; y < 3000; y += 300)
            glyphs().number(sparse, 60 + y % 200, y, y);
        const QImage items = itemPage(3000);
        const QImage numbered = numberedLines(3000);
        const QImage odd = table(3000, 20, 29);
        const QImage alike = table(3000, 23);
        for (const int header : {0, 50}) {
            const Frame frame{.header = header, .footer = 20, .scrollBar = 12, .position = true};
            for (const QImage *page :
                 {&std::as_const(sparse), &std::as_const(items), &numbered, &odd, &alike}) {
                for (const int rows : {-700, -333, -80, -48, 480, 496, 640, 777, 1100}) {
                    const Movement movement = findMovement(frame.view(*page, 800, s_view),
                                                           frame.view(*page, 800 + rows, s_view));
                    QVERIFY2(movement.kind != Kind::Moved,
                             qPrintable(u"%1 taken for %2"_s.arg(rows).arg(movement.rows)));
                    if (page != &odd)
                        QVERIFY2(movement.kind != Kind::Still, QByteArray::number(rows));
                }
            }
        }
        // The only odd line leaves, while all others come to lie on their like.
        QVERIFY(findMovement(Frame{}.view(odd, 560, s_view), Frame{}.view(odd, 660, s_view)).kind >
                Kind::Moved);
    }

    // Nothing that stays is ever taken for something that moved; and most of what moved is found.
    void bounds()
    {
        const QImage text = textPage(s_view.width(), 3000);
        const auto check = [&](const QByteArray &row, const Frame &frame) {
            const QRect content = frame.content(s_view);
            for (const int rows : {1, 2, 5, 11, 19, 40, 125, 310}) {
                for (int offset = 0; offset < 400; offset += 33) {
                    const Movement movement = findMovement(frame.view(text, offset, s_view),
                                                           frame.view(text, offset + rows, s_view));
                    expect(row, int(movement.kind), int(Kind::Moved));
                    expect(row, movement.rows, rows);
                    expect(row, content.contains(movement.moved), true);
                    const int missing = content.bottom() + 1 - movement.bottom;
                    expect(row, missing >= 0 && missing < 61, true);
                    expect(row, movement.moved.width() > content.width() - 60, true);
                }
            }
        };
        check("none", {});
        check("footer", {.footer = 30});
        check("status line", {.footer = 30, .position = true});
        check("all",
              {.header = 44, .footer = 21, .sideBar = 61, .scrollBar = 13, .position = true});
    }

    void area()
    {
        const Frame frame{.header = 44, .footer = 21, .sideBar = 61, .scrollBar = 13};
        QImage page = plainPage(s_view.width(), 3000);
        writeText(page, 1, 80, 400);
        const QImage before = frame.view(page, 0, s_view);
        const QImage after = frame.view(page, 100, s_view);
        const QRect area = scrollingArea(before, after, findMovement(before, after));
        const QRect content = frame.content(s_view);
        QCOMPARE(area.left(), content.left());
        QCOMPARE(area.right(), content.right());
        QVERIFY(content.contains(area));
        QVERIFY(area.height() > content.height() - 40);
        // What has its own ways in the midst does not end the area.
        QImage paused = Frame{}.view(page, 0, s_view);
        QImage playing = Frame{}.view(page, 10, s_view);
        fill(paused, {60, 150, 200, 150}, Qt::blue);
        fill(playing, {60, 150, 200, 150}, Qt::red);
        const QRect moved = findMovement(paused, playing).moved;
        QVERIFY2(moved.top() < 30 && moved.bottom() > 420, QByteArray::number(moved.height()));
        QVERIFY(scrollingArea(before, before, findMovement(before, before)).isEmpty());
    }

    // What has changed in place is told from what has scrolled, also where most of it looks alike.
    void inPlace()
    {
        const QImage text = textPage(s_view.width(), 1000);
        QImage loaded = text;
        fill(loaded, {40, 60, 400, 220}, Qt::blue);
        QVERIFY(isInPlace(text.copy(0, 0, 640, 480), loaded.copy(0, 0, 640, 480)));
        const Frame sticky{.header = 80, .footer = 40};
        QVERIFY(!isInPlace(sticky.view(text, 0, s_view), sticky.view(text, 90, s_view)));
        const QImage numbered = numberedLines(1000);
        for (const int rows : {16, 48, 160})
            QVERIFY(!isInPlace(numbered.copy(0, 0, 640, 480), numbered.copy(0, rows, 640, 480)));
        const QImage blank = plainPage(640, 480);
        QVERIFY(!isInPlace(blank, loaded.copy(0, 0, 640, 480)));
        QVERIFY(!isInPlace(text, blank));
    }

    void anyStep()
    {
        QRandomGenerator random(11);
        for (int i = 0; i < 300; ++i) {
            const QSize size(random.bounded(60, 700), random.bounded(120, 500));
            const QImage page = textPage(size.width(), 1500, random.generate());
            const Frame frame{.header = random.bounded(20), .footer = random.bounded(20)};
            const int offset = random.bounded(400);
            const int rows = random.bounded(1, 500);
            const Movement movement =
                findMovement(frame.view(page, offset, size), frame.view(page, offset + rows, size));
            // A short overlap may be too little to be sure, but what is told is right.
            if (movement.kind == Kind::Moved)
                QCOMPARE(movement.rows, rows);
            else
                QVERIFY(rows * 2 > size.height() - 80);
        }
    }

    void hostile()
    {
        const auto kindOf = [](const QImage &a, const QImage &b) {
            return int(findMovement(a, b).kind);
        };
        QCOMPARE(kindOf({}, {}), int(Kind::Lost));
        QCOMPARE(kindOf(plainPage(9, 9), {}), int(Kind::Lost));
        QCOMPARE(kindOf(plainPage(9, 9), plainPage(9, 10)), int(Kind::Lost));
        for (const QSize size :
             {QSize(1, 1), QSize(1, 5000), QSize(5000, 1), QSize(17, 2), QSize(33, 3)}) {
            const QImage white = plainPage(size.width(), size.height());
            const QImage black = plainPage(size.width(), size.height(), Qt::black);
            QCOMPARE(kindOf(white, white), int(Kind::Still));
            QVERIFY(kindOf(white, black) != int(Kind::Moved));
            QVERIFY(findMovement(white, black, 1 << 30).kind != Kind::Moved);
            QVERIFY(findMovement(white, black, -5).kind != Kind::Moved);
        }
        // The fourth byte of a pixel without alpha is anything.
        QImage page = textPage(100, 300);
        QImage other = page;
        for (int y = 0; y < 300; ++y)
            for (int x = 0; x < 100; ++x)
                reinterpret_cast<QRgb *>(other.scanLine(y))[x] &= 0xffffff | unsigned(x) << 24;
        QCOMPARE(kindOf(page, other), int(Kind::Still));
        const QImage small = page.copy(0, 0, 100, 200).convertToFormat(QImage::Format_RGB888);
        QCOMPARE(findMovement(small, other.copy(0, 50, 100, 200)).rows, 50);
    }
};

QTEST_MAIN(TestMovement)
#include "test_movement.moc"
