#include "config/xmlstore.h"

#include "config/texthelpers.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdlib>
#include <cwchar>

using namespace Qt::StringLiterals;

TXmlDocSet g_XmlDocSet;

namespace {

constexpr qsizetype s_maxPathDepth = 100;

// A document is torn down by recursion, so a hostile file could exhaust the stack with its depth; a
// big one would eat the memory some sixty times over. The files in use have four levels and some 30
// KB.
constexpr int s_maxNesting = 128;
constexpr qint64 s_maxFileSize = 4LL * 1024 * 1024;

bool isWellFormedAndFlat(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);  // as the document is parsed
    int depth = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && ++depth > s_maxNesting)
            return false;
        if (reader.isEndElement())
            --depth;
    }
    return !reader.hasError();
}

// Null when the file can't be opened or parsed.
std::unique_ptr<QDomDocument> load(const wchar_t *fileName)
{
    QFile file(QString::fromWCharArray(fileName));
    // A pipe or a device would block or never end.
    if (!QFileInfo(file).isFile() || file.size() > s_maxFileSize || !file.open(QIODevice::ReadOnly))
        return nullptr;
    const QByteArray xml = file.readAll();
    auto document = std::make_unique<QDomDocument>();
    if (!isWellFormedAndFlat(xml) || !document->setContent(xml))
        return nullptr;
    return document;
}

// A tag or an attribute that the parser refuses would make the saved file, and so the next start,
// fail.
bool isXmlName(const QString &name)
{
    QXmlStreamReader reader(u'<' + name + u"/>"_s);
    reader.setNamespaceProcessing(false);
    return reader.readNextStartElement() && reader.qualifiedName() == name;
}

// The same goes for characters: the name of a folder, say, may hold control characters.
QString xmlCharacters(const QString &text)
{
    QString result;
    for (const char32_t c : text.toStdU32String()) {
        const bool allowed =
            c >= 0x20 ? c < 0xFFFE || c > 0xFFFF : c == '\t' || c == '\n' || c == '\r';
        if (allowed)
            result += QChar::fromUcs4(c);
    }
    return result;
}

QStringList pathNames(const char *path) { return GetStringList(path, "\\"); }

int boundedCapacity(int size)
{
    return size > 0 ? std::min(size, WideTextCapacity) : WideTextCapacity;
}

// UTF-8 text of a path or an attribute's name.
struct NarrowName {
    explicit NarrowName(const wchar_t *name) { UnicodeToUTF8(name, text.data()); }
    std::array<char, ConversionCapacity> text;
};

}  // namespace

void TXmlDocSet::Clear()
{
    // LoadFailed stays as it is, on purpose.
    for (TXmlDocItem &item : Items) {
        item.FileName.clear();
        item.Document.reset();
        item.Dirty = false;
    }
}

TXmlDocItem *TXmlDocSet::Push(const wchar_t *fileName, std::unique_ptr<QDomDocument> document,
                              bool dirty)
{
    std::move_backward(Items.begin(), Items.end() - 1, Items.end());
    // LoadFailed stays as it is, on purpose.
    TXmlDocItem &item = Items.front();
    item.FileName = fileName ? fileName : L"";
    item.Document = std::move(document);
    item.Dirty = dirty;
    return &item;
}

TXmlDocItem *TXmlDocSet::Find(const wchar_t *fileName)
{
    const auto found = std::find_if(Items.begin(), Items.end(), [&](const TXmlDocItem &item) {
        return wcsicmp(item.FileName.c_str(), fileName) == 0;
    });
    return found == Items.end() ? nullptr : &*found;
}

QStringList GetStringList(const char *text, const char *delimiter)
{
    if (!text || !*text)
        return {};
    const QString separator =
        delimiter && *delimiter ? QString::fromUtf8(delimiter) : QString(u' ');
    QStringList pieces = QString::fromUtf8(text).split(separator);
    if (pieces.last().isEmpty())
        pieces.removeLast();
    return pieces;
}

QDomElement FindElement(const QDomNode &parent, const QStringList &names, int index, int end)
{
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName() != names[index])
            continue;
        const QDomElement found =
            index + 1 == end ? child : FindElement(child, names, index + 1, end);
        if (!found.isNull())
            return found;
    }
    return {};
}

