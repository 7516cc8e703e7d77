#include "shell/mainwindow.h"

#include "config/applicationrecord.h"
#include "config/licensing.h"
#include "config/resourcefile.h"
#include "config/settings.h"
#include "platform/services.h"
#include "shell/capturetools.h"
#include "shell/dialogpreference.h"
#include "shell/frontwindow.h"
#include "shell/grabflow.h"
#include "shell/noticebar.h"
#include "shell/progressplate.h"
#include "shell/trayreach.h"
#include "shell/windowreach.h"
#include "ui_mainwindow.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QSignalBlocker>
#include <QThread>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

MainWindow *g_MainWindow = nullptr;

namespace {

constexpr QSize s_smallestSize(950, 650);
constexpr QSize s_iconSize(64, 64);
constexpr int s_widestLine = 1000;  // picture pixels
constexpr qreal s_largestText = 500;
constexpr int s_farthest = 32767;  // where a window system can put a window
constexpr int s_unwindTime = 10;   // ms in which a dialog's loop ends
constexpr int s_saveDelay = 3000;  // ms from a change of a setting; more changes may follow

QRect availableGeometry() { return QGuiApplication::primaryScreen()->availableGeometry(); }

// The primary screen's first.
QList<QRect> screenAreas()
{
    QList<QRect> areas{availableGeometry()};
    for (const QScreen *screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

// A skin without this picture, or with one that can't be read, must not leave a hole in the tray.
QIcon iconFrom(const QString &path)
{
    QIcon icon(path);
    if (!icon.pixmap(s_iconSize).isNull())
        return icon;
    return QIcon::fromTheme(u"snapworkbench"_s, QIcon(QCoreApplication::applicationDirPath() +
                                                      u"/skin/BtnIcon_normal.png"_s));
}

}  // namespace

MainWindow::MainWindow()
    : QMainWindow(nullptr, Qt::FramelessWindowHint), ui(std::make_unique<Ui::MainWindow>())
{
    // The window paints its body itself, and what the corners' pictures leave free shows the
    // desktop. A window keeps the depth that it was made with, and a compositor may come later.
    setAttribute(Qt::WA_TranslucentBackground);
    m_isComposited = services().windows->isComposited();
    services().windows->setCompositingHandler([this] { followCompositor(); });
    ui->setupUi(this);
    setUpCaption();
    setWindowTitle(tr("Snap Workbench"));
    setWindowIcon(iconFrom(GetBtnAttr(this, u"BtnIcon"_s, 4)));
    ui->LblCaption->setText(windowTitle());

    setSettingsHandler([this] { saveSettingsSoon(); });
    setUpGrabs();
    initHotKey(HotkeyCallBack);
    SetAppActiveChangeCallback(ActiveCallBack);

    m_Jobs = std::make_unique<PictureJobs>(*services().clock, this);
    connect(m_Jobs.get(), &PictureJobs::givenUp, this, [this](PictureJobs::Kind kind, int number) {
        if (kind == PictureJobs::Kind::Read && isDocument(indexOf(number)))
            dropDocument(indexOf(number));
    });
    m_pProgress = new ProgressPlate(ui->tabWidget, *m_Jobs, *services().clock);
    packUnseen();
    setUpPictureArea();
    setUpEditor();

    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this,
            &MainWindow::on_Idle);
    CreateMenus();
    InitImgButton();
    setUpStrips();
    ui->widSysTool->hide();
    ui->tabWidget->setFocus(Qt::OtherFocusReason);
    SetAutoRunToXML(GetAutoRunFromXML());
    setUpTray();
    // After the toolkit and the window manager have moved what they move themselves.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &MainWindow::comeWithinReach,
            Qt::QueuedConnection);
    const auto follow = [this](QScreen *screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, &MainWindow::comeWithinReach,
                Qt::QueuedConnection);
    };
    for (QScreen *screen : QGuiApplication::screens())
        follow(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, follow);
}

MainWindow::~MainWindow()
{
    freeHotKey();
    SetAppActiveChangeCallback(nullptr);
    services().windows->setCompositingHandler(nullptr);
    setSettingsHandler(nullptr);
    SaveResourceFile();
}

