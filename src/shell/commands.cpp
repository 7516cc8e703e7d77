#include "shell/commands.h"

#include "editing/tools/tooltable.h"
#include "platform/hotkeys.h"
#include "platform/services.h"
#include "shell/capturerefusal.h"
#include "shell/grabcalls.h"
#include "shell/mainwindow.h"
#include "shell/pictureintake.h"
#include "shell/picturereading.h"
#include "shell/pins.h"
#include "shell/preferences.h"
#include "shell/skin.h"
#include "shell/workbench.h"

#include <QCoreApplication>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>
#include <array>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using Menu = Command::Menu;

// The order is that of the menus. System-wide hot keys are registered apart from the keys here, and
// don't agree with them on V, M and the full screen's; a reader would expect the same, and the
// difference is kept on purpose. A hint says what really runs the command, and once the user has
// changed its hot key that one is shown.
constexpr auto s_commands = std::to_array<Command>({
    {.menu = Menu::System,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&About"),
     .button = "BtnAbout",
     .run = [](MainWindow &window) { window.About(); }},
    {.menu = Menu::System,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Preferences"),
     .button = "BtnSetting",
     .run = [](MainWindow &window) { window.Preference(); }},

    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Open..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+O"),
     .run = [](MainWindow &window) { window.OpenFile(); }},
    {.menu = Menu::File, .caption = ""},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Close %1"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+W"),
     .item = Command::CloseItem,
     .isForTab = true,
     .run = [](MainWindow &window) { window.CloseFile(); }},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Close Ot&hers"),
     .item = Command::OthersItem,
     .isForTab = true,
     .run = [](MainWindow &window) { window.closeOtherFiles(); }},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Close All"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+W"),
     .run = [](MainWindow &window) { window.CloseAllFiles(); }},
    {.menu = Menu::File, .caption = "", .isForTab = true},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Save %1"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+S"),
     .isAlwaysHeard = true,
     .button = "BtnSave",
     .item = Command::SaveItem,
     .isForPicture = true,
     .isForTab = true,
     .run = [](MainWindow &window) { window.SaveFile(); }},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Save %1 As..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+S"),
     .item = Command::SaveAsItem,
     .isForPicture = true,
     .isForTab = true,
     .run = [](MainWindow &window) { window.SaveAsFile(); }},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Save with &Layers..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+Y"),
     .item = Command::LayersItem,
     .run = [](MainWindow &window) { window.SaveFileWithLayers(); }},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Save All"),
     .run = [](MainWindow &window) { window.SaveAllFiles(); }},
    {.menu = Menu::File, .caption = ""},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Open &Folder"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+O"),
     .item = Command::FileItem,
     .isForPicture = true,
     .isForTab = true,
     .run = [](MainWindow &window) { window.openFolder(); }},
    {.menu = Menu::File, .caption = ""},
    {.menu = Menu::File,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Quit"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Q"),
     .run = [](MainWindow &window) { window.quit(); }},
    {.caption = "", .isForPicture = true},

    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Undo"),
     .name = "undo",
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Z"),
     .isAlwaysHeard = true,
     .button = "BtnUndo",
     .item = Command::UndoItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.on_BtnUndo_clicked(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Redo"),
     .name = "redo",
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+Z"),
     .isAlwaysHeard = true,
     .button = "BtnRedo",
     .item = Command::RedoItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.on_BtnRedo_clicked(); }},
    {.menu = Menu::Edit, .caption = "", .isForPicture = true},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Copy"),
     .name = "Copy %1",
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+C"),
     .isAlwaysHeard = true,
     .button = "BtnCopy",
     .item = Command::PictureItem,
     .isForPicture = true,
     .isForTab = true,
     .run = [](MainWindow &window) { window.CopyFile(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Paste"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+V"),
     .isForPicture = true,
     .run = [](MainWindow &window) { window.intake().takeFromClipboard(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Pi&n to the Screen"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+P"),
     .item = Command::PinItem,
     .isForPicture = true,
     .isForTab = true,
     .needs = Ability::Pins,
     .run = [](MainWindow &window) { window.pinPicture(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Next Pin"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+N"),
     .item = Command::PinsItem,
     .needs = Ability::Pins,
     .run = [](MainWindow &window) { window.pins().focusNext(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Close All Pins"),
     .item = Command::PinsItem,
     .needs = Ability::Pins,
     .run = [](MainWindow &window) { window.pins().closeAll(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Cop&y Text"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+T"),
     .item = Command::ReadTextItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.reading().copyText(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Read C&odes"),
     .item = Command::ReadCodesItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.reading().readCodes(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "H&ide Text..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+X"),
     .item = Command::ReadTextItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.reading().hideText(); }},
    {.menu = Menu::Edit, .caption = "", .isForPicture = true},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Sel&ect All"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+A"),
     .item = Command::PictureItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.work().editor().selectAll(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Edit Te&xt"),
     .item = Command::TextItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.work().editor().editSelectedText(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Du&plicate"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+D"),
     .item = Command::ChosenItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.work().editor().duplicateSelected(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Dele&te"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Del"),
     .item = Command::ChosenItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.work().editor().removeSelected(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Bring Forward"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Shift+PgUp"),
     .item = Command::ChosenItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.work().editor().raiseSelected(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Send Bac&kward"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Shift+PgDown"),
     .item = Command::ChosenItem,
     .isForPicture = true,
     .run = [](MainWindow &window) { window.work().editor().lowerSelected(); }},
    {.menu = Menu::Edit, .caption = ""},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Re&size..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+R"),
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.resizePicture(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "C&anvas Size..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+C"),
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.resizeCanvas(); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Back&drop..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+B"),
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.changeBackdrop(); }},
    {.menu = Menu::Edit, .caption = ""},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Rotate Ri&ght"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+R"),
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.changePicture(operation(TurnPicture{1})); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Rotate &Left"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+L"),
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.changePicture(operation(TurnPicture{3})); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Rotate by 180 &Degrees"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+L"),
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.changePicture(operation(TurnPicture{2})); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Flip &Horizontally"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+H"),
     .item = Command::PictureItem,
     .run = [](MainWindow
                   &window) { window.changePicture(operation(MirrorPicture{Qt::Horizontal})); }},
    {.menu = Menu::Edit,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Flip &Vertically"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+V"),
     .item = Command::PictureItem,
     .run =
         [](MainWindow &window) { window.changePicture(operation(MirrorPicture{Qt::Vertical})); }},

    {.menu = Menu::Tools, .caption = ""},
    {.menu = Menu::Tools,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Line &Colour..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+K"),
     .isAlwaysHeard = true,
     .button = "BtnColor",
     .run = [](MainWindow &window) { window.on_BtnColor_clicked(); }},
    {.menu = Menu::Tools,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Style..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+K"),
     .isAlwaysHeard = true,
     .button = "BtnStyle",
     .run = [](MainWindow &window) { window.offerStyles(); }},
    {.menu = Menu::Tools,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Line &Width..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+I"),
     .run = [](MainWindow &window) { window.enterControl(u"SliderLineWidth"_s); }},
    {.menu = Menu::Tools,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Font..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+F"),
     .run = [](MainWindow &window) { window.enterControl(u"CmbFont"_s); }},
    {.menu = Menu::Tools,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Font Si&ze..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+U"),
     .run = [](MainWindow &window) { window.enterControl(u"CmbFontSize"_s); }},

    {.menu = Menu::View,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Zoom &In"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+="),
     .isAlwaysHeard = true,
     .button = "BtnZoomIn",
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.on_BtnZoomIn_clicked(); }},
    {.menu = Menu::View,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Zoom &Out"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+-"),
     .isAlwaysHeard = true,
     .button = "BtnZoomOut",
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.on_BtnZoomOut_clicked(); }},
    {.menu = Menu::View,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Real Size"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+0"),
     .isAlwaysHeard = true,
     .button = "BtnRealSize",
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.on_BtnRealSize_clicked(); }},
    {.menu = Menu::View,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Fit to the Window"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+9"),
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.work().zoomToFit(); }},
    {.menu = Menu::View,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Zoom..."),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+M"),
     .item = Command::PictureItem,
     .run = [](MainWindow &window) { window.enterControl(u"CmbZoom"_s); }},
    {.menu = Menu::View, .caption = ""},
    {.menu = Menu::View,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "&Sharp Pixels when Enlarged"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Shift+D"),
     .run = [](MainWindow &window) { window.setSharpPixels(!Preferences::sharpPixels()); },
     .isOn = [] { return Preferences::sharpPixels(); }},

    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Rectangular"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Rectangular"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+R"),
     .button = "BtnFrameRect",
     .hotKey = 1,
     .offeredKey = 11,
     .action = "capture-rectangle",
     .needs = neededFor(GrabCommand::Rectangle),
     .grab = GrabCommand::Rectangle},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Ellipse"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Ellipse"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+E"),
     .button = "BtnFrameEllipse",
     .hotKey = 2,
     .action = "capture-ellipse",
     .needs = neededFor(GrabCommand::Ellipse),
     .grab = GrabCommand::Ellipse},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Arbitrary"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Arbitrary"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+A"),
     .button = "BtnFramePolygon",
     .hotKey = 3,
     .action = "capture-polygon",
     .needs = neededFor(GrabCommand::Polygon),
     .grab = GrabCommand::Polygon},
    {.menu = Menu::Capture, .caption = "", .trayCaption = ""},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Select Window"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Select Window"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+W"),
     .button = "BtnSelectWindow",
     .hotKey = 5,
     .action = "capture-window",
     .needs = neededFor(GrabCommand::Window),
     .grab = GrabCommand::Window},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "All Windows"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "All Windows"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+L"),
     .button = "BtnAllWindows",
     .hotKey = 4,
     .action = "capture-windows",
     .needs = neededFor(GrabCommand::Windows),
     .grab = GrabCommand::Windows},
    // The bar's item and the button count down; the tray has an item for either.
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Full Screen"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+S"),
     .button = "BtnFullScreen",
     .needs = neededFor(GrabCommand::Countdown),
     .grab = GrabCommand::Countdown},
    {.trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Full Screen"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+S"),
     .hotKey = 6,
     .action = "capture-screen",
     .needs = neededFor(GrabCommand::Screen),
     .grab = GrabCommand::Screen},
    {.trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Full Screen with Countdown Timer"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+T"),
     .hotKey = 7,
     .action = "capture-screen-countdown",
     .needs = neededFor(GrabCommand::Countdown),
     .grab = GrabCommand::Countdown},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Menu"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Menu"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+M"),
     .button = "BtnMenuCapture",
     .hotKey = 8,
     .action = "capture-menu",
     .needs = neededFor(GrabCommand::Menu),
     .grab = GrabCommand::Menu},
    {.menu = Menu::Capture, .caption = ""},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Last Area"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Last Area"),
     .offeredKey = 12,
     .action = "capture-last",
     .needs = neededFor(GrabCommand::Last),
     .grab = GrabCommand::Last},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Active Window"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Active Window"),
     .offeredKey = 13,
     .action = "capture-active",
     .needs = neededFor(GrabCommand::Active),
     .grab = GrabCommand::Active},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Monitor"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Monitor"),
     .offeredKey = 14,
     .action = "capture-monitor",
     .needs = neededFor(GrabCommand::Monitor),
     .grab = GrabCommand::Monitor},
    {.menu = Menu::Capture,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Full Screen to a File"),
     .trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Capture Full Screen to a File"),
     .offeredKey = 15,
     .action = "capture-screen-file",
     .needs = neededFor(GrabCommand::Screen),
     .grab = GrabCommand::Screen,
     .goals = GrabGoals(GrabGoal::Save)},
    {.trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Cancel Capture"),
     .action = "cancel",
     .item = Command::CancelItem,
     .run = [](MainWindow &window) { window.grabs().cancel(); }},
    {.trayCaption = ""},
    {.trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Next Pin"),
     .needs = Ability::Pins,
     .run = [](MainWindow &window) { window.pins().focusNext(); }},
    {.trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Close All Pins"),
     .needs = Ability::Pins,
     .run = [](MainWindow &window) { window.pins().closeAll(); }},
    {.trayCaption = ""},
    // No key of the system reaches its number.
    {.trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Show Snapworkbench"),
     .keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+Alt+V"),
     .hotKey = 9,
     .grab = GrabCommand::Show},
    {.trayCaption = ""},
    {.trayCaption = QT_TRANSLATE_NOOP("MainWindow", "Quit"),
     .run = [](MainWindow &window) { window.quit(); }},

    {.menu = Menu::Help,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Contents"),
     .keys = "F1",
     .button = "BtnHelp",
     .run = [](MainWindow &window) { window.Help(); }},
    {.menu = Menu::Help, .caption = ""},
    {.menu = Menu::Help,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Home"),
     .button = "BtnHome",
     .run = [](MainWindow &window) { window.Home(); }},
    {.menu = Menu::Help,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Buy now"),
     .button = "BtnBuynow",
     .run = [](MainWindow &window) { window.Buynow(); }},
    {.menu = Menu::Help, .caption = ""},
    {.menu = Menu::Help,
     .caption = QT_TRANSLATE_NOOP("MainWindow", "Register..."),
     .button = "BtnRegister",
     .run = [](MainWindow &window) { window.Register(); }},

    {.button = "BtnClose", .run = [](MainWindow &window) { window.close(); }},
    {.keys = QT_TRANSLATE_NOOP("MainWindow", "Ctrl+M"),
     .button = "BtnMin",
     .run = [](MainWindow &window) { window.minimize(); }},
    {.keys = QT_TRANSLATE_NOOP("MainWindow", "F11"),
     .button = "BtnMax",
     .run = [](MainWindow &window) { window.on_BtnMax_clicked(); }},
});

