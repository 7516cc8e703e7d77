#include "shell/clipboardkeeper.h"

#include "platform/services.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_takeOverLimit = 5000;  // ms
constexpr int s_uncompressed = 100;    // the toolkit's quality for that

}  // namespace

void leaveClipboard()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (!clipboard->ownsClipboard())
        return;
    const bool isImage = clipboard->mimeData()->hasImage();
    // A file and no pipe: nobody is left here to fill one.
    QTemporaryFile content;
    if (!content.open())
        return;
    const bool isWritten = isImage ? clipboard->image().save(&content, "PNG", s_uncompressed)
                                   : content.write(clipboard->text().toUtf8()) > 0;
    if (!isWritten || !content.flush())
        return;
    QProcess keeper;
    keeper.setProgram(QCoreApplication::applicationDirPath() + u"/snapworkbench-clipboard"_s);
    keeper.setArguments({isImage ? u"image/png"_s : u"text/plain"_s});
    keeper.setWorkingDirectory(u"/"_s);
    keeper.setStandardInputFile(content.fileName());
    keeper.setStandardOutputFile(QProcess::nullDevice());
    keeper.setStandardErrorFile(QProcess::nullDevice());
    if (keeper.startDetached())
        waitUntil(*services().clock, s_takeOverLimit,
                  [clipboard] { return !clipboard->ownsClipboard(); });
}
