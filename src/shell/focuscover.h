#pragma once

#include <QDialog>
#include <QPixmap>

#include <functional>

class Clock;

/// Brings windows and programs to the front, and waits for it with events running: never for ever,
/// for the desktop may refuse.
class Front
{
public:
    /// `clock` outlives this object.
    explicit Front(Clock &clock) : m_clock(clock) {}

    /// Raises a window of this program and waits until the program is active.
    void bring(QWidget &window) const;
    /// Brings the application that was last in front before this one back there, and waits, about a
    /// second at the most. `meanwhile` is called again and again in that time.
    void giveBack(const std::function<void()> &meanwhile = [] {}) const;

private:
    Clock &m_clock;
};

/// The window through which this program is the active one before an overlay opens. Where the
/// desktop has a menu bar that changes with the active program it covers that up with a picture of
/// it; elsewhere it shows nothing.
class FocusCover : public QDialog
{
    Q_OBJECT
public:
    FocusCover();
    ~FocusCover() override;

    /// Shows it. Makes nothing active yet.
    void appear();
    /// Keeps clicks from every program, this one too, until they are freed or it hides.
    void holdClicks();
    void freeClicks();

signals:
    /// Escape, pressed while nothing else of this program has the keyboard.
    void escaped();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QPixmap m_menuBar;
};