// One for each tool, and the rows above. A tool may be called like something else.
const std::vector<Command> &commands()
{
    static const std::vector<Command> s_all = [] {
        std::vector<Command> all;
        for (const Tool *tool : allTools())
            all.push_back({.menu = Menu::Tools,
                           .caption = tool->name,
                           .name = tool->button,
                           .keys = tool->keys,
                           .isAlwaysHeard = true,
                           .button = tool->button,
                           .tool = tool});
        all.insert(all.end(), s_commands.begin(), s_commands.end());
        return all;
    }();
    return s_all;
}

template<typename Condition> const Command *commandWhere(Condition condition)
{
    const auto found = std::find_if(commands().begin(), commands().end(), condition);
    return found == commands().end() ? nullptr : &*found;
}

// Why the desktop can't carry it out; null where it can.
QString lackFor(const Command &command)
{
    return asHint(services().abilities.lackOf(command.needs));
}

// The hot key that runs the command, whatever is shown; 0 for none.
int hotKeyNumberOf(const Command &command)
{
    if (command.hotKey || command.offeredKey || !command.grab)
        return command.hotKey ? command.hotKey : command.offeredKey;
    const Command *same = commandWhere([&](const Command &other) {
        return other.hotKey && other.grab == command.grab && other.goals == command.goals;
    });
    return same ? same->hotKey : 0;
}

