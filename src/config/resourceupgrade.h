#pragma once

#include <QByteArray>
#include <QDomDocument>
#include <QString>

/// The resource file as it was shipped in a version of its own, from 1 on; kept in the program.
QString shippedInVersion(int version);

/// The shipped resource file with what the user's older one holds: all settings, and of the rest
/// each section that is not as it was shipped in the older one's version.
QByteArray upgraded(const QDomDocument &user, const QDomDocument &shipped);
