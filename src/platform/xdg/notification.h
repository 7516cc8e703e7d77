#pragma once

#include <QString>

/// Shows a desktop notification, for a program that has neither a window nor a tray icon. Waits for
/// the desktop for two seconds at most. Does nothing if the desktop shows no notifications.
void showNotification(const QString &title, const QString &text);
