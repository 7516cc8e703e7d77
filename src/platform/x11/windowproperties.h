#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>

/// A property of a window. Any program can write anything into it.
struct WindowProperty {
    uint32_t type = 0;
    int format = 0;  ///< bits of an item; 0 if there is no such property
    QByteArray bytes{};
};

/// The property's 32-bit items; empty for a property of another format.
QList<uint32_t> valuesOf(const WindowProperty &property);

/// The title: `_NET_WM_NAME`, or else `WM_NAME`. `utf8` is the atom of the type UTF8_STRING, which
/// `WM_NAME` may have.
QString windowName(const WindowProperty &netName, const WindowProperty &name, uint32_t utf8);

/// The class from `WM_CLASS`.
QString windowClass(const WindowProperty &property);
