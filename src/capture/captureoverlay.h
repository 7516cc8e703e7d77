#pragma once

#include "capture/grab.h"
#include "capture/magnifierrequest.h"

#include <QDialog>
#include <QKeySequence>
#include <QPixmap>
#include <QPointer>
#include <QRegion>

#include <functional>

class QMenu;
class QPainter;

/// The base of all overlays: covers the desktop, stays on top, shows the desktop through a
/// translucent black sheet, has the keyboard, ticks, and updates the magnifier. Each overlay
/// handles the mouse itself.
///
/// Overlays use device pixels, relative to their top left corner. The toolkit's logical coordinates
/// are converted by the functions of this class only.
class CaptureOverlay : public QDialog
{
    Q_OBJECT
public:
    /// The caller sets this after the modal loop; then nothing more is sent or raised.
    bool finished = false;

    /// Emits ShowDetailWindowRequest. (x, y) is a global position in device pixels.
    void ShowDetailWindow(EShowMagOpr opr, int x, int y);

    /// Takes the marked part of the desktop as it is now. To be called after the overlay has left
    /// the screen.
    virtual Grab take() = 0;

    /// Raises the overlay, and its child windows above it.
    void stayOnTop();

    /// Does not show the overlay if the desktop would not be visible through it.
    void setVisible(bool visible) override;

public slots:
    /// Returns Rejected if the overlay can't be shown, and ends with Rejected if the desktop
    /// changes so that the overlay no longer fits.
    int exec() override;
    void changeviewmode();
    /// Does nothing if there is nothing to take.
    void accept() override;

signals:
    /// The overlay is on the screen and has the keyboard, or has given up asking for it.
    void opened();
    /// The overlay is about to leave the screen.
    void leaves(bool accepted);
    /// `parent` is this overlay; (x, y) is a global position in device pixels.
    void ShowDetailWindowRequest(QWidget *parent, EShowMagOpr opr, int x, int y);

protected:
    /// `sheetOpacity` is the opacity of the black sheet, 0 to 1. With 0 there is no sheet: the
    /// overlay draws on the unchanged desktop.
    CaptureOverlay(QWidget *parent, qreal sheetOpacity);

    /// Sets the child that fills the overlay, is drawn on, and gets mouse and key events. To be
    /// called once, after the form has been set up.
    void setSurface(QWidget *surface);

    /// Whether the event is the automatic repeat of Escape, Return or Enter: that key was pressed
    /// for something else and must not end the overlay.
    static bool isHeldEnd(const QEvent &event);

    /// Whether something is marked that can be taken.
    virtual bool canBeTaken() const = 0;

    /// Called every 100 ms while the overlay is visible, until `finished`.
    virtual void tick() = 0;
    /// Stops the newest series of ticks; older series continue.
    void stopTicks();
    /// Starts another series of ticks, in addition to running ones.
    void startTicks();

    /// The rectangle of the desktop, global.
    const QRect &area() const { return m_area; }
    /// The part of the surface's size that is on the desktop, in device pixels.
    QSize surfaceSize() const;
    struct MenuEntry {
        QString text{};
        QKeySequence shortcut{};  ///< only displayed
        bool enabled = true;
        std::function<void()> run{};
    };
    /// Runs the context menu at a global position in logical coordinates. It contains the `own`
    /// entries and those that all overlays have. The overlay may have been closed when this
    /// returns.
    void runMenu(QPoint global, const MenuEntry &finish, const QList<MenuEntry> &own);

    /// The pointer's position, in global and in overlay coordinates.
    QPoint pointer() const;
    QPoint pointerInOverlay() const { return pointer() - m_area.topLeft(); }

    /// Convert between the surface's logical coordinates and device pixels; toLogical() rounds.
    QPoint toPixels(QPointF position) const;
    QSize toPixels(QSize size) const;
    QPoint toLogical(QPoint pixel) const;

    /// The device pixels that a logical rectangle of the surface touches, plus one on each side.
    QRect pixelsAround(const QRect &logical) const;

    /// Schedules a repaint of these device pixels. Even an empty region causes a paint event.
    void updatePixels(const QRegion &pixels);

    /// Paints the region of a paint event (in logical coordinates): the sheet, and the result of
    /// `draw` on it, which draws antialiased in device pixels. `draw` may be called several times.
    void paintSheet(const QRegion &exposed, const std::function<void(QPainter &)> &draw);

private:
    void tickLater(int ticks);
    void passTick();
    bool hasSheet() const { return m_sheetOpacity > 0; }
    bool makeSeeThrough();
    bool fitsDesktop() const;
    void takeKeyboard();
    void tellOpen();
    void giveKeyboardBack();
    void giveFocusBack();
    void addSheet(QPainter &painter, const QRect &pixels,
                  const std::function<void(QPainter &)> &draw) const;

    QRect m_area;
    qreal m_sheetOpacity = 0;
    QPixmap m_dimmed;  // the desktop under the black sheet; null if a compositor blends them
    QWidget *m_surface = nullptr;
    QPointer<QWidget> m_windowBefore;  // the program's active window when the overlay opened
    QList<int> m_ticks;                // the numbers of the running series of ticks
    int m_newestTicks = 0;
    int m_keyboardTries = 0;
    bool m_waitsToOpen = false;
};
