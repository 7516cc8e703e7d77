#include "helper/scrollcapture.h"

#include "helper/exactmovement.h"
#include "helper/pixelrows.h"
#include "helper/scrollingarea.h"
#include "platform/services.h"

#include <QLocale>
#include <QPainter>
#include <QScopeGuard>

#include <algorithm>
#include <cmath>

namespace {

// Milliseconds.
constexpr int s_patientRest = 600;  // used if content loads late, or may do so
// The first step measures the distance of one click, so it needs more time.
constexpr int s_firstRest = 180;
constexpr int s_longestRest = 1500;
constexpr int s_settle = 150;
constexpr int s_fade = 2500;  // until a bar over the content has faded
constexpr int s_fadings = 3;
constexpr int s_progressLimit = 60000;
// The number of rows and columns by which a reported area may differ from the moved part.
constexpr int s_tolerance = 2;
// Changed rows in the common part of two views; a caret or a highlight changes fewer.
constexpr int s_lateRows = 24;
constexpr int s_overlay = 24;     // maximum thickness of a bar over the content
constexpr int s_secondLooks = 2;  // places to look at again
constexpr int s_waitsToTell = 6;  // waits for an answer before the wheel is turned again
constexpr int s_anchorPart = 8;   // distance from the top, as a part of the view's height
constexpr int s_fromEdge = 12;    // pixels

}  // namespace

