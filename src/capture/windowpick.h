#pragma once

#include "capture/captureoverlay.h"
#include "capture/windowoutlines.h"
#include "platform/windowcatalogue.h"

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
    /// The picked window's picture, whatever covers it, and in `name`, if not null, its
    /// application. Null, with `name` as it was, while none is picked, and null for a window that
    /// has closed.
    QPixmap getPixmap(QString *name);

protected:
    bool paneEvent(const Pane &pane, QEvent *event) override;
    void tick() override {}
    bool canBeTaken() const override { return picked().has_value(); }

    /// The picked window from the list; none if no window is picked.
    std::optional<WindowCatalogue::Entry> picked() const;
    /// The window to show as picked.
    virtual std::optional<WindowCatalogue::Entry> shown() const { return picked(); }
    /// Picks a window by its number, until the pointer is read again.
    void pick(int number);
    /// Called whenever the pointer has been read.
    virtual void looked() {}
    /// Draws the tint and anything else on the desktop, in overlay coordinates, for a pane.
    virtual void draw(QPainter &painter, const Pane &pane);
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
    QList<WindowCatalogue::Entry> m_windows;
    WindowOutlines m_outlines;
    int m_currentIndex = 0;  // the pick: a position in m_windows; 0 for none
};
