#pragma once

#include "privatesession.h"

#include <QDBusMessage>
#include <QMap>
#include <QVariantList>

/// The program under test on a desktop of the test, in that one's home folder, as far as no window
/// is looked at.
class SnapProgram
{
public:
    explicit SnapProgram(PrivateSession &session) : m_session(session) {}
    ~SnapProgram();
    SnapProgram(const SnapProgram &) = delete;
    SnapProgram &operator=(const SnapProgram &) = delete;

    static QString program();
    static QString shippedFile();
    QString dataFolder() const;
    QString resourceFile() const { return dataFolder() + QStringLiteral("/SnapWorkbench.xml"); }
    QString markerFile() const { return dataFolder() + QStringLiteral("/Exceptionfile.rtf"); }

    /// Writes a private resource file: the shipped one with these settings, and with these files in
    /// the place of the skin's pictures of that name. Before start().
    void writeSettings(const QMap<QString, QString> &settings,
                       const QMap<QString, QString> &pictures = {}) const;
    /// A setting as the private resource file has it.
    QString setting(const QString &key) const;

    /// Starts the program; null when it could not be started. Does not wait for its window.
    QProcess *start(const QMap<QString, QString> &variables = {});
    QProcess *process() const { return m_process; }

    /// Calls a method of the program over the session bus, and waits for the answer.
    QDBusMessage call(const QString &interface, const QString &method,
                      const QVariantList &arguments, int limit = 20000);
    /// Calls one of its actions, as a key of the desktop would. False where it refuses.
    bool activate(const QString &action);
    /// What the program tells on the session bus that its grab is at; empty while it tells nothing.
    QString grabState();
    bool waitForState(const QString &state, int limit = 20000);

private:
    PrivateSession &m_session;
    QProcess *m_process = nullptr;
};
