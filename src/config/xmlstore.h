#pragma once

#include <QDomDocument>
#include <QHash>
#include <QStringList>

#include <array>
#include <memory>
#include <string>

/// The elements of a document by their paths. If several elements have the same path, it is the
/// first one in the file.
using XmlPlaces = QHash<QString, QDomElement>;

/// One loaded XML file.
struct TXmlDocItem {
    std::wstring FileName{};                   ///< as the caller gave it; empty marks a free slot
    std::unique_ptr<QDomDocument> Document{};  ///< null in a free slot
    bool LoadFailed = false;                   ///< the file could not be opened or parsed
    bool Dirty = false;                        ///< the next save writes it
    QString SaveError{};                       ///< why the last save failed; empty if it succeeded
    XmlPlaces Places{};                        ///< empty until the first search
};

/// The five files that were loaded last, the newest first.
class TXmlDocSet
{
public:
    /// Frees every slot without saving.
    void Clear();

    /// Puts a document into the first slot. The oldest document is dropped with its unsaved
    /// changes. The result is valid until the next Push.
    TXmlDocItem *Push(const wchar_t *fileName, std::unique_ptr<QDomDocument> document, bool dirty);

    /// The first item of that name, ignoring letter case; null if there is none. An empty name
    /// finds a free slot.
    TXmlDocItem *Find(const wchar_t *fileName);

    std::array<TXmlDocItem, 5> Items{};
};

extern TXmlDocSet g_XmlDocSet;

/// Splits `text` at the delimiter; an empty delimiter means one blank. Two delimiters in a row give
/// an empty piece, but a trailing delimiter doesn't.
QStringList GetStringList(const char *text, const char *delimiter);

/// The first element that can be reached from `parent` by the tags `names[index]` to `names[end -
/// 1]`; the search tries all elements of the same tag. Null if there is none.
QDomElement FindElement(const QDomNode &parent, const QStringList &names, int index, int end);

/// The parsed file, which is loaded if it is not in the store. With `forWrite` the next save writes
/// it, and a file that can't be read gives an empty document; without `forWrite` such a file ends
/// the process at once, because the next start then repairs it. The store owns the document, which
/// is valid until five more files have been loaded or the store is cleared. Null for an empty name.
/// Only the first 200 attributes of an element are kept.
QDomDocument *GetXmlDocument(const wchar_t *fileName, bool forWrite);

/// A value is an attribute of an element. The element is given by the tags that lead to it from the
/// top element, joined by backslashes: Galeway\Config\LineColor. A path has at most 100 tags.
///
/// SetToXML follows the first match at each level and creates what is missing. A reader would
/// expect the same result for every success, but it returns 1 if the attribute existed and 0 if it
/// was created, on purpose. It also returns 0, without storing anything, if the path is empty, too
/// deep or has a different top element, or if XML does not allow the name of a new tag or
/// attribute. Characters that XML does not allow are dropped from the value. Setting an attribute
/// to the value that it already has does not make the file dirty.
int SetToXML(const wchar_t *fileName, const char *path, const char *attribute,
             const QString &value);

/// Searches all matches of the path. Returns 1, or 0 without changing `value` if there is no such
/// attribute.
int GetFromXML(const wchar_t *fileName, const char *path, const char *attribute, QString &value);

/// Whether the file has such an element. A file that can't be read has none; it does not end the
/// process.
bool XmlHasElement(const wchar_t *fileName, const char *path);

/// Parses the file as it is on the disk, without using the store. Null if it can't be opened or
/// parsed.
std::unique_ptr<QDomDocument> ReadXmlDocument(const QString &fileName);
XmlPlaces PlacesOf(const QDomDocument &document);
/// The text of a document as it is written to a file.
QByteArray XmlBytes(const QDomDocument &document);

extern "C" {

/// Returns 1 if the complete file was written. Returns 0 if it is not loaded, not dirty or can't be
/// written; the file is then unchanged.
int SaveXmlDocument(const wchar_t *fileName);
/// Saves all dirty files. A file that can't be written no longer counts as dirty afterwards.
void SaveAllXmlDocument();
/// Drops all files without saving them.
void FreeAllXmlDocument();

/// SetToXML and GetFromXML for plain strings; narrow strings are in the system's encoding. `size`
/// is the capacity of `value` and `out` in wide characters, at most WideTextCapacity; 0 or less
/// means WideTextCapacity, too. `out` of the narrow function has room for WideTextCapacity bytes.
/// Texts that don't fit are cut. `out` is emptied if nothing is found.
int SetTextToXML_W(const wchar_t *fileName, const wchar_t *path, const wchar_t *attribute,
                   const wchar_t *value, int size);
int SetTextToXML(const wchar_t *fileName, const char *path, const char *attribute,
                 const char *value);
int GetTextFromXML_W(const wchar_t *fileName, const wchar_t *path, const wchar_t *attribute,
                     wchar_t *out, int size);
int GetTextFromXML(const wchar_t *fileName, const char *path, const char *attribute, char *out);
}
