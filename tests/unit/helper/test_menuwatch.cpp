// Which open menus a resting pointer means, when, and where the ring beside it goes.

#include "helper/dwellring.h"
#include "helper/hintplate.h"
#include "helper/menuwatch.h"

#include <QTest>

using Kind = WindowServer::Kind;
using State = MenuWatch::State;
using Entry = WindowServer::Entry;

namespace {

Entry window(int number, const QRect &bounds, Kind kind, uint process = 7)
{
    return {.number = number, .bounds = bounds, .process = process, .kind = kind};
}

const Entry s_menu = window(1, {100, 100, 200, 300}, Kind::Menu);
const Entry s_submenu = window(2, {290, 150, 150, 100}, Kind::Menu);
const Entry s_other = window(3, {500, 100, 100, 100}, Kind::Menu, 8);
const Entry s_unnamed = window(4, {100, 100, 200, 300}, Kind::Unnamed);
const Entry s_application = window(5, {0, 0, 800, 600}, Kind::Other);

}  // namespace

class TestMenuWatch : public QObject
{
    Q_OBJECT

private slots:
    void restsOnMenu_data();
    void restsOnMenu();
    void begunAnew();
    void timesOut();
    void picture();
    void ringStaysOffMenus_data();
    void ringStaysOffMenus();
    void plateStaysOutside_data();
    void plateStaysOutside();
};

void TestMenuWatch::restsOnMenu_data()
{
    QTest::addColumn<QList<Entry>>("before");
    QTest::addColumn<QList<Entry>>("windows");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QList<int>>("taken");
    const QPoint on(110, 110);
    const QList<Entry> plain{s_application};
    // clang-format off
    QTest::newRow("menu")                 << plain << QList{s_menu, s_application} << on << QList{1};
    QTest::newRow("open already")         << QList{s_menu} << QList{s_menu} << on << QList{1};
    QTest::newRow("with its submenu")     << plain << QList{s_submenu, s_menu, s_application} << on << QList{2, 1};
    QTest::newRow("not another program's")<< plain << QList{s_other, s_menu} << on << QList{1};
    QTest::newRow("beside it")            << plain << QList{s_menu, s_application} << QPoint(90, 110) << QList<int>{};
    QTest::newRow("covered by a window")  << plain << QList{s_application, s_menu} << on << QList<int>{};
    QTest::newRow("new, says nothing")    << plain << QList{s_unnamed, s_application} << on << QList{4};
    QTest::newRow("old, says nothing")    << QList{s_unnamed} << QList{s_unnamed, s_application} << on << QList<int>{};
    // clang-format on
}

void TestMenuWatch::restsOnMenu()
{
    QFETCH(QList<Entry>, before);
    QFETCH(QList<Entry>, windows);
    QFETCH(QPoint, pointer);
    QFETCH(QList<int>, taken);
    MenuWatch watch;
    watch.look(before, {700, 500}, 0);
    const State onMenu = taken.isEmpty() ? State::Waiting : State::Resting;
    QCOMPARE(watch.look(windows, pointer, 100), onMenu);
    QCOMPARE(watch.look(windows, pointer + QPoint(1, 1), 600), onMenu);
    QCOMPARE(watch.rest(), taken.isEmpty() ? 0 : 0.5);
    QCOMPARE(watch.look(windows, pointer, 1100), taken.isEmpty() ? State::Waiting : State::Ready);
    QList<int> numbers;
    for (const Entry &menu : watch.menus())
        numbers.append(menu.number);
    QCOMPARE(numbers, taken);
}

