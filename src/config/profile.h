#pragma once

/// Reader for the two small files beside the executable that say what the product is:
/// gwprofile_r.data (section gwprofile_r; a comma and a signature follow each value) and gwver.data
/// (one section named after the application). Nothing is cached and nothing is ever written.
///
/// Every `size` is the capacity of `out`: bytes for char, characters for wchar_t, terminator
/// included. A longer value is cut; nothing is written with a size of 0 or less. Lengths are those
/// of the narrow text in `out`, or of the whole value where `out` is null.

extern "C" {

/// Sets the folder of the two files; null or empty leaves it as it is. Returns the length of the
/// folder that is now set.
int GwProfilePath(const char *folder);

/// Value of `key`: its length, or 0 if it is absent or refused, with `out` empty.
int GwProfileGetA(const char *key, char *out, int size);

/// As GwProfileGetA, but `out` is left alone where there is no value.
int GwProfileGetW(const wchar_t *key, wchar_t *out, int size);

/// Version that stands in `section`: its length, or 0 if it is absent. -1, with `out` left alone,
/// when `section` is null or empty.
int GwVerGetA(const char *section, char *out, int size);

/// As GwVerGetA, but `out` is left alone where there is no version.
int GwVerGetW(const wchar_t *section, wchar_t *out, int size);
}

/// Value of `key` in `section` of `file`: copies it to `out` and returns its length. `fallback`
/// (null: empty) stands in `out` and 0 is returned when there is no such value. A null `key` lists
/// the keys of the section instead, each with its terminator and one more zero at the end, and
/// returns the number of bytes before that last zero.
int GetPrivateProfileString(const char *section, const char *key, const char *fallback, char *out,
                            int size, const char *file);

/// Lists the section names of `file` in the same way. Returns the length of the last name, on
/// purpose.
int GetPrivateProfileSectionNames(char *out, int size, const char *file);
