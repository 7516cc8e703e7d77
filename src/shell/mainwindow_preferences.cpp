#include "shell/mainwindow.h"

#include "config/settings.h"
#include "platform/loginitem.h"
#include "shell/dialogpreference.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int s_magnification = 8;
constexpr int s_highestMagnification = 64;
constexpr int s_longestTimer = 24 * 60 * 60;  // seconds

bool flag(const QString &key) { return GetConfigString(key).toInt() == 1; }

void setFlag(const QString &key, bool on) { SetConfigString(key, on ? u"1"_s : u"0"_s); }

}  // namespace

// The key's name tells of something else, and is kept for the files that have it.
bool MainWindow::GetAutoRunFromXML() { return flag(u"FirstRun"_s); }

void MainWindow::SetAutoRunToXML(bool on)
{
    SetAutoRunLogin(on);
    setFlag(u"FirstRun"_s, on);
}

bool MainWindow::GetRunMinFromXML() { return flag(u"RunMinimized"_s); }

void MainWindow::SetRunMinToXML(bool on) { setFlag(u"RunMinimized"_s, on); }

bool MainWindow::GetHideFromXML() { return flag(u"AutoHide"_s); }

void MainWindow::SetHideToXML(bool on) { setFlag(u"AutoHide"_s, on); }

bool MainWindow::GetShowFromXML() { return flag(u"AutoShow"_s); }

void MainWindow::SetShowToXML(bool on) { setFlag(u"AutoShow"_s, on); }

int MainWindow::GetScreenTimerFromXML()
{
    return GetConfigNumber(u"ScreenTimer"_s, 0, std::numeric_limits<int>::min(), s_longestTimer);
}

void MainWindow::SetScreenTimerToXML(int seconds)
{
    SetConfigString(u"ScreenTimer"_s, QString::number(seconds));
}

bool MainWindow::GetShowMagFromXML() { return flag(u"ShowMagnification"_s); }

void MainWindow::SetShowMagToXML(bool on) { setFlag(u"ShowMagnification"_s, on); }

int MainWindow::GetMagnificationFromXML()
{
    const int multiple = GetConfigNumber(u"Magnification"_s, 0, 0, s_highestMagnification);
    return multiple > 0 ? multiple : s_magnification;
}

void MainWindow::SetMagnificationToXML(int multiple)
{
    SetConfigString(u"Magnification"_s, QString::number(multiple));
}

void MainWindow::Preference(int /*type*/)
{
    if (!m_pPreference) {
        m_pPreference = new DialogPreference(this);
        // No tool window any more, but still a window of its own in front of this one.
        m_pPreference->setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint |
                                      Qt::WindowCloseButtonHint);
        m_pPreference->SetAutoRun(GetAutoRunFromXML());
        m_pPreference->SetRunMin(GetRunMinFromXML());
        m_pPreference->SetHide(GetHideFromXML());
        m_pPreference->SetShow(GetShowFromXML());
        m_pPreference->SetScreenTimer(GetScreenTimerFromXML());
        m_pPreference->SetShowMag(GetShowMagFromXML());
        m_pPreference->SetMagnification(GetMagnificationFromXML());
        // Only now: what was loaded need not go back.
        connect(m_pPreference, &DialogPreference::Changed, this, &MainWindow::PreferenceChanged);
    }
    m_pPreference->setVisible(true);
    m_pPreference->raise();
    m_pPreference->activateWindow();
}

void MainWindow::Preference() { Preference(0); }

// Whichever changed, all of them go back, so a setting without an entry becomes what is shown.
void MainWindow::PreferenceChanged()
{
    SetAutoRunToXML(m_pPreference->GetAutoRun());
    SetRunMinToXML(m_pPreference->GetRunMin());
    SetHideToXML(m_pPreference->GetHide());
    SetShowToXML(m_pPreference->GetShow());
    SetScreenTimerToXML(m_pPreference->GetScreenTimer());
    SetShowMagToXML(m_pPreference->GetShowMag());
    SetMagnificationToXML(m_pPreference->GetMagnification());
}

void MainWindow::on_BtnSetting_clicked() { Preference(); }
