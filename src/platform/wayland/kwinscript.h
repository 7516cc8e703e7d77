#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QTemporaryFile>
#include <QTimer>

#include <deque>
#include <functional>

/// Runs scripts in KWin, which is the way in which it lets programs ask about windows. One at a
/// time, in their order.
class KWinScript : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.example.brenvale.SnapWorkbench.Script")
public:
    /// `bus` is the one that KWin is on.
    explicit KWinScript(const QDBusConnection &bus);
    ~KWinScript() override;

    /// `answer` is called once, from the event loop, with what the script calls `tell` with, a
    /// text; empty if nothing has come within a second.
    void run(const QString &text, std::function<void(const QString &)> answer);

public slots:
    /// What the scripts call. `password` keeps other programs from saying anything.
    void Tell(const QString &password, int attempt, const QString &text);

private:
    struct Job {
        QString text{};
        std::function<void(const QString &)> answer{};
    };
    void begin();
    void load();
    void tryAgain();
    void unload();
    void call(const QString &pathPattern, int number);
    void finish(const QString &text);

    QDBusConnection m_bus;
    QString m_plugin;    // what the script is called in KWin
    int m_tries = 0;     // so far, of all jobs
    int m_firstTry = 1;  // of the job that is under way
    QString m_password;
    QTemporaryFile m_file;
    std::deque<Job> m_jobs;  // the first one is under way
    QTimer m_limit;
};
