#include "base/textencoding.h"

#include "base/boundedtext.h"

#include <QString>

namespace {

QString fromAnsi(const char *text) { return QString::fromLocal8Bit(text); }
QString fromUtf8(const char *text) { return QString::fromUtf8(text); }

// A reader would expect surrogate pairs for characters beyond 16 bits, but they are cut to 16 bits,
// on purpose.
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
