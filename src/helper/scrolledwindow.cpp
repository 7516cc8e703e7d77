#include "helper/scrolledwindow.h"

#include "base/log.h"
#include "helper/helperjob.h"
#include "helper/movement.h"
#include "helper/pixelrows.h"
#include "platform/services.h"

#include <QThread>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace {

// Milliseconds.
constexpr int s_round = 6;
constexpr int s_rest = 90;          // time without a change until the view is at rest
constexpr int s_shortestRest = 45;  // for programs whose drawing is watched: nearly three frames
constexpr int s_gapsToRest = 3;
// A round that takes longer than planned indicates a busy machine, on which all answers come late.
constexpr int s_roundsToRest = 4;
constexpr int s_roundsToPatience = 16;
// The view never comes to rest, for example because it shows a video.
constexpr int s_restless = 4000;
constexpr int s_lightRest = 50;   // time without a change until a highlight has disappeared
constexpr int s_lastLooks = 100;  // when the program ends
constexpr int s_looksToRest = 12;
constexpr int s_coverRound = 100;
constexpr int s_coverPatience = 10000;
constexpr int s_handPatience = 250;
constexpr int s_handLimit = 60000;
constexpr int s_answersToPatience = 8;
// After this many turns without a highlight, none is expected any more.
constexpr int s_darkTurns = 2;
// Device pixels.
constexpr int s_barWidth = 32;  // largest width of a scroll bar, also limited to a part of the view
constexpr int s_barParts = 8;
constexpr int s_parkingDistance = 8;
constexpr int s_border = 2;  // the narrowest border that has room for the pointer
// Largest height of a highlighted row, and its distance from the pointer.
constexpr int s_litRow = 64;

// Whether the views differ so much that findMovement() is not needed.
bool differWidely(const QImage &before, const QImage &after)
{
    if (before.size() != after.size())
        return true;
    const size_t bytes = sizeof(QRgb) * static_cast<size_t>(after.width());
    int rows = 0;
    for (int y = 0; y < after.height(); ++y)
        rows += std::memcmp(before.constScanLine(y), after.constScanLine(y), bytes) != 0;
    return rows * 2 > after.height();
}

// Whether the difference is as narrow as a scroll bar, which may fade in and out by itself.
bool differNarrowly(const QImage &before, const QImage &after)
{
    if (before.size() != after.size())
        return false;
    return differingPart(before, after).width() <=
           std::min<int>(s_barWidth, after.width() / s_barParts);
}

// A caret that blinks while something else moves is none.
bool isChange(const QImage &last, const QImage &now, bool hasMoved)
{
    return differWidely(last, now) || (!(hasMoved && differNarrowly(last, now)) &&
                                       findMovement(last, now).kind != Movement::Kind::Still);
}

QImage turnedOver(const QImage &picture)
{
    constexpr int block = 16;
    const QImage from = withPixels(picture);
    QImage result(from.height(), from.width(), from.format());
    if (result.isNull())
        return {};
    for (int top = 0; top < from.height(); top += block) {
        for (int left = 0; left < from.width(); left += block) {
            const int bottom = std::min(top + block, from.height());
            for (int x = left; x < std::min(left + block, from.width()); ++x) {
                auto *line = reinterpret_cast<QRgb *>(result.bits() + x * result.bytesPerLine());
                for (int y = top; y < bottom; ++y)
                    line[y] = pixelRow(from, y)[x];
            }
        }
    }
    return result;
}

}  // namespace

ScrolledWindow::ScrolledWindow(int number, QPoint anchor)
    : m_clock(*services().clock), m_number(number),
      m_changes(services().pictures->watchChanges(number)), m_rest(s_rest)
{
    for (const auto &window : services().windows->windows(WindowCatalogue::List::OnScreen, 0)) {
        if (window.number != m_number)
            continue;
        m_bounds = window.bounds.toRect();
        m_frame = window.frame;
    }
    if (m_bounds.isEmpty())
        qCInfo(logHelper) << "window" << number << "is gone";
    m_size = services().pictures->sizeOf(m_bounds);
    if (m_size != m_bounds.size() && !m_bounds.isEmpty())
        m_frame = (QMarginsF(m_frame) * m_size.width() / m_bounds.width()).toMargins();
    m_crop = QRect(QPoint(), m_size);
    m_anchor = fromGlobal(anchor);
}

ScrolledWindow::~ScrolledWindow() = default;

