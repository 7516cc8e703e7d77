#pragma once

#include <QString>

/// The separator of folders in a path: "/".
QString PathSep();

/// The text before the last separator, without it; a path without a separator comes back as it is.
QString GetDirectory(const QString &path);

/// Makes the missing folders of `path` (file name encoding). Returns 0 for null and where the
/// folder can't be made, with errno telling why, else 1.
int CreateFolder(const char *path);

/// Writes `path` with its extension changed into `output`, an array of WideTextCapacity characters,
/// and returns 1. An extension that begins with "." or is empty (or null) is put behind the stem as
/// it is. The dot is looked for in the whole path, folders included. A longer result is cut.
/// `output` may be `path` itself.
int ChangeFileExt(const wchar_t *path, const wchar_t *extension, wchar_t *output);
