#include "helper/scrollcapture.h"

#include "helper/helperjob.h"
#include "platform/services.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int s_heightLimit = 30000;  // rows
// Milliseconds.
constexpr int s_round = 12;
constexpr int s_rest = 90;          // without a change: the view is at rest
constexpr int s_patientRest = 600;  // the same where content comes late, or is not known not to
constexpr int s_longestRest = 1500;
constexpr int s_restless = 4000;   // it never will be, as a film plays in it
constexpr int s_patienceUp = 400;  // for a first sign of movement
constexpr int s_patienceDown = 500;
constexpr int s_slowPatience = 3000;
constexpr int s_settle = 150;
constexpr int s_coverPatience = 2000;
constexpr int s_handPatience = 250;
constexpr int s_progressLimit = 60000;
// Clicks of the wheel.
constexpr int s_firstClimb = 10;
constexpr int s_longestClimb = 80;
constexpr int s_longestStep = 40;
// How much of the view a step may move: the rest is what the match is made of.
constexpr double s_stepPart = 0.7;
// Rows and columns by which a told area may miss what moves.
constexpr int s_tolerance = 2;
// Restless turns at the top: a film, and no content that goes by.
constexpr int s_films = 2;
// Rows that changed in what two views share: more than a caret or a mark.
constexpr int s_lateRows = 24;
constexpr int s_secondLooks = 2;  // places
constexpr int s_corrections = 4;
constexpr int s_longestWayBack = 300;
constexpr int s_fromEdge = 4;  // pixels

// Rows of the later view that are not what the movement brought there.
int rowsThatDiffer(const QImage &before, const QImage &after, const Movement &movement)
{
    const QRect &moved = movement.moved;
    const size_t bytes = sizeof(QRgb) * static_cast<size_t>(moved.width());
    int result = 0;
    for (int y = moved.top(); y < movement.bottom - movement.rows; ++y) {
        const auto at = [&](const QImage &view, int row) {
            return view.constScanLine(row) + sizeof(QRgb) * static_cast<size_t>(moved.left());
        };
        result += std::memcmp(at(before, y + movement.rows), at(after, y), bytes) != 0;
    }
    return result;
}

}  // namespace

ScrollCapture::ScrollCapture(const Target &target)
    : m_clock(*services().clock), m_target(target), m_stitcher(s_heightLimit), m_rest(s_rest),
      m_sinceProgress(m_clock)
{
}

ScrollCapture::Result ScrollCapture::run()
{
    for (const auto &window : services().windows->windows(WindowServer::List::OnScreen, 0)) {
        if (window.number == m_target.window)
            m_bounds = window.bounds.toRect();
    }
    m_crop = QRect(QPoint(), m_bounds.size());
    m_anchor = m_target.anchor - m_bounds.topLeft();
    m_sinceProgress.restart();
    QImage original;
    if (!look(original))
        return {.note = m_note};
    m_view = original;
    emit progressed(tr("Scrolling to the top"));
    m_climbed = climb();
    if (begin())
        goDown();
    if (m_stop != Stop::Abandon) {
        emit progressed(tr("Putting it back"));
        emit puttingBack();
        putBack(original);
    }
    if (m_stop == Stop::Abandon || m_stop == Stop::Discard)
        return {};
    return {.picture = m_stitcher.finish(), .note = m_note};
}

bool ScrollCapture::pause(int milliseconds)
{
    if (!m_clock.pause(milliseconds))
        abandon();
    return m_stop != Stop::Abandon;
}

void ScrollCapture::endWith(const QString &note)
{
    m_ended = true;
    if (m_note.isEmpty())
        m_note = note;
}

void ScrollCapture::tellRows()
{
    m_sinceProgress.restart();
    emit progressed(tr("%1 pixels").arg(QLocale().toString(m_stitcher.rows())));
}

