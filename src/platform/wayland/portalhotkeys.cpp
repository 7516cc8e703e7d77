#include "platform/wayland/portalhotkeys.h"

#include "base/log.h"
#include "config/settings.h"
#include "platform/keysymbols.h"
#include "platform/services.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QKeySequence>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// As the portal is told of a combination, and tells of it.
struct PortalShortcut {
    QString id{};
    QVariantMap values{};
};

const auto s_interface = "org.freedesktop.portal.GlobalShortcuts"_L1;
const auto s_refused = "HotKeysRefused"_L1;  // a setting

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.values;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.values;
    argument.endStructure();
    return argument;
}

// Some desktops describe keys for their users, others only for programs ("<Control><Alt>r").
QString shown(const QString &description)
{
    const qsizetype begin = description.indexOf(u'<');
    if (begin < 0)
        return description;
    QString keys = description.mid(begin);
    keys.replace(u"<Control>"_s, u"Ctrl+"_s, Qt::CaseInsensitive)
        .replace(u"<Primary>"_s, u"Ctrl+"_s, Qt::CaseInsensitive)
        .replace(u"<Super>"_s, u"Meta+"_s, Qt::CaseInsensitive)
        .replace(u'<', QString())
        .replace(u'>', u'+');
    const QString text = QKeySequence(keys).toString(QKeySequence::NativeText);
    return text.isEmpty() ? description : text;
}

// As the portal reads keys.
QString triggerOf(QKeyCombination keys)
{
    const std::array<std::pair<Qt::KeyboardModifier, const char *>, 4> modifiers{
        {{Qt::ControlModifier, "CTRL+"},
         {Qt::AltModifier, "ALT+"},
         {Qt::ShiftModifier, "SHIFT+"},
         {Qt::MetaModifier, "LOGO+"}}};
    QString trigger;
    for (const auto &[modifier, name] : modifiers) {
        if (keys.keyboardModifiers().testFlag(modifier))
            trigger += QLatin1StringView(name);
    }
    return trigger + keySymbolName(keys.key());
}

}  // namespace

PortalHotKeys::PortalHotKeys(std::shared_ptr<Portal> portal, std::function<void(bool)> tell)
    : m_portal(std::move(portal)), m_tell(std::move(tell))
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    m_portal->listen(s_interface, u"Activated"_s, this, SLOT(press(QDBusMessage)));
    m_portal->listen(s_interface, u"ShortcutsChanged"_s, this, SLOT(change(QDBusMessage)));
    connect(m_portal.get(), &Portal::appeared, this, &PortalHotKeys::start);
    connect(m_portal.get(), &Portal::gone, this, [this] {
        m_session.clear();
        m_canAsk = false;
        update(false);
    });
}

PortalHotKeys::~PortalHotKeys() = default;

// All of them are asked for together. A portal that does not run is not started for it: what runs
// before the desktop has told its bus of the session finds no desktop for all that follow.
void PortalHotKeys::add(int number, QKeyCombination keys)
{
    m_wanted.insert(number, keys);
    if (std::exchange(m_isDue, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_portal->isRunning())
                start();
        },
        Qt::QueuedConnection);
}

// What a desktop gave before it may give again, whatever is asked for now; then it is its settings
// that change it.
void PortalHotKeys::change(int number, QKeyCombination keys)
{
    add(number, keys);
    ask();
}

// A question that the user has left open when the program ends is not asked again either: the
// desktop's dialogs may outlive the program, and there would be one more at each start.
void PortalHotKeys::remove(int number)
{
    m_wanted.remove(number);
    m_keys.remove(number);
    if (m_wanted.isEmpty() && std::exchange(m_isBinding, false)) {
        m_request.reset();
        SetConfigString(s_refused, u"1"_s);
    }
}

void PortalHotKeys::start()
{
    if (!m_isDue || m_request || !m_session.isEmpty())
        return;
    const auto hears = [this](const Portal::Answer &answer) { hearStarted(answer); };
    // What serves the portal may remember a session that it has forgotten.
    const QString token = u"snapworkbench%1"_s.arg(++m_sessions);
    m_request = m_portal->ask(s_interface, u"CreateSession"_s, {},
                              {{u"session_handle_token"_s, token}}, hears);
}

void PortalHotKeys::hearStarted(const Portal::Answer &answer)
{
    m_request.reset();
    m_session = answer.results.value(u"session_handle"_s).toString();
    if (answer.code != Portal::Answer::Done || m_session.isEmpty())
        return;
    m_canAsk = !m_isAsked && GetConfigString(s_refused).toInt() == 1;
    if (m_canAsk)
        update(false);
    else
        bind();
}

