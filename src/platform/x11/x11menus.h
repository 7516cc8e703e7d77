#pragma once

#include "platform/x11/x11display.h"

#include <QList>

#include <cstdint>

/// Whether one of a window's types is a menu's.
bool isMenuType(X11Display &display, const QList<uint32_t> &types);

/// How many menus are open on the desktop, of any program.
///
/// A screen locker holds the keyboard as a menu does, and nobody can ask who it is, nor do all of
/// them tell the desktop. But a locker shows no menus: a window counts that says of itself that it
/// is one, or that nobody manages and the program with the focus has made, for some toolkits say
/// nothing. What lies behind a window that fills a screen doesn't count, since a locker may have
/// covered it.
int openMenus(X11Display &display);
