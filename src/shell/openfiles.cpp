#include "shell/openfiles.h"

#include <QDir>
#include <QFileInfo>

namespace {

QString clean(const QString &path) { return QDir::cleanPath(QFileInfo(path).absoluteFilePath()); }

}  // namespace

OpenFiles::OpenFiles(const std::vector<QPictureDocument> &documents)
{
    for (size_t i = 0; i < documents.size(); ++i) {
        if (!documents[i].IsNewFile())
            add(documents[i].m_FileName, static_cast<int>(i));
    }
}

int OpenFiles::indexOf(const QString &path) const
{
    if (const auto found = m_byPath.find(clean(path)); found != m_byPath.end())
        return *found;
    const std::optional<FileIdentity> file = FileIdentity::of(path);
    return file ? m_byFile.value({file->device, file->inode}, -1) : -1;
}

void OpenFiles::add(const QString &path, int index)
{
    // The first of several that are one file is found.
    if (const QString name = clean(path); !m_byPath.contains(name))
        m_byPath.insert(name, index);
    const std::optional<FileIdentity> found = FileIdentity::of(path);
    if (const File file{found ? found->device : 0, found ? found->inode : 0};
        found && !m_byFile.contains(file))
        m_byFile.insert(file, index);
}
