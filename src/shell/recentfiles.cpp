#include "shell/recentfiles.h"

#include "config/settings.h"
#include "shell/notices.h"
#include "shell/workbench.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_most = 10;
constexpr int s_widest = 360;  // of a folder beside a name, in logical pixels

// A path may have any character in it, so that each has a setting of its own.
QString keyOf(int place) { return u"RecentFile.%1"_s.arg(place + 1); }

// The name first, since it is what is looked for; a digit for each but the tenth, which has 0.
QString textOf(const QString &path, int place, const QFontMetrics &metrics)
{
    const QFileInfo info(path);
    QString folder = QDir::toNativeSeparators(info.absolutePath());
    if (const QString home = QDir::homePath(); folder == home || folder.startsWith(home + u'/'))
        folder.replace(0, home.size(), u'~');
    const QString text =
        info.fileName() + u" - "_s + metrics.elidedText(folder, Qt::ElideMiddle, s_widest);
    return u"&%1 "_s.arg((place + 1) % s_most) + QString(text).replace(u'&', u"&&"_s);
}

}  // namespace

RecentFiles::RecentFiles(QMenu &menu, Workbench &work, Notices &notices, QObject *parent)
    : QObject(parent), m_menu(menu), m_work(work), m_notices(notices)
{
    m_menu.menuAction()->setEnabled(!paths().isEmpty());
    connect(&m_menu, &QMenu::aboutToShow, this, &RecentFiles::fill);
    connect(&m_work, &Workbench::fileUsed, this, &RecentFiles::add);
}

QStringList RecentFiles::paths()
{
    QStringList result;
    for (int i = 0; i < s_most; ++i) {
        const QString path = GetConfigString(keyOf(i));
        if (!path.isEmpty() && !result.contains(path))
            result.append(path);
    }
    return result;
}

void RecentFiles::store(const QStringList &paths)
{
    for (int i = 0; i < s_most; ++i) {
        const QString path = paths.value(i);
        if (GetConfigString(keyOf(i)) != path)
            SetConfigString(keyOf(i), path);
    }
    m_menu.menuAction()->setEnabled(!paths.isEmpty());
}

void RecentFiles::add(const QString &path)
{
    const QString whole = QFileInfo(path).absoluteFilePath();
    QStringList all = paths();
    all.removeAll(whole);
    all.prepend(whole);
    store(all.first(qMin<qsizetype>(all.size(), s_most)));
}

void RecentFiles::open(const QString &path)
{
    if (QFileInfo::exists(path)) {
        m_work.open({path});
        return;
    }
    QStringList left = paths();
    left.removeAll(path);
    store(left);
    m_notices.say(tr("\"%1\" is not there any more.").arg(QDir::toNativeSeparators(path)));
}

void RecentFiles::fill()
{
    m_menu.clear();
    const QStringList all = paths();
    for (int i = 0; i < all.size(); ++i) {
        QAction *action = m_menu.addAction(textOf(all.at(i), i, m_menu.fontMetrics()));
        connect(action, &QAction::triggered, this, [this, path = all.at(i)] { open(path); });
    }
    m_menu.addSeparator();
    connect(m_menu.addAction(tr("&Clear")), &QAction::triggered, this, [this] { store({}); });
}
