#include "shell/picturedrag.h"

#include "base/log.h"
#include "config/filters.h"
#include "shell/handedfiles.h"
#include "shell/workbench.h"

#include <QDrag>
#include <QMimeData>
#include <QPointer>
#include <QUrl>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_imageSide = 128;  // of what hangs at the pointer, in logical pixels

const QString s_files = u"text/uri-list"_s;
const QString s_image = u"application/x-qt-image"_s;

// The file that shows just that, if there is one: nothing of it is unsaved, and nothing more is in
// it, as what covers hide is in one with layers.
QString ownFile(const QPictureDocument &document)
{
    const bool isSame = !document.IsNewFile() && !document.m_Modified && !document.isAnotherFile();
    return isSame && !HasLayeredEnding(document.m_FileName) ? document.m_FileName : QString();
}

class DraggedPicture : public QMimeData
{
public:
    DraggedPicture(QImage picture, QString name, QString file, HandedFiles &files)
        : m_picture(std::move(picture)), m_name(std::move(name)), m_file(std::move(file)),
          m_files(&files)
    {
    }
    ~DraggedPicture() override
    {
        if (m_files && !m_isKept)
            m_files->remove(m_written);
    }
    Q_DISABLE_COPY_MOVE(DraggedPicture)

    QStringList formats() const override { return {s_files, s_image}; }
    bool hasFormat(const QString &type) const override { return formats().contains(type); }
    /// Somebody has taken it, and may read the file at any time.
    void keep() { m_isKept = true; }

protected:
    QVariant retrieveData(const QString &type, QMetaType /*wanted*/) const override
    {
        if (type == s_image)
            return m_picture;
        if (type != s_files)
            return {};
        if (m_file.isEmpty() && m_written.isEmpty() && m_files) {
            QString failure;
            m_written = m_files->write(m_picture, m_name, failure);
            if (m_written.isEmpty())
                qCWarning(logStore) << "no file for the drag:" << failure;
        }
        const QString path = m_file.isEmpty() ? m_written : m_file;
        return path.isEmpty() ? QVariant()
                              : QUrl::fromLocalFile(path).toEncoded() + QByteArray("\r\n");
    }

private:
    QImage m_picture;
    QString m_name;
    QString m_file;
    QPointer<HandedFiles> m_files;
    mutable QString m_written{};
    bool m_isKept = false;
};

}  // namespace

void dragPicture(QWidget &source, Workbench &work, HandedFiles &files)
{
    const QPixmap picture = work.unitedPicture();
    const QPictureDocument *document = work.documents().currentDocument();
    if (!document || picture.isNull())
        return;
    auto *data =
        new DraggedPicture(picture.toImage(), document->GetShowName(), ownFile(*document), files);
    const qreal ratio = source.devicePixelRatioF();
    const int side = qRound(s_imageSide * ratio);
    QPixmap small = picture.width() > side || picture.height() > side
                        ? picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                        : picture;
    small.setDevicePixelRatio(ratio);
    const QPointer<QDrag> drag = new QDrag(&source);
    drag->setMimeData(data);
    drag->setPixmap(small);
    // Of one that was dropped the data stays until the other program has it.
    if (drag->exec(Qt::CopyAction) != Qt::IgnoreAction && drag)
        data->keep();
}
