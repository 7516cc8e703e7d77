#pragma once

#include "editing/picturefile.h"

#include <QImage>
#include <QString>

#include <functional>

struct NewPicture {
    PictureWrite result{};
    QString path{};  ///< the file that was written or could not be
};

/// Writes a picture to a file of its own; may be called on any thread. `nameOf` gives a name for
/// each number from 1 on, with the format's ending, and the first that is free is taken: whatever
/// lies in the folder stays as it is. A folder that is missing is made. `quality` -1 leaves that to
/// the format.
NewPicture writeNewPicture(const QImage &picture, const QString &folder,
                           const std::function<QString(int number)> &nameOf, int quality,
                           PictureProgress &progress);
