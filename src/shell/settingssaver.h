#pragma once

#include <QObject>

#include <functional>

class Notices;

/// Writes the settings to the disk some seconds after a change, once for all changes until then,
/// and again until it works. A failure is told once.
class SettingsSaver : public QObject
{
    Q_OBJECT

public:
    /// `prepare` adds what is only known when they are written. `notices` outlives this object.
    SettingsSaver(std::function<void()> prepare, Notices &notices);
    /// Writes what there is.
    ~SettingsSaver() override;

    void saveSoon();

private:
    void save();

    std::function<void()> m_prepare;
    Notices &m_notices;
    bool m_isDue = false;
    bool m_isFailureTold = false;
};
