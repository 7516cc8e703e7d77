#include "platform/wayland/kwinhotkeys.h"

#include "base/log.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QKeySequence>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_endLimit = 500;      // ms
constexpr uint s_isPresent = 2;      // the program hears it now; what the user has set for it stays
constexpr uint s_isChosen = 4;       // these keys count, whatever was set before
constexpr qsizetype s_keyCount = 4;  // in a sequence

const auto s_service = u"org.kde.kglobalaccel"_s;
const auto s_path = u"/kglobalaccel"_s;
const auto s_interface = u"org.kde.KGlobalAccel"_s;
const auto s_component = u"snapworkbench"_s;

QDBusMessage callOf(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(s_service, s_path, s_interface, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

QString textOf(const QList<KWinHotKeys::Sequence> &sequences)
{
    QStringList texts;
    for (const KWinHotKeys::Sequence &sequence : sequences) {
        if (!sequence.keys.isEmpty() && sequence.keys.first() != 0)
            texts.append(QKeySequence(sequence.keys.first()).toString(QKeySequence::NativeText));
    }
    return texts.join(u", "_s);
}

}  // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const KWinHotKeys::Sequence &sequence)
{
    argument.beginStructure();
    argument << sequence.keys;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, KWinHotKeys::Sequence &sequence)
{
    argument.beginStructure();
    argument >> sequence.keys;
    argument.endStructure();
    return argument;
}

bool KWinHotKeys::isThere(const QDBusConnection &bus)
{
    return bus.isConnected() && bus.interface()->isServiceRegistered(s_service);
}

KWinHotKeys::KWinHotKeys(QDBusConnection bus) : m_bus(std::move(bus))
{
    qDBusRegisterMetaType<Sequence>();
    qDBusRegisterMetaType<QList<Sequence>>();
    m_bus.connect(s_service, u"/component/"_s + s_component, u"org.kde.kglobalaccel.Component"_s,
                  u"globalShortcutPressed"_s, this, SLOT(pressed(QString, QString, qlonglong)));
    m_bus.connect(s_service, s_path, s_interface, u"yourShortcutsChanged"_s, this,
                  SLOT(changed(QStringList, QList<KWinHotKeys::Sequence>)));
}

KWinHotKeys::~KWinHotKeys()
{
    for (const Key &key : std::as_const(m_keys))
        release(key);
}

void KWinHotKeys::add(int number, QKeyCombination keys) { set(number, keys, s_isPresent); }

void KWinHotKeys::change(int number, QKeyCombination keys)
{
    set(number, keys, s_isPresent | s_isChosen);
}

void KWinHotKeys::set(int number, QKeyCombination keys, uint how)
{
    const Name known = m_nameOf(number);
    if (known.id.isEmpty())
        return;
    const QStringList name{s_component, known.id, u"Snap Workbench"_s, known.title};
    m_keys.insert(number, {name});
    Sequence wanted{QList<int>(s_keyCount)};
    wanted.keys.first() = keys.toCombined();
    m_bus.asyncCall(callOf(u"doRegister"_s, {name}));
    const QVariant sequences = QVariant::fromValue(QList<Sequence>{wanted});
    const QDBusPendingCall set =
        m_bus.asyncCall(callOf(u"setShortcutKeys"_s, {name, sequences, how}));
    auto *watcher = new QDBusPendingCallWatcher(set, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, name] {
        watcher->deleteLater();
        const QDBusPendingReply<QList<Sequence>> given = *watcher;
        if (given.isError())
            qCInfo(logBus) << "no hot key:" << name << given.error().message();
        else
            changed(name, given.value());
    });
}

void KWinHotKeys::remove(int number) { release(m_keys.take(number)); }

// It stays known there, with the keys that the user may have set, but is heard no more. The program
// may end right after, so the answer is waited for.
void KWinHotKeys::release(const Key &key)
{
    if (!key.name.isEmpty())
        m_bus.call(callOf(u"setInactive"_s, {key.name}), QDBus::Block, s_endLimit);
}

void KWinHotKeys::pressed(const QString & /*component*/, const QString &id, qlonglong /*time*/)
{
    for (auto key = m_keys.cbegin(); key != m_keys.cend(); ++key) {
        if (key->name.value(1) == id && m_handler) {
            m_handler(key.key());
            return;
        }
    }
}

void KWinHotKeys::changed(const QStringList &name, const QList<KWinHotKeys::Sequence> &keys)
{
    for (Key &key : m_keys) {
        if (key.name.mid(0, 2) == name.mid(0, 2))
            key.text = textOf(keys);
    }
    if (m_changed)
        m_changed();
}
