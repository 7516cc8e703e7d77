#include "shell/mainwindow.h"

#include "capture/grab.h"
#include "capture/magnifierpanel.h"
#include "config/licensing.h"
#include "config/settings.h"
#include "editing/picturefile.h"
#include "platform/services.h"
#include "shell/capturetools.h"
#include "shell/frontwindow.h"
#include "shell/grabflow.h"

#include <QApplication>
#include <QScreen>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

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
      [](MainWindow &window) { window.comeForward(); }},
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
     [](MainWindow &window) { window.comeForward(); }}};

Command commandFor(const QString &caption)
{
    const auto found =
        std::find_if(s_commands.begin(), s_commands.end(), [&](const NamedCommand &command) {
            return caption == MainWindow::tr(command.caption);
        });
    return found == s_commands.end() ? nullptr : found->run;
}

// The application that was in front before a grab, and the title of its window.
std::pair<QString, QString> frontBefore(const Grab &grab)
{
    const auto entries = services().windows->windows(WindowServer::List::OnScreen, 0);
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const WindowServer::Entry &entry) {
            return grab.process != 0 && entry.process == grab.process && entry.layer == 0;
        });
    return found == entries.end() ? std::pair<QString, QString>()
                                  : std::pair(found->owner, found->name);
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

void MainWindow::setUpGrabs()
{
    Clock &clock = *services().clock;
    m_Front = std::make_unique<FrontWindow>(*this, clock);
    m_Tools = std::make_unique<CaptureTools>(*this, *m_Front, clock);
    m_Grabs = std::make_unique<GrabFlow>(*m_Front, *m_Tools, clock);
    connect(m_Front.get(), &FrontWindow::escaped, m_Grabs.get(), &GrabFlow::escape);
    connect(m_Tools.get(), &CaptureTools::opened, m_Grabs.get(), &GrabFlow::opened);
    connect(m_Tools.get(), &CaptureTools::escaped, m_Grabs.get(), &GrabFlow::escape);
    connect(qGuiApp, &QGuiApplication::screenRemoved, m_Grabs.get(), &GrabFlow::displayLost,
            Qt::QueuedConnection);
    connect(m_Grabs.get(), &GrabFlow::stateChanged, this, [this](GrabState state) {
        m_bCapturing = state != GrabState::Idle;
        emit grabStateChanged(GrabFlow::nameOf(state));
    });
}

void MainWindow::WaitFor() { Front(*services().clock).settle(); }

void MainWindow::FocusThis(QWidget *widget) { m_Front->front().bring(widget ? *widget : *this); }

// Raising alone leaves a minimised window where it is.
void MainWindow::showInFront()
{
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    FocusThis(nullptr);
}

void MainWindow::FocusPreApp() { Front(*services().clock).giveBack(); }

void MainWindow::RestoreAppFocus(bool giveBack) { m_Front->dropFocus(giveBack); }

void MainWindow::SetAppFocus() { m_Front->takeFocus(); }

void MainWindow::comeForward() { m_Grabs->press(GrabCommand::Show); }

void MainWindow::leaveGrab() { m_Grabs->quit(); }

void MainWindow::dismissHelper() { m_Grabs->dropHelper(); }

void MainWindow::addGrab(Grab grab)
{
    // One that has a name is of a window that was chosen, and not of the one in front.
    const auto [owner, title] =
        grab.name.isEmpty() ? frontBefore(grab) : std::pair(QString(), grab.name);
    LoadPixmapFlag();
    TPictureEditor::EditPolyPixmap(grab.picture, m_FlagPixmap, Licensing::status().registered,
                                   std::get_if<QPainterPath>(&grab.outline),
                                   std::get_if<QPolygonF>(&grab.outline));
    NewDocument(grab.picture, grab.name,
                {.time = QDateTime::currentDateTime(),
                 .kind = grab.kind,
                 .application = owner,
                 .title = title});
}

void MainWindow::ShowGrabRectWindow(bool) { m_Grabs->press(GrabCommand::Rectangle); }

void MainWindow::ShowGrabEllipseWindow(bool) { m_Grabs->press(GrabCommand::Ellipse); }

void MainWindow::ShowGrabPolygonWindow(bool) { m_Grabs->press(GrabCommand::Polygon); }

void MainWindow::ShowFullScreen(bool, bool withTimer)
{
    m_Grabs->press(withTimer ? GrabCommand::Countdown : GrabCommand::Screen);
}

void MainWindow::ShowAllWindow() { m_Grabs->press(GrabCommand::Windows); }

void MainWindow::ShowSelectWindow(bool) { m_Grabs->press(GrabCommand::Window); }

void MainWindow::ShowMenuWindow() { m_Grabs->press(GrabCommand::Menu); }

void MainWindow::hideForHelper() { m_Grabs->helperWorks(); }

void MainWindow::showAfterHelper() { m_Grabs->helperEnds(); }

void MainWindow::helperOpens() { m_Grabs->opened(); }

void MainWindow::helperScrolls() { m_Grabs->helperScrolls(); }

void MainWindow::helperPutsBack() { m_Grabs->helperPutsBack(); }

void MainWindow::ShowImportPicture(const char *path)
{
    if (!path)
        return;
    PictureProgress progress;
    m_Grabs->helperTakes({.picture = QPixmap::fromImage(
                              readPicture(QString::fromUtf8(path), progress, true).picture)});
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

QString MainWindow::GetPictureWidthFile() { return GetBtnAttr(this, u"BtnCaptureRegion"_s, 4); }

QString MainWindow::GetPictureHeightFile() { return GetBtnAttr(this, u"BtnCaptureRegion"_s, 6); }

void MainWindow::on_BtnFrameRect_clicked() { ShowGrabRectWindow(true); }

void MainWindow::on_BtnFrameEllipse_clicked() { ShowGrabEllipseWindow(true); }

void MainWindow::on_BtnFramePolygon_clicked() { ShowGrabPolygonWindow(true); }

void MainWindow::on_BtnFullScreen_clicked() { ShowFullScreen(true, true); }

void MainWindow::on_BtnAllWindows_clicked() { ShowAllWindow(); }

void MainWindow::on_BtnSelectWindow_clicked() { ShowSelectWindow(true); }

void MainWindow::on_BtnMenuCapture_clicked() { ShowMenuWindow(); }
