#pragma once

#include "platform/loginitem.h"

#include <QString>

/// The login item as a desktop entry in the user's autostart folder.
class Autostart : public LoginItem
{
public:
    bool contains() const override;
    void insert() override;
    void remove() override;

private:
    static QString entryPath();
    static QByteArray execLine();
};
