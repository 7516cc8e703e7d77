#pragma once

#include <QDialog>
#include <QList>
#include <QMap>
#include <QPixmap>
#include <QString>

#include <memory>

class QLabel;
class QListWidgetItem;

namespace Ui {
class WindowsPreView;
}  // namespace Ui

/// One window in the browser.
struct msg_grab {
    QPixmap pixmap{};  ///< the whole window in device pixels
    int windowId = 0;
    int key = 0;  ///< stored in its list item
    QString name{};
    bool onScreen = false;  ///< came from the list of windows on screen
    bool shown = false;     ///< passes the filter
    QString note{};         ///< what the user is to be told of the picture
    QString title{};        ///< the window's own
    bool isAside = false;   ///< of this program or the desktop's tray: not among all
    bool isPanel = false;   ///< a bar of the desktop's
};

/// The browser of all windows: the user chooses one or several of them by their thumbnails. The
/// pictures are read while the dialog is constructed, once for each window; slider and filter use
/// the existing pictures.
class WindowsPreView : public QDialog
{
    Q_OBJECT
public:
    explicit WindowsPreView(QWidget *parent = nullptr);
    ~WindowsPreView() override;

    // Icon files for the search field, which the caller sets.
    QString findNormalFile;
    QString findFocusFile;
    QString clearNormalFile;
    QString clearFocusFile;
    QString clearFilledFile;
    QString clearFilledFocusFile;

    /// The chosen pictures in the list's order; owned by the dialog. Empty until it is accepted.
    QList<QPixmap> *getPixmap() { return &m_pixmaps; }
    /// The names of these pictures.
    QList<QString> *getNameList() { return &m_names; }
    /// What the user is to be told of them; empty texts for most.
    const QList<QString> &notes() const { return m_notes; }
    /// The titles of their windows.
    const QList<QString> &titles() const { return m_titles; }

    /// Adds the windows on screen (1) or all windows (0) that are not in the browser yet.
    void selectWindowType(int onScreen);
    /// Selects the windows to show: those whose application's name or title contains `text`,
    /// ignoring case, and that are on screen if `visibleOnly`; else without this program's own and
    /// the desktop's tray.
    void seachWindow(const QString &text, bool visibleOnly);
    /// Fills the list with the selected windows.
    void show_grabWindow();
    /// The key of a window's last record; 0 if there is none.
    int getRow(int windowId) const;

public slots:
    /// `size` is the height of the thumbnails, in logical pixels, and their least width.
    void setIconSize(int size);
    void ChangePixmap();
    void clearLineEdit();

signals:
    void label_clearHaveFouce();
    void lineEditHaveFouce();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private slots:
    void on_listWidget_itemClicked(QListWidgetItem *item);
    void on_lineEdit_textEdited(const QString &text);
    void on_All_clicked();
    void on_Visbel_clicked();
    void on_CANNEL_BUTTON_released();
    void on_OK_BUTTON_released();

private:
    int cellWidth(int least) const;
    void tellNothing();
    bool search(QKeyEvent &key);
    QListWidgetItem *choice() const;
    bool isKnown(int windowId) const;
    void refill(int onScreen);
    void choose(const QListWidgetItem &item);

    std::unique_ptr<Ui::WindowsPreView> m_ui;
    QLabel *m_nothing;  // shown instead of windows
    QMap<int, msg_grab> m_grabMap;
    double m_selectedWindow;
    QList<QPixmap> m_pixmaps;
    QList<QString> m_names;
    QList<QString> m_notes;
    QList<QString> m_titles;
};
