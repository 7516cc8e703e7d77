#pragma once

#include "platform/hands.h"
#include "platform/wayland/waylandconnection.h"

#include <QObject>

#include <memory>

class QScreen;

/// A pointer of the program's own, as the compositor takes it.
class PointerDevice
{
public:
    virtual ~PointerDevice() = default;
    /// `to` is in logical units, in the box around all screens.
    virtual void move(QPointF to, const QRect &box) = 0;
    enum class Axis { Vertical, Horizontal };
    /// One click of the wheel, towards the end where `isForward`.
    virtual void turn(Axis axis, bool isForward) = 0;
};

/// The pointer is known while it is over a window of this program that fills a screen, and stays
/// where it was seen last. What is done in the user's place goes through a pointer of the
/// program's own.
class WaylandHands : public QObject, public Hands
{
    Q_OBJECT
public:
    explicit WaylandHands(std::shared_ptr<WaylandConnection> connection);

    /// Whether the compositor has pointers for programs.
    static bool canTurnWheels(const WaylandConnection &connection);

    QPoint pointer() override { return m_pointer; }
    bool isPointerKnown() const override { return false; }
    void movePointer(QPoint to) override;
    bool isHandBusy() override;
    void turnWheel(QPoint at, int clicks, Wheel wheel) override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    PointerDevice *device();
    QPointF originOf(const QScreen &screen) const;

    std::shared_ptr<WaylandConnection> m_connection;
    std::unique_ptr<PointerDevice> m_device;  // made when it is needed first
    QPoint m_pointer{};
};
