#pragma once

#include <QObject>
#include <QStringList>

class Notices;
class QMenu;
class Workbench;

/// The files that were opened or saved last, ten at the most, the newest first. The settings keep
/// them, and a menu opens them again.
class RecentFiles : public QObject
{
    Q_OBJECT

public:
    /// All outlive this object. The menu is filled whenever it opens, and greyed while there is
    /// nothing in it.
    RecentFiles(QMenu &menu, Workbench &work, Notices &notices, QObject *parent);

private:
    static QStringList paths();
    void store(const QStringList &paths);
    void add(const QString &path);
    void open(const QString &path);
    void fill();

    QMenu &m_menu;
    Workbench &m_work;
    Notices &m_notices;
};
