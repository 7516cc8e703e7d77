#pragma once

#include "platform/wayland/kwinscript.h"
#include "platform/wayland/waylandwindows.h"

#include <QHash>

/// The windows as a script in KWin lists them, and their pictures by KWin's service for that.
class KWinWindows : public WaylandWindows
{
    Q_OBJECT
public:
    /// `bus` is the one that KWin is on.
    KWinWindows(std::shared_ptr<WaylandConnection> connection, const QDBusConnection &bus)
        : WaylandWindows(std::move(connection)), m_bus(bus), m_script(bus)
    {
    }

    bool areKnown() const override { return true; }
    bool havePictures() const override { return m_hasPictures; }
    QImage pictureOf(int number) override;

    /// The windows in what the script says, front to back, each with the number that `numberOf`
    /// gives to KWin's own name for it. Empty if that is nothing of the script's.
    static QList<WaylandWindow> parse(const QByteArray &json,
                                      const std::function<int(const QString &id)> &numberOf);

protected:
    void ask(Answer answer) override;
    void focus(const WaylandWindow &window, const QList<WaylandWindow> &all) override;

private:
    int numberOf(const QString &id);

    QDBusConnection m_bus;
    KWinScript m_script;
    QList<Answer> m_answers;        // that are owed
    bool m_hasPictures = true;      // as far as has been seen
    QHash<QString, int> m_numbers;  // of KWin's names, as long as the program runs
};