bool areHotKeysHeard() { return services().abilities.lackOf(Ability::HotKeys).isEmpty(); }

// Whether the keys that the user wants for it are those that start it.
bool isInForce(int number)
{
    return !areHotKeysHeard() || services().hotKeys->stateOf(number) == HotKeys::State::Active;
}

// What the user may not see at once: that other keys run it than those that are shown, or none.
QString keyHintFor(const Command &command)
{
    const int number = hotKeyNumberOf(command);
    if (!number || !areHotKeysHeard())
        return {};
    const HotKeys &hotKeys = *services().hotKeys;
    for (const int each : {number, command.offeredKey}) {
        if (hotKeys.stateOf(each) == HotKeys::State::Taken)
            return MainWindow::tr("%1 is taken by another program.")
                .arg(hotKeyOf(each).toString(QKeySequence::NativeText));
    }
    const QString shown = keysOf(command).toString(QKeySequence::NativeText);
    const QString runs = hotKeys.keysOf(number);
    if (!runs.isEmpty())
        return runs == shown ? QString() : MainWindow::tr("Hot key: %1").arg(runs);
    // What is shown may be its second key.
    return shown.isEmpty() || isHotKeyChanged(number) ? QString()
                                                      : MainWindow::tr("No hot key does this.");
}

bool isText(const char *text) { return text && *text; }

