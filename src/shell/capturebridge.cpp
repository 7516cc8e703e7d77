#include "shell/capturebridge.h"

#include "config/texthelpers.h"
#include "helper/snapworkbenchhelper.h"
#include "platform/services.h"
#include "shell/mainwindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned long s_permissionPause = 10;  // ms
constexpr auto s_private = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

struct CaptureBridge {
    Q_DECLARE_TR_FUNCTIONS(CaptureBridge)
};

QString folderPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           u"/Brenvale Snap Workbench/AXTempDrawing"_s;
}

void ensureDelegate()
{
    if (!Ax_Shared_hlp)
        Ax_Shared_hlp = AXProjectAppDelegate::sharedDelegate();
}

// In front of the application that the user is in: the question is about what they asked for there.
int askInFront(QMessageBox &box)
{
    QTimer::singleShot(0, &box, [&box] { services().watch->bringToFront(&box); });
    return box.exec();
}

}  // namespace

AXProjectAppDelegate *Ax_Shared_hlp = nullptr;

AXProjectAppDelegate *AXProjectAppDelegate::sharedDelegate()
{
    static AXProjectAppDelegate delegate;
    return &delegate;
}

void AXProjectAppDelegate::showSnapWorkbenchMainWindow()
{
    if (MainWindow *window = Ax_GetMainWindow())
        window->showAfterHelper();
}

void AXProjectAppDelegate::hideSnapWorkbenchMainWindow()
{
    if (MainWindow *window = Ax_GetMainWindow())
        window->hideForHelper();
}

MainWindow *Ax_GetMainWindow() { return g_MainWindow; }

void GWSnapWorkbenchStatusDoHide()
{
    if (Ax_Shared_hlp)
        Ax_Shared_hlp->hideSnapWorkbenchMainWindow();
}

void GWSnapWorkbenchStatusDoShow()
{
    if (Ax_Shared_hlp)
        Ax_Shared_hlp->showSnapWorkbenchMainWindow();
}

void GWCaptureStatusCallback(void * /*unused*/, int status, const char *path, int failure,
                             const char *failureText)
{
    switch (status) {
    case GWCaptureWorking:
        GWSnapWorkbenchStatusDoHide();
        break;
    case GWCaptureFinished:
        GWSnapWorkbenchStatusFinish(path);
        GWSnapWorkbenchStatusDoShow();
        break;
    case GWCaptureEnded:
        GWSnapWorkbenchStatusDoShow();
        break;
    case GWCaptureFailed:
        GWSnapWorkbenchStatusDoShow();
        GWSnapWorkbenchShowStrings(CaptureBridge::tr("SnapWorkbench is Failing: %1: %2")
                                       .arg(QString::fromUtf8(failureText))
                                       .arg(failure));
        break;
    default:
        break;
    }
}

QString GWSnapWorkbenchGetTempPath()
{
    const QString path = folderPath();
    if (QFile::exists(path))
        return path;
    const bool made = QDir().mkpath(path) && QFile::setPermissions(path, s_private);
    return made && QFile::exists(path) ? path : QString();
}

signed char GWSnapWorkbenchTestClientStatus(signed char prompt)
{
    if (GWSnapWorkbenchIsEnableAccessibilty())
        return 1;
    bool answered = false;
    const bool trusted = GWSnapWorkbenchTestProcessTrusted(&answered) != 0;
    if (GWSnapWorkbenchIsRunningInMavericksOrMore())
        return trusted ? 1 : 0;
    if (trusted || answered || prompt == 0)
        return 1;

    const QString question = CaptureBridge::tr("Do you want to enable Scroll Capture?");
    QMessageBox box(QMessageBox::Question, MainWindow::tr("Snap Workbench"), question);
    box.setInformativeText(CaptureBridge::tr(
        "Scroll Capture allows you to select the scrolling area by just one click. \n"
        "Click No to continue common capture, or Enable Scroll Capture now?"));
    QPushButton *enable =
        box.addButton(CaptureBridge::tr("Enable Scroll Capture"), QMessageBox::ActionRole);
    QPushButton *no = box.addButton(CaptureBridge::tr("No"), QMessageBox::ActionRole);
    box.setDefaultButton(enable);
    // Escape and the close button are neither answer. The box takes them only for a button.
    QPushButton *neither = box.addButton(QMessageBox::Cancel);
    box.setEscapeButton(neither);
    neither->hide();
    askInFront(box);
    if (box.clickedButton() == no)
        return 1;
    if (box.clickedButton() == enable) {
        GWSnapWorkbenchMakeProcessTrusted();
        gwsleep(s_permissionPause);
    }
    return 0;
}

void GWSnapWorkbenchStartCapture()
{
    ensureDelegate();
    const QString folder = GWSnapWorkbenchGetTempPath();
    if (!folder.isNull() && GWSnapWorkbenchTestClientStatus(1) == 1)
        GWSnapWorkbenchStartSessionCapture(folder.toUtf8().constData());
}

void GWSnapWorkbenchMenuCapture()
{
    ensureDelegate();
    const QString folder = GWSnapWorkbenchGetTempPath();
    if (!folder.isNull() && GWSnapWorkbenchTestClientStatus(0) == 1)
        GWSnapWorkbenchStartMenuItemCapture(folder.toUtf8().constData());
}

void GWSnapWorkbenchStatusFinish(const char *path)
{
    if (!path)
        return;
    if (g_MainWindow)
        g_MainWindow->ShowImportPicture(path);
    QFile::remove(QString::fromUtf8(path));
    // With whatever a crash has left there. Not through a link: that leads to somebody else's.
    if (!QFileInfo(folderPath()).isSymLink())
        QDir(folderPath()).removeRecursively();
}

void GWSnapWorkbenchShowStrings(const QString &informative)
{
    const QString title = CaptureBridge::tr("Alert");
    QMessageBox box(QMessageBox::Warning, MainWindow::tr("Snap Workbench"), title);
    box.setInformativeText(informative);
    box.addButton(CaptureBridge::tr("Continue"), QMessageBox::AcceptRole);
    askInFront(box);
}
