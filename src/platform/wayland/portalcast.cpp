#include "platform/wayland/portalcast.h"

#include "base/log.h"
#include "config/settings.h"
#include "platform/wayland/caststreams.h"

#include <QDBusArgument>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QTimer>

#include <algorithm>
#include <utility>

#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace {

const auto s_interface = "org.freedesktop.portal.ScreenCast"_L1;
const auto s_sessions = "org.freedesktop.portal.Session"_L1;
const auto s_token = "ScreenCastToken"_L1;  // a setting
constexpr uint s_screens = 1;               // a kind of source
constexpr uint s_pointerHidden = 1;
constexpr uint s_untilRevoked = 2;
constexpr int s_aliveLimit = 500;  // ms

// As the portal tells of what it casts.
struct CastSource {
    uint node = 0;
    QVariantMap values{};
};

const QDBusArgument &operator>>(const QDBusArgument &argument, CastSource &source)
{
    argument.beginStructure();
    argument >> source.node >> source.values;
    argument.endStructure();
    return argument;
}

}  // namespace

struct PortalCast::Session {
    ScreenLayout layout;
    PictureRoute::Begun answer;
    QObject context{};  // of calls for this one
    QTimer limit{};     // of what is waited for; not while the user may be asked
    QString path{};     // empty until there is one
    std::unique_ptr<PortalRequest> request{};
    QList<QPoint> corners{};  // of the screens that are shown, in logical units
    std::unique_ptr<CastStreams> streams{};
};

PortalCast::PortalCast(std::shared_ptr<Portal> portal, CastLimits limits)
    : m_portal(std::move(portal)), m_limits(limits)
{
    m_portal->listen(s_sessions, u"Closed"_s, this, SLOT(close(QDBusMessage)));
}

PortalCast::~PortalCast() { stop(); }

