#include "platform/keysymbols.h"

#include <QChar>
#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <string_view>

#include <xkbcommon/xkbcommon.h>

namespace {

struct KeySymbol {
    int key;
    uint32_t symbol;
};

// The first symbol of a key is the one that is asked for; the others are heard as the same key.
constexpr auto s_symbols = std::to_array<KeySymbol>({
    {Qt::Key_Print, XKB_KEY_Print},
    {Qt::Key_Print, XKB_KEY_Sys_Req},
    {Qt::Key_Pause, XKB_KEY_Pause},
    {Qt::Key_Pause, XKB_KEY_Break},
    {Qt::Key_ScrollLock, XKB_KEY_Scroll_Lock},
    {Qt::Key_Insert, XKB_KEY_Insert},
    {Qt::Key_Delete, XKB_KEY_Delete},
    {Qt::Key_Home, XKB_KEY_Home},
    {Qt::Key_End, XKB_KEY_End},
    {Qt::Key_PageUp, XKB_KEY_Prior},
    {Qt::Key_PageDown, XKB_KEY_Next},
    {Qt::Key_Left, XKB_KEY_Left},
    {Qt::Key_Right, XKB_KEY_Right},
    {Qt::Key_Up, XKB_KEY_Up},
    {Qt::Key_Down, XKB_KEY_Down},
    {Qt::Key_Escape, XKB_KEY_Escape},
    {Qt::Key_Return, XKB_KEY_Return},
    {Qt::Key_Enter, XKB_KEY_KP_Enter},
    {Qt::Key_Tab, XKB_KEY_Tab},
    {Qt::Key_Tab, XKB_KEY_ISO_Left_Tab},
    {Qt::Key_Backspace, XKB_KEY_BackSpace},
    {Qt::Key_Menu, XKB_KEY_Menu},
    {Qt::Key_Help, XKB_KEY_Help},
    {Qt::Key_Calculator, XKB_KEY_XF86Calculator},
    {Qt::Key_Launch1, XKB_KEY_XF86Launch1},
    {Qt::Key_Launch2, XKB_KEY_XF86Launch2},
    {Qt::Key_Launch3, XKB_KEY_XF86Launch3},
    {Qt::Key_Launch4, XKB_KEY_XF86Launch4},
});

struct KeyRow {
    uint8_t first;
    std::string_view letters;
};

constexpr std::array<KeyRow, 3> s_usKeyboard{
    {{24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}}};

// Keys below this are characters, in capitals.
constexpr int s_firstNamed = 0x01000000;

}  // namespace

uint32_t keySymbolOf(int key)
{
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return XKB_KEY_F1 + static_cast<uint32_t>(key - Qt::Key_F1);
    const auto *const found =
        std::find_if(s_symbols.begin(), s_symbols.end(),
                     [key](const KeySymbol &symbol) { return symbol.key == key; });
    if (found != s_symbols.end())
        return found->symbol;
    return key > 0 && key < s_firstNamed
               ? xkb_utf32_to_keysym(QChar::toLower(static_cast<char32_t>(key)))
               : XKB_KEY_NoSymbol;
}

int keyOfSymbol(uint32_t symbol)
{
    if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F35)
        return Qt::Key_F1 + static_cast<int>(symbol - XKB_KEY_F1);
    const auto *const found =
        std::find_if(s_symbols.begin(), s_symbols.end(),
                     [symbol](const KeySymbol &known) { return known.symbol == symbol; });
    if (found != s_symbols.end())
        return found->key;
    // The pad's keys are none of their own.
    if (symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal)
        return 0;
    constexpr char32_t firstVisible = 0x20;
    const char32_t character = xkb_keysym_to_utf32(symbol);
    return character >= firstVisible ? static_cast<int>(QChar::toUpper(character)) : 0;
}

QString keySymbolName(int key)
{
    std::array<char, 64> name{};
    const uint32_t symbol = keySymbolOf(key);
    if (symbol == XKB_KEY_NoSymbol || xkb_keysym_get_name(symbol, name.data(), name.size()) <= 0)
        return {};
    return QString::fromLatin1(name.data());
}

uint8_t usKeyOf(char letter)
{
    for (const KeyRow &row : s_usKeyboard) {
        const size_t position = row.letters.find(letter);
        if (position != std::string_view::npos)
            return static_cast<uint8_t>(row.first + position);
    }
    return 0;
}

// A layout of Latin letters has all of them, at places of its own.
int commandKey(const QKeyEvent &event)
{
    const int key = event.key();
    const QChar::Script script =
        key > 0 && key < s_firstNamed ? QChar::script(key) : QChar::Script_Common;
    if (script == QChar::Script_Latin || script == QChar::Script_Common)
        return key;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        if (usKeyOf(letter) == event.nativeScanCode())
            return letter;
    }
    return key;
}
