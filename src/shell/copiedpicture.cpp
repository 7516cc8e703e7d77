#include "shell/copiedpicture.h"

#include "shell/picturejobs.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace {

// The toolkit's own, from which it makes whatever another program asks for.
const QString s_image = u"application/x-qt-image"_s;

}  // namespace

void CopiedPicture::copy(const QImage &picture, PictureJobs &jobs)
{
    auto *copied = new CopiedPicture(picture);
    copied->pack(jobs);
    QGuiApplication::clipboard()->setMimeData(copied);
}

void CopiedPicture::pack(PictureJobs &jobs)
{
    const auto packed = std::make_shared<PackedPicture>();
    jobs.start(
        PictureJobs::Kind::Pack, 0, {},
        [picture = m_picture, packed](PictureProgress &) { *packed = PackedPicture(picture); },
        // The clipboard may have got something else by then.
        [copied = QPointer(this), packed] {
            if (copied && !packed->isNull()) {
                copied->m_packed = *packed;
                copied->m_picture = {};
            }
        });
}

QStringList CopiedPicture::formats() const { return {s_image}; }

bool CopiedPicture::hasFormat(const QString &type) const { return type == s_image; }

QVariant CopiedPicture::retrieveData(const QString &type, QMetaType /*wanted*/) const
{
    if (type != s_image)
        return {};
    return m_packed.isNull() ? m_picture : m_packed.unpacked();
}
