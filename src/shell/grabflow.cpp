#include "shell/grabflow.h"

#include "base/clock.h"
#include "base/log.h"
#include "platform/pictures.h"

#include <QCoreApplication>

#include <array>
#include <tuple>
#include <utility>

namespace {

// Milliseconds.
constexpr int s_escapePair = 1000;
constexpr int s_freezeLimit = 180000;  // the desktop may ask the user first
constexpr int s_frontLimit = 1000;

constexpr auto s_nothing = GrabStep::Nothing;
constexpr auto s_start = GrabStep::Start;
constexpr auto s_bring = GrabStep::Bring;
constexpr auto s_keep = GrabStep::Keep;
constexpr auto s_replace = GrabStep::Replace;
constexpr auto s_giveUp = GrabStep::GiveUp;
constexpr auto s_count = GrabStep::Count;
constexpr auto s_hide = GrabStep::Hide;
constexpr auto s_follow = GrabStep::Follow;
constexpr auto s_finish = GrabStep::Finish;
constexpr auto s_close = GrabStep::Close;
constexpr auto s_leave = GrabStep::Leave;

using Row = std::array<GrabStep, GrabEventCount>;

// Escape is here where nothing that is open hears it: overlays, the browser, the question and the
// helper have the keyboard, or a watch on it. While the helper works the program can be closed at
// once, for its steps need no window.
// clang-format off
constexpr std::array<Row, GrabStateCount> s_table{{
    //               Press      Escape     Opens      Works      Scrolls    PutsBack   Ends       Quit     DisplayLost  Cancel
    /* Idle      */ {s_start,   s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_close, s_nothing,   s_nothing},
    /* Freezing  */ {s_bring,   s_giveUp,  s_follow,  s_hide,    s_nothing, s_nothing, s_finish,  s_leave, s_giveUp,    s_giveUp},
    /* Marking   */ {s_bring,   s_giveUp,  s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_leave, s_giveUp,    s_giveUp},
    /* Counting  */ {s_keep,    s_count,   s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_leave, s_nothing,   s_giveUp},
    /* Browsing  */ {s_bring,   s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_leave, s_nothing,   s_giveUp},
    /* Asking    */ {s_bring,   s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_leave, s_nothing,   s_giveUp},
    /* MenuWait  */ {s_replace, s_nothing, s_nothing, s_hide,    s_nothing, s_nothing, s_finish,  s_close, s_nothing,   s_giveUp},
    /* Picking   */ {s_bring,   s_nothing, s_nothing, s_nothing, s_follow,  s_nothing, s_finish,  s_close, s_giveUp,    s_giveUp},
    /* Scrolling */ {s_bring,   s_nothing, s_nothing, s_nothing, s_nothing, s_follow,  s_finish,  s_close, s_nothing,   s_giveUp},
    /* Ending    */ {s_keep,    s_nothing, s_nothing, s_nothing, s_nothing, s_nothing, s_finish,  s_leave, s_nothing,   s_nothing},
}};
// clang-format on

constexpr std::array<const char *, GrabStateCount> s_names{
    "Idle",   "Freezing", "Marking", "Counting",  "Browsing",
    "Asking", "MenuWait", "Picking", "Scrolling", "Ending"};

// In the order of the commands.
constexpr std::array<const char *, 12> s_kinds{"rectangle", "ellipse", "polygon", "window",
                                               "content",   "screen",  "screen",  "menu",
                                               "rectangle", "window",  "screen",  ""};

QString kindOf(GrabCommand command)
{
    return QString::fromLatin1(s_kinds.at(static_cast<size_t>(command)));
}

}  // namespace

GrabStep grabStep(GrabState state, GrabEvent event)
{
    return s_table.at(static_cast<size_t>(state)).at(static_cast<size_t>(event));
}

bool GrabFlow::canCancel() const
{
    return grabStep(m_state, GrabEvent::Cancel) != GrabStep::Nothing;
}

QString GrabFlow::nameOf(GrabState state)
{
    return QString::fromLatin1(s_names.at(static_cast<size_t>(state)));
}

void GrabFlow::setState(GrabState state)
{
    if (state == m_state)
        return;
    m_state = state;
    if (state == GrabState::Idle)
        m_window.tellProgress({});
    emit stateChanged(state);
}

