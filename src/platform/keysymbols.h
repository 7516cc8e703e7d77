#pragma once

#include <QString>

#include <cstdint>

// Keys of the toolkit and the symbols that keyboards, compositors and portals have for them.

/// The symbol that a key types by itself; 0 for a key that has none.
uint32_t keySymbolOf(int key);
/// The key that has a symbol; 0 for none. Both cases of a letter are one key.
int keyOfSymbol(uint32_t symbol);
/// The symbol's name, as configurations have it: "r", "F9", "Print". Empty for a key without one.
QString keySymbolName(int key);
