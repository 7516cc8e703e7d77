#include "shell/keyspage.h"

#include "platform/hotkeys.h"
#include "platform/keysymbols.h"
#include "platform/services.h"
#include "shell/commands.h"
#include "shell/keyfield.h"
#include "shell/mainwindow.h"
#include "shell/pagelayout.h"
#include "shell/preferences.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_rows = 9;                   // that are seen without scrolling
constexpr int s_numberRole = Qt::UserRole;  // of a row

enum Column { CommandColumn, KeysColumn, StateColumn };

// What a hot key can do with its picture, in the order of the box. The first is no choice of its
// own.
constexpr std::array<std::pair<int, const char *>, 6> s_goals{{
    {0, QT_TRANSLATE_NOOP("KeysPage", "as in the preferences")},
    {int(GrabGoal::Tab), QT_TRANSLATE_NOOP("KeysPage", "open a tab")},
    {int(GrabGoal::Copy), QT_TRANSLATE_NOOP("KeysPage", "copy the picture")},
    {int(GrabGoal::Save), QT_TRANSLATE_NOOP("KeysPage", "save it to a file")},
    {int(GrabGoal::Text), QT_TRANSLATE_NOOP("KeysPage", "copy the text in it")},
    {int(GrabGoal::Pin), QT_TRANSLATE_NOOP("KeysPage", "pin it to the screen")},
}};

bool readsLines()
{
    return !qEnvironmentVariableIsEmpty("SWAYSOCK") || !qEnvironmentVariableIsEmpty("I3SOCK");
}

// The keys that a command is to have in the desktop's configuration. Only giving up has none of its
// own. Escape alone belongs to the program that has the keyboard.
QKeySequence keysForLine(const Command &command)
{
    const int number = command.hotKey ? command.hotKey : command.offeredKey;
    if (!number)
        return Qt::CTRL | Qt::ALT | Qt::Key_Escape;
    for (const QKeySequence &keys :
         {hotKeyOf(number), defaultHotKey(number), offeredHotKey(number)}) {
        if (!keys.isEmpty())
            return keys;
    }
    return {};
}

// As sway and i3 name them.
QString lineKeys(QKeyCombination keys)
{
    constexpr std::array<std::pair<Qt::KeyboardModifier, const char *>, 4> modifiers{
        {{Qt::ControlModifier, "Ctrl+"},
         {Qt::AltModifier, "Mod1+"},
         {Qt::ShiftModifier, "Shift+"},
         {Qt::MetaModifier, "Mod4+"}}};
    QString line;
    for (const auto &[modifier, name] : modifiers) {
        if (keys.keyboardModifiers().testFlag(modifier))
            line += QLatin1StringView(name);
    }
    return line + keySymbolName(keys.key());
}

// As sway and i3 read it; for other desktops what their settings want, one below the other. The
// quotes keep the brackets from the shell that runs it.
QString lineFor(const Command &command)
{
    const QKeySequence keys = keysForLine(command);
    const QString run = ApplicationBus::commandFor(QString::fromLatin1(command.action));
    if (readsLines())
        return u"bindsym %1 exec %2"_s.arg(lineKeys(keys[0]), run);
    return u"# %1, %2\n%3"_s.arg(titleOf(command), keys.toString(QKeySequence::NativeText), run);
}

// The keys that a number has before the user changes them, once it is on.
QKeySequence ownKeys(int number)
{
    const QKeySequence offered = offeredHotKey(number);
    return offered.isEmpty() ? defaultHotKey(number) : offered;
}

// Whether its keys are offered, and the user has not switched them on.
bool isOff(int number) { return hotKeyOf(number).isEmpty() && !offeredHotKey(number).isEmpty(); }

// The command of a number that can be used here; null for none.
const Command *usableCommand(int number)
{
    const Command *command = commandOfHotKey(number);
    return command && services().abilities.lackOf(command->needs).isEmpty() ? command : nullptr;
}

