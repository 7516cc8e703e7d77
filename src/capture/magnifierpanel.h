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

/// The magnifier: a panel over an overlay that shows the pixels around the pointer, where they are,
/// and the colour of the one in the middle. It takes no input: what lies beneath it can be clicked.
class DigDetail : public QDialog
{
    Q_OBJECT
public:
    static constexpr int s_full = 1;     ///< view mode: with the texts
    static constexpr int s_small = 2;    ///< view mode: the enlarged view alone
    static constexpr int s_region = 1;   ///< type: helps with regions
    static constexpr int s_polygon = 2;  ///< type: helps with polygons

    explicit DigDetail(QWidget *parent);
    ~DigDetail() override;

    /// Shows what is around a point (global device pixels). Without a source it takes a picture of
    /// the desktop, without this panel and its parent.
    void ReDrawZoomin(const QPoint &point, QPixmap *source);
    /// Device pixels for one pixel of the desktop; 0 or less is ignored.
    void SetMultiple(int multiple);
    /// Sets the help text and the height that it needs.
    void SetType(int type);
    void SetViewMode(int mode);
    int GetViewMode() const { return m_ViewMode; }
    void SetCoordX(const QString &text);
    void SetCoordY(const QString &text);

    /// Where the panel is, or will be when it is shown. Global device pixels.
    QRect area() const;
    void moveTo(QPoint corner);
    /// Shows it there, above its parent, without the window manager's say and without the focus.
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
    QImage m_Zoom;     // the same, enlarged; null when it could not be had
    QRgb m_CenterColor = 0;
    QPoint m_Corner;
    int m_Type = -1;
    int m_ViewMode = s_full;
    int m_Multiple = 8;
};
