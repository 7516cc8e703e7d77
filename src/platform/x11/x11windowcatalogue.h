#pragma once

#include "platform/windowcatalogue.h"
#include "platform/x11/x11toplevel.h"

class X11WindowCatalogue : public WindowCatalogue
{
public:
    /// `display` outlives this object.
    explicit X11WindowCatalogue(X11Display &display);

    QList<Entry> windows(List which, int relativeTo) override;

private:
    struct Window {
        X11TopLevel top{};
        /// The application's window inside the frame, if there is one.
        xcb_window_t client = XCB_NONE;
        Entry entry{};
    };

    QList<Window> topWindows();
    void findClients(QList<Window> &windows);
    void readNames(QList<Window> &windows);
    /// `tray` is the window by which the desktop's tray is found, if there is one.
    void tellPurpose(Window &window, const QList<uint32_t> &types, const QList<uint32_t> &states,
                     xcb_window_t tray);
    /// The clients that are not on the screen, as entries for the list of all windows.
    QList<Window> hiddenClients(const QList<Window> &shown);

    X11Display &m_display;
};
