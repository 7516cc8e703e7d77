#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// Filters of the open and save dialogs, built from the formats that the toolkit can write, also
/// for opening. First in pipe form, label and patterns in turn:
/// "bmp(*.bmp)|*.bmp|png(*.png)|*.png||".

/// One filter for all the formats.
QString GetFilterStr(const QList<QByteArray> &formats);
QString GetOpenPictureFilter();

/// One filter for each format. `selected` becomes the label for the extension of `fileName`, or
/// empty when none of the formats has it.
QString GetSavePictureFilter(const QString &fileName, QString &selected);
QString GetSavePictureFilter(const QString &fileName, QString &selected,
                             const QList<QByteArray> &formats);

/// Whether a picture can be written in the format that the path's ending names.
bool HasSavableEnding(const QString &path);

/// Turns pipe form, with the "||" at its end, into what the toolkit's dialogs take: the labels,
/// joined by
/// ";;", with blanks between the patterns.
QString GetMacFilter(const QString &filter);
