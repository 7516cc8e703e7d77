#pragma once

#include "shell/pinnedpicture.h"

#include <QPixmap>
#include <QPointer>
#include <QWidget>

class OverlayPlate;

/// One picture above all windows. It is moved by dragging and the arrow keys, and zoomed and made
/// translucent by the wheel and keys; Escape or a double click closes it.
class Pin : public QWidget
{
    Q_OBJECT
public:
    /// Not shown yet. It deletes itself when it is closed.
    explicit Pin(PinnedPicture pinned);

    const PinnedPicture &pinned() const { return m_pinned; }
    /// Shows it, and takes the keyboard from nobody.
    void appear();
    /// Gets the keyboard.
    void focus();
    /// Off the screen, or back there, while it counts as open.
    void setOnScreen(bool onScreen);

signals:
    void changed();
    void copyWanted();
    void saveWanted();
    void editWanted();  ///< in a tab of the main window
    void nextWanted();  ///< the keyboard for another pin
    void closeAllWanted();
    void closed();

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    bool hearsKey(int key, Qt::KeyboardModifiers modifiers);
    QRect area() const;
    QPoint held(QPoint place) const;
    void moveTo(QPoint place);
    void zoomTo(double zoom, QPoint point);
    void stepZoom(int steps, QPoint point);
    void stepOpacity(int steps);
    void refit();
    void show(const QString &word);
    void describe();
    const QPixmap &shown();

    PinnedPicture m_pinned;
    QPixmap m_shown;  ///< the picture in its size on the screen
    OverlayPlate *m_word;
    int m_words = 0;               ///< how many there were: each is hidden by its own time
    int m_turned = 0;              ///< of a step of the wheel, in the toolkit's eighths of a degree
    QPointer<QWidget> m_before{};  ///< the window of this program that had the keyboard
    QPoint m_grip;  ///< from its corner to the pointer while it is dragged, in device pixels
    bool m_isDragged = false;
};
