#pragma once

#include "platform/hotkeys.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QStringList>

/// Combinations as a service of KWin's hears them. The user finds and changes them in the desktop's
/// settings, where they are remembered.
class KWinHotKeys : public QObject, public HotKeys
{
    Q_OBJECT
public:
    /// Whether that service is on that bus.
    static bool isThere(const QDBusConnection &bus);

    explicit KWinHotKeys(QDBusConnection bus);
    ~KWinHotKeys() override;

    void setHandler(std::function<void(int)> handler) override { m_handler = std::move(handler); }
    void setNames(const std::function<Name(int number)> &nameOf) override { m_nameOf = nameOf; }
    void add(int number, QKeyCombination keys) override;
    void change(int number, QKeyCombination keys) override;
    void remove(int number) override;
    QString keysOf(int number) const override { return m_keys.value(number).text; }
    void setChangeHandler(const std::function<void()> &changed) override { m_changed = changed; }

    /// A sequence of keys as the service writes it: up to four, each a key of the toolkit with its
    /// modifiers.
    struct Sequence {
        QList<int> keys{};
    };

private slots:
    void pressed(const QString &component, const QString &id, qlonglong time);
    void changed(const QStringList &name, const QList<KWinHotKeys::Sequence> &keys);

private:
    struct Key {
        QStringList name{};  ///< of program and combination, each for programs and for people
        QString text{};      ///< the keys as they are shown; empty if another program has them
    };
    void set(int number, QKeyCombination keys, uint how);
    void release(const Key &key);

    QDBusConnection m_bus;
    std::function<void(int)> m_handler;
    std::function<Name(int)> m_nameOf;
    std::function<void()> m_changed;
    QHash<int, Key> m_keys;  // of all that are registered
};