// Whatever shows that the user is still on the way.
void TestMenuWatch::begunAnew()
{
    const QPoint on(110, 110);
    MenuWatch watch;
    watch.look({s_menu}, on, 0);
    QCOMPARE(watch.look({s_menu}, on + QPoint(40, 0), 900), State::Resting);
    QCOMPARE(watch.look({s_menu}, on + QPoint(40, 0), 1800), State::Resting);
    QCOMPARE(watch.look({s_submenu, s_menu}, on + QPoint(40, 0), 1850), State::Resting);
    QCOMPARE(watch.look({s_submenu, s_menu}, on + QPoint(40, 0), 2800), State::Resting);
    QCOMPARE(watch.look({}, on, 2820), State::Waiting);
    QCOMPARE(watch.look({s_menu}, on, 2840), State::Resting);
    QCOMPARE(watch.look({s_menu}, on, 3800), State::Resting);
    QCOMPARE(watch.look({s_menu}, on, 3840), State::Ready);
}

void TestMenuWatch::timesOut()
{
    MenuWatch watch;
    watch.look({s_application}, {}, 1000);
    QCOMPARE(watch.look({s_application}, {}, 60999), State::Waiting);
    // An open menu is not waited for, wherever the pointer is.
    QCOMPARE(watch.look({s_menu}, {}, 61000), State::Waiting);
    QCOMPARE(watch.look({s_application}, {}, 120999), State::Waiting);
    QCOMPARE(watch.look({s_application}, {}, 121000), State::TimedOut);
}

void TestMenuWatch::picture()
{
    const auto pictureOf = [](int number) {
        QImage image(number == 1 ? QSize(200, 300) : QSize(150, 100), QImage::Format_RGB32);
        image.fill(number == 1 ? Qt::red : Qt::blue);
        return number == 3 ? QImage() : image;
    };
    const QImage both = pictureOfMenus({s_submenu, s_menu}, pictureOf);
    QCOMPARE(both.size(), QSize(340, 300));
    QCOMPARE(both.pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(both.pixelColor(190, 50), QColor(Qt::blue));
    QCOMPARE(both.pixelColor(339, 149), QColor(Qt::blue));
    QCOMPARE(both.pixelColor(339, 150).alpha(), 0);
    QVERIFY(pictureOfMenus({s_other}, pictureOf).isNull());
    QVERIFY(pictureOfMenus({}, pictureOf).isNull());
}

void TestMenuWatch::ringStaysOffMenus_data()
{
    QTest::addColumn<QList<QRect>>("menus");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QPoint>("place");
    const QRect menu(100, 100, 200, 300);
    // clang-format off
    QTest::newRow("right")        << QList{menu} << QPoint(280, 200) << QPoint(306, 190);
    QTest::newRow("left")         << QList{menu} << QPoint(120, 200) << QPoint(74, 190);
    QTest::newRow("above")        << QList{menu} << QPoint(200, 110) << QPoint(190, 74);
    QTest::newRow("submenu there")<< QList{menu, QRect(290, 150, 150, 200)} << QPoint(280, 260) << QPoint(270, 406);
    QTest::newRow("screen's edge")<< QList{QRect(0, 0, 200, 600)} << QPoint(10, 300) << QPoint(206, 290);
    // clang-format on
}

void TestMenuWatch::ringStaysOffMenus()
{
    QFETCH(QList<QRect>, menus);
    QFETCH(QPoint, pointer);
    QTEST(DwellRing::place(pointer, {20, 20}, menus, {{0, 0, 800, 600}}), "place");
}

void TestMenuWatch::plateStaysOutside_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("right") << QRect(100, 100, 400, 300) << QPoint(512, 100);
    QTest::newRow("left") << QRect(300, 100, 500, 300) << QPoint(88, 100);
    QTest::newRow("below") << QRect(0, 0, 800, 400) << QPoint(0, 412);
    QTest::newRow("above") << QRect(0, 200, 800, 400) << QPoint(0, 88);
    QTest::newRow("all of the screen") << QRect(-5, -5, 810, 610) << QPoint(588, 12);
}

void TestMenuWatch::plateStaysOutside()
{
    QFETCH(QRect, area);
    QTEST(HintPlate::place({200, 100}, area, {{0, 0, 800, 600}}), "place");
}

QTEST_MAIN(TestMenuWatch)
#include "test_menuwatch.moc"
