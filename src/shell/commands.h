#pragma once

#include "editing/tools/tool.h"
#include "platform/abilities.h"
#include "platform/xdg/applicationbus.h"
#include "shell/grabflow.h"

#include <QKeySequence>
#include <QList>
#include <QString>

#include <optional>

class MainWindow;
class QMenu;

/// One thing that the user can order. A row says how it is called in the menus, which keys, hot
/// key, bus action and button lead to it, and what it does. Texts are English; tr() of MainWindow
/// has them in the user's language.
struct Command {
    enum class Menu { None, System, File, Edit, Tools, View, Capture, Help };
    /// An item whose text or state depends on the documents, or on the grab: its QAction::data().
    enum Item {
        Plain = 0,
        CloseItem = 1,
        SaveItem = 2,
        SaveAsItem = 3,
        CancelItem = 4,
        UndoItem = 5,
        RedoItem = 6,
        PictureItem = 7,     ///< it needs a picture
        ChosenItem = 8,      ///< shapes that are chosen
        TextItem = 9,        ///< a text that is chosen alone
        ReadTextItem = 10,   ///< a picture, and what reads text
        ReadCodesItem = 11,  ///< a picture, and what reads codes
        LayersItem = 12,     ///< a picture
        PinItem = 13,        ///< a picture, and a desktop that keeps windows above others
        PinsItem = 14,       ///< something that is pinned
        FileItem = 15,       ///< a picture that has a file
        OthersItem = 16,     ///< more than one picture
    };

    Menu menu = Menu::None;
    const char *caption = nullptr;      ///< in that menu; null: no item there; empty: a separator
    const char *trayCaption = nullptr;  ///< the same in the tray's menu
    const char *name = nullptr;         ///< for those who ask for its keys; null: its first caption
    const char *keys = nullptr;         ///< while the window has the keyboard; null: none
    /// Whether the window itself hears the keys. Else the menu's item does, as long as it is
    /// enabled.
    bool isAlwaysHeard = false;
    const char *button = nullptr;  ///< its object name
    int hotKey = 0;                ///< number of the system-wide hot key; 0: none
    int offeredKey = 0;            ///< of one that is off until the user switches it on; 0: none
    const char *action = nullptr;  ///< on the session bus; a name that was given out stays
    Item item = Plain;
    bool isForPicture = false;  ///< an item of the menu that opens on the picture, too
    bool isForTab = false;      ///< the same for the menu of a tab
    AbilitySet needs{};         ///< of the desktop; without it the command is greyed, and says why
    void (*run)(MainWindow &) = nullptr;
    bool (*isOn)() = nullptr;  ///< of one that is switched on and off, and has a mark in its menu
    std::optional<GrabCommand> grab{};  ///< what it starts, instead of running something
    std::optional<GrabGoals> goals{};   ///< what becomes of its pictures; none: as preferred
    const Tool *tool = nullptr;         ///< the one that it chooses, instead of all that
};

/// `goals` are what becomes of the picture of a grab; none: as the command or the preferences say.
/// `ways` are those of the grab.
void runCommand(const Command &command, MainWindow &window, std::optional<GrabGoals> goals = {},
                GrabWays ways = {});

/// The first one whose name, in English, that is; null for none.
const Command *commandNamed(const QString &name);
/// The command of a capture menu or the tray's by its text there, in the user's language and
/// without mnemonics; null for none.
const Command *commandCaptioned(const QString &caption);
const Command *commandOfHotKey(long number);
/// Those with an action, in the order of the table.
QList<const Command *> commandsOnTheBus();
/// As they are shown: those of the table as long as the user has not changed its hot key, then the
/// ones that start it. Empty where there are none, or another program has them.
QKeySequence keysOf(const Command &command);
/// What it is called in a list of hot keys, in the user's language.
QString titleOf(const Command &command);

/// Adds the items of one menu of the bar, in the order of the table. Those of the Capture menu only
/// have their texts and keys, and are told apart by the former.
void fillMenu(QMenu &menu, Command::Menu which, MainWindow &window);
/// The same for a menu that opens where the user points: all with a mark, such as
/// `Command::isForPicture`.
void fillContextMenu(QMenu &menu, bool Command::*isInMenu, MainWindow &window);
/// The same as fillMenu() for the tray's menu.
void fillTrayMenu(QMenu &menu);
/// Lets the buttons of `window` and the keys that it hears itself run their commands, and gives the
/// buttons their hints.
void connectCommands(MainWindow &window);

/// Shows other hot keys in a menu of grabs, or that of the tray, and in the hints of the buttons.
void updateHotKeys(QMenu &menu);
void updateHotKeys(MainWindow &window);

/// What is missing for a command as the hint of its menu item or button; empty for none. As rich
/// text a hint is as narrow as others.
QString asHint(const QString &lack);
/// Greys the button of a tool, with the reason as its hint; none where it is empty.
void updateToolButton(MainWindow &window, stateEnum tool, const QString &lack);

/// What the main window does for those who call over the session bus. Until it is complete,
/// nothing.
ApplicationBus::Handlers busCommands();
