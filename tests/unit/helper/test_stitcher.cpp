#include "helper/stitcher.h"

#include "helper/scrollpage.h"
#include "rows.h"

using Kind = Movement::Kind;

namespace {

constexpr QSize s_view(400, 300);

QImage viewOf(const QImage &page, int offset) { return Frame{}.view(page, offset, s_view); }

}  // namespace

class TestStitcher : public QObject
{
    Q_OBJECT

private slots:
    // A page scrolled to its end in random steps comes out as it is.
    void wholePage()
    {
        QRandomGenerator random(21);
        for (int round = 0; round < 40; ++round) {
            const QSize size(random.bounded(200, 600), random.bounded(200, 500));
            const Frame frame{.header = random.bounded(2) * random.bounded(50),
                              .footer = random.bounded(2) * random.bounded(40),
                              .sideBar = random.bounded(2) * 50,
                              .scrollBar = random.bounded(2) * 14,
                              .position = bool(random.bounded(2))};
            const QRect area = frame.content(size);
            const QImage page =
                textPage(area.width(), random.bounded(600, 3000), random.generate());
            const int end = page.height() - area.height();
            const auto picture = [&](int offset) {
                QImage view = frame.view(page, offset, size);
                if (random.bounded(2))
                    fill(view, QRect(area.left() + 5, area.top() + 60, 2, 14), Qt::black);
                return view;
            };

            ScrollStitcher stitcher(30000);
            stitcher.add(picture(0));
            int offset = 0;
            for (int tries = 0; offset < end; ++tries) {
                QVERIFY(tries < 1000);
                const int step = std::min(end - offset, random.bounded(1, area.height() - 80));
                const Movement movement = stitcher.add(picture(offset + step));
                if (movement.kind != Kind::Moved)
                    continue;
                QCOMPARE(movement.rows, step);
                offset += step;
            }
            const QImage result = stitcher.finish();
            QCOMPARE(result.size(),
                     QSize(size.width(), frame.header + page.height() + frame.footer));
            const QRect compared = area.adjusted(8, 0, 0, 0);
            QCOMPARE(result.copy(compared.left(), frame.header, compared.width(), page.height()),
                     page.copy(8, 0, compared.width(), page.height()));
            const QImage last = frame.view(page, end, size);
            QCOMPARE(result.copy(0, result.height() - frame.footer, size.width(), frame.footer),
                     last.copy(0, size.height() - frame.footer, size.width(), frame.footer));
            QCOMPARE(result.copy(0, 0, size.width(), frame.header),
                     last.copy(0, 0, size.width(), frame.header));
        }
    }

    // A few words on a wide page: what is between them is never certain to have moved, and is kept.
    void sparsePage()
    {
        QImage page = plainPage(s_view.width(), 2000);
        for (int y = 30, word = 4711; y < page.height(); y += 200, word += 999)
            glyphs().number(page, 20 + word % 300, y, word);
        const Frame frame{.footer = 30};
        const QSize size(s_view.width(), 330);
        ScrollStitcher stitcher(30000);
        stitcher.add(frame.view(page, 0, size));
        // Short steps tell little of where the view ends, and long ones go far beyond that.
        int offset = 0;
        for (int tries = 0; offset < 1700 && tries < 200; ++tries) {
            const int next = std::min(offset + (tries % 2 ? 140 : 20), 1700);
            if (stitcher.add(frame.view(page, next, size)).kind == Kind::Moved)
                offset = next;
            QCOMPARE(stitcher.rows(), offset + size.height());
        }
        QCOMPARE(offset, 1700);
        const QImage result = stitcher.finish();
        QCOMPARE(result.height(), 2030);
        QCOMPARE(result.copy(0, 0, s_view.width(), 2000), page);
    }

    // A picture that is there only some time after the view has come to rest.
    void lateContent()
    {
        const QImage page = textPage(s_view.width(), 1000);
        QImage complete = page;
        const QRect late(250, 330, 60, 50);
        fill(complete, late, Qt::red);
        QImage waiting = page;
        fill(waiting, late, Qt::lightGray);

        ScrollStitcher stitcher(30000);
        stitcher.add(viewOf(waiting, 0));
        QCOMPARE(stitcher.add(viewOf(waiting, 120)).rows, 120);
        QCOMPARE(int(stitcher.add(viewOf(complete, 120)).kind), int(Kind::Still));
        QCOMPARE(stitcher.rows(), 420);
        for (int offset = 220; offset <= 700; offset += 120)
            QCOMPARE(int(stitcher.add(viewOf(complete, offset)).kind), int(Kind::Moved));
        QCOMPARE(stitcher.finish(), complete);
    }

