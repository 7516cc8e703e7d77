// Taking what the user scrolls by, against a window that a test moves as a hand would.

#include "fakedesktop.h"
#include "helper/handcapture.h"
#include "helper/scrollpage.h"
#include "rows.h"

#include <algorithm>
#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_number = 42;
constexpr int s_lookTime = 25;  // ms that a look takes, beside the pause after it

// A window that lies on a page where `path` says, by the time since the first look.
class HandWindow
{
public:
    QImage page{};
    QRect bounds{50, 40, 700, 500};
    Frame frame{};
    QRect button{};    // lies over the page
    int titleBar = 0;  // what of the header is the window manager's
    std::function<QPoint(qint64)> path{};
    std::function<void(qint64)> onLook{};
    int looks = 0;

    explicit HandWindow(FakeDesktop &desktop)
    {
        desktop.windows->told = [this](auto, int) { return entries(); };
        desktop.pictures->taken = [this](int) { return look(); };
    }

private:
    QList<WindowCatalogue::Entry> entries() const
    {
        if (bounds.isEmpty())
            return {};
        return {{.number = s_number, .bounds = bounds, .frame = {0, titleBar, 0, 0}, .process = 3}};
    }

    QImage look()
    {
        ++looks;
        services().clock->pause(s_lookTime);
        const qint64 now = services().clock->now();
        if (m_start < 0)
            m_start = now;
        if (onLook)
            onLook(now - m_start);
        if (bounds.isEmpty())
            return {};
        const QSize size = bounds.size();
        const QSize room = page.size() - frame.content(size).size();
        const QPoint wanted = path(now - m_start);
        const QPoint at(std::clamp(wanted.x(), 0, room.width()),
                        std::clamp(wanted.y(), 0, room.height()));
        QImage view = frame.view(page, at, size);
        fill(view, button, Qt::darkGray);
        return view;
    }

    qint64 m_start = -1;
};

// From place to place in straight lines, at so many pixels a second, with a rest at each.
std::function<QPoint(qint64)> walk(const QList<QPoint> &places, int speed)
{
    return [=](qint64 time) {
        constexpr int rest = 100;  // ms
        auto left = static_cast<double>(time);
        for (qsizetype i = 0; i + 1 < places.size(); ++i) {
            const QPointF way = places[i + 1] - places[i];
            const auto leg = std::floor(1000 * std::hypot(way.x(), way.y()) / speed);
            if (left < leg)
                return (places[i] + way * left / leg).toPoint();
            left -= leg + rest;
            if (left < 0)
                return places[i + 1];
        }
        return places.last();
    };
}

}  // namespace

