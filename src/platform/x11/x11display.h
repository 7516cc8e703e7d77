#pragma once

#include <QByteArray>
#include <QList>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

struct FreeDeleter {
    void operator()(void *pointer) const { std::free(pointer); }
};
/// A reply of the server; null if the request failed.
template<typename T> using Reply = std::unique_ptr<T, FreeDeleter>;

/// For who looks into why nothing happened.
void logError(const xcb_generic_error_t &error);

/// `XCB_REPLY(get_geometry, cookie)` waits for a reply and drops an error.
#define XCB_REPLY(connection, request, cookie)                                                     \
    Reply<xcb_##request##_reply_t>(                                                                \
        xcb_##request##_reply(connection, cookie, DroppedError().receive()))

/// Receives an error that the caller doesn't need, and frees it.
class DroppedError
{
public:
    DroppedError() = default;
    DroppedError(const DroppedError &) = delete;
    DroppedError &operator=(const DroppedError &) = delete;
    ~DroppedError()
    {
        if (m_error)
            logError(*m_error);
        std::free(m_error);
    }
    xcb_generic_error_t **receive() { return &m_error; }

private:
    xcb_generic_error_t *m_error = nullptr;
};

/// The toolkit's connection to the X server, and requests that all services need.
class X11Display
{
public:
    explicit X11Display(xcb_connection_t *connection);

    xcb_connection_t *connection() const { return m_connection; }
    xcb_window_t root() const { return m_screen->root; }
    int screenNumber() const { return m_screenNumber; }
    const xcb_screen_t &screen() const { return *m_screen; }

    /// Each name is interned once.
    xcb_atom_t atom(std::string_view name);

    /// A property's bytes. Empty if the property is missing or has another format, or if the window
    /// is gone.
    QByteArray property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type, int format);
    /// A property's 32-bit values.
    QList<uint32_t> values(xcb_window_t window, xcb_atom_t name, xcb_atom_t type);

    /// Whether one and the same program has made two windows.
    bool isSameClient(xcb_window_t one, xcb_window_t other) const;
    /// Whether the server has an extension. A request of one that it lacks would end the
    /// connection.
    bool hasExtension(xcb_extension_t &extension);
    /// The selection that a running compositor owns.
    xcb_atom_t compositorSelection();
    /// Whether a compositor is running.
    bool isComposited();
    /// Whether a window manager is running.
    bool hasWindowManager();
    /// Sends the window manager a request as a client message to the root window.
    void sendToRoot(xcb_window_t window, xcb_atom_t type, const std::array<uint32_t, 5> &data);
    /// Has all key presses told as raw events of XInput 2, whichever window gets them, until each
    /// call with true has been followed by one with false. The extension's major opcode; 0 where it
    /// is missing, and nothing is told.
    uint8_t hearRawKeys(bool hears);
    /// Adds to the events of the root window that this connection receives.
    void selectRootEvents(uint32_t mask);

private:
    xcb_connection_t *m_connection;
    int m_screenNumber = 0;
    const xcb_screen_t *m_screen = nullptr;
    QList<std::pair<QByteArray, xcb_atom_t>> m_atoms;
    int m_rawKeyHearers = 0;
};
