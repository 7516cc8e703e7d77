#include "helper/hintplate.h"

#include "base/palette.h"
#include "capture/magnifiergeometry.h"
#include "platform/services.h"

#include <QLabel>
#include <QPainter>

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_radius = 8;
constexpr int s_padding = 14;
constexpr int s_columnGap = 16;
constexpr int s_lineGap = 6;
constexpr int s_headlineSpan = 2;
constexpr int s_fromEdge = 48;  // device pixels: panels are there
constexpr int s_gap = 12;       // device pixels between the plate and its area
constexpr int s_pictureColumn = 2;
constexpr QSize s_picture(132, 176);
constexpr QSize s_flatPicture(200, 64);
constexpr int s_tallWidth = 180;
constexpr int s_linePadding = 3;  // above and below a plate of one line
// Device pixels; small, because the plate may have to fit on a title bar.
constexpr int s_lineDistance = 4;

QLabel *label(const QString &text, const QColor &color)
{
    auto *result = new QLabel(text);
    result->setTextFormat(Qt::PlainText);
    result->setStyleSheet(
        u"QLabel { color: %1; background: transparent; } QLabel:disabled { color: %2; }"_s.arg(
            color.name(), Palette::quietOnDark.name()));
    return result;
}

}  // namespace

HintPlate::HintPlate(QWidget *parent)
    : QWidget(parent), m_grid(new QGridLayout(this)), m_headline(label({}, Qt::white))
{
    m_headline->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    if (!parent) {
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                       Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus);
        setAttribute(Qt::WA_TranslucentBackground);
        setAttribute(Qt::WA_ShowWithoutActivating);
    }
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_grid->setContentsMargins(s_padding, s_padding, s_padding, s_padding);
    m_grid->setHorizontalSpacing(s_columnGap);
    m_grid->setVerticalSpacing(s_lineGap);
    m_grid->setColumnStretch(1, 1);
    QFont bold = font();
    bold.setBold(true);
    m_headline->setFont(bold);
    m_grid->addWidget(m_headline, 0, 0, 1, s_headlineSpan);
}

void HintPlate::setHeadline(const QString &text)
{
    m_text = text;
    tellHeadline();
}

void HintPlate::tellHeadline()
{
    QString text = m_text;
    for (int row = 1; m_form == Form::Line && m_areKeysHeard && row < m_grid->rowCount(); ++row) {
        const auto at = [this, row](int column) {
            const QLayoutItem *item = m_grid->itemAtPosition(row, column);
            const auto *found = item ? qobject_cast<QLabel *>(item->widget()) : nullptr;
            return found && found != m_picture ? found->text() : QString();
        };
        if (!at(0).isEmpty())
            text += u"   ·   %1: %2"_s.arg(at(0), at(1));
    }
    m_headline->setText(text);
}

void HintPlate::addLine(const QString &key, const QString &meaning)
{
    const int row = m_grid->rowCount();
    m_grid->addWidget(label(key, Palette::accent), row, 0);
    m_grid->addWidget(label(meaning, Palette::textOnDark), row, 1);
}

void HintPlate::reserveHeadlines(const QStringList &texts)
{
    m_longest = texts;
    sizeHeadline();
}

void HintPlate::setKeysHeard(bool heard)
{
    if (heard == std::exchange(m_areKeysHeard, heard))
        return;
    for (QLabel *line : findChildren<QLabel *>()) {
        if (line != m_headline && line != m_picture)
            line->setEnabled(heard);
    }
    tellHeadline();
}

void HintPlate::clearLines()
{
    for (QLabel *line : findChildren<QLabel *>()) {
        if (line != m_headline && line != m_picture)
            delete line;
    }
}

QSize HintPlate::pictureBox() const
{
    if (m_form == Form::Line)
        return {};
    const QSize box = m_form == Form::Flat ? s_flatPicture : s_picture;
    return (QSizeF(box) * devicePixelRatioF()).toSize();
}

void HintPlate::reservePicture()
{
    m_picture = new QLabel;
    m_pictureRow = m_grid->rowCount();
    placePicture();
}

