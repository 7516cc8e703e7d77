#include "fakedesktop.h"
#include "platform/windowlist.h"
#include "rows.h"

using namespace Qt::StringLiterals;

class TestWindowList : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_desktop = std::make_unique<FakeDesktop>();
        m_desktop->screens->list = {{0, 0, 1440, 900}};
        m_desktop->windows->list = {
            {{.number = 9, .layer = 101, .bounds = {1, 1, 50, 20}}, Qt::green},
            {{.number = 77, .layer = 24, .bounds = {0, 0, 1440, 22}, .name = u"bar"_s}, Qt::white},
            {{.number = 3,
              .bounds = {-10.7, 20.9, 300.5, 200},
              .name = u"Mail"_s,
              .owner = u"mailer"_s},
             Qt::red},
            {{.number = 5, .bounds = {0, 0, 10, 10}}, Qt::blue, false}};
    }

    void entriesByIndex()
    {
        GetWindowList(1, 0);
        QCOMPARE(GetWindowLevel(0), 101);
        int x = 7;
        int y = 7;
        int w = 7;
        int h = 7;
        QCOMPARE(GetWindowGeometry(2, &x, &y, &w, &h), 1);
        QCOMPARE(QRect(x, y, w, h), QRect(-10, 20, 300, 200));
        wchar_t title[256] = L"old";
        wchar_t owner[256] = L"old";
        int number = 0;
        QCOMPARE(GrabWindow(2, title, owner, &number).pixelColor(5, 5), QColor(Qt::red));
        QCOMPARE(QString::fromWCharArray(title), u"Mail"_s);
        QCOMPARE(QString::fromWCharArray(owner), u"mailer"_s);
        for (const int outside : {-1, 3}) {
            QCOMPARE(GetWindowLevel(outside), 0);
            QCOMPARE(GetWindowGeometry(outside, &x, &y, &w, &h), 0);
            QVERIFY(GrabWindow(outside, nullptr, nullptr, &number).isNull());
        }
        QCOMPARE(number, 3);
        QCOMPARE(x, -10);
        GrabWindow(0, title, owner, nullptr);
        QVERIFY(title[0] == 0 && owner[0] == 0);
    }

    void longNames()
    {
        // Two units of UTF-16 each, so that the cut falls into the middle of one.
        m_desktop->windows->list[0].entry.name =
            u"x"_s + QString::fromUtf8("\xF0\x9F\x93\xB7").repeated(300);
        GetWindowList(1, 0);
        std::vector<wchar_t> title(256 + 1, L'#');
        GrabWindow(0, title.data(), nullptr, nullptr);
        QCOMPARE(title[256], L'#');
        QVERIFY(wcsnlen(title.data(), 256) < 256);
        QCOMPARE(title[1], L'\U0001F4F7');
    }

    void screenUnderPoint()
    {
        const auto check = [&](const QByteArray &row, QPoint point, int number, const QRect &rect) {
            m_desktop->screens->list = {{0, 0, 800, 600}, {800, 0, 800, 600}};
            QRect shown;
            expect(row, getOneScreen(point.x(), point.y(), shown), number);
            expect(row, shown, rect);
        };
        const QRect primary(0, 0, 800, 600);
        const QRect second(800, 0, 800, 600);
        // Number 1 is the second screen; the last, out of range, is the primary one.
        check("second", {800, 0}, 1, second);
        check("primary, last pixel", {799, 599}, 2, primary);
        check("none", {800, 600}, -1, primary);
    }

    void clipping()
    {
        const auto check = [&](const QByteArray &row, const QRect &asked, bool clip, QSize size) {
            const QImage picture =
                GrabFullWindow(asked.x(), asked.y(), asked.width(), asked.height(), clip, nullptr);
            expect(row, picture.isNull(), !size.isValid());
            expect(row, picture.size(), size.isValid() ? size : QSize(0, 0));
        };
        check("whole desktop", {0, 0, -1, -1}, true, {1440, 900});
        check("right edge", {1000, 0, 1000, 10}, true, {440, 10});
        check("0 is up to the edge", {40, 30, 0, 0}, true, {1400, 870});
        check("origin outside", {-5, 2000, 100, 100}, true, {100, 100});
        check("as it stands", {-50, -50, 100, 100}, false, {100, 100});
        check("no area, not clipped", {0, 0, -1, -1}, false, {});
    }

    void exceptedWindow()
    {
        QWidget cover;
        m_desktop->ownWindows->numbers.insert(&cover, 3);
        QCOMPARE(GrabFullWindow(100, 100, 1, 1, true, nullptr).pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(GrabFullWindow(100, 100, 1, 1, true, &cover).pixelColor(0, 0), QColor(Qt::black));
        QCOMPARE(GrabFullWindow(10, 10, 1, 1, true, &cover).pixelColor(0, 0), QColor(Qt::green));
        // Every grab takes the list anew, whichever way the picture comes.
        m_desktop->windows->list.removeFirst();
        GrabFullWindow(0, 0, 1, 1, true, nullptr);
        QCOMPARE(getWinid(0), 77);
    }

private:
    std::unique_ptr<FakeDesktop> m_desktop{};
};

QTEST_MAIN(TestWindowList)
#include "test_windowlist.moc"
