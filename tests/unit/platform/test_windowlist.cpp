#include "fakedesktop.h"
#include "platform/windowlist.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestWindowList : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void listOptions_data();
    void listOptions();
    void entriesByIndex();
    void longNames();
    void boxOfScreens_data();
    void boxOfScreens();
    void screenUnderPoint_data();
    void screenUnderPoint();
    void clipping_data();
    void clipping();
    void exceptedWindow();
    void menuBar();

private:
    FakeWindowServer *m_server = nullptr;
};

void TestWindowList::init()
{
    m_server = FakeDesktop().windows;
    m_server->screenList = {{0, 0, 1440, 900}};
    m_server->list = {
        {{.number = 9, .layer = 101, .bounds = {1, 1, 50, 20}}, Qt::green},
        {{.number = 77, .layer = 24, .bounds = {0, 0, 1440, 22}, .name = u"bar"_s}, Qt::white},
        {{.number = 3,
          .bounds = {-10.7, 20.9, 300.5, 200},
          .name = u"Mail"_s,
          .owner = u"mailer"_s},
         Qt::red},
        {{.number = 5, .bounds = {0, 0, 10, 10}}, Qt::blue, false}};
}

void TestWindowList::listOptions_data()
{
    QTest::addColumn<int>("onScreen");
    QTest::addColumn<int>("relativeTo");
    QTest::addColumn<int>("count");
    QTest::newRow("all") << 0 << 0 << 4;
    QTest::newRow("on screen") << 1 << 0 << 3;
    QTest::newRow("at and above wins over all") << 0 << 77 << 2;
    QTest::newRow("at and above wins over on screen") << 1 << 77 << 2;
}

void TestWindowList::listOptions()
{
    QFETCH(int, onScreen);
    QFETCH(int, relativeTo);
    QTEST(GetWindowList(onScreen, relativeTo), "count");
    QTEST(g_WindowList.Count, "count");
}

void TestWindowList::entriesByIndex()
{
    GetWindowList(1, 0);
    QCOMPARE(GetWindowLevel(0), 101);
    int x = 7;
    int y = 7;
    int w = 7;
    int h = 7;
    QCOMPARE(GetWindowGeometry(2, &x, &y, &w, &h), 1);
    QCOMPARE(QRect(x, y, w, h), QRect(-10, 20, 300, 200));
    for (const int outside : {-1, 3}) {
        QCOMPARE(GetWindowLevel(outside), 0);
        QCOMPARE(GetWindowGeometry(outside, &x, &y, &w, &h), 0);
        int number = 7;
        QVERIFY(GrabWindow(outside, nullptr, nullptr, &number).isNull());
        QCOMPARE(number, 7);
    }
    QCOMPARE(x, -10);
    wchar_t title[256] = L"old";
    wchar_t owner[256] = L"old";
    int number = 0;
    const QImage picture = GrabWindow(2, title, owner, &number);
    QCOMPARE(QString::fromWCharArray(title), u"Mail"_s);
    QCOMPARE(QString::fromWCharArray(owner), u"mailer"_s);
    QCOMPARE(number, 3);
    QCOMPARE(picture.pixelColor(5, 5), QColor(Qt::red));
    GrabWindow(0, title, owner, nullptr);
    QCOMPARE(title[0], L'\0');
    QCOMPARE(owner[0], L'\0');
}

void TestWindowList::longNames()
{
    // Two units of UTF-16 each, so that the cut falls into the middle of one.
    m_server->list[0].entry.name = u"x"_s + QString::fromUtf8("\xF0\x9F\x93\xB7").repeated(300);
    GetWindowList(1, 0);
    std::vector<wchar_t> title(256 + 1, L'#');
    GrabWindow(0, title.data(), nullptr, nullptr);
    QCOMPARE(title[256], L'#');
    QVERIFY(wcsnlen(title.data(), 256) < 256);
    QCOMPARE(title[1], L'\U0001F4F7');
}

