#pragma once

#include <QDomDocument>
#include <QHash>
#include <QStringList>

#include <array>
#include <memory>
#include <string>

/// The elements of a document by their paths, each the first of its path in the file's order.
using XmlPlaces = QHash<QString, QDomElement>;

/// One loaded XML file.
struct TXmlDocItem {
    std::wstring FileName{};                   ///< as the caller gave it; empty marks a free slot
    std::unique_ptr<QDomDocument> Document{};  ///< null in a free slot
    bool LoadFailed = false;                   ///< the file could not be opened or parsed
    bool Dirty = false;                        ///< written by the next save
    QString SaveError{};                       ///< why the last save failed; empty when it did not
    XmlPlaces Places{};                        ///< empty until somebody searches
};

/// The last five files that were loaded, the newest first.
class TXmlDocSet
{
public:
    /// Frees every slot and saves nothing.
    void Clear();

    /// Puts a document in front; the oldest one goes, with whatever was not saved. The result is
    /// valid until the next Push.
    TXmlDocItem *Push(const wchar_t *fileName, std::unique_ptr<QDomDocument> document, bool dirty);

    /// The first item of that name, letter case aside; null if there is none. An empty name finds a
    /// free slot.
    TXmlDocItem *Find(const wchar_t *fileName);

    std::array<TXmlDocItem, 5> Items{};
};

extern TXmlDocSet g_XmlDocSet;

/// The pieces of `text` between the delimiters (an empty delimiter means one blank). An empty piece
/// stands between two delimiters in a row, but none behind a trailing one.
QStringList GetStringList(const char *text, const char *delimiter);

/// The first element, with backtracking, that is reached from `parent` by the tags `names[index]`
/// up to `names[end - 1]`. Null if there is none.
QDomElement FindElement(const QDomNode &parent, const QStringList &names, int index, int end);

/// The parsed file, loaded when it is not in the store. Asking `forWrite` makes the next save write
/// it, and makes do with an empty document where the file can't be read; otherwise such a file ends
/// the process at once, which is what the repair at the next start counts on. The document belongs
/// to the store and lives until five more files were loaded or the store is cleared. Null for an
/// empty name. Of an element's attributes no more than the first 200 are kept.
QDomDocument *GetXmlDocument(const wchar_t *fileName, bool forWrite);

/// Values are attributes of elements. An element is addressed by the tags that lead to it, from the
/// top element down, joined by backslashes: Galeway\Config\LineColor. A path has at most 100 tags.
///
/// SetToXML follows the first match at each level and creates what is missing. It gives 1 when an
/// attribute was there, and 0 when it was created, on purpose. Also 0, with nothing stored, for a
/// path that is empty, too deep or leads to another top element than there is, and for a new tag or
/// attribute whose name XML can't hold.
/// Characters that XML can't hold are left out of the value. An attribute that holds the value
/// already gives the next save nothing to write.
int SetToXML(const wchar_t *fileName, const char *path, const char *attribute,
             const QString &value);

/// Searches all matches. Gives 1, or 0 with `value` left alone when the attribute is not there.
int GetFromXML(const wchar_t *fileName, const char *path, const char *attribute, QString &value);

/// Whether the file has such an element. One that can't be read has none, and ends nothing.
bool XmlHasElement(const wchar_t *fileName, const char *path);

/// The file as it is on the disk, whatever the store has of it. Null when it can't be opened or
/// parsed.
std::unique_ptr<QDomDocument> ReadXmlDocument(const QString &fileName);
XmlPlaces PlacesOf(const QDomDocument &document);
/// A document as a file holds it.
QByteArray XmlBytes(const QDomDocument &document);

extern "C" {

/// 1 when the file was written, whole; 0 when it is not loaded, not dirty or can't be written, and
/// then it is as it was.
int SaveXmlDocument(const wchar_t *fileName);
/// Saves what is dirty. A file that can't be written counts as saved.
void SaveAllXmlDocument();
/// Forgets all files without saving them.
void FreeAllXmlDocument();

/// SetToXML and GetFromXML over plain strings, the narrow ones in the system's encoding. `size` is
/// the capacity of the buffer behind `value` and `out` in wide characters, at most
/// WideTextCapacity, which also stands for a size of 0 or less; `out` of the narrow form holds
/// WideTextCapacity bytes. What doesn't fit is cut. `out` becomes empty when nothing is found.
int SetTextToXML_W(const wchar_t *fileName, const wchar_t *path, const wchar_t *attribute,
                   const wchar_t *value, int size);
int SetTextToXML(const wchar_t *fileName, const char *path, const char *attribute,
                 const char *value);
int GetTextFromXML_W(const wchar_t *fileName, const wchar_t *path, const wchar_t *attribute,
                     wchar_t *out, int size);
int GetTextFromXML(const wchar_t *fileName, const char *path, const char *attribute, char *out);
}
