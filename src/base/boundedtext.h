#pragma once

#include <QByteArray>

/// The capacity of the wide text buffers in this layer, in characters, including the terminator.
inline constexpr int WideTextCapacity = 4096;

/// Compares two texts, ignoring the case of ASCII letters. Returns 0 if they are equal, else the
/// difference of the first two characters that differ. Null counts as empty.
int wcsicmp(const wchar_t *left, const wchar_t *right);

/// Copies as much of `text` as fits into `out`, an array of `capacity` characters, and always
/// terminates it. It never cuts a multi-byte character in two. Returns the length copied. Writes
/// nothing if `out` is null or `capacity` is 0 or less. `text` may lie inside `out`.
int copyText(QByteArrayView text, char *out, qsizetype capacity);
int copyText(const wchar_t *text, wchar_t *out, qsizetype capacity);
