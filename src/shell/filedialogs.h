#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// Asks for pictures to open. `filters` are joined by ";;"; `selected` names one of them, and is
/// replaced by the one that the user left. Empty when the user cancelled.
QStringList askOpenFileNames(QWidget *parent, const QString &folder, const QString &filters,
                             QString &selected);

/// Asks for the file to save a picture in. `filters` are joined by ";;"; `selected` names one of
/// them, and is replaced by the one that the user left. A name without the ending of a picture
/// format gets that of the chosen filter, and the question about an existing file is asked for the
/// whole name. `path` is proposed; where that is another file's and `mayExist` false, with the next
/// free number behind it. Empty when the user cancelled.
QString askSaveFileName(QWidget *parent, const QString &path, const QString &filters,
                        QString &selected, bool mayExist);
