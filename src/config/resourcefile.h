#pragma once

#include <QString>

/// Where the user's private files lie, with a trailing separator. Needs the application's name, so
/// ReadProfile comes first.
QString userDataFolder();

/// Makes sure that the user has a usable private copy of the resource file, and puts its path into
/// g_ResourceFileName. The data folder must exist, and the XML store be empty. Returns true when
/// the program may go on, else resourceFileProblem() tells why not; `message` is not used.
///
/// Three files work together, so that a damaged one can't stop the program for good: the resource
/// file, a backup of the last one that proved good or was saved, and a marker that stands while the
/// file is being proved. A file that can't be read ends the process at once, the marker stays, and
/// the next start sets that file aside and puts the backup, or else the shipped file, in its place.
/// At every moment one of the two is whole. A folder that stands in the way of one of the three is
/// moved aside.
///
/// An older file gives its settings, and what the user changed of its other sections, to the newer
/// shipped one, and is kept beside it under its version.
bool ProcessResourceFile(const QString &message);

struct ResourceFileProblem {
    QString
        path{};  ///< the file that could not be written; the shipped one when that can't be read
    QString reason{};  ///< in the system's words; empty for the shipped file
};
ResourceFileProblem resourceFileProblem();

/// Writes what has changed in the resource file, and then the backup. Empty when all of it is on
/// the disk; else why not, in the system's words, and it stays to be written.
QString SaveResourceFile();

/// True when `userXml` doesn't exist or has a smaller number in that attribute than `shippedXml`;
/// what is no number counts as 0. `element` is a path of tags. Both files stay in the XML store;
/// one that can't be read ends the process.
bool XmlIsOld(const QString &shippedXml, const QString &userXml, const QString &element,
              const QString &attribute);

/// The marker: an empty file in the data folder.
void CreateExceptionFile();
void DeleteExceptionFile();
