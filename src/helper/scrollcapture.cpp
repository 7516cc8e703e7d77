#include "helper/scrollcapture.h"

#include "helper/pixelrows.h"
#include "helper/scrollingarea.h"
#include "platform/services.h"

#include <QLocale>
#include <QPainter>
#include <QScopeGuard>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int s_longest = 30000;              // pixels, either way
constexpr qint64 s_mostPixels = 400'000'000;  // in all
// Milliseconds.
constexpr int s_patientRest = 600;  // where content comes late, or is not known not to
constexpr int s_firstRest = 180;    // the first step tells how far one click leads
constexpr int s_longestRest = 1500;
constexpr int s_restless = 4000;   // a turn took this long: a film plays
constexpr int s_patienceUp = 400;  // for a first sign of movement
constexpr int s_leastPatienceUp = 250;
constexpr int s_patienceDown = 500;
constexpr int s_leastPatienceDown = 400;
constexpr int s_slowPatience = 3000;
constexpr int s_settle = 150;
constexpr int s_glow = 1500;  // at the end of the content: it is gone by then
constexpr int s_fade = 2500;  // of a bar that lies over the content
constexpr int s_wayBackPatience = 10000;
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
constexpr int s_tellingLines = 24;  // that changed: more than a caret or two
constexpr int s_barWidth = 32;      // of a scroll bar, and no more than a part of the view
constexpr int s_barParts = 8;
constexpr int s_overlay = 24;     // a bar over the content is no thicker
constexpr int s_secondLooks = 2;  // places
constexpr int s_corrections = 4;
constexpr int s_waitsToTell = 6;  // for an answer, before the program is told again
constexpr int s_near = 2;         // rows
constexpr int s_longestWayBack = 300;
constexpr int s_anchorPart = 8;  // of the view's height, from its top
constexpr int s_fromEdge = 12;   // pixels

// Rows of the later view that are not what the movement brought there. A scroll bar that lies over
// the content does not count.
int rowsThatDiffer(const QImage &before, const QImage &after, const Movement &movement)
{
    const QRect &moved = movement.moved;
    int left = moved.right();
    int right = moved.left() - 1;
    int result = 0;
    for (int y = moved.top(); y < movement.bottom - movement.rows; ++y) {
        const QRgb *was = pixelRow(before, y + movement.rows);
        const QRgb *is = pixelRow(after, y);
        const auto [first, other] =
            std::mismatch(is + moved.left(), is + moved.right() + 1, was + moved.left());
        const int x = static_cast<int>(first - is);
        if (x > moved.right())
            continue;
        ++result;
        left = std::min(left, x);
        int last = moved.right();
        while (is[last] == was[last])
            --last;
        right = std::max(right, last);
    }
    return right - left < std::min(s_barWidth, moved.width() / s_barParts) ? 0 : result;
}

// What a single line may be too little for: a movement of at most so many rows that explains each
// pixel of what moves elsewhere, and something that is seen in both looks.
Movement exactMovement(const QImage &before, const QImage &after, int most, const QRect &moved)
{
    Movement movement{.kind = Movement::Kind::Moved,
                      .rows = std::min(most, moved.height() - 1),
                      .moved = {0, moved.y(), before.width(), moved.height()},
                      .bottom = moved.bottom() + 1};
    const size_t bytes = sizeof(QRgb) * static_cast<size_t>(before.width());
    for (; movement.rows > 0; --movement.rows) {
        if (rowsThatDiffer(before, after, movement) > 0)
            continue;
        int telling = 0;
        for (int y = moved.top(); y + movement.rows <= moved.bottom(); ++y)
            telling += std::memcmp(pixelRow(after, y), pixelRow(before, y), bytes) != 0;
        if (telling >= s_tellingLines)
            return movement;
    }
    return {.kind = Movement::Kind::Still};
}

int clicksFor(int distance, double perClick)
{
    return perClick > 0 ? static_cast<int>(std::lround(distance / perClick)) : 0;
}

}  // namespace

ScrollCapture::ScrollCapture(const Target &target)
    : m_clock(*services().clock), m_target(target), m_window(target.window, target.anchor),
      m_stitcher(s_longest), m_sheet(s_longest, s_mostPixels), m_sinceProgress(m_clock)
{
    connect(&m_window, &ScrolledWindow::told, this, &ScrollCapture::progressed);
}

