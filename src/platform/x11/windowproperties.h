#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>

/// What a window says of itself: any program can say anything there.
struct WindowProperty {
    uint32_t type = 0;
    int format = 0;  ///< bits of an item; 0 where there is no such property
    QByteArray bytes{};
};

/// Items of 32 bits; none of a property of another format.
QList<uint32_t> valuesOf(const WindowProperty &property);

/// The title: what `_NET_WM_NAME` tells or else `WM_NAME`, whose type may be `utf8`.
QString windowName(const WindowProperty &netName, const WindowProperty &name, uint32_t utf8);

/// The class out of `WM_CLASS`.
QString windowClass(const WindowProperty &property);