    // Rows near the end that were pushed out of the view while it scrolled are not left behind.
    void pushedDown()
    {
        const QImage page = textPage(s_view.width(), 1000);
        QImage grown = plainPage(s_view.width(), 1080);
        QPainter painter(&grown);
        painter.drawImage(0, 0, page, 0, 0, -1, 320);
        painter.fillRect(0, 320, 400, 80, Qt::darkGreen);
        painter.drawImage(0, 400, page, 0, 320);
        painter.end();
        ScrollStitcher stitcher(30000);
        stitcher.add(viewOf(page, 0));
        QCOMPARE(stitcher.add(viewOf(page, 50)).rows, 50);
        for (int offset = 50; offset < 780;) {
            offset = std::min(offset + 50, 780);
            QCOMPARE(int(stitcher.add(viewOf(grown, offset)).kind), int(Kind::Moved));
        }
        QCOMPARE(stitcher.finish(), grown);
    }

    // What can't be matched leaves the picture as it was, and the next view goes on from there.
    void unknown()
    {
        const QImage page = textPage(s_view.width(), 1000);
        ScrollStitcher stitcher(30000);
        QVERIFY(stitcher.finish().isNull());
        QCOMPARE(int(stitcher.add({}).kind), int(Kind::Lost));
        QCOMPARE(stitcher.rows(), 0);
        stitcher.add(viewOf(page, 0));
        QCOMPARE(stitcher.add(viewOf(page, 90)).rows, 90);
        QCOMPARE(int(stitcher.add(viewOf(page, 600)).kind), int(Kind::Lost));
        QCOMPARE(int(stitcher.add(viewOf(page, 0)).kind), int(Kind::Lost));
        QCOMPARE(int(stitcher.add(plainPage(400, 299)).kind), int(Kind::Lost));
        QCOMPARE(stitcher.rows(), 390);
        QCOMPARE(stitcher.add(viewOf(page, 190)).rows, 100);
        QCOMPARE(stitcher.finish(), page.copy(0, 0, 400, 490));
    }

    void limits()
    {
        const QImage page = textPage(s_view.width(), 700);
        for (const int limit : {1, 299, 300, 301, 555, 700, 701, 2000}) {
            const QByteArray row = QByteArray::number(limit);
            const int height = std::min(limit, 700);
            ScrollStitcher stitcher(limit);
            for (int offset = 0; offset <= 400; offset += 100)
                stitcher.add(viewOf(page, offset));
            expect(row, stitcher.isFull(), limit <= 700);
            expect(row, stitcher.rows(), height);
            expect(row, stitcher.finish(), page.copy(0, 0, s_view.width(), height));
            expect(row, stitcher.rows(), 0);
        }
    }

    void offsets()
    {
        const Frame frame{.header = 40, .footer = 25, .scrollBar = 12, .position = true};
        const QImage page = textPage(388, 2000);
        ScrollStitcher stitcher(30000);
        QVERIFY(!stitcher.offsetOf(frame.view(page, 0, s_view)));
        stitcher.add(frame.view(page, 0, s_view));
        QCOMPARE(stitcher.offsetOf(frame.view(page, 0, s_view)), 0);
        for (int offset = 100; offset <= 1000; offset += 100)
            QCOMPARE(stitcher.add(frame.view(page, offset, s_view)).rows, 100);
        for (const int offset : {0, 1, 333, 990})
            QCOMPARE(stitcher.offsetOf(frame.view(page, offset, s_view)), offset);
        QVERIFY(!stitcher.offsetOf(frame.view(page, 1400, s_view)));
        QVERIFY(!stitcher.offsetOf(frame.view(textPage(388, 400, 9), 0, s_view)));
        QVERIFY(!stitcher.offsetOf(plainPage(10, 10)));

        // A page with the same text twice.
        QImage twice = textPage(s_view.width(), 1200, 4);
        QPainter(&twice).drawImage(0, 720, twice.copy(0, 80, 400, 400));
        ScrollStitcher second(30000);
        for (int offset = 0; offset <= 900; offset += 60)
            second.add(viewOf(twice, offset));
        QVERIFY(!second.offsetOf(viewOf(twice, 100)));
        QVERIFY(!second.offsetOf(viewOf(twice, 740)));
        QCOMPARE(second.offsetOf(viewOf(twice, 450)), 450);
    }
};

QTEST_MAIN(TestStitcher)
#include "test_stitcher.moc"
