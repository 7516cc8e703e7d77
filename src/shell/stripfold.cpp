#include "shell/stripfold.h"

#include "base/palette.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QWidgetAction>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Logical pixels.
constexpr QSize s_buttonSize(28, 28);
constexpr QSizeF s_arrow(4, 8);
constexpr qreal s_arrowGap = 5;
constexpr qreal s_stroke = 1.75;
constexpr qreal s_ringRadius = 5;
constexpr QMargins s_rowMargins(10, 4, 10, 4);
constexpr int s_rowSpacing = 12;

/// Two arrowheads that point to what lies beyond the strip.
class FoldButton : public QPushButton
{
public:
    FoldButton(const QColor &color, QWidget *parent) : QPushButton(parent), m_color(color)
    {
        setFixedSize(s_buttonSize);
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        // The menu's right side comes to lie under the button's: the strip ends there.
        setLayoutDirection(Qt::RightToLeft);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (hasFocus()) {
            painter.setPen(QPen(Palette::accentDown, 1));
            painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), s_ringRadius,
                                    s_ringRadius);
        }
        const QColor color = isDown()       ? Palette::accentDown
                             : underMouse() ? Palette::accent
                                            : m_color;
        painter.setPen(QPen(color, s_stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        QPointF tip = QRectF(rect()).center() + QPointF((s_arrow.width() - s_arrowGap) / 2, 0);
        for (int i = 0; i < 2; ++i) {
            const QPointF back(tip.x() - s_arrow.width(), tip.y());
            const QPointF side(0, s_arrow.height() / 2);
            painter.drawPolyline(QPolygonF{back - side, tip, back + side});
            tip.rx() += s_arrowGap;
        }
    }

private:
    QColor m_color;
};

// After a menu a button takes itself to be under the pointer.
void leave(QAbstractButton &button)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&button, &event);
}

// A hint's first line ends with two spaces and the keys; a menu shows these at its other side. That
// of a greyed button says why it is.
QString itemText(const QAbstractButton &button)
{
    const bool isNamed = button.isEnabled() && !button.toolTip().isEmpty();
    QString text = isNamed ? button.toolTip().section(u'\n', 0, 0) : button.accessibleName();
    text.replace(u'&', u"&&"_s);
    if (const qsizetype keys = text.lastIndexOf(u"  "_s); keys >= 0)
        text.replace(keys, 2, u'\t');
    return text;
}

}  // namespace

StripFold::StripFold(QWidget *strip, QList<Unit> units, const Look &look,
                     std::function<bool(const QAbstractButton &)> isChosen)
    : QObject(strip), m_strip(strip), m_units(std::move(units)), m_isChosen(std::move(isChosen)),
      m_button(new FoldButton(look.color, strip)), m_menu(new QMenu(strip->window()))
{
    m_button->setObjectName(look.id);
    m_button->setAccessibleName(look.name);
    m_button->setToolTip(look.name + u"  "_s + look.keys.toString(QKeySequence::NativeText));
    m_button->setMenu(m_menu);
    m_menu->setLayoutDirection(strip->layoutDirection());
    // The buttons' pictures are drawn for the strip's ground.
    QPalette palette = m_menu->palette();
    for (const auto role : {QPalette::Window, QPalette::Base})
        palette.setColor(role, look.ground);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, look.color);
    m_menu->setPalette(palette);
    m_button->hide();
    layout().addWidget(m_button, 0, Qt::AlignVCenter);
    QWidget *before = m_button->previousInFocusChain();
    while (before != m_button &&
           !(strip->isAncestorOf(before) && (before->focusPolicy() & Qt::TabFocus)))
        before = before->previousInFocusChain();
    QWidget::setTabOrder(before, m_button);
    // A hidden button's keys are nobody's.
    new QShortcut(look.keys, m_button, [this] { m_button->showMenu(); });
    connect(m_menu, &QMenu::aboutToShow, this, &StripFold::fillMenu);
    connect(m_menu, &QMenu::aboutToHide, this, [this] {
        giveBack();
        leave(*m_button);
    });
    strip->installEventFilter(this);
}

// Up and down go through the items of the menu, and do not change what they pass.
bool StripFold::passKey(QObject &widget, QKeyEvent &key)
{
    if (key.key() != Qt::Key_Up && key.key() != Qt::Key_Down)
        return false;
    if (key.modifiers() == Qt::NoModifier) {
        m_menu->setFocus(Qt::OtherFocusReason);
        QCoreApplication::sendEvent(m_menu, &key);
        return true;
    }
    auto *box = qobject_cast<QComboBox *>(&widget);
    if (box && key.modifiers() == Qt::AltModifier)
        box->showPopup();
    return box;
}

