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

/// What every overlay does: it covers the desktop, stays on top of it and lets it be seen through a
/// black sheet, has the keyboard, ticks, and feeds the magnifier. How an overlay reads the mouse is
/// its own.
///
/// An overlay thinks in device pixels, from its top left corner. The toolkit's logical coordinates
/// are converted by the functions here and nowhere else.
class CaptureOverlay : public QDialog
{
    Q_OBJECT
public:
    /// To be set once the modal loop is over: nothing more is sent or raised.
    bool finished = false;

    void ShowDetailWindow(EShowMagOpr opr, int x, int y);

    /// What was marked, read from the desktop as it is now: after the overlay has left it.
    virtual Grab take() = 0;

    /// Raises the overlay, and its child windows above it.
    void stayOnTop();

    /// Stays hidden where the desktop can't be seen through it.
    void setVisible(bool visible) override;

public slots:
    /// Ends by itself, rejected, if the desktop changes so that the overlay no longer fits it.
    int exec() override;
    void changeviewmode();
    /// Does nothing while there is nothing that could be taken.
    void accept() override;

signals:
    /// It is on the screen and has the keyboard, or has given up asking for it.
    void opened();
    /// It is about to leave the screen.
    void leaves(bool accepted);
    /// `parent` is this overlay; (x, y) is a global position in device pixels.
    void ShowDetailWindowRequest(QWidget *parent, EShowMagOpr opr, int x, int y);

protected:
    /// `sheetOpacity` is how much of the desktop the sheet takes away, 0 to 1. With 0 there is no
    /// sheet: what is drawn lies on the desktop as it is.
    CaptureOverlay(QWidget *parent, qreal sheetOpacity);

    /// The child that fills the overlay: it is drawn on, and gets the mouse and all keys. Call it
    /// once, when the form has been built.
    void setSurface(QWidget *surface);

    /// Whether a key that ends an overlay comes from one that is held down: it was pressed for
    /// something else.
    static bool isHeldEnd(const QEvent &event);

    /// Whether what is marked has an area.
    virtual bool canBeTaken() const = 0;

    /// Every 100 ms while the overlay is shown, until `finished`.
    virtual void tick() = 0;
    /// Ends the newest ticks; those that were started before them go on.
    void stopTicks();
    /// Starts ticks of their own, beside any that run.
    void startTicks();

    /// The desktop's box, global.
    const QRect &area() const { return m_area; }
    /// The size of the surface as far as it lies on the desktop.
    QSize surfaceSize() const;
    struct MenuEntry {
        QString text{};
        QKeySequence shortcut{};  ///< shown only
        bool enabled = true;
        std::function<void()> run{};
    };
    /// Runs the context menu at a global position (logical coordinates): `own` entries among those
    /// that every overlay has. The overlay may have been closed when this returns.
    void runMenu(QPoint global, const MenuEntry &finish, const QList<MenuEntry> &own);

    /// Where the pointer is, global and in overlay coordinates.
    QPoint pointer() const;
    QPoint pointerInOverlay() const { return pointer() - m_area.topLeft(); }

    /// From the surface's logical coordinates to device pixels, and back to the nearest ones.
    QPoint toPixels(QPointF position) const;
    QSize toPixels(QSize size) const;
    QPoint toLogical(QPoint pixel) const;

    /// The device pixels that a logical rectangle of the surface touches, and one more on each
    /// side.
    QRect pixelsAround(const QRect &logical) const;

    /// Has the surface repainted where `pixels` are. A paint event follows even for an empty
    /// region.
    void updatePixels(const QRegion &pixels);

    /// Paints the part of the surface that a paint event tells of (logical coordinates): the sheet,
    /// and on it what `draw` draws in device pixels, antialiased. `draw` may be called several
    /// times.
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
    QPixmap m_dimmed;  // the desktop under the black sheet; null where a compositor mixes the two
    QWidget *m_surface = nullptr;
    QPointer<QWidget> m_windowBefore;  // the program's active window when the overlay opened
    QList<int> m_ticks;                // those that go on, by number
    int m_newestTicks = 0;
    int m_keyboardTries = 0;
    bool m_waitsToOpen = false;
};
