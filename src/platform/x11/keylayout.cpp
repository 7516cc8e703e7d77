#include "platform/x11/keylayout.h"

#include <array>
#include <string_view>

namespace {

struct KeyRow {
    uint8_t first;
    std::string_view letters;
};

constexpr std::array<KeyRow, 3> s_usKeyboard{
    {{24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}}};

uint8_t usKey(char letter)
{
    for (const KeyRow &row : s_usKeyboard) {
        const size_t position = row.letters.find(letter);
        if (position != std::string_view::npos)
            return static_cast<uint8_t>(row.first + position);
    }
    return 0;
}

QList<uint8_t> keysElsewhere(const QList<KeyLayout::Group> &groups, char letter)
{
    for (const KeyLayout::Group &group : groups) {
        QList<uint8_t> keys = group.keys(letter);
        if (!keys.isEmpty())
            return keys;
    }
    return {usKey(letter)};
}

}  // namespace

KeyLayout::KeyLayout(const QList<Group> &groups) : m_groups(groups)
{
    for (Group &group : m_groups) {
        const QList<char> own = group.values();
        for (char letter = 'A'; letter <= 'Z'; ++letter) {
            if (own.contains(letter))
                continue;
            for (const uint8_t key : keysElsewhere(groups, letter)) {
                if (!group.contains(key))
                    group.insert(key, letter);
            }
        }
    }
}

QList<uint8_t> KeyLayout::keysOf(char letter) const
{
    QList<uint8_t> result;
    for (const Group &group : m_groups) {
        for (const uint8_t key : group.keys(letter)) {
            if (!result.contains(key))
                result.append(key);
        }
    }
    return result;
}