void MainWindow::setUpEditor()
{
    m_pEditor = std::make_unique<TPictureEditor>(ui->lblPicture, this);
    m_pEditor->setcallback(PictureChanged);
    m_pEditor->setState(stateMove);

    const QString color = GetConfigString(u"LineColor"_s);
    m_pEditor->setPenColor(color.isEmpty() ? QColor(Qt::red)
                                           : QColor(static_cast<QRgb>(color.toInt())));
    // What the controls show now comes from the settings, and need not go back there.
    const QSignalBlocker widths(ui->SliderLineWidth);
    const QSignalBlocker fonts(ui->CmbFont);
    const QSignalBlocker sizes(ui->CmbFontSize);
    const QString lineWidth = GetConfigString(u"LineWidth"_s);
    if (!lineWidth.isEmpty()) {
        const int width = std::clamp(lineWidth.toInt(), 1, s_widestLine);
        m_pEditor->setLineWidth(width);
        ui->SliderLineWidth->setValue(width - 1);
    }
    connect(m_pEditor.get(), &TPictureEditor::typed, this, [this] { touchRecovery(); });
    connect(m_pEditor.get(), &TPictureEditor::movealue, this, &MainWindow::MovePicture);
    const QString text = GetConfigString(u"TextFont"_s);
    QFont font;
    if (!text.isEmpty() && font.fromString(text)) {
        if (font.pointSizeF() > s_largestText || font.pixelSize() > s_largestText)
            font.setPointSizeF(s_largestText);
        ui->CmbFont->setCurrentFont(font);
        const int size = ui->CmbFontSize->findText(QString::number(font.pointSize()));
        if (size >= 0)
            ui->CmbFontSize->setCurrentIndex(size);
        m_pEditor->set_m_Font(font);
    } else {
        m_pEditor->set_m_Font(chosenFont(ui->CmbFont->currentFont()));
    }
}

void MainWindow::setUpTray()
{
    new TrayReach(m_TrayMenu, this);
    // The desktop's tray answers late, and the window need not wait for it.
    QTimer::singleShot(0, this, [this] {
        m_TrayIcon = std::make_unique<QSystemTrayIcon>();
        m_TrayIcon->setIcon(windowIcon());
        m_TrayIcon->setContextMenu(m_TrayMenu);
        // A tray opens the menu itself for the other button only.
        connect(m_TrayIcon.get(), &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::Trigger)
                        m_TrayMenu->popup(QCursor::pos());
                });
        m_TrayIcon->setVisible(true);
    });
}

// The registration may want to remind of itself while the program idles.
void MainWindow::on_Idle() { Licensing::status(); }

void MainWindow::InitShowGeometry()
{
    holdToScreen();
    // The exact text counts here, and not the number.
    if (GetConfigString(u"WindowMaxed"_s) == u"1")
        ShowMaxedGeometry();
    else
        ShowNormalGeometry();
}

void MainWindow::holdToScreen()
{
    setMinimumSize(s_smallestSize.boundedTo(screen()->availableSize()));
}

void MainWindow::ShowNormalGeometry()
{
    const QRect available = availableGeometry();
    const int width = GetConfigNumber(u"WindowWidth"_s, s_smallestSize.width(), 1, s_farthest);
    const int height = GetConfigNumber(u"WindowHeight"_s, s_smallestSize.height(), 1, s_farthest);
    const int left =
        GetConfigNumber(u"WindowLeft"_s, (available.width() - width) / 2, -s_farthest, s_farthest);
    const int top =
        GetConfigNumber(u"WindowTop"_s, (available.height() - height) / 2, -s_farthest, s_farthest);
    setGeometry(withinReach(
        {left, top, std::min(width, available.width()), std::min(height, available.height())},
        screenAreas()));
}

// A window that stood on a monitor that is gone comes to one that is there, and one whose monitor
// has become smaller with it.
void MainWindow::comeWithinReach()
{
    holdToScreen();
    QRect area(geometry().topLeft(), size().boundedTo(screen()->availableVirtualSize()));
    area = area == geometry() ? withinReach(area, screenAreas())
                              : movedInto(area, screen()->availableGeometry());
    if (area != geometry())
        setGeometry(area);
}

void MainWindow::ShowMaxedGeometry() { setGeometry(availableGeometry()); }

bool MainWindow::GetMaximized() const { return size() == availableGeometry().size(); }

void MainWindow::SaveNormalGeometry()
{
    SetConfigString(u"WindowLeft"_s, QString::number(geometry().x()));
    SetConfigString(u"WindowTop"_s, QString::number(geometry().y()));
    SetConfigString(u"WindowWidth"_s, QString::number(width()));
    SetConfigString(u"WindowHeight"_s, QString::number(height()));
}

