#include "platform/hotkeys.h"

#include "platform/services.h"

#include <QKeySequence>

#include <algorithm>
#include <array>

namespace {

struct Combination {
    int number;
    char letter;
};

// A reader would expect the letters that the menus display. But V, which they display for showing
// the window, captures a menu, and M, displayed for that, is not registered. Both are so on
// purpose.
constexpr std::array<Combination, 8> s_combinations{
    {{1, 'R'}, {2, 'E'}, {3, 'A'}, {4, 'L'}, {5, 'W'}, {6, 'S'}, {7, 'T'}, {8, 'V'}}};

}  // namespace

char hotKeyLetter(int number)
{
    const auto *const found =
        std::find_if(s_combinations.begin(), s_combinations.end(),
                     [number](const Combination &other) { return other.number == number; });
    return found == s_combinations.end() ? '\0' : found->letter;
}

QString HotKeys::keysOf(int number) const
{
    const char letter = hotKeyLetter(number);
    return letter ? QKeySequence(Qt::CTRL | Qt::ALT | static_cast<Qt::Key>(letter))
                        .toString(QKeySequence::NativeText)
                  : QString();
}

void initHotKey(long (*callback)(long, long))
{
    services().hotKeys->setHandler([callback](int number) {
        if (callback)
            callback(number, 0);
    });
    for (const Combination &combination : s_combinations)
        services().hotKeys->add(combination.number, combination.letter);
}

void freeHotKey()
{
    for (const Combination &combination : s_combinations)
        services().hotKeys->remove(combination.number);
    services().hotKeys->setHandler({});
}