ScrollCapture::ScrollCapture(const Target &target)
    : m_clock(*services().clock), m_target(target), m_window(target.window, target.anchor),
      m_travel(m_window), m_stitcher(s_longest), m_sheet(s_longest, s_mostPixels),
      m_sinceProgress(m_clock)
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
    m_climbed = m_travel.climb();
    const bool isFollowed = begin();
    if (isFollowed && m_travel.perClick() > 0)
        goDown();
    m_firstRow = m_stitcher.offsetOf(m_window.contentOf(atLeft));
    if (isFollowed && m_isAcross)
        takeBeside();
    // Problems on the way back don't make the picture incomplete, so its state is saved before.
    QString note = m_window.note();
    m_isAll = m_isAll || note.isEmpty();
    if (m_window.stop() == Stop::Abandon) {
        putBackUnseen();
    } else {
        emit progressed(tr("Putting it back"));
        emit puttingBack();
        if (!putBack(atLeft)) {
            const QString left = tr("The content could not be put back to where it was");
            note = note.isEmpty() ? left : note + QStringLiteral(". ") + left;
        }
        if (m_isAcross && m_travel.isAt(m_window.contentOf(atLeft))) {
            m_window.setAxis(Axis::Across);
            m_travel.goToView(m_window.contentOf(original));
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

// Takes a first step of one click, which shows what part of the window moves, and how far.
Movement ScrollCapture::firstStep()
{
    const QRect told = toldArea();
    const QImage before = m_window.view();
    const Stop stop = m_window.stop();
    const int rest = m_window.rest();
    m_window.setRest(std::max(rest, s_firstRest));
    m_window.turn(1, Patience::down);
    // A stop during the turn leaves the step under way. It must be known, so that it can be undone.
    if (m_window.stop() != stop)
        m_window.turn(0, s_settle);
    m_window.setRest(rest);
    if (m_target.marked || m_travel.perClick() > 0) {
        const Movement movement = findMovement(m_window.contentOf(before), content());
        if (movement.kind == Movement::Kind::Moved)
            m_travel.setPerClick(movement.rows);
        return movement;
    }
    Movement movement = findMovement(before, m_window.view());
    if (movement.kind != Movement::Kind::Moved && !told.isEmpty()) {
        // Other parts of the window may be changing.
        movement = findMovement(before.copy(told), m_window.view().copy(told));
        movement.moved.translate(told.topLeft());
    }
    if (movement.kind == Movement::Kind::Moved)
        setArea(before, movement);
    return movement;
}

void ScrollCapture::setArea(const QImage &before, const Movement &movement)
{
    // The reported area is used only if the pixels confirm it.
    const QRect told = toldArea();
    const QRect around = told.adjusted(-s_tolerance, -s_tolerance, s_tolerance, s_tolerance);
    const bool isTold = !told.isEmpty() && around.contains(movement.moved);
    const QRect area = isTold ? withoutScrollBar(before, m_window.view(), movement, told)
                              : scrollingArea(before, m_window.view(), movement);
    m_window.setCrop(m_isAcross ? withoutOverlayBelow(area) : area);
    m_contentBottom = area.bottom();
    m_isTold = isTold;
    m_first = before;
    m_travel.setPerClick(movement.rows);
    m_window.parkPointer(area);
    // The anchor is at the right edge of the content, because combo boxes and lists that pass by in
    // the middle would take the wheel for themselves. It is near the top, because a row that is
    // highlighted there has already been captured further down.
    m_window.setAnchor({area.right() - std::min(s_fromEdge, area.width() / 2),
                        area.top() + area.height() / s_anchorPart});
    m_hasOwnAnchor = true;
}

// A horizontal scroll bar over the content would appear in the picture in pieces, so the rows below
// the horizontally moving part are cut off. What it covers is captured once, at the content's end.
QRect ScrollCapture::withoutOverlayBelow(const QRect &area) const
{
    QRect result = area;
    if (m_areaAcross.bottom() > area.bottom() - s_overlay)
        result.setBottom(std::min(area.bottom(), m_areaAcross.bottom()));
    return result;
}

// Waits until such a bar has disappeared from the view at the content's end.
void ScrollCapture::waitForOverlay()
{
    if (!runs() || m_first.isNull() || m_last.isNull() || !m_travel.isAt(m_accepted) ||
        scrollBarBeside(m_first, m_last, m_window.crop()))
        return;
    // The bar first becomes narrow and then fades.
    for (int i = 0; i < s_fadings && m_window.turn(0, s_fade) == Turn::Moved; ++i) {
    }
    if (m_window.look())
        m_last = m_window.view();
}

// Whether the wheel has scrolled to the right, as in some programs that have nothing below. Scrolls
// back if so.
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
    m_window.turn(-1, Patience::down);
    return true;
}

// Whether the view shows another part of the content although only spots seem to have changed:
// scrolling back by one click restores the view.
bool ScrollCapture::leadsTooFar(const QImage &before)
{
    if (isSpot(differingPart(before, m_window.view())))
        return false;
    m_window.turn(-1, Patience::down);
    return isSpot(differingPart(before, m_window.view()));
}

// Takes the first views. Returns false if nothing scrolls or if the distance can't be determined.
bool ScrollCapture::begin()
{
    QImage first = m_window.view();
    Movement movement{.kind = Movement::Kind::Still};
    if (runs())
        movement = firstStep();
    if (movement.kind != Movement::Kind::Moved && runs()) {
        // A slow program may only now execute the turns of the way up.
        const bool answers = m_window.turn(0, Patience::slow) == Turn::Moved;
        m_travel.setSlow();
        if (answers || movement.kind != Movement::Kind::Still) {
            m_climbed = m_travel.climb() || m_climbed;
            first = m_window.view();
            movement = runs() ? firstStep() : movement;
        }
    }
    const bool goesSideways = movement.kind == Movement::Kind::Lost && hasGoneSideways(first);
    if (movement.kind == Movement::Kind::Still && runs() && leadsTooFar(first)) {
        m_travel.setExact();
        m_window.endWith(tr("One click of the wheel leads too far to be followed here: make the "
                            "window higher, or scroll it by hand"));
        movement = {};
    }
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

// Some pictures may have loaded after their place was captured. Checks a few places on the way up,
// and captures everything again only if one of them has changed.
void ScrollCapture::lookAgain()
{
    // If the same content is drawn differently at each place, differences prove nothing.
    if (m_looksDifferent)
        return;
    const int lowest = m_stitcher.offset();
    int at = lowest;
    bool isLate = false;
    for (int part = s_secondLooks; part > 0 && m_window.stop() == Stop::None && !isLate; --part) {
        const int row = lowest * part / (s_secondLooks + 1);
        const int clicks = static_cast<int>(std::lround((row - at) / m_travel.perClick()));
        if (clicks == 0 || m_window.turn(clicks, Patience::up) == Turn::Nothing)
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
    const int down = static_cast<int>(std::ceil((lowest - at) / m_travel.perClick())) + 1;
    m_window.turn(down, Patience::down);
    if (!isInPlace(m_accepted, content()))
        return;
    QImage last = content();
    m_stitcher.takeOver(last);
    m_stitcher.patch(last, m_stitcher.offset(), last.height());
    for (int offset = lowest; offset > 0 && m_window.stop() == Stop::None;) {
        if (m_window.turn(-m_travel.usualStep(), Patience::up) == Turn::Nothing)
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

// Takes a change in a view that has not scrolled.
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
    int clicks = m_travel.usualStep();
    while (runs() && step(clicks)) {
        clicks = std::min(clicks, m_travel.usualStep());
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

// Scrolls down one step and takes the view. Returns false if there is no more content. `clicks` is
// the size of the step, and becomes the size of the next one.
bool ScrollCapture::step(int &clicks)
{
    if (!m_window.waitUntilReachable() || !refresh())
        return false;
    if (m_window.turn(clicks, m_window.patience(Patience::leastDown, Patience::down)) ==
        Turn::Nothing)
        return runs() && goesOn();
    const QImage before = m_accepted;
    // If nothing has scrolled, the change may be a glow at the content's end, which disappears.
    if (isInPlace(before, content()) && !m_travel.isAt(before))
        m_window.turn(0, Patience::glow);
    const int expected = static_cast<int>(std::lround(m_travel.perClick() * clicks));
    const Taken taken = take(content(), expected);
    switch (taken.kind) {
    case Taken::New:
        // At the content's end a program that scrolls by fractions of a row may move by a rounding
        // error.
        if (taken.movement.rows <= s_near && expected > s_lateRows)
            return goesOn();
        m_travel.setPerClick(std::max(m_travel.perClick(), 1.0 * taken.movement.rows / clicks));
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
        endColumn();
    return false;
}

// Adds a view to the stitcher.
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
    // The view may show content further up: content that was inserted above has moved the view
    // back, or the content's end has cut a step short.
    const Movement back = findMovement(now, m_accepted);
    if (back.kind != Movement::Kind::Moved)
        return {isNearPlace(m_accepted, now) ? Taken::Same : Taken::Lost};
    m_stitcher.goBack(now, back.rows);
    m_accepted = now;
    return {Taken::Back, back};
}

// Takes the present view before scrolling on, because pictures may have loaded or the last movement
// may have continued since.
bool ScrollCapture::refresh()
{
    if (!m_window.look())
        return false;
    const QImage now = content();
    if (now == m_accepted || take(now).kind != Taken::Lost)
        return runs();
    endColumn();
    return false;
}

// Ends the column, which can't be followed further down. Columns beside it are still captured.
void ScrollCapture::endColumn()
{
    const QString note = tr("The content could not be followed further");
    if (m_isAcross)
        m_window.noteThat(note);
    else
        m_window.endWith(note);
}

// If the common part of two views has changed meanwhile, the part that scrolled out of sight may
// have changed, too. Scrolls back once to see it, and down again.
void ScrollCapture::repairOverlap(const Movement &movement, const QImage &before, int clicks)
{
    if (m_looksDifferent || rowsThatDiffer(before, m_accepted, movement) < s_lateRows)
        return;
    const QImage lower = m_accepted;
    if (m_window.turn(-clicks, Patience::down) == Turn::Nothing)
        return;
    const QImage upper = content();
    Movement none = movement;
    none.rows = 0;
    if (rowsThatDiffer(before, upper, none) < s_lateRows)
        // The view is unchanged; the difference is something above the content that moves.
        m_looksDifferent = true;
    else if (isInPlace(before, upper))
        m_stitcher.patch(upper, m_stitcher.offset() - movement.rows, upper.height());
    if (!m_looksDifferent)
        beMorePatient();
    m_window.turn(clicks, Patience::down);
    // The content's top may have cut the way up short, so the way down leads further than before.
    m_accepted = lower;
    take(content());
}

// Whether there is more content although a turn of the wheel moved nothing: at the content's end
// the program scrolls up when asked to, but a program that hangs does not.
bool ScrollCapture::goesOn()
{
    Turn answer = m_window.turn(-1, Patience::down);
    if (answer == Turn::Nothing && m_hasOwnAnchor && runs()) {
        // The program may ignore the wheel at this anchor, for example beside line numbers, but it
        // did not where the user pointed.
        m_hasOwnAnchor = false;
        m_window.setAnchor(m_window.fromGlobal(QRect(m_target.anchor, QSize(1, 1))).topLeft());
        answer = m_window.turn(-1, Patience::down);
    }
    // A program that hangs executes all turns later, so the wheel is turned again only now and
    // then, in case an open menu has swallowed a turn.
    for (int waits = 1; answer == Turn::Nothing && runs() && m_window.waitUntilReachable();
         ++waits) {
        if (m_sinceProgress.elapsed() >= s_progressLimit)
            m_window.endWith(tr("The program did not answer for a minute"));
        answer = m_window.turn(waits % s_waitsToTell ? 0 : -1, Patience::down);
    }
    m_hangs = answer == Turn::Nothing;
    if (!runs())
        return false;
    // One click more than the way up, because an open menu may have swallowed the turn that moved
    // nothing.
    m_window.turn(2, Patience::down);
    if (findMovement(m_accepted, content()).kind > Movement::Kind::Moved &&
        !isNearPlace(m_accepted, content()))
        m_window.turn(0, Patience::glow);
    const Taken taken = take(content());
    switch (taken.kind) {
    case Taken::New:
        tellRows();
        return !m_stitcher.isFull();
    case Taken::Back:
        // A program may round at its end; a larger distance means that the page has grown.
        return taken.movement.rows > m_travel.perClick() / 2;
    case Taken::Same:
        break;
    case Taken::Lost:
        if (runs())
            endColumn();
        break;
    }
    return false;
}

// Scrolls up to the view that was last accepted.
bool ScrollCapture::goBack(int clicks)
{
    m_window.turn(-clicks, Patience::down);
    // If the content's end has cut the step short, this leads too far up, so the rest goes down
    // click by click.
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
            m_window.turn(1, Patience::down) == Turn::Nothing)
            return false;
    }
    return false;
}

// The picture of the content from its top to where it was followed, with the parts that stay above
// and below it.
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
        // Parts that stay in place would appear in each column, so they are cut off, except for
        // headers that scroll horizontally.
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
