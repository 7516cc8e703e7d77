#include "shell/keyspage.h"

#include "platform/hotkeys.h"
#include "platform/services.h"
#include "shell/commands.h"
#include "shell/mainwindow.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMargins>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QMargins s_margins(16, 14, 16, 16);  // as on the page beside
constexpr int s_rows = 9;                      // that are seen without scrolling

bool readsLines()
{
    return !qEnvironmentVariableIsEmpty("SWAYSOCK") || !qEnvironmentVariableIsEmpty("I3SOCK");
}

// As sway and i3 read it; for other desktops what their settings want, one below the other. The
// quotes keep the brackets from the shell that runs it.
QString lineFor(const Command &command)
{
    const char letter = hotKeyLetter(command.hotKey);
    // Only giving up has none. Escape alone belongs to the program that has the keyboard.
    const QString key = letter ? QString(QLatin1Char(letter)) : u"Escape"_s;
    const QString run = ApplicationBus::commandFor(QString::fromLatin1(command.action));
    if (readsLines())
        return u"bindsym Ctrl+Mod1+%1 exec %2"_s.arg(letter ? key.toLower() : key, run);
    const QKeySequence keys(u"Ctrl+Alt+"_s + key);
    return u"# %1, %2\n%3"_s.arg(MainWindow::tr(command.trayCaption),
                                 keys.toString(QKeySequence::NativeText), run);
}

}  // namespace

KeysPage::KeysPage(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(s_margins);
    services().hotKeys->setChangeHandler([this] { fill(); });
    fill();
}

KeysPage::~KeysPage() { services().hotKeys->setChangeHandler({}); }

void KeysPage::fill()
{
    delete m_content;
    m_content = new QWidget;
    auto *place = new QVBoxLayout(m_content);
    place->setContentsMargins({});
    layout()->addWidget(m_content);
    if (services().abilities.lackOf(Ability::HotKeys).isEmpty())
        addHotKeys(*place);
    else
        addLines(*place);
}

void KeysPage::addHotKeys(QBoxLayout &place)
{
    auto *text = new QLabel(tr("These keys work anywhere on the desktop:"));
    auto *list = new QTreeWidget;
    list->setAccessibleName(tr("Hot keys"));
    list->setHeaderLabels({tr("Command"), tr("Keys")});
    list->setRootIsDecorated(false);
    list->setAllColumnsShowFocus(true);
    const QFontMetrics metrics = list->fontMetrics();
    const int rowHeight = metrics.height() * 3 / 2;
    for (const Command *command : commandsOnTheBus()) {
        if (!hotKeyLetter(command->hotKey) ||
            !services().abilities.lackOf(command->needs).isEmpty())
            continue;
        const QString keys = services().hotKeys->keysOf(command->hotKey);
        const QString wanted = services().hotKeys->HotKeys::keysOf(command->hotKey);
        const QStringList texts{MainWindow::tr(command->trayCaption),
                                keys.isEmpty() ? tr("%1, taken by another program").arg(wanted)
                                               : keys};
        auto *row = new QTreeWidgetItem(list, texts);
        for (int column = 0; column < texts.size(); ++column)
            row->setSizeHint(column,
                             {metrics.horizontalAdvance(texts[column]) + rowHeight, rowHeight});
    }
    list->setCurrentItem(list->topLevelItem(0));
    // As wide as the texts, and what is left is the commands'.
    list->header()->setStretchLastSection(false);
    for (int column = 0; column < list->columnCount(); ++column)
        list->resizeColumnToContents(column);
    list->setMinimumWidth(list->header()->length() + 2 * list->frameWidth());
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    place.addWidget(text);
    place.addWidget(list);
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
