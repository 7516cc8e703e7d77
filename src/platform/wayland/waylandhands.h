#pragma once

#include "platform/hands.h"
#include "platform/wayland/waylandconnection.h"

#include <QObject>

#include <memory>

struct zwlr_virtual_pointer_v1;

/// The pointer is known while it is over a window of this program that fills a screen, and stays
/// where it was seen last. What is done in the user's place goes through a pointer of the
/// program's own.
class WaylandHands : public QObject, public Hands
{
    Q_OBJECT
public:
    explicit WaylandHands(std::shared_ptr<WaylandConnection> connection);
    ~WaylandHands() override;

    QPoint pointer() override { return m_pointer; }
    void movePointer(QPoint to) override;
    bool isHandBusy() override;
    void turnWheel(QPoint at, int clicks, Wheel wheel) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    zwlr_virtual_pointer_v1 *device();

    std::shared_ptr<WaylandConnection> m_connection;
    zwlr_virtual_pointer_v1 *m_device = nullptr;
    QPoint m_pointer{};
};
