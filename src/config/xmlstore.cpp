#include "config/xmlstore.h"

#include "base/boundedtext.h"
#include "base/textencoding.h"
#include "base/wholefile.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>
#include <QXmlStreamReader>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cwchar>
#include <utility>

using namespace Qt::StringLiterals;

TXmlDocSet g_XmlDocSet;

namespace {

constexpr qsizetype s_maxPathDepth = 100;

// A document is torn down by recursion, so a hostile file could exhaust the stack with its depth; a
// big one would eat the memory some sixty times over. The files in use have four levels and some 30
// KB.
constexpr int s_maxNesting = 128;
constexpr qint64 s_maxFileSize = 8LL * 1024 * 1024;

// The parser compares each attribute of an element with all before it: 100,000 would take it half a
// minute. The elements in use have 14 at the most.
constexpr int s_maxAttributes = 200;

// What is beyond the limit is left out. The encodings in use all have the signs that matter here as
// single bytes.
QByteArray withoutSurplus(const QByteArray &xml)
{
    static const QRegularExpression attribute(
        uR"((?<!\s)\s++[^\s=<>"']++\s*+=\s*+(?:"[^"<]*+"|'[^'<]*+'))"_s);
    const QString text = QString::fromLatin1(xml);
    QString result;
    qsizetype end = 0;
    int inRow = 0;
    for (auto found = attribute.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        inRow = match.capturedStart() == end ? inRow + 1 : 1;
        const qsizetype kept =
            inRow > s_maxAttributes ? match.capturedStart() : match.capturedEnd();
        result += QStringView(text).mid(end, kept - end);
        end = match.capturedEnd();
    }
    result += QStringView(text).mid(end);
    return result.toLatin1();
}

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

void addPlaces(const QDomNode &parent, const QString &path, XmlPlaces &places)
{
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QString childPath = path + child.tagName();
        if (!places.contains(childPath))
            places.insert(childPath, child);
        if (child.hasChildNodes())
            addPlaces(child, childPath + u'\\', places);
    }
}

QDomElement elementAt(TXmlDocItem &item, const char *path)
{
    const QStringList names = pathNames(path);
    if (names.size() > s_maxPathDepth)
        return {};
    if (item.Places.isEmpty())
        item.Places = PlacesOf(*item.Document);
    return item.Places.value(names.join(u'\\'));
}

// The file's item, loaded when it is not in the store; null for an empty name.
TXmlDocItem *loadedItem(const wchar_t *fileName, bool mayFail)
{
    if (!fileName || !*fileName)
        return nullptr;
    if (TXmlDocItem *item = g_XmlDocSet.Find(fileName))
        return item;
    TXmlDocItem *item =
        g_XmlDocSet.Push(fileName, ReadXmlDocument(QString::fromWCharArray(fileName)), false);
    if (!item->Document) {
        if (!mayFail)
            std::abort();
        item->LoadFailed = true;
        // With a name, if an empty one: a document without one is null, and nothing can be added.
        item->Document = std::make_unique<QDomDocument>(QString());
    }
    return item;
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
        item.SaveError.clear();
        item.Places.clear();
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
    item.SaveError.clear();
    item.Places.clear();
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

std::unique_ptr<QDomDocument> ReadXmlDocument(const QString &fileName)
{
    QFile file(fileName);
    // A pipe or a device would block or never end.
    if (!QFileInfo(file).isFile() || file.size() > s_maxFileSize || !file.open(QIODevice::ReadOnly))
        return nullptr;
    const QByteArray xml = withoutSurplus(file.readAll());
    auto document = std::make_unique<QDomDocument>();
    if (!isWellFormedAndFlat(xml) || !document->setContent(xml))
        return nullptr;
    return document;
}

XmlPlaces PlacesOf(const QDomDocument &document)
{
    XmlPlaces places;
    addPlaces(document, {}, places);
    return places;
}

QByteArray XmlBytes(const QDomDocument &document)
{
    QByteArray bytes;
    QTextStream stream(&bytes, QIODevice::WriteOnly);
    // The stream's encoding is UTF-8. A document that declares a smaller one would lose what that
    // can't hold, such as the name of a folder.
    document.save(stream, 1, QDomNode::EncodingFromTextStream);
    stream.flush();
    return bytes;
}

QDomDocument *GetXmlDocument(const wchar_t *fileName, bool forWrite)
{
    TXmlDocItem *item = loadedItem(fileName, forWrite);
    if (!item)
        return nullptr;
    if (forWrite) {
        item->Dirty = true;
        item->Places.clear();
    }
    return item->Document.get();
}

int SetToXML(const wchar_t *fileName, const char *path, const char *attribute, const QString &value)
{
    TXmlDocItem *item = loadedItem(fileName, true);
    if (!item)
        return 0;
    const bool wasDirty = std::exchange(item->Dirty, true);
    const QStringList names = pathNames(path);
    if (names.isEmpty() || names.size() > s_maxPathDepth)
        return 0;
    QDomNode current = *item->Document;
    for (int i = 0; i < names.size(); ++i) {
        QDomElement next = FindElement(current, names, i, i + 1);
        if (next.isNull()) {
            // A document has one top element, and could not be read again with two.
            const bool isSecondTop = i == 0 && !item->Document->documentElement().isNull();
            if (isSecondTop || !isXmlName(names[i]))
                return 0;
            next = item->Document->createElement(names[i]);
            current.appendChild(next);
            // It is the first of its path: it was made behind the first match of each level.
            if (!item->Places.isEmpty())
                item->Places.insert(names.first(i + 1).join(u'\\'), next);
        }
        current = next;
    }
    QDomElement element = current.toElement();
    const QString name = QString::fromUtf8(attribute);
    const QString text = xmlCharacters(value);
    const bool existed = element.hasAttribute(name);
    if (existed && element.attribute(name) == text)
        item->Dirty = wasDirty;
    else if (existed || isXmlName(name))
        element.setAttribute(name, text);
    return existed;
}

int GetFromXML(const wchar_t *fileName, const char *path, const char *attribute, QString &value)
{
    TXmlDocItem *item = loadedItem(fileName, false);
    if (!item)
        return 0;
    const QDomAttr found = elementAt(*item, path).attributeNode(QString::fromUtf8(attribute));
    if (found.isNull())
        return 0;
    value = found.value();
    return 1;
}

bool XmlHasElement(const wchar_t *fileName, const char *path)
{
    TXmlDocItem *item = loadedItem(fileName, true);
    return item && !elementAt(*item, path).isNull();
}

int SaveXmlDocument(const wchar_t *fileName)
{
    TXmlDocItem *item = g_XmlDocSet.Find(fileName);
    if (!item || !item->Dirty)
        return 0;
    const QByteArray bytes = XmlBytes(*item->Document);
    WholeFile file(QString::fromStdWString(item->FileName));
    // What the next start could not read is better not written.
    if (bytes.size() > s_maxFileSize)
        item->SaveError = qt_error_string(EFBIG);
    else if (file.write(bytes))
        item->SaveError.clear();
    else
        item->SaveError = file.error();
    item->Dirty = !item->SaveError.isEmpty();
    return !item->Dirty;
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
