#pragma once

#include "capture/grab.h"

#include <QList>
#include <QString>

#include <array>
#include <optional>

class DialogPreference;
struct MarkingHabits;

/// What the user has set in the preferences dialog, as the settings have it. A flag is set when its
/// number there is 1.
namespace Preferences {

bool autoRun();
void setAutoRun(bool on);  ///< and brings the login item in line
bool runMinimized();
void setRunMinimized(bool on);
bool closesToTray();  ///< the window, where there is a tray; the program goes on then
void setClosesToTray(bool on);
bool hasToldOfTray();  ///< that the program is still there, and how to end it
void setToldOfTray();
bool hidesBefore();  ///< the window gets out of the way before a grab
void setHidesBefore(bool on);
bool showsAfter();  ///< the window comes to the front after a grab
void setShowsAfter(bool on);
int countdown();  ///< seconds; 0 and below is none
void setCountdown(int seconds);
int delay();  ///< of a countdown that is wanted: the same, or the usual one where it is none
bool showsMagnifier();
void setShowsMagnifier(bool on);
int magnification();  ///< above 0
void setMagnification(int multiple);
/// Those that the user can choose, in order.
inline constexpr std::array s_magnifications{4, 6, 8, 10, 12};
/// So many of these up, or down; the first and the last are the ends.
void stepMagnification(int steps);
bool takesOnRelease();  ///< a drag in the overlay of a rectangle or an ellipse takes what it marks
void setTakesOnRelease(bool on);
bool takesOnDoubleClick();  ///< a double click in the marked region takes it
void setTakesOnDoubleClick(bool on);
bool clearSelection();  ///< what is marked is not dimmed
void setClearSelection(bool on);
bool showsOverlayHint();  ///< for the first grabs
void countMarkedGrab();   ///< one more of these
bool remembersStyles();   ///< of each tool, over a restart
void setRemembersStyles(bool on);
bool keepsLineColour();  ///< over a restart, instead of its brightness
void setKeepsLineColour(bool on);
bool sharpPixels();  ///< of an enlarged picture, instead of blended ones
void setSharpPixels(bool on);

bool countsDownFirst(int hotKeyNumber);  ///< before all that this hot key starts
void setCountsDownFirst(int hotKeyNumber, bool on);

/// What of this the overlays have to know.
MarkingHabits markingHabits();

/// What becomes of a grab. A picture that would go nowhere but into a notification opens in a tab.
GrabGoals afterGrab();
void setAfterGrab(GrabGoals goals);
/// The same for the grabs of one hot key; none where it has nothing of its own.
std::optional<GrabGoals> afterGrabOf(int hotKeyNumber);
void setAfterGrabOf(int hotKeyNumber, std::optional<GrabGoals> goals);

/// Of the desktop, while something is marked on it. Then hot keys are heard in open menus, too.
bool freezesScreen();
void setFreezesScreen(bool on);
bool showsPointer();  ///< in the pictures
void setShowsPointer(bool on);
bool showsPins();  ///< in the pictures
void setShowsPins(bool on);
bool keepsPins();  ///< for the next start
void setKeepsPins(bool on);

/// Where pictures are saved that no name is asked for; it may have to be made.
QString pictureFolder();
void setPictureFolder(const QString &folder);
QString pictureName();  ///< a NameTemplate without fault
void setPictureName(const QString &text);
struct PictureFormat {
    QString ending{};
    bool hasQuality = false;
};
QList<PictureFormat> pictureFormats();  ///< those to choose from
PictureFormat pictureFormat();
void setPictureFormat(const QString &ending);
int pictureQuality();  ///< 1 to 100, for formats that have one
void setPictureQuality(int quality);

/// The dialog shows those of its first page.
void load(DialogPreference &dialog);
/// Whichever has changed, all of them go back, so a setting without an entry becomes what is shown.
void store(const DialogPreference &dialog);

}  // namespace Preferences
