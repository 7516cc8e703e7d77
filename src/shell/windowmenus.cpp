#include "shell/windowmenus.h"

#include "platform/services.h"
#include "shell/commands.h"
#include "shell/mainwindow.h"

#include <QBoxLayout>
#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace {

// Some styles put a mnemonic of their own into a menu's texts.
QString captionOf(const QAction &action) { return action.text().remove(u'&'); }

}  // namespace

WindowMenus::WindowMenus(MainWindow &window, QBoxLayout &place)
{
    auto *bar = new QMenuBar;
    bar->setNativeMenuBar(false);
    place.addWidget(bar);
    const auto add = [&](const QString &title, Command::Menu which) {
        QMenu *menu = bar->addMenu(title);
        fillMenu(*menu, which, window);
        return menu;
    };
    add(MainWindow::tr("&sys"), Command::Menu::System);
    m_file = add(MainWindow::tr("&File"), Command::Menu::File);
    // After the item that opens a file.
    m_recent = new QMenu(MainWindow::tr("Open &Recent"), m_file);
    m_recent->setObjectName(u"RecentMenu"_s);
    m_file->insertMenu(m_file->actions().at(1), m_recent);
    m_edit = add(MainWindow::tr("&Edit"), Command::Menu::Edit);
    fillMenu(*m_edit->addMenu(MainWindow::tr("&Tools")), Command::Menu::Tools, window);
    m_view = add(MainWindow::tr("&View"), Command::Menu::View);
    m_capture = add(MainWindow::tr("&Capture"), Command::Menu::Capture);
    m_help = add(MainWindow::tr("Help"), Command::Menu::Help);
    m_tray = new QMenu(&window);
    fillTrayMenu(*m_tray);
    m_picture = new QMenu(&window);
    m_picture->setObjectName(u"PictureMenu"_s);
    fillContextMenu(*m_picture, &Command::isForPicture, window);
    m_tab = new QMenu(&window);
    m_tab->setObjectName(u"TabMenu"_s);
    fillContextMenu(*m_tab, &Command::isForTab, window);
    updateCancel(false);
    updateEdit({});
    QObject::connect(m_file, &QMenu::aboutToShow, &window, &MainWindow::BeforeShowFile);
    QObject::connect(m_edit, &QMenu::aboutToShow, &window, &MainWindow::lookForReaders);
    QObject::connect(m_help, &QMenu::aboutToShow, &window, &MainWindow::BeforeShowMenuHelp);
    QObject::connect(m_capture, &QMenu::triggered, &window, &MainWindow::Capture);
    QObject::connect(m_tray, &QMenu::triggered, &window, &MainWindow::Capture);
}

void WindowMenus::updateFile(FileState state)
{
    QString &name = state.name;
    if (!name.isEmpty())
        name = u'"' + name + u'"';
    name.replace(u'&', u"&&"_s);
    for (QAction *action : m_file->actions() + m_picture->actions() + m_tab->actions()) {
        switch (action->data().toInt()) {
        case Command::CloseItem:
            action->setEnabled(state.any);
            action->setText(MainWindow::tr("Close %1").arg(name));
            break;
        case Command::SaveItem:
            action->setEnabled(state.isModified);
            action->setText(MainWindow::tr("Save %1").arg(name));
            break;
        case Command::SaveAsItem: {
            action->setEnabled(state.any);
            const QString text = MainWindow::tr("Save %1 As...").arg(name);
            // Without a name two blanks would be left in the middle.
            action->setText(state.any ? text : QString(text).replace(u"  "_s, u" "_s));
            break;
        }
        case Command::LayersItem:
            action->setEnabled(state.any);
            break;
        case Command::FileItem:
            action->setEnabled(state.hasFile);
            break;
        case Command::OthersItem:
            action->setEnabled(state.hasOthers);
            break;
        default:
            if (captionOf(*action) == MainWindow::tr("Close All"))
                action->setEnabled(state.any);
            else if (captionOf(*action) == MainWindow::tr("Save All"))
                action->setEnabled(state.anyModified);
        }
    }
}

void WindowMenus::updateEdit(const EditState &state)
{
    const auto read = [&state](QAction &action, const QString &lack) {
        action.setEnabled(state.hasPicture && lack.isEmpty());
        action.setToolTip(asHint(lack));
    };
    for (QMenu *menu : {m_edit, m_picture})
        menu->setToolTipsVisible(!state.textLack.isEmpty() || !state.codeLack.isEmpty());
    for (QAction *action :
         m_edit->actions() + m_view->actions() + m_picture->actions() + m_tab->actions()) {
        switch (action->data().toInt()) {
        case Command::UndoItem:
            action->setEnabled(state.canUndo);
            break;
        case Command::RedoItem:
            action->setEnabled(state.canRedo);
            break;
        case Command::PictureItem:
            action->setEnabled(state.hasPicture);
            break;
        case Command::ChosenItem:
            action->setEnabled(state.hasChosen);
            break;
        case Command::TextItem:
            action->setEnabled(state.hasText);
            break;
        case Command::PinItem:
            read(*action, services().abilities.lackOf(Ability::Pins));
            break;
        case Command::PinsItem:
            action->setEnabled(state.hasPins);
            break;
        case Command::ReadTextItem:
            read(*action, state.textLack);
            break;
        case Command::ReadCodesItem:
            read(*action, state.codeLack);
            break;
        default:
            break;
        }
    }
}

void WindowMenus::updateCancel(bool canCancel)
{
    for (QAction *action : m_tray->actions()) {
        if (action->data().toInt() == Command::CancelItem)
            action->setEnabled(canCancel);
    }
}

void WindowMenus::updateHotKeys()
{
    ::updateHotKeys(*m_capture);
    ::updateHotKeys(*m_tray);
}

void WindowMenus::updateHelp(bool isRegistered)
{
    for (QAction *action : m_help->actions()) {
        const QString caption = captionOf(*action);
        if (caption == MainWindow::tr("Buy now") || caption == MainWindow::tr("Register..."))
            action->setVisible(!isRegistered);
    }
}
