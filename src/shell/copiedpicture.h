#pragma once

#include "editing/packedpicture.h"

#include <QImage>
#include <QMimeData>

class PictureJobs;

/// A picture in the clipboard, which may lie there for hours: packed, once a worker has come to it.
class CopiedPicture : public QMimeData
{
    Q_OBJECT

public:
    explicit CopiedPicture(const QImage &picture) : m_picture(picture) {}
    /// Puts a picture there.
    static void copy(const QImage &picture, PictureJobs &jobs);

    QStringList formats() const override;
    bool hasFormat(const QString &type) const override;

protected:
    QVariant retrieveData(const QString &type, QMetaType wanted) const override;

private:
    void pack(PictureJobs &jobs);

    QImage m_picture;  ///< null once it is packed
    PackedPicture m_packed{};
};
