#include "shell/clipboardkeeper.h"

#include "platform/services.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryFile>

#include <cerrno>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_takeOverLimit = 5000;  // ms
constexpr int s_uncompressed = 100;    // the toolkit's quality for that

// A process that is started to outlive this one is not its child, so its end is seen by this alone.
// (The library has the call from a later version on.)
int openProcess(qint64 number) { return static_cast<int>(syscall(SYS_pidfd_open, number, 0)); }

bool hasEnded(int process)
{
    pollfd end{.fd = process, .events = POLLIN, .revents = 0};
    return process >= 0 && poll(&end, 1, 0) > 0;
}

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
    qint64 number = 0;
    if (!keeper.startDetached(&number))
        return;
    // It ends at once where the desktop lets nobody keep the clipboard who has no window.
    const int process = openProcess(number);
    const bool isGone = process < 0 && errno == ESRCH;
    waitUntil(*services().clock, s_takeOverLimit,
              [=] { return !clipboard->ownsClipboard() || isGone || hasEnded(process); });
}
