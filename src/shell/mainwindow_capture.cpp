#include "shell/mainwindow.h"

#include "capture/dialog.h"
#include "capture/dialogcountdown.h"
#include "capture/digdetail.h"
#include "capture/dlgfreehand.h"
#include "capture/mydrawround.h"
#include "capture/windowspreview.h"
#include "config/licensing.h"
#include "config/settings.h"
#include "config/texthelpers.h"
#include "helper/snapworkbenchhelper.h"
#include "platform/services.h"
#include "platform/windowlist.h"
#include "shell/capturebridge.h"
#include "ui_mainwindow.h"

#include <QApplication>
#include <QDialog>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned long s_round = 10;  // milliseconds
constexpr int s_settleRounds = 50;
constexpr int s_giveBackRounds = 100;
constexpr int s_inactiveRounds = 10;
constexpr int s_roundsBetweenRequests = 20;

using Command = void (*)(MainWindow &);

struct NamedCommand {
    const char *caption;
    Command run;
};

constexpr std::array<NamedCommand, 15> s_commands{
    {{QT_TRANSLATE_NOOP("MainWindow", "Rectangular"),
      [](MainWindow &window) { window.ShowGrabRectWindow(true); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Capture Rectangular"),
      [](MainWindow &window) { window.ShowGrabRectWindow(false); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Ellipse"),
      [](MainWindow &window) { window.ShowGrabEllipseWindow(true); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Capture Ellipse"),
      [](MainWindow &window) { window.ShowGrabEllipseWindow(false); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Arbitrary"),
      [](MainWindow &window) { window.ShowGrabPolygonWindow(true); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Capture Arbitrary"),
      [](MainWindow &window) { window.ShowGrabPolygonWindow(false); }},
     {QT_TRANSLATE_NOOP("MainWindow", "All Windows"),
      [](MainWindow &window) { window.ShowAllWindow(); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Select Window"),
      [](MainWindow &window) { window.ShowSelectWindow(true); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Full Screen"),
      [](MainWindow &window) { window.ShowFullScreen(true, true); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Capture Full Screen"),
      [](MainWindow &window) { window.ShowFullScreen(false, false); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Capture Full Screen with Countdown Timer"),
      [](MainWindow &window) { window.ShowFullScreen(false, true); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Menu"), [](MainWindow &window) { window.ShowMenuWindow(); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Capture Menu"),
      [](MainWindow &window) { window.ShowMenuWindow(); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Show Snapworkbench"),
      [](MainWindow &window) { window.showInFront(); }},
     {QT_TRANSLATE_NOOP("MainWindow", "Quit"), [](MainWindow &window) { window.quit(); }}}};

// By number, from 1. The last is reached by no key.
constexpr std::array<Command, 9> s_hotKeyCommands{
    {[](MainWindow &window) { window.ShowGrabRectWindow(false); },
     [](MainWindow &window) { window.ShowGrabEllipseWindow(false); },
     [](MainWindow &window) { window.ShowGrabPolygonWindow(false); },
     [](MainWindow &window) { window.ShowAllWindow(); },
     [](MainWindow &window) { window.ShowSelectWindow(false); },
     [](MainWindow &window) { window.ShowFullScreen(false, false); },
     [](MainWindow &window) { window.ShowFullScreen(false, true); },
     [](MainWindow &window) { window.ShowMenuWindow(); },
     [](MainWindow &window) { window.showInFront(); }}};

Command commandFor(const QString &caption)
{
    const auto found =
        std::find_if(s_commands.begin(), s_commands.end(), [&](const NamedCommand &command) {
            return caption == MainWindow::tr(command.caption);
        });
    return found == s_commands.end() ? nullptr : found->run;
}

}  // namespace

bool MainWindow::hasCaptureCommand(const QString &caption) { return commandFor(caption); }

void MainWindow::Capture(QAction *pAct)
{
    if (!pAct)
        return;
    // Some styles put a mnemonic of their own into a menu's texts.
    if (const Command run = commandFor(pAct->text().remove(u'&')))
        run(*this);
}

long HotkeyCallBack(long id, long /*unused*/)
{
    if (g_MainWindow && id >= 1 && id <= static_cast<long>(s_hotKeyCommands.size()))
        s_hotKeyCommands[id - 1](*g_MainWindow);
    return 0;
}

void MainWindow::WaitFor()
{
    for (int round = 0; round < s_settleRounds; ++round) {
        gwsleep(s_round);
        QCoreApplication::processEvents();
    }
}

void MainWindow::FocusThis(QWidget *widget)
{
    const QPointer<QWidget> target = widget ? widget : this;
    target->raise();
    // A window manager may refuse at first, so the request is made again from time to time.
    for (int round = 0; target && target->isVisible() && !IsAppActive(); ++round) {
        if (round % s_roundsBetweenRequests == 0)
            services().watch->bringToFront(target);
        QCoreApplication::processEvents();
        gwsleep(s_round);
    }
}

// Raising alone leaves a minimised window where it is.
void MainWindow::showInFront()
{
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    FocusThis(nullptr);
}

void MainWindow::FocusPreApp()
{
    SetPreAppActive();
    int inactive = 0;
    for (int round = 0; round < s_giveBackRounds; ++round) {
        QCoreApplication::processEvents();
        if (!IsAppActive() && ++inactive == s_inactiveRounds)
            break;
        gwsleep(s_round);
    }
}

void MainWindow::RestoreAppFocus(bool giveBack)
{
    if (giveBack)
        FocusPreApp();
    if (m_pFocusDialog)
        m_pFocusDialog->hide();
}

// Where the desktop has a menu bar that changes with the active program, a picture of it covers it
// up meanwhile. Without one the window is there only to be active.
void MainWindow::SetAppFocus()
{
    QCoreApplication::processEvents();
    if (!m_pFocusDialog) {
        m_pFocusDialog = new QDialog;
        m_pFocusDialog->setStyleSheet(u"QDialog{background-color: rgba(200,200,200,5%);} "
                                      "QGraphicsView{background-color: rgba(96,96,255,0%);}"_s);
        m_pFocusDialog->setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        m_pFocusDialog->setGeometry({});
        m_pFocusDialog->installEventFilter(this);
        services().windows->keepOutOfTaskBar(m_pFocusDialog);
        g_widgetExcept = m_pFocusDialog;
    }
    m_MenuBarPixmap = screenMenu();
    // A window has one pixel at least; a shape that lies outside keeps it off the screen.
    m_pFocusDialog->setGeometry(QRect({}, m_MenuBarPixmap.size().expandedTo({1, 1})));
    if (m_MenuBarPixmap.isNull())
        m_pFocusDialog->setMask(QRegion(-1, -1, 1, 1));
    m_pFocusDialog->show();
    SetWindowNoShadown(m_pFocusDialog);
    FocusThis(m_pFocusDialog);
    m_pFocusDialog->activateWindow();
}

// Above an overlay the window would be in the picture.
void MainWindow::comeForward()
{
    if (!m_bCapturing)
        showInFront();
}

// What is open for the grab is the program's front window. The main window, raised, would come to
// lie above it, would be in the picture, and might get the keyboard.
void MainWindow::raiseGrab()
{
    QWidget *front = QApplication::activeModalWidget();
    const bool hasMenu = QApplication::activePopupWidget();
    if (auto *overlay = qobject_cast<CaptureOverlay *>(front); overlay && !hasMenu)
        overlay->stayOnTop();
    else if (front && !hasMenu)
        front->raise();
    const bool hasCover = m_pFocusDialog && m_pFocusDialog->isVisible();
    FocusThis(hasCover ? m_pFocusDialog : m_pCountDown ? m_pCountDown : front);
}

bool MainWindow::beginGrab(GrabStart &start)
{
    if (m_bCapturing)
        raiseGrab();
    if (m_bCapturing || sessionRuns())
        return false;
    m_bCapturing = true;
    start.wasActive = IsAppActive();
    start.wasMinimized = isMinimized();
    start.showAfter = GetShowFromXML();
    if (start.wasActive)
        start.activeWindow = QApplication::activeWindow();
    return true;
}

void MainWindow::endGrab()
{
    m_bCapturing = false;
    // A wait for a menu that gave way to the grab has left the window so.
    if (!m_bHelperWorking && std::exchange(m_bMinimizedForHelper, false) && isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    if (std::exchange(m_CloseAfterGrab, false))
        QMetaObject::invokeMethod(this, &MainWindow::close, Qt::QueuedConnection);
}

void MainWindow::restoreMinimized(const GrabStart &start)
{
    if (start.wasActive && !start.wasMinimized && isMinimized())
        showNormal();
}

void MainWindow::DealPicture(QPixmap &pixmap, const QPainterPath *path, const QPolygonF *polygon)
{
    LoadPixmapFlag();
    TPictureEditor::EditPolyPixmap(pixmap, m_FlagPixmap, Licensing::status().registered, path,
                                   polygon);
}

void MainWindow::finishGrab(QPixmap picture, const GrabStart &start, const QPainterPath *path,
                            const QPolygonF *polygon)
{
    // A window that is not shown can't be brought to the front, and the wait would not end.
    if (!start.wasActive && m_pFocusDialog && m_pFocusDialog->isVisible())
        FocusThis(m_pFocusDialog);
    DealPicture(picture, path, polygon);
    NewDocument(picture, {});
    if (start.showAfter) {
        showInFront();
        activateWindow();
    }
}

bool MainWindow::runOverlay(CaptureOverlay &overlay, const GrabStart &start,
                            MagnifierSlot magnifier)
{
    connect(&overlay, &CaptureOverlay::ShowDetailWindowRequest, this, magnifier);
    const bool accepted = overlay.exec() == QDialog::Accepted;
    overlay.finished = true;
    (this->*magnifier)(nullptr, eMagClose, 0, 0);
    if (!accepted)
        return false;
    WaitFor();
    // Only now are the pixels read: the overlay has left, and the other program is in front again.
    if (!start.wasActive) {
        FocusPreApp();
    } else if (start.activeWindow) {
        start.activeWindow->activateWindow();
        QCoreApplication::processEvents();
    }
    return true;
}

void MainWindow::grabWithOverlay(const std::function<bool(const GrabStart &)> &grab)
{
    GrabStart start;
    if (!beginGrab(start))
        return;
    GWSnapWorkbenchStopMenuItemCapture();
    SetAppFocus();
    if (GetHideFromXML() && !start.wasMinimized) {
        showMinimized();
        // Where the overlay shows a picture of the desktop, the window has to be gone from it.
        if (!services().windows->isComposited())
            WaitFor();
    }
    const bool accepted = !m_CloseAfterGrab && grab(start);
    if (!accepted)
        restoreMinimized(start);
    RestoreAppFocus(!start.wasActive && (!accepted || !start.showAfter));
    endGrab();
}

void MainWindow::ShowGrabRectWindow(bool)
{
    grabWithOverlay([this](const GrabStart &start) {
        Dialog overlay(nullptr);
        overlay.SetPictureWidth(GetPictureWidthFile());
        overlay.SetPictureHeight(GetPictureHeightFile());
        if (!runOverlay(overlay, start, &MainWindow::ShowDetailWindowRequest_Rect))
            return false;
        finishGrab(overlay.getPixmap(), start);
        return true;
    });
}

void MainWindow::ShowGrabEllipseWindow(bool)
{
    grabWithOverlay([this](const GrabStart &start) {
        MyDrawRound overlay(nullptr);
        overlay.SetPictureWidth(GetPictureWidthFile());
        overlay.SetPictureHeight(GetPictureHeightFile());
        if (!runOverlay(overlay, start, &MainWindow::ShowDetailWindowRequest_Ellipse))
            return false;
        const QPixmap picture = overlay.getPixmap();
        const std::unique_ptr<QPainterPath> ellipse(overlay.getEllipse());
        finishGrab(picture, start, ellipse.get());
        return true;
    });
}

void MainWindow::ShowGrabPolygonWindow(bool)
{
    grabWithOverlay([this](const GrabStart &start) {
        dlgFreeHand overlay(nullptr);
        if (!runOverlay(overlay, start, &MainWindow::ShowDetailWindowRequest_Poly))
            return false;
        const QPixmap picture = overlay.getPixmap();
        const std::unique_ptr<QPolygonF> polygon(overlay.getPolygon());
        finishGrab(picture, start, nullptr, polygon.get());
        return true;
    });
}

void MainWindow::ShowDetailWindowRequest(QWidget *parent, EShowMagOpr opr, int x, int y, int type)
{
    m_Magnifier.request(parent, opr, {x, y}, type,
                        {GetShowMagFromXML(), GetMagnificationFromXML()});
}

void MainWindow::ShowDetailWindowRequest_Rect(QWidget *parent, EShowMagOpr opr, int x, int y)
{
    ShowDetailWindowRequest(parent, opr, x, y, DigDetail::s_region);
}

void MainWindow::ShowDetailWindowRequest_Ellipse(QWidget *parent, EShowMagOpr opr, int x, int y)
{
    ShowDetailWindowRequest(parent, opr, x, y, DigDetail::s_region);
}

void MainWindow::ShowDetailWindowRequest_Poly(QWidget *parent, EShowMagOpr opr, int x, int y)
{
    ShowDetailWindowRequest(parent, opr, x, y, DigDetail::s_polygon);
}

bool MainWindow::countDown(int seconds)
{
    DialogCountDown countdown(nullptr);
    m_pCountDown = &countdown;
    countdown.setSecond(seconds);
    countdown.show();
    // Escape reaches it only there.
    services().watch->bringToFront(&countdown);
    while (countdown.getSecond() >= 0 && !m_CloseAfterGrab) {
        gwsleep(s_round);
        QCoreApplication::processEvents();
    }
    m_pCountDown = nullptr;
    return countdown.getResult() == 1;
}

void MainWindow::ShowFullScreen(bool, bool withTimer)
{
    GrabStart start;
    if (!beginGrab(start))
        return;
    if (GetHideFromXML() && !start.wasMinimized)
        showMinimized();
    const int seconds = withTimer ? GetScreenTimerFromXML() : 0;
    if (seconds <= 0 || countDown(seconds)) {
        WaitFor();
        if (!start.wasActive)
            FocusPreApp();
        finishGrab(screenWindow(0, 0, -1, -1, true, nullptr), start);
    } else if (start.wasActive) {
        restoreMinimized(start);
    } else {
        SetPreAppActive();
    }
    endGrab();
}

void MainWindow::ShowAllWindow()
{
    GrabStart start;
    if (!beginGrab(start))
        return;
    WindowsPreView browser(this);
    // A minimised window would take its dialog along.
    showInFront();
    browser.findNormalFile = GetBtnAttr(this, u"BtnFilterLeft"_s, 4);
    browser.findFocusFile = GetBtnAttr(this, u"BtnFilterLeft"_s, 6);
    browser.clearNormalFile = GetBtnAttr(this, u"BtnFilterRight"_s, 4);
    browser.clearFocusFile = GetBtnAttr(this, u"BtnFilterRight"_s, 6);
    // The same for both, on purpose.
    browser.clearFilledFile = GetBtnAttr(this, u"BtnFilterRight"_s, 7);
    browser.clearFilledFocusFile = browser.clearFilledFile;
    if (!m_CloseAfterGrab && browser.exec() == QDialog::Accepted) {
        const QList<QString> &names = *browser.getNameList();
        for (qsizetype i = 0; i < names.size(); ++i) {
            QPixmap picture = browser.getPixmap()->at(i);
            DealPicture(picture, nullptr, nullptr);
            NewDocument(picture, names[i]);
        }
    }
    endGrab();
}

void MainWindow::startHelper(HelperGrab grab, void (*start)())
{
    if (m_bCapturing)
        raiseGrab();
    if (m_bCapturing || m_bStartingHelper || sessionRuns())
        return;
    m_bStartingHelper = true;
    m_HelperGrab = grab;
    start();
    // Not before the helper's first word has come, which waits in the event loop: which grab it is
    // about must not change until then.
    QMetaObject::invokeMethod(
        this, [this] { m_bStartingHelper = false; }, Qt::QueuedConnection);
}

void MainWindow::ShowSelectWindow(bool)
{
    startHelper(HelperGrab::Session, GWSnapWorkbenchStartCapture);
}

void MainWindow::ShowMenuWindow() { startHelper(HelperGrab::Menu, GWSnapWorkbenchMenuCapture); }

void MainWindow::hideForHelper()
{
    m_bHelperWorking = true;
    if (isMinimized())
        return;
    m_bMinimizedForHelper = true;
    showMinimized();
}

void MainWindow::showAfterHelper()
{
    m_bHelperWorking = false;
    // Above an overlay the window would be in the picture.
    if (m_bCapturing)
        return;
    // A window that the user had minimised stays so.
    if (std::exchange(m_bMinimizedForHelper, false) || !isMinimized())
        showInFront();
}

void MainWindow::ShowImportPicture(const char *path)
{
    if (!path)
        return;
    QPixmap picture;
    picture.load(QString::fromUtf8(path));
    DealPicture(picture, nullptr, nullptr);
    NewDocument(picture, {});
    showInFront();
    activateWindow();
}

QString MainWindow::GetPictureWidthFile() { return GetBtnAttr(this, u"BtnCaptureRegion"_s, 4); }

QString MainWindow::GetPictureHeightFile() { return GetBtnAttr(this, u"BtnCaptureRegion"_s, 6); }

void MainWindow::on_BtnFrameRect_clicked() { ShowGrabRectWindow(true); }

void MainWindow::on_BtnFrameEllipse_clicked() { ShowGrabEllipseWindow(true); }

void MainWindow::on_BtnFramePolygon_clicked() { ShowGrabPolygonWindow(true); }

void MainWindow::on_BtnFullScreen_clicked() { ShowFullScreen(true, true); }

void MainWindow::on_BtnAllWindows_clicked() { ShowAllWindow(); }

void MainWindow::on_BtnSelectWindow_clicked() { ShowSelectWindow(true); }

void MainWindow::on_BtnMenuCapture_clicked() { ShowMenuWindow(); }
