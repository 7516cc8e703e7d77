// Orders pictures from the program for scripts and a terminal. It has no window and takes no
// picture itself: it starts the program where that does not run, waits for what it has ordered over
// the session bus, and writes the file, so that the program never writes where others tell it to.

#include "base/translation.h"
#include "snapwb/commandline.h"
#include "snapwb/programcall.h"

#include <QCoreApplication>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QUrl>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// What scripts go by.
enum ExitCode { Done = 0, GivenUp = 1, WrongUse = 2, CouldNot = 3, Busy = 4 };

int fail(ExitCode code, const QString &text)
{
    std::fputs(qPrintable(u"snapwb: "_s + text + u'\n'), stderr);
    return code;
}

// The program gives up what it does for one that has left the bus, so there is nothing to clear up.
void giveUp(int /*signal*/) { _exit(GivenUp); }

// What a call that failed tells the user, and the script.
int failedCall(const QDBusMessage &answer)
{
    const QString error = answer.errorName().section(u'.', -1);
    if (error == u"GivenUp")
        return fail(GivenUp, SnapWb::tr("The picture was given up."));
    if (error == u"Busy")
        return fail(Busy, SnapWb::tr("Another picture is being taken."));
    if (error == u"NoReply" || error == u"ServiceUnknown")
        return fail(CouldNot, SnapWb::tr("The program has ended."));
    return fail(CouldNot, answer.errorMessage());
}

// Why that file can't be written; empty where nothing is known against it.
QString objection(const CommandLine &line)
{
    const QFileInfo file(line.output);
    if (line.output.isEmpty() || line.output == u"-")
        return {};
    if (file.isDir())
        return SnapWb::tr("\"%1\" is a folder.").arg(line.output);
    if (!line.replaces && (file.exists() || file.isSymbolicLink()))
        return SnapWb::tr("\"%1\" is there already; --force replaces it.").arg(line.output);
    if (!QFileInfo(file.absolutePath()).isWritable())
        return SnapWb::tr("\"%1\" can't be written to the folder \"%2\".")
            .arg(line.output, file.absolutePath());
    return {};
}

bool copyTo(QFileDevice &target, const QDBusUnixFileDescriptor &picture)
{
    QFile source;
    if (!source.open(picture.fileDescriptor(), QIODevice::ReadOnly))
        return false;
    const QByteArray content = source.readAll();
    return !content.isEmpty() && target.write(content) == content.size() && target.flush();
}

bool replace(const QString &path, const QDBusUnixFileDescriptor &picture)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && copyTo(file, picture) && file.commit();
}

// One that has come there meanwhile is not written over, and half a picture does not stay.
bool create(const QString &path, const QDBusUnixFileDescriptor &picture)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return false;
    const bool isWritten = copyTo(file, picture);
    if (!isWritten)
        file.remove();
    return isWritten;
}

bool write(const CommandLine &line, const QDBusUnixFileDescriptor &picture)
{
    if (line.output != u"-")
        return line.replaces ? replace(line.output, picture) : create(line.output, picture);
    QFile output;
    return output.open(stdout, QIODevice::WriteOnly) && copyTo(output, picture);
}

int grab(const CommandLine &line)
{
    if (const QString why = objection(line); !why.isEmpty())
        return fail(CouldNot, why);
    if (!ProgramCall::ensureRunning(true))
        return fail(CouldNot, SnapWb::tr("The program does not start."));
    const QDBusMessage answer =
        ProgramCall::call(ProgramCall::ownInterface(), u"Grab"_s, {line.options});
    if (answer.type() != QDBusMessage::ReplyMessage)
        return failedCall(answer);
    if (line.output.isEmpty())
        return Done;
    // It is too late to give up.
    std::signal(SIGINT, SIG_IGN);
    const auto picture = answer.arguments().value(0).value<QDBusUnixFileDescriptor>();
    if (!picture.isValid() || !write(line, picture))
        return fail(CouldNot, SnapWb::tr("\"%1\" could not be written.").arg(line.output));
    return Done;
}

int open(const QStringList &files)
{
    QStringList addresses;
    for (const QString &file : files) {
        const QFileInfo info(file);
        if (!info.isFile() || !info.isReadable())
            return fail(CouldNot, SnapWb::tr("\"%1\" can't be read.").arg(file));
        addresses.append(QUrl::fromLocalFile(info.absoluteFilePath()).toString(QUrl::FullyEncoded));
    }
    if (!ProgramCall::ensureRunning(false))
        return fail(CouldNot, SnapWb::tr("The program does not start."));
    // The right to come to the front, which the desktop has given this start.
    QVariantMap desktop;
    if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        desktop.insert(u"activation-token"_s, token);
    const QDBusMessage answer =
        ProgramCall::call(ProgramCall::ownInterface(), u"OpenFiles"_s, {addresses, desktop});
    return answer.type() == QDBusMessage::ReplyMessage ? Done : failedCall(answer);
}

int state()
{
    if (!ProgramCall::isRunning())
        return fail(CouldNot, SnapWb::tr("The program does not run."));
    const QDBusMessage answer = ProgramCall::call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                                                  {ProgramCall::ownInterface(), u"GrabState"_s});
    if (answer.type() != QDBusMessage::ReplyMessage)
        return failedCall(answer);
    const QString name = answer.arguments().value(0).value<QDBusVariant>().variant().toString();
    std::puts(qPrintable(name));
    return Done;
}

int run(const CommandLine &line)
{
    using enum CommandLine::Command;
    if (line.command == Wrong)
        return fail(WrongUse, line.text);
    if (line.command == Tell) {
        std::fputs(qPrintable(line.text), stdout);
        return Done;
    }
    std::signal(SIGINT, giveUp);
    std::signal(SIGTERM, giveUp);
    if (!ProgramCall::hasBus())
        return fail(CouldNot, SnapWb::tr("There is no session bus."));
    switch (line.command) {
    case Grab:
        return grab(line);
    case Open:
        return open(line.files);
    default:
        return state();
    }
}

}  // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    installTranslations();
    int code = run(commandLine(QCoreApplication::arguments()));
    if (std::fflush(stdout) != 0 && code == Done)
        code = CouldNot;
    // The bus still speaks to the toolkit's own thread, which must not be cleared away under it.
    std::_Exit(code);
}
