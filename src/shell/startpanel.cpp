#include "shell/startpanel.h"

#include "base/palette.h"
#include "platform/services.h"
#include "shell/commands.h"
#include "shell/mainwindow.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr long s_rectangleKey = 1;  // numbers of hot keys
constexpr long s_windowKey = 5;
constexpr long s_screenKey = 6;

// Logical pixels.
constexpr int s_top = 27;  // below the band that the tabs stand on
constexpr QMargins s_cardMargins(20, 18, 20, 18);
constexpr int s_cardWidth = 380;
constexpr qreal s_cardRadius = 10;
constexpr int s_spacing = 4;
constexpr int s_gap = 10;
constexpr int s_padding = 12;  // of a button's texts from its sides
constexpr int s_room = 18;     // above and below them together
constexpr qreal s_buttonRadius = 6;
constexpr int s_capPadding = 7;
constexpr qreal s_capRadius = 4;
constexpr qreal s_headlineTimes = 1.35;  // the usual font's size

// What a button does on the left, and the keys for it in a cap on the right.
class StartButton : public QPushButton
{
public:
    explicit StartButton(const QString &text) : QPushButton(text)
    {
        setAttribute(Qt::WA_Hover);
        setAutoDefault(true);  // Return presses it, as Space does
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

    void setKeys(const QString &keys)
    {
        m_keys = keys;
        setAccessibleDescription(keys);
        updateGeometry();
        update();
    }

    QSize sizeHint() const override
    {
        const QFontMetrics metrics = fontMetrics();
        const int keys = m_keys.isEmpty() ? 0 : s_gap + capWidth();
        return {metrics.horizontalAdvance(text()) + keys + 2 * s_padding,
                metrics.height() + s_room};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool isLit = isEnabled() && (underMouse() || isDown());
        painter.setPen(hasFocus() ? QPen(Palette::accentDown, 2) : QPen(Qt::NoPen));
        painter.setBrush(isDown() ? Palette::strip : isLit ? Palette::table : Palette::topBand);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), s_buttonRadius,
                                s_buttonRadius);
        const QRect inside = rect().adjusted(s_padding, 0, -s_padding, 0);
        painter.setPen(isEnabled() ? Palette::dark : Palette::pictureEdge);
        painter.drawText(visual(inside), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine,
                         text());
        if (!m_keys.isEmpty())
            paintCap(painter, inside);
    }

private:
    int capWidth() const { return fontMetrics().horizontalAdvance(m_keys) + 2 * s_capPadding; }

    QRect visual(const QRect &area) const
    {
        return QStyle::visualRect(layoutDirection(), rect(), area);
    }

    void paintCap(QPainter &painter, const QRect &inside) const
    {
        const int height = fontMetrics().height() + 6;
        const QRect cap(inside.right() + 1 - capWidth(), (this->height() - height) / 2, capWidth(),
                        height);
        painter.setPen(Palette::brightEdge);
        painter.setBrush(Palette::strip);
        painter.drawRoundedRect(QRectF(visual(cap)).adjusted(0.5, 0.5, -0.5, -0.5), s_capRadius,
                                s_capRadius);
        painter.setPen(isEnabled() ? Palette::glyphOnBright : Palette::pictureEdge);
        painter.drawText(visual(cap), Qt::AlignCenter | Qt::TextSingleLine, m_keys);
    }

    QString m_keys{};
};

// The ground of all that.
class Card : public QWidget
{
protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Palette::stripLine);
        painter.setBrush(Palette::topBand);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), s_cardRadius,
                                s_cardRadius);
    }
};

QLabel *label(const QString &text, const QColor &color)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setContentsMargins(s_padding, 0, s_padding, 0);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    return label;
}

}  // namespace

StartPanel::StartPanel(MainWindow &window, QWidget &parent) : QScrollArea(&parent), m_window(window)
{
    setObjectName(u"StartPanel"_s);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    auto *ground = new QWidget;
    auto *card = new Card;
    card->setMinimumWidth(s_cardWidth);
    auto *middle = new QGridLayout(ground);
    middle->addWidget(card, 0, 0, Qt::AlignCenter);
    auto *layout = new QVBoxLayout(card);
    layout->setContentsMargins(s_cardMargins);
    layout->setSpacing(s_spacing);
    m_headline = label(tr("Take a picture of the screen"), Palette::dark);
    layout->addWidget(m_headline);
    if (services().abilities.lackOf(Ability::HotKeys).isEmpty())
        layout->addWidget(
            label(tr("These keys work in front of any program."), Palette::glyphOnBright));
    layout->addSpacing(s_spacing);
    add(*layout, "BtnStartRectangle", tr("Rectangle"), commandOfHotKey(s_rectangleKey));
    add(*layout, "BtnStartWindow", tr("Window"), commandOfHotKey(s_windowKey));
    add(*layout, "BtnStartScreen", tr("Full Screen"), commandOfHotKey(s_screenKey));
    layout->addSpacing(s_gap);
    layout->addWidget(
        label(tr("Or mark up a picture that you have: drop it here, or"), Palette::glyphOnBright));
    layout->addSpacing(s_spacing);
    add(*layout, "BtnStartOpen", tr("Open..."), commandNamed(u"Open..."_s));
    add(*layout, "BtnStartPaste", tr("Paste"), commandNamed(u"&Paste"_s));
    setWidget(ground);
    // The table shows through.
    viewport()->setAutoFillBackground(false);
    ground->setAutoFillBackground(false);
    fitHeadline();
    updateKeys();
    QWidget *before = &parent;
    for (const Entry &entry : m_entries) {
        setTabOrder(before, entry.button);
        before = entry.button;
    }
    setGeometry(parent.rect().adjusted(0, s_top, 0, 0));
    parent.installEventFilter(this);
}

void StartPanel::add(QVBoxLayout &place, const char *name, const QString &caption,
                     const Command *command)
{
    auto *button = new StartButton(caption);
    button->setObjectName(QLatin1StringView(name));
    button->setAccessibleName(caption);
    const QString lack = services().abilities.lackOf(command->needs);
    button->setEnabled(lack.isEmpty());
    button->setToolTip(asHint(lack));
    connect(button, &QPushButton::clicked, this,
            [this, command] { runCommand(*command, m_window); });
    place.addWidget(button);
    m_entries.append({button, command});
}

void StartPanel::updateKeys()
{
    for (const Entry &entry : m_entries)
        static_cast<StartButton *>(entry.button)
            ->setKeys(keysOf(*entry.command).toString(QKeySequence::NativeText));
}

void StartPanel::fitHeadline()
{
    QFont large = font();
    if (large.pointSizeF() > 0)
        large.setPointSizeF(large.pointSizeF() * s_headlineTimes);
    large.setBold(true);
    m_headline->setFont(large);
}

void StartPanel::changeEvent(QEvent *event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange && m_headline)
        fitHeadline();
}

bool StartPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect().adjusted(0, s_top, 0, 0));
    return QScrollArea::eventFilter(watched, event);
}
