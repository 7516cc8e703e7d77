// Taking all that scrolls, against a window that a test moves, changes and takes away.

#include "fakedesktop.h"
#include "helper/helperjob.h"
#include "helper/scrollcapture.h"
#include "rows.h"

#include <QHash>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_number = 42;
constexpr int s_wheelStep = 53;
constexpr int s_sideStep = 41;
constexpr int s_eventTurn = 4;

using Hook = std::function<void()>;

QImage noisePage(const QSize &size)
{
    QImage page(size, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    std::mt19937 random(7);
    for (int y = 0; y < size.height(); y += 16) {
        for (int x = 10; x < size.width() - 10; x += 9) {
            if (random() % 4)
                painter.fillRect(x, y + int(random() % 6), 2 + int(random() % 5), 8, Qt::black);
        }
    }
    return page;
}

// Lines of which a few are longer than a view.
QImage longLines(const QSize &size)
{
    QImage page = noisePage(size);
    QPainter painter(&page);
    for (int y = 0; y < size.height(); y += 16) {
        if (y % 1200 != 0 || y == 0)
            painter.fillRect(300 + y % 90, y, size.width(), 16, Qt::white);
    }
    return page;
}

// A window of a tool bar, a view on a page, scroll bars and a frame.
class ScrollingWindow
{
public:
    QImage page{};
    QRect bounds{50, 40, 500, 460};
    QRect cover{};  ///< of a window in front
    int offset = 0;
    int sideOffset = 0;
    int turns = 0;
    QList<QRect> late{};  ///< parts of the page that are grey when they come into view
    int lateness = 0;     ///< for so long, in milliseconds
    int pending = 0;
    bool stuck = false;     ///< turns are carried out once it no longer is
    bool swallows = false;  ///< as an open menu swallows turns
    Hook onTurn{};          ///< called after each turn

    QRect view() const
    {
        const QRect whole({1, 31}, bounds.size() - QSize(14, 32));
        return page.width() > whole.width() ? whole.adjusted(0, 0, 0, -12) : whole;
    }
    void scroll()
    {
        if (!stuck)
            offset = std::clamp(offset + std::exchange(pending, 0) * s_wheelStep, 0, lowest());
    }
    int lowest() const { return std::max(0, int(page.height()) - view().height()); }
    int rightmost() const { return std::max(0, int(page.width()) - view().width()); }

    explicit ScrollingWindow(FakeDesktop &desktop)
    {
        desktop.windows->told = [this](auto which, int relativeTo) {
            return entries(which, relativeTo);
        };
        desktop.pictures->taken = [this](int) { return look(); };
        desktop.hands->turned = [this](int clicks, Hands::Wheel wheel) { turn(clicks, wheel); };
    }

    QImage look()
    {
        if (bounds.isEmpty())
            return {};
        QImage image(bounds.size(), QImage::Format_RGB32);
        image.fill(QColor(90, 90, 90));
        QPainter painter(&image);
        for (int x = 12; x < bounds.width(); x += 40)
            painter.fillRect(x, 6, 18, 18, QColor(x % 255, 180, 90));
        painter.drawImage(view().topLeft(), page,
                          {sideOffset, offset, view().width(), view().height()});
        const QRect seen(0, offset, view().width(), view().height());
        for (qsizetype i = 0; i < late.size(); ++i) {
            if (!late[i].intersects(seen))
                continue;
            const qint64 now = services().clock->now();
            if (!m_seen.contains(i))
                m_seen[i] = now;
            const QRect part = (late[i] & seen).translated(view().topLeft() - seen.topLeft());
            if (now - m_seen[i] < lateness)
                painter.fillRect(part, Qt::lightGray);
        }
        const QRect groove(view().right() + 1, 31, 12, view().height());
        painter.fillRect(groove, QColor(230, 230, 230));
        painter.fillRect(groove.x(), groove.y() + offset * groove.height() / page.height(), 12, 40,
                         QColor(120, 120, 120));
        if (rightmost() > 0) {
            painter.fillRect(1, view().bottom() + 1, bounds.width() - 2, 12, QColor(230, 230, 230));
            painter.fillRect(1 + sideOffset * view().width() / page.width(), view().bottom() + 1,
                             40, 12, QColor(120, 120, 120));
        }
        return image;
    }

private:
    QList<WindowCatalogue::Entry> entries(WindowCatalogue::List which, int relativeTo) const
    {
        if (which == WindowCatalogue::List::AtAndAbove && relativeTo != s_number)
            return {};
        QList<WindowCatalogue::Entry> result;
        if (!cover.isEmpty())
            result.append({.number = 1, .bounds = cover});
        if (!bounds.isEmpty())
            result.append({.number = s_number, .bounds = bounds, .process = 3});
        return result;
    }

    void turn(int clicks, Hands::Wheel wheel)
    {
        if (wheel == Hands::Wheel::Right)
            sideOffset = std::clamp(sideOffset + clicks * s_sideStep, 0, rightmost());
        else if (wheel == Hands::Wheel::Down && !swallows)
            pending += clicks;
        ++turns;
        scroll();
        if (onTurn)
            onTurn();
    }

    QHash<qsizetype, qint64> m_seen;
};

}  // namespace

