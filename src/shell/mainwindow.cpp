#include "shell/mainwindow.h"

#include "base/log.h"
#include "base/paths.h"
#include "capture/grab.h"
#include "capture/magnifierpanel.h"
#include "config/applicationrecord.h"
#include "config/licensing.h"
#include "config/resourcefile.h"
#include "editing/pendefaults.h"
#include "editing/picturefile.h"
#include "platform/services.h"
#include "shell/aboutbox.h"
#include "shell/backdropdialog.h"
#include "shell/canvasdialog.h"
#include "shell/capturetools.h"
#include "shell/commands.h"
#include "shell/departure.h"
#include "shell/dialogpreference.h"
#include "shell/documentfiles.h"
#include "shell/frontwindow.h"
#include "shell/grabcalls.h"
#include "shell/grabdelivery.h"
#include "shell/grabflow.h"
#include "shell/handedfiles.h"
#include "shell/notices.h"
#include "shell/picturedrag.h"
#include "shell/pictureintake.h"
#include "shell/picturereading.h"
#include "shell/pins.h"
#include "shell/recentfiles.h"
#include "shell/resizedialog.h"
#include "shell/settingssaver.h"
#include "shell/startpanel.h"
#include "shell/stripfold.h"
#include "shell/stylecontrols.h"
#include "shell/toolstrip.h"
#include "shell/trayicon.h"
#include "shell/unsavedpictures.h"
#include "shell/windowface.h"
#include "shell/windowframe.h"
#include "shell/windowmenus.h"
#include "shell/workbench.h"
#include "shell/zoomcontrols.h"
#include "ui_mainwindow.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QThread>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

MainWindow *g_MainWindow = nullptr;

namespace {

constexpr int s_lookAround = 40;  // logical pixels
constexpr int s_unwindTime = 10;  // ms in which a dialog's loop ends

void openAddress(const wchar_t *address)
{
    QDesktopServices::openUrl(QUrl(QString::fromWCharArray(address)));
}

}  // namespace

MainWindow::MainWindow()
    : QMainWindow(nullptr, Qt::FramelessWindowHint), ui(std::make_unique<Ui::MainWindow>())
{
    // The window paints its body itself, and what the corners' pictures leave free shows the
    // desktop. A window keeps the depth that it was made with, and a compositor may come later.
    setAttribute(Qt::WA_TranslucentBackground);
    m_Frame = std::make_unique<WindowFrame>(*this, m_Skin);
    ui->setupUi(this);
    addToolButtons(*ui->layPictureEdit, *ui->BtnUndo);
    setWindowTitle(tr("Snap Workbench"));
    setWindowIcon(m_Skin.programIcon());
    ui->LblCaption->setText(windowTitle());

    m_Menus = std::make_unique<WindowMenus>(*this, *ui->layMenuBar);
    m_Tray = std::make_unique<TrayIcon>(m_Menus->tray(), windowIcon(), this);
    connect(m_Tray.get(), &TrayIcon::pressed, this, &MainWindow::comeForward);
    m_Notices = std::make_unique<Notices>(*ui->tabWidget, *m_Tray);
    const auto storeGeometry = [this] {
        if (isVisible())
            SaveGeometry();
    };
    m_Settings = std::make_unique<SettingsSaver>(storeGeometry, *m_Notices);
    setUpGrabs();
    setUpHotKeys();
    SetAppActiveChangeCallback(ActiveCallBack);

    m_Work = std::make_unique<Workbench>(*ui, *this, *m_Notices);
    m_Unsaved = std::make_unique<UnsavedPictures>(*m_Work, *m_Notices);
    m_Files = std::make_unique<DocumentFiles>(*this, *m_Work, *m_Notices, *m_Unsaved);
    m_Recent = std::make_unique<RecentFiles>(m_Menus->recent(), *m_Work, *m_Notices, nullptr);
    connect(m_Work.get(), &Workbench::titleChanged, this, &MainWindow::RefreshWindowTitle);
    connect(m_Files.get(), &DocumentFiles::asks, this, &MainWindow::showInFront);
    setUpEditor();
    m_Start = new StartPanel(*this, *ui->tabWidget);
    connectCommands(*this);
    connectControls();
    m_Face = std::make_unique<WindowFace>(*ui, *this, m_Skin, m_Work->editor());
    connect(m_Style, &StyleControls::refreshed, this, [this] {
        m_Face->leave(*ui->BtnColor);
        m_Face->leave(*ui->BtnStyle);
    });

    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this,
            &MainWindow::on_Idle);
    ui->tabWidget->setFocus(Qt::OtherFocusReason);
    SetAutoRunToXML(GetAutoRunFromXML());
}

