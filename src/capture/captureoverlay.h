#pragma once

#include "capture/grab.h"
#include "capture/magnifierrequest.h"
#include "capture/pane.h"

#include <QDialog>
#include <QKeySequence>
#include <QPixmap>
#include <QPointer>
#include <QRegion>
#include <QTransform>

#include <functional>

class QContextMenuEvent;
class QMenu;
class QMouseEvent;
class QPainter;
class QPainterPath;

/// The base of all overlays: covers the desktop, stays on top, shows the desktop through a
/// translucent black sheet, has the keyboard, ticks, and updates the magnifier. Each overlay
/// handles the mouse itself.
///
/// An overlay is one thing in several windows, its panes: one where a window can lie across all
/// screens, else one a screen. The first pane is this dialog. Overlays use device pixels, relative
/// to the corner of the box around all screens; only the panes convert the toolkit's logical
/// coordinates.
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

    /// The rectangle of the desktop, global. Overlay coordinates begin at its corner.
    const QRect &area() const { return m_area; }
    const QList<Pane> &panes() const { return m_panes; }
    /// The pane that shows a pixel, or the nearest one.
    const Pane &paneAt(QPoint pixel) const { return ::paneAt(m_panes, pixel); }

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
    /// How the desktop comes through the sheet. Widgets that lie on it are opaque either way, so
    /// that they can be read.
    enum class Sheet {
        Whole,  ///< also through what is drawn on it
        Around  ///< it leaves out what is marked(), and what is drawn on it is opaque
    };
    /// `sheetOpacity` is the opacity of the black sheet, 0 to 1. With 0 there is no sheet: the
    /// overlay draws on the unchanged desktop.
    CaptureOverlay(QWidget *parent, qreal sheetOpacity, Sheet sheet = Sheet::Whole);

    /// Makes the panes. `surface` is the child that fills this dialog and is the first pane's
    /// surface. To be called once, after the form has been set up.
    void setSurface(QWidget *surface);

    bool eventFilter(QObject *watched, QEvent *event) override;
    /// An event of a pane's surface, keys being the first one's, and letters the Latin ones in any
    /// layout. Returns true if it must not be
    /// processed further.
    virtual bool paneEvent(const Pane &pane, QEvent *event) = 0;
    virtual void contextMenu(const Pane & /*pane*/, const QContextMenuEvent & /*event*/) {}
    /// The pixel of a mouse event of a pane's surface.
    QPoint placeOf(const Pane &pane, const QMouseEvent &event) const;

    /// What is marked, in pixels, for a sheet that leaves it out.
    virtual QPainterPath marked() const { return {}; }
    /// Whether something is marked that can be taken.
    virtual bool canBeTaken() const = 0;

    /// Called every 100 ms while the overlay is visible, until `finished`.
    virtual void tick() = 0;
    /// Stops the newest series of ticks; older series continue.
    void stopTicks();
    /// Starts another series of ticks, in addition to running ones.
    void startTicks();

    struct MenuEntry {
        QString text{};
        QKeySequence shortcut{};  ///< only displayed
        bool enabled = true;
        std::function<void()> run{};
    };
    /// Runs the context menu that a pane was asked for. It contains the `own` entries, those that
    /// all overlays have, and at its end `more`. The overlay may have been closed when this
    /// returns.
    void runMenu(const Pane &pane, const QContextMenuEvent &event, const MenuEntry &finish,
                 const QList<MenuEntry> &own, const QList<MenuEntry> &more);

    /// From what was marked, relative to its corner, to its picture, which has another size where
    /// the screen's own pixels are larger.
    static QTransform toPicture(const QPixmap &picture, QSize marked);

    /// The pointer's position, in global and in overlay coordinates.
    QPoint pointer() const;
    QPoint pointerInOverlay() const { return pointer() - m_area.topLeft(); }

    /// Schedules a repaint of these pixels. Even an empty region causes a paint event.
    void updatePixels(const QRegion &pixels);
    void updateAll();

    /// Paints the region of a pane's paint event (in logical coordinates): the sheet, and the
    /// result of `draw` on it, which draws antialiased in pixels and touches none outside of
    /// `drawn`. `draw` may be called several times, or not at all.
    void paintSheet(const Pane &pane, const QRegion &exposed, const QRect &drawn,
                    const std::function<void(QPainter &)> &draw);

private:
    const Pane *paneOf(const QObject *surface) const;
    void showPanes(bool visible);
    /// Whether the event is the automatic repeat of Escape, Return or Enter: that key was pressed
    /// for something else and must not end the overlay.
    static bool isHeldEnd(const QEvent &event);
    void tickLater(int ticks);
    void passTick();
    bool hasSheet() const { return m_sheetOpacity > 0; }
    void paintLive(QPainter &painter, const QRect &pixels, const QRect &drawn,
                   const std::function<void(QPainter &)> &draw) const;
    void paintAround(QPainter &painter, const Pane &pane, const QRegion &exposed) const;
    static bool isLive();
    bool makeSeeThrough();
    bool fitsDesktop() const;
    void takeKeyboard();
    void tellOpen();
    void giveKeyboardBack();
    void giveFocusBack();
    void addSheet(QPainter &painter, const Pane &pane, const QRect &part,
                  const std::function<void(QPainter &)> &draw) const;

    QRect m_area;
    QList<PanePlace> m_places;  // of the panes, as the desktop told them
    QList<Pane> m_panes;
    qreal m_sheetOpacity = 0;
    Sheet m_sheet = Sheet::Whole;
    QPointer<QWidget> m_windowBefore;  // the program's active window when the overlay opened
    QList<int> m_ticks;                // the numbers of the running series of ticks
    int m_newestTicks = 0;
    int m_keyboardTries = 0;
    bool m_waitsToOpen = false;
};