class TestScrollCapture : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_desktop = std::make_unique<FakeDesktop>();
        m_window = std::make_unique<ScrollingWindow>(*m_desktop);
        m_window->page = noisePage({m_window->view().width(), 2500});
    }

    void takesAll()
    {
        const auto check = [&](const QByteArray &row, bool told, int start) {
            init();
            m_window->offset = start;
            ScrollCapture capture(target(told ? viewOnScreen() : QRect()));
            const ScrollCapture::Result result = capture.run();
            expect(row, result.note, QString());
            expect(row, result.picture, m_window->page);
            expect(row, m_window->offset, start);
        };
        check("told area, from the top", true, 0);
        check("told area, from the middle", true, 12 * s_wheelStep);
        check("found by the pixels", false, 20 * s_wheelStep);
    }

    // What passes, and has to be waited for or followed.
    void hinders()
    {
        const auto check = [&](const QByteArray &row, int turn, const Hook &hinder,
                               QImage::Format format = QImage::Format_RGB32) {
            init();
            m_window->onTurn = [&] {
                QVERIFY2(!m_desktop->hands->busy, row);
                if (m_window->turns != turn)
                    return;
                hinder();
                services().clock->after(1500, this, [this] {
                    m_desktop->hands->busy = false;
                    m_window->stuck = false;
                    m_window->swallows = false;
                    m_window->scroll();
                });
            };
            ScrollCapture capture(target(viewOnScreen()));
            const ScrollCapture::Result result = capture.run();
            expect(row, result.note, QString());
            expect(row, result.picture.convertToFormat(format, Qt::ThresholdDither),
                   m_window->page.convertToFormat(format, Qt::ThresholdDither));
            expect(row, m_window->offset, 0);
        };
        check("hangs on the way down", 5, [this] { m_window->stuck = true; });
        check("hangs from the first turn on", 1, [this] { m_window->stuck = true; });
        check("opens a menu for a while", 5, [this] { m_window->swallows = true; });
        check("is moved", 5, [this] { m_window->bounds.translate(60, 30); });
        check("the user holds a key", 5, [this] { m_desktop->hands->busy = true; });
        const auto recolour = [this] {
            QPainter(&m_window->page).fillRect(m_window->page.rect(), QColor(220, 240, 255, 90));
        };
        check("takes other colours", 5, recolour, QImage::Format_Mono);
    }

    void lateContent()
    {
        for (const int lateness : {200, 500}) {
            init();
            m_window->lateness = lateness;
            for (int y = 120; y < m_window->page.height(); y += 330) {
                m_window->late.append({20, y, 280, 150});
                QPainter(&m_window->page)
                    .fillRect(m_window->late.last(), QColor(y % 250, 120, 200));
            }
            ScrollCapture capture(target(viewOnScreen()));
            const ScrollCapture::Result result = capture.run();
            expect(QByteArray::number(lateness), result.note, QString());
            expect(QByteArray::number(lateness), result.picture, m_window->page);
        }
    }

    // What there is until then is kept, without a seam, and the reason is told.
    void endsEarly()
    {
        const auto check = [&](const QByteArray &row, bool isOver, const Hook &event) {
            init();
            m_window->onTurn = [&] {
                if (m_window->turns == s_eventTurn)
                    event();
            };
            ScrollCapture capture(target(viewOnScreen()));
            const ScrollCapture::Result result = capture.run();
            expect(row, result.note.isEmpty(), false);
            // Neither the window that came in front nor what lay below gets the wheel; what can be
            // put back is put back.
            expect(row, isOver ? m_window->turns : m_window->offset, isOver ? s_eventTurn : 0);
            const int height = result.picture.height();
            expect(row, height > m_window->view().height() && height < 2000, true);
            expect(row, result.picture,
                   noisePage({result.picture.width(), 2500}).copy(result.picture.rect()));
        };
        check("closed", true, [this] { m_window->bounds = {}; });
        check("another size", false, [this] { m_window->bounds.setWidth(480); });
        check("covered", true, [this] { m_window->cover = m_window->bounds; });
        check("another page", false,
              [this] { m_window->page = noisePage(m_window->page.size()).mirrored(); });
    }

    void stops()
    {
        const auto check = [&](const QByteArray &row, int turn, void (ScrollCapture::*stop)()) {
            init();
            const int start = 30 * s_wheelStep;
            m_window->offset = start;
            ScrollCapture capture(target(viewOnScreen()));
            int turnsAtStop = 0;
            m_window->onTurn = [&] {
                if (m_window->turns != turn)
                    return;
                turnsAtStop = turn;
                (capture.*stop)();
            };
            const ScrollCapture::Result result = capture.run();
            expect(row, turnsAtStop, turn);
            expect(row, result.note, QString());
            expect(row, result.picture.isNull(), stop != &ScrollCapture::keep);
            if (stop == &ScrollCapture::keep && turn > 1)
                expect(row, result.picture, m_window->page.copy(result.picture.rect()));
            expect(row, m_window->offset, start);
            // Who leaves at once does not look.
            if (stop == &ScrollCapture::abandon)
                expect(row, m_window->turns, turn + 1);
        };
        check("keep", 5, &ScrollCapture::keep);
        check("keep, on the way up", 1, &ScrollCapture::keep);
        check("discard, before anything is known", 4, &ScrollCapture::discard);
        check("discard", 5, &ScrollCapture::discard);
        check("abandon, on the way up", 2, &ScrollCapture::abandon);
        check("abandon", 11, &ScrollCapture::abandon);
    }

    void limit()
    {
        m_window->bounds.setHeight(3000);
        m_window->page = noisePage({m_window->view().width(), 31000});
        ScrollCapture capture(target(viewOnScreen()));
        const ScrollCapture::Result result = capture.run();
        QCOMPARE(result.picture.height(), 30000);
        QCOMPARE(result.picture, m_window->page.copy(0, 0, m_window->page.width(), 30000));
        QVERIFY(!result.note.isEmpty());
    }

    void nothingScrolls()
    {
        m_window->page = noisePage(m_window->view().size());
        ScrollCapture whole(target());
        ScrollCapture::Result result = whole.run();
        QCOMPARE(result.picture, m_window->look());
        QVERIFY(!result.note.isEmpty());
        QCOMPARE(result.lastRow, -1);

        m_window->bounds = {};
        ScrollCapture gone(target());
        result = gone.run();
        QVERIFY(result.picture.isNull());
        QVERIFY(!result.note.isEmpty());
    }

    void takesAcross()
    {
        const auto check = [&](const QByteArray &row, const QImage &page, bool told, QPoint start) {
            init();
            m_window->page = page;
            const QPoint began(std::min(start.x(), m_window->rightmost()),
                               std::min(start.y(), m_window->lowest()));
            m_window->sideOffset = began.x();
            m_window->offset = began.y();
            ScrollCapture capture(acrossTarget(told));
            const ScrollCapture::Result result = capture.run();
            expect(row, result.note, QString());
            expect(row, result.picture, page);
            expect(row, QPoint(m_window->sideOffset, m_window->offset), began);
        };
        const QImage page = noisePage({1100, 1300});
        const QPoint midst(11 * s_sideStep, 12 * s_wheelStep);
        check("told area, from the midst", page, true, midst);
        check("found by the pixels, from its end", page, false, {9999, 9999});
        check("a few long lines", longLines({1100, 1700}), false, {});
        check("only wider", noisePage({1500, 416}), false, {midst.x(), 0});
        check("only higher", noisePage({486, 1700}), false, {0, midst.y()});
    }

    void endsAcross()
    {
        const auto check = [&](const QByteArray &row, int turn, bool kept) {
            init();
            m_window->page = noisePage({1500, 1700});
            const QPoint began(11 * s_sideStep, 12 * s_wheelStep);
            m_window->sideOffset = began.x();
            m_window->offset = began.y();
            ScrollCapture capture(acrossTarget());
            QImage seen;
            m_window->onTurn = [&] {
                if (m_window->turns != turn)
                    return;
                seen = capture.overview({300, 300});
                kept ? capture.keep() : capture.discard();
            };
            const ScrollCapture::Result result = capture.run();
            expect(row, result.note, QString());
            expect(row, result.picture.isNull(), !kept);
            expect(row, QPoint(m_window->sideOffset, m_window->offset), began);
            if (turn < 20)
                return;
            // Wider than high: not the column alone.
            QVERIFY2(seen.width() * 9 > seen.height() * 4, row);
            if (kept) {
                const QRect first(0, 0, m_window->view().width(), m_window->page.height());
                QVERIFY2(result.picture.width() > first.width(), row);
                expect(row, result.picture.copy(first), m_window->page.copy(first));
            }
        };
        check("keep, in the second column", 28, true);
        check("discard, in the second column", 28, false);
        check("keep, on the way to the left", 3, true);
    }

    void limitAcross()
    {
        m_window->bounds.setSize({2600, 44 + 64});
        m_window->page = noisePage({30500, 64});
        ScrollCapture capture(acrossTarget());
        const ScrollCapture::Result result = capture.run();
        QCOMPARE(result.picture, m_window->page.copy(0, 0, 30000, 64));
        QCOMPARE(result.lastColumn, 30000);
        QVERIFY(!result.note.isEmpty());
    }

private:
    QRect viewOnScreen() const { return m_window->view().translated(m_window->bounds.topLeft()); }
    ScrollCapture::Target target(const QRect &area = {}) const
    {
        return {.window = s_number, .area = area, .anchor = m_window->bounds.center()};
    }
    ScrollCapture::Target acrossTarget(bool told = false) const
    {
        ScrollCapture::Target result = target(told ? viewOnScreen() : QRect());
        result.across = true;
        return result;
    }

    std::unique_ptr<FakeDesktop> m_desktop{};
    std::unique_ptr<ScrollingWindow> m_window{};
};

QTEST_MAIN(TestScrollCapture)
#include "test_scrollcapture.moc"