void MainWindow::setUpHotKeys()
{
    services().hotKeys->setNames([](int number) {
        const Command *command = commandOfHotKey(number);
        if (!services().abilities.lackOf(command->needs).isEmpty())
            return HotKeys::Name();
        // A second key of the same command is another one to the desktop.
        const bool isSecond = command->hotKey && command->hotKey != number;
        return HotKeys::Name{QLatin1StringView(command->action) +
                                 (isSecond ? u"-again"_s : QString()),
                             titleOf(*command)};
    });
    initHotKey(HotkeyCallBack);
    services().hotKeys->hearInMenus(Preferences::freezesScreen());
    // The menus were made before any key was asked for.
    m_Menus->updateHotKeys();
    // Until the preferences have a page for them, which hears it then.
    services().hotKeys->setChangeHandler([this] { showHotKeys(); });
}

void MainWindow::showHotKeys()
{
    m_Menus->updateHotKeys();
    updateHotKeys(*this);
    m_Start->updateKeys();
}

MainWindow::~MainWindow()
{
    services().hotKeys->setChangeHandler({});
    freeHotKey();
    SetAppActiveChangeCallback(nullptr);
}

void MainWindow::setUpGrabs()
{
    Clock &clock = *services().clock;
    m_Front = std::make_unique<FrontWindow>(*this, clock);
    m_Tools = std::make_unique<CaptureTools>(*this, *m_Front, clock);
    m_Grabs = std::make_unique<GrabFlow>(*m_Front, *m_Tools, *services().pictures, clock);
    connect(m_Front.get(), &FrontWindow::escaped, m_Grabs.get(), &GrabFlow::escape);
    connect(m_Tools.get(), &CaptureTools::opened, m_Grabs.get(), &GrabFlow::opened);
    connect(m_Tools.get(), &CaptureTools::escaped, m_Grabs.get(), &GrabFlow::escape);
    connect(qGuiApp, &QGuiApplication::screenRemoved, m_Grabs.get(), &GrabFlow::displayLost,
            Qt::QueuedConnection);
    connect(m_Grabs.get(), &GrabFlow::stateChanged, this, [this](GrabState state) {
        if (!m_bCapturing)
            m_Notices->passDone();
        m_bCapturing = state != GrabState::Idle;
        m_Menus->updateCancel(m_Grabs->canCancel());
        emit grabStateChanged(GrabFlow::nameOf(state));
    });
}

void MainWindow::setUpEditor()
{
    m_Reading = std::make_unique<PictureReading>(*this, *m_Work, *m_Notices);
    m_Intake = std::make_unique<PictureIntake>(*m_Work, *m_Notices, nullptr);
    m_Handed = std::make_unique<HandedFiles>(GetDirectory(g_ResourceFileName), nullptr);
    setAcceptDrops(true);
    m_Delivery = std::make_unique<GrabDelivery>(*m_Work, *m_Notices, *m_Reading);
    connect(m_Delivery.get(), &GrabDelivery::wanted, this, &MainWindow::comeForward);
    m_Pins = std::make_unique<Pins>(*m_Work, *m_Delivery, *m_Notices);
    connect(m_Pins.get(), &Pins::editWanted, this, &MainWindow::comeForward);
    // Shortcuts of disabled items are dead.
    connect(m_Pins.get(), &Pins::changed, this, &MainWindow::BeforeShowEdit);
    m_Calls = std::make_unique<GrabCalls>(*m_Grabs, *m_Delivery, m_Work->jobs());
    TPictureEditor &editor = m_Work->editor();
    editor.setcallback(PictureChanged);
    editor.setState(stateMove);
    // What the controls show comes from the settings, and need not go back there: they are
    // connected later.
    m_Style = new StyleControls(*ui, editor);
    editor.setSharp(Preferences::sharpPixels());
    new ZoomControls(*ui, *m_Work);  // the strip owns it
}

