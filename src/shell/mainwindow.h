#pragma once

#include "capture/magnifier.h"
#include "editing/picturedocument.h"
#include "editing/pictureeditor.h"
#include "shell/noticebar.h"
#include "shell/picturejobs.h"
#include "shell/recovery.h"

#include <QMainWindow>
#include <QPointer>
#include <QSystemTrayIcon>

#include <map>
#include <memory>
#include <utility>
#include <vector>

class CaptureTools;
class DialogPreference;
class FrontWindow;
class GrabFlow;
class QAbstractButton;
class QAction;
class QLabel;
class QMenu;
class QMenuBar;
class ProgressPlate;
class QPushButton;

struct Grab;

namespace Ui {
class MainWindow;
}  // namespace Ui

/// The one main window: a tab for each open picture, and the commands. It owns the documents and
/// the editor that works on the current one.
class MainWindow : public QMainWindow, public Recovery::Source
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
    /// Writes the settings to the disk as they are now, geometry included.
    void saveSettings();

    // Settings. A flag is set when its number is 1.
    static bool GetRunInMinimized() { return GetRunMinFromXML(); }
    static bool GetAutoRunFromXML();
    static void SetAutoRunToXML(bool on);  ///< and brings the login item in line
    static bool GetRunMinFromXML();
    static void SetRunMinToXML(bool on);
    static bool GetHideFromXML();
    static void SetHideToXML(bool on);
    static bool GetShowFromXML();
    static void SetShowToXML(bool on);
    static int GetScreenTimerFromXML();  ///< seconds; 0 and below is no countdown
    static void SetScreenTimerToXML(int seconds);
    static bool GetShowMagFromXML();
    static void SetShowMagToXML(bool on);
    static int GetMagnificationFromXML();  ///< above 0
    static void SetMagnificationToXML(int multiple);

    // Tabs. Indices are positions in the vector of documents, -1 for none.
    void NewDocument(const QPixmap &pixmap, const QString &name, const PictureOrigin &origin = {});
    /// Brings the tabs in line with the documents.
    void RefillTabList();
    void ShowPictureInTab(int index);
    void SetCurDocumentIndex(int index);
    /// The document that is bound to the file, whatever path or link leads there.
    int GetDocumentIndex(const QString &name) const;
    QString GetFileShowName(int index) const;
    void RefreshWindowTitle(int index);
    bool HasModified(bool all) const;
    void RedrawPicture();
    /// Asks about all changes, and saves them if told so; closes nothing. False when the user
    /// cancelled, or a picture arrived that has not been asked about.
    bool saveChanges();

    /// Keeps what is not saved in a folder from now on, and opens what an earlier run has left
    /// there, as modified documents. True when there is something.
    bool startRecovery(const QString &folder);
    /// Waits, some seconds at the most, until what is not saved is on the disk.
    void keepUnsaved();

    /// A tab for each file, the first new one in front; one that is open already is only shown.
    void openPictures(const QStringList &paths);

    /// Tells the user something that needs no answer: in a quiet bar over the picture, and by the
    /// tray where the window can't be seen. With no tray either, the bar waits until it can be.
    void say(const QString &text, const QList<NoticeBar::Action> &actions = {});

    /// Makes a document of what was grabbed, with its outline cut out.
    void addGrab(Grab grab);

    // The helper's words: it begins, or is done.
    void hideForHelper();
    void showAfterHelper();
    /// The user can point at a window.
    void helperOpens();
    /// The helper turns the wheel over the picked window.
    void helperScrolls();
    /// It is done with that, and puts the content back where it was.
    void helperPutsBack();
    /// Ends what the helper does: nobody waits for its picture any more, and there may be questions
    /// to answer.
    void dismissHelper();

    // Focus.
    /// Brings this program to the front and waits for it, some seconds at the most. Null means the
    /// main window.
    void FocusThis(QWidget *widget);
    /// Shows the main window, minimised or not, and brings it to the front.
    void showInFront();
    /// The same for a request from outside: while a grab is under way what is open for it comes to
    /// the front, or the window does so afterwards.
    void comeForward();
    /// Closes the window, as soon as the dialogs that are open have been cancelled: a command from
    /// outside of it, which may come at any time.
    void quit();
    /// Makes this program active before an overlay opens.
    void SetAppFocus();
    /// Gives the focus back to the other application, and waits about a second at the most.
    static void FocusPreApp();
    void RestoreAppFocus(bool giveBack);
    /// Gives up the grab that is under way, and closes the window once it is over.
    void leaveGrab();
    /// Half a second in which windows that have closed leave the screen.
    static void WaitFor();

    QString GetPictureWidthFile();
    QString GetPictureHeightFile();

    /// The key sequence of a command, by its name in the menus; empty for an unknown one.
    static QKeySequence CreateShortkey(const QString &text);
    /// Whether an item of a capture menu, without mnemonics, leads to a command.
    static bool hasCaptureCommand(const QString &caption);

