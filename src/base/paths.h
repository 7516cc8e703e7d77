#pragma once

#include <QString>

/// The separator between folders in a path: "/".
QString PathSep();

/// The text before the last separator, without the separator. A path without one is returned
/// unchanged.
QString GetDirectory(const QString &path);

/// Creates the missing folders of `path`, which is in the file name encoding. Returns 1, or 0 if
/// `path` is null or a folder can't be created; errno then tells why.
int CreateFolder(const char *path);

/// Writes `path` with its extension changed into `output`, an array of WideTextCapacity characters,
/// and returns 1. An extension that begins with "." or is empty or null is appended to the stem as
/// it is. A reader would expect only the file name to be searched for the dot, but the whole path
/// is, folders included, on purpose. A result that is too long is cut. `output` may be `path`
/// itself.
int ChangeFileExt(const wchar_t *path, const wchar_t *extension, wchar_t *output);
