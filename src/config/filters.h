#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// The filters of the open and save dialogs, made from the formats that the toolkit can write (for
/// opening, too), and the one with layers. All functions but GetMacFilter return pipe form, in
/// which labels and patterns alternate: "bmp(*.bmp)|*.bmp|png(*.png)|*.png||".

/// One filter for all the formats.
QString GetFilterStr(const QList<QByteArray> &formats);
QString GetOpenPictureFilter();

/// One filter for each format. `selected` becomes the label for the extension of `fileName`, or
/// empty if no format has this extension.
QString GetSavePictureFilter(const QString &fileName, QString &selected);
QString GetSavePictureFilter(const QString &fileName, QString &selected,
                             const QList<QByteArray> &formats);

/// The filter of pictures that keep their shapes as layers.
QString GetLayeredPictureFilter();

/// Whether a picture can be written in the format that the path's extension names.
bool HasSavableEnding(const QString &path);
/// Whether that is the format with layers.
bool HasLayeredEnding(const QString &path);

/// Converts pipe form with its final "||" to the form that the toolkit's dialogs take: the labels,
/// joined by ";;", with blanks between the patterns.
QString GetMacFilter(const QString &filter);