QRect ScrolledWindow::fromGlobal(const QRect &area) const
{
    const QPoint corner = fromGlobal(area.topLeft());
    const QPoint farCorner = fromGlobal(area.topLeft() + QPoint(area.width(), area.height()));
    return {corner, QSize(farCorner.x() - corner.x(), farCorner.y() - corner.y())};
}

QPoint ScrolledWindow::fromGlobal(QPoint point) const
{
    const QPoint inside = point - m_bounds.topLeft();
    return m_bounds.isEmpty() ? inside
                              : QPoint(inside.x() * m_size.width() / m_bounds.width(),
                                       inside.y() * m_size.height() / m_bounds.height());
}

QPoint ScrolledWindow::toGlobal(QPoint inPicture) const
{
    if (m_size.isEmpty())
        return m_bounds.topLeft() + inPicture;
    return m_bounds.topLeft() + QPoint(inPicture.x() * m_bounds.width() / m_size.width(),
                                       inPicture.y() * m_bounds.height() / m_size.height());
}

void ScrolledWindow::setStop(Stop stop)
{
    if (m_stop == Stop::None || stop == Stop::Abandon)
        m_stop = stop;
}

void ScrolledWindow::endWith(const QString &note)
{
    m_ended = true;
    noteThat(note);
}

void ScrolledWindow::noteThat(const QString &note)
{
    if (m_note.isEmpty())
        m_note = note;
}

bool ScrolledWindow::pause()
{
    if (!m_clock.pause(s_round))
        setStop(Stop::Abandon);
    return m_stop != Stop::Abandon;
}

bool ScrolledWindow::look()
{
    const QImage now = services().pictures->ofWindows(std::nullopt, {m_number});
    if (now.isNull())
        endWith(tr("The window left the screen"));
    else if (now.size() != m_size)
        endWith(tr("The window changed its size"));
    else
        m_view = now;
    return !now.isNull() && now.size() == m_size;
}

QImage ScrolledWindow::contentOf(const QImage &view) const
{
    const QImage content = m_crop == view.rect() ? view : view.copy(m_crop);
    return m_axis == Axis::Across ? turnedOver(content) : content;
}

QRect ScrolledWindow::inside() const { return m_view.rect().marginsRemoved(m_frame); }

// Determines whether the wheel reaches the window, which may have been moved. An open menu gets the
// wheel wherever it is turned.
ScrolledWindow::Reach ScrolledWindow::reach()
{
    const auto windows = services().windows->windows(WindowCatalogue::List::AtAndAbove, m_number);
    if (windows.isEmpty())
        return Reach::Gone;
    m_bounds.moveTopLeft(windows.last().bounds.toRect().topLeft());
    const QPoint at = toGlobal(m_anchor);
    if (!windows.last().bounds.contains(at))
        return Reach::Gone;
    const uint process = windows.last().process;
    for (const auto &window : windows) {
        if (window.number == m_number || window.process == ownProcess())
            continue;
        const bool isMenu =
            window.kind == WindowCatalogue::Kind::Menu && window.process == process && process != 0;
        if (!isMenu && !window.bounds.contains(at))
            continue;
        const QString name = window.name.isEmpty() ? window.owner : window.name;
        m_coveredBy = isMenu || name.isEmpty() ? tr("A menu") : tr("\"%1\"").arg(name);
        return Reach::Covered;
    }
    return Reach::Free;
}

bool ScrolledWindow::isReachable() { return reach() == Reach::Free; }

bool ScrolledWindow::waitUntilReachable()
{
    const Stop stop = m_stop;
    Stopwatch clock(m_clock);
    bool isTold = false;
    while (true) {
        switch (reach()) {
        case Reach::Free:
            return true;
        case Reach::Gone:
            if (look())
                endWith(tr("The window left the screen"));
            return false;
        case Reach::Covered:
            break;
        }
        if (!isTold)
            emit told(tr("%1 is in front: waiting until it is gone").arg(m_coveredBy));
        isTold = true;
        if (clock.elapsed() >= s_coverPatience)
            endWith(tr("%1 came in front").arg(m_coveredBy));
        if (m_ended || m_stop != stop)
            return false;
        if (!m_clock.pause(s_coverRound))
            setStop(Stop::Abandon);
    }
}

std::optional<QRect> ScrolledWindow::boundsNow() const
{
    for (const auto &window : services().windows->windows(WindowCatalogue::List::All, 0)) {
        if (window.number == m_number)
            return window.bounds.toRect();
    }
    return {};
}

