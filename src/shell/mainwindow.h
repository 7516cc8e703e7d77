#pragma once

#include "capture/magnifier.h"
#include "editing/documentlist.h"
#include "editing/shapes.h"
#include "shell/noticebar.h"
#include "shell/preferences.h"
#include "shell/skin.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class CaptureTools;
class DialogPreference;
class DocumentFiles;
class FrontWindow;
class GrabCalls;
class GrabDelivery;
class GrabFlow;
class Notices;
class HandedFiles;
class PictureIntake;
class PictureReading;
class Pins;
class QAction;
class QPushButton;
class RecentFiles;
class SettingsSaver;
class SizeDialog;
class StartPanel;
class StyleControls;
class TrayIcon;
class UnsavedPictures;
class WindowFace;
class WindowFrame;
class WindowMenus;
class Workbench;

namespace Ui {
class MainWindow;
}  // namespace Ui

/// The one main window: a tab for each open picture, and the commands. It is a front: its slots
/// have the known names and hand on to the parts that it holds.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    // Window geometry, in the toolkit's logical pixels.
    void InitShowGeometry();
    void ShowNormalGeometry();
    void ShowMaxedGeometry();
    bool GetMaximized() const;
    void SaveNormalGeometry();
    void SaveGeometry();
    /// Shows the window at the start of the program: minimised if told so, or where a desktop may
    /// ignore that, in the tray alone as long as there is one.
    void showAtStart(bool isMinimized = GetRunInMinimized());
    /// Writes the settings to the disk as they are now, geometry included.
    void saveSettings();

    // Settings.
    static bool GetRunInMinimized() { return Preferences::runMinimized(); }
    static bool GetAutoRunFromXML() { return Preferences::autoRun(); }
    static void SetAutoRunToXML(bool on) { Preferences::setAutoRun(on); }
    static bool GetRunMinFromXML() { return Preferences::runMinimized(); }
    static void SetRunMinToXML(bool on) { Preferences::setRunMinimized(on); }
    static bool GetHideFromXML() { return Preferences::hidesBefore(); }
    static void SetHideToXML(bool on) { Preferences::setHidesBefore(on); }
    static bool GetShowFromXML() { return Preferences::showsAfter(); }
    static void SetShowToXML(bool on) { Preferences::setShowsAfter(on); }
    static int GetScreenTimerFromXML() { return Preferences::countdown(); }
    static void SetScreenTimerToXML(int seconds) { Preferences::setCountdown(seconds); }
    static bool GetShowMagFromXML() { return Preferences::showsMagnifier(); }
    static void SetShowMagToXML(bool on) { Preferences::setShowsMagnifier(on); }
    static int GetMagnificationFromXML() { return Preferences::magnification(); }
    static void SetMagnificationToXML(int multiple) { Preferences::setMagnification(multiple); }

    // Tabs. Indices are places in the list of documents, -1 for none.
    void NewDocument(const QPixmap &pixmap, const QString &name, const PictureOrigin &origin = {});
    void RefillTabList();
    void ShowPictureInTab(int index);
    void SetCurDocumentIndex(int index);
    /// The document that is bound to the file, whatever path or link leads there.
    int GetDocumentIndex(const QString &name) const;
    QString GetFileShowName(int index) const;
    bool HasModified(bool all) const;
    void RedrawPicture();
    /// Asks about all changes, and saves them if told so; closes nothing. False when the user
    /// cancelled, or a picture arrived that has not been asked about.
    bool saveChanges();

    /// Keeps what is not saved in a folder from now on, and opens what an earlier run has left
    /// there, as modified documents. True when there is something.
    bool startRecovery(const QString &folder);
    /// Waits, some seconds at the most, until pictures that are in no tab are where they go; one
    /// that can't get there opens in a tab.
    void finishPictures();
    /// Keeps pins there as long as the user wants that, and shows those of an earlier run.
    void startPins(const QString &folder);
    /// Waits, some seconds at the most, until what is not saved is on the disk.
    void keepUnsaved();

    /// As Workbench::open().
    void openPictures(const QStringList &paths,
                      const std::function<void(const QStringList &troubles)> &opened = {});

    /// Tells the user something that needs no answer.
    void say(const QString &text, const QList<NoticeBar::Action> &actions = {});

    /// What leads every grab from the press to its end.
    GrabFlow &grabs() { return *m_Grabs; }
    Workbench &work() { return *m_Work; }
    PictureReading &reading() { return *m_Reading; }
    PictureIntake &intake() { return *m_Intake; }
    GrabDelivery &delivery() { return *m_Delivery; }
    Pins &pins() { return *m_Pins; }
    GrabCalls &calls() { return *m_Calls; }
    TrayIcon &tray() { return *m_Tray; }
    Skin &skin() { return m_Skin; }

    // Focus.
    /// Brings this program to the front and waits for it, some seconds at the most. Null means the
    /// main window.
    void FocusThis(QWidget *widget);
    /// Shows the main window, minimised or not, and brings it to the front.
    void showInFront();
    /// Out of sight: minimised, or, where a desktop may not hear of that, hidden if a tray leads
    /// back.
    void minimize();
    /// The same for a request from outside: while a grab is under way what is open for it comes to
    /// the front, or the window does so afterwards.
    void comeForward();
    /// Ends the program, unless the user cancels that, as soon as the dialogs that are open have
    /// been cancelled: a command that may come at any time. To close the window need not do so.
    void quit();
    /// The window is about to be closed because the program ends, whatever closing does else.
    void endWhenClosed() { m_IsEnding = true; }
    /// Makes this program active before an overlay opens.
    void SetAppFocus();
    /// Gives the focus back to the other application, and waits about a second at the most.
    static void FocusPreApp();
    void RestoreAppFocus(bool giveBack);
    /// Half a second in which windows that have closed leave the screen.
    static void WaitFor();

    /// Pictures of the frame around a region's caption, as paths.
    QString GetPictureWidthFile() const
    {
        return m_Skin.path(QStringLiteral("BtnCaptureRegion"), SkinNormal);
    }
    QString GetPictureHeightFile() const
    {
        return m_Skin.path(QStringLiteral("BtnCaptureRegion"), SkinDown);
    }

    /// The key sequence of a command, by its name in the menus; empty for an unknown one.
    static QKeySequence CreateShortkey(const QString &text);

