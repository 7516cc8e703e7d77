#pragma once

#include "capture/markingoverlay.h"
#include "capture/polygonselection.h"

#include <QPixmap>
#include <QPolygonF>

#include <optional>

class QMouseEvent;
class QPointF;

/// The overlay for marking a polygon, by clicks or freehand. The desktop below it stays live:
/// getPixmap() reads its pixels after the overlay has closed.
class dlgFreeHand : public MarkingOverlay
{
    Q_OBJECT
public:
    explicit dlgFreeHand(QWidget *parent = nullptr, const MarkingHabits &habits = {});

    Grab take() override;
    /// Takes the picture of the polygon's bounding box. If the box is empty, returns the picture
    /// that was taken last, which is null at first.
    QPixmap getPixmap();
    /// The polygon in the picture's coordinates, which the caller owns; null if there are no
    /// points.
    QPolygonF *getPolygon() const;

public slots:
    void deletelastpoint();
    void dialog_clear();
    /// Accepts the polygon if it has at least three vertices.
    void slots_freehandAccept();

protected:
    bool paneEvent(const Pane &pane, QEvent *event) override;
    void contextMenu(const Pane &pane, const QContextMenuEvent &event) override;
    void tick() override;
    QPainterPath marked() const override;
    bool canBeTaken() const override;
    bool canComplete() const override { return m_selection.canFinish(); }
    bool complete() override { return m_selection.finish(); }
    bool isPressed() const override { return m_selection.isPressed(); }
    QPolygonF markedPoints() const override;
    void markPoints(const QPolygonF &points) override;
    QPoint nearButtons() const override;
    QPoint placeButtons(QSize size) const override;
    QString hint() const override;

private:
    struct Look {
        QPolygonF line{};
        std::optional<QPoint> closeMark{};
    };

    bool mouseEvent(QPoint pos, const QMouseEvent &event);
    void move(QPoint pos, Qt::KeyboardModifiers modifiers);
    void key(const QKeyEvent &event);
    QRect vertexBox() const;
    void refresh();
    void paintSurface(const Pane &pane, const QRegion &exposed);

    PolygonSelection m_selection;
    Look m_shown;  // what the surface shows after its pending repaints
    QPixmap m_grabbed;
};