bool ScrolledWindow::isGone() const { return !boundsNow(); }

bool ScrolledWindow::waitForReturn()
{
    Stopwatch clock(m_clock);
    bool isTold = false;
    while (m_stop != Stop::Abandon) {
        const auto bounds = boundsNow();
        if (!bounds)
            return false;
        m_bounds = *bounds;
        m_size = services().pictures->sizeOf(m_bounds);
        if (!QRect(QPoint(), m_size).contains(m_anchor))
            m_anchor = QRect(QPoint(), m_size).center();
        const Reach found = reach();
        if (found == Reach::Free)
            return look();
        if (!std::exchange(isTold, true)) {
            emit told(found == Reach::Covered
                          ? tr("%1 is in front: waiting until it is gone").arg(m_coveredBy)
                          : tr("Bring the window back: its content is not where it was"));
        }
        if (clock.elapsed() >= s_coverPatience || !m_clock.pause(s_coverRound))
            break;
    }
    return false;
}

// Waits until no key or button is held: Ctrl and the wheel would zoom, and a button would drag.
bool ScrolledWindow::waitForFreeHand()
{
    const Stop stop = m_stop;
    Stopwatch clock(m_clock);
    for (bool isTold = false; services().hands->isHandBusy();) {
        if (!isTold && clock.elapsed() >= s_handPatience) {
            emit told(tr("Let go of all keys and buttons"));
            isTold = true;
        }
        if (clock.elapsed() >= s_handLimit || !pause() || m_stop != stop)
            return false;
    }
    return true;
}

void ScrolledWindow::turnWheel(int clicks)
{
    using Wheel = Hands::Wheel;
    Hands &hands = *services().hands;
    const Wheel across = m_shifted ? Wheel::DownWithShift : Wheel::Right;
    m_turnedAt = toGlobal(m_anchor);
    m_pointerWas = hands.pointer();
    m_isPointerAway = true;
    hands.turnWheel(m_turnedAt, clicks, m_axis == Axis::Down ? Wheel::Down : across);
}

// Moves the pointer back, unless the user has moved it meanwhile. Waits until rows that were
// highlighted under it look normal again.
void ScrolledWindow::returnPointer()
{
    if (!std::exchange(m_isPointerAway, false) || m_pointerWas == m_turnedAt ||
        services().hands->pointer() != m_turnedAt)
        return;
    services().hands->movePointer(m_pointerWas);
    if (m_darkTurns >= s_darkTurns)
        return;
    const QImage before = content();
    Stopwatch sinceChange(m_clock);
    while (sinceChange.elapsed() < s_lightRest && pause()) {
        const QImage last = m_view;
        if ((!m_changes || m_changes->takeChange()) && look() && m_view != last)
            sinceChange.restart();
    }
    m_darkTurns = content() == before ? m_darkTurns + 1 : 0;
}

// If the window's drawing is watched, a pause of a few times the longest pause so far is enough.
int ScrolledWindow::restFor(qint64 longestGap) const
{
    if (!m_changes || m_rest != s_rest)
        return m_rest;
    const qint64 wanted = std::max(s_gapsToRest * longestGap, s_roundsToRest * m_longestRound);
    return std::clamp(static_cast<int>(wanted), s_shortestRest, s_rest);
}

int ScrolledWindow::patience(int least, int most) const
{
    if (m_slowestAnswer < 0)
        return most;
    const qint64 wanted =
        std::max(s_answersToPatience * m_slowestAnswer, s_roundsToPatience * m_longestRound);
    return std::clamp(static_cast<int>(wanted), least, most);
}

ScrolledWindow::Turn ScrolledWindow::turn(int clicks, int patience)
{
    const Turn result = turnAndWait(clicks, patience);
    returnPointer();
    return result;
}

// The program is ending, so no events arrive; but the pointer must stay until all wheel events have
// been delivered.
void ScrolledWindow::waitUnheard()
{
    const QImage before = content();
    QImage last = before;
    int equal = 0;
    for (int i = 0; i < s_lastLooks && look() && (last == before || equal < s_looksToRest); ++i) {
        equal = content() == last ? equal + 1 : 0;
        last = content();
        QThread::msleep(s_round);
    }
}