void GrabFlow::press(GrabCommand command, std::optional<GrabGoals> goals, GrabWays ways)
{
    const Press pressed{command, goals, ways};
    // What was under way closes windows of its own before it begins.
    const Press later{command, goals, ways.setFlag(GrabWay::ByKey, false)};
    const GrabStep step = grabStep(m_state, GrabEvent::Press);
    if (step != GrabStep::Start)
        qCInfo(logGrab) << "press" << kindOf(command) << "starts nothing now:" << nameOf(m_state);
    switch (step) {
    case GrabStep::Start:
        run(pressed);
        break;
    case GrabStep::Bring:
        // Where nothing of this program can lie beside what scrolls, the key ends it, and so does
        // who wants the window back, which would come to lie over it.
        if (m_state == GrabState::Scrolling && !m_pictures.isLive() &&
            (command == m_command || command == GrabCommand::Show))
            m_tools.keepContent();
        else
            m_tools.bringForward();
        break;
    case GrabStep::Replace:
        m_kept = later;
        m_tools.stopMenuWait();
        break;
    case GrabStep::Keep:
        if (m_state == GrabState::Counting && command == m_command) {
            m_goals = goals;
            const GrabSituation now = m_window.situation();
            const bool isFirst = m_ways.testFlag(GrabWay::CountsDown);
            m_tools.restartCountDown(isFirst ? now.delay : now.countdown);
        } else {
            m_kept = later;
        }
        break;
    default:
        break;
    }
}

// A caller who ordered it has been told that there is no picture, and waits no more.
void GrabFlow::repeat()
{
    const bool wasOrdered = m_goals && m_goals->testFlag(GrabGoal::Caller);
    press(m_command, wasOrdered ? std::nullopt : m_goals, m_ways & GrabWay::CountsDown);
}

void GrabFlow::escape()
{
    const GrabStep step = grabStep(m_state, GrabEvent::Escape);
    if (step == GrabStep::Count) {
        const qint64 now = m_clock.now();
        const auto before = std::exchange(m_escapeTime, now);
        if (!before || now - *before > s_escapePair)
            return;
    }
    if (step != GrabStep::Nothing)
        giveUp();
}

void GrabFlow::giveUp()
{
    qCInfo(logGrab) << "given up:" << kindOf(m_command) << "while" << nameOf(m_state);
    m_isGivenUp = true;
    m_tools.closeOpen();
}

void GrabFlow::hear(GrabEvent event)
{
    switch (grabStep(m_state, event)) {
    case GrabStep::GiveUp:
        giveUp();
        break;
    case GrabStep::Hide:
        if (!std::exchange(m_isOutOfTheWay, true))
            m_window.hideAll(true);
        break;
    case GrabStep::Follow:
        // What scrolls is looked at while it moves.
        if (event == GrabEvent::Scrolls)
            thaw();
        setState(stateAfter(event));
        break;
    case GrabStep::Finish:
        if (m_helperWorks)
            finishHelper();
        break;
    default:
        break;
    }
}

GrabState GrabFlow::stateAfter(GrabEvent event) const
{
    if (event == GrabEvent::Scrolls)
        return GrabState::Scrolling;
    if (event == GrabEvent::PutsBack)
        return GrabState::Ending;
    switch (m_command) {
    case GrabCommand::Countdown:
        return GrabState::Counting;
    case GrabCommand::Windows:
        return GrabState::Browsing;
    case GrabCommand::Window:
        return GrabState::Picking;
    default:
        return GrabState::Marking;
    }
}

bool GrabFlow::quit()
{
    dropHelper();
    if (grabStep(m_state, GrabEvent::Quit) == GrabStep::Close)
        return true;
    m_closeAfter = true;
    giveUp();
    return false;
}

void GrabFlow::dropHelper()
{
    if (!std::exchange(m_helperWorks, false))
        return;
    m_kept.reset();
    m_tools.dropHelper();
    thaw();
    unwatch();
    comeBack();
    m_window.showPins(false);
    emit over();
    setState(GrabState::Idle);
}