void MainWindow::connectControls()
{
    lookForReaders();
    connect(ui->tabWidget, &QTabWidget::currentChanged, this,
            &MainWindow::on_tabWidget_currentChanged);
    connect(ui->tabWidget, &QTabWidget::tabCloseRequested, this,
            &MainWindow::on_tabWidget_tabCloseRequested);
    connect(ui->tabWidget, &TabWidget::menuWanted, this, &MainWindow::openTabMenu);
    connect(ui->tabWidget, &TabWidget::dragWanted, this, &MainWindow::dragTab);
    connect(ui->SliderLineWidth, &QSlider::valueChanged, this,
            &MainWindow::on_SliderLineWidth_valueChanged);
    connect(ui->CmbFont, &FontBox::currentFontChanged, this,
            &MainWindow::on_CmbFont_currentFontChanged);
    connect(ui->CmbFontSize, &QComboBox::currentIndexChanged, this,
            &MainWindow::on_CmbFontSize_currentIndexChanged);
    // Also after the choice of what was chosen already.
    for (QComboBox *box : {static_cast<QComboBox *>(ui->CmbFont), ui->CmbFontSize})
        connect(box, &QComboBox::activated, this, [this] { m_Work->editor().goOnTyping(); });
    TPictureEditor &editor = m_Work->editor();
    connect(&editor, &TPictureEditor::movealue, this, &MainWindow::MovePicture);
    connect(&editor, &TPictureEditor::menuWanted, this, &MainWindow::openPictureMenu);
    connect(&editor, &TPictureEditor::lookedAt, this, &MainWindow::lookAt);
    connect(&editor, &TPictureEditor::colorTaken, this, &MainWindow::useColor);
    connect(&editor, &TPictureEditor::textWanted, this,
            [this](const QRect &part) { m_Reading->copyText(part); });
    connect(&editor, &TPictureEditor::selectionChanged, this, [this] {
        m_Style->refresh();
        BeforeShowEdit();
    });
    auto *pipette = findChild<QPushButton *>(QLatin1StringView(toolOf(statePipette).button));
    pipette->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(pipette, &QWidget::customContextMenuRequested, this,
            [this, pipette](QPoint position) { offerColorText(pipette->mapToGlobal(position)); });
    for (QWidget *widget : {static_cast<QWidget *>(ui->tabWidget), ui->widTool, ui->widPicture,
                            static_cast<QWidget *>(ui->scrollArea)})
        widget->installEventFilter(this);
}

// The registration may want to remind of itself while the program idles.
void MainWindow::on_Idle() { Licensing::status(); }

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
    endWhenClosed();
    close();
}

// What is open stays, so there is nothing to ask about. The toolkit tells no close of the desktop's
// from one of this program's own.
void MainWindow::hideInTray()
{
    if (m_pPreference)
        m_pPreference->hide();
    hide();
    if (!Preferences::hasToldOfTray() &&
        m_Tray->tell(QString::fromWCharArray(g_AppName),
                     tr("The program goes on in the tray. \"Quit\" in the menu there ends it.")))
        Preferences::setToldOfTray();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    if (!std::exchange(m_IsEnding, false) && Preferences::closesToTray() && TrayIcon::isThere())
        return hideInTray();
    // The grab may wait for windows that would be gone, and its picture has not been asked about.
    if (m_bCapturing && !m_Grabs->quit())
        return;
    if (m_Work->jobs().find(PictureJobs::Kind::Write, 0)) {
        services().clock->after(s_unwindTime, this, [this] { quit(); });
        return;
    }
    if (!CloseAllFiles())
        return;
    event->accept();
    m_Front->dropCover();
    delete std::exchange(m_pPreference, nullptr);
    // The toolkit closes all windows now.
    endWhenClosed();
    m_Pins->end();
    QCoreApplication::quit();
}

