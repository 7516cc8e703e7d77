#include "base/paths.h"
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
#include "shell/buscommands.h"
#include "shell/capturebridge.h"
#include "shell/capturerefusal.h"
#include "shell/clipboardkeeper.h"
#include "shell/leanstyle.h"
#include "shell/mainwindow.h"
#include "shell/sessionend.h"
#include "shell/translation.h"

#include <QApplication>
#include <QFile>
#include <QImageReader>
#include <QScopeGuard>

#include <cstdio>
#include <cstdlib>

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

}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setOrganizationName(u"brenvale"_s);
    QCoreApplication::setOrganizationDomain(u"brenvale.example.org"_s);
    QCoreApplication::setApplicationName(u"SnapWorkbench"_s);
    const QApplication application(argc, argv);
    QApplication::setStyle(new LeanStyle);
    installTranslations();
    outliveSessionBus();
    AccessibilityGate accessibility;
    // A tool that waits in the tray ends by its own command only.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // The size of a picture is looked at before it is read, unless its file does not tell.
    QImageReader::setAllocationLimit(static_cast<int>(largestUntoldPicture() >> 20));
    installServices(createServices());
    // They must not outlive the connection that they speak over.
    const auto withdrawServices = qScopeGuard([] { installServices({}); });

    Licensing::initialise();
    ReadProfile();
    const QString folder = userDataFolder();
    if (!CreateFolder(QFile::encodeName(folder).constData())) {
        tellNoStart(folder, qt_error_string());
        return 1;
    }
    WholeFile::setSpareFolder(folder + u"writes"_s);
    // Before the resource file: two programs that prove it at once would take each other's marker
    // for a crash.
    SingleProgram single(folder, busCommands());
    switch (single.claim()) {
    case SingleProgram::Claim::First:
        break;
    case SingleProgram::Claim::Activated:
        return 0;
    case SingleProgram::Claim::Unanswered:
        tellUnanswered();
        return 1;
    }
    // The resource file may be among them.
    const QString unfinished = told(WholeFile::finishWrites());
    if (!ProcessResourceFile(QCoreApplication::translate(
            "main", "SnapWorkbench.xml is missing so that it can not work properly"))) {
        const ResourceFileProblem problem = resourceFileProblem();
        tellNoStart(problem.path, problem.reason);
        return 1;
    }
    // Its answer belongs to the licence, which tells the user what is wrong with it.
    Licensing::identityIsValid();
    // What a crash has left there.
    GWSnapWorkbenchRemoveTempFiles();
    GWSnapWorkbenchStartMessageServer(GWCaptureStatusCallback);
    Licensing::setProduct(QString::fromWCharArray(g_AppName), folder,
                          QCoreApplication::applicationDirPath() + u'/');
    ProcessLicense();
    StartWatchAppActive();

    int status = 0;
    accessibility.decide();
    {
        MainWindow window;
        g_MainWindow = &window;
        QObject::connect(&window, &MainWindow::grabStateChanged, &single.bus(),
                         &ApplicationBus::setGrabState);
        window.InitShowGeometry();
        // What came back is to be seen.
        const bool isBack = window.startRecovery(folder + u"recovery"_s);
        if (MainWindow::GetRunInMinimized() && !isBack)
            window.showMinimized();
        else
            window.setVisible(true);
        if (const QString refusal = captureRefusal(); !refusal.isEmpty())
            window.say(refusal);
        if (!unfinished.isEmpty())
            window.say(unfinished);
        const SessionEnd sessionEnd(window);
        status = QApplication::exec();
        window.keepUnsaved();
        window.SaveGeometry();
        StopWatchAppActive();
        leaveClipboard();
        GWSnapWorkbenchStartMessageServer(nullptr);
        g_MainWindow = nullptr;
    }
    // The window has tried.
    if (const QString reason = SaveResourceFile(); !reason.isEmpty())
        tell(MainWindow::tr("The settings can't be saved: %1").arg(reason));
    if (PictureJobs::isStuck())
        std::_Exit(status);
    return status;
}
