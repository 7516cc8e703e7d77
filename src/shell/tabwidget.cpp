#include "shell/tabwidget.h"

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHash>
#include <QPainter>
#include <QStyleOptionTab>
#include <QTabBar>

#include <algorithm>
#include <utility>

namespace {

constexpr int s_gap = 4;  // between text and cross, as the toolkit leaves

class CloseButton : public QAbstractButton
{
public:
    explicit CloseButton(QTabBar *bar) : QAbstractButton(bar), m_bar(bar)
    {
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::ArrowCursor);
        setAttribute(Qt::WA_Hover);
        setToolTip(TabWidget::tr("Close Tab"));
        setAccessibleName(TabWidget::tr("Close Tab"));
    }

    int tab() const { return m_tab; }
    void setTab(int tab) { m_tab = tab; }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QStyleOption option;
        option.initFrom(this);
        option.state |= QStyle::State_AutoRaise;
        option.state.setFlag(QStyle::State_Raised, underMouse() && !isDown());
        option.state.setFlag(QStyle::State_Sunken, isDown());
        option.state.setFlag(QStyle::State_Selected, m_tab == m_bar->currentIndex());
        QPainter painter(this);
        style()->drawPrimitive(QStyle::PE_IndicatorTabClose, &option, &painter, this);
    }

private:
    QTabBar *m_bar;
    int m_tab = -1;
};

class TabBar : public QTabBar
{
public:
    explicit TabBar(TabWidget *tabs) : QTabBar(tabs), m_tabs(tabs) {}

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::ToolTip)
            return QTabBar::event(event);
        const auto &help = static_cast<QHelpEvent &>(*event);
        if (const int tab = tabAt(help.pos()); tab >= 0)
            emit m_tabs->tipWanted(tab, help.globalPos());
        return true;
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        m_pressed = event->button() == Qt::MiddleButton ? tabAt(event->pos()) : -1;
        m_dragged = event->button() == Qt::LeftButton ? tabAt(event->pos()) : -1;
        m_origin = event->pos();
        QTabBar::mousePressEvent(event);
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        const int way = (event->pos() - m_origin).manhattanLength();
        if (!event->buttons().testFlag(Qt::LeftButton) || m_dragged < 0 ||
            way < QApplication::startDragDistance())
            QTabBar::mouseMoveEvent(event);
        else
            emit m_tabs->dragWanted(std::exchange(m_dragged, -1));
    }

    void mouseReleaseEvent(QMouseEvent *event) override
    {
        const int pressed = std::exchange(m_pressed, -1);
        if (event->button() == Qt::MiddleButton && pressed >= 0 && tabAt(event->pos()) == pressed)
            emit tabCloseRequested(pressed);
        else
            QTabBar::mouseReleaseEvent(event);
    }

    // That of the keys is the picture's.
    void contextMenuEvent(QContextMenuEvent *event) override
    {
        const int tab = event->reason() == QContextMenuEvent::Mouse ? tabAt(event->pos()) : -1;
        if (tab >= 0)
            emit m_tabs->menuWanted(tab, event->globalPos());
        else
            event->ignore();
    }

    // Measured once: all tabs are asked for theirs whenever one is added.
    QSize tabSizeHint(int index) const override
    {
        const bool isCurrent = index == currentIndex();
        const QString key = tabText(index) + (isCurrent ? u'1' : u'0');
        const auto known = m_sizes.constFind(key);
        return known == m_sizes.constEnd() ? *m_sizes.insert(key, measured(index, isCurrent))
                                           : *known;
    }

    void changeEvent(QEvent *event) override
    {
        m_sizes.clear();
        QTabBar::changeEvent(event);
    }

    void initStyleOption(QStyleOptionTab *option, int index) const override
    {
        QTabBar::initStyleOption(option, index);
        option->rightButtonSize = buttonSize();
        const QRect text = style()->subElementRect(QStyle::SE_TabBarTabText, option, this);
        option->text = fontMetrics().elidedText(tabText(index), elideMode(), text.width(),
                                                Qt::TextShowMnemonic);
    }

    void paintEvent(QPaintEvent *event) override
    {
        placeButtons();
        QTabBar::paintEvent(event);
    }

private:
    // With room for the button.
    QSize measured(int index, bool isCurrent) const
    {
        QStyleOptionTab option;
        option.initFrom(this);
        option.shape = shape();
        option.text = tabText(index);
        option.state.setFlag(QStyle::State_Selected, isCurrent);
        option.state.setFlag(QStyle::State_HasFocus, false);
        const QSize text = fontMetrics().size(Qt::TextShowMnemonic, option.text);
        const QSize button = buttonSize();
        const QSize frame(style()->pixelMetric(QStyle::PM_TabBarTabHSpace, &option, this),
                          style()->pixelMetric(QStyle::PM_TabBarTabVSpace, &option, this));
        const QSize content(text.width() + button.width() + s_gap,
                            std::max(fontMetrics().height(), button.height()));
        return style()->sizeFromContents(QStyle::CT_TabBarTab, &option, content + frame, this);
    }

    QSize buttonSize() const
    {
        return {style()->pixelMetric(QStyle::PM_TabCloseIndicatorWidth, nullptr, this),
                style()->pixelMetric(QStyle::PM_TabCloseIndicatorHeight, nullptr, this)};
    }

    // However the tabs came to lie where they are, they are painted there.
    void placeButtons()
    {
        qsizetype used = 0;
        for (int i = 0; i < count(); ++i) {
            if (!tabRect(i).intersects(rect()))
                continue;
            if (used == m_buttons.size())
                addButton();
            QStyleOptionTab option;
            initStyleOption(&option, i);
            CloseButton *button = m_buttons.at(used++);
            button->setTab(i);
            button->setGeometry(
                style()->subElementRect(QStyle::SE_TabBarTabRightButton, &option, this));
            button->show();
        }
        for (; used < m_buttons.size(); ++used)
            m_buttons.at(used)->hide();
    }

    void addButton()
    {
        auto *button = new CloseButton(this);
        connect(button, &QAbstractButton::clicked, this,
                [this, button] { emit tabCloseRequested(button->tab()); });
        // Below the arrows that scroll the tabs.
        button->lower();
        m_buttons.append(button);
    }

    TabWidget *m_tabs;
    int m_pressed = -1;                       // the tab below the middle button
    int m_dragged = -1;                       // the same for the left one, until it moves away
    QPoint m_origin{};                        // where it was pressed
    QList<CloseButton *> m_buttons{};         // the first ones are in use
    mutable QHash<QString, QSize> m_sizes{};  // by text, and whether it is the current tab's
};

}  // namespace

TabWidget::TabWidget(QWidget *parent) : QTabWidget(parent)
{
    auto *bar = new TabBar(this);
    // The name of the toolkit's own: parts with such names follow the font of the whole.
    bar->setObjectName(tabBar()->objectName());
    setTabBar(bar);
    connect(bar, &QTabBar::tabCloseRequested, this, &QTabWidget::tabCloseRequested);
}