// Without Ctrl, Alt or Meta most keys are needed for typing, everywhere.
bool isForTyping(QKeyCombination keys)
{
    constexpr std::array free{Qt::Key_Print, Qt::Key_Pause, Qt::Key_ScrollLock, Qt::Key_Help,
                              Qt::Key_Calculator};
    const bool isFree = std::find(free.begin(), free.end(), keys.key()) != free.end() ||
                        (keys.key() >= Qt::Key_F1 && keys.key() <= Qt::Key_F35) ||
                        (keys.key() >= Qt::Key_Launch0 && keys.key() <= Qt::Key_LaunchF);
    const auto held = keys.keyboardModifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier);
    return held == Qt::NoModifier && !isFree;
}

}  // namespace

KeysPage::KeysPage(QWidget *parent) : QWidget(parent)
{
    pageLayout(*this);
    services().hotKeys->setChangeHandler([this] {
        follow();
        if (m_list)
            refuse(advice());
        emit changed();
    });
    fill();
}

KeysPage::~KeysPage() { services().hotKeys->setChangeHandler({}); }

void KeysPage::fill()
{
    delete m_content;
    m_list = nullptr;
    m_content = new QWidget;
    auto *place = new QVBoxLayout(m_content);
    place->setContentsMargins({});
    layout()->addWidget(m_content);
    if (services().abilities.lackOf(Ability::HotKeys).isEmpty())
        addHotKeys(*place);
    else
        addLines(*place);
}

// The desktop has other keys. Whoever is at work on the page goes on.
void KeysPage::follow()
{
    const bool areThere = services().abilities.lackOf(Ability::HotKeys).isEmpty();
    if (!areThere || !m_list) {
        fill();
        return;
    }
    for (int i = 0; i < m_list->topLevelItemCount(); ++i)
        showRow(*m_list->topLevelItem(i));
}

void KeysPage::addHotKeys(QBoxLayout &place)
{
    m_list = new QTreeWidget;
    m_list->setAccessibleName(tr("Hot keys"));
    m_list->setHeaderLabels({tr("Command"), tr("Keys"), tr("State")});
    m_list->setRootIsDecorated(false);
    m_list->setAllColumnsShowFocus(true);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    addRows();
    place.addWidget(new QLabel(tr("These keys work anywhere on the desktop:")));
    place.addWidget(m_list, 1);
    addDetails(place);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &KeysPage::showDetails);
    connect(m_list, &QTreeWidget::itemChanged, this,
            [this](QTreeWidgetItem *row) { switchRow(*row); });
    m_list->setCurrentItem(m_list->topLevelItem(0));
}

void KeysPage::addRows()
{
    for (const int number : hotKeyNumbers()) {
        const Command *command = usableCommand(number);
        if (!command)
            continue;
        auto *row = new QTreeWidgetItem(m_list, {titleOf(*command)});
        row->setData(0, s_numberRole, number);
        showRow(*row);
    }
    // As wide as the texts can become, and what is left is the states'.
    const QFontMetrics metrics = m_list->fontMetrics();
    QHeaderView &header = *m_list->header();
    header.setStretchLastSection(false);
    int height = 0;
    for (const Column column : {CommandColumn, KeysColumn, StateColumn}) {
        m_list->resizeColumnToContents(column);
        int width = m_list->columnWidth(column);
        for (const QString &text : column == StateColumn ? stateTexts() : QStringList())
            width = std::max(width, metrics.horizontalAdvance(text));
        header.resizeSection(column, width + metrics.height());
    }
    m_list->setMinimumWidth(header.length() + 2 * m_list->frameWidth() +
                            m_list->style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    header.setStretchLastSection(true);
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        m_list->topLevelItem(i)->setSizeHint(CommandColumn, {0, metrics.height() * 3 / 2});
        height += metrics.height() * 3 / 2;
    }
    // All of them where there is room; else the list scrolls.
    m_list->setMinimumHeight(std::min(height, s_rows * metrics.height() * 3 / 2) +
                             header.sizeHint().height());
}

