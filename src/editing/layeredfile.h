#pragma once

#include "editing/history.h"
#include "editing/picturefile.h"

#include <QByteArrayView>
#include <QImage>
#include <QString>

class WholeFile;

// OpenRaster: a ZIP archive with a PNG picture for each layer, and `stack.xml`, which says where
// they lie. Other programs open it as layers. This one puts its own data beside them: the shapes
// with their history, and the picture before its changes. Functions may be called on any thread.

/// Whether a file that begins like that is meant to be one.
bool isLayered(QByteArrayView start);

/// Reads one that is open, from a descriptor that stays the caller's. With data that this program
/// has written and that still fit, the result has the picture before its changes, and the history;
/// else the merged picture and no history, and a notice why.
PictureRead readLayered(int file, PictureProgress &progress, bool isOwn);

/// Writes the content of one. Returns false on failure, usually with a reason for the user.
bool writeLayered(WholeFile &file, const QImage &picture, const EditHistory &history,
                  PictureProgress &progress, QString &failure);
