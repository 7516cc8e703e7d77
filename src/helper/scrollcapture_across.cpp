// The part of ScrollCapture that scrolls horizontally: content that is wider than its view is
// captured in columns.

#include "helper/exactmovement.h"
#include "helper/scrollcapture.h"
#include "helper/scrollingarea.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

// Determines which wheel scrolls horizontally, and scrolls to the left edge. Returns false if the
// content does not scroll horizontally.
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
            if (!runs() || m_window.turn(click, Patience::down) == Turn::Nothing)
                continue;
            away += click;
            const QImage now = m_window.view();
            const QImage &earlier = click > 0 ? before : now;
            const QImage &later = click > 0 ? now : before;
            // Other parts of the window may be changing.
            if (!setAreaAcross(earlier, later, whole) && !toldArea().isEmpty())
                setAreaAcross(earlier, later, toldArea());
            // This wheel may scroll vertically.
            isLost = isLost || findMovement(earlier, later).kind > Movement::Kind::Moved;
        }
        if (m_travel.perClick() > 0)
            break;
        if (away != 0)
            m_window.turn(-away, Patience::down);
    }
    const bool isFound = m_travel.perClick() > 0;
    if (isFound)
        m_travel.climb();
    else if (isLost)
        m_window.noteThat(tr("What lies beside it could not be followed"));
    // A stop may have interrupted the way, so it is completed here.
    if (isFound && !runs())
        m_travel.climb();
    m_window.setAxis(Axis::Down);
    return isFound;
}

// Sets the part of an area that has scrolled horizontally. Returns false if it can't be determined.
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
    // These pictures are transposed.
    const QRect moved = scrollingArea(earlier, later, movement);
    m_travel.setPerClick(movement.rows);
    m_areaAcross =
        QRect(moved.y(), moved.x(), moved.height(), moved.width()).translated(area.topLeft());
    return true;
}

// Captures what is beside the first column, which is complete, in columns as wide as the view.
void ScrollCapture::takeBeside()
{
    const int lowest = m_stitcher.offset();
    const QRect moved = m_stitcher.moved();
    int offset = 0;
    m_sheet.add(column(), 0, 0);
    while (runs()) {
        m_travel.goToStart(lowest);
        const int row = m_sheet.rowWithMost(m_window.crop().height());
        if (const int clicks = m_travel.clicksFor(std::min(row, lowest)); clicks > 0)
            m_window.turn(clicks, Patience::down);
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
        m_travel.goToStart(lowest);
        // Parts to the right of the moved part stay in place; they are captured with the last
        // column.
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
    m_travel.goToStart(offset);
    m_window.setAxis(Axis::Down);
    goToFirstRow(lowest);
}

// The stitcher has only the last column's rows, so this scrolls by clicks: from the top if whole
// clicks lead to the row, else from the end.
void ScrollCapture::goToFirstRow(int lowest)
{
    m_travel.goToStart(lowest);
    const int row = m_firstRow.value_or(0);
    const int clicks = m_travel.clicksFor(row);
    if (std::abs(clicks * m_travel.perClick() - row) <= s_near) {
        m_travel.goBy(clicks);
    } else {
        m_travel.goBy(m_travel.clicksFor(lowest) + 1);
        m_travel.goBy(-m_travel.clicksFor(lowest - row));
    }
}

// Scrolls one step to the right, with smaller steps if it can't be matched. The result is not Moved
// at the content's edge.
Movement ScrollCapture::goRight()
{
    m_window.setAxis(Axis::Across);
    const QImage before = content();
    Movement movement{.kind = Movement::Kind::Still};
    for (int clicks = m_travel.usualStep(); runs(); clicks /= 2) {
        if (clicks == 0) {
            m_window.endWith(tr("The content could not be followed further to the right"));
            break;
        }
        while (m_window.waitUntilReachable() &&
               m_window.turn(clicks, Patience::down) == Turn::Nothing && !m_window.isReachable()) {
        }
        const QImage now = content();
        if (now == before || !runs())
            break;
        const int expected = static_cast<int>(std::lround(m_travel.perClick() * clicks));
        movement = findMovement(before, now, expected);
        if (movement.kind != Movement::Kind::Moved)
            movement = exactMovement(before, now, expected, m_movedAcross);
        if (movement.kind == Movement::Kind::Moved) {
            m_movedAcross = movement.moved;
            break;
        }
        if (!m_travel.hasScrolled(before, 1))
            break;
        m_window.turn(-clicks - 1, Patience::down);
        // If the content's edge has cut the step short, this leads too far back.
        m_travel.goToView(before);
    }
    m_window.setAxis(Axis::Down);
    return movement;
}

// Scrolls down a column whose rows are known from the first column: much of it may be blank, for
// example beside lines of which only some are long.
void ScrollCapture::goDownBeside(int lowest, const QRect &moved)
{
    while (m_stitcher.offset() < lowest && m_window.waitUntilReachable() && refresh()) {
        const int left = lowest - m_stitcher.offset();
        const int most = static_cast<int>(std::ceil(left / m_travel.perClick()));
        const int clicks = std::min(m_travel.usualStep(), most);
        m_window.turn(clicks, m_window.patience(Patience::leastDown, Patience::down));
        if (!runs())
            return;
        const int rows =
            std::min(left, static_cast<int>(std::lround(m_travel.perClick() * clicks)));
        // Gives a slow program more time.
        const bool isTaken =
            takeExpected(rows, moved) ||
            (m_window.turn(0, Patience::slow) == Turn::Moved && takeExpected(rows, moved));
        if (!isTaken && runs())
            endColumn();
        if (!isTaken)
            return;
        tellRows();
    }
}

// Takes the view after a step of about `rows` rows. Returns false if the view does not match such a
// step.
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
    if (!m_isAll && m_isCutAtRight)
        result.lastColumn = size.width();
    else if (!m_isAll)
        result.lastRow = common;
    return result;
}