void HintPlate::setPicture(const QImage &picture, const QString &name, const QString &description)
{
    if (!m_picture)
        reservePicture();
    QPixmap shown = QPixmap::fromImage(picture);
    shown.setDevicePixelRatio(devicePixelRatioF());
    m_picture->setPixmap(shown);
    m_picture->setAccessibleName(name);
    m_picture->setAccessibleDescription(description);
}

namespace {

bool isOnScreen(const QRect &box, const QList<QRect> &screens)
{
    return std::any_of(screens.begin(), screens.end(),
                       [&](const QRect &screen) { return screen.contains(box); });
}

// A position at one of the corners of `area`, at the distance `gap`; none if no screen has space.
std::optional<QPoint> placeAtSide(QSize size, const QRect &area, const QList<QRect> &screens,
                                  int gap)
{
    const int left = area.x() - gap - size.width();
    const int right = area.x() + area.width() + gap;
    const int above = area.y() - gap - size.height();
    const int below = area.y() + area.height() + gap;
    for (const QPoint corner : {QPoint(right, area.y()), QPoint(left, area.y()),
                                QPoint(area.x(), below), QPoint(area.x(), above)}) {
        if (isOnScreen({corner, size}, screens))
            return corner;
    }
    return {};
}

// For an area that extends beyond its screen and has no usable corner there: a corner of any screen
// that does not touch the area.
std::optional<QPoint> placeInCorner(QSize size, const QRect &area, const QList<QRect> &screens)
{
    for (const QRect &screen : screens) {
        for (const int x : {screen.x() + screen.width() - size.width(), screen.x()}) {
            for (const int y : {screen.y(), screen.y() + screen.height() - size.height()}) {
                const QRect box({x, y}, size);
                if (isOnScreen(box, screens) && !area.intersects(box))
                    return QPoint(x, y);
            }
        }
    }
    return {};
}

}  // namespace

QPoint HintPlate::place(QSize size, const QRect &area, const QList<QRect> &screens)
{
    if (const auto beside = placeAtSide(size, area, screens, s_gap))
        return *beside;
    if (const auto corner = placeInCorner(size, area, screens))
        return *corner;
    // The area's visible part, and in that the top right corner, which contains text least often.
    QRect seen = area;
    for (const QRect &screen : screens) {
        if (screen.contains(area.center()))
            seen &= screen;
    }
    return {seen.x() + seen.width() - size.width() - s_gap, seen.y() + s_gap};
}