// What is dragged out of here need not come in again.
void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->source() || !PictureIntake::isOffered(*event->mimeData()))
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    m_Intake->take(*event->mimeData());
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == ui->scrollArea)
        m_Work->fit();
    else if (event->type() == QEvent::Resize && watched == ui->tabWidget)
        ShowPictureInTab(m_Work->documents().current());
    return (m_Face && m_Face->takes(watched, event)) || QMainWindow::eventFilter(watched, event);
}

// Any point of the window that no child takes moves it; its far corner resizes it.
bool MainWindow::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::ApplicationFontChange:
        m_Face->followFont();
        m_Style->refresh();
        break;
    case QEvent::ScreenChangeInternal:
        m_Frame->holdToScreen();
        // The other screen may have another scale.
        m_Work->fit();
        break;
    // A press that follows another one soon is a press all the same.
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonPress:
        m_Frame->press(*static_cast<QMouseEvent *>(event));
        break;
    case QEvent::MouseMove:
        m_Frame->move(*static_cast<QMouseEvent *>(event));
        break;
    case QEvent::MouseButtonRelease:
        m_Frame->release();
        break;
    default:
        break;
    }
    return QMainWindow::event(event);
}

void MainWindow::paintEvent(QPaintEvent * /*event*/) { m_Frame->paint(); }

void MainWindow::moveEvent(QMoveEvent *event)
{
    QMainWindow::moveEvent(event);
    if (m_Settings)
        m_Settings->saveSoon();
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    m_Frame->cutCorners();
    if (m_Settings)
        m_Settings->saveSoon();
}

void MainWindow::InitShowGeometry() { m_Frame->showStored(); }

void MainWindow::showAtStart(bool isMinimized)
{
    if (!isMinimized)
        show();
    else if (services().ownWindows->placesWindows())
        showMinimized();
    else
        connect(m_Tray.get(), &TrayIcon::missing, this, &MainWindow::show);
}

void MainWindow::ShowNormalGeometry() { m_Frame->showNormal(); }

void MainWindow::ShowMaxedGeometry() { m_Frame->showMaximized(); }

bool MainWindow::GetMaximized() const { return m_Frame->isMaximized(); }

void MainWindow::SaveNormalGeometry() { m_Frame->storeNormal(); }

void MainWindow::SaveGeometry() { m_Frame->store(); }

void MainWindow::saveSettings()
{
    SaveGeometry();
    SaveResourceFile();
}

void MainWindow::on_BtnMax_clicked()
{
    if (GetMaximized()) {
        ShowNormalGeometry();
    } else {
        SaveNormalGeometry();
        ShowMaxedGeometry();
    }
    m_Face->leave(*ui->BtnMax);
}

void MainWindow::NewDocument(const QPixmap &pixmap, const QString &name,
                             const PictureOrigin &origin)
{
    m_Work->add(pixmap, name, origin);
}

void MainWindow::RefillTabList() { m_Work->refresh(); }

void MainWindow::ShowPictureInTab(int index) { m_Work->tabs().show(index); }

void MainWindow::SetCurDocumentIndex(int index) { m_Work->show(index); }

int MainWindow::GetDocumentIndex(const QString &name) const
{
    return m_Work->documents().indexOfFile(name);
}

QString MainWindow::GetFileShowName(int index) const
{
    const DocumentList &documents = m_Work->documents();
    return documents.has(index) ? documents[index].GetShowName() : QString();
}

