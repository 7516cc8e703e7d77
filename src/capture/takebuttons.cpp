#include "capture/takebuttons.h"

#include "capture/overlayplate.h"
#include "platform/services.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// Logical pixels.
constexpr int s_height = 41;
constexpr int s_button = 24;
constexpr int s_margin = 12;
constexpr int s_gap = 6;
constexpr int s_beside = 8;  // to each side of a button's text
constexpr int s_font = 12;

constexpr int s_apart = 6;  // between the frame and what it is beside

}  // namespace

TakeButtons::TakeButtons(QWidget *parent) : QWidget(parent)
{
    setObjectName(u"takeButtons"_s);
    // Between the buttons a press would mark something else.
    setAttribute(Qt::WA_NoMousePropagation);
    setCursor(Qt::ArrowCursor);
    add(tr("Copy"), tr("Copy the picture (Ctrl+C)"), GrabGoal::Copy);
    add(tr("Save"), tr("Save the picture as a file (Ctrl+S)"), GrabGoal::Save);
    if (services().abilities.lackOf(Ability::Pins).isEmpty())
        add(tr("Pin"), tr("Keep the picture above all windows (P)"), GrabGoal::Pin);
    add(tr("Text"), tr("Read the text in the picture, and copy it (T)"), GrabGoal::Text);
    add(tr("Take"), tr("Take the picture (Return)"), std::nullopt);
    resize(m_buttons.constLast()->geometry().right() + 1 + s_margin, s_height);
    hide();
}

void TakeButtons::add(const QString &name, const QString &tip,
                      const std::optional<GrabGoals> &goals)
{
    auto *button = new QPushButton(name, this);
    button->setAccessibleName(tip);
    button->setToolTip(tip);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    button->setStyleSheet(
        u"QPushButton { background-color: rgb(237, 237, 237); border-radius: 7px; color: black; }"
        "QPushButton:hover { background-color: white; }"_s);
    QFont plain = font();
    plain.setPixelSize(s_font);
    button->setFont(plain);
    const int left = m_buttons.isEmpty() ? s_margin : m_buttons.constLast()->geometry().right() + 1;
    const int width = QFontMetrics(plain).horizontalAdvance(name) + 2 * s_beside;
    button->setGeometry(left + (m_buttons.isEmpty() ? 0 : s_gap), (s_height - s_button) / 2,
                        std::max(width, s_button), s_button);
    button->installEventFilter(this);
    connect(button, &QPushButton::clicked, this, [this, goals] { emit chosen(goals); });
    m_buttons.append(button);
}

// The toolkit's own tip is a window that may outlive the overlay, and be in the picture.
bool TakeButtons::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::eventFilter(watched, event);
    emit explained(static_cast<QWidget *>(watched)->toolTip());
    return true;
}

void TakeButtons::paintEvent(QPaintEvent * /*event*/) { paintOverlayFrame(*this); }

QPoint TakeButtons::place(QSize size, const QRect &beside, const QRect &home,
                          const QList<QRect> &clear)
{
    const int right = beside.x() + beside.width();
    const int bottom = beside.y() + beside.height();
    const int across = home.x() + home.width() - size.width();
    const int down = home.y() + home.height() - size.height();
    const QList<QPoint> places{{beside.x() - s_apart - size.width(), beside.y()},
                               {right + s_apart, beside.y()},
                               {right - size.width(), bottom + s_apart},
                               {beside.x(), bottom + s_apart},
                               {right - size.width(), beside.y() - s_apart - size.height()},
                               {beside.x(), beside.y() - s_apart - size.height()},
                               {across, home.y()},
                               {home.x(), home.y()},
                               {across, down},
                               {home.x(), down}};
    const auto isFree = [&](QPoint corner) {
        const QRect box(corner, size);
        return home.contains(box) && !box.intersects(beside) &&
               std::none_of(clear.begin(), clear.end(),
                            [&box](const QRect &other) { return box.intersects(other); });
    };
    const auto found = std::find_if(places.begin(), places.end(), isFree);
    return found == places.end() ? QPoint(std::max(home.x(), across), home.y()) : *found;
}
