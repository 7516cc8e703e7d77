#include "platform/x11/keylayout.h"

#include "platform/keysymbols.h"

namespace {

QList<uint8_t> keysElsewhere(const QList<KeyLayout::Group> &groups, char letter)
{
    for (const KeyLayout::Group &group : groups) {
        QList<uint8_t> keys = group.keys(letter);
        if (!keys.isEmpty())
            return keys;
    }
    return {usKeyOf(letter)};
}

bool isLetter(int key) { return key >= 'A' && key <= 'Z'; }

}  // namespace

// What is no Latin letter makes room for one that would have no key.
KeyLayout::KeyLayout(const QList<Group> &groups, const QList<Group> &shifted)
    : m_groups(groups), m_shifted(shifted)
{
    for (Group &group : m_groups) {
        const QList<int> own = group.values();
        for (char letter = 'A'; letter <= 'Z'; ++letter) {
            if (own.contains(letter))
                continue;
            for (const uint8_t key : keysElsewhere(groups, letter)) {
                if (!isLetter(group.value(key)))
                    group.insert(key, letter);
            }
        }
    }
}

bool KeyLayout::isKey(uint8_t code, int group, int key) const
{
    return m_groups.value(group).value(code) == key ||
           (!isLetter(key) && m_shifted.value(group).value(code) == key);
}

QList<uint8_t> KeyLayout::keysOf(int key) const
{
    for (const QList<Group> &groups : {m_groups, m_shifted}) {
        QList<uint8_t> result;
        for (const Group &group : groups) {
            for (const uint8_t code : group.keys(key)) {
                if (!result.contains(code))
                    result.append(code);
            }
        }
        if (!result.isEmpty())
            return result;
    }
    return {};
}