ScrollCapture::Result ScrollCapture::run()
{
    m_sinceProgress.restart();
    if (!m_window.look())
        return {.note = m_window.note()};
    m_window.parkPointer(toldArea());
    const QImage original = m_window.view();
    if (m_target.marked) {
        m_window.setCrop(toldArea());
        m_window.setAnchor(toldArea().center());
    }
    m_isAcross = m_target.across && goLeft();
    const QImage atLeft = m_isAcross ? m_window.view() : original;
    emit progressed(tr("Scrolling to the top"));
    m_climbed = climb();
    const bool isFollowed = begin();
    if (isFollowed && m_rowsPerClick > 0)
        goDown();
    m_firstRow = m_stitcher.offsetOf(m_window.contentOf(atLeft));
    if (isFollowed && m_isAcross)
        takeBeside();
    // What happens on the way back takes nothing from the picture.
    const QString note = m_window.note();
    if (m_window.stop() == Stop::Abandon) {
        putBackUnseen();
    } else {
        emit progressed(tr("Putting it back"));
        emit puttingBack();
        putBack(atLeft);
        if (m_isAcross && isAt(m_window.contentOf(atLeft))) {
            m_window.setAxis(Axis::Across);
            goToView(m_window.contentOf(original));
        }
    }
    m_window.unparkPointer();
    if (m_window.stop() == Stop::Abandon || m_window.stop() == Stop::Discard)
        return {};
    if (!m_sheet.isEmpty())
        return sheet(note);
    Result result{.picture = column(), .note = note};
    if (!result.note.isEmpty() && !m_isAll)
        result.lastRow = result.picture.height();
    return result;
}

void ScrollCapture::tellRows()
{
    m_sinceProgress.restart();
    const QLocale locale;
    const QString rows = locale.toString(m_stitcher.rows());
    emit progressed(
        m_sheet.isEmpty()
            ? tr("%1 pixels").arg(rows)
            : tr("%1 pixels, after %2 columns").arg(rows, locale.toString(m_sheet.size().width())));
}

QRect ScrollCapture::toldArea() const
{
    return m_window.fromGlobal(m_target.area) & m_window.view().rect();
}

// To the top, also when the capture has been told to stop. True when the content went up.
bool ScrollCapture::climb()
{
    const Stop stop = m_window.stop();
    Stopwatch clock(m_clock);
    bool hasMoved = false;
    int clicks = s_firstClimb;
    for (int films = 0;
         m_window.stop() == stop && clock.elapsed() < s_progressLimit && films < s_films;) {
        Stopwatch sinceTurn(m_clock);
        const int patience =
            m_isSlow ? s_slowPatience : m_window.patience(s_leastPatienceUp, s_patienceUp);
        const QImage before = content();
        if (!m_window.waitUntilReachable())
            break;
        if (m_window.axis() == Axis::Down)
            m_clicksUp += clicks;
        if (m_window.turn(-clicks, patience) == Turn::Nothing || !hasScrolled(before, -1))
            break;
        hasMoved = true;
        films += sinceTurn.elapsed() >= s_restless;
        clicks = std::min(2 * clicks, s_longestClimb);
    }
    // A turn that was cut short may have moved it.
    return hasMoved || m_window.stop() != stop;
}

// Whether more has happened since `before` than a glow that some programs show at the end of their
// content, which goes by. Where that can't be seen one more click tells.
bool ScrollCapture::hasScrolled(const QImage &before, int click)
{
    if (!isAt(before) && !isInPlace(before, content()))
        return true;
    m_window.turn(0, s_glow);
    const QImage settled = content();
    if (isAt(before))
        return false;
    m_window.turn(click, s_patienceUp);
    const QImage now = content();
    const Movement movement = click < 0 ? findMovement(now, settled) : findMovement(settled, now);
    return movement.kind == Movement::Kind::Moved;
}

// The first step, by one click, tells what of the window moves, and how far.
Movement ScrollCapture::firstStep()
{
    const QRect told = toldArea();
    const QImage before = m_window.view();
    const Stop stop = m_window.stop();
    const int rest = m_window.rest();
    m_window.setRest(std::max(rest, s_firstRest));
    m_window.turn(1, s_patienceDown);
    // It is under way, and has to be known to be undone.
    if (m_window.stop() != stop)
        m_window.turn(0, s_settle);
    m_window.setRest(rest);
    if (m_target.marked || m_rowsPerClick > 0) {
        const Movement movement = findMovement(m_window.contentOf(before), content());
        if (movement.kind == Movement::Kind::Moved)
            m_rowsPerClick = movement.rows;
        return movement;
    }
    Movement movement = findMovement(before, m_window.view());
    if (movement.kind != Movement::Kind::Moved && !told.isEmpty()) {
        // Much else may go on in the window.
        movement = findMovement(before.copy(told), m_window.view().copy(told));
        movement.moved.translate(told.topLeft());
    }
    if (movement.kind == Movement::Kind::Moved)
        setArea(before, movement);
    return movement;
}