public slots:
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
    bool SaveAllFiles();
    void CloseFile(int index = -1);
    bool CloseAllFiles();  ///< false when the user cancelled
    bool CopyFile();
    void BeforeShowFile();

    void Preference(int type);  ///< `type` has no effect
    void Preference();
    void PreferenceChanged();
    void About();
    void BeforeShowMenuHelp();
    void Help();
    void Home();
    void Buynow();
    void Register();

    void MovePicture(int dx, int dy);

signals:
    /// A grab has come to another state, whose name this is.
    void grabStateChanged(const QString &state);

protected:
    void closeEvent(QCloseEvent *event) override;
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private slots:
    void on_Idle();
    void on_tabWidget_currentChanged(int index);
    void on_tabWidget_tabCloseRequested(int index);
    void on_BtnZoomIn_clicked();
    void on_BtnZoomOut_clicked();
    void on_BtnRealSize_clicked();
    void on_BtnUndo_clicked();
    void on_BtnRedo_clicked();
    void on_BtnDrawMove_clicked();
    void on_BtnDrawRect_clicked();
    void on_BtnDrawEllipse_clicked();
    void on_BtnDrawArrow_clicked();
    void on_BtnDrawText_clicked();
    void on_BtnDrawPoly_clicked();
    void on_SliderLineWidth_valueChanged(int value);
    void on_CmbFont_currentFontChanged(const QFont &font);
    void on_CmbFontSize_currentIndexChanged(int index);
    void on_BtnColor_clicked();
    void on_BtnMax_clicked();
    void on_BtnSetting_clicked();
    void on_BtnFrameRect_clicked();
    void on_BtnFrameEllipse_clicked();
    void on_BtnFramePolygon_clicked();
    void on_BtnFullScreen_clicked();
    void on_BtnAllWindows_clicked();
    void on_BtnSelectWindow_clicked();
    void on_BtnMenuCapture_clicked();

