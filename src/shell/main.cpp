#include "base/paths.h"
#include "base/translation.h"
#include "base/wholefile.h"
#include "config/applicationrecord.h"
#include "config/licensing.h"
#include "config/resourcefile.h"
#include "editing/picturefile.h"
#include "helper/helperserver.h"
#include "platform/services.h"
#include "platform/xdg/accessibilitygate.h"
#include "platform/xdg/lastingbus.h"
#include "platform/xdg/notification.h"
#include "platform/xdg/singleprogram.h"
#include "shell/capturebridge.h"
#include "shell/clipboardkeeper.h"
#include "shell/commands.h"
#include "shell/leanstyle.h"
#include "shell/mainwindow.h"
#include "shell/picturejobs.h"
#include "shell/sessionend.h"

#include <QApplication>
#include <QDBusConnection>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QImageReader>
#include <QScopeGuard>
#include <QThreadPool>

#include <cstdio>
#include <cstdlib>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

// Who started the program sees either, where it has no window.
void tell(const QString &text)
{
    std::fputs(qPrintable(text + u'\n'), stderr);
    showNotification(QString::fromWCharArray(g_AppName), text);
}

void tellUnanswered()
{
    // A window of this program would look like the other's.
    tell(QCoreApplication::translate("main", "%1 is running already, but does not answer. End that "
                                             "program, and then start it again.")
             .arg(QString::fromWCharArray(g_AppName)));
}

// An empty reason stands for a shipped file that can't be read.
void tellNoStart(const QString &path, const QString &reason)
{
    const QString name = QString::fromWCharArray(g_AppName);
    if (reason.isEmpty())
        tell(QCoreApplication::translate("main", "%1 can't start: %2 is missing or damaged. "
                                                 "Install the program again.")
                 .arg(name, path));
    else
        tell(QCoreApplication::translate("main", "%1 can't start, since it can't write %2: %3")
                 .arg(name, path, reason));
}

// What an earlier run was kept from writing into a file, and this one could not write either.
QString told(const QList<WholeFile::Unfinished> &writes)
{
    QStringList texts;
    for (const WholeFile::Unfinished &write : writes)
        texts.append(QCoreApplication::translate(
                         "main", "%1 was being saved when the program was cut off, and has been "
                                 "changed since then. What was to be saved is in %2.")
                         .arg(write.path, write.copy));
    return texts.join(u'\n');
}

// What this program is called, and how its toolkit behaves. Before the application object.
void nameApplication()
{
    QCoreApplication::setOrganizationName(u"brenvale"_s);
    QCoreApplication::setOrganizationDomain(u"brenvale.example.org"_s);
    QCoreApplication::setApplicationName(u"SnapWorkbench"_s);
}

// The same, with it.
void setUpApplication()
{
    // Reading the desktop's fonts is a third of a start's work, and the first text comes late. The
    // session bus answers late as well. Both go on aside until they are asked for.
    QThreadPool::globalInstance()->start([] { QDBusConnection::sessionBus(); });
    QThreadPool::globalInstance()->start([] { QFontDatabase::families(); });
    QApplication::setStyle(new LeanStyle);
    installTranslations();
    outliveSessionBus();
    // A tool that waits in the tray ends by its own command only.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // The size of a picture is looked at before it is read, unless its file does not tell.
    QImageReader::setAllocationLimit(static_cast<int>(largestUntoldPicture() >> 20));
}

// False, and told, where the folder of the user's data can't be made.
bool makeDataFolder(const QString &folder)
{
    if (!CreateFolder(QFile::encodeName(folder).constData())) {
        tellNoStart(folder, qt_error_string());
        return false;
    }
    WholeFile::setSpareFolder(folder + u"writes"_s);
    return true;
}

// The files that this start is to open: whatever stands behind the program's name, for it has no
// options.
QStringList filesToOpen()
{
    QStringList paths;
    for (const QString &argument : QCoreApplication::arguments().mid(1))
        paths.append(QFileInfo(argument).absoluteFilePath());
    return paths;
}

