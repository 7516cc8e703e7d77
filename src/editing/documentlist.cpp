#include "editing/documentlist.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

QString clean(const QString &path) { return QDir::cleanPath(QFileInfo(path).absoluteFilePath()); }

// Finds documents by their files, at the cost of one look at each however many are asked for.
class OpenFiles
{
public:
    explicit OpenFiles(const DocumentList &documents)
    {
        for (int i = 0; documents.has(i); ++i) {
            if (!documents[i].IsNewFile())
                add(documents[i].m_FileName, i);
        }
    }

    int indexOf(const QString &path) const
    {
        if (const auto found = m_byPath.find(clean(path)); found != m_byPath.end())
            return *found;
        const std::optional<FileIdentity> file = FileIdentity::of(path);
        return file ? m_byFile.value({file->device, file->inode}, -1) : -1;
    }

    // Where several documents are one file, the first one is found.
    void add(const QString &path, int index)
    {
        if (const QString name = clean(path); !m_byPath.contains(name))
            m_byPath.insert(name, index);
        const std::optional<FileIdentity> found = FileIdentity::of(path);
        if (const File file{found ? found->device : 0, found ? found->inode : 0};
            found && !m_byFile.contains(file))
            m_byFile.insert(file, index);
    }

private:
    using File = std::pair<quint64, quint64>;  // device and inode

    QHash<QString, int> m_byPath{};
    QHash<File, int> m_byFile{};
};

}  // namespace

int DocumentList::indexOf(int number) const
{
    const auto found = std::find_if(begin(), end(), [number](const QPictureDocument &document) {
        return document.m_Number == number;
    });
    return found == end() ? -1 : static_cast<int>(found - begin());
}

QPictureDocument *DocumentList::find(int number)
{
    const int index = indexOf(number);
    return has(index) ? &m_documents[index] : nullptr;
}

int DocumentList::indexOfFile(const QString &path) const { return OpenFiles(*this).indexOf(path); }

QList<int> DocumentList::numbers() const
{
    QList<int> result;
    for (const QPictureDocument &document : m_documents)
        result.append(document.m_Number);
    return result;
}

bool DocumentList::hasModified() const
{
    return std::any_of(begin(), end(),
                       [](const QPictureDocument &document) { return document.m_Modified; });
}

int DocumentList::add(const QPixmap &picture, const QString &name, const PictureOrigin &origin)
{
    const auto [entry, isNew] = g_mapNameIndex.try_emplace(name, 0);
    if (!isNew)
        ++entry->second;
    QPictureDocument &document = m_documents.emplace_back(picture);
    document.m_FileName = name;
    document.m_NameIndex = entry->second;
    document.m_Modified = true;
    document.m_Origin = origin;
    return size() - 1;
}

int DocumentList::addReturned(const UnsavedWork &work)
{
    QPictureDocument &document = m_documents.emplace_back(QPictureDocument::awaited(work));
    document.m_Modified = true;
    if (document.IsNewFile()) {
        const auto [known, isNew] =
            g_mapNameIndex.try_emplace(document.m_FileName, document.m_NameIndex);
        if (!isNew)
            known->second = std::max(known->second, document.m_NameIndex);
    }
    return size() - 1;
}

DocumentList::Opened DocumentList::addFiles(const QStringList &paths)
{
    Opened result;
    OpenFiles open(*this);
    for (const QString &path : paths) {
        if (const int index = open.indexOf(path); index >= 0) {
            result.known = result.known < 0 ? index : result.known;
            result.all.append(index);
            continue;
        }
        m_documents.push_back(
            QPictureDocument::awaited({.name = path, .file = FileIdentity::of(path)}));
        open.add(path, size() - 1);
        result.first = result.first < 0 ? size() - 1 : result.first;
        result.all.append(size() - 1);
    }
    return result;
}

int DocumentList::remove(int index)
{
    m_documents.erase(m_documents.begin() + index);
    const int before = std::exchange(m_current, -1);
    return has(before) ? before : before - 1;
}

void DocumentList::clear()
{
    m_documents.clear();
    m_current = -1;
}