public slots:
    /// Runs the command of a capture menu or of the tray, which its text tells.
    void Capture(QAction *pAct);
    void ShowGrabRectWindow(bool);
    void ShowGrabEllipseWindow(bool);
    void ShowGrabPolygonWindow(bool);
    void ShowFullScreen(bool, bool withTimer);
    void ShowAllWindow();
    void ShowSelectWindow(bool);
    void ShowMenuWindow();
    /// Makes a document of a picture file (UTF-8) and comes to the front. Null does nothing; of a
    /// file that is no picture the user is told.
    void ShowImportPicture(const char *path);

    /// Carries out a request of an overlay. (x, y) is a global position in device pixels; `type` is
    /// the magnifier's.
    void ShowDetailWindowRequest(QWidget *parent, EShowMagOpr opr, int x, int y, int type);
    void ShowDetailWindowRequest_Rect(QWidget *parent, EShowMagOpr opr, int x, int y);
    void ShowDetailWindowRequest_Ellipse(QWidget *parent, EShowMagOpr opr, int x, int y);
    void ShowDetailWindowRequest_Poly(QWidget *parent, EShowMagOpr opr, int x, int y);

    void OpenFile();
    /// Saves under the known name, or asks for one. -1 means the current document. True when saved.
    bool SaveFile(int index = -1);
    bool SaveAsFile(int index = -1);
    bool SaveFileWithLayers(int index = -1);
    bool SaveAllFiles();
    void CloseFile(int index = -1);
    /// All but the current one, until the user cancels.
    void closeOtherFiles();
    /// Shows the folder of the current document's file.
    void openFolder();
    bool CloseAllFiles();  ///< false when the user cancelled
    bool CopyFile();
    /// The current picture with its shapes above all windows.
    void pinPicture();
    void BeforeShowFile();
    void BeforeShowEdit();
    /// The same, once it has been looked what is there to read text and codes.
    void lookForReaders();

    /// Does one step to the current picture. A text that is being typed is committed first.
    void changePicture(const OperationPtr &step);
    // Both ask for the size.
    void resizePicture();
    void resizeCanvas();
    void changeBackdrop();

    /// The keys go to a control of the edit strip, by its object name.
    void enterControl(const QString &name);
    void setSharpPixels(bool on);

    void Preference(int type);  ///< `type` has no effect
    void Preference();
    void PreferenceChanged();
    void About();
    void BeforeShowMenuHelp();
    void Help();
    void Home();
    void Buynow();
    void Register();

    /// Moves the picture under the view, in the widget's pixels, as scroll bars count.
    void MovePicture(int dx, int dy);

    void on_BtnZoomIn_clicked();
    void on_BtnZoomOut_clicked();
    void on_BtnRealSize_clicked();
    void on_BtnUndo_clicked();
    void on_BtnRedo_clicked();
    void chooseTool(stateEnum tool);
    /// The colour that the current tool draws with from now on.
    void useColor(const QColor &color);
    void offerStyles();
    void on_BtnDrawMove_clicked();
    void on_BtnDrawRect_clicked();
    void on_BtnDrawEllipse_clicked();
    void on_BtnDrawArrow_clicked();
    void on_BtnDrawText_clicked();
    void on_BtnDrawPoly_clicked();
    void on_BtnColor_clicked();
    void on_BtnMax_clicked();

