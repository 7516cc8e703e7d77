#pragma once

#include "editing/documentlist.h"
#include "editing/pictureeditor.h"
#include "shell/picturejobs.h"
#include "shell/picturetabs.h"

#include <functional>
#include <memory>

class Notices;
class ProgressPlate;

/// The open documents at work: the editor holds the current one's picture and shapes, the tabs show
/// them all, and workers read, pack and write their pictures.
class Workbench : public QObject
{
    Q_OBJECT

public:
    /// All outlive this object.
    Workbench(Ui::MainWindow &ui, QWidget &window, Notices &notices);

    DocumentList &documents() { return m_documents; }
    const DocumentList &documents() const { return m_documents; }
    TPictureEditor &editor() { return *m_editor; }
    PictureJobs &jobs() { return *m_jobs; }
    PictureTabs &tabs() { return m_tabs; }

    void add(const QPixmap &picture, const QString &name, const PictureOrigin &origin);
    /// A tab for each file, the first new one in front; one that is open already is only shown.
    /// `opened` hears when all have been read, and of each that can't be shown why.
    void open(const QStringList &paths,
              const std::function<void(const QStringList &troubles)> &opened = {});
    /// Makes a document the current one; -1 for none. What the one before shows is kept in it.
    void show(int index);
    /// Brings the tabs and the title in line with the documents.
    void refresh();
    /// Lets the editor show the current document's picture.
    void redraw();
    /// Whether the current document, or any, has something that is not saved.
    bool hasModified(bool all) const;

    /// The current picture with its shapes, and with what is being typed; null if there is none.
    QPixmap unitedPicture();
    /// The current document's shapes are in the editor; this copies them into it.
    void parkHistory(QPictureDocument &document) const;
    /// Closes a document, and asks nothing.
    void drop(int index);
    void dropAll();

    void zoomTo(float scale);
    // With these the middle of the view stays.

    void zoomIn();
    void zoomOut();
    void zoomToRealSize();
    /// To the zoom nearest to it that wheel and box reach.
    void zoomNear(float wanted);
    /// So that all of the picture is seen.
    void zoomToFit();
    /// By so many notches of the wheel.
    void zoomBy(double notches);
    /// The same, but what is at a position in the picture's widget stays, in logical pixels.
    void zoomAt(double notches, QPointF position);
    /// The picture area is as large as the current picture needs.
    void fit();

    /// The editor has changed the current document's shapes.
    void shapesChanged();
    /// It is saved, or has become another file.
    void saved(int number);

    /// Lets a worker read the picture of a document; "%1" in `text` becomes its name. `done` hears
    /// whether there is one.
    void awaitPicture(int number, PictureJobs::Kind kind, const QString &text,
                      std::function<PictureRead(PictureProgress &)> read,
                      std::function<void(bool hasPicture)> done);
    /// Runs events until nothing of the document is being read or written. False when it was closed
    /// meanwhile, or the program is to end.
    bool waitForJobs(int number);

signals:
    /// A document was read from that file, or written to it.
    void fileUsed(const QString &path);
    /// The current document's tab says something else; empty for none.
    void titleChanged(const QString &title);
    /// Something of the current document has changed.
    void edited();
    /// Another size of the picture is shown, or another zoom.
    void viewChanged();
    /// A document is new, saved or closed.
    void changed(int number);

private:
    /// What stays where it is in the view over several zooms, although scroll bars count in whole
    /// pixels.
    struct Held {
        QPointF inView{};  ///< logical pixels
        QPointF point{};   ///< in the picture
        QPoint scrolled{};
        float scale = 0;
        int number = 0;
    };

    void showTip(int index, QPoint position);
    QPointF middleOfView() const;
    void zoomHolding(float scale, QPointF position);
    void parkState(QPictureDocument &document) const;
    static QString troubleOf(const QPictureDocument &document);
    void forgetLastPicture();
    void takePicture(int number, PictureRead read, const PackedPicture &packed);
    /// Packs the pictures that nobody has looked at for a while.
    void packUnseen();
    void pack(QPictureDocument &document);
    void unpack(QPictureDocument &document);

    Ui::MainWindow &m_ui;
    Notices &m_notices;
    DocumentList m_documents;
    PictureTabs m_tabs;
    std::unique_ptr<PictureJobs> m_jobs;
    ProgressPlate *m_progress;
    Held m_held{};
    std::unique_ptr<TPictureEditor> m_editor;
    float m_scale = 1.0F;  ///< zoom of the current document
};