bool StripFold::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_strip) {
        const bool isKey = event->type() == QEvent::KeyPress;
        return (isKey && passKey(*watched, *static_cast<QKeyEvent *>(event))) ||
               QObject::eventFilter(watched, event);
    }
    if (event->type() == QEvent::Resize)
        m_menu->close();
    // What stands in the menu is counted once it is back, which the strip hears of.
    const bool mayFit = event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest;
    if (mayFit && m_borrowed.isEmpty())
        fit();
    return QObject::eventFilter(watched, event);
}

QBoxLayout &StripFold::layout() const { return *static_cast<QBoxLayout *>(m_strip->layout()); }

int StripFold::widthOf(const Unit &unit) const
{
    int width = 0;
    for (const QWidget *widget : unit) {
        // Whoever has a smallest size means it.
        const int own = widget->minimumWidth();
        width += (own > 0 ? own : widget->minimumSizeHint().width()) + layout().spacing();
    }
    return width;
}

void StripFold::fit()
{
    const int button = s_buttonSize.width() + layout().spacing();
    int needed = layout().minimumSize().width() - (m_folded > 0 ? button : 0);
    for (qsizetype i = 0; i < m_folded; ++i)
        needed += widthOf(m_units.at(i));
    qsizetype folded = 0;
    if (needed > m_strip->width())
        needed += button;
    for (; needed > m_strip->width() && folded < m_units.size(); ++folded)
        needed -= widthOf(m_units.at(folded));
    if (folded == std::exchange(m_folded, folded))
        return;
    for (qsizetype i = 0; i < m_units.size(); ++i) {
        for (QWidget *widget : std::as_const(m_units[i]))
            widget->setVisible(i >= folded);
    }
    m_button->setVisible(folded > 0);
}

// As the strip is now, in its order.
void StripFold::fillMenu()
{
    m_menu->clear();
    QList<Unit> folded = m_units.first(m_folded);
    std::sort(folded.begin(), folded.end(), [this](const Unit &a, const Unit &b) {
        return layout().indexOf(a.first()) < layout().indexOf(b.first());
    });
    for (const Unit &unit : std::as_const(folded)) {
        m_menu->addSeparator();
        for (QWidget *widget : unit) {
            auto *button = qobject_cast<QAbstractButton *>(widget);
            const auto inside = widget->findChildren<QAbstractButton *>();
            if (button)
                addItem(*button);
            else if (widget->focusPolicy() != Qt::NoFocus)
                addRow(*widget);
            else
                std::for_each(inside.begin(), inside.end(), [this](auto *part) { addItem(*part); });
        }
    }
}

void StripFold::addItem(QAbstractButton &button)
{
    QAction *action = m_menu->addAction(button.icon(), itemText(button));
    const QString more = button.toolTip().section(u'\n', 1);
    action->setEnabled(button.isEnabled());
    if (!button.isEnabled() || !more.isEmpty()) {
        action->setToolTip(button.isEnabled() ? more : button.toolTip());
        m_menu->setToolTipsVisible(true);
    }
    const bool isChosen = m_isChosen(button);
    action->setCheckable(isChosen);
    action->setChecked(isChosen);
    connect(action, &QAction::triggered, &button, [&button] {
        button.click();
        leave(button);
    });
}

void StripFold::addRow(QWidget &widget)
{
    const int index = layout().indexOf(&widget);
    m_borrowed.append({&widget, index, layout().itemAt(index)->alignment()});
    auto *row = new QWidget(m_menu);
    row->setStyleSheet(m_strip->styleSheet());
    // A click beside the widget must not count as one on the item, which closes the menu.
    row->setAttribute(Qt::WA_NoMousePropagation);
    auto *label = new QLabel(widget.accessibleName(), row);
    auto *line = new QHBoxLayout(row);
    line->setContentsMargins(s_rowMargins);
    line->setSpacing(s_rowSpacing);
    line->addWidget(label);
    line->addStretch();
    line->addWidget(&widget);
    widget.show();
    widget.installEventFilter(this);
    // The arrow keys and Tab, which go through the items, reach the widget by it.
    row->setFocusPolicy(widget.focusPolicy());
    row->setFocusProxy(&widget);
    auto *action = new QWidgetAction(m_menu);
    action->setDefaultWidget(row);
    m_menu->addAction(action);
}

void StripFold::giveBack()
{
    while (!m_borrowed.isEmpty()) {
        const Borrowed last = m_borrowed.takeLast();
        last.widget->hide();
        last.widget->removeEventFilter(this);
        layout().insertWidget(last.index, last.widget, 0, last.alignment);
        // The layout shows what it takes in, later.
        last.widget->hide();
    }
}

void enterStripControl(QWidget &control)
{
    if (control.isVisible())
        return control.setFocus(Qt::ShortcutFocusReason);
    for (QPushButton *button : control.parentWidget()->findChildren<QPushButton *>()) {
        if (dynamic_cast<FoldButton *>(button))
            return button->showMenu();
    }
}
