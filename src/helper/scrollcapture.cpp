#include "helper/scrollcapture.h"

#include "helper/helperjob.h"
#include "platform/services.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int s_heightLimit = 30000;  // rows
// Milliseconds.
constexpr int s_round = 12;
constexpr int s_rest = 90;        // without movement: the view is at rest
constexpr int s_restless = 4000;  // it never will be, as a film plays in it
// For a first sign of movement. A program that is slower than this is at the top too early; on the
// way down it is asked again.
constexpr int s_patienceUp = 700;
constexpr int s_patienceDown = 500;
constexpr int s_settle = 150;
constexpr int s_coverPatience = 2000;
constexpr int s_progressLimit = 60000;
// Clicks of the wheel.
constexpr int s_firstClimb = 10;
constexpr int s_longestClimb = 80;
constexpr int s_longestStep = 40;
// How much of the view a step may move: the rest is what the match is made of.
constexpr double s_stepPart = 0.7;
// Rows and columns by which a told area may miss what moves.
constexpr int s_tolerance = 2;
constexpr int s_corrections = 4;
constexpr int s_longestWayBack = 300;

}  // namespace

ScrollCapture::ScrollCapture(const Target &target) : m_target(target), m_stitcher(s_heightLimit) {}

ScrollCapture::Result ScrollCapture::run()
{
    for (const auto &window : services().windows->windows(WindowServer::List::OnScreen, 0)) {
        if (window.number == m_target.window)
            m_bounds = window.bounds.toRect();
    }
    m_crop = QRect(QPoint(), m_bounds.size());
    m_sinceProgress.start();
    QImage original;
    if (!look(original))
        return {.note = m_note};
    m_view = original;
    goToTop();
    if (begin())
        goDown();
    if (m_stop != Stop::Abandon)
        putBack(original);
    if (m_stop == Stop::Abandon || m_stop == Stop::Discard)
        return {};
    return {.picture = m_stitcher.finish(), .note = m_note};
}

bool ScrollCapture::pause(int milliseconds)
{
    if (!pauseFor(milliseconds))
        abandon();
    return m_stop != Stop::Abandon;
}

void ScrollCapture::endWith(const QString &note)
{
    m_ended = true;
    if (m_note.isEmpty())
        m_note = note;
}

// The window's own picture: what lies over it, a notice or the panel of this program, is not in
// it.
bool ScrollCapture::look(QImage &view)
{
    view = services().windows->picture(std::nullopt, {m_target.window});
    if (view.isNull()) {
        endWith(tr("The window was closed."));
        return false;
    }
    if (view.size() != m_bounds.size()) {
        endWith(tr("The window changed its size."));
        return false;
    }
    return true;
}

QImage ScrollCapture::cropped(const QImage &view) const
{
    return m_crop == view.rect() ? view : view.copy(m_crop);
}

// Whether a turn of the wheel would reach the window, and no other.
bool ScrollCapture::isReachable() const
{
    const auto windows =
        services().windows->windows(WindowServer::List::AtAndAbove, m_target.window);
    return !windows.isEmpty() &&
           std::none_of(windows.begin(), windows.end(), [this](const auto &window) {
               return window.number != m_target.window && window.process != ownProcess() &&
                      window.bounds.contains(m_target.anchor);
           });
}

// What comes in front may be a mere tip. False when the capture ends here.
bool ScrollCapture::waitUntilReachable()
{
    for (int waited = 0; !isReachable(); waited += s_settle) {
        QImage view;
        if (!look(view))
            return false;
        if (waited >= s_coverPatience)
            endWith(tr("Another window came in front."));
        if (m_ended || !pause(s_settle))
            return false;
    }
    return true;
}

