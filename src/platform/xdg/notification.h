#pragma once

#include <QString>

/// Shows a message of the desktop's, from a program that has no window and no icon in the tray.
/// Waits for the desktop two seconds at the most; nothing where it shows none.
void showNotification(const QString &title, const QString &text);
