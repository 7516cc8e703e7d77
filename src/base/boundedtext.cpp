#include "base/boundedtext.h"

#include <algorithm>
#include <limits>
#include <string_view>

int wcsicmp(const wchar_t *left, const wchar_t *right)
{
    const auto lower = [](wchar_t c) -> qint64 {
        return c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c;
    };
    if (!left)
        left = L"";
    if (!right)
        right = L"";
    while (*left && lower(*left) == lower(*right)) {
        ++left;
        ++right;
    }
    // Wide characters in broken text may have any value, so their difference may not fit.
    return int(std::clamp<qint64>(lower(*left) - lower(*right), std::numeric_limits<int>::min(),
                                  std::numeric_limits<int>::max()));
}

int copyText(QByteArrayView text, char *out, qsizetype capacity)
{
    if (!out || capacity <= 0)
        return 0;
    qsizetype length = std::min(text.size(), capacity - 1);
    while (length > 0 && length < text.size() && (text[length] & 0xC0) == 0x80)
        --length;
    std::copy_n(text.data(), length, out);
    out[length] = 0;
    return int(length);
}

int copyText(const wchar_t *text, wchar_t *out, qsizetype capacity)
{
    if (!out || capacity <= 0)
        return 0;
    const size_t length = std::min(std::wstring_view(text).size(), size_t(capacity) - 1);
    std::copy_n(text, length, out);
    out[length] = 0;
    return int(length);
}
