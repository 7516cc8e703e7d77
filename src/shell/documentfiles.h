#pragma once

#include "editing/history.h"
#include "editing/picturefile.h"
#include "shell/noticebar.h"

#include <QObject>

class Notices;
class QPictureDocument;
class QWidget;
class UnsavedPictures;
class Workbench;

/// Opens, saves and closes documents with the user: asks for names, asks about changes, and tells
/// of files that could not be written. An index is a place in the list of documents, and -1 means
/// the current one.
class DocumentFiles : public QObject
{
    Q_OBJECT

public:
    /// All outlive this object; `window` is in front of the dialogs' parent.
    DocumentFiles(QWidget &window, Workbench &work, Notices &notices, UnsavedPictures &unsaved);

    void open();
    /// Saves under the known name, or asks for one. True when saved.
    bool save(int index);
    bool saveAs(int index);
    /// Asks for a name, and saves so that every shape stays a shape.
    bool saveWithLayers(int index);
    bool saveAll();
    void close(int index);
    /// All but the current one, until the user cancels.
    void closeOthers();
    /// Shows the folder of the current document's file in the desktop's own program, or tells why
    /// that can't be.
    void openFolder();
    /// False when the user cancelled.
    bool closeAll();
    /// Asks about all changes, and saves them if told so; closes nothing. False when the user
    /// cancelled, or a picture arrived that has not been asked about.
    bool saveChanges();
    /// Puts the current picture with its shapes on the clipboard. False where there is none.
    bool copy();

signals:
    /// A question about all documents is about to open.
    void asks();

private:
    int chosen(int index) const;
    /// Asks for the name of a plain picture, or of one with layers.
    bool saveElsewhere(int index, bool isLayered);
    bool write(int number, const QString &path);
    bool written(int number, const QString &path, const EditHistory &history,
                 const PictureWrite &result);
    /// Tells what has become of a document's file, in place of what was told of it before, and
    /// offers to save it elsewhere.
    void tell(QPictureDocument &document, const QString &text,
              QList<NoticeBar::Action> actions = {});
    void tellChanged(QPictureDocument &document);
    /// Warns that what lies below covers is in the file that was written.
    void tellCovered(QPictureDocument &document);

    QWidget &m_window;
    Workbench &m_work;
    Notices &m_notices;
    UnsavedPictures &m_unsaved;
};