void GrabFlow::begin(const Press &press)
{
    const bool wasMinimized = m_before.isMinimized;
    m_before = m_window.situation();
    // For the helper, whose wait gave way to this grab: that is not how the user had it.
    if (m_isOutOfTheWay)
        m_before.isMinimized = wasMinimized;
    m_command = press.command;
    m_goals = press.goals;
    m_picked = {};
    m_ways = press.ways;
    m_isGivenUp = false;
    m_isRaised = false;
    m_goesElsewhere = false;
    m_escapeTime.reset();
    m_pictures.showPointer(m_before.showsPointer);
    m_hidesPins = press.command != GrabCommand::Show && m_window.hidePins();
}

void GrabFlow::run(const Press &press)
{
    begin(press);
    const GrabCommand command = press.command;
    if (command == GrabCommand::Show) {
        m_owesShow = true;
        finish();
        return;
    }
    if (const QString refusal = m_window.refusal(command); !refusal.isEmpty()) {
        qCInfo(logGrab) << "refused:" << kindOf(command) << refusal;
        fail(refusal);
        finish();
        return;
    }
    if (isAskedFirst() && !askFirst()) {
        finish();
        return;
    }
    if (press.ways.testFlag(GrabWay::CountsDown) && command != GrabCommand::Countdown &&
        !countDownFirst()) {
        finish();
        return;
    }
    switch (command) {
    case GrabCommand::Screen:
    case GrabCommand::Countdown:
    case GrabCommand::Last:
    case GrabCommand::Active:
    case GrabCommand::Monitor:
        takeAtOnce();
        break;
    case GrabCommand::Windows:
        browse();
        break;
    case GrabCommand::Window:
    case GrabCommand::Menu:
        startHelper();
        break;
    default:
        mark();
        break;
    }
}

// An open menu is looked at while it comes and goes, and what scrolls while it moves.
bool GrabFlow::isAskedFirst() const
{
    return (m_command != GrabCommand::Menu && m_pictures.mayAsk()) ||
           (m_command == GrabCommand::Window && m_pictures.mayAskToWatch());
}

// True if the main window has got the front. A desktop that refuses it to a window which lies
// behind may give it to one that appears.
bool GrabFlow::comeToFront()
{
    const auto isThere = [this] {
        m_window.place(GrabFront::Place::InFront);
        return waitUntil(m_clock, s_frontLimit,
                         [this] { return m_isGivenUp || m_window.situation().active; });
    };
    if (isThere())
        return true;
    m_window.place(GrabFront::Place::Minimized);
    return isThere();
}

// The desktop asks its question for a program that is seen to be in front, so that it is asked once
// before anything is hidden. True if the user agrees; then all is as it was.
bool GrabFlow::askFirst()
{
    setState(GrabState::Freezing);
    if (!comeToFront() && m_pictures.mayAsk()) {
        m_trouble = tr("The desktop has to ask you whether this program may take pictures of the "
                       "screen, and does that only while its window is in front. Click on the "
                       "window, and try again.");
        return false;
    }
    const bool isAllowed = !m_isGivenUp && (!m_pictures.mayAsk() || freeze()) &&
                           (m_command != GrabCommand::Window || watch());
    thaw();
    const bool wasInFront = m_before.isActive && !m_before.isMinimized;
    if ((isAllowed || m_isGivenUp) && !wasInFront) {
        m_window.place(GrabFront::Place::Minimized);
        m_window.settle();
    }
    if (!isAllowed)
        restoreMinimized();
    return isAllowed;
}

// True once the pictures are there.
bool GrabFlow::freeze(Freeze how)
{
    m_holdsPictures = true;
    if (!askDesktop([&](const auto &answer) { m_pictures.freeze(how, answer); }))
        return false;
    // Who is in front is known with what stands still.
    if (m_pictures.isFrozen()) {
        const GrabSituation now = m_window.situation();
        m_before.process = now.process;
        m_before.window = now.window;
    }
    return true;
}

// True once there are pictures of what moves.
bool GrabFlow::watch()
{
    return std::exchange(m_watches, true) ||
           askDesktop([this](const auto &answer) { m_pictures.watch(answer); });
}

