#include "shell/capturebridge.h"

#include "base/privatefolder.h"
#include "config/applicationrecord.h"
#include "helper/helperjob.h"
#include "helper/helperserver.h"
#include "platform/desktoppictures.h"
#include "platform/services.h"
#include "shell/grabflow.h"
#include "shell/mainwindow.h"

#include <QCoreApplication>
#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_permissionPause = 10;  // ms

struct CaptureBridge {
    Q_DECLARE_TR_FUNCTIONS(CaptureBridge)
};

PrivateFolder pictureFolder()
{
    return {QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation),
            {u"Brenvale Snap Workbench"_s, u"AXTempDrawing"_s}};
}

void ensureDelegate()
{
    if (!Ax_Shared_hlp)
        Ax_Shared_hlp = AXProjectAppDelegate::sharedDelegate();
}

// Knows its number in the window list beyond the moment in which it leaves the screen.
struct Question : QMessageBox {
    explicit Question(const QString &text)
        : QMessageBox(QMessageBox::Question, QString::fromWCharArray(g_AppName), text)
    {
    }
    void setVisible(bool isVisible) override
    {
        if (!isVisible)
            number = services().ownWindows->numberOf(this);
        QMessageBox::setVisible(isVisible);
    }
    int number = 0;
};

QMessageBox *s_question = nullptr;  // while it is open

// For a grab that the user waits for.
QByteArray askedFolder()
{
    PrivateFolder folder = pictureFolder();
    if (folder.make())
        return folder.path().toUtf8();
    if (MainWindow *window = Ax_GetMainWindow()) {
        const QString why = CaptureBridge::tr("The folder for the picture, %1, can't be used: %2")
                                .arg(folder.path(), folder.error());
        window->say(why);
        window->grabs().helperFails(why);
    }
    return {};
}

// In front of the application that the user is in: the question is about what they asked for there.
int askInFront(QMessageBox &box)
{
    QTimer::singleShot(0, &box, [&box] { services().watch->bringToFront(&box); });
    return box.exec();
}

// A picture that is lost is worth a question box; a grab that found nothing to take is not.
void tellFailure(int failure, const QString &text)
{
    MainWindow *window = Ax_GetMainWindow();
    const bool isEmpty = failure == HelperJob::NoWindow || failure == HelperJob::NoPicture ||
                         failure == HelperJob::NoWheel;
    if (isEmpty && window)
        window->say(text);
    else
        GWSnapWorkbenchShowStrings(
            CaptureBridge::tr("SnapWorkbench is Failing: %1: %2").arg(text).arg(failure));
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
        window->grabs().helperEnds();
}

void AXProjectAppDelegate::hideSnapWorkbenchMainWindow()
{
    if (MainWindow *window = Ax_GetMainWindow())
        window->grabs().helperWorks();
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
                             const char *said)
{
    const QString text = QString::fromUtf8(said);
    switch (status) {
    case GWCaptureWorking:
        GWSnapWorkbenchStatusDoHide();
        break;
    case GWCaptureOpen:
        if (MainWindow *window = Ax_GetMainWindow())
            window->grabs().opened();
        break;
    case GWCapturePicked:
        if (MainWindow *window = Ax_GetMainWindow())
            window->grabs().helperPicks(QString::fromUtf8(path), text);
        break;
    case GWCaptureScrolling:
        if (MainWindow *window = Ax_GetMainWindow())
            window->grabs().helperScrolls();
        break;
    case GWCaptureProgress:
        if (MainWindow *window = Ax_GetMainWindow())
            window->grabs().helperTells(text);
        break;
    case GWCapturePuttingBack:
        if (MainWindow *window = Ax_GetMainWindow())
            window->grabs().helperPutsBack();
        break;
    case GWCaptureFinished:
        GWSnapWorkbenchStatusFinish(path);
        GWSnapWorkbenchStatusDoShow();
        if (MainWindow *window = Ax_GetMainWindow(); window && !text.isEmpty())
            window->say(text);
        break;
    case GWCaptureEnded:
        GWSnapWorkbenchStatusDoShow();
        break;
    case GWCaptureFailed:
        if (MainWindow *window = Ax_GetMainWindow())
            window->grabs().helperFails(text);
        GWSnapWorkbenchStatusDoShow();
        tellFailure(failure, text);
        break;
    default:
        break;
    }
}

