// Which open menus a resting pointer means, when, and where the ring beside it goes.

#include "helper/dwellring.h"
#include "helper/hintplate.h"
#include "helper/menuwatch.h"
#include "rows.h"

using Kind = WindowCatalogue::Kind;
using State = MenuWatch::State;
using Entry = WindowCatalogue::Entry;

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
    void restsOnMenu()
    {
        const auto check = [&](const QByteArray &row, const QList<Entry> &before,
                               const QList<Entry> &windows, QPoint pointer,
                               const QList<int> &taken) {
            MenuWatch watch;
            watch.look(before, {700, 500}, 0);
            const State onMenu = taken.isEmpty() ? State::Waiting : State::Resting;
            expect(row, watch.look(windows, pointer, 100), onMenu);
            expect(row, watch.look(windows, pointer + QPoint(1, 1), 600), onMenu);
            expect(row, watch.rest(), taken.isEmpty() ? 0 : 0.5);
            expect(row, watch.look(windows, pointer, 1100),
                   taken.isEmpty() ? State::Waiting : State::Ready);
            QList<int> numbers;
            for (const Entry &menu : watch.menus())
                numbers.append(menu.number);
            expect(row, numbers, taken);
        };
        const QPoint on(110, 110);
        const QList<Entry> plain{s_application};
        check("menu", plain, QList{s_menu, s_application}, on, QList{1});
        check("open already", QList{s_menu}, QList{s_menu}, on, QList{1});
        check("with its submenu", plain, QList{s_submenu, s_menu, s_application}, on, QList{2, 1});
        check("not another program's", plain, QList{s_other, s_menu}, on, QList{1});
        check("beside it", plain, QList{s_menu, s_application}, {90, 110}, QList<int>{});
        check("covered by a window", plain, QList{s_application, s_menu}, on, QList<int>{});
        check("new, says nothing", plain, QList{s_unnamed, s_application}, on, QList{4});
        check("old, says nothing", QList{s_unnamed}, QList{s_unnamed, s_application}, on,
              QList<int>{});
    }

    // Whatever shows that the user is still on the way.
    void begunAnew()
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

    void timesOut()
    {
        MenuWatch watch;
        watch.look({s_application}, {}, 1000);
        QCOMPARE(watch.look({s_application}, {}, 60999), State::Waiting);
        // An open menu is not waited for, wherever the pointer is.
        QCOMPARE(watch.look({s_menu}, {}, 61000), State::Waiting);
        QCOMPARE(watch.look({s_application}, {}, 120999), State::Waiting);
        QCOMPARE(watch.look({s_application}, {}, 121000), State::TimedOut);
    }

    void ringStaysOffMenus()
    {
        const auto check = [&](const QByteArray &row, const QList<QRect> &menus, QPoint pointer,
                               QPoint place) {
            expect(row, DwellRing::place(pointer, {20, 20}, menus, {{0, 0, 800, 600}}), place);
        };
        const QRect menu(100, 100, 200, 300);
        check("right", QList{menu}, {280, 200}, {306, 190});
        check("left", QList{menu}, {120, 200}, {74, 190});
        check("above", QList{menu}, {200, 110}, {190, 74});
        check("submenu there", QList{menu, QRect(290, 150, 150, 200)}, {280, 260}, {270, 406});
        check("screen's edge", QList{QRect(0, 0, 200, 600)}, {10, 300}, {206, 290});
    }

    void plateStaysOutside()
    {
        const auto check = [&](const QByteArray &row, const QRect &area, QPoint place) {
            expect(row, HintPlate::place({200, 100}, area, {{0, 0, 800, 600}}), place);
        };
        check("right", {100, 100, 400, 300}, {512, 100});
        check("left", {300, 100, 500, 300}, {88, 100});
        check("below", {0, 0, 800, 400}, {0, 412});
        check("above", {0, 200, 800, 400}, {0, 88});
        check("all of the screen", {-5, -5, 810, 610}, {588, 12});
    }
};

QTEST_MAIN(TestMenuWatch)
#include "test_menuwatch.moc"