QAction *addItem(QMenu &menu, const char *caption, const Command &command)
{
    if (!caption)
        return nullptr;
    if (!*caption)
        return menu.addSeparator();
    QAction *action = menu.addAction(MainWindow::tr(caption));
    action->setShortcut(keysOf(command));
    action->setData(command.item);
    const QString lack = lackFor(command);
    const QString hint = lack.isEmpty() ? keyHintFor(command) : lack;
    action->setEnabled(lack.isEmpty());
    if (!hint.isEmpty()) {
        action->setToolTip(hint);
        menu.setToolTipsVisible(true);
    }
    return action;
}

// What is in force has a mark, which is looked at whenever the menu opens.
void showMark(QMenu &menu, QAction &action, const Command &command, MainWindow &window)
{
    action.setCheckable(true);
    QObject::connect(&menu, &QMenu::aboutToShow, &action, [&action, &command, &window] {
        action.setChecked(command.tool ? window.work().editor().getState() == command.tool->state
                                       : command.isOn());
    });
}

void showReach(QPushButton &button, const Command &command, MainWindow &window, const QString &lack)
{
    QString hint = lack.isEmpty() ? window.skin().hint(button.objectName()) : lack;
    if (hint.isEmpty())
        hint = button.accessibleName();
    if (const QKeySequence keys = keysOf(command);
        lack.isEmpty() && !hint.isEmpty() && !keys.isEmpty())
        hint += u"  "_s + keys.toString(QKeySequence::NativeText);
    if (const QString keys = keyHintFor(command); lack.isEmpty() && !keys.isEmpty())
        hint += u'\n' + keys;
    if (lack.isEmpty() && command.tool && command.tool->advice)
        hint += u'\n' + MainWindow::tr(command.tool->advice);
    button.setEnabled(lack.isEmpty());
    button.setToolTip(hint);
}

