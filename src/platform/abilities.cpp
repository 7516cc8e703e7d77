#include "platform/abilities.h"

#include <algorithm>

void Abilities::withhold(AbilitySet which, const QString &reason)
{
    m_withheld.prepend({which, reason});
}

void Abilities::grant(AbilitySet which)
{
    for (auto &withheld : m_withheld)
        withheld.first &= ~which;
    m_withheld.removeIf([](const auto &withheld) { return !withheld.first; });
}

QString Abilities::lackOf(AbilitySet needed) const
{
    const auto found =
        std::find_if(m_withheld.begin(), m_withheld.end(),
                     [needed](const auto &withheld) { return bool(withheld.first & needed); });
    return found == m_withheld.end() ? QString() : found->second;
}
