#pragma once

#include <QObject>
#include <QPoint>
#include <QRegion>
#include <QSize>

class QMouseEvent;
class QScreen;
class QWidget;
class Skin;

/// The frame of a window that has none of the window manager's: it moves and resizes it, rounds its
/// corners, and knows where it stands and stood. Geometry is in the toolkit's logical pixels; that
/// of the window is global. Where the desktop places windows itself the size is all that is known.
class WindowFrame : public QObject
{
    Q_OBJECT

public:
    /// Both outlive this object.
    WindowFrame(QWidget &window, Skin &skin);
    ~WindowFrame() override;

    /// Shows the window where the settings say, held to what its screen has room for.
    void showStored();
    void showNormal();
    void showMaximized();
    bool isMaximized() const;
    /// Writes the settings of the normal geometry. A place that is not known stays as it was
    /// stored.
    void storeNormal();
    /// Writes them all. A maximised window keeps the normal size that was stored before.
    void store();

    /// Takes the mouse where no child of the window does: any point moves the window, and its far
    /// corner resizes it. Where the desktop places windows it does that itself. Positions are the
    /// window's.
    void press(const QMouseEvent &event);
    void move(const QMouseEvent &event);
    void release() { m_drag = Drag::None; }

    /// The window can be made as small as its screen is.
    void holdToScreen();
    /// The window has another size.
    void cutCorners();
    void paint();

private:
    enum class Drag { None, Move, Resize };

    bool desktopTakesOver(Drag drag);
    void comeWithinReach();
    void follow(QScreen *screen);
    void followCompositor();
    QRegion cornerRegion();

    QWidget &m_window;
    Skin &m_skin;
    const bool m_placesWindows;
    bool m_isComposited;
    Drag m_drag = Drag::None;
    QPoint m_dragPos;  ///< where the pointer took hold, in the window
    QSize m_dragSize;  ///< the window's size then
};
