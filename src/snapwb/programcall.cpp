#include "snapwb/programcall.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QEventLoop>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTimer>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

// The program's name on the bus, and that of its own interface.
const auto s_name = "org.example.brenvale.SnapWorkbench"_L1;
const auto s_path = "/org/example/brenvale/SnapWorkbench"_L1;
constexpr int s_startLimit = 30000;  // milliseconds

// The one that lies beside this one belongs to it, whatever else is installed.
bool start(bool isMinimized)
{
    const QString beside = QCoreApplication::applicationDirPath() + u"/SnapWorkbench"_s;
    QProcess process;
    process.setProgram(QFileInfo(beside).isExecutable()
                           ? beside
                           : QStandardPaths::findExecutable(u"snapworkbench"_s));
    if (isMinimized) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"SNAPWORKBENCH_MINIMIZED"_s, u"1"_s);
        process.setProcessEnvironment(environment);
    }
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (!process.program().isEmpty() && process.startDetached())
        return true;
    return QDBusConnection::sessionBus().interface()->startService(s_name).isValid();
}

}  // namespace

bool ProgramCall::hasBus() { return QDBusConnection::sessionBus().isConnected(); }

bool ProgramCall::isRunning()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(s_name);
}

bool ProgramCall::ensureRunning(bool isMinimized)
{
    if (isRunning())
        return true;
    QEventLoop loop;
    QDBusServiceWatcher names(s_name, QDBusConnection::sessionBus(),
                              QDBusServiceWatcher::WatchForRegistration);
    QObject::connect(&names, &QDBusServiceWatcher::serviceRegistered, &loop, &QEventLoop::quit);
    QTimer::singleShot(s_startLimit, &loop, &QEventLoop::quit);
    if (!start(isMinimized))
        return false;
    // It may have come before it was watched for.
    if (!isRunning())
        loop.exec();
    return isRunning();
}

QDBusMessage ProgramCall::call(const QString &interface, const QString &method,
                               const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(s_name, s_path, interface, method);
    message.setArguments(arguments);
    // One that ends meanwhile is not started anew for a question about the other.
    message.setAutoStartService(false);
    const QDBusPendingCall answer =
        QDBusConnection::sessionBus().asyncCall(message, std::numeric_limits<int>::max());
    QEventLoop loop;
    const QDBusPendingCallWatcher watcher(answer);
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished())
        loop.exec();
    return watcher.reply();
}

QString ProgramCall::ownInterface() { return s_name; }