// Adjusts the size to the content, and returns it in device pixels.
QSize HintPlate::fitted()
{
    adjustSize();
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

void HintPlate::showAt(QPoint corner)
{
    OwnWindows &own = *services().ownWindows;
    if (isVisible()) {
        own.moveWindow(this, corner);
    } else {
        own.coverArea(this, {corner, fitted()});
        show();
    }
    m_corner = corner;
    m_covered = fitted();
}

void HintPlate::showBeside(const QRect &area)
{
    showAt(place(fitted(), area, services().screens->areas()));
}

void HintPlate::showAwayFrom(QPoint pointer)
{
    QRect home;
    for (const QRect &screen : services().screens->areas()) {
        if (home.isNull() || screen.contains(pointer))
            home = screen;
    }
    const QRect room = home.adjusted(s_fromEdge, s_fromEdge, -s_fromEdge, -s_fromEdge);
    showAt(magnifierPlace(fitted(), room, pointer));
}

bool HintPlate::goesAlong(const QRect &area, const QList<QRect> &screens)
{
    if (!isVisible() || m_outside.size() != area.size())
        return false;
    const QRect box(m_corner + area.topLeft() - m_outside.topLeft(), fitted());
    if (!isOnScreen(box, screens) || area.intersects(box))
        return false;
    showAt(box.topLeft());
    m_outside = area;
    return true;
}

void HintPlate::showOutside(const QRect &area, const QRect &window, bool mayCover)
{
    const QList<QRect> screens = services().screens->areas();
    if (goesAlong(area, screens))
        return;
    const auto isShown = [&](Form form, const auto &placed) {
        setForm(form);
        const std::optional<QPoint> corner = placed(fitted());
        if (corner) {
            showAt(*corner);
            m_outside = area;
        }
        return corner.has_value();
    };
    const std::array forms{Form::Wide, Form::Tall, Form::Flat};
    for (const QRect &clear : {area | window, area}) {
        const auto atSide = [&](QSize size) { return placeAtSide(size, clear, screens, s_gap); };
        const auto inCorner = [&](QSize size) { return placeInCorner(size, clear, screens); };
        if (std::any_of(forms.begin(), forms.end(),
                        [&](Form form) { return isShown(form, atSide); }) ||
            std::any_of(forms.begin(), forms.end(),
                        [&](Form form) { return isShown(form, inCorner); }))
            return;
    }
    if (isShown(Form::Line,
                [&](QSize size) { return placeAtSide(size, area, screens, s_lineDistance); }))
        return;
    m_outside = {};
    setForm(Form::Wide);
    if (mayCover)
        showBeside(area);
    else
        hide();
}

void HintPlate::setForm(Form form)
{
    if (form == m_form)
        return;
    m_form = form;
    const bool isLine = form == Form::Line;
    for (QLabel *line : findChildren<QLabel *>()) {
        if (line != m_headline)
            line->setHidden(isLine);
    }
    const int padding = isLine ? s_linePadding : s_padding;
    m_grid->setContentsMargins(s_padding, padding, s_padding, padding);
    m_grid->setVerticalSpacing(isLine ? 0 : s_lineGap);
    sizeHeadline();
    tellHeadline();
    if (m_picture)
        placePicture();
    m_grid->invalidate();
    m_grid->activate();
}

void HintPlate::sizeHeadline()
{
    m_headline->setMinimumSize(0, 0);
    m_headline->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    const bool isLine = m_form == Form::Line;
    m_headline->setWordWrap(!isLine && !m_longest.isEmpty());
    if (isLine || m_longest.isEmpty())
        return;
    std::array<int, s_headlineSpan> columns{};
    for (int row = 1; row < m_grid->rowCount(); ++row) {
        for (int column = 0; column < s_headlineSpan; ++column) {
            const QLayoutItem *item = m_grid->itemAtPosition(row, column);
            if (item && item->widget() != m_picture)
                columns.at(column) = std::max(columns.at(column), item->sizeHint().width());
        }
    }
    const int lines = std::accumulate(columns.begin(), columns.end(), s_columnGap);
    const QSize room(std::max(lines, s_tallWidth), QWIDGETSIZE_MAX);
    int height = 0;
    for (const QString &text : std::as_const(m_longest)) {
        const QRect needed =
            m_headline->fontMetrics().boundingRect(QRect({}, room), Qt::TextWordWrap, text);
        height = std::max(height, needed.height());
    }
    m_headline->setFixedSize(room.width(), height);
}

void HintPlate::placePicture()
{
    m_picture->setFixedSize(m_form == Form::Flat ? s_flatPicture : s_picture);
    m_picture->setAlignment(m_form == Form::Flat ? Qt::AlignRight | Qt::AlignTop
                                                 : Qt::AlignHCenter | Qt::AlignTop);
    m_grid->removeWidget(m_picture);
    // The rest of the picture's height is below the lines. For low forms there is no stretch,
    // because the toolkit makes windows that stretch at least 100 pixels high.
    const bool isLow = m_form == Form::Line || m_form == Form::Flat;
    m_grid->setRowStretch(m_pictureRow, isLow ? 0 : 1);
    if (m_form == Form::Tall)
        m_grid->addWidget(m_picture, m_pictureRow, 0, 1, s_headlineSpan, Qt::AlignHCenter);
    else
        m_grid->addWidget(m_picture, 0, s_pictureColumn, -1, 1, Qt::AlignTop);
}

void HintPlate::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setPen(Palette::darkEdge);
    painter.setBrush(Palette::dark);
    // Round corners need a translucent window.
    const bool isRound = parentWidget() || services().ownWindows->isComposited();
    painter.setRenderHint(QPainter::Antialiasing, isRound);
    const qreal radius = isRound ? s_radius : 0;
    const qreal half = isRound ? 0.5 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -1 + half, -1 + half), radius,
                            radius);
}
