#include "recognition/runtimelibrary.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

RuntimeLibrary::RuntimeLibrary(const QStringList &names)
{
    m_isComplete = std::any_of(names.begin(), names.end(), [this](const QString &name) {
        m_library.setFileName(name);
        return m_library.load();
    });
}

// To open one takes time and memory, and a window's menus ask for more than is ever used. What the
// system's linker looks up names in says the same; where it has no such list, or looks elsewhere,
// the library has to be opened after all.
bool RuntimeLibrary::isInstalled(const QStringList &names)
{
    QFile list(u"/etc/ld.so.cache"_s);
    const QByteArray known = list.open(QIODevice::ReadOnly) ? list.readAll() : QByteArray();
    return std::any_of(names.begin(), names.end(), [&](const QString &name) {
        if (known.isEmpty() || qEnvironmentVariableIsSet("LD_LIBRARY_PATH"))
            return QLibrary(name).load();
        return known.contains('/' + name.toUtf8() + '\0');
    });
}
