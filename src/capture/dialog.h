#pragma once

#include "capture/captureoverlay.h"
#include "capture/regionselection.h"

#include <QPixmap>
#include <QString>

#include <memory>

class QPainterPath;

namespace Ui {
class Dialog;
}  // namespace Ui

/// The overlay with which the user marks a rectangle of the desktop. The desktop stays live beneath
/// it: its pixels are read by getPixmap(), after the overlay has closed.
class Dialog : public CaptureOverlay
{
    Q_OBJECT
public:
    explicit Dialog(QWidget *parent = nullptr);
    ~Dialog() override;

    /// The icons beside the size texts, by file; one that can't be read leaves its place empty.
    void SetPictureWidth(QString path);
    void SetPictureHeight(QString path);
    QString GetPictureWidth() const { return m_pictureWidthFile; }
    QString GetPictureHeight() const { return m_pictureHeightFile; }

    /// Takes the picture of the region. Without a region, the picture taken last: null at first.
    QPixmap getPixmap();
    /// The region's outline in overlay coordinates, null without a region. The caller owns it.
    QPainterPath *getPolygonF() const;

    /// Draws a rectangle in the painter's pen and brush, and the handles around it. Leaves the
    /// painter's brush changed.
    static void myDrawRect(QPainter &p, int x, int y, int w, int h);
    /// Shows with the pointer's shape what a press at `pos` (overlay coordinates) would do.
    void ChangeCursor(QPoint pos);

public slots:
    void on_pushButton_clicked();
    void dialog_clear();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void tick() override;

private:
    RegionSelection::Input input(QPoint pos) const;
    bool hasArea() const;
    void fitCaptionFont();
    void setExtent();
    void press(QPoint pos, Qt::MouseButtons buttons);
    void move(QPoint pos);
    void release(QPoint pos);
    void key(const QKeyEvent &event);
    void mouseEvent(const QMouseEvent &event);
    bool surfaceEvent(QEvent *event);
    void paintSurface(const QRegion &exposed);
    void paintFrame();
    void placeCaption(const RegionSelection::Caption &caption);
    void refresh();

    std::unique_ptr<Ui::Dialog> m_ui;
    RegionSelection m_selection;
    QList<QRect> m_shown;  // what the surface shows once its pending updates are painted
    QString m_pictureWidthFile;
    QString m_pictureHeightFile;
    QPixmap m_grabbed;
};
