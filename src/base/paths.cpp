#include "base/paths.h"

#include "base/boundedtext.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

QString PathSep() { return u"/"_s; }

QString GetDirectory(const QString &path)
{
    const qsizetype position = path.lastIndexOf(PathSep());
    return position < 0 ? path : path.first(position);
}

int CreateFolder(const char *path)
{
    if (!path)
        return 0;
    const std::string_view whole(path);
    int failure = 0;
    // The search skips the position of the last stop, so that a leading separator does not count as
    // a stop.
    for (size_t stop = 0; stop < whole.size();) {
        stop = std::min(whole.find_first_of("\\/", stop + 1), whole.size());
        if (access(path, F_OK) == 0)
            return 1;
        // EEXIST is no failure, since the folder may exist already. The first other failure is the
        // one to report.
        if (mkdir(std::string(whole.substr(0, stop)).c_str(), 0775) != 0 && failure == 0)
            failure = errno == EEXIST ? 0 : errno;
    }
    if (access(path, F_OK) == 0)
        return 1;
    errno = failure != 0 ? failure : errno;
    return 0;
}

int ChangeFileExt(const wchar_t *path, const wchar_t *extension, wchar_t *output)
{
    const std::wstring_view whole(path ? path : L"");
    const std::wstring_view ending(extension ? extension : L"");
    std::wstring name(whole.substr(0, whole.rfind(L'.')));
    if (!ending.empty() && !ending.starts_with(L'.'))
        name += L'.';
    name += ending;
    copyText(name.c_str(), output, WideTextCapacity);
    return 1;
}
