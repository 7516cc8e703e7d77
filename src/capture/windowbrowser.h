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
    QPixmap pixmap{};  ///< the whole window, in device pixels
    int windowId = 0;
    int key = 0;  ///< what its list item carries
    QString name{};
    bool onScreen = false;  ///< was taken from the list of windows on screen
    bool shown = false;     ///< passes the filter
};

/// The browser of all windows: a thumbnail each, of which one or several are taken. The pictures
/// are read while the dialog is built, and each window's once: slider and filter work on what is
/// there.
class WindowsPreView : public QDialog
{
    Q_OBJECT
public:
    explicit WindowsPreView(QWidget *parent = nullptr);
    ~WindowsPreView() override;

    // Icon files of the search field, for the caller to fill in.
    QString findNormalFile;
    QString findFocusFile;
    QString clearNormalFile;
    QString clearFocusFile;
    QString clearFilledFile;
    QString clearFilledFocusFile;

    /// What was chosen, in the list's order; the dialog's own. Empty before it was accepted.
    QList<QPixmap> *getPixmap() { return &m_pixmaps; }
    /// The names that go with the pictures.
    QList<QString> *getNameList() { return &m_names; }

    /// Adds the windows on screen (1), or all windows (0), that are not there yet.
    void selectWindowType(int onScreen);
    /// Marks what the list is to show: names that contain `text`, in whatever case.
    void seachWindow(const QString &text, bool visibleOnly);
    /// Fills the list with what is marked.
    void show_grabWindow();
    /// The last record of a window; 0 if there is none.
    int getRow(int windowId) const;

public slots:
    /// The side of the thumbnails' square, in logical pixels.
    void setIconSize(int size);
    void ChangePixmap();
    void clearLineEdit();

signals:
    void label_clearHaveFouce();
    void lineEditHaveFouce();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void on_listWidget_itemClicked(QListWidgetItem *item);
    void on_lineEdit_textEdited(const QString &text);
    void on_All_clicked();
    void on_Visbel_clicked();
    void on_CANNEL_BUTTON_released();
    void on_OK_BUTTON_released();

private:
    bool isKnown(int windowId) const;
    void refill(int onScreen);
    void choose(const QListWidgetItem &item);

    std::unique_ptr<Ui::WindowsPreView> m_ui;
    QMap<int, msg_grab> m_grabMap;
    double m_selectedWindow;
    QList<QPixmap> m_pixmaps;
    QList<QString> m_names;
};
