#pragma once

#include "platform/windowserver.h"
#include "platform/x11/x11display.h"
#include "platform/x11/x11pixelreader.h"

#include <QAbstractNativeEventFilter>
#include <QHash>
#include <QRegion>

class QPainter;

class X11WindowServer : public WindowServer, public QAbstractNativeEventFilter
{
public:
    /// `display` outlives this object.
    explicit X11WindowServer(X11Display &display);

    QList<Entry> windows(List which, int relativeTo) override;
    QImage screenPicture(const QRect &area) override;
    QImage picture(std::optional<QRectF> area, const QList<int> &numbers) override;
    QImage pictureWithout(const QRect &area, const QList<int> &numbers) override;
    QList<QRect> screens() override;
    QPoint pointer() override;
    void movePointer(QPoint to) override;
    bool isHandBusy() override;
    bool turnWheel(QPoint at, int clicks, Wheel wheel) override;
    std::unique_ptr<ChangeWatch> watchChanges(int number) override;
    bool isComposited() override;
    void setCompositingHandler(std::function<void()> changed) override;
    void coverArea(QWidget *window, const QRect &area) override;
    void moveWindow(QWidget *window, QPoint to) override;
    void keepOutOfTaskBar(QWidget *window) override;
    void setOnScreen(QWidget *window, bool onScreen) override;
    void dropShadow(QWidget *window) override;
    int numberOf(const QWidget *widget) override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    class DamageWatch;
    struct Window {
        xcb_window_t frame = XCB_NONE;  ///< the child of the root window
        /// The application's window inside the frame, if there is one.
        xcb_window_t client = XCB_NONE;
        QRect bounds{};  ///< including the border
        int border = 0;
        int depth = 0;
        bool onScreen = false;
        bool unmanaged = false;  ///< override-redirect
        QRegion shape{};         ///< the part of `bounds` that the window fills; see readShapes()
        Entry entry{};
    };

    /// The children of the root window, the frontmost first.
    QList<Window> topLevels();
    /// The selection that a running compositor owns.
    xcb_atom_t compositorSelection();
    void findClients(QList<Window> &windows);
    void readNames(QList<Window> &windows);
    void tellPurpose(Window &window, const QList<uint32_t> &types, const QList<uint32_t> &states);
    /// The clients that are not on the screen, as entries for the list of all windows.
    QList<Window> hiddenClients(const QList<Window> &shown);
    xcb_window_t topLevelOf(xcb_window_t window);
    QRect rootArea();
    QImage rootPicture(const QRect &area);
    QImage windowPicture(xcb_window_t frame);
    QImage storedPicture(const Window &window, const QRect &area);
    QImage composed(const QRect &area, QList<Window> shown, QList<Window> leftOut);
    void readShapes(QList<Window> &windows, const QRect &area);
    void paintWallpaper(QPainter &painter, const QRegion &region);
    void paintWindows(QPainter &painter, QRegion region, const QList<Window> &windows);

    X11Display &m_display;
    X11PixelReader m_reader;
    bool m_hasRandr = false;
    bool m_hasShape = false;
    bool m_hasComposite = false;
    bool m_hasTest = false;
    uint8_t m_damageEvent = 0;  ///< the event's number; 0 if the server can't report damage
    /// Whether damage was reported, by the id of the damage object.
    QHash<uint32_t, bool> m_damages{};
    std::function<void()> m_compositingHandler;
    int m_selectionEvent = 0;  ///< the event's number; 0 if it has not been requested
};
