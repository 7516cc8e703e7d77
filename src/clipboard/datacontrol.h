#pragma once

#include <QByteArray>

/// Keeps content as the clipboard of a Wayland compositor, over a connection of its own: a program
/// without a window gets none through the toolkit. Returns once another program has copied
/// something or the compositor is gone. False, and at once, where there is no compositor, or one
/// that lets no program do this.
bool keepInCompositor(const QByteArray &content, const QByteArray &type);
