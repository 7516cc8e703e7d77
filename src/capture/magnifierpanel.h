#pragma once

#include "capture/magnifiergeometry.h"

#include <QDialog>
#include <QImage>
#include <QRect>
#include <QString>

#include <memory>

class QPixmap;

namespace Ui {
class DigDetail;
}  // namespace Ui

/// The magnifier: a panel above an overlay that shows the pixels around the pointer, the position,
/// and the colour of the pixel in the middle. It gets no input; clicks go to the window below it.
class DigDetail : public QDialog
{
    Q_OBJECT
public:
    static constexpr int s_full = 1;     ///< view mode: with texts
    static constexpr int s_small = 2;    ///< view mode: only the enlarged view
    static constexpr int s_region = 1;   ///< type: help for regions
    static constexpr int s_polygon = 2;  ///< type: help for polygons

    explicit DigDetail(QWidget *parent);
    ~DigDetail() override;

    /// Shows the surroundings of a point, in global device pixels. If `source` is null, takes a
    /// picture of the desktop without this panel and its parent.
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
    /// Moves the top left corner, in global device pixels.
    void moveTo(QPoint corner);
    /// Shows the panel at that position above its parent, as an override-redirect window without
    /// the focus.
    void open() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    MagnifierView view() const;
    void setPanelSize(QSize size);
    void paintView();
    void paintHelp();

    std::unique_ptr<Ui::DigDetail> m_ui;
    QRect m_Desktop;
    QRect m_GrabRect;  // the part of the desktop that is shown
    QImage m_Zoom;     // the same part, enlarged; null if it could not be read
    QRgb m_CenterColor = 0;
    QPoint m_Corner;
    int m_Type = -1;
    int m_ViewMode = s_full;
    int m_Multiple = 8;
};
