#pragma once

#include "platform/wayland/waylandwindows.h"

#include <QByteArray>

/// The windows in what sway says of its tree, front to back, with sway's own numbers. Empty if that
/// is no tree.
QList<WaylandWindow> readSwayTree(const QByteArray &json);
