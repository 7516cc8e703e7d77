#include "config/texthelpers.h"

#include <QThread>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

QString PathSep() { return u"/"_s; }

QString GetDirectory(const QString &path)
{
    const qsizetype position = path.lastIndexOf(PathSep());
    return position < 0 ? path : path.first(position);
}

int CreateFolder(const char *path)
{
    if (!path)
        return 0;
    const std::string_view whole(path);
    int failure = 0;
    // The search begins behind the last stop, so that the root's separator is no stop of its own.
    for (size_t stop = 0; stop < whole.size();) {
        stop = std::min(whole.find_first_of("\\/", stop + 1), whole.size());
        if (access(path, F_OK) == 0)
            return 1;
        // What is there already may be a file. Of the others the first tells why.
        if (mkdir(std::string(whole.substr(0, stop)).c_str(), 0775) != 0 && failure == 0)
            failure = errno == EEXIST ? 0 : errno;
    }
    if (access(path, F_OK) == 0)
        return 1;
    errno = failure != 0 ? failure : errno;
    return 0;
}

int ChangeFileExt(const wchar_t *path, const wchar_t *extension, wchar_t *output)
{
    const std::wstring_view whole(path ? path : L"");
    const std::wstring_view ending(extension ? extension : L"");
    std::wstring name(whole.substr(0, whole.rfind(L'.')));
    if (!ending.empty() && !ending.starts_with(L'.'))
        name += L'.';
    name += ending;
    copyText(name.c_str(), output, WideTextCapacity);
    return 1;
}

void gwsleep(unsigned long milliseconds) { QThread::msleep(milliseconds); }

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
    // Wide characters of broken text may be any number.
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

namespace {

QString fromAnsi(const char *text) { return QString::fromLocal8Bit(text); }
QString fromUtf8(const char *text) { return QString::fromUtf8(text); }

// Characters beyond 16 bits are cut to 16, on purpose.
QString fromWide(const wchar_t *text)
{
    QString result;
    for (; *text; ++text)
        result += QChar(char16_t(*text));
    return result;
}

QByteArray toAnsi(const QString &text) { return text.toLocal8Bit(); }
QByteArray toUtf8(const QString &text) { return text.toUtf8(); }
std::wstring toWide(const QString &text) { return text.toStdWString(); }

template<typename Source, typename Output, typename Decode, typename Encode>
int convert(const Source *source, Output *output, Decode decode, Encode encode)
{
    const Source nothing = 0;
    const auto text = encode(decode(source ? source : &nothing));
    const int length = copyText(text.data(), output, ConversionCapacity / sizeof(Output));
    return source && output && length == int(text.size());
}

}  // namespace

int AnsiToUnicode(const char *source, wchar_t *output)
{
    return convert(source, output, fromAnsi, toWide);
}

int UnicodeToAnsi(const wchar_t *source, char *output)
{
    return convert(source, output, fromWide, toAnsi);
}

int UTF8ToUnicode(const char *source, wchar_t *output)
{
    return convert(source, output, fromUtf8, toWide);
}

int UnicodeToUTF8(const wchar_t *source, char *output)
{
    return convert(source, output, fromWide, toUtf8);
}

int AnsiToUTF8(const char *source, char *output)
{
    return convert(source, output, fromAnsi, toUtf8);
}

int UTF8ToAnsi(const char *source, char *output)
{
    return convert(source, output, fromUtf8, toAnsi);
}

QByteArray narrowText(const wchar_t *source, unsigned codePage)
{
    const QString text = QString::fromWCharArray(source);
    if (codePage == CodePageSystem)
        return text.toLocal8Bit();
    return codePage == CodePageUtf8 ? text.toUtf8() : QByteArray();
}

std::wstring wideText(const char *source, unsigned codePage)
{
    if (codePage == CodePageSystem)
        return QString::fromLocal8Bit(source).toStdWString();
    return codePage == CodePageUtf8 ? QString::fromUtf8(source).toStdWString() : std::wstring();
}
