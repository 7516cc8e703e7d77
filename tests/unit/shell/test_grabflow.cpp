// What every event does in every state of a grab, and what a grab does on its way. No window, no
// desktop, and a clock that a test turns.

#include "capture/grab.h"
#include "fakedesktop.h"
#include "rows.h"
#include "shell/grabflow.h"

#include <array>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Hook = std::function<void()>;

constexpr std::array s_events{GrabEvent::Press, GrabEvent::Escape,  GrabEvent::Opens,
                              GrabEvent::Works, GrabEvent::Scrolls, GrabEvent::PutsBack,
                              GrabEvent::Ends,  GrabEvent::Quit,    GrabEvent::DisplayLost,
                              GrabEvent::Cancel};

// Both sides of the flow in one: they write down what they are told, and run a hook where the flow
// waits, in which a test tells it of something.
class Fake : public GrabFront, public GrabTools
{
public:
    GrabSituation now{};
    bool accepts = true;  ///< what is open, of itself
    bool asks = false;
    bool isEmpty = false;
    int delay = 0;  ///< of what is marked
    bool refuses = false;
    bool getsFront = true;  ///< the window, where it is to be in front
    QStringList log{};
    std::optional<GrabGoals> goals{};  ///< of the last picture
    bool isEscapeHeard = false;
    Hook opened{};  ///< told when what waits for the user opens
    Hook freezing{}, marking{}, counting{}, browsing{}, asking{}, ending{}, showing{};

    GrabSituation situation() override { return now; }
    QString refusal(GrabCommand command) override
    {
        return refuses && command != GrabCommand::Show ? u"not here"_s : QString();
    }
    void place(Place place) override
    {
        static constexpr std::array names{"minimize", "restore", "lower", "show"};
        log.append(QString::fromLatin1(names.at(static_cast<size_t>(place))));
        now.isMinimized = place == Place::Minimized;
        now.active = place == Place::InFront && getsFront ? &m_widget : nullptr;
        if (place == Place::InFront)
            run(showing);
    }
    bool hidePins() override { return false; }
    void showPins(bool) override {}
    void hideAll(bool hide) override
    {
        log.append(hide ? u"hide"_s : u"back"_s);
        now.isMinimized = hide;
    }
    void close() override { log.append(u"close"_s); }
    void takeFocus() override
    {
        log.append(u"cover"_s);
        run(freezing);
    }
    void regainFocus() override {}
    void dropFocus(bool giveBack) override { log.append(giveBack ? u"give back"_s : u"keep"_s); }
    void focusOther() override { log.append(u"other"_s); }
    void focusOwn(QWidget *) override { log.append(u"own"_s); }
    void closeMenus() override { log.append(u"menus"_s); }
    void closing() override {}
    void settle() override { run(ending); }
    void freeClicks() override {}
    bool addDocument(Grab grab, std::optional<GrabGoals> pressed) override
    {
        log.append(u"document"_s);
        goals = grab.goals ? grab.goals : pressed;
        return !goals || goals->testFlag(GrabGoal::Tab);
    }
    void say(const QString &) override { log.append(u"say"_s); }
    void tellProgress(const QString &) override {}

    Marked mark(GrabCommand) override
    {
        log.append(u"mark"_s);
        open();
        run(marking);
        return accepts && !m_closed ? Marked{[this] { return grab(); }, delay} : Marked();
    }
    Grab takeAtOnce(GrabCommand, unsigned) override
    {
        log.append(u"screen"_s);
        return grab();
    }
    bool countDown(int) override
    {
        log.append(u"count"_s);
        open();
        run(counting);
        return accepts && !m_closed;
    }
    void restartCountDown(int) override { log.append(u"anew"_s); }
    std::optional<QList<Grab>> browse() override
    {
        log.append(u"browse"_s);
        open();
        run(browsing);
        return accepts && !m_closed ? std::optional(isEmpty ? QList<Grab>() : QList{grab(), grab()})
                                    : std::nullopt;
    }
    bool mustAsk(GrabCommand command) override { return asks && command == GrabCommand::Window; }
    bool startHelper(GrabCommand command, const std::function<bool()> &begin) override
    {
        m_closed = false;
        if (mustAsk(command))
            run(asking);
        if (m_closed || !begin())
            return false;
        log.append(command == GrabCommand::Window ? u"pick"_s : u"menu"_s);
        return true;
    }
    void stopMenuWait() override { log.append(u"stop"_s); }
    void dropHelper() override { log.append(u"drop"_s); }
    void keepContent() override { log.append(u"keep content"_s); }
    void hearEscape(bool hears) override { isEscapeHeard = hears; }
    void bringForward() override { log.append(u"bring"_s); }
    void closeOpen() override
    {
        log.append(u"give up"_s);
        m_closed = true;
    }

private:
    void open()
    {
        m_closed = false;
        opened();
    }
    Grab grab() const { return {.picture = isEmpty ? QPixmap() : QPixmap(2, 2)}; }
    // Once: what comes of it waits as well.
    static void run(Hook &hook)
    {
        if (const Hook once = std::exchange(hook, nullptr))
            once();
    }

