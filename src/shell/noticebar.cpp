#include "shell/noticebar.h"

#include "base/palette.h"
#include "platform/services.h"
#include "shell/plate.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_padding = 12;
constexpr int s_gap = 8;
constexpr int s_fromSides = 16;
constexpr int s_fromFoot = 24;  // a scroll bar stays within reach
constexpr int s_smallestText = 200;
constexpr int s_widest = 760;
constexpr int s_time = 10'000;  // ms

// Wraps within a word too where a path leaves no other place.
class WrappedText : public QLabel
{
public:
    WrappedText()
    {
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        setWordWrap(true);
    }

    QSize minimumSizeHint() const override { return {s_smallestText, fontMetrics().height()}; }
    QSize sizeHint() const override
    {
        return {s_smallestText, heightForWidth(std::max(width(), s_smallestText))};
    }
    int heightForWidth(int width) const override
    {
        qreal height = 0;
        for (const QString &paragraph : text().split(u'\n')) {
            QTextLayout layout(paragraph, font());
            layout.setTextOption(option());
            layout.beginLayout();
            for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
                line.setLineWidth(width);
                height += line.height();
            }
            layout.endLayout();
        }
        return static_cast<int>(std::ceil(height));
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(Palette::textOnDark);
        painter.drawText(QRectF(rect()), text(), option());
    }

private:
    QTextOption option() const
    {
        QTextOption result(Qt::AlignLeading | Qt::AlignVCenter);
        result.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        result.setTextDirection(layoutDirection());
        return result;
    }
};

// Programs that read the screen aloud speak what appears as an alert.
QAccessibleInterface *alertFor(const QString & /*className*/, QObject *object)
{
    auto *bar = qobject_cast<NoticeBar *>(object);
    return bar ? new QAccessibleWidget(bar, QAccessible::AlertMessage) : nullptr;
}

}  // namespace

NoticeBar::NoticeBar(QWidget *area)
    : QWidget(area->parentWidget()), m_area(area), m_text(new WrappedText)
{
    QAccessible::installFactory(alertFor);
    hide();
    setCursor(Qt::ArrowCursor);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(s_padding, s_padding, s_padding, s_padding);
    rows->setSpacing(s_gap);
    auto *top = new QHBoxLayout;
    top->setSpacing(s_gap);
    top->addWidget(m_text, 1);
    auto *close = new PlateButton({});
    close->setObjectName(u"BtnCloseNotice"_s);
    close->setAccessibleName(tr("Close"));
    close->setToolTip(tr("Close"));
    connect(close, &QPushButton::clicked, this, &NoticeBar::leave);
    top->addWidget(close, 0, Qt::AlignTop);
    rows->addLayout(top);
    m_buttons = new QHBoxLayout;
    m_buttons->setSpacing(s_gap);
    m_buttons->addStretch(1);
    rows->addLayout(m_buttons);
    area->installEventFilter(this);
}

void NoticeBar::tell(const QString &text, const QList<Action> &actions)
{
    m_notices.removeIf(
        [&text](const Notice &notice) { return notice.actions.isEmpty() || notice.text == text; });
    m_notices.append({text, actions});
    showLast();
}

void NoticeBar::withdraw(const QString &text)
{
    if (m_notices.removeIf([&text](const Notice &notice) { return notice.text == text; }) > 0)
        showLast();
}

QString NoticeBar::text() const { return m_notices.isEmpty() ? QString() : m_notices.last().text; }

void NoticeBar::showLast()
{
    ++m_round;
    m_isTimed = false;
    hide();
    for (QPushButton *button : findChildren<QPushButton *>()) {
        if (!button->text().isEmpty())
            button->deleteLater();
    }
    while (m_buttons->count() > 1)
        delete m_buttons->takeAt(1);
    if (m_notices.isEmpty())
        return;
    const Notice &notice = m_notices.last();
    m_text->setText(notice.text);
    setAccessibleName(notice.text);
    for (const Action &action : notice.actions) {
        auto *button = new PlateButton(action.text);
        connect(button, &QPushButton::clicked, this, [this, run = action.run] {
            // The button goes with the notice, and this function with the button.
            const std::function<void()> next = run;
            leave();
            next();
        });
        button->installEventFilter(this);
        m_buttons->addWidget(button);
    }
    fit();
    raise();
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void NoticeBar::startTime()
{
    if (m_notices.isEmpty() || !m_notices.last().actions.isEmpty())
        return;
    m_isTimed = true;
    services().clock->after(s_time, this, [this, round = ++m_round] {
        if (round != m_round)
            return;
        if (underMouse() || hasFocusInside())
            startTime();
        else
            leave();
    });
}

bool NoticeBar::hasFocusInside() const { return isAncestorOf(QApplication::focusWidget()); }

// The keyboard goes back to what lies below.
void NoticeBar::leave()
{
    if (m_notices.isEmpty())
        return;
    const bool hadFocus = hasFocusInside();
    m_notices.removeLast();
    showLast();
    if (hadFocus)
        m_area->setFocus(Qt::OtherFocusReason);
}

void NoticeBar::fit()
{
    // Nested layouts forget the old text's size only so.
    layout()->invalidate();
    layout()->activate();
    const QRect area = m_area->geometry();
    const int width = std::min(area.width() - 2 * s_fromSides, s_widest);
    const int height = layout()->totalHeightForWidth(width);
    setGeometry(area.x() + (area.width() - width) / 2,
                area.y() + area.height() - s_fromFoot - height, width, height);
}

bool NoticeBar::eventFilter(QObject *watched, QEvent *event)
{
    // The second press of a double click is meant for the button of the notice before.
    if (watched != m_area && (event->type() == QEvent::MouseButtonPress ||
                              event->type() == QEvent::MouseButtonDblClick)) {
        const quint64 now = static_cast<QMouseEvent *>(event)->timestamp();
        const auto before = std::exchange(m_pressed, now);
        if (before && now < *before + QApplication::doubleClickInterval())
            return true;
    }
    if (watched == m_area && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        fit();
    return QWidget::eventFilter(watched, event);
}

void NoticeBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && !m_notices.isEmpty())
        fit();
}

void NoticeBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        leave();
    else
        QWidget::keyPressEvent(event);
}

// Not for the window, which a press on its body moves.
void NoticeBar::mousePressEvent(QMouseEvent *event) { event->accept(); }

// Painted is seen, or as good as, but in a window that is minimised.
void NoticeBar::paintEvent(QPaintEvent * /*event*/)
{
    paintPlate(*this);
    if (!m_isTimed && !window()->isMinimized())
        startTime();
}
