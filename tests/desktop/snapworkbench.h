#pragma once

#include "snapprogram.h"
#include "testdesktop.h"

/// The program under test on a test desktop, with its windows.
class SnapWorkbench : public SnapProgram
{
public:
    explicit SnapWorkbench(TestDesktop &desktop) : SnapProgram(desktop), m_desktop(desktop) {}

    /// Starts it and waits for its window, minimised or not.
    bool startAndWait(const QMap<QString, QString> &variables = {});
    bool waitForTitle(const QString &title, int limit = 20000);
    /// Presses Return in a file dialog until the main window has the title: a list of completions
    /// may take the first press for itself.
    bool confirm(const QString &title);
    /// The main window; no id while there is none.
    TestDesktop::Window mainWindow();
    /// Closes the main window as its frame's button would, and waits for the end of the process.
    bool quit();

    /// Presses the hot key of an overlay, the rectangle's if none is told, and waits for the
    /// overlay, which covers `area`.
    bool openOverlay(const QRect &area, xcb_keysym_t hotKey = 'r');
    bool hasOverlay(const QRect &area);

    /// Saves the current picture through the save dialog, and reads the file back.
    QImage saveAs(const QString &path);

private:
    TestDesktop &m_desktop;
};

/// What a test begins with: the desktop, and the program's settings, variables and pictures; and
/// where it goes through a table the row, which is told beside what fails in it.
struct DesktopStart {
    const char *row = nullptr;
    TestDesktop::Options desktop{};
    QMap<QString, QString> settings{};
    QMap<QString, QString> variables{};
    QMap<QString, QString> pictures{};
};

/// A test of the program on a desktop of its own.
class DesktopTest : public QObject
{
protected:
    using Values = QMap<QString, QString>;
    static const QStringList s_plain;               ///< a window manager that composites nothing
    static const QStringList s_openbox;             ///< another one
    static const QStringList s_picom;               ///< a compositor for it
    static const QList<QStringList> s_twoMonitors;  ///< side by side, 800 wide each
    static const QRect s_screen;                    ///< of the usual desktop

    /// Starts a desktop and the program on it, and waits for its window.
    bool begin(const DesktopStart &start = {});
    void finish();
    /// Waits until the main window shows a picture of that name.
    bool isTitled(const QString &name);
    void hotKey(xcb_keysym_t letter) { m_desktop->key(letter, s_hotKey); }
    /// A picture of the whole desktop in a tab of that name.
    bool grab(const QString &name = QStringLiteral("untitled *"));
    /// What the overlay's black at 60 % leaves of a colour, and what its white makes of it.
    static bool isDimmed(QRgb shown, QRgb colour);
    static bool isLit(QRgb shown, QRgb colour);
    /// What the clipboard holds, or with an input puts that there, as another program does.
    QByteArray xclip(const QStringList &arguments, const QByteArray &input = {});
    /// Presses a key that opens a dialog, and waits until that has the keyboard; then m_dialog.
    bool openDialog(xcb_keysym_t keysym, const QList<xcb_keysym_t> &modifiers);
    /// Waits for a dialog that was not there before, and until it has the keyboard; then m_dialog.
    bool hasDialog(const QList<TestDesktop::Window> &before);
    /// Presses a key that closes the dialog, until it is gone.
    bool dismiss(xcb_keysym_t keysym);
    /// Answers the question whether to save.
    void discard();
    /// Waits for the end of the process, which must be a usual one.
    bool hasEnded();
    /// What the program shows without a frame: overlays, the magnifier, menus, its tray icon.
    QList<QRect> unmanaged();
    bool isClear() { return unmanaged().isEmpty(); }
    /// Finds the picture of an empty desktop in the active main window: m_window and m_origin.
    bool findPicture(QRgb ground);
    /// Presses a tool's button at the window's foot: from its left edge, in logical pixels.
    void pressButton(int x, qreal scale = 1);
    static constexpr int s_rectangle = 59;
    static constexpr int s_text = 179;

    std::unique_ptr<TestDesktop> m_desktop;
    std::unique_ptr<SnapWorkbench> m_program;
    TestDesktop::Window m_dialog;
    QRect m_window;
    QPoint m_origin;  ///< of the shown picture, on the screen

private:
    static const QList<xcb_keysym_t> s_hotKey;
};