QString GWSnapWorkbenchGetTempPath()
{
    PrivateFolder folder = pictureFolder();
    return folder.make() ? folder.path() : QString();
}

void GWSnapWorkbenchRemoveTempFiles() { pictureFolder().remove(); }

bool GWSnapWorkbenchMustAsk()
{
    // Areas are found in windows.
    const bool areWindowsKnown = services().abilities.lackOf(Ability::WindowList).isEmpty();
    if (!areWindowsKnown || GWSnapWorkbenchIsEnableAccessibilty() ||
        GWSnapWorkbenchIsRunningInMavericksOrMore())
        return false;
    bool answered = false;
    return GWSnapWorkbenchTestProcessTrusted(&answered) == 0 && !answered;
}

signed char GWSnapWorkbenchTestClientStatus(signed char prompt)
{
    if (GWSnapWorkbenchIsEnableAccessibilty())
        return 1;
    if (GWSnapWorkbenchIsRunningInMavericksOrMore())
        return GWSnapWorkbenchTestProcessTrusted(nullptr) != 0 ? 1 : 0;
    if (prompt == 0 || !GWSnapWorkbenchMustAsk())
        return 1;

    Question box(CaptureBridge::tr("Do you want to enable Scroll Capture?"));
    box.setInformativeText(CaptureBridge::tr(
        "Scroll Capture allows you to select the scrolling area by just one click. \n"
        "Click No to continue common capture, or Enable Scroll Capture now?"));
    QPushButton *enable =
        box.addButton(CaptureBridge::tr("Enable Scroll Capture"), QMessageBox::ActionRole);
    QPushButton *no = box.addButton(CaptureBridge::tr("No"), QMessageBox::ActionRole);
    box.setDefaultButton(enable);
    box.setEscapeButton(no);
    s_question = &box;
    askInFront(box);
    // What is on the screen now can be picked.
    waitUntilGone(box.number);
    // Withdrawn by whoever ends the program.
    if (!std::exchange(s_question, nullptr))
        return 0;
    if (box.clickedButton() != enable)
        return 1;
    GWSnapWorkbenchMakeProcessTrusted();
    services().clock->pause(s_permissionPause);
    return 0;
}

QDialog *GWSnapWorkbenchQuestion() { return s_question; }

void GWSnapWorkbenchWithdrawQuestion()
{
    if (QMessageBox *question = std::exchange(s_question, nullptr))
        question->reject();
}

bool GWSnapWorkbenchStartCapture(const std::function<bool()> &begin)
{
    ensureDelegate();
    const QByteArray folder = askedFolder();
    if (folder.isNull() || GWSnapWorkbenchTestClientStatus(1) != 1 || (begin && !begin()))
        return false;
    GWSnapWorkbenchStartSessionCapture(folder.constData());
    return true;
}

bool GWSnapWorkbenchMenuCapture(const std::function<bool()> &begin)
{
    ensureDelegate();
    const QByteArray folder = askedFolder();
    if (folder.isNull() || GWSnapWorkbenchTestClientStatus(0) != 1 || (begin && !begin()))
        return false;
    GWSnapWorkbenchStartMenuItemCapture(folder.constData());
    return true;
}

void GWSnapWorkbenchStatusFinish(const char *path)
{
    if (!path)
        return;
    if (g_MainWindow)
        g_MainWindow->ShowImportPicture(path);
    QFile::remove(QString::fromUtf8(path));
    GWSnapWorkbenchRemoveTempFiles();
}

void GWSnapWorkbenchShowStrings(const QString &informative)
{
    QMessageBox box(QMessageBox::Warning, QString::fromWCharArray(g_AppName),
                    CaptureBridge::tr("Alert"));
    box.setInformativeText(informative);
    box.addButton(CaptureBridge::tr("Continue"), QMessageBox::AcceptRole);
    askInFront(box);
}
