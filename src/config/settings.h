#pragma once

#include "base/boundedtext.h"

#include <QString>

#include <functional>
#include <optional>

class QObject;

/// Settings, texts and skin attributes. All of them are in the XML tree of the file
/// g_ResourceFileName, which is kept in memory and written by SaveResourceFile. A text or a skin
/// section that this file lacks is read from the shipped file.
///
/// White space around keys and sections is ignored. Values are cut to WideTextCapacity - 1
/// characters, or to `size` - 1 if that is less.

/// Changes a setting. `size` has no effect.
void SetConfigString(const QString &key, const QString &value, int size = WideTextCapacity);

/// Sets the function that is called when a setting has to be saved; an empty function removes it.
void setSettingsHandler(std::function<void()> handler);

/// The value of a setting. Empty, but not null, if it has never been written.
QString GetConfigString(const QString &key, int size = WideTextCapacity);

/// The same, with no value if it has never been written.
std::optional<QString> FindConfigString(const QString &key);

/// The number of a setting, limited to `least` to `most`. `fallback` if the setting is empty; 0 if
/// it is no number.
int GetConfigNumber(const QString &key, int fallback, int least, int most);

/// A text of the resource file. Empty, but not null, if there is no text of that key.
QString GetString(const QString &key, int size = WideTextCapacity);

/// The attributes of a button or a picture that the program asks for. The resource file has more.
enum SkinAttribute {
    SkinHint = 3,
    SkinNormal = 4,
    SkinOver = 5,
    SkinDown = 6,
    SkinDisabled = 7,
};

/// Attribute `kind` of a button or a picture, which is found by the widget's object name (empty for
/// null) and the section:
///   1 caption, 2 show caption, 3 hint,
///   4 normal, 5 over, 6 down, 7 disabled and 8 mask picture, 9 normal and 10 doing cursor,
///   11 normal, 12 over, 13 down and 14 disabled font colour.
/// The value is trimmed. Values 4 to 10 are paths; a path is relative to the program's folder
/// unless it contains a ":" or begins with a backslash. Null if the attribute is missing, empty for
/// any other `kind`.
QString GetBtnAttr(const QObject *widget, const QString &section, int kind);
