#pragma once

#include "shell/grabdelivery.h"
#include "shell/pin.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>
#include <optional>

class Notices;
class Workbench;

/// The pictures that are kept above all windows. They can be in no picture that is taken, unless
/// the user wants that, and come back at the next start if the user wants that.
class Pins : public QObject
{
    Q_OBJECT

public:
    /// All outlive this object.
    Pins(Workbench &work, GrabDelivery &delivery, Notices &notices);
    ~Pins() override;

    /// Pins a picture: with its top left pixel at `place`, in global device pixels, as large as it
    /// is; or without a place in the middle of the screen with the pointer, small enough for it.
    void add(const QImage &picture, const QString &name, const std::optional<QPoint> &place = {});
    bool isEmpty() const { return m_pins.isEmpty(); }
    /// Those that are shown.
    QList<const QWidget *> shown() const;
    /// Out of the way of a grab.
    void leaveScreen();
    /// And back; the one that had the keyboard gets it again, if told so.
    void comeBack(bool withKeyboard);
    /// The keyboard for the one after that which has it; for the first one if none has.
    void focusNext();
    void closeAll();

    /// Keeps them in a folder, which need not exist, as long as the preferences say so; those that
    /// an earlier run has left there are shown again.
    void keepIn(const QString &folder);
    /// Writes what has changed, or removes all, as the preferences say now. A worker does it.
    void store();
    /// The same at the end of the program, at once. Those that close from then on stay kept.
    void end();

signals:
    /// There are none any more, or some now.
    void changed();
    /// One was opened in a tab, which the user wants to see.
    void editWanted();

private:
    Pin *open(const PinnedPicture &pinned);
    void goTo(GrabGoal goal, const Pin &pin);
    void storeSoon();
    QList<PinnedPicture> toStore() const;
    void tell(const QString &trouble);

    Workbench &m_work;
    GrabDelivery &m_delivery;
    Notices &m_notices;
    QList<Pin *> m_pins{};
    bool m_isOnScreen = true;
    QPointer<Pin> m_active{};  ///< had the keyboard when they left the screen
    QString m_folder{};        ///< empty until they are kept
    bool m_isToStore = false;
    QString m_trouble{};  ///< what has been told of it, while it holds
};
