#include "privatesession.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <csignal>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// What the user that the test runs as can't reach of the build.
std::unique_ptr<QTemporaryDir> s_copies;

}  // namespace

bool waitFor(const std::function<bool()> &condition, int limit)
{
    QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QTest::qWait(10);
    }
    return true;
}

void PrivateSession::becomePlainUser(const QStringList &needed)
{
    const passwd *user = geteuid() == 0 ? getpwnam("nobody") : nullptr;
    if (!user)
        return;
    const auto isReachable = [](const QString &path) {
        return faccessat(AT_FDCWD, QFile::encodeName(path).constData(), R_OK, AT_EACCESS) == 0;
    };
    const bool isUser =
        setgroups(0, nullptr) == 0 && setegid(user->pw_gid) == 0 && seteuid(user->pw_uid) == 0;
    const bool mustCopy = !std::all_of(needed.begin(), needed.end(), isReachable);
    if (!isUser || seteuid(0) != 0 || setegid(0) != 0)
        qFatal("Can't become a plain user");
    if (mustCopy) {
        s_copies = std::make_unique<QTemporaryDir>();
        QProcess::execute(u"cp"_s, QStringList{u"-r"_s} + needed + QStringList{s_copies->path()});
        QProcess::execute(u"chown"_s, {u"-R"_s, QString::number(user->pw_uid), s_copies->path()});
    }
    if (setgid(user->pw_gid) != 0 || setuid(user->pw_uid) != 0)
        qFatal("Can't become a plain user");
}

QString PrivateSession::built(const QString &path)
{
    return s_copies ? s_copies->filePath(QFileInfo(path).fileName()) : path;
}

PrivateSession::PrivateSession() : m_environment(QProcessEnvironment::systemEnvironment())
{
    for (const auto &name :
         {u"DISPLAY"_s, u"QT_QPA_PLATFORM"_s, u"QT_SCALE_FACTOR"_s, u"DBUS_SESSION_BUS_ADDRESS"_s,
          u"SESSION_MANAGER"_s, u"WAYLAND_DISPLAY"_s, u"SWAYSOCK"_s, u"XDG_SESSION_TYPE"_s})
        m_environment.remove(name);
    m_environment.insert(u"HOME"_s, home());
    m_environment.insert(u"XDG_DATA_HOME"_s, home() + u"/data"_s);
    m_environment.insert(u"XDG_CONFIG_HOME"_s, home() + u"/config"_s);
    m_environment.insert(u"XDG_CACHE_HOME"_s, home() + u"/cache"_s);
    m_environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    m_environment.insert(u"NO_AT_BRIDGE"_s, u"1"_s);
}

PrivateSession::~PrivateSession()
{
    // The last started first: programs before the window manager, and the server at the end.
    for (auto process = m_processes.rbegin(); process != m_processes.rend(); ++process) {
        (*process)->terminate();
        if (!(*process)->waitForFinished(3000))
            (*process)->kill();
        (*process)->waitForFinished(3000);
    }
}

QProcess *PrivateSession::start(const QString &program, const QStringList &arguments,
                                const QProcessEnvironment &environment, const QString &errors)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->setStandardErrorFile(errors);
    process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process->start(program, arguments);
    if (!process->waitForStarted())
        return nullptr;
    m_processes.push_back(std::move(process));
    return m_processes.back().get();
}

bool PrivateSession::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.start(program, arguments);
    return process.waitForFinished() && process.exitCode() == 0;
}

QImage PrivateSession::pasted() const
{
    QImage image;
    QProcess paste;
    paste.setProcessEnvironment(m_environment);
    paste.start(u"wl-paste"_s, {u"-t"_s, u"image/png"_s});
    paste.waitForFinished();
    image.loadFromData(paste.readAllStandardOutput());
    return image.convertToFormat(QImage::Format_ARGB32);
}

bool PrivateSession::startBus()
{
    m_bus = start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address=1"_s},
                  m_environment);
    if (!m_bus || !waitFor([&] { return m_bus->canReadLine(); }))
        return false;
    m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s,
                         QString::fromLatin1(m_bus->readLine().trimmed()));
    return true;
}

void PrivateSession::endBus()
{
    m_bus->kill();
    m_bus->waitForFinished();
}