void KeysPage::addDetails(QBoxLayout &place)
{
    m_field = new KeyField;
    m_field->setAccessibleName(tr("Hot key"));
    m_default = new QPushButton(tr("&Default"));
    m_default->setAutoDefault(false);
    m_word = new QLabel;
    m_word->setWordWrap(true);
    m_word->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    // What lies beside must not move from one text to another.
    m_word->setMinimumHeight(2 * m_word->fontMetrics().lineSpacing());
    m_then = new QComboBox;
    m_then->setAccessibleName(tr("Then"));
    for (const auto &[goal, text] : s_goals)
        m_then->addItem(tr(text), goal);
    m_countsDown = new QCheckBox(tr("Co&unt down first"));

    auto *keyLabel = new QLabel(tr("&Hot key:"));
    keyLabel->setBuddy(m_field);
    auto *thenLabel = new QLabel(tr("&Then:"));
    thenLabel->setBuddy(m_then);
    auto *grid = new QGridLayout;
    grid->addWidget(keyLabel, 0, 0);
    grid->addWidget(m_field, 0, 1);
    grid->addWidget(m_default, 0, 2);
    grid->addWidget(m_word, 1, 0, 1, 3);
    grid->addWidget(thenLabel, 2, 0);
    grid->addWidget(m_then, 2, 1);
    grid->addWidget(m_countsDown, 2, 2);
    grid->setColumnStretch(1, 1);
    place.addLayout(grid);

    connect(m_field, &KeyField::pressed, this,
            [this](const QKeySequence &keys) { setKeys(number(), keys); });
    connect(m_field, &KeyField::pressedHotKey, this,
            [this](int pressed) { setKeys(number(), hotKeyOf(pressed)); });
    connect(m_field, &KeyField::givenUp, this, [this] {
        showDetails();
        m_list->setFocus();
    });
    connect(m_field, &KeyField::refused, this, &KeysPage::refuse);
    connect(m_default, &QPushButton::clicked, this,
            [this] { setKeys(number(), ownKeys(number())); });
    connect(m_then, &QComboBox::activated, this, [this] {
        const int goal = m_then->currentData().toInt();
        Preferences::setAfterGrabOf(number(), goal ? std::optional(GrabGoals(goal)) : std::nullopt);
    });
    connect(m_countsDown, &QCheckBox::clicked, this,
            [this](bool on) { Preferences::setCountsDownFirst(number(), on); });
}

int KeysPage::number() const
{
    const QTreeWidgetItem *row = m_list->currentItem();
    return row ? row->data(0, s_numberRole).toInt() : 0;
}

// In the order of the states.
QStringList KeysPage::stateTexts()
{
    return {tr("none"), tr("active"), tr("taken by another program"), tr("changed by the desktop")};
}

void KeysPage::showRow(QTreeWidgetItem &row)
{
    const QSignalBlocker blocker(m_list);
    const int number = row.data(0, s_numberRole).toInt();
    const HotKeys::State state = services().hotKeys->stateOf(number);
    const bool isOther = state == HotKeys::State::Changed;
    const QKeySequence shown = isOff(number) ? offeredHotKey(number) : hotKeyOf(number);
    row.setText(KeysColumn, isOther ? services().hotKeys->keysOf(number)
                                    : shown.toString(QKeySequence::NativeText));
    row.setText(StateColumn, isOff(number) ? tr("off") : stateTexts().at(static_cast<int>(state)));
    for (const Column column : {KeysColumn, StateColumn})
        row.setData(column, Qt::ForegroundRole,
                    isOff(number) ? QVariant(palette().color(QPalette::PlaceholderText))
                                  : QVariant());
    if (!offeredHotKey(number).isEmpty())
        row.setCheckState(CommandColumn, isOff(number) ? Qt::Unchecked : Qt::Checked);
}

void KeysPage::showDetails()
{
    const int shown = number();
    m_field->setKeys(hotKeyOf(shown));
    m_default->setText(isOff(shown) ? tr("S&witch On") : tr("&Default"));
    m_default->setEnabled(hotKeyOf(shown) != ownKeys(shown) ||
                          services().hotKeys->stateOf(shown) == HotKeys::State::Changed);
    // A command that has a goal by itself does not follow the preferences.
    const Command *command = commandOfHotKey(shown);
    const std::optional<GrabGoals> own = command ? command->goals : std::nullopt;
    static_cast<QStandardItemModel *>(m_then->model())->item(0)->setEnabled(!own);
    const GrabGoals goals = Preferences::afterGrabOf(shown).value_or(own.value_or(GrabGoals()));
    m_then->setCurrentIndex(std::max(m_then->findData(goals.toInt()), 0));
    m_countsDown->setChecked(Preferences::countsDownFirst(shown));
    refuse(advice());
}

