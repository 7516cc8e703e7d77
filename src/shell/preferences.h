#pragma once

class DialogPreference;

/// What the user has set in the preferences dialog, as the settings have it. A flag is set when its
/// number there is 1.
namespace Preferences {

bool autoRun();
void setAutoRun(bool on);  ///< and brings the login item in line
bool runMinimized();
void setRunMinimized(bool on);
bool hidesBefore();  ///< the window gets out of the way before a grab
void setHidesBefore(bool on);
bool showsAfter();  ///< the window comes to the front after a grab
void setShowsAfter(bool on);
int countdown();  ///< seconds; 0 and below is none
void setCountdown(int seconds);
bool showsMagnifier();
void setShowsMagnifier(bool on);
int magnification();  ///< above 0
void setMagnification(int multiple);
bool remembersStyles();  ///< of each tool, over a restart
void setRemembersStyles(bool on);

/// The dialog shows them all.
void load(DialogPreference &dialog);
/// Whichever has changed, all of them go back, so a setting without an entry becomes what is shown.
void store(const DialogPreference &dialog);

}  // namespace Preferences
