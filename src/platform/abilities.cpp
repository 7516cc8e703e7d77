#include "platform/abilities.h"

#include <algorithm>

void Abilities::withhold(AbilitySet which, const QString &reason)
{
    m_withheld.prepend({which, reason});
}

QString Abilities::lackOf(AbilitySet needed) const
{
    const auto found =
        std::find_if(m_withheld.begin(), m_withheld.end(),
                     [needed](const auto &withheld) { return bool(withheld.first & needed); });
    return found == m_withheld.end() ? QString() : found->second;
}
