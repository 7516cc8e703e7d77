#pragma once

#include "capture/captureoverlay.h"
#include "capture/windowoutlines.h"
#include "platform/windowserver.h"

#include <memory>
#include <optional>

namespace Ui {
class mouseShot;
}  // namespace Ui

/// The overlay that tints the window under the pointer and takes it on a click. Tab and Shift+Tab
/// move the pointer to the next and previous window. The windows are read in the constructor, which
/// also shows the overlay; the caller then runs exec().
class mouseShot : public CaptureOverlay
{
    Q_OBJECT
public:
    explicit mouseShot(QWidget *parent = nullptr);
    ~mouseShot() override;

    Grab take() override;
    /// The picture of the picked window, whatever covers it; `name`, which may be null, gets its
    /// application's name. If no window is picked, the result is null and `name` is unchanged; it
    /// is also null if the window has closed. No other window list may be read between construction
    /// and this call.
    QPixmap getPixmap(QString *name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void tick() override {}
    bool canBeTaken() const override { return picked().has_value(); }

    /// The picked window from the list; none if no window is picked.
    std::optional<WindowServer::Entry> picked() const;
    /// The window to show as picked.
    virtual std::optional<WindowServer::Entry> shown() const { return picked(); }
    /// Picks a window by its number, until the pointer is read again.
    void pick(int number);
    /// Called whenever the pointer has been read.
    virtual void looked() {}
    /// Draws the tint and anything else on the desktop, in overlay coordinates.
    virtual void draw(QPainter &painter);
    void updateAll();
    /// Reads the windows again.
    void readAgain();

private:
    void readWindows();
    void pickWindow();
    void pickLater();
    void pickBeside(int step);
    int pickAt(QPoint point) const;
    int indexOf(int number) const;

    std::unique_ptr<Ui::mouseShot> m_ui;
    WindowOutlines m_outlines;
    int m_currentIndex = 0;  // the pick: a position in the window list; 0 if none
};