// Turns the wheel, down for more than 0 and not at all for 0, and waits until the view has moved
// and come to rest.
ScrollCapture::Turn ScrollCapture::turn(int clicks, int patience)
{
    const Stop stop = m_stop;
    const QImage before = cropped(m_view);
    if (clicks != 0 && !isReachable())
        return Turn::Nothing;
    if (clicks != 0 && !services().windows->turnWheel(m_target.anchor, clicks)) {
        endWith(tr("This desktop lets no program turn the wheel."));
        return Turn::Nothing;
    }
    QImage last = before;
    bool hasMoved = false;
    QElapsedTimer sinceTurn;
    sinceTurn.start();
    QElapsedTimer sinceMove = sinceTurn;
    while (pause(s_round) && m_stop == stop) {
        QImage view;
        if (!look(view))
            return Turn::Nothing;
        const QImage now = cropped(view);
        if (now != last) {
            // A caret that blinks meanwhile is not movement.
            if (findMovement(last, now).kind != Movement::Kind::Still)
                sinceMove.restart();
            hasMoved = hasMoved || findMovement(before, now).kind != Movement::Kind::Still;
            last = now;
            m_view = view;
        }
        if (hasMoved && (sinceMove.elapsed() >= s_rest || sinceTurn.elapsed() >= s_restless))
            return Turn::Moved;
        if (!hasMoved && sinceTurn.elapsed() >= patience)
            return Turn::Nothing;
    }
    return Turn::Nothing;
}

void ScrollCapture::goToTop()
{
    QElapsedTimer clock;
    clock.start();
    int clicks = s_firstClimb;
    while (m_stop == Stop::None && clock.elapsed() < s_progressLimit &&
           turn(-clicks, s_patienceUp) == Turn::Moved)
        clicks = std::min(2 * clicks, s_longestClimb);
}

QRect ScrollCapture::toldArea() const
{
    return m_target.area.translated(-m_bounds.topLeft()) & m_view.rect();
}

// The first step, by one click, tells what of the window moves, and how far.
Movement ScrollCapture::firstStep()
{
    const QRect told = toldArea();
    const QImage first = m_view;
    const Stop stop = m_stop;
    turn(1, s_patienceDown);
    // It is under way, and has to be known to be undone.
    if (m_stop != stop)
        turn(0, s_settle);
    Movement movement = findMovement(first, m_view);
    if (movement.kind != Movement::Kind::Moved && !told.isEmpty()) {
        // Much else may go on in the window.
        movement = findMovement(first.copy(told), m_view.copy(told));
        movement.moved.translate(told.topLeft());
    }
    if (movement.kind != Movement::Kind::Moved)
        return movement;
    // What is told about the area counts as far as the pixels agree.
    const QRect around = told.adjusted(-s_tolerance, -s_tolerance, s_tolerance, s_tolerance);
    m_crop = !told.isEmpty() && around.contains(movement.moved)
                 ? told
                 : scrollingArea(first, m_view, movement);
    m_rowsPerClick = movement.rows;
    return movement;
}

// False where nothing scrolls.
bool ScrollCapture::begin()
{
    const QImage first = m_view;
    if (m_stop != Stop::None || m_ended) {
        m_stitcher.add(first);
        return false;
    }
    const Movement movement = firstStep();
    if (movement.kind != Movement::Kind::Moved && !toldArea().isEmpty())
        m_crop = toldArea();
    m_stitcher.add(cropped(first));
    if (movement.kind != Movement::Kind::Moved) {
        if (m_stop == Stop::None)
            endWith(movement.kind == Movement::Kind::Still
                        ? tr("Nothing scrolls there: it was taken as it is.")
                        : tr("The content could not be followed."));
        return false;
    }
    m_stitcher.add(cropped(m_view), movement.rows);
    emit progressed(m_stitcher.rows());
    m_sinceProgress.restart();
    return true;
}

void ScrollCapture::goDown()
{
    const int usual = std::clamp(static_cast<int>(s_stepPart * m_crop.height() / m_rowsPerClick), 1,
                                 s_longestStep);
    int clicks = usual;
    while (m_stop == Stop::None && !m_ended && step(clicks)) {
        clicks = std::min(clicks, usual);
        if (m_sinceProgress.elapsed() >= s_progressLimit)
            endWith(tr("Nothing new came for a minute."));
    }
    if (m_stitcher.isFull())
        endWith(tr("The picture has reached its limit of %1 pixels.").arg(s_heightLimit));
}

