#pragma once

#include "privatesession.h"

#include <QImage>
#include <QPoint>
#include <QSize>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

/// An X server of the test's own with a window manager, and a pointer and a keyboard that the
/// server takes for real ones.
class TestDesktop : public PrivateSession
{
public:
    struct Options {
        QSize size{1600, 1000};
        QStringList windowManager{QStringLiteral("xfwm4"), QStringLiteral("--compositor=on")};
        QStringList compositor{};  ///< where the window manager is none
        /// Monitors as `xrandr --setmonitor` takes them: name, geometry, output. None: one screen.
        QList<QStringList> monitors{};
        QByteArray xftDpi{};  ///< the server's Xft.dpi; empty for none
    };

    explicit TestDesktop(const Options &options);
    ~TestDesktop();

    /// Starts the pattern program with its window at `area`, and waits until it is shown and
    /// active. Null when it never was. `name` is the application's. A framed window has its frame
    /// around `area`, more or less, and its pixels are not waited for.
    QProcess *startPattern(const QRect &area, const QString &name = QStringLiteral("pattern"),
                           bool framed = false);
    /// The program with a menu and a long picture.
    static QString longProgram();

    // The pointer and the keyboard. Global device pixels.
    void movePointer(QPoint to);
    void press(int button = 1);
    void release(int button = 1);
    void click(QPoint at, int button = 1);
    /// Presses at `from`, moves in steps, and releases at `to` once `arrived` holds. False when it
    /// never did.
    bool drag(QPoint from, QPoint to, const std::function<bool()> &arrived);
    /// Presses and releases a key with its modifiers, all by keysym.
    void key(xcb_keysym_t keysym, const QList<xcb_keysym_t> &modifiers = {});
    void keyDown(xcb_keysym_t keysym);
    void keyUp(xcb_keysym_t keysym);
    /// Whether a program keeps a key, pressed alone, from all others.
    bool isTaken(xcb_keysym_t keysym);
    /// Whether a program keeps the pointer from all others.
    bool isPointerTaken();
    /// Types ASCII text.
    void type(const QString &text);

    // What the screen shows.
    QImage screenshot();
    QImage screenshot(const QRect &area);
    QRgb pixel(QPoint at);
    struct Window {
        xcb_window_t id = XCB_NONE;
        QString title{};
        QRect area{};
        bool overrideRedirect = false;
        bool viewable = false;
    };
    /// Every window of the tree that has a title or is a child of the root.
    QList<Window> windows();
    /// The first one of them that is it; no id where none is.
    Window find(const std::function<bool(const Window &)> &isIt);
    /// A dialog that is shown and was not there before; waits for it. No id when none came.
    Window waitForNewWindow(const QList<Window> &before, int limit = 20000);
    /// Waits until a window has the keyboard.
    bool waitForFocus(const Window &window);
    /// The window that the window manager has in front; no id where there is none.
    xcb_window_t activeWindow();
    QString activeTitle();
    /// Asks a window to close.
    void closeWindow(const Window &window);
    /// Minimises it, as its frame's button would.
    void minimise(const Window &window);
    /// Asks for another place and size, as the user would by the window's frame.
    void placeWindow(const Window &window, const QRect &area);

    xcb_connection_t *connection() const { return m_connection; }
    xcb_window_t root() const { return m_root; }

private:
    bool startServer(const Options &options);
    bool startWindowManager(const Options &options);
    void waitForWindowManager();
    void send(xcb_window_t to, xcb_window_t window, const char *type, uint32_t value);
    void fake(uint8_t type, uint8_t detail, QPoint at = {});
    xcb_keycode_t keycode(xcb_keysym_t keysym);
    QByteArray property(xcb_window_t window, const char *name);
    QString titleOf(xcb_window_t window);
    xcb_atom_t atom(const char *name);
    bool isInside(xcb_window_t window, xcb_window_t ancestor);
    void collect(xcb_window_t window, bool child, QList<Window> &result);

    xcb_connection_t *m_connection = nullptr;
    xcb_window_t m_root = XCB_NONE;
    xcb_key_symbols_t *m_symbols = nullptr;
    bool m_bare = false;                 ///< no window manager
    xcb_window_t m_question = XCB_NONE;  ///< that the window manager is asked about
};