// Waits for the answer. Where it is no nothing is to be opened; the user is told when the grab
// ends, unless they have given it up.
bool GrabFlow::askDesktop(const std::function<void(const Pictures::Answer &)> &question)
{
    struct Answer {
        bool areThere = false;
        QString trouble{};
    };
    // Held here while it is waited for, and by who answers, which may be later.
    const auto answer = std::make_shared<std::optional<Answer>>();
    question([answer](bool areThere, const QString &trouble) {
        if (!*answer)
            *answer = {areThere, trouble};
    });
    // Where nobody has to be asked the answer comes in the next turn.
    QCoreApplication::processEvents();
    if (!*answer && !m_isGivenUp) {
        setState(GrabState::Freezing);
        m_tools.hearEscape(true);
        waitUntil(m_clock, s_freezeLimit, [&] { return *answer || m_isGivenUp; });
        m_tools.hearEscape(false);
    }
    if (m_isGivenUp)
        return false;
    if (*answer && (*answer)->areThere)
        return true;
    qCInfo(logGrab) << "the desktop gives no pictures:" << kindOf(m_command);
    m_trouble = *answer ? (*answer)->trouble : QString();
    if (m_trouble.isEmpty())
        m_trouble = tr("The desktop gave no picture of the screen.");
    return false;
}

void GrabFlow::thaw()
{
    if (std::exchange(m_holdsPictures, false))
        m_pictures.thaw();
}

void GrabFlow::unwatch()
{
    if (std::exchange(m_watches, false))
        m_pictures.unwatch();
}

// True once something can be marked on the desktop.
bool GrabFlow::openDesktop()
{
    if (m_before.freezes && m_pictures.isLive()) {
        // What is pointed at, and a menu that is open, are seen as long as nothing gets the focus.
        if (minimizeBefore() || m_hidesPins)
            m_window.settle();
        if (m_isGivenUp || !freeze(Freeze::Still))
            return false;
        m_window.closeMenus();
        m_window.takeFocus();
        return !m_isGivenUp;
    }
    m_window.takeFocus();
    // The overlay shows a picture of the desktop, and the window has to be gone from it.
    const bool hides = minimizeBefore() || m_hidesPins;
    if (hides && (!m_before.isComposited || !m_pictures.isLive()))
        m_window.settle();
    return !m_isGivenUp && freeze();
}

// Only where hot keys are heard in menus of other programs can one be open, and what opens now
// would get no key and no click.
void GrabFlow::closeMenus()
{
    if (m_before.freezes && m_pictures.isLive())
        m_window.closeMenus();
}

// The user arranges meanwhile what the grab is to show, so that what is in front counts when it is
// over. False where it was given up.
bool GrabFlow::countDownFirst()
{
    setState(GrabState::Counting);
    const bool goesOn = countDown(m_before.delay);
    m_window.closing();
    if (!m_before.isActive)
        m_window.focusOther();
    m_window.settle();
    const GrabSituation now = m_window.situation();
    m_before.process = now.process;
    m_before.window = now.window;
    return goesOn && !m_isGivenUp && !m_closeAfter;
}

bool GrabFlow::countDown(int seconds)
{
    const bool goesOn = m_tools.countDown(seconds) && !m_isGivenUp;
    if (!goesOn)
        qCInfo(logGrab) << "the countdown was given up";
    return goesOn;
}

void GrabFlow::mark()
{
    setState(GrabState::Freezing);
    GrabTools::Marked marked;
    if (openDesktop())
        marked = m_tools.mark(m_command);
    bool takes = bool(marked.take);
    if (!takes)
        qCInfo(logGrab) << kindOf(m_command) << "ends with nothing marked";
    setState(GrabState::Ending);
    if (takes && marked.delay > 0 && !m_closeAfter)
        takes = delay(marked.delay);
    if (takes && !m_closeAfter) {
        const bool isLive = !m_pictures.isFrozen();
        if (isLive && !m_before.isActive)
            m_window.focusOther();
        else if (m_before.active)
            m_window.focusOwn(m_before.active);
        // Live pixels are read only now: what was in front is again, and the overlay has left.
        if (isLive)
            m_window.settle();
        // A pointer that holds clicks has a shape of its own.
        if (isLive && m_before.showsPointer)
            m_window.freeClicks();
        Grab grab = marked.take();
        if (isLive && !m_before.isActive)
            m_window.regainFocus();
        deliver(std::move(grab));
        m_window.freeClicks();
    } else {
        restoreMinimized();
    }
    m_window.dropFocus(!m_before.isActive && !m_isRaised);
    finish();
}

