#include "shell/preferences.h"

#include "capture/markingoverlay.h"
#include "config/nametemplate.h"
#include "config/settings.h"
#include "platform/loginitem.h"
#include "platform/services.h"
#include "shell/dialogpreference.h"

#include <QImageWriter>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

using namespace Qt::StringLiterals;

namespace Preferences {

namespace {

constexpr int s_magnification = 8;
constexpr int s_highestMagnification = 64;
constexpr int s_usualDelay = 3;  // seconds
constexpr int s_hintedGrabs = 10;
constexpr int s_longestTimer = 24 * 60 * 60;  // seconds

constexpr int s_quality = 90;

// Those that other programs read, the usual one first.
struct OfferedFormat {
    const char *ending;
    bool hasQuality;
};
constexpr std::array s_formats{OfferedFormat{"png", false}, OfferedFormat{"jpg", true},
                               OfferedFormat{"webp", true}, OfferedFormat{"tiff", false},
                               OfferedFormat{"bmp", false}};

constexpr GrabGoals s_places =
    GrabGoals(GrabGoal::Tab) | GrabGoal::Copy | GrabGoal::Save | GrabGoal::Text | GrabGoal::Pin;

// A picture that would go nowhere but into a notification opens in a tab.
std::optional<GrabGoals> goals(const QString &key)
{
    bool isNumber = false;
    const int stored = GetConfigString(key).toInt(&isNumber);
    if (!isNumber)
        return {};
    const GrabGoals known = GrabGoals(stored) & (s_places | GrabGoal::Notify);
    return known & s_places ? known : known | GrabGoal::Tab;
}

QString keyOf(int hotKeyNumber) { return u"AfterGrab.%1"_s.arg(hotKeyNumber); }

QString countdownKeyOf(int hotKeyNumber) { return u"CountsDown.%1"_s.arg(hotKeyNumber); }

bool flag(const QString &key) { return GetConfigString(key).toInt() == 1; }

int markedGrabs() { return GetConfigNumber(u"MarkedGrabs"_s, 0, 0, s_hintedGrabs); }

void setFlag(const QString &key, bool on) { SetConfigString(key, on ? u"1"_s : u"0"_s); }

}  // namespace

// The key's name tells of something else, and is kept for the files that have it.
bool autoRun() { return flag(u"FirstRun"_s); }

void setAutoRun(bool on)
{
    SetAutoRunLogin(on);
    setFlag(u"FirstRun"_s, on);
}

bool runMinimized() { return flag(u"RunMinimized"_s); }

void setRunMinimized(bool on) { setFlag(u"RunMinimized"_s, on); }

bool closesToTray() { return flag(u"CloseToTray"_s); }

void setClosesToTray(bool on) { setFlag(u"CloseToTray"_s, on); }

bool hasToldOfTray() { return flag(u"ToldOfTray"_s); }

void setToldOfTray() { setFlag(u"ToldOfTray"_s, true); }

bool hidesBefore() { return flag(u"AutoHide"_s); }

void setHidesBefore(bool on) { setFlag(u"AutoHide"_s, on); }

bool showsAfter() { return flag(u"AutoShow"_s); }

void setShowsAfter(bool on) { setFlag(u"AutoShow"_s, on); }

int countdown()
{
    return GetConfigNumber(u"ScreenTimer"_s, 0, std::numeric_limits<int>::min(), s_longestTimer);
}

void setCountdown(int seconds) { SetConfigString(u"ScreenTimer"_s, QString::number(seconds)); }

int delay() { return countdown() > 0 ? countdown() : s_usualDelay; }

bool showsMagnifier() { return flag(u"ShowMagnification"_s); }

void setShowsMagnifier(bool on) { setFlag(u"ShowMagnification"_s, on); }

int magnification()
{
    const int multiple = GetConfigNumber(u"Magnification"_s, 0, 0, s_highestMagnification);
    return multiple > 0 ? multiple : s_magnification;
}

void setMagnification(int multiple)
{
    SetConfigString(u"Magnification"_s, QString::number(multiple));
}

// From a multiple that is none of them the way leads to the next one.
void stepMagnification(int steps)
{
    const auto *const at =
        std::lower_bound(s_magnifications.begin(), s_magnifications.end(), magnification());
    auto index = static_cast<int>(at - s_magnifications.begin());
    const bool isBetween = at == s_magnifications.end() || *at != magnification();
    index += isBetween && steps > 0 ? steps - 1 : steps;
    setMagnification(s_magnifications.at(static_cast<size_t>(
        std::clamp(index, 0, static_cast<int>(std::size(s_magnifications)) - 1))));
}

bool takesOnRelease() { return flag(u"TakeOnRelease"_s); }

void setTakesOnRelease(bool on) { setFlag(u"TakeOnRelease"_s, on); }

bool takesOnDoubleClick() { return flag(u"TakeOnDoubleClick"_s); }

void setTakesOnDoubleClick(bool on) { setFlag(u"TakeOnDoubleClick"_s, on); }

bool clearSelection() { return flag(u"ClearSelection"_s); }

void setClearSelection(bool on) { setFlag(u"ClearSelection"_s, on); }

bool showsOverlayHint() { return markedGrabs() < s_hintedGrabs; }

void countMarkedGrab()
{
    if (showsOverlayHint())
        SetConfigString(u"MarkedGrabs"_s, QString::number(markedGrabs() + 1));
}

MarkingHabits markingHabits()
{
    return {.takesOnRelease = takesOnRelease(),
            .takesOnDoubleClick = takesOnDoubleClick(),
            .clearSelection = clearSelection(),
            .showsHint = showsOverlayHint()};
}

bool countsDownFirst(int hotKeyNumber) { return flag(countdownKeyOf(hotKeyNumber)); }

void setCountsDownFirst(int hotKeyNumber, bool on) { setFlag(countdownKeyOf(hotKeyNumber), on); }

bool remembersStyles() { return flag(u"RememberStyles"_s); }

void setRemembersStyles(bool on) { setFlag(u"RememberStyles"_s, on); }

bool keepsLineColour() { return flag(u"KeepLineColour"_s); }

void setKeepsLineColour(bool on) { setFlag(u"KeepLineColour"_s, on); }

bool sharpPixels() { return flag(u"SharpPixels"_s); }

void setSharpPixels(bool on) { setFlag(u"SharpPixels"_s, on); }

GrabGoals afterGrab() { return goals(u"AfterGrab"_s).value_or(GrabGoal::Tab); }

void setAfterGrab(GrabGoals goals)
{
    SetConfigString(u"AfterGrab"_s, QString::number(goals.toInt()));
}

std::optional<GrabGoals> afterGrabOf(int hotKeyNumber) { return goals(keyOf(hotKeyNumber)); }

void setAfterGrabOf(int hotKeyNumber, std::optional<GrabGoals> goals)
{
    SetConfigString(keyOf(hotKeyNumber), goals ? QString::number(goals->toInt()) : QString());
}

bool freezesScreen() { return flag(u"FreezeScreen"_s); }

void setFreezesScreen(bool on)
{
    setFlag(u"FreezeScreen"_s, on);
    services().hotKeys->hearInMenus(on);
}

bool showsPointer() { return flag(u"ShowPointer"_s); }

void setShowsPointer(bool on) { setFlag(u"ShowPointer"_s, on); }

bool showsPins() { return flag(u"ShowPins"_s); }

void setShowsPins(bool on) { setFlag(u"ShowPins"_s, on); }

bool keepsPins() { return flag(u"KeepPins"_s); }

void setKeepsPins(bool on) { setFlag(u"KeepPins"_s, on); }

QString pictureFolder()
{
    const QString stored = GetConfigString(u"PictureFolder"_s);
    return stored.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)
                            : stored;
}

