#pragma once

#include "base/boundedtext.h"

#include <QString>

#include <functional>

class QObject;

/// Settings, texts and skin attributes: all of them in the tree of the file g_ResourceFileName,
/// which is kept in memory and reaches the disk with SaveResourceFile. A text or a section that it
/// lacks altogether is taken from the shipped file.
///
/// Keys and sections may have white space around them. Values of more than WideTextCapacity - 1
/// characters are cut, or of `size` - 1 where that is less.

/// `size` has no effect.
void SetConfigString(const QString &key, const QString &value, int size = WideTextCapacity);

/// Called whenever there is a setting to save, until another function is set, or none.
void setSettingsHandler(std::function<void()> handler);

/// Empty, but never null, when the setting was never written.
QString GetConfigString(const QString &key, int size = WideTextCapacity);

/// The number of a setting, held between `least` and `most`; `fallback` where it is empty. What is
/// no number counts as 0.
int GetConfigNumber(const QString &key, int fallback, int least, int most);

/// A text of the resource file; empty, but never null, when it has none under that key.
QString GetString(const QString &key, int size = WideTextCapacity);

/// Attribute `kind` of a button or a picture, looked up by the widget's object name (null counts as
/// an empty name) and the section:
///   1 caption, 2 show caption, 3 hint,
///   4 normal, 5 over, 6 down, 7 disabled and 8 mask picture, 9 normal and 10 doing cursor,
///   11 normal, 12 over, 13 down and 14 disabled font colour.
/// Trimmed; 4 to 10 are paths, made absolute in the program's folder unless they hold a ":" or
/// begin with a backslash. Null when the attribute is not there, empty for another `kind`.
QString GetBtnAttr(const QObject *widget, const QString &section, int kind);
