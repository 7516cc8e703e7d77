#pragma once

#include <QDeadlineTimer>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <vector>

/// What every desktop of a test has, with X or without: a home folder and a session bus of its own,
/// and an environment without a trace of the desktop that the test runs on. Everything it started
/// ends with it, or with the test, however that ends.
class PrivateSession
{
public:
    PrivateSession(const PrivateSession &) = delete;
    PrivateSession &operator=(const PrivateSession &) = delete;

    /// Where root runs the test, makes it a plain user's for the rest of its life: some programs
    /// refuse root. What that user can't reach of the build, folders that end with "/." whole, is
    /// copied for it.
    static void becomePlainUser(const QStringList &needed);
    /// Where a file of the build lies for the user that the test runs as.
    static QString built(const QString &path);

    bool isReady() const { return m_ready; }
    const QProcessEnvironment &environment() const { return m_environment; }
    QString home() const { return m_home.path(); }

    /// Starts a program on this desktop; owned by it. What it says on standard error goes to
    /// `errors`, or nowhere.
    QProcess *start(const QString &program, const QStringList &arguments,
                    const QProcessEnvironment &environment,
                    const QString &errors = QProcess::nullDevice());
    /// Runs one to its end, which must be a good one.
    bool run(const QString &program, const QStringList &arguments);
    /// The picture that a Wayland program pastes; null for none.
    QImage pasted() const;
    /// Ends the session bus, as a crash of it would.
    void endBus();

protected:
    PrivateSession();
    ~PrivateSession();
    bool startBus();

    QProcessEnvironment m_environment;
    bool m_ready = false;

private:
    QTemporaryDir m_home;
    std::vector<std::unique_ptr<QProcess>> m_processes;
    QProcess *m_bus = nullptr;
};

/// Waits, with events running, until `condition` holds. False when it did not within the limit,
/// which is generous: a loaded machine is slow, and a wait that succeeds takes no longer for it.
bool waitFor(const std::function<bool()> &condition, int limit = 20000);

/// Drags on a desktop, in steps. What counts is what `arrived` says before the button is let go.
template<typename Desktop, typename Point>
bool dragOn(Desktop &desktop, Point from, Point to, const std::function<bool()> &arrived)
{
    constexpr int steps = 8;
    desktop.movePointer(from);
    desktop.press();
    for (int step = 1; step <= steps; ++step)
        desktop.movePointer(from + (to - from) * step / steps);
    // A hand rests before it lets go.
    const bool shown = waitFor(arrived);
    desktop.release();
    return shown;
}
