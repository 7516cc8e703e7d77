#pragma once

#include "testdesktop.h"

#include <QDBusMessage>
#include <QMap>
#include <QVariantList>

/// The program under test on a test desktop, in the desktop's home folder.
class SnapWorkbench
{
public:
    explicit SnapWorkbench(TestDesktop &desktop) : m_desktop(desktop) {}
    ~SnapWorkbench();
    SnapWorkbench(const SnapWorkbench &) = delete;
    SnapWorkbench &operator=(const SnapWorkbench &) = delete;

    static QString program();
    static QString shippedFile();
    QString dataFolder() const;
    QString resourceFile() const { return dataFolder() + QStringLiteral("/SnapWorkbench.xml"); }
    QString backupFile() const { return dataFolder() + QStringLiteral("/SnapWorkbench.~xml"); }
    QString markerFile() const { return dataFolder() + QStringLiteral("/Exceptionfile.rtf"); }

    /// Writes a private resource file: the shipped one with these settings. Before start().
    void writeSettings(const QMap<QString, QString> &settings) const;
    /// A setting as a resource file has it, the private one if none is given.
    QString setting(const QString &key, const QString &path = {}) const;

    /// Starts the program; null when it could not be started. Does not wait for its window.
    QProcess *start(const QMap<QString, QString> &variables = {});
    /// Starts it and waits for its window, minimised or not.
    bool startAndWait(const QMap<QString, QString> &variables = {});
    bool waitForTitle(const QString &title, int limit = 20000);
    /// Presses Return in a file dialog until the main window has the title: a list of completions
    /// may take the first press for itself.
    bool confirm(const QString &title);
    /// The main window; no id while there is none.
    TestDesktop::Window mainWindow();
    /// Closes the main window as its frame's button would, and waits for the end of the process.
    bool quit();
    QProcess *process() const { return m_process; }

    /// Calls a method of the program over the session bus, and waits for the answer.
    QDBusMessage call(const QString &interface, const QString &method,
                      const QVariantList &arguments, int limit = 20000);
    /// What the program tells on the session bus that its grab is at; empty while it tells nothing.
    QString grabState();
    bool waitForState(const QString &state, int limit = 20000);

    /// Presses the hot key of an overlay, the rectangle's if none is told, and waits for the
    /// overlay, which covers `area`.
    bool openOverlay(const QRect &area, xcb_keysym_t hotKey = 'r');
    bool hasOverlay(const QRect &area);

    /// Saves the current picture through the save dialog, and reads the file back.
    QImage saveAs(const QString &path);

private:
    TestDesktop &m_desktop;
    QProcess *m_process = nullptr;
};
