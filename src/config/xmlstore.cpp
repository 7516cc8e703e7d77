#include "config/xmlstore.h"

#include "base/boundedtext.h"
#include "base/log.h"
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

// A document is destroyed recursively, so a deeply nested file could exhaust the stack, and a
// document needs about sixty times the memory of its file. The program's own files have four levels
// and some 30 KB.
constexpr int s_maxNesting = 128;
constexpr qint64 s_maxFileSize = 8LL * 1024 * 1024;

// The parser compares each attribute of an element with all previous ones; 100,000 attributes would
// take half a minute. The program's own elements have at most 14.
constexpr int s_maxAttributes = 200;

// Drops the attributes beyond the limit. Treating the text as Latin-1 is safe, since in all
// supported encodings the characters that matter here are single bytes.
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
    reader.setNamespaceProcessing(false);  // the document is parsed without namespaces, too
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

// A tag or an attribute name that the parser refuses would make the saved file unreadable, and with
// it the next start fail.
bool isXmlName(const QString &name)
{
    QXmlStreamReader reader(u'<' + name + u"/>"_s);
    reader.setNamespaceProcessing(false);
    return reader.readNextStartElement() && reader.qualifiedName() == name;
}

// Characters that XML does not allow would have the same effect; a folder's name, for example, may
// contain control characters.
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

// The item of a file, which is loaded if it is not in the store; null for an empty name.
TXmlDocItem *loadedItem(const wchar_t *fileName, bool mayFail)
{
    if (!fileName || !*fileName)
        return nullptr;
    if (TXmlDocItem *item = g_XmlDocSet.Find(fileName))
        return item;
    TXmlDocItem *item =
        g_XmlDocSet.Push(fileName, ReadXmlDocument(QString::fromWCharArray(fileName)), false);
    if (!item->Document) {
        if (!mayFail) {
            qCInfo(logStore) << QString::fromWCharArray(fileName)
                             << "can't be read: the program ends here on purpose, and the next "
                                "start puts the backup in its place";
            std::abort();
        }
        item->LoadFailed = true;
        // A QDomDocument without a name is null, and no element can be added to it; an empty name
        // is enough.
        item->Document = std::make_unique<QDomDocument>(QString());
    }
    return item;
}

// The UTF-8 text of a path or of an attribute's name.
struct NarrowName {
    explicit NarrowName(const wchar_t *name) { UnicodeToUTF8(name, text.data()); }
    std::array<char, ConversionCapacity> text;
};

}  // namespace

void TXmlDocSet::Clear()
{
    // A reader would expect LoadFailed to be reset, but it is kept, on purpose.
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
    // A reader would expect LoadFailed to be reset, but it is kept, on purpose.
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
    // Reading a pipe or a device could block or never end.
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
    // The stream writes UTF-8. If the document declared a smaller encoding, characters outside of
    // it would be lost, for example in a folder's name.
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
            // A document can have only one top element; with a second one it could not be read
            // again.
            const bool isSecondTop = i == 0 && !item->Document->documentElement().isNull();
            if (isSecondTop || !isXmlName(names[i]))
                return 0;
            next = item->Document->createElement(names[i]);
            current.appendChild(next);
            // The new element is the first one of its path, since its parents are the first matches
            // of their levels.
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
    // A file that is too large for the next start must not be written.
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
