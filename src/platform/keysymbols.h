#pragma once

#include <QString>

#include <cstdint>

class QKeyEvent;

// Keys of the toolkit and the symbols that keyboards, compositors and portals have for them.

/// The symbol that a key types by itself; 0 for a key that has none.
uint32_t keySymbolOf(int key);
/// The key that has a symbol; 0 for none. Both cases of a letter are one key.
int keyOfSymbol(uint32_t symbol);
/// The symbol's name, as configurations have it: "r", "F9", "Print". Empty for a key without one.
QString keySymbolName(int key);

/// The number of a Latin capital's key on a US keyboard, as the servers and compositors number
/// keys.
uint8_t usKeyOf(char letter);
/// The key that a press stands for where keys are commands: in a layout of another script, such as
/// Greek or Russian, the letter at its place on a US keyboard.
int commandKey(const QKeyEvent &event);
