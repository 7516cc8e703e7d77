#include "config/profile.h"

#include "base/boundedtext.h"
#include "base/textencoding.h"
#include "config/licensing.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <optional>

namespace {

// Both capacities include a terminator. The rest of a longer line is read as the next line, and a
// section with a longer name is never found.
constexpr qsizetype s_lineCapacity = 1024;
constexpr qsizetype s_headerCapacity = 56;

constexpr qsizetype s_valueCapacity = 2048;
constexpr qsizetype s_wideValueCapacity = 1024;

QByteArray g_path;

QByteArray fileName(const char *name)
{
    const bool separated = g_path.isEmpty() || g_path.endsWith('/');
    return g_path + (separated ? "" : "/") + name;
}

// The line with its line end. A zero byte hides the rest of the line. Null at the end of the file.
QByteArray readLine(QFile &stream)
{
    std::array<char, s_lineCapacity> line;
    return stream.readLine(line.data(), line.size()) > 0 ? QByteArray(line.data()) : QByteArray();
}

QByteArray mygetline(QByteArray line)
{
    if (line.size() > 1 && line[line.size() - 2] == '\r')
        line.chop(2);
    else if (line.endsWith('\n'))
        line.chop(1);
    return line;
}

// Unlike QByteArray::trimmed() this leaves carriage returns alone.
QByteArrayView trim(QByteArrayView text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n'; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

bool equalNames(QByteArrayView left, QByteArrayView right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

// The name between the first "[" and the next "]"; null if there is no such pair.
QByteArray ExtractSection(const QByteArray &line)
{
    const qsizetype begin = line.indexOf('[');
    const qsizetype end = begin < 0 ? -1 : line.indexOf(']', begin);
    return end < 0 ? QByteArray() : line.sliced(begin + 1, end - begin - 1);
}

// Leaves the stream positioned after the section's header line.
bool findSection(QFile &stream, const char *section)
{
    const QByteArrayView name(section);
    if (name.size() + 2 >= s_headerCapacity)
        return false;
    for (QByteArray line = readLine(stream); !line.isNull(); line = readLine(stream)) {
        const QByteArray found = ExtractSection(line);
        if (!found.isNull() && equalNames(found, name))
            return true;
    }
    return false;
}

std::optional<QByteArray> findValue(QFile &stream, const char *key)
{
    for (QByteArray line = readLine(stream); !line.isNull(); line = readLine(stream)) {
        line = mygetline(line);
        if (line.isEmpty() || line.startsWith(';'))
            continue;
        // A reader would expect a line without "=" to be skipped, but it ends the search, on
        // purpose.
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith('[') || equals < 0)
            break;
        if (!equalNames(trim(line.first(equals)), key))
            continue;
        const auto value = std::find_if(line.cbegin() + equals + 1, line.cend(),
                                        [](char c) { return c != ' ' && c != '\t'; });
        return line.sliced(value - line.cbegin());
    }
    return std::nullopt;
}

// Each key with its terminator.
QByteArray keyList(QFile &stream)
{
    QByteArray list;
    for (QByteArray line = readLine(stream); !line.isNull(); line = readLine(stream)) {
        line = mygetline(line);
        if (line.startsWith('['))
            break;
        if (!line.isEmpty() && !line.startsWith(';'))
            list += line.split('=').first() + '\0';
    }
    return list;
}

// A reader would expect the length of the list, but the length of the last name is returned, on
// purpose.
int GetSectionNames(QByteArray &list, QFile &stream)
{
    int length = 0;
    for (QByteArray line = readLine(stream); !line.isNull(); line = readLine(stream)) {
        const QByteArray name = ExtractSection(line);
        if (!line.startsWith('[') || name.isEmpty())
            continue;
        list += name + '\0';
        length = int(name.size());
    }
    return length;
}

// Copies a list and appends one more zero. A list that is cut still ends in two zeros.
int copyList(QByteArray list, char *out, int size)
{
    if (!out || size <= 0)
        return 0;
    if (list.size() >= size) {
        list.truncate(std::max(size - 2, 0));
        if (size > 1)
            list += '\0';
    }
    std::copy_n(list.constData(), list.size(), out);
    out[list.size()] = 0;
    return int(list.size());
}

int getWide(int (*getNarrow)(const char *, char *, int), const wchar_t *name, wchar_t *out,
            int size)
{
    std::array<char, s_wideValueCapacity> text{};
    const int length = getNarrow(CW2AEX<128>(name), text.data(), int(text.size()));
    if (length > 0)
        copyText(CA2WEX<128>(text.data()), out, size);
    return length;
}

}  // namespace

int GwProfilePath(const char *folder)
{
    if (folder && *folder)
        g_path = folder;
    return int(g_path.size());
}

int GwProfileGetA(const char *key, char *out, int size)
{
    copyText("", out, size);
    if (!key || !*key)
        return 0;
    std::array<char, s_valueCapacity> text;
    GetPrivateProfileString("gwprofile_r", key, nullptr, text.data(), int(text.size()),
                            fileName("gwprofile_r.data").constData());
    const QByteArray line(text.data());
    const QByteArray value = line.split(',').first();
    if (!Licensing::acceptsProfileValue(key, value, line.mid(value.size() + 1)))
        return 0;
    return out ? copyText(value, out, size) : int(value.size());
}

int GwProfileGetW(const wchar_t *key, wchar_t *out, int size)
{
    return getWide(GwProfileGetA, key, out, size);
}

int GwVerGetA(const char *section, char *out, int size)
{
    if (!section || !*section)
        return -1;
    std::array<char, s_valueCapacity> text;
    const int length = GetPrivateProfileString(
        section, "ver", nullptr, text.data(), int(text.size()), fileName("gwver.data").constData());
    return out ? copyText(text.data(), out, size) : length;
}

int GwVerGetW(const wchar_t *section, wchar_t *out, int size)
{
    return getWide(GwVerGetA, section, out, size);
}

int GetPrivateProfileString(const char *section, const char *key, const char *fallback, char *out,
                            int size, const char *file)
{
    copyText(fallback ? fallback : "", out, size);
    QFile stream(QFile::decodeName(file));
    if (!file || !section || !stream.open(QIODevice::ReadOnly) || !findSection(stream, section))
        return 0;
    if (!key)
        return copyList(keyList(stream), out, size);
    const std::optional<QByteArray> value = findValue(stream, key);
    return value ? copyText(*value, out, size) : 0;
}

int GetPrivateProfileSectionNames(char *out, int size, const char *file)
{
    QFile stream(QFile::decodeName(file));
    QByteArray list;
    const int length = stream.open(QIODevice::ReadOnly) ? GetSectionNames(list, stream) : 0;
    copyList(list, out, size);
    return length;
}
