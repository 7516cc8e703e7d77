#include "config/applicationrecord.h"
#include "config/licensing.h"
#include "config/resourcefile.h"
#include "config/texthelpers.h"
#include "helper/snapworkbenchhelper.h"
#include "platform/services.h"
#include "platform/xdg/accessibilitygate.h"
#include "platform/xdg/lastingbus.h"
#include "platform/xdg/notification.h"
#include "platform/xdg/singleprogram.h"
#include "shell/buscommands.h"
#include "shell/capturebridge.h"
#include "shell/capturerefusal.h"
#include "shell/clipboardkeeper.h"
#include "shell/mainwindow.h"
#include "shell/picturestyle.h"
#include "shell/sessionend.h"
#include "shell/translation.h"

#include <QApplication>
#include <QFile>
#include <QImageReader>
#include <QScopeGuard>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

// Pictures of scrolled pages are larger than the toolkit's limit for pictures from files.
constexpr int s_pictureLimit = 4096;  // megabytes

// Who started the program sees either; a window of this one would look like the other's.
void tellUnanswered()
{
    const QString name = QString::fromWCharArray(g_AppName);
    const QString text =
        QCoreApplication::translate("main", "%1 is running already, but does not answer. End that "
                                            "program, and then start it again.")
            .arg(name);
    std::fputs(qPrintable(text + u'\n'), stderr);
    showNotification(name, text);
}

}  // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setOrganizationName(u"brenvale"_s);
    QCoreApplication::setOrganizationDomain(u"brenvale.example.org"_s);
    QCoreApplication::setApplicationName(u"SnapWorkbench"_s);
    const QApplication application(argc, argv);
    QApplication::setStyle(new PictureStyle);
    installTranslations();
    outliveSessionBus();
    AccessibilityGate accessibility;
    // A tool that waits in the tray ends by its own command only.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QImageReader::setAllocationLimit(s_pictureLimit);
    installServices(createServices());
    // They must not outlive the connection that they speak over.
    const auto withdrawServices = qScopeGuard([] { installServices({}); });

    Licensing::initialise();
    ReadProfile();
    CreateFolder(QFile::encodeName(userDataFolder()).constData());
    // Before the resource file: two programs that prove it at once would take each other's marker
    // for a crash.
    SingleProgram single(userDataFolder(), busCommands());
    switch (single.claim()) {
    case SingleProgram::Claim::First:
        break;
    case SingleProgram::Claim::Activated:
        return 0;
    case SingleProgram::Claim::Unanswered:
        tellUnanswered();
        return 1;
    }
    if (!ProcessResourceFile(QCoreApplication::translate(
            "main", "SnapWorkbench.xml is missing so that it can not work properly")))
        return 0;
    // Its answer belongs to the licence, which tells the user what is wrong with it.
    Licensing::identityIsValid();
    GWSnapWorkbenchStartMessageServer(GWCaptureStatusCallback);
    Licensing::setProduct(QString::fromWCharArray(g_AppName), userDataFolder(),
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
        if (MainWindow::GetRunInMinimized())
            window.showMinimized();
        else
            window.setVisible(true);
        if (const QString refusal = captureRefusal(); !refusal.isEmpty())
            window.say(refusal);
        const SessionEnd sessionEnd(window);
        status = QApplication::exec();
        window.SaveGeometry();
        StopWatchAppActive();
        leaveClipboard();
        GWSnapWorkbenchStartMessageServer(nullptr);
        g_MainWindow = nullptr;
    }
    return status;
}
