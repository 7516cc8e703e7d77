#pragma once

#include <QString>

/// The folder of the user's private files, with a trailing separator. Its name contains the
/// application's name, so ReadProfile must have been called.
QString userDataFolder();

/// Makes sure that the user has a usable private copy of the resource file, and stores its path in
/// g_ResourceFileName. The data folder must exist, and the XML store must be empty. Returns whether
/// the program may continue; if not, resourceFileProblem() has the reason. `message` is not used.
///
/// Three files work together, so that a damaged file can't stop the program for good: the resource
/// file, a backup of the last version that could be read or was saved, and a marker that exists
/// while the file is being checked. If the resource file can't be read, the process ends at once
/// and the marker stays. The next start then moves the damaged file aside and installs the backup,
/// or else the shipped file. At every moment at least one of resource file and backup is complete.
/// A folder that has the name of one of the three files is moved aside.
///
/// A resource file of an older version is replaced by the shipped one with the user's settings and
/// changed sections. The old file is kept beside it under its version.
bool ProcessResourceFile(const QString &message);

struct ResourceFileProblem {
    /// The file that could not be written, or the shipped file if that can't be read.
    QString path{};
    QString reason{};  ///< in the system's words; empty if the shipped file can't be read
};
ResourceFileProblem resourceFileProblem();

/// Writes the changed resource file and then the backup. Returns an empty text if everything is on
/// the disk, else the reason in the system's words; the change is then still to be written.
QString SaveResourceFile();

/// Whether `userXml` doesn't exist or has a smaller number in this attribute than `shippedXml`; a
/// value that is no number counts as 0. `element` is a path of tags. Both files stay in the XML
/// store. A file that can't be read ends the process.
bool XmlIsOld(const QString &shippedXml, const QString &userXml, const QString &element,
              const QString &attribute);

/// The marker is an empty file in the data folder.
void CreateExceptionFile();
void DeleteExceptionFile();