void ScrollCapture::setArea(const QImage &before, const Movement &movement)
{
    // What is told about the area counts as far as the pixels agree.
    const QRect told = toldArea();
    const QRect around = told.adjusted(-s_tolerance, -s_tolerance, s_tolerance, s_tolerance);
    const bool isTold = !told.isEmpty() && around.contains(movement.moved);
    const QRect area = isTold ? withoutScrollBar(before, m_window.view(), movement, told)
                              : scrollingArea(before, m_window.view(), movement);
    m_window.setCrop(m_isAcross ? withoutOverlayBelow(area) : area);
    m_contentBottom = area.bottom();
    m_isTold = isTold;
    m_first = before;
    m_rowsPerClick = movement.rows;
    m_window.parkPointer(area);
    // At the edge of what scrolls: in its midst boxes and lists would pass by and take the wheel
    // for themselves. And near its top: a row that lights up there was taken further down.
    m_window.setAnchor({area.right() - std::min(s_fromEdge, area.width() / 2),
                        area.top() + area.height() / s_anchorPart});
    m_hasOwnAnchor = true;
}

// A scroll bar for the columns that lies over the content shows where these move, and would come
// out in pieces. What it covers is taken once, at the content's end.
QRect ScrollCapture::withoutOverlayBelow(const QRect &area) const
{
    QRect result = area;
    if (m_areaAcross.bottom() > area.bottom() - s_overlay)
        result.setBottom(std::min(area.bottom(), m_areaAcross.bottom()));
    return result;
}

// Until such a bar has gone from the view at the content's end.
void ScrollCapture::waitForOverlay()
{
    if (!runs() || m_first.isNull() || m_last.isNull() || content() != m_accepted ||
        scrollBarBeside(m_first, m_last, m_window.crop()))
        return;
    m_window.turn(0, s_fade);
    if (m_window.look())
        m_last = m_window.view();
}

// Whether the wheel has led to the right, as it does in some programs where nothing lies below.
// Then back again.
bool ScrollCapture::hasGoneSideways(const QImage &before)
{
    const QRect crop = m_window.crop();
    if (!toldArea().isEmpty())
        m_window.setCrop(toldArea());
    m_window.setAxis(Axis::Across);
    const Movement movement = findMovement(m_window.contentOf(before), content());
    m_window.setAxis(Axis::Down);
    m_window.setCrop(crop);
    if (movement.kind != Movement::Kind::Moved)
        return false;
    m_window.turn(-1, s_patienceDown);
    return true;
}

// False where nothing scrolls, or it can't be told how far.
bool ScrollCapture::begin()
{
    QImage first = m_window.view();
    Movement movement{.kind = Movement::Kind::Still};
    if (runs())
        movement = firstStep();
    if (movement.kind != Movement::Kind::Moved && runs()) {
        // A slow program carries out only now what it was told on the way up.
        const bool answers = m_window.turn(0, s_slowPatience) == Turn::Moved;
        m_isSlow = true;
        if (answers || movement.kind != Movement::Kind::Still) {
            m_climbed = climb() || m_climbed;
            first = m_window.view();
            movement = runs() ? firstStep() : movement;
        }
    }
    const bool goesSideways = movement.kind == Movement::Kind::Lost && hasGoneSideways(first);
    const bool isFlat = goesSideways || movement.kind == Movement::Kind::Still;
    if (isFlat && m_isAcross)
        m_window.setCrop(m_areaAcross);
    else if (movement.kind != Movement::Kind::Moved && !toldArea().isEmpty())
        m_window.setCrop(toldArea());
    m_accepted = m_window.contentOf(first);
    m_stitcher.add(m_accepted);
    if (isFlat && m_isAcross)
        return runs();
    if (movement.kind != Movement::Kind::Moved) {
        m_isAll = isFlat;
        if (m_window.stop() == Stop::None)
            m_window.endWith(
                goesSideways
                    ? tr("It scrolls sideways only: hold Shift to take what lies beside it")
                : isFlat ? tr("Nothing scrolls there: it was taken as it is")
                         : tr("The content could not be followed"));
        return false;
    }
    const QImage before = m_accepted;
    m_accepted = content();
    const Movement found = m_stitcher.add(m_accepted, movement.rows);
    if (found.kind == Movement::Kind::Moved)
        repairOverlap(found, before, 1);
    tellRows();
    return true;
}

int ScrollCapture::usualStep() const
{
    const QRect &crop = m_window.crop();
    const bool isAcross = m_window.axis() == Axis::Across;
    const double perClick = isAcross ? m_columnsPerClick : m_rowsPerClick;
    if (perClick <= 0)
        return 1;
    const int length = isAcross ? crop.width() : crop.height();
    return std::clamp(static_cast<int>(s_stepPart * length / perClick), 1, s_longestStep);
}

