#pragma once

#include "base/fileidentity.h"
#include "editing/history.h"
#include "editing/packedpicture.h"
#include "editing/recoveryfolder.h"

#include <QPixmap>
#include <QString>

#include <functional>
#include <map>
#include <optional>

/// The last running number that was used for each name of unsaved pictures. Numbers are never
/// reused.
extern std::map<QString, int> g_mapNameIndex;

/// One open picture: the pixels as they were grabbed or loaded, the shapes drawn on them, and the
/// state of its view. A value type; copies share pixels and shapes.
class QPictureDocument
{
public:
    QPictureDocument() = default;
    explicit QPictureDocument(const QPixmap &pixmap);
    /// Loads a picture file. If it can't be read, the picture is null and m_Failure says why.
    explicit QPictureDocument(const QString &path);

    /// A document whose picture is not loaded yet: the picture of a file, or one that was kept from
    /// the last run.
    static QPictureDocument awaited(const UnsavedWork &work);

    /// The picture without its shapes, unpacked if necessary; null if there is none.
    QImage picture() const;
    /// The same as a function that a worker can call, because unpacking a large picture takes time.
    std::function<QImage()> pictureLater() const;
    /// False if the picture could not be read or is not loaded yet.
    bool hasPicture() const { return !m_Pixmap.isNull() || !m_Packed.isNull(); }
    /// The size with the steps that were parked here; empty if there is no picture.
    QSize size() const;
    /// Sets the picture without its shapes; its pixel ratio becomes 1.
    void setPicture(QImage picture);
    /// The data that would be lost with the document. The shapes are those that were parked here.
    UnsavedWork unsavedWork() const;

    /// Whether the document is not bound to a file.
    bool IsNewFile() const { return m_NameIndex >= 0; }
    /// Binds the document to the file in m_FileName.
    void SetIsNotNewFile() { m_NameIndex = -1; }
    /// The document's name in tab, list and title.
    QString GetShowName() const;
    /// The displayed name of a grab that has neither a name nor a number.
    static QString GetEmptyName();
    /// Renders the picture with its shapes.
    QPixmap &GetUnitePixmap();
    /// Writes the picture with its shapes. `format` null and `quality` -1 leave the choice to the
    /// path's extension and the toolkit. Returns false if it could not be written; an existing file
    /// is then unchanged, and m_Failure says why.
    bool save(const QString &path, const char *format, int quality);
    /// Remembers what a file that was written has of the document: its shapes or, if these are
    /// covers, nothing of what they hide.
    void noteWritten(const QString &path, const EditHistory &history);
    /// Whether the file has changed since this document last read or wrote it.
    bool isAnotherFile() const;

    int m_Number = nextNumber();  ///< identifies this document and its copies; never reused

    QString m_FileName{};  ///< path of the file, or the name of the grab
    bool m_Modified = false;
    int m_NameIndex = -1;      ///< running number of an unsaved document; -1 if bound to a file
    QPixmap m_Pixmap{};        ///< not changed by editing; null while it is packed
    PackedPicture m_Packed{};  ///< the same, packed, while the document is not shown
    bool m_IsAwaited = false;  ///< the picture is still being loaded
    /// The history with which it was saved, if that has covers: what they hide must not be found on
    /// the disk any more.
    EditHistory m_Covered{};
    PictureOrigin m_Origin{};
    QPixmap m_UnitePixmap{};  ///< the last result of GetUnitePixmap
    /// Identity of the file when it was last read or written.
    std::optional<FileIdentity> m_File{};
    bool m_IsLayered = false;   ///< the file has its shapes
    bool m_IsFileKept = false;  ///< the file is never written over
    QString m_Failure{};        ///< why reading or writing failed, for the user
    QString m_Notice{};         ///< the message that the user has got about the file
    EditHistory m_VecUnDo{};
    EditHistory m_VecReDo{};
    int m_ScrollX = 0;  ///< position of the scroll bars when the document was last left
    int m_ScrollY = 0;
    float m_Scale = 1.0F;   ///< zoom when the document was last left
    qint64 m_LastLook = 0;  ///< time of the clock when the document was last left

private:
    static int nextNumber();
};