// One step down and what it brings. False when there is nothing more to come. `clicks` is how far
// to go, and becomes how far to go next.
bool ScrollCapture::step(int &clicks)
{
    // Pictures may have arrived since the last look.
    if (!waitUntilReachable() || !look(m_view))
        return false;
    m_stitcher.add(cropped(m_view));
    const QImage accepted = cropped(m_view);
    if (turn(clicks, s_patienceDown) == Turn::Nothing)
        return m_stop == Stop::None && !m_ended && goesOn();
    const int expected = static_cast<int>(std::lround(m_rowsPerClick * clicks));
    switch (m_stitcher.add(cropped(m_view), expected).kind) {
    case Movement::Kind::Moved:
        emit progressed(m_stitcher.rows());
        m_sinceProgress.restart();
        clicks *= 2;
        return !m_stitcher.isFull();
    case Movement::Kind::Still:
        return false;
    case Movement::Kind::Doubtful:
    case Movement::Kind::Lost:
        break;
    }
    if (clicks > 1 && goBack(accepted, clicks)) {
        clicks /= 2;
        return true;
    }
    if (m_stop == Stop::None)
        endWith(tr("The content could not be followed further."));
    return false;
}

// Whether there is more to come where a turn of the wheel has moved nothing: a program that is at
// the end goes up when it is told to, and one that is stuck does not.
bool ScrollCapture::goesOn()
{
    Turn answer = turn(-1, s_patienceUp);
    // What it was told it does when it comes to itself, so it is told no more.
    while (answer == Turn::Nothing && m_stop == Stop::None && !m_ended && waitUntilReachable()) {
        if (m_sinceProgress.elapsed() >= s_progressLimit)
            endWith(tr("The program did not answer for a minute."));
        answer = turn(0, s_patienceDown);
    }
    if (m_stop != Stop::None || m_ended)
        return false;
    turn(1, s_patienceDown);
    const Movement movement = m_stitcher.add(cropped(m_view));
    if (movement.kind != Movement::Kind::Moved)
        return false;
    emit progressed(m_stitcher.rows());
    m_sinceProgress.restart();
    return !m_stitcher.isFull();
}

// Up again, to the view that `wanted` was.
bool ScrollCapture::goBack(const QImage &wanted, int clicks)
{
    turn(-clicks, s_patienceDown);
    // A step that the content's end cut short leads up too far.
    for (int i = 0; i <= clicks && m_stop == Stop::None && !m_ended; ++i) {
        const QImage now = cropped(m_view);
        if (findMovement(now, wanted).kind == Movement::Kind::Still)
            return true;
        if (findMovement(now, wanted, static_cast<int>(m_rowsPerClick)).kind !=
                Movement::Kind::Moved ||
            turn(1, s_patienceDown) == Turn::Nothing)
            return false;
    }
    return false;
}

// As near to where it was as the wheel leads: clicks count from wherever the content is, so what
// can't be met from its end may be met from its top.
void ScrollCapture::putBack(const QImage &original)
{
    turn(0, s_settle);
    if (original.size() != m_view.size() || original == m_view)
        return;
    // It was ended on the way up.
    if (m_rowsPerClick <= 0 && firstStep().kind != Movement::Kind::Moved)
        return;
    const QImage wanted = cropped(original);
    const std::optional<int> target = m_stitcher.offsetOf(wanted);
    if (!target) {
        goDownTo(wanted);
        return;
    }
    if (goTo(*target))
        return;
    goTo(0);
    goTo(*target);
}

// To a row of the content, as near as it gets. True when it is there.
bool ScrollCapture::goTo(int row)
{
    for (int i = 0; i < s_corrections; ++i) {
        const std::optional<int> at = m_stitcher.offsetOf(cropped(m_view));
        if (!at || *at == row)
            return at.has_value();
        const double clicks = (row - *at) / m_rowsPerClick;
        // The top itself is met by any turn that leads beyond it.
        const int whole = static_cast<int>(row == 0 ? std::floor(clicks) : std::lround(clicks));
        if (whole == 0 || turn(whole, s_patienceUp) == Turn::Nothing)
            return false;
    }
    return false;
}

// To a view that lies below what has been taken.
void ScrollCapture::goDownTo(const QImage &wanted)
{
    const int step = std::max(1, static_cast<int>(s_stepPart * m_crop.height() / m_rowsPerClick));
    for (int i = 0; i < s_longestWayBack; ++i) {
        const Movement left = findMovement(cropped(m_view), wanted);
        if (left.kind == Movement::Kind::Still)
            return;
        const bool isNear = left.kind == Movement::Kind::Moved;
        const int clicks =
            isNear ? static_cast<int>(std::lround(left.rows / m_rowsPerClick)) : step;
        if (clicks == 0 || turn(clicks, s_patienceUp) == Turn::Nothing || isNear)
            return;
    }
}
