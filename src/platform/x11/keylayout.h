#pragma once

#include <QList>
#include <QMap>

#include <cstdint>

/// Which key stands for which letter in each of the keyboard's layouts.
///
/// What a key types in the layout in force counts. A letter that this layout lacks is looked for
/// where another configured layout has it, and, if none has, where it is on a US keyboard: who
/// writes Greek or Russian goes on using the hot keys. No key stands for two letters in one layout.
class KeyLayout
{
public:
    using Group = QMap<uint8_t, char>;  ///< the capital letter of each key that types one

    KeyLayout() = default;
    explicit KeyLayout(const QList<Group> &groups);

    /// 0 for a key that stands for no letter.
    char letterOf(uint8_t key, int group) const { return m_groups.value(group).value(key); }
    /// The keys that stand for a letter in some layout.
    QList<uint8_t> keysOf(char letter) const;

private:
    QList<Group> m_groups;
};
