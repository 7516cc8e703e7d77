#pragma once

#include "base/regionselection.h"
#include "capture/markingoverlay.h"

#include <QPixmap>
#include <QString>

#include <initializer_list>
#include <memory>

namespace Ui {
class Dialog;
}  // namespace Ui

/// The common part of the rectangle's and the ellipse's overlay: a region that is marked and
/// adjusted with mouse and keys, and the caption that follows it. The desktop below stays live:
/// getPixmap() reads its pixels after the overlay has closed.
class RegionOverlay : public MarkingOverlay
{
    Q_OBJECT
public:
    ~RegionOverlay() override;

    /// Sets the icon files for the size texts. The place of an icon that can't be read stays empty.
    void SetPictureWidth(QString path);
    void SetPictureHeight(QString path);
    QString GetPictureWidth() const { return m_pictureWidthFile; }
    QString GetPictureHeight() const { return m_pictureHeightFile; }

    /// Takes the picture of the region. If there is no region, returns the picture that was taken
    /// last, which is null at first.
    QPixmap getPixmap();
    /// Sets the cursor that shows what a press at `pos` (overlay coordinates) would do.
    void ChangeCursor(QPoint pos);

public slots:
    void on_pushButton_clicked();
    void dialog_clear();

protected:
    RegionOverlay(QWidget *parent, const RegionPolicy &policy, const MarkingHabits &habits);

    /// Draws the shape for `region`, which need not be normalised, in white.
    virtual void draw(QPainter &painter, const QRect &region) const = 0;
    /// Draws circles for these handles of a region with the painter's pen.
    static void drawHandles(QPainter &painter, const QRect &region,
                            std::initializer_list<int> zones);
    QRect region() const { return m_selection.region(); }
    QPainterPath marked() const override;
    bool canBeTaken() const override { return hasArea(); }
    bool canComplete() const override { return hasArea(); }
    bool complete() override { return hasArea(); }
    bool isPressed() const override { return m_selection.isPressed(); }
    QPolygonF markedPoints() const override;
    void markPoints(const QPolygonF &points) override;
    QPoint nearButtons() const override { return frame().center(); }
    QPoint placeButtons(QSize size) const override;
    QString hint() const override;
    bool hasArea() const;
    static bool isCommandHeld();

    bool eventFilter(QObject *watched, QEvent *event) override;
    bool paneEvent(const Pane &pane, QEvent *event) override;
    void contextMenu(const Pane &pane, const QContextMenuEvent &event) override;
    void tick() override;

private:
    struct Look {
        QList<QRect> shapes{};
        bool command = false;
        bool operator==(const Look &) const = default;
    };

    RegionSelection::Input input(QPoint pos) const;
    Look look() const;
    QRegion damage(const Look &before, const Look &after) const;
    void fitCaption();
    QRect frame() const;
    void setExtent();
    void press(QPoint pos, Qt::MouseButtons buttons);
    void move(QPoint pos);
    bool release(QPoint pos);
    void key(const QKeyEvent &event);
    void mouseEvent(QPoint pos, const QMouseEvent &event);
    void paintSurface(const Pane &pane, const QRegion &exposed);
    void placeCaption(RegionSelection::Caption (RegionSelection::*caption)() const);
    void refresh();

    RegionPolicy m_policy;
    std::unique_ptr<Ui::Dialog> m_ui;
    const Pane *m_captionPane = nullptr;
    RegionSelection m_selection;
    Look m_shown;  // what the surface shows after its pending repaints
    QString m_pictureWidthFile;
    QString m_pictureHeightFile;
    QPixmap m_grabbed;
};
