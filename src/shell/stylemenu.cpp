#include "shell/stylemenu.h"

#include "editing/rendering.h"

#include <QActionGroup>

#include <array>

namespace {

constexpr int s_iconSize = 20;  // logical pixels

/// One item. A row without a text begins a section: with a title one of which one item is chosen,
/// without a title one of items that are chosen each for itself.
struct Choice {
    unsigned use = 0;  ///< a tool has to have it
    const char *text = nullptr;
    bool (*isIn)(const EditMsg &style) = nullptr;
    void (*choose)(EditMsg &style) = nullptr;
    const char *title = nullptr;
};

template<auto field, auto value> constexpr Choice choice(unsigned use, const char *text)
{
    return {use, text, [](const EditMsg &style) { return style.*field == value; },
            [](EditMsg &style) { style.*field = value; }, nullptr};
}

constexpr std::array s_choices{
    Choice{.title = QT_TRANSLATE_NOOP("StyleMenu", "Fill")},
    choice<&EditMsg::fill, Fill::None>(UsesFill, QT_TRANSLATE_NOOP("StyleMenu", "&No Fill")),
    choice<&EditMsg::fill, Fill::Translucent>(UsesFill,
                                              QT_TRANSLATE_NOOP("StyleMenu", "&Translucent Fill")),
    choice<&EditMsg::fill, Fill::Solid>(UsesFill, QT_TRANSLATE_NOOP("StyleMenu", "&Solid Fill")),
    Choice{.title = QT_TRANSLATE_NOOP("StyleMenu", "Line")},
    choice<&EditMsg::dashes, Dashes::None>(UsesDashes,
                                           QT_TRANSLATE_NOOP("StyleMenu", "S&olid Line")),
    choice<&EditMsg::dashes, Dashes::Dashed>(UsesDashes,
                                             QT_TRANSLATE_NOOP("StyleMenu", "&Dashed Line")),
    choice<&EditMsg::dashes, Dashes::Dotted>(UsesDashes,
                                             QT_TRANSLATE_NOOP("StyleMenu", "Dott&ed Line")),
    Choice{.title = QT_TRANSLATE_NOOP("StyleMenu", "Arrow Heads")},
    choice<&EditMsg::heads, Heads::One>(UsesHeads, QT_TRANSLATE_NOOP("StyleMenu", "One &Head")),
    choice<&EditMsg::heads, Heads::Both>(UsesHeads, QT_TRANSLATE_NOOP("StyleMenu", "&Both Heads")),
    choice<&EditMsg::heads, Heads::Open>(UsesHeads, QT_TRANSLATE_NOOP("StyleMenu", "Open He&ad")),
    Choice{.title = QT_TRANSLATE_NOOP("StyleMenu", "Text")},
    choice<&EditMsg::ground, TextGround::None>(UsesGround,
                                               QT_TRANSLATE_NOOP("StyleMenu", "&Plain Text")),
    choice<&EditMsg::ground, TextGround::Filled>(
        UsesGround, QT_TRANSLATE_NOOP("StyleMenu", "Text on a &Ground")),
    choice<&EditMsg::ground, TextGround::Outlined>(
        UsesGround, QT_TRANSLATE_NOOP("StyleMenu", "O&utlined Text")),
    Choice{},
    Choice{UsesShadow, QT_TRANSLATE_NOOP("StyleMenu", "Shado&w"),
           [](const EditMsg &style) { return style.hasShadow; },
           [](EditMsg &style) { style.hasShadow = !style.hasShadow; }, nullptr},
    Choice{UsesRound, QT_TRANSLATE_NOOP("StyleMenu", "&Round Spotlight"),
           [](const EditMsg &style) { return style.isRound; },
           [](EditMsg &style) { style.isRound = !style.isRound; }, nullptr}};

// What a choice shows best on, in a square of twice s_iconSize.
Geometry sampleFor(unsigned use)
{
    const QLine line = use == UsesHeads ? QLine(4, 34, 36, 6) : QLine(2, 20, 38, 20);
    const QRect box(6, 8, 28, 24);
    const Drag drag{.start = line.p1(),
                    .end = line.p2(),
                    .pointer = line.p2(),
                    .box = box,
                    .line = QPolygon({line.p1(), line.p2()})};
    switch (use) {
    case UsesDashes:
        return shapeFrom(stateLine, drag).value_or(EmptyShape());
    case UsesHeads:
        return shapeFrom(stateArrow, drag).value_or(EmptyShape());
    case UsesGround:
        return TextShape{{8, 2}};
    case UsesRound:
        return SpotlightShape{box, {{box, true}}};
    default:
        return shapeFrom(stateRect, drag).value_or(EmptyShape());
    }
}

// Drawn as shapes are, so that it tells what comes of it; in half the size, since arrow heads and
// outlines have a least size. Of a text with something dark behind it, the letters are bright.
QIcon iconOf(const Choice &choice, const QPalette &palette, qreal scale)
{
    QPixmap pixmap(QSize(s_iconSize, s_iconSize) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    EditMsg style{.width = choice.use == UsesDashes ? 4 : 2, .text = QStringLiteral("a")};
    style.font.setPixelSize(28);
    choice.choose(style);
    style.color =
        palette.color(style.ground == TextGround::None ? QPalette::WindowText : QPalette::Window);
    QPainter painter(&pixmap);
    painter.scale(0.5, 0.5);
    painter.setRenderHint(QPainter::Antialiasing);
    drawShape(painter, sampleFor(choice.use), style);
    return pixmap;
}

}  // namespace

StyleMenu::StyleMenu(QWidget *parent) : QMenu(parent)
{
    setObjectName(QStringLiteral("StyleMenu"));
    // A press beside it only closes it, and does not open it again from its button.
    setAttribute(Qt::WA_NoMouseReplay);
    QActionGroup *group = nullptr;
    for (const Choice &choice : s_choices) {
        if (!choice.text) {
            choice.title ? addSection(tr(choice.title)) : addSeparator();
            group = choice.title ? new QActionGroup(this) : nullptr;
            continue;
        }
        QAction *action = addAction(tr(choice.text));
        action->setCheckable(true);
        if (group)
            group->addAction(action);
        connect(action, &QAction::triggered, this, [this, &choice] { emit chosen(choice.choose); });
    }
    m_number = addAction(tr("Ne&xt Number..."), this, &StyleMenu::numberWanted);
}

void StyleMenu::follow(const EditMsg &style, unsigned uses)
{
    m_number->setEnabled((uses & UsesNumber) != 0);
    auto choice = s_choices.begin();
    for (QAction *action : actions().first(static_cast<qsizetype>(s_choices.size()))) {
        if (choice->text) {
            action->setChecked(choice->isIn(style));
            action->setEnabled((uses & choice->use) != 0);
            action->setIcon(iconOf(*choice, palette(), devicePixelRatioF()));
        }
        ++choice;
    }
}