QDomDocument *GetXmlDocument(const wchar_t *fileName, bool forWrite)
{
    if (!fileName || !*fileName)
        return nullptr;
    TXmlDocItem *item = g_XmlDocSet.Find(fileName);
    if (!item) {
        item = g_XmlDocSet.Push(fileName, load(fileName), false);
        if (!item->Document) {
            if (!forWrite)
                std::abort();
            item->LoadFailed = true;
            // With a name, if an empty one: a document without one is null, and nothing can be
            // added.
            item->Document = std::make_unique<QDomDocument>(QString());
        }
    }
    if (forWrite)
        item->Dirty = true;
    return item->Document.get();
}

int SetToXML(const wchar_t *fileName, const char *path, const char *attribute, const QString &value)
{
    QDomDocument *document = GetXmlDocument(fileName, true);
    const QStringList names = pathNames(path);
    if (!document || names.isEmpty() || names.size() > s_maxPathDepth)
        return 0;
    QDomNode current = *document;
    for (int i = 0; i < names.size(); ++i) {
        QDomElement next = FindElement(current, names, i, i + 1);
        if (next.isNull()) {
            if (!isXmlName(names[i]))
                return 0;
            next = document->createElement(names[i]);
            current.appendChild(next);
        }
        current = next;
    }
    QDomElement element = current.toElement();
    const QString name = QString::fromUtf8(attribute);
    const bool existed = element.hasAttribute(name);
    if (existed || isXmlName(name))
        element.setAttribute(name, xmlCharacters(value));
    return existed;
}

int GetFromXML(const wchar_t *fileName, const char *path, const char *attribute, QString &value)
{
    const QDomDocument *document = GetXmlDocument(fileName, false);
    const QStringList names = pathNames(path);
    if (!document || names.isEmpty() || names.size() > s_maxPathDepth)
        return 0;
    QDomElement element = FindElement(*document, names, 0, int(names.size()));
    const QDomAttr found = element.attributeNode(QString::fromUtf8(attribute));
    if (found.isNull())
        return 0;
    value = found.value();
    return 1;
}

int SaveXmlDocument(const wchar_t *fileName)
{
    TXmlDocItem *item = g_XmlDocSet.Find(fileName);
    if (!item || !item->Dirty)
        return 0;
    QFile file(QString::fromStdWString(item->FileName));
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    QTextStream stream(&file);
    // The stream's encoding is UTF-8. A document that declares a smaller one would lose what that
    // can't hold, such as the name of a folder.
    item->Document->save(stream, 1, QDomNode::EncodingFromTextStream);
    stream.flush();
    if (stream.status() != QTextStream::Ok || !file.flush())
        return 0;
    item->Dirty = false;
    return 1;
}

void SaveAllXmlDocument()
{
    for (TXmlDocItem &item : g_XmlDocSet.Items) {
        if (item.Dirty)
            SaveXmlDocument(item.FileName.c_str());
        item.Dirty = false;
    }
}

void FreeAllXmlDocument() { g_XmlDocSet.Clear(); }

int SetTextToXML_W(const wchar_t *fileName, const wchar_t *path, const wchar_t *attribute,
                   const wchar_t *value, int size)
{
    const QString text =
        value ? QString::fromWCharArray(value, qsizetype(wcsnlen(value, boundedCapacity(size))))
              : QString();
    return SetToXML(fileName, NarrowName(path).text.data(), NarrowName(attribute).text.data(),
                    text);
}

int SetTextToXML(const wchar_t *fileName, const char *path, const char *attribute,
                 const char *value)
{
    return SetToXML(fileName, path, attribute, QString::fromLocal8Bit(value));
}

int GetTextFromXML_W(const wchar_t *fileName, const wchar_t *path, const wchar_t *attribute,
                     wchar_t *out, int size)
{
    QString value;
    const int result = GetFromXML(fileName, NarrowName(path).text.data(),
                                  NarrowName(attribute).text.data(), value);
    copyText(value.toStdWString().c_str(), out, boundedCapacity(size));
    return result;
}

int GetTextFromXML(const wchar_t *fileName, const char *path, const char *attribute, char *out)
{
    QString value;
    const int result = GetFromXML(fileName, path, attribute, value);
    copyText(value.toLocal8Bit(), out, WideTextCapacity);
    return result;
}
