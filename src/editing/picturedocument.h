#pragma once

#include "base/fileidentity.h"
#include "editing/packedpicture.h"
#include "editing/recoveryfolder.h"
#include "editing/shapes.h"

#include <QPixmap>
#include <QString>

#include <functional>
#include <map>
#include <optional>

/// The last running number given out for each name of an unsaved picture. None is ever given back.
extern std::map<QString, int> g_mapNameIndex;

/// One open picture: as it was grabbed or loaded, the shapes drawn on it, and how its tab shows it.
/// A value; copies share pixels and shapes.
class QPictureDocument
{
public:
    QPictureDocument() = default;
    explicit QPictureDocument(const QPixmap &pixmap);
    /// Loads a picture file. One that can't be read leaves the picture null, and m_Failure says
    /// why.
    explicit QPictureDocument(const QString &path);

    /// One whose picture is still to come: that of a file, or one that waited for this start.
    static QPictureDocument awaited(const UnsavedWork &work);

    /// The picture without its shapes, packed or not; null where there is none.
    QImage picture() const;
    /// The same for a worker: a large one takes its time to unpack.
    std::function<QImage()> pictureLater() const;
    /// False for one that could not be read, or has still to be.
    bool hasPicture() const { return !m_Pixmap.isNull() || !m_Packed.isNull(); }
    void setPicture(QImage picture);
    /// What can't be got back from anywhere else. The shapes are the parked ones.
    UnsavedWork unsavedWork() const;

    /// True while the document is bound to no file.
    bool IsNewFile() const { return m_NameIndex >= 0; }
    void SetIsNotNewFile() { m_NameIndex = -1; }
    /// The text for tab, list and title.
    QString GetShowName() const;
    /// The shown name of a grab that got no name and no number.
    static QString GetEmptyName();
    /// Renders the picture with its shapes.
    QPixmap &GetUnitePixmap();
    /// Writes the united picture. `format` null and `quality` -1 leave the choice to the path and
    /// the toolkit. False when it could not be written: a file that was there is as it was, and
    /// m_Failure says why.
    bool save(const QString &path, const char *format, int quality);
    /// Whether the file holds something else than was last read from it or written into it here.
    bool isAnotherFile() const;

    int m_Number = nextNumber();  ///< this document's alone, and that of its copies

    QString m_FileName{};  ///< path of the file, or the name that the grab came with
    bool m_Modified = false;
    int m_NameIndex = -1;  ///< running number of an unsaved document; -1 for one bound to a file
    QPixmap m_Pixmap{};    ///< never changed by editing; null while it is packed
    PackedPicture m_Packed{};  ///< the same, of a document that nobody looks at
    bool m_IsAwaited = false;  ///< the picture is still being read
    PictureOrigin m_Origin{};
    QPixmap m_UnitePixmap{};               ///< the last result of GetUnitePixmap
    std::optional<FileIdentity> m_File{};  ///< the file when it was last read or written
    QString m_Failure{};                   ///< why it could not be, for the user
    QString m_Notice{};                    ///< what the user has been told of it
    EditHistory m_VecUnDo{};
    EditHistory m_VecReDo{};
    int m_ScrollX = 0;  ///< scroll bars when the document was last left
    int m_ScrollY = 0;
    float m_Scale = 1.0F;   ///< zoom when the document was last left
    qint64 m_LastLook = 0;  ///< when that was, by the clock

private:
    static int nextNumber();
};