// Some styles put a mnemonic of their own into a menu's texts.
bool isCaptioned(const char *caption, const QString &text)
{
    return isText(caption) && MainWindow::tr(caption) == text;
}

// Those that no item of a menu hears. A greyed item hears nothing, but who presses its keys is told
// why nothing comes of it.
bool isHeardByWindow(const Command &command)
{
    return command.keys && command.button &&
           (!command.caption || command.isAlwaysHeard || !lackFor(command).isEmpty());
}

}  // namespace

QString asHint(const QString &lack)
{
    return lack.isEmpty() ? QString() : u"<p>%1</p>"_s.arg(lack.toHtmlEscaped());
}

void updateToolButton(MainWindow &window, stateEnum tool, const QString &lack)
{
    const Command *command =
        commandWhere([tool](const Command &row) { return row.tool && row.tool->state == tool; });
    auto *button = window.findChild<QPushButton *>(QLatin1StringView(command->button));
    showReach(*button, *command, window, asHint(lack));
}

void runCommand(const Command &command, MainWindow &window, std::optional<GrabGoals> goals,
                GrabWays ways)
{
    if (command.tool)
        window.chooseTool(command.tool->state);
    else if (command.grab)
        window.grabs().press(*command.grab, goals ? goals : command.goals, ways);
    else
        command.run(window);
}

const Command *commandNamed(const QString &name)
{
    return commandWhere([&](const Command &command) {
        const char *own = command.name              ? command.name
                          : isText(command.caption) ? command.caption
                                                    : command.trayCaption;
        return isText(own) && name == QLatin1StringView(own);
    });
}

const Command *commandCaptioned(const QString &caption)
{
    return commandWhere([&](const Command &command) {
        return isCaptioned(command.trayCaption, caption) ||
               (command.menu == Menu::Capture && isCaptioned(command.caption, caption));
    });
}

const Command *commandOfHotKey(long number)
{
    return commandWhere([&](const Command &command) {
        return number > 0 && (command.hotKey == number || command.offeredKey == number);
    });
}

QList<const Command *> commandsOnTheBus()
{
    QList<const Command *> found;
    for (const Command &command : commands()) {
        if (command.action)
            found.append(&command);
    }
    return found;
}