void MainWindow::RefreshWindowTitle(const QString &tab)
{
    QString title = tr("Snap Workbench");
    if (!tab.isEmpty())
        title = tab + u" - "_s + title;
    ui->LblCaption->setText(title);
    // The toolkit takes a lone "[*]" for its own mark of a modified window.
    setWindowTitle(title.replace(u"[*]"_s, u"[*][*]"_s));
    // Shortcuts of disabled menu items are dead, and nobody opens the menu before pressing one.
    BeforeShowFile();
    m_Start->setVisible(m_Work->documents().isEmpty());
}

bool MainWindow::HasModified(bool all) const { return m_Work->hasModified(all); }

void MainWindow::RedrawPicture() { m_Work->redraw(); }

void MainWindow::MovePicture(int dx, int dy)
{
    m_Work->tabs().scrollTo(m_Work->tabs().scrolled() - QPoint(dx, dy));
}

void MainWindow::on_tabWidget_currentChanged(int index)
{
    if (index >= 0)
        SetCurDocumentIndex(index);
}

void MainWindow::on_tabWidget_tabCloseRequested(int index)
{
    if (m_Work->documents().has(index))
        CloseFile(index);
}

bool MainWindow::saveChanges() { return m_Files->saveChanges(); }

bool MainWindow::startRecovery(const QString &folder) { return m_Unsaved->start(folder); }

void MainWindow::finishPictures() { m_Work->jobs().finishOwed(); }

void MainWindow::startPins(const QString &folder) { m_Pins->keepIn(folder); }

void MainWindow::keepUnsaved()
{
    m_Unsaved->keep();
    m_Pins->end();
}

void MainWindow::openPictures(const QStringList &paths,
                              const std::function<void(const QStringList &troubles)> &opened)
{
    m_Work->open(paths, opened);
}

void MainWindow::OpenFile() { m_Files->open(); }

bool MainWindow::SaveFile(int index) { return m_Files->save(index); }

bool MainWindow::SaveAsFile(int index) { return m_Files->saveAs(index); }

bool MainWindow::SaveFileWithLayers(int index) { return m_Files->saveWithLayers(index); }

bool MainWindow::SaveAllFiles() { return m_Files->saveAll(); }

void MainWindow::CloseFile(int index) { m_Files->close(index); }

void MainWindow::closeOtherFiles() { m_Files->closeOthers(); }

void MainWindow::openFolder() { m_Files->openFolder(); }

bool MainWindow::CloseAllFiles() { return m_Files->closeAll(); }

void MainWindow::pinPicture()
{
    const int current = m_Work->documents().current();
    m_Pins->add(m_Work->unitedPicture().toImage(), GetFileShowName(current));
}

bool MainWindow::CopyFile() { return m_Files->copy(); }

void MainWindow::BeforeShowFile()
{
    const DocumentList &documents = m_Work->documents();
    m_Menus->updateFile(
        {.any = !documents.isEmpty(),
         .name = GetFileShowName(documents.current()),
         .isModified = HasModified(false),
         .anyModified = HasModified(true),
         .hasFile = documents.currentDocument() && !documents.currentDocument()->IsNewFile(),
         .hasOthers = documents.size() > 1});
}

void MainWindow::BeforeShowEdit()
{
    const TPictureEditor &editor = m_Work->editor();
    m_Menus->updateEdit({.hasPicture = !editor.pictureSize().isEmpty(),
                         .canUndo = editor.isTyping() || !editor.getVecUnDo().isEmpty(),
                         .canRedo = !editor.getVecReDo().isEmpty(),
                         .hasChosen = editor.hasSelection(),
                         .hasPins = !m_Pins->isEmpty(),
                         .hasText = editor.choosesText(),
                         .textLack = m_Reading->textLack(),
                         .codeLack = m_Reading->codeLack()});
}