// The exit code of a start that is not the only one of this user; nothing for the first.
std::optional<int> yieldToAnother(SingleProgram &single)
{
    switch (single.claim(filesToOpen())) {
    case SingleProgram::Claim::Activated:
        return 0;
    case SingleProgram::Claim::Unanswered:
        tellUnanswered();
        return 1;
    case SingleProgram::Claim::First:
        break;
    }
    return {};
}

// False, and told, where there is no whole resource file to work with.
bool proveResourceFile()
{
    if (ProcessResourceFile(QCoreApplication::translate(
            "main", "SnapWorkbench.xml is missing so that it can not work properly")))
        return true;
    const ResourceFileProblem problem = resourceFileProblem();
    tellNoStart(problem.path, problem.reason);
    return false;
}

// Shows the window, brings back what an earlier run has left, and runs until the program is to end.
int runWindow(const QString &folder, const QString &unfinished, ApplicationBus &bus)
{
    MainWindow window;
    g_MainWindow = &window;
    QObject::connect(&window, &MainWindow::grabStateChanged, &bus, &ApplicationBus::setGrabState);
    window.InitShowGeometry();
    // Who needs the program for a picture does not want its window in there. Not for what this one
    // starts in its turn.
    constexpr const char *minimizedStart = "SNAPWORKBENCH_MINIMIZED";
    const bool isMinimizedStart = qEnvironmentVariableIsSet(minimizedStart);
    qunsetenv(minimizedStart);
    // What came back is to be seen.
    const bool isBack = window.startRecovery(folder + u"recovery"_s);
    window.startPins(folder + u"pins"_s);
    if (isBack)
        window.show();
    else
        window.showAtStart(Preferences::runMinimized() || isMinimizedStart);
    if (const QString lack = services().abilities.lackOf(Ability::Pictures); !lack.isEmpty())
        window.say(lack);
    if (!unfinished.isEmpty())
        window.say(unfinished);
    if (const QStringList files = filesToOpen(); !files.isEmpty())
        QMetaObject::invokeMethod(
            &window,
            [&window, files] {
                window.openPictures(files);
                window.comeForward();
            },
            Qt::QueuedConnection);
    const SessionEnd sessionEnd(window);
    const int status = QApplication::exec();
    window.finishPictures();
    window.keepUnsaved();
    window.SaveGeometry();
    StopWatchAppActive();
    leaveClipboard();
    GWSnapWorkbenchStartMessageServer(nullptr);
    g_MainWindow = nullptr;
    return status;
}

}  // namespace

int main(int argc, char **argv)
{
    nameApplication();
    const QApplication application(argc, argv);
    setUpApplication();
    installServices(createServices());
    // They must not outlive the connection that they speak over.
    const auto withdrawServices = qScopeGuard([] { installServices({}); });

    Licensing::initialise();
    ReadProfile();
    const QString folder = userDataFolder();
    if (!makeDataFolder(folder))
        return 1;
    // As soon as the bus is likely to be there, so that its answers come while other work is done.
    AccessibilityGate accessibility;
    // Before the resource file: two programs that prove it at once would take each other's marker
    // for a crash.
    SingleProgram single(folder, busCommands());
    if (const std::optional<int> status = yieldToAnother(single))
        return *status;
    // The resource file may be among them.
    const QString unfinished = told(WholeFile::finishWrites());
    if (!proveResourceFile())
        return 1;
    // Its answer belongs to the licence, which tells the user what is wrong with it.
    Licensing::identityIsValid();
    // What a crash has left there.
    GWSnapWorkbenchRemoveTempFiles();
    GWSnapWorkbenchStartMessageServer(GWCaptureStatusCallback);
    Licensing::setProduct(QString::fromWCharArray(g_AppName), folder,
                          QCoreApplication::applicationDirPath() + u'/');
    ProcessLicense();
    StartWatchAppActive();

    accessibility.decide();
    const int status = runWindow(folder, unfinished, single.bus());
    // The window has tried.
    if (const QString reason = SaveResourceFile(); !reason.isEmpty())
        tell(MainWindow::tr("The settings can't be saved: %1").arg(reason));
    if (PictureJobs::isStuck())
        std::_Exit(status);
    return status;
}
