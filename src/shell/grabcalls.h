#pragma once

#include "capture/grab.h"
#include "platform/xdg/grabcall.h"
#include "shell/grabdelivery.h"

#include <QDBusServiceWatcher>
#include <QObject>

#include <optional>

class GrabFlow;
class PictureJobs;
enum class GrabCommand;

/// What a caller over the bus wants to have taken.
struct GrabOrder {
    GrabCommand command{};
    GrabGoals goals{};
    int delay = 0;                       ///< seconds before it
    std::optional<bool> showsPointer{};  ///< in the picture; none: as the preferences say
};
/// Reads the options of a call. Nothing where there is one that is unknown or makes no sense;
/// `fault` says which, for the author of the caller.
std::optional<GrabOrder> grabOrder(const QVariantMap &options, QString *fault);

/// Grabs that other programs have ordered over the session bus: each caller gets its picture, or is
/// told why there is none. A caller that leaves the bus gives its grab up.
class GrabCalls : public QObject
{
    Q_OBJECT

public:
    /// All outlive this object.
    GrabCalls(GrabFlow &flow, GrabDelivery &delivery, PictureJobs &jobs);

    void take(const GrabCall &call);
    /// What was ordered of the one under way; nothing of its own while there is none.
    const GrabOrder &order() const { return m_order; }

private:
    void watchCaller();
    void callerLeft(const QString &caller);
    void end();
    void handOver(const GrabCall &call, const GrabDelivery::Picture &picture);

    GrabFlow &m_flow;
    PictureJobs &m_jobs;
    QDBusServiceWatcher m_callers;

    // The one under way, and what has come of it so far.
    std::optional<GrabCall> m_call{};
    GrabOrder m_order{};
    std::optional<GrabDelivery::Picture> m_picture{};
    QString m_failure{};
};