private:
    enum class Drag { None, Move, Resize };
    struct Returning;

    friend long PictureChanged(long code, long unused);
    friend long ActiveCallBack(bool active);

    void setUpCaption();
    void comeWithinReach();
    bool isUncovered(const QWidget &part) const;
    /// Cuts the window to its corners' pictures where no compositor lets the desktop show through;
    /// a maximised one has corners to fill the screen's.
    void cutCorners();
    void followCompositor();
    void setUpPictureArea();
    void setUpStrips();
    /// The window can be made as small as its screen is.
    void holdToScreen();
    void setUpEditor();
    void setUpTray();
    /// Some seconds from now, once for all changes until then, and again until it works. A failure
    /// is told once.
    void saveSettingsSoon();
    bool isDocument(int index) const;
    int indexOf(int number) const;  ///< of the document with that number; -1 when it is closed
    /// Writes the document with its own shapes, and tells the user where that fails.
    bool writeDocument(int index, const QString &path);
    bool written(int number, const QString &path, const EditHistory &shapes,
                 const PictureWrite &result);
    /// Tells what has become of a document's file, in place of what was told of it before, and
    /// offers to save it elsewhere.
    void sayOfFile(int index, const QString &text, QList<NoticeBar::Action> actions = {});
    void withdrawNotice(QPictureDocument &document);
    /// The reason stands where the picture would be.
    void showMissingPicture();
    void removeClosedPages();
    std::optional<UnsavedWork> unsaved(int document) override;
    std::function<QImage()> unsavedPicture(int document) override;
    /// Something of the current document has changed.
    void touchRecovery();
    /// The document is new, saved or closed.
    void touchRecovery(int number);
    void bringBack(const RecoveryFolder::Content &content);
    /// Lets a worker read the picture of a document; "%1" in `text` becomes its name. `done` hears
    /// whether there is one.
    void awaitPicture(int number, PictureJobs::Kind kind, const QString &text,
                      std::function<PictureRead(PictureProgress &)> read,
                      std::function<void(bool hasPicture)> done);
    void takePicture(int number, PictureRead read, const PackedPicture &packed);
    /// Packs the pictures that nobody has looked at for a while.
    void packUnseen();
    void unpack(QPictureDocument &document);
    /// Runs events until nothing of the document is being read or written. False when it was closed
    /// meanwhile, or the program is to end.
    bool waitForJobs(int number);
    /// Closes the document, and asks nothing.
    void dropDocument(int index);
    void fitPictureArea();
    void zoomTo(float scale);
    void parkHistory(QPictureDocument &document) const;
    void parkState(QPictureDocument &document) const;
    void forgetLastPicture();
    void CreateMenus();
    void createCaptureMenus(QMenuBar &bar);
    void InitImgButton();
    /// A font with the size that the size box shows.
    QFont chosenFont(const QFont &font) const;
    void chooseTool(stateEnum tool, QPushButton *button);
    bool isChosenTool(const QAbstractButton &button) const;
    bool filterButton(QPushButton &button, QEvent &event);
    void showButtonPicture(QPushButton &button, int picture);
    /// Shows the tool buttons as the editor's state is; `over`, if not null, as under the pointer.
    void UpdateDrawButton(QPushButton *over);
    void DrawToolBackgound();
    void DrawPictureBackgound();
    const QPixmap &skinPicture(const QString &section, int attribute);
    void setUpGrabs();
    void LoadPixmapFromXml(QPixmap &pixmap, const QString &section, int attribute);
    void LoadPixmapFlag();

    std::unique_ptr<Ui::MainWindow> ui;
    std::unique_ptr<QSystemTrayIcon> m_TrayIcon;
    QMenu *m_TrayMenu = nullptr;
    QMenu *m_FileMenu = nullptr;
    QMenu *m_HelpMenu = nullptr;
    std::vector<QPictureDocument> m_Documents;
    int m_CurDocument = -1;
    std::unique_ptr<PictureJobs> m_Jobs;
    std::unique_ptr<Recovery> m_Recovery;  ///< null while nothing is kept
    ProgressPlate *m_pProgress = nullptr;
    QString m_RecoveryNotice;  ///< what has been told of it, while it holds
    std::unique_ptr<TPictureEditor> m_pEditor;
    float m_Scale = 1.0F;  ///< zoom of the current document
    Magnifier m_Magnifier;
    bool m_bCapturing = false;  ///< a grab is under way
    std::unique_ptr<FrontWindow> m_Front;
    std::unique_ptr<CaptureTools> m_Tools;
    std::unique_ptr<GrabFlow> m_Grabs;          ///< works with the two before it
    DialogPreference *m_pPreference = nullptr;  ///< from its first use on
    NoticeBar *m_pNotice = nullptr;             ///< from its first use on
    QLabel *m_pMissing = nullptr;               ///< why there is no picture; from its first use on
    bool m_isDiscarded = false;                 ///< what is unsaved now, as the user said
    bool m_ToldOfEdge = false;                  ///< nothing is drawn outside of a picture
    QPixmap m_FlagPixmap;
    std::map<std::pair<QString, int>, QPixmap> m_SkinPictures;  ///< by section and attribute
    bool m_isComposited = false;
    bool m_isSaveDue = false;
    bool m_isSaveFailureTold = false;
    Drag m_Drag = Drag::None;
    QPoint m_DragPos;  ///< where the pointer took hold, in the window
    QSize m_DragSize;  ///< the window's size then
};

/// Null until the main window is complete: callbacks that arrive earlier do nothing.
extern MainWindow *g_MainWindow;

// Callbacks for the platform and the editor. Each gives 0.
long HotkeyCallBack(long id, long unused);
long ActiveCallBack(bool active);
long PictureChanged(long code, long unused);
