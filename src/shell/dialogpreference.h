#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class DialogPreference;
}  // namespace Ui

/// Pages of settings. The first has eight, each written through as it is changed: there is no OK,
/// and nothing to undo. The dialog knows none of them itself; its owner loads the values and stores
/// them on Changed(). Other pages look after themselves.
class DialogPreference : public QDialog
{
    Q_OBJECT

public:
    explicit DialogPreference(QWidget *parent = nullptr);
    ~DialogPreference() override;

    void SetAutoRun(bool on);
    void SetRunMin(bool on);
    void SetHide(bool on);
    void SetShow(bool on);
    void SetScreenTimer(int seconds);  ///< any number, with an entry or not
    void SetShowMag(bool on);
    void SetMagnification(int multiple);  ///< one without an entry leaves the choice as it is
    void SetRememberStyles(bool on);
    void SetKeepLineColour(bool on);

    bool GetAutoRun() const;
    bool GetRunMin() const;
    bool GetHide() const;
    bool GetShow() const;
    /// Seconds: the number that the field begins with, 0 where there is none or none that fits.
    int GetScreenTimer() const;
    bool GetShowMag() const;
    int GetMagnification() const;
    bool GetRememberStyles() const;
    bool GetKeepLineColour() const;

signals:
    /// Any of the eight may be another one now.
    void Changed();
    /// So may the hot keys, which have been stored and registered.
    void HotKeysChanged();
    /// Whether they are kept for the next start.
    void PinsChanged();

private slots:
    void on_ChkAutoRun_stateChanged(int state);
    void on_ChkRunMin_stateChanged(int state);
    void on_ChkHide_stateChanged(int state);
    void on_ChkShow_stateChanged(int state);
    void on_ChkShowMag_stateChanged(int state);
    void on_ChkRememberStyles_stateChanged(int state);
    void on_ChkKeepLineColour_stateChanged(int state);
    void on_cmbTimer_editTextChanged(const QString &text);
    void on_cmbMagnification_currentIndexChanged(int index);

private:
    void followShowMag();

    std::unique_ptr<Ui::DialogPreference> ui;
    QString m_TimerText;  ///< last typed or shown
};
