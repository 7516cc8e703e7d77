#include "platform/wayland/kwinscript.h"

#include "base/log.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStandardPaths>
#include <QUuid>

#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_limit = 1000;  // ms

const auto s_path = u"/org/example/brenvale/SnapWorkbench/Script"_s;
const auto s_pathInKWin5 = u"/%1"_s;
const auto s_pathInKWin6 = u"/Scripting/Script%1"_s;

QDBusMessage callOf(const QString &path, const QString &interface, const QString &method,
                    const QVariantList &arguments = {})
{
    QDBusMessage call = QDBusMessage::createMethodCall(u"org.kde.KWin"_s, path, interface, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

QDBusMessage callOfScripting(const QString &method, const QVariantList &arguments)
{
    return callOf(u"/Scripting"_s, u"org.kde.kwin.Scripting"_s, method, arguments);
}

}  // namespace

KWinScript::KWinScript()
    : m_bus(QDBusConnection::sessionBus()), m_password(QUuid::createUuid().toString(QUuid::Id128)),
      m_file(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
             u"/snapworkbench-XXXXXX.js"_s)
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        qCInfo(logGrab) << "KWin has not answered in time";
        finish({});
    });
    m_bus.registerObject(s_path, this, QDBusConnection::ExportAllSlots);
}

KWinScript::~KWinScript() { m_bus.unregisterObject(s_path); }

void KWinScript::run(const QString &text, std::function<void(const QString &)> answer)
{
    m_jobs.push_back({text, std::move(answer)});
    if (m_jobs.size() == 1)
        begin();
}

// A script runs once for each time that it is loaded. KWin does not load one whose name it has not
// quite forgotten yet.
void KWinScript::begin()
{
    m_plugin = u"snapworkbench-%1-%2"_s.arg(getpid()).arg(++m_runs);
    m_limit.start(s_limit);
    if (!m_file.open())
        return;
    m_file.resize(0);
    m_file.write(
        u"function tell(text) { callDBus(\"%1\", \"%2\", \"%3\", \"Tell\", \"%4\", text); }\n"_s
            .arg(m_bus.baseService(), s_path, u"org.example.brenvale.SnapWorkbench.Script"_s,
                 m_password)
            .toUtf8() +
        m_jobs.front().text.toUtf8());
    m_file.close();
    auto *watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(callOfScripting(u"loadScript"_s, {m_file.fileName(), m_plugin})), &m_file);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<int> number = *watcher;
        if (number.isError() || number.value() < 0)
            finish({});
        else
            call(s_pathInKWin6, number.value());
    });
}

void KWinScript::call(const QString &pathPattern, int number)
{
    auto *watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(callOf(pathPattern.arg(number), u"org.kde.kwin.Script"_s, u"run"_s)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, pathPattern, number] {
                watcher->deleteLater();
                if (watcher->isError() && pathPattern != s_pathInKWin5)
                    call(s_pathInKWin5, number);
                else if (watcher->isError())
                    finish({});
            });
}

void KWinScript::Tell(const QString &password, const QString &text)
{
    if (password == m_password)
        finish(text);
}

// An answer that comes too late finds no job, or is taken for that of the next one: both are about
// the same windows.
void KWinScript::finish(const QString &text)
{
    if (m_jobs.empty())
        return;
    m_limit.stop();
    m_bus.asyncCall(callOfScripting(u"unloadScript"_s, {m_plugin}));
    const Job done = std::move(m_jobs.front());
    m_jobs.pop_front();
    if (!m_jobs.empty())
        begin();
    done.answer(text);
}
