#include "platform/x11/windowproperties.h"

#include <QStringDecoder>

#include <algorithm>

namespace {

QByteArray bytesOf(const WindowProperty &property)
{
    constexpr int text = 8;
    return property.format == text ? property.bytes : QByteArray();
}

// Some programs put the terminator, and even bytes after it, into a title.
QByteArray textOf(const WindowProperty &property)
{
    const QByteArray bytes = bytesOf(property);
    return bytes.contains('\0') ? bytes.left(bytes.indexOf('\0')) : bytes;
}

// The standard says Latin-1, but most programs that use more than ASCII write UTF-8.
QString classText(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

}  // namespace

QList<uint32_t> valuesOf(const WindowProperty &property)
{
    constexpr int values = 32;
    if (property.format != values)
        return {};
    QList<uint32_t> result(property.bytes.size() / static_cast<qsizetype>(sizeof(uint32_t)));
    std::copy_n(property.bytes.constData(), result.size() * sizeof(uint32_t),
                reinterpret_cast<char *>(result.data()));
    return result;
}

QString windowName(const WindowProperty &netName, const WindowProperty &name, uint32_t utf8)
{
    QString result = QString::fromUtf8(textOf(netName));
    if (!result.isEmpty())
        return result;
    return name.type == utf8 ? QString::fromUtf8(textOf(name)) : QString::fromLatin1(textOf(name));
}

QString windowClass(const WindowProperty &property)
{
    // The property has two strings, each with its terminator: the instance and the class.
    return classText(bytesOf(property).split('\0').value(1));
}
