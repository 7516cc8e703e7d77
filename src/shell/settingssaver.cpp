#include "shell/settingssaver.h"

#include "base/log.h"
#include "config/resourcefile.h"
#include "config/settings.h"
#include "platform/services.h"
#include "shell/notices.h"

#include <utility>

namespace {

constexpr int s_delay = 3000;  // ms from a change of a setting; more changes may follow

}  // namespace

SettingsSaver::SettingsSaver(std::function<void()> prepare, Notices &notices)
    : m_prepare(std::move(prepare)), m_notices(notices)
{
    setSettingsHandler([this] { saveSoon(); });
}

SettingsSaver::~SettingsSaver()
{
    setSettingsHandler(nullptr);
    SaveResourceFile();
}

void SettingsSaver::saveSoon()
{
    if (!std::exchange(m_isDue, true))
        services().clock->after(s_delay, this, [this] { save(); });
}

void SettingsSaver::save()
{
    m_isDue = false;
    m_prepare();
    const QString reason = SaveResourceFile();
    const bool wasTold = std::exchange(m_isFailureTold, !reason.isEmpty());
    if (reason.isEmpty())
        return;
    qCInfo(logStore) << "settings can't be saved:" << reason;
    if (!wasTold)
        m_notices.say(tr("The settings can't be saved: %1").arg(reason));
    saveSoon();
}
