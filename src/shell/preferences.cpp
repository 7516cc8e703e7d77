#include "shell/preferences.h"

#include "config/settings.h"
#include "platform/loginitem.h"
#include "shell/dialogpreference.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace Preferences {

namespace {

constexpr int s_magnification = 8;
constexpr int s_highestMagnification = 64;
constexpr int s_longestTimer = 24 * 60 * 60;  // seconds

bool flag(const QString &key) { return GetConfigString(key).toInt() == 1; }

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

bool hidesBefore() { return flag(u"AutoHide"_s); }

void setHidesBefore(bool on) { setFlag(u"AutoHide"_s, on); }

bool showsAfter() { return flag(u"AutoShow"_s); }

void setShowsAfter(bool on) { setFlag(u"AutoShow"_s, on); }

int countdown()
{
    return GetConfigNumber(u"ScreenTimer"_s, 0, std::numeric_limits<int>::min(), s_longestTimer);
}

void setCountdown(int seconds) { SetConfigString(u"ScreenTimer"_s, QString::number(seconds)); }

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

bool remembersStyles() { return flag(u"RememberStyles"_s); }

void setRemembersStyles(bool on) { setFlag(u"RememberStyles"_s, on); }

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
}

}  // namespace Preferences