// In a session keys can be asked for only once, so there has to be a new one.
void PortalHotKeys::ask()
{
    if (m_request || m_session.isEmpty())
        return;
    m_isAsked = true;
    const QDBusMessage close = Portal::method(u"org.freedesktop.portal.Session"_s, u"Close"_s,
                                              std::exchange(m_session, QString()));
    m_portal->call(close, this, [this](const QDBusMessage &) { start(); });
}

void PortalHotKeys::bind()
{
    QList<PortalShortcut> shortcuts;
    for (auto it = m_wanted.cbegin(); it != m_wanted.cend(); ++it) {
        const Name name = m_nameOf ? m_nameOf(it.key()) : Name();
        const QString trigger = triggerOf(it.value());
        if (!name.id.isEmpty())
            shortcuts.append(
                {name.id, {{u"description"_s, name.title}, {u"preferred_trigger"_s, trigger}}});
    }
    const QVariantList arguments{QVariant::fromValue(QDBusObjectPath(m_session)),
                                 QVariant::fromValue(shortcuts), QString()};
    m_isBinding = true;
    m_request = m_portal->ask(s_interface, u"BindShortcuts"_s, arguments, {},
                              [this](const Portal::Answer &answer) { hearBound(answer); });
}

// The code says little: there is a desktop that gives the keys and calls that a failure.
void PortalHotKeys::hearBound(const Portal::Answer &answer)
{
    m_request.reset();
    m_isBinding = false;
    if (answer.how != Portal::Answer::How::Given)
        return;
    readKeys(answer.results.value(u"shortcuts"_s));
    if (m_keys.isEmpty())
        lookAgain();
    else
        end(false);
}

void PortalHotKeys::lookAgain()
{
    const auto hears = [this](const Portal::Answer &answer) { hearListed(answer); };
    m_request = m_portal->ask(s_interface, u"ListShortcuts"_s,
                              {QVariant::fromValue(QDBusObjectPath(m_session))}, {}, hears);
}

void PortalHotKeys::hearListed(const Portal::Answer &answer)
{
    m_request.reset();
    if (answer.how != Portal::Answer::How::Given)
        return;
    readKeys(answer.results.value(u"shortcuts"_s));
    end(m_keys.isEmpty());
}

void PortalHotKeys::end(bool isRefused)
{
    if (isRefused)
        qCInfo(logBus) << "the desktop gives no hot keys";
    if (isRefused || !GetConfigString(s_refused).isEmpty())
        SetConfigString(s_refused, isRefused ? u"1"_s : u"0"_s);
    m_canAsk = isRefused;
    update(!isRefused);
}

void PortalHotKeys::readKeys(const QVariant &shortcuts)
{
    m_keys.clear();
    for (const PortalShortcut &shortcut : qdbus_cast<QList<PortalShortcut>>(shortcuts)) {
        for (auto it = m_wanted.cbegin(); it != m_wanted.cend(); ++it) {
            if (m_nameOf && m_nameOf(it.key()).id == shortcut.id)
                m_keys.insert(it.key(),
                              shown(shortcut.values.value(u"trigger_description"_s).toString()));
        }
    }
}

void PortalHotKeys::update(bool areThere)
{
    if (!areThere)
        m_keys.clear();
    m_tell(areThere);
    if (m_changed)
        m_changed();
}

// Session, name, time stamp and options.
void PortalHotKeys::press(const QDBusMessage &signal)
{
    const QVariantList values = signal.arguments();
    if (values.size() < 4 || values[0].value<QDBusObjectPath>().path() != m_session)
        return;
    const auto options = qdbus_cast<QVariantMap>(values[3]);
    for (auto it = m_wanted.cbegin(); it != m_wanted.cend(); ++it) {
        if (!m_nameOf || m_nameOf(it.key()).id != values[1].toString())
            continue;
        services().watch->useToken(options.value(u"activation_token"_s).toByteArray());
        if (m_handler)
            m_handler(it.key());
        return;
    }
}

void PortalHotKeys::change(const QDBusMessage &signal)
{
    const QVariantList values = signal.arguments();
    if (values.size() < 2 || values[0].value<QDBusObjectPath>().path() != m_session)
        return;
    readKeys(values[1]);
    m_canAsk = m_keys.isEmpty();
    update(!m_canAsk);
}