// The window's own picture: what lies over it, a notice or the panel of this program, is not in
// it. `view` stays as it is where there is none.
bool ScrollCapture::look(QImage &view)
{
    const QImage now = services().windows->picture(std::nullopt, {m_target.window});
    if (now.isNull())
        endWith(tr("The window left the screen"));
    else if (now.size() != m_bounds.size())
        endWith(tr("The window changed its size"));
    else
        view = now;
    return !now.isNull() && now.size() == m_bounds.size();
}

QImage ScrollCapture::cropped(const QImage &view) const
{
    return m_crop == view.rect() ? view : view.copy(m_crop);
}

QRect ScrollCapture::toldArea() const
{
    return m_target.area.translated(-m_bounds.topLeft()) & m_view.rect();
}

// Whether a turn of the wheel would reach the window, and no other. It may have been moved.
bool ScrollCapture::isReachable()
{
    const auto windows =
        services().windows->windows(WindowServer::List::AtAndAbove, m_target.window);
    if (windows.isEmpty())
        return false;
    m_bounds.moveTopLeft(windows.last().bounds.toRect().topLeft());
    const QPoint at = m_bounds.topLeft() + m_anchor;
    return std::none_of(windows.begin(), windows.end(), [&](const auto &window) {
        return window.number != m_target.window && window.process != ownProcess() &&
               window.bounds.contains(at);
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
            endWith(tr("Another window came in front"));
        if (m_ended || !pause(s_settle))
            return false;
    }
    return true;
}

// With Ctrl held the wheel enlarges, with a button it drags.
bool ScrollCapture::waitForFreeHand()
{
    const Stop stop = m_stop;
    Stopwatch clock(m_clock);
    for (bool told = false; services().windows->isHandBusy();) {
        if (!told && clock.elapsed() >= s_handPatience) {
            emit progressed(tr("Let go of all keys and buttons"));
            told = true;
        }
        if (clock.elapsed() >= s_progressLimit || !pause(s_round) || m_stop != stop)
            return false;
    }
    return true;
}

// Turns the wheel, down for more than 0 and not at all for 0, and waits until the view has moved
// and come to rest.
ScrollCapture::Turn ScrollCapture::turn(int clicks, int patience)
{
    const Stop stop = m_stop;
    if (clicks != 0) {
        if (!waitForFreeHand() || !isReachable())
            return Turn::Nothing;
        if (!services().windows->turnWheel(m_bounds.topLeft() + m_anchor, clicks)) {
            endWith(tr("This desktop lets no program turn the wheel"));
            return Turn::Nothing;
        }
    }
    const QImage before = cropped(m_view);
    QImage last = before;
    bool hasMoved = false;
    Stopwatch sinceTurn(m_clock);
    Stopwatch sinceChange = sinceTurn;
    while (pause(s_round) && m_stop == stop) {
        QImage view;
        if (!look(view))
            return Turn::Nothing;
        const QImage now = cropped(view);
        if (now != last) {
            // A caret that blinks meanwhile is no change.
            const bool hasChanged = findMovement(last, now).kind != Movement::Kind::Still;
            if (hasChanged) {
                const bool isLate = hasMoved && sinceChange.elapsed() >= s_rest;
                m_sawLate = m_sawLate || (isLate && isInPlace(last, now));
                sinceChange.restart();
            }
            // Slow scrolling may look like spots from one look to the next.
            hasMoved =
                hasMoved || hasChanged || findMovement(before, now).kind != Movement::Kind::Still;
            last = now;
            m_view = view;
        }
        if (hasMoved && (sinceChange.elapsed() >= m_rest || sinceTurn.elapsed() >= s_restless))
            return Turn::Moved;
        if (!hasMoved && sinceTurn.elapsed() >= patience)
            return Turn::Nothing;
    }
    return Turn::Nothing;
}

// To the top, also when the capture has been told to stop. True when the content went up.
bool ScrollCapture::climb()
{
    const Stop stop = m_stop;
    Stopwatch clock(m_clock);
    bool hasMoved = false;
    int clicks = s_firstClimb;
    for (int films = 0; m_stop == stop && clock.elapsed() < s_progressLimit && films < s_films;) {
        Stopwatch sinceTurn(m_clock);
        if (turn(-clicks, m_isSlow ? s_slowPatience : s_patienceUp) == Turn::Nothing)
            break;
        hasMoved = true;
        films += sinceTurn.elapsed() >= s_restless;
        clicks = std::min(2 * clicks, s_longestClimb);
    }
    // A turn that was cut short may have moved it.
    return hasMoved || m_stop != stop;
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
    m_crop = m_target.marked || (!told.isEmpty() && around.contains(movement.moved))
                 ? told
                 : scrollingArea(first, m_view, movement);
    m_rowsPerClick = movement.rows;
    // At the edge of what scrolls: in its midst boxes and lists would pass by and take the wheel
    // for themselves.
    m_anchor = {m_crop.x() + std::min(s_fromEdge, m_crop.width() / 2), m_crop.center().y()};
    return movement;
}

// False where nothing scrolls, or it can't be told how far.
bool ScrollCapture::begin()
{
    QImage first = m_view;
    Movement movement{.kind = Movement::Kind::Still};
    if (runs())
        movement = firstStep();
    if (movement.kind != Movement::Kind::Moved && runs()) {
        // A slow program carries out only now what it was told on the way up.
        const bool answers = turn(0, s_slowPatience) == Turn::Moved;
        m_isSlow = true;
        if (answers || movement.kind != Movement::Kind::Still) {
            m_climbed = climb() || m_climbed;
            first = m_view;
            movement = runs() ? firstStep() : movement;
        }
    }
    if (movement.kind != Movement::Kind::Moved && !toldArea().isEmpty())
        m_crop = toldArea();
    m_stitcher.add(cropped(first));
    m_accepted = cropped(first);
    if (movement.kind != Movement::Kind::Moved) {
        if (m_stop == Stop::None)
            endWith(movement.kind == Movement::Kind::Still
                        ? tr("Nothing scrolls there: it was taken as it is")
                        : tr("The content could not be followed"));
        return false;
    }
    m_accepted = cropped(m_view);
    m_stitcher.add(m_accepted, movement.rows);
    tellRows();
    return true;
}

int ScrollCapture::usualStep() const
{
    return std::clamp(static_cast<int>(s_stepPart * m_crop.height() / m_rowsPerClick), 1,
                      s_longestStep);
}

// Pictures may have come after their place had gone by. A few places tell, on the way up, whether
// any have; only then all of it is looked at again.
void ScrollCapture::lookAgain()
{
    const int lowest = m_stitcher.offset();
    int at = lowest;
    bool isLate = false;
    for (int part = s_secondLooks; part > 0 && m_stop == Stop::None && !isLate; --part) {
        const int row = lowest * part / (s_secondLooks + 1);
        const int clicks = static_cast<int>(std::lround((row - at) / m_rowsPerClick));
        if (clicks == 0 || turn(clicks, s_patienceUp) == Turn::Nothing)
            return;
        const QImage now = cropped(m_view);
        const std::optional<int> found = m_stitcher.offsetOf(now);
        isLate = !found || m_stitcher.rowsThatDiffer(now, *found) >= s_lateRows;
        at = found.value_or(row);
    }
    if (!isLate)
        return;
    const int down = static_cast<int>(std::ceil((lowest - at) / m_rowsPerClick)) + 1;
    turn(down, s_patienceDown);
    if (!isInPlace(m_accepted, cropped(m_view)))
        return;
    QImage last = cropped(m_view);
    m_stitcher.takeOver(last);
    for (int offset = lowest; offset > 0 && m_stop == Stop::None;) {
        if (turn(-usualStep(), s_patienceUp) == Turn::Nothing)
            return;
        const QImage now = cropped(m_view);
        const Movement movement = findMovement(now, last);
        if (movement.kind != Movement::Kind::Moved)
            return;
        offset -= movement.rows;
        m_stitcher.patch(now, offset, now.height());
        last = now;
    }
}

// What came into a view that has not scrolled since.
void ScrollCapture::takeOver(const QImage &view)
{
    m_accepted = view;
    m_stitcher.takeOver(view);
    beMorePatient();
}

void ScrollCapture::beMorePatient()
{
    m_rest = std::min(2 * std::max(m_rest, s_patientRest / 2), s_longestRest);
}

void ScrollCapture::goDown()
{
    int clicks = usualStep();
    while (runs() && step(clicks)) {
        clicks = std::min(clicks, usualStep());
        if (m_sawLate)
            m_rest = std::max(m_rest, s_patientRest);
        if (m_sinceProgress.elapsed() >= s_progressLimit)
            endWith(tr("Nothing new came for a minute"));
    }
    m_rest = s_rest;
    if (m_stop == Stop::None && look(m_view))
        lookAgain();
    if (m_stitcher.isFull())
        endWith(tr("The picture has reached its limit of %1 pixels").arg(s_heightLimit));
}

// One step down and what it brings. False when there is nothing more to come. `clicks` is how far
// to go, and becomes how far to go next.
bool ScrollCapture::step(int &clicks)
{
    if (!waitUntilReachable() || !refresh())
        return false;
    if (turn(clicks, s_patienceDown) == Turn::Nothing)
        return runs() && goesOn();
    const QImage before = m_accepted;
    const QImage now = cropped(m_view);
    const int expected = static_cast<int>(std::lround(m_rowsPerClick * clicks));
    const Movement movement = m_stitcher.add(now, expected);
    switch (movement.kind) {
    case Movement::Kind::Moved:
        m_accepted = now;
        repairOverlap(movement, before, clicks);
        tellRows();
        clicks *= 2;
        return !m_stitcher.isFull();
    case Movement::Kind::Still:
        return goesOn();
    case Movement::Kind::Doubtful:
    case Movement::Kind::Lost:
        break;
    }
    if (isInPlace(before, now)) {
        // Something came, and nothing scrolled.
        takeOver(now);
        return goesOn();
    }
    if (goBack(clicks) && clicks > 1) {
        clicks /= 2;
        return true;
    }
    if (m_stop == Stop::None)
        endWith(tr("The content could not be followed further"));
    return false;
}

// The view as it is now, before it is scrolled on: pictures may have arrived since, and a slow end
// of the last movement.
bool ScrollCapture::refresh()
{
    if (!look(m_view))
        return false;
    const QImage now = cropped(m_view);
    if (now == m_accepted)
        return true;
    const Movement movement = m_stitcher.add(now);
    const bool isKnown =
        movement.kind == Movement::Kind::Still || movement.kind == Movement::Kind::Moved;
    if (!isKnown && !isInPlace(m_accepted, now)) {
        endWith(tr("The content could not be followed further"));
        return false;
    }
    if (!isKnown)
        takeOver(now);
    m_accepted = now;
    return true;
}

// Where what two views share has changed meanwhile, so may have what went out of sight: back once
// more, and down again.
void ScrollCapture::repairOverlap(const Movement &movement, const QImage &before, int clicks)
{
    if (m_hasFilm || rowsThatDiffer(before, m_accepted, movement) < s_lateRows)
        return;
    const QImage lower = m_accepted;
    if (turn(-clicks, s_patienceDown) == Turn::Nothing)
        return;
    const QImage upper = cropped(m_view);
    Movement none = movement;
    none.rows = 0;
    if (rowsThatDiffer(before, upper, none) < s_lateRows)
        m_hasFilm = true;  // it is as it was: what differed lies above the content, and moves
    else if (isInPlace(before, upper))
        m_stitcher.patch(upper, m_stitcher.offset() - movement.rows,
                         movement.moved.top() + movement.rows);
    if (!m_hasFilm)
        beMorePatient();
    turn(clicks, s_patienceDown);
    if (!isInPlace(lower, cropped(m_view)))
        return;
    m_accepted = cropped(m_view);
    m_stitcher.takeOver(m_accepted);
}

// Whether there is more to come where a turn of the wheel has moved nothing: a program that is at
// the end goes up when it is told to, and one that hangs does not.
bool ScrollCapture::goesOn()
{
    Turn answer = turn(-1, s_patienceDown);
    // What it was told it does when it comes to itself, so it is told no more.
    while (answer == Turn::Nothing && runs() && waitUntilReachable()) {
        if (m_sinceProgress.elapsed() >= s_progressLimit)
            endWith(tr("The program did not answer for a minute"));
        answer = turn(0, s_patienceDown);
    }
    if (!runs())
        return false;
    turn(1, s_patienceDown);
    const QImage now = cropped(m_view);
    switch (m_stitcher.add(now).kind) {
    case Movement::Kind::Moved:
        m_accepted = now;
        tellRows();
        return !m_stitcher.isFull();
    case Movement::Kind::Still:
        return false;
    case Movement::Kind::Doubtful:
    case Movement::Kind::Lost:
        break;
    }
    if (isInPlace(m_accepted, now)) {
        takeOver(now);
    } else if (runs()) {
        endWith(tr("The content could not be followed further"));
    }
    return false;
}

// Up again, to the view that was accepted last.
bool ScrollCapture::goBack(int clicks)
{
    turn(-clicks, s_patienceDown);
    // A step that the content's end cut short leads up too far.
    for (int i = 0; i <= clicks && runs(); ++i) {
        const QImage now = cropped(m_view);
        if (findMovement(m_accepted, now).kind == Movement::Kind::Still)
            return true;
        if (isInPlace(m_accepted, now)) {
            takeOver(now);
            return true;
        }
        if (findMovement(now, m_accepted).kind != Movement::Kind::Moved ||
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
    if (!look(m_view) || !isReachable() || original.size() != m_view.size() || original == m_view)
        return;
    // It was ended on the way up, or nothing could be told of it.
    if (m_rowsPerClick <= 0 && m_climbed && firstStep().kind != Movement::Kind::Moved)
        return;
    const QImage wanted = cropped(original);
    const std::optional<int> target = m_stitcher.offsetOf(wanted);
    if (m_rowsPerClick > 0 && target && goTo(*target))
        return;
    climb();
    if (m_climbed && (!target || !goTo(*target)))
        goDownTo(wanted);
}

// To a row of the content, as near as it gets. True when it is there.
bool ScrollCapture::goTo(int row)
{
    for (int i = 0; i < s_corrections; ++i) {
        const std::optional<int> at = m_stitcher.offsetOf(cropped(m_view));
        if (!at || *at == row)
            return at.has_value();
        const int clicks = static_cast<int>(std::lround((row - *at) / m_rowsPerClick));
        if (clicks == 0 || turn(clicks, s_patienceUp) == Turn::Nothing)
            return false;
    }
    return false;
}

// To a view that lies below.
void ScrollCapture::goDownTo(const QImage &wanted)
{
    const Stop stop = m_stop;
    for (int i = 0; i < s_longestWayBack && m_stop == stop; ++i) {
        const Movement left = findMovement(cropped(m_view), wanted);
        if (left.kind == Movement::Kind::Still)
            return;
        const bool isNear = left.kind == Movement::Kind::Moved;
        const int clicks =
            isNear ? static_cast<int>(std::lround(left.rows / m_rowsPerClick)) : usualStep();
        if (clicks == 0 || turn(clicks, s_patienceUp) == Turn::Nothing || isNear)
            return;
    }
}
