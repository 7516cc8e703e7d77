#pragma once

#include "platform/windowserver.h"
#include "platform/x11/x11display.h"
#include "platform/x11/x11pixelreader.h"

class X11WindowServer : public WindowServer
{
public:
    /// `display` outlives this object.
    explicit X11WindowServer(X11Display &display);

    QList<Entry> windows(List which, int relativeTo) override;
    QImage picture(const QRectF &area, const QList<int> &numbers) override;
    QList<QRect> screens() override;
    QPoint pointer() override;
    bool hasMenuBar() const override { return false; }
    bool isComposited() override;
    void coverArea(QWidget *window, const QRect &area) override;
    void dropShadow(QWidget *window) override;
    int numberOf(const QWidget *widget) override;

private:
    struct Window;

    /// The root's children, the frontmost first.
    QList<Window> topLevels();
    void findClients(QList<Window> &windows);
    void readNames(QList<Window> &windows);
    /// The clients that are not on the screen, as the windows that the list shows for them.
    QList<Window> hiddenClients(const QList<Window> &shown);
    xcb_window_t topLevelOf(xcb_window_t window);
    QRect rootArea();
    QImage rootPicture(const QRect &area);
    QImage windowPicture(xcb_window_t window);
    QImage composition(const QRect &area, const QList<int> &numbers);

    X11Display &m_display;
    X11PixelReader m_reader;
    QList<int> m_lastOnScreen;  ///< the numbers that windows() gave out last for the whole screen
};
