#pragma once

#include <QObject>
#include <QPoint>
#include <QSize>
#include <QString>

class DocumentList;
class QLabel;

namespace Ui {
class MainWindow;
}  // namespace Ui

/// The main window's tabs, a page for each document, and the one picture area, which lies on the
/// page of the current one.
class PictureTabs : public QObject
{
    Q_OBJECT

public:
    /// `ui` outlives this object.
    PictureTabs(Ui::MainWindow &ui, QObject *parent);

    /// Brings the pages in line with the documents.
    void refill(const DocumentList &documents);
    /// Puts the picture area on a page; it is hidden where there is none.
    void show(int index);
    /// Chooses a tab. Gives what it says; empty where there is none.
    QString choose(int index);

    /// Makes the area as large as a picture at a zoom, in device pixels per picture pixel.
    void fit(QSize picture, float zoom);
    /// What of the area shows a picture that needs no scroll bar, in device pixels.
    QSize room() const;
    /// Where the scroll bars are.
    QPoint scrolled() const;
    void scrollTo(QPoint position);
    /// The reason stands where the picture would be; empty for a picture that is there.
    void showMissing(const QString &reason);

private:
    QSize viewFor(QSize content) const;
    void removeClosedPages(const DocumentList &documents);

    Ui::MainWindow &m_ui;
    QLabel *m_missing = nullptr;  ///< from its first use on
};