// What reads text and codes may be installed, or removed, while the program runs.
void MainWindow::lookForReaders()
{
    m_Reading->refresh();
    updateToolButton(*this, stateReadText, m_Reading->textLack());
    if (m_Face)
        m_Face->updateTool(toolOf(stateReadText));
    BeforeShowEdit();
}

void MainWindow::changePicture(const OperationPtr &step)
{
    m_Work->editor().EndEdit();
    m_Work->editor().record(step);
}

// While the dialog is up the bus or the tray may bring other pictures to the front, or close this
// one.
void MainWindow::changeAfter(SizeDialog &dialog, const std::function<void()> &change)
{
    const QPictureDocument *asked = m_Work->documents().currentDocument();
    if (!asked)
        return;
    const int number = asked->m_Number;
    if (dialog.exec() != QDialog::Accepted)
        return;
    const int index = m_Work->documents().indexOf(number);
    if (!m_Work->documents().has(index))
        return;
    SetCurDocumentIndex(index);
    change();
}

void MainWindow::resizePicture()
{
    m_Work->editor().EndEdit();
    ResizeDialog dialog(m_Work->editor().pictureSize(), this);
    changeAfter(dialog, [&] {
        if (dialog.wanted() != m_Work->editor().pictureSize())
            changePicture(operation(ResizePicture{dialog.wanted()}));
    });
}

void MainWindow::resizeCanvas()
{
    m_Work->editor().EndEdit();
    CanvasDialog dialog(m_Work->editor().pictureSize(), this);
    changeAfter(dialog, [&] {
        if (dialog.wanted() != m_Work->editor().pictureSize())
            changePicture(operation(ExtendPicture{dialog.frame(), dialog.ground()}));
    });
}

void MainWindow::changeBackdrop()
{
    TPictureEditor &editor = m_Work->editor();
    editor.EndEdit();
    std::optional<Backdrop> before = editor.backdrop();
    BackdropDialog dialog(editor.withoutBackdrop(), before, this);
    if (before)
        before->blots.clear();
    changeAfter(dialog, [&] {
        if (dialog.backdrop() != before)
            editor.putOn(dialog.backdrop());
    });
}

void MainWindow::enterControl(const QString &name)
{
    enterStripControl(*findChild<QWidget *>(name));
}

void MainWindow::setSharpPixels(bool on)
{
    Preferences::setSharpPixels(on);
    m_Work->editor().setSharp(on);
}

void MainWindow::say(const QString &text, const QList<NoticeBar::Action> &actions)
{
    m_Notices->say(text, actions);
}

void MainWindow::WaitFor() { Departure(*services().clock).wait(); }

void MainWindow::FocusThis(QWidget *widget) { m_Front->front().bring(widget ? *widget : *this); }

// Raising alone leaves a minimised window where it is.
void MainWindow::showInFront()
{
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    FocusThis(nullptr);
}

void MainWindow::minimize()
{
    if (!services().ownWindows->placesWindows() && TrayIcon::isThere())
        hide();
    else
        showMinimized();
}

void MainWindow::FocusPreApp() { Front(*services().clock).giveBack(); }

void MainWindow::RestoreAppFocus(bool giveBack) { m_Front->dropFocus(giveBack); }

void MainWindow::SetAppFocus() { m_Front->takeFocus(); }

void MainWindow::comeForward() { m_Grabs->press(GrabCommand::Show); }

QKeySequence MainWindow::CreateShortkey(const QString &text)
{
    const Command *command = commandNamed(text);
    return command ? keysOf(*command) : QKeySequence();
}

void MainWindow::Capture(QAction *pAct)
{
    if (!pAct)
        return;
    // Some styles put a mnemonic of their own into a menu's texts.
    const Command *command = commandCaptioned(pAct->text().remove(u'&'));
    if (command)
        runCommand(*command, *this);
}