QString KeysPage::advice() const
{
    if (isOff(number()))
        return tr("%1 is off, since many desktops have a use of their own for it. Switch it on, or "
                  "press other keys.")
            .arg(offeredHotKey(number()).toString(QKeySequence::NativeText));
    const bool isTaken = services().hotKeys->stateOf(number()) == HotKeys::State::Taken;
    return isTaken ? tr("%1 does nothing here, since another program has it. Press other keys.")
                         .arg(hotKeyOf(number()).toString(QKeySequence::NativeText))
                   : tr("Press the keys. Delete clears them, Escape gives up.");
}

void KeysPage::refuse(const QString &why) { m_word->setText(why); }

void KeysPage::setKeys(int number, const QKeySequence &keys)
{
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem &row = *m_list->topLevelItem(i);
        const int other = row.data(0, s_numberRole).toInt();
        if (other != number && !keys.isEmpty() && hotKeyOf(other) == keys) {
            refuse(tr("%1 belongs to \"%2\" already.")
                       .arg(keys.toString(QKeySequence::NativeText), row.text(CommandColumn)));
            return;
        }
    }
    if (!keys.isEmpty() && isForTyping(keys[0])) {
        refuse(tr("%1 is needed for typing. Hold Ctrl, Alt or Meta with it.")
                   .arg(keys.toString(QKeySequence::NativeText)));
        return;
    }
    setHotKey(number, keys);
    follow();
    showDetails();
    emit changed();
}

// Its own keys are kept while it is on only: what is offered is always the same.
void KeysPage::switchRow(QTreeWidgetItem &row)
{
    const int switched = row.data(0, s_numberRole).toInt();
    const bool isOn = row.checkState(CommandColumn) == Qt::Checked;
    if (isOn == !hotKeyOf(switched).isEmpty())
        return;
    m_list->setCurrentItem(&row);
    setKeys(switched, isOn ? offeredHotKey(switched) : QKeySequence());
    follow();
}

void KeysPage::addLines(QBoxLayout &place)
{
    QStringList lines;
    for (const Command *command : commandsOnTheBus()) {
        if (services().abilities.lackOf(command->needs).isEmpty())
            lines.append(lineFor(*command));
    }
    const QString all = lines.join(u'\n');

    auto *text = new QLabel(
        readsLines()
            ? tr("This program hears no keys here that are pressed in others. Put these lines into "
                 "the desktop's configuration:")
            : tr("This program hears no keys here that are pressed in others. Give each of these "
                 "commands a name and a key in the desktop's settings: on GNOME under Keyboard, "
                 "View and Customize Shortcuts, Custom Shortcuts."));
    text->setWordWrap(true);
    auto *view = new QPlainTextEdit(all);
    view->setAccessibleName(tr("Lines for the desktop's configuration"));
    view->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    view->setTabChangesFocus(true);
    view->setLineWrapMode(QPlainTextEdit::NoWrap);
    view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    view->setMinimumHeight(s_rows * view->fontMetrics().height());

    auto *copy = new QPushButton(tr("&Copy"));
    auto *copied = new QLabel;
    connect(copy, &QPushButton::clicked, this, [all, copied] {
        QGuiApplication::clipboard()->setText(all + u'\n');
        copied->setText(tr("The lines are in the clipboard."));
    });
    auto *row = new QHBoxLayout;
    row->addWidget(copy);
    row->addWidget(copied, 1);
    if (services().hotKeys->canAsk()) {
        auto *ask = new QPushButton(tr("&Ask the Desktop for Keys"));
        connect(ask, &QPushButton::clicked, this, [] { services().hotKeys->ask(); });
        row->addWidget(ask);
    }
    place.addWidget(text);
    place.addWidget(view);
    place.addLayout(row);
}