// False where the wheel could not be turned over the window.
bool ScrolledWindow::beginTurn(int clicks)
{
    if (!waitForFreeHand() || !isReachable())
        return false;
    if (const QString lack = services().abilities.lackOf(Ability::OtherWheels); !lack.isEmpty()) {
        endWith(lack);
        return false;
    }
    turnWheel(clicks);
    m_unanswered += clicks;
    return true;
}

ScrolledWindow::Turn ScrolledWindow::turnAndWait(int clicks, int patience)
{
    const Stop stop = m_stop;
    if (clicks != 0 && !beginTurn(clicks))
        return Turn::Nothing;
    const QImage before = content();
    if (m_stop == Stop::Abandon && clicks != 0)
        waitUnheard();
    QImage last = before;
    bool hasMoved = false;
    qint64 longestGap = 0;
    Stopwatch sinceTurn(m_clock);
    Stopwatch sinceChange = sinceTurn;
    Stopwatch sinceRound = sinceTurn;
    m_longestRound = 0;
    while (pause() && m_stop == stop) {
        m_longestRound = std::max(m_longestRound, sinceRound.elapsed());
        sinceRound.restart();
        const bool mayDiffer = !m_changes || m_changes->takeChange();
        if (mayDiffer && !look())
            return Turn::Nothing;
        const QImage now = mayDiffer ? content() : last;
        if (mayDiffer && now != last) {
            const bool hasChanged = isChange(last, now, hasMoved);
            if (hasChanged) {
                if (hasMoved)
                    longestGap = std::max(longestGap, sinceChange.elapsed());
                const bool isLate = hasMoved && sinceChange.elapsed() >= s_rest;
                m_sawLate = m_sawLate || (isLate && isInPlace(last, now));
                sinceChange.restart();
            }
            // Slow scrolling may look like spots if only the last two views are compared.
            const bool moves =
                hasMoved || hasChanged || findMovement(before, now).kind != Movement::Kind::Still;
            if (moves && !hasMoved && clicks != 0)
                m_slowestAnswer = std::max(m_slowestAnswer, sinceTurn.elapsed());
            hasMoved = moves;
            last = now;
        }
        if (hasMoved &&
            (sinceChange.elapsed() >= restFor(longestGap) || sinceTurn.elapsed() >= s_restless)) {
            m_unanswered = 0;
            return Turn::Moved;
        }
        if (!hasMoved && sinceTurn.elapsed() >= patience)
            return Turn::Nothing;
    }
    return Turn::Nothing;
}

bool ScrolledWindow::isUnderPointer(const QImage &before, const QImage &after) const
{
    if (before.size() != after.size() || m_axis != Axis::Down)
        return false;
    const size_t bytes = sizeof(QRgb) * static_cast<size_t>(after.width());
    const int anchor = m_anchor.y() - m_crop.top();
    const int pointer = fromGlobal(services().hands->pointer()).y() - m_crop.top();
    for (int y = 0; y < after.height(); ++y) {
        if (std::abs(y - anchor) > s_litRow && std::abs(y - pointer) > s_litRow &&
            std::memcmp(before.constScanLine(y), after.constScanLine(y), bytes) != 0)
            return false;
    }
    return true;
}

// The pointer stays as close to the content as possible and in the same window, because some
// desktops give the keyboard focus to the window under it. It never goes to the title bar, where a
// late wheel event would roll up the window.
void ScrolledWindow::parkPointer(const QRect &content)
{
    const QPoint at = fromGlobal(services().hands->pointer());
    const QRect window = inside();
    if (m_isParked || !content.contains(at))
        return;
    const int foot = m_size.height() - 1 - m_frame.bottom() / 2;
    const std::array places{QPoint(at.x(), content.top() - s_parkingDistance),
                            QPoint(at.x(), content.bottom() + s_parkingDistance),
                            QPoint(content.right() + s_parkingDistance, at.y()),
                            QPoint(content.left() - s_parkingDistance, at.y()),
                            QPoint(at.x(), foot)};
    for (const QPoint place : places) {
        if (!window.contains(place) && (place.y() != foot || m_frame.bottom() < s_border))
            continue;
        m_pointerBefore = services().hands->pointer();
        m_parkedAt = toGlobal(place);
        m_isParked = true;
        services().hands->movePointer(m_parkedAt);
        return;
    }
}

void ScrolledWindow::unparkPointer()
{
    if (std::exchange(m_isParked, false) && services().hands->pointer() == m_parkedAt)
        services().hands->movePointer(m_pointerBefore);
}
