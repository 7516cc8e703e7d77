#pragma once

#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QString>
#include <QVariantMap>

/// A call of `Grab` over the session bus, whose caller waits until the grab is over. To be answered
/// once, by either function.
class GrabCall
{
public:
    /// `message` is not answered by who received it.
    explicit GrabCall(const QDBusMessage &message) : m_message(message)
    {
        message.setDelayedReply(true);
    }

    QVariantMap options() const;
    /// The unique name on the bus.
    QString caller() const { return m_message.service(); }

    /// Part of the error's name, which a caller goes by.
    enum class Error { GivenUp, Busy, Refused, BadOption };
    /// `reason` is for the user.
    void refuse(Error error, const QString &reason) const;
    /// `picture` is a file with PNG, at its begin.
    void answer(const QDBusUnixFileDescriptor &picture, const QVariantMap &result) const;

private:
    QDBusMessage m_message;
};
