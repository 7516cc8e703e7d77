#pragma once

#include "privatesession.h"

#include <QDBusConnection>
#include <QImage>
#include <QPointF>
#include <QRect>

struct org_kde_kwin_fake_input;
struct wl_display;
class KWinScript;

/// A Wayland desktop of the test's own: KWin, without a screen, with its checks of who may do what.
/// Places and sizes are KWin's, which are logical, in the layout of all outputs.
class KWinDesktop : public PrivateSession
{
public:
    struct Options {
        int scale = 1;
        int outputs = 1;             ///< side by side, 1200 x 800 each: Virtual-0, Virtual-1
        bool isProgramKnown = true;  ///< an entry lets the program under test take pictures
    };

    /// Why there can be no such desktop; empty where there can. To be asked before the first one.
    static QString lack();
    explicit KWinDesktop(const Options &options);
    ~KWinDesktop();

    /// Installs an entry that lets the program under test take pictures. KWin takes its time to see
    /// it.
    void allowProgram() const;

    /// What KWin has said on standard error.
    QString said() const;

    struct Window {
        QString title{};
        qint64 pid = 0;
        QRect area{};
        bool isActive = false;
        bool isFullscreen = false;
    };
    QList<Window> windows();
    bool has(const std::function<bool(const Window &)> &isIt);
    /// Whether a window with that title has the focus.
    bool isActive(const QString &title);
    /// Gives a window the focus.
    bool activate(const QString &title);

    /// Starts the pattern program with its window at `area`, and waits until that shows the
    /// pattern. Null when it never did.
    QProcess *startPattern(const QRect &area);
    /// The same for the program with a long picture, without a look at it.
    QProcess *startLong(const QRect &area, int rows);

    // The pointer and the keyboard.
    void movePointer(QPointF to);
    void press() { sendButton(true); }
    void release() { sendButton(false); }
    void click(QPointF at);
    /// Presses at `from`, moves in steps, and releases at `to` once `arrived` holds.
    bool drag(QPointF from, QPointF to, const std::function<bool()> &arrived);
    /// Presses and releases a key with its modifiers, by the kernel's numbers.
    void key(uint32_t code, const QList<uint32_t> &modifiers = {});

    QDBusConnection bus() const { return QDBusConnection(m_busName); }
    /// What an output shows, in its own pixels.
    QImage picture(const QString &output = QStringLiteral("Virtual-0")) const;

private:
    bool startKWin(const Options &options);
    bool connectInput();
    void writeEntry(const QString &name, const QString &program) const;
    QString ask(const QString &script);
    QProcess *startAt(const QString &program, const QString &title, const QStringList &arguments,
                      const QRect &area);
    void sendButton(bool isDown);
    void sync();

    int m_scale;
    QString m_busName;
    QProcess *m_kwin = nullptr;
    wl_display *m_display = nullptr;
    org_kde_kwin_fake_input *m_input = nullptr;
    std::unique_ptr<KWinScript> m_script;
};
