#include "shell/grabcalls.h"

#include "platform/services.h"
#include "shell/grabflow.h"
#include "shell/picturejobs.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>

#include <algorithm>
#include <array>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_longestDelay = 24 * 60 * 60;  // seconds

// The pick asks whether the window is meant or what scrolls in it.
constexpr std::array<std::pair<const char *, GrabCommand>, 9> s_kinds{{
    {"region", GrabCommand::Rectangle},
    {"ellipse", GrabCommand::Ellipse},
    {"polygon", GrabCommand::Polygon},
    {"screen", GrabCommand::Screen},
    {"monitor", GrabCommand::Monitor},
    {"window", GrabCommand::Window},
    {"active", GrabCommand::Active},
    {"scroll", GrabCommand::Window},
    {"last", GrabCommand::Last},
}};

// PNG in memory that nobody can change any more, so that a caller may map it. Invalid where there
// is not enough memory.
QDBusUnixFileDescriptor sealedFile(const QImage &picture)
{
    QDBusUnixFileDescriptor result;
    result.giveFileDescriptor(memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const int descriptor = result.fileDescriptor();
    QFile file;
    if (!result.isValid() || !file.open(descriptor, QIODevice::WriteOnly) ||
        !picture.save(&file, "PNG") || !file.flush() || lseek(descriptor, 0, SEEK_SET) != 0)
        return {};
    const int seals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    return fcntl(descriptor, F_ADD_SEALS, seals) == 0 ? result : QDBusUnixFileDescriptor();
}

}  // namespace

std::optional<GrabOrder> grabOrder(const QVariantMap &options, QString *fault)
{
    GrabOrder order{.goals = GrabGoal::Caller};
    bool hasKind = false;
    for (auto option = options.cbegin(); option != options.cend(); ++option) {
        const QVariant &value = option.value();
        const bool isFlag = value.typeId() == QMetaType::Bool;
        bool isRead = false;
        if (option.key() == u"kind") {
            const QByteArray name = value.toString().toLatin1();
            const auto kind = std::find_if(s_kinds.begin(), s_kinds.end(),
                                           [&](const auto &row) { return name == row.first; });
            isRead = hasKind = kind != s_kinds.end();
            order.command = hasKind ? kind->second : GrabCommand::Show;
        } else if (option.key() == u"delay") {
            order.delay = value.toInt();
            isRead = value.typeId() == QMetaType::Int && order.delay >= 0 &&
                     order.delay <= s_longestDelay;
        } else if (option.key() == u"pointer") {
            order.showsPointer = value.toBool();
            isRead = isFlag;
        } else if (option.key() == u"copy" || option.key() == u"tab") {
            order.goals.setFlag(option.key() == u"tab" ? GrabGoal::Tab : GrabGoal::Copy,
                                value.toBool());
            isRead = isFlag;
        }
        if (!isRead) {
            *fault = u"The option \"%1\" is unknown or has a wrong value"_s.arg(option.key());
            return {};
        }
    }
    if (!hasKind) {
        *fault = u"The option \"kind\" is missing"_s;
        return {};
    }
    return order;
}

GrabCalls::GrabCalls(GrabFlow &flow, GrabDelivery &delivery, PictureJobs &jobs)
    : m_flow(flow), m_jobs(jobs)
{
    m_callers.setConnection(QDBusConnection::sessionBus());
    m_callers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_callers, &QDBusServiceWatcher::serviceUnregistered, this, &GrabCalls::callerLeft);
    connect(&delivery, &GrabDelivery::handedOver, this,
            [this](const GrabDelivery::Picture &picture) { m_picture = picture; });
    connect(&flow, &GrabFlow::failed, this, [this](const QString &reason) { m_failure = reason; });
    connect(&flow, &GrabFlow::over, this, &GrabCalls::end);
}

void GrabCalls::take(const GrabCall &call)
{
    QString fault;
    const std::optional<GrabOrder> order = grabOrder(call.options(), &fault);
    if (!order) {
        call.refuse(GrabCall::Error::BadOption, fault);
        return;
    }
    if (const QString lack = services().abilities.lackOf(Ability::PointerShape);
        order->showsPointer.value_or(false) && !lack.isEmpty()) {
        call.refuse(GrabCall::Error::Refused, lack);
        return;
    }
    if (m_flow.state() != GrabState::Idle) {
        call.refuse(GrabCall::Error::Busy, tr("Another picture is being taken."));
        return;
    }
    m_call = call;
    m_order = *order;
    m_picture.reset();
    m_failure.clear();
    watchCaller();
    // Most grabs are over when this returns.
    m_flow.press(order->command, order->goals, order->delay > 0 ? GrabWay::CountsDown : GrabWays());
}

// One that has left before it is watched is found by asking.
void GrabCalls::watchCaller()
{
    const QString caller = m_call->caller();
    m_callers.addWatchedService(caller);
    const QDBusPendingCall question =
        QDBusConnection::sessionBus().interface()->asyncCall(u"NameHasOwner"_s, caller);
    auto *answer = new QDBusPendingCallWatcher(question, this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, caller] {
        answer->deleteLater();
        const QDBusPendingReply<bool> isThere = *answer;
        if (isThere.isValid() && !isThere.value())
            callerLeft(caller);
    });
}

void GrabCalls::callerLeft(const QString &caller)
{
    if (m_call && m_call->caller() == caller)
        m_flow.cancel();
}

void GrabCalls::end()
{
    if (!m_call)
        return;
    const GrabCall call = *std::exchange(m_call, std::nullopt);
    m_order = {};
    m_callers.removeWatchedService(call.caller());
    if (const auto picture = std::exchange(m_picture, std::nullopt))
        handOver(call, *picture);
    else if (!m_failure.isEmpty())
        call.refuse(GrabCall::Error::Refused, m_failure);
    else
        call.refuse(GrabCall::Error::GivenUp, tr("The picture was given up."));
}

void GrabCalls::handOver(const GrabCall &call, const GrabDelivery::Picture &picture)
{
    const QVariantMap result{{u"name"_s, picture.name},
                             {u"width"_s, picture.picture.width()},
                             {u"height"_s, picture.picture.height()},
                             {u"kind"_s, picture.origin.kind}};
    const auto file = std::make_shared<QDBusUnixFileDescriptor>();
    m_jobs.start(
        PictureJobs::Kind::Pack, 0, {},
        [image = picture.picture.toImage(), file](PictureProgress &) { *file = sealedFile(image); },
        [call, result, file] {
            if (file->isValid())
                call.answer(*file, result);
            else
                call.refuse(GrabCall::Error::Refused,
                            tr("There is not enough memory for the picture."));
        });
}
