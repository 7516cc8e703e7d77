#include "helper/handcapture.h"

#include "helper/evidence.h"
#include "helper/movement.h"
#include "platform/services.h"

#include <QLocale>
#include <QTransform>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int s_sideLimit = 30'000;          // pixels
constexpr qint64 s_areaLimit = 400'000'000;  // pixels
// Milliseconds.
constexpr int s_pause = 20;  // between two looks
constexpr int s_progressLimit = 60'000;
constexpr int s_lostAfter = 250;  // a view that is just being drawn has no position for a moment
constexpr int s_tellInterval = 120;
// The last known view is shown at half its size, so that the user recognises it.
constexpr int s_reduction = 2;

}  // namespace

HandCapture::HandCapture(const ScrollCapture::Target &target)
    : m_clock(*services().clock), m_target(target), m_mosaic(s_sideLimit, s_areaLimit),
      m_sinceMovement(m_clock), m_sinceKnown(m_clock), m_sinceTold(m_clock)
{
}

ScrollCapture::Result HandCapture::run()
{
    for (const auto &window : services().windows->windows(WindowCatalogue::List::OnScreen, 0)) {
        if (window.number == m_target.window) {
            m_bounds = window.bounds.toRect();
            m_area = QRect(QPoint(), m_bounds.size()).marginsRemoved(window.frame);
        }
    }
    if (!m_target.area.isEmpty())
        m_area = m_target.area.translated(-m_bounds.topLeft()) & QRect(QPoint(), m_bounds.size());
    m_size = services().pictures->sizeOf(m_bounds);
    m_part = m_area;
    if (m_size != m_bounds.size() && !m_bounds.isEmpty())
        m_part = QTransform::fromScale(qreal(m_size.width()) / m_bounds.width(),
                                       qreal(m_size.height()) / m_bounds.height())
                     .mapRect(m_area);
    m_sinceMovement.restart();
    while (m_stop == Stop::None && look()) {
        follow();
        tell();
        if (m_sinceMovement.elapsed() >= s_progressLimit)
            m_ended = tr("Nothing moved for a minute");
        if (!m_ended.isEmpty())
            break;
        if (!m_clock.pause(s_pause))
            abandon();
    }
    if (m_stop == Stop::Discard)
        return {};
    ScrollCapture::Result result{.note = note()};
    const bool isThere = !m_mosaic.lastView().isNull();
    result.picture = m_mosaic.finish();
    if (isThere && result.picture.isNull())
        result.note = tr("There is not enough memory for the picture");
    return result;
}

QString HandCapture::note() const
{
    if (!m_ended.isEmpty())
        return m_ended;
    if (m_mosaic.isFull())
        return tr("The picture has reached its limit: %1 pixels each way, and %2 million in all")
            .arg(QLocale().toString(s_sideLimit))
            .arg(s_areaLimit / 1'000'000);
    if (m_isLost)
        return lossNote();
    return {};
}

// Names the edge over which the place was lost.
QString HandCapture::lossNote() const
{
    const QRect place = m_mosaic.lastPlace();
    const QPoint way = m_mosaic.lastMovement();
    const QLocale locale;
    return std::abs(way.x()) > std::abs(way.y())
               ? tr("The place was lost at column %1, and what you scrolled to after that is "
                    "missing. Try again, and scroll more slowly there.")
                     .arg(locale.toString(way.x() > 0 ? place.right() + 1 : place.left() + 1))
               : tr("The place was lost at row %1, and what you scrolled to after that is "
                    "missing. Try again, and scroll more slowly there.")
                     .arg(locale.toString(way.y() < 0 ? place.top() + 1 : place.bottom() + 1));
}