    bool m_closed = false;
    QWidget m_widget{};
};

}  // namespace

class TestGrabFlow : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fake = std::make_unique<Fake>();
        m_fake->now = {.isComposited = true, .countdown = 5};
        m_pictures.asked = {};
        m_pictures.live = true;
        m_pictures.asks = false;
        m_flow = std::make_unique<GrabFlow>(*m_fake, *m_fake, m_pictures, m_clock);
        m_fake->opened = [this] { m_flow->opened(); };
    }

    void everyEventInEveryState()
    {
        using S = GrabState;
        using E = GrabEvent;
        struct Row {
            S state;
            std::array<const char *, s_events.size()> atOnce;
            const char *pressEnds;  // the last that is done about it; empty where it is all
            const char *quitEnds;
        };
        // press, Escape, opens, works, scrolls, puts back, ends, quit, display lost, cancel
        // clang-format off
        constexpr std::array<Row, GrabStateCount> rows{{
            {S::Idle,      {"other,screen,document", "", "", "", "", "", "", "", "", ""}, "", ""},
            {S::Freezing,  {"bring", "give up", "", "hide", "", "", "", "give up", "give up", "give up"}, "", "close"},
            {S::Marking,   {"bring", "give up", "", "", "", "", "", "give up", "give up", "give up"}, "", "close"},
            {S::Counting,  {"", "", "", "", "", "", "", "give up", "", "give up"}, "screen", "close"},
            {S::Browsing,  {"bring", "", "", "", "", "", "", "give up", "", "give up"}, "", "close"},
            {S::Asking,    {"bring", "", "", "", "", "", "", "give up", "", "give up"}, "", "close"},
            {S::MenuWait,  {"stop", "", "", "hide", "", "", "show", "drop", "", "give up"}, "", ""},
            {S::Picking,   {"bring", "", "", "", "", "", "show", "drop", "give up", "give up"}, "", ""},
            {S::Scrolling, {"bring", "", "", "", "", "", "show", "drop", "", "give up"}, "", ""},
            {S::Ending,    {"", "", "", "", "", "", "", "give up", "", ""}, "screen", "close"},
        }};
        // clang-format on
        for (const Row &row : rows) {
            for (std::size_t i = 0; i < s_events.size(); ++i) {
                const GrabEvent event = s_events.at(i);
                const QByteArray atOnce = row.atOnce.at(i);
                S becomes = row.state;
                if (event == E::Opens && row.state == S::Freezing)
                    becomes = S::Marking;
                else if (event == E::Scrolls && row.state == S::Picking)
                    becomes = S::Scrolling;
                else if (event == E::PutsBack && row.state == S::Scrolling)
                    becomes = S::Ending;
                else if (atOnce == "show" || atOnce == "drop")
                    becomes = S::Idle;
                const char *end = event == E::Press  ? row.pressEnds
                                  : event == E::Quit ? row.quitEnds
                                                     : "";
                eventInState(row.state, event, QString::fromLatin1(atOnce), becomes,
                             QString::fromLatin1(end));
            }
        }
    }

    // From the press to the end, in the order that other programs and the picture depend on.

    void orders()
    {
        using C = GrabCommand;
        bool refuses = false;
        bool freezes = false;
        bool asks = false;
        bool stops = false;
        int delay = 0;
        GrabWays ways;
        const auto check = [&](const QByteArray &row, const GrabCommand &command,
                               const GrabSituation &before, bool accepts, bool empty,
                               const char *log) {
            init();
            m_fake->now = before;
            m_fake->accepts = accepts;
            m_fake->isEmpty = empty;
            m_fake->refuses = refuses;
            m_fake->delay = delay;
            if (stops)
                m_fake->counting = [this] { m_flow->cancel(); };
            m_pictures.live = !freezes;
            m_pictures.asks = asks;
            m_flow->press(command, {}, ways);
            expect(row, m_fake->log.join(u','), QString::fromLatin1(log));
            expect(row, m_flow->state(), GrabState::Idle);
        };
        const GrabSituation other{.isComposited = true, .countdown = 5};
        GrabSituation shows = other;
        shows.showAfter = true;
        GrabSituation hides = other;
        hides.isActive = hides.hideBefore = true;
        GrabSituation minimized = hides;
        minimized.isMinimized = true;
        GrabSituation noCount = other;
        noCount.countdown = 0;
        check("from another program", C::Rectangle, other, true, false,
              "cover,mark,other,document,give back");
        check("and shown", C::Ellipse, shows, true, false, "cover,mark,other,document,show,keep");
        check("given up", C::Polygon, shows, false, false, "cover,mark,give back");
        check("empty", C::Rectangle, shows, true, true, "cover,mark,other,say,give back");
        check("own, given up", C::Rectangle, hides, false, false,
              "cover,minimize,mark,restore,keep");
        check("own, taken", C::Rectangle, hides, true, false, "cover,minimize,mark,document,keep");
        check("minimised, given up", C::Rectangle, minimized, false, false, "cover,mark,keep");
        // After a countdown what was in front is there before it, and so is what was frozen anew.
        delay = 3;
        check("marked, then counted", C::Rectangle, other, true, false,
              "cover,mark,other,count,other,document,give back");
        stops = true;
        check("marked, count given up", C::Rectangle, hides, true, false,
              "cover,minimize,mark,count,give up,restore,keep");
        stops = false;
        delay = 0;
        check("counted", C::Countdown, other, true, false, "count,other,screen,document");
        check("count given up", C::Countdown, other, false, false, "count,other");
        check("own count given up", C::Countdown, hides, false, false, "minimize,count,restore");
        check("no count wanted", C::Countdown, noCount, true, false, "other,screen,document");
        // This program's own window may be the one in front.
        check("active, own", C::Active, hides, true, false, "screen,document");
        check("monitor, own", C::Monitor, hides, true, false, "minimize,screen,document");
        // A key finds all as it is to be taken.
        ways = GrabWay::ByKey;
        check("screen by its key", C::Screen, other, true, false, "screen,document");
        check("window in the way", C::Screen, hides, true, false, "minimize,screen,document");
        GrabSituation hidden = hides;
        hidden.isActive = false;
        check("window behind", C::Screen, hidden, true, false, "minimize,other,screen,document");
        // What is in front after a countdown is what the grab is about.
        ways = GrabWay::CountsDown;
        check("counted first", C::Rectangle, other, true, false,
              "count,other,cover,mark,other,document,give back");
        check("last, counted first", C::Last, other, true, false,
              "count,other,other,screen,document");
        check("given up while counted", C::Windows, other, false, false, "count,other");
        check("counted once", C::Countdown, other, true, false, "count,other,screen,document");
        ways = {};
        check("windows", C::Windows, shows, true, false, "browse,document,document");
        check("no window", C::Windows, other, true, true, "browse,say,lower,other");
        check("browser given up", C::Windows, other, false, false, "browse,lower,other");
        refuses = true;
        for (const C refused : {C::Rectangle, C::Window})
            check("refused", refused, other, true, false, "say");
        check("shown where refused", C::Show, other, true, false, "show");
        // Open menus are in what stands still, and out of the way of what opens.
        refuses = false;
        GrabSituation still = other;
        still.freezes = true;
        check("still", C::Rectangle, still, true, false, "menus,cover,mark,document,give back");
        check("still, windows", C::Windows, still, true, false, "menus,browse,document,document");
        check("still, at once", C::Screen, still, true, false, "other,screen,document");
        // Where the desktop stands still this program's windows leave before, and come back whoever
        // was in front; the picture is there already, so that nobody else has to come to the front.
        freezes = true;
        GrabSituation behind = hides;
        behind.isActive = false;
        check("frozen", C::Rectangle, behind, true, false,
              "cover,minimize,mark,document,restore,give back");
        check("frozen, given up", C::Rectangle, behind, false, false,
              "cover,minimize,mark,restore,give back");
        delay = 3;
        check("frozen, then counted", C::Rectangle, behind, true, false,
              "cover,minimize,mark,other,count,document,restore,give back");
        delay = 0;
        check("frozen windows", C::Windows, other, true, false,
              "hide,back,browse,document,document");
        // A question of the desktop's is asked with the window in front, before all that.
        asks = true;
        check("asked", C::Rectangle, other, true, false,
              "show,minimize,cover,mark,document,restore,give back");
        check("asked, own", C::Rectangle, hides, true, false,
              "show,cover,minimize,mark,document,restore,keep");
        check("asked, counted", C::Countdown, minimized, true, false,
              "show,minimize,count,screen,document");
        m_pictures.asks = false;
        m_fake->now = other;
        m_fake->log.clear();
        // What scrolls is watched from before the pick, for which the desktop may have to ask, to
        // the end.
        m_pictures.asksToWatch = true;
        m_flow->press(C::Window);
        QCOMPARE(m_fake->log.join(u','), u"show,minimize,hide,pick"_s);
        m_flow->opened();
        m_flow->helperScrolls();
        QVERIFY(!m_pictures.frozen);
        QVERIFY(m_pictures.isWatched);
        m_fake->log.clear();
        m_flow->press(C::Rectangle);
        m_flow->press(C::Window);
        m_flow->press(C::Show);
        m_flow->helperEnds();
        QCOMPARE(m_fake->log.join(u','), u"bring,keep content,keep content,back,show"_s);
        QVERIFY(!m_pictures.isWatched);
    }

    // Whenever and however the desktop answers: nothing opens before, or at all, and nothing of it
    // is left.
    void answersLate()
    {
        using C = GrabCommand;
        using Asked = std::function<void(const Pictures::Answer &)>;
        std::optional<qint64> givenUp;
        bool asks = false;
        const auto later = [this](int milliseconds, const Hook &then) {
            m_clock.after(milliseconds, this, then);
        };
        const auto check = [&](const QByteArray &row, const C &command, const Asked &asked,
                               const char *log) {
            init();
            m_pictures.asks = asks;
            m_pictures.asked = [&](const Pictures::Answer &answer) {
                m_fake->log.append(u"ask"_s);
                asked(answer);
            };
            givenUp = std::nullopt;
            m_flow->press(command);
            expect(row, m_clock.now() - givenUp.value_or(m_clock.now()) < 100, true);
            m_flow->helperEnds();
            expect(row, done(), QString::fromLatin1(log));
            expect(row, m_flow->state(), GrabState::Idle);
            expect(row, m_pictures.isHeld || m_pictures.isWatched, false);
            // What comes now comes too late, and the next one starts.
            m_clock.advance(1000);
            m_pictures.asked = {};
            m_pictures.asks = false;
            m_flow->press(C::Screen);
            expect(row, done(), u"other,screen,document"_s);
        };
        const Asked late = [&](const Pictures::Answer &answer) {
            later(60000, [this, answer] {
                expect("meanwhile", m_flow->state(), GrabState::Freezing);
                answer(true, {});
            });
        };
        check("late: mark", C::Polygon, late, "cover,ask,mark,other,document,give back");
        check("late: screen", C::Screen, late, "other,ask,screen,document");
        check("late: countdown", C::Countdown, late, "count,other,ask,screen,document");
        check("late: browser", C::Windows, late, "ask,browse,document,document");
        check("late: pick", C::Window, late, "ask,pick,show");
        check("a menu is not frozen", C::Menu, late, "menu,show");
        const Asked refused = [](const Pictures::Answer &answer) { answer(false, u"no"_s); };
        check("refused: mark", C::Ellipse, refused, "cover,ask,give back,say");
        check("refused: screen", C::Screen, refused, "other,ask,say");
        check("refused: browser", C::Windows, refused, "ask,say");
        check("refused: pick", C::Window, refused, "ask,say");
        check(
            "never", C::Rectangle, [](const Pictures::Answer &) {}, "cover,ask,give back,say");
        check(
            "twice, and after the end", C::Rectangle,
            [&](const Pictures::Answer &answer) {
                answer(true, {});
                answer(false, u"no"_s);
                later(100, [answer] { answer(false, {}); });
            },
            "cover,ask,mark,other,document,give back");
        const auto given = [&](const Hook &up) {
            return [&, up](const Pictures::Answer &answer) {
                later(50, [&, up, answer] {
                    up();
                    givenUp = m_clock.now();
                    later(1000, [answer] { answer(true, {}); });
                });
            };
        };
        // It is heard even where no window of this program has the keyboard.
        check("Escape", C::Screen, given([&] {
                  if (m_fake->isEscapeHeard)
                      m_flow->escape();
              }),
              "other,ask,give up");
        check("a screen goes", C::Window, given([&] { m_flow->displayLost(); }), "ask,give up");
        check("quit", C::Screen, given([&] { m_flow->quit(); }), "other,ask,give up,close");
        asks = true;
        check("the user refuses", C::Rectangle, refused, "show,ask,say");
        check("Escape while they are asked", C::Rectangle, given([&] { m_flow->escape(); }),
              "show,ask,give up,minimize");
        check("not for a menu", C::Menu, refused, "menu,show");
        asks = false;
        m_pictures.refusesToWatch = true;
        check("not to be watched", C::Window, late, "ask,say");
        m_pictures.refusesToWatch = false;
        // Where the window can't come to the front there is no question, and the user is told.
        init();
        m_pictures.asks = true;
        m_fake->getsFront = false;
        m_flow->press(C::Rectangle);
        QCOMPARE(done(), u"show,minimize,show,say"_s);
    }

    // The window has no part in a picture that opens in no tab, whatever the setting says. What a
    // press wants of its picture goes with it, also where it has to wait, or the picture is late.
    void goesElsewhere()
    {
        const GrabGoals copy = GrabGoal::Copy;
        const auto check = [&](const QByteArray &row, GrabCommand command,
                               const GrabSituation &situation, const char *log) {
            init();
            m_fake->now = situation;
            m_fake->now.showAfter = true;
            m_flow->press(command, copy);
            if (command == GrabCommand::Window) {
                m_flow->helperWorks();
                m_flow->helperTakes({.picture = QPixmap(2, 2)});
                m_flow->helperEnds();
            }
            expect(row, m_fake->log.join(u','), QString::fromLatin1(log));
            expect(row, m_fake->goals == copy, true);
        };
        const GrabSituation own{.isActive = true, .isComposited = true, .hideBefore = true};
        check("from another program", GrabCommand::Rectangle, {.isComposited = true},
              "cover,mark,other,document,give back");
        check("own", GrabCommand::Rectangle, own, "cover,minimize,mark,document,restore,keep");
        check("screen", GrabCommand::Screen, {}, "other,screen,document");
        check("of the helper's", GrabCommand::Window, {}, "pick,hide,back,document,lower,other");
        check("and minimised", GrabCommand::Window, {.isMinimized = true},
              "pick,hide,back,document");
        check("and own", GrabCommand::Window, {.isActive = true}, "pick,hide,back,document");
        m_flow->press(GrabCommand::Screen);
        QVERIFY(!m_fake->goals);
        in(GrabState::Ending, [&] { m_flow->press(GrabCommand::Screen, copy); });
        done();
        QVERIFY(m_fake->goals == copy);
        m_fake->goals.reset();
        m_flow->repeat();
        QVERIFY(m_fake->goals == copy);
    }

    void lastPressIsKept()
    {
        in(GrabState::Ending, [&] {
            m_flow->press(GrabCommand::Windows);
            m_flow->press(GrabCommand::Polygon);
        });
        m_fake->log.clear();
        // Nobody sees a moment without a grab in between.
        QCOMPARE(m_flow->state(), GrabState::Ending);
        QCOMPARE(done(), u"cover,mark,other,document,give back"_s);
        QCOMPARE(m_flow->state(), GrabState::Idle);
        // Unless the program is told to end.
        in(GrabState::Ending, [&] { m_flow->press(GrabCommand::Screen); });
        QVERIFY(!m_flow->quit());
        m_fake->log.clear();
        QCOMPARE(done(), u"close"_s);
        QCOMPARE(m_flow->state(), GrabState::Idle);
    }

    void sameKeyCountsAnew()
    {
        in(GrabState::Counting, [&] { m_flow->press(GrabCommand::Countdown); });
        QCOMPARE(done(), u"count,anew,other,screen,document"_s);
    }

    void escapeTwice()
    {
        in(GrabState::Counting, [&] {
            m_flow->escape();
            m_clock.advance(1001);
            m_flow->escape();
            QVERIFY(!m_fake->log.contains(u"give up"_s));
            m_clock.advance(1000);
            m_flow->escape();
            QVERIFY(m_fake->log.contains(u"give up"_s));
        });
        QVERIFY(!m_fake->log.contains(u"screen"_s));
        // A single one from long ago does not count for the next countdown.
        in(GrabState::Counting, [&] { m_flow->escape(); });
        in(GrabState::Counting, [&] { m_flow->escape(); });
        QCOMPARE(m_fake->log.count(u"screen"_s), 2);
    }

    // The same key twice, with the window shown after each grab.
    void windowStaysOutOfTheNextPicture()
    {
        m_fake->now.showAfter = true;
        in(GrabState::Ending, [&] { m_flow->press(GrabCommand::Screen); });
        QCOMPARE(done(), u"cover,mark,other,document,give back,other,screen,document,show"_s);

        // The second one comes while the window is on its way up.
        m_fake->showing = [&] { m_flow->press(GrabCommand::Screen); };
        m_flow->press(GrabCommand::Screen);
        QCOMPARE(done(), u"other,screen,document,show,lower,other,other,screen,document,show"_s);

        // The second one is given up: the first one's picture is still to be shown.
        m_fake->ending = [&] {
            m_flow->press(GrabCommand::Rectangle);
            m_fake->accepts = false;
        };
        m_flow->press(GrabCommand::Screen);
        QCOMPARE(done(), u"other,screen,document,cover,mark,give back,show"_s);
    }

    void menuWaitGivesWay()
    {
        m_flow->press(GrabCommand::Menu);
        m_flow->helperWorks();
        m_flow->press(GrabCommand::Rectangle);
        QCOMPARE(done(), u"menu,hide,stop"_s);
        m_flow->helperEnds();
        // The window comes back after the grab, and not into it.
        QCOMPARE(done(), u"cover,mark,other,document,give back,back,show"_s);
    }

    void helper()
    {
        // A window that the user had minimised stays so, unless there is a picture.
        m_fake->now.isMinimized = true;
        m_flow->press(GrabCommand::Window);
        m_flow->helperWorks();
        m_flow->helperEnds();
        QCOMPARE(done(), u"pick,hide,back"_s);
        m_flow->press(GrabCommand::Window);
        m_flow->helperWorks();
        m_flow->opened();
        QVERIFY(m_pictures.isHeld);
        m_flow->helperScrolls();
        QVERIFY(!m_pictures.isHeld);
        m_flow->helperPutsBack();
        QCOMPARE(m_flow->state(), GrabState::Ending);
        m_flow->helperTakes({.picture = QPixmap(2, 2)});
        QCOMPARE(done(), u"pick,hide,back,document,show"_s);
        QCOMPARE(m_flow->state(), GrabState::Ending);
        m_flow->helperEnds();
        QCOMPARE(m_flow->state(), GrabState::Idle);
        QCOMPARE(done(), u"show"_s);
        // A question that is closed with the program starts nothing.
        in(GrabState::Asking, [&] { m_flow->quit(); });
        QCOMPARE(done(), u"give up,close"_s);
    }