signals:
    /// A grab has come to another state, whose name this is.
    void grabStateChanged(const QString &state);

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private slots:
    void on_Idle();
    void on_tabWidget_currentChanged(int index);
    void on_tabWidget_tabCloseRequested(int index);
    void on_SliderLineWidth_valueChanged(int value);
    void on_CmbFont_currentFontChanged(const QFont &font);
    void on_CmbFontSize_currentIndexChanged(int index);

private:
    friend long PictureChanged(long code, long unused);
    friend long ActiveCallBack(bool active);

    void showTool();
    void openPictureMenu(QPoint position);
    void openTabMenu(int index, QPoint position);
    void dragTab(int index);
    void lookAt(const QRect &place);
    void offerColorText(QPoint position);
    void setUpGrabs();
    void setUpHotKeys();
    void showHotKeys();
    void setUpEditor();
    void connectControls();
    void RefreshWindowTitle(const QString &tab);
    void hideInTray();
    void changeAfter(SizeDialog &dialog, const std::function<void()> &change);

    // In the order of who uses whom.
    std::unique_ptr<Ui::MainWindow> ui;
    Skin m_Skin{*this};
    std::unique_ptr<WindowFrame> m_Frame;
    std::unique_ptr<WindowMenus> m_Menus;
    std::unique_ptr<TrayIcon> m_Tray;
    std::unique_ptr<Notices> m_Notices;
    std::unique_ptr<SettingsSaver> m_Settings;
    std::unique_ptr<Workbench> m_Work;
    std::unique_ptr<UnsavedPictures> m_Unsaved;
    std::unique_ptr<DocumentFiles> m_Files;
    std::unique_ptr<RecentFiles> m_Recent;
    std::unique_ptr<PictureReading> m_Reading;
    std::unique_ptr<PictureIntake> m_Intake;
    std::unique_ptr<HandedFiles> m_Handed;
    std::unique_ptr<GrabDelivery> m_Delivery;
    std::unique_ptr<Pins> m_Pins;
    std::unique_ptr<WindowFace> m_Face;
    StyleControls *m_Style = nullptr;  ///< owned by the strip
    StartPanel *m_Start = nullptr;     ///< owned by the tabs
    Magnifier m_Magnifier;
    bool m_bCapturing = false;  ///< a grab is under way
    std::unique_ptr<FrontWindow> m_Front;
    std::unique_ptr<CaptureTools> m_Tools;
    std::unique_ptr<GrabFlow> m_Grabs;
    std::unique_ptr<GrabCalls> m_Calls;
    DialogPreference *m_pPreference = nullptr;  ///< from its first use on
    bool m_IsEnding = false;                    ///< as endWhenClosed()
    bool m_ToldOfEdge = false;                  ///< nothing is drawn outside of a picture
};

/// Null until the main window is complete: callbacks that arrive earlier do nothing.
extern MainWindow *g_MainWindow;

// Callbacks for the platform and the editor. Each gives 0.
long HotkeyCallBack(long id, long unused);
long ActiveCallBack(bool active);
long PictureChanged(long code, long unused);