long HotkeyCallBack(long id, long /*unused*/)
{
    const Command *command = commandOfHotKey(id);
    const auto number = static_cast<int>(id);
    GrabWays ways = GrabWay::ByKey;
    ways.setFlag(GrabWay::CountsDown, Preferences::countsDownFirst(number));
    if (g_MainWindow && command)
        runCommand(*command, *g_MainWindow, Preferences::afterGrabOf(number), ways);
    else
        qCInfo(logGrab) << "hot key" << id << "comes before the window, or has no command";
    return 0;
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
    if (opr == eMagMultiple) {
        // Unseen it would be changed by accident.
        if (!GetShowMagFromXML())
            return;
        Preferences::stepMagnification(x);
        const QPoint pointer = services().hands->pointer();
        ShowDetailWindowRequest(parent, eMagUpdate, pointer.x(), pointer.y(), type);
        return;
    }
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

void MainWindow::Preference(int /*type*/)
{
    if (!m_pPreference) {
        m_pPreference = new DialogPreference(this);
        // No tool window any more, but still a window of its own in front of this one.
        m_pPreference->setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint |
                                      Qt::WindowCloseButtonHint);
        Preferences::load(*m_pPreference);
        // Only now: what was loaded need not go back.
        connect(m_pPreference, &DialogPreference::Changed, this, &MainWindow::PreferenceChanged);
        connect(m_pPreference, &DialogPreference::HotKeysChanged, this, &MainWindow::showHotKeys);
        connect(m_pPreference, &DialogPreference::PinsChanged, m_Pins.get(), &Pins::store);
    }
    m_pPreference->setVisible(true);
    m_pPreference->raise();
    m_pPreference->activateWindow();
}

void MainWindow::Preference() { Preference(0); }

void MainWindow::PreferenceChanged()
{
    Preferences::store(*m_pPreference);
    m_Style->remember(Preferences::remembersStyles());
}

void MainWindow::BeforeShowMenuHelp() { m_Menus->updateHelp(Licensing::status().registered); }

void MainWindow::About() { AboutBox(windowIcon(), this).exec(); }

void MainWindow::Help()
{
    QDesktopServices::openUrl(QUrl(u"file:///"_s + QCoreApplication::applicationDirPath() + u'/' +
                                   tr("../Resources/Help/index.html")));
}

void MainWindow::Home() { openAddress(g_URL); }

void MainWindow::Buynow() { openAddress(g_BuyURL); }

// The registration may change with it.
void MainWindow::Register() { ProcessLicense(); }

long PictureChanged(long code, long /*unused*/)
{
    MainWindow *window = g_MainWindow;
    if (!window)
        return 0;
    switch (code) {
    case TPictureEditor::HistoryChange:
        window->m_Work->shapesChanged();
        break;
    case TPictureEditor::SizeChange:
        window->m_Work->fit();
        // Shortcuts of disabled menu items are dead.
        window->BeforeShowEdit();
        break;
    case TPictureEditor::ToolChange:
        window->showTool();
        break;
    case TPictureEditor::Refusal:
        if (!std::exchange(window->m_ToldOfEdge, true)) {
            window->say(MainWindow::tr(
                "Nothing can be drawn outside the picture. A thin line shows where it ends."));
        }
        break;
    default:
        break;
    }
    return 0;
}

long ActiveCallBack(bool /*active*/)
{
    if (g_MainWindow)
        g_MainWindow->m_Face->updateControls();
    return 0;
}

void MainWindow::on_BtnZoomIn_clicked() { m_Work->zoomIn(); }

void MainWindow::on_BtnZoomOut_clicked() { m_Work->zoomOut(); }

void MainWindow::on_BtnRealSize_clicked() { m_Work->zoomToRealSize(); }

void MainWindow::on_BtnUndo_clicked() { m_Work->editor().Undo(); }

void MainWindow::on_BtnRedo_clicked() { m_Work->editor().Redo(); }