class TestHandCapture : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        FakeDesktop desktop;
        m_window = std::make_unique<HandWindow>(desktop);
    }

    // In both directions each way, and slantwise.
    void follows()
    {
        const auto check = [&](const QByteArray &row, const QList<QPoint> &places, int speed) {
            init();
            // Slantwise a bar is over something else at each look, and belongs to none of it.
            if (speed == 3000)
                m_window->frame = {.footer = 24, .scrollBar = 14};
            const QSize view = m_window->frame.content(m_window->bounds.size()).size();
            QRect all;
            for (const QPoint &place : places)
                all |= QRect(place, view);
            // Of which the last line is no blank one.
            m_window->page = textPage(all.width(), all.height(), 2);
            m_window->path = walk(places, speed);
            if (speed == 1500)
                m_window->button = {400, 200, 60, 90};
            qint64 end = 0;
            for (qsizetype i = 0; i + 1 < places.size(); ++i)
                end += 2000LL * (places[i] - places[i + 1]).manhattanLength() / speed + 200;
            HandCapture hands({.window = s_number});
            const ScrollCapture::Result result = takeFor(hands, end);
            expect(row, result.note, QString());
            expect(row, result.picture, m_window->page);
        };
        const QList<QPoint> upright{{0, 900}, {0, 8000}, {0, 0}};
        check("500 a second", QList<QPoint>{{0, 300}, {0, 900}, {0, 0}}, 500);
        check("2,000 a second", upright, 2000);
        check("8,000 a second", upright, 8000);
        check("across", QList<QPoint>{{700, 0}, {3000, 0}, {0, 0}}, 2000);
        check(
            "both, beside bars",
            QList<QPoint>{{600, 400}, {0, 0}, {600, 30}, {20, 380}, {600, 400}, {0, 400}, {600, 0}},
            3000);
        check("both, a button over it",
              QList<QPoint>{{0, 0}, {600, 0}, {600, 200}, {0, 200}, {0, 400}, {600, 400}}, 1500);
    }

    // A jump beyond what two looks share is not guessed at; the way back is shown, and leads on.
    void losesAndFinds()
    {
        m_window->page = textPage(700, 6000);
        // At its foot there is nothing to be recognised.
        fill(m_window->page, {0, 1250, 700, 300}, Qt::white);
        m_window->path = [](qint64 time) {
            if (time < 1000)
                return QPoint(0, static_cast<int>(time));
            if (time < 2500)
                return QPoint(0, 4000 + static_cast<int>(time % 100));
            // Back somewhat further than where it was lost, and on.
            return QPoint(0, 700 + static_cast<int>((time - 2500) / 2));
        };
        HandCapture hands(target());
        QStringList told;
        int rowsWhileLost = 0;
        QImage shown;
        connect(&hands, &HandCapture::progressed, this, [&](const QString &text) {
            told.append(text);
            if (hands.isLost()) {
                shown = hands.overview({200, 100});
                rowsWhileLost = static_cast<int>(told.size());
            }
        });
        const ScrollCapture::Result result = takeFor(hands, 6500);
        QCOMPARE(result.note, QString());
        QCOMPARE(result.picture, m_window->page.copy(0, 0, 700, result.picture.height()));
        QVERIFY(result.picture.height() > 3100 && result.picture.height() < 3250);
        // The last text of the last known view, in half its size.
        QVERIFY(rowsWhileLost > 0 && rowsWhileLost < told.size());
        QCOMPARE(shown.size(), QSize(200, 100));
        bool isFound = false;
        for (int foot = 1225; foot <= 1250 && !isFound; ++foot)
            isFound =
                m_window->page.copy(0, foot - 200, 400, 200)
                    .convertToFormat(shown.format())
                    .scaled(200, 100, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) == shown;
        QVERIFY(isFound);
    }

    // The area is the whole window in its frame: what stays at its edges comes once, or not at all
    // where it would not reach along the content.
    void whatStays()
    {
        const auto check = [&](const QByteArray &row, const Frame &frame, bool isUp) {
            init();
            m_window->frame = frame;
            m_window->titleBar = frame.header / 2;
            const int header = frame.header - m_window->titleBar;
            const QRect content = frame.content(m_window->bounds.size());
            m_window->page = textPage(content.width(), 2000);
            const int lowest = 2000 - content.height();
            m_window->path = [=](qint64 time) {
                const int at = static_cast<int>(std::min<qint64>(time, lowest));
                return QPoint(0, isUp ? lowest - at : at);
            };
            HandCapture hands({.window = s_number});
            const ScrollCapture::Result result = takeFor(hands, lowest + 200);
            expect(row, result.note, QString());
            const QImage view = frame.view(m_window->page, {}, m_window->bounds.size());
            expect(row, result.picture.size(),
                   QSize(content.width(), 2000 + header + frame.footer));
            expect(row, result.picture.copy(0, header, content.width(), 2000), m_window->page);
            expect(row, result.picture.copy(0, 0, content.width(), header),
                   view.copy(content.x(), m_window->titleBar, content.width(), header));
        };
        check("header, footer", Frame{.header = 50, .footer = 24}, false);
        check("header, footer, up", Frame{.header = 50, .footer = 24}, true);
        check("scroll bar", Frame{.scrollBar = 14}, false);
        check("all, and a side bar",
              Frame{.header = 50, .footer = 24, .sideBar = 60, .scrollBar = 14}, true);
    }

    void ends()
    {
        const auto check = [&](const QByteArray &row, const QString &how, bool keeps, bool told) {
            init();
            m_window->page = textPage(700, 2500);
            m_window->path = [&](qint64 time) {
                return QPoint(0,
                              how == u"lost" && time > 700 ? 2000 : std::min<int>(600, int(time)));
            };
            HandCapture hands(target());
            constexpr qint64 begin = 1000;
            qint64 last = 0;
            m_window->onLook = [&](qint64 now) {
                last = now;
                if (now < begin || how == u"idle")
                    return;
                if (how == u"keep" || how == u"lost")
                    hands.keep();
                else if (how == u"discard")
                    hands.discard();
                else if (how == u"closed")
                    m_window->bounds = {};
                else
                    m_window->bounds.setWidth(650);
            };
            const ScrollCapture::Result result = hands.run();
            expect(row, !result.picture.isNull(), keeps);
            expect(row, !result.note.isEmpty(), told);
            if (!result.picture.isNull())
                expect(row, result.picture, m_window->page.copy(0, 0, 700, 1100));
            expect(row, result.note.contains(QLocale().toString(1100)), how == u"lost");
            if (how == u"idle")
                QVERIFY2(last >= 60000 && last < 61000, row);
            else
                QVERIFY2(last < begin + 100, row);
        };
        check("Return", u"keep"_s, true, false);
        check("Escape", u"discard"_s, false, false);
        check("Return, lost", u"lost"_s, true, true);
        check("idle", u"idle"_s, true, true);
        check("closed", u"closed"_s, true, true);
        check("another size", u"size"_s, true, true);
    }

    // What is beyond is left out, and said; what is within is still followed.
    void limit()
    {
        const QImage page = textPage(900, 2000);
        const QSize view(500, 300);
        Mosaic narrow(700, qint64{700} * 640);
        for (const QPoint at :
             {QPoint(0, 0), QPoint(120, 100), QPoint(240, 200), QPoint(360, 300), QPoint(200, 420),
              QPoint(100, 540), QPoint(90, 400), QPoint(0, 300)})
            QVERIFY(narrow.add(page.copy({at, view}), {{}, view}) != Mosaic::Sight::Unclear);
        QVERIFY(narrow.isFull());
        const QImage taken = narrow.finish();
        QCOMPARE(taken.size(), QSize(700, 640));
        const QRect seen(0, 420, 700, 120);
        QCOMPARE(taken.copy(seen).convertToFormat(QImage::Format_RGB32), page.copy(seen));
    }

    // Lines that differ by their numbers alone: a wrong distance explains nearly all of a view.
    // With a line's number in each of its columns, one further across does as well as the one
    // straight below.
    void listing()
    {
        const auto check = [&](const QByteArray &row, bool repeats) {
            init();
            QImage page = plainPage(700, 17 * 400);
            for (int line = 0; line < 400; ++line) {
                glyphs().number(page, 20, 17 * line + 4, line);
                for (int x = repeats ? 60 : 100; x < 690; x += repeats ? 40 : 60)
                    glyphs().number(page, x, 17 * line + 4, repeats ? line : 31415);
            }
            m_window->page = page;
            m_window->path = [](qint64 time) {
                // By whole lines, and once by a hundred and a few.
                const int line = static_cast<int>(time / 12);
                return QPoint(0, 17 * (time < 2000   ? line
                                       : time < 3000 ? 255 + line / 10
                                                     : line - 110));
            };
            HandCapture hands(target());
            const ScrollCapture::Result result = takeFor(hands, 5000);
            expect(row, result.note, QString());
            QVERIFY2(result.picture.height() > 5000, row);
            expect(row, result.picture, page.copy(0, 0, 700, result.picture.height()));
        };
        check("numbers at the left", false);
        check("the same in each column", true);
    }

    // A table whose headings go along one way each, with both scroll bars: over the top and down
    // the left they are as long as the cells that have been seen.
    void sheet()
    {
        constexpr int heading = 24;
        constexpr int side = 50;
        constexpr int bar = 14;
        const QSize cell(80, 24);
        const QSize view(900, 600);
        const QSize shown(view.width() - side - bar, view.height() - heading - bar);
        QImage whole = plainPage(side + 1500 + shown.width(), heading + 1500 + shown.height());
        fill(whole, {0, 0, whole.width(), heading}, Qt::lightGray);
        fill(whole, {0, 0, side, whole.height()}, Qt::lightGray);
        for (int y = heading; y < whole.height(); y += cell.height()) {
            glyphs().number(whole, 4, y + 6, y);
            fill(whole, {0, y + cell.height() - 1, whole.width(), 1}, Qt::gray);
            for (int x = side; x < whole.width(); x += cell.width()) {
                if ((x / cell.width() * 7 + y / cell.height()) % 3)
                    glyphs().number(whole, x + 10, y + 6, (x * 31 + y * 17) % 99999);
            }
        }
        for (int x = side; x < whole.width(); x += cell.width()) {
            glyphs().number(whole, x + 10, 6, x);
            fill(whole, {x + cell.width() - 1, 0, 1, whole.height()}, Qt::gray);
        }
        const auto look = [&](QPoint at) {
            QImage result = plainPage(view.width(), view.height(), QColor(240, 240, 240));
            QPainter painter(&result);
            painter.drawImage(0, 0, whole, 0, 0, side, heading);
            painter.drawImage(side, 0, whole, side + at.x(), 0, shown.width(), heading);
            painter.drawImage(0, heading, whole, 0, heading + at.y(), side, shown.height());
            painter.drawImage(QPoint(side, heading), whole,
                              QRect(at + QPoint(side, heading), shown));
            painter.fillRect(view.width() - bar + 2, heading + at.y() / 5, 10, 120, Qt::darkGray);
            painter.fillRect(side + at.x() / 4, view.height() - bar + 2, 150, 10, Qt::darkGray);
            return result;
        };
        const auto path = walk(
            {{0, 0}, {0, 1500}, {1500, 1500}, {1500, 0}, {750, 0}, {750, 1000}, {0, 1000}, {0, 0}},
            1600);
        Mosaic mosaic(30000, 400'000'000);
        for (int time = 0; time < 6500; time += 45)
            QVERIFY(mosaic.add(look(path(time)), {{}, view}) != Mosaic::Sight::Unclear);
        QCOMPARE(mosaic.finish(), whole);
    }

private:
    ScrollCapture::Target target() const
    {
        return {.window = s_number,
                .area = m_window->frame.content(m_window->bounds.size())
                            .translated(m_window->bounds.topLeft())};
    }
    /// Runs a capture that is kept after so many milliseconds of the window's time.
    ScrollCapture::Result takeFor(HandCapture &hands, qint64 time)
    {
        m_window->onLook = [&hands, time](qint64 now) {
            if (now >= time)
                hands.keep();
        };
        return hands.run();
    }

    std::unique_ptr<HandWindow> m_window{};
};

QTEST_MAIN(TestHandCapture)
#include "test_handcapture.moc"
