#pragma once

#include <QString>

class MainWindow;
class QBoxLayout;
class QMenu;

/// The menus of the main window and of the tray, made from the table of commands.
class WindowMenus
{
public:
    /// Puts the menu bar into a layout of the window, which owns everything.
    WindowMenus(MainWindow &window, QBoxLayout &place);

    QMenu &tray() { return *m_tray; }

    struct FileState {
        bool any = false;         ///< there are documents
        QString name{};           ///< of the current one
        bool isModified = false;  ///< the current one
        bool anyModified = false;
        bool hasFile = false;    ///< the current one
        bool hasOthers = false;  ///< there are documents besides the current one
    };
    /// Texts and states of the File menu's items.
    void updateFile(FileState state);
    struct EditState {
        bool hasPicture = false;
        bool canUndo = false;
        bool canRedo = false;
        bool hasChosen = false;  ///< shapes
        bool hasPins = false;
        bool hasText = false;  ///< one of them alone, and a text
        QString textLack{};    ///< why no text can be read in the picture; empty where it can
        QString codeLack{};    ///< the same for codes
    };
    void updateEdit(const EditState &state);
    /// The place for files that were used, in the File menu; empty.
    QMenu &recent() { return *m_recent; }
    /// The menu that opens on the picture, as updateFile() and updateEdit() were told last.
    QMenu &picture() { return *m_picture; }
    /// The same for the menu that opens on the current document's tab.
    QMenu &tab() { return *m_tab; }
    /// Whether the tray's menu offers to give up a grab.
    void updateCancel(bool canCancel);
    void updateHotKeys();  ///< after a change of theirs
    void updateHelp(bool isRegistered);

private:
    QMenu *m_capture = nullptr;
    QMenu *m_file;
    QMenu *m_recent;
    QMenu *m_edit;
    QMenu *m_view;
    QMenu *m_picture;
    QMenu *m_tab;
    QMenu *m_help;
    QMenu *m_tray;
};