// Asked by another connection: the first call of the portal's own has to be its registration.
bool PortalCast::isThere(const Portal &portal)
{
    if (!portal.isRunning())
        return true;
    QDBusMessage get = Portal::method(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    get << QString(s_interface) << u"AvailableSourceTypes"_s;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(get, QDBus::Block, s_aliveLimit);
    return reply.type() == QDBusMessage::ReplyMessage &&
           (reply.arguments().value(0).value<QDBusVariant>().variant().toUInt() & s_screens);
}

bool PortalCast::mayAsk() const { return GetConfigString(s_token).isEmpty(); }

void PortalCast::start(const ScreenLayout &layout, const PictureRoute::Begun &answerTo)
{
    stop();
    m_session = std::make_unique<Session>();
    m_session->layout = layout;
    m_session->answer = answerTo;
    m_session->limit.setSingleShot(true);
    connect(&m_session->limit, &QTimer::timeout, this,
            [this] { answer(false, tr("The desktop did not show its screens in time.")); });
    m_session->limit.start(m_limits.opened);
    ask(u"CreateSession"_s, {},
        {{u"session_handle_token"_s, u"snapworkbenchcast%1"_s.arg(++m_sessions)}},
        &PortalCast::select);
}

void PortalCast::ask(const QString &method, const QVariantList &arguments,
                     const QVariantMap &options, Hears hears)
{
    m_session->request = m_portal->ask(
        s_interface, method, arguments, options, [this, hears](const Portal::Answer &answer) {
            const bool isDone =
                answer.how == Portal::Answer::How::Given && answer.code == Portal::Answer::Done;
            if (isDone)
                (this->*hears)(answer.results);
            else
                end(answer);
        });
}

void PortalCast::select(const QVariantMap &results)
{
    m_session->path = results.value(u"session_handle"_s).toString();
    QVariantMap options{{u"types"_s, s_screens},
                        {u"multiple"_s, m_session->layout.screens().size() > 1},
                        {u"cursor_mode"_s, s_pointerHidden},
                        {u"persist_mode"_s, s_untilRevoked}};
    if (!mayAsk())
        options.insert(u"restore_token"_s, GetConfigString(s_token));
    ask(u"SelectSources"_s, {QVariant::fromValue(QDBusObjectPath(m_session->path))}, options,
        &PortalCast::show);
}

void PortalCast::show(const QVariantMap & /*results*/)
{
    m_session->limit.stop();
    ask(u"Start"_s, {QVariant::fromValue(QDBusObjectPath(m_session->path)), QString()}, {},
        &PortalCast::open);
}

// Where the user has left screens out they can choose anew the next time.
void PortalCast::open(const QVariantMap &results)
{
    const QList<ScreenLayout::Screen> &screens = m_session->layout.screens();
    QList<uint> nodes;
    for (const auto &source : qdbus_cast<QList<CastSource>>(results.value(u"streams"_s))) {
        const QVariant position = source.values.value(u"position"_s);
        const bool isPlaced = position.canConvert<QDBusArgument>();
        if (!isPlaced && screens.size() > 1)
            continue;
        nodes.append(source.node);
        m_session->corners.append(isPlaced ? qdbus_cast<QPoint>(position)
                                           : screens.value(0).logical.topLeft());
    }
    const bool isComplete = std::all_of(screens.begin(), screens.end(), [this](const auto &screen) {
        return m_session->corners.contains(screen.logical.topLeft());
    });
    SetConfigString(s_token, isComplete ? results.value(u"restore_token"_s).toString() : QString());
    m_session->limit.start(m_limits.shown);
    QDBusMessage call = Portal::method(s_interface, u"OpenPipeWireRemote"_s);
    call << QVariant::fromValue(QDBusObjectPath(m_session->path)) << QVariantMap();
    m_portal->call(call, &m_session->context, [this, nodes](const QDBusMessage &reply) {
        const auto remote = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
        const int descriptor =
            remote.isValid() ? fcntl(remote.fileDescriptor(), F_DUPFD_CLOEXEC, 0) : -1;
        if (descriptor < 0 || nodes.isEmpty())
            answer(false, tr("The desktop's screens can't be watched: PipeWire gives no pictures. "
                             "Is it running?"));
        else
            receive(descriptor, nodes);
    });
}

void PortalCast::receive(int descriptor, const QList<uint> &nodes)
{
    m_session->streams = std::make_unique<CastStreams>(descriptor, nodes);
    connect(m_session->streams.get(), &CastStreams::ready, this, [this] { answer(true); });
    connect(m_session->streams.get(), &CastStreams::ended, this, &PortalCast::lose);
}

// The streams of a session that the user ends stay as they are, and bring nothing any more.
void PortalCast::close(const QDBusMessage &signal)
{
    if (m_session && signal.path() == m_session->path)
        lose();
}

void PortalCast::lose() { answer(false, tr("The desktop has stopped showing its screens.")); }

void PortalCast::end(const Portal::Answer &given)
{
    switch (given.how) {
    case Portal::Answer::How::Absent:
        answer(false, tr("This desktop lets no program watch its screens."));
        return;
    case Portal::Answer::How::Lost:
        answer(false, tr("The desktop's portal failed before it showed the screens. Try again."));
        return;
    case Portal::Answer::How::Given:
        break;
    }
    // What was kept may be of no use any more.
    SetConfigString(s_token, {});
    answer(false, given.code == Portal::Answer::Cancelled
                      ? tr("You have cancelled the desktop's question, so the screen can't be "
                           "watched.")
                      : tr("The desktop failed to show its screens. Try again."));
}

void PortalCast::answer(bool areThere, const QString &trouble)
{
    m_session->limit.stop();
    const PictureRoute::Begun hears = std::exchange(m_session->answer, nullptr);
    if (!areThere) {
        qCInfo(logGrab) << "no screen cast:" << trouble;
        stop();
    }
    if (hears)
        hears(areThere, trouble);
}

// The streams go first, for the end of the session is theirs.
void PortalCast::stop()
{
    const std::unique_ptr<Session> ended = std::move(m_session);
    if (!ended)
        return;
    ended->streams.reset();
    if (!ended->path.isEmpty())
        m_portal->call(Portal::method(u"org.freedesktop.portal.Session"_s, u"Close"_s, ended->path),
                       m_portal.get(), [](const QDBusMessage &) {});
}

QList<QImage> PortalCast::pictures(const ScreenLayout &layout, const QRect &area) const
{
    if (!m_session || !m_session->streams || layout != m_session->layout)
        return {};
    QList<QImage> result;
    for (const ScreenLayout::Screen &screen : layout.screens()) {
        result.append(QImage());
        if (!screen.area.intersects(area))
            continue;
        const qsizetype index = m_session->corners.indexOf(screen.logical.topLeft());
        if (index >= 0)
            result.last() = fitted(m_session->streams->latest(index), screen.pixels);
        if (result.last().isNull())
            return {};
    }
    return result;
}