// The keys of a tool reach the picture.
void MainWindow::chooseTool(stateEnum tool)
{
    if (tool == stateReadText) {
        lookForReaders();
        if (!m_Reading->textLack().isEmpty())
            return say(m_Reading->textLack());
    }
    TPictureEditor &editor = m_Work->editor();
    editor.setState(tool);
    m_Style->refresh();
    m_Face->updateTools(findChild<QPushButton *>(QLatin1StringView(toolOf(tool).button)));
    if (!editor.pictureSize().isEmpty())
        ui->lblPicture->setFocus(Qt::OtherFocusReason);
}

// The hand that a right click leads to shows no button, as at the start.
void MainWindow::showTool()
{
    const stateEnum tool = m_Work->editor().getState();
    const QString button = QLatin1StringView(toolOf(tool).button);
    m_Face->updateTools(tool == stateMove ? nullptr : findChild<QPushButton *>(button));
    m_Style->refresh();
}

void MainWindow::openPictureMenu(QPoint position)
{
    BeforeShowFile();
    lookForReaders();
    m_Menus->picture().popup(position);
}

// What it offers is done to the current document.
void MainWindow::openTabMenu(int index, QPoint position)
{
    SetCurDocumentIndex(index);
    BeforeShowFile();
    BeforeShowEdit();
    m_Menus->tab().popup(position);
}

void MainWindow::dragTab(int index)
{
    SetCurDocumentIndex(index);
    dragPicture(*ui->tabWidget->tabBar(), *m_Work, *m_Handed);
}

// What the keys have reached is scrolled into view, with some room around it.
void MainWindow::lookAt(const QRect &place)
{
    QWidget *content = ui->scrollArea->widget();
    const QPoint middle = ui->lblPicture->mapTo(content, place.center());
    const QSize view = ui->scrollArea->viewport()->size() / 2;
    const QSize room = (place.size() / 2 + QSize(s_lookAround, s_lookAround)).boundedTo(view);
    ui->scrollArea->ensureVisible(middle.x(), middle.y(), room.width(), room.height());
}

// The pipette's button copies the colour that it has taken, or whatever the pen has.
void MainWindow::offerColorText(QPoint position)
{
    const QString text = m_Work->editor().getPenColor().name();
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addAction(tr("&Copy %1").arg(text)), &QAction::triggered, this,
            [text] { QGuiApplication::clipboard()->setText(text); });
    menu->popup(position);
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    if (TPictureEditor::isMenuKey(*event))
        m_Work->editor().wantMenu();
    else
        QMainWindow::keyPressEvent(event);
}

void MainWindow::on_BtnDrawMove_clicked() { chooseTool(stateMove); }

void MainWindow::on_BtnDrawRect_clicked() { chooseTool(stateRect); }

void MainWindow::on_BtnDrawEllipse_clicked() { chooseTool(stateEllipse); }

void MainWindow::on_BtnDrawArrow_clicked() { chooseTool(stateArrow); }

void MainWindow::on_BtnDrawText_clicked() { chooseTool(stateText); }

void MainWindow::on_BtnDrawPoly_clicked() { chooseTool(statePoly); }

void MainWindow::on_SliderLineWidth_valueChanged(int value) { m_Style->setWidth(value + 1); }

void MainWindow::on_CmbFont_currentFontChanged(const QFont &font)
{
    m_Style->setFont(m_Style->sized(font));
    TPictureEditor &editor = m_Work->editor();
    if (editor.goOnTyping())
        return;
    // The keys go on with what is chosen.
    QWidget *next = editor.hasSelection() ? static_cast<QWidget *>(ui->lblPicture) : ui->tabWidget;
    next->setFocus(Qt::OtherFocusReason);
}

void MainWindow::on_CmbFontSize_currentIndexChanged(int /*index*/)
{
    on_CmbFont_currentFontChanged(ui->CmbFont->currentFont());
}

void MainWindow::useColor(const QColor &color)
{
    storeRecentColor(color);
    m_Style->setColor(color);
}

void MainWindow::on_BtnColor_clicked() { m_Style->offerColors(); }

void MainWindow::offerStyles() { m_Style->offerStyles(); }