// Returns false if the window can't be used any more.
bool HandCapture::look()
{
    const QImage picture = services().pictures->ofWindows(std::nullopt, {m_target.window});
    if (picture.isNull())
        m_ended = services().abilities.lackOf(Ability::WindowList).isEmpty()
                      ? tr("The window left the screen")
                      : tr("The desktop does not show this screen to the program");
    else if (picture.size() != m_size)
        m_ended = tr("The window changed its size");
    if (!m_ended.isEmpty())
        return false;
    const Mosaic::Sight sight = m_mosaic.add(picture, m_part);
    m_isUnclear = sight == Mosaic::Sight::Unclear;
    if (m_isUnclear) {
        // A user who searches for the way back is active, but a caret or a clock is no activity. So
        // only larger changes restart the timer.
        const QImage view = picture.copy(m_part);
        if (!m_unclear.isNull() && !isInPlace(m_unclear, view))
            m_sinceMovement.restart();
        m_unclear = view;
    } else {
        m_unclear = {};
        m_sinceKnown.restart();
    }
    if (sight == Mosaic::Sight::Moved)
        m_sinceMovement.restart();
    const bool isLost = m_isUnclear && m_sinceKnown.elapsed() >= s_lostAfter;
    m_isNew = m_isNew || sight == Mosaic::Sight::Moved || isLost != m_isLost;
    m_isLost = isLost;
    return true;
}

void HandCapture::follow()
{
    for (const auto &window : services().windows->windows(WindowCatalogue::List::OnScreen, 0)) {
        const QPoint corner = window.bounds.toRect().topLeft();
        if (window.number != m_target.window || corner == m_bounds.topLeft())
            continue;
        m_bounds.moveTopLeft(corner);
        emit moved();
    }
}

void HandCapture::tell()
{
    if (!m_isNew || m_sinceTold.elapsed() < s_tellInterval)
        return;
    m_isNew = false;
    m_sinceTold.restart();
    emit progressed(m_isLost              ? lostText()
                    : m_mosaic.hasMoved() ? sizeText(m_mosaic.size(), m_mosaic.isFull())
                                          : beginText());
}

QString HandCapture::beginText() { return tr("Scroll it with your own hands"); }

// The text must be sufficient alone, because some panels have no space for the picture.
QString HandCapture::lostText()
{
    return tr("The place is lost: scroll back to what was seen last");
}

QString HandCapture::sizeText(QSize size, bool isFull)
{
    const QString columns = QLocale().toString(size.width());
    const QString rows = QLocale().toString(size.height());
    return isFull ? tr("%1 × %2 pixels: more can't be taken").arg(columns, rows)
                  : tr("%1 × %2 pixels").arg(columns, rows);
}

QStringList HandCapture::longestTexts()
{
    return {beginText(), lostText(), sizeText({s_sideLimit, s_sideLimit}, true)};
}

QImage HandCapture::overview(QSize box) const
{
    return m_isLost ? wayBack(box) : m_mosaic.overview(box);
}

QImage HandCapture::wayBack(QSize box) const
{
    const QImage &last = m_mosaic.lastView();
    const QRect content = m_mosaic.lastPart();
    const QPoint movement = m_mosaic.lastMovement();
    QRect part(content.topLeft(), (box * s_reduction).boundedTo(content.size()));
    if (part.isEmpty())
        return {};
    if (movement.y() >= 0)
        part.moveBottom(content.bottom());
    if (movement.x() > 0)
        part.moveRight(content.right());
    const QRgb ground = commonColour(last, content);
    const auto isPlain = [&](const QRect &area) {
        for (int y = area.top(); y <= area.bottom(); ++y) {
            const QRgb *row = pixelRow(last, y);
            if (!std::all_of(row + area.left(), row + area.right() + 1,
                             [ground](QRgb pixel) { return pixel == ground; }))
                return false;
        }
        return true;
    };
    // A blank part can't be recognised, so moves back to a part with content, and sideways to where
    // the content is in that row.
    const bool isAcross = std::abs(movement.x()) > std::abs(movement.y());
    const QPoint up(0, movement.y() < 0 ? 1 : -1);
    const QPoint left(movement.x() > 0 ? -1 : 1, 0);
    const QPoint back = isAcross ? left : up;
    QRect edge =
        isAcross
            ? QRect(left.x() < 0 ? part.right() : part.left(), content.y(), 1, content.height())
            : QRect(content.x(), up.y() < 0 ? part.bottom() : part.top(), content.width(), 1);
    for (; isPlain(edge) && content.contains(part.translated(back)); edge.translate(back))
        part.translate(back);
    const QPoint beside = isAcross ? up * part.height() / 2 : left * part.width() / 2;
    while (isPlain(part) && content.contains(part.translated(beside)))
        part.translate(beside);
    return last.copy(part).scaled(part.size() / s_reduction, Qt::IgnoreAspectRatio,
                                  Qt::SmoothTransformation);
}
