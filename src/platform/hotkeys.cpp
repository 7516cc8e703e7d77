#include "platform/hotkeys.h"

#include "config/settings.h"
#include "platform/services.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

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

struct Offered {
    int number;
    QKeyCombination keys;
};

// Off until the user switches them on, for desktops have these keys themselves. Number 9 is a
// command that no key reaches, and 10 is none, on purpose.
constexpr std::array<Offered, 5> s_offered{
    {{11, QKeyCombination(Qt::Key_Print)},
     {12, QKeyCombination(Qt::ShiftModifier, Qt::Key_Print)},
     {13, QKeyCombination(Qt::AltModifier, Qt::Key_Print)},
     {14, QKeyCombination(Qt::ControlModifier, Qt::Key_Print)},
     {15, QKeyCombination(Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Print)}}};

QString keyOf(int number) { return u"HotKey.%1"_s.arg(number); }

std::function<void(int)> s_catcher;

}  // namespace

char hotKeyLetter(int number)
{
    const auto *const found =
        std::find_if(s_combinations.begin(), s_combinations.end(),
                     [number](const Combination &other) { return other.number == number; });
    return found == s_combinations.end() ? '\0' : found->letter;
}

QList<int> hotKeyNumbers()
{
    QList<int> numbers;
    for (const Combination &combination : s_combinations)
        numbers.append(combination.number);
    for (const Offered &offered : s_offered)
        numbers.append(offered.number);
    return numbers;
}

QKeySequence defaultHotKey(int number)
{
    const char letter = hotKeyLetter(number);
    return letter ? QKeySequence(Qt::CTRL | Qt::ALT | static_cast<Qt::Key>(letter))
                  : QKeySequence();
}

QKeySequence offeredHotKey(int number)
{
    const auto *const found =
        std::find_if(s_offered.begin(), s_offered.end(),
                     [number](const Offered &other) { return other.number == number; });
    return found == s_offered.end() ? QKeySequence() : QKeySequence(found->keys);
}

QKeySequence hotKeyOf(int number)
{
    const std::optional<QString> stored = FindConfigString(keyOf(number));
    if (!stored)
        return defaultHotKey(number);
    // A file that somebody has edited.
    const QKeySequence keys = QKeySequence::fromString(*stored, QKeySequence::PortableText);
    const bool isKey = keys.count() == 1 && keys[0].key() != Qt::Key_unknown;
    return isKey || stored->isEmpty() ? keys : defaultHotKey(number);
}

bool isHotKeyChanged(int number) { return hotKeyOf(number) != defaultHotKey(number); }

void setHotKey(int number, const QKeySequence &keys)
{
    SetConfigString(keyOf(number),
                    keys.isEmpty() ? u""_s
                                   : QKeySequence(keys[0]).toString(QKeySequence::PortableText));
    if (keys.isEmpty())
        services().hotKeys->remove(number);
    else
        services().hotKeys->change(number, keys[0]);
}

QString HotKeys::keysOf(int number) const
{
    return hotKeyOf(number).toString(QKeySequence::NativeText);
}

HotKeys::State HotKeys::stateOf(int number) const
{
    const QKeySequence wanted = hotKeyOf(number);
    const QString keys = keysOf(number);
    if (wanted.isEmpty())
        return State::None;
    if (keys.isEmpty())
        return State::Taken;
    return keys == wanted.toString(QKeySequence::NativeText) ? State::Active : State::Changed;
}

void initHotKey(long (*callback)(long, long))
{
    services().hotKeys->setHandler([callback](int number) {
        if (s_catcher)
            s_catcher(number);
        else if (callback)
            callback(number, 0);
    });
    for (const int number : hotKeyNumbers()) {
        if (const QKeySequence keys = hotKeyOf(number); !keys.isEmpty())
            services().hotKeys->add(number, keys[0]);
    }
}

void freeHotKey()
{
    for (const int number : hotKeyNumbers())
        services().hotKeys->remove(number);
    services().hotKeys->setHandler({});
}

void catchHotKeys(std::function<void(int number)> hears) { s_catcher = std::move(hears); }
