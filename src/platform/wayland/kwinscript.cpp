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

constexpr int s_limit = 700;  // ms, of a try
constexpr int s_tries = 5;

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

KWinScript::KWinScript(const QDBusConnection &bus)
    : m_bus(bus), m_password(QUuid::createUuid().toString(QUuid::Id128)),
      m_file(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
             u"/snapworkbench-XXXXXX.js"_s)
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &KWinScript::tryAgain);
    m_bus.registerObject(s_path, this, QDBusConnection::ExportAllSlots);
}

KWinScript::~KWinScript() { m_bus.unregisterObject(s_path); }

void KWinScript::run(const QString &text, std::function<void(const QString &)> answer)
{
    m_jobs.push_back({text, std::move(answer)});
    if (m_jobs.size() == 1)
        begin();
}

void KWinScript::begin()
{
    m_firstTry = m_tries + 1;
    load();
}

// KWin numbers scripts by how many there are. If two programs load and unload theirs at the same
// time both may get one number, and then only one of them runs.
void KWinScript::tryAgain()
{
    unload();
    if (m_tries + 1 < m_firstTry + s_tries) {
        load();
        return;
    }
    qCInfo(logGrab) << "KWin has not answered in time";
    finish({});
}

// A script runs once for each time that it is loaded. KWin does not load one whose name it has not
// quite forgotten yet.
void KWinScript::load()
{
    m_plugin = u"snapworkbench-%1-%2"_s.arg(getpid()).arg(++m_tries);
    m_limit.start(s_limit);
    if (!m_file.open())
        return;
    m_file.resize(0);
    m_file.write(
        u"function tell(text) { callDBus(\"%1\", \"%2\", \"%3\", \"Tell\", \"%4\", %5, text); }\n"_s
            .arg(m_bus.baseService(), s_path, u"org.example.brenvale.SnapWorkbench.Script"_s,
                 m_password, QString::number(m_tries))
            .toUtf8() +
        m_jobs.front().text.toUtf8());
    m_file.close();
    auto *watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(callOfScripting(u"loadScript"_s, {m_file.fileName(), m_plugin})), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, attempt = m_tries] {
        watcher->deleteLater();
        const QDBusPendingReply<int> number = *watcher;
        if (attempt != m_tries || m_jobs.empty())
            return;
        if (number.isError())
            finish({});
        else if (number.value() >= 0)
            call(s_pathInKWin6, number.value());
    });
}

void KWinScript::call(const QString &pathPattern, int number)
{
    auto *watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(callOf(pathPattern.arg(number), u"org.kde.kwin.Script"_s, u"run"_s)), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, pathPattern, number, attempt = m_tries] {
                watcher->deleteLater();
                if (watcher->isError() && attempt == m_tries && pathPattern != s_pathInKWin5)
                    call(s_pathInKWin5, number);
            });
}

// An answer that comes too late is for nobody.
void KWinScript::Tell(const QString &password, int attempt, const QString &text)
{
    if (password == m_password && attempt >= m_firstTry && !m_jobs.empty())
        finish(text);
}

void KWinScript::unload() { m_bus.asyncCall(callOfScripting(u"unloadScript"_s, {m_plugin})); }

void KWinScript::finish(const QString &text)
{
    m_limit.stop();
    unload();
    const Job done = std::move(m_jobs.front());
    m_jobs.pop_front();
    // What is told by one that is still to run counts for none of the others.
    m_firstTry = m_tries + 1;
    if (!m_jobs.empty())
        begin();
    done.answer(text);
}