// A maximised window keeps the normal size that was stored before.
void MainWindow::SaveGeometry()
{
    const bool maximized = GetMaximized();
    SetConfigString(u"WindowMaxed"_s, maximized ? u"1"_s : u"0"_s);
    if (!maximized)
        SaveNormalGeometry();
}

void MainWindow::saveSettings()
{
    SaveGeometry();
    SaveResourceFile();
}

void MainWindow::moveEvent(QMoveEvent *event)
{
    QMainWindow::moveEvent(event);
    saveSettingsSoon();
}

void MainWindow::saveSettingsSoon()
{
    if (std::exchange(m_isSaveDue, true))
        return;
    services().clock->after(s_saveDelay, this, [this] {
        m_isSaveDue = false;
        if (isVisible())
            SaveGeometry();
        const QString reason = SaveResourceFile();
        const bool wasTold = std::exchange(m_isSaveFailureTold, !reason.isEmpty());
        if (reason.isEmpty())
            return;
        if (!wasTold)
            say(tr("The settings can't be saved: %1").arg(reason));
        saveSettingsSoon();
    });
}

// Whether the user can see all of a part of this window. A window that is covered is exposed all
// the same where there is a compositor.
bool MainWindow::isUncovered(const QWidget &part) const
{
    if (!isVisible() || isMinimized() || !windowHandle() || !windowHandle()->isExposed())
        return false;
    WindowServer &server = *services().windows;
    const int number = server.numberOf(this);
    const auto above = server.windows(WindowServer::List::AtAndAbove, number);
    const auto own = std::find_if(above.begin(), above.end(),
                                  [&](const auto &entry) { return entry.number == number; });
    if (own == above.end())
        return true;
    const qreal scale = devicePixelRatioF();
    const QRectF area(own->bounds.topLeft() + QPointF(part.mapTo(this, QPoint())) * scale,
                      QSizeF(part.size()) * scale);
    return std::none_of(above.begin(), own,
                        [&](const auto &entry) { return entry.bounds.intersects(area); });
}

void MainWindow::say(const QString &text, const QList<NoticeBar::Action> &actions)
{
    if (!m_pNotice)
        m_pNotice = new NoticeBar(ui->tabWidget);
    m_pNotice->tell(text, actions);
    if (isUncovered(*m_pNotice) || !m_TrayIcon || !QSystemTrayIcon::isSystemTrayAvailable())
        return;
    m_TrayIcon->showMessage(QString::fromWCharArray(g_AppName), text, windowIcon());
    // It has been told: who opens the window hours later need not hear of it.
    m_pNotice->startTime();
}

// What a dialog was opened by goes on after it, and needs the window. A dialog of the desktop's has
// a loop that is none of the toolkit's.
void MainWindow::quit()
{
    // A grab comes to its end first, and quits then.
    if (m_bCapturing && !m_Grabs->quit())
        return;
    // What waits for a file that is being written is a loop like a dialog's.
    QWidget *modal = QApplication::activeModalWidget();
    if (modal || QThread::currentThread()->loopLevel() > 1) {
        auto *dialog = qobject_cast<QDialog *>(modal);
        if (dialog && !dialog->close())
            dialog->reject();
        services().clock->after(s_unwindTime, this, [this] { quit(); });
        return;
    }
    // The question would stay with a window that is minimised.
    if (HasModified(true))
        showInFront();
    close();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // The grab may wait for windows that would be gone, and its picture has not been asked about.
    if (m_bCapturing && !m_Grabs->quit()) {
        event->ignore();
        return;
    }
    if (m_Jobs->find(PictureJobs::Kind::Write, 0)) {
        event->ignore();
        services().clock->after(s_unwindTime, this, [this] { quit(); });
        return;
    }
    if (!CloseAllFiles()) {
        event->ignore();
        return;
    }
    event->accept();
    m_Front->dropCover();
    delete std::exchange(m_pPreference, nullptr);
    QCoreApplication::quit();
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (auto *button = qobject_cast<QPushButton *>(watched))
        return filterButton(*button, *event);
    if (event->type() == QEvent::Paint && watched == ui->widTool)
        DrawToolBackgound();
    else if (event->type() == QEvent::Paint && watched == ui->widPicture)
        DrawPictureBackgound();
    else if (event->type() == QEvent::Resize && watched == ui->scrollArea)
        PictureChanged(TPictureEditor::SizeChange, 0);
    else if (event->type() == QEvent::Resize && watched == ui->tabWidget)
        ShowPictureInTab(m_CurDocument);
    return QMainWindow::eventFilter(watched, event);
}