QKeySequence keysOf(const Command &command)
{
    const int number = hotKeyNumberOf(command);
    if (number && (isHotKeyChanged(number) || !command.keys)) {
        for (const int each : {number, command.offeredKey}) {
            if (isInForce(each) && !hotKeyOf(each).isEmpty())
                return hotKeyOf(each);
        }
        return {};
    }
    return command.keys ? QKeySequence(QCoreApplication::translate("MainWindow", command.keys))
                        : QKeySequence();
}

QString titleOf(const Command &command) { return MainWindow::tr(command.trayCaption); }

void fillMenu(QMenu &menu, Command::Menu which, MainWindow &window)
{
    for (const Command &command : commands()) {
        QAction *action = command.menu == which ? addItem(menu, command.caption, command) : nullptr;
        if (!action || !(command.run || command.tool))
            continue;
        // Shown only: two owners of the same keys would both stay silent.
        if (command.isAlwaysHeard)
            action->setShortcutContext(Qt::WidgetShortcut);
        if (command.isOn || command.tool)
            showMark(menu, *action, command, window);
        QObject::connect(action, &QAction::triggered, &window,
                         [&window, &command] { runCommand(command, window); });
    }
}

// The keys are shown only: the menu bar's items hear them.
void fillContextMenu(QMenu &menu, bool Command::*isInMenu, MainWindow &window)
{
    for (const Command &command : commands()) {
        QAction *action = command.*isInMenu ? addItem(menu, command.caption, command) : nullptr;
        if (!action || !command.run)
            continue;
        action->setShortcutContext(Qt::WidgetShortcut);
        QObject::connect(action, &QAction::triggered, &window,
                         [&window, &command] { runCommand(command, window); });
    }
}

void fillTrayMenu(QMenu &menu)
{
    for (const Command &command : commands())
        addItem(menu, command.trayCaption, command);
}

void connectCommands(MainWindow &window)
{
    for (const Command &command : commands()) {
        if (!command.button)
            continue;
        const auto run = [&window, &command] { runCommand(command, window); };
        // Not the button's own keys: a button that is clicked by its keys shows that for a while
        // first, and the next keys would overtake it.
        if (isHeardByWindow(command))
            new QShortcut(keysOf(command), &window, run);
        auto *button = window.findChild<QPushButton *>(QLatin1StringView(command.button));
        QObject::connect(button, &QPushButton::clicked, &window, run);
        button->installEventFilter(&window);
        showReach(*button, command, window, lackFor(command));
    }
}

void updateHotKeys(QMenu &menu)
{
    for (QAction *action : menu.actions()) {
        const Command *command = commandCaptioned(action->text().remove(u'&'));
        if (!command || !command->grab)
            continue;
        action->setShortcut(keysOf(*command));
        if (!lackFor(*command).isEmpty())
            continue;
        const QString hint = keyHintFor(*command);
        action->setToolTip(hint);
        if (!hint.isEmpty())
            menu.setToolTipsVisible(true);
    }
}

void updateHotKeys(MainWindow &window)
{
    for (const Command &command : commands()) {
        if (!command.grab || !command.button)
            continue;
        auto *button = window.findChild<QPushButton *>(QLatin1StringView(command.button));
        showReach(*button, command, window, lackFor(command));
    }
}

ApplicationBus::Handlers busCommands()
{
    ApplicationBus::Handlers handlers;
    handlers.activate = [] {
        if (g_MainWindow)
            g_MainWindow->comeForward();
    };
    const auto tellStarting = [] { return MainWindow::tr("The program is just starting."); };
    handlers.open = [tellStarting](const QStringList &paths, const auto &answer) {
        if (!g_MainWindow) {
            answer({tellStarting()});
            return;
        }
        g_MainWindow->openPictures(paths, answer);
        g_MainWindow->comeForward();
    };
    for (const Command *command : commandsOnTheBus()) {
        handlers.actions.insert(QString::fromLatin1(command->action), [command] {
            if (g_MainWindow)
                runCommand(*command, *g_MainWindow);
        });
    }
    handlers.grab = [tellStarting](const GrabCall &call) {
        if (g_MainWindow)
            g_MainWindow->calls().take(call);
        else
            call.refuse(GrabCall::Error::Busy, tellStarting());
    };
    return handlers;
}
