#pragma once

#include "privatesession.h"

#include <QImage>
#include <QJsonDocument>
#include <QPoint>
#include <QRect>

#include <xkbcommon/xkbcommon.h>

struct wl_display;
struct wl_output;
struct wl_seat;
struct wl_shm;
struct zwlr_screencopy_manager_v1;
struct zwlr_virtual_pointer_v1;
struct zwlr_virtual_pointer_manager_v1;
struct zwp_virtual_keyboard_v1;
struct zwp_virtual_keyboard_manager_v1;

/// A Wayland desktop of the test's own: sway, without a screen, and a pointer and a keyboard that
/// it takes for real ones. Windows have no borders, tile as is usual there, and the test's own
/// programs float. Places and sizes are sway's, which are logical, in the layout of all outputs.
class SwayDesktop : public PrivateSession
{
public:
    /// Called HEADLESS-1, HEADLESS-2 and so on.
    struct Output {
        QSize mode{1600, 1000};  ///< in its own pixels, unturned
        QPoint position{};
        qreal scale = 1;
        QString transform{QStringLiteral("normal")};  ///< as sway names it
    };

    /// Why there can be no such desktop; empty where there can. To be asked before the first one:
    /// it makes a test that root runs a plain user's, since sway refuses root.
    static QString lack();
    /// `config` is added to sway's.
    explicit SwayDesktop(const QList<Output> &outputs, const QString &config = {});
    ~SwayDesktop();

    QProcess *sway() const { return m_sway; }
    /// What sway has said on standard error.
    QString said() const;
    /// Gives sway a command as its users do. False where it refuses.
    bool command(const QString &text) const;
    /// Where an output lies; null where there is none of that name.
    QRect area(const QString &output) const;

    struct Window {
        int id = 0;  ///< 0 for none
        qint64 pid = 0;
        QString title{};
        QRect area{};
        bool focused = false;
        bool visible = false;
        bool fullscreen = false;
    };
    QList<Window> windows() const;
    /// The first one of them that is it; no id where none is.
    Window find(const std::function<bool(const Window &)> &isIt) const;
    Window focused() const;

    /// Starts the pattern program with its window at `area`, and waits until that shows the
    /// pattern, one pixel of it on one of the output's. Null when it never did. (At a broken scale
    /// a toolkit may paint more pixels, and the compositor make them fewer.) Let the pointer be
    /// elsewhere, as it is at first.
    QProcess *startPattern(const QRect &area);
    /// The same for the program with a long picture, without a look at it.
    QProcess *startLong(const QRect &area, int rows);

    // The pointer and the keyboard. sway has taken the input in when these return.
    void movePointer(QPointF to);
    void press(int button = 1) { sendButton(button, true); }
    void release(int button = 1) { sendButton(button, false); }
    void click(QPointF at, int button = 1);
    /// Presses at `from`, moves in steps, and releases at `to` once `arrived` holds. False when it
    /// never did.
    bool drag(QPointF from, QPointF to, const std::function<bool()> &arrived);
    /// Turns the wheel, down where positive.
    void wheel(int clicks);
    /// Presses and releases a key with its modifiers, all by the keysym that they have unshifted.
    void key(xkb_keysym_t keysym, const QList<xkb_keysym_t> &modifiers = {});
    void keyDown(xkb_keysym_t keysym) { sendKey(keysym, true); }
    void keyUp(xkb_keysym_t keysym) { sendKey(keysym, false); }

    /// What an output shows, in its own pixels, upright. The pointer is in it, which sway draws
    /// into the picture itself where there is no screen.
    QImage picture(const QString &output = QStringLiteral("HEADLESS-1"));

private:
    struct Screen {
        uint32_t number = 0;  ///< the compositor's, of the global
        wl_output *output = nullptr;
        QString name{};
        int transform = 0;
    };

    bool startSway(const QList<Output> &outputs, const QString &config);
    bool connectDevices();
    bool makeKeyboard();
    /// Lets what sway tells come in until `isDone` holds.
    bool listenUntil(const std::function<bool()> &isDone);
    /// Returns when sway has done all that it was asked for.
    bool roundTrip();
    QJsonDocument ask(quint32 type, const QByteArray &text = {}) const;
    QProcess *startAt(const QString &program, const QStringList &arguments, const QRect &area);
    void sendButton(int button, bool isDown);
    void sendKey(xkb_keysym_t keysym, bool isDown);

    QProcess *m_sway = nullptr;
    wl_display *m_display = nullptr;
    wl_seat *m_seat = nullptr;
    wl_shm *m_shm = nullptr;
    zwlr_screencopy_manager_v1 *m_screencopy = nullptr;
    zwlr_virtual_pointer_manager_v1 *m_pointers = nullptr;
    zwp_virtual_keyboard_manager_v1 *m_keyboards = nullptr;
    zwlr_virtual_pointer_v1 *m_pointer = nullptr;
    zwp_virtual_keyboard_v1 *m_keyboard = nullptr;
    std::vector<std::unique_ptr<Screen>> m_screens;
    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> m_keymap{nullptr, &xkb_keymap_unref};
    std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> m_keys{nullptr, &xkb_state_unref};
};
