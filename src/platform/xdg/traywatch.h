#pragma once

#include <QObject>

/// Looks for a tray on the session bus, which may come long after this program.
class TrayWatch : public QObject
{
    Q_OBJECT

public:
    explicit TrayWatch(QObject *parent);

signals:
    /// One is there now that shows icons, from the event loop; may be told more than once.
    void appeared();

private:
    void ask();
};
