#include "platform/wayland/kwinhotkeys.h"

#include "base/log.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QKeySequence>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_endLimit = 500;      // ms
constexpr uint s_isPresent = 2;      // the program hears it now; what the user has set for it stays
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

bool KWinHotKeys::isThere()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() && bus.interface()->isServiceRegistered(s_service);
}

KWinHotKeys::KWinHotKeys()
{
    qDBusRegisterMetaType<Sequence>();
    qDBusRegisterMetaType<QList<Sequence>>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(s_service, u"/component/"_s + s_component, u"org.kde.kglobalaccel.Component"_s,
                u"globalShortcutPressed"_s, this, SLOT(pressed(QString, QString, qlonglong)));
    bus.connect(s_service, s_path, s_interface, u"yourShortcutsChanged"_s, this,
                SLOT(changed(QStringList, QList<KWinHotKeys::Sequence>)));
}

KWinHotKeys::~KWinHotKeys()
{
    for (const int number : m_keys.keys())
        remove(number);
}

QStringList KWinHotKeys::nameOf(int number) const
{
    const Name name = m_nameOf(number);
    return {s_component, name.id, u"Snap Workbench"_s, name.title};
}

void KWinHotKeys::add(int number, char letter)
{
    if (m_nameOf(number).id.isEmpty())
        return;
    m_keys.insert(number, {});
    const QStringList name = nameOf(number);
    Sequence wanted{QList<int>(s_keyCount)};
    wanted.keys.first() =
        QKeyCombination(Qt::ControlModifier | Qt::AltModifier, static_cast<Qt::Key>(letter))
            .toCombined();
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.asyncCall(callOf(u"doRegister"_s, {name}));
    const QVariant sequences = QVariant::fromValue(QList<Sequence>{wanted});
    const QDBusPendingCall set =
        bus.asyncCall(callOf(u"setShortcutKeys"_s, {name, sequences, s_isPresent}));
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

// It stays known there, with the keys that the user may have set, but is heard no more. The program
// may end right after, so the answer is waited for.
void KWinHotKeys::remove(int number)
{
    if (m_keys.remove(number) > 0)
        QDBusConnection::sessionBus().call(callOf(u"setInactive"_s, {nameOf(number)}), QDBus::Block,
                                           s_endLimit);
}

void KWinHotKeys::pressed(const QString & /*component*/, const QString &id, qlonglong /*time*/)
{
    for (auto key = m_keys.keyBegin(); key != m_keys.keyEnd(); ++key) {
        if (m_nameOf(*key).id == id && m_handler) {
            m_handler(*key);
            return;
        }
    }
}

void KWinHotKeys::changed(const QStringList &name, const QList<KWinHotKeys::Sequence> &keys)
{
    for (auto known = m_keys.begin(); known != m_keys.end(); ++known) {
        if (name.size() > 1 && name[0] == s_component && name[1] == m_nameOf(known.key()).id)
            *known = textOf(keys);
    }
}