// Between what has been marked and its picture. The user sees to what it is to show, so that the
// program that was in front is there again, and what was frozen before is of no use.
bool GrabFlow::delay(int seconds)
{
    thaw();
    m_window.settle();
    m_window.freeClicks();
    if (!m_before.isActive)
        m_window.focusOther();
    setState(GrabState::Counting);
    const bool goesOn = countDown(seconds);
    m_window.settle();
    const bool areThere = goesOn && freeze();
    setState(GrabState::Ending);
    return areThere;
}

void GrabFlow::takeAtOnce()
{
    setState(GrabState::Freezing);
    // The window that is in front may be this program's.
    const bool isLeft = m_command == GrabCommand::Active && m_before.isActive;
    const bool minimizes = !isLeft && minimizeBefore();
    const int seconds = m_command == GrabCommand::Countdown ? m_before.countdown : 0;
    const bool goesOn = seconds <= 0 || countDown(seconds);
    setState(GrabState::Ending);
    if (goesOn && !m_isGivenUp) {
        // The menu in which this was chosen, the countdown, the window. A key finds the desktop as
        // it is to be taken, unless it was heard in a menu.
        const bool isAsItWas = m_ways == GrabWay::ByKey && !minimizes && !m_hidesPins &&
                               seconds <= 0 && !m_before.freezes;
        if (!isAsItWas) {
            m_window.closing();
            if (!m_before.isActive)
                m_window.focusOther();
            m_window.settle();
        }
        const bool areThere = freeze();
        setState(GrabState::Ending);
        Grab grab = areThere ? m_tools.takeAtOnce(m_command, m_before.window) : Grab();
        if (!m_before.isActive)
            m_window.regainFocus();
        if (areThere)
            deliver(std::move(grab));
        else
            restoreMinimized();
    } else if (m_before.isActive) {
        restoreMinimized();
    } else {
        m_window.focusOther();
    }
    finish();
}

void GrabFlow::browse()
{
    setState(GrabState::Freezing);
    std::optional<QList<Grab>> grabs;
    closeMenus();
    getOutOfTheWay();
    const bool areThere = freeze();
    comeBack();
    if (areThere)
        grabs = m_tools.browse();
    if (!grabs)
        qCInfo(logGrab) << "the browser was closed with no window chosen";
    setState(GrabState::Ending);
    bool isShown = false;
    if (grabs && !m_closeAfter) {
        for (Grab &grab : *grabs)
            isShown = addDocument(std::move(grab)) || isShown;
        if (grabs->isEmpty())
            m_window.say(tr("No window was chosen: there is no picture."));
    }
    // The browser has brought it along.
    const bool goesBack = areThere && !isShown;
    if (goesBack && m_before.isMinimized) {
        m_window.place(GrabFront::Place::Minimized);
    } else if (goesBack && !m_before.isActive) {
        m_window.place(GrabFront::Place::Behind);
        m_window.focusOther();
    }
    finish();
}

void GrabFlow::startHelper()
{
    const GrabState state =
        m_command == GrabCommand::Window ? GrabState::Freezing : GrabState::MenuWait;
    if (m_command == GrabCommand::Window)
        closeMenus();
    setState(m_tools.mustAsk(m_command) ? GrabState::Asking : state);
    const bool wantsPictures = m_command != GrabCommand::Menu;
    m_helperWorks = m_tools.startHelper(m_command, [&] {
        setState(state);
        getOutOfTheWay();
        return !wantsPictures || (freeze() && watch());
    });
    if (!m_helperWorks)
        finish();
}

void GrabFlow::helperTakes(Grab grab)
{
    std::tie(grab.application, grab.title) = std::exchange(m_picked, {});
    // One that comes by another way, with no grab under way, is shown all the same.
    if (m_helperWorks)
        setState(GrabState::Ending);
    else
        m_goals.reset();
    if (!m_kept)
        comeBack();
    // It comes to the front with the window, whatever the setting says.
    m_before.showAfter = true;
    deliver(std::move(grab));
}

