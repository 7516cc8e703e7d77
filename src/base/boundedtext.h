#pragma once

#include <QByteArray>

/// What the buffers of wide text at this layer hold, in characters, terminator included.
inline constexpr int WideTextCapacity = 4096;

/// Compares without regard to the case of ASCII letters: 0 when equal, else the difference of the
/// first two characters that differ. Null counts as empty.
int wcsicmp(const wchar_t *left, const wchar_t *right);

/// Copies as much of `text` as fits into `out`, an array of `capacity` characters, and always
/// terminates it. A character of several bytes is never cut in two. Returns the length copied;
/// writes nothing when `out` is null or `capacity` is 0 or less. `text` may lie inside `out`.
int copyText(QByteArrayView text, char *out, qsizetype capacity);
int copyText(const wchar_t *text, wchar_t *out, qsizetype capacity);
