#pragma once

/// Reads the two small files beside the executable that describe the product: gwprofile_r.data
/// (section gwprofile_r; each value is followed by a comma and a signature) and gwver.data (one
/// section, named after the application). Nothing is cached, and nothing is written.
///
/// Each `size` is the capacity of `out` including the terminator: bytes for char, characters for
/// wchar_t. A value that is too long is cut; with a size of 0 or less nothing is written. Returned
/// lengths are those of the narrow text in `out`, or of the whole value if `out` is null.

extern "C" {

/// Sets the folder of the two files; null or empty leaves it unchanged. Returns the length of the
/// folder's path.
int GwProfilePath(const char *folder);

/// Reads the value of `key`. Returns its length, or 0 with an empty `out` if it is missing or its
/// signature is refused.
int GwProfileGetA(const char *key, char *out, int size);

/// Like GwProfileGetA, but leaves `out` alone if there is no value.
int GwProfileGetW(const wchar_t *key, wchar_t *out, int size);

/// Reads the version from `section`. Returns its length, or 0 if it is missing. If `section` is
/// null or empty, returns -1 and leaves `out` alone.
int GwVerGetA(const char *section, char *out, int size);

/// Like GwVerGetA, but leaves `out` alone if there is no version.
int GwVerGetW(const wchar_t *section, wchar_t *out, int size);
}

/// Copies the value of `key` in `section` of `file` to `out` and returns its length. If there is no
/// such value, copies `fallback` (null counts as empty) and returns 0. A null `key` lists the keys
/// of the section instead: each with its terminator, and one more zero at the end. The result is
/// then the number of bytes before that last zero.
int GetPrivateProfileString(const char *section, const char *key, const char *fallback, char *out,
                            int size, const char *file);

/// Lists the section names of `file` in the same way. A reader would expect the number of bytes,
/// but the length of the last name is returned, on purpose.
int GetPrivateProfileSectionNames(char *out, int size, const char *file);
