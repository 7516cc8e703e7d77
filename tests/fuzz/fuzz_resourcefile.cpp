// The resource file, as a user, an editor or a broken disk may have left it: what could be read can
// be read again after a change was saved.

#include "config/xmlstore.h"
#include "fuzzing.h"

#include <fuzzer/FuzzedDataProvider.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzFile s_file;
    FuzzedDataProvider input(data, size);
    QByteArray path = QByteArray::fromStdString(input.ConsumeRandomLengthString(64));
    const bool isBelowTop = input.ConsumeBool();
    const QByteArray attribute = QByteArray::fromStdString(input.ConsumeRandomLengthString(16));
    const QString value = QString::fromUtf8(input.ConsumeRandomLengthString(64));
    const QByteArray content = QByteArray::fromStdString(input.ConsumeRemainingBytesAsString());
    const std::wstring file = s_file.path().toStdWString();
    const auto load = [&](const QByteArray &bytes) {
        s_file.fill(bytes);
        g_XmlDocSet = TXmlDocSet();
        GetXmlDocument(file.c_str(), true);
        return !g_XmlDocSet.Find(file.c_str())->LoadFailed;
    };
    if (load(content) && isBelowTop) {
        const QDomElement top = GetXmlDocument(file.c_str(), false)->documentElement();
        path.prepend(top.tagName().toUtf8() + '\\');
    }
    SetToXML(file.c_str(), path.constData(), attribute.constData(), value);
    QString before;
    const int found = GetFromXML(file.c_str(), path.constData(), attribute.constData(), before);
    const QByteArray saved = XmlBytes(*GetXmlDocument(file.c_str(), true));
    const bool isEmpty = GetXmlDocument(file.c_str(), true)->documentElement().isNull();
    REQUIRE(load(saved) != isEmpty);
    QString after;
    REQUIRE(GetFromXML(file.c_str(), path.constData(), attribute.constData(), after) == found);
    REQUIRE(after == before);
    return 0;
}
