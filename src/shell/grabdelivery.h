#pragma once

#include "capture/grab.h"
#include "editing/recoveryfolder.h"

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QPoint>
#include <QString>

#include <memory>
#include <optional>

class Notices;
class PictureReading;
class Workbench;
struct NewPicture;

/// Brings the pictures of grabs to where they are to go, and tells the user what came of it. One
/// that could not get there opens in a tab.
class GrabDelivery : public QObject
{
    Q_OBJECT

public:
    /// All outlive this object, and `work` its jobs.
    GrabDelivery(Workbench &work, Notices &notices, PictureReading &reading);

    struct Picture {
        QPixmap picture{};  ///< cut to its outline
        QString name{};     ///< for the document; may be empty
        PictureOrigin origin{};
        std::optional<QPoint> place{};  ///< where the desktop showed it, see Grab
        GrabGoals goals{};
    };
    /// Begins with all of it; files are written and texts read by workers. False where the picture
    /// opens in no tab.
    bool deliver(const Picture &picture);

signals:
    /// A picture for who has asked for it over the bus.
    void handedOver(const GrabDelivery::Picture &picture);
    /// A picture that is to stay above all windows. `place` as in Grab.
    void pinned(const QImage &picture, const QString &name, const std::optional<QPoint> &place);
    /// The user wants to see a picture, which is the current document now.
    void wanted();

private:
    struct Delivery;
    using DeliveryPtr = std::shared_ptr<Delivery>;

    void openTab(Delivery &delivery);
    void keepInTab(Delivery &delivery);
    void save(const DeliveryPtr &delivery);
    void saved(Delivery &delivery, const NewPicture &made);
    void bindTab(const Delivery &delivery, const NewPicture &made);
    void readText(const DeliveryPtr &delivery);
    void endPart(const DeliveryPtr &delivery);
    void notify(const DeliveryPtr &delivery);
    void show(const DeliveryPtr &delivery);
    QImage pictureNow(const Delivery &delivery);

    Workbench &m_work;
    Notices &m_notices;
    PictureReading &m_reading;
};