void GrabFlow::finishHelper()
{
    m_helperWorks = false;
    setState(GrabState::Ending);
    if (m_goesElsewhere) {
        // What brought it back has brought it in front of the others.
        if (!m_before.isActive && !m_before.isMinimized) {
            m_window.place(GrabFront::Place::Behind);
            m_window.focusOther();
        }
    } else if (!m_before.isMinimized || !m_window.situation().isMinimized) {
        // A window that the user had minimised stays so.
        m_owesShow = true;
    }
    finish();
}

// With a press that waits the window stays away: it is not to be in the next picture.
void GrabFlow::deliver(Grab grab)
{
    if (grab.picture.isNull()) {
        qCInfo(logGrab) << "no picture:" << kindOf(m_command);
        fail(tr("Nothing could be read there: there is no picture."));
        restoreMinimized();
        return;
    }
    const bool opensTab = addDocument(std::move(grab));
    thaw();
    if (!opensTab) {
        m_goesElsewhere = true;
        restoreMinimized();
        return;
    }
    if (!m_before.showAfter) {
        if (!m_pictures.isLive())
            restoreMinimized();
        return;
    }
    m_owesShow = m_kept.has_value();
    m_isRaised = !m_owesShow;
    if (m_isRaised)
        m_window.place(GrabFront::Place::InFront);
}

void GrabFlow::fail(const QString &reason)
{
    m_window.say(reason);
    emit failed(reason);
}

bool GrabFlow::addDocument(Grab grab)
{
    if (grab.kind.isEmpty())
        grab.kind = kindOf(m_command);
    grab.process = m_before.process;
    const QString note = grab.note;
    const bool opensTab = m_window.addDocument(std::move(grab), m_goals);
    if (!note.isEmpty())
        m_window.say(note);
    return opensTab;
}

bool GrabFlow::minimizeBefore()
{
    const bool minimizes = m_before.hideBefore && !m_before.isMinimized;
    if (minimizes)
        m_window.place(GrabFront::Place::Minimized);
    return minimizes;
}

// A window that was only hidden while the desktop was frozen comes back whoever was in front:
// nobody else knows the way to it.
void GrabFlow::restoreMinimized()
{
    const bool comesBack = m_before.isActive || !m_pictures.isLive();
    if (comesBack && !m_before.isMinimized && m_window.situation().isMinimized)
        m_window.place(GrabFront::Place::Restored);
}

// What stands still shows everything that was on the screen, so this program has to be gone before.
void GrabFlow::getOutOfTheWay()
{
    if (m_pictures.isLive() || std::exchange(m_isOutOfTheWay, true))
        return;
    m_window.hideAll(true);
    if (!m_before.isMinimized || m_hidesPins)
        m_window.settle();
}

void GrabFlow::comeBack()
{
    if (std::exchange(m_isOutOfTheWay, false))
        m_window.hideAll(false);
}

void GrabFlow::finish()
{
    thaw();
    unwatch();
    if (const QString trouble = std::exchange(m_trouble, {}); !trouble.isEmpty())
        fail(trouble);
    emit over();
    if (std::exchange(m_closeAfter, false)) {
        m_kept.reset();
        m_owesShow = false;
        m_window.showPins(false);
        comeBack();
        setState(GrabState::Idle);
        m_window.close();
        return;
    }
    if (!m_kept) {
        m_window.showPins(!m_isRaised && !m_owesShow);
        comeBack();
        if (std::exchange(m_owesShow, false)) {
            m_isRaised = true;
            m_window.place(GrabFront::Place::InFront);
        }
    }
    // A press may have come just now.
    if (!m_kept) {
        setState(GrabState::Idle);
        return;
    }
    if (std::exchange(m_isRaised, false) && !m_before.isActive &&
        m_kept->command != GrabCommand::Show) {
        // It came after the window had been shown, and is about what was there before.
        m_window.place(m_before.isMinimized ? GrabFront::Place::Minimized
                                            : GrabFront::Place::Behind);
        m_window.focusOther();
        m_owesShow = true;
    }
    setState(GrabState::Ending);
    // From the event loop: presses that follow one another must not pile up on the stack.
    QMetaObject::invokeMethod(
        this,
        [this] {
            const auto kept = std::exchange(m_kept, std::nullopt);
            if (kept && !m_closeAfter)
                run(*kept);
            else
                finish();
        },
        Qt::QueuedConnection);
}