// Pictures may have come after their place had gone by. A few places tell, on the way up, whether
// any have; only then all of it is looked at again.
void ScrollCapture::lookAgain()
{
    // Who draws the same anew elsewhere tells nothing by what differs.
    if (m_looksDifferent)
        return;
    const int lowest = m_stitcher.offset();
    int at = lowest;
    bool isLate = false;
    for (int part = s_secondLooks; part > 0 && m_window.stop() == Stop::None && !isLate; --part) {
        const int row = lowest * part / (s_secondLooks + 1);
        const int clicks = static_cast<int>(std::lround((row - at) / m_rowsPerClick));
        if (clicks == 0 || m_window.turn(clicks, s_patienceUp) == Turn::Nothing)
            return;
        const QImage now = content();
        const std::optional<int> found = m_stitcher.offsetOf(now);
        isLate = !found || m_stitcher.rowsThatDiffer(now, *found) >= s_lateRows;
        at = found.value_or(row);
    }
    if (!isLate)
        return;
    const int rest = m_window.rest();
    m_window.setRest(s_patientRest);
    const auto restored = qScopeGuard([&] { m_window.setRest(rest); });
    const int down = static_cast<int>(std::ceil((lowest - at) / m_rowsPerClick)) + 1;
    m_window.turn(down, s_patienceDown);
    if (!isInPlace(m_accepted, content()))
        return;
    QImage last = content();
    m_stitcher.takeOver(last);
    m_stitcher.patch(last, m_stitcher.offset(), last.height());
    for (int offset = lowest; offset > 0 && m_window.stop() == Stop::None;) {
        if (m_window.turn(-usualStep(), s_patienceUp) == Turn::Nothing)
            return;
        const QImage now = content();
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
    const bool isLight = m_window.isUnderPointer(m_accepted, view);
    m_accepted = view;
    m_stitcher.takeOver(view);
    if (!isLight)
        beMorePatient();
}

void ScrollCapture::beMorePatient()
{
    const int rest = std::max(m_window.rest(), s_patientRest / 2);
    m_window.setRest(std::min(2 * rest, s_longestRest));
}

void ScrollCapture::goDown()
{
    const int rest = m_window.rest();
    int clicks = usualStep();
    while (runs() && step(clicks)) {
        clicks = std::min(clicks, usualStep());
        if (m_window.sawLate())
            m_window.setRest(std::max(m_window.rest(), s_patientRest));
        if (m_sinceProgress.elapsed() >= s_progressLimit)
            m_window.endWith(tr("Nothing new came for a minute"));
    }
    m_window.setRest(rest);
    m_last = m_first.isNull() ? QImage() : m_window.view();
    if (m_isAcross)
        waitForOverlay();
    if (m_window.stop() == Stop::None && m_window.look())
        lookAgain();
    if (m_stitcher.isFull())
        m_window.noteThat(tr("The picture has reached its limit of %1 pixels").arg(s_longest));
}

// One step down and what it brings. False when there is nothing more to come. `clicks` is how far
// to go, and becomes how far to go next.
bool ScrollCapture::step(int &clicks)
{
    if (!m_window.waitUntilReachable() || !refresh())
        return false;
    if (m_window.turn(clicks, m_window.patience(s_leastPatienceDown, s_patienceDown)) ==
        Turn::Nothing)
        return runs() && goesOn();
    const QImage before = m_accepted;
    // What scrolls nothing may be a glow at the end, which goes by.
    if (isInPlace(before, content()) && !isAt(before))
        m_window.turn(0, s_glow);
    const int expected = static_cast<int>(std::lround(m_rowsPerClick * clicks));
    const Taken taken = take(content(), expected);
    switch (taken.kind) {
    case Taken::New:
        // A program that scrolls by parts of a row rounds its way to the end.
        if (taken.movement.rows <= s_near && expected > s_lateRows)
            return goesOn();
        m_rowsPerClick = std::max(m_rowsPerClick, 1.0 * taken.movement.rows / clicks);
        repairOverlap(taken.movement, before, clicks);
        tellRows();
        clicks *= 2;
        return !m_stitcher.isFull();
    case Taken::Same:
        return goesOn();
    case Taken::Back:
        return true;
    case Taken::Lost:
        break;
    }
    if (goBack(clicks) && clicks > 1) {
        clicks /= 2;
        return true;
    }
    if (m_window.stop() == Stop::None)
        m_window.endWith(tr("The content could not be followed further"));
    return false;
}

// Gives the stitcher a view.
ScrollCapture::Taken ScrollCapture::take(const QImage &now, int expected)
{
    const Movement movement = m_stitcher.add(now, expected);
    if (movement.kind == Movement::Kind::Moved || movement.kind == Movement::Kind::Still) {
        m_accepted = now;
        return {movement.kind == Movement::Kind::Moved ? Taken::New : Taken::Same, movement};
    }
    if (isInPlace(m_accepted, now)) {
        takeOver(now);
        return {Taken::Same};
    }
    const Movement recoloured = findByEdges(m_accepted, now, expected);
    if (recoloured.kind == Movement::Kind::Still)
        m_stitcher.takeOver(now);
    if (recoloured.kind == Movement::Kind::Moved)
        m_stitcher.addKnown(now, recoloured.rows, recoloured.moved);
    if (recoloured.kind == Movement::Kind::Still || recoloured.kind == Movement::Kind::Moved) {
        m_accepted = now;
        m_looksDifferent = true;
        return {recoloured.kind == Movement::Kind::Moved ? Taken::New : Taken::Same, recoloured};
    }
    // What was put in above it has pushed it down by more than the wheel has moved it up, or the
    // end of the content has cut a way short.
    const Movement back = findByEdges(now, m_accepted);
    if (back.kind != Movement::Kind::Moved)
        return {isNearPlace(m_accepted, now) ? Taken::Same : Taken::Lost};
    m_stitcher.goBack(now, back.rows);
    m_accepted = now;
    return {Taken::Back, back};
}

// The view as it is now, before it is scrolled on: pictures may have arrived since, and a slow end
// of the last movement.
bool ScrollCapture::refresh()
{
    if (!m_window.look())
        return false;
    const QImage now = content();
    if (now != m_accepted && take(now).kind == Taken::Lost)
        m_window.endWith(tr("The content could not be followed further"));
    return runs();
}

// Where what two views share has changed meanwhile, so may have what went out of sight: back once
// more, and down again.
void ScrollCapture::repairOverlap(const Movement &movement, const QImage &before, int clicks)
{
    if (m_looksDifferent || rowsThatDiffer(before, m_accepted, movement) < s_lateRows)
        return;
    const QImage lower = m_accepted;
    if (m_window.turn(-clicks, s_patienceDown) == Turn::Nothing)
        return;
    const QImage upper = content();
    Movement none = movement;
    none.rows = 0;
    if (rowsThatDiffer(before, upper, none) < s_lateRows)
        m_looksDifferent =
            true;  // it is as it was: what differed lies above the content, and moves
    else if (isInPlace(before, upper))
        m_stitcher.patch(upper, m_stitcher.offset() - movement.rows, upper.height());
    if (!m_looksDifferent)
        beMorePatient();
    m_window.turn(clicks, s_patienceDown);
    // The content's top may have cut the way up short.
    m_accepted = lower;
    take(content());
}

// Whether there is more to come where a turn of the wheel has moved nothing: a program that is at
// the end goes up when it is told to, and one that hangs does not.
bool ScrollCapture::goesOn()
{
    Turn answer = m_window.turn(-1, s_patienceDown);
    if (answer == Turn::Nothing && m_hasOwnAnchor && runs()) {
        // It may be deaf there, as beside the numbers of lines; where the user pointed it was not.
        m_hasOwnAnchor = false;
        m_window.setAnchor(m_window.fromGlobal(QRect(m_target.anchor, QSize(1, 1))).topLeft());
        answer = m_window.turn(-1, s_patienceDown);
    }
    // What it was told it does when it comes to itself. It is told again only now and then, for a
    // menu that was open may have swallowed it.
    for (int waits = 1; answer == Turn::Nothing && runs() && m_window.waitUntilReachable();
         ++waits) {
        if (m_sinceProgress.elapsed() >= s_progressLimit)
            m_window.endWith(tr("The program did not answer for a minute"));
        answer = m_window.turn(waits % s_waitsToTell ? 0 : -1, s_patienceDown);
    }
    m_hangs = answer == Turn::Nothing;
    if (!runs())
        return false;
    // One more than up: a menu that was open may have swallowed the turn that moved nothing.
    m_window.turn(2, s_patienceDown);
    if (findMovement(m_accepted, content()).kind > Movement::Kind::Moved &&
        !isNearPlace(m_accepted, content()))
        m_window.turn(0, s_glow);
    const Taken taken = take(content());
    switch (taken.kind) {
    case Taken::New:
        tellRows();
        return !m_stitcher.isFull();
    case Taken::Back:
        // A program may round its way to the end; more than that is a page that has grown.
        return taken.movement.rows > m_rowsPerClick / 2;
    case Taken::Same:
        break;
    case Taken::Lost:
        if (runs())
            m_window.endWith(tr("The content could not be followed further"));
        break;
    }
    return false;
}

// Up again, to the view that was accepted last.
bool ScrollCapture::goBack(int clicks)
{
    m_window.turn(-clicks, s_patienceDown);
    // A step that the content's end cut short leads up too far.
    for (int i = 0; i <= clicks && runs(); ++i) {
        const QImage now = content();
        if (findMovement(m_accepted, now).kind == Movement::Kind::Still)
            return true;
        if (isInPlace(m_accepted, now)) {
            takeOver(now);
            return true;
        }
        if (isNearPlace(m_accepted, now))
            return true;
        if (findMovement(now, m_accepted).kind != Movement::Kind::Moved ||
            m_window.turn(1, s_patienceDown) == Turn::Nothing)
            return false;
    }
    return false;
}

// The content from its top to where it has been followed, with what stays above and below it.
QImage ScrollCapture::column()
{
    if (m_first.isNull() || m_last.size() != m_first.size())
        return m_stitcher.finish();
    const QRect &crop = m_window.crop();
    RowSpan rows{crop.top(), crop.bottom() + 1};
    if (const auto bar = scrollBarBeside(m_first, m_last, crop))
        rows = *bar;
    else if (!m_isTold)
        rows = withNeighbours(m_first, m_last, crop, m_window.inside());
    if (m_isAcross) {
        // What stays where it is would come once in each column. Headers go along.
        const int highest = m_isTold ? rows.top : 0;
        rows.top = std::clamp(m_areaAcross.top(), highest, crop.top());
        const int end = std::max(m_areaAcross.bottom(), m_contentBottom) + 1;
        rows.bottom = std::clamp(rows.bottom, end, end + s_overlay);
    }
    const QRect above(crop.left(), rows.top, crop.width(), crop.top() - rows.top);
    const QRect below(crop.left(), crop.bottom() + 1, crop.width(),
                      rows.bottom - crop.bottom() - 1);
    return m_stitcher.finish(above.isEmpty() ? QImage() : m_first.copy(above),
                             below.isEmpty() ? QImage() : m_last.copy(below));
}

// Finds out by which wheel the content goes sideways, and takes it to its left edge. False where it
// does not.
bool ScrollCapture::goLeft()
{
    const QRect whole = m_window.crop();
    bool isLost = false;
    m_window.setAxis(Axis::Across);
    for (const bool shifted : {false, true}) {
        m_window.setShifted(shifted);
        int away = 0;
        for (const int click : {1, -1}) {
            const QImage before = m_window.view();
            if (!runs() || m_window.turn(click, s_patienceDown) == Turn::Nothing)
                continue;
            away += click;
            const QImage now = m_window.view();
            const QImage &earlier = click > 0 ? before : now;
            const QImage &later = click > 0 ? now : before;
            // Much else may go on in the window.
            if (!setAreaAcross(earlier, later, whole) && !toldArea().isEmpty())
                setAreaAcross(earlier, later, toldArea());
            // This wheel may be one that goes up and down.
            isLost = isLost || findMovement(earlier, later).kind > Movement::Kind::Moved;
        }
        if (m_columnsPerClick > 0)
            break;
        if (away != 0)
            m_window.turn(-away, s_patienceDown);
    }
    if (m_columnsPerClick > 0)
        climb();
    else if (isLost)
        m_window.noteThat(tr("What lies beside it could not be followed"));
    // Whoever stops it on the way has stopped it in the midst.
    if (m_columnsPerClick > 0 && !runs())
        climb();
    m_window.setAxis(Axis::Down);
    return m_columnsPerClick > 0;
}

// What of an area has gone sideways; false where that can't be told.
bool ScrollCapture::setAreaAcross(const QImage &before, const QImage &after, const QRect &area)
{
    const QRect crop = m_window.crop();
    m_window.setCrop(area);
    const QImage earlier = m_window.contentOf(before);
    const QImage later = m_window.contentOf(after);
    m_window.setCrop(crop);
    const Movement movement = findMovement(earlier, later);
    if (movement.kind != Movement::Kind::Moved)
        return false;
    // These pictures are turned over.
    const QRect moved = scrollingArea(earlier, later, movement);
    m_columnsPerClick = movement.rows;
    m_areaAcross =
        QRect(moved.y(), moved.x(), moved.height(), moved.width()).translated(area.topLeft());
    return true;
}

// What lies beside the first column, which has been followed to its end, in columns as wide as the
// view.
void ScrollCapture::takeBeside()
{
    const int lowest = m_stitcher.offset();
    const QRect moved = m_stitcher.moved();
    int offset = 0;
    m_sheet.add(column(), 0, 0);
    while (runs()) {
        goToStart(lowest);
        const int row = m_sheet.rowWithMost(m_window.crop().height());
        if (const int clicks = clicksFor(std::min(row, lowest), m_rowsPerClick); clicks > 0)
            m_window.turn(clicks, s_patienceDown);
        const Movement movement = goRight();
        if (movement.kind != Movement::Kind::Moved)
            break;
        if (m_sheet.isFull()) {
            m_window.endWith(
                tr("The picture has reached its limit: %1 pixels each way, and %2 million in all")
                    .arg(QLocale().toString(s_longest))
                    .arg(s_mostPixels / 1'000'000));
            break;
        }
        goToStart(lowest);
        // What lies to the right of it stays, and is taken at the end.
        const int at = offset + movement.bottom;
        const int from = movement.bottom - movement.rows;
        offset += movement.rows;
        m_first = m_first.isNull() ? QImage() : m_window.view();
        m_accepted = content();
        m_stitcher = ScrollStitcher(s_longest);
        m_stitcher.add(m_accepted);
        m_sheet.begin(from, at);
        tellRows();
        goDownBeside(lowest, moved);
        m_last = m_first.isNull() ? QImage() : m_window.view();
        waitForOverlay();
        m_sheet.add(column(), from, at);
    }
    m_isCutAtRight = !runs();
    if (m_window.stop() == Stop::Abandon)
        return;
    m_window.setAxis(Axis::Across);
    goToStart(offset);
    m_window.setAxis(Axis::Down);
    goToFirstRow(lowest);
}

// The stitcher has rows of the last column only, so this goes by clicks: from the top, or else from
// the end, whichever leads there.
void ScrollCapture::goToFirstRow(int lowest)
{
    goToStart(lowest);
    const int row = m_firstRow.value_or(0);
    const auto turn = [this](int clicks) {
        for (; clicks != 0; clicks -= std::clamp(clicks, -s_longestClimb, s_longestClimb))
            m_window.turn(std::clamp(clicks, -s_longestClimb, s_longestClimb), s_patienceUp);
    };
    const int clicks = clicksFor(row, m_rowsPerClick);
    if (std::abs(clicks * m_rowsPerClick - row) <= s_near) {
        turn(clicks);
    } else {
        turn(clicksFor(lowest, m_rowsPerClick) + 1);
        turn(-clicksFor(lowest - row, m_rowsPerClick));
    }
}

// To the edge that is so far away, also where nothing is to be seen on the way.
void ScrollCapture::goToStart(int distance)
{
    const double perClick = m_window.axis() == Axis::Across ? m_columnsPerClick : m_rowsPerClick;
    for (int left = clicksFor(distance, perClick); left > 0 && m_window.waitUntilReachable();
         left -= s_longestClimb)
        m_window.turn(-std::min(left, s_longestClimb), s_patienceUp);
    if (distance > 0)
        climb();
}

// One step to the right, tried smaller where it can't be matched. Not Moved at the content's edge.
Movement ScrollCapture::goRight()
{
    m_window.setAxis(Axis::Across);
    const QImage before = content();
    Movement movement{.kind = Movement::Kind::Still};
    for (int clicks = usualStep(); runs(); clicks /= 2) {
        if (clicks == 0) {
            m_window.endWith(tr("The content could not be followed further to the right"));
            break;
        }
        while (m_window.waitUntilReachable() &&
               m_window.turn(clicks, s_patienceDown) == Turn::Nothing && !m_window.isReachable()) {
        }
        const QImage now = content();
        if (now == before || !runs())
            break;
        const int expected = static_cast<int>(std::lround(m_columnsPerClick * clicks));
        movement = findMovement(before, now, expected);
        if (movement.kind != Movement::Kind::Moved)
            movement = exactMovement(before, now, expected, m_movedAcross);
        if (movement.kind == Movement::Kind::Moved) {
            m_movedAcross = movement.moved;
            break;
        }
        if (!hasScrolled(before, 1))
            break;
        m_window.turn(-clicks - 1, s_patienceDown);
        // A step that the content's end has cut short leads back too far.
        goToView(before);
    }
    m_window.setAxis(Axis::Down);
    return movement;
}

// Down a column whose rows are known from the first one: much of it may be blank, as beside lines
// of which only some are long.
void ScrollCapture::goDownBeside(int lowest, const QRect &moved)
{
    while (m_stitcher.offset() < lowest && m_window.waitUntilReachable() && refresh()) {
        const int left = lowest - m_stitcher.offset();
        const int most = static_cast<int>(std::ceil(left / m_rowsPerClick));
        const int clicks = std::min(usualStep(), most);
        m_window.turn(clicks, m_window.patience(s_leastPatienceDown, s_patienceDown));
        if (!runs())
            return;
        const int rows = std::min(left, static_cast<int>(std::lround(m_rowsPerClick * clicks)));
        // A slow program gets its time.
        const bool isTaken =
            takeExpected(rows, moved) ||
            (m_window.turn(0, s_slowPatience) == Turn::Moved && takeExpected(rows, moved));
        if (!isTaken && runs())
            m_window.endWith(tr("The content could not be followed further"));
        if (!isTaken)
            return;
        tellRows();
    }
}

// What a step of about so many rows has brought. False where it can't be that step.
bool ScrollCapture::takeExpected(int rows, const QRect &moved)
{
    const QImage now = content();
    bool isTaken = m_stitcher.add(now, rows).kind == Movement::Kind::Moved;
    for (const int off : {0, 1, -1}) {
        const Movement movement{.kind = Movement::Kind::Moved,
                                .rows = rows + off,
                                .moved = moved,
                                .bottom = moved.bottom() + 1};
        if (isTaken || movement.rows <= 0 || movement.rows >= moved.height() ||
            rowsThatDiffer(m_accepted, now, movement) > 0)
            continue;
        m_stitcher.addKnown(now, movement.rows, moved);
        isTaken = true;
    }
    if (isTaken)
        m_accepted = now;
    return isTaken;
}

ScrollCapture::Result ScrollCapture::sheet(const QString &note)
{
    const int common = m_sheet.commonHeight();
    const QSize size = m_sheet.size();
    Result result{.picture = m_sheet.finish(), .note = note};
    if (result.picture.isNull())
        return {.picture = m_sheet.firstColumn(),
                .note = tr("There is not enough memory for all of it"),
                .lastColumn = m_sheet.firstColumn().width()};
    if (!note.isEmpty() && m_isCutAtRight)
        result.lastColumn = size.width();
    else if (!note.isEmpty())
        result.lastRow = common;
    return result;
}

// As near to where it was as the wheel leads: clicks count from wherever the content is, so what
// can't be met from its end may be met from its top.
void ScrollCapture::putBack(const QImage &original)
{
    if (!m_window.waitForReturn())
        return;
    if (original.size() != m_window.view().size()) {
        putBackUnseen();
        return;
    }
    m_window.turn(0, s_settle);
    if (m_isAcross) {
        m_window.setAxis(Axis::Across);
        climb();
        m_window.setAxis(Axis::Down);
    }
    const QImage wanted = m_window.contentOf(original);
    if (isAt(wanted) || (m_firstRow && goTo(*m_firstRow) == 0))
        return;
    // Stopped on its way up: as far down again, unless the top has cut that way short.
    if (m_rowsPerClick <= 0 && m_window.stop() != Stop::None) {
        putBackUnseen();
        if (findByEdges(content(), wanted).kind <= Movement::Kind::Moved ||
            findByEdges(wanted, content()).kind <= Movement::Kind::Moved) {
            goToView(wanted);
            return;
        }
    }
    climb();
    // Where it did not go up in the beginning it began at the top.
    if (m_climbed && !(m_firstRow && goTo(*m_firstRow) < m_rowsPerClick))
        goToView(wanted);
}

// Where there is no time to look, or nothing to compare with: by as many clicks as it is away.
void ScrollCapture::putBackUnseen()
{
    int clicks = m_rowsPerClick > 0 ? 0 : m_clicksUp;
    if (m_firstRow && m_sheet.isEmpty())
        clicks =
            clicksFor(*m_firstRow - m_stitcher.offset(), m_rowsPerClick) - m_window.unanswered();
    if (clicks != 0)
        m_window.turn(clicks, s_patienceDown);
}

bool ScrollCapture::isAt(const QImage &wanted) const
{
    const QImage now = content();
    return now == wanted || findByEdges(wanted, now).kind == Movement::Kind::Still;
}

// To a row of the content. How far from it that leads, in rows; more than any content has where it
// is not known.
int ScrollCapture::goTo(int row)
{
    for (int i = 0; i < s_corrections; ++i) {
        const std::optional<int> at = m_stitcher.offsetOf(content());
        if (!at)
            return s_longest;
        const int clicks = clicksFor(row - *at, m_rowsPerClick);
        if (clicks == 0)
            return std::abs(row - *at);
        // A program that hangs goes there when it comes to itself, if it is told nothing else.
        const int untold = clicks - (m_hangs ? m_window.unanswered() : 0);
        m_hangs = m_window.turn(untold, s_patienceUp) == Turn::Nothing &&
                  m_window.turn(0, s_slowPatience) == Turn::Nothing;
        if (m_hangs)
            return 0;
    }
    return s_longest;
}

// To another view. Where nothing is known of the distance it lies below, or to the right, and that
// way is gone click by click.
void ScrollCapture::goToView(const QImage &wanted)
{
    const Stop stop = m_window.stop();
    double &perClick = m_window.axis() == Axis::Across ? m_columnsPerClick : m_rowsPerClick;
    int last = 0;
    for (int i = 0; i < s_longestWayBack && m_window.stop() == stop && !isAt(wanted); ++i) {
        const QImage before = content();
        const Movement below = findByEdges(before, wanted);
        const bool isBelow = below.kind == Movement::Kind::Moved;
        const Movement above = isBelow ? Movement{} : findByEdges(wanted, before);
        int clicks = usualStep();
        // The content's end may cut a click short just where it was.
        if (isBelow)
            clicks = std::max(clicksFor(below.rows, perClick), 1);
        else if (above.kind == Movement::Kind::Moved)
            clicks = -std::max(clicksFor(above.rows, perClick), 1);
        if (m_window.turn(clicks, s_patienceUp) == Turn::Nothing || clicks == -last)
            return;
        last = clicks;
        const Movement step = findByEdges(before, content());
        if (perClick <= 0 && step.kind == Movement::Kind::Moved)
            perClick = 1.0 * step.rows / clicks;
    }
}
