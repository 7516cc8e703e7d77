#pragma once

#include "platform/hotkeys.h"

#include <QHash>
#include <QObject>
#include <QStringList>

/// Combinations as a service of KWin's hears them. The user finds and changes them in the desktop's
/// settings, where they are remembered.
class KWinHotKeys : public QObject, public HotKeys
{
    Q_OBJECT
public:
    /// Whether that service is on the session bus.
    static bool isThere();

    KWinHotKeys();
    ~KWinHotKeys() override;

    void setHandler(std::function<void(int)> handler) override { m_handler = std::move(handler); }
    void setNames(const std::function<Name(int number)> &nameOf) override { m_nameOf = nameOf; }
    void add(int number, char letter) override;
    void remove(int number) override;
    QString keysOf(int number) const override { return m_keys.value(number); }

    /// A sequence of keys as the service writes it: up to four, each a key of the toolkit with its
    /// modifiers.
    struct Sequence {
        QList<int> keys{};
    };

private slots:
    void pressed(const QString &component, const QString &id, qlonglong time);
    void changed(const QStringList &name, const QList<KWinHotKeys::Sequence> &keys);

private:
    /// What names it there: the program and the combination, each for programs and for people.
    QStringList nameOf(int number) const;

    std::function<void(int)> m_handler;
    std::function<Name(int)> m_nameOf;
    QHash<int, QString> m_keys;  // of all that are registered; empty for one that is taken
};