private:
    void eventInState(GrabState state, GrabEvent event, const QString &expected, GrabState becomes,
                      const QString &inTheEnd)
    {
        init();
        const QByteArray row =
            GrabFlow::nameOf(state).toLatin1() + ", event " + QByteArray::number(int(event));
        QStringList atOnce;
        GrabState after = GrabState::Idle;
        bool mayClose = false;
        const QMap<GrabEvent, Hook> events{
            {GrabEvent::Press, [&] { m_flow->press(GrabCommand::Screen); }},
            {GrabEvent::Escape, [&] { m_flow->escape(); }},
            {GrabEvent::Opens, [&] { m_flow->opened(); }},
            {GrabEvent::Works, [&] { m_flow->helperWorks(); }},
            {GrabEvent::Scrolls, [&] { m_flow->helperScrolls(); }},
            {GrabEvent::PutsBack, [&] { m_flow->helperPutsBack(); }},
            {GrabEvent::Ends, [&] { m_flow->helperEnds(); }},
            {GrabEvent::Quit, [&] { mayClose = m_flow->quit(); }},
            {GrabEvent::DisplayLost, [&] { m_flow->displayLost(); }},
            {GrabEvent::Cancel, [&] { m_flow->cancel(); }}};
        in(state, [&] {
            m_fake->log.clear();
            events[event]();
            atOnce = std::exchange(m_fake->log, {});
            after = m_flow->state();
        });
        expect(row, atOnce.join(u','), expected);
        expect(row, after, becomes);
        QCoreApplication::processEvents();
        if (!inTheEnd.isEmpty())
            QVERIFY2(m_fake->log.contains(inTheEnd), row + m_fake->log.join(u',').toLatin1());
        // Who may not close the program at once is told when to.
        if (event == GrabEvent::Quit) {
            expect(row, mayClose, inTheEnd.isEmpty());
            expect(row, m_flow->state(), GrabState::Idle);
        }
        // No state is a trap.
        m_flow->helperEnds();
        QCoreApplication::processEvents();
        expect(row, m_flow->state(), GrabState::Idle);
        expect(row, m_pictures.isHeld || m_pictures.isWatched, false);
    }
    /// What has been done since the last time, once nothing is left to do.
    QString done()
    {
        QCoreApplication::processEvents();
        return std::exchange(m_fake->log, {}).join(u',');
    }
    /// Brings the flow to a state by the shortest way, runs `then` in it, and lets it end.
    void in(GrabState state, const Hook &then)
    {
        const Hook check = [this, state, &then] {
            QCOMPARE(m_flow->state(), state);
            then();
        };
        struct Way {
            Hook Fake::*hook;
            GrabCommand command;
        };
        // Where the flow waits for somebody else, the event comes meanwhile.
        const QMap<GrabState, Way> ways{
            {GrabState::Freezing, {&Fake::freezing, GrabCommand::Rectangle}},
            {GrabState::Marking, {&Fake::marking, GrabCommand::Rectangle}},
            {GrabState::Counting, {&Fake::counting, GrabCommand::Countdown}},
            {GrabState::Browsing, {&Fake::browsing, GrabCommand::Windows}},
            {GrabState::Asking, {&Fake::asking, GrabCommand::Window}},
            {GrabState::Ending, {&Fake::ending, GrabCommand::Rectangle}}};
        if (const auto way = ways.find(state); way != ways.end()) {
            m_fake->asks = state == GrabState::Asking;
            (*m_fake).*way->hook = check;
            m_flow->press(way->command);
            return;
        }
        if (state == GrabState::MenuWait)
            m_flow->press(GrabCommand::Menu);
        if (state == GrabState::Picking || state == GrabState::Scrolling) {
            m_flow->press(GrabCommand::Window);
            m_flow->opened();
        }
        if (state == GrabState::Scrolling)
            m_flow->helperScrolls();
        check();
    }

    std::unique_ptr<Fake> m_fake;
    FakeWindowCatalogue m_windows;
    FakePictures m_pictures{m_windows};
    FakeClock m_clock;
    std::unique_ptr<GrabFlow> m_flow;
};

QTEST_MAIN(TestGrabFlow)
#include "test_grabflow.moc"