void TestWindowList::boxOfScreens_data()
{
    QTest::addColumn<QList<QRect>>("screens");
    QTest::addColumn<QRect>("box");
    QTest::newRow("one") << QList<QRect>{{0, 0, 1440, 900}} << QRect(0, 0, 1440, 900);
    QTest::newRow("side by side") << QList<QRect>{{0, 0, 1440, 900}, {1440, 100, 1921, 1080}}
                                  << QRect(0, 0, 3361, 1180);
    QTest::newRow("to the left of the primary")
        << QList<QRect>{{0, 0, 1440, 900}, {-1280, -24, 1280, 1024}}
        << QRect(-1280, -24, 2720, 1024);
    QTest::newRow("origin outside") << QList<QRect>{{100, 50, 800, 600}} << QRect(0, 0, 900, 650);
}

void TestWindowList::boxOfScreens()
{
    QFETCH(QList<QRect>, screens);
    m_server->screenList = screens;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    getScreenGem(left, top, width, height);
    QTEST(QRect(left, top, width, height), "box");
}

void TestWindowList::screenUnderPoint_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("number");
    QTest::addColumn<QRect>("rect");
    const QRect primary(0, 0, 800, 600);
    const QRect second(800, 0, 800, 600);
    // Number 1 is the second screen; the last, out of range, is the primary one.
    QTest::newRow("second") << QPoint(800, 0) << 1 << second;
    QTest::newRow("primary, last pixel") << QPoint(799, 599) << 2 << primary;
    QTest::newRow("none") << QPoint(800, 600) << -1 << primary;
}

void TestWindowList::screenUnderPoint()
{
    QFETCH(QPoint, point);
    m_server->screenList = {{0, 0, 800, 600}, {800, 0, 800, 600}};
    QRect rect;
    QTEST(getOneScreen(point.x(), point.y(), rect), "number");
    QTEST(rect, "rect");
}

void TestWindowList::clipping_data()
{
    QTest::addColumn<QRect>("asked");
    QTest::addColumn<bool>("clip");
    QTest::addColumn<QSize>("size");
    QTest::newRow("whole desktop") << QRect(0, 0, -1, -1) << true << QSize(1440, 900);
    QTest::newRow("right edge") << QRect(1000, 0, 1000, 10) << true << QSize(440, 10);
    QTest::newRow("0 is up to the edge") << QRect(40, 30, 0, 0) << true << QSize(1400, 870);
    QTest::newRow("origin outside") << QRect(-5, 2000, 100, 100) << true << QSize(100, 100);
    QTest::newRow("as it stands") << QRect(-50, -50, 100, 100) << false << QSize(100, 100);
    QTest::newRow("no area, not clipped") << QRect(0, 0, -1, -1) << false << QSize();
}

void TestWindowList::clipping()
{
    QFETCH(QRect, asked);
    QFETCH(bool, clip);
    const QImage picture =
        GrabFullWindow(asked.x(), asked.y(), asked.width(), asked.height(), clip, nullptr);
    QFETCH(QSize, size);
    QCOMPARE(picture.isNull(), !size.isValid());
    QCOMPARE(picture.size(), size.isValid() ? size : QSize(0, 0));
}

void TestWindowList::exceptedWindow()
{
    QWidget cover;
    m_server->numbers.insert(&cover, 3);
    QCOMPARE(GrabFullWindow(100, 100, 1, 1, true, nullptr).pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(GrabFullWindow(100, 100, 1, 1, true, &cover).pixelColor(0, 0), QColor(Qt::black));
    QCOMPARE(GrabFullWindow(10, 10, 1, 1, true, &cover).pixelColor(0, 0), QColor(Qt::green));
    // Every grab takes the list anew, whichever way the picture comes.
    m_server->list.removeFirst();
    GrabFullWindow(0, 0, 1, 1, true, nullptr);
    QCOMPARE(getWinid(0), 77);
}

void TestWindowList::menuBar()
{
    QVERIFY(screenMenu().isNull());
    m_server->menuBar = true;
    QCOMPARE(screenMenu().size(), QSize(1440, 22));
}

QTEST_MAIN(TestWindowList)
#include "test_windowlist.moc"
