#pragma once

#include "capture/captureoverlay.h"
#include "capture/polygonselection.h"

#include <QPixmap>
#include <QPolygonF>

#include <optional>

class QMouseEvent;
class QPointF;

/// The overlay with which the user marks a polygon, by clicks or freehand. The desktop stays live
/// beneath it: its pixels are read by getPixmap(), after the overlay has closed.
class dlgFreeHand : public CaptureOverlay
{
    Q_OBJECT
public:
    explicit dlgFreeHand(QWidget *parent = nullptr);

    Grab take() override;
    /// Takes the picture of the box around the polygon. Where that has no area, the picture taken
    /// last: null at first.
    QPixmap getPixmap();
    /// The polygon in the picture's coordinates, which the caller owns; null without points.
    QPolygonF *getPolygon() const;

public slots:
    void deletelastpoint();
    void dialog_clear();
    /// Accepts the polygon if it has three vertices or more.
    void slots_freehandAccept();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void tick() override;
    bool canBeTaken() const override;

private:
    struct Look {
        QPolygonF line{};
        std::optional<QPoint> closeMark{};
    };

    bool mouseEvent(const QMouseEvent &event);
    void move(QPoint pos, Qt::KeyboardModifiers modifiers);
    void key(const QKeyEvent &event);
    void refresh();
    void paintSurface(const QRegion &exposed);

    QWidget *m_surface;  // a child
    PolygonSelection m_selection;
    Look m_shown;  // what the surface shows once its pending updates are painted
    QPixmap m_grabbed;
};
