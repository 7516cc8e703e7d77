#include "shell/newpicture.h"

#include <QDir>
#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int s_mostNames = 100'000;

// Makes an empty file that nobody else has. False with errno where that can't be.
bool makeFile(const QString &path)
{
    constexpr mode_t usual = 0666;  // from which the umask is taken
    const int file =
        open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, usual);
    return file >= 0 && close(file) == 0;
}

}  // namespace

// The name is taken by an empty file first: between a look whether it is free and the moment in
// which the picture comes there, another program may have put something in that place.
NewPicture writeNewPicture(const QImage &picture, const QString &folder,
                           const std::function<QString(int number)> &nameOf, int quality,
                           PictureProgress &progress)
{
    NewPicture made;
    QDir().mkpath(folder);
    bool isMade = false;
    for (int number = 1; number <= s_mostNames && !isMade; ++number) {
        made.path = QDir(folder).filePath(nameOf(number));
        isMade = makeFile(made.path);
        if (!isMade && errno != EEXIST)
            break;
    }
    if (!isMade) {
        made.result.failure = qt_error_string(errno);
        return made;
    }
    made.result = writePicture(picture, {}, made.path, {}, quality, progress);
    if (!made.result.isWritten)
        QFile::remove(made.path);
    return made;
}
