#pragma once

#include "capture/magnifiergeometry.h"

#include <QDialog>
#include <QImage>
#include <QRect>
#include <QString>

#include <memory>

class Pane;
class QPixmap;

namespace Ui {
class DigDetail;
}  // namespace Ui

class CaptureOverlay;

/// The magnifier: a panel above an overlay that shows the pixels around the pointer, the position,
/// and the colour of the pixel in the middle. It gets no input; clicks go to what is below it. It
/// is a window of its own, or, where windows can't be placed, a part of one of the overlay's panes.
class DigDetail : public QDialog
{
    Q_OBJECT
public:
    static constexpr int s_full = 1;     ///< view mode: with texts
    static constexpr int s_small = 2;    ///< view mode: only the enlarged view
    static constexpr int s_region = 1;   ///< type: help for regions
    static constexpr int s_polygon = 2;  ///< type: help for polygons

    /// `overlay` is what the panel is above; it may be null for a panel that shows no pixels.
    explicit DigDetail(CaptureOverlay *overlay);
    ~DigDetail() override;

    /// Shows the surroundings of a point, in global device pixels. If `source` is null, takes a
    /// picture of the desktop without this panel and its overlay.
    void ReDrawZoomin(const QPoint &point, QPixmap *source);
    /// Sets the size of a block in device pixels; 0 or less is ignored.
    void SetMultiple(int multiple);
    /// Sets the type, and with it the help text and its height.
    void SetType(int type);
    void SetViewMode(int mode);
    int GetViewMode() const { return m_ViewMode; }
    /// Set the texts for the position.
    void SetCoordX(const QString &text);
    void SetCoordY(const QString &text);

    /// The panel's rectangle in global device pixels, also before it is shown.
    QRect area() const;
    /// Goes to the pane that shows this position, in global device pixels, unless the panel is a
    /// window. The area's size may change.
    void enter(QPoint point);
    /// Moves the top left corner, in global device pixels.
    void moveTo(QPoint corner);
    /// Shows the panel at that position above its overlay, without the focus; as a window it is
    /// override-redirect.
    void open() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    MagnifierView view() const;
    const Pane &pane() const;
    void setPanelSize(QSize size);
    void paintView();
    void paintHelp();

    std::unique_ptr<Ui::DigDetail> m_ui;
    const CaptureOverlay *m_overlay;
    const bool m_isWindow;
    QRect m_Desktop;
    QRect m_GrabRect;  // the part of the desktop that is shown
    QImage m_Zoom;     // the same part, enlarged; null if it could not be read
    QRgb m_CenterColor = 0;
    QPoint m_Corner;
    int m_Type = -1;
    int m_ViewMode = s_full;
    int m_Multiple = 8;
};