void setPictureFolder(const QString &folder) { SetConfigString(u"PictureFolder"_s, folder); }

QString pictureName()
{
    const QString stored = GetConfigString(u"PictureName"_s);
    const bool isFit = !stored.isEmpty() && NameTemplate(stored).fault().isEmpty();
    return isFit ? stored : NameTemplate::usual();
}

void setPictureName(const QString &text) { SetConfigString(u"PictureName"_s, text); }

QList<PictureFormat> pictureFormats()
{
    const QList<QByteArray> writable = QImageWriter::supportedImageFormats();
    QList<PictureFormat> result;
    for (const OfferedFormat &format : s_formats) {
        if (writable.contains(format.ending))
            result.append({QString::fromLatin1(format.ending), format.hasQuality});
    }
    return result;
}

PictureFormat pictureFormat()
{
    const QList<PictureFormat> formats = pictureFormats();
    const QString stored = GetConfigString(u"PictureFormat"_s);
    const auto found =
        std::find_if(formats.begin(), formats.end(),
                     [&](const PictureFormat &format) { return format.ending == stored; });
    return found == formats.end() ? formats.first() : *found;
}

void setPictureFormat(const QString &ending) { SetConfigString(u"PictureFormat"_s, ending); }

int pictureQuality() { return GetConfigNumber(u"PictureQuality"_s, s_quality, 1, 100); }

void setPictureQuality(int quality)
{
    SetConfigString(u"PictureQuality"_s, QString::number(quality));
}

void load(DialogPreference &dialog)
{
    dialog.SetAutoRun(autoRun());
    dialog.SetRunMin(runMinimized());
    dialog.SetHide(hidesBefore());
    dialog.SetShow(showsAfter());
    dialog.SetScreenTimer(countdown());
    dialog.SetShowMag(showsMagnifier());
    dialog.SetMagnification(magnification());
    dialog.SetRememberStyles(remembersStyles());
    dialog.SetKeepLineColour(keepsLineColour());
}

void store(const DialogPreference &dialog)
{
    setAutoRun(dialog.GetAutoRun());
    setRunMinimized(dialog.GetRunMin());
    setHidesBefore(dialog.GetHide());
    setShowsAfter(dialog.GetShow());
    setCountdown(dialog.GetScreenTimer());
    setShowsMagnifier(dialog.GetShowMag());
    setMagnification(dialog.GetMagnification());
    setRemembersStyles(dialog.GetRememberStyles());
    setKeepsLineColour(dialog.GetKeepLineColour());
}

}  // namespace Preferences
