#pragma once

#include <QByteArray>
#include <QDomDocument>
#include <QString>

/// The path of the resource file that was shipped with version `version`, from 1 on. These files
/// are compiled into the program.
QString shippedInVersion(int version);

/// Merges the user's older resource file into the shipped one: takes all of the user's settings,
/// and those other sections that differ from what was shipped in the older version.
QByteArray upgraded(const QDomDocument &user, const QDomDocument &shipped);
