#include "helper/stitcher.h"

#include "helper/scrollpage.h"

#include <QTest>

using Kind = Movement::Kind;

class TestStitcher : public QObject
{
    Q_OBJECT

private slots:
    void wholePage();
};

// A page scrolled to its end in random steps comes out as it is.
void TestStitcher::wholePage()
{
    QRandomGenerator random(21);
    for (int round = 0; round < 40; ++round) {
        const QSize size(random.bounded(100, 600), random.bounded(200, 500));
        const Frame frame{.header = random.bounded(2) * random.bounded(50),
                          .footer = random.bounded(2) * random.bounded(40),
                          .sideBar = random.bounded(2) * 50,
                          .scrollBar = random.bounded(2) * 14,
                          .position = bool(random.bounded(2))};
        const QRect area = frame.content(size);
        const QImage page = textPage(area.width(), random.bounded(600, 3000), random.generate());
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
        while (offset < end) {
            const int step = std::min(end - offset, random.bounded(1, area.height() - 80));
            const Movement movement = stitcher.add(picture(offset + step));
            if (movement.kind != Kind::Moved)
                continue;
            QCOMPARE(movement.rows, step);
            offset += step;
        }
        const QImage result = stitcher.finish();
        QCOMPARE(result.size(), QSize(size.width(), frame.header + page.height() + frame.footer));
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

QTEST_MAIN(TestStitcher)
#include "test_stitcher.moc"
