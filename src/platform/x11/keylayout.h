#pragma once

#include <QList>
#include <QMap>

#include <cstdint>

/// Which key types which letter in each of the keyboard's layouts.
///
/// The layout that is active decides. A letter that it lacks is taken from another configured
/// layout that has it, or else from its position on a US keyboard, so that users of, for example,
/// Greek or Russian layouts can use the hot keys. No key stands for two letters in one layout.
class KeyLayout
{
public:
    using Group = QMap<uint8_t, char>;  ///< the capital letter of each key that types one

    KeyLayout() = default;
    explicit KeyLayout(const QList<Group> &groups);

    /// The letter of a key; 0 if it has none.
    char letterOf(uint8_t key, int group) const { return m_groups.value(group).value(key); }
    /// The keys that stand for a letter in any layout.
    QList<uint8_t> keysOf(char letter) const;

private:
    QList<Group> m_groups;
};
